// Through the interfaces, as programs use the library: opening and walking real files
// (EDL_SAMPLES names the folder above "aaf"), and a gibibyte of embedded sound written and
// read in pieces of 1 MiB, with copies of the same bytes between plain files in the same
// run. Each job runs in a process of its own, whose peak memory is told with it.
//
// EDL_BENCH_FOLDER says where the large files go; the system's temporary folder otherwise.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "aaf/aaf_ref.h"
#include "aaf/aaf_tree.h"
#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_entry_points.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "tests/support/counting_tree.h"

namespace {

constexpr std::size_t piece_bytes = std::size_t{1} << 20U;
constexpr std::size_t pieces = 1024;

bool open_for_reading(const std::filesystem::path& path, AafRef<IAAFFile>& file) {
  return AAFFileOpenExistingRead(path.wstring().c_str(), 0, file.put()) == 0;
}

void walk_sample(benchmark::State& state, const std::filesystem::path& path) {
  std::size_t objects = 0;
  for (auto _ : state) {
    AafRef<IAAFFile> file;
    support::CountingTree sink;
    if (!open_for_reading(path, file) || aaf::tell_tree_of(*file.get(), sink) < 0 ||
        sink.faults > 0 || file->Close() < 0) {
      state.SkipWithError("cannot be walked");
      return;
    }
    objects = sink.objects;
  }
  state.counters["objects"] = static_cast<double>(objects);
}

std::filesystem::path place(const char* name) {
  const char* const folder = std::getenv("EDL_BENCH_FOLDER");
  return (folder == nullptr ? std::filesystem::temp_directory_path()
                            : std::filesystem::path(folder)) /
         name;
}

std::vector<aafUInt8> sound() {
  std::vector<aafUInt8> bytes(piece_bytes);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<aafUInt8>(i * 2654435761U >> 13U);
  return bytes;
}

bool begin_take(IAAFFile* file, AafRef<IAAFEssenceAccess>& access) {
  AafRef<IAAFHeader> header;
  AafRef<IAAFDictionary> dictionary;
  AafRef<IAAFDataDef> kind;
  AafRef<IUnknown> made;
  if (file->GetHeader(header.put()) < 0 || header->GetDictionary(dictionary.put()) < 0 ||
      dictionary->LookupDataDef(kAAFDataDef_Sound, kind.put()) < 0 ||
      dictionary->CreateInstance(AUID_AAFMasterMob, IID_IAAFMob, made.put()) < 0) {
    return false;
  }
  const auto mob = AAF_QUERY(IAAFMob, made.get());
  const auto master = AAF_QUERY(IAAFMasterMob, made.get());
  return header->AddMob(mob.get()) >= 0 &&
         master->CreateEssence(1, kind.get(), kAAFCodecDef_WAVE, {48000, 1}, {48000, 1},
                               kAAFCompressionDisable, nullptr, kAAFContainerDef_AAF,
                               access.put()) >= 0;
}

bool take_sixteen_bits(IAAFEssenceAccess* access) {
  AafRef<IAAFEssenceFormat> format;
  aafInt32 bits = 16;
  return access->GetEmptyFileFormat(format.put()) >= 0 &&
         format->AddFormatSpecifier(kAAFAudioSampleBits, 4,
                                    reinterpret_cast<aafDataBuffer_t>(&bits)) >= 0 &&
         access->PutFileFormat(format.get()) >= 0;
}

bool write_take() {
  wchar_t name[] = L"bench";
  aafProductIdentification_t who{};
  who.companyName = who.productName = who.productVersionString = name;
  const auto path = place("edl_bench_take.aaf");
  std::filesystem::remove(path);
  AafRef<IAAFFile> file;
  AafRef<IAAFEssenceAccess> access;
  if (AAFFileOpenNewModifyEx(path.wstring().c_str(), &kAAFFileKind_Aaf4KBinary, 0, &who,
                             file.put()) < 0 ||
      !begin_take(file.get(), access) || !take_sixteen_bits(access.get())) {
    return false;
  }
  std::vector<aafUInt8> bytes = sound();
  for (std::size_t i = 0; i < pieces; ++i) {
    aafUInt32 samples = 0;
    aafUInt32 written = 0;
    if (access->WriteSamples(piece_bytes / 2, piece_bytes, bytes.data(), &samples, &written) < 0 ||
        written != piece_bytes) {
      return false;
    }
  }
  const bool good = access->CompleteWrite() >= 0;
  access.reset();
  return good && file->Save() >= 0 && file->Close() >= 0;
}

bool read_take() {
  AafRef<IAAFFile> file;
  AafRef<IAAFHeader> header;
  AafRef<IEnumAAFEssenceData> all;
  AafRef<IAAFEssenceData> data;
  if (!open_for_reading(place("edl_bench_take.aaf"), file) || file->GetHeader(header.put()) < 0 ||
      header->EnumEssenceData(all.put()) < 0 || all->NextOne(data.put()) < 0) {
    return false;
  }
  std::ofstream out(place("edl_bench_read.wav"), std::ios::binary);
  std::vector<aafUInt8> bytes(piece_bytes);
  std::size_t total = 0;
  aafUInt32 read = 0;
  while (data->Read(piece_bytes, bytes.data(), &read) >= 0 && read > 0) {
    out.write(reinterpret_cast<const char*>(bytes.data()), read);
    total += read;
  }
  out.close();
  return out && total > piece_bytes * pieces;
}

bool make_plain() {
  const std::vector<aafUInt8> bytes = sound();
  std::ofstream out(place("edl_bench_plain.wav"), std::ios::binary);
  for (std::size_t i = 0; i < pieces; ++i)
    out.write(reinterpret_cast<const char*>(bytes.data()), piece_bytes);
  out.close();
  return static_cast<bool>(out);
}

bool copy_plain() {
  const std::string command = "exec cp '" + place("edl_bench_plain.wav").string() + "' '" +
                              place("edl_bench_copy.wav").string() + "'";
  ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
  return false;
}

// Runs the job in a child and counts its time and its peak memory.
void in_child(benchmark::State& state, bool (*job)()) {
  double peak = 0;
  for (auto _ : state) {
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) ::_exit(job() ? 0 : 1);
    int status = 0;
    rusage usage{};
    if (::wait4(child, &status, 0, &usage) != child || status != 0) {
      state.SkipWithError("failed");
      return;
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    state.SetIterationTime(took.count());
    peak = std::max(peak, static_cast<double>(usage.ru_maxrss) / 1024);
  }
  state.counters["peak_MiB"] = peak;
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(piece_bytes * pieces));
}

