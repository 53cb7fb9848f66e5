#include "cli/messages.h"

#include <cstdio>

#include "embedded/terminal.h"

namespace cli {

namespace {

void put(std::string_view kind, std::string_view text) {
  const std::string line = embedded::printable(text);
  std::fprintf(stderr, "edlconv: %.*s%s\n", static_cast<int>(kind.size()), kind.data(),
               line.c_str());
}

}  // namespace

void tell(std::string_view text) {
  put("", text);
}

void hint(std::string_view text) {
  put("hint: ", text);
}

void warn(std::string_view text) {
  put("warning: ", text);
}

std::string counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

}  // namespace cli
