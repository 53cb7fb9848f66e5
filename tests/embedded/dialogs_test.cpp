#include "embedded/dialogs.h"

#include <gtest/gtest.h>

#include <csignal>
#include <vector>

#include "embedded/boxes.h"
#include "embedded/interrupt.h"
#include "tests/embedded/pty.h"

namespace {

using Event = ProgressWindow::Event;

struct Attended {
  embedded::EmbeddedOptions options;
  support::Pty pty;
  embedded::Terminal terminal{pty.terminal(), pty.terminal()};
  embedded::EmbeddedDialogs dialogs{options, terminal};
};

struct Unattended {
  embedded::EmbeddedOptions options;
  support::NoTerminal line;
  embedded::Terminal terminal{line.input(), line.output()};
  embedded::EmbeddedDialogs dialogs{options, terminal};
};

volatile std::sig_atomic_t reached = 0;
void note_signal(int) {
  reached = reached + 1;
}

// The program's own handling of Ctrl-C, for one test.
class OwnHandler {
 public:
  OwnHandler() {
    reached = 0;
    before_ = std::signal(SIGINT, note_signal);
  }
  ~OwnHandler() { std::signal(SIGINT, before_); }
  OwnHandler(const OwnHandler&) = delete;
  OwnHandler& operator=(const OwnHandler&) = delete;

