// Reads the EDL2 file: records into entries of their channel, then the channels
// into one list.
#include <algorithm>
#include <memory>
#include <numeric>

#include "core/generic_edl_entry.h"
#include "core/generic_pq_entry.h"
#include "host/framework/file.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "native/edl2_records.h"
#include "native/file_input.h"
#include "native/marlo2_edl.h"
#include "native/wire_bytes.h"

using native::Edl2Event;

namespace {

// Where a channel of the file plays, unless channels are taken as they stand:
// channels 2 and 3 are a second pair of tracks 0 and 1, and so on.
constexpr std::array<std::uint16_t, native::edl2_channel_count> stream_of_channel = {0, 1, 0, 1,
                                                                                     2, 3, 2, 3};

// Kinds of extension blocks.
constexpr std::uint32_t reel_block = 1;
constexpr std::uint32_t block_head_size = 8;

bool is_skipped_block(std::uint32_t type) {
  return type == 0 || (type >= 2 && type <= 4);
}

// A stereo edit stands on both channels of a pair.
void set_streams(CGenericEdlEntry& entry, unsigned count, unsigned channel, bool direct) {
  const unsigned first = count == 2 ? channel & ~1U : channel;
  entry.set_no_streams(static_cast<int>(count));
  for (unsigned i = 0; i < count; ++i) {
    const unsigned stream = direct ? first + i : stream_of_channel[first + i];
    entry.set_stream(static_cast<int>(i), static_cast<unsigned short>(stream));
  }
  entry.raise_source_streams(static_cast<unsigned short>(count));
}

// 100, or 102 for a record that gives no entry: one that is marked so, or the right
// half of a stereo edit, whose left half brings both streams.
result_code set_layout(CGenericEdlEntry& entry, const Edl2Event& event) {
  if (event.letter == 'P') return result::dropped;
  if (event.letter == 'M') {
    entry.channel_offset = 0;
    entry.no_channels = 1;
    return result::import_complete;
  }
  if (event.letter != 'L' && event.layout != native::edl2_mono) return result::dropped;
  entry.no_channels = 2;
  entry.channel_offset = event.letter == 'L' ? 0 : 1;
  return result::import_complete;
}

// Source times count from the start of the file. No time stamp comes with them.
void set_times(CGenericEdlEntry& entry, const Edl2Event& event) {
  entry.source_index = 0;
  entry.source_is_timestamped = 0;
  entry.source_in = event.fade_in_start;
  entry.source_out = event.fade_out_end;
  entry.dest_in = event.dest_in;
  entry.dest_out = event.dest_out;
}

result_code fill_entry(CGenericEdlEntry& entry, const Edl2Event& event, unsigned channel,
                       bool direct) {
  set_times(entry, event);
  entry.set_source_reel_name(event.name);
  entry.source_channel = event.source_channel;
  entry.set_clip_name(event.clip_name);
  entry.set_file_path(event.file_path);
  set_streams(entry, event.layout != native::edl2_mono ? 2 : 1, channel, direct);
  entry.first_channel = 0;
  if (const result_code layout = set_layout(entry, event); layout != result::import_complete) {
    return layout;
  }
  entry.set_fade_in_curve(event.fade_in_curve);
  entry.set_fade_out_curve(event.fade_out_curve);
  // In 32 bits, as the writer's sums wrap.
  entry.fade_in_length = event.fade_in_end - event.fade_in_start;
  entry.fade_out_length = event.fade_out_end - event.fade_out_start;
  entry.gain_left = event.level;
  return result::import_complete;
}

}  // namespace

class CMarlo2Edl::Reader {
 public:
  Reader(CMarlo2Edl& edl, CFile& file) : m_edl(edl), m_in(file) {}

  // 100, 4 or 10. May raise CFileException.
  [[nodiscard]] result_code read() {
    if (!read_head()) return result::wrong_format;
    if (!read_extensions() || !read_events() || !read_pq()) return result::damaged;
    return result::import_complete;
  }

 private:
  bool read_head() {
    const char* const bytes = m_in.take(native::edl2_head_size);
    if (bytes == nullptr || !native::read_edl2_head(bytes, m_head)) return false;
    m_edl.m_file_counts = m_head.event_counts;
    m_edl.m_pq_count = m_head.pq_count;
    const signed char index = sample_rate_to_index(m_head.sample_rate_hz);
    if (index >= 0) m_edl.set_sample_rate_index(static_cast<unsigned char>(index));
    // None in the file, a 0, becomes 255, which is none here.
    m_edl.set_frame_rate(static_cast<unsigned char>(m_head.frame_rate - 1));
    return true;
  }

