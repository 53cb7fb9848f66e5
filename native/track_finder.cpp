#include "native/track_finder.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>

#include "core/generic_edl_entry.h"
#include "native/record_transfer.h"

namespace native {

namespace {

// Clip names that are equal so far are taken to be equal.
constexpr std::size_t compared_name_length = 100;
constexpr std::size_t first_slot_count = 64;

std::uint64_t mixed(std::uint64_t seed, std::uint64_t value) {
  const std::uint64_t product = (seed ^ value) * 0x9E3779B97F4A7C15U;
  return product ^ (product >> 32);
}

}  // namespace

std::uint64_t TrackFinder::Key::hash() const {
  const std::hash<std::u16string_view> text;
  const std::uint64_t names = mixed(text(clip_name), text(reel_name));
  const std::uint64_t words = std::uint64_t{source_time_word} << 32 | source_channel;
  return mixed(mixed(names, words), static_cast<std::uint64_t>(time_stamp));
}

TrackFinder::TrackFinder(CObList& tracks) : m_tracks(tracks), m_slots(first_slot_count) {
  std::uint16_t place = 0;
  for (POSITION at = tracks.GetHeadPosition(); at != nullptr; ++place)
    add_known(*static_cast<const CGenericEDLFileTrack*>(tracks.GetNext(at)), place);
}

std::uint16_t TrackFinder::find_or_make(CGenericEdlEntry& entry) {
  decltype(CGenericEDLFileTrack::m_reel_name) reel_name;
  entry.get_reel_name(reel_name, static_cast<int>(std::size(reel_name)));
  const Key key = {field_text(entry.clip_name).substr(0, compared_name_length),
                   field_text(reel_name), entry.source_time_word, entry.source_channel,
                   entry.source_timestamp};
  const std::uint64_t hash = key.hash();
  Group* const group = find_group(key, hash);
  if (group != nullptr) {
    const Stretch* const stretch = find_channel(*group, entry.first_channel);
    if (stretch != nullptr) return stretch->place;
  }
  auto made = std::make_unique<CGenericEDLFileTrack>();
  track_from_entry(*made, entry);
  const auto place = static_cast<std::uint16_t>(m_tracks.GetCount());
  made->m_index = place;
  m_tracks.AddTail(made.get());
  const CGenericEDLFileTrack& track = *made.release();
  // A source channel that the record narrows has another key there.
  if (group == nullptr && track.m_source_channel != entry.source_channel) {
    add_known(track, place);
  } else {
    add(track, place, hash, group);
  }
  return place;
}

TrackFinder::Key TrackFinder::key_of(const CGenericEDLFileTrack& track) {
  return {track.get_file_name().substr(0, compared_name_length), track.get_reel_name(),
          track.m_source_time_word, track.m_source_channel, track.m_time_stamp};
}

const TrackFinder::Stretch* TrackFinder::find_channel(const Group& group, std::uint32_t channel) {
  const Stretch* stretch = &group.only;
  if (!group.stretches.empty()) {
    const auto behind = group.stretches.upper_bound(channel);
    if (behind == group.stretches.begin()) return nullptr;
    stretch = &std::prev(behind)->second;
  }
  return channel >= stretch->first && channel < stretch->end ? stretch : nullptr;
}

// Gives the new source those of its channels that no earlier one has.
void TrackFinder::add_stretch(Group& group, const Stretch& added) {
  auto& stretches = group.stretches;
  if (stretches.empty()) stretches.emplace(group.only.first, group.only);
  std::uint32_t from = added.first;
  auto next = stretches.upper_bound(from);
  if (next != stretches.begin()) from = std::max(from, std::prev(next)->second.end);
  while (from < added.end) {
    const std::uint32_t gap_end =
        next == stretches.end() ? added.end : std::min(added.end, next->first);
    if (from < gap_end) stretches.emplace_hint(next, from, Stretch{from, gap_end, added.place});
    if (next == stretches.end()) break;
    from = std::max(from, next->second.end);
    ++next;
  }
}

// Gives a source those of its new channels that no earlier one has, also where a later
// one has them.
void TrackFinder::claim(Group& group, const Stretch& claimed) {
  auto& stretches = group.stretches;
  if (stretches.empty()) stretches.emplace(group.only.first, group.only);
  auto at = stretches.upper_bound(claimed.first);
  if (at != stretches.begin()) --at;
  while (at != stretches.end() && at->first < claimed.end) {
    const Stretch held = at->second;
    if (held.end <= claimed.first || held.place <= claimed.place) {
      ++at;
      continue;
    }
    at = stretches.erase(at);
    if (held.first < claimed.first) {
      stretches.emplace(held.first, Stretch{held.first, claimed.first, held.place});
    }
    if (held.end > claimed.end) {
      at = stretches.emplace(claimed.end, Stretch{claimed.end, held.end, held.place}).first;
    }
  }
  add_stretch(group, claimed);
}

void TrackFinder::raise_channels(CGenericEDLFileTrack& track, std::uint16_t place,
                                 std::uint16_t channels) {
  const std::uint16_t before = track.m_no_channels;
  if (channels <= before) return;
  track.m_no_channels = channels;
  const Key key = key_of(track);
  const std::uint64_t hash = key.hash();
  Group* const group = find_group(key, hash);
  if (group == nullptr) {
    add(track, place, hash, nullptr);
    return;
  }
  const std::uint32_t first = track.m_first_channel;
  claim(*group, {first + before, first + channels, place});
}

TrackFinder::Group* TrackFinder::find_group(const Key& key, std::uint64_t hash) {
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t at = hash & mask; m_slots[at].group != 0; at = (at + 1) & mask) {
    if (m_slots[at].hash != hash) continue;
    Group& group = m_groups[m_slots[at].group - 1];
    if (key_of(*group.track) == key) return &group;
  }
  return nullptr;
}

void TrackFinder::add_known(const CGenericEDLFileTrack& track, std::uint16_t place) {
  const Key key = key_of(track);
  const std::uint64_t hash = key.hash();
  add(track, place, hash, find_group(key, hash));
}

void TrackFinder::add(const CGenericEDLFileTrack& track, std::uint16_t place, std::uint64_t hash,
                      Group* group) {
  if (track.m_no_channels == 0) return;
  const std::uint32_t first = track.m_first_channel;
  const Stretch stretch = {first, first + track.m_no_channels, place};
  if (group != nullptr) {
    add_stretch(*group, stretch);
  } else {
    add_group(track, hash, stretch);
  }
}

void TrackFinder::add_group(const CGenericEDLFileTrack& track, std::uint64_t hash,
                            const Stretch& only) {
  m_groups.push_back({hash, &track, only, {}});
  if (m_groups.size() * 2 > m_slots.size()) {
    m_slots.assign(m_slots.size() * 2, Slot());
    for (std::uint32_t i = 0; i < m_groups.size(); ++i)
      put(m_groups[i].hash, i + 1);
  } else {
    put(hash, static_cast<std::uint32_t>(m_groups.size()));
  }
}

void TrackFinder::put(std::uint64_t hash, std::uint32_t group) {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t at = hash & mask;
  while (m_slots[at].group != 0)
    at = (at + 1) & mask;
  m_slots[at] = {hash, group};
}

}  // namespace native
