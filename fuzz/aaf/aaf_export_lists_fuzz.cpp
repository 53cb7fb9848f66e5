// Any bytes as an edit list with audio, exported to an AAF file and imported again. What
// was written must be read, and a list of sane times must come back with as many edits.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_edl_file.h"
#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_locator_entry.h"
#include "fuzz/aaf/export_fuzz_host.h"

namespace {

constexpr std::uint16_t stream_limit = 6;
constexpr int most_entries = 40;
constexpr std::int64_t sane_time = std::int64_t{1} << 30;

class Bytes {
 public:
  explicit Bytes(std::span<const std::uint8_t> data) : m_data(data) {}
  [[nodiscard]] bool is_empty() const { return m_data.empty(); }

  std::uint64_t number(std::size_t count) {
    std::uint64_t value = 0;
    for (; count > 0 && !m_data.empty(); --count, m_data = m_data.subspan(1))
      value = value << 8 | m_data.front();
    return value;
  }
  // Mostly a small one; all 64 bits when it begins with 255.
  std::int64_t time() {
    const std::uint64_t head = number(1);
    return static_cast<std::int64_t>(head == 255 ? number(8) : head << 8 | number(1));
  }

 private:
  std::span<const std::uint8_t> m_data;
};

void add_entry(CGenericEdl& list, Bytes& bytes, CAudCnt& audio) {
  auto* const entry = new CGenericEdlEntry(&list);
  list.get_generic_entry_list()->AddTail(entry);
  const std::uint64_t form = bytes.number(1);
  entry->audio_content = form % 16 == 15 ? nullptr : &audio;
  const auto streams = static_cast<int>(form / 16 % 3);
  entry->set_no_streams(streams);
  const std::uint64_t first = bytes.number(1) % (stream_limit + 1);
  for (int i = 0; i < streams; ++i) {
    // The last stands for one that goes nowhere.
    entry->set_stream(i, first == stream_limit
                             ? no_stream
                             : static_cast<unsigned short>(first + static_cast<unsigned>(i)));
  }
  entry->dest_in = bytes.time();
  entry->dest_out = entry->dest_in + bytes.time() % sane_time;
  entry->source_in = bytes.time();
  entry->fade_in_length = bytes.time();
  entry->fade_out_length = bytes.time();
  entry->gain_left = std::bit_cast<float>(static_cast<std::uint32_t>(bytes.number(4)));
  const std::uint64_t source = bytes.number(1);
  entry->first_channel = source % 8 == 7 ? 65535 : static_cast<std::uint16_t>(source % 2);
  entry->channel_offset = static_cast<std::uint16_t>(source / 8 % 2);
  entry->no_channels = static_cast<std::uint16_t>(source / 16 % 4);
  entry->source_timestamp =
      source / 64 == 3 ? time_not_given : static_cast<std::int64_t>(source / 64);
  const std::u16string name(1, static_cast<wide_char>(u'a' + source % 4));
  entry->set_clip_name(name.c_str());
  entry->set_file_path((u"//" + name).c_str());
}

void add_automation(CGenericEdl& list, Bytes& bytes) {
  auto* const chunk = new CGenericAutomationChunk;
  list.get_automation_list()->AddTail(chunk);
  const std::uint64_t kind = bytes.number(1);
  chunk->type = static_cast<std::uint16_t>(kind % 4);
  chunk->channel = static_cast<std::uint16_t>(kind / 4 % stream_limit);
  chunk->points = new CObList(10);
  for (std::uint64_t count = kind / 32; count > 0 && !bytes.is_empty(); --count) {
    auto* const point = new CGenericAutomationEntry;
    chunk->points->AddTail(point);
    point->time = bytes.time();
    point->value = bytes.time();
  }
}

void add_locator(CGenericEdl& list, Bytes& bytes) {
  auto* const locator = new CGenericLocatorEntry;
  list.get_locator_list()->AddTail(locator);
  locator->name = bytes.number(1) % 2 == 0 ? u"LEFT_LOCATOR\t\t\t" : u"RIGHT_LOCATOR\t\t";
  locator->time = bytes.time();
}

void fill(CGenericEdl& list, Bytes& bytes, CAudCnt& audio) {
  for (int count = 0; count < most_entries && !bytes.is_empty(); ++count) {
    switch (bytes.number(1) % 8) {
      case 6:
        add_automation(list, bytes);
        break;
      case 7:
        add_locator(list, bytes);
        break;
      default:
        add_entry(list, bytes, audio);
    }
  }
}

// Clips that a written list must have, or -1 when its times are not sane.
int clips_of(const CGenericEdl& list) {
  int clips = 0;
  std::int64_t before = 0;
  const CObList& entries = *list.get_generic_entry_list();
  for (POSITION at = entries.GetHeadPosition(); at != nullptr;) {
    const auto& entry = *static_cast<const CGenericEdlEntry*>(entries.GetNext(at));
    const auto is_sane = [](std::int64_t time) { return time >= 0 && time < sane_time; };
    if (entry.audio_content == nullptr) continue;
    // In the order of the timeline, as every list must be.
    if (!is_sane(entry.dest_in) || !is_sane(entry.dest_out) || !is_sane(entry.source_in) ||
        entry.dest_in < before)
      return -1;
    before = entry.dest_in;
    if (entry.dest_out > entry.dest_in && entry.get_stream(0) != no_stream) {
      clips += entry.no_streams;
    }
  }
  return clips;
}

int entries_of(const CGenericEdl& list) {
  return static_cast<int>(list.get_generic_entry_list()->GetCount());
}

void require(bool holds) {
  if (!holds) std::abort();
}

void set_rates(CGenericEdl& list, std::uint8_t sample_rate, std::uint8_t frame_rate) {
  EDL_DETAILS details;
  details.sample_rate_index = sample_rate;
  details.frame_rate = frame_rate;
  list.set_edl_details(&details);
}

void load_library() {
  static const bool loaded = load_aaf_library(text_from_utf8(EDL_AAF_LIBRARY).c_str()) == 0;
  require(loaded);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzzing::ExportHost host;
  load_library();
  Bytes bytes({data, size});
  const std::uint64_t choices = bytes.number(1);
  host.choices.aifc = (choices & 1) != 0;
  host.choices.embed = (choices & 2) == 0;
  host.choices.fixed_gain = (choices & 4) != 0;
  host.choices.gain_automation = (choices & 8) != 0;
  host.choices.pan_automation = (choices & 16) != 0;
  host.corrections_on = (choices & 32) == 0;
  const auto frame_rate = static_cast<std::uint8_t>(choices / 64 + 1);
  fuzzing::LittleAudio audio;
  CGenericEdl list;
  set_rates(list, 2, frame_rate);
  fill(list, bytes, audio);
  CAAFEdlFile exporter(&list, 0);
  set_rates(exporter, 2, frame_rate);
  const std::u16string path = host.file("x.aaf");
  host.forget_files();
  const result_code written = exporter.export_edl(path.c_str(), 0);
  require(std::filesystem::exists(utf8_from_text(path)) == (written == result::done));
  const int clips = clips_of(list);
  if (written != result::done || clips < 0 || !host.corrections_on) return 0;
  CAAFEdlFile importer(nullptr, 0);
  require(importer.import_edl(path.c_str()) == result::import_complete);
  require(entries_of(importer) == clips);
  return 0;
}
