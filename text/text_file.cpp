#include "text/text_file.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "host/code_page.h"
#include "host/host.h"

namespace {

constexpr int end_of_line_mark = 0xFF;

constexpr bool is_line_end(int byte) {
  return byte == '\r' || byte == '\n';
}

constexpr bool is_skipped_at_start(int byte) {
  return byte == 0 || byte == '\t' || byte == ' ' || is_line_end(byte);
}

constexpr bool ends_file(int byte) {
  return byte < 0 || byte == end_of_line_mark;
}

// How many bytes stand in front of the first that ends a line.
std::size_t bytes_of_line(std::string_view bytes) {
  using Bytes = std::uint8_t __attribute__((vector_size(16)));
  std::size_t at = 0;
  for (; bytes.size() - at >= sizeof(Bytes); at += sizeof(Bytes)) {
    Bytes line;
    std::memcpy(&line, bytes.data() + at, sizeof line);
    const auto ends = (line == std::uint8_t{'\r'}) | (line == std::uint8_t{'\n'}) |
                      (line == std::uint8_t{end_of_line_mark});
    std::array<std::uint64_t, 2> words{};
    std::memcpy(&words, &ends, sizeof words);
    if ((words[0] | words[1]) != 0) break;
  }
  while (at < bytes.size() && !is_line_end(bytes[at]) &&
         static_cast<unsigned char>(bytes[at]) != end_of_line_mark) {
    ++at;
  }
  return at;
}

struct ByteRange {
  unsigned char least = 0xFF;
  // Bits that any byte has.
  unsigned char bits = 0;
};

ByteRange range_of(std::string_view bytes) {
  ByteRange range;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    range.least = std::min(range.least, byte);
    range.bits = static_cast<unsigned char>(range.bits | byte);
  }
  return range;
}

bool reads_ascii_as_itself(const CodePage::ByteTable& table) {
  for (std::size_t i = 0; i < 0x80; ++i) {
    if (table[i] != i) return false;
  }
  return true;
}

}  // namespace

CTextFile::CTextFile(unsigned short size)
    : line_buffer_(std::max<std::size_t>(size, 1) + 1), size_(std::max<std::size_t>(size, 1)) {}

bool CTextFile::Open(const wide_char* path, unsigned flags, CFileException* error) {
  line_number_ = line_ends_ = line_start_ = 0;
  text_length_ = 0;
  after_return_ = write_failed_ = false;
  page_ = &host().code_page();
  table_ = page_->byte_table();
  ascii_as_itself_ = table_ != nullptr && reads_ascii_as_itself(*table_);
  return CStdioFile::Open(path, flags, error);
}

int CTextFile::get_line() {
  std::fill_n(line_buffer_.begin(), used_length_, u'\0');
  read_position_ = text_length_ = used_length_ = 0;
  if (ReadString(line_buffer_.data(), static_cast<unsigned>(size_ - 1)) == nullptr) return 0;
  used_length_ = read_length_;
  // A line begins with a character that is none of those skipped in front of it, so it
  // is never blank.
  if (has_nul_) {
    const auto line_end = line_buffer_.begin() + static_cast<std::ptrdiff_t>(read_length_);
    std::replace(line_buffer_.begin(), line_end, u'\0', u' ');
  }
  text_length_ = is_plain_ ? read_length_ : field_length(line_buffer_.data(), read_length_);
  ++line_number_;
  return 1;
}

std::u16string_view CTextFile::cut_line(std::size_t length) {
  if (text_length_ > length) {
    text_length_ = length;
    line_buffer_[length] = u'\0';
  }
  return text();
}

int CTextFile::next_byte() {
  const int byte = get_byte();
  // CR LF is one line end.
  if (byte == '\r' || (byte == '\n' && !after_return_)) ++line_ends_;
  after_return_ = byte == '\r';
  return byte;
}

wide_char* CTextFile::ReadString(wide_char* buffer, unsigned max) {
  read_length_ = 0;
  int byte = next_byte();
  while (is_skipped_at_start(byte))
    byte = next_byte();
  line_start_ = line_ends_ + 1;
  if (ends_file(byte)) return nullptr;
  put_back();
  std::string_view line = take_line(max);
  if (max == 0) return nullptr;
  while (line.back() == '\0')
    line.remove_suffix(1);
  const ByteRange range = range_of(line);
  has_nul_ = range.least == 0;
  is_plain_ = ascii_as_itself_ && range.bits < 0x80;
  decode_line(line, buffer, max);
  return buffer;
}

