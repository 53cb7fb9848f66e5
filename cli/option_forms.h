// How the text of an option becomes a value, strictly: whole decimal numbers in
// their range, words out of a list. Anything else is a usage error that says what
// was expected.
#pragma once

#include <CLI/CLI.hpp>
#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cli {

// The number that a text is, from its first to its last character.
template <class Number>
std::optional<Number> number_of(std::string_view text) {
  Number value{};
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

// How the value of an option looks: as the help shows it, and as a sentence tells it.
struct ValueForm {
  std::string shown;
  std::string expected;
};

// An option whose text goes to `take`, which answers whether it is of the form.
template <class Take>
CLI::Option* add_text_option(CLI::App& command, const std::string& name, const ValueForm& form,
                             const std::string& help, Take take) {
  return command
      .add_option_function<std::string>(
          name,
          [name, expected = form.expected, take](const std::string& text) {
            if (!take(text)) {
              throw CLI::ValidationError(name, "expects " + expected + ", not \"" + text + "\"");
            }
          },
          help)
      ->type_name(form.shown);
}

template <class Number>
CLI::Option* add_number_option(CLI::App& command, const std::string& name, Number& value,
                               const std::string& help) {
  const std::string range = std::to_string(std::numeric_limits<Number>::min()) + " to " +
                            std::to_string(std::numeric_limits<Number>::max());
  const ValueForm form = {"N", "a whole number, " + range};
  return add_text_option(command, name, form, help, [&value](const std::string& text) {
    const auto number = number_of<Number>(text);
    if (number) value = *number;
    return number.has_value();
  });
}

// A word out of a list, and the value for each.
template <class Value>
CLI::Option* add_word_option(CLI::App& command, const std::string& name,
                             const std::vector<std::pair<std::string, Value>>& words, Value& value,
                             const std::string& help) {
  std::string form;
  for (const auto& word : words)
    form += (form.empty() ? "" : "|") + word.first;
  return add_text_option(command, name, {form, form}, help,
                         [&value, words](const std::string& text) {
                           for (const auto& [word, meaning] : words) {
                             if (word != text) continue;
                             value = meaning;
                             return true;
                           }
                           return false;
                         });
}

inline CLI::Option* add_switch_option(CLI::App& command, const std::string& name, bool& value,
                                      const std::string& help) {
  return add_word_option<bool>(command, name, {{"on", true}, {"off", false}}, value, help);
}

}  // namespace cli
