#include "cli/media_report.h"

#include <map>

#include "core/generic_edl_entry.h"
#include "embedded/folders.h"

namespace cli {

namespace {

std::string why_missing(const std::string& path, const embedded::MediaLibrary& media) {
  if (path.find(embedded::inside_the_file) != std::string::npos)
    return "it lies in the file; --audio-folder names a folder to copy it to";
  for (const embedded::MediaLibrary::Missing& missing : media.missing()) {
    if (missing.path == path) return missing.reason;
  }
  return "not found";
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
    const bool found = entry->audio_content != nullptr;
    const auto [place, is_new] = known.try_emplace(std::u16string(path), rows.size());
    if (is_new)
      rows.push_back({utf8_from_text(path), found, {}});
    else
      rows[place->second].found = rows[place->second].found && found;
  }
  for (MediaRow& row : rows) {
    if (!row.found) row.reason = why_missing(row.path, media);
  }
  return rows;
}

}  // namespace cli
