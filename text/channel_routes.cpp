// From the audio fields of a line to the streams and source channels of its entry.
#include <algorithm>
#include <cstring>

#include "core/generic_edl_entry.h"
#include "text/text_edl.h"

namespace {

struct UsedFields {
  int first = 0;
  int count = 0;
};

UsedFields used_fields(int count, const int* flags) {
  UsedFields used;
  for (int i = 0; i < count; ++i) {
    if (flags[i] == 0) continue;
    if (used.count == 0) used.first = i;
    ++used.count;
  }
  return used;
}

void use_no_field(CGenericEdlEntry& entry) {
  entry.raise_source_streams(1);
  entry.set_no_streams(1);
  entry.no_channels = 1;
}

// Rows of the channel map: four for single fields, two for pairs of fields.
constexpr int map_row_words = 3;
constexpr int map_single_rows = 4;
constexpr int map_rows = 6;
constexpr int map_per_field_word = 18;

bool per_field(const std::uint16_t* table) {
  std::uint32_t word = 0;
  std::memcpy(&word, table + map_per_field_word, sizeof word);
  return word != 0;
}

}  // namespace

void CTextEdl::apply_mapped_channels(int count, const int* flags, const std::uint16_t* table,
                                     CGenericEdlEntry* entry) {
  const UsedFields used = used_fields(count, flags);
  const int row =
      used.count == 1 || per_field(table) ? used.first : map_single_rows + used.first / 2;
  if (used.count == 0 || row >= map_rows) {
    use_no_field(*entry);
    return;
  }
  const std::uint16_t* const words = table + row * map_row_words;
  const std::uint16_t first_stream = words[0];
  const std::uint16_t stream_count = words[1];
  const std::uint16_t first_channel = words[2];
  entry->channel_offset = 0;
  entry->raise_source_streams(static_cast<std::uint16_t>(stream_count + first_channel));
  entry->set_no_streams(stream_count);
  entry->no_channels = stream_count;
  entry->first_channel = first_channel;
  for (int k = 0; k < entry->no_streams; ++k) {
    entry->set_stream(k, static_cast<std::uint16_t>(first_stream + k));
  }
}

void CTextEdl::apply_channel_mode(int count, const int* flags, unsigned mode,
                                  CGenericEdlEntry* entry) {
  const UsedFields used = used_fields(count, flags);
  if (used.count == 0) {
    use_no_field(*entry);
    return;
  }
  const bool keeps_source_channel = mode == 0 || mode == 2;
  const bool keeps_field_numbers = mode == 0 || mode == 1;
  entry->channel_offset = 0;
  entry->first_channel = static_cast<std::uint16_t>(keeps_source_channel ? used.first : 0);
  entry->raise_source_streams(static_cast<std::uint16_t>(entry->first_channel + used.count));
  entry->set_no_streams(used.count);
  entry->no_channels = static_cast<std::uint16_t>(used.count);
  if (!keeps_field_numbers) {
    entry->set_stream(0, 0);
    if (used.count != 1) entry->set_stream(1, 1);
    return;
  }
  int stream = 0;
  for (int field = 0; field < count; ++field) {
    if (flags[field] != 0) entry->set_stream(stream++, static_cast<std::uint16_t>(field));
  }
}
