// CMX 340 and CMX 3600. Lists by other makers have no "FORMAT:" in their title, so
// they are known by the shape of an event line.
#include "formats/format_rows.h"
#include "formats/text_head.h"
#include "text/cmx_edl.h"

namespace {

HeadMatch match_cmx340(std::string_view head) {
  const bool named = formats::format_in_title(head).starts_with("CMX 340");
  return named ? HeadMatch::certain : HeadMatch::none;
}

HeadMatch match_cmx3600(std::string_view head) {
  if (formats::format_in_title(head).starts_with("CMX 3600")) return HeadMatch::certain;
  return formats::has_event_line(head) ? HeadMatch::possible : HeadMatch::none;
}

template <unsigned char channels>
std::unique_ptr<CGenericEdl> make_cmx(CGenericEdl* parent, int interactive, const FormatOptions&) {
  return std::make_unique<CCMXEdl>(channels, parent, interactive);
}

}  // namespace

FormatRow cmx340_row() {
  FormatRow row;
  row.name = "cmx340";
  row.title = "CMX 340 (2 channels)";
  row.extensions = {".cmx"};
  row.make = make_cmx<2>;
  row.match = match_cmx340;
  row.states_frame_rate = formats::states_fcm;
  row.frame_rate_by_fcm = true;
  return row;
}

FormatRow cmx3600_row() {
  FormatRow row = cmx340_row();
  row.name = "cmx3600";
  row.title = "CMX 3600 (4 channels)";
  row.extensions = {".edl"};
  row.make = make_cmx<4>;
  row.match = match_cmx3600;
  return row;
}
