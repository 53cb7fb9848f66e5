#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace support {

TempFolder::TempFolder() {
  std::string form = std::filesystem::temp_directory_path().string() + "/edl_test_XXXXXX";
  if (::mkdtemp(form.data()) == nullptr) throw std::runtime_error("no temporary folder " + form);
  path_ = form;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::file(std::string_view name) const {
  return path_ + "/" + std::string(name);
}

CString TempFolder::wide_file(std::string_view name) const {
  return text_from_utf8(file(name));
}

std::string TempFolder::folder(std::string_view name) const {
  std::filesystem::create_directories(file(name));
  return file(name);
}

void write_file(const std::string& path, std::string_view bytes) {
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
}

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(in), {}};
}

bool file_exists(const std::string& path) {
  return std::filesystem::exists(path);
}

}  // namespace support
