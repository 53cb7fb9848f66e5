// Real files through the interfaces.
#include "tests/aafobj/objects/client.h"
#include "tests/support/aaf_samples.h"

namespace {

using client::File;
using client::Held;

struct Tally {
  std::size_t mobs = 0;
  std::size_t sound_slots = 0;
  std::size_t segments = 0;
  std::size_t sources_found = 0;
};

void visit(IAAFSegment* segment, Tally& tally);

void visit_clip(IAAFSegment* segment, Tally& tally) {
  auto clip = CLIENT_AS(IAAFSourceClip, segment);
  Held<IAAFMob> mob;
  if (clip->ResolveRef(mob.put()) < 0 || !client::answers(mob, IID_IAAFMasterMob)) return;
  aafSourceRef_t reference{};
  Held<IAAFFindSourceInfo> info;
  EXPECT_EQ(clip->GetSourceReference(&reference), 0);
  auto search = CLIENT_AS(IAAFSearchSource, mob);
  if (search->SearchSource(reference.sourceSlotID, 0, kAAFFileMob, nullptr, nullptr, info.put()) <
      0) {
    return;
  }
  Held<IAAFMob> source;
  Held<IAAFEssenceDescriptor> descriptor;
  EXPECT_EQ(info->GetMob(source.put()), 0);
  EXPECT_EQ(CLIENT_AS(IAAFSourceMob, source)->GetEssenceDescriptor(descriptor.put()), 0);
  EXPECT_TRUE(client::answers(descriptor, IID_IAAFFileDescriptor));
  ++tally.sources_found;
}

void visit_group(IAAFSegment* segment, Tally& tally) {
  auto group = CLIENT_AS(IAAFOperationGroup, segment);
  aafUInt32 inputs = 0;
  Held<IAAFSegment> input;
  EXPECT_EQ(group->CountSourceSegments(&inputs), 0);
  for (aafUInt32 i = 0; i < inputs; ++i) {
    EXPECT_EQ(group->GetInputSegmentAt(i, input.put()), 0);
    visit(input, tally);
  }
}

void visit(IAAFSegment* segment, Tally& tally) {
  ++tally.segments;
  if (client::answers(segment, IID_IAAFSourceClip)) visit_clip(segment, tally);
  if (client::answers(segment, IID_IAAFOperationGroup)) visit_group(segment, tally);
  if (!client::answers(segment, IID_IAAFSequence)) return;
  Held<IEnumAAFComponents> components;
  Held<IAAFComponent> component;
  EXPECT_EQ(CLIENT_AS(IAAFSequence, segment)->GetComponents(components.put()), 0);
  while (components->NextOne(component.put()) == 0) {
    if (client::answers(component, IID_IAAFSegment)) {
      visit(CLIENT_AS(IAAFSegment, component), tally);
    }
  }
}

Tally tally_of(const std::filesystem::path& path) {
  Tally tally;
  File file = client::open_file(path.wstring());
  for (const auto& mob : client::mobs_of(file.header)) {
    ++tally.mobs;
    Held<IEnumAAFMobSlots> slots;
    Held<IAAFMobSlot> slot;
    EXPECT_EQ(mob->GetSlots(slots.put()), 0);
    while (slots->NextOne(slot.put()) == 0) {
      Held<IAAFDataDef> data_def;
      Held<IAAFSegment> segment;
      aafBoolean_t is_sound = kAAFFalse;
      EXPECT_EQ(slot->GetDataDef(data_def.put()), 0);
      EXPECT_EQ(data_def->IsSoundKind(&is_sound), 0);
      if (is_sound == kAAFTrue) ++tally.sound_slots;
      EXPECT_EQ(slot->GetSegment(segment.put()), 0);
      visit(segment, tally);
    }
  }
  return tally;
}

TEST(SampleClients, EveryFileIsWalked) {
  const auto paths = support::aaf_samples();
  if (paths.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  std::size_t found = 0;
  for (const auto& path : paths) {
    SCOPED_TRACE(path);
    const Tally tally = tally_of(path);
    EXPECT_EQ(tally.mobs == 0, path.stem() == "empty");
    EXPECT_GE(tally.segments, tally.mobs == 0 ? 0u : 1u);
    found += tally.sources_found;
  }
  EXPECT_GT(found, 100u);
}

}  // namespace
