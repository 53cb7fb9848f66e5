// CMX import and export, folding and splitting, and a floor under the import. Run:
// build/bench/bench/text/cmx_bench
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "bench/support/heap.h"
#include "bench/text/cmx_generator.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "host/text.h"
#include "text/cmx_edl.h"

namespace {

// A generated list in a file of its own.
class ListFile {
 public:
  explicit ListFile(std::size_t events) {
    path_ = "/tmp/cmx_bench_" + std::to_string(::getpid()) + ".edl";
    const std::string text = bench::cmx_list(events);
    std::ofstream(path_, std::ios::binary) << text;
    bytes_ = text.size();
  }
  ~ListFile() { std::remove(path_.c_str()); }
  ListFile(const ListFile&) = delete;
  ListFile& operator=(const ListFile&) = delete;
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::u16string wide_path() const { return text_from_utf8(path_); }
  [[nodiscard]] std::size_t bytes() const { return bytes_; }

 private:
  std::string path_;
  std::size_t bytes_ = 0;
};

void prepare(CGenericEdl& edl, bool merge) {
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl.set_edl_details(&details);
  EDL_CONVERSION_SETTINGS settings;
  settings.cmx_merge_channels = merge ? 1 : 0;
  edl.set_edl_conversion_settings(&settings);
}

std::unique_ptr<CCMXEdl> imported(const ListFile& file, bool merge) {
  auto edl = std::make_unique<CCMXEdl>(std::uint8_t{4}, nullptr, 0);
  prepare(*edl, merge);
  if (edl->import_edl(file.wide_path().c_str()) != 100) std::abort();
  return edl;
}

void count_events(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void prepare_heap(benchmark::State& state) {
  state.PauseTiming();
  bench::prepare(bench::Heap{state.range(1)});
  state.ResumeTiming();
}

// Reading the same bytes, splitting lines, and putting as many zeroed records with
// their streams on lists as the import makes.
void floor_of_import(benchmark::State& state) {
  const ListFile file(static_cast<std::size_t>(state.range(0)));
  const auto model = imported(file, false);
  const std::intptr_t audio = model->get_generic_entry_list()->GetCount();
  const std::intptr_t video = model->get_video_list()->GetCount();
  for (auto _ : state) {
    prepare_heap(state);
    std::string bytes(file.bytes(), '\0');
    std::ifstream(file.path(), std::ios::binary)
        .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    std::size_t lines = 0;
    for (std::size_t at = 0; (at = bytes.find('\n', at)) != std::string::npos; ++at)
      ++lines;
    benchmark::DoNotOptimize(lines);
    auto edl = std::make_unique<CGenericEdl>();
    for (std::intptr_t i = 0; i < audio; ++i) {
      auto* const entry = new CGenericEdlEntry(edl.get());
      entry->set_no_streams(1);
      edl->get_generic_entry_list()->AddTail(entry);
    }
    for (std::intptr_t i = 0; i < video; ++i) {
      edl->get_video_list()->AddTail(new CGenericEdlVideoEntry(edl.get()));
    }
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  count_events(state);
}

void import(benchmark::State& state, bool merge) {
  const ListFile file(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    prepare_heap(state);
    auto edl = imported(file, merge);
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  count_events(state);
}

void export_with_fades(benchmark::State& state) {
  const ListFile file(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    auto edl = imported(file, false);
    edl->report_errors = 0;
    CCMXEdl out(4, edl.get(), 0);
    out.report_errors = 0;
    const std::u16string path = file.wide_path() + u".out";
    state.ResumeTiming();
    if (out.export_edl(path.c_str(), 0) != 101) std::abort();
    state.PauseTiming();
    std::remove(utf8_from_text(path).c_str());
    edl.reset();
    state.ResumeTiming();
  }
  count_events(state);
}

template <class Operation>
void operation(benchmark::State& state, Operation run) {
  const ListFile file(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    auto edl = imported(file, false);
    state.ResumeTiming();
    run(*edl);
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  count_events(state);
}

void fold_crossfades(benchmark::State& state) {
  operation(state, [](CCMXEdl& edl) { edl.fold_crossfades(); });
}
void split_for_export(benchmark::State& state) {
  operation(state, [](CCMXEdl& edl) { edl.split_for_export(); });
}

// The largest size of the process, held against what the records and the file take.
void memory_of_import(benchmark::State& state) {
  const ListFile file(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const auto edl = imported(file, true);
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const double records =
        static_cast<double>(edl->get_generic_entry_list()->GetCount()) * sizeof(CGenericEdlEntry) +
        static_cast<double>(edl->get_video_list()->GetCount()) * sizeof(CGenericEdlVideoEntry);
    state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
    state.counters["records_and_file_MB"] = (records + static_cast<double>(file.bytes())) / 1048576;
  }
}

constexpr int first_size = 1000;
constexpr int last_size = 1000000;

}  // namespace

#define SIZES RangeMultiplier(10)->Range(first_size, last_size)->Unit(benchmark::kMillisecond)
#define SIZES_AND_HEAPS                                                          \
  ArgNames({"events", "kept_heap"})                                              \
      ->ArgsProduct({benchmark::CreateRange(first_size, last_size, 10), {0, 1}}) \
      ->Unit(benchmark::kMillisecond)

BENCHMARK(memory_of_import)->Arg(last_size)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(floor_of_import)->SIZES_AND_HEAPS;
BENCHMARK_CAPTURE(import, plain, false)->SIZES_AND_HEAPS;
BENCHMARK_CAPTURE(import, merge_and_fold, true)->SIZES_AND_HEAPS;
BENCHMARK(export_with_fades)->SIZES;
BENCHMARK(fold_crossfades)->SIZES->Iterations(3);
BENCHMARK(split_for_export)->SIZES->Iterations(3);
