// Writes the EDL2 file: finds a channel for every edit, then writes channel by
// channel.
#include <algorithm>
#include <array>

#include "core/error_report.h"
#include "core/generic_edl_entry.h"
#include "core/generic_pq_entry.h"
#include "host/framework/file.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/rates.h"
#include "native/channel_order.h"
#include "native/edl2_records.h"
#include "native/entry_walk.h"
#include "native/file_output.h"
#include "native/marlo2_edl.h"

namespace {

// Nothing was wrong.
constexpr unsigned short no_fault = 0;

bool is_written_depth(std::uint8_t bits) {
  return bits == 16 || bits == 18 || bits == 20 || bits == 24;
}

std::uint32_t count_of(const CObList* list) {
  return list == nullptr ? 0 : static_cast<std::uint32_t>(list->GetCount());
}

}  // namespace

// Finds a channel for each stream of each edit.
class CMarlo2Edl::Allocation {
 public:
  // With four streams or fewer, each has two channels: streams 0 and 1 play on
  // channels 0 and 1, 2 and 3 on 4 and 5, and what overlaps there goes two channels
  // on.
  explicit Allocation(unsigned highest_stream) : m_fold(highest_stream < 4) {}

  // The row of the error table that refuses the entry, or no_fault.
  [[nodiscard]] unsigned short add(CGenericEdlEntry& entry) {
    if (entry.no_streams != 1 && entry.no_streams != 2) return error_index::bad_stream_count;
    if (entry.no_streams == 2 && entry.get_stream(0) % 2 == 1) {
      return error_index::odd_stereo_start;
    }
    for (int i = 0; i < entry.no_streams; ++i) {
      const unsigned stream = entry.get_stream(i);
      const unsigned channel = m_fold && stream >= 2 ? stream + 2 : stream;
      if (channel >= m_channels.size()) return error_index::too_many_streams;
      if (!insert(channel, entry) && !(m_fold && insert(channel + 2, entry))) {
        return error_index::overlapping_edits;
      }
    }
    return no_fault;
  }

  [[nodiscard]] const native::ChannelOrder& channel(std::size_t i) const { return m_channels[i]; }

 private:
  bool insert(unsigned channel, CGenericEdlEntry& entry) {
    return channel < m_channels.size() && m_channels[channel].insert(&entry);
  }

  bool m_fold;
  std::array<native::ChannelOrder, channel_count> m_channels;
};

class CMarlo2Edl::Writer {
 public:
  Writer(const CMarlo2Edl& edl, CFile& file) : m_edl(edl), m_out(file) {}

  // 101 or 9. May raise CFileException.
  [[nodiscard]] result_code write() {
    native::Edl2Head head;
    if (!fill_head(head)) return result::refused;
    native::write_edl2_head(append(native::edl2_head_size), head);
    for (unsigned channel = 0; channel < channel_count; ++channel)
      write_channel(*m_edl.m_channel_lists[channel], channel);
    if (const CObList* const list = m_edl.get_pq_list(); list != nullptr) write_pq(*list);
    m_out.write();
    return result::done;
  }

 private:
  bool fill_head(native::Edl2Head& head) const {
    const TimeBase base = m_edl.time_base();
    const std::uint32_t rate = samples_per_second(base.sample_rate_index);
    if (rate > native::edl2_most_samples_per_second) return false;
    const std::uint8_t depth = m_edl.bit_depth();
    head.sample_rate_hz = static_cast<std::uint16_t>(rate);
    head.bit_depth = is_written_depth(depth) ? depth : std::uint16_t{0};
    head.frame_rate = base.frame_rate_index < frame_rate_count
                          ? static_cast<std::uint16_t>(base.frame_rate_index + 1)
                          : std::uint16_t{0};
    head.event_counts = m_edl.m_channel_counts;
    head.pq_count = count_of(m_edl.get_pq_list());
    return true;
  }

  void write_channel(const CObList& entries, unsigned channel) {
    native::for_each_entry(entries, [&](const CGenericEdlEntry& entry) {
      native::write_edl2_event(append(native::edl2_record_size), entry,
                               native::edl2_layout(entry, channel));
      m_out.write_when_full();
    });
  }

  void write_pq(const CObList& entries) {
    for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
      native::write_edl2_pq(append(native::edl2_record_size),
                            *static_cast<const CGenericPQEntry*>(entries.GetNext(at)));
      m_out.write_when_full();
    }
  }

  char* append(std::size_t size) {
    std::string& bytes = m_out.bytes();
    bytes.resize(bytes.size() + size);
    return bytes.data() + bytes.size() - size;
  }

  const CMarlo2Edl& m_edl;
  native::FileOutput m_out;
};

result_code CMarlo2Edl::export_edl(const wide_char* path, int /*flag*/) {
  clear_channels();
  host().message_boxes().note_place(path, 0);
  if (const unsigned short fault = allocate_channels(); fault != no_fault) {
    clear_channels();
    report_edl_conversion_error(fault, 0, no_event_number, 1);
    return result::refused;
  }
  CFile file;
  if (!file.Open(path, CFile::modeCreate | CFile::modeWrite | CFile::shareDenyNone)) {
    return result::not_opened;
  }
  const result_code written = Writer(*this, file).write();
  file.Close();
  return written;
}

unsigned short CMarlo2Edl::allocate_channels() {
  if (highest_stream() >= channel_count) return error_index::too_many_streams;
  const CObList* const entries = get_generic_entry_list();
  if (entries == nullptr) return no_fault;
  Allocation allocation(highest_stream());
  for (POSITION at = entries->GetHeadPosition(); at != nullptr;) {
    auto& entry = *static_cast<CGenericEdlEntry*>(entries->GetNext(at));
    if (const unsigned short fault = allocation.add(entry); fault != no_fault) return fault;
  }
  for (std::size_t i = 0; i < channel_count; ++i) {
    for (CGenericEdlEntry* const entry : allocation.channel(i).entries())
      m_channel_lists[i]->AddTail(entry);
    m_channel_counts[i] = static_cast<std::uint32_t>(allocation.channel(i).size());
  }
  return no_fault;
}

// The byte of the EDL's details beside its rates; where this object has none, the
// root's.
std::uint8_t CMarlo2Edl::bit_depth() const {
  if (edl_word() != rate_not_set) return edl_word();
  EDL_DETAILS details;
  root()->get_edl_details(&details);
  return details.edl_word;
}
