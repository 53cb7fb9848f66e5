#include "aaf/source_paths.h"

#include <algorithm>
#include <cstddef>

#include "host/corrections.h"
#include "host/text.h"

namespace aaf {

namespace {

// Longer than this, and a text can be an address.
constexpr std::size_t address_head = 8;

bool is_slash(wide_char c) {
  return c == u'/' || c == u'\\';
}

void turn_slashes(std::u16string& text) {
  std::replace(text.begin(), text.end(), u'\\', u'/');
}

// A text of the extension alone is cut to nothing.
void cut_extension_always(std::u16string& text) {
  if (text.size() >= 4 && text[text.size() - 4] == u'.') text.resize(text.size() - 4);
}

void cut_extension(std::u16string& text) {
  if (text.size() > 4) cut_extension_always(text);
}

void put_slashes_in_front(std::u16string& text) {
  if (!text.starts_with(u'/')) {
    text.insert(0, u"//");
  } else if (!text.starts_with(u"//")) {
    text.insert(0, u"/");
  }
}

int digit_value(wide_char c) {
  if (is_digit(c)) return c - u'0';
  const wide_char lower = fold_case(c);
  return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

// What stands behind the scheme of an address.
std::u16string from_address(std::u16string_view rest) {
  std::u16string path = decode_percent_escapes(rest);
  cut_extension_always(path);
  turn_slashes(path);
  put_slashes_in_front(path);
  const std::size_t slashes = std::min(path.find_first_not_of(u'/'), path.size());
  if (slashes > 2) path.erase(0, slashes - 2);
  return path;
}

// What stands behind the scheme of "file://host/…", without "localhost"; empty for
// anything else.
std::u16string_view behind_host(std::u16string_view text) {
  constexpr std::u16string_view scheme = u"file://";
  constexpr std::u16string_view this_host = u"localhost/";
  if (!starts_with_no_case(text, scheme)) return {};
  std::u16string_view rest = text.substr(scheme.size());
  const std::size_t slash = rest.find(u'/');
  if (slash == 0 || slash == std::u16string_view::npos) return {};
  if (starts_with_no_case(rest, this_host)) rest.remove_prefix(this_host.size());
  return rest;
}

std::u16string from_root(std::u16string_view text) {
  std::u16string path(text);
  turn_slashes(path);
  // The slash goes behind, not in front: a path with one slash is a path of another
  // system, and is left recognisable as such.
  if (path.size() > 1) {
    if (!path.starts_with(u"//")) path += u'/';
    cut_extension(path);
  }
  return path;
}

std::u16string from_drive(std::u16string_view text) {
  std::u16string path = u"//";
  path += text;
  cut_extension(path);
  turn_slashes(path);
  return path;
}

// In one go from the left: what stands before a place holds none of them any more.
void remove_same_folder_steps(std::u16string& path) {
  constexpr std::u16string_view step = u"/./";
  for (std::size_t at = path.find(step); at != std::u16string::npos; at = path.find(step, at))
    path.erase(at + 1, 2);
}

void remove_parent_steps(std::u16string& path) {
  constexpr std::u16string_view step = u"/../";
  for (std::size_t at = path.find(step); at != std::u16string::npos; at = path.find(step)) {
    path.erase(at, step.size());
    const std::size_t slash = at == 0 ? std::u16string::npos : path.rfind(u'/', at - 1);
    if (slash != std::u16string::npos) path.erase(slash + 1, at - slash - 1);
  }
}

std::u16string from_relative(std::u16string_view text, std::u16string_view aaf_path) {
  std::u16string path(aaf_path);
  turn_slashes(path);
  path.resize(path.rfind(u'/') + 1);
  path += text;
  turn_slashes(path);
  put_slashes_in_front(path);
  cut_extension_always(path);
  remove_same_folder_steps(path);
  if (path.ends_with(u'.')) path.pop_back();
  remove_parent_steps(path);
  if (path.size() > 3 && path.ends_with(u"/..")) {
    path.resize(path.size() - 3);
    path.resize(path.rfind(u'/') + 1);
  }
  return decode_percent_escapes(path);
}

}  // namespace

std::u16string decode_percent_escapes(std::u16string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == u'%' && i + 2 < text.size() ? digit_value(text[i + 1]) : -1;
    const int low = high < 0 ? -1 : digit_value(text[i + 2]);
    if (low < 0) {
      out += text[i];
    } else {
      out += static_cast<wide_char>(high * 16 + low);
      i += 2;
    }
  }
  return out;
}

std::u16string resolve_local_path(std::u16string_view text, std::u16string_view aaf_path) {
  if (text.empty()) return {};
  const bool long_enough = text.size() > address_head;
  if (long_enough && corrected(Correction::aaf_host_locators)) {
    const std::u16string_view rest = behind_host(text);
    if (!rest.empty()) return from_address(rest);
  }
  if (long_enough && starts_with_no_case(text, u"file:///"))
    return from_address(text.substr(address_head));
  if (is_slash(text[0])) return from_root(text);
  if (text.size() > 2 && text[1] == u':' && is_slash(text[2])) return from_drive(text);
  return from_relative(text, aaf_path);
}

std::u16string file_name_of(std::u16string_view path, bool decode) {
  std::size_t at = path.rfind(u'/');
  if (at == std::u16string_view::npos) at = path.rfind(u'\\');
  if (at == std::u16string_view::npos) return std::u16string(path);
  const std::u16string_view name = path.substr(at + 1);
  return decode ? decode_percent_escapes(name) : std::u16string(name);
}

std::uint16_t file_type_code(std::u16string_view extension, std::uint8_t media_type) {
  constexpr std::uint16_t wave = 2;
  constexpr std::uint16_t aiff = 3;
  constexpr std::uint16_t broadcast_wave = 11;
  constexpr std::uint16_t aifc = 14;
  constexpr std::uint16_t unknown = 0xFFFF;
  if (media_type == media_wave) return wave;
  if (media_type == media_aifc) return aifc;
  if (equal_no_case(extension, u"WAV")) return wave;
  if (equal_no_case(extension, u"AIF")) return aiff;
  if (equal_no_case(extension, u"BWF")) return broadcast_wave;
  if (equal_no_case(extension, u"AFC")) return aifc;
  return unknown;
}

}  // namespace aaf
