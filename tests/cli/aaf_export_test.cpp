// Lists with their audio, made AAF files by the program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "tests/cli/program_run.h"
#include "tests/embedded/audio_files.h"
#include "tests/support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using support::file_exists;
using support::read_file;
using support::run_edlconv;
using support::RunResult;
using support::write_file;
using testing::ElementsAre;
using testing::HasSubstr;

// Mono, 16 bits: so many frames, each its own number from a start on.
std::string counted_wave(int frames, int start, std::uint32_t rate = 48000) {
  support::Audio audio{rate, 16, {{}}};
  for (int i = 0; i < frames; ++i)
    audio.channels[0].push_back((start + i) % 30000);
  return support::wave_file(audio);
}

std::string event(int number, const std::string& reel, int second) {
  const auto time = [](int hour, int seconds) {
    return (hour < 10 ? "0" : "") + std::to_string(hour) + ":00:0" + std::to_string(seconds) +
           ":00";
  };
  return "00" + std::to_string(number) + "  " + reel + "       A     C        " + time(0, 0) + " " +
         time(0, 1) + " " + time(1, second) + " " + time(1, second + 1) + "\n";
}

struct AafExport : testing::Test {
  AafExport() {
    write_file(media + "/R1.wav", first);
    write_file(media + "/R2.wav", second);
    write_file(list, "TITLE: T\n" + event(1, "R1", 0) + event(2, "R2", 1));
  }

  [[nodiscard]] RunResult run(std::vector<std::string> more,
                              const std::function<void()>& in_child = {}) const {
    std::vector<std::string> all = {"convert",       list,    out,       "--frame-rate", "25",
                                    "--sample-rate", "48000", "--media", media};
    all.insert(all.end(), more.begin(), more.end());
    return run_edlconv(all, in_child);
  }
  [[nodiscard]] std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& item : fs::directory_iterator(folder.path()))
      names.push_back(item.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  support::TempFolder folder;
  support::TempFolder in;
  std::string media = in.folder("media");
  std::string list = in.file("list.edl");
  std::string out = folder.file("film.aaf");
  std::string first = counted_wave(48000, 0);
  std::string second = counted_wave(48000, 10000);
};

TEST_F(AafExport, HoldsTheAudioOfItsEdits) {
  const RunResult result = run({});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_THAT(files(), ElementsAre("film.aaf"));
  const std::string file = read_file(out);
  // Whole sectors of the embedded files lie in one piece.
  EXPECT_NE(file.find(first.substr(0, 90000)), std::string::npos);
  EXPECT_NE(file.find(second.substr(0, 90000)), std::string::npos);
}

