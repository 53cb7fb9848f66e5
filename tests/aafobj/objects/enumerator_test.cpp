#include "tests/aafobj/objects/client.h"

namespace {

using client::File;
using client::Held;

File file_of_mobs(int count) {
  File file = client::transient_file();
  for (int i = 0; i < count; ++i) {
    auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    aafMobID_t id{};
    id.material.Data1 = static_cast<aafUInt32>(i);
    EXPECT_EQ(mob->SetMobID(id), 0);
    EXPECT_EQ(file.header->AddMob(mob), 0);
  }
  return file;
}

aafUInt32 number_of(IAAFMob* mob) {
  aafMobID_t id{};
  EXPECT_EQ(mob->GetMobID(&id), 0);
  return id.material.Data1;
}

TEST(Enumerator, HandsOutOneAfterAnother) {
  File file = file_of_mobs(3);
  Held<IEnumAAFMobs> mobs;
  ASSERT_EQ(file.header->GetMobs(nullptr, mobs.put()), 0);
  Held<IAAFMob> mob;
  for (aafUInt32 i = 0; i < 3; ++i) {
    ASSERT_EQ(mobs->NextOne(mob.put()), 0);
    EXPECT_EQ(number_of(mob), i);
  }
  EXPECT_EQ(mobs->NextOne(mob.put()), AAFRESULT_NO_MORE_OBJECTS);
  EXPECT_EQ(mobs->Reset(), 0);
  EXPECT_EQ(mobs->NextOne(mob.put()), 0);
  EXPECT_EQ(mobs->NextOne(nullptr), AAFRESULT_NULL_PARAM);
}

TEST(Enumerator, HandsOutSeveralAtOnce) {
  File file = file_of_mobs(3);
  Held<IEnumAAFMobs> mobs;
  ASSERT_EQ(file.header->GetMobs(nullptr, mobs.put()), 0);
  IAAFMob* found[4] = {};
  aafUInt32 fetched = 0;
  EXPECT_EQ(mobs->Next(2, found, &fetched), 0);
  EXPECT_EQ(fetched, 2u);
  EXPECT_EQ(mobs->Next(2, found + 2, &fetched), AAFRESULT_NO_MORE_OBJECTS);
  EXPECT_EQ(fetched, 1u);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(number_of(found[i]), static_cast<aafUInt32>(i));
    found[i]->Release();
  }
}

TEST(Enumerator, SkipsAndIsCloned) {
  File file = file_of_mobs(4);
  Held<IEnumAAFMobs> mobs;
  Held<IEnumAAFMobs> clone;
  Held<IAAFMob> mob;
  ASSERT_EQ(file.header->GetMobs(nullptr, mobs.put()), 0);
  EXPECT_EQ(mobs->Skip(2), 0);
  ASSERT_EQ(mobs->Clone(clone.put()), 0);
  EXPECT_EQ(clone->NextOne(mob.put()), 0);
  EXPECT_EQ(number_of(mob), 2u);
  EXPECT_EQ(mobs->NextOne(mob.put()), 0);
  EXPECT_EQ(number_of(mob), 2u);
  EXPECT_EQ(mobs->Skip(2), AAFRESULT_NO_MORE_OBJECTS);
  EXPECT_EQ(mobs->NextOne(mob.put()), AAFRESULT_NO_MORE_OBJECTS);
}

TEST(Enumerator, MobsComeInTheOrderOfTheirIdentifiersWhateverTheOrderOfTheirMaking) {
  File file = client::transient_file();
  for (const aafUInt8 label : std::initializer_list<aafUInt8>{9, 3, 7}) {
    auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    aafMobID_t id{};
    id.SMPTELabel[0] = label;
    id.material.Data1 = label;
    EXPECT_EQ(mob->SetMobID(id), 0);
    EXPECT_EQ(file.header->AddMob(mob), 0);
  }
  const auto mobs = client::mobs_of(file.header);
  ASSERT_EQ(mobs.size(), 3u);
  EXPECT_EQ(number_of(mobs[0]), 3u);
  EXPECT_EQ(number_of(mobs[1]), 7u);
  EXPECT_EQ(number_of(mobs[2]), 9u);
}

TEST(References, CountUpAndDown) {
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  EXPECT_EQ(mob->AddRef(), 2u);
  EXPECT_EQ(mob->Release(), 1u);
  Held<IAAFMasterMob> master = CLIENT_AS(IAAFMasterMob, mob);
  EXPECT_EQ(mob->AddRef(), 3u);
  EXPECT_EQ(master->Release(), 2u);
}

TEST(References, OneObjectIsOneWhateverTheInterface) {
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  ASSERT_EQ(file.header->AddMob(mob), 0);
  auto master = CLIENT_AS(IAAFMasterMob, mob);
  auto first = CLIENT_AS(IUnknown, mob);
  auto second = CLIENT_AS(IUnknown, master);
  EXPECT_EQ(first.get(), second.get());
  const auto mobs = client::mobs_of(file.header);
  ASSERT_EQ(mobs.size(), 1u);
  EXPECT_EQ(mobs[0].get(), mob.get());
  // The identifier that other platforms give IUnknown is answered as well.
  const IID elsewhere = {0, 0, 0, {0xc0, 0, 0, 0, 0, 0, 0, 0x46}};
  auto third = client::as<IUnknown>(mob, elsewhere);
  EXPECT_EQ(third.get(), first.get());
}

TEST(References, InterfacesFollowTheClass) {
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFCompositionMob, IID_IAAFMob);
  EXPECT_TRUE(client::answers(mob, IID_IAAFObject));
  EXPECT_TRUE(client::answers(mob, IID_IAAFCompositionMob));
  EXPECT_TRUE(client::answers(mob, IID_IAAFSearchSource));
  EXPECT_FALSE(client::answers(mob, IID_IAAFMasterMob));
  auto descriptor = client::create<IAAFEssenceDescriptor>(
      file.dictionary, AUID_AAFAES3PCMDescriptor, IID_IAAFEssenceDescriptor);
  EXPECT_TRUE(client::answers(descriptor, IID_IAAFPCMDescriptor));
  EXPECT_TRUE(client::answers(descriptor, IID_IAAFSoundDescriptor));
  EXPECT_TRUE(client::answers(descriptor, IID_IAAFFileDescriptor));
  EXPECT_FALSE(client::answers(descriptor, IID_IAAFWAVEDescriptor));
  void* out = &out;
  EXPECT_EQ(mob->QueryInterface(IID_IAAFFile, &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(mob->QueryInterface(IID_IAAFFile, nullptr), AAFRESULT_NULL_PARAM);
}

}  // namespace
