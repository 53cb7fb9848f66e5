// Finds the source of an edit among the sources of a list that is being written,
// or adds it.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <unordered_map>

#include "host/framework/ob_list.h"
#include "native/generic_edl_file_chunks.h"

class CGenericEdlEntry;

namespace native {

// An edit plays a source when the first 100 characters of its clip name, its reel
// name (as far as a source holds it), its source time word, its source channel and
// its time stamp are the source's, case counting, and its first channel lies in the
// source's range. The first such source of the list is the answer. A source without
// channels is never found again, and neither is one by a source channel above 65535,
// which the record narrows.
class TrackFinder {
 public:
  // `tracks` must outlive this object, which alone adds to it. Sources that stand in
  // it are known.
  explicit TrackFinder(CObList& tracks);

  // Answers the number of the entry's source, which is its place in the list,
  // narrowed to 16 bits. A new one goes to the tail.
  std::uint16_t find_or_make(CGenericEdlEntry& entry);

 private:
  // Views into a source, or into an entry for the time of a search.
  struct Key {
    std::u16string_view clip_name;
    std::u16string_view reel_name;
    std::uint32_t source_time_word;
    std::uint32_t source_channel;
    std::int64_t time_stamp;

    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };
  // Stretches of channels that do not meet, by their first channel, each with the
  // earliest source that covers it.
  struct Stretch {
    std::uint32_t end;
    std::uint16_t place;
  };
  using Channels = std::map<std::uint32_t, Stretch>;

  void add(const CGenericEDLFileTrack& track, std::uint16_t place);

  CObList& m_tracks;
  std::unordered_map<Key, Channels, KeyHash> m_channels_by_key;
};

}  // namespace native
