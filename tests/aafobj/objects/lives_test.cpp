// What lives in the library, counted: nothing before the first call and after the last
// reference, whatever went wrong in between.
#include <algorithm>
#include <fstream>
#include <random>

#include "aafobj/objects/counted_life.h"
#include "tests/aafobj/objects/client.h"
#include "tests/support/aaf_samples.h"
#include "tests/support/counting_tree.h"

namespace {

using aafobj::CountedLife;
using client::File;
using client::Held;
using client::TemporaryFolder;
using support::CountingTree;

// A mob with a slot, and a take of 1000 samples in the file.
void fill(File& file) {
  Held<IAAFEssenceAccess> access;
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  auto master = CLIENT_AS(IAAFMasterMob, mob);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  ASSERT_EQ(file.header->AddMob(mob), 0);
  ASSERT_EQ(
      master->CreateEssence(1, sound, kAAFCodecDef_WAVE, {48000, 1}, {48000, 1},
                            kAAFCompressionDisable, nullptr, kAAFContainerDef_AAF, access.put()),
      0);
  std::vector<aafUInt8> bytes(1000);
  aafUInt32 samples = 0;
  aafUInt32 written = 0;
  EXPECT_EQ(access->WriteSamples(1000, 1000, bytes.data(), &samples, &written), 0);
  EXPECT_EQ(access->CompleteWrite(), 0);
}

void make_file(const std::wstring& path) {
  File file = client::new_file(path);
  fill(file);
  file.save_and_close();
}

// All that reading offers, for whatever the bytes are. True when they could be opened.
bool walk(const std::wstring& path, CountingTree& sink) {
  Held<IAAFFile> file;
  if (AAFFileOpenExistingRead(path.c_str(), 0, file.put()) < 0) return false;
  static_cast<void>(aaf::tell_tree_of(*file.get(), sink));
  Held<IAAFHeader> header;
  Held<IEnumAAFEssenceData> all;
  Held<IAAFEssenceData> data;
  if (file->GetHeader(header.put()) == 0 && header->EnumEssenceData(all.put()) == 0) {
    std::vector<aafUInt8> piece(4096);
    aafUInt32 read = 0;
    while (all->NextOne(data.put()) == 0) {
      while (data->Read(4096, piece.data(), &read) == 0 && read > 0) {
      }
    }
  }
  static_cast<void>(file->Close());
  return true;
}

class LivesTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(CountedLife::number(), 0); }
  void TearDown() override { EXPECT_EQ(CountedLife::number(), 0); }
  TemporaryFolder folder;
};

TEST_F(LivesTest, WhatIsHeldIsCounted) {
  File file = client::transient_file();
  // The file's own part and its three interface objects.
  EXPECT_EQ(CountedLife::number(), 4);
  file.dictionary.reset();
  EXPECT_EQ(CountedLife::number(), 3);
  // An object keeps its file alive, closed or not.
  file.file.reset();
  EXPECT_EQ(CountedLife::number(), 2);
  auto again = CLIENT_AS(IAAFHeader, file.header);
  EXPECT_EQ(CountedLife::number(), 2) << "an object has one life, however many references";
  file.header.reset();
  EXPECT_EQ(CountedLife::number(), 2);
  again.reset();
  EXPECT_EQ(CountedLife::number(), 0);
}

TEST_F(LivesTest, MadeAndWalked) {
  make_file(folder.path("a.aaf"));
  EXPECT_EQ(CountedLife::number(), 0);
  CountingTree sink;
  EXPECT_TRUE(walk(folder.path("a.aaf"), sink));
  EXPECT_EQ(sink.faults, 0U);
  EXPECT_GT(sink.objects, 5U);
  EXPECT_EQ(CountedLife::number(), 0);
}

TEST_F(LivesTest, AbandonedWithoutSavingOrClosing) {
  {
    File file = client::new_file(folder.path("a.aaf"));
    fill(file);
  }
  EXPECT_EQ(CountedLife::number(), 0);
  {
    // Made, and put nowhere.
    File file = client::transient_file();
    auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    auto clip = CLIENT_CREATE(file.dictionary, SourceClip);
  }
  EXPECT_EQ(CountedLife::number(), 0);
}

