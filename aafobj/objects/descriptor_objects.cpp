#include "aafobj/objects/descriptor_objects.h"

#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/not_offered_descriptor.h"

namespace aafobj {
namespace {

class EssenceDescriptor : public Adds<AafObject, IAAFEssenceDescriptor> {
 public:
  using Adds::Adds;

  HRESULT CountLocators(aafUInt32* pResult) override {
    return count(pid::EssenceDescriptor_Locator, pResult);
  }
  HRESULT AppendLocator(IAAFLocator* pLocator) override {
    return append(pid::EssenceDescriptor_Locator, pLocator);
  }
  HRESULT PrependLocator(IAAFLocator* pLocator) override {
    return prepend(pid::EssenceDescriptor_Locator, pLocator);
  }
  HRESULT InsertLocatorAt(aafUInt32 index, IAAFLocator* pLocator) override {
    return insert_at(pid::EssenceDescriptor_Locator, index, pLocator);
  }
  HRESULT GetLocatorAt(aafUInt32 index, IAAFLocator** ppLocator) override {
    return element_at(pid::EssenceDescriptor_Locator, index, ppLocator);
  }
  HRESULT RemoveLocatorAt(aafUInt32 index) override {
    return remove_at(pid::EssenceDescriptor_Locator, index);
  }
  HRESULT GetLocators(IEnumAAFLocators** ppEnum) override {
    return enumerate<IEnumAAFLocators, IAAFLocator>(pid::EssenceDescriptor_Locator, ppEnum);
  }

 protected:
  ~EssenceDescriptor() override = default;
};

class FileDescriptor : public Adds<EssenceDescriptor, IAAFFileDescriptor, IAAFFileDescriptor2> {
 public:
  using Adds::Adds;

  HRESULT SetLength(aafLength_t length) override {
    return write_same(pid::FileDescriptor_Length, length);
  }
  HRESULT GetLength(aafLength_t* pLength) override {
    return read_same(pid::FileDescriptor_Length, pLength);
  }
  HRESULT SetCodecDef(IAAFCodecDef* codecDef) override {
    return write_definition(pid::FileDescriptor_CodecDefinition, codecDef);
  }
  HRESULT GetCodecDef(IAAFCodecDef** pCodecDef) override {
    return read_definition(pid::FileDescriptor_CodecDefinition, pid::Dictionary_CodecDefinitions,
                           pCodecDef);
  }
  HRESULT SetSampleRate(aafRational_constref rate) override {
    return write_same(pid::FileDescriptor_SampleRate, rate);
  }
  HRESULT GetSampleRate(aafRational_t* pRate) override {
    return read_same(pid::FileDescriptor_SampleRate, pRate);
  }
  HRESULT SetContainerFormat(IAAFContainerDef* format) override {
    return write_definition(pid::FileDescriptor_ContainerFormat, format);
  }
  HRESULT GetContainerFormat(IAAFContainerDef** pFormat) override {
    return read_definition(pid::FileDescriptor_ContainerFormat,
                           pid::Dictionary_ContainerDefinitions, pFormat);
  }
  HRESULT SetLinkedSlotID(aafUInt32 LinkedSlotID) override {
    return write_same(pid::FileDescriptor_LinkedSlotID, LinkedSlotID);
  }
  HRESULT GetLinkedSlotID(aafUInt32* pLinkedSlotID) override {
    return read_same(pid::FileDescriptor_LinkedSlotID, pLinkedSlotID);
  }

 protected:
  ~FileDescriptor() override = default;
};

// WAVE and AIFC, which differ only in the property that holds the summary.
template <typename Interface, std::uint16_t summary>
class SummaryDescriptor final : public Adds<FileDescriptor, Interface> {
 public:
  using Adds<FileDescriptor, Interface>::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }
  HRESULT GetSummary(aafUInt32 size, aafDataValue_t pSummary) override {
    return this->read_bytes(summary, size, pSummary);
  }
  HRESULT GetSummaryBufferSize(aafUInt32* pSize) override {
    return this->read_byte_count(summary, pSize);
  }
  HRESULT SetSummary(aafUInt32 size, aafDataValue_t pSummary) override {
    return this->write_bytes(summary, size, pSummary);
  }

 private:
  ~SummaryDescriptor() override = default;
};
using WaveDescriptor = SummaryDescriptor<IAAFWAVEDescriptor, pid::WAVEDescriptor_Summary>;
using AifcDescriptor = SummaryDescriptor<IAAFAIFCDescriptor, pid::AIFCDescriptor_Summary>;

class SoundDescriptor : public Adds<FileDescriptor, IAAFSoundDescriptor> {
 public:
  using Adds::Adds;

