#include "bench/core/list_generator.h"

#include <algorithm>
#include <array>

#include "core/generic_edl_entry.h"

namespace bench {

namespace {

constexpr std::int64_t frame = 1920;
constexpr int track_pairs = 8;

// A small generator of our own: the standard's distributions differ from library to
// library.
class Random {
 public:
  std::int64_t below(std::int64_t n) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<std::int64_t>((state_ >> 20) % static_cast<std::uint64_t>(n));
  }

 private:
  std::uint64_t state_ = 20240301;
};

struct Event {
  std::int64_t dest_in;
  std::int64_t length;
  std::int64_t source_in;
  int reel;
  int number;
};

void add(CGenericEdl& edl, const Event& event, int stream, int channel, int width) {
  auto* const entry = new CGenericEdlEntry(&edl);
  entry->dest_in = event.dest_in;
  entry->dest_out = event.dest_in + event.length;
  entry->source_in = event.source_in;
  entry->source_out = event.source_in + event.length;
  entry->set_reel_name(reel_name(event.reel).c_str());
  entry->set_no_streams(width);
  for (int i = 0; i < width; ++i)
    entry->set_stream(i, static_cast<unsigned short>(stream + i));
  entry->no_channels = static_cast<std::uint16_t>(width);
  entry->first_channel = static_cast<std::uint16_t>(channel);
  entry->event_number = static_cast<std::uint16_t>(event.number % 1000);
  edl.get_generic_entry_list()->AddTail(entry);
}

}  // namespace

std::u16string reel_name(int reel) {
  std::u16string name = u"R000";
  name[2] = static_cast<wide_char>(u'0' + reel / 10 % 10);
  name[3] = static_cast<wide_char>(u'0' + reel % 10);
  return name;
}

void fill(CGenericEdl& edl, std::int64_t count, std::int64_t source_end) {
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl.set_edl_details(&details);
  edl.note_stream(2 * track_pairs - 1);
  Random random;
  std::array<std::int64_t, track_pairs> ends{};
  CObList& list = *edl.get_generic_entry_list();
  for (int number = 1; list.GetCount() < count; ++number) {
    // The pair that is free first goes on, so that starts come in order.
    auto* const end = std::min_element(ends.begin(), ends.end());
    const int stream = 2 * static_cast<int>(end - ends.begin());
    const Event event{*end, (25 + random.below(200)) * frame,
                      random.below(std::max<std::int64_t>(source_end / frame, 1)) * frame,
                      static_cast<int>(random.below(reel_count)), number};
    const std::int64_t kind = random.below(10);
    if (kind < 6 && list.GetCount() + 1 < count) {
      add(edl, event, stream, 0, 1);
      add(edl, event, stream + 1, 1, 1);
    } else {
      add(edl, event, stream, 0, kind < 9 ? 1 : 2);
    }
    *end += event.length + (random.below(3) == 0 ? random.below(50) * frame : 0);
  }
}

std::int64_t timeline_end(std::int64_t count) {
  // 1.6 entries an event, 133 frames a turn of one of the eight pairs.
  return count * 10 / 16 / track_pairs * 133 * frame;
}

}  // namespace bench
