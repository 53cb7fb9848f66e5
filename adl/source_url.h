// The URL by which a list names the file of a source.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace adl {

// In the bytes of the list.
struct SourceUrl {
  // Begins with "//" and has no extension.
  std::string path;
  // In upper case with its point; empty where the last four characters are none.
  std::string extension;
};

// Empty for a text of another form. Of "URL:file://localhost/…" the host is dropped;
// other hosts are the first element of the path. "%20" is a blank.
[[nodiscard]] std::optional<SourceUrl> parse_source_url(std::string_view url);

// What stands behind the last "/" of a path.
[[nodiscard]] std::string_view file_name_of(std::string_view path);

// Places of a path with its terminator.
inline constexpr std::size_t path_places = 256;

}  // namespace adl
