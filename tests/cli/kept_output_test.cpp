// What stood where an export writes comes back unless the export succeeds.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "cli/output_guard.h"
#include "tests/cli/awkward_format.h"
#include "tests/cli/lists.h"
#include "tests/cli/program_run.h"
#include "tests/support/compare.h"
#include "tests/support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using support::file_exists;
using support::read_file;
using support::run_edlconv;
using support::run_toy_edlconv;
using support::RunResult;
using support::silent_list;
using support::with_rates;
using support::write_file;
using testing::HasSubstr;
using testing::Not;

struct KeptOutput : testing::Test {
  KeptOutput() { write_file(in, "AWKWARD good\n"); }

  void put_old_files() const {
    write_file(list, "old list");
    write_file(notes, "old notes");
  }
  // The files of the folder beside the input.
  [[nodiscard]] std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& item : fs::directory_iterator(folder.path())) {
      if (item.path() != in) names.push_back(item.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  [[nodiscard]] std::vector<std::string> arguments(int flag) const {
    return with_rates({"convert", in, list, "--export-flag", std::to_string(flag)});
  }
  [[nodiscard]] RunResult run(int flag) const { return run_toy_edlconv(arguments(flag)); }

  support::TempFolder folder;
  std::string in = folder.file("in.awkward");
  std::string list = folder.file("film.awkward");
  std::string notes = folder.file("film.awkward.notes");
  std::string list_aside = list + ".before-edlconv";
  std::string notes_aside = notes + ".before-edlconv";
};

using Names = std::vector<std::string>;

TEST_F(KeptOutput, GoesAfterSuccess) {
  put_old_files();
  EXPECT_EQ(run(awkward_good).code, 0);
  EXPECT_EQ(read_file(list), "AWKWARD good\n");
  EXPECT_EQ(read_file(notes), "half whole\n");
  EXPECT_EQ(files(), (Names{"film.awkward", "film.awkward.notes"}));
}

TEST_F(KeptOutput, CompanionThatIsNotWrittenAnewComesBack) {
  put_old_files();
  EXPECT_EQ(run(awkward_alone).code, 0);
  EXPECT_EQ(read_file(list), "AWKWARD good\n");
  EXPECT_EQ(read_file(notes), "old notes");
  EXPECT_EQ(files(), (Names{"film.awkward", "film.awkward.notes"}));
}

struct FailedExport {
  int flag;
  const char* told;
};
constexpr FailedExport failed_exports[] = {
    {awkward_not_done, "film.awkward could not be written"},
    {awkward_refused, "the list does not fit the format Awkward list"},
    {awkward_source_refused, "a source of the list is of a kind that Awkward list cannot name"},
    {awkward_not_sd2, "a source of the list is no Sound Designer II file"},
    {awkward_throw, "film.awkward could not be written: No space left on device"},
    {awkward_incomplete, "film.awkward could not be written to its end"},
    {awkward_vanish, "film.awkward was not written"},
    {awkward_no_memory, "there is not enough memory"},
};

TEST_F(KeptOutput, ComesBackWhenTheExportFails) {
  for (const FailedExport& failed : failed_exports) {
    SCOPED_TRACE(failed.told);
    put_old_files();
    const RunResult result = run(failed.flag);
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.err, HasSubstr(failed.told));
    EXPECT_EQ(read_file(list), "old list");
    EXPECT_EQ(read_file(notes), "old notes");
    EXPECT_EQ(files(), (Names{"film.awkward", "film.awkward.notes"}));
  }
}

TEST_F(KeptOutput, NothingStaysOfAFailedExportWhereNothingStood) {
  for (const FailedExport& failed : failed_exports) {
    SCOPED_TRACE(failed.told);
    EXPECT_EQ(run(failed.flag).code, 3);
    EXPECT_EQ(files(), Names{});
  }
}

