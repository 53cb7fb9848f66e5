// Lines and words of any bytes. The first byte picks the code page.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "fuzz/support/fuzz_file.h"
#include "host/code_page.h"
#include "host/plain_host.h"
#include "text/text_file.h"

namespace {

class PageHost final : public PlainHost {
 public:
  explicit PageHost(const CodePage& page) : page_(page) { set_host(this); }
  ~PageHost() override { set_host(nullptr); }
  PageHost(const PageHost&) = delete;
  PageHost& operator=(const PageHost&) = delete;
  const CodePage& code_page() override { return page_; }

 private:
  const CodePage& page_;
};

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const PageHost host(data[0] % 2 == 0 ? windows_1252() : utf8_code_page());
  const fuzzing::FuzzFile bytes(data + 1, size - 1);
  CTextFile file(250);
  if (!file.Open(bytes.path().c_str(), CFile::modeRead)) return 0;
  int lines = 0;
  CTextFile::Mark mark = file.mark();
  while (file.get_line() != 0) {
    ++lines;
    require(text_length(file.line()) <= 249);
    CString word;
    while (file.next_word(word) != 0)
      require(!word.IsEmpty());
    require(file.has_more() == 0);
    if (lines == 1) mark = file.mark();
  }
  require(file.line_number() == lines);
  if (lines > 1) {
    file.return_to(mark);
    require(file.line_number() == 1 && file.get_line() != 0 && file.line_number() == 2);
  }
  return 0;
}
