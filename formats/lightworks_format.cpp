// The Lightworks table and the Lightworks multichannel list, which share no more than
// their maker.
#include <algorithm>
#include <array>

#include "formats/format_rows.h"
#include "formats/text_head.h"
#include "text/lightworks_edl.h"
#include "text/lw_multi_channel_edl.h"

namespace {

HeadMatch match_lightworks(std::string_view head) {
  const std::size_t start = head.find_first_not_of(std::string_view("\0\t \r\n", 5));
  const bool named = start != std::string_view::npos && head.substr(start).starts_with("\"OLEDB:");
  return named ? HeadMatch::certain : HeadMatch::none;
}

// The column "src_standard" of the table's lines. Each of them has the same.
bool states_standard(std::string_view head) {
  constexpr std::array<std::string_view, 5> standards = {"FR24.0", "PR25.0", "NN", "ND", "FR30.0"};
  while (!head.empty()) {
    const std::string_view line = formats::take_line(head);
    if (std::any_of(standards.begin(), standards.end(), [line](std::string_view standard) {
          const std::size_t at = line.find(standard);
          return at != std::string_view::npos && at > 0 && line[at - 1] == '"' &&
                 line.substr(at + standard.size()).starts_with('"');
        })) {
      return true;
    }
  }
  return false;
}

HeadMatch match_multichannel(std::string_view head) {
  const bool named = formats::format_in_title(head).starts_with("Multitrack Audio");
  return named ? HeadMatch::certain : HeadMatch::none;
}

// The list, and the dump file beside it.
std::vector<std::string> list_and_dump(const std::string& path) {
  std::vector<std::string> outputs = {path};
  const std::u16string dump = dump_file_path(text_from_utf8(path));
  if (!dump.empty() && utf8_from_text(dump) != path) outputs.push_back(utf8_from_text(dump));
  return outputs;
}

template <class Edl>
std::unique_ptr<CGenericEdl> make(CGenericEdl* parent, int interactive, const FormatOptions&) {
  return std::make_unique<Edl>(parent, interactive);
}

}  // namespace

FormatRow lightworks_row() {
  FormatRow row;
  row.name = "lightworks";
  row.title = "Lightworks table (OLEDB)";
  row.extensions = {".lw"};
  row.make = make<CLightworksEdl>;
  row.match = match_lightworks;
  row.states_frame_rate = states_standard;
  return row;
}

FormatRow lightworks_multichannel_row() {
  FormatRow row;
  row.name = "lightworks-multichannel";
  row.title = "Lightworks multichannel (8 channels)";
  row.extensions = {".edl"};
  row.make = make<CLWMultiChannelEdl>;
  row.match = match_multichannel;
  row.states_frame_rate = formats::states_fcm;
  row.frame_rate_by_fcm = true;
  row.outputs = list_and_dump;
  return row;
}
