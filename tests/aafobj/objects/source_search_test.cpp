#include "tests/aafobj/objects/client.h"

namespace {

using client::File;
using client::Held;

// Mobs that refer to each other by slot 1 of each.
class Chain : public ::testing::Test {
 protected:
  Held<IAAFMob> mob(const aafUID_t& cls) {
    auto made = client::create<IAAFMob>(file.dictionary, cls, IID_IAAFMob);
    EXPECT_EQ(file.header->AddMob(made), 0);
    return made;
  }

  Held<IAAFMob> source(const aafUID_t& descriptor_class) {
    auto made = mob(AUID_AAFSourceMob);
    auto descriptor = client::create<IAAFEssenceDescriptor>(file.dictionary, descriptor_class,
                                                            IID_IAAFEssenceDescriptor);
    EXPECT_EQ(CLIENT_AS(IAAFSourceMob, made)->SetEssenceDescriptor(descriptor), 0);
    return made;
  }

  Held<IAAFSegment> clip(IAAFMob* target, aafPosition_t start, aafLength_t length) {
    aafSourceRef_t reference{};
    if (target) {
      EXPECT_EQ(target->GetMobID(&reference.sourceID), 0);
      reference.sourceSlotID = 1;
      reference.startTime = start;
    }
    auto made = CLIENT_CREATE(file.dictionary, SourceClip);
    auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
    EXPECT_EQ(made->Initialize(sound, length, reference), 0);
    return CLIENT_AS(IAAFSegment, made);
  }

  void slot(IAAFMob* owner, IAAFSegment* segment, aafRational_t rate, aafPosition_t origin = 0) {
    Held<IAAFTimelineMobSlot> made;
    EXPECT_EQ(owner->AppendNewTimelineSlot(rate, segment, 1, L"s", origin, made.put()), 0);
  }

  HRESULT search(IAAFMob* from, aafPosition_t offset, aafMobKind_t kind) {
    return CLIENT_AS(IAAFSearchSource, from)
        ->SearchSource(1, offset, kind, nullptr, nullptr, found.put());
  }

  Held<IAAFMob> found_mob() {
    Held<IAAFMob> result;
    EXPECT_EQ(found->GetMob(result.put()), 0);
    return result;
  }

  aafPosition_t found_position() {
    aafSourceRef_t reference{};
    EXPECT_EQ(found->GetSourceReference(&reference), 0);
    return reference.startTime;
  }

