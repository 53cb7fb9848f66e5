// Import and export of the chunked file and the EDL2 file, each over a floor: the
// same records copied between the same lists and a buffer, and the same bytes
// through a file. Run: build/bench/bench/native/native_bench
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "core/generic_edl_entry.h"
#include "core/generic_reel.h"
#include "host/text.h"
#include "host/text_format.h"
#include "native/generic_edl_file.h"
#include "native/marlo2_edl.h"

namespace {

// Edits of one source.
constexpr std::int64_t edits_a_source = 100;

class BenchFile {
 public:
  BenchFile()
      : m_path(std::filesystem::temp_directory_path() /
               ("native_bench_" + std::to_string(::getpid()))) {}
  ~BenchFile() { std::remove(m_path.c_str()); }
  BenchFile(const BenchFile&) = delete;
  BenchFile& operator=(const BenchFile&) = delete;

  [[nodiscard]] std::u16string wide_path() const { return text_from_utf8(m_path.string()); }
  [[nodiscard]] std::string read() const {
    std::string bytes(std::filesystem::file_size(m_path), '\0');
    std::ifstream(m_path, std::ios::binary)
        .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
  }
  void write(const std::string& bytes) const {
    std::ofstream(m_path, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }

 private:
  std::filesystem::path m_path;
};

enum class Kind {
  // A hundred edits of each source.
  shared,
  // Each edit of a source of its own.
  single,
};

void fill_entry(CGenericEdlEntry& entry, std::int64_t i, Kind kind) {
  const std::int64_t source = kind == Kind::single ? i : i / edits_a_source;
  // Four streams, each with an edit behind the other.
  entry.dest_in = i / 4 * 1000;
  entry.dest_out = entry.dest_in + 1000;
  entry.source_in = i * 10;
  entry.source_out = entry.source_in + 1000;
  entry.fade_in_length = entry.fade_out_length = 100;
  entry.set_source_reel_name((u"Edit " + decimal(i)).c_str());
  entry.set_clip_name((u"TK" + decimal(source, 5)).c_str());
  entry.set_file_path((u"//C:/audio/TAKE " + decimal(source)).c_str());
  entry.set_reel_name((u"REEL" + decimal(source % 500)).c_str());
  entry.source_timestamp = source;
  entry.set_no_streams(1);
  entry.set_stream(0, static_cast<unsigned short>(i % 4));
  entry.no_channels = 1;
}

std::unique_ptr<CGenericEdl> list_of(std::int64_t count, Kind kind) {
  auto edl = std::make_unique<CGenericEdl>();
  EDL_DETAILS details;
  details.sample_rate_index = 2;
  details.frame_rate = 1;
  edl->set_edl_details(&details);
  for (std::int64_t i = 0; i < count; ++i) {
    auto* const entry = new CGenericEdlEntry(edl.get());
    edl->get_generic_entry_list()->AddTail(entry);
    fill_entry(*entry, i, kind);
  }
  return edl;
}

template <class Format>
void write_file(CGenericEdl& edl, const BenchFile& file) {
  Format format(&edl);
  if (format.export_edl(file.wide_path().c_str(), 0) != result::done) std::abort();
}

template <class Format>
void import(benchmark::State& state, Kind kind) {
  const BenchFile file;
  write_file<Format>(*list_of(state.range(0), kind), file);
  for (auto _ : state) {
    auto edl = std::make_unique<Format>();
    if (edl->import_edl(file.wide_path().c_str()) != result::import_complete) std::abort();
    state.PauseTiming();
    if (edl->get_generic_entry_list()->GetCount() != state.range(0)) std::abort();
    edl.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Format>
void export_list(benchmark::State& state, Kind kind) {
  const BenchFile file;
  const auto edl = list_of(state.range(0), kind);
  for (auto _ : state)
    write_file<Format>(*edl, file);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// One read of the file, one entry with its stream for each edit, and the bytes of the
// edit copied into it.
void floor_of_import(benchmark::State& state, std::size_t record_size, Kind /*kind*/) {
  const BenchFile file;
  file.write(std::string(record_size * static_cast<std::size_t>(state.range(0)), 'x'));
  for (auto _ : state) {
    const std::string bytes = file.read();
    auto edl = std::make_unique<CGenericEdl>();
    const char* record = bytes.data();
    for (std::int64_t i = 0; i < state.range(0); ++i, record += record_size) {
      auto* const entry = new CGenericEdlEntry(edl.get());
      entry->set_no_streams(1);
      std::memcpy(entry->file_path, record, record_size);
      edl->get_generic_entry_list()->AddTail(entry);
    }
    state.PauseTiming();
    edl.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
char* put(char* at, const T& value, std::size_t size) {
  std::memcpy(at, &value, size);
  return at + size;
}

// The fields of each edit that stand in its record, and in that of its source when it
// has one of its own, copied side by side into a buffer, and one write of the buffer.
void floor_of_export(benchmark::State& state, std::size_t record_size, Kind kind) {
  const BenchFile file;
  const auto edl = list_of(state.range(0), kind);
  for (auto _ : state) {
    std::string bytes(record_size * static_cast<std::size_t>(state.range(0)), '\0');
    char* record = bytes.data();
    const CObList& entries = *edl->get_generic_entry_list();
    for (POSITION position = entries.GetHeadPosition(); position != nullptr;
         record += record_size) {
      const auto* const entry = static_cast<const CGenericEdlEntry*>(entries.GetNext(position));
      char* at = put(record, entry->source_reel_name, 16);
      for (const std::int64_t time :
           {entry->dest_in, entry->source_in, entry->dest_out - entry->dest_in,
            entry->fade_in_length, entry->fade_out_length, entry->dest_length}) {
        at = put(at, time, 4);
      }
      at = put(at, entry->fade_in_curve, 2);
      at = put(at, entry->fade_out_curve, 2);
      at = put(at, entry->gain_left, 4);
      at = put(at, entry->streams[0], 2);
      at = put(at, entry->clip_name, 10);
      if (kind == Kind::single) {
        at = put(at, entry->file_path, 128);
        at = put(at, entry->reel->reel_name, 12);
        at = put(at, entry->originator, 32);
        at = put(at, entry->source_timestamp, 4);
      }
    }
    file.write(bytes);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// An edit of the chunked file with its header, and with a source of its own.
constexpr std::size_t edit_size = 72;
constexpr std::size_t edit_and_source_size = 72 + 272;
constexpr std::size_t event_size = 128;

void import_chunked(benchmark::State& state, Kind kind) {
  import <CGenericEDLFile>(state, kind);
}
void import_edl2(benchmark::State& state, Kind kind) {
  import <CMarlo2Edl>(state, kind);
}
void export_chunked(benchmark::State& state, Kind kind) {
  export_list<CGenericEDLFile>(state, kind);
}
void export_edl2(benchmark::State& state, Kind kind) {
  export_list<CMarlo2Edl>(state, kind);
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
}

// Sources have numbers of 16 bits, so no more of them can be read back.
void sizes_of_single_sources(benchmark::internal::Benchmark* bench) {
  bench->Arg(60000)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(floor_of_import, chunked, edit_size, Kind::shared)->Apply(sizes);
BENCHMARK_CAPTURE(import_chunked, chunked, Kind::shared)->Apply(sizes);
BENCHMARK_CAPTURE(floor_of_import, single_sources, edit_and_source_size, Kind::single)
    ->Apply(sizes_of_single_sources);
BENCHMARK_CAPTURE(import_chunked, single_sources, Kind::single)->Apply(sizes_of_single_sources);
BENCHMARK_CAPTURE(floor_of_import, edl2, event_size, Kind::shared)->Apply(sizes);
BENCHMARK_CAPTURE(import_edl2, edl2, Kind::shared)->Apply(sizes);

BENCHMARK_CAPTURE(floor_of_export, chunked, edit_size, Kind::shared)->Apply(sizes);
BENCHMARK_CAPTURE(export_chunked, chunked, Kind::shared)->Apply(sizes);
BENCHMARK_CAPTURE(floor_of_export, single_sources, edit_and_source_size, Kind::single)
    ->Apply(sizes_of_single_sources);
BENCHMARK_CAPTURE(export_chunked, single_sources, Kind::single)->Apply(sizes_of_single_sources);
BENCHMARK_CAPTURE(floor_of_export, edl2, event_size, Kind::shared)->Apply(sizes);
BENCHMARK_CAPTURE(export_edl2, edl2, Kind::shared)->Apply(sizes);

}  // namespace
