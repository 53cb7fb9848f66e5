// A text file read and written line by line, through one buffer of fixed size.
//
// Lines end at CR, LF or both. NUL, TAB, blank, CR and LF in front of a line are
// skipped, so empty lines and indentation are never seen; a NUL further in becomes
// a blank. Byte FF hex ends a line as the end of the file does. What a line holds
// beyond the buffer is dropped.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/code_page.h"
#include "host/framework/stdio_file.h"
#include "host/framework/string.h"

class EDL_API CTextFile : public CStdioFile {
 public:
  // A buffer of `size` characters (all formats use 250).
  explicit CTextFile(unsigned short size);

  bool Open(const wide_char* path, unsigned flags, CFileException* error = nullptr) override;

  // Reads the next line into the buffer, at most 249 characters of it. 0 at the
  // end of the file. Raises CFileException when the system cannot read.
  int get_line();
  // Reads one line of at most `max` bytes; null when it is empty, which is the end
  // of the file. `buffer` takes `max` units and no terminator.
  wide_char* ReadString(wide_char* buffer, unsigned max) override;
  // Writes in the host's code page. Raises CFileException.
  void WriteString(std::u16string_view text) override;

  // The next word of the line: appended to `out`, or into a buffer of `max` units
  // (zeroed first when `clear` is nonzero, terminated where there is room). A word
  // of more than `max` + 1 characters is left there. Whether a word was read.
  int next_word(CString& out);
  int next_word(wide_char* out, unsigned short max, int clear);
  // Whether the line holds more than white space from here on.
  [[nodiscard]] int has_more() const;

  // Appends to the line to be written; 0, with the line as it was, when it would
  // be longer than the buffer.
  [[nodiscard]] int add_text(std::u16string_view text);
  // Writes the line and empties it. A refused write is swallowed here (see
  // write_failed). Always 101.
  unsigned short flush_line();
  // Closes and swallows a refused write like flush_line.
  void close_quietly();
  [[nodiscard]] bool write_failed() const { return write_failed_; }

  // The line that was read, terminated.
  [[nodiscard]] const wide_char* line() const { return line_buffer_.data(); }
  [[nodiscard]] std::u16string_view text() const { return {line_buffer_.data(), text_length_}; }
  // Shortens the line that was read to at most `length` characters; what is left of it,
  // terminated.
  std::u16string_view cut_line(std::size_t length);
  // Lines read, from 1; empty ones do not count.
  [[nodiscard]] int line_number() const { return line_number_; }
  // The line of the file as an editor counts it, from 1.
  [[nodiscard]] int physical_line() const { return line_start_; }

  // A place between two lines, to come back to.
  struct Mark {
    std::uint64_t offset;
    int line_number;
    int line_ends;
    bool after_return;
  };
  [[nodiscard]] Mark mark() const;
  void return_to(const Mark& mark);

 private:
  int next_byte();
  std::string_view take_line(std::size_t max);
  void gather_line(std::size_t max);
  void decode_line(std::string_view line, wide_char* buffer, std::size_t max);
  [[nodiscard]] std::size_t skip_white_space(std::size_t at) const;

  std::vector<wide_char> line_buffer_;
  std::size_t read_position_ = 0;
  std::size_t line_length_ = 0;
  std::size_t size_;
  std::size_t read_length_ = 0;
  // Units at the head of the buffer that may not be zero.
  std::size_t used_length_ = 0;
  // Of the line that was read, up to its terminator.
  std::size_t text_length_ = 0;
  int line_number_ = 0;
  int line_ends_ = 0;
  int line_start_ = 0;
  bool after_return_ = false;
  bool write_failed_ = false;
  // Whether the bytes of the line are ASCII, and are read as such.
  bool is_plain_ = false;
  // Whether they hold a NUL.
  bool has_nul_ = false;
  // Of a line that the file's buffer does not hold whole, or of a text to be written.
  std::string bytes_;
  std::u16string decoded_;
  const CodePage* page_ = nullptr;
  // The page's table, null where it has none, and whether it reads ASCII as itself.
  const CodePage::ByteTable* table_ = nullptr;
  bool ascii_as_itself_ = false;
};
