// Export of AAF files: lists of many events, and much audio over a floor, the same bytes
// written to a plain file. Run: build/bench/bench/aaf/aaf_export_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_edl_file.h"
#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "host/host.h"
#include "host/plain_host.h"
#include "host/text_format.h"

namespace {

constexpr std::int64_t streams = 64;
constexpr std::int64_t edits_a_source = 100;
constexpr std::int64_t mebibyte = 1 << 20;
constexpr std::size_t block = 1 << 18;

// One block, over and over: what is measured is the writing.
class RepeatedAudio final : public PlainAudio {
 public:
  RepeatedAudio() : m_words(block) {
    for (std::size_t i = 0; i < m_words.size(); ++i)
      m_words[i] = static_cast<std::int32_t>(i * 37);
  }
  AudioFile* channel_file(AudioFile* file, int) override { return file; }
  int enable_waveforms(int) override { return 0; }
  void add_waveform_request(AudioFile*, std::int64_t, std::uint32_t, WaveformCallback callback,
                            void* packet) override {
    m_waiting.emplace_back(callback, packet);
  }
  void poll_waveforms() override {
    if (m_waiting.empty()) return;
    const auto [callback, packet] = m_waiting.front();
    m_waiting.pop_front();
    callback(m_words.data(), packet, 0);
  }
  void cancel_waveform_requests(WaveformCallback) override { m_waiting.clear(); }

 private:
  std::vector<std::int32_t> m_words;
  std::deque<std::pair<WaveformCallback, void*>> m_waiting;
};

class Source final : public CAudCnt, public AudioFile {
 public:
  explicit Source(std::uint64_t samples) : m_samples(samples) {}
  [[nodiscard]] bool is_available() const override { return true; }
  [[nodiscard]] std::uint32_t sample_rate() const override { return 48000; }
  [[nodiscard]] bool get_format(AudioFormat& format) const override {
    format = {16, m_samples, 1};
    return true;
  }
  [[nodiscard]] AudioFile* file() const override { return const_cast<Source*>(this); }

 private:
  std::uint64_t m_samples;
};

class BenchHost final : public PlainHost {
 public:
  explicit BenchHost(bool embed)
      : m_path(std::filesystem::temp_directory_path() /
               ("aaf_export_bench_" + std::to_string(::getpid()))) {
    m_choices.embed = embed;
    m_viewer.path = m_path / "report.htm";
    std::filesystem::create_directories(m_path);
    set_host(this);
    static_cast<void>(load_aaf_library(text_from_utf8(EDL_AAF_LIBRARY).c_str()));
  }
  ~BenchHost() override {
    set_host(nullptr);
    std::filesystem::remove_all(m_path);
  }
  BenchHost(const BenchHost&) = delete;
  BenchHost& operator=(const BenchHost&) = delete;

  Application& application() override { return m_choices; }
  AudioService& audio() override { return m_audio; }
  Viewer& viewer() override { return m_viewer; }

  [[nodiscard]] std::string file(const char* name) const { return (m_path / name).string(); }
  // Removes what an export has left.
  void forget_files() const {
    for (const auto& file : std::filesystem::directory_iterator(m_path))
      std::filesystem::remove(file.path());
  }

 private:
  struct Choices final : PlainApplication {
    int get_aaf_embed_audio() override { return embed ? 1 : 0; }
    int get_aaf_export_fixed_gain() override { return 1; }
    int get_aaf_export_gain_automation() override { return 1; }
    int get_aaf_export_pan_automation() override { return 1; }
    bool embed = true;
  };
  struct Reports final : PlainViewer {
    CString report_path(const wide_char*) override { return {text_from_utf8(path.string())}; }
    int open(const wide_char*, const wide_char*, int, bool) override { return 33; }
    std::filesystem::path path;
  };

  std::filesystem::path m_path;
  Choices m_choices;
  RepeatedAudio m_audio;
  Reports m_viewer;
};

// Sixty-four tracks of edits that follow on each other; every second join is a crossfade.
void fill_entry(CGenericEdlEntry& entry, std::int64_t i, Source& source) {
  const std::int64_t place = i / streams;
  constexpr std::int64_t length = 24000;
  const bool crossfade_in = place % 2 == 1;
  entry.dest_in = place * length - (crossfade_in ? 240 : 0);
  entry.dest_out = (place + 1) * length + (crossfade_in ? 0 : 240);
  entry.source_in = i * 10;
  entry.source_out = entry.source_in + entry.dest_out - entry.dest_in;
  entry.fade_in_length = crossfade_in ? 480 : 0;
  entry.fade_out_length = crossfade_in ? 0 : 480;
  entry.gain_left = i % 4 == 0 ? 0.5F : 1.0F;
  entry.set_clip_name((u"TAKE " + decimal(i / edits_a_source, 5)).c_str());
  entry.set_file_path((u"//C:/audio/TAKE " + decimal(i / edits_a_source)).c_str());
  entry.set_no_streams(1);
  entry.set_stream(0, static_cast<unsigned short>(i % streams));
  entry.no_channels = 1;
  entry.audio_content = &source;
}

void set_rates(CGenericEdl& edl) {
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl.set_edl_details(&details);
}

std::unique_ptr<CGenericEdl> list_of_events(std::int64_t count, Source& source) {
  auto edl = std::make_unique<CGenericEdl>();
  set_rates(*edl);
  for (std::int64_t i = 0; i < count; ++i) {
    auto* const entry = new CGenericEdlEntry(edl.get());
    edl->get_generic_entry_list()->AddTail(entry);
    fill_entry(*entry, i, source);
  }
  return edl;
}

void run_export(benchmark::State& state, CGenericEdl& edl, bool embed) {
  const BenchHost host(embed);
  for (auto _ : state) {
    CAAFEdlFile format(&edl, 0);
    set_rates(format);
    if (format.export_edl(text_from_utf8(host.file("x.aaf")).c_str(), 0) != result::done) {
      state.SkipWithError("not written");
      return;
    }
    state.PauseTiming();
    host.forget_files();
    state.ResumeTiming();
  }
}

void export_events(benchmark::State& state) {
  Source source(16);
  run_export(state, *list_of_events(state.range(0), source), true);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void export_audio(benchmark::State& state, bool embed) {
  const std::int64_t bytes = state.range(0) * mebibyte;
  Source source(static_cast<std::uint64_t>(bytes / 2));
  run_export(state, *list_of_events(1, source), embed);
  state.SetBytesProcessed(state.iterations() * bytes);
}
void export_embedded_audio(benchmark::State& state) {
  export_audio(state, true);
}
void export_external_audio(benchmark::State& state) {
  export_audio(state, false);
}

void floor_of_audio(benchmark::State& state) {
  const BenchHost host(true);
  const std::string bytes(block * 2, 'x');
  for (auto _ : state) {
    std::ofstream out(host.file("plain"), std::ios::binary);
    for (std::int64_t written = 0; written < state.range(0) * mebibyte;
         written += static_cast<std::int64_t>(bytes.size()))
      out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    state.PauseTiming();
    host.forget_files();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0) * mebibyte);
}

BENCHMARK(export_events)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMillisecond);
BENCHMARK(floor_of_audio)->Arg(1024)->Unit(benchmark::kMillisecond);
BENCHMARK(export_embedded_audio)->Arg(1024)->Unit(benchmark::kMillisecond);
BENCHMARK(export_external_audio)->Arg(1024)->Unit(benchmark::kMillisecond);

}  // namespace
