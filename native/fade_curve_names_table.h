// Names of the fade curves, by the number that the whole library uses. The numbers
// follow the order in which curves were added, which is why "EXP (E)" stands in
// front of "EXP (D)" and "HYPCOS" in the middle; they are written into files and
// cannot be sorted any more.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

inline constexpr std::array<std::string_view, 20> fade_curve_names = {
    "LINEAR",   // 0
    "EQL POW",  // 1
    "CUBIC",    // 2
    "FORTHRD",  // 3
    "COSINE",   // 4
    "EXP (A)",  // 5
    "EXP (B)",  // 6
    "EXP (C)",  // 7
    "EXP (E)",  // 8
    "LOG (A)",  // 9
    "LOG (B)",  // 10
    "LOG (C)",  // 11
    "LOG (D)",  // 12
    "HYPCOS",   // 13
    "EXP (D)",  // 14
    "EXP (F)",  // 15
    "EXP (G)",  // 16
    "LOG (E)",  // 17
    "LOG (F)",  // 18
    "LOG (G)",  // 19
};

// Seven characters hold the longest of them.
inline constexpr std::size_t fade_curve_name_length = 7;

// "LINEAR" for a number without a name.
[[nodiscard]] std::string_view fade_curve_name(std::uint16_t curve);
// Blanks and NULs behind the name do not count, case does. 0 for no known name.
[[nodiscard]] std::uint16_t fade_curve_of(std::string_view name);