TEST_F(AafExport, PutsTheAudioBesideTheFile) {
  const RunResult result = run({"--external"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_THAT(files(), ElementsAre("R1.wav", "R2.wav", "film.aaf"));
  EXPECT_EQ(read_file(folder.file("R1.wav")), first);
  EXPECT_EQ(read_file(folder.file("R2.wav")), second);
}

TEST_F(AafExport, WritesAifc) {
  const RunResult result = run({"--external", "--essence", "aifc"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_THAT(files(), ElementsAre("R1.aif", "R2.aif", "film.aaf"));
  EXPECT_TRUE(read_file(folder.file("R1.aif")).starts_with("FORM"));
}

TEST_F(AafExport, ComesBackThroughTheImport) {
  ASSERT_EQ(run({}).code, 0);
  const std::string audio = folder.folder("audio");
  const std::string back = folder.file("back.edl");
  const RunResult result = run_edlconv({"convert", out, back, "--audio-folder", audio});
  EXPECT_TRUE(result.code == 0 || result.code == 4) << result.err;
  EXPECT_THAT(read_file(back), HasSubstr("01:00:00:00 01:00:01:00"));
  EXPECT_THAT(read_file(back), HasSubstr("01:00:01:00 01:00:02:00"));
  std::vector<std::string> copies;
  for (const auto& item : fs::directory_iterator(audio))
    copies.push_back(read_file(item.path().string()));
  EXPECT_THAT(copies, testing::UnorderedElementsAre(first, second));
}

TEST_F(AafExport, AsksAboutAudioThatIsMissing) {
  fs::remove(media + "/R2.wav");
  write_file(out, "old");
  const RunResult refused = run({});
  EXPECT_EQ(refused.code, 3);
  EXPECT_THAT(refused.err, HasSubstr("no audio for //R2: not found"));
  EXPECT_THAT(refused.err, HasSubstr("The audio of some edits could not be found"));
  EXPECT_EQ(read_file(out), "old");
  const RunResult left_out = run({"--assume", "yes"});
  EXPECT_EQ(left_out.code, 4);
  EXPECT_THAT(left_out.err, HasSubstr("no audio for //R2: not found"));
  const std::string file = read_file(out);
  EXPECT_NE(file.find(first.substr(0, 90000)), std::string::npos);
  EXPECT_EQ(file.find(second.substr(0, 90000)), std::string::npos);
}

TEST_F(AafExport, RefusesSourcesOfAnotherRate) {
  write_file(media + "/R2.wav", counted_wave(100, 0, 44100));
  const RunResult result = run({});
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.err, HasSubstr("Not all sources have the sample rate of the edit list"));
  EXPECT_FALSE(file_exists(out));
}

TEST_F(AafExport, NeverTouchesAnOlderAudioFile) {
  write_file(out, "old");
  write_file(folder.file("R2.wav"), "mine");
  const RunResult result = run({"--external"});
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.err, HasSubstr("R2.wav stands there already and is not overwritten"));
  EXPECT_THAT(files(), ElementsAre("R2.wav", "film.aaf"));
  EXPECT_EQ(read_file(folder.file("R2.wav")), "mine");
  EXPECT_EQ(read_file(out), "old");
}

TEST_F(AafExport, ReplacesAnOlderAudioFileWhenItIsAskedTo) {
  write_file(folder.file("R2.wav"), "mine");
  const RunResult result = run({"--external", "--overwrite-audio"});
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_THAT(files(), ElementsAre("R1.wav", "R2.wav", "film.aaf"));
  EXPECT_EQ(read_file(folder.file("R2.wav")), second);
}

TEST_F(AafExport, NeverReplacesTheAudioThatItReads) {
  out = media + "/film.aaf";
  const RunResult result = run({"--external", "--overwrite-audio"});
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(read_file(media + "/R1.wav"), first);
  EXPECT_EQ(read_file(media + "/R2.wav"), second);
  EXPECT_FALSE(file_exists(out));
}

// The second audio file does not fit: all that was written goes, and what was replaced
// comes back.
TEST_F(AafExport, LeavesNothingOnADiskThatIsFull) {
  write_file(media + "/R2.wav", counted_wave(400000, 0));
  write_file(out, "old");
  write_file(folder.file("R1.wav"), "mine");
  const RunResult result = run({"--external", "--overwrite-audio"}, [] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{500000, 500000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  });
  EXPECT_EQ(result.code, 3) << result.err;
  EXPECT_THAT(files(), ElementsAre("R1.wav", "film.aaf"));
  EXPECT_EQ(read_file(folder.file("R1.wav")), "mine");
  EXPECT_EQ(read_file(out), "old");
}

// A source of a gigabyte of nothing, so that there is time to end the program.
TEST_F(AafExport, TakesItsAudioBackWhenASignalEndsTheRun) {
  std::string head = first.substr(0, 44);
  const std::uint32_t bytes = 1 << 30;
  for (const auto& [at, size] : {std::pair{4, bytes + 36}, std::pair{40, bytes}}) {
    for (int i = 0; i < 4; ++i)
      head[static_cast<std::size_t>(at + i)] = static_cast<char>(size >> 8 * i);
  }
  write_file(media + "/R1.wav", head);
  fs::resize_file(media + "/R1.wav", 44 + std::uint64_t{bytes});
  write_file(out, "old");
  write_file(folder.file("R1.wav"), "mine");
  support::ProgramRun program(support::edlconv_path(),
                              {"convert", list, out, "--frame-rate", "25", "--sample-rate", "48000",
                               "--media", media, "--external", "--overwrite-audio"});
  ASSERT_TRUE(support::wait_for_file(folder.file("R1.wav.before-export")));
  ASSERT_TRUE(support::wait_for_file(folder.file("R1.wav")));
  ::kill(program.pid(), SIGTERM);
  const RunResult result = program.wait();
  EXPECT_EQ(result.signal, SIGTERM) << result.err;
  EXPECT_THAT(files(), ElementsAre("R1.wav", "film.aaf"));
  EXPECT_EQ(read_file(folder.file("R1.wav")), "mine");
  EXPECT_EQ(read_file(out), "old");
}

}  // namespace
