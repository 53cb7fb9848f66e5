#include "aaf/export_url.h"

#include "aaf/aaf_ids.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "host/text.h"

namespace aaf {

namespace {

// What is replaced, and by what. A unit is replaced once: nothing of a replacement is
// replaced again.
constexpr std::u16string_view escaped = u"% <>\"#{}|^~[]`;?:@=&";
constexpr wide_char first_printable = 32;
constexpr wide_char last_printable = 126;
constexpr std::u16string_view digits = u"0123456789abcdef";

// As many digits as the number has.
std::u16string hexadecimal(wide_char unit) {
  std::u16string text;
  for (unsigned rest = unit; rest != 0 || text.empty(); rest >>= 4)
    text.insert(text.begin(), digits[rest & 0xF]);
  return text;
}

}  // namespace

std::u16string_view folder_of(std::u16string_view path) {
  const std::size_t end = path.find_last_of(u"/\\");
  return end == std::u16string_view::npos ? std::u16string_view() : path.substr(0, end + 1);
}

std::u16string_view export_extension(const aafUID_t& codec) {
  if (uids_match(codec, kAAFCodecDef_WAVE)) return u".wav";
  if (uids_match(codec, kAAFCodecDef_AIFC)) return u".aif";
  return {};
}

std::u16string essence_url(std::u16string_view folder, std::u16string_view file) {
  std::u16string path(folder);
  path += file;
  std::u16string url = u"file:///";
  const bool is_rooted = path.starts_with(u'/');
  for (const wide_char unit : std::u16string_view(path).substr(is_rooted ? 1 : 0)) {
    if (unit == u'\\') {
      url += u'/';
    } else if (unit < first_printable || unit > last_printable ||
               escaped.find(unit) != std::u16string_view::npos) {
      url += u'%' + hexadecimal(unit);
    } else {
      url += unit;
    }
  }
  return url;
}

}  // namespace aaf
