// Opening and walking real files (EDL_SAMPLES names the folder above "aaf"), and the same for
// files of many objects that are made here, with the time to make them.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "aafobj/model/object_file.h"
#include "aafobj/model/stored_values.h"
#include "aafobj/model/tree_walk.h"

namespace {

using namespace aafobj;

std::size_t walk(benchmark::State& state, std::unique_ptr<CompoundFile> container) {
  std::unique_ptr<ObjectFile> file;
  std::size_t objects = 0;
  if (ObjectFile::open(std::move(container), file) < 0 ||
      walk_tree(file->root(), [&](StoredObject&) {
        ++objects;
        return AAFRESULT_SUCCESS;
      }) < 0) {
    state.SkipWithError("cannot be walked");
  }
  return objects;
}

void count_objects(benchmark::State& state, std::size_t objects) {
  state.counters["objects"] = static_cast<double>(objects);
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(objects));
}

void walk_sample(benchmark::State& state, const std::filesystem::path& path) {
  std::size_t objects = 0;
  for (auto _ : state) {
    std::unique_ptr<CompoundFile> container;
    if (CompoundFile::open_disk(path, Access::read, container) != Result::ok) {
      state.SkipWithError("cannot be opened");
      return;
    }
    objects = walk(state, std::move(container));
  }
  count_objects(state, objects);
}

// One mob with a sequence of clips.
std::shared_ptr<MemoryStorage> make_file(benchmark::State& state, std::int64_t clips) {
  auto storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> container;
  std::unique_ptr<ObjectFile> file;
  StoredObject* content = nullptr;
  StoredObject* objects[3] = {};
  const ClassIndex classes[3] = {ClassIndex::CompositionMob, ClassIndex::TimelineMobSlot,
                                 ClassIndex::Sequence};
  bool is_made = CompoundFile::create(storage, FileKind::aaf_4k, container) == Result::ok &&
                 ObjectFile::create(std::move(container), file) >= 0 && file->content(content) >= 0;
  for (int i = 0; is_made && i < 3; ++i)
    is_made = file->create_object(classes[i], objects[i]) >= 0;
  is_made =
      is_made && objects[0]->append(pid::Mob_Slots, *objects[1]) >= 0 &&
      objects[1]->set_object(pid::MobSlot_Segment, *objects[2]) >= 0 &&
      content->insert_keyed(pid::ContentStorage_Mobs, StoredKey(aafMobID_t{}), *objects[0]) >= 0;
  for (std::int64_t i = 0; is_made && i < clips; ++i) {
    StoredObject* clip = nullptr;
    is_made = file->create_object(ClassIndex::SourceClip, clip) >= 0 &&
              set_value(*clip, pid::Component_Length, i) >= 0 &&
              set_value(*clip, pid::SourceClip_StartTime, i) >= 0 &&
              objects[2]->append(pid::Sequence_Components, *clip) >= 0;
  }
  if (!is_made || file->save() < 0 || file->close() < 0) state.SkipWithError("cannot be made");
  return storage;
}

void make_many(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(make_file(state, state.range(0)));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(make_many)->Arg(0)->Arg(100000)->Unit(benchmark::kMillisecond);

void walk_many(benchmark::State& state) {
  const auto storage = make_file(state, state.range(0));
  std::size_t objects = 0;
  for (auto _ : state) {
    std::unique_ptr<CompoundFile> container;
    if (CompoundFile::open(storage, Access::read, container) != Result::ok) {
      state.SkipWithError("cannot be opened");
      return;
    }
    objects = walk(state, std::move(container));
  }
  count_objects(state, objects);
}
BENCHMARK(walk_many)->Arg(0)->Arg(100000)->Unit(benchmark::kMillisecond);

void register_samples() {
  const char* folder = std::getenv("EDL_SAMPLES");
  if (!folder) return;
  std::vector<std::filesystem::path> paths;
  for (const auto& item :
       std::filesystem::directory_iterator(std::filesystem::path(folder) / "aaf")) {
    if (item.path().extension() == ".aaf") paths.push_back(item.path());
  }
  std::sort(paths.begin(), paths.end());
  for (const auto& path : paths) {
    benchmark::RegisterBenchmark(("walk/" + path.stem().string()).c_str(), walk_sample, path)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace

int main(int argc, char** argv) {
  register_samples();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
