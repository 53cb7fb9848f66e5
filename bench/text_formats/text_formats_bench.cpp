// Import and export of the line formats beside CMX, and a floor under each import.
// Run: build/bench/bench/text_formats/text_formats_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "bench/support/heap.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "host/text.h"
#include "text/grass_valley_edl.h"
#include "text/lightworks_edl.h"
#include "text/lw_multi_channel_edl.h"
#include "text/marlo_text_edl.h"
#include "text/sony9000_edl.h"

namespace {

// A small generator of our own: the standard's distributions differ from library to
// library.
class Random {
 public:
  std::int64_t below(std::int64_t n) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<std::int64_t>(state_ >> 33) % n;
  }

 private:
  std::uint64_t state_ = 20240301;
};

// 48000 Hz and 25 frames.
constexpr std::int64_t frame = 1920;

void prepare(CGenericEdl& edl, const EDL_CONVERSION_SETTINGS& settings) {
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl.set_edl_details(&details);
  edl.set_edl_conversion_settings(&settings);
}

// An edit in ten fades in, one in ten fades out, one in ten plays two streams, and one
// in ten lies over the end of the edit before it on its own reel.
std::unique_ptr<CGenericEdl> make_list(std::int64_t edits,
                                       const EDL_CONVERSION_SETTINGS& settings = {}) {
  auto edl = std::make_unique<CGenericEdl>();
  prepare(*edl, settings);
  Random random;
  std::int64_t at = 90000 * frame;
  std::u16string reel = u"R000";
  for (std::int64_t i = 0; i < edits; ++i) {
    auto* const entry = new CGenericEdlEntry(edl.get());
    edl->get_generic_entry_list()->AddTail(entry);
    const std::int64_t kind = random.below(10);
    if (kind == 3) at -= 10 * frame;
    if (kind != 3) {
      reel[2] = static_cast<char16_t>(u'0' + random.below(4));
      reel[3] = static_cast<char16_t>(u'0' + random.below(10));
    }
    const std::int64_t length = (50 + random.below(200)) * frame;
    entry->event_number = static_cast<std::uint16_t>(i % 999 + 1);
    entry->set_reel_name(reel.c_str());
    entry->set_no_streams(kind == 2 ? 2 : 1);
    for (int s = 0; s < entry->no_streams; ++s)
      entry->set_stream(s, static_cast<std::uint16_t>(s));
    entry->source_in = (90000 + random.below(80000)) * frame;
    entry->source_out = entry->source_in + length;
    entry->dest_in = at;
    entry->dest_out = at + length;
    entry->fade_in_length = kind == 0 || kind == 3 ? 12 * frame : 0;
    entry->fade_out_length = kind == 1 ? 12 * frame : 0;
    entry->set_clip_name(u"TAKE 1");
    at += length;
    // Lists of more than a day go round the clock.
    if (at >= 86000 * 25 * frame) at = 90000 * frame;
  }
  return edl;
}

