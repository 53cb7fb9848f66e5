#include "text/marlo_text_edl.h"

#include <algorithm>
#include <array>

#include "core/generic_edl_entry.h"
#include "host/rates.h"
#include "host/text_format.h"
#include "text/event_line.h"
#include "text/line_cursor.h"

namespace {

constexpr std::u16string_view first_head_line =
    u"Marlo v2.1 Text EDL (c) 1991-1994 Karsten Sound & Film Ltd";

// The rate words by index.
constexpr std::array<std::u16string_view, frame_rate_count> frame_rate_words = {
    u"RATE=24", u"RATE=25", u"RATE=29.97", u"RATE=29.97 DROP", u"RATE=30",
};
constexpr std::array<std::u16string_view, sample_rate_count> sample_rate_words = {
    u"RATE=32",  u"RATE=44.1",    u"RATE=48",  u"RATE=44.056",  u"RATE=47.952",
    u"RATE=64",  u"RATE=88.2",    u"RATE=96",  u"RATE=88.112",  u"RATE=95.904",
    u"RATE=128", u"RATE=176.400", u"RATE=192", u"RATE=176.224", u"RATE=191.808",
};
constexpr std::u16string_view unknown_rate = u"RATE=UNKNOWN";

template <std::size_t size>
std::u16string_view rate_word(const std::array<std::u16string_view, size>& words,
                              std::uint8_t index) {
  return index < size ? words[index] : unknown_rate;
}

// The index of a word, the count of words for one that is none.
template <std::size_t size>
std::size_t rate_index(const std::array<std::u16string_view, size>& words,
                       std::u16string_view word) {
  return static_cast<std::size_t>(std::find(words.begin(), words.end(), word) - words.begin());
}

bool read_to_line_with(CTextFile& file, std::u16string_view text) {
  while (file.get_line() != 0) {
    if (std::u16string_view(file.line(), text_length(file.line())).find(text) !=
        std::u16string_view::npos) {
      return true;
    }
  }
  return false;
}

// The rate of a line "FRAME RATE=25": its second word.
CString second_word(CTextFile& file) {
  CString first;
  CString second;
  file.next_word(first);
  file.next_word(second);
  return second;
}

constexpr std::size_t short_name_length = 8;

// What stands in front of the first blank of the clip name's first eight characters,
// padded; a name without a blank there is lost. The source channel goes in behind,
// where there are two places for it.
std::u16string short_name(const CGenericEdlEntry& entry) {
  std::u16string name(field_text(entry.clip_name).substr(0, short_name_length));
  const std::size_t blank = name.find(u' ');
  name.resize(blank == std::u16string::npos ? 0 : blank);
  name.resize(short_name_length, u' ');
  if (entry.source_channel == 0 || !is_white_space(name[short_name_length - 2]) ||
      !is_white_space(name[short_name_length - 1])) {
    return name;
  }
  const auto end = std::find_if(name.begin(), name.end(), is_white_space);
  name.erase(end, name.end());
  name += decimal(static_cast<std::int32_t>(entry.source_channel), 2);
  name.resize(short_name_length, u' ');
  return name;
}

// Streams of the three channel words; others leave one stream that the second line
// puts right.
void take_channels(std::u16string_view word, CGenericEdlEntry& entry) {
  const bool both = word == u"1+2";
  const std::uint16_t count = both ? 2 : 1;
  entry.set_no_streams(count);
  entry.raise_source_streams(count);
  entry.no_channels = count;
  entry.channel_offset = 0;
  if (both || word == u"1") entry.set_stream(0, 0);
  if (word == u"2") entry.set_stream(0, 1);
  if (both) entry.set_stream(1, 1);
}

// Channel, name, "1,2", fades, level and source reel. `line` stands at the channel.
void take_second_line(LineCursor& line, CGenericEdlEntry& entry) {
  const std::u16string_view channel = line.next();
  if (!all_digits(channel)) return;
  for (int i = 0; i < entry.no_streams; ++i) {
    entry.set_stream(i, static_cast<std::uint16_t>(digits_value(channel) - 1 + i));
  }
  entry.set_clip_name(line.next());
  line.next();
  entry.fade_in_length = entry.timecode_to_samples(line.next());
  entry.fade_out_length = entry.timecode_to_samples(line.next());
  entry.gain_left = level_value(line.next());
  entry.set_source_reel_name(line.next());
}

// Eleven characters of a reel name and the terminator.
constexpr int reel_column_size = 12;

std::u16string first_line(const CGenericEdlEntry& entry) {
  wide_char reel[reel_column_size];
  entry.get_reel_name(reel, reel_column_size);
  std::u16string line = decimal(entry.event_number, 4) + u"\t\t";
  line.append(reel[0] == u'\0' ? std::u16string_view(u"default") : field_text(reel));
  line.append(u"    \t\t").append(decimal(entry.get_stream(0) + 1));
  if (entry.no_streams != 1) line.append(u"+").append(decimal(entry.get_stream(1) + 1));
  line.append(u"\t\t");
  for (const std::int64_t time :
       {entry.source_in, entry.source_out, entry.dest_in, entry.dest_out}) {
    line.append(text::TimeText(entry, time).view()).append(u"\t\t");
  }
  return line.append(u"\\\n");
}

std::u16string second_line(const CGenericEdlEntry& entry) {
  const std::u16string name = short_name(entry);
  std::u16string line = decimal(entry.first_channel + 1) + u"\t";
  line.append(name).append(u"\t1,2\t");
  for (const std::int64_t length : {entry.fade_in_length, entry.fade_out_length}) {
    line.append(text::TimeText(entry, length).view()).append(u"\t");
  }
  line.append(fixed_point(static_cast<double>(entry.gain_left), 2)).append(u"dB\t");
  return line.append(name).append(u"\n");
}

}  // namespace

