// Sony 9000 and Grass Valley, whose own lists say in their title which they are. A
// Sony list by another maker has the columns named above its events.
#include "formats/format_rows.h"
#include "formats/text_head.h"
#include "text/grass_valley_edl.h"
#include "text/sony9000_edl.h"

namespace {

bool has_column_heads(std::string_view head) {
  while (!head.empty()) {
    const std::vector<std::string_view> words = formats::words_of(formats::take_line(head));
    if (words.size() > 2 && words[0] == "EDT" && words[1] == "REL" && words[2] == "MODE") {
      return true;
    }
  }
  return false;
}

HeadMatch match_sony9000(std::string_view head) {
  const std::string_view format = formats::format_in_title(head);
  if (format.starts_with("Sony-9000")) return HeadMatch::certain;
  return format.empty() && has_column_heads(head) ? HeadMatch::certain : HeadMatch::none;
}

HeadMatch match_grass_valley(std::string_view head) {
  const bool named = formats::format_in_title(head).starts_with("Grass Valley");
  return named ? HeadMatch::certain : HeadMatch::none;
}

template <class Edl>
std::unique_ptr<CGenericEdl> make(CGenericEdl* parent, int interactive, const FormatOptions&) {
  return std::make_unique<Edl>(parent, interactive);
}

}  // namespace

FormatRow sony9000_row() {
  FormatRow row;
  row.name = "sony9000";
  row.title = "Sony 9000 (4 channels)";
  row.extensions = {".edl"};
  row.make = make<CSony9000Edl>;
  row.match = match_sony9000;
  row.states_frame_rate = formats::states_fcm;
  row.frame_rate_by_fcm = true;
  return row;
}

FormatRow grass_valley_row() {
  FormatRow row = sony9000_row();
  row.name = "grassvalley";
  row.title = "Grass Valley (4 channels)";
  row.make = make<CGrassValleyEdl>;
  row.match = match_grass_valley;
  return row;
}
