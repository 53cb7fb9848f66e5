// Words, URLs and tables of audio decision lists.
#include "adl/list_tokens.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "adl/adl_fader_table.h"
#include "adl/fade_curves.h"
#include "adl/source_url.h"

namespace {

using Words = std::vector<std::string>;

// The words of a text whose last one does not touch the end.
Words words_of(std::string_view text) {
  Words words;
  std::size_t position = 0;
  adl::Token token;
  while (adl::get_next_token(text, position, token))
    words.emplace_back(token);
  return words;
}

TEST(Tokens, StandBetweenBlanksQuotesAndAngles) {
  EXPECT_EQ(words_of("a \"b c\" <d e> f\n"), (Words{"a", "b c", "<d e>", "f"}));
  EXPECT_EQ(words_of("\"\" _ "), (Words{"_", "_"}));
  EXPECT_EQ(words_of("\"x\\\"y\" "), Words{"x\\\"y"});
  EXPECT_EQ(words_of("\"a\"b "), (Words{"a", "b"}));
  EXPECT_EQ(words_of("a\tb\rc\nd\fe f "), (Words{"a", "b", "c", "d", "e", "f"}));
  EXPECT_EQ(words_of("a\vb "), Words{"a\vb"});
  EXPECT_EQ(words_of("a<b> c"), Words{"a<b>"});
}

TEST(Tokens, OneThatTouchesTheEndIsAFailedRead) {
  std::size_t position = 0;
  adl::Token token;
  EXPECT_FALSE(adl::get_next_token("abc", position, token));
  EXPECT_EQ(token, "abc");
  EXPECT_EQ(position, 3U);
  EXPECT_FALSE(adl::get_next_token("abc", position, token));
  EXPECT_EQ(token, "");
  position = 0;
  EXPECT_TRUE(adl::get_next_token("abc ", position, token));
  for (const std::string_view text : {"\"", "\"\"", "\"a"}) {
    position = 0;
    EXPECT_FALSE(adl::get_next_token(text, position, token));
    EXPECT_EQ(token, "_") << text;
  }
  position = 0;
  EXPECT_FALSE(adl::get_next_token("\"abc", position, token));
  EXPECT_EQ(token, "ab");
  position = 0;
  EXPECT_FALSE(adl::get_next_token("<ab", position, token));
  EXPECT_EQ(token, "<ab");
}

TEST(Tokens, CommentsArePassedOver) {
  EXPECT_EQ(words_of("/* x */ a "), Words{"a"});
  EXPECT_EQ(words_of("/*x*/ a "), Words{"a"});
  EXPECT_EQ(words_of("/*/ a "), Words{"a"});
  EXPECT_EQ(words_of("/* a /* b */ c */ d "), Words{"d"});
  EXPECT_EQ(words_of("a/*b c "), (Words{"a/*b", "c"}));
  EXPECT_EQ(words_of("/* \"x y\" */ z "), Words{"z"});
  EXPECT_EQ(words_of("\"/* x\" \"y */\" z "), Words{"z"});
  EXPECT_EQ(words_of("/* x "), Words{});
}

TEST(Tokens, CommentsNestAsDeepAsTheyLike) {
  std::string text;
  for (int i = 0; i < 100000; ++i)
    text += "/* ";
  EXPECT_EQ(words_of(text), Words{});
  for (int i = 0; i < 100000; ++i)
    text += "*/ ";
  EXPECT_EQ(words_of(text + "a "), Words{"a"});
}

TEST(Tokens, SectionsEndWithTheirClosingTag) {
  const auto skipped = [](std::string_view text) {
    std::size_t position = 0;
    return adl::skip_section(text, position, "<FOO>");
  };
  EXPECT_TRUE(skipped("x </FOO> "));
  EXPECT_TRUE(skipped("x </foo> "));
  EXPECT_FALSE(skipped("x </FOO>"));
  EXPECT_FALSE(skipped("x <//FOO> "));
  EXPECT_FALSE(skipped(""));
}

// The same read word by word.
bool skip_word_by_word(std::string_view list, std::size_t& position) {
  adl::Token token;
  while (adl::get_next_token(list, position, token)) {
    if (adl::is_keyword(token, "</A>")) return true;
  }
  return false;
}

TEST(Tokens, SectionsAreSkippedAsIfReadWordByWord) {
  constexpr std::string_view pieces[] = {" ",  "\n",   "a",    "\"",   "\\", "<",
                                         ">",  "/*",   "*/",   "/",    "*",  "\f",
                                         "\v", "\xe4", "</A>", "</a>", "A>", " <A> "};
  std::mt19937 random(41);
  int found = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string list;
    for (std::size_t count = random() % 30; count > 0; --count)
      list += pieces[random() % std::size(pieces)];
    std::size_t position = list.empty() ? 0 : random() % list.size();
    std::size_t expected = position;
    const bool is_found = skip_word_by_word(list, expected);
    ASSERT_EQ(adl::skip_section(list, position, "<A>"), is_found) << list;
    ASSERT_EQ(position, expected) << list;
    found += is_found ? 1 : 0;
  }
  EXPECT_GT(found, 2000);
  EXPECT_LT(found, 18000);
}

