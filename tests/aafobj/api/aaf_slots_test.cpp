// The published table of every interface: the first word of its identifier, and the slot of its
// last operation, which moves when one is missing, added or out of place before it.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <string>

#include "aafobj/api/aaf_interfaces.h"

namespace {

// This platform keeps one more than an operation's byte offset in the table at the head of the
// member pointer.
template <typename Operation>
std::size_t slot_of(Operation operation) {
  std::ptrdiff_t head = 0;
  std::memcpy(&head, &operation, sizeof(head));
  return static_cast<std::size_t>(head - 1) / sizeof(void*);
}

struct InterfaceRow {
  const char* name;
  std::uint32_t id;
  std::uint32_t published_id;
  std::size_t slot;
  std::size_t published_slot;
};

// clang-format off
#define INTERFACE(Name, id, last, slot) {#Name, IID_##Name.Data1, id, slot_of(&Name::last), slot}
const InterfaceRow interfaces[] = {
    INTERFACE(IUnknown, 0x00000000, Release, 2),
    INTERFACE(IClassFactory, 0x00000001, LockServer, 4),
    INTERFACE(IAAFAES3PCMDescriptor, 0x2ebffde0, Initialize, 3),
    INTERFACE(IAAFAIFCDescriptor, 0xe684d774, SetSummary, 6),
    INTERFACE(IAAFAuxiliaryDescriptor, 0x197a9cb2, GetCharSetBufLen, 9),
    INTERFACE(IAAFBWFImportDescriptor, 0x480b4328, GetCueSheetBufLen, 38),
    INTERFACE(IAAFCDCIDescriptor, 0x44861703, GetPaddingBits, 19),
    INTERFACE(IAAFCachePageAllocator, 0x23630652, Deallocate, 5),
    INTERFACE(IAAFClassDef, 0xdfbd6525, CreateInstance, 16),
    INTERFACE(IAAFCodecDef, 0xad1bb856, EnumCodecFlavours, 12),
    INTERFACE(IAAFCommentMarker, 0xe684d78a, SetAnnotation, 4),
    INTERFACE(IAAFComponent, 0x38e6f8a1, RemoveKLVData, 10),
    INTERFACE(IAAFCompositionMob, 0x91920d63, SetDefaultFade, 5),
    INTERFACE(IAAFConstantValue, 0xb8ddc080, SetValue, 7),
    INTERFACE(IAAFContainerDef, 0xad1bb858, SetEssenceIsIdentified, 5),
    INTERFACE(IAAFContentStorage, 0x54d4c482, LookupEssenceData, 13),
    INTERFACE(IAAFControlPoint, 0x86192db1, SetValue, 11),
    INTERFACE(IAAFDataDef, 0xdfbd6529, DoesDataDefConvertFrom, 10),
    INTERFACE(IAAFDataEssenceDescriptor, 0x28aef97c, GetDataEssenceCoding, 5),
    INTERFACE(IAAFDefObject, 0xdfbd6527, GetAUID, 10),
    INTERFACE(IAAFDescriptiveClip, 0x2e777356, RemoveDescribedSlotID, 8),
    INTERFACE(IAAFDescriptiveFramework, 0x1cded29f, Release, 2),
    INTERFACE(IAAFDescriptiveMarker, 0xc377b78e, GetDescriptiveFramework, 8),
    INTERFACE(IAAFDescriptiveObject, 0x08a98e21, Release, 2),
    INTERFACE(IAAFDictionary, 0xb1a21398, CountPluginDefs, 47),
    INTERFACE(IAAFDigitalImageDescriptor, 0x44861701, GetImageAlignmentFactor, 23),
    INTERFACE(IAAFEdgecode, 0x38e6f8a4, GetEdgecode, 4),
    INTERFACE(IAAFEssenceAccess, 0xaed97eb0, CompleteWrite, 17),
    INTERFACE(IAAFEssenceData, 0x6a33f4e2, GetFileMobID, 11),
    INTERFACE(IAAFEssenceDescriptor, 0x94659783, GetLocators, 9),
    INTERFACE(IAAFEssenceFormat, 0x34c2dc82, GetIndexedFormatSpecifier, 6),
    INTERFACE(IAAFEssenceGroup, 0xe58a8567, RemoveChoiceAt, 10),
    INTERFACE(IAAFEvent, 0xe684d790, GetCommentBufLen, 7),
    INTERFACE(IAAFEventMobSlot, 0xe684d766, SetEditRate, 4),
    INTERFACE(IAAFFile, 0x9346acd3, GetDictionary, 9),
    INTERFACE(IAAFFileDescriptor, 0xe58a8561, GetContainerFormat, 10),
    INTERFACE(IAAFFileEncoding, 0x56904725, GetFileKind, 7),
    INTERFACE(IAAFFiller, 0x38e6f8a9, Initialize, 3),
    INTERFACE(IAAFFilmDescriptor, 0xe58a8563, SetFilmAspectRatio, 16),
    INTERFACE(IAAFFindSourceInfo, 0x9346acd1, GetEditRate, 6),
    INTERFACE(IAAFGPITrigger, 0xe684d78c, SetActiveState, 4),
    INTERFACE(IAAFGetFileBits, 0x3cc80282, GetSize, 4),
    INTERFACE(IAAFHeader, 0xb1a21382, GetContentStorage, 24),
    INTERFACE(IAAFIdentification, 0xb1a2137e, GetGenerationID, 17),
    INTERFACE(IAAFImportDescriptor, 0x2caa17df, Initialize, 3),
    INTERFACE(IAAFInterpolationDef, 0x293600a3, Initialize, 3),
    INTERFACE(IAAFKLVData, 0x46114414, SetValue, 7),
    INTERFACE(IAAFKLVDataDefinition, 0xf6af8700, SetKLVDataType, 9),
    INTERFACE(IAAFLocator, 0xd4f89061, GetPathBufLen, 5),
    INTERFACE(IAAFMasterMob, 0xb1a21372, CountChannels, 16),
    INTERFACE(IAAFMetaDefinition, 0xcee32174, GetDescriptionBufLen, 10),
    INTERFACE(IAAFMob, 0xb1a21374, RemoveKLVData, 33),
    INTERFACE(IAAFMobSlot, 0xb1a21376, SetSlotID, 12),
    INTERFACE(IAAFMPEGVideoDescriptor, 0xf2768aac, GetProfileAndLevel, 23),
    INTERFACE(IAAFMultipleDescriptor, 0xdabf53cf, GetFileDescriptors, 10),
    INTERFACE(IAAFNestedScope, 0xe44be451, GetSegments, 9),
    INTERFACE(IAAFNetworkLocator, 0x2c1097b2, Initialize, 3),
    INTERFACE(IAAFObject, 0xb1a213ab, IsGenerationTracked, 16),
    INTERFACE(IAAFOperationDef, 0x14035d91, LookupParameterDef, 23),
    INTERFACE(IAAFOperationGroup, 0x3ae3ba82, RemoveInputSegmentAt, 21),
    INTERFACE(IAAFPCMDescriptor, 0xf17d58d8, ReadPeakEnvelopeData, 33),
    INTERFACE(IAAFParameter, 0x9c568a81, GetTypeDefinition, 4),
    INTERFACE(IAAFParameterDef, 0x20045fa1, GetDisplayUnitsBufLen, 7),
    INTERFACE(IAAFPhysicalDescriptor, 0xe3a1234e, Release, 2),
    INTERFACE(IAAFPlainEssenceData, 0x3bde74ff, GetFileMobID, 16),
    INTERFACE(IAAFPlainStreamData, 0x86f9aaff, AppendElements, 16),
    INTERFACE(IAAFPluginDef, 0xad1bb854, GetDefinitionObjectID, 47),
    INTERFACE(IAAFPluginManager, 0xad1bb85c, CreateInstance, 8),
    INTERFACE(IAAFProperty, 0x83057d74, GetValue, 4),
    INTERFACE(IAAFPropertyDef, 0xdfbd6521, GetDescriptionBufLen, 10),
    INTERFACE(IAAFPropertyValue, 0x83057d72, IsDefinedType, 4),
    INTERFACE(IAAFPulldown, 0x92b88031, SetPhaseFrame, 10),
    INTERFACE(IAAFRGBADescriptor, 0xe684d772, GetPaletteLayout, 11),
    INTERFACE(IAAFRandomFile, 0x3cc80284, SetFileBits, 6),
    INTERFACE(IAAFRandomRawStorage, 0xb1341782, SetExtent, 8),
    INTERFACE(IAAFRawStorage, 0xf45fa9e1, Synchronize, 7),
    INTERFACE(IAAFRIFFChunk, 0x49b6de18, GetLength, 10),
    INTERFACE(IAAFRecordingDescriptor, 0xa6542226, Initialize, 3),
    INTERFACE(IAAFScopeReference, 0xe44be453, GetRelativeSlot, 6),
    INTERFACE(IAAFSegment, 0x7a2f0570, SegmentTCToOffset, 4),
    INTERFACE(IAAFSelector, 0xe684d788, RemoveAlternateSegment, 8),
    INTERFACE(IAAFSequence, 0x66e855f0, GetComponents, 10),
    INTERFACE(IAAFSetFileBits, 0x6d950762, SetSize, 4),
    INTERFACE(IAAFSoundDescriptor, 0xddc8931e, GetQuantizationBits, 18),
    INTERFACE(IAAFSourceClip, 0x38e6f8a7, SetSourceReference, 8),
    INTERFACE(IAAFSourceMob, 0xb1a2137c, AddPulldownRef, 12),
    INTERFACE(IAAFSourceReference, 0x92b88033, SetSourceMobSlotID, 6),
    INTERFACE(IAAFStaticMobSlot, 0xe684d764, Release, 2),
    INTERFACE(IAAFTIFFDescriptor, 0xe684d76c, SetSummary, 15),
    INTERFACE(IAAFTaggedValue, 0xe684d762, SetValue, 9),
    INTERFACE(IAAFTaggedValueDefinition, 0xc358428a, RemoveParentProperty, 7),
    INTERFACE(IAAFTapeDescriptor, 0xe58a8569, GetTapeLength, 17),
    INTERFACE(IAAFTextLocator, 0xe684d768, GetNameBufLen, 6),
    INTERFACE(IAAFTimecode, 0x92b88035, SetTimecode, 5),
    INTERFACE(IAAFTimecodeStream, 0x7b007bf2, SetSource, 15),
    INTERFACE(IAAFTimecodeStream12M, 0xebf5edb2, Release, 2),
    INTERFACE(IAAFTimelineMobSlot, 0xb1a21378, SetOrigin, 7),
    INTERFACE(IAAFTransition, 0xe3f38312, SetOperationGroup, 7),
    INTERFACE(IAAFTypeDef, 0xdfbd6523, RawAccessType, 4),
    INTERFACE(IAAFTypeDefCharacter, 0xfe717caa, SetCharacter, 5),
    INTERFACE(IAAFTypeDefEnum, 0x307e9e64, RegisterSize, 16),
    INTERFACE(IAAFTypeDefExtEnum, 0xa5456f01, AppendElement, 15),
    INTERFACE(IAAFTypeDefFixedArray, 0xc3274646, GetElements, 12),
    INTERFACE(IAAFTypeDefIndirect, 0xfe717ca8, GetActualData, 8),
    INTERFACE(IAAFTypeDefInt, 0x809c8ca2, IsSigned, 8),
    INTERFACE(IAAFTypeDefObjectRef, 0xc3274644, SetObject, 6),
    INTERFACE(IAAFTypeDefOpaque, 0xfe717cac, CreateValueFromHandle, 7),
    INTERFACE(IAAFTypeDefRecord, 0x809c8ca6, RegisterMembers, 14),
    INTERFACE(IAAFTypeDefRename, 0x307e9e6a, CreateValue, 6),
    INTERFACE(IAAFTypeDefSet, 0x381e1f22, GetElements, 12),
    INTERFACE(IAAFTypeDefStream, 0x307e9e6e, AppendElements, 16),
    INTERFACE(IAAFTypeDefString, 0x307e9e68, GetElements, 9),
    INTERFACE(IAAFTypeDefStrongObjRef, 0x381e1f26, Initialize, 3),
    INTERFACE(IAAFTypeDefVariableArray, 0x307e9e66, GetElements, 14),
    INTERFACE(IAAFTypeDefWeakObjRef, 0x381e1f24, Initialize, 3),
    INTERFACE(IAAFVaryingValue, 0x91920d60, GetInterpolatedValue, 11),
    INTERFACE(IAAFWAVEDescriptor, 0x4c2e1692, SetSummary, 6),
    INTERFACE(IEnumAAFClassDefs, 0xb1a2138e, Clone, 7),
    INTERFACE(IEnumAAFCodecDefs, 0x3b2c9ad4, Clone, 7),
    INTERFACE(IEnumAAFCodecFlavours, 0xab4d9f12, Clone, 7),
    INTERFACE(IEnumAAFComponents, 0xb1a21394, Clone, 7),
    INTERFACE(IEnumAAFContainerDefs, 0x3b2c9ad2, Clone, 7),
    INTERFACE(IEnumAAFControlPoints, 0xb1a2139c, Clone, 7),
    INTERFACE(IEnumAAFDataDefs, 0xd8000382, Clone, 7),
    INTERFACE(IEnumAAFEssenceData, 0xb1a21392, Clone, 7),
    INTERFACE(IEnumAAFFileDescriptors, 0xfd4b6bc0, Clone, 7),
    INTERFACE(IEnumAAFFileEncodings, 0x6173c2cf, Clone, 7),
    INTERFACE(IEnumAAFIdentifications, 0xb1a21384, Clone, 7),
    INTERFACE(IEnumAAFInterpolationDefs, 0x293600a5, Clone, 7),
    INTERFACE(IEnumAAFKLVData, 0x46114416, Clone, 7),
    INTERFACE(IEnumAAFKLVDataDefs, 0x2a368c5c, Clone, 7),
    INTERFACE(IEnumAAFLoadedPlugins, 0xab4d9f14, Clone, 7),
    INTERFACE(IEnumAAFLocators, 0xb1a2139e, Clone, 7),
    INTERFACE(IEnumAAFMobSlots, 0xb1a21388, Clone, 7),
    INTERFACE(IEnumAAFMobs, 0xb1a21386, Clone, 7),
    INTERFACE(IEnumAAFOperationDefs, 0x92b88021, Clone, 7),
    INTERFACE(IEnumAAFParameterDefs, 0xb1a213a4, Clone, 7),
    INTERFACE(IEnumAAFParameters, 0x7227261e, Clone, 7),
    INTERFACE(IEnumAAFPluginDefs, 0xad1bb85f, Clone, 7),
    INTERFACE(IEnumAAFPluginLocators, 0xad1bb861, Clone, 7),
    INTERFACE(IEnumAAFProperties, 0xbe316db2, Clone, 7),
    INTERFACE(IEnumAAFPropertyDefs, 0x245343c1, Clone, 7),
    INTERFACE(IEnumAAFPropertyValues, 0x809c8caa, Clone, 7),
    INTERFACE(IEnumAAFRIFFChunks, 0x54716785, Clone, 7),
    INTERFACE(IEnumAAFSegments, 0xb1a213a2, Clone, 7),
    INTERFACE(IEnumAAFTaggedValueDefs, 0x9d1bd790, Clone, 7),
    INTERFACE(IEnumAAFTaggedValues, 0x5f7916f1, Clone, 7),
    INTERFACE(IEnumAAFTypeDefs, 0xb1a2138c, Clone, 7),
    INTERFACE(IAAFAES3PCMDescriptor2, 0x5d7d099b, SetFixedUserDataAt, 17),
    INTERFACE(IAAFCDCIDescriptor2, 0x82b83210, GetReversedByteOrder, 23),
    INTERFACE(IAAFComponent2, 0xc703e7f5, RemoveAttribute, 18),
    INTERFACE(IAAFCompositionMob2, 0x188a82c7, GetRendering, 7),
    INTERFACE(IAAFDataDef2, 0x588951c1, IsTimecodeKind, 12),
    INTERFACE(IAAFDataDef3, 0x858109c4, IsDescriptiveMetadataKind, 14),
    INTERFACE(IAAFDiagnosticOutput, 0xc9346826, PutString, 3),
    INTERFACE(IAAFDictionary2, 0x952a5c85, LookupTimecodeDataDef, 66),
    INTERFACE(IAAFDigitalImageDescriptor2, 0xf7b9d3be, GetSignalStandard, 41),
    INTERFACE(IAAFEndian, 0x6bacc0c1, GetNativeByteOrder, 4),
    INTERFACE(IAAFEssenceDataEx, 0xd919d41f, GetFileMobID, 16),
    INTERFACE(IAAFEssenceData2, 0xa4b0a376, GetPlainEssenceData, 17),
    INTERFACE(IAAFEssenceMultiAccess, 0xd815e2b4, ReadMultiSamples, 4),
    INTERFACE(IAAFEventMobSlot2, 0x15375122, SetEventSlotOrigin, 6),
    INTERFACE(IAAFFileDescriptor2, 0x38c1088b, GetLinkedSlotID, 12),
    INTERFACE(IAAFHeader2, 0x463c0ca0, RemoveDescriptiveScheme, 37),
    INTERFACE(IAAFKLVEssenceDataParameters, 0xcc2af9ae, SetEssenceElementKey, 4),
    INTERFACE(IAAFKLVStreamParameters, 0x379d9d03, SetEssenceElementKey, 4),
    INTERFACE(IAAFMasterMob2, 0xafcffd2c, CreateEventEssence, 20),
    INTERFACE(IAAFMasterMob3, 0x988af5ac, AddMasterSlotWithSequence, 21),
    INTERFACE(IAAFMasterMobEx, 0xb1a21370, ExtendMultiEssence, 4),
    INTERFACE(IAAFMob2, 0xa94fdb8b, AppendNewEventSlot, 41),
    INTERFACE(IAAFProgress, 0x8e7b0f14, ProgressCallback, 3),
    INTERFACE(IAAFRGBADescriptor2, 0x205c5aae, GetScanningDirection, 21),
    INTERFACE(IAAFSearchSource, 0x332cbdd0, SearchSource, 3),
    INTERFACE(IAAFSourceReference2, 0xeb3094c4, GetMonoSourceSlotIDsSize, 12),
    INTERFACE(IAAFStreamAccess, 0x065f5f69, WriteStream, 3),
    INTERFACE(IAAFTimelineMobSlot2, 0xdb347978, SetUserPos, 13),
    INTERFACE(IAAFTypeDefStreamEx, 0xa7a76bef, SetCallback, 3),
    INTERFACE(IAAFTypeDefStream3, 0xd1e43120, GetPlainStreamData, 18),
    INTERFACE(IAAFTypeDefVariableArrayEx, 0x7f73d4b3, InsertElement, 5),
    INTERFACE(IAAFRoot, 0x7c3712c2, InitializeExtension, 4),
};
#undef INTERFACE
// clang-format on

TEST(AafSlots, EveryTableEndsWhereItIsPublishedToEnd) {
  std::set<std::string> names;
  for (const InterfaceRow& row : interfaces) {
    EXPECT_EQ(row.id, row.published_id) << row.name;
    EXPECT_EQ(row.slot, row.published_slot) << row.name;
    names.insert(row.name);
  }
  EXPECT_EQ(names.size(), 180U);
}

}  // namespace
