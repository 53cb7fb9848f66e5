// A mark on the timeline.
#pragma once

#include <cstdint>

#include "host/framework/object.h"
#include "host/framework/string.h"

class EDL_API CGenericLocatorEntry : public CObject {
 public:
  // Samples.
  std::int64_t time = 0;
  CString name;
  std::int64_t locator_value = 0;
};
