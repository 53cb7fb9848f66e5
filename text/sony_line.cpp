#include "text/sony_line.h"

#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "host/rates.h"
#include "host/text_format.h"
#include "text/line_cursor.h"

namespace text {

namespace {

// `seconds` is a count of two digits.
std::int64_t seconds_in_samples(const CTextEdl& edl, std::int64_t seconds) {
  return seconds * std::int64_t{samples_per_second(edl.time_base().sample_rate_index)};
}

// The length of a transition in whole seconds and frames.
struct SecondsAndFrames {
  std::int64_t seconds = 0;
  std::int64_t frames = 0;
};

SecondsAndFrames split_length(const CTextEdl& edl, std::int64_t length) {
  const std::int64_t rate = samples_per_second(edl.time_base().sample_rate_index);
  if (rate == 0) return {};
  const std::int64_t seconds = length / rate;
  // The rest is a difference in single precision, which differs from the exact one
  // in lengths of minutes.
  const float rest = static_cast<float>(length) - static_cast<float>(seconds * rate);
  return {seconds, edl.samples_to_frames(static_cast<std::int64_t>(rest))};
}

}  // namespace

bool closes_list(LineCursor&& line) {
  const std::u16string_view word = line.next();
  return word == u"." || word == u"END";
}

EventFields fields_of_numbered_event(LineCursor&& line) {
  const std::u16string_view number = line.next();
  if (number.empty() || !all_digits(number)) return {};
  line.next();
  const std::u16string_view third = line.next();
  return {third, line.next()};
}

void take_seconds_and_frames(const CTextEdl& edl, std::u16string_view word,
                             CGenericEdlEntry& entry) {
  constexpr std::size_t length_of_form = 5;
  if (word.size() != length_of_form || !all_digits(word.substr(0, 2)) ||
      !all_digits(word.substr(3))) {
    return;
  }
  entry.fade_in_length = plus(seconds_in_samples(edl, digits_value(word.substr(0, 2))),
                              edl.frames_to_samples(digits_value(word.substr(3))));
  entry.fade_out_length = edl.settings().default_fade_length;
}

std::u16string seconds_transition(const CTextEdl& edl, const CGenericEdlEntry& entry) {
  const auto has_frames = [&edl](std::int64_t length) {
    return edl.samples_to_frames(length) != 0;
  };
  const std::int64_t length =
      has_frames(entry.fade_in_length) ? entry.fade_in_length : entry.fade_out_length;
  if (entry.transition_type == transition_cut || !has_frames(length)) return u"C         ";
  const auto [seconds, frames] = split_length(edl, length);
  return u"D   " + decimal(seconds, 2) + u":" + decimal(frames, 2) + u"   ";
}

std::u16string channel_note(const CGenericEdlEntry& entry) {
  const int first = entry.get_stream(0);
  const std::u16string channel = u"A" + decimal(first + 1);
  if (entry.no_streams != 1) return u"\n" + channel + u"A" + decimal(first + 2) + u"\n";
  return (first % 2 != 0 ? u"\n  " : u"\n") + channel + u"\n";
}

}  // namespace text
