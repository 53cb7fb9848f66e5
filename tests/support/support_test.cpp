// The helpers that other tests lean on must themselves fail when they should.
#include <gtest/gtest.h>

#include <new>

#include "host/framework/file.h"
#include "tests/support/compare.h"
#include "tests/support/faulty_allocations.h"
#include "tests/support/faulty_files.h"
#include "tests/support/golden.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

using support::utf8;

TEST(Compare, ShowsTheFirstByteThatDiffers) {
  EXPECT_TRUE(support::same_bytes("abc", "abc"));
  const auto result = support::same_bytes("abc", "abX");
  ASSERT_FALSE(result);
  EXPECT_NE(std::string(result.message()).find("differ at byte 2"), std::string::npos);
  EXPECT_FALSE(support::same_bytes("abc", "abcd"));
  EXPECT_FALSE(support::same_bytes("abcd", "abc"));
}

TEST(Compare, ShowsTheLineThatDiffers) {
  EXPECT_TRUE(support::same_lines("a\nb\n", "a\nb\n"));
  const std::string message(support::same_lines("a\nb\nc", "a\nX\nc").message());
  EXPECT_NE(message.find("line 2 differs"), std::string::npos) << message;
  EXPECT_NE(message.find("actual:   b\n"), std::string::npos) << message;
  EXPECT_NE(message.find("expected: X\n"), std::string::npos) << message;
  EXPECT_FALSE(support::same_lines("a\n", "a\nb\n"));
}

TEST(Compare, DumpsSixteenBytesALine) {
  EXPECT_EQ(support::hex_dump("0123456789abcdef\x01Z", 0, 64),
            "000000  30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66  0123456789abcdef\n"
            "000010  01 5a                                            .Z\n");
}

TEST(Golden, MismatchLeavesWhatWasReceived) {
  const support::TempFolder folder;
  const std::string& root = folder.path();
  EXPECT_FALSE(support::matches_golden_in(root, "sub/a.txt", "new\n"));
  EXPECT_EQ(support::read_file(folder.file("sub/a.txt.received")), "new\n");

  support::write_file(folder.file("sub/a.txt"), "old\n");
  EXPECT_FALSE(support::matches_golden_in(root, "sub/a.txt", "new\n"));
  EXPECT_EQ(support::read_file(folder.file("sub/a.txt.received")), "new\n");

  EXPECT_TRUE(support::matches_golden_in(root, "sub/a.txt", "old\n"));
  EXPECT_FALSE(support::file_exists(folder.file("sub/a.txt.received")));
}

TEST(FaultyFiles, FailsTheNthReadAndRecovers) {
  const support::TempFolder folder;
  support::write_file(folder.file("a"), "abcdef");
  CFile file;
  ASSERT_TRUE(file.Open(folder.wide_file("a"), CFile::modeRead));
  const support::FaultyFiles faults(FileFaults::Operation::read, 2, EIO);
  char bytes[2];
  EXPECT_EQ(file.Read(bytes, 2), 2U);
  EXPECT_THROW(file.Read(bytes, 2), CFileException);
  EXPECT_EQ(file.Read(bytes, 2), 2U);
  EXPECT_EQ(faults.count(), 3);
  EXPECT_EQ(faults.failed(), 1);
}

