#include "native/wire_bytes.h"

#include <algorithm>

#include "host/code_page.h"
#include "host/host.h"

namespace native {

namespace {

// Plain characters that the page holds as the byte of the same number go straight
// into the field. Answers whether all of `text`, as far as it fits, was such.
bool encode_plain(std::u16string_view text, const CodePage::ByteTable* table, char* out) {
  if (table == nullptr) return false;
  for (const wide_char c : text) {
    if (c >= 0x80 || (*table)[c] != c) return false;
    *out++ = static_cast<char>(c);
  }
  return true;
}

}  // namespace

void encode_text(std::u16string_view text, char* out, std::size_t width) {
  const CodePage& page = host().code_page();
  const std::u16string_view head = text.substr(0, width);
  std::size_t written = head.size();
  if (!encode_plain(head, page.byte_table(), out)) {
    std::string bytes;
    page.encode(text, bytes);
    written = std::min(bytes.size(), width);
    std::copy_n(bytes.data(), written, out);
  }
  std::fill(out + written, out + width, '\0');
}

void decode_text(std::string_view bytes, wide_char* out, std::size_t places, std::size_t limit) {
  const std::string_view text = until_nul(bytes);
  const CodePage& page = host().code_page();
  std::size_t stored = 0;
  if (const CodePage::ByteTable* const table = page.byte_table(); table != nullptr) {
    stored = std::min(text.size(), limit);
    for (std::size_t i = 0; i < stored; ++i)
      out[i] = (*table)[static_cast<unsigned char>(text[i])];
  } else {
    std::u16string decoded;
    page.decode(text, decoded);
    stored = std::min(decoded.size(), limit);
    std::copy_n(decoded.data(), stored, out);
  }
  std::fill(out + stored, out + places, u'\0');
}

}  // namespace native
