#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "aaf/essence_progress.h"
#include "tests/support/scripted_host.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EssenceProgressTest : public testing::Test {
 protected:
  [[nodiscard]] const support::ProgressRecord& window() const {
    return *host.windows.windows.at(0);
  }
  support::ScriptedHost host;
  std::int32_t abort_flag = 0;
};

TEST_F(EssenceProgressTest, TextsOfAnImport) {
  CEssenceStorageProgressDlg dialog(1, 4, 100, &abort_flag);
  dialog.set_track_text(0);
  dialog.set_track_text(3);
  EXPECT_EQ(window().range, 100U);
  EXPECT_THAT(window().captions, ElementsAre("Importing embedded audio..."));
  EXPECT_THAT(window().texts,
              ElementsAre("Processing track 1 of 4...", "Processing track 4 of 4..."));
  EXPECT_FALSE(window().closed);
  dialog.close();
  EXPECT_TRUE(window().closed);
}

TEST_F(EssenceProgressTest, CaptionsOfAnExport) {
  { CEssenceStorageProgressDlg dialog(0, 1, 1, &abort_flag); }
  EXPECT_THAT(host.windows.windows.at(0)->captions, ElementsAre("Exporting audio..."));
  EXPECT_TRUE(host.windows.windows.at(0)->closed);
  host.app.aaf_embed_audio = 1;
  CEssenceStorageProgressDlg dialog(0, 1, 1, &abort_flag);
  EXPECT_THAT(host.windows.windows.at(1)->captions, ElementsAre("Exporting embedded audio..."));
}

TEST_F(EssenceProgressTest, EachPositionIsShownOnce) {
  CEssenceStorageProgressDlg dialog(1, 1, 100, &abort_flag);
  for (const std::uint32_t position : {0U, 0U, 10U, 10U, 20U, 10U})
    dialog.set_position(position);
  EXPECT_THAT(window().positions, ElementsAre(0, 10, 20, 10));
  EXPECT_GE(window().pumps, 6);
}

TEST_F(EssenceProgressTest, TheTotalIsShownOnceAndIsTheLast) {
  CEssenceStorageProgressDlg dialog(1, 1, 100, &abort_flag);
  dialog.set_position(50);
  dialog.set_position(100);
  dialog.set_position(100);
  dialog.set_position(60);
  EXPECT_THAT(window().positions, ElementsAre(50, 100));
}

TEST_F(EssenceProgressTest, CancelIsAskedAbout) {
  host.windows.cancel_at_position = 1;
  host.boxes.message_answers = {box_answer_yes};
  CEssenceStorageProgressDlg dialog(1, 1, 100, &abort_flag);
  dialog.set_position(10);
  EXPECT_EQ(abort_flag, 1);
  ASSERT_EQ(host.boxes.shown.size(), 1U);
  EXPECT_EQ(host.boxes.shown[0].body, "Are you sure you wish to abort importing this audio?");
  EXPECT_EQ(host.boxes.shown[0].message_icon, BoxIcon::question);
  EXPECT_EQ(host.boxes.shown[0].message_buttons, BoxButtons::yes_no_default_no);
}

TEST_F(EssenceProgressTest, ARefusedCancelGoesOn) {
  host.windows.cancel_at_position = 1;
  host.boxes.message_answers = {box_answer_no};
  CEssenceStorageProgressDlg dialog(0, 1, 100, &abort_flag);
  dialog.set_position(10);
  EXPECT_EQ(abort_flag, 0);
  ASSERT_EQ(host.boxes.shown.size(), 1U);
  EXPECT_EQ(host.boxes.shown[0].body, "Are you sure you wish to abort exporting this audio?");
}

TEST_F(EssenceProgressTest, CancelAtTheEndIsNotAskedAbout) {
  host.windows.cancel_at_position = 1;
  CEssenceStorageProgressDlg dialog(1, 1, 100, &abort_flag);
  dialog.set_position(100);
  EXPECT_EQ(abort_flag, 1);
  EXPECT_THAT(host.boxes.shown, IsEmpty());
}

// Less than a KiB in all: the first position is the last.
TEST_F(EssenceProgressTest, NothingToShowIsFinishedAtOnce) {
  host.windows.cancel_at_position = 1;
  CEssenceStorageProgressDlg dialog(1, 1, 0, &abort_flag);
  dialog.set_position(0);
  EXPECT_EQ(abort_flag, 1);
  EXPECT_THAT(host.boxes.shown, IsEmpty());
}

TEST_F(EssenceProgressTest, OkEndsTheJob) {
  host.windows.ok_at_position = 1;
  CEssenceStorageProgressDlg dialog(1, 1, 100, &abort_flag);
  dialog.set_position(10);
  EXPECT_EQ(abort_flag, 1);
  EXPECT_THAT(host.boxes.shown, IsEmpty());
}

}  // namespace