// Takes the bytes up to the end of the line, at most `max` of them, and passes over its
// end. They stay until the next line is read.
std::string_view CTextFile::take_line(std::size_t max) {
  const std::string_view bytes = buffered();
  const std::size_t length = bytes_of_line(bytes);
  std::string_view line = bytes.substr(0, std::min(length, max));
  if (length < bytes.size()) {
    consume(length);
  } else {
    gather_line(max);
    line = bytes_;
  }
  after_return_ = false;
  next_byte();
  return line;
}

// The same of a line that may go on behind what is in the file's buffer. Its end is not
// passed.
void CTextFile::gather_line(std::size_t max) {
  bytes_.clear();
  for (std::string_view bytes = buffered(); !bytes.empty(); bytes = buffered()) {
    const std::size_t length = bytes_of_line(bytes);
    bytes_.append(bytes.substr(0, std::min(length, max - bytes_.size())));
    consume(length);
    if (length < bytes.size()) break;
  }
}

void CTextFile::decode_line(std::string_view line, wide_char* buffer, std::size_t max) {
  if (is_plain_) {
    read_length_ = line.size();
    std::transform(line.begin(), line.end(), buffer,
                   [](char c) { return static_cast<wide_char>(static_cast<unsigned char>(c)); });
    return;
  }
  if (table_ != nullptr) {
    read_length_ = line.size();
    std::transform(line.begin(), line.end(), buffer,
                   [this](char c) { return (*table_)[static_cast<unsigned char>(c)]; });
    return;
  }
  decoded_.clear();
  page_->decode(line, decoded_);
  read_length_ = std::min(decoded_.size(), max);
  std::copy_n(decoded_.data(), read_length_, buffer);
}

void CTextFile::WriteString(std::u16string_view text) {
  bytes_.clear();
  page_->encode(text, bytes_);
  put_bytes(bytes_);
}

std::size_t CTextFile::skip_white_space(std::size_t at) const {
  while (is_white_space(line_buffer_[at]))
    ++at;
  return at;
}

int CTextFile::next_word(CString& out) {
  const std::size_t start = skip_white_space(read_position_);
  read_position_ = start;
  while (line_buffer_[read_position_] != u'\0' && !is_white_space(line_buffer_[read_position_])) {
    ++read_position_;
  }
  out += std::u16string_view(line_buffer_.data() + start, read_position_ - start);
  return read_position_ > start ? 1 : 0;
}

int CTextFile::next_word(wide_char* out, unsigned short max, int clear) {
  if (clear != 0) std::fill_n(out, max, u'\0');
  const std::size_t start = skip_white_space(read_position_);
  read_position_ = start;
  const std::size_t limit = start + std::size_t{max} + 1;
  while (read_position_ < limit && line_buffer_[read_position_] != u'\0' &&
         !is_white_space(line_buffer_[read_position_])) {
    ++read_position_;
  }
  const std::size_t stored = std::min<std::size_t>(read_position_ - start, max);
  std::copy_n(line_buffer_.data() + start, stored, out);
  if (stored < max) out[stored] = u'\0';
  return read_position_ > start ? 1 : 0;
}

int CTextFile::has_more() const {
  return line_buffer_[skip_white_space(read_position_)] != u'\0' ? 1 : 0;
}

int CTextFile::add_text(std::u16string_view text) {
  if (line_length_ + text.size() > size_) return 0;
  std::copy(text.begin(), text.end(),
            line_buffer_.begin() + static_cast<std::ptrdiff_t>(line_length_));
  line_length_ += text.size();
  used_length_ = std::max(used_length_, line_length_);
  return 1;
}

unsigned short CTextFile::flush_line() {
  try {
    WriteString({line_buffer_.data(), line_length_});
  } catch (const CFileException&) {
    // The list goes on; whoever drives the export asks write_failed at its end.
    write_failed_ = true;
  }
  line_length_ = 0;
  line_buffer_[0] = u'\0';
  return 101;
}

void CTextFile::close_quietly() {
  try {
    Close();
  } catch (const CFileException&) {
    write_failed_ = true;
  }
}

CTextFile::Mark CTextFile::mark() const {
  return {GetPosition(), line_number_, line_ends_, after_return_};
}

void CTextFile::return_to(const Mark& mark) {
  Seek(static_cast<std::int64_t>(mark.offset), begin);
  line_number_ = mark.line_number;
  line_ends_ = mark.line_ends;
  after_return_ = mark.after_return;
}
