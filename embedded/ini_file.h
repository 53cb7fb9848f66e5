// A settings file of sections and keys, as text.
//
//   ; a comment, as is a line that begins with "#"
//   [Tribble]
//   Ignore Version Numbers = 1
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace embedded {

class IniFile {
 public:
  // Reads the text of a file, with or without a byte order mark. Lines that are
  // neither a section nor a key are passed over; of a key that comes twice in its
  // section the first counts.
  void read(std::string_view text);
  // Sets a key, stronger than what stands there.
  void set(std::string_view section, std::string_view key, std::string_view value);

  // Sections and keys are compared without regard to the case of ASCII letters.
  [[nodiscard]] bool has_section(std::string_view section) const;
  [[nodiscard]] std::optional<std::string> value(std::string_view section,
                                                 std::string_view key) const;

 private:
  using Keys = std::map<std::string, std::string, std::less<>>;
  std::map<std::string, Keys, std::less<>> sections_;
};

// An integer as settings files hold it: white space, a sign, decimal digits or
// hexadecimal ones behind "0x"; what follows is not read. Empty when there is no
// digit. What does not fit is brought to the end of the range.
[[nodiscard]] std::optional<long long> ini_number(std::string_view text);

}  // namespace embedded