CMarloTextEdl::CMarloTextEdl(CGenericEdl* parent, int interactive)
    : CTextEdl(parent, interactive) {}

int CMarloTextEdl::find_first_event(CTextFile& file) {
  if (!read_to_line_with(file, first_head_line) || !read_to_line_with(file, u"FRAME RATE=")) {
    return 0;
  }
  // Words end at the blank, so a drop frame rate is read as the one without drop.
  const std::size_t frame_rate = rate_index(frame_rate_words, second_word(file).view());
  if (frame_rate < frame_rate_words.size()) {
    set_frame_rate(static_cast<std::uint8_t>(frame_rate));
  }
  if (!read_to_line_with(file, u"SAMPLE RATE=")) return 0;
  const std::size_t sample_rate = rate_index(sample_rate_words, second_word(file).view());
  if (sample_rate == sample_rate_words.size()) return 0;
  set_sample_rate_index(static_cast<std::uint8_t>(sample_rate));
  return 1;
}

result_code CMarloTextEdl::write_header(CTextFile& file, const wide_char* /*path*/) {
  const TimeBase base = time_base();
  std::u16string head(first_head_line);
  head.append(u"\nFRAME ").append(rate_word(frame_rate_words, base.frame_rate_index));
  head.append(u"\nSAMPLE ").append(rate_word(sample_rate_words, base.sample_rate_index));
  if (file.add_text(head.append(u"\n\n")) == 0) return result::line_full;
  return file.flush_line();
}

result_code CMarloTextEdl::write_event(CTextFile& file, CGenericEdlEntry* entry) {
  for (const std::u16string& line : {first_line(*entry), second_line(*entry)}) {
    if (file.add_text(line) != 0) file.flush_line();
  }
  return result::done;
}

int CMarloTextEdl::is_ignored_event(const wide_char* /*text*/) {
  return 0;
}

int CMarloTextEdl::is_audio_event(const wide_char* /*text*/) {
  return 1;
}

int CMarloTextEdl::is_video_event(const wide_char* /*text*/) {
  return 0;
}

result_code CMarloTextEdl::parse_video_event(CGenericEdlVideoEntry* /*entry*/,
                                             const wide_char* /*text*/) {
  return result::not_done;
}

result_code CMarloTextEdl::parse_event(CGenericEdlEntry* entry, const wide_char* text,
                                       int* bad_time) {
  LineCursor line = cursor_of(text);
  const std::u16string_view first = line.peek();
  if (first.size() == 1) {
    CGenericEdlEntry* const last = first_entry();
    if (last != nullptr) take_second_line(line, *last);
    return result::not_done;
  }
  line.next();
  if (all_digits(first)) entry->event_number = event_number_value(first);
  if (const std::u16string_view reel = line.next(); !reel.empty()) {
    entry->set_reel_name(reel);
  }
  take_channels(line.next(), *entry);
  bool negative = false;
  read_four_times(entry, line, &negative);
  if (negative) *bad_time = 1;
  return negative ? result::negative_time : result::line_good;
}
