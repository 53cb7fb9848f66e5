// Number formatting for 16-bit texts: what the file forms need of "%d", "%0nd",
// "%.nf" and the host's message formats, without the C library's locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/text.h"

// Decimal digits, at least `width` of them, with zeros in front ("%0<width>d").
// A minus sign counts as one place of the width, as printf has it.
EDL_API std::u16string decimal(std::int64_t value, int width = 0);
// Fixed notation with `places` decimals ("%.<places>f", 0 to 60), rounded as the C
// library rounds: to the nearest, exactly on the binary value. Not finite: "nan"
// or "inf" with its sign.
EDL_API std::u16string fixed_point(double value, int places);
// The same with a "+" in front of what has no minus sign ("%+.<places>f").
EDL_API std::u16string signed_fixed_point(double value, int places);

// Fills a format that comes from the host: the first "%s" takes `text`, the
// first of "%d", "%u", "%i", "%ld", "%lu" takes `number`, "%%" gives "%";
// everything else is copied as it stands, so that no format can read past its
// values.
EDL_API std::u16string fill_host_format(std::u16string_view format, std::u16string_view text,
                                        std::int64_t number);

// Reads a decimal number at the head of a text as "%f" would, without locale:
// optional white space and sign, digits, one point, an exponent. Hexadecimal
// forms, "nan" and "inf" are refused, and so is a value that is too large for a
// double; one that is too small reads as 0. Answers whether a number was read;
// `value` is 0.0 otherwise.
EDL_API bool scan_number(std::u16string_view text, double& value);