TEST_F(KeptOutput, ComesBackWhenASignalEndsTheRun) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    SCOPED_TRACE(signal);
    put_old_files();
    support::ProgramRun program(support::toy_edlconv_path(), arguments(awkward_stall));
    ASSERT_TRUE(support::wait_for_file(list + ".half"));
    EXPECT_EQ(read_file(list), "AWKWARD ");
    EXPECT_EQ(read_file(list_aside), "old list");
    EXPECT_EQ(read_file(notes_aside), "old notes");
    ::kill(program.pid(), signal);
    const RunResult result = program.wait();
    EXPECT_EQ(result.signal, signal);
    EXPECT_THAT(result.err, HasSubstr("edlconv: interrupted"));
    fs::remove(list + ".half");
    EXPECT_EQ(read_file(list), "old list");
    EXPECT_EQ(read_file(notes), "old notes");
    EXPECT_EQ(files(), (Names{"film.awkward", "film.awkward.notes"}));
  }
}

TEST_F(KeptOutput, NothingStaysOfAnInterruptedRunWhereNothingStood) {
  support::ProgramRun program(support::toy_edlconv_path(), arguments(awkward_stall));
  ASSERT_TRUE(support::wait_for_file(list + ".half"));
  ::kill(program.pid(), SIGTERM);
  EXPECT_EQ(program.wait().signal, SIGTERM);
  EXPECT_EQ(files(), Names{"film.awkward.half"});
}

TEST_F(KeptOutput, SignalThatIsIgnoredStaysIgnored) {
  put_old_files();
  support::ProgramRun program(support::toy_edlconv_path(), arguments(awkward_stall),
                              [] { std::signal(SIGHUP, SIG_IGN); });
  ASSERT_TRUE(support::wait_for_file(list + ".half"));
  ::kill(program.pid(), SIGHUP);
  ::usleep(100000);
  EXPECT_EQ(::kill(program.pid(), 0), 0);
  EXPECT_EQ(read_file(list_aside), "old list");
  ::kill(program.pid(), SIGINT);
  EXPECT_EQ(program.wait().signal, SIGINT);
  EXPECT_EQ(read_file(list), "old list");
}

TEST_F(KeptOutput, LiesAsideWhenTheRunIsKilledAndTheNextRunTells) {
  put_old_files();
  {
    support::ProgramRun program(support::toy_edlconv_path(), arguments(awkward_stall));
    ASSERT_TRUE(support::wait_for_file(list + ".half"));
    ::kill(program.pid(), SIGKILL);
    EXPECT_EQ(program.wait().signal, SIGKILL);
  }
  EXPECT_EQ(read_file(list_aside), "old list");
  EXPECT_EQ(read_file(notes_aside), "old notes");

  // The next run fails: its own old files, halves of the killed run, come back.
  RunResult result = run(awkward_not_done);
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.err, HasSubstr("an earlier run was stopped while it wrote " + list +
                                    "; the file that stood there before lies at " + list_aside));
  EXPECT_THAT(result.err, HasSubstr("lies at " + notes_aside));
  EXPECT_EQ(read_file(list), "AWKWARD ");
  EXPECT_EQ(read_file(list_aside), "old list");

  // And one that succeeds leaves them alone too.
  result = run(awkward_good);
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.err, HasSubstr("lies at " + list_aside));
  EXPECT_EQ(read_file(list), "AWKWARD good\n");
  EXPECT_EQ(read_file(list_aside), "old list");
  EXPECT_EQ(read_file(notes_aside), "old notes");
  EXPECT_FALSE(file_exists(list_aside + "-2"));

  fs::remove(list_aside);
  fs::remove(notes_aside);
  EXPECT_THAT(run(awkward_good).err, Not(HasSubstr("lies at")));
}

