#include "cli/media_report.h"

#include <map>
#include <unordered_map>

#include "core/generic_edl_entry.h"
#include "embedded/folders.h"
#include "formats/source_names.h"

namespace cli {

namespace {

using Reasons = std::unordered_map<std::string, std::string>;

Reasons reasons_of(const embedded::MediaLibrary& media) {
  Reasons reasons;
  for (const embedded::MediaLibrary::Missing& missing : media.missing())
    reasons.try_emplace(missing.path, missing.reason);
  return reasons;
}

std::string why_missing(const std::string& path, const Reasons& reasons) {
  if (path.find(embedded::inside_the_file) != std::string::npos)
    return "it lies in the file; --audio-folder names a folder to copy it to";
  const auto known = reasons.find(path);
  return known == reasons.end() ? "not found" : known->second;
}

// A path made from the name of the clip stands for the reel as well: not every list that
// names both names the file by its clip.
CAudCnt* find_by_reel(const CGenericEdlEntry& entry, embedded::MediaLibrary& media) {
  const std::u16string by_clip = u"//" + std::u16string(field_text(entry.clip_name));
  const std::u16string name = reel_name_of(entry);
  if (field_text(entry.file_path) != by_clip || name.empty()) return nullptr;
  return media.find(u"//" + name, entry.source_index);
}

}  // namespace

std::vector<MediaRow> find_media(const CGenericEdl& edl, embedded::MediaLibrary& media) {
  std::vector<MediaRow> rows;
  std::map<std::u16string, std::size_t> known;
  const CObList* const list = edl.get_generic_entry_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    const std::u16string_view path = field_text(entry->file_path);
    if (path.empty()) continue;
    if (entry->audio_content == nullptr)
      entry->audio_content = media.find(path, entry->source_index);
    if (entry->audio_content == nullptr) entry->audio_content = find_by_reel(*entry, media);
    const bool found = entry->audio_content != nullptr;
    const auto [place, is_new] = known.try_emplace(std::u16string(path), rows.size());
    if (is_new)
      rows.push_back({utf8_from_text(path), found, {}});
    else
      rows[place->second].found = rows[place->second].found && found;
  }
  const Reasons reasons = reasons_of(media);
  for (MediaRow& row : rows) {
    if (!row.found) row.reason = why_missing(row.path, reasons);
  }
  return rows;
}

}  // namespace cli
