// Each operation on the lists of an EDL. Rates are entries a second.
//
// A turn works on one list, or on as many in a row as hold a million entries together.
// What a list of 10,000 entries shows to a walk stays in the cache from the time it was
// made; only in the second kind of turn does a short list come from memory as a long one
// does, so that the two can be compared.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "bench/core/list_generator.h"
#include "core/entry_walk.h"
#include "core/generic_edl_entry.h"
#include "core/generic_reel.h"

namespace {

std::unique_ptr<CGenericEdl> make_list(std::int64_t count) {
  auto edl = std::make_unique<CGenericEdl>();
  bench::fill(*edl, count, bench::timeline_end(count));
  return edl;
}

constexpr std::int64_t entries_in_memory = 1000000;

using Lists = std::vector<std::unique_ptr<CGenericEdl>>;

Lists make_lists(const benchmark::State& state) {
  Lists lists(state.range(1) == 0 ? 1
                                  : static_cast<std::size_t>(entries_in_memory / state.range(0)));
  for (auto& edl : lists)
    edl = make_list(state.range(0));
  return lists;
}

void count_entries(benchmark::State& state) {
  const std::int64_t entries = state.range(1) == 0 ? state.range(0) : entries_in_memory;
  state.SetItemsProcessed(state.iterations() * entries);
  state.counters["ns_per_entry"] = benchmark::Counter(
      static_cast<double>(entries) * 1e-9,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// For operations that change the list: each turn has lists of its own.
template <class Prepare, class Operation>
void changing(benchmark::State& state, Prepare prepare, Operation run) {
  for (auto _ : state) {
    state.PauseTiming();
    Lists lists = make_lists(state);
    for (const auto& edl : lists)
      prepare(*edl);
    state.ResumeTiming();
    for (const auto& edl : lists)
      run(*edl);
    state.PauseTiming();
    lists.clear();
    state.ResumeTiming();
  }
  count_entries(state);
}

// For those that do not.
template <class Operation>
void looking(benchmark::State& state, Operation run) {
  const Lists lists = make_lists(state);
  for (auto _ : state) {
    for (const auto& edl : lists)
      run(*edl);
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

// The least that any walk does.
void one_word_of_each(benchmark::State& state) {
  looking(state, [](const CGenericEdl& edl) {
    std::int64_t sum = 0;
    for (EntryWalk<&CGenericEdlEntry::dest_in> walk(*edl.get_generic_entry_list());
         walk.position() != nullptr;) {
      sum ^= walk.next()->dest_in;
    }
    benchmark::DoNotOptimize(sum);
  });
}

void get_min_max_channels(benchmark::State& state) {
  looking(state, [](const CGenericEdl& edl) {
    unsigned short low = 65535;
    unsigned short high = 0;
    edl.get_min_max_channels(&low, &high);
    benchmark::DoNotOptimize(low);
    benchmark::DoNotOptimize(high);
  });
}

// The edits of one reel of forty, through a source list of the same size.
void traceback(benchmark::State& state) {
  const Lists lists = make_lists(state);
  const Lists sources = make_lists(state);
  std::vector<CObList> out(lists.size());
  std::intptr_t pieces = 0;
  for (auto _ : state) {
    for (std::size_t i = 0; i < lists.size(); ++i) {
      CGenericReel* const reel = lists[i]->find_or_add_reel(bench::reel_name(7).c_str());
      lists[i]->traceback(&out[i], sources[i].get(), reel,
                          static_cast<unsigned short>(state.range(2)));
    }
    state.PauseTiming();
    pieces = out.front().GetCount();
    for (CObList& list : out)
      delete_all(list);
    state.ResumeTiming();
  }
  count_entries(state);
  state.counters["pieces"] = static_cast<double>(pieces);
}

}  // namespace

#define SIZES                                                 \
  ArgNames({"entries", "in_memory"})                          \
      ->ArgsProduct({{1000, 10000, 100000, 1000000}, {0, 1}}) \
      ->MinTime(0.05)

BENCHMARK(one_word_of_each)->SIZES;
BENCHMARK(get_min_max_channels)->SIZES;
BENCHMARK(sort_generic_list)->SIZES;
BENCHMARK(merge_into_n_channel_entries)->SIZES;
BENCHMARK(merge_one_stretch)->SIZES;
BENCHMARK(offset_edl)->SIZES;
BENCHMARK(check_reel_frame_rates)->SIZES;
BENCHMARK(traceback)
    ->ArgNames({"entries", "in_memory", "mode"})
    ->ArgsProduct({{1000, 10000, 100000, 1000000}, {0, 1}, {0, 1, 2}})
    ->MinTime(0.05);
