// One composition of an AAF file: walked on import, made on export.
//
// Import walks every sound slot, and turns source clips into records of its owner's
// lists. A transition overlaps the two clips beside it, so the walk goes back by its
// length, and its level curves become a fade-out and a fade-in. A clip that plays another
// composition is walked by an object of its own, through the window that the clip leaves
// open. Positions are edit units of the slot until a clip is placed, samples in the lists.
#pragma once

#include <cstdint>
#include <vector>

#include "aaf/aaf_ref.h"
#include "host/framework/ob_list.h"
#include "host/framework/object.h"

class CAAFEdlFile;
class CGenericEDLFileEntry;

// A control point: both its time, as a share of the whole, and its value are fractions.
class CAAFPoint : public CObject {
 public:
  aafRational_t m_time{0, 1};
  aafRational_t m_value{0, 1};
};

class CAAFCompMob : public CObject {
 public:
  // Null leaves the object without lists.
  explicit CAAFCompMob(CAAFEdlFile* owner);
  CAAFCompMob(const CAAFCompMob&) = delete;
  CAAFCompMob& operator=(const CAAFCompMob&) = delete;

  // Import of the chosen composition. 1: all of it was walked. 0: it does not hold
  // together, or asks for more than any real one does.
  [[nodiscard]] int compose_top_level(IAAFCompositionMob* composition, IAAFDictionary* dictionary);

  // Export: makes the composition and adds it to the file. 1 on success.
  [[nodiscard]] int export_composition(IAAFHeader* header);

 private:
  friend class CAAFEdlFile;

  CAAFEdlFile* m_owner;
  // Export.
  std::int64_t m_start_frames = 0;
  std::uint16_t m_stream_index = 0;
  // Samples: where the longest track ends.
  std::int64_t m_end_position = 0;
  std::int32_t m_export_fixed_gain = 0;
  std::int32_t m_export_gain_automation = 0;
  std::int32_t m_export_pan_automation = 0;
};