TEST_F(KeptOutput, ListUnderAnotherNameThanGiven) {
  const std::string renamed = folder.file("film.renamed");
  write_file(list, "stays");
  write_file(renamed, "old renamed");
  const auto run_renaming = [&](int flag) {
    return run_toy_edlconv(with_rates(
        {"convert", "--to", "renaming", in, list, "--export-flag", std::to_string(flag)}));
  };
  EXPECT_EQ(run_renaming(awkward_not_done).code, 3);
  EXPECT_EQ(read_file(renamed), "old renamed");
  EXPECT_EQ(read_file(list), "stays");

  const RunResult result = run_renaming(awkward_good);
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.err, HasSubstr("hint: the list is written as " + renamed));
  EXPECT_EQ(read_file(renamed), "AWKWARD good\n");
  EXPECT_EQ(read_file(list), "stays");
  EXPECT_EQ(files(), (Names{"film.awkward", "film.renamed", "film.renamed.notes"}));
}

// --- with the real formats

struct KeptList : testing::Test {
  KeptList() {
    write_file(in, silent_list);
    write_file(out, "old list");
  }
  [[nodiscard]] RunResult convert(const std::function<void()>& in_child = {}) const {
    return run_edlconv(with_rates({"convert", in, out}), in_child);
  }

  support::TempFolder folder;
  std::string in = folder.file("in.edl");
  std::string out = folder.file("out.edl");
};

TEST_F(KeptList, StaysWhenTheInputIsBad) {
  write_file(in, "");
  EXPECT_EQ(convert().code, 2);
  EXPECT_EQ(read_file(out), "old list");
}

TEST_F(KeptList, ComesBackWhenAFileMayNotGrow) {
  std::string list;
  for (int i = 1; i <= 300; ++i)
    list += "001  TAPE01  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n";
  write_file(in, list);
  const RunResult result = convert([] {
    const rlimit most = {8192, 8192};
    if (::setrlimit(RLIMIT_FSIZE, &most) != 0) ::_exit(126);
  });
  EXPECT_EQ(result.signal, 0);
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.err, HasSubstr(out + " could not be written to its end"));
  EXPECT_EQ(read_file(out), "old list");
  EXPECT_FALSE(file_exists(out + ".before-edlconv"));
}

TEST_F(KeptList, FullDevice) {
  if (!file_exists("/dev/full")) GTEST_SKIP() << "the system has no /dev/full";
  fs::remove(out);
  fs::create_symlink("/dev/full", out);
  const RunResult result = convert();
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.err, HasSubstr(out + " could not be written to its end"));
  EXPECT_EQ(fs::read_symlink(out), "/dev/full");
}

TEST_F(KeptList, DeviceIsWrittenAsItStands) {
  fs::remove(out);
  fs::create_symlink("/dev/null", out);
  EXPECT_EQ(convert().code, 0);
  EXPECT_EQ(fs::read_symlink(out), "/dev/null");
}

TEST_F(KeptList, UnwritableFolder) {
  fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec |
                                     fs::perms::others_read | fs::perms::others_exec);
  const RunResult result = convert(support::become_nobody);
  fs::permissions(folder.path(), fs::perms::owner_all);
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.err, "edlconv: " + out + " cannot be written: folder " + folder.path() +
                            ": Permission denied\n");
  EXPECT_EQ(read_file(out), "old list");
}

TEST_F(KeptList, FolderThatIsNotThere) {
  const std::string nowhere = folder.file("none/out.edl");
  const RunResult result = run_edlconv(with_rates({"convert", in, nowhere}));
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.err, "edlconv: " + nowhere + " cannot be written: folder " +
                            folder.file("none") + ": No such file or directory\n");
}

TEST_F(KeptList, FolderInTheWay) {
  fs::remove(out);
  fs::create_directory(out);
  const RunResult result = convert();
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.err, "edlconv: " + out + " is a folder\n");
  EXPECT_TRUE(fs::is_directory(out));
}

TEST_F(KeptList, LinkStaysALink) {
  const std::string target = folder.file("target.edl");
  write_file(target, "old target");
  fs::remove(out);
  fs::create_symlink("target.edl", out);
  EXPECT_EQ(convert().code, 0);
  EXPECT_EQ(fs::read_symlink(out), "target.edl");
  EXPECT_THAT(read_file(target), HasSubstr("TITLE: out "));
  EXPECT_FALSE(file_exists(target + ".before-edlconv"));
}

