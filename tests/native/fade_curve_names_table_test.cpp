#include "native/fade_curve_names_table.h"

#include <gtest/gtest.h>

namespace {

TEST(FadeCurveNames, EachNumberHasItsName) {
  // In the eight bytes of a file, by number.
  const std::string_view names[] = {"LINEAR ", "EQL POW", "CUBIC  ", "FORTHRD", "COSINE ",
                                    "EXP (A)", "EXP (B)", "EXP (C)", "EXP (E)", "LOG (A)",
                                    "LOG (B)", "LOG (C)", "LOG (D)", "HYPCOS ", "EXP (D)",
                                    "EXP (F)", "EXP (G)", "LOG (E)", "LOG (F)", "LOG (G)"};
  ASSERT_EQ(std::size(names), fade_curve_names.size());
  for (std::uint16_t curve = 0; curve < 20; ++curve) {
    std::string padded(fade_curve_name(curve));
    padded.resize(7, ' ');
    EXPECT_EQ(padded, names[curve]);
    EXPECT_EQ(fade_curve_of(names[curve]), curve);
    EXPECT_EQ(fade_curve_of(fade_curve_name(curve)), curve);
  }
}

TEST(FadeCurveNames, NumbersWithoutAName) {
  EXPECT_EQ(fade_curve_name(20), "LINEAR");
  EXPECT_EQ(fade_curve_name(65535), "LINEAR");
}

TEST(FadeCurveNames, TextsThatAreNoName) {
  for (const std::string_view name :
       {"NOSUCH ", "", "       ", "cubic", " CUBIC", "EXP (A", "EXP (A)x"})
    EXPECT_EQ(fade_curve_of(name), 0) << name;
  EXPECT_EQ(fade_curve_of(std::string_view("CUBIC \0 ", 8)), 2);
}

}  // namespace
