// The records of an export by where they stand: events by stream, sources by number,
// automation by parameter and stream.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "aaf/export_levels.h"
#include "host/framework/collections.h"
#include "host/framework/ob_list.h"
#include "native/generic_edl_file_chunks.h"

namespace aaf {

using Events = std::vector<const CGenericEDLFileEntry*>;

inline constexpr std::uint16_t gain_parameter = 0;
inline constexpr std::uint16_t pan_parameter = 2;

class ExportTimeline {
 public:
  // The lists must outlive this object.
  ExportTimeline(const CObList& events, const CObList& sources, const CObList& automation,
                 const CArray<_aafMobID_t>& mobs);

  // Whether there is a master mob for each channel of each source.
  [[nodiscard]] bool is_whole() const { return m_is_whole; }

  // One more than the highest stream that an event plays on; 1 when none does. Stream
  // 65535 is no place.
  [[nodiscard]] std::uint32_t stream_count() const { return m_stream_count; }
  // In the order of the list, without those that have no length.
  [[nodiscard]] const Events& on_stream(std::uint32_t stream) const;
  // The first of the list; null for an empty one.
  [[nodiscard]] const CGenericEDLFileEntry* first_event() const { return m_first; }
  [[nodiscard]] const CGenericEDLFileTrack* source_of(const CGenericEDLFileEntry& event) const;
  // The master mob of the channel that an event plays on a stream; null without one.
  [[nodiscard]] const aafMobID_t* mob_of(const CGenericEDLFileEntry& event,
                                         std::uint32_t stream) const;
  // The first run of automation that has points; null without one.
  [[nodiscard]] const AutomationPoints* automation(std::uint16_t parameter,
                                                   std::uint32_t stream) const;

 private:
  struct Source {
    const CGenericEDLFileTrack* track;
    // Of its first channel, in m_mobs.
    std::size_t first_mob;
  };

  void place_event(const CGenericEDLFileEntry& event);

  const CArray<_aafMobID_t>& m_mobs;
  std::vector<Source> m_sources;
  // By stream; streams behind the last one used are not there.
  std::vector<Events> m_streams;
  std::map<std::pair<std::uint16_t, std::uint16_t>, AutomationPoints> m_automation;
  const CGenericEDLFileEntry* m_first = nullptr;
  std::uint32_t m_stream_count = 1;
  bool m_is_whole = false;
};

}  // namespace aaf
