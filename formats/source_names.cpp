#include "formats/source_names.h"

#include <iterator>

std::u16string reel_name_of(const CGenericEdlEntry& entry) {
  wide_char reel[std::size(decltype(CGenericEdlEntry::reel_name){})];
  entry.get_reel_name(reel, static_cast<int>(std::size(reel)));
  return std::u16string(trimmed(field_text(reel)));
}

bool give_source_name(CGenericEdlEntry& entry) {
  if (!field_text(entry.file_path).empty()) return false;
  if (field_text(entry.clip_name).empty()) entry.set_clip_name(reel_name_of(entry));
  if (field_text(entry.clip_name).empty()) return false;
  entry.set_file_path((u"//" + std::u16string(field_text(entry.clip_name))).c_str());
  return true;
}
