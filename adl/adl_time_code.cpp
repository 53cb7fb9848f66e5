#include "adl/adl_time_code.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "host/corrections.h"
#include "host/ksf_time.h"
#include "host/rates.h"

namespace {

// By frame-rate index. Searched from the start, so ":" is found at 2 and "|" at 4.
constexpr std::string_view frame_rate_marks = "=.::||-";
// By sample-rate index. "!" stands where the text has no character for the rate.
constexpr std::string_view sample_rate_marks = "=|/~-!@*?&!!!!!";
constexpr char no_sample_rate_mark = '!';
// The second separator only has to be one of these.
constexpr std::string_view minute_marks = "=.:|";

constexpr std::u16string_view overflow_text = u"23:59:59.00/0000";
constexpr std::u16string_view overflow_drop_text = u"23:59:59,00/0000";

constexpr int hours_per_day = 24;

// Like all that reads a text from its front, it never looks behind a terminator.
template <class Char>
bool two_digits(const Char* text, unsigned& value) {
  const auto tens = static_cast<unsigned>(text[0]) - '0';
  if (tens >= 10) return false;
  const auto ones = static_cast<unsigned>(text[1]) - '0';
  value = tens * 10 + ones;
  return ones < 10;
}

template <class Char>
std::size_t place_of(std::string_view marks, Char mark) {
  return static_cast<std::size_t>(
      std::find_if(marks.begin(), marks.end(),
                   [mark](char c) { return static_cast<Char>(c) == mark; }) -
      marks.begin());
}

// The numbers of a text, with its rates.
struct Fields {
  unsigned hours = 0;
  unsigned minutes = 0;
  unsigned seconds = 0;
  unsigned frames = 0;
  unsigned samples = 0;
};

// Reads the form of a text from its front to its end. A digit more than a field has
// stands where a separator must be, and no separator is a digit.
template <class Char>
bool read_fields(const Char* text, Fields& fields, std::uint32_t& sample_rate,
                 std::uint8_t& frame_rate) {
  if (!two_digits(text, fields.hours)) return false;
  const std::size_t rate_mark = place_of(frame_rate_marks, text[2]);
  if (rate_mark == frame_rate_marks.size()) return false;
  frame_rate = static_cast<std::uint8_t>(rate_mark);
  if (!two_digits(text + 3, fields.minutes)) return false;
  if (place_of(minute_marks, text[5]) == minute_marks.size()) return false;
  if (!two_digits(text + 6, fields.seconds)) return false;
  if (text[8] == Char{','} || text[8] == Char{';'}) {
    frame_rate = frame_rate_2997_drop;
  } else if (text[8] != Char{'.'} && text[8] != Char{':'}) {
    return false;
  }
  if (!two_digits(text + 9, fields.frames)) return false;
  const std::size_t sample_mark = place_of(sample_rate_marks, text[11]);
  if (sample_mark == sample_rate_marks.size() ||
      sample_rate_marks[sample_mark] == no_sample_rate_mark) {
    return false;
  }
  unsigned hundreds = 0;
  unsigned units = 0;
  if (!two_digits(text + 12, hundreds) || !two_digits(text + 14, units)) return false;
  fields.samples = hundreds * 100 + units;
  sample_rate = samples_per_second(static_cast<std::uint8_t>(sample_mark));
  return true;
}

// A count of samples equal to a frame's length passes: where a frame has no whole
// number of samples, the formatter itself gives such counts.
bool is_in_range(const Fields& fields, std::uint32_t sample_rate, std::uint8_t frame_rate) {
  const std::uint32_t fps = frames_per_second(frame_rate);
  return fields.hours < hours_per_day && fields.minutes < 60 && fields.seconds < 60 &&
         fields.frames < fps &&
         (frame_rate == frame_rate_2997_drop || fields.samples <= sample_rate / fps);
}

constexpr bool is_2997(std::uint8_t frame_rate) {
  return frame_rate == frame_rate_2997_non_drop || frame_rate == frame_rate_2997_drop;
}

// Frame numbers that drop frame leaves out before a minute of the day.
template <class Number>
constexpr Number dropped_before(Number minute) {
  return (minute % 10 + (minute / 10) * 9) * 2;
}

std::int64_t samples_of(const Fields& fields, std::uint32_t rate, std::uint8_t frame_rate) {
  const std::uint32_t fps = frames_per_second(frame_rate);
  std::int64_t total = std::int64_t{fields.frames * rate / fps} + fields.seconds * rate +
                       fields.hours * rate * 3600U + fields.minutes * rate * 60U + fields.samples;
  if (frame_rate == frame_rate_2997_drop)
    total -= dropped_before(fields.hours * 60 + fields.minutes) * rate / fps;
  // The rate of the text is 1.001 times that of the picture.
  if (is_2997(frame_rate)) total = (total * 1001 + 500) / 1000;
  return total;
}

template <class Char>
std::int64_t parse(const Char* text, std::size_t places, std::uint32_t& sample_rate,
                   std::uint8_t& frame_rate) {
  Fields fields;
  if (places != time_code_places || !read_fields(text, fields, sample_rate, frame_rate) ||
      !is_in_range(fields, sample_rate, frame_rate)) {
    return invalid_time_code;
  }
  return samples_of(fields, sample_rate, frame_rate);
}

// The numbers of a time to be written; all are signed, since a negative count is
// written as the same arithmetic has it.
struct Numbers {
  std::int64_t hours;
  std::int64_t minutes;
  std::int64_t seconds;
  std::int64_t frames;
  std::int64_t samples;

