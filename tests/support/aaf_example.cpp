#include "tests/support/aaf_example.h"

#include <algorithm>

namespace support {

namespace {

AafPoint point(aafInt32 time, aafInt32 time_of, aafInt32 value, aafInt32 value_of = 1) {
  return {{time, time_of}, {value, value_of}};
}

std::vector<aafUInt8> wave_head() {
  std::vector<aafUInt8> bytes(400, 1);
  const std::string_view head = "RIFF....WAVEbext";
  std::copy(head.begin(), head.end(), bytes.begin());
  return bytes;
}

}  // namespace

void describe_everything(AafBuilder& file) {
  const AafTake wave = file.source({.summary = wave_head()});
  const AafTake aifc = file.source(
      {.essence = AafSource::Essence::aifc, .locators = {L"file:///C%3a/audio/a%20b.aif"}});
  const AafTake tape = file.source({.essence = AafSource::Essence::tape});
  file.essence(wave.file, std::string(3000, 'w'));
  const aafMobID_t inner =
      file.composition({.name = L"inner", .slots = {sound({filler(5), clip(aifc, 100)})}});
  AafSlot clock = timecode(90'000, 25);
  clock.mark_in = 10;
  clock.mark_out = 20;
  const AafFades fades = {.in_length = 5, .out_length = 7, .out_type = kAAFFadeLinearPower};
  file.composition(
      {.slots =
           {clock,
            sound({clip(wave, 100).with_fades(fades),
                   dissolve(10, {point(0, 1, 0), point(1, 2, 0), point(1, 1, 1)}),
                   gain(100, {point(0, 1, 1), point(1, 1, 1)}, gain(100, {1, 2}, clip(aifc, 100))),
                   selector(10, filler(10)), transition(5),
                   scope(10, {sequence({clip(wave, 10)}), gain(10, {1, 2}, scope_reference(10))})}),
            sound({pan(50, {point(1, 2, 1, 2)}, clip(inner, 50, 10)),
                   essence_group(5, {clip(wave, 5)}), clip(tape, 9)})},
       .usage = kAAFUsage_TopLevel,
       .default_fade = AafDefaultFade{.length = 5}});
}

}  // namespace support
