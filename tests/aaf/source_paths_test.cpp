#include "aaf/source_paths.h"

#include <gtest/gtest.h>

#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

namespace {

using support::utf8;

class SourcePathsTest : public testing::TestWithParam<bool> {
 protected:
  SourcePathsTest() {
    if (GetParam()) host.fixes.set_all();
  }
  static std::string resolved(const std::string& text, const std::string& aaf = "D:\\x\\y.aaf") {
    return utf8(aaf::resolve_local_path(text_from_utf8(text), text_from_utf8(aaf)));
  }
  support::ScriptedHost host;
};
INSTANTIATE_TEST_SUITE_P(, SourcePathsTest, testing::Values(false, true),
                         [](const auto& way) { return way.param ? "Corrected" : "Letter"; });

TEST_P(SourcePathsTest, Addresses) {
  EXPECT_EQ(resolved("file:///C%3a/audio/a%20b.wav"), "//C:/audio/a b");
  EXPECT_EQ(resolved("FILE:///D%3A/x.aif"), "//D:/x");
  EXPECT_EQ(resolved("file:///home/u/a.wav"), "//home/u/a");
  EXPECT_EQ(resolved("file:////srv/s/a.wav"), "//srv/s/a");
  EXPECT_EQ(resolved("file://///srv/s/a.wav"), "//srv/s/a");
  EXPECT_EQ(resolved("file:///C:\\a\\b.wav"), "//C:/a/b");
  EXPECT_EQ(resolved("file:///C:/a.b%2Ewav"), "//C:/a.b");
  EXPECT_EQ(resolved("file:///.wav"), "//");
}

TEST_P(SourcePathsTest, OnlyThreeLettersAreAnExtension) {
  EXPECT_EQ(resolved("file:///C:/a.aiff"), "//C:/a.aiff");
  EXPECT_EQ(resolved("C:/a.aiff"), "//C:/a.aiff");
  EXPECT_EQ(resolved("clips/take"), "//D:/x/clips/take");
  EXPECT_EQ(resolved("//server/take.1"), "//server/take.1");
}

TEST_P(SourcePathsTest, RelativeToTheFolderOfTheFile) {
  EXPECT_EQ(resolved("clips/a.wav"), "//D:/x/clips/a");
  EXPECT_EQ(resolved("../a.wav"), "//D:/a");
  EXPECT_EQ(resolved("../../a.wav"), "//a");
  EXPECT_EQ(resolved("./a.wav"), "//D:/x/a");
  EXPECT_EQ(resolved("a/./b/../c.wav"), "//D:/x/a/c");
  EXPECT_EQ(resolved("a%20b.wav"), "//D:/x/a b");
  EXPECT_EQ(resolved("clips/a.wav", "/home/u/x.aaf"), "//home/u/clips/a");
  EXPECT_EQ(resolved("clips\\..\\a.wav"), "//D:/x/a");
  EXPECT_EQ(resolved("clips/a.wav", "//server/share/x.aaf"), "//server/share/clips/a");
  EXPECT_EQ(resolved("clips/a.wav", "y.aaf"), "//clips/a");
}

// So what they stand for is neither an extension nor a folder.
TEST_P(SourcePathsTest, EscapesOfARelativePathAreDecodedLast) {
  EXPECT_EQ(resolved("a%2Ewav"), "//D:/x/a.wav");
  EXPECT_EQ(resolved("a/%2E%2E/b.wav"), "//D:/x/a/../b");
  EXPECT_EQ(resolved("a%2Fb/../c.wav"), "//D:/x/c");
}

// The last point goes before the folders are looked at.
TEST_P(SourcePathsTest, PointsAtTheEnd) {
  EXPECT_EQ(resolved(".."), "//D:/x/.");
  EXPECT_EQ(resolved("..."), "//D:/");
  EXPECT_EQ(resolved("a/."), "//D:/x/a/");
  EXPECT_EQ(resolved("a/b/..."), "//D:/x/a/");
}

TEST_P(SourcePathsTest, WithADrive) {
  EXPECT_EQ(resolved("C:\\a\\b.wav"), "//C:/a/b");
  EXPECT_EQ(resolved("c:/a.wav"), "//c:/a");
}

// A single slash in front gets its second one at the end, and no extension goes.
TEST_P(SourcePathsTest, FromTheRoot) {
  EXPECT_EQ(resolved("\\\\server\\share\\a.wav"), "//server/share/a");
  EXPECT_EQ(resolved("/home/u/a.wav"), "/home/u/a.wav/");
  EXPECT_EQ(resolved("/"), "/");
  EXPECT_EQ(resolved("//folder/1_2_3.wav"), "//folder/1_2_3");
  // With the slash behind them these end in four characters that are cut.
  EXPECT_EQ(resolved("/home/u/a.ai"), "/home/u/a");
}

TEST_P(SourcePathsTest, NothingAtAll) {
  EXPECT_EQ(resolved(""), "");
}

TEST_P(SourcePathsTest, AnAddressOfNothingIsARelativePath) {
  EXPECT_EQ(resolved("file:///"), "//D:/x/file:///");
}

TEST_P(SourcePathsTest, ShortTextsDoNoHarm) {
  for (const char* const text :
       {"a", ".", "..", "...", "....", "a.b", "/.", "C:", "C:\\", "%", "%4"})
    EXPECT_FALSE(resolved(text).empty()) << text;
}

TEST_P(SourcePathsTest, AHostInTheAddress) {
  const bool corrected = GetParam();
  EXPECT_EQ(resolved("file://localhost/C:/a.wav"),
            corrected ? "//C:/a" : "//D:/x/file://localhost/C:/a");
  EXPECT_EQ(resolved("FILE://LOCALHOST/C:/a.wav"),
            corrected ? "//C:/a" : "//D:/x/FILE://LOCALHOST/C:/a");
  EXPECT_EQ(resolved("file://server/share/a%20b.wav"),
            corrected ? "//server/share/a b" : "//D:/x/file://server/share/a b");
  EXPECT_EQ(resolved("file://localhost/home/u/a.wav"),
            corrected ? "//home/u/a" : "//D:/x/file://localhost/home/u/a");
}

TEST(PercentEscapesTest, EachBecomesOneCharacter) {
  const auto decoded = [](const std::string& text) {
    return utf8(aaf::decode_percent_escapes(text_from_utf8(text)));
  };
  EXPECT_EQ(decoded("%41"), "A");
  EXPECT_EQ(decoded("%4"), "%4");
  EXPECT_EQ(decoded("%%41"), "%A");
  EXPECT_EQ(decoded("%2541"), "%41");
  EXPECT_EQ(decoded("a%zzb"), "a%zzb");
  EXPECT_EQ(decoded("%C3%a9"), "Ã©");
  EXPECT_EQ(decoded("a%20b%2fc"), "a b/c");
  EXPECT_EQ(decoded("abc%"), "abc%");
  EXPECT_EQ(decoded("abc%4"), "abc%4");
  EXPECT_EQ(decoded(""), "");
}

TEST(FileNameTest, BehindTheLastFolder) {
  const auto name = [](const std::string& text, bool decode) {
    return utf8(aaf::file_name_of(text_from_utf8(text), decode));
  };
  EXPECT_EQ(name("file:///C%3a/audio/a%20b.wav", true), "a b.wav");
  EXPECT_EQ(name("file:///C%3a/audio/a%20b.wav", false), "a%20b.wav");
  EXPECT_EQ(name("C:\\audio\\a.wav", true), "a.wav");
  EXPECT_EQ(name("C:/audio\\a.wav", true), "audio\\a.wav");
  EXPECT_EQ(name("x%20y.wav", true), "x%20y.wav");
  EXPECT_EQ(name("folder/", true), "");
}

TEST(FileTypeTest, TheDescriptorGoesBeforeTheExtension) {
  EXPECT_EQ(aaf::file_type_code(u"wav", 0xFF), 2);
  EXPECT_EQ(aaf::file_type_code(u"AIF", 0xFF), 3);
  EXPECT_EQ(aaf::file_type_code(u"bwf", 0xFF), 11);
  EXPECT_EQ(aaf::file_type_code(u"afc", 0xFF), 14);
  EXPECT_EQ(aaf::file_type_code(u"mp3", 0xFF), 0xFFFF);
  EXPECT_EQ(aaf::file_type_code(u"", 0xFF), 0xFFFF);
  EXPECT_EQ(aaf::file_type_code(u"aif", 0), 2);
  EXPECT_EQ(aaf::file_type_code(u"wav", 1), 14);
}

}  // namespace
