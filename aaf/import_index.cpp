#include "aaf/import_index.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "aaf/aaf_numbers.h"
#include "native/generic_edl_file_chunks.h"

namespace aaf {

namespace {

CGenericEDLFileAutomationEntry& point_at(const CObList& points, POSITION place) {
  return *static_cast<CGenericEDLFileAutomationEntry*>(points.GetAt(place));
}

// Whole identifiers: two compositions may agree in what identifies most others.
bool same(const aafMobID_t& a, const aafMobID_t& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace

// Each composition begins its own count of segments within segments.
ImportIndex::Playing::Playing(ImportIndex& index, const aafMobID_t& mob, aafSlotID_t slot)
    : index_(index), depth_before_(index.depth_) {
  const bool again = std::any_of(
      index.playing_.begin(), index.playing_.end(),
      [&](const auto& outer) { return outer.second == slot && same(outer.first, mob); });
  fits_ = !again && index.playing_.size() < most_nested;
  index.playing_.emplace_back(mob, slot);
  index.depth_ = 0;
}

ImportIndex::Playing::~Playing() {
  index_.playing_.pop_back();
  index_.depth_ = depth_before_;
}

void ImportIndex::add_event(CGenericEDLFileEntry* event) {
  events_[event->m_first_stream].emplace(event->m_dest_in, event);
  note_length(*event);
}

void ImportIndex::note_length(const CGenericEDLFileEntry& event) {
  least_length_ = std::min(least_length_, event.m_length);
}

CGenericEDLFileEntry* ImportIndex::last_event(std::uint16_t stream) const {
  const auto found = events_.find(stream);
  return found == events_.end() ? nullptr : found->second.rbegin()->second;
}

CGenericEDLFileEntry* ImportIndex::first_event_within(std::uint16_t stream, std::int64_t start,
                                                      std::int64_t end) {
  const auto found = events_.find(stream);
  if (found == events_.end()) return nullptr;
  const Events& events = found->second;
  for (auto at = events.lower_bound(start); at != events.end(); ++at) {
    CGenericEDLFileEntry* const event = at->second;
    if (sum(event->m_dest_in, event->m_length) <= end) return event;
    // Behind this one even the shortest event ends too late.
    if (sum(event->m_dest_in, least_length_) > end || !visit()) return nullptr;
  }
  return nullptr;
}

ImportIndex::Run& ImportIndex::run_of(CObList& automation, std::uint16_t parameter,
                                      std::uint16_t channel) {
  const auto key = std::pair(parameter, channel);
  const auto next = runs_.lower_bound(key);
  if (next != runs_.end() && next->first == key) return next->second;
  // Behind the run of the channel below; without one, in front of all.
  const bool has_lower = next != runs_.begin() && std::prev(next)->first.first == parameter;
  auto* const chunk = new CGenericEDLFileAutomationEntryChunk;
  const POSITION place = has_lower ? automation.InsertAfter(std::prev(next)->second.place, chunk)
                                   : automation.AddHead(chunk);
  chunk->m_parameter = parameter;
  chunk->m_channel = channel;
  return runs_.emplace_hint(next, key, Run{chunk, place, {}})->second;
}

void ImportIndex::add_point(CObList& automation, std::uint16_t parameter, std::uint16_t channel,
                            std::int64_t time, std::uint32_t value) {
  Run& run = run_of(automation, parameter, channel);
  CObList& points = run.chunk->points();
  auto* const point = new CGenericEDLFileAutomationEntry;
  point->m_value = value;
  point->m_time = time;
  const POSITION tail = points.GetTailPosition();
  const std::int64_t last = tail == nullptr ? 0 : point_at(points, tail).m_time;
  if (tail == nullptr || (last <= time && run.by_time.empty())) {
    if (tail != nullptr && last == time) point->m_time = sum(time, 1);
    points.AddTail(point);
  } else {
    if (run.by_time.empty()) {
      for (POSITION at = points.GetHeadPosition(); at != nullptr; points.GetNext(at))
        run.by_time.emplace_hint(run.by_time.end(), point_at(points, at).m_time, at);
    }
    const auto next = run.by_time.upper_bound(time);
    if (next == run.by_time.begin()) {
      run.by_time.emplace_hint(next, time, points.AddHead(point));
    } else {
      // In front of a point that stands at the raised time already.
      if (std::prev(next)->first == time) point->m_time = sum(time, 1);
      const POSITION place = points.InsertAfter(std::prev(next)->second, point);
      run.by_time.emplace_hint(next, point->m_time, place);
    }
  }
  run.chunk->m_count = static_cast<std::uint32_t>(points.GetCount());
}

int ImportIndex::find_source(std::u16string_view path) const {
  const auto found = sources_.find(folded_case(path));
  return found == sources_.end() ? -1 : found->second;
}

void ImportIndex::add_source(std::u16string_view path, int index) {
  sources_.try_emplace(folded_case(path), index);
}

}  // namespace aaf
