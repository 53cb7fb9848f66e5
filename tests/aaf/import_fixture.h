// A file that a test describes, its import under a scripted host, and what reached the
// lists of the edit.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "aaf/aaf_edl_file.h"
#include "core/generic_edl_entry.h"
#include "tests/support/aaf_builder.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

// Where an entry lies, in samples. A check names the members that it is about.
struct Edit {
  int stream = 0;
  std::int64_t in = 0;
  std::int64_t length = 0;
  std::int64_t source = 0;
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;

  bool operator==(const Edit&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Edit& edit);

// A chunk of automation.
struct Chunk {
  int parameter = 0;
  int channel = 0;
  // Times in samples, steps.
  std::vector<std::pair<std::int64_t, std::int64_t>> points{};

  bool operator==(const Chunk&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Chunk& chunk);

// Points of a level or gain: {time, value}, both as fractions.
inline support::AafPoint point(aafInt32 time, aafInt32 time_of, aafInt32 value,
                               aafInt32 value_of = 1) {
  return {{time, time_of}, {value, value_of}};
}

class AafImportTest : public testing::Test {
 protected:
  AafImportTest();
  ~AafImportTest() override;

  // The file in the making, begun at the first call.
  support::AafBuilder& file();
  // A take of 48 kHz in a WAVE file of its own.
  support::AafTake take();
  // A composition of the slots, imported.
  result_code import(std::vector<support::AafSlot> slots);
  result_code import_composition(const support::AafComposition& composition);
  // Saves what was made, and imports it.
  result_code import();
  result_code import_path(const std::string& path);

  // The object that imports; a test may set its rates before.
  CAAFEdlFile& aaf() { return *importer; }
  [[nodiscard]] std::vector<CGenericEdlEntry*> entries() const;
  [[nodiscard]] CGenericEdlEntry& entry(std::size_t index) const { return *entries().at(index); }
  [[nodiscard]] std::vector<Edit> edits() const;
  [[nodiscard]] std::vector<float> levels() const;
  [[nodiscard]] std::vector<std::string> paths() const;
  [[nodiscard]] std::vector<Chunk> automation() const;
  // "name time" of each.
  [[nodiscard]] std::vector<std::string> locators() const;
  // Bodies of messages and reports, "title/text" of questions.
  [[nodiscard]] std::vector<std::string> boxes() const;
  // The text of the import report.
  [[nodiscard]] std::string report() const;
  // The canonical path of a name beside the AAF file.
  [[nodiscard]] std::string beside(const std::string& name) const;
  void correct(Correction correction, bool on) { host.fixes.set(correction, on); }
  void correct_all() { host.fixes.set_all(); }

  support::ScriptedHost host;
  support::TempFolder folder;
  std::string path = folder.file("x.aaf");
  support::ScriptedFolder* audio_folder;
  CGenericEdl edl;
  support::AafProduct product;
  std::unique_ptr<CAAFEdlFile> importer;

 private:
  std::unique_ptr<support::AafBuilder> builder_;
};

// The same with every correction on, and with none.
class CorrectedImportTest : public AafImportTest {
 protected:
  CorrectedImportTest() { correct_all(); }
};

class BothWaysImportTest : public AafImportTest, public testing::WithParamInterface<bool> {
 protected:
  BothWaysImportTest() {
    if (GetParam()) correct_all();
  }
};
inline auto both_ways() {
  return testing::Values(false, true);
}
inline std::string way_name(const testing::TestParamInfo<bool>& info) {
  return info.param ? "Corrected" : "Letter";
}