 private:
  void (*before_)(int);
};

TEST(Progress, DrawsOnATerminalAndGoesAway) {
  Attended host;
  host.pty.set_columns(80);
  const auto window = host.dialogs.open_progress(200);
  window->set_caption(u"Exporting audio...");
  window->set_text(u"Processing track 1 of 2...");
  window->set_position(0);
  window->set_position(200);
  // 79 columns of 80: 39 for the bar, 19 for the caption, 21 of the text.
  EXPECT_EQ(
      host.pty.screen(),
      "\r\x1b[K[                              ]   0%  Exporting audio... Processing track 1 of"
      "\r\x1b[K[##############################] 100%  Exporting audio... Processing track 1 of");
  window->close();
  EXPECT_TRUE(host.pty.screen().ends_with("\r\x1b[K"));
}

TEST(Progress, DrawsNothingWhereNobodySits) {
  Unattended host;
  const auto window = host.dialogs.open_progress(10);
  window->set_text(u"x");
  window->set_position(5);
  Event event{};
  EXPECT_FALSE(window->pump(event));
  window->close();
  EXPECT_EQ(host.line.written(), "");
}

TEST(Progress, LineIsCutToTheScreen) {
  using embedded::progress_line;
  EXPECT_EQ(progress_line(1, 2, "abc", 80), "[###############               ]  50%  abc");
  EXPECT_EQ(progress_line(0, 0, "", 80), "[##############################] 100%  ");
  EXPECT_EQ(progress_line(9, 2, "", 80), "[##############################] 100%  ");
  EXPECT_EQ(progress_line(4294967295U, 4294967295U, "", 80),
            "[##############################] 100%  ");
  EXPECT_EQ(progress_line(1, 2, "abc", 42), "[###############               ]  50%  ab");
  // "é" takes two bytes and goes whole.
  EXPECT_EQ(progress_line(1, 2, "a\xC3\xA9", 42), "[###############               ]  50%  a");
  EXPECT_EQ(progress_line(1, 2, "abc", 0), "");
}

TEST(Progress, ErrorLinesStandAboveTheBar) {
  Attended host;
  host.terminal.set_status("bar");
  host.terminal.write_line("told");
  EXPECT_EQ(host.pty.screen(), "\r\x1b[Kbar\r\x1b[Ktold\nbar");
}

TEST(Progress, ControlCIsCancelWhileItShows) {
  const OwnHandler own;
  Attended host;
  const auto window = host.dialogs.open_progress(10);
  Event event = Event::none;
  EXPECT_FALSE(window->pump(event));
  std::raise(SIGINT);
  EXPECT_TRUE(window->pump(event));
  EXPECT_EQ(event, Event::cancel);
  EXPECT_FALSE(window->pump(event));
  EXPECT_EQ(reached, 0);
  window->close();
  std::raise(SIGINT);
  EXPECT_EQ(reached, 1);
}

TEST(Progress, SecondControlCGoesToTheProgram) {
  const OwnHandler own;
  Attended host;
  const auto window = host.dialogs.open_progress(10);
  std::raise(SIGINT);
  std::raise(SIGINT);
  EXPECT_EQ(reached, 1);
}

TEST(Progress, ControlCAtAQuestionGoesToTheProgram) {
  const OwnHandler own;
  const embedded::InterruptWatch watch;
  {
    const embedded::InterruptPause pause;
    std::raise(SIGINT);
    EXPECT_EQ(reached, 1);
  }
  std::raise(SIGINT);
  EXPECT_EQ(reached, 1);
}

TEST(Progress, WhereNobodySitsControlCIsTheProgramsOwn) {
  const OwnHandler own;
  Unattended host;
  const auto window = host.dialogs.open_progress(10);
  std::raise(SIGINT);
  EXPECT_EQ(reached, 1);
}

const std::vector<CString> names = {CString(u"Reel 1"), CString(u"Reel \x1b[2J"),
                                    CString(u"Reel 3")};
ChoiceDialog three_rows() {
  return {u"Several lists", u"Which one?", u"Choose a row.", names};
}

TEST(Choice, PersonChoosesARow) {
  Attended host;
  host.pty.type("4\nx\n3\n");
  EXPECT_EQ(host.dialogs.choose(three_rows()), 2);
  EXPECT_EQ(host.pty.screen(),
            "Several lists\n  1  Reel 1\n  2  Reel [2J\n  3  Reel 3\n"
            "Which one? [1-3, q to cancel; 1] Choose a row.\n"
            "Which one? [1-3, q to cancel; 1] Choose a row.\n"
            "Which one? [1-3, q to cancel; 1] ");
}

TEST(Choice, EmptyLineIsTheFirstRowAndQCancels) {
  Attended host;
  host.pty.type("\nq\n\x04");
  EXPECT_EQ(host.dialogs.choose(three_rows()), 0);
  EXPECT_EQ(host.dialogs.choose(three_rows()), -1);
  EXPECT_EQ(host.dialogs.choose(three_rows()), -1);
}

TEST(Choice, OptionAnswersForThePerson) {
  Attended host;
  host.options.choice = "2";
  EXPECT_EQ(host.dialogs.choose(three_rows()), 1);
  host.options.choice = "Reel 3";
  EXPECT_EQ(host.dialogs.choose(three_rows()), 2);
  EXPECT_EQ(host.pty.screen(), "");
}

TEST(Choice, OptionThatNamesNoRowIsRefusedWithTheRows) {
  for (const char* const choice : {"4", "0", "reel 3", "3 ", "-1", "99999999999999999999"}) {
    Attended host;
    host.options.choice = choice;
    EXPECT_EQ(host.dialogs.choose(three_rows()), -1);
    EXPECT_EQ(host.pty.screen(), "edlconv: there is no row \"" + std::string(choice) +
                                     "\" for \"Which one?\" There are:\n"
                                     "  1  Reel 1\n  2  Reel [2J\n  3  Reel 3\n");
  }
}

TEST(Choice, CancelledWithTheRowsWhereNobodySits) {
  Unattended host;
  EXPECT_EQ(host.dialogs.choose(three_rows()), -1);
  EXPECT_EQ(host.line.written(),
            "edlconv: Which one? There are:\n  1  Reel 1\n  2  Reel [2J\n  3  Reel 3\n");
  EXPECT_EQ(host.dialogs.choose({u"", u"", u"", {}}), -1);
}

TEST(Terminal, PrintableTextIsOneLine) {
  using embedded::printable;
  EXPECT_EQ(printable("a\r\n\tb"), "a b");
  EXPECT_EQ(printable("\x7f"
                      "a\xC2\x85"
                      "b"),
            " a b");
  EXPECT_EQ(printable("caf\xC3\xA9"), "caf\xC3\xA9");
}

}  // namespace
