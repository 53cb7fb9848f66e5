// Lists that the tests of the program convert.
#pragma once

#include <string>
#include <vector>

namespace support {

// One edit of ten seconds; silent about its rates.
inline constexpr const char* silent_list =
    "TITLE: T\n"
    "001  TAPE01  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n";

// The same with "FCM: <mode> FRAME" in front.
inline std::string list_with_fcm(const std::string& mode) {
  return "TITLE: T\nFCM: " + mode +
         " FRAME\n"
         "001  TAPE01  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n";
}

// What silent_list becomes at 25 frames in a file whose title is padded to ten
// characters.
inline std::string written_list(const std::string& padded_title,
                                const std::string& format = "CMX 3600 4-Ch") {
  return "TITLE: " + padded_title + " FORMAT: " + format +
         " \n"
         "001  TAPE01 \tA     C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n";
}

// Both rates, so that nothing is assumed and nothing is told.
inline std::vector<std::string> with_rates(std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"--sample-rate", "48000", "--frame-rate", "25"});
  return arguments;
}

}  // namespace support
