// AES31 audio decision lists, known by the tag that opens them.
#include <algorithm>

#include "adl/aes31_file.h"
#include "core/generic_edl_entry.h"
#include "formats/format_rows.h"
#include "formats/source_names.h"
#include "formats/text_head.h"

namespace {

constexpr std::string_view white_space(" \t\r\n\f");
constexpr std::string_view opening_tag("<adl>");

bool is_opening_tag(std::string_view word) {
  return word.size() == opening_tag.size() &&
         std::equal(word.begin(), word.end(), opening_tag.begin(), [](char a, char b) {
           return a == b || (a >= 'A' && a <= 'Z' && a + ('a' - 'A') == b);
         });
}

// The tag may stand behind comments and whatever else a reader passes over.
HeadMatch match(std::string_view head) {
  bool is_first = true;
  while (true) {
    head.remove_prefix(std::min(head.find_first_not_of(white_space), head.size()));
    if (head.empty()) return HeadMatch::none;
    const std::size_t end = std::min(head.find_first_of(white_space), head.size());
    if (is_opening_tag(head.substr(0, end)))
      return is_first ? HeadMatch::certain : HeadMatch::possible;
    is_first = false;
    head.remove_prefix(end);
  }
}

std::unique_ptr<CGenericEdl> make(CGenericEdl* parent, int interactive,
                                  const FormatOptions& options) {
  return std::make_unique<CAES31File>(parent, interactive, options.adl_sound_designer ? 1 : 0,
                                      options.adl_interchange ? 1 : 0, options.adl_aiff ? 1 : 0);
}

std::vector<std::string> outputs(const std::string& path) {
  return {utf8_from_text(adl::output_path(text_from_utf8(path)))};
}

// Kinds of sources. Lists that name no files leave the kind unset.
constexpr std::uint16_t no_kind = 65535;
constexpr std::uint16_t unknown_kind = 0;
constexpr std::uint16_t sound_designer_file = 7;
constexpr std::uint16_t broadcast_wave_file = 11;

bool give_kind(CGenericEdlEntry& entry, const FormatOptions& options) {
  if (entry.source_index != no_kind && entry.source_index != unknown_kind) return false;
  entry.source_index = options.adl_sound_designer ? sound_designer_file : broadcast_wave_file;
  return true;
}

std::string complete(CGenericEdl& root, const FormatOptions& options) {
  std::size_t completed = 0;
  const CObList* const list = root.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    auto& entry = *static_cast<CGenericEdlEntry*>(list->GetNext(at));
    const bool kind = give_kind(entry, options);
    if (give_source_name(entry) || kind) ++completed;
  }
  if (completed == 0) return {};
  return std::to_string(completed) + (completed == 1 ? " edit names" : " edits name") +
         " no audio file; sources are written as audio files with the names of clips and reels";
}

std::string remark(const CGenericEdl& exported) {
  const std::size_t moved = static_cast<const CAES31File&>(exported).moved_times();
  if (moved == 0) return {};
  return std::to_string(moved) + (moved == 1 ? " time of it reads" : " times of it read") +
         " back early, as the rules of drop frame to the letter have it (--correction "
         "adl_drop_frame=on)";
}

}  // namespace

FormatRow adl_row() {
  FormatRow row;
  row.name = "adl";
  row.title = "AES31 audio decision list (ADL)";
  row.extensions = {".adl"};
  row.carries.automation = true;
  row.report_means_loss = true;
  row.make = make;
  row.match = match;
  // Both stand in one time that no list may be without.
  row.states_sample_rate = always_stated;
  row.states_frame_rate = always_stated;
  row.outputs = outputs;
  row.complete = complete;
  row.remark = remark;
  return row;
}
