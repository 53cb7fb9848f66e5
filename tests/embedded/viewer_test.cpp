#include "embedded/viewer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "tests/embedded/pty.h"
#include "tests/support/compare.h"
#include "tests/support/temp_folder.h"

namespace {

using support::utf8;

// A program that a test can launch.
std::string script(const support::TempFolder& folder, const std::string& body) {
  const std::string path = folder.file("viewer");
  support::write_file(path, "#!/bin/sh\n" + body + "\n");
  ::chmod(path.c_str(), 0755);
  return path;
}

struct Unattended {
  support::TempFolder folder;
  embedded::EmbeddedOptions options;
  support::NoTerminal line;
  embedded::Terminal terminal{line.input(), line.output()};
  embedded::EmbeddedViewer viewer{options, terminal};

  Unattended() { options.report_folder = folder.file("reports"); }
};

TEST(Viewer, FixedNamesLieInTheReportFolder) {
  Unattended host;
  EXPECT_EQ(utf8(host.viewer.report_path(u"c:/aes31importlog.htm").view()),
            host.folder.file("reports/aes31importlog.htm"));
  EXPECT_EQ(utf8(host.viewer.report_path(u"c:\\AAFImportlog_reel 1.htm").view()),
            host.folder.file("reports/AAFImportlog_reel 1.htm"));
  EXPECT_TRUE(support::file_exists(host.folder.file("reports")));
}

TEST(Viewer, DefaultFolderIsTheUsersState) {
  Unattended host;
  host.options.report_folder.clear();
  ::setenv("XDG_STATE_HOME", host.folder.path().c_str(), 1);
  EXPECT_EQ(utf8(host.viewer.report_path(u"c:/a.htm").view()),
            host.folder.file("edl-conversion/a.htm"));
  ::unsetenv("XDG_STATE_HOME");
}

TEST(Viewer, CopyBeginsWithAByteOrderMark) {
  Unattended host;
  const CString path = host.viewer.report_path(u"c:/a.htm");
  const std::string report("<\0H\0>\0", 6);
  support::write_file(utf8(path.view()), report);
  EXPECT_EQ(host.viewer.open(path, u"open", 1, true), 33);
  EXPECT_TRUE(support::same_bytes(support::read_file(host.folder.file("reports/a.htm")), report));
  EXPECT_TRUE(support::same_bytes(support::read_file(host.folder.file("reports/a.view.htm")),
                                  "\xFF\xFE" + report));
  EXPECT_EQ(host.viewer.reports(),
            std::vector<std::string>{host.folder.file("reports/a.view.htm")});
  EXPECT_EQ(host.line.written(),
            "edlconv: report: " + host.folder.file("reports/a.view.htm") + "\n");
}

TEST(Viewer, EmptyReportIsCopiedToo) {
  Unattended host;
  const CString path = host.viewer.report_path(u"c:/a.htm");
  support::write_file(utf8(path.view()), "");
  EXPECT_EQ(host.viewer.open(path, u"open", 1, true), 33);
  EXPECT_EQ(support::read_file(host.folder.file("reports/a.view.htm")), "\xFF\xFE");
}

TEST(Viewer, MissingReportIsFileNotFound) {
  Unattended host;
  EXPECT_EQ(host.viewer.open(u"/nowhere/a.htm", u"open", 1, true), 2);
  EXPECT_TRUE(host.viewer.reports().empty());
}

TEST(Viewer, LaunchesOnlyWhenAsked) {
  Unattended host;
  host.options.viewer_command = script(host.folder, "echo \"$1\" > " + host.folder.file("seen"));
  const CString path = host.viewer.report_path(u"c:/a.htm");
  support::write_file(utf8(path.view()), "x");
  EXPECT_EQ(host.viewer.open(path, u"open", 1, true), 33);
  EXPECT_FALSE(support::file_exists(host.folder.file("seen")));
  host.options.open_report = true;
  EXPECT_EQ(host.viewer.open(path, u"open", 1, true), 33);
  EXPECT_EQ(support::read_file(host.folder.file("seen")),
            host.folder.file("reports/a.view.htm") + "\n");
}

TEST(Viewer, LaunchesForAPersonAtATerminal) {
  const support::TempFolder folder;
  embedded::EmbeddedOptions options;
  options.viewer_command = script(folder, "echo \"$1\" > " + folder.file("seen"));
  support::Pty pty;
  embedded::Terminal terminal(pty.terminal(), pty.terminal());
  embedded::EmbeddedViewer viewer(options, terminal);
  support::write_file(folder.file("a.htm"), "x");
  EXPECT_EQ(viewer.open(folder.wide_file("a.htm"), u"open", 1, false), 33);
  EXPECT_EQ(support::read_file(folder.file("seen")), folder.file("a.view.htm") + "\n");
}

TEST(Viewer, FailuresOfTheProgram) {
  const support::TempFolder folder;
  using embedded::launch_viewer;
  EXPECT_EQ(launch_viewer(script(folder, "exit 0"), "f"), 33);
  EXPECT_EQ(launch_viewer(script(folder, "exit 2"), "f"), 2);
  EXPECT_EQ(launch_viewer(script(folder, "exit 3"), "f"), 31);
  EXPECT_EQ(launch_viewer(script(folder, "exit 4"), "f"), 31);
  EXPECT_EQ(launch_viewer(script(folder, "exit 126"), "f"), 5);
  EXPECT_EQ(launch_viewer(script(folder, "kill -9 $$"), "f"), 31);
  EXPECT_EQ(launch_viewer(folder.file("no such program"), "f"), 31);
  support::write_file(folder.file("plain"), "not a program");
  EXPECT_EQ(launch_viewer(folder.file("plain"), "f"), 5);
}

TEST(Viewer, NamesOfCopies) {
  using embedded::readable_copy_path;
  EXPECT_EQ(readable_copy_path("/a.b/c.htm"), "/a.b/c.view.htm");
  EXPECT_EQ(readable_copy_path("/a.b/c"), "/a.b/c.view");
  EXPECT_EQ(readable_copy_path("/a/.c"), "/a/.c.view");
  EXPECT_EQ(readable_copy_path("c.htm"), "c.view.htm");
}

TEST(Viewer, OrderOfDatesByFormat) {
  using embedded::date_order_of;
  EXPECT_EQ(date_order_of("%m/%d/%Y"), 0);
  EXPECT_EQ(date_order_of("%D"), 0);
  EXPECT_EQ(date_order_of("%B %d"), 0);
  EXPECT_EQ(date_order_of("%d.%m.%Y"), 1);
  EXPECT_EQ(date_order_of("%e/%m/%y"), 1);
  EXPECT_EQ(date_order_of("%Y-%m-%d"), 2);
  EXPECT_EQ(date_order_of("%F"), 2);
  EXPECT_EQ(date_order_of(""), 1);
  EXPECT_EQ(date_order_of("%"), 1);
}

TEST(Viewer, FormOfClocksByFormat) {
  using embedded::clock_form_of;
  EXPECT_EQ(clock_form_of("%r"), 0);
  EXPECT_EQ(clock_form_of("%I:%M:%S %p"), 0);
  EXPECT_EQ(clock_form_of("%H:%M:%S"), 1);
  EXPECT_EQ(clock_form_of("%T"), 1);
  EXPECT_EQ(clock_form_of(""), 1);
}

TEST(Viewer, OptionsDecideOrderAndClock) {
  Unattended host;
  host.options.date_order = 2;
  host.options.clock_form = 0;
  EXPECT_EQ(host.viewer.date_order(), 2);
  EXPECT_EQ(host.viewer.clock_form(), 0);
}

TEST(Viewer, BareLocaleGivesDayMonthYear) {
  ::setenv("LC_ALL", "C.UTF-8", 1);
  Unattended host;
  EXPECT_EQ(host.viewer.date_order(), 1);
  EXPECT_EQ(host.viewer.clock_form(), 1);
  ::unsetenv("LC_ALL");
}

}  // namespace
