#pragma once

#include <string>
#include <string_view>

#include "aafobj/api/aaf_types.h"

// Texts of the interfaces are wide characters, four bytes each here; in files they are UTF-16.
// Pairs of surrogates become one character and back; a surrogate alone is passed on.
namespace aafobj {

std::wstring to_wide(std::u16string_view text);
std::u16string from_wide(std::wstring_view text);

// Bytes that the text takes with its NUL.
aafUInt32 wide_bytes(std::u16string_view text);

// Copies the text with its NUL into a buffer of so many bytes.
// Errors: NULL_PARAM, SMALLBUF.
[[nodiscard]] HRESULT copy_text(std::u16string_view text, aafCharacter* buffer, aafUInt32 bytes);

// Path texts to the file system's UTF-8.
std::string to_utf8(std::wstring_view text);
std::wstring from_utf8(std::string_view text);

}  // namespace aafobj
