#include <fstream>

#include "tests/aafobj/objects/client.h"

namespace {

using client::File;
using client::Held;
using client::TemporaryFolder;

struct Recording {
  Held<IAAFMob> mob;
  Held<IAAFMasterMob> master;
  Held<IAAFEssenceAccess> access;
};

Recording begin(File& file, const aafUID_t& codec, IAAFLocator* locator, const aafUID_t& container,
                aafInt32 bits, HRESULT expected = 0) {
  Recording recording;
  recording.mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  recording.master = CLIENT_AS(IAAFMasterMob, recording.mob);
  EXPECT_EQ(recording.mob->SetName(L"take"), 0);
  EXPECT_EQ(file.header->AddMob(recording.mob), 0);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  EXPECT_EQ(recording.master->CreateEssence(1, sound, codec, {48000, 1}, {48000, 1},
                                            kAAFCompressionEnable, locator, container,
                                            recording.access.put()),
            expected);
  if (expected < 0) return recording;
  Held<IAAFEssenceFormat> format;
  EXPECT_EQ(recording.access->GetEmptyFileFormat(format.put()), 0);
  EXPECT_EQ(
      format->AddFormatSpecifier(kAAFAudioSampleBits, 4, reinterpret_cast<aafDataBuffer_t>(&bits)),
      0);
  EXPECT_EQ(recording.access->PutFileFormat(format), 0);
  return recording;
}

void write(Recording& recording, std::vector<unsigned char> bytes, aafUInt32 frames) {
  aafUInt32 samples = 0;
  aafUInt32 written = 0;
  EXPECT_EQ(recording.access->WriteSamples(frames, static_cast<aafUInt32>(bytes.size()),
                                           bytes.data(), &samples, &written),
            0);
  EXPECT_EQ(samples, frames);
  EXPECT_EQ(written, bytes.size());
}

std::vector<unsigned char> read_essence(IAAFHeader* header) {
  Held<IEnumAAFEssenceData> all;
  Held<IAAFEssenceData> data;
  EXPECT_EQ(header->EnumEssenceData(all.put()), 0);
  EXPECT_EQ(all->NextOne(data.put()), 0);
  if (!data.get()) return {};
  aafLength_t size = 0;
  EXPECT_EQ(data->GetSize(&size), 0);
  std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
  aafUInt32 read = 0;
  // In two pieces.
  EXPECT_EQ(data->Read(10, bytes.data(), &read), 0);
  EXPECT_EQ(read, 10u);
  EXPECT_EQ(data->Read(static_cast<aafUInt32>(size), bytes.data() + 10, &read), 0);
  EXPECT_EQ(read, static_cast<aafUInt32>(size) - 10);
  EXPECT_EQ(data->Read(1, bytes.data(), &read), AAFRESULT_END_OF_DATA);
  EXPECT_EQ(read, 0u);
  EXPECT_EQ(data->SetPosition(0), 0);
  return bytes;
}

// Two frames of 16 bits at 48 kHz.
const std::vector<unsigned char> wave_file = {
    'R',  'I',  'F', 'F', 40,   0,    0, 0, 'W',  'A',  'V',  'E',  //
    'f',  'm',  't', ' ', 16,   0,    0, 0, 1,    0,    1,    0,    //
    0x80, 0xbb, 0,   0,   0x00, 0x77, 1, 0, 2,    0,    16,   0,    //
    'd',  'a',  't', 'a', 4,    0,    0, 0, 0x34, 0x12, 0x78, 0x56};

// Two frames of 24 bits at 48 kHz; 48000 is 0xbb80, shifted to the top, times 2^15.
const std::vector<unsigned char> aifc_file = {
    'F',  'O',  'R',  'M',  0,    0,   0,   72,  'A', 'I', 'F', 'C',                     //
    'C',  'O',  'M',  'M',  0,    0,   0,   38,  0,   1,   0,   0,   0,   2,   0,   24,  //
    0x40, 0x0e, 0xbb, 0x80, 0,    0,   0,   0,   0,   0,   'N', 'O', 'N', 'E',           //
    14,   'N',  'o',  't',  ' ',  'C', 'o', 'm', 'p', 'r', 'e', 's', 's', 'e', 'd', 0,
    'S',  'S',  'N',  'D',  0,    0,   0,   14,  0,   0,   0,   0,   0,   0,   0,   0,  //
    0x12, 0x34, 0x56, 0x78, 0x9a, 0xbc};

TEST(Essence, WaveInTheFileItself) {
  TemporaryFolder folder;
  {
    File file = client::new_file(folder.path("a.aaf"), AAF_FILE_MODE_USE_LARGE_SS_SECTORS);
    Recording recording = begin(file, kAAFCodecDef_WAVE, nullptr, kAAFContainerDef_AAF, 16);
    write(recording, {0x34, 0x12}, 1);
    write(recording, {0x78, 0x56}, 1);
    EXPECT_EQ(recording.access->CompleteWrite(), 0);
    EXPECT_EQ(recording.access->CompleteWrite(), AAFRESULT_STREAM_CLOSED);
    recording = {};
    file.save_and_close();
  }
  File file = client::open_file(folder.path("a.aaf"));
  EXPECT_EQ(read_essence(file.header), wave_file);
  const auto masters = client::mobs_of(file.header, kAAFMasterMob);
  ASSERT_EQ(masters.size(), 1u);
  Held<IAAFFindSourceInfo> found;
  ASSERT_EQ(CLIENT_AS(IAAFSearchSource, masters[0])
                ->SearchSource(1, 0, kAAFFileMob, nullptr, nullptr, found.put()),
            0);
  aafRational_t rate{};
  aafLength_t length = 0;
  EXPECT_EQ(found->GetEditRate(&rate), 0);
  EXPECT_EQ(rate.numerator, 48000);
  EXPECT_EQ(found->GetLength(&length), 0);
  EXPECT_EQ(length, 2);
  Held<IAAFMob> mob;
  Held<IAAFEssenceDescriptor> descriptor;
  ASSERT_EQ(found->GetMob(mob.put()), 0);
  ASSERT_EQ(CLIENT_AS(IAAFSourceMob, mob)->GetEssenceDescriptor(descriptor.put()), 0);
  auto wave = CLIENT_AS(IAAFWAVEDescriptor, descriptor);
  aafUInt32 size = 0;
  ASSERT_EQ(wave->GetSummaryBufferSize(&size), 0);
  ASSERT_EQ(size, 44u);
  std::vector<unsigned char> summary(size);
  ASSERT_EQ(wave->GetSummary(size, summary.data()), 0);
  EXPECT_TRUE(std::equal(summary.begin(), summary.end(), wave_file.begin()));
  auto file_descriptor = CLIENT_AS(IAAFFileDescriptor, descriptor);
  EXPECT_EQ(file_descriptor->GetLength(&length), 0);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(file_descriptor->GetSampleRate(&rate), 0);
  EXPECT_EQ(rate.numerator, 48000);
  Held<IAAFContainerDef> container;
  Held<IAAFCodecDef> codec;
  EXPECT_EQ(file_descriptor->GetContainerFormat(container.put()), 0);
  EXPECT_EQ(client::name_of(CLIENT_AS(IAAFDefObject, container).get()), L"AAF Container");
  EXPECT_EQ(file_descriptor->GetCodecDef(codec.put()), 0);
  EXPECT_EQ(client::name_of(CLIENT_AS(IAAFDefObject, codec).get()), L"WAVE Codec");
  aafUInt32 locators = 99;
  EXPECT_EQ(descriptor->CountLocators(&locators), 0);
  EXPECT_EQ(locators, 0u);
}

TEST(Essence, AifcInTheFileItself) {
  File file = client::transient_file();
  Recording recording = begin(file, kAAFCodecDef_AIFC, nullptr, kAAFContainerDef_AAF, 24);
  write(recording, {0x12, 0x34, 0x56, 0x78, 0x9a, 0xbc}, 2);
  EXPECT_EQ(recording.access->CompleteWrite(), 0);
  EXPECT_EQ(read_essence(file.header), aifc_file);
  const auto files = client::mobs_of(file.header, kAAFFileMob);
  ASSERT_EQ(files.size(), 1u);
  Held<IAAFEssenceDescriptor> descriptor;
  ASSERT_EQ(CLIENT_AS(IAAFSourceMob, files[0])->GetEssenceDescriptor(descriptor.put()), 0);
  auto aifc = CLIENT_AS(IAAFAIFCDescriptor, descriptor);
  aafUInt32 size = 0;
  ASSERT_EQ(aifc->GetSummaryBufferSize(&size), 0);
  ASSERT_EQ(size, 58u);
  std::vector<unsigned char> summary(size);
  ASSERT_EQ(aifc->GetSummary(size, summary.data()), 0);
  std::vector<unsigned char> expected(aifc_file.begin(), aifc_file.begin() + 58);
  expected[7] = 50;  // FORM counts the summary alone
  expected[25] = 0;  // and no frames
  EXPECT_EQ(summary, expected);
}

TEST(Essence, RawSamplesHaveNoHead) {
  File file = client::transient_file();
  Recording recording = begin(file, kAAFCodecDef_PCM, nullptr, kAAFContainerDef_AAF, 16);
  write(recording, std::vector<unsigned char>(20, 7), 10);
  EXPECT_EQ(recording.access->CompleteWrite(), 0);
  EXPECT_EQ(read_essence(file.header), std::vector<unsigned char>(20, 7));
  const auto files = client::mobs_of(file.header, kAAFFileMob);
  ASSERT_EQ(files.size(), 1u);
  Held<IAAFEssenceDescriptor> descriptor;
  ASSERT_EQ(CLIENT_AS(IAAFSourceMob, files[0])->GetEssenceDescriptor(descriptor.put()), 0);
  auto pcm = CLIENT_AS(IAAFPCMDescriptor, descriptor);
  aafUInt16 block = 0;
  aafUInt32 bytes = 0;
  EXPECT_EQ(pcm->GetBlockAlign(&block), 0);
  EXPECT_EQ(block, 2);
  EXPECT_EQ(pcm->GetAverageBPS(&bytes), 0);
  EXPECT_EQ(bytes, 96000u);
}

TEST(Essence, InAFileOfItsOwn) {
  TemporaryFolder folder;
  File file = client::new_file(folder.path("a.aaf"));
  auto locator = CLIENT_CREATE(file.dictionary, NetworkLocator);
  auto path = CLIENT_AS(IAAFLocator, locator);
  ASSERT_EQ(path->SetPath(L"take 1.wav"), 0);  // beside the AAF file
  Recording recording = begin(file, kAAFCodecDef_WAVE, path, kAAFContainerDef_External, 16);
  write(recording, {0x34, 0x12, 0x78, 0x56}, 2);
  ASSERT_EQ(recording.access->CompleteWrite(), 0);
  EXPECT_EQ(client::bytes_of(folder.file("take 1.wav")), wave_file);
  aafUInt32 count = 99;
  EXPECT_EQ(file.header->CountEssenceData(&count), 0);
  EXPECT_EQ(count, 0u);
  // The locator is the descriptor's now, and can still be changed.
  ASSERT_EQ(path->SetPath(L"file:///x/take%201.wav"), 0);
  const auto files = client::mobs_of(file.header, kAAFFileMob);
  ASSERT_EQ(files.size(), 1u);
  Held<IAAFEssenceDescriptor> descriptor;
  Held<IEnumAAFLocators> locators;
  Held<IAAFLocator> found;
  ASSERT_EQ(CLIENT_AS(IAAFSourceMob, files[0])->GetEssenceDescriptor(descriptor.put()), 0);
  ASSERT_EQ(descriptor->GetLocators(locators.put()), 0);
  ASSERT_EQ(locators->NextOne(found.put()), 0);
  wchar_t text[100];
  EXPECT_EQ(found->GetPath(text, sizeof(text)), 0);
  EXPECT_STREQ(text, L"file:///x/take%201.wav");
}

TEST(Essence, AFileThatExistsIsNotOverwritten) {
  TemporaryFolder folder;
  File file = client::new_file(folder.path("a.aaf"));
  std::ofstream(folder.file("there.wav")) << "mine";
  auto locator = CLIENT_CREATE(file.dictionary, NetworkLocator);
  auto path = CLIENT_AS(IAAFLocator, locator);
  const std::wstring url = L"file://localhost" + folder.path("there.wav");
  ASSERT_EQ(path->SetPath(url.c_str()), 0);
  begin(file, kAAFCodecDef_WAVE, path, kAAFContainerDef_External, 16, AAFRESULT_FILE_EXISTS);
  EXPECT_EQ(client::bytes_of(folder.file("there.wav")).size(), 4u);
  ASSERT_EQ(path->SetPath(L"no such folder/a.wav"), 0);
  begin(file, kAAFCodecDef_WAVE, path, kAAFContainerDef_External, 16, AAFRESULT_OPEN_FAILURE);
}

TEST(Essence, WhatCannotBeMadeIsRefused) {
  File file = client::transient_file();
  begin(file, kAAFCodecDef_JPEG, nullptr, kAAFContainerDef_AAF, 16, AAFRESULT_CODEC_INVALID);
  begin(file, kAAFCodecDef_WAVE, nullptr, kAAFContainerDef_External, 16, AAFRESULT_WRONG_MEDIATYPE);
  Recording recording = begin(file, kAAFCodecDef_WAVE, nullptr, kAAFContainerDef_AAF, 16);
  unsigned char bytes[4] = {};
  aafUInt32 samples = 0;
  aafUInt32 written = 0;
  IAAFEssenceAccess* access = recording.access;
  EXPECT_EQ(access->WriteSamples(0, 4, bytes, &samples, &written), AAFRESULT_INVALID_PARAM);
  EXPECT_EQ(access->WriteSamples(3, 4, bytes, &samples, &written), AAFRESULT_SMALLBUF);
  EXPECT_EQ(access->WriteSamples(1, 4, nullptr, &samples, &written), AAFRESULT_NULL_PARAM);
  Held<IAAFEssenceFormat> format;
  ASSERT_EQ(access->GetEmptyFileFormat(format.put()), 0);
  ASSERT_EQ(format->AddFormatSpecifier(kAAFPixelFormat, 4, bytes), 0);
  EXPECT_EQ(access->PutFileFormat(format), AAFRESULT_ILLEGAL_FILEFMT);
}

TEST(Essence, WithoutSamplesThereIsNoHead) {
  File file = client::transient_file();
  Recording recording = begin(file, kAAFCodecDef_WAVE, nullptr, kAAFContainerDef_AAF, 16);
  EXPECT_EQ(recording.access->CompleteWrite(), 0);
  Held<IEnumAAFEssenceData> all;
  Held<IAAFEssenceData> data;
  aafLength_t size = 99;
  ASSERT_EQ(file.header->EnumEssenceData(all.put()), 0);
  ASSERT_EQ(all->NextOne(data.put()), 0);
  EXPECT_EQ(data->GetSize(&size), 0);
  EXPECT_EQ(size, 0);
}

// In slot 7, which counts 25 edit units a second; nothing is said of the samples.
Recording begin_in_frames(File& file, const aafUID_t& codec) {
  Recording recording;
  recording.mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  recording.master = CLIENT_AS(IAAFMasterMob, recording.mob);
  EXPECT_EQ(file.header->AddMob(recording.mob), 0);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  EXPECT_EQ(
      recording.master->CreateEssence(7, sound, codec, {25, 1}, {48000, 1}, kAAFCompressionDisable,
                                      nullptr, kAAFContainerDef_AAF, recording.access.put()),
      0);
  return recording;
}

TEST(Essence, LengthsOfClipsAreInEditUnits) {
  File file = client::transient_file();
  Recording recording = begin_in_frames(file, kAAFCodecDef_WAVE);
  // 8 bits until something else is asked for.
  write(recording, std::vector<unsigned char>(4800), 4800);
  ASSERT_EQ(recording.access->CompleteWrite(), 0);
  Held<IAAFMobSlot> slot;
  Held<IAAFSegment> segment;
  aafLength_t length = 0;
  ASSERT_EQ(recording.mob->LookupSlot(7, slot.put()), 0);
  ASSERT_EQ(slot->GetSegment(segment.put()), 0);
  EXPECT_EQ(CLIENT_AS(IAAFComponent, segment)->GetLength(&length), 0);
  EXPECT_EQ(length, 2);  // 4800 of 48000 in a second are 2.5 of 25
}

// The slot with this identifier, and the clip that it holds.
struct TakenSlot {
  TakenSlot(IAAFMob* mob, aafSlotID_t id) {
    Held<IAAFSegment> segment;
    EXPECT_EQ(mob->LookupSlot(id, slot.put()), 0);
    if (!slot.get()) return;
    EXPECT_EQ(slot->GetSegment(segment.put()), 0);
    clip = CLIENT_AS(IAAFSourceClip, segment);
    EXPECT_EQ(clip->GetSourceReference(&reference), 0);
    auto timeline = CLIENT_AS(IAAFTimelineMobSlot, slot);
    EXPECT_EQ(timeline->GetEditRate(&rate), 0);
    EXPECT_EQ(timeline->GetOrigin(&origin), 0);
  }
  Held<IAAFMobSlot> slot;
  Held<IAAFSourceClip> clip;
  aafSourceRef_t reference{};
  aafRational_t rate{};
  aafPosition_t origin = 99;
};

// Mobs, slots and definitions as the published library makes them.
TEST(Essence, ObjectsAreThoseOfThePublishedLibrary) {
  File file = client::transient_file();
  Recording recording = begin_in_frames(file, kAAFCodecDef_AIFC);
  const auto files = client::mobs_of(file.header, kAAFFileMob);
  ASSERT_EQ(files.size(), 1U);
  aafUInt32 size = 0;
  EXPECT_EQ(files[0]->GetNameBufLen(&size), AAFRESULT_PROP_NOT_PRESENT);
  aafMobID_t file_id{};
  EXPECT_EQ(files[0]->GetMobID(&file_id), 0);

  const TakenSlot below(files[0], 1);
  ASSERT_NE(below.slot.get(), nullptr);
  EXPECT_EQ(client::name_of(below.slot.get()), L"Test");
  aafUInt32 number = 0;
  EXPECT_EQ(below.slot->GetPhysicalNum(&number), 0);
  EXPECT_EQ(number, 1U);
  EXPECT_EQ(below.rate.numerator, 25);
  EXPECT_EQ(below.origin, 0);
  EXPECT_TRUE(client::same(below.reference.sourceID, aafMobID_t{}));

  const TakenSlot above(recording.mob, 7);
  ASSERT_NE(above.slot.get(), nullptr);
  EXPECT_EQ(client::name_of(above.slot.get()), L"A Slot");
  EXPECT_EQ(above.rate.numerator, 25);
  EXPECT_EQ(above.origin, 0);
  EXPECT_TRUE(client::same(above.reference.sourceID, file_id));
  EXPECT_EQ(above.reference.sourceSlotID, 1U);
  EXPECT_EQ(above.reference.startTime, 0);

  Held<IAAFCodecDef> codec;
  ASSERT_EQ(file.dictionary->LookupCodecDef(kAAFCodecDef_AIFC, codec.put()), 0);
  auto definition = CLIENT_AS(IAAFDefObject, codec);
  EXPECT_EQ(client::name_of(definition.get()), L"AIFC Codec");
  wchar_t words[100];
  EXPECT_EQ(definition->GetDescription(words, sizeof(words)), 0);
  EXPECT_STREQ(words, L"Handles RIFF AIFC data.");
  aafUInt32 kinds = 0;
  EXPECT_EQ(codec->CountEssenceKinds(&kinds), 0);
  EXPECT_EQ(kinds, 2U);
  for (const aafUID_t& id : {kAAFDataDef_Sound, kAAFDataDef_LegacySound}) {
    auto kind = client::data_def(file.dictionary, id);
    aafBoolean_t is_supported = kAAFFalse;
    EXPECT_EQ(codec->IsEssenceKindSupported(kind, &is_supported), 0);
    EXPECT_EQ(is_supported, kAAFTrue);
  }
  Held<IAAFClassDef> cls;
  aafUID_t class_id{};
  ASSERT_EQ(codec->GetFileDescriptorClass(cls.put()), 0);
  EXPECT_EQ(CLIENT_AS(IAAFMetaDefinition, cls)->GetAUID(&class_id), 0);
  EXPECT_TRUE(client::same(class_id, AUID_AAFAIFCDescriptor));
  Held<IAAFContainerDef> container;
  aafBoolean_t is_identified = kAAFFalse;
  ASSERT_EQ(file.dictionary->LookupContainerDef(kAAFContainerDef_AAF, container.put()), 0);
  EXPECT_EQ(container->EssenceIsIdentified(&is_identified), 0);
  EXPECT_EQ(is_identified, kAAFTrue);
  EXPECT_EQ(CLIENT_AS(IAAFDefObject, container)->GetDescription(words, sizeof(words)), 0);
  EXPECT_STREQ(words, L"Essence is in an AAF file.");
}

}  // namespace
