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

// What an edit list holds beside its audio edits; a format carries some of it. The
// program tells a person what a conversion leaves behind.
struct Carries {
  bool video = false;
  bool locators = false;
  bool automation = false;
  bool pq = false;
};

// What a file says of itself beside its edits, for a person who looks into it.
struct FileFacts {
  // Who made it.
  std::string maker;
  // The lists that it holds, where it can hold several, and which of them was read, from
  // 0; -1 for none.
  std::vector<std::string> compositions;
  int composition = -1;
};

// What rows point to when there is nothing special about them.
inline bool never_stated(std::string_view /*head*/) {
  return false;
}
inline bool always_stated(std::string_view /*head*/) {
  return true;
}
std::vector<std::string> single_output(const std::string& path);
inline std::string nothing_to_complete(CGenericEdl& /*root*/, const FormatOptions& /*options*/) {
  return {};
}
inline FileFacts no_facts(const CGenericEdl& /*imported*/) {
  return {};
}
inline std::vector<std::string> no_further_losses(const CGenericEdl& /*root*/) {
  return {};
}
inline std::string no_remark(const CGenericEdl& /*exported*/) {
  return {};
}

struct FormatRow {
  // As it is typed, as it is read, and the usual extensions with their point, in
  // lower case; the first is the one to write.
  std::string_view name;
  std::string_view title;
  std::vector<std::string_view> extensions;
  bool imports = true;
  bool exports = true;
  Carries carries;
  // The export reads the audio of the edits, so it is looked for beforehand.
  bool wants_audio = false;
  // The file tells where others lie, seen from its own place, so that is told in full.
  bool names_places = false;
  // An "FCM:" line is all that it says of its frame rate. Such a line knows 29.97
  // alone, and lists of 24, 25 and 30 frames say NON-DROP as well.
  bool frame_rate_by_fcm = false;
  // An import leaves a report only when it refused the list or dropped something of it.
  bool report_means_loss = false;
  // Makes an object on `parent`'s lists, or a root for null.
  std::unique_ptr<CGenericEdl> (*make)(CGenericEdl* parent, int interactive,
                                       const FormatOptions& options) = nullptr;
  // Looks at the first bytes of a file (detection_size of them at most).
  HeadMatch (*match)(std::string_view head) = nullptr;
  // Whether a file with this head says its own rates, so that none is to be
  // assumed before it is read.
  bool (*states_sample_rate)(std::string_view head) = never_stated;
  bool (*states_frame_rate)(std::string_view head) = never_stated;
  // After an import, also one that did not succeed.
  FileFacts (*facts)(const CGenericEdl& imported) = no_facts;
  // The files that an export to `path` (UTF-8) may write or delete, the list itself
  // first, under the name that it really gets. What stands there before is kept
  // until the export has succeeded.
  std::vector<std::string> (*outputs)(const std::string& path) = single_output;
  // Before an export: gives the edits of a list what the format asks for and the list
  // does not say, as a workstation does that knows its sources. What was given, in a
  // sentence; empty for nothing.
  std::string (*complete)(CGenericEdl& root, const FormatOptions& options) = nothing_to_complete;
  // What of a list, beside what `carries` tells, the format leaves behind; each with
  // its number, as in "3 locators".
  std::vector<std::string> (*further_losses)(const CGenericEdl& root) = no_further_losses;
  // After one that succeeded: what a person must know of the file, in a sentence that
  // goes on behind "is written, but"; empty for nothing.
  std::string (*remark)(const CGenericEdl& exported) = no_remark;
};

// Bytes of a file that detection looks at.
inline constexpr std::size_t detection_size = 65536;

// The rows of this library.
std::span<const FormatRow> format_table();

// Null for a name that no row has.
const FormatRow* find_format(std::span<const FormatRow> rows, std::string_view name);

// The row that can be read and whose head fits best; among equals, and for a head
// that fits none, the extension of `path` decides (without regard to case). Null
// when neither does.
const FormatRow* detect_format(std::span<const FormatRow> rows, std::string_view head,
                               std::string_view path);
// Whether the extension of `path` is one of the format's.
bool fits_extension(const FormatRow& row, std::string_view path);
// The first row that can be written and has the extension of `path`. Null for none.
const FormatRow* format_for_output(std::span<const FormatRow> rows, std::string_view path);
