#include "native/record_transfer.h"

#include <algorithm>

#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_locator_entry.h"
#include "core/sample_math.h"

namespace native {

namespace {

// From the last stream to the first, so that the highest is noted at once: each
// time it rises, the owner empties its table of streams.
void set_streams(CGenericEdlEntry& entry, unsigned first, unsigned count) {
  entry.set_no_streams(static_cast<int>(count));
  for (unsigned i = count; i > 0; --i)
    entry.set_stream(static_cast<int>(i - 1), static_cast<unsigned short>(first + i - 1));
}

std::unique_ptr<CGenericEDLFileAutomationEntryChunk> record_from_automation(
    const CGenericAutomationChunk& chunk) {
  auto record = std::make_unique<CGenericEDLFileAutomationEntryChunk>();
  record->m_parameter = chunk.type;
  record->m_channel = chunk.channel;
  CObList& points = record->points();
  for (POSITION at = chunk.points == nullptr ? nullptr : chunk.points->GetHeadPosition();
       at != nullptr;) {
    const auto* const from = static_cast<const CGenericAutomationEntry*>(chunk.points->GetNext(at));
    auto* const point = new CGenericEDLFileAutomationEntry;
    points.AddTail(point);
    point->m_time = from->time;
    point->m_value = static_cast<std::uint32_t>(from->value);
  }
  record->m_count = static_cast<std::uint32_t>(points.GetCount());
  return record;
}

void add_automation(CObList& automation, const CGenericEDLFileAutomationEntryChunk& record) {
  auto* const chunk = new CGenericAutomationChunk;
  automation.AddTail(chunk);
  chunk->type = record.m_parameter;
  chunk->channel = record.m_channel;
  chunk->no_points = record.m_count;
  chunk->points = new CObList(10);
  for (POSITION at = record.m_points == nullptr ? nullptr : record.m_points->GetHeadPosition();
       at != nullptr;) {
    const auto* const from =
        static_cast<const CGenericEDLFileAutomationEntry*>(record.m_points->GetNext(at));
    auto* const point = new CGenericAutomationEntry;
    chunk->points->AddTail(point);
    point->time = from->m_time;
    point->value = from->m_value;
  }
}

}  // namespace

bool is_range_locator(std::u16string_view name) {
  return name == left_locator_name || name == right_locator_name;
}

void entry_from_record(CGenericEdlEntry& entry, const CGenericEDLFileEntry& record) {
  entry.set_source_reel_name(record.get_name());
  entry.dest_in = record.m_dest_in;
  entry.dest_out = plus(record.m_dest_in, record.m_length);
  entry.source_in = record.m_source_in;
  entry.source_out = plus(record.m_source_in, record.m_length);
  entry.fade_in_length = record.m_fade_in_length;
  entry.fade_out_length = record.m_fade_out_length;
  entry.dest_length = record.m_third_position;
  set_streams(entry, record.m_first_stream, record.m_stream_count);
  entry.set_fade_in_curve(record.m_fade_in_curve);
  entry.set_fade_out_curve(record.m_fade_out_curve);
  entry.gain_left = record.m_level;
  entry.raise_source_streams(record.m_stream_count);
  entry.first_channel = record.m_first_stream;
  entry.chunk_flags = static_cast<std::int32_t>(record.m_flags);
  entry.channel_offset = record.m_channel_offset;
}

void entry_from_track(CGenericEdlEntry& entry, const CGenericEDLFileTrack& track) {
  entry.set_clip_name(track.get_file_name());
  entry.source_time_word = track.m_source_time_word;
  entry.set_file_path(track.get_path());
  entry.set_reel_name(track.get_reel_name());
  entry.source_timestamp = track.m_time_stamp;
  entry.first_channel = track.m_first_channel;
  entry.source_channel = track.m_source_channel;
  entry.source_index = track.m_source_type;
  entry.set_originator(track.m_originator);
  entry.source_word = track.m_source_word;
  entry.set_originator_reference(track.m_originator_reference);
}

TrackIndex::TrackIndex(const CObList& tracks) {
  for (POSITION at = tracks.GetHeadPosition(); at != nullptr;) {
    auto* const track = static_cast<CGenericEDLFileTrack*>(tracks.GetNext(at));
    const std::size_t place = track->m_index;
    if (place >= m_first_by_index.size()) m_first_by_index.resize(place + 1);
    if (m_first_by_index[place] == nullptr) m_first_by_index[place] = track;
  }
}

CGenericEDLFileTrack* TrackIndex::find(std::uint16_t index) const {
  return index < m_first_by_index.size() ? m_first_by_index[index] : nullptr;
}

void sort_by_destination(CObList& entries) {
  std::vector<CGenericEDLFileEntry*> order;
  order.reserve(static_cast<std::size_t>(entries.GetCount()));
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;)
    order.push_back(static_cast<CGenericEDLFileEntry*>(entries.GetNext(at)));
  const auto earlier = [](const CGenericEDLFileEntry* a, const CGenericEDLFileEntry* b) {
    return a->m_dest_in < b->m_dest_in;
  };
  if (std::is_sorted(order.begin(), order.end(), earlier)) return;
  std::stable_sort(order.begin(), order.end(), earlier);
  POSITION at = entries.GetHeadPosition();
  for (CGenericEDLFileEntry* const entry : order) {
    entries.SetAt(at, entry);
    entries.GetNext(at);
  }
}

