// Import of AAF files: compositions of 64 tracks, ten times as many clips in the second as
// in the first, over a floor that opens the same file, asks each clip for its source and reads the
// levels of each transition; and real files when EDL_SAMPLES names the folder above "aaf". Run:
// build/bench/bench/aaf/aaf_import_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_text.h"
#include "host/plain_host.h"
#include "tests/support/aaf_builder.h"

namespace {

using namespace support;

constexpr int tracks = 64;
constexpr int sources = 500;
constexpr int curves = 117;

// Silent, with all corrections, as many curves as a workstation has, and a report that
// goes nowhere.
class BenchHost final : public PlainHost {
 public:
  BenchHost() { set_host(this); }
  ~BenchHost() override { set_host(nullptr); }
  BenchHost(const BenchHost&) = delete;
  BenchHost& operator=(const BenchHost&) = delete;
  Application& application() override { return application_; }
  Corrections& corrections() override { return corrections_; }
  Dialogs& dialogs() override { return dialogs_; }
  Folders& folders() override { return folders_; }
  Viewer& viewer() override { return viewer_; }

 private:
  struct AudioFolder final : HostFolder {};
  struct Settings final : PlainApplication {
    Settings() {
      for (std::size_t n = 0; n < levels.size(); ++n) {
        for (std::size_t i = 0; i < 128; ++i) {
          const double rest = static_cast<double>(127 - i) / 127.0;
          levels[n][i] = static_cast<std::uint16_t>(
              std::lround(16384.0 * std::pow(rest, 0.25 + static_cast<double>(n) / 20.0)));
        }
      }
    }
    const std::uint16_t* get_fade_curve(int number) override {
      return levels[static_cast<std::size_t>(number)].data();
    }
    int fade_curve_count() override { return curves; }
    HostFolder* get_imported_audio_folder() override { return &audio; }
    std::array<std::array<std::uint16_t, 128>, curves> levels{};
    AudioFolder audio;
  };
  struct Switches final : Corrections {
    bool is_on(Correction) override { return true; }
  };
  struct Windows final : PlainDialogs {
    int choose(const ChoiceDialog&) override { return 0; }
  };
  // No folder of this system, so that audio in a file is read and not written.
  struct Places final : PlainFolders {
    void local_path(HostFolder*, wide_char* out, std::size_t size) override {
      copy_text(out, size, u"//no/such/folder/");
    }
  };
  struct Nowhere final : PlainViewer {
    CString report_path(const wide_char*) override { return u"/dev/null"; }
  };