TEST(Tokens, Numbers) {
  EXPECT_TRUE(adl::all_digits("0123456789"));
  EXPECT_FALSE(adl::all_digits(""));
  EXPECT_FALSE(adl::all_digits("1a"));
  EXPECT_EQ(adl::wrapped_number("4294967301"), 5U);
  EXPECT_EQ(adl::limited_number("9223372036854775807", INT64_MAX), INT64_MAX);
  EXPECT_EQ(adl::limited_number("9223372036854775806", INT64_MAX), INT64_MAX - 1);
  EXPECT_EQ(adl::limited_number("99999999999999999999", INT64_MAX), INT64_MAX);
  EXPECT_EQ(adl::channel_number("0"), 65535);
  EXPECT_EQ(adl::channel_number("3"), 2);
  // 2147483647 less 1, in 16 bits.
  EXPECT_EQ(adl::channel_number("99999999999"), 65534);
  for (const char* const good : {"1", "-1.5", "+", "-", ".", "5.", "+.5", ""})
    EXPECT_TRUE(adl::is_decimal_number(good)) << good;
  for (const char* const bad : {"1e5", "1-", "--1", "1.2.3", "x", "1 "})
    EXPECT_FALSE(adl::is_decimal_number(bad)) << bad;
  EXPECT_EQ(adl::decimal_number("+6.02"), 6.02);
  EXPECT_EQ(adl::decimal_number("-.5"), -0.5);
  EXPECT_EQ(adl::decimal_number("5."), 5.0);
  for (const char* const none : {"+", "-", ".", ""})
    EXPECT_EQ(adl::decimal_number(none), 0.0) << none;
  EXPECT_EQ(adl::decimal_number(std::string(400, '9')), 0.0);
}

TEST(SourceUrls, ArePathsWithoutHostAndExtension) {
  struct Case {
    const char* url;
    const char* path;
    const char* extension;
  };
  const Case cases[] = {
      {"URL:file://localhost/C:/audio/take%201.wav", "//C:/audio/take 1", ".WAV"},
      {"url:FILE://LocalHost/a.bwf", "//a", ".BWF"},
      {"URL:file://HOST/x.wav", "//HOST/x", ".WAV"},
      {"file://HOST/x.wav", "//HOST/x", ".WAV"},
      {"file:///C:/a.wav", "///C:/a", ".WAV"},
      {"URL:file:///C:/a.wav", "///C:/a", ".WAV"},
      {"URL:file://localhost", "//localhost", ""},
      {"file://localhost/a.wav", "//localhost/a", ".WAV"},
      {"URL:file://localhost/%2541.aiff", "//%2541.aiff", ""},
      {"URL:file://localhost/a%20b%20.mp3", "//a b ", ".MP3"},
      {"file://.wav", "", nullptr},
      {"http://x/a.wav", "", nullptr},
      {"URL:ftp://x/a.wav", "", nullptr},
      {"URL:file://localhosts/a.wav", "", nullptr},
      {"file:/", "", nullptr},
      {"_", "", nullptr},
      {"", "", nullptr},
  };
  for (const Case& one : cases) {
    const auto parsed = adl::parse_source_url(one.url);
    ASSERT_EQ(parsed.has_value(), one.extension != nullptr || std::string(one.url) == "file://.wav")
        << one.url;
    if (!parsed || one.extension == nullptr) continue;
    EXPECT_EQ(parsed->path, one.path);
    EXPECT_EQ(parsed->extension, one.extension);
  }
  // The slash in front of the extension is the path.
  EXPECT_EQ(adl::parse_source_url("file://.wav")->path, "//");
  EXPECT_EQ(adl::file_name_of("//C:/a b"), "a b");
  EXPECT_EQ(adl::file_name_of("//"), "");
}

