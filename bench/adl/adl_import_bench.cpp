// Import of audio decision lists over a floor: one pass over the words of the same
// file, read into memory. Run: build/bench/bench/adl/adl_import_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "adl/aes31_file.h"
#include "adl/list_tokens.h"

namespace {

constexpr std::int64_t tracks = 16;
constexpr std::int64_t edits_a_source = 100;

// A list in a file that goes away.
class ListFile {
 public:
  explicit ListFile(const std::string& text)
      : m_path(std::filesystem::temp_directory_path() /
               ("adl_import_bench_" + std::to_string(::getpid()) + ".adl")) {
    std::ofstream(m_path, std::ios::binary) << text;
  }
  ~ListFile() { std::remove(m_path.c_str()); }
  ListFile(const ListFile&) = delete;
  ListFile& operator=(const ListFile&) = delete;

  [[nodiscard]] std::u16string wide_path() const { return text_from_utf8(m_path.string()); }
  [[nodiscard]] std::string read() const {
    std::string bytes(std::filesystem::file_size(m_path), '\0');
    std::ifstream(m_path, std::ios::binary)
        .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
  }

 private:
  std::filesystem::path m_path;
};

// At 48000 Hz and 25 frames a second; the day is short, so lists run round it.
std::string time_text(std::int64_t samples) {
  const std::int64_t in_day = samples % (std::int64_t{48000} * 3600 * 23);
  const std::int64_t seconds = in_day / 48000;
  char text[80];
  std::snprintf(text, sizeof text, "%02d.%02d.%02d.%02d/%04d", static_cast<int>(seconds / 3600),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60),
                static_cast<int>(in_day % 48000 / 1920), static_cast<int>(in_day % 1920));
  return text;
}

std::string head() {
  return "<ADL>\n<VERSION> </VERSION>\n<PROJECT> </PROJECT>\n<SYSTEM> (SYS_XFADE_LEN) 480 "
         "</SYSTEM>\n<SEQUENCE> (SEQ_DEST_START) 00.00.00.00/0000 </SEQUENCE>\n";
}

// Sixteen tracks of edits that follow on each other. Half of them have fades, one with
// a curve; the others meet without, and so become crossfades.
std::string list_of_events(std::int64_t count) {
  std::string text = head() + "<SOURCE_INDEX>\n";
  for (std::int64_t i = 0; i * edits_a_source < count; ++i) {
    const std::string number = std::to_string(i + 1);
    text += "(Index) " + number + " (F) \"URL:file://localhost/C:/audio/TAKE " + number +
            ".wav\" _ 01.00.00.00/0000 _ \"TAKE " + number + "\" N\n";
  }
  text += "</SOURCE_INDEX>\n<EVENT_LIST>\n";
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t start = i / tracks * 2400;
    const std::string track = std::to_string(i % tracks + 1);
    text += "        (Entry) " + std::to_string(i + 1) + "\n            (Cut) I " +
            std::to_string(i / edits_a_source + 1) + "  1  " + track + "  " +
            time_text(i * 10 + 480000) + "\n                  " + time_text(start) + "  " +
            time_text(start + 2400) + "  R\n";
    if (i / tracks % 2 == 0) {
      text +=
          "            (Infade) 00.00.00.00/0096  LIN  _  _  _\n"
          "            (Outfade) 00.00.00.00/0096  CURVE  -0.6  -1.5  -3.2\n";
    }
    if (i % 4 == 0) text += "            (Gain)  _  -6.02\n";
    text += "            (Rem) NAME \"Edit " + std::to_string(i) + "\"\n";
  }
  return text + "</EVENT_LIST>\n</ADL>\n";
}

std::string list_of_points(std::int64_t count) {
  std::string text = head() + "<FADER_LIST>\n";
  for (int channel = 1; channel <= 8; ++channel) {
    for (std::int64_t i = 0; i < count; ++i) {
      text += "        (FP)  " + std::to_string(channel) + "  " + time_text(i * 480) + "  -" +
              std::to_string(i % 90) + ".50\n";
    }
  }
  return text + "</FADER_LIST>\n</ADL>\n";
}

void run_import(benchmark::State& state, const std::string& text, std::int64_t items) {
  const ListFile file(text);
  for (auto _ : state) {
    auto list = std::make_unique<CAES31File>(nullptr, 0, 0, 0, 0);
    if (list->import_edl(file.wide_path().c_str()) != result::import_complete)
      state.SkipWithError("not read");
    state.PauseTiming();
    list.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * items);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void run_floor(benchmark::State& state, const std::string& text, std::int64_t items) {
  const ListFile file(text);
  for (auto _ : state) {
    const std::string list = file.read();
    std::size_t position = 0;
    adl::Token token;
    while (adl::get_next_token(list, position, token))
      benchmark::DoNotOptimize(token);
  }
  state.SetItemsProcessed(state.iterations() * items);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void floor_of_events(benchmark::State& state) {
  run_floor(state, list_of_events(state.range(0)), state.range(0));
}
void import_events(benchmark::State& state) {
  run_import(state, list_of_events(state.range(0)), state.range(0));
}
void floor_of_points(benchmark::State& state) {
  run_floor(state, list_of_points(state.range(0)), 8 * state.range(0));
}
void import_points(benchmark::State& state) {
  run_import(state, list_of_points(state.range(0)), 8 * state.range(0));
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(floor_of_events)->Apply(sizes);
BENCHMARK(import_events)->Apply(sizes);
BENCHMARK(floor_of_points)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(import_points)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
