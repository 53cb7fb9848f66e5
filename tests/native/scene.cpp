#include "tests/native/scene.h"

namespace native_test {

void set_rates(CGenericEdl& edl, unsigned highest_stream, std::uint8_t sample_rate_index,
               std::uint8_t frame_rate, std::uint8_t edl_word) {
  EDL_DETAILS details;
  details.highest_stream = highest_stream;
  details.sample_rate_index = sample_rate_index;
  details.frame_rate = frame_rate;
  details.edl_word = edl_word;
  edl.set_edl_details(&details);
}

CGenericEdlEntry& add_entry(CGenericEdl& root, std::int64_t dest_in, std::int64_t dest_out,
                            std::vector<unsigned> streams) {
  auto* const entry = new CGenericEdlEntry(&root);
  root.get_generic_entry_list()->AddTail(entry);
  entry->dest_in = dest_in;
  entry->dest_out = dest_out;
  entry->source_in = 0;
  entry->source_out = dest_out - dest_in;
  entry->set_no_streams(static_cast<int>(streams.size()));
  for (std::size_t i = 0; i < streams.size(); ++i)
    entry->set_stream(static_cast<int>(i), static_cast<unsigned short>(streams[i]));
  entry->no_channels = static_cast<std::uint16_t>(streams.size());
  return *entry;
}

CGenericPQEntry& add_pq_entry(CGenericEdl& root) {
  auto* const entry = new CGenericPQEntry;
  root.get_pq_list()->AddTail(entry);
  entry->position_a = entry->position_b = 96000;
  entry->track_number = 1;
  entry->index_number = 1;
  entry->first_text = u"Title";
  entry->second_text = u"Artist";
  entry->flag_a = 1;
  entry->flag_b = 0;
  entry->isrc = u"GBAAA0012345";
  entry->third_text = u"Note";
  return *entry;
}

CGenericLocatorEntry& add_locator(CGenericEdl& root, std::int64_t time, const wide_char* name,
                                  std::int64_t value) {
  auto* const locator = new CGenericLocatorEntry;
  root.get_locator_list()->AddTail(locator);
  locator->time = time;
  locator->name = name;
  locator->locator_value = value;
  return *locator;
}

CGenericAutomationChunk& add_automation(
    CGenericEdl& root, unsigned type, unsigned channel,
    const std::vector<std::pair<std::int64_t, std::int64_t>>& points) {
  auto* const chunk = new CGenericAutomationChunk;
  root.get_automation_list()->AddTail(chunk);
  chunk->type = static_cast<std::uint16_t>(type);
  chunk->channel = static_cast<std::uint16_t>(channel);
  chunk->points = new CObList(10);
  chunk->no_points = static_cast<std::uint32_t>(points.size());
  for (const auto& [time, value] : points) {
    auto* const point = new CGenericAutomationEntry;
    chunk->points->AddTail(point);
    point->time = time;
    point->value = value;
  }
  return *chunk;
}

}  // namespace native_test