  HRESULT SetCompression(aafUID_constref compression) override {
    return write_same(pid::SoundDescriptor_Compression, compression);
  }
  HRESULT GetCompression(aafUID_t* pCompression) override {
    return read_same(pid::SoundDescriptor_Compression, pCompression);
  }
  HRESULT SetChannelCount(aafUInt32 channelCount) override {
    return write_same(pid::SoundDescriptor_Channels, channelCount);
  }
  HRESULT GetChannelCount(aafUInt32* pChannelCount) override {
    return read_same(pid::SoundDescriptor_Channels, pChannelCount);
  }
  HRESULT SetAudioSamplingRate(aafRational_t rate) override {
    return write_same(pid::SoundDescriptor_AudioSamplingRate, rate);
  }
  HRESULT GetAudioSamplingRate(aafRational_t* pRate) override {
    return read_same(pid::SoundDescriptor_AudioSamplingRate, pRate);
  }
  HRESULT SetIsLocked(aafBoolean_t locked) override {
    return write_flag(pid::SoundDescriptor_Locked, locked);
  }
  HRESULT IsLocked(aafBoolean_t* pLocked) override {
    return read_flag(pid::SoundDescriptor_Locked, pLocked);
  }
  HRESULT SetElectroSpatialFormulation(aafElectroSpatialFormulation_t formulation) override {
    return write<std::uint8_t>(pid::SoundDescriptor_ElectroSpatial, formulation);
  }
  HRESULT GetElectroSpatialFormulation(aafElectroSpatialFormulation_t* pFormulation) override {
    return read<std::uint8_t>(pid::SoundDescriptor_ElectroSpatial, pFormulation);
  }
  HRESULT SetAudioRefLevel(aafInt8 level) override {
    return write_same(pid::SoundDescriptor_AudioRefLevel, level);
  }
  HRESULT GetAudioRefLevel(aafInt8* pLevel) override {
    return read_same(pid::SoundDescriptor_AudioRefLevel, pLevel);
  }
  HRESULT SetDialNorm(aafInt8 dialNorm) override {
    return write_same(pid::SoundDescriptor_DialNorm, dialNorm);
  }
  HRESULT GetDialNorm(aafInt8* pDialNorm) override {
    return read_same(pid::SoundDescriptor_DialNorm, pDialNorm);
  }
  HRESULT SetQuantizationBits(aafUInt32 bitsCount) override {
    return write_same(pid::SoundDescriptor_QuantizationBits, bitsCount);
  }
  HRESULT GetQuantizationBits(aafUInt32* pBitsCount) override {
    return read_same(pid::SoundDescriptor_QuantizationBits, pBitsCount);
  }

 protected:
  ~SoundDescriptor() override = default;
};

// Peak envelopes are not offered, but for what tells that there are none.
class PcmDescriptor : public Adds<SoundDescriptor, IAAFPCMDescriptor> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }
  HRESULT SetBlockAlign(aafUInt16 blockAlign) override {
    return write_same(pid::PCMDescriptor_BlockAlign, blockAlign);
  }
  HRESULT GetBlockAlign(aafUInt16* pBlockAlign) override {
    return read_same(pid::PCMDescriptor_BlockAlign, pBlockAlign);
  }
  HRESULT SetSequenceOffset(aafUInt8 offset) override {
    return write_same(pid::PCMDescriptor_SequenceOffset, offset);
  }
  HRESULT GetSequenceOffset(aafUInt8* pOffset) override {
    return read_same(pid::PCMDescriptor_SequenceOffset, pOffset);
  }
  HRESULT SetAverageBPS(aafUInt32 bps) override {
    return write_same(pid::PCMDescriptor_AverageBPS, bps);
  }
  HRESULT GetAverageBPS(aafUInt32* pBps) override {
    return read_same(pid::PCMDescriptor_AverageBPS, pBps);
  }
  HRESULT SetChannelAssignment(aafUID_constref channelAssignment) override {
    return write_same(pid::PCMDescriptor_ChannelAssignment, channelAssignment);
  }
  HRESULT GetChannelAssignment(aafUID_t* pChannelAssignment) override {
    return read_same(pid::PCMDescriptor_ChannelAssignment, pChannelAssignment);
  }
  HRESULT AreAllPeakEnvelopePropertiesPresent(aafBoolean_t* pArePresent) override {
    if (!pArePresent) return AAFRESULT_NULL_PARAM;
    *pArePresent = kAAFTrue;
    for (std::uint16_t pid = pid::PCMDescriptor_PeakEnvelopeVersion;
         pid <= pid::PCMDescriptor_PeakEnvelopeData; ++pid) {
      bool present = false;
      if (const HRESULT r = stored().is_present(pid, present); r < 0) return r;
      if (!present) *pArePresent = kAAFFalse;
    }
    return AAFRESULT_SUCCESS;
  }

 protected:
  ~PcmDescriptor() override = default;
};

