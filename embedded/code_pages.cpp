#include "embedded/code_pages.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <mutex>

namespace embedded {

namespace {

constexpr wide_char replacement = 0xFFFD;

std::string folded(const std::string& name) {
  std::string out;
  for (const char c : name) {
    if (c != '-' && c != '_') out += static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  }
  return out;
}

// One of the pages that the host layer has.
class BuiltIn final : public CodePage {
 public:
  explicit BuiltIn(const CodePage& page) : page_(page) {}
  void decode(std::string_view bytes, std::u16string& out) const override {
    page_.decode(bytes, out);
  }
  void encode(std::u16string_view text, std::string& out) const override {
    page_.encode(text, out);
  }
  [[nodiscard]] const ByteTable* byte_table() const override { return page_.byte_table(); }

 private:
  const CodePage& page_;
};

class Converter {
 public:
  Converter(const char* to, const char* from) : handle_(::iconv_open(to, from)) {}
  ~Converter() {
    if (good()) ::iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // iconv's own mark of failure is a pointer of -1.
  [[nodiscard]] bool good() const {
    return handle_ != reinterpret_cast<iconv_t>(-1);  // NOLINT(performance-no-int-to-ptr)
  }

  // Back to the state in which a text begins.
  void reset() { ::iconv(handle_, nullptr, nullptr, nullptr, nullptr); }
  // Lets a page with shift states end in its first one.
  void finish(std::string& out) {
    char buffer[32];
    char* to = buffer;
    std::size_t room = sizeof buffer;
    ::iconv(handle_, nullptr, nullptr, &to, &room);
    out.append(buffer, static_cast<std::size_t>(to - buffer));
  }

  // Converts from the front of `bytes` until it stops, appends what came out, and
  // takes what was converted off the front. 0 at the end, EILSEQ at something that
  // has no form on the other side, EINVAL at half a character.
  int convert(std::string_view& bytes, std::string& out) {
    char buffer[1024];
    int error = E2BIG;
    while (error == E2BIG) {
      // iconv takes a pointer to what it does not change.
      char* from = const_cast<char*>(bytes.data());
      std::size_t left = bytes.size();
      char* to = buffer;
      std::size_t room = sizeof buffer;
      const std::size_t done = ::iconv(handle_, &from, &left, &to, &room);
      error = done == static_cast<std::size_t>(-1) ? errno : 0;
      out.append(buffer, static_cast<std::size_t>(to - buffer));
      bytes.remove_prefix(bytes.size() - left);
    }
    return error;
  }

 private:
  iconv_t handle_;
};

class IconvPage final : public CodePage {
 public:
  explicit IconvPage(const std::string& name)
      : decoder_("UTF-16LE", name.c_str()), encoder_(name.c_str(), "UTF-16LE") {
    if (good()) find_table();
  }

  [[nodiscard]] bool good() const { return decoder_.good() && encoder_.good(); }

  void decode(std::string_view bytes, std::u16string& out) const override {
    const std::lock_guard lock(mutex_);
    decoder_.reset();
    std::string units;
    while (decoder_.convert(bytes, units) != 0) {
      append_units(units, out);
      units.clear();
      out.push_back(replacement);
      if (!bytes.empty()) bytes.remove_prefix(1);
    }
    append_units(units, out);
  }

  void encode(std::u16string_view text, std::string& out) const override {
    const std::lock_guard lock(mutex_);
    encoder_.reset();
    const std::string units = bytes_of(text);
    std::string_view left = units;
    while (encoder_.convert(left, out) != 0) {
      out.push_back('?');
      left.remove_prefix(std::min(character_size(left), left.size()));
    }
    encoder_.finish(out);
  }

  [[nodiscard]] const ByteTable* byte_table() const override { return table_.get(); }

 private:
  static void append_units(const std::string& bytes, std::u16string& out) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
      const auto low = static_cast<unsigned char>(bytes[i]);
      const auto high = static_cast<unsigned char>(bytes[i + 1]);
      out.push_back(static_cast<wide_char>(low | (high << 8)));
    }
  }

  static std::string bytes_of(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size() * 2);
    for (const wide_char c : text) {
      bytes.push_back(static_cast<char>(c & 0xFF));
      bytes.push_back(static_cast<char>(c >> 8));
    }
    return bytes;
  }

  // Bytes of the character at the front: a pair of surrogates is one.
  static std::size_t character_size(std::string_view units) {
    if (units.size() < 4) return 2;
    const auto high = static_cast<unsigned char>(units[1]);
    const auto low = static_cast<unsigned char>(units[3]);
    return high >= 0xD8 && high < 0xDC && low >= 0xDC && low < 0xE0 ? 4 : 2;
  }

  // A page in which every byte is one character, and none of them begins another,
  // can be read by table.
  void find_table() {
    auto table = std::make_unique<ByteTable>();
    for (std::size_t i = 0; i < table->size(); ++i) {
      const char byte = static_cast<char>(static_cast<unsigned char>(i));
      std::string_view bytes(&byte, 1);
      std::string units;
      decoder_.reset();
      const int error = decoder_.convert(bytes, units);
      if (error == EINVAL || (error == 0 && units.size() != 2)) return;
      // A byte without a character reads as the replacement, as it does in a text.
      std::u16string text;
      append_units(units, text);
      (*table)[i] = error == 0 ? text[0] : replacement;
    }
    table_ = std::move(table);
  }

  // The converters keep a state, and pages are handed out as constants.
  mutable std::mutex mutex_;
  mutable Converter decoder_;
  mutable Converter encoder_;
  std::unique_ptr<ByteTable> table_;
};

}  // namespace

std::unique_ptr<CodePage> make_code_page(const std::string& name) {
  const std::string known = folded(name);
  if (known == "windows1252" || known == "cp1252" || known == "1252")
    return std::make_unique<BuiltIn>(windows_1252());
  if (known == "utf8") return std::make_unique<BuiltIn>(utf8_code_page());
  auto page = std::make_unique<IconvPage>(name);
  if (!page->good()) return nullptr;
  return page;
}

}  // namespace embedded
