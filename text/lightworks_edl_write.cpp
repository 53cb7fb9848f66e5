// Writing the table.
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "host/rates.h"
#include "host/text_format.h"
#include "text/event_line.h"
#include "text/lightworks_edl.h"

namespace {

// The texts of the head are the same in every file.
constexpr std::array<std::u16string_view, 13> head_lines = {
    u"\"OLEDB:Rev 1\"\n",
    u"\"EDLGEN:Rev 4\"\n",
    u"\"variant:us_film\"\n",
    u"\"edit_cookie:INVALID\"\n",
    u"\"project_name:INVALID\"\n",
    u"\"edit_name:marlo\"\n",
    u"\"modification_time:896478818\"\n",
    u"\"edit_date:14:53, 29 May 1998\"\n",
    u"\"edit label_std:P\"\n",
    u"\"OLEDB\"\n",
    u"\"3\",\"12\",\"12\",\"32\",\"3\",\"12\",\"12\",\"6\",\"6\",\"6\",\"2\",\"8\",\"8\","
    u"\"20\",\"24\",\"128\"\n",
    u"\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\","
    u"\"text\",\"text\",\"text\",\"text\",\"text\",\"text\",\"text\"\n",
    u"\"edit_channel\",\"edit_in\",\"edit_out\",\"src_reelid\",\"src_channel\",\"src_in\","
    u"\"src_out\",\"src_standard\",\"level_in\",\"level_out\",\"fx_op\",\"src_index\","
    u"\"ref_index\",\"name\",\"scene\",\"description\"\n",
};

constexpr std::size_t time_width = 12;
constexpr std::size_t level_width = 6;
// Seven characters of a name and the terminator.
constexpr int name_size = 8;

std::u16string filled(std::u16string text, std::size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), u'0');
  return text;
}

std::u16string time_column(std::int64_t samples, const TimeBase& base) {
  const std::uint32_t rate = samples_per_second(base.sample_rate_index);
  const double seconds = rate == 0 ? 0.0 : static_cast<double>(samples) / rate;
  return filled(fixed_point(seconds, 6), time_width).substr(0, time_width);
}

std::u16string level_column(float level) {
  const std::u16string text = filled(fixed_point(static_cast<double>(level), 3), level_width);
  return text.size() > level_width ? u"00000000" : text;
}

std::u16string_view code_column(std::uint32_t type) {
  switch (type) {
    case lightworks::fade_in:
      return u"DI";
    case lightworks::fade_out:
      return u"DO";
    case lightworks::body_after_fade_in:
      return u"CI";
    case lightworks::body_before_fade_out:
      return u"CO";
    case lightworks::body_between_fades:
      return u"CB";
    default:
      return u"CT";
  }
}

constexpr std::array<std::u16string_view, 5> standards = {u"FR24.0", u"PR25.0", u"NN", u"ND",
                                                          u"FR30.0"};

// The texts of a line of the table, without quotes; scene and description are empty.
struct Line {
  std::u16string edit_channel;
  std::int64_t edit_in = 0;
  std::int64_t edit_out = 0;
  std::u16string reel;
  std::u16string source_channel;
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  float level_in = 0;
  float level_out = 0;
  std::uint32_t type = lightworks::plain;
  std::u16string index;
  std::u16string name;
};

std::u16string text_of(const Line& line, const TimeBase& base) {
  const std::u16string source_out = time_column(line.source_out, base);
  // A rate of no standard leaves the column with what stood in the one before.
  const std::u16string_view standard = base.frame_rate_index < standards.size()
                                           ? standards[base.frame_rate_index]
                                           : std::u16string_view(source_out);
  std::u16string text;
  const auto add = [&text](std::u16string_view column) {
    text.append(u"\"").append(column).append(u"\",");
  };
  add(line.edit_channel);
  add(time_column(line.edit_in, base));
  add(time_column(line.edit_out, base));
  add(line.reel);
  add(line.source_channel);
  add(time_column(line.source_in, base));
  add(source_out);
  add(standard);
  add(level_column(line.level_in));
  add(level_column(line.level_out));
  add(code_column(line.type));
  add(line.index);
  add(line.index);
  add(line.name);
  return text.append(u"\"\",\"\"\n");
}

std::u16string audio_channel(int number) {
  return u"A" + decimal(number, 2);
}

// Samples by which an edit runs on under the next one of its stream; in single
// precision, as the marks in older lists were made.
float overlap_of(const CGenericEdlEntry& first, const CGenericEdlEntry& second) {
  if (first.get_stream(0) != second.get_stream(0)) return 0;
  return static_cast<float>(minus(first.dest_out, second.dest_in));
}

