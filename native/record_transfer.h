// Between interchange records and the generic lists: the copies that the chunked
// file, ADL and AAF have in common, in both directions.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "host/framework/ob_list.h"
#include "native/generic_edl_file_chunks.h"

class CGenericEdlEntry;

namespace native {

// The ends of the host's range of work, kept among the locators under these names.
inline constexpr std::u16string_view left_locator_name = u"LEFT_LOCATOR\t\t\t";
inline constexpr std::u16string_view right_locator_name = u"RIGHT_LOCATOR\t\t";
[[nodiscard]] bool is_range_locator(std::u16string_view name);

// Stream words that one import may give to its entries in all. A damaged list of a
// few kilobytes could otherwise ask for gigabytes.
inline constexpr std::uint64_t most_stream_words = std::uint64_t{1} << 26;

// Records into the generic lists

// Fills a new entry from its record: name, times, fades, level, streams and flags.
// Curves go through the entry's setters. `no_channels` is left to the format.
void entry_from_record(CGenericEdlEntry& entry, const CGenericEDLFileEntry& record);
// Then the members of its source, which replace the first channel. `no_channels`
// and the audio content are left alone.
void entry_from_track(CGenericEdlEntry& entry, const CGenericEDLFileTrack& track);

// Finds a source by its number; among equal numbers the first of the list. The list
// must not change while this stands.
class TrackIndex {
 public:
  explicit TrackIndex(const CObList& tracks);
  // Null when there is none.
  [[nodiscard]] CGenericEDLFileTrack* find(std::uint16_t index) const;

 private:
  std::vector<CGenericEDLFileTrack*> m_first_by_index;
};

// Sorts CGenericEDLFileEntry objects by destination in; equal ones keep their order.
void sort_by_destination(CObList& entries);

// Appends a generic object for each record of CGenericEDLFileAutomationEntryChunk
// and of the locators of CGenericEDLFileLocatorEntryChunk objects.
void transfer_automation(const CObList& records, CObList& automation);
void transfer_locators(const CObList& records, CObList& locators);

// The generic lists into records

// Fills a new record from an entry; its source number is left to whoever finds the
// source. An entry without streams gives 65535 as the first.
void record_from_entry(CGenericEDLFileEntry& record, const CGenericEdlEntry& entry);
// Fills a new source from an entry that plays it, but for its number.
void track_from_entry(CGenericEDLFileTrack& track, CGenericEdlEntry& entry);

// Appends a record for each CGenericAutomationChunk, counting the points that are
// really there.
void collect_automation(const CObList& automation, CObList& records);
// One record of the locators that mark the host's range, or of all others.
enum class LocatorKind { range, others };
[[nodiscard]] std::unique_ptr<CGenericEDLFileLocatorEntryChunk> collect_locators(
    const CObList& locators, LocatorKind kind);

}  // namespace native
