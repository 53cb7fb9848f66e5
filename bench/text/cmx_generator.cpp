#include "bench/text/cmx_generator.h"

#include <cstdint>
#include <cstdio>

namespace bench {

namespace {

// A small generator of our own: the standard's distributions differ from library to
// library.
class Random {
 public:
  std::uint32_t below(std::uint32_t n) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<std::uint32_t>(state_ >> 33) % n;
  }

 private:
  std::uint64_t state_ = 20240301;
};

std::string time_code(std::uint64_t frames) {
  // Lists of more than a day go round the clock.
  frames %= 24ULL * 3600 * 25;
  char text[16];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d:%02d", static_cast<int>(frames / 90000),
                static_cast<int>(frames / 1500 % 60), static_cast<int>(frames / 25 % 60),
                static_cast<int>(frames % 25));
  return text;
}

class List {
 public:
  void event(const char* channels, const std::string& transition, std::uint32_t length) {
    char head[64];
    std::snprintf(head, sizeof head, "%03u  R%03u     %-5s %-9s ", number_ % 1000, reel_, channels,
                  transition.c_str());
    const std::uint64_t source = 90000 + random.below(80000);
    text += head + time_code(source) + ' ' + time_code(source + length) + ' ' + time_code(at) +
            ' ' + time_code(at + length) + '\n';
    ++count;
  }
  void next() {
    ++number_;
    reel_ = random.below(40);
  }

  Random random;
  std::string text = "TITLE: GENERATED\nFCM: NON-DROP FRAME\n\n";
  std::uint64_t at = 90000;
  std::size_t count = 0;

 private:
  std::uint32_t number_ = 1;
  std::uint32_t reel_ = 0;
};

void add_edit(List& list) {
  const std::uint32_t length = 25 + list.random.below(200);
  switch (list.random.below(10)) {
    case 0:
      list.event("AA", "C", length);
      break;
    case 1:
      list.event("A", "C", length);
      list.event("A2", "C", length);
      break;
    case 2:
      list.event("NONE", "C", length);
      list.text += "AUD  3    4\n";
      break;
    case 3:
      list.event("AA/V", "C", length);
      break;
    case 4:
      list.event("B", "C", length);
      break;
    case 5:
      list.event("A", "C", 0);
      list.event("A", "D    012", length);
      break;
    case 6:
      list.event("A2", "W 001 010", length);
      break;
    default:
      list.event("A", "C", length);
      break;
  }
  if (list.random.below(3) == 0) list.text += "* FROM CLIP NAME:  SCENE 12 TAKE 3\n";
  if (list.random.below(200) == 0) list.text += "FCM: NON-DROP FRAME\n";
  list.at += length;
}

}  // namespace

std::string cmx_list(std::size_t events) {
  List list;
  while (list.count < events) {
    add_edit(list);
    list.next();
  }
  return list.text;
}

}  // namespace bench
