#include "cli/messages.h"

#include <array>
#include <cerrno>
#include <cstdio>

#include "cli/file_checks.h"
#include "embedded/terminal.h"
#include "host/rates.h"

namespace cli {

namespace {

void put(std::string_view kind, std::string_view text) {
  const std::string line = "edlconv: " + std::string(kind) + embedded::printable(text) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

bool tell_of_output(int error) {
  tell("the output could not be written: " + error_text(error));
  return false;
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

std::string frame_rate_text(std::uint8_t frame_rate_index) {
  static constexpr std::array<const char*, frame_rate_count> names = {"24", "25", "29.97",
                                                                      "29.97 drop", "30"};
  return frame_rate_index < frame_rate_count ? names[frame_rate_index] : "25";
}

bool put_data(std::string_view data) {
  return std::fwrite(data.data(), 1, data.size(), stdout) == data.size() || tell_of_output(errno);
}

bool flush_data() {
  return std::fflush(stdout) == 0 || tell_of_output(errno);
}

}  // namespace cli
