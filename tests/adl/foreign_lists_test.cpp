// Lists by other makers, in the folder "adl" of the one that EDL_SAMPLES names. What they
// must give was worked out from their text and the rules of the format, apart from the
// program.
#include <gtest/gtest.h>

#include <cstdlib>

#include "adl/aes31_file.h"
#include "core/generic_edl_entry.h"
#include "tests/adl/writer_scene.h"

using namespace adl_test;  // NOLINT

namespace {

class ForeignAdl : public testing::Test, protected WriterScene {
 protected:
  ForeignAdl() {
    host.browser.report_folder = folder.path();
    host.app.default_crossfade_length = 0;
  }

  void SetUp() override {
    if (std::getenv("EDL_SAMPLES") == nullptr) GTEST_SKIP() << "EDL_SAMPLES is not set";
  }
  [[nodiscard]] result_code import(const std::string& name) {
    const std::string path = std::string(std::getenv("EDL_SAMPLES")) + "/adl/" + name;
    return file.import_edl(text_from_utf8(path).c_str());
  }

  CAES31File file{nullptr, 0, 0, 0, 0};
};

// Four stereo edits of ten seconds one behind another. The start "00:00:00:00/0000" says
// 29.97 frames without drop and 48000 Hz, whatever the lines in front of it say; so a
// second of the list lasts 48048 samples, and 24 of its frames 38400 × 1.001.
struct Edit {
  const char* name;
  const char* path;
  const char* originator_reference;
  std::int64_t source_in;
};

void expect_edits(const CAES31File& file, const Edit (&expected)[4]) {
  constexpr std::int64_t ten_seconds = 480480;
  const CObList& list = *file.get_generic_entry_list();
  ASSERT_EQ(list.GetCount(), 4);
  POSITION at = list.GetHeadPosition();
  for (std::int64_t i = 0; i < 4; ++i) {
    const auto& entry = *static_cast<const CGenericEdlEntry*>(list.GetNext(at));
    const Edit& edit = expected[i];
    SCOPED_TRACE(edit.name);
    EXPECT_EQ(utf8_from_text(trimmed(field_text(entry.source_reel_name))), edit.name);
    EXPECT_EQ(utf8_from_text(field_text(entry.file_path)), edit.path);
    EXPECT_EQ(utf8_from_text(field_text(entry.originator_reference)), edit.originator_reference);
    EXPECT_EQ(entry.source_in, edit.source_in);
    EXPECT_EQ(entry.source_out, edit.source_in + ten_seconds);
    EXPECT_EQ(entry.dest_in, i * ten_seconds);
    EXPECT_EQ(entry.dest_out, (i + 1) * ten_seconds);
    // The host's crossfades have no length.
    EXPECT_EQ(entry.fade_in_length, 0);
    EXPECT_EQ(entry.fade_out_length, 0);
    EXPECT_EQ(entry.no_streams, 2);
    EXPECT_EQ(entry.get_stream(0), 0);
    EXPECT_EQ(entry.get_stream(1), 1);
    EXPECT_EQ(entry.channel_offset, 0);
    EXPECT_EQ(entry.no_channels, 2);
    EXPECT_EQ(entry.source_index, 11);
    EXPECT_EQ(entry.source_timestamp, time_not_given);
    EXPECT_EQ(entry.gain_left, 1.0F);
  }
}

// (9 × 48000 + 38400) × 1.001 and so on, to the nearest sample.
constexpr std::int64_t source_9_24 = 470870;
constexpr std::int64_t source_29_24 = 1431830;
constexpr std::int64_t source_49_24 = 2392790;
constexpr std::int64_t source_69_24 = 3353750;

TEST_F(ForeignAdl, SourcesInOrder) {
  ASSERT_EQ(import("bbc+aes31-adl-composer__example-output.adl"), result::import_complete);
  EXPECT_EQ(file.frame_rate(), 2);
  EXPECT_EQ(file.sample_rate_index(), 2);
  EXPECT_TRUE(host.browser.opened.empty());
  expect_edits(file, {{"Label1", "//C:/Audio Files/filename1", "BBCSPEECHEDITOR1", source_9_24},
                      {"Label2", "//C:/Audio Files/filename2", "BBCSPEECHEDITOR2", source_29_24},
                      {"Label3", "//C:/Audio Files/filename3", "BBCSPEECHEDITOR3", source_49_24},
                      {"Label4", "//C:/Audio Files/filename2", "BBCSPEECHEDITOR2", source_69_24}});
}

TEST_F(ForeignAdl, SourcesOutOfOrder) {
  ASSERT_EQ(import("bbc+aes31-adl-composer__example-output-adl-python.adl"),
            result::import_complete);
  expect_edits(file, {{"Label1", "//C:/Audio Files/filename1", "BBCSPEECHEDITOR3", source_9_24},
                      {"Label2", "//C:/Audio Files/filename2", "BBCSPEECHEDITOR1", source_29_24},
                      {"Label3", "//C:/Audio Files/filename3", "BBCSPEECHEDITOR2", source_49_24},
                      {"Label4", "//C:/Audio Files/filename2", "BBCSPEECHEDITOR1", source_69_24}});
}

// It ends inside the index of its sources.
TEST_F(ForeignAdl, ExcerptIsRefusedWithItsMessage) {
  EXPECT_EQ(import("excerpt__genex_gx9000_manual_p29_AES31DSD.adl.txt"), result::not_done);
  EXPECT_TRUE(file.get_generic_entry_list()->IsEmpty());
  const std::string bytes = support::read_file(folder.file("aes31importlog.htm"));
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 2)
    text.push_back(bytes[i]);
  // Behind its 56 lines.
  EXPECT_NE(text.find("<I>57"), std::string::npos);
  EXPECT_NE(text.find("[24401]"), std::string::npos);
  EXPECT_EQ(host.browser.opened.size(), 1U);
}

}  // namespace