void add_samples() {
  const char* const folder = std::getenv("EDL_SAMPLES");
  if (folder == nullptr) return;
  for (const auto& item :
       std::filesystem::directory_iterator(std::filesystem::path(folder) / "aaf")) {
    const auto path = item.path();
    if (path.extension() != ".aaf") continue;
    benchmark::RegisterBenchmark(("walk/" + path.stem().string()).c_str(),
                                 [path](benchmark::State& state) { walk_sample(state, path); });
  }
}

void add_gibibyte() {
  struct Row {
    const char* name;
    bool (*job)();
  };
  // In this order: later ones read what earlier ones leave.
  for (const Row& row : {Row{"gibibyte/make_plain", &make_plain}, Row{"gibibyte/cp", &copy_plain},
                         Row{"gibibyte/write", &write_take}, Row{"gibibyte/read", &read_take},
                         Row{"gibibyte/cp_again", &copy_plain}}) {
    benchmark::RegisterBenchmark(row.name,
                                 [job = row.job](benchmark::State& state) { in_child(state, job); })
        ->UseManualTime()
        ->Iterations(3)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  add_samples();
  add_gibibyte();
  benchmark::RunSpecifiedBenchmarks();
  for (const char* const name :
       {"edl_bench_take.aaf", "edl_bench_plain.wav", "edl_bench_copy.wav", "edl_bench_read.wav"}) {
    std::filesystem::remove(place(name));
  }
  return 0;
}
