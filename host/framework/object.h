// The root of everything that stands on a CObList.
#pragma once

#include "host/api.h"

class EDL_API CObject {
 public:
  CObject() = default;
  virtual ~CObject() = default;

 protected:
  CObject(const CObject&) = default;
  CObject& operator=(const CObject&) = default;
};
