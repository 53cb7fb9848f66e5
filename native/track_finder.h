// Finds the source of an edit among the sources of a list that is being written,
// or adds it.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

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
  // Raises the channels of a source that stands in the list at `place`. Nothing happens
  // when it has as many.
  void raise_channels(CGenericEDLFileTrack& track, std::uint16_t place, std::uint16_t channels);

 private:
  // Views into a source, or into an entry for the time of a search.
  struct Key {
    std::u16string_view clip_name;
    std::u16string_view reel_name;
    std::uint32_t source_time_word;
    std::uint32_t source_channel;
    std::int64_t time_stamp;

    bool operator==(const Key&) const = default;
    [[nodiscard]] std::uint64_t hash() const;
  };
  // Channels from `first` up to and not with `end`, and who plays them.
  struct Stretch {
    std::uint32_t first;
    std::uint32_t end;
    std::uint16_t place;
  };
  // The sources of one key. Nearly always there is one; from the second on, the
  // stretches that do not meet stand in the map by their first channel, each with
  // the earliest source that covers it.
  struct Group {
    std::uint64_t hash;
    const CGenericEDLFileTrack* track;
    Stretch only;
    std::map<std::uint32_t, Stretch> stretches;
  };
  // Of an open table: a group's number from 1, 0 for a free slot.
  struct Slot {
    std::uint64_t hash = 0;
    std::uint32_t group = 0;
  };

  static Key key_of(const CGenericEDLFileTrack& track);
  // Null when no channel of the group's is this one.
  static const Stretch* find_channel(const Group& group, std::uint32_t channel);
  static void add_stretch(Group& group, const Stretch& added);
  static void claim(Group& group, const Stretch& claimed);
  [[nodiscard]] Group* find_group(const Key& key, std::uint64_t hash);
  void add_known(const CGenericEDLFileTrack& track, std::uint16_t place);
  // `group` is what find_group answers for the track's key, which has this hash.
  void add(const CGenericEDLFileTrack& track, std::uint16_t place, std::uint64_t hash,
           Group* group);
  void add_group(const CGenericEDLFileTrack& track, std::uint64_t hash, const Stretch& only);
  void put(std::uint64_t hash, std::uint32_t group);

  CObList& m_tracks;
  std::vector<Group> m_groups;
  // A power of two of them, at least half of them free.
  std::vector<Slot> m_slots;
};

}  // namespace native
