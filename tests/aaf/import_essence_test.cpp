// Audio that lies in the file, the paths of sources, and time stamps of WAVE files.

#include <filesystem>

#include "tests/aaf/import_fixture.h"
#include "tests/support/faulty_files.h"

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::size_t block_bytes = 0x200000;

std::string pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<char>((i * 2654435761U) >> 11U);
  return bytes;
}

class ImportEssenceTest : public BothWaysImportTest {
 protected:
  // A source whose audio lies in the file.
  AafTake embedded(AafSource source, const std::string& bytes) {
    const AafTake made = file().source(source);
    file().essence(made.file, bytes);
    return made;
  }
  [[nodiscard]] std::string copied(const std::string& name) const {
    return read_file(audio_folder->path + "/" + name);
  }
  // Canonical.
  [[nodiscard]] std::string audio(const std::string& name) const {
    return "/" + audio_folder->path + "/" + name;
  }
  [[nodiscard]] std::vector<std::string> copies() const {
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(audio_folder->path))
      names.push_back(item.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const CGenericEdlEntry* const each : entries())
      found.push_back(utf8(each->clip_name));
    return found;
  }
  [[nodiscard]] std::vector<int> types() const {
    std::vector<int> found;
    for (const CGenericEdlEntry* const each : entries())
      found.push_back(each->source_index);
    return found;
  }
};
INSTANTIATE_TEST_SUITE_P(, ImportEssenceTest, both_ways(), way_name);

