// Automation of one channel: a run of points.
#pragma once

#include <cstdint>

#include "host/framework/ob_list.h"
#include "host/framework/object.h"

class EDL_API CGenericAutomationEntry : public CObject {
 public:
  // Samples.
  std::int64_t time = 0;
  // In the steps of the format that made it.
  std::int64_t value = 0;
};

class EDL_API CGenericAutomationChunk : public CObject {
 public:
  // What is automated: 0 fader, 1 mute, 2 pan.
  std::uint16_t type = 0;
  std::uint16_t channel = 0;
  // CGenericAutomationEntry objects in time order. The maker gives the list, and
  // the owner of the automation list deletes it with its points; this object does
  // not.
  CObList* points = nullptr;
  std::uint32_t no_points = 0;
};

// Deletes a chunk, its points and its list.
EDL_API void delete_automation_chunk(CGenericAutomationChunk* chunk);
