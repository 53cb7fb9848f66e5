// One named source. Entries that use the same source share one reel object, which
// belongs to the EDL that made it.
#pragma once

#include <cstdint>

#include "core/numeric_binding.h"
#include "host/framework/object.h"
#include "host/framework/string.h"
#include "host/text.h"

class EDL_API CGenericReel : public CObject {
 public:
  // Keeps 12 characters of the name, without trailing white space.
  CGenericReel(const wide_char* name, unsigned short frame_rate);

  // Raises the stream count to `n`; it never falls.
  void set_reel_no_streams(unsigned short n);
  // At most size - 1 characters, and no more than the name's 12. A size of 0 does
  // nothing.
  void get_reel_name(wide_char* out, int size) const;
  // The name padded to 17 characters, then the host's text for the reel's rate.
  void get_reel_name_and_frame_rate_string(CString& out) const;

  [[nodiscard]] std::uint16_t frame_rate() const {
    return static_cast<std::uint16_t>(frame_rate_binding.get_value());
  }
  void set_frame_rate(std::uint16_t rate) { frame_rate_binding.set_value(rate, 1); }

  wide_char reel_name[13] = {};
  // Frame-rate index.
  CNumericBinding frame_rate_binding;
  // Widest stream count seen on this reel.
  std::uint16_t no_streams = 0;
};
