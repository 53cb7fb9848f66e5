// The native text EDL, known by the line that every one of them has.
#include "formats/format_rows.h"
#include "formats/text_head.h"
#include "text/marlo_text_edl.h"

namespace {

HeadMatch match_native_text(std::string_view head) {
  constexpr std::string_view line = "Marlo v2.1 Text EDL (c) 1991-1994 Karsten Sound & Film Ltd";
  return head.find(line) != std::string_view::npos ? HeadMatch::certain : HeadMatch::none;
}

// "FRAME RATE=UNKNOWN" says nothing.
bool states_frame_rate(std::string_view head) {
  while (!head.empty()) {
    const std::vector<std::string_view> words = formats::words_of(formats::take_line(head));
    if (words.size() < 2 || words[0] != "FRAME" || !words[1].starts_with("RATE=")) continue;
    const std::string_view rate = words[1].substr(5);
    return rate == "24" || rate == "25" || rate == "29.97" || rate == "30";
  }
  return false;
}

std::unique_ptr<CGenericEdl> make(CGenericEdl* parent, int interactive, const FormatOptions&) {
  return std::make_unique<CMarloTextEdl>(parent, interactive);
}

}  // namespace

FormatRow native_text_row() {
  FormatRow row;
  row.name = "native-text";
  row.title = "Native text EDL";
  row.extensions = {".mte"};
  row.make = make;
  row.match = match_native_text;
  // Without one it is not of this format.
  row.states_sample_rate = always_stated;
  row.states_frame_rate = states_frame_rate;
  return row;
}