  bool operator==(const Numbers&) const = default;
};

// The pull-down rates count 1000 where 1001 samples pass. False for what is far beyond
// any day.
bool to_time_code_rate(std::int64_t& t, std::uint8_t frame_rate) {
  constexpr std::int64_t most = (std::numeric_limits<std::int64_t>::max() - 500) / 1000;
  if (!is_2997(frame_rate)) return true;
  if (t < -most || t > most) return false;
  t = (t * 1000 + 500) / 1001;
  return true;
}

// Adds the frame numbers that were left out up to `minute`, and carries.
void restore_dropped(Numbers& n, std::int64_t minute) {
  const std::int64_t frames = n.frames + dropped_before(minute);
  n.frames = frames % 30;
  const std::int64_t seconds = n.seconds + frames / 30;
  n.seconds = seconds % 60;
  const std::int64_t minutes = n.minutes + seconds / 60;
  n.minutes = minutes % 60;
  n.hours += minutes / 60;
}

void number_exactly(Numbers& n) {
  const std::int64_t frames =
      drop_frame_number(((n.hours * 60 + n.minutes) * 60 + n.seconds) * 30 + n.frames);
  n.frames = frames % 30;
  n.seconds = frames / 30 % 60;
  n.minutes = frames / (30 * 60) % 60;
  n.hours = frames / (30 * 3600);
}

// How drop frame numbers are found.
enum class DropNumbers { by_lagging_minute, exact };

DropNumbers drop_numbers() {
  return corrected(Correction::adl_drop_frame) ? DropNumbers::exact
                                               : DropNumbers::by_lagging_minute;
}

// The numbers of a count of samples at a rate of time code. False for 24 hours or more.
bool work_out(std::int64_t t, std::uint32_t rate, std::uint8_t frame_rate, DropNumbers drop,
              Numbers& n) {
  // 32 bits each, which only a rate far above all real ones leaves.
  const std::int64_t per_hour = rate * 3600U;
  const std::int64_t per_minute = rate * 60U;
  if (per_hour == 0 || per_minute == 0) return false;
  const std::uint32_t fps = frames_per_second(frame_rate);
  n.hours = t / per_hour;
  if (n.hours >= hours_per_day) return false;
  n.minutes = t % per_hour / per_minute;
  n.seconds = t % per_minute / rate;
  const std::int64_t rest = t % per_minute % rate;
  n.frames = fps * rest / rate;
  n.samples = rest - std::int64_t{rate * static_cast<std::uint32_t>(n.frames) / fps};
  if (frame_rate == frame_rate_2997_drop) {
    if (drop == DropNumbers::exact) {
      number_exactly(n);
    } else {
      restore_dropped(n, t / per_minute);
    }
  }
  return n.hours < hours_per_day;
}

// Puts characters until 16 are there.
class Line {
 public:
  explicit Line(wide_char (&out)[time_code_places]) : out_(out) {}
  ~Line() { std::fill(std::begin(out_) + length_, std::end(out_), u'\0'); }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  void put(char c) {
    if (length_ < std::ptrdiff_t{time_code_length}) out_[length_++] = static_cast<wide_char>(c);
  }
  // With zeros in front of a number below each power of ten that `places` names.
  void put_number(std::int64_t value, int places) {
    std::int64_t power = 1;
    for (int i = 1; i < places; ++i)
      power *= 10;
    for (; power > 1 && value < power; power /= 10)
      put('0');
    std::array<char, 24> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    for (const char* at = digits.data(); at != end; ++at)
      put(*at);
  }

