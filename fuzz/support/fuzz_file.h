// A file in memory that has a path, for readers that take one.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzzing {

class FuzzFile {
 public:
  FuzzFile() : descriptor_(::memfd_create("fuzz", MFD_CLOEXEC)) {}
  FuzzFile(const std::uint8_t* data, std::size_t size) : FuzzFile() {
    for (std::size_t done = 0; done < size;) {
      const ssize_t put = ::write(descriptor_, data + done, size - done);
      if (put <= 0) break;
      done += static_cast<std::size_t>(put);
    }
  }
  ~FuzzFile() { ::close(descriptor_); }
  FuzzFile(const FuzzFile&) = delete;
  FuzzFile& operator=(const FuzzFile&) = delete;

  // As the library takes it; good as long as the object lives.
  [[nodiscard]] std::u16string path() const {
    const std::string name = "/proc/self/fd/" + std::to_string(descriptor_);
    return {name.begin(), name.end()};
  }

 private:
  int descriptor_;
};

}  // namespace fuzzing
