#include "embedded/media.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "embedded/embedded_host.h"
#include "tests/embedded/audio_files.h"
#include "tests/embedded/pty.h"
#include "tests/support/temp_folder.h"

namespace {

using embedded::MediaLibrary;
using support::TempFolder;

constexpr std::uint16_t any_type = 0xFFFF;

class Media : public testing::Test {
 protected:
  Media() { options_.media_folders = {folder_.path()}; }

  // Puts a sound file at a path under the folder.
  void put(const std::string& name) {
    std::filesystem::create_directories(std::filesystem::path(folder_.file(name)).parent_path());
    support::write_file(folder_.file(name), support::wave_file({48000, 24, {{1, 2, 3}}}));
  }
  // The path under the folder of what is found; "-" for nothing.
  std::string found(std::u16string_view path, std::uint16_t source_type = any_type) {
    CAudCnt* const source = media_.find(path, source_type);
    if (source == nullptr) return "-";
    return std::filesystem::relative(audio_.path_of(source),
                                     std::filesystem::canonical(folder_.path()));
  }

  TempFolder folder_;
  embedded::EmbeddedOptions options_;
  embedded::EmbeddedAudio audio_;
  MediaLibrary media_{options_, audio_};
};

TEST_F(Media, FindsByTheLastParts) {
  put("audio/take 1.wav");
  EXPECT_EQ(found(u"//C:/audio/take 1"), "audio/take 1.wav");
  EXPECT_EQ(found(u"C:\\reels\\audio\\take 1"), "audio/take 1.wav");
  EXPECT_EQ(found(u"//server/share/audio/take 1"), "audio/take 1.wav");
}

TEST_F(Media, TheLongestPartOfThePathWins) {
  put("take 1.wav");
  put("audio/take 1.wav");
  put("C/audio/take 1.wav");
  EXPECT_EQ(found(u"//C/audio/take 1"), "C/audio/take 1.wav");
  EXPECT_EQ(found(u"//D/audio/take 1"), "audio/take 1.wav");
  EXPECT_EQ(found(u"//D/other/take 1"), "take 1.wav");
}

TEST_F(Media, EarlierFoldersWin) {
  put("one/take.wav");
  put("two/take.wav");
  put("two/a/take.wav");
  options_.media_folders = {folder_.file("one"), folder_.file("two")};
  EXPECT_EQ(found(u"//C:/take"), "one/take.wav");
  EXPECT_EQ(found(u"//C:/a/take"), "two/a/take.wav");
}

TEST_F(Media, ThePathItselfOnThisSystem) {
  put("x/take.wav");
  options_.media_folders.clear();
  const std::u16string path = text_from_utf8("//" + folder_.path().substr(1) + "/x/take");
  EXPECT_EQ(found(path), "x/take.wav");
  EXPECT_EQ(found(u"//C:" + path.substr(1)), "-");
}

TEST_F(Media, ExtensionsOfTheSourceType) {
  for (const char* const name : {"t.wav", "t.aif", "t.bwf", "t.afc", "t.sd2", "t.flac"})
    put(name);
  EXPECT_EQ(found(u"//t", 2), "t.wav");
  EXPECT_EQ(found(u"//t", 3), "t.aif");
  EXPECT_EQ(found(u"//t", 7), "t.sd2");
  EXPECT_EQ(found(u"//t", 11), "t.bwf");
  EXPECT_EQ(found(u"//t", 14), "t.afc");
  EXPECT_EQ(found(u"//t", any_type), "t.wav");
}

TEST_F(Media, OtherExtensionsWhereTheTypesOwnAreMissing) {
  put("t.flac");
  EXPECT_EQ(found(u"//t", 2), "t.flac");
  put("u.wav");
  EXPECT_EQ(found(u"//u", 11), "u.wav");
}

TEST_F(Media, PathWithItsExtension) {
  put("t.wav");
  put("t.wav.wav");
  EXPECT_EQ(found(u"//C:/t.wav", 2), "t.wav");
  put("s.aif");
  media_.forget();
  EXPECT_EQ(found(u"S.AIF", 2), "s.aif");
}

TEST_F(Media, CaseDoesNotMatter) {
  put("Audio/Take One.WAV");
  EXPECT_EQ(found(u"//C:/AUDIO/take one"), "Audio/Take One.WAV");
  put("Audio/take one.wav");
  media_.forget();
  EXPECT_EQ(found(u"//D:/AUDIO/take one"), "Audio/take one.wav");
}

TEST_F(Media, NamesOutsideAscii) {
  put("caf\xC3\xA9.wav");
  EXPECT_EQ(found(u"//C:/caf\u00E9"), "caf\xC3\xA9.wav");
}

TEST_F(Media, PercentEscapesAsAnotherTry) {
  put("take #1.wav");
  EXPECT_EQ(found(u"//C:/take %231"), "take #1.wav");
  EXPECT_EQ(found(u"//C:/take %2"), "-");
  put("half %2.wav");
  EXPECT_EQ(found(u"//C:/half %2"), "half %2.wav");
}

TEST_F(Media, NothingOutsideTheFolders) {
  put("secret.wav");
  std::filesystem::create_directories(folder_.file("media/sub"));
  options_.media_folders = {folder_.file("media")};
  EXPECT_EQ(found(u"../secret"), "-");
  EXPECT_EQ(found(u"sub/../../secret"), "-");
  EXPECT_EQ(found(u"%2E%2E/secret"), "-");
  EXPECT_EQ(found(u"..\\secret"), "-");
}

TEST_F(Media, SameFileIsTheSameSource) {
  put("a/t.wav");
  CAudCnt* const one = media_.find(u"//C:/a/t", 2);
  EXPECT_NE(one, nullptr);
  EXPECT_EQ(media_.find(u"//D:/b/a/t", 11), one);
}

TEST_F(Media, ListsWhatIsMissingOnce) {
  put("good.wav");
  support::write_file(folder_.file("bad.wav"), "no audio");
  EXPECT_EQ(found(u"//C:/gone", 2), "-");
  EXPECT_EQ(found(u"//C:/good", 2), "good.wav");
  EXPECT_EQ(found(u"//C:/bad", 2), "-");
  EXPECT_EQ(found(u"//C:/gone", 2), "-");
  EXPECT_EQ(found(u"//C:/gone", 3), "-");
  EXPECT_EQ(found(u"", 2), "-");
  ASSERT_EQ(media_.missing().size(), 3U);
  EXPECT_EQ(media_.missing()[0].path, "//C:/gone");
  EXPECT_EQ(media_.missing()[0].reason, "not found");
  EXPECT_EQ(media_.missing()[1].path, "//C:/bad");
  EXPECT_EQ(media_.missing()[1].reason, folder_.file("bad.wav") + " cannot be read as audio");
  EXPECT_EQ(media_.missing()[2].path, "");
}

TEST_F(Media, UnreadableFileGivesWayToAReadableOne) {
  support::write_file(folder_.file("t.wav"), "no audio");
  put("t.aif");
  EXPECT_EQ(found(u"//C:/t", 2), "t.aif");
  EXPECT_TRUE(media_.missing().empty());
}

TEST_F(Media, LooksAgainAfterForgetting) {
  EXPECT_EQ(found(u"//C:/late"), "-");
  put("Late.wav");
  EXPECT_EQ(found(u"//C:/late"), "-");
  media_.forget();
  EXPECT_TRUE(media_.missing().empty());
  EXPECT_EQ(found(u"//C:/late"), "Late.wav");
}

TEST_F(Media, NewFilesOfTheLibraryAreFound) {
  const support::NoTerminal line;
  embedded::EmbeddedHost host(options_, line.input(), line.output());
  EXPECT_EQ(host.media().find(u"//C:/1_2_3", 2), nullptr);
  put("1_2_3.wav");
  host.folders().refresh(nullptr);
  EXPECT_NE(host.media().find(u"//C:/1_2_3", 2), nullptr);
}

}  // namespace