void transfer_automation(const CObList& records, CObList& automation) {
  for (POSITION at = records.GetHeadPosition(); at != nullptr;) {
    add_automation(automation,
                   *static_cast<const CGenericEDLFileAutomationEntryChunk*>(records.GetNext(at)));
  }
}

void transfer_locators(const CObList& records, CObList& locators) {
  for (POSITION at = records.GetHeadPosition(); at != nullptr;) {
    const auto* const record =
        static_cast<const CGenericEDLFileLocatorEntryChunk*>(records.GetNext(at));
    for (POSITION inner = record->m_locators.GetHeadPosition(); inner != nullptr;) {
      const auto* const from =
          static_cast<const CGenericEDLFileLocatorEntry*>(record->m_locators.GetNext(inner));
      auto* const locator = new CGenericLocatorEntry;
      locators.AddTail(locator);
      locator->time = from->m_time;
      locator->name = CString(from->get_name());
      locator->locator_value = from->m_locator_value;
    }
  }
}

void record_from_entry(CGenericEDLFileEntry& record, const CGenericEdlEntry& entry) {
  record.set_name(field_text(entry.source_reel_name));
  record.m_dest_in = entry.dest_in;
  record.m_source_in = entry.source_in;
  record.m_length = minus(entry.dest_out, entry.dest_in);
  record.m_fade_in_curve = entry.fade_in_curve;
  record.m_fade_out_curve = entry.fade_out_curve;
  record.m_fade_in_length = entry.fade_in_length;
  record.m_fade_out_length = entry.fade_out_length;
  record.m_third_position = entry.dest_length;
  record.m_level = entry.gain_left;
  record.m_stream_count = static_cast<std::uint16_t>(entry.no_streams);
  record.m_flags |= static_cast<std::uint32_t>(entry.chunk_flags);
  record.m_first_stream = entry.get_stream(0);
  record.m_channel_offset = entry.channel_offset;
}

void track_from_entry(CGenericEDLFileTrack& track, CGenericEdlEntry& entry) {
  track.set_file_name(field_text(entry.clip_name));
  track.set_path(field_text(entry.file_path));
  entry.get_reel_name(track.m_reel_name, static_cast<int>(std::size(track.m_reel_name)));
  track.m_time_stamp = entry.source_timestamp;
  track.m_source_channel = static_cast<std::uint16_t>(entry.source_channel);
  track.m_first_channel = entry.first_channel;
  track.m_source_time_word = entry.source_time_word;
  track.m_source_type = entry.source_index;
  track.m_no_channels = entry.no_channels;
  track.set_originator(field_text(entry.originator));
  track.m_source_word = entry.source_word;
  track.set_originator_reference(field_text(entry.originator_reference));
  track.m_source_object = entry.get_audio_content();
}

void collect_automation(const CObList& automation, CObList& records) {
  for (POSITION at = automation.GetHeadPosition(); at != nullptr;) {
    const auto* const chunk = static_cast<const CGenericAutomationChunk*>(automation.GetNext(at));
    records.AddTail(record_from_automation(*chunk).release());
  }
}

std::unique_ptr<CGenericEDLFileLocatorEntryChunk> collect_locators(const CObList& locators,
                                                                   LocatorKind kind) {
  auto record = std::make_unique<CGenericEDLFileLocatorEntryChunk>();
  for (POSITION at = locators.GetHeadPosition(); at != nullptr;) {
    const auto* const from = static_cast<const CGenericLocatorEntry*>(locators.GetNext(at));
    if (is_range_locator(from->name.view()) != (kind == LocatorKind::range)) continue;
    auto* const locator = new CGenericEDLFileLocatorEntry;
    record->m_locators.AddTail(locator);
    locator->m_time = from->time;
    locator->set_name(from->name.view());
    locator->m_locator_value = static_cast<std::uint16_t>(from->locator_value);
  }
  record->m_count = static_cast<std::uint16_t>(record->m_locators.GetCount());
  return record;
}

}  // namespace native