// A place for a list and its dump file.
class ListFile {
 public:
  ListFile() : path_("/tmp/text_formats_bench_" + std::to_string(::getpid()) + ".edl") {}
  ~ListFile() {
    std::remove(path_.c_str());
    std::remove(utf8_from_text(dump_file_path(wide_path())).c_str());
  }
  ListFile(const ListFile&) = delete;
  ListFile& operator=(const ListFile&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::u16string wide_path() const { return text_from_utf8(path_); }

 private:
  std::string path_;
};

void require(bool holds) {
  if (!holds) std::abort();
}

template <class Edl>
void write_list(std::int64_t edits, const ListFile& file,
                const EDL_CONVERSION_SETTINGS& settings = {}) {
  const auto root = make_list(edits, settings);
  Edl out(root.get(), 0);
  out.report_errors = 0;
  require(out.export_edl(file.wide_path().c_str(), 0) == 101);
}

template <class Edl>
std::unique_ptr<Edl> read_list(const ListFile& file) {
  auto edl = std::make_unique<Edl>(nullptr, 0);
  prepare(*edl, {});
  edl->report_errors = 0;
  require(edl->import_edl(file.wide_path().c_str()) == 100);
  return edl;
}

// Lines of a file that are no events, at its head or its end.
template <class Edl>
constexpr int head_lines = 1;
template <>
constexpr int head_lines<CSony9000Edl> = 6;
template <>
constexpr int head_lines<CLightworksEdl> = 14;
template <>
constexpr int head_lines<CMarloTextEdl> = 4;

void count_edits(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void prepare_heap(benchmark::State& state) {
  state.PauseTiming();
  bench::prepare(bench::Heap{state.range(1)});
  state.ResumeTiming();
}

std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  std::string bytes(static_cast<std::size_t>(in.tellg()), '\0');
  in.seekg(0).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

// Reading the same bytes, splitting lines, and a zeroed record with its streams for
// each line that the import makes one of. Records that do not stay on the list are
// deleted at once.
template <class Edl>
void floor_of_import(benchmark::State& state) {
  const ListFile file;
  write_list<Edl>(state.range(0), file);
  std::intptr_t audio = 0;
  std::intptr_t video = 0;
  {
    const auto model = read_list<Edl>(file);
    audio = model->get_generic_entry_list()->GetCount();
    video = model->get_video_list()->GetCount();
  }
  for (auto _ : state) {
    prepare_heap(state);
    const std::string bytes = bytes_of(file.path());
    auto edl = std::make_unique<CGenericEdl>();
    CObList& list = *edl->get_generic_entry_list();
    std::size_t at = 0;
    for (int i = 0; i < head_lines<Edl>; ++i)
      at = bytes.find('\n', at) + 1;
    for (; (at = bytes.find('\n', at)) != std::string::npos; ++at) {
      auto entry = std::make_unique<CGenericEdlEntry>(edl.get());
      entry->set_no_streams(1);
      if (list.GetCount() < audio) list.AddTail(entry.release());
    }
    for (std::intptr_t i = 0; i < video; ++i)
      edl->get_video_list()->AddTail(new CGenericEdlVideoEntry(edl.get()));
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  count_edits(state);
}

template <class Edl>
void import(benchmark::State& state) {
  const ListFile file;
  write_list<Edl>(state.range(0), file);
  for (auto _ : state) {
    prepare_heap(state);
    auto edl = read_list<Edl>(file);
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  count_edits(state);
}

template <class Edl>
void run_export(benchmark::State& state, const EDL_CONVERSION_SETTINGS& settings) {
  const ListFile file;
  for (auto _ : state) {
    state.PauseTiming();
    auto root = make_list(state.range(0), settings);
    Edl out(root.get(), 0);
    out.report_errors = 0;
    state.ResumeTiming();
    require(out.export_edl(file.wide_path().c_str(), 0) == 101);
    state.PauseTiming();
    root.reset();
    state.ResumeTiming();
  }
  count_edits(state);
}

template <class Edl>
void export_list(benchmark::State& state) {
  run_export<Edl>(state, {});
}

EDL_CONVERSION_SETTINGS with_dump() {
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_export_mode = 1;
  return settings;
}

void export_with_dump(benchmark::State& state) {
  run_export<CLWMultiChannelEdl>(state, with_dump());
}

// Every tenth edit is looked for in a dump of as many events, all of one reel and
// stream.
void import_with_dump(benchmark::State& state) {
  const ListFile file;
  write_list<CLWMultiChannelEdl>(state.range(0), file, with_dump());
  for (auto _ : state) {
    prepare_heap(state);
    auto edl = read_list<CLWMultiChannelEdl>(file);
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  count_edits(state);
}

}  // namespace

#define SIZES RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond)
#define SIZES_AND_HEAPS                                                  \
  ArgNames({"edits", "kept_heap"})                                       \
      ->ArgsProduct({benchmark::CreateRange(1000, 1000000, 10), {0, 1}}) \
      ->Unit(benchmark::kMillisecond)
#define FORMAT(edl)                                          \
  BENCHMARK_TEMPLATE(floor_of_import, edl)->SIZES_AND_HEAPS; \
  BENCHMARK_TEMPLATE(import, edl)->SIZES_AND_HEAPS;          \
  BENCHMARK_TEMPLATE(export_list, edl)->SIZES

FORMAT(CSony9000Edl);
FORMAT(CGrassValleyEdl);
FORMAT(CLightworksEdl);
FORMAT(CLWMultiChannelEdl);
FORMAT(CMarloTextEdl);
BENCHMARK(import_with_dump)->SIZES_AND_HEAPS;
BENCHMARK(export_with_dump)->SIZES;
