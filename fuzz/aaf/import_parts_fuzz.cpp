// Bytes as the description of a composition: a file is made of it, whole but for what it
// says, and imported. This reaches what changed bytes of a file seldom leave standing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "fuzz/aaf/import_host.h"
#include "tests/support/aaf_builder.h"

namespace {

using namespace support;

constexpr aafInt64 most = std::numeric_limits<aafInt64>::max();
constexpr aafInt64 times[] = {0, 1, 2, 5, 10, 50, 100, 1001, 48000, -1, 0x1'0000'0003, most};
constexpr aafInt32 numbers[] = {0,  1,   2,    3,     5,     10, 24,
                                25, 100, 1001, 30000, 48000, -1, 2'147'483'647};
constexpr int most_parts = 200;
constexpr int most_depth = 70;

class Describer {
 public:
  Describer(AafBuilder& file, const std::uint8_t* data, std::size_t size)
      : m_file(file), m_next(data), m_end(data + size) {}

  void describe() {
    for (unsigned i = 1 + below(3); i > 0; --i)
      add_source();
    // A composition may play itself and those before it.
    for (unsigned i = 1 + below(4); i > 0; --i) {
      m_mobs.push_back(m_file.new_id());
      m_file.composition(composition());
    }
  }

 private:
  unsigned below(unsigned limit) { return m_next == m_end ? 0 : *m_next++ % limit; }
  aafInt64 time() { return times[below(std::size(times))]; }
  aafInt32 number() { return numbers[below(std::size(numbers))]; }
  aafRational_t fraction() {
    const aafInt32 numerator = number();
    return {numerator, number()};
  }
  aafRational_t rate() {
    constexpr aafRational_t rates[] = {{48000, 1}, {25, 1}, {30000, 1001}, {44100, 1}, {24, 1}};
    const unsigned which = below(6);
    return which < 5 ? rates[which] : fraction();
  }

  void add_source() {
    AafSource source;
    source.essence = static_cast<AafSource::Essence>(below(7));
    source.sample_rate = rate();
    source.slot_rate = rate();
    if (below(2) == 1) source.locators.push_back(L"file:///C:/" + std::to_wstring(below(3)));
    if (below(2) == 1) source.summary.assign(below(255) + 200, 'b');
    const AafTake take = m_file.source(source);
    if (below(3) == 0 && source.essence != AafSource::Essence::none)
      m_file.essence(take.file, std::string(below(255), 'e'));
    m_mobs.push_back(take.master);
  }

  AafComposition composition() {
    AafComposition made;
    made.id = m_mobs.back();
    if (below(2) == 1) made.usage = kAAFUsage_TopLevel;
    if (below(3) == 1) made.default_fade = AafDefaultFade{.length = time(), .unit = fraction()};
    for (unsigned i = 1 + below(4); i > 0; --i)
      made.slots.push_back(slot());
    return made;
  }

  AafSlot slot() {
    if (below(4) == 1) {
      AafSlot clock = timecode(time(), static_cast<aafUInt16>(number()),
                               static_cast<aafDropType_t>(below(2)), below(3));
      if (below(2) == 1) clock.mark_in = time();
      if (below(2) == 1) clock.mark_out = time();
      return clock;
    }
    AafSlot made = sound(parts(0), rate());
    if (below(4) == 1) made.origin = time();
    return made;
  }

  std::vector<AafPart> parts(int depth) {
    std::vector<AafPart> made;
    for (unsigned i = below(6); i > 0 && m_parts < most_parts; --i)
      made.push_back(part(depth + 1));
    return made;
  }

  std::vector<AafPoint> points() {
    std::vector<AafPoint> made;
    for (unsigned i = below(6); i > 0; --i) {
      const aafRational_t at = fraction();
      made.push_back({at, fraction()});
    }
    return made;
  }

  AafPart clip_of_any() {
    const aafMobID_t mob = m_mobs[below(static_cast<unsigned>(m_mobs.size()))];
    const aafInt64 length = time();
    const aafInt64 start = time();
    AafPart made = clip(mob, length, start, 1 + below(3));
    if (below(3) == 1) made = made.with_fades({.in_length = 7, .out_length = 90});
    return made;
  }

  AafPart joint() {
    const aafInt64 length = time();
    switch (below(3)) {
      case 0:
        return transition(length);
      case 1:
        return dissolve(length, points());
      default: {
        std::vector<AafPoint> outgoing = points();
        return dissolve(length, std::move(outgoing), points());
      }
    }
  }

  AafPart part(int depth) {
    ++m_parts;
    if (depth > most_depth) return filler(1);
    switch (below(12)) {
      case 0:
        return filler(time());
      case 1:
        return joint();
      case 2:
        return gain(time(), fraction(), sequence(parts(depth)));
      case 3:
        return gain(time(), points(), sequence(parts(depth)));
      case 4:
        return pan(time(), points(), sequence(parts(depth)));
      case 5:
        return sequence(parts(depth));
      case 6:
        return scope(time(), {sequence(parts(depth)), scope_reference(time())});
      case 7:
        return selector(time(), sequence(parts(depth)));
      case 8:
        return essence_group(time(), {filler(1)});
      default:
        return clip_of_any();
    }
  }

  AafBuilder& m_file;
  const std::uint8_t* m_next;
  const std::uint8_t* m_end;
  std::vector<aafMobID_t> m_mobs;
  int m_parts = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static fuzzing::ImportHost host;
  const std::string path = host.file("x.aaf");
  {
    AafBuilder file(path);
    Describer(file, data, size).describe();
    file.save();
  }
  fuzzing::import_both_ways(host, text_from_utf8(path));
  host.clear();
  return 0;
}