std::int64_t whole_samples(float samples) {
  constexpr float limit = 9.2e18F;
  return static_cast<std::int64_t>(std::min(samples, limit));
}

// A moment of an edit, on the timeline and in the source.
struct Point {
  std::int64_t dest;
  std::int64_t source;
};

struct Segment {
  Point from;
  Point to;
  float level_in;
  float level_out;
  std::uint32_t type;
};

// The segments as which an edit is written, one to three.
std::vector<Segment> segments_of(const CGenericEdlEntry& entry, std::uint32_t type) {
  const float level = entry.gain_left;
  const Point start{entry.dest_in, entry.source_in};
  const Point end{entry.dest_out, entry.source_out};
  const Point faded_in{plus(start.dest, entry.fade_in_length),
                       plus(start.source, entry.fade_in_length)};
  const Point fading_out{minus(end.dest, entry.fade_out_length),
                         minus(end.source, entry.fade_out_length)};
  const Segment fade_in{start, faded_in, 0, level, lightworks::fade_in};
  const Segment fade_out{fading_out, end, level, 0, lightworks::fade_out};
  switch (type) {
    case lightworks::body_after_fade_in:
      return {fade_in, {faded_in, end, level, level, type}};
    case lightworks::body_before_fade_out:
      return {{start, fading_out, level, level, type}, fade_out};
    case lightworks::body_between_fades:
      return {fade_in, {faded_in, fading_out, level, level, type}, fade_out};
    default:
      return {{start, end, level, level, lightworks::plain}};
  }
}

void take_segment(CGenericEdlEntry& entry, const Segment& segment) {
  entry.dest_in = segment.from.dest;
  entry.dest_out = segment.to.dest;
  entry.source_in = segment.from.source;
  entry.source_out = segment.to.source;
  entry.level_in = segment.level_in;
  entry.level_out = segment.level_out;
  entry.transition_type = segment.type;
}

// Ends `first` and starts `second` in the middle of their overlap, each unless that
// would leave nothing of it.
void cut_at_midpoint(CGenericEdlEntry& first, CGenericEdlEntry& second, float overlap) {
  const std::int64_t half = whole_samples(overlap * 0.5F + 0.5F);
  if (first.dest_in < minus(first.dest_out, half)) {
    first.dest_out = minus(first.dest_out, half);
    first.source_out = minus(first.source_out, half);
  }
  if (plus(second.dest_in, half) < second.dest_out) {
    second.dest_in = plus(second.dest_in, half);
    second.source_in = plus(second.source_in, half);
  }
}

template <class Do>
void for_each_pair(const CObList& list, Do act) {
  if (list.IsEmpty()) return;
  POSITION at = list.GetHeadPosition();
  auto* first = static_cast<CGenericEdlEntry*>(list.GetNext(at));
  while (at != nullptr) {
    auto* const second = static_cast<CGenericEdlEntry*>(list.GetNext(at));
    act(*first, *second);
    first = second;
  }
}

}  // namespace

result_code CLightworksEdl::export_edl(const wide_char* path, int /*option*/) {
  CTextFile file(line_file_size);
  set_output_incomplete(0);
  if (!file.Open(path, CFile::modeCreate | CFile::modeWrite)) return result::not_done;
  static_cast<void>(write_header(file, path));
  static_cast<void>(write_black_line(file));
  split_streams();
  order_by_channel();
  if (settings().force_default_fade_curves == 0) {
    mark_crossfades();
  } else {
    cut_crossfades();
  }
  for (POSITION at = m_by_channel.GetHeadPosition(); at != nullptr;) {
    static_cast<void>(write_event(file, static_cast<CGenericEdlEntry*>(m_by_channel.GetNext(at))));
  }
  static_cast<void>(write_footer(file, path));
  file.close_quietly();
  set_output_incomplete(file.write_failed() ? 1 : 0);
  return result::done;
}

result_code CLightworksEdl::write_header(CTextFile& file, const wide_char* /*path*/) {
  for (const std::u16string_view line : head_lines) {
    if (file.add_text(line) == 0) return result::line_full;
    file.flush_line();
  }
  return result::done;
}

result_code CLightworksEdl::write_footer(CTextFile& /*file*/, const wide_char* /*path*/) {
  return result::done;
}

