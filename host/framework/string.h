// A text of any length.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/text.h"

class EDL_API CString {
 public:
  CString() = default;
  CString(const wide_char* text);                     // NOLINT: the framework's own conversion
  CString(std::u16string_view text) : text_(text) {}  // NOLINT
  CString(std::u16string text) : text_(std::move(text)) {}  // NOLINT

  [[nodiscard]] const wide_char* c_str() const { return text_.c_str(); }
  [[nodiscard]] std::u16string_view view() const { return text_; }
  operator const wide_char*() const { return text_.c_str(); }  // NOLINT
  [[nodiscard]] int GetLength() const { return static_cast<int>(text_.size()); }
  [[nodiscard]] bool IsEmpty() const { return text_.empty(); }
  // The unit at a place inside the text.
  [[nodiscard]] wide_char GetAt(int index) const { return text_[static_cast<std::size_t>(index)]; }
  void SetAt(int index, wide_char c) { text_[static_cast<std::size_t>(index)] = c; }
  void Empty() { text_.clear(); }

  CString& operator+=(std::u16string_view text);
  CString& operator+=(const CString& text);
  CString& operator+=(const wide_char* text);
  CString& operator+=(wide_char c);

  // Places and lengths outside the text are brought inside it.
  [[nodiscard]] CString Left(int count) const;
  [[nodiscard]] CString Right(int count) const;
  [[nodiscard]] CString Mid(int first, int count = -1) const;

  CString& MakeUpper();
  CString& TrimRight();
  CString& TrimLeft();
  // All places where `from` stands take `to`; answers how many.
  int Replace(std::u16string_view from, std::u16string_view to);
  int Delete(int first, int count = 1);
  int Insert(int index, std::u16string_view text);

  // -1 when it does not occur.
  [[nodiscard]] int Find(std::u16string_view text, int start = 0) const;
  [[nodiscard]] int ReverseFind(wide_char c) const;
  [[nodiscard]] bool EqualNoCase(std::u16string_view text) const {
    return equal_no_case(text_, text);
  }

  friend bool operator==(const CString& a, const CString& b) { return a.text_ == b.text_; }
  friend bool operator==(const CString& a, std::u16string_view b) { return a.text_ == b; }
  friend bool operator==(const CString& a, const wide_char* b) { return a.view() == b; }
  friend CString operator+(CString a, std::u16string_view b) { return a += b, a; }

 private:
  std::u16string text_;
};