  // Extensions lie a distance behind the records, as far as the head's own channel
  // count tells where those end.
  bool read_extensions() {
    if (m_head.extension_offset == native::edl2_no_extensions) return true;
    const std::size_t channels =
        std::min<std::size_t>(m_head.channel_count, m_head.event_counts.size());
    const std::uint64_t records = event_count(channels) + m_head.pq_count;
    m_in.seek(native::edl2_head_size + native::edl2_record_size * records);
    m_in.skip(m_head.extension_offset);
    // A value and a word that nobody reads, then the count of blocks.
    const char* const bytes = m_in.take(12);
    if (bytes == nullptr) return false;
    native::WireIn in(bytes);
    in.skip(8);
    const std::uint32_t block_count = in.u32();
    for (std::uint32_t i = 0; i < block_count; ++i) {
      if (!read_block()) return false;
    }
    return true;
  }

  // A block of an unknown type is not stepped over: the next one is read from its
  // body.
  bool read_block() {
    const char* const bytes = m_in.take(block_head_size);
    if (bytes == nullptr) return false;
    native::WireIn in(bytes);
    const std::uint32_t type = in.u32();
    const std::uint32_t size = in.u32();
    if (size < block_head_size) return false;
    if (type == reel_block) return read_reels(size - block_head_size);
    if (is_skipped_block(type)) m_in.skip(size - block_head_size);
    return true;
  }

  // A new list takes the place of an earlier one. What is left behind the last
  // whole record is not skipped.
  bool read_reels(std::uint32_t size) {
    if (m_edl.m_reels != nullptr) delete_all(*m_edl.m_reels);
    m_edl.m_reels = std::make_unique<CObList>(10);
    for (std::size_t i = 0; i < size / native::edl2_reel_record_size; ++i) {
      const char* const bytes = m_in.take(native::edl2_reel_record_size);
      if (bytes == nullptr) return false;
      auto* const reel = new CM2ReelInfo;
      m_edl.m_reels->AddTail(reel);
      std::copy_n(bytes, native::edl2_reel_record_size, reel->m_bytes.begin());
    }
    return true;
  }

  [[nodiscard]] std::uint64_t event_count(std::size_t channels) const {
    const auto begin = m_head.event_counts.begin();
    return std::accumulate(begin, begin + static_cast<std::ptrdiff_t>(channels), std::uint64_t{0});
  }

  bool read_events() {
    m_in.seek(native::edl2_head_size);
    const bool direct = m_edl.settings().native_direct_channels != 0;
    for (unsigned channel = 0; channel < channel_count; ++channel) {
      for (std::uint32_t i = 0; i < m_edl.m_file_counts[channel]; ++i) {
        const char* const bytes = m_in.take(native::edl2_record_size);
        if (bytes == nullptr) return false;
        auto entry = std::make_unique<CGenericEdlEntry>(&m_edl);
        const result_code filled =
            fill_entry(*entry, native::read_edl2_event(bytes), channel, direct);
        if (filled == result::import_complete && accepts(*entry)) {
          m_edl.m_channel_lists[channel]->AddTail(entry.release());
        }
      }
    }
    return true;
  }

  bool read_pq() {
    m_in.seek(native::edl2_head_size +
              native::edl2_record_size * event_count(m_head.event_counts.size()));
    CObList* const list = m_edl.get_pq_list();
    for (std::uint32_t i = 0; i < m_edl.m_pq_count; ++i) {
      const char* const bytes = m_in.take(native::edl2_record_size);
      if (bytes == nullptr) return false;
      auto entry = std::make_unique<CGenericPQEntry>();
      if (native::read_edl2_pq(bytes, *entry) && list != nullptr) list->AddTail(entry.release());
    }
    return true;
  }

  CMarlo2Edl& m_edl;
  native::FileInput m_in;
  native::Edl2Head m_head;
};

result_code CMarlo2Edl::import_edl(const wide_char* path) {
  clear_channels();
  host().message_boxes().note_place(path, 0);
  CFile file;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone)) return result::not_opened;
  result_code read = result::damaged;
  try {
    read = Reader(*this, file).read();
  } catch (const CFileException&) {
    read = result::damaged;
  }
  if (read == result::import_complete && get_generic_entry_list() != nullptr) {
    merge_channels();
  } else {
    delete_channels();
  }
  return read;
}

bool CMarlo2Edl::accepts(const CGenericEdlEntry& /*entry*/) {
  return true;
}

// By destination in, the lowest channel first among equals. Channels are taken as
// they stand, in order of time or not.
void CMarlo2Edl::merge_channels() {
  CObList& entries = *get_generic_entry_list();
  std::uint16_t event_number = 0;
  for (;;) {
    CObList* earliest = nullptr;
    std::int64_t earliest_in = 0;
    for (const auto& list : m_channel_lists) {
      if (list->IsEmpty()) continue;
      const std::int64_t in = static_cast<const CGenericEdlEntry*>(list->GetHead())->dest_in;
      if (earliest != nullptr && in >= earliest_in) continue;
      earliest = list.get();
      earliest_in = in;
    }
    if (earliest == nullptr) return;
    auto* const entry = static_cast<CGenericEdlEntry*>(earliest->RemoveHead());
    entry->event_number = ++event_number;
    entries.AddTail(entry);
  }
}