TEST_F(KeptList, LinkToNothingLeadsToTheNewList) {
  fs::remove(out);
  fs::create_symlink("target.edl", out);
  EXPECT_EQ(convert().code, 0);
  EXPECT_EQ(fs::read_symlink(out), "target.edl");
  EXPECT_THAT(read_file(folder.file("target.edl")), HasSubstr("TITLE: out "));
}

TEST_F(KeptList, RightsOfTheOldFileAreTakenOver) {
  for (const mode_t mode : {0600U, 0664U, 0440U}) {
    ASSERT_EQ(::chmod(out.c_str(), mode), 0);
    EXPECT_EQ(convert().code, 0);
    struct stat about {};
    ASSERT_EQ(::stat(out.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 07777U, mode);
  }
}

TEST_F(KeptList, LongestName) {
  // 255 bytes are the most that a name may have.
  const std::string longest = folder.file(std::string(251, 'n') + ".edl");
  write_file(longest, "old list");
  const RunResult result = run_edlconv(with_rates({"convert", in, longest}));
  EXPECT_EQ(result.code, 0) << result.err;
  // The title does not fit its line and is left out, but no name stands in the way.
  EXPECT_THAT(read_file(longest), HasSubstr("001  TAPE01 \tA "));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 3);
}

// --- the guard itself

TEST(OutputGuard, PutsBackWithoutACommit) {
  const support::TempFolder folder;
  const std::string old = folder.file("old");
  const std::string fresh = folder.file("fresh");
  write_file(old, "old");
  {
    const cli::OutputGuard guard({old, fresh});
    EXPECT_TRUE(guard.ready());
    EXPECT_FALSE(file_exists(old));
    EXPECT_EQ(read_file(old + ".before-edlconv"), "old");
    write_file(old, "half");
    write_file(fresh, "half");
  }
  EXPECT_EQ(read_file(old), "old");
  EXPECT_FALSE(file_exists(fresh));
}

TEST(OutputGuard, OneFileThatCannotBeSetAsideLeavesAllAsTheyWere) {
  const support::TempFolder folder;
  const std::string old = folder.file("old");
  write_file(old, "old");
  {
    testing::internal::CaptureStderr();
    cli::OutputGuard guard({old, folder.folder("sub")});
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("sub is a folder"));
    EXPECT_FALSE(guard.ready());
    EXPECT_EQ(read_file(old), "old");
  }
  EXPECT_EQ(read_file(old), "old");
  EXPECT_TRUE(fs::is_directory(folder.file("sub")));
}

TEST(OutputGuard, NamesThatAreTakenAreLeftAlone) {
  const support::TempFolder folder;
  const std::string old = folder.file("old");
  write_file(old, "newest");
  write_file(old + ".before-edlconv", "oldest");
  write_file(old + ".before-edlconv-3", "other");
  cli::OutputGuard guard({old});
  EXPECT_EQ(read_file(old + ".before-edlconv-2"), "newest");
  write_file(old, "written");
  EXPECT_TRUE(guard.commit());
  EXPECT_EQ(read_file(old), "written");
  EXPECT_FALSE(file_exists(old + ".before-edlconv-2"));
  EXPECT_EQ(read_file(old + ".before-edlconv"), "oldest");
  EXPECT_EQ(read_file(old + ".before-edlconv-3"), "other");
}

TEST(OutputGuard, CommitOfAListThatIsNotThereFails) {
  const support::TempFolder folder;
  const std::string old = folder.file("old");
  write_file(old, "old");
  {
    cli::OutputGuard guard({old});
    testing::internal::CaptureStderr();
    EXPECT_FALSE(guard.commit());
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("old was not written"));
  }
  EXPECT_EQ(read_file(old), "old");
}

}  // namespace
