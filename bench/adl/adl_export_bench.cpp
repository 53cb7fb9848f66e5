// Export of audio decision lists over a floor: the same text, ready-made, encoded and
// written to the same file. Run: build/bench/bench/adl/adl_export_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "adl/aes31_file.h"
#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "host/host.h"
#include "host/plain_host.h"
#include "host/text_format.h"
#include "text/text_file.h"

namespace {

constexpr std::int64_t edits_a_source = 100;
constexpr std::int64_t tracks = 16;

class BenchFile {
 public:
  BenchFile()
      : m_path(std::filesystem::temp_directory_path() /
               ("adl_bench_" + std::to_string(::getpid()) + ".adl")) {}
  ~BenchFile() { std::remove(m_path.c_str()); }
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;

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

// A host that writes butt splices, so that the list is searched for crossfades.
class SplicingHost final : public PlainHost {
 public:
  SplicingHost() { set_host(this); }
  ~SplicingHost() override { set_host(nullptr); }
  SplicingHost(const SplicingHost&) = delete;
  SplicingHost& operator=(const SplicingHost&) = delete;
  Application& application() override { return m_application; }

 private:
  struct Splicing final : PlainApplication {
    std::int64_t get_default_crossfade_length() override { return 480; }
    int get_butt_splice_export() override { return 1; }
  };
  Splicing m_application;
};

// Sixteen tracks of edits that follow on each other; every second join is a crossfade.
// Half of the fades have a curve, a quarter of the edits a level.
void fill_entry(CGenericEdlEntry& entry, std::int64_t i) {
  const std::int64_t source = i / edits_a_source;
  const std::int64_t place = i / tracks;
  constexpr std::int64_t length = 24000;
  const bool crossfade_in = place % 2 == 1;
  entry.dest_in = place * length - (crossfade_in ? 240 : 0);
  entry.dest_out = (place + 1) * length + (crossfade_in ? 0 : 240);
  entry.source_in = i * 10 + 480000;
  entry.source_out = entry.source_in + entry.dest_out - entry.dest_in;
  entry.fade_in_length = crossfade_in ? 480 : 96;
  entry.fade_out_length = crossfade_in ? 96 : 480;
  entry.fade_in_curve = static_cast<std::uint16_t>(i % 2 == 0 ? 0 : i % 117);
  entry.fade_out_curve = entry.fade_in_curve;
  entry.gain_left = i % 4 == 0 ? 0.5F : 1.0F;
  entry.set_source_reel_name((u"Edit " + decimal(i)).c_str());
  entry.set_clip_name((u"TAKE " + decimal(source, 5)).c_str());
  entry.set_file_path((u"//C:/audio/TAKE " + decimal(source)).c_str());
  entry.source_index = 11;
  entry.source_timestamp = source * 48000;
  entry.set_no_streams(1);
  entry.set_stream(0, static_cast<unsigned short>(i % tracks));
  entry.no_channels = 1;
}

void set_rates(CGenericEdl& edl) {
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl.set_edl_details(&details);
}

std::unique_ptr<CGenericEdl> list_of_events(std::int64_t count) {
  auto edl = std::make_unique<CGenericEdl>();
  set_rates(*edl);
  for (std::int64_t i = 0; i < count; ++i) {
    auto* const entry = new CGenericEdlEntry(edl.get());
    edl->get_generic_entry_list()->AddTail(entry);
    fill_entry(*entry, i);
  }
  return edl;
}

// Eight channels, each with as many fader points.
std::unique_ptr<CGenericEdl> list_of_points(std::int64_t count) {
  auto edl = std::make_unique<CGenericEdl>();
  set_rates(*edl);
  for (std::uint16_t channel = 0; channel < 8; ++channel) {
    auto* const chunk = new CGenericAutomationChunk;
    edl->get_automation_list()->AddTail(chunk);
    chunk->channel = channel;
    chunk->points = new CObList(10);
    for (std::int64_t i = 0; i < count; ++i) {
      auto* const point = new CGenericAutomationEntry;
      chunk->points->AddTail(point);
      point->time = i * 480;
      point->value = i % 505;
    }
    chunk->no_points = static_cast<std::uint32_t>(count);
  }
  return edl;
}

void export_once(CGenericEdl& edl, const BenchFile& file, benchmark::State& state) {
  CAES31File format(&edl, 0, 0, 0, 0);
  if (format.export_edl(file.wide_path().c_str(), 0) != result::done)
    state.SkipWithError("not written");
}

void run_export(benchmark::State& state, CGenericEdl& edl, std::int64_t items) {
  const BenchFile file;
  for (auto _ : state)
    export_once(edl, file, state);
  state.SetItemsProcessed(state.iterations() * items);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.read().size()));
}

void run_floor(benchmark::State& state, CGenericEdl& edl, std::int64_t items) {
  const BenchFile file;
  export_once(edl, file, state);
  const std::string bytes = file.read();
  const std::u16string text(bytes.begin(), bytes.end());
  constexpr std::size_t piece = 32768;
  for (auto _ : state) {
    CTextFile out(250);
    if (!out.Open(file.wide_path().c_str(), CFile::modeCreate | CFile::modeWrite))
      state.SkipWithError("not written");
    for (std::size_t at = 0; at < text.size(); at += piece)
      out.WriteString(std::u16string_view(text).substr(at, piece));
    out.Close();
  }
  state.SetItemsProcessed(state.iterations() * items);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void export_events(benchmark::State& state) {
  run_export(state, *list_of_events(state.range(0)), state.range(0));
}
void export_butt_splices(benchmark::State& state) {
  const SplicingHost host;
  run_export(state, *list_of_events(state.range(0)), state.range(0));
}
void floor_of_events(benchmark::State& state) {
  run_floor(state, *list_of_events(state.range(0)), state.range(0));
}
void export_points(benchmark::State& state) {
  run_export(state, *list_of_points(state.range(0)), 8 * state.range(0));
}
void floor_of_points(benchmark::State& state) {
  run_floor(state, *list_of_points(state.range(0)), 8 * state.range(0));
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(floor_of_events)->Apply(sizes);
BENCHMARK(export_events)->Apply(sizes);
BENCHMARK(export_butt_splices)->Apply(sizes);
BENCHMARK(floor_of_points)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(export_points)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