  File file = client::transient_file();
  Held<IAAFFindSourceInfo> found;
};

TEST_F(Chain, LeadsToFileAndTape) {
  auto tape = source(AUID_AAFTapeDescriptor);
  slot(tape, clip(nullptr, 0, 0), {25, 1});
  auto sound_file = source(AUID_AAFWAVEDescriptor);
  slot(sound_file, clip(tape, 250, 48000), {48000, 1});
  auto master = mob(AUID_AAFMasterMob);
  slot(master, clip(sound_file, 100, 900), {48000, 1});

  ASSERT_EQ(search(master, 0, kAAFFileMob), 0);
  EXPECT_EQ(found_mob().get(), sound_file.get());
  EXPECT_EQ(found_position(), 100);
  aafLength_t length = 0;
  aafRational_t rate{};
  EXPECT_EQ(found->GetLength(&length), 0);
  EXPECT_EQ(length, 900);
  EXPECT_EQ(found->GetEditRate(&rate), 0);
  EXPECT_EQ(rate.numerator, 48000);

  ASSERT_EQ(search(master, 0, kAAFTapeMob), 0);
  EXPECT_EQ(found_mob().get(), tape.get());
  // 100 samples into the file: 250 and 100 at 48000 are 350 units, which are none of 25.
  EXPECT_EQ(found_position(), 0);
  EXPECT_EQ(found->GetEditRate(&rate), 0);
  EXPECT_EQ(rate.numerator, 25);

  ASSERT_EQ(search(master, 50, kAAFFileMob), 0);
  EXPECT_EQ(found_position(), 150);
  EXPECT_EQ(found->GetLength(&length), 0);
  EXPECT_EQ(length, 850);
  EXPECT_EQ(search(master, 0, kAAFFilmMob), AAFRESULT_TRAVERSAL_NOT_POSS);
  EXPECT_EQ(CLIENT_AS(IAAFSearchSource, master)
                ->SearchSource(9, 0, kAAFFileMob, nullptr, nullptr, found.put()),
            AAFRESULT_SLOT_NOT_FOUND);
}

TEST_F(Chain, TheStartIsNeverTheAnswer) {
  auto sound_file = source(AUID_AAFWAVEDescriptor);
  slot(sound_file, clip(nullptr, 0, 100), {48000, 1});
  EXPECT_EQ(search(sound_file, 0, kAAFFileMob), AAFRESULT_TRAVERSAL_NOT_POSS);
}

TEST_F(Chain, ImportedSourcesAreNeitherFileNorTape) {
  auto import = source(AUID_AAFImportDescriptor);
  slot(import, clip(nullptr, 0, 100), {48000, 1});
  auto master = mob(AUID_AAFMasterMob);
  slot(master, clip(import, 0, 100), {48000, 1});
  EXPECT_EQ(search(master, 0, kAAFFileMob), AAFRESULT_TRAVERSAL_NOT_POSS);
  EXPECT_EQ(search(master, 0, kAAFTapeMob), AAFRESULT_TRAVERSAL_NOT_POSS);
  EXPECT_EQ(search(master, 0, kAAFPhysicalMob), 0);
}

TEST_F(Chain, GoesThroughSequences) {
  auto first = source(AUID_AAFWAVEDescriptor);
  slot(first, clip(nullptr, 0, 1000), {48000, 1});
  auto second = source(AUID_AAFAIFCDescriptor);
  slot(second, clip(nullptr, 0, 1000), {48000, 1});
  auto sequence = CLIENT_CREATE(file.dictionary, Sequence);
  ASSERT_EQ(sequence->Initialize(client::data_def(file.dictionary, kAAFDataDef_Sound)), 0);
  ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, clip(first, 10, 100))), 0);
  ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, clip(second, 20, 50))), 0);
  auto master = mob(AUID_AAFMasterMob);
  slot(master, CLIENT_AS(IAAFSegment, sequence), {48000, 1});
  ASSERT_EQ(search(master, 99, kAAFFileMob), 0);
  EXPECT_EQ(found_mob().get(), first.get());
  EXPECT_EQ(found_position(), 109);
  ASSERT_EQ(search(master, 100, kAAFFileMob), 0);
  EXPECT_EQ(found_mob().get(), second.get());
  EXPECT_EQ(found_position(), 20);
  EXPECT_EQ(search(master, 150, kAAFFileMob), AAFRESULT_TRAVERSAL_NOT_POSS);
}

TEST_F(Chain, TakesTheFirstChoiceOfAGroup) {
  auto sound_file = source(AUID_AAFWAVEDescriptor);
  slot(sound_file, clip(nullptr, 0, 1000), {48000, 1});
  auto group =
      client::create<IAAFEssenceGroup>(file.dictionary, AUID_AAFEssenceGroup, IID_IAAFEssenceGroup);
  ASSERT_EQ(group->AppendChoice(clip(sound_file, 5, 100)), 0);
  auto master = mob(AUID_AAFMasterMob);
  slot(master, CLIENT_AS(IAAFSegment, group), {48000, 1});
  ASSERT_EQ(search(master, 0, kAAFFileMob), 0);
  EXPECT_EQ(found_position(), 5);
}

TEST_F(Chain, AddsTheOriginOfTheSlot) {
  auto sound_file = source(AUID_AAFWAVEDescriptor);
  slot(sound_file, clip(nullptr, 0, 1000), {48000, 1});
  auto master = mob(AUID_AAFMasterMob);
  slot(master, clip(sound_file, 5, 100), {48000, 1}, 7);
  ASSERT_EQ(search(master, 1, kAAFFileMob), 0);
  EXPECT_EQ(found_position(), 13);
}

TEST_F(Chain, ARingComesToAnEnd) {
  auto one = mob(AUID_AAFMasterMob);
  auto two = mob(AUID_AAFMasterMob);
  slot(one, clip(two, 0, 100), {48000, 1});
  slot(two, clip(one, 0, 100), {48000, 1});
  EXPECT_EQ(search(one, 0, kAAFFileMob), AAFRESULT_TRAVERSAL_NOT_POSS);
}

TEST_F(Chain, AMissingMobIsTold) {
  auto sound_file = source(AUID_AAFWAVEDescriptor);
  auto master = mob(AUID_AAFMasterMob);
  slot(master, clip(sound_file, 0, 100), {48000, 1});
  EXPECT_EQ(search(master, 0, kAAFFileMob), AAFRESULT_SLOT_NOT_FOUND);
  ASSERT_EQ(file.header->RemoveMob(sound_file), 0);
  EXPECT_EQ(search(master, 0, kAAFFileMob), AAFRESULT_MOB_NOT_FOUND);
}

}  // namespace