 private:
  wide_char (&out_)[time_code_places];
  std::ptrdiff_t length_ = 0;
};

// In front of the frames. The second of each pair is for a frame that is longer than
// half a second, of which there is none.
char frame_separator(std::int64_t samples, std::uint32_t rate, std::uint8_t frame_rate) {
  const bool first_half = samples < rate / 2;
  if (frame_rate == frame_rate_2997_drop) return first_half ? ',' : ';';
  return first_half ? '.' : ':';
}

void write(const Numbers& n, std::uint32_t rate, std::uint8_t frame_rate,
           wide_char (&out)[time_code_places]) {
  const char separator = frame_rate < frame_rate_marks.size() ? frame_rate_marks[frame_rate] : '.';
  const std::int8_t rate_index = sample_rate_index_of(rate);
  Line line(out);
  line.put_number(n.hours, 2);
  line.put(separator);
  line.put_number(n.minutes, 2);
  line.put(separator);
  line.put_number(n.seconds, 2);
  line.put(frame_separator(n.samples, rate, frame_rate));
  line.put_number(n.frames, 2);
  line.put(rate_index < 0 ? no_sample_rate_mark
                          : sample_rate_marks[static_cast<std::size_t>(rate_index)]);
  line.put_number(n.samples, 4);
}

}  // namespace

std::int64_t parse_time_code(const wide_char* text, std::size_t places, std::uint32_t& sample_rate,
                             std::uint8_t& frame_rate) {
  return parse(text, places, sample_rate, frame_rate);
}

std::int64_t parse_time_code(const char* text, std::size_t places, std::uint32_t& sample_rate,
                             std::uint8_t& frame_rate) {
  return parse(text, places, sample_rate, frame_rate);
}

void format_time_code(std::int64_t samples, std::uint32_t sample_rate, std::uint8_t frame_rate,
                      wide_char (&out)[time_code_places]) {
  const bool drop = frame_rate == frame_rate_2997_drop;
  const DropNumbers how = drop ? drop_numbers() : DropNumbers::exact;
  Numbers numbers{};
  if (std::int64_t t = samples;
      to_time_code_rate(t, frame_rate) && work_out(t, sample_rate, frame_rate, how, numbers)) {
    write(numbers, sample_rate, frame_rate, out);
  } else {
    copy_text(out, time_code_places, drop ? overflow_drop_text : overflow_text);
  }
}

bool time_code_moves(std::int64_t samples, std::uint32_t sample_rate, std::uint8_t frame_rate) {
  if (frame_rate != frame_rate_2997_drop || drop_numbers() == DropNumbers::exact) return false;
  std::int64_t t = samples;
  if (!to_time_code_rate(t, frame_rate)) return false;
  Numbers lagging{};
  Numbers exact{};
  const bool fits = work_out(t, sample_rate, frame_rate, DropNumbers::by_lagging_minute, lagging) &&
                    work_out(t, sample_rate, frame_rate, DropNumbers::exact, exact);
  return fits && lagging != exact;
}
