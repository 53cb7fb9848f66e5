// Which composition of a file is imported, and who is asked.

#include "tests/aaf/import_fixture.h"

using namespace support;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ImportCandidatesTest : public BothWaysImportTest {
 protected:
  // A composition that is known by the length of its one clip.
  void compose(aafLength_t length, std::optional<std::wstring> name = L"Cut",
               std::optional<aafUID_t> usage = std::nullopt, bool with_timecode = false) {
    if (!source_) source_ = take();
    std::vector<AafSlot> slots = {sound({clip(*source_, length)})};
    if (with_timecode) slots.push_back(timecode(0, 25, kAAFTcNonDrop, 5));
    file().composition({.name = std::move(name), .slots = std::move(slots), .usage = usage});
  }
  [[nodiscard]] std::vector<std::int64_t> lengths() const {
    std::vector<std::int64_t> found;
    for (const Edit& edit : edits())
      found.push_back(edit.length);
    return found;
  }

 private:
  std::optional<AafTake> source_;
};
INSTANTIATE_TEST_SUITE_P(, ImportCandidatesTest, both_ways(), way_name);

TEST_P(ImportCandidatesTest, OneOfNoKnownUseIsTakenUnasked) {
  compose(10);
  ASSERT_EQ(import(), 100);
  EXPECT_THAT(lengths(), ElementsAre(10));
  EXPECT_THAT(host.windows.choices, IsEmpty());
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_P(ImportCandidatesTest, TopLevelsGoBeforeAllOthers) {
  for (aafLength_t i = 1; i <= 10; ++i)
    compose(i, L"low " + std::to_wstring(i), std::nullopt, i % 2 == 0);
  compose(100, L"First", kAAFUsage_TopLevel);
  compose(200, L"Second", kAAFUsage_TopLevel);
  ASSERT_EQ(import(), 100);
  ASSERT_EQ(host.windows.choices.size(), 1U);
  const ChoiceRecord& choice = host.windows.choices[0];
  EXPECT_THAT(choice.rows, ElementsAre("First", "Second"));
  EXPECT_EQ(choice.caption, "AAF Multiple EDLs");
  EXPECT_EQ(choice.prompt,
            "This AAF contains multiple EDLs.\n\nSelect the EDL you wish to import.");
  EXPECT_EQ(choice.nothing_chosen, "Select an EDL to import from the list of EDL names");
  EXPECT_THAT(lengths(), ElementsAre(100));
}

TEST_P(ImportCandidatesTest, TheRowThatIsChosen) {
  compose(100, L"First", kAAFUsage_TopLevel);
  compose(200, L"Second", kAAFUsage_TopLevel);
  host.windows.choice_answers = {1};
  ASSERT_EQ(import(), 100);
  EXPECT_THAT(lengths(), ElementsAre(200));
}

TEST_P(ImportCandidatesTest, OneTopLevelIsTakenUnasked) {
  compose(100, L"First", kAAFUsage_SubClip);
  compose(200, L"Second", kAAFUsage_TopLevel, true);
  compose(300, L"Third", kAAFUsage_LowerLevel, true);
  ASSERT_EQ(import(), 100);
  EXPECT_THAT(host.windows.choices, IsEmpty());
  EXPECT_THAT(lengths(), ElementsAre(200));
}

TEST_P(ImportCandidatesTest, WithoutTopLevelsThoseWithTimecode) {
  compose(100, L"First", std::nullopt, true);
  compose(200, L"Second");
  compose(300, L"Third", std::nullopt, true);
  host.windows.choice_answers = {1};
  ASSERT_EQ(import(), 100);
  ASSERT_EQ(host.windows.choices.size(), 1U);
  EXPECT_THAT(host.windows.choices[0].rows, ElementsAre("First", "Third"));
  EXPECT_THAT(lengths(), ElementsAre(300));
}

TEST_P(ImportCandidatesTest, AnotherUsageIsNone) {
  compose(100, L"First", kAAFUsage_LowerLevel);
  compose(200, L"Second", kAAFUsage_LowerLevel, true);
  ASSERT_EQ(import(), 100);
  EXPECT_THAT(host.windows.choices, IsEmpty());
  EXPECT_THAT(lengths(), ElementsAre(200));
}

TEST_P(ImportCandidatesTest, WithNeitherAllAreOffered) {
  compose(100, L"First");
  compose(200, L"Second", kAAFUsage_LowerLevel);
  ASSERT_EQ(import(), 100);
  ASSERT_EQ(host.windows.choices.size(), 1U);
  EXPECT_THAT(host.windows.choices[0].rows, ElementsAre("First", "Second"));
}

TEST_P(ImportCandidatesTest, ACompositionWithoutAName) {
  compose(100, std::nullopt);
  compose(200, L"Second");
  compose(300, std::wstring(1203, L'x'));
  compose(400, std::wstring(1204, L'x'));
  ASSERT_EQ(import(), 100);
  ASSERT_EQ(host.windows.choices.size(), 1U);
  EXPECT_THAT(host.windows.choices[0].rows,
              ElementsAre("Unspecified", "Second", std::string(1203, 'x'), "Unspecified"));
}

TEST_P(ImportCandidatesTest, CancelEndsTheImport) {
  compose(100, L"First");
  compose(200, L"Second");
  host.windows.choice_answers = {-1};
  EXPECT_EQ(import(), 11);
  EXPECT_THAT(lengths(), IsEmpty());
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_P(ImportCandidatesTest, ARowThatIsNotThere) {
  compose(100, L"First");
  compose(200, L"Second");
  host.windows.choice_answers = {2};
  EXPECT_EQ(import(), 100);
  EXPECT_THAT(lengths(), IsEmpty());
  EXPECT_THAT(boxes(), ElementsAre("[24962]"));
}

TEST_P(ImportCandidatesTest, WithoutCompositionsABoxTells) {
  static_cast<void>(take());
  EXPECT_EQ(import(), 100);
  EXPECT_THAT(lengths(), IsEmpty());
  ASSERT_THAT(boxes(), ElementsAre("[24962]"));
  EXPECT_EQ(host.boxes.shown[0].message_icon, BoxIcon::information);
  EXPECT_EQ(host.boxes.shown[0].message_buttons, BoxButtons::ok);
}

TEST_P(ImportCandidatesTest, WithoutMobsTheFileIsNotRead) {
  static_cast<void>(file());
  EXPECT_EQ(import(), 11);
  EXPECT_THAT(boxes(), IsEmpty());
}

// Numbers are compared but for their last eight bytes, so the later of two such
// compositions cannot be reached.
TEST_P(ImportCandidatesTest, OfTwoWithOneNumberTheFirstIsTaken) {
  const AafTake source = take();
  aafMobID_t id = file().new_id();
  file().composition({.name = L"First", .slots = {sound({clip(source, 100)})}, .id = id});
  id.material.Data4[7] = 0x77;
  file().composition({.name = L"Second", .slots = {sound({clip(source, 200)})}, .id = id});
  host.windows.choice_answers = {1};
  ASSERT_EQ(import(), 100);
  EXPECT_THAT(lengths(), ElementsAre(100));
}

// Timecode in slots of sound, picture or events does not make a candidate.
TEST_P(ImportCandidatesTest, OnlyTimecodeInASlotOfItsOwnCounts) {
  const AafTake source = take();
  AafSlot in_sound = timecode(0, 25);
  in_sound.segment.data = kAAFDataDef_Sound;
  AafSlot in_picture = timecode(0, 25);
  in_picture.segment.data = kAAFDataDef_Picture;
  AafSlot in_events = timecode(0, 25);
  in_events.kind = AafSlot::Kind::event;
  for (const AafSlot& slot : {in_sound, in_picture, in_events})
    file().composition({.name = L"none", .slots = {slot, sound({clip(source, 10)})}});
  file().composition({.slots = {sound({clip(source, 200)}), timecode(0, 25)}});
  ASSERT_EQ(import(), 100);
  EXPECT_THAT(host.windows.choices, IsEmpty());
  EXPECT_THAT(lengths(), ElementsAre(200));
}

}  // namespace
