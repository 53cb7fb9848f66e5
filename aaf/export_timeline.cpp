#include "aaf/export_timeline.h"

#include <algorithm>

namespace aaf {

namespace {

// Streams that an export has: 65535 stands for none.
constexpr std::uint32_t most_streams = 0xFFFF;

std::uint32_t end_stream(const CGenericEDLFileEntry& event) {
  return std::min(std::uint32_t{event.m_first_stream} + event.m_stream_count, most_streams);
}

}  // namespace

ExportTimeline::ExportTimeline(const CObList& events, const CObList& sources,
                               const CObList& automation, const CArray<_aafMobID_t>& mobs)
    : m_mobs(mobs) {
  std::size_t channels = 0;
  for (POSITION at = sources.GetHeadPosition(); at != nullptr;) {
    const auto* const track = static_cast<const CGenericEDLFileTrack*>(sources.GetNext(at));
    m_sources.push_back({track, channels});
    channels += track->m_no_channels;
  }
  m_is_whole = static_cast<std::intptr_t>(channels) == mobs.GetSize();
  for (POSITION at = events.GetHeadPosition(); at != nullptr;)
    place_event(*static_cast<const CGenericEDLFileEntry*>(events.GetNext(at)));
  for (POSITION at = automation.GetHeadPosition(); at != nullptr;) {
    const auto* const chunk =
        static_cast<const CGenericEDLFileAutomationEntryChunk*>(automation.GetNext(at));
    if (chunk->m_points == nullptr || chunk->m_points->IsEmpty()) continue;
    m_automation.try_emplace({chunk->m_parameter, chunk->m_channel}, *chunk->m_points);
  }
}

void ExportTimeline::place_event(const CGenericEDLFileEntry& event) {
  if (m_first == nullptr) m_first = &event;
  const std::uint32_t end = end_stream(event);
  if (event.m_first_stream >= end) return;
  m_stream_count = std::max(m_stream_count, end);
  if (event.m_length <= 0) return;
  if (m_streams.size() < end) m_streams.resize(end);
  for (std::uint32_t stream = event.m_first_stream; stream < end; ++stream)
    m_streams[stream].push_back(&event);
}

const Events& ExportTimeline::on_stream(std::uint32_t stream) const {
  static const Events none;
  return stream < m_streams.size() ? m_streams[stream] : none;
}

const CGenericEDLFileTrack* ExportTimeline::source_of(const CGenericEDLFileEntry& event) const {
  return event.m_track_index < m_sources.size() ? m_sources[event.m_track_index].track : nullptr;
}

const aafMobID_t* ExportTimeline::mob_of(const CGenericEDLFileEntry& event,
                                         std::uint32_t stream) const {
  const CGenericEDLFileTrack* const track = source_of(event);
  if (track == nullptr) return nullptr;
  const std::uint32_t channel = stream - event.m_first_stream + event.m_channel_offset;
  const std::size_t mob = m_sources[event.m_track_index].first_mob + channel;
  if (channel >= track->m_no_channels || mob >= static_cast<std::size_t>(m_mobs.GetSize()))
    return nullptr;
  return &m_mobs.GetAt(static_cast<std::intptr_t>(mob));
}

const AutomationPoints* ExportTimeline::automation(std::uint16_t parameter,
                                                   std::uint32_t stream) const {
  const auto at = m_automation.find({parameter, static_cast<std::uint16_t>(stream)});
  return at == m_automation.end() ? nullptr : &at->second;
}

}  // namespace aaf