  Settings application_;
  Switches corrections_;
  Windows dialogs_;
  Places folders_;
  Nowhere viewer_;
};

AafPoint point(aafInt32 time, aafInt32 value) {
  return {{time, 8}, {value, 8}};
}

// A clip, a transition of 480 samples with nine levels, a clip and so on; with gain, each
// clip stands in a group of five points.
std::vector<AafPart> track_of(int clips, bool with_gain, const std::vector<AafTake>& takes) {
  std::vector<AafPoint> rising;
  for (aafInt32 i = 0; i <= 8; ++i)
    rising.push_back(point(i, i));
  std::vector<AafPart> parts;
  for (int i = 0; i < clips; ++i) {
    const AafPart one = clip(takes[static_cast<std::size_t>(i) % takes.size()], 48'000, i * 100);
    if (i > 0) parts.push_back(dissolve(480, rising));
    parts.push_back(
        !with_gain
            ? one
            : gain(48'000, {point(1, 8), point(2, 6), point(4, 8), point(5, 3), point(7, 8)}, one));
  }
  return parts;
}

// A file that goes away.
class BenchFile {
 public:
  BenchFile(int clips, bool with_gain)
      : path_(std::filesystem::temp_directory_path() /
              ("aaf_import_bench_" + std::to_string(::getpid()) + ".aaf")) {
    std::filesystem::remove(path_);
    AafBuilder file(path_.string());
    std::vector<AafTake> takes;
    for (int i = 0; i < sources; ++i) {
      takes.push_back(file.source(
          {.name = L"take " + std::to_wstring(i),
           .locators = {L"file:///C%3a/audio/take%20" + std::to_wstring(i) + L".wav"}}));
    }
    AafComposition composition;
    for (int i = 0; i < tracks; ++i) {
      const int share = clips / tracks + (i < clips % tracks ? 1 : 0);
      composition.slots.push_back(sound(track_of(share, with_gain, takes)));
    }
    file.composition(composition);
    file.save();
  }
  ~BenchFile() { std::filesystem::remove(path_); }
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;
  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

// The entries, -1 for a file that was not read.
std::intptr_t import_once(const std::string& path) {
  CGenericEdl edl;
  CAAFEdlFile file(&edl);
  if (file.import_edl(text_from_utf8(path).c_str()) != result::import_complete) return -1;
  return edl.get_generic_entry_list()->GetCount();
}

void import_clips(benchmark::State& state, bool with_gain) {
  const auto clips = static_cast<int>(state.range(0));
  const BenchFile file(clips, with_gain);
  for (auto _ : state) {
    if (import_once(file.path()) != clips) {
      state.SkipWithError("not read");
      return;
    }
  }
  state.counters["per_clip"] =
      benchmark::Counter(static_cast<double>(clips), benchmark::Counter::kIsIterationInvariantRate |
                                                         benchmark::Counter::kInvert);
}

void import_cuts(benchmark::State& state) {
  import_clips(state, false);
}
BENCHMARK(import_cuts)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void import_cuts_with_gain(benchmark::State& state) {
  import_clips(state, true);
}
BENCHMARK(import_cuts_with_gain)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

bool leads_to_a_file(IAAFSourceClip& one) {
  AafRef<IAAFMob> mob;
  if (one.ResolveRef(mob.put()) != 0) return false;
  const auto search = AAF_QUERY(IAAFSearchSource, mob.get());
  AafRef<IAAFFindSourceInfo> info;
  return search && search->SearchSource(1, 0, kAAFFileMob, nullptr, nullptr, info.put()) == 0;
}

void read_levels(IAAFTransition& joint) {
  AafRef<IAAFOperationGroup> operation;
  AafRef<IAAFParameter> level;
  AafRef<IEnumAAFControlPoints> points;
  if (joint.GetOperationGroup(operation.put()) != 0 ||
      operation->LookupParameter(kAAFParameterDef_Level, level.put()) != 0) {
    return;
  }
  const auto varying = AAF_QUERY(IAAFVaryingValue, level.get());
  if (!varying || varying->GetControlPoints(points.put()) != 0) return;
  for (AafRef<IAAFControlPoint> each; points->NextOne(each.put()) == 0;) {
    aafRational_t value{};
    aafUInt32 bytes = 0;
    benchmark::DoNotOptimize(each->GetTime(&value));
    benchmark::DoNotOptimize(
        each->GetValue(sizeof value, reinterpret_cast<aafDataBuffer_t>(&value), &bytes));
  }
}

// Clips of one slot that lead to a file.
std::int64_t sources_found(IAAFSequence& sequence) {
  std::int64_t found = 0;
  AafRef<IEnumAAFComponents> components;
  if (sequence.GetComponents(components.put()) != 0) return 0;
  for (AafRef<IAAFComponent> component; components->NextOne(component.put()) == 0;) {
    if (const auto one = AAF_QUERY(IAAFSourceClip, component.get()))
      found += leads_to_a_file(*one.get()) ? 1 : 0;
    else if (const auto joint = AAF_QUERY(IAAFTransition, component.get()))
      read_levels(*joint.get());
  }
  return found;
}

std::int64_t walk(const std::string& path) {
  AafRef<IAAFFile> file;
  AafRef<IAAFHeader> header;
  AafRef<IEnumAAFMobs> mobs;
  const aaf_string name = aaf_from_text(text_from_utf8(path));
  if (AAFDLL::AAFFileOpenExistingRead(name.c_str(), 0, file.put()) != 0 ||
      file->GetHeader(header.put()) != 0) {
    return -1;
  }
  aafSearchCrit_t criterion{};
  criterion.searchTag = kAAFByMobKind;
  criterion.tags.mobKind = kAAFCompMob;
  std::int64_t found = 0;
  if (header->GetMobs(&criterion, mobs.put()) != 0) return -1;
  for (AafRef<IAAFMob> mob; mobs->NextOne(mob.put()) == 0;) {
    AafRef<IEnumAAFMobSlots> slots;
    if (mob->GetSlots(slots.put()) != 0) return -1;
    for (AafRef<IAAFMobSlot> slot; slots->NextOne(slot.put()) == 0;) {
      AafRef<IAAFSegment> segment;
      if (slot->GetSegment(segment.put()) != 0) continue;
      if (const auto sequence = AAF_QUERY(IAAFSequence, segment.get()))
        found += sources_found(*sequence.get());
    }
  }
  mobs.reset();
  header.reset();
  file->Close();
  return found;
}

void floor_of_cuts(benchmark::State& state) {
  const auto clips = static_cast<int>(state.range(0));
  const BenchFile file(clips, false);
  for (auto _ : state) {
    if (walk(file.path()) != clips) {
      state.SkipWithError("not walked");
      return;
    }
  }
  state.counters["per_clip"] =
      benchmark::Counter(static_cast<double>(clips), benchmark::Counter::kIsIterationInvariantRate |
                                                         benchmark::Counter::kInvert);
}
BENCHMARK(floor_of_cuts)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void import_sample(benchmark::State& state, const std::string& path) {
  std::intptr_t entries = 0;
  for (auto _ : state)
    entries = import_once(path);
  state.counters["entries"] = static_cast<double>(entries);
}

void add_samples() {
  const char* const folder = std::getenv("EDL_SAMPLES");
  if (folder == nullptr) return;
  std::vector<std::filesystem::path> paths;
  for (const auto& item :
       std::filesystem::directory_iterator(std::filesystem::path(folder) / "aaf")) {
    if (item.path().extension() == ".aaf") paths.push_back(item.path());
  }
  std::sort(paths.begin(), paths.end());
  for (const std::filesystem::path& path : paths) {
    benchmark::RegisterBenchmark(("import/" + path.stem().string()).c_str(), import_sample,
                                 path.string())
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace

int main(int argc, char** argv) {
  BenchHost host;
  if (load_aaf_library(text_from_utf8(EDL_AAF_LIBRARY).c_str()) != 0) return 1;
  add_samples();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return unload_aaf_library() == 0 ? 0 : 1;
}
