// The formats: one row each. The program, the test that walks all formats, the fuzz
// targets and the benchmarks go by this table.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/generic_edl.h"

// What the makers of single formats need beside parent and `interactive`.
struct FormatOptions {
  // Constructor flags of an audio decision list: what its sources are.
  bool adl_sound_designer = false;
  bool adl_interchange = false;
  bool adl_aiff = false;
};

// How well the head of a file fits a format.
enum class HeadMatch {
  none,
  // It reads like a file of this family.
  possible,
  // It names the format.
  certain,
};

// What an edit list holds beside its audio edits; a format carries some of it.
struct Carries {
  bool video = false;
  bool locators = false;
  bool automation = false;
  bool pq = false;
};

struct FormatRow {
  // As it is typed, as it is read, and the usual extensions with their point, in
  // lower case; the first is the one to write.
  std::string_view name;
  std::string_view title;
  std::vector<std::string_view> extensions;
  bool imports = true;
  bool exports = true;
  Carries carries;
  // Makes an object on `parent`'s lists, or a root for null.
  std::unique_ptr<CGenericEdl> (*make)(CGenericEdl* parent, int interactive,
                                       const FormatOptions& options) = nullptr;
  // Looks at the first bytes of a file (detection_size of them at most).
  HeadMatch (*match)(std::string_view head) = nullptr;
  // Whether a file with this head says its own rates, so that none is to be
  // assumed before it is read.
  bool (*states_sample_rate)(std::string_view head) = nullptr;
  bool (*states_frame_rate)(std::string_view head) = nullptr;
  // The files that an export to `path` (UTF-8) writes or deletes, the chief one
  // first.
  std::vector<std::string> (*outputs)(const std::string& path) = nullptr;
};

// Bytes of a file that detection looks at.
inline constexpr std::size_t detection_size = 65536;

// The rows of this library.
std::span<const FormatRow> format_table();

// Null for a name that no row has.
const FormatRow* find_format(std::span<const FormatRow> rows, std::string_view name);

// The row whose head fits best; among equals, and for a head that fits none, the
// extension of `path` decides (without regard to case). Null when neither does.
const FormatRow* detect_format(std::span<const FormatRow> rows, std::string_view head,
                               std::string_view path);
// Whether the extension of `path` is one of the format's.
bool fits_extension(const FormatRow& row, std::string_view path);
// The row for a file that is to be written, by its extension. Null for none.
const FormatRow* format_for_output(std::span<const FormatRow> rows, std::string_view path);

// What rows point to when there is nothing special about them.
inline bool never_stated(std::string_view /*head*/) {
  return false;
}
inline bool always_stated(std::string_view /*head*/) {
  return true;
}
std::vector<std::string> single_output(const std::string& path);
