#include "text/text_file.h"

#include <algorithm>

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

}  // namespace

CTextFile::CTextFile(unsigned short size) : line_buffer_(std::size_t{size} + 1), size_(size) {}

bool CTextFile::Open(const wide_char* path, unsigned flags, CFileException* error) {
  line_number_ = line_ends_ = line_start_ = 0;
  after_return_ = write_failed_ = false;
  page_ = &host().code_page();
  return CStdioFile::Open(path, flags, error);
}

int CTextFile::get_line() {
  std::fill(line_buffer_.begin(), line_buffer_.end(), u'\0');
  read_position_ = 0;
  do {
    if (ReadString(line_buffer_.data(), static_cast<unsigned>(size_ - 1)) == nullptr) return 0;
    std::replace(line_buffer_.begin(),
                 line_buffer_.begin() + static_cast<std::ptrdiff_t>(read_length_), u'\0', u' ');
    ++line_number_;
  } while (std::all_of(line_buffer_.begin(),
                       line_buffer_.begin() + static_cast<std::ptrdiff_t>(read_length_),
                       [](wide_char c) { return c == u' '; }));
  return 1;
}

int CTextFile::next_byte() {
  const int byte = get_byte();
  // CR LF is one line end.
  if (byte == '\r' || (byte == '\n' && !after_return_)) ++line_ends_;
  after_return_ = byte == '\r';
  return byte;
}

wide_char* CTextFile::ReadString(wide_char* buffer, unsigned max) {
  bytes_.clear();
  read_length_ = 0;
  int byte = next_byte();
  while (is_skipped_at_start(byte))
    byte = next_byte();
  line_start_ = line_ends_ + 1;
  while (!ends_file(byte) && !is_line_end(byte)) {
    if (bytes_.size() < max) bytes_.push_back(static_cast<char>(byte));
    byte = next_byte();
  }
  while (!bytes_.empty() && bytes_.back() == '\0')
    bytes_.pop_back();
  if (bytes_.empty()) return nullptr;
  decoded_.clear();
  page_->decode(bytes_, decoded_);
  read_length_ = std::min<std::size_t>(decoded_.size(), max);
  std::copy_n(decoded_.data(), read_length_, buffer);
  return buffer;
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
