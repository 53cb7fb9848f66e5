#include "host/text_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace {

std::u16string widened(std::string_view text) {
  return {text.begin(), text.end()};
}

// The most decimals that any file form asks for, with room to spare.
constexpr int most_places = 60;

// Whether a number of decimal digits, a point and an exponent, which does not fit a
// double, is too small for it rather than too large. The place of its first digit
// that is not 0 decides, since the range ends far away on both sides.
bool is_tiny(std::string_view number) {
  const std::size_t e = number.find('e');
  const std::string_view mantissa = number.substr(0, e);
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return true;
  std::int64_t exponent = 0;
  if (e != std::string_view::npos) {
    const std::string_view digits = number.substr(e + 1);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (read.ec != std::errc()) return digits.front() == '-';
  }
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  const std::int64_t order = point - static_cast<std::int64_t>(first);
  // No number has digits enough to make up for an exponent beyond this.
  constexpr std::int64_t beyond = std::int64_t{1} << 60;
  return order + std::clamp(exponent, -beyond, beyond) < 0;
}

// Reads a number of at most 15 digits without an exponent: its digits as a whole number
// and the power of ten are both exact in a double, so that one division rounds as the
// exact value does. False for any other text.
bool scan_short_number(std::u16string_view text, double& value) {
  constexpr std::array<double, 16> powers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool negative = text.starts_with(u'-');
  if (negative || text.starts_with(u'+')) text.remove_prefix(1);
  // Beyond 15 digits it may wrap, and is not used.
  std::uint64_t digits = 0;
  std::size_t at = 0;
  const auto read_digits = [&text, &digits, &at] {
    const std::size_t start = at;
    for (; at < text.size() && is_digit(text[at]); ++at)
      digits = digits * 10 + static_cast<std::uint64_t>(text[at] - u'0');
    return at - start;
  };
  std::size_t count = read_digits();
  std::size_t decimals = 0;
  if (at < text.size() && text[at] == u'.') {
    ++at;
    decimals = read_digits();
    count += decimals;
  }
  if (count >= powers.size()) return false;
  if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) return false;
  if (count == 0) return false;
  const double magnitude = static_cast<double>(digits) / powers[decimals];
  value = negative ? -magnitude : magnitude;
  return true;
}

}  // namespace

std::u16string decimal(std::int64_t value, int width) {
  std::array<char, 24> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  std::string_view digits(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  std::u16string out;
  if (value < 0) {
    out.push_back(u'-');
    digits.remove_prefix(1);
  }
  const std::size_t places = out.size() + digits.size();
  const auto wanted = static_cast<std::size_t>(width > 0 ? width : 0);
  if (places < wanted) out.append(wanted - places, u'0');
  return out + widened(digits);
}

std::u16string fixed_point(double value, int places) {
  if (std::isnan(value)) return u"nan";
  if (std::isinf(value)) return value < 0 ? u"-inf" : u"inf";
  // The longest double has 309 digits in front of the point.
  std::array<char, 400> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::fixed, std::clamp(places, 0, most_places))
                       .ptr;
  return widened({buffer.data(), static_cast<std::size_t>(end - buffer.data())});
}

std::u16string signed_fixed_point(double value, int places) {
  std::u16string out = fixed_point(value, places);
  if (out.front() != u'-') out.insert(out.begin(), u'+');
  return out;
}

std::u16string fill_host_format(std::u16string_view format, std::u16string_view text,
                                std::int64_t number) {
  std::u16string out;
  bool text_used = false;
  bool number_used = false;
  for (std::size_t i = 0; i < format.size(); ++i) {
    const std::u16string_view rest = format.substr(i);
    if (rest.starts_with(u"%%")) {
      out.push_back(u'%');
      ++i;
    } else if (!text_used && rest.starts_with(u"%s")) {
      out.append(text);
      text_used = true;
      ++i;
    } else if (!number_used &&
               (rest.starts_with(u"%d") || rest.starts_with(u"%u") || rest.starts_with(u"%i"))) {
      out.append(decimal(number));
      number_used = true;
      ++i;
    } else if (!number_used && (rest.starts_with(u"%ld") || rest.starts_with(u"%lu"))) {
      out.append(decimal(number));
      number_used = true;
      i += 2;
    } else {
      out.push_back(format[i]);
    }
  }
  return out;
}

bool scan_number(std::u16string_view text, double& value) {
  value = 0.0;
  std::size_t at = 0;
  while (at < text.size() && is_white_space(text[at]))
    ++at;
  if (scan_short_number(text.substr(at), value)) return true;
  std::string ascii;
  bool digits = false;
  bool point = false;
  if (at < text.size() && (text[at] == u'+' || text[at] == u'-')) {
    if (text[at] == u'-') ascii.push_back('-');
    ++at;
  }
  for (; at < text.size() && (is_digit(text[at]) || (text[at] == u'.' && !point)); ++at) {
    point = point || text[at] == u'.';
    digits = digits || is_digit(text[at]);
    ascii.push_back(static_cast<char>(text[at]));
  }
  if (!digits) return false;
  if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
    std::string exponent = "e";
    std::size_t next = at + 1;
    if (next < text.size() && (text[next] == u'+' || text[next] == u'-')) {
      exponent.push_back(static_cast<char>(text[next++]));
    }
    const std::size_t first_digit = next;
    for (; next < text.size() && is_digit(text[next]); ++next) {
      exponent.push_back(static_cast<char>(text[next]));
    }
    if (next > first_digit) ascii += exponent;
  }
  // from_chars wants no "+" behind the "e"; it has no locale.
  if (const auto plus = ascii.find("e+"); plus != std::string::npos) ascii.erase(plus + 1, 1);
  double read = 0.0;
  const auto result = std::from_chars(ascii.data(), ascii.data() + ascii.size(), read);
  if (result.ec == std::errc::result_out_of_range && is_tiny(ascii)) {
    value = ascii.front() == '-' ? -0.0 : 0.0;
    return true;
  }
  if (result.ec != std::errc() || !std::isfinite(read)) return false;
  value = read;
  return true;
}
