// A folder that lives as long as its object, and whole files in one call.
#pragma once

#include <string>
#include <string_view>

#include "host/framework/string.h"

namespace support {

class TempFolder {
 public:
  TempFolder();
  // Removes the folder and all that is in it.
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // Absolute, without a closing "/".
  [[nodiscard]] const std::string& path() const { return path_; }
  // The path of a name inside it, as UTF-8 and as the library takes it.
  [[nodiscard]] std::string file(std::string_view name) const;
  [[nodiscard]] CString wide_file(std::string_view name) const;
  // Makes a folder inside it and answers its path.
  [[nodiscard]] std::string folder(std::string_view name) const;

 private:
  std::string path_;
};

// Throws std::runtime_error, which fails the test, when the system refuses.
void write_file(const std::string& path, std::string_view bytes);
[[nodiscard]] std::string read_file(const std::string& path);
[[nodiscard]] bool file_exists(const std::string& path);

}  // namespace support