TEST_F(LivesTest, FailedOpens) {
  Held<IAAFFile> file;
  aafProductIdentification_t who = client::product();
  const std::wstring missing = folder.path("missing.aaf");
  EXPECT_LT(AAFFileOpenExistingRead(missing.c_str(), 0, file.put()), 0);
  EXPECT_LT(AAFFileOpenExistingModify(missing.c_str(), 0, &who, file.put()), 0);
  std::ofstream(folder.file("text.aaf")) << "TITLE: NOT AN AAF\n";
  const std::wstring text = folder.path("text.aaf");
  EXPECT_LT(AAFFileOpenExistingRead(text.c_str(), 0, file.put()), 0);
  EXPECT_LT(AAFFileOpenExistingModify(text.c_str(), 0, &who, file.put()), 0);
  EXPECT_LT(AAFFileOpenNewModify(text.c_str(), 0, &who, file.put()), 0);
  const std::wstring nowhere = folder.path("no/such/folder.aaf");
  EXPECT_LT(AAFFileOpenNewModify(nowhere.c_str(), 0, &who, file.put()), 0);
  EXPECT_EQ(CountedLife::number(), 0);
}

TEST_F(LivesTest, FailedRequests) {
  File file = client::transient_file();
  const long before = CountedLife::number();
  Held<IUnknown> unknown;
  Held<IAAFMob> mob;
  Held<IAAFDataDef> kind;
  EXPECT_LT(file.dictionary->CreateInstance(AUID_AAFMob, IID_IAAFMob, unknown.put()), 0);
  EXPECT_LT(file.dictionary->CreateInstance({1, 2, 3, {}}, IID_IAAFMob, unknown.put()), 0);
  EXPECT_LT(file.dictionary->CreateInstance(AUID_AAFSequence, IID_IAAFMob, unknown.put()), 0);
  EXPECT_LT(file.dictionary->LookupDataDef({1, 2, 3, {}}, kind.put()), 0);
  EXPECT_LT(file.header->LookupMob({}, mob.put()), 0);
  EXPECT_LT(file.header->QueryInterface(IID_IAAFMob, reinterpret_cast<void**>(mob.put())), 0);
  auto master = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  Held<IAAFEssenceAccess> access;
  EXPECT_LT(
      CLIENT_AS(IAAFMasterMob, master)
          ->CreateEssence(1, sound, {1, 2, 3, {}}, {48000, 1}, {48000, 1}, kAAFCompressionDisable,
                          nullptr, kAAFContainerDef_AAF, access.put()),
      0);
  sound.reset();
  master.reset();
  EXPECT_EQ(CountedLife::number(), before);
}

// One piece after the other is overwritten, and the file cut to every length.
TEST_F(LivesTest, DamagedFiles) {
  make_file(folder.path("a.aaf"));
  const std::vector<unsigned char> whole = client::bytes_of(folder.file("a.aaf"));
  std::mt19937 random(1);
  int opened = 0;
  int refused = 0;
  std::size_t faults = 0;
  for (int trial = 0; trial < 150; ++trial) {
    std::vector<unsigned char> bytes = whole;
    if (trial % 3 == 0) {
      bytes.resize(random() % bytes.size());
    } else {
      // What is not of the definitions stands last.
      const std::size_t at = bytes.size() - 1 - random() % (trial % 3 == 1 ? bytes.size() : 20000);
      for (std::size_t i = at; i < std::min(at + 64, bytes.size()); ++i)
        bytes[i] = static_cast<unsigned char>(random() & 0xff);
    }
    std::ofstream(folder.file("b.aaf"), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    CountingTree sink;
    walk(folder.path("b.aaf"), sink) ? ++opened : ++refused;
    faults += sink.faults;
    ASSERT_EQ(CountedLife::number(), 0) << "trial " << trial;
  }
  EXPECT_GT(opened, 0);
  EXPECT_GT(refused, 0);
  EXPECT_GT(faults, 0U);
}

TEST_F(LivesTest, Samples) {
  const auto paths = support::aaf_samples();
  if (paths.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  for (const auto& path : paths) {
    CountingTree sink;
    EXPECT_TRUE(walk(path.wstring(), sink)) << path;
    EXPECT_EQ(sink.faults, 0U) << path;
    ASSERT_EQ(CountedLife::number(), 0) << path;
  }
}

}  // namespace
