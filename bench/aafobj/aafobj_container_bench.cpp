// Essence in and out of a file on disk beside a plain copy in the same blocks,
// and trees of many small streams.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "aafobj/container/compound_file.h"

namespace {

using namespace aafobj;

constexpr std::uint64_t k_essence_bytes = std::uint64_t{1} << 30;

std::filesystem::path temporary(const char* name) {
  return std::filesystem::temp_directory_path() /
         ("aafobj_container_bench_" + std::to_string(::getpid()) + "_" + name);
}

void check(benchmark::State& state, Result result) {
  if (result != Result::ok) state.SkipWithError(result_text(result));
}

FileKind kind_of(const benchmark::State& state) {
  return state.range(0) == 512 ? FileKind::aaf_512 : FileKind::aaf_4k;
}

void write_essence(benchmark::State& state, const std::filesystem::path& path) {
  const std::vector<std::byte> block(static_cast<std::size_t>(state.range(1)), std::byte{0x55});
  std::unique_ptr<CompoundFile> file;
  Stream stream;
  check(state, CompoundFile::create_disk(path, kind_of(state), true, file));
  check(state, file->create_stream(k_root_storage, u"Data-2702", stream));
  for (std::uint64_t done = 0; done < k_essence_bytes; done += block.size()) {
    check(state, stream.write(block));
  }
  check(state, file->close());
}

void count_bytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(k_essence_bytes));
}

// The measure of the others: the same bytes to and from a plain file.
void plain_write(benchmark::State& state) {
  const auto path = temporary("plain");
  const std::vector<std::byte> block(static_cast<std::size_t>(state.range(0)), std::byte{0x55});
  for (auto _ : state) {
    std::shared_ptr<RawStorage> storage;
    check(state, open_disk_storage(path, DiskMode::create_over, storage));
    for (std::uint64_t done = 0; done < k_essence_bytes; done += block.size()) {
      check(state, storage->write_at(done, block));
    }
  }
  std::filesystem::remove(path);
  count_bytes(state);
}

void plain_read(benchmark::State& state) {
  const auto path = temporary("plain");
  std::vector<std::byte> block(static_cast<std::size_t>(state.range(0)), std::byte{0x55});
  std::shared_ptr<RawStorage> storage;
  check(state, open_disk_storage(path, DiskMode::create_over, storage));
  for (std::uint64_t done = 0; done < k_essence_bytes; done += block.size()) {
    check(state, storage->write_at(done, block));
  }
  for (auto _ : state) {
    std::size_t count = 0;
    for (std::uint64_t done = 0; done < k_essence_bytes; done += count) {
      check(state, storage->read_at(done, block, count));
    }
  }
  std::filesystem::remove(path);
  count_bytes(state);
}

void essence_write(benchmark::State& state) {
  const auto path = temporary("write");
  for (auto _ : state)
    write_essence(state, path);
  std::filesystem::remove(path);
  count_bytes(state);
}

void essence_read(benchmark::State& state) {
  const auto path = temporary("read");
  write_essence(state, path);
  std::vector<std::byte> block(static_cast<std::size_t>(state.range(1)));
  for (auto _ : state) {
    std::unique_ptr<CompoundFile> file;
    Stream stream;
    check(state, CompoundFile::open_disk(path, Access::read, file));
    check(state, file->open_stream(k_root_storage, u"Data-2702", stream));
    std::size_t count = 1;
    while (count != 0)
      check(state, stream.read(block, count));
  }
  std::filesystem::remove(path);
  count_bytes(state);
}

// Opening does not grow with the essence.
void open_only(benchmark::State& state) {
  const auto path = temporary("open");
  std::unique_ptr<CompoundFile> file;
  Stream stream;
  check(state, CompoundFile::create_disk(path, FileKind::aaf_4k, true, file));
  check(state, file->create_stream(k_root_storage, u"Data-2702", stream));
  check(state, stream.set_size(static_cast<std::uint64_t>(state.range(0)) << 20));
  check(state, file->write_stream(k_root_storage, u"properties", std::vector<std::byte>(100)));
  check(state, file->close());
  for (auto _ : state) {
    std::vector<std::byte> bytes;
    check(state, CompoundFile::open_disk(path, Access::read, file));
    check(state, file->read_stream(k_root_storage, u"properties", 1000, bytes));
  }
  std::filesystem::remove(path);
}

std::u16string element_name(std::int64_t number) {
  std::u16string name = u"Mobs-1901{";
  for (const char digit : std::to_string(number))
    name += static_cast<char16_t>(digit);
  return name + u"}";
}

void many_objects_write(benchmark::State& state) {
  const std::vector<std::byte> properties(200, std::byte{1});
  for (auto _ : state) {
    std::unique_ptr<CompoundFile> file;
    check(state, CompoundFile::create(std::make_shared<MemoryStorage>(), FileKind::aaf_4k, file));
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      StorageId storage{};
      check(state, file->create_storage(k_root_storage, element_name(i), {}, storage));
      check(state, file->write_stream(storage, u"properties", properties));
    }
    check(state, file->close());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void many_objects_read(benchmark::State& state) {
  const std::vector<std::byte> properties(200, std::byte{1});
  const auto storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> file;
  check(state, CompoundFile::create(storage, FileKind::aaf_4k, file));
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    StorageId made{};
    check(state, file->create_storage(k_root_storage, element_name(i), {}, made));
    check(state, file->write_stream(made, u"properties", properties));
  }
  check(state, file->close());
  for (auto _ : state) {
    std::vector<Element> elements;
    std::vector<std::byte> bytes;
    check(state, CompoundFile::open(storage, Access::read, file));
    check(state, file->children(k_root_storage, elements));
    for (const Element& element : elements) {
      check(state, file->read_stream(element.storage, u"properties", 65536, bytes));
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr std::int64_t k_large_block = 2 << 20;

BENCHMARK(plain_write)->Arg(k_large_block)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(essence_write)
    ->Args({512, k_large_block})
    ->Args({4096, k_large_block})
    ->Args({4096, 4608})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(plain_read)->Arg(k_large_block)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(essence_read)
    ->Args({512, k_large_block})
    ->Args({4096, k_large_block})
    ->Args({4096, 4608})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(open_only)->Arg(1)->Arg(1000)->Arg(20000)->Unit(benchmark::kMicrosecond);
BENCHMARK(many_objects_write)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(many_objects_read)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
