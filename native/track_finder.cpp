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

std::size_t mixed(std::size_t seed, std::uint64_t value) {
  return (seed ^ value) * 0x9E3779B97F4A7C15U;
}

}  // namespace

std::size_t TrackFinder::KeyHash::operator()(const Key& key) const {
  const std::hash<std::u16string_view> text;
  std::size_t seed = mixed(text(key.clip_name), text(key.reel_name));
  seed = mixed(seed, key.source_time_word);
  seed = mixed(seed, key.source_channel);
  return mixed(seed, static_cast<std::uint64_t>(key.time_stamp));
}

TrackFinder::TrackFinder(CObList& tracks) : m_tracks(tracks) {
  std::uint16_t place = 0;
  for (POSITION at = tracks.GetHeadPosition(); at != nullptr; ++place)
    add(*static_cast<const CGenericEDLFileTrack*>(tracks.GetNext(at)), place);
}

std::uint16_t TrackFinder::find_or_make(CGenericEdlEntry& entry) {
  decltype(CGenericEDLFileTrack::m_reel_name) reel_name;
  entry.get_reel_name(reel_name, static_cast<int>(std::size(reel_name)));
  const Key key = {field_text(entry.clip_name).substr(0, compared_name_length),
                   field_text(reel_name), entry.source_time_word, entry.source_channel,
                   entry.source_timestamp};
  if (const auto known = m_channels_by_key.find(key); known != m_channels_by_key.end()) {
    const Channels& channels = known->second;
    const auto behind = channels.upper_bound(entry.first_channel);
    if (behind != channels.begin() && entry.first_channel < std::prev(behind)->second.end)
      return std::prev(behind)->second.place;
  }
  auto made = std::make_unique<CGenericEDLFileTrack>();
  track_from_entry(*made, entry);
  const auto place = static_cast<std::uint16_t>(m_tracks.GetCount());
  made->m_index = place;
  m_tracks.AddTail(made.get());
  add(*made.release(), place);
  return place;
}

// Gives the source those of its channels that no earlier source of its key has.
void TrackFinder::add(const CGenericEDLFileTrack& track, std::uint16_t place) {
  if (track.m_no_channels == 0) return;
  Channels& channels = m_channels_by_key[{track.get_file_name().substr(0, compared_name_length),
                                          track.get_reel_name(), track.m_source_time_word,
                                          track.m_source_channel, track.m_time_stamp}];
  const std::uint32_t end = std::uint32_t{track.m_first_channel} + track.m_no_channels;
  std::uint32_t from = track.m_first_channel;
  auto next = channels.upper_bound(from);
  if (next != channels.begin()) from = std::max(from, std::prev(next)->second.end);
  while (from < end) {
    const std::uint32_t gap_end = next == channels.end() ? end : std::min(end, next->first);
    if (from < gap_end) channels.emplace_hint(next, from, Stretch{gap_end, place});
    if (next == channels.end()) break;
    from = std::max(from, next->second.end);
    ++next;
  }
}

}  // namespace native