class TapeDescriptor final : public Adds<EssenceDescriptor, IAAFTapeDescriptor> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }
  HRESULT SetTapeManufacturer(aafCharacter_constptr pTapeManufacturer) override {
    return write_text(pid::TapeDescriptor_ManufacturerID, pTapeManufacturer);
  }
  HRESULT GetTapeManufacturer(aafCharacter* pTapeManufacturer, aafUInt32 bufSize) override {
    return read_text(pid::TapeDescriptor_ManufacturerID, pTapeManufacturer, bufSize);
  }
  HRESULT GetTapeManufacturerBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::TapeDescriptor_ManufacturerID, pBufSize);
  }
  HRESULT SetTapeModel(aafCharacter_constptr pTapeModel) override {
    return write_text(pid::TapeDescriptor_Model, pTapeModel);
  }
  HRESULT GetTapeModel(aafCharacter* pTapeModel, aafUInt32 bufSize) override {
    return read_text(pid::TapeDescriptor_Model, pTapeModel, bufSize);
  }
  HRESULT GetTapeModelBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::TapeDescriptor_Model, pBufSize);
  }
  HRESULT SetTapeFormFactor(aafTapeCaseType_t formFactor) override {
    return write<std::uint8_t>(pid::TapeDescriptor_FormFactor, formFactor);
  }
  HRESULT GetTapeFormFactor(aafTapeCaseType_t* formFactor) override {
    return read<std::uint8_t>(pid::TapeDescriptor_FormFactor, formFactor);
  }
  HRESULT SetSignalType(aafVideoSignalType_t videoSignal) override {
    return write<std::uint8_t>(pid::TapeDescriptor_VideoSignal, videoSignal);
  }
  HRESULT GetSignalType(aafVideoSignalType_t* pVideoSignal) override {
    return read<std::uint8_t>(pid::TapeDescriptor_VideoSignal, pVideoSignal);
  }
  HRESULT SetTapeFormat(aafTapeFormatType_t tapeFormat) override {
    return write<std::uint8_t>(pid::TapeDescriptor_TapeFormat, tapeFormat);
  }
  HRESULT GetTapeFormat(aafTapeFormatType_t* pTapeFormat) override {
    return read<std::uint8_t>(pid::TapeDescriptor_TapeFormat, pTapeFormat);
  }
  HRESULT SetTapeLength(aafUInt32 tapeLength) override {
    return write_same(pid::TapeDescriptor_Length, tapeLength);
  }
  HRESULT GetTapeLength(aafUInt32* pTapeLength) override {
    return read_same(pid::TapeDescriptor_Length, pTapeLength);
  }

 private:
  ~TapeDescriptor() override = default;
};

class PhysicalDescriptor : public Adds<EssenceDescriptor, IAAFPhysicalDescriptor> {
 public:
  using Adds::Adds;

 protected:
  ~PhysicalDescriptor() override = default;
};

class ImportDescriptor : public Adds<PhysicalDescriptor, IAAFImportDescriptor> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }

 protected:
  ~ImportDescriptor() override = default;
};

class RecordingDescriptor final : public Adds<PhysicalDescriptor, IAAFRecordingDescriptor> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }

 private:
  ~RecordingDescriptor() override = default;
};

// A path that a class of locator keeps in a property of its own; the class above has none.
class Locator : public Adds<AafObject, IAAFLocator> {
 public:
  using Adds::Adds;

 protected:
  ~Locator() override = default;
};

class NetworkLocator final : public Adds<Locator, IAAFNetworkLocator> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }
  HRESULT SetPath(aafCharacter_constptr pPath) override {
    return write_text(pid::NetworkLocator_URLString, pPath);
  }
  HRESULT GetPath(aafCharacter* pPath, aafUInt32 bufSize) override {
    return read_text(pid::NetworkLocator_URLString, pPath, bufSize);
  }
  HRESULT GetPathBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::NetworkLocator_URLString, pBufSize);
  }

 private:
  ~NetworkLocator() override = default;
};

class TextLocator final : public Adds<Locator, IAAFTextLocator> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }
  HRESULT SetName(aafCharacter_constptr pName) override {
    return write_text(pid::TextLocator_Name, pName);
  }
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return read_text(pid::TextLocator_Name, pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::TextLocator_Name, pBufSize);
  }

 private:
  ~TextLocator() override = default;
};

}  // namespace

AafObject* make_descriptor_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                                  StoredObject& stored) {
  switch (index) {
    case ClassIndex::EssenceDescriptor:
      return new EssenceDescriptor(session, stored);
    case ClassIndex::FileDescriptor:
      return new FileDescriptor(session, stored);
    case ClassIndex::WAVEDescriptor:
      return new WaveDescriptor(session, stored);
    case ClassIndex::AIFCDescriptor:
      return new AifcDescriptor(session, stored);
    case ClassIndex::SoundDescriptor:
      return new SoundDescriptor(session, stored);
    case ClassIndex::PCMDescriptor:
      return new PcmDescriptor(session, stored);
    case ClassIndex::TapeDescriptor:
      return new TapeDescriptor(session, stored);
    case ClassIndex::PhysicalDescriptor:
      return new PhysicalDescriptor(session, stored);
    case ClassIndex::ImportDescriptor:
      return new ImportDescriptor(session, stored);
    case ClassIndex::RecordingDescriptor:
      return new RecordingDescriptor(session, stored);
    case ClassIndex::Locator:
      return new Locator(session, stored);
    case ClassIndex::NetworkLocator:
      return new NetworkLocator(session, stored);
    case ClassIndex::TextLocator:
      return new TextLocator(session, stored);
    default:
      return nullptr;
  }
}

}  // namespace aafobj
