#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_entry_points.h"
#include "aafobj/api/aaf_interfaces.h"
#include "aafobj/api/aaf_result_codes.h"
#include "aafobj/api/aaf_well_known_ids.h"

namespace {

// Slot of a virtual operation: this platform keeps one more than its byte offset in the table
// at the head of the member pointer.
template <typename Operation>
std::size_t slot_of(Operation operation) {
  std::ptrdiff_t head = 0;
  std::memcpy(&head, &operation, sizeof(head));
  return static_cast<std::size_t>(head - 1) / sizeof(void*);
}

TEST(AafInterfaces, OperationsStandInTheirPublishedSlots) {
  EXPECT_EQ(slot_of(&IUnknown::QueryInterface), 0u);
  EXPECT_EQ(slot_of(&IUnknown::AddRef), 1u);
  EXPECT_EQ(slot_of(&IUnknown::Release), 2u);
  EXPECT_EQ(slot_of(&IClassFactory::LockServer), 4u);
  EXPECT_EQ(slot_of(&IAAFFile::Open), 3u);
  EXPECT_EQ(slot_of(&IAAFFile::Save), 7u);
  EXPECT_EQ(slot_of(&IAAFFile::GetDictionary), 9u);
  EXPECT_EQ(slot_of(&IAAFHeader::EnumEssenceData), 10u);
  EXPECT_EQ(slot_of(&IAAFHeader::GetContentStorage), 24u);
  EXPECT_EQ(slot_of(&IAAFClassDef::CreateInstance), 16u);
  EXPECT_EQ(slot_of(&IAAFDictionary::CreateInstance), 3u);
  EXPECT_EQ(slot_of(&IAAFDictionary::CountPluginDefs), 47u);
  EXPECT_EQ(slot_of(&IAAFDictionary2::LookupTimecodeDataDef), 66u);
  EXPECT_EQ(slot_of(&IAAFMob::GetMobID), 3u);
  EXPECT_EQ(slot_of(&IAAFMob::RemoveKLVData), 33u);
  EXPECT_EQ(slot_of(&IAAFMasterMob::CreateEssence), 12u);
  EXPECT_EQ(slot_of(&IAAFSourceClip::ResolveRef), 5u);
  EXPECT_EQ(slot_of(&IAAFSearchSource::SearchSource), 3u);
  EXPECT_EQ(slot_of(&IAAFPCMDescriptor::ReadPeakEnvelopeData), 33u);
  EXPECT_EQ(slot_of(&IAAFEssenceAccess::CompleteWrite), 17u);
  EXPECT_EQ(slot_of(&IEnumAAFMobs::Clone), 7u);
}

TEST(AafInterfaces, ParametersHaveTheirPublishedTypes) {
  static_assert(std::is_same_v<decltype(&IAAFSourceClip::Initialize),
                               HRESULT (IAAFSourceClip::*)(IAAFDataDef*, const aafLength_t&,
                                                           aafSourceRef_t)>);
  static_assert(
      std::is_same_v<decltype(&IAAFMob::GetName), HRESULT (IAAFMob::*)(wchar_t*, unsigned int)>);
  static_assert(
      std::is_same_v<decltype(&IUnknown::QueryInterface), int (IUnknown::*)(const GUID&, void**)>);
  static_assert(std::is_same_v<decltype(&AAFFileOpenExistingRead),
                               int (*)(const wchar_t*, unsigned int, IAAFFile**)>);
}

TEST(AafInterfaces, IdentifiersHaveTheirPublishedValues) {
  const GUID pcm = {0xf17d58d8, 0x5107, 0x47e4, {0x9a, 0xba, 0x83, 0x29, 0xfc, 0x1b, 0x2c, 0x84}};
  EXPECT_EQ(std::memcmp(&IID_IAAFPCMDescriptor, &pcm, sizeof(pcm)), 0);
  const GUID file = {0x9346acd3, 0x2713, 0x11d2, {0x80, 0x35, 0x00, 0x60, 0x08, 0x14, 0x3e, 0x6f}};
  EXPECT_EQ(std::memcmp(&IID_IAAFFile, &file, sizeof(file)), 0);
  EXPECT_EQ(IID_IUnknown.Data1, 0u);
  EXPECT_EQ(IID_IClassFactory.Data4[7], 0x46);
  EXPECT_EQ(kAAFDataDef_Sound.Data1, 0x01030202u);
  EXPECT_EQ(kAAFDataDef_Sound.Data2, 0x0200u);
  EXPECT_EQ(kAAFUsage_TopLevel.Data3, 0x0700u);
  EXPECT_EQ(std::memcmp(&AUID_AAFDataDef, &AUID_AAFDataDefinition, sizeof(aafUID_t)), 0);
}

TEST(AafInterfaces, ResultCodesAreNegativeWhenTheyFail) {
  EXPECT_EQ(static_cast<unsigned>(AAFRESULT_NO_MORE_OBJECTS), 0x80120111u);
  EXPECT_EQ(static_cast<unsigned>(AAFRESULT_PROP_NOT_PRESENT), 0x801200cfu);
  EXPECT_EQ(static_cast<unsigned>(AAFRESULT_FILE_EXISTS), 0x80120028u);
  EXPECT_EQ(static_cast<unsigned>(AAFRESULT_NOT_IMPLEMENTED), 0x80004001u);
  EXPECT_EQ(static_cast<unsigned>(E_NOINTERFACE), 0x80000004u);
  EXPECT_LT(AAFRESULT_NULL_PARAM, 0);
  EXPECT_EQ(AAFRESULT_SUCCESS, 0);
}

TEST(AafInterfaces, UnionsOfSearchCriteriaBeginAtTheirOffsets) {
  aafSearchCrit_t criterion{};
  criterion.searchTag = kAAFByMobKind;
  criterion.tags.mobKind = kAAFCompMob;
  aafInt32 words[3];
  std::memcpy(words, &criterion, sizeof(words));
  EXPECT_EQ(words[0], 2);
  EXPECT_EQ(words[2], kAAFCompMob);
}

}  // namespace
