#include "embedded/boxes.h"

#include <gtest/gtest.h>

#include "host/string_ids.h"
#include "tests/embedded/pty.h"
#include "tests/support/compare.h"

namespace {

using embedded::BoxAnswer;
using embedded::BoxKind;

// The box service with its neighbours, where nobody sits.
struct Unattended {
  embedded::EmbeddedOptions options;
  support::NoTerminal line;
  embedded::Terminal terminal{line.input(), line.output()};
  embedded::EnglishStrings strings;
  embedded::EmbeddedBoxes boxes{options, strings, terminal};
};

// The same with a person at a terminal.
struct Attended {
  embedded::EmbeddedOptions options;
  support::Pty pty;
  embedded::Terminal terminal{pty.terminal(), pty.terminal()};
  embedded::EnglishStrings strings;
  embedded::EmbeddedBoxes boxes{options, strings, terminal};
};

unsigned report(embedded::EmbeddedBoxes& boxes, embedded::EnglishStrings& strings, unsigned id,
                unsigned style) {
  const std::u16string title = strings.load(string_id::error_title);
  const std::u16string body = strings.load_into_slot(id, 1);
  return boxes.show(title.c_str(), body.c_str(), style);
}

TEST(Boxes, ReportIsOneLineWithItsPlace) {
  Unattended host;
  host.boxes.note_place(u"/reels/a.edl", 12);
  EXPECT_EQ(host.boxes.show(u"T", u"First.\n\nSecond.", MessageBoxes::style_may_stop), 0U);
  EXPECT_EQ(host.line.written(), "/reels/a.edl:12: error: First. Second.\n");
  host.boxes.note_place(u"/reels/b.edl", 0);
  EXPECT_EQ(host.boxes.show(u"T", u"Third.", 0), 0U);
  EXPECT_EQ(host.line.written(), "/reels/b.edl: error: Third.\n");
}

TEST(Boxes, WithoutAPlaceTheProgramIsNamed) {
  Unattended host;
  EXPECT_EQ(host.boxes.message(u"No report.", BoxIcon::warning, BoxButtons::ok), box_answer_ok);
  EXPECT_EQ(host.line.written(), "edlconv: warning: No report.\n");
}

TEST(Boxes, TextOfAFileCannotSteerTheTerminal) {
  Unattended host;
  (void)host.boxes.message(
      u"a\x1b[2J\x07\x9b"
      u"31mb",
      BoxIcon::information, BoxButtons::ok);
  EXPECT_EQ(host.line.written(), "edlconv: information: a [2J 31mb\n");
}

TEST(Boxes, KeepsEveryBoxWithItsId) {
  Unattended host;
  host.boxes.note_place(u"a.edl", 3);
  EXPECT_EQ(report(host.boxes, host.strings, string_id::source_length_zero, 16384), 0U);
  EXPECT_EQ(host.boxes.ask_by_ids(string_id::question_title, string_id::ask_frame_rate, 4, 2),
            box_answer_no);
  const std::u16string text = host.strings.load(string_id::aaf_no_composition);
  (void)host.boxes.message(text.c_str(), BoxIcon::information, BoxButtons::ok);
  (void)host.boxes.message(u"Really?", BoxIcon::question, BoxButtons::yes_no_default_no);

  const auto& shown = host.boxes.shown();
  ASSERT_EQ(shown.size(), 4U);
  EXPECT_EQ(shown[0].kind, BoxKind::error);
  EXPECT_EQ(shown[0].id, 22250U);
  EXPECT_EQ(shown[0].text, "The source of this edit has no length.");
  EXPECT_EQ(shown[0].answer, BoxAnswer::ok);
  EXPECT_EQ(shown[0].path, "a.edl");
  EXPECT_EQ(shown[0].line, 3);
  EXPECT_EQ(shown[1].kind, BoxKind::question);
  EXPECT_EQ(shown[1].id, 22386U);
  EXPECT_EQ(shown[1].answer, BoxAnswer::no);
  EXPECT_EQ(shown[2].kind, BoxKind::information);
  EXPECT_EQ(shown[2].id, 24962U);
  EXPECT_EQ(shown[3].id, 0U);
  EXPECT_EQ(shown[3].text, "Really?");
  EXPECT_STREQ(name_of(shown[0].kind), "error");
  EXPECT_STREQ(name_of(shown[1].answer), "no");
}

TEST(Boxes, ChunkWarningsAreWarnings) {
  Unattended host;
  const std::u16string head = host.strings.load(string_id::chunk_track_version);
  const std::u16string tail = host.strings.load(string_id::chunk_warning_tail);
  const std::u16string title = host.strings.load(string_id::chunk_warning_title);
  (void)host.boxes.show(title.c_str(), (head + u"\n\n" + tail).c_str(), 0);
  ASSERT_EQ(host.boxes.shown().size(), 1U);
  EXPECT_EQ(host.boxes.shown()[0].kind, BoxKind::warning);
  EXPECT_EQ(host.boxes.shown()[0].id, 23876U);
  EXPECT_EQ(host.line.written(),
            "edlconv: warning: A source in the file is of a later version than is known here. "
            "Reading goes on; check the result against the original.\n");
}

TEST(Boxes, StopsAtTheLimitOfReports) {
  Unattended host;
  host.options.max_reports = 2;
  EXPECT_EQ(host.boxes.show(u"T", u"one", MessageBoxes::style_may_stop), 0U);
  EXPECT_EQ(host.boxes.show(u"T", u"two", MessageBoxes::style_may_stop), MessageBoxes::result_stop);
  EXPECT_EQ(host.line.written(),
            "edlconv: error: one\nedlconv: error: two\nedlconv: no further reports are shown\n");
  // A box that knows no stop goes on being asked for, but is not shown.
  EXPECT_EQ(host.boxes.show(u"T", u"three", 0), 0U);
  EXPECT_EQ(host.boxes.show(u"T", u"four", MessageBoxes::style_may_stop),
            MessageBoxes::result_stop);
  EXPECT_EQ(host.line.written(), "");
  ASSERT_EQ(host.boxes.shown().size(), 2U);
  EXPECT_EQ(host.boxes.shown()[1].answer, BoxAnswer::stop);
  EXPECT_EQ(host.boxes.suppressed(), 2U);
}

TEST(Boxes, NoLimitWithZero) {
  Unattended host;
  host.options.max_reports = 0;
  for (int i = 0; i < 1200; ++i) {
    ASSERT_EQ(host.boxes.show(u"T", u"again", MessageBoxes::style_may_stop), 0U);
    (void)host.line.written();
  }
  EXPECT_EQ(host.boxes.shown().size(), 1200U);
}

TEST(Boxes, AssumedAnswerIsTold) {
  Unattended host;
  host.options.assume = true;
  EXPECT_EQ(host.boxes.ask_by_ids(21715, string_id::aaf_ask_missing_sources, 4, 2), box_answer_yes);
  EXPECT_EQ(host.line.written(),
            "edlconv: question: The audio of some edits could not be found; they would be left "
            "out. Export all the same? (answered yes)\n");
  host.options.assume = false;
  EXPECT_EQ(host.boxes.message(u"Sure?", BoxIcon::question, BoxButtons::yes_no), box_answer_no);
  EXPECT_EQ(host.line.written(), "edlconv: question: Sure? (answered no)\n");
}

TEST(Boxes, PersonAnswersAtTheTerminal) {
  Attended host;
  host.pty.type("\nmaybe\n Yes\nN\n");
  EXPECT_EQ(host.boxes.message(u"Sure?", BoxIcon::question, BoxButtons::yes_no), box_answer_yes);
  EXPECT_EQ(host.pty.screen(), "Sure? [y/n] Sure? [y/n] Sure? [y/n] ");
  EXPECT_EQ(host.boxes.message(u"Sure?", BoxIcon::question, BoxButtons::yes_no), box_answer_no);
  EXPECT_EQ(host.boxes.shown()[0].answer, BoxAnswer::yes);
  EXPECT_EQ(host.boxes.shown()[1].answer, BoxAnswer::no);
}

TEST(Boxes, EmptyAnswerIsTheDefaultNo) {
  Attended host;
  host.pty.type("\n");
  EXPECT_EQ(host.boxes.message(u"Sure?", BoxIcon::question, BoxButtons::yes_no_default_no),
            box_answer_no);
  EXPECT_EQ(host.pty.screen(), "Sure? [y/N] ");
}

TEST(Boxes, EndOfInputIsNo) {
  Attended host;
  host.pty.type("\x04");  // what a terminal takes for the end of the input
  EXPECT_EQ(host.boxes.message(u"Sure?", BoxIcon::question, BoxButtons::yes_no), box_answer_no);
}

TEST(Boxes, AssumedAnswerAsksNobody) {
  Attended host;
  host.options.assume = true;
  EXPECT_EQ(host.boxes.message(u"Sure?", BoxIcon::question, BoxButtons::yes_no), box_answer_yes);
  EXPECT_EQ(host.pty.screen(), "edlconv: question: Sure? (answered yes)\n");
}

}  // namespace
