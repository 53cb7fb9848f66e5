// An entry of the disc index (PQ data).
#pragma once

#include <cstdint>

#include "host/framework/object.h"
#include "host/framework/string.h"

class EDL_API CGenericPQEntry : public CObject {
 public:
  // Samples; an import gives both the file's time.
  std::int64_t position_a = 0;
  std::int64_t position_b = 0;
  std::uint16_t track_number = 0;
  std::uint16_t index_number = 0;
  CString first_text;
  CString second_text;
  std::uint8_t flag_a = 0;
  std::uint8_t flag_b = 0;
  CString isrc;
  CString third_text;
};