TEST(FaultyAllocations, FailsTheNthAllocation) {
  bool failed = false;
  std::uint64_t largest = 0;
  {
    const support::FaultyAllocations faults(2);
    void* const first = ::operator new(100);
    try {
      ::operator delete(::operator new(200));
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    ::operator delete(::operator new(50));
    ::operator delete(first);
    largest = support::FaultyAllocations::largest();
  }
  EXPECT_TRUE(failed);
  EXPECT_EQ(largest, 200U);
  EXPECT_EQ(support::FaultyAllocations::count(), 3U);
  EXPECT_EQ(support::FaultyAllocations::failed(), 1U);
}

TEST(ScriptedHost, IsInForceWhileItLives) {
  Host* const before = &host();
  {
    const support::ScriptedHost scripted;
    EXPECT_EQ(&host(), &scripted);
    {
      const support::ScriptedHost inner;
      EXPECT_EQ(&host(), &inner);
    }
    EXPECT_EQ(&host(), &scripted);
  }
  EXPECT_EQ(&host(), before);
}

TEST(ScriptedHost, RecordsBoxesAndAnswersFromTheList) {
  support::ScriptedHost scripted;
  MessageBoxes& boxes = host().message_boxes();
  scripted.boxes.report_answers = {MessageBoxes::result_stop};
  scripted.boxes.question_answers = {box_answer_yes};
  boxes.note_place(u"a.edl", 7);
  EXPECT_EQ(boxes.show(u"T", u"B", 16384), 4096U);
  EXPECT_EQ(boxes.show(u"T", u"C", 0), 0U);
  EXPECT_EQ(boxes.ask_by_ids(21715, 22386, 4, 2), box_answer_yes);
  EXPECT_EQ(boxes.ask_by_ids(21715, 22387, 4, 2), box_answer_no);
  EXPECT_EQ(boxes.message(u"M", BoxIcon::warning, BoxButtons::ok), box_answer_ok);
  ASSERT_EQ(scripted.boxes.shown.size(), 5U);
  EXPECT_EQ(scripted.boxes.shown[0].path, "a.edl");
  EXPECT_EQ(scripted.boxes.shown[0].line, 7);
  EXPECT_EQ(scripted.boxes.shown[0].style, 16384U);
  EXPECT_EQ(scripted.boxes.shown[2].text_id, 22386U);
  EXPECT_EQ(scripted.boxes.shown[4].body, "M");
  EXPECT_EQ(scripted.boxes.report_bodies(), (std::vector<std::string>{"B", "C"}));
}

TEST(ScriptedHost, TextsNameTheirIds) {
  support::ScriptedHost scripted;
  scripted.texts.texts[22231] = u"bad line";
  EXPECT_EQ(utf8(host().strings().load(22250)), "[22250]");
  EXPECT_EQ(utf8(host().strings().load(22231)), "bad line");
  const wide_char* const first = host().strings().load_into_slot(22253, 0);
  const wide_char* const second = host().strings().load_into_slot(22250, 1);
  EXPECT_EQ(utf8(first), "[22253] %s %d");
  EXPECT_EQ(utf8(second), "[22250]");
}

TEST(ScriptedHost, CancelsAtTheNthPosition) {
  support::ScriptedHost scripted;
  scripted.windows.cancel_at_position = 2;
  const auto window = host().dialogs().open_progress(10);
  ProgressWindow::Event event{};
  window->set_position(1);
  EXPECT_FALSE(window->pump(event));
  window->set_position(2);
  EXPECT_TRUE(window->pump(event));
  EXPECT_EQ(event, ProgressWindow::Event::cancel);
  EXPECT_FALSE(window->pump(event));
  EXPECT_EQ(scripted.windows.windows[0]->positions, (std::vector<std::uint32_t>{1, 2}));
}

struct Heard {
  std::vector<std::pair<std::int32_t, int>> blocks;
};
Heard* heard = nullptr;

void hear(std::int32_t* samples, void* packet, int error) {
  EXPECT_NE(packet, nullptr);
  heard->blocks.emplace_back(samples[0], error);
}

TEST(ScriptedHost, DeliversWaveformsInTheOrderOfTheScript) {
  support::ScriptedHost scripted;
  Heard here;
  heard = &here;
  support::FakeAudCnt source(48000, 24, {{10, 11, 12}, {20, 21, 22}});
  AudioFile* const second = host().audio().channel_file(source.file(), 1);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(host().audio().channel_file(source.file(), 2), nullptr);
  for (int i = 0; i < 3; ++i)
    host().audio().add_waveform_request(second, i, 1, hear, &here);
  scripted.sound.picks = {2, 0};
  scripted.sound.error_at_delivery = 2;
  for (int i = 0; i < 4; ++i)
    host().audio().poll_waveforms();
  EXPECT_EQ(here.blocks, (std::vector<std::pair<std::int32_t, int>>{{22, 0}, {20, 1}, {21, 0}}));
  heard = nullptr;
}

TEST(ScriptedHost, StraightCurveFallsFromFullToNothing) {
  support::ScriptedHost scripted;
  scripted.app.set_straight_curve(3);
  const std::uint16_t* const levels = host().application().get_fade_curve(3);
  ASSERT_NE(levels, nullptr);
  EXPECT_EQ(levels[0], 16384);
  EXPECT_EQ(levels[1], 16255);  // 16384 * 126 / 127 = 16254.99
  EXPECT_EQ(levels[127], 0);
  EXPECT_EQ(host().application().get_fade_curve(4), nullptr);
}

TEST(ScriptedHost, FolderPathsTakeAName) {
  support::ScriptedHost scripted;
  HostFolder* const folder = scripted.places.add("/tmp/audio");
  wide_char path[262];
  host().folders().local_path(folder, path, 262);
  EXPECT_EQ(utf8(path), "//tmp/audio/");
  EXPECT_EQ(host().folders().find_folder(u"/tmp/audio/"), folder);
}

}  // namespace