// Black picture under the whole list.
result_code CLightworksEdl::write_black_line(CTextFile& file) {
  Line line;
  line.edit_channel = line.source_channel = u"V01";
  line.reel = u"__BLACK";
  line.level_out = 1;
  line.index = u"EZ0Z0001";
  if (const CObList* const list = get_generic_entry_list(); list != nullptr && !list->IsEmpty()) {
    line.edit_in = static_cast<CGenericEdlEntry*>(list->GetHead())->dest_in;
    line.edit_out = static_cast<CGenericEdlEntry*>(list->GetTail())->dest_out;
    line.source_out = minus(line.edit_out, line.edit_in);
  }
  const result_code code = text::add_column(file, text_of(line, time_base()));
  return code == result::done ? file.flush_line() : code;
}

// Each further stream of an edit becomes a mono edit behind it. They all play the
// source channel behind the first.
void CLightworksEdl::split_streams() {
  CObList* const list = get_generic_entry_list();
  for (POSITION at = list == nullptr ? nullptr : list->GetHeadPosition(); at != nullptr;) {
    const POSITION here = at;
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    const int streams = entry->no_streams;
    if (streams < 2) continue;
    const std::uint16_t first = entry->get_stream(0);
    entry->set_no_streams(1);
    entry->set_stream(0, first);
    entry->no_channels = 1;
    for (int i = 1; i < streams; ++i) {
      // Under the owner of the original: the copy stays on the list when the object
      // that exports is gone.
      auto copy = std::make_unique<CGenericEdlEntry>(entry->owner, entry);
      copy->set_stream(0, static_cast<std::uint16_t>(first + i));
      copy->first_channel = static_cast<std::uint16_t>(entry->first_channel + 1);
      list->InsertAfter(here, copy.get());
      static_cast<void>(copy.release());
    }
  }
}

void CLightworksEdl::order_by_channel() {
  m_by_channel.RemoveAll();
  const CObList* const list = get_generic_entry_list();
  if (list == nullptr) return;
  std::vector<CGenericEdlEntry*> entries;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;)
    entries.push_back(static_cast<CGenericEdlEntry*>(list->GetNext(at)));
  std::stable_sort(entries.begin(), entries.end(),
                   [](const CGenericEdlEntry* a, const CGenericEdlEntry* b) {
                     return a->get_stream(0) < b->get_stream(0);
                   });
  for (CGenericEdlEntry* entry : entries)
    m_by_channel.AddTail(entry);
}

void CLightworksEdl::mark_crossfades() {
  for_each_pair(m_by_channel, [](CGenericEdlEntry& first, CGenericEdlEntry& second) {
    const float overlap = overlap_of(first, second);
    if (overlap <= 0) return;
    first.transition_type = first.transition_type == lightworks::body_after_fade_in
                                ? lightworks::body_between_fades
                                : lightworks::body_before_fade_out;
    first.fade_out_length = second.fade_in_length = whole_samples(overlap);
    second.transition_type = lightworks::body_after_fade_in;
  });
}

void CLightworksEdl::cut_crossfades() {
  for (POSITION at = m_by_channel.GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericEdlEntry*>(m_by_channel.GetNext(at));
    entry->level_in = entry->level_out = entry->gain_left;
  }
  for_each_pair(m_by_channel, [](CGenericEdlEntry& first, CGenericEdlEntry& second) {
    const float overlap = overlap_of(first, second);
    if (overlap > 0) cut_at_midpoint(first, second, overlap);
  });
}

// The entry takes the values of each segment as it is written, and keeps the last.
result_code CLightworksEdl::write_event(CTextFile& file, CGenericEdlEntry* entry) {
  const std::uint32_t type =
      settings().force_default_fade_curves == 0 ? entry->transition_type : lightworks::plain;
  for (const Segment& segment : segments_of(*entry, type)) {
    take_segment(*entry, segment);
    if (const result_code code = write_line(file, *entry); code != result::done) return code;
  }
  return result::done;
}

result_code CLightworksEdl::write_line(CTextFile& file, const CGenericEdlEntry& entry) const {
  wide_char reel[name_size];
  wide_char name[name_size];
  entry.get_reel_name(reel, name_size);
  entry.get_source_reel_name(name, name_size);
  const Line line{audio_channel(entry.get_stream(0) + 1),
                  entry.dest_in,
                  entry.dest_out,
                  reel,
                  audio_channel(entry.first_channel + 1),
                  entry.source_in,
                  entry.source_out,
                  entry.level_in,
                  entry.level_out,
                  entry.transition_type,
                  std::u16string(field_text(entry.src_index)),
                  name};
  const result_code code = text::add_column(file, text_of(line, time_base()));
  return code == result::done ? file.flush_line() : code;
}
