#include "core/generic_reel.h"

#include <algorithm>

#include "host/host.h"
#include "host/string_ids.h"
#include "host/strings.h"

namespace {

unsigned rate_text_id(std::int64_t frame_rate) {
  return frame_rate >= 0 && frame_rate <= 4
             ? string_id::reel_rate_24 + static_cast<unsigned>(frame_rate)
             : static_cast<unsigned>(string_id::reel_rate_unknown);
}

}  // namespace

CGenericReel::CGenericReel(const wide_char* name, unsigned short frame_rate) {
  const std::u16string_view kept(name, text_length(name, 12));
  set_field(reel_name, trimmed_right(kept));
  set_frame_rate(frame_rate);
}

void CGenericReel::set_reel_no_streams(unsigned short n) {
  no_streams = std::max(no_streams, n);
}

void CGenericReel::get_reel_name(wide_char* out, int size) const {
  if (size > 0) copy_text(out, static_cast<std::size_t>(size), field_text(reel_name));
}

void CGenericReel::get_reel_name_and_frame_rate_string(CString& out) const {
  std::u16string text(field_text(reel_name));
  text.resize(17, u' ');
  out = CString(text + host().strings().load(rate_text_id(frame_rate_binding.get_value())));
}
