#include "aafobj/container/result.h"

#include <array>
#include <cstddef>

namespace aafobj {

namespace {

constexpr std::array<const char*, 17> k_texts = {
    "done",
    "invalid argument",
    "name is not 1 to 31 characters",
    "not found",
    "exists already",
    "element is of the other type",
    "file is open for reading only",
    "file is closed",
    "not an AAF file",
    "unsupported form of compound file",
    "structure of the file is damaged",
    "two chains of the file overlap",
    "file is cut short",
    "too large",
    "no space left",
    "access denied",
    "input or output failed",
};
static_assert(k_texts.size() == static_cast<std::size_t>(Result::io_error) + 1);

}  // namespace

const char* result_text(Result result) {
  const auto index = static_cast<std::size_t>(result);
  return index < k_texts.size() ? k_texts[index] : "unknown result";
}

}  // namespace aafobj
