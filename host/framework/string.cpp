#include "host/framework/string.h"

#include <algorithm>

namespace {

std::size_t clamped(int value, std::size_t limit) {
  return value < 0 ? 0 : std::min(static_cast<std::size_t>(value), limit);
}

}  // namespace

CString::CString(const wide_char* text) {
  if (text != nullptr) text_ = text;
}

CString& CString::operator+=(std::u16string_view text) {
  text_ += text;
  return *this;
}

CString& CString::operator+=(const CString& text) {
  text_ += text.text_;
  return *this;
}

CString& CString::operator+=(const wide_char* text) {
  if (text != nullptr) text_ += text;
  return *this;
}

CString& CString::operator+=(wide_char c) {
  text_ += c;
  return *this;
}

CString CString::Left(int count) const {
  return text_.substr(0, clamped(count, text_.size()));
}

CString CString::Right(int count) const {
  return text_.substr(text_.size() - clamped(count, text_.size()));
}

CString CString::Mid(int first, int count) const {
  const std::size_t start = clamped(first, text_.size());
  return text_.substr(start, count < 0 ? std::u16string::npos : static_cast<std::size_t>(count));
}

CString& CString::MakeUpper() {
  std::transform(text_.begin(), text_.end(), text_.begin(), upper_case);
  return *this;
}

CString& CString::TrimRight() {
  text_.resize(trimmed_right(text_).size());
  return *this;
}

CString& CString::TrimLeft() {
  const auto first = std::find_if_not(text_.begin(), text_.end(), is_white_space);
  text_.erase(text_.begin(), first);
  return *this;
}

int CString::Replace(std::u16string_view from, std::u16string_view to) {
  if (from.empty()) return 0;
  std::u16string out;
  int count = 0;
  std::size_t at = 0;
  for (std::size_t hit = text_.find(from); hit != std::u16string::npos;
       hit = text_.find(from, at)) {
    out.append(text_, at, hit - at).append(to);
    at = hit + from.size();
    ++count;
  }
  if (count > 0) text_ = out.append(text_, at);
  return count;
}

int CString::Delete(int first, int count) {
  text_.erase(clamped(first, text_.size()), clamped(count, text_.size()));
  return GetLength();
}

int CString::Insert(int index, std::u16string_view text) {
  text_.insert(clamped(index, text_.size()), text);
  return GetLength();
}

int CString::Find(std::u16string_view text, int start) const {
  const std::size_t at = text_.find(text, clamped(start, text_.size()));
  return at == std::u16string::npos ? -1 : static_cast<int>(at);
}

int CString::ReverseFind(wide_char c) const {
  const std::size_t at = text_.rfind(c);
  return at == std::u16string::npos ? -1 : static_cast<int>(at);
}