TEST(FaderTable, RunsStraightBetweenItsCorners) {
  const std::pair<std::uint32_t, double> rows[] = {
      {0, -160.0},   {4, -90.0},    {8, -80.0},        {24, -64.0},   {64, -46.0},   {128, -32.0},
      {196, -20.0},  {264, -12.0},  {384, 0.0},        {504, 12.0},   {1, -142.5},   {5, -87.5},
      {9, -79.0},    {16, -72.0},   {25, -63.55},      {65, -45.78},  {129, -31.82}, {160, -26.35},
      {195, -20.18}, {197, -19.88}, {230, -16.0},      {263, -12.12}, {265, -11.9},  {300, -8.4},
      {324, -6.0},   {383, -0.1},   {385, 0.1},        {444, 6.0},    {503, 11.9},   {68, -45.13},
      {76, -43.38},  {84, -41.63},  {92, -39.88},      {100, -38.13}, {108, -36.38}, {116, -34.63},
      {124, -32.88}, {505, 12.0},   {0xFFFFFFFF, 12.0}};
  for (const auto& [step, db] : rows)
    EXPECT_EQ(fader_db_from_step(step), db) << step;
  double sum = fader_db_from_step(0);
  for (std::uint32_t step = 1; step < fader_steps; ++step) {
    EXPECT_GT(fader_db_from_step(step), fader_db_from_step(step - 1)) << step;
    sum += fader_db_from_step(step);
  }
  EXPECT_NEAR(sum, -9618.04, 1e-6);
}

TEST(FaderTable, FindsTheNearestStep) {
  for (std::uint16_t step = 0; step < fader_steps; ++step)
    EXPECT_EQ(fader_step_from_db(fader_db_from_step(step)), step);
  const std::pair<double, int> rows[] = {{0.0, 384},    {-0.0, 384},  {-6.02, 324},    {-100.0, 3},
                                         {-150.0, 1},   {-144.0, 1},  {12.01, 0xFFFF}, {0.04, 384},
                                         {0.05, 385},   {-88.75, 5},  {-79.5, 9},      {-33.0, 123},
                                         {-12.05, 264}, {11.95, 503}, {-1000.0, 0},    {-160.0, 0}};
  for (const auto& [db, step] : rows)
    EXPECT_EQ(fader_step_from_db(db), step) << db;
}

// The told search: halving strides from the middle.
std::uint16_t plain_step(double db) {
  int i = 252;
  int stride = 252;
  const auto table = [](int step) { return fader_db_from_step(static_cast<std::uint32_t>(step)); };
  while (i < 504 && !(table(i) <= db && db <= table(i + 1))) {
    stride = (stride + 1) / 2;
    if (table(i) > db) {
      i -= stride;
    } else if (db > table(i + 1)) {
      i += stride;
    }
    i = std::min(i, 504);
    if (i == 504 && table(504) > db) i -= (stride + 1) / 2;
  }
  if (i == 504) return 504;
  return static_cast<std::uint16_t>(table(i + 1) - db > db - table(i) ? i : i + 1);
}

TEST(FaderTable, AgreesWithTheHalvingSearch) {
  for (int hundredths = -16000; hundredths <= 1200; ++hundredths) {
    EXPECT_EQ(fader_step_from_db(hundredths / 100.0), plain_step(hundredths / 100.0)) << hundredths;
  }
}

TEST(FadeCurves, ComeBackFromTheirLevels) {
  ASSERT_EQ(fade_levels_count, 117);
  const auto expected = [](std::uint16_t curve) -> std::uint16_t {
    switch (curve) {
      case 30:
        return 29;
      case 32:
        return 31;
      case 91:
      case 92:
        return 24;
      case 93:
        return 25;
      case 96:
        return 95;
      case 114:
        return 113;
      case 116:
        return 87;
      default:
        return curve;
    }
  };
  for (std::uint16_t curve = 0; curve < fade_levels_count; ++curve)
    EXPECT_EQ(fade_curve_from_levels(fade_levels_from_curve(curve)), expected(curve)) << curve;
  EXPECT_EQ(fade_levels_from_curve(117).half_db, -6.0);
  EXPECT_EQ(fade_levels_from_curve(65535).half_db, -6.0);
}

TEST(FadeCurves, AreTheNearestByAmplitude) {
  const std::pair<FadeLevels, int> rows[] = {{{-12.04, -6.02, -2.5}, 0},
                                             {{-6.02, -2.5, -0.7}, 53},
                                             {{-20, -10, -5}, 12},
                                             {{-10.0, -4.5, -1.6}, 47},
                                             {{0, 0, 0}, 31},
                                             {{-100, -100, -100}, 1},
                                             {{-3, -3, -3}, 33},
                                             {{-8.34, -3.01, -0.69}, 113},
                                             {{-2.5, -6.0, -12.0}, 64},
                                             {{5, 5, 5}, 31},
                                             {{1e300, 1e300, 1e300}, 0}};
  for (const auto& [levels, curve] : rows)
    EXPECT_EQ(fade_curve_from_levels(levels), curve) << levels.quarter_db;
}

}  // namespace
