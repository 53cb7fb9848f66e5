// Each operation on the lists of an EDL. Rates are entries of the list a second.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench/core/list_generator.h"
#include "core/generic_edl_entry.h"
#include "core/generic_reel.h"

namespace {

std::unique_ptr<CGenericEdl> make_list(std::int64_t count) {
  auto edl = std::make_unique<CGenericEdl>();
  bench::fill(*edl, count, bench::timeline_end(count));
  return edl;
}

void count_entries(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["ns_per_entry"] = benchmark::Counter(
      static_cast<double>(state.range(0)) * 1e-9,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// For operations that change the list: each turn has a list of its own.
template <class Prepare, class Operation>
void changing(benchmark::State& state, Prepare prepare, Operation run) {
  for (auto _ : state) {
    state.PauseTiming();
    auto edl = make_list(state.range(0));
    prepare(*edl);
    state.ResumeTiming();
    run(*edl);
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  count_entries(state);
}

void as_it_is(CGenericEdl&) {}

// Every twentieth entry changes places with the one behind it.
void disturb(CGenericEdl& edl) {
  CObList& list = *edl.get_generic_entry_list();
  int place = 0;
  for (POSITION at = list.GetHeadPosition(); at != nullptr; ++place) {
    const POSITION here = at;
    CObject* const object = list.GetNext(at);
    if (place % 20 != 0 || at == nullptr) continue;
    list.SetAt(here, list.GetAt(at));
    list.SetAt(at, object);
  }
}

void sort_generic_list(benchmark::State& state) {
  changing(state, disturb, [](CGenericEdl& edl) { edl.sort_generic_list(); });
}

void merge_into_n_channel_entries(benchmark::State& state) {
  changing(state, as_it_is, [](CGenericEdl& edl) { edl.merge_into_n_channel_entries(); });
}

// All entries at one place, as in a list whose times were lost.
void merge_one_stretch(benchmark::State& state) {
  const auto gather = [](CGenericEdl& edl) {
    const CObList& list = *edl.get_generic_entry_list();
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
      auto* const entry = static_cast<CGenericEdlEntry*>(list.GetNext(at));
      entry->dest_in = entry->dest_out = 0;
    }
    auto* const last = new CGenericEdlEntry(&edl);
    edl.get_generic_entry_list()->AddTail(last);
  };
  changing(state, gather, [](CGenericEdl& edl) { edl.merge_into_n_channel_entries(); });
}

// A window that drops, cuts and moves entries.
void offset_edl(benchmark::State& state) {
  changing(state, as_it_is, [](CGenericEdl& edl) { edl.offset_edl(3, 8); });
}

// Half of the reels have changed their rate.
void check_reel_frame_rates(benchmark::State& state) {
  const auto change_rates = [](CGenericEdl& edl) {
    for (int reel = 0; reel < bench::reel_count; reel += 2) {
      edl.find_or_add_reel(bench::reel_name(reel).c_str())->set_frame_rate(4);
    }
  };
  changing(state, change_rates, [](CGenericEdl& edl) { edl.check_reel_frame_rates(); });
}

void get_min_max_channels(benchmark::State& state) {
  const auto edl = make_list(state.range(0));
  for (auto _ : state) {
    unsigned short low = 65535;
    unsigned short high = 0;
    edl->get_min_max_channels(&low, &high);
    benchmark::DoNotOptimize(low);
    benchmark::DoNotOptimize(high);
  }
  count_entries(state);
}

// The edits of one reel of forty, through a source list of the same size.
void traceback(benchmark::State& state) {
  const auto edl = make_list(state.range(0));
  const auto source = make_list(state.range(0));
  CGenericReel* const reel = edl->find_or_add_reel(bench::reel_name(7).c_str());
  std::intptr_t pieces = 0;
  for (auto _ : state) {
    CObList out;
    edl->traceback(&out, source.get(), reel, static_cast<unsigned short>(state.range(1)));
    state.PauseTiming();
    pieces = out.GetCount();
    delete_all(out);
    state.ResumeTiming();
  }
  count_entries(state);
  state.counters["pieces"] = static_cast<double>(pieces);
}

}  // namespace

#define SIZES RangeMultiplier(10)->Range(1000, 1000000)->MinTime(0.05)

BENCHMARK(get_min_max_channels)->SIZES;
BENCHMARK(sort_generic_list)->SIZES;
BENCHMARK(merge_into_n_channel_entries)->SIZES;
BENCHMARK(merge_one_stretch)->SIZES;
BENCHMARK(offset_edl)->SIZES;
BENCHMARK(check_reel_frame_rates)->SIZES;
BENCHMARK(traceback)
    ->ArgNames({"entries", "mode"})
    ->ArgsProduct({{1000, 10000, 100000, 1000000}, {0, 1, 2}})
    ->MinTime(0.05);
