// Makes the seeds of the compound file target: make_compound_seeds FOLDER.
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "aafobj/container/compound_file.h"

namespace {

using namespace aafobj;

Result fill(CompoundFile& file, std::size_t large) {
  const std::vector<std::byte> bytes(large, std::byte{0x5a});
  const auto small = [&bytes](std::size_t size) { return std::span(bytes).first(size); };
  StorageId storage{};
  Result r = file.write_stream(k_root_storage, u"properties", small(70));
  if (r == Result::ok) r = file.create_storage(k_root_storage, u"Header-2", {}, storage);
  if (r == Result::ok) r = file.write_stream(storage, u"properties", small(200));
  if (r == Result::ok) r = file.create_storage(storage, u"Content-3b03", {}, storage);
  if (r == Result::ok) r = file.write_stream(storage, u"Mobs-1901 index", small(30));
  if (r == Result::ok) r = file.write_stream(storage, u"empty", {});
  if (r == Result::ok) r = file.write_stream(storage, u"Data-2702", bytes);
  return r;
}

Result make(const std::filesystem::path& path, FileKind kind, std::size_t large, bool filled) {
  std::unique_ptr<CompoundFile> file;
  Result r = CompoundFile::create_disk(path, kind, true, file);
  if (r == Result::ok && filled) r = fill(*file, large);
  return r == Result::ok ? file->close() : r;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 1;
  const std::filesystem::path folder(argv[1]);
  const Result results[] = {make(folder / "empty_512.aaf", FileKind::aaf_512, 0, false),
                            make(folder / "tree_512.aaf", FileKind::aaf_512, 4600, true),
                            make(folder / "small_512.aaf", FileKind::aaf_512, 300, true),
                            make(folder / "empty_4k.aaf", FileKind::aaf_4k, 0, false),
                            make(folder / "tree_4k.aaf", FileKind::aaf_4k, 4600, true)};
  for (const Result r : results) {
    if (r == Result::ok) continue;
    std::printf("%s\n", result_text(r));
    return 1;
  }
  return 0;
}
