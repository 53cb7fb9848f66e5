// The native text EDL, known by the line that every one of them has.
#include <algorithm>

#include "core/generic_edl_entry.h"
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

// A number of its own is given to every edit without one.
std::uint32_t number_edits(const CObList& list) {
  std::uint32_t numbered = 0;
  std::uint32_t last = 0;
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
    auto& entry = *static_cast<CGenericEdlEntry*>(list.GetNext(at));
    if (entry.event_number == event_number_not_set && last + 1 < event_number_not_set) {
      entry.event_number = static_cast<std::uint16_t>(last + 1);
      ++numbered;
    }
    if (entry.event_number != event_number_not_set)
      last = std::max<std::uint32_t>(last, entry.event_number);
  }
  return numbered;
}

// A line begins with a number of four digits or more, and the first channel of a source
// stands first in a line of its own: one that is not known would be read as another edit.
void name_channels(const CObList& list) {
  constexpr std::uint16_t not_known = 65535;
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
    auto& entry = *static_cast<CGenericEdlEntry*>(list.GetNext(at));
    if (entry.first_channel == not_known) entry.first_channel = entry.channel_offset;
  }
}

std::string complete(CGenericEdl& root, const FormatOptions& /*options*/) {
  const CObList& list = *root.get_generic_entry_list();
  name_channels(list);
  const std::uint32_t numbered = number_edits(list);
  if (numbered == 0) return {};
  return std::to_string(numbered) +
         (numbered == 1 ? " edit has no number and gets one" : " edits have no number and get one");
}

}  // namespace

FormatRow native_text_row() {
  FormatRow row;
  row.name = "native-text";
  row.title = "Native text EDL";
  row.extensions = {".mte"};
  row.make = make;
  row.match = match_native_text;
  row.complete = complete;
  // Without one it is not of this format.
  row.states_sample_rate = always_stated;
  row.states_frame_rate = states_frame_rate;
  return row;
}