TEST_P(ImportEssenceTest, WhatLiesInTheFileIsCopied) {
  const std::string first_bytes = pattern(100'000);
  const std::string second_bytes = pattern(3'000);
  const AafTake first = embedded({}, first_bytes);
  static_cast<void>(embedded({.essence = AafSource::Essence::picture}, pattern(50)));
  const AafTake second = embedded({.essence = AafSource::Essence::pcm}, second_bytes);
  ASSERT_EQ(import({sound({clip(first, 10), clip(second, 10)})}), 100);
  // The master mobs are 1, 3 and 5.
  EXPECT_THAT(copies(), ElementsAre("2_7_9.wav", "6_7_9.wav"));
  EXPECT_TRUE(same_bytes(copied("2_7_9.wav"), first_bytes));
  EXPECT_TRUE(same_bytes(copied("6_7_9.wav"), second_bytes));
  EXPECT_THAT(paths(), ElementsAre(audio("2_7_9"), audio("6_7_9")));
  EXPECT_THAT(names(), ElementsAre("2_7_9.wav", "6_7_9.wav"));
  EXPECT_THAT(types(), ElementsAre(2, 2));
  ASSERT_EQ(host.windows.windows.size(), 1U);
  const ProgressRecord& window = *host.windows.windows[0];
  EXPECT_THAT(window.captions, ElementsAre("Importing embedded audio..."));
  EXPECT_THAT(window.texts,
              ElementsAre("Processing track 1 of 2...", "Processing track 2 of 2..."));
  // 103,000 bytes, of which the first 97 KiB and then 2.
  EXPECT_EQ(window.range, 100U);
  EXPECT_THAT(window.positions, ElementsAre(0, 97, 99, 100));
  EXPECT_THAT(host.places.refreshed, ElementsAre(audio_folder->path));
}

TEST_P(ImportEssenceTest, AifcHasAnExtensionOfItsOwn) {
  const std::string bytes = pattern(2'000);
  const AafTake source = embedded({.essence = AafSource::Essence::aifc}, bytes);
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(copies(), ElementsAre("2_7_9.afc"));
  EXPECT_TRUE(same_bytes(copied("2_7_9.afc"), bytes));
  EXPECT_THAT(paths(), ElementsAre(audio("2_7_9")));
  EXPECT_THAT(types(), ElementsAre(14));
}

TEST_P(ImportEssenceTest, InBlocksOfTwoMebibytes) {
  const std::size_t sizes[] = {block_bytes, block_bytes + 1, 2 * block_bytes, 5};
  int files = 0;
  for (const std::size_t size : sizes) {
    path = folder.file(std::to_string(++files) + ".aaf");
    importer = std::make_unique<CAAFEdlFile>(&edl);
    host.windows.windows.clear();
    const std::string bytes = pattern(size);
    const AafTake source = embedded({}, bytes);
    ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
    EXPECT_TRUE(copied("2_7_9.wav") == bytes) << size;
    // The events are handled at the start, behind each block and at the end.
    const std::size_t blocks = (size + block_bytes - 1) / block_bytes;
    ASSERT_EQ(host.windows.windows.size(), 1U);
    EXPECT_EQ(host.windows.windows[0]->pumps, static_cast<int>(blocks) + 2) << size;
  }
}

TEST_P(ImportEssenceTest, NothingMakesAnEmptyFile) {
  const AafTake source = embedded({}, "");
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(copies(), ElementsAre("2_7_9.wav"));
  EXPECT_EQ(copied("2_7_9.wav"), "");
  EXPECT_THAT(host.places.refreshed, ElementsAre(audio_folder->path));
}

TEST_P(ImportEssenceTest, AFileThatIsThereIsReplaced) {
  write_file(audio_folder->path + "/2_7_9.wav", pattern(5'000));
  const std::string bytes = pattern(1'000);
  const AafTake source = embedded({}, bytes);
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_TRUE(same_bytes(copied("2_7_9.wav"), bytes));
}

TEST_P(ImportEssenceTest, WithoutAFolderNothingIsRead) {
  host.app.imported_audio_folder = nullptr;
  const AafTake source = embedded({}, pattern(1'000));
  EXPECT_EQ(import({sound({clip(source, 10)})}), 11);
  EXPECT_THAT(boxes(), ElementsAre("[24743]"));
  EXPECT_EQ(host.boxes.shown[0].message_icon, BoxIcon::information);
  EXPECT_THAT(edits(), IsEmpty());
  EXPECT_THAT(copies(), IsEmpty());
}

TEST_P(ImportEssenceTest, WithoutAFolderAFileWithoutAudioIsRead) {
  host.app.imported_audio_folder = nullptr;
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_P(ImportEssenceTest, CancelLeavesWhatWasCopied) {
  const std::string bytes = pattern(3 * block_bytes);
  const AafTake source = embedded({}, bytes);
  // The second block is the third position.
  host.windows.cancel_at_position = 3;
  host.boxes.message_answers = {box_answer_yes};
  EXPECT_EQ(import({sound({clip(source, 10)})}), 11);
  EXPECT_THAT(boxes(), ElementsAre("Are you sure you wish to abort importing this audio?"));
  EXPECT_TRUE(copied("2_7_9.wav") == bytes.substr(0, 2 * block_bytes));
  EXPECT_THAT(edits(), IsEmpty());
}

TEST_P(ImportEssenceTest, ARefusedCancelGoesOn) {
  const std::string bytes = pattern(3 * block_bytes);
  const AafTake source = embedded({}, bytes);
  host.windows.cancel_at_position = 3;
  host.boxes.message_answers = {box_answer_no};
  EXPECT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_TRUE(copied("2_7_9.wav") == bytes);
  EXPECT_EQ(edits().size(), 1U);
}

TEST_P(ImportEssenceTest, AFileThatCannotBeMadeIsPassedOver) {
  const std::string missing = folder.file("missing");
  host.app.imported_audio_folder = host.places.add(missing);
  const AafTake source = embedded({}, pattern(1'000));
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(paths(), ElementsAre("/" + missing + "/2_7_9"));
  EXPECT_THAT(boxes(), IsEmpty());
  // Nothing was written, so it is the folder of the AAF file that is looked at again.
  EXPECT_THAT(host.places.refreshed, ElementsAre(folder.path()));
  EXPECT_THAT(host.windows.windows.at(0)->texts, IsEmpty());
}

// What the system refuses to write is missing in the copy; the edit is there, and so is
// the audio behind it.
TEST_P(ImportEssenceTest, AWriteThatIsRefusedSpoilsTheCopyAlone) {
  const std::string bytes = pattern(3 * block_bytes);
  const std::string others = pattern(1'000);
  const AafTake first = embedded({}, bytes);
  const AafTake second = embedded({}, others);
  file().composition({.slots = {sound({clip(first, 10), clip(second, 10)})}});
  {
    const FaultyFiles none(FileFaults::Operation::write, 0);
    ASSERT_EQ(import(), 100);
    EXPECT_EQ(aaf().output_incomplete(), 0);
    EXPECT_TRUE(copied("2_7_9.wav") == bytes);
  }
  for (int nth = 1; nth <= 4; ++nth) {
    importer = std::make_unique<CAAFEdlFile>(&edl);
    const FaultyFiles full(FileFaults::Operation::write, nth, ENOSPC);
    ASSERT_EQ(import_path(path), 100) << nth;
    EXPECT_EQ(full.failed(), 1);
    EXPECT_NE(aaf().output_incomplete(), 0) << nth;
    EXPECT_EQ(copied("2_7_9.wav") == bytes, nth == 4) << nth;
    EXPECT_EQ(copied("4_7_9.wav") == others, nth != 4) << nth;
  }
  EXPECT_EQ(edits().size(), 10U);
}

// The stored size of the first is not that of what is stored.
TEST_P(ImportEssenceTest, AudioThatIsCutOffInTheFileEndsTheImport) {
  constexpr std::size_t size = 5'123;
  const AafTake first = embedded({}, pattern(size));
  static_cast<void>(embedded({}, pattern(100'000)));
  file().composition({.slots = {sound({clip(first, 10)})}});
  file().save();
  const std::string whole = read_file(path);
  const std::string stored = {'\x03', '\x14', '\0', '\0', '\0', '\0', '\0', '\0'};
  const std::size_t at = whole.find(stored);
  ASSERT_NE(at, std::string::npos);
  ASSERT_EQ(whole.find(stored, at + 1), std::string::npos);
  // 16 and 70 KiB, for which the file has room, and 1 GiB.
  for (const auto& [place, byte] : {std::pair{1, '\x40'}, {2, '\x01'}, {3, '\x40'}}) {
    std::string bytes = whole;
    bytes[at + static_cast<std::size_t>(place)] = byte;
    path = folder.file(std::to_string(place) + ".aaf");
    write_file(path, bytes);
    importer = std::make_unique<CAAFEdlFile>(&edl);
    EXPECT_EQ(import_path(path), 11) << place;
    EXPECT_THAT(edits(), IsEmpty());
  }
}

TEST_P(ImportEssenceTest, OnlyFilesThatCouldBeMadeAreCounted) {
  std::filesystem::create_directory(audio_folder->path + "/2_7_9.wav");
  const AafTake first = embedded({}, pattern(1'000));
  const AafTake second = embedded({}, pattern(2'000));
  ASSERT_EQ(import({sound({clip(first, 10), clip(second, 10)})}), 100);
  EXPECT_TRUE(same_bytes(copied("4_7_9.wav"), pattern(2'000)));
  EXPECT_THAT(paths(), ElementsAre(audio("2_7_9"), audio("4_7_9")));
  EXPECT_THAT(host.windows.windows.at(0)->texts, ElementsAre("Processing track 1 of 2..."));
  EXPECT_THAT(host.places.refreshed, ElementsAre(audio_folder->path));
}

TEST_P(ImportEssenceTest, WithoutAudioTheFolderOfTheFileIsLookedAt) {
  ASSERT_EQ(import({sound({clip(take(), 10)})}), 100);
  EXPECT_THAT(host.windows.windows, IsEmpty());
  EXPECT_THAT(host.places.found, ElementsAre(folder.path() + "/"));
  EXPECT_THAT(host.places.refreshed, ElementsAre(folder.path()));
}

TEST_P(ImportEssenceTest, AudioIsCopiedBeforeTheChoice) {
  const AafTake source = embedded({}, pattern(1'000));
  file().composition({.slots = {sound({clip(source, 10)})}});
  file().composition({.slots = {sound({filler(10)})}});
  host.windows.choice_answers = {-1};
  EXPECT_EQ(import(), 11);
  EXPECT_THAT(copies(), ElementsAre("2_7_9.wav"));
}

// Numbers are compared but for their last eight bytes, and only the others name the file.
TEST_P(ImportEssenceTest, TwoOfOneNumberMakeOneFile) {
  const AafTake first = embedded({}, pattern(1'000));
  AafSource twin{.name = L"twin", .file_id = first.file};
  twin.file_id->material.Data4[7] ^= 0xFFU;
  const AafTake second = embedded(twin, pattern(2'000));
  ASSERT_EQ(import({sound({clip(first, 10), clip(second, 10)})}), 100);
  EXPECT_THAT(copies(), ElementsAre("2_7_9.wav"));
  EXPECT_THAT(paths(), ElementsAre(audio("2_7_9"), audio("2_7_9")));
  const std::string bytes = copied("2_7_9.wav");
  EXPECT_TRUE(bytes == pattern(1'000) || bytes == pattern(2'000)) << bytes.size();
}

TEST_P(ImportEssenceTest, AudioWithoutItsMobEndsTheImport) {
  const AafTake source = embedded({}, pattern(1'000));
  AafRef<IAAFMob> mob;
  ASSERT_EQ(file().header().LookupMob(source.file, mob.put()), 0);
  ASSERT_EQ(file().header().RemoveMob(mob.get()), 0);
  mob.reset();
  EXPECT_EQ(import({sound({filler(10)})}), 11);
  EXPECT_THAT(copies(), IsEmpty());
}

TEST_P(ImportEssenceTest, ALocatorOnAnAafFileMeansTheCopy) {
  for (const wchar_t* const locator : {L"x.AAF", L"file:///C:/a.aaf", L"aaf"}) {
    path = folder.file("y.aaf");
    importer = std::make_unique<CAAFEdlFile>(&edl);
    std::filesystem::remove(path);
    const AafTake source = embedded({.locators = {locator}}, pattern(100));
    ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
    EXPECT_EQ(paths().back(), audio("2_7_9"));
  }
}

TEST_P(ImportEssenceTest, ALocatorElsewhereGoesBeforeTheCopy) {
  const AafTake source = embedded({.locators = {L"file:///C:/a.wav"}}, pattern(100));
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(copies(), ElementsAre("2_7_9.wav"));
  EXPECT_THAT(paths(), ElementsAre("//C:/a"));
}

TEST_P(ImportEssenceTest, AnEmptyLocatorIsNone) {
  const AafTake source = embedded({.locators = {L""}}, pattern(100));
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(paths(), ElementsAre(audio("2_7_9")));
}

TEST_P(ImportEssenceTest, OfTwoLocatorsTheFirst) {
  const AafTake source = file().source({.locators = {L"file:///C:/a.wav", L"file:///C:/b.wav"}});
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(paths(), ElementsAre("//C:/a"));
}

TEST_P(ImportEssenceTest, AFirstLocatorWithoutAPathMeansTheCopy) {
  const AafTake source =
      embedded({.locators = {L"file:///C:/b.wav"}, .leading_text_locator = true}, pattern(100));
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(paths(), ElementsAre(audio("2_7_9")));
}

TEST_P(ImportEssenceTest, WithoutLocatorAndCopyThePathIsUnknown) {
  int files = 0;
  struct Row {
    AafSource::Essence essence;
    const char* name;
    int type;
  };
  constexpr Row rows[] = {{AafSource::Essence::wave, "unknown.wav", 2},
                          {AafSource::Essence::pcm, "unknown.wav", 2},
                          {AafSource::Essence::aifc, "unknown.afc", 14},
                          {AafSource::Essence::picture, "unknown", 65535}};
  for (const Row& row : rows) {
    path = folder.file(std::to_string(++files) + ".aaf");
    importer = std::make_unique<CAAFEdlFile>(&edl);
    const AafTake source = file().source({.essence = row.essence});
    ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
    EXPECT_EQ(paths().back(), beside("unknown"));
    EXPECT_EQ(names().back(), row.name);
    EXPECT_EQ(types().back(), row.type);
  }
}

TEST_P(ImportEssenceTest, WithCopiesOfOthersOnlyThePathIsUnknown) {
  const AafTake other = embedded({}, pattern(100));
  const AafTake source = file().source({});
  ASSERT_EQ(import({sound({clip(source, 10), clip(other, 10)})}), 100);
  EXPECT_THAT(names(), ElementsAre("unknown", "2_7_9.wav"));
}

// Paths are kept without extension, so these are one source; the first says its name.
TEST_P(ImportEssenceTest, PathsThatDifferInExtensionOrCaseAreOneSource) {
  const AafTake wave = file().source({.locators = {L"file:///C:/Audio/take.wav"}});
  const AafTake bwf = file().source({.locators = {L"file:///C:/Audio/take.bwf"}});
  const AafTake lower = file().source({.locators = {L"file:///C:/audio/TAKE.wav"}});
  const AafTake other = file().source({.locators = {L"file:///C:/Audio/take2.wav"}});
  ASSERT_EQ(import({sound({clip(wave, 10), clip(bwf, 10), clip(lower, 10), clip(other, 10),
                           clip(wave, 10)})}),
            100);
  EXPECT_THAT(names(), ElementsAre("take.wav", "take.wav", "take.wav", "take2.wav", "take.wav"));
  EXPECT_THAT(paths(), ElementsAre("//C:/Audio/take", "//C:/Audio/take", "//C:/Audio/take",
                                   "//C:/Audio/take2", "//C:/Audio/take"));
}

// All of these have one canonical path, whose name is that of the first.
TEST_P(ImportEssenceTest, UnknownSourcesAreOne) {
  aaf().set_sample_rate_index(2);
  const AafTake aifc = file().source({.essence = AafSource::Essence::aifc});
  const AafTake wave = file().source({});
  const AafTake nowhere = file().source({.essence = AafSource::Essence::none});
  ASSERT_EQ(import({sound({clip(aifc, 10), clip(wave, 10), clip(nowhere, 10)})}), 100);
  EXPECT_THAT(names(), ElementsAre("unknown.afc", "unknown.afc", "unknown.afc"));
  EXPECT_THAT(types(), ElementsAre(14, 14, 14));
}

// Paths are kept to 255 characters, and compared so.
TEST_P(ImportEssenceTest, LongPathsAreOneSourceStill) {
  const std::wstring folders = L"file:///C:/" + std::wstring(300, L'a');
  const AafTake first = file().source({.locators = {folders + L"/one.wav"}});
  const AafTake second = file().source({.locators = {folders + L"/two.wav"}});
  ASSERT_EQ(import({sound({clip(first, 10), clip(second, 10)})}), 100);
  EXPECT_THAT(names(), ElementsAre("one.wav", "one.wav"));
  EXPECT_THAT(paths(), testing::Each("//C:/" + std::string(250, 'a')));
}

TEST_P(ImportEssenceTest, TheNameIsDecoded) {
  const AafTake source = file().source({.locators = {L"file:///C%3a/audio/a%20b.wav"}});
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(names(), ElementsAre("a b.wav"));
  EXPECT_THAT(paths(), ElementsAre("//C:/audio/a b"));
}

// Relative to the folder of the AAF file.
TEST_P(ImportEssenceTest, APathBesideTheFile) {
  const AafTake source = file().source({.locators = {L"clips/a.wav"}});
  ASSERT_EQ(import({sound({clip(source, 10)})}), 100);
  EXPECT_THAT(paths(), ElementsAre(beside("clips/a")));
}

// A WAVE head whose first chunk has this name, with a 64-bit number where a broadcast
// extension has its time reference.
std::vector<aafUInt8> summary(const std::string& chunk, std::size_t size, std::uint64_t time) {
  std::vector<aafUInt8> bytes(std::max<std::size_t>(size, 400));
  const std::string head = "RIFF....WAVE" + chunk;
  std::copy(head.begin(), head.end(), bytes.begin());
  for (unsigned i = 0; i < 8; ++i)
    bytes[358 + i] = static_cast<aafUInt8>(time >> (8 * i));
  bytes.resize(size);
  return bytes;
}

class TimeReferenceTest : public BothWaysImportTest {
 protected:
  std::int64_t source_in(std::vector<aafUInt8> head,
                         AafSource::Essence essence = AafSource::Essence::wave) {
    const AafTake source = file().source(
        {.essence = essence, .locators = {L"file:///C:/a.wav"}, .summary = std::move(head)});
    EXPECT_EQ(import({sound({clip(source, 10, 5)})}), 100);
    return edits().at(0).source;
  }
};
INSTANTIATE_TEST_SUITE_P(, TimeReferenceTest, both_ways(), way_name);

TEST_P(TimeReferenceTest, IsAddedToTheStart) {
  EXPECT_EQ(source_in(summary("bext", 400, 1000)), 1005);
}

TEST_P(TimeReferenceTest, InCapitals) {
  EXPECT_EQ(source_in(summary("BEXT", 367, 1000)), 1005);
}

TEST_P(TimeReferenceTest, HasTwoHalves) {
  EXPECT_EQ(source_in(summary("bext", 367, 0x1'0000'0002)), 0x1'0000'0007);
}

TEST_P(TimeReferenceTest, OneByteTooShortIsNone) {
  EXPECT_EQ(source_in(summary("bext", 366, 1000)), 5);
}

TEST_P(TimeReferenceTest, AnotherFirstChunkHasNone) {
  EXPECT_EQ(source_in(summary("fmt ", 400, 1000)), 5);
}

TEST_P(TimeReferenceTest, MixedCaseIsAnotherChunk) {
  EXPECT_EQ(source_in(summary("Bext", 400, 1000)), 5);
}

TEST_P(TimeReferenceTest, WithoutAHead) {
  EXPECT_EQ(source_in({}), 5);
}

TEST_P(TimeReferenceTest, OnlyWaveFilesHaveOne) {
  EXPECT_EQ(source_in(summary("bext", 400, 1000), AafSource::Essence::aifc), 5);
}

// In samples, whatever the slot counts in.
TEST_P(TimeReferenceTest, IsNotScaled) {
  constexpr aafRational_t at_25 = {25, 1};
  const AafTake source = file().source({.slot_rate = at_25,
                                        .locators = {L"file:///C:/a.wav"},
                                        .summary = summary("bext", 400, 1000)});
  ASSERT_EQ(import({sound({clip(source, 10, 5)}, at_25)}), 100);
  EXPECT_EQ(edits().at(0).source, 10'600);
}

}  // namespace
