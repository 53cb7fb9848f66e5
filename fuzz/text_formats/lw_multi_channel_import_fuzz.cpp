// A list and its dump file, parted by the first "|".
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>

#include "fuzz/text_formats/import_run.h"
#include "text/lw_multi_channel_edl.h"

namespace {

// A folder of the process in memory, since the dump file stands beside the list.
class Folder {
 public:
  Folder() {
    std::string name = "/dev/shm/multichannel_fuzz_XXXXXX";
    fuzzing::require(::mkdtemp(name.data()) != nullptr);
    path_ = name;
  }
  ~Folder() {
    for (const char* name : {"in.edl", "in.dmp", "out.edl", "out.dmp"})
      std::remove(file(name).c_str());
    ::rmdir(path_.c_str());
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  [[nodiscard]] std::string file(const char* name) const { return path_ + "/" + name; }
  [[nodiscard]] std::u16string wide_file(const char* name) const {
    return text_from_utf8(file(name));
  }

 private:
  std::string path_;
};

void write(const std::string& path, const std::uint8_t* from, const std::uint8_t* to) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(from), to - from);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < fuzzing::choice_bytes) return 0;
  static const Folder folder;
  const std::uint8_t* const end = data + size;
  const std::uint8_t* const bar = std::find(data + fuzzing::choice_bytes, end, '|');
  write(folder.file("in.edl"), data + fuzzing::choice_bytes, bar);
  if (bar != end) {
    write(folder.file("in.dmp"), bar + 1, end);
  } else {
    std::remove(folder.file("in.dmp").c_str());
  }
  std::remove(folder.file("out.dmp").c_str());
  fuzzing::there_and_back<CLWMultiChannelEdl>(data, folder.wide_file("in.edl"),
                                              folder.wide_file("out.edl"));
  return 0;
}
