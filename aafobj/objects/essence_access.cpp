#include "aafobj/objects/essence_access.h"

#include <limits>
#include <map>

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/essence/sound_writer.h"
#include "aafobj/objects/essence_path.h"
#include "aafobj/objects/mob_objects.h"
#include "aafobj/objects/not_offered_component.h"
#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/not_offered_descriptor.h"
#include "aafobj/objects/object_factory.h"
#include "aafobj/objects/source_search.h"
#include "aafobj/objects/stored_queries.h"

namespace aafobj {
namespace {

constexpr aafSlotID_t file_slot_id = 1;
// Those that the published library gives; programs may go by them.
constexpr std::u16string_view file_slot_name = u"Test";
constexpr aafCharacter_constptr master_slot_name = L"A Slot";

HRESULT first_failure(std::initializer_list<HRESULT> results) {
  for (const HRESULT r : results) {
    if (r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

struct CodecRow {
  aafUID_t identifier;
  SoundCodec codec;
  ClassIndex descriptor;
  std::uint16_t summary;  // property; 0 for none
  std::wstring_view name;
};

constexpr CodecRow codecs[] = {
    {kAAFCodecDef_WAVE, SoundCodec::wave, ClassIndex::WAVEDescriptor, pid::WAVEDescriptor_Summary,
     L"WAVE Codec"},
    {kAAFCodecDef_AIFC, SoundCodec::aifc, ClassIndex::AIFCDescriptor, pid::AIFCDescriptor_Summary,
     L"AIFC Codec"},
    {kAAFCodecDef_PCM, SoundCodec::pcm, ClassIndex::PCMDescriptor, 0, L"PCM Codec"}};

const CodecRow* find_codec(const aafUID_t& id) {
  for (const CodecRow& row : codecs) {
    if (row.identifier == id) return &row;
  }
  return nullptr;
}

// Settings of a format, by the identifiers that the interfaces have for them.
class EssenceFormat final : public Adds<ComObject, IAAFEssenceFormat> {
 public:
  HRESULT AddFormatSpecifier(aafUID_constref essenceFormatCode, aafInt32 valueSize,
                             aafDataBuffer_t value) override {
    if (valueSize < 0) return AAFRESULT_INVALID_PARAM;
    if (valueSize > 0 && !value) return AAFRESULT_NULL_PARAM;
    m_settings[essenceFormatCode] = {value, value + valueSize};
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetFormatSpecifier(aafUID_constref essenceFormatCode, aafInt32 valueSize,
                             aafDataBuffer_t value, aafInt32* bytesRead) override {
    if (!value || !bytesRead) return AAFRESULT_NULL_PARAM;
    const auto at = m_settings.find(essenceFormatCode);
    if (at == m_settings.end()) return AAFRESULT_FORMAT_NOT_FOUND;
    if (valueSize < 0 || at->second.size() > static_cast<std::size_t>(valueSize)) {
      return AAFRESULT_SMALLBUF;
    }
    std::copy(at->second.begin(), at->second.end(), value);
    *bytesRead = static_cast<aafInt32>(at->second.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT NumFormatSpecifiers(aafInt32* numSpecifiers) override {
    if (!numSpecifiers) return AAFRESULT_NULL_PARAM;
    *numSpecifiers = static_cast<aafInt32>(m_settings.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetIndexedFormatSpecifier(aafInt32 index, aafUID_t* essenceFormatCode, aafInt32 valueSize,
                                    aafDataBuffer_t value, aafInt32* bytesRead) override {
    if (!essenceFormatCode) return AAFRESULT_NULL_PARAM;
    if (index < 0 || static_cast<std::size_t>(index) >= m_settings.size()) {
      return AAFRESULT_BADINDEX;
    }
    *essenceFormatCode = std::next(m_settings.begin(), index)->first;
    return GetFormatSpecifier(*essenceFormatCode, valueSize, value, bytesRead);
  }

 private:
  ~EssenceFormat() override = default;

  std::map<aafUID_t, std::vector<aafUInt8>> m_settings;
};

// What was made for one essence.
struct EssenceParts {
  const CodecRow* codec = nullptr;
  StoredObject* master_clip = nullptr;
  StoredObject* file_clip = nullptr;
  StoredObject* descriptor = nullptr;
  aafRational_t edit_rate{};
};

// Takes the samples of one essence.
class EssenceAccess final : public Adds<ComObject, IAAFEssenceAccess> {
 public:
  EssenceAccess(std::shared_ptr<FileSession> session, const EssenceParts& parts,
                std::unique_ptr<EssenceSink> sink)
      : m_session(std::move(session)),
        m_parts(parts),
        m_writer(parts.codec->codec, std::move(sink)) {}

  HRESULT begin(const aafRational_t& sample_rate) {
    SoundFormat format;
    format.sample_rate = sample_rate;
    const Result r = m_writer.set_format(format);
    return r == Result::ok ? store_format() : aaf_result(r);
  }

  HRESULT WriteSamples(aafUInt32 nSamples, aafUInt32 buflen, aafDataBuffer_t buffer,
                       aafUInt32* samplesWritten, aafUInt32* bytesWritten) override {
    if (!buffer || !samplesWritten || !bytesWritten) return AAFRESULT_NULL_PARAM;
    if (nSamples == 0) return AAFRESULT_INVALID_PARAM;
    if (m_is_complete) return AAFRESULT_STREAM_CLOSED;
    const std::uint64_t bytes = nSamples * m_writer.format().frame_bytes();
    if (buflen < bytes) return AAFRESULT_SMALLBUF;
    const Result r =
        m_writer.write(std::as_bytes(std::span(buffer, static_cast<std::size_t>(bytes))));
    if (r == Result::too_large) return AAFRESULT_EOF;
    if (r != Result::ok) return r == Result::io_error ? AAFRESULT_CONTAINERWRITE : aaf_result(r);
    *samplesWritten = nSamples;
    *bytesWritten = static_cast<aafUInt32>(bytes);
    return AAFRESULT_SUCCESS;
  }

  HRESULT GetLargestSampleSize(IAAFDataDef*, aafLength_t* maxSize) override {
    if (!maxSize) return AAFRESULT_NULL_PARAM;
    *maxSize = static_cast<aafLength_t>(m_writer.format().frame_bytes());
    return AAFRESULT_SUCCESS;
  }
  HRESULT CountSamples(IAAFDataDef*, aafLength_t* result) override {
    if (!result) return AAFRESULT_NULL_PARAM;
    *result = static_cast<aafLength_t>(m_writer.frames());
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetEmptyFileFormat(IAAFEssenceFormat** ops) override {
    if (!ops) return AAFRESULT_NULL_PARAM;
    *ops = new EssenceFormat;
    return AAFRESULT_SUCCESS;
  }

  // Bits of a sample, rate and number of channels; whatever else is asked for is refused.
  HRESULT PutFileFormat(IAAFEssenceFormat* ops) override {
    if (!ops) return AAFRESULT_NULL_PARAM;
    if (m_is_complete) return AAFRESULT_STREAM_CLOSED;
    SoundFormat format = m_writer.format();
    aafInt32 number = 0;
    if (const HRESULT r = ops->NumFormatSpecifiers(&number); r < 0) return r;
    for (aafInt32 i = 0; i < number; ++i) {
      if (const HRESULT r = take_setting(*ops, i, format); r < 0) return r;
    }
    const Result r = m_writer.set_format(format);
    return r == Result::ok ? store_format() : AAFRESULT_ILLEGAL_FILEFMT;
  }

  HRESULT GetCodecName(aafUInt32 namelen, aafCharacter* name) override {
    return copy_text(from_wide(m_parts.codec->name), name, namelen);
  }
  HRESULT GetCodecID(aafCodecID_t* codecID) override {
    if (!codecID) return AAFRESULT_NULL_PARAM;
    *codecID = m_parts.codec->identifier;
    return AAFRESULT_SUCCESS;
  }

  // Sizes in the head, lengths in the descriptor and in the clips of both mobs.
  HRESULT CompleteWrite() override {
    if (m_is_complete) return AAFRESULT_STREAM_CLOSED;
    if (const Result r = m_writer.finish(); r != Result::ok) return aaf_result(r);
    m_is_complete = true;
    const auto frames = static_cast<aafLength_t>(m_writer.frames());
    const aafLength_t length =
        convert_rate(frames, m_writer.format().sample_rate, m_parts.edit_rate);
    return first_failure({store_summary(),
                          set_value(*m_parts.descriptor, pid::FileDescriptor_Length, frames),
                          set_value(*m_parts.file_clip, pid::Component_Length, length),
                          set_value(*m_parts.master_clip, pid::Component_Length, length)});
  }

 private:
  ~EssenceAccess() override = default;

  static HRESULT take_setting(IAAFEssenceFormat& ops, aafInt32 index, SoundFormat& format) {
    aafUID_t code{};
    std::array<aafUInt8, 16> value{};
    aafInt32 size = 0;
    const HRESULT r = ops.GetIndexedFormatSpecifier(
        index, &code, static_cast<aafInt32>(value.size()), value.data(), &size);
    if (r < 0) return r;
    if (code == kAAFAudioSampleBits && size == 4) {
      std::memcpy(&format.bits, value.data(), 4);
    } else if (code == kAAFNumChannels && size == 4) {
      std::memcpy(&format.channels, value.data(), 4);
    } else if (code == kAAFNumChannels && size == 2) {
      std::uint16_t channels = 0;
      std::memcpy(&channels, value.data(), 2);
      format.channels = channels;
    } else if (code == kAAFSampleRate && size == 8) {
      std::memcpy(&format.sample_rate, value.data(), 8);
    } else {
      return AAFRESULT_ILLEGAL_FILEFMT;
    }
    return AAFRESULT_SUCCESS;
  }

  HRESULT store_format() {
    const SoundFormat& format = m_writer.format();
    StoredObject& descriptor = *m_parts.descriptor;
    HRESULT r = set_value(descriptor, pid::FileDescriptor_SampleRate, format.sample_rate);
    if (r < 0 || m_parts.codec->codec != SoundCodec::pcm) return r < 0 ? r : store_summary();
    const auto frame = static_cast<std::uint32_t>(format.frame_bytes());
    const aafRational_t& rate = format.sample_rate;
    const bool has_rate = rate.numerator > 0 && rate.denominator > 0;
    const std::uint64_t bytes_a_second = has_rate ? std::uint64_t{frame} *
                                                        static_cast<std::uint32_t>(rate.numerator) /
                                                        static_cast<std::uint32_t>(rate.denominator)
                                                  : 0;
    return first_failure(
        {set_value(descriptor, pid::SoundDescriptor_AudioSamplingRate, rate),
         set_value(descriptor, pid::SoundDescriptor_Channels, format.channels),
         set_value(descriptor, pid::SoundDescriptor_QuantizationBits, format.bits),
         set_value(descriptor, pid::PCMDescriptor_BlockAlign, static_cast<std::uint16_t>(frame)),
         set_value(descriptor, pid::PCMDescriptor_AverageBPS,
                   static_cast<std::uint32_t>(bytes_a_second))});
  }

  HRESULT store_summary() {
    if (m_parts.codec->summary == 0) return AAFRESULT_SUCCESS;
    return m_parts.descriptor->set_data(
        m_parts.codec->summary,
        sound_summary(m_writer.codec(), m_writer.format(), m_writer.data_bytes()));
  }

  std::shared_ptr<FileSession> m_session;
  EssenceParts m_parts;
  SoundWriter m_writer;
  bool m_is_complete = false;
};

// A clip's slot in a mob: name, identifier and rate; the clip comes back.
HRESULT clip_of_slot(StoredObject& mob, aafSlotID_t id, StoredObject*& clip) {
  StoredObject* slot = nullptr;
  const HRESULT r = find_slot(mob, id, slot);
  return r < 0 ? r : slot->get_object(pid::MobSlot_Segment, clip);
}

// Makes the objects of one essence, in the order in which the published library makes them.
class EssenceMaker {
 public:
  EssenceMaker(AafObject& master_mob, IAAFMasterMob& master, const EssenceRequest& request)
      : m_session(master_mob.session()),
        m_master_mob(master_mob),
        m_master(master),
        m_request(request) {}

  HRESULT make(IAAFEssenceAccess** access) {
    m_parts.codec = find_codec(m_request.codec);
    m_parts.edit_rate = m_request.edit_rate;
    if (!m_parts.codec) return AAFRESULT_CODEC_INVALID;
    if (!m_request.destination && m_request.container != kAAFContainerDef_AAF) {
      return AAFRESULT_WRONG_MEDIATYPE;
    }
    std::unique_ptr<EssenceSink> sink;
    if (m_request.destination) {
      if (const HRESULT r = open_file(sink); r < 0) return r;
    }
    HRESULT r = make_file_mob();
    if (r >= 0) r = add_file_slot();
    if (r >= 0) r = add_to_content();
    if (r >= 0) r = add_master_slot();
    if (r >= 0 && !m_request.destination) r = open_essence_data(sink);
    if (r < 0) return r;
    Ref<EssenceAccess> made(
        new EssenceAccess(m_master_mob.shared_session(), m_parts, std::move(sink)));
    if (r = made->begin(m_request.sample_rate); r < 0) return r;
    *access = made.detach();
    return AAFRESULT_SUCCESS;
  }

 private:
  HRESULT open_file(std::unique_ptr<EssenceSink>& sink) {
    aafUInt32 size = 0;
    if (const HRESULT r = m_request.destination->GetPathBufLen(&size); r < 0) return r;
    std::wstring text(size / sizeof(aafCharacter), L'\0');
    if (const HRESULT r = m_request.destination->GetPath(text.data(), size); r < 0) return r;
    text.resize(std::min(text.size(), text.find(L'\0')));
    std::shared_ptr<RawStorage> storage;
    const Result opened =
        open_disk_storage(path_of_locator(text, m_session.folder()), DiskMode::create_new, storage);
    if (opened == Result::already_exists) return AAFRESULT_FILE_EXISTS;
    if (opened != Result::ok) return AAFRESULT_OPEN_FAILURE;
    sink = make_file_sink(std::move(storage));
    return AAFRESULT_SUCCESS;
  }

  HRESULT make_file_mob() {
    HRESULT r = create_stored(m_session, ClassIndex::SourceMob, m_file_mob);
    if (r < 0) return r;
    if (r = create_stored(m_session, m_parts.codec->descriptor, m_parts.descriptor); r < 0)
      return r;
    constexpr aafLength_t no_length = 0;
    return first_failure(
        {m_file_mob->set_object(pid::SourceMob_EssenceDescription, *m_parts.descriptor),
         set_value(*m_parts.descriptor, pid::FileDescriptor_Length, no_length),
         name_definition(pid::FileDescriptor_ContainerFormat, pid::Dictionary_ContainerDefinitions,
                         m_request.container),
         name_definition(pid::FileDescriptor_CodecDefinition, pid::Dictionary_CodecDefinitions,
                         m_request.codec),
         append_locator()});
  }

  HRESULT append_locator() {
    if (!m_request.destination) return AAFRESULT_SUCCESS;
    Ref<IAAFEssenceDescriptor> descriptor;
    const HRESULT r = m_session.hand_out(*m_parts.descriptor, descriptor.put());
    return r < 0 ? r : descriptor->AppendLocator(m_request.destination);
  }

  HRESULT name_definition(std::uint16_t pid, std::uint16_t set, const aafUID_t& id) {
    StoredObject* definition = nullptr;
    std::shared_ptr<FileSession> session;
    WeakTarget target;
    HRESULT r = m_session.find_definition(set, id, definition, session);
    if (r < 0) return r;
    if (r = m_session.file().target_to(*definition, target); r < 0) return r;
    return m_parts.descriptor->set_weak(pid, target);
  }

  // A clip of no length, which leads nowhere.
  HRESULT add_file_slot() {
    Ref<IAAFSourceMob> mob;
    HRESULT r = m_session.hand_out(*m_file_mob, mob.put());
    if (r < 0) return r;
    r = mob->AddNilReference(file_slot_id, 0, m_request.media_kind, m_request.edit_rate);
    if (r < 0) return r;
    StoredObject* slot = nullptr;
    if (r = find_slot(*m_file_mob, file_slot_id, slot); r < 0) return r;
    constexpr std::uint32_t first_track = 1;
    return first_failure({set_value(*slot, pid::MobSlot_PhysicalTrackNumber, first_track),
                          set_text(*slot, pid::MobSlot_SlotName, file_slot_name),
                          clip_of_slot(*m_file_mob, file_slot_id, m_parts.file_clip)});
  }

  HRESULT add_to_content() {
    StoredObject* content = nullptr;
    HRESULT r = m_session.file().content(content);
    if (r < 0) return r;
    if (r = get_value(*m_file_mob, pid::Mob_MobID, m_file_mob_id); r < 0) return r;
    return content->insert_keyed(pid::ContentStorage_Mobs, StoredKey(m_file_mob_id), *m_file_mob);
  }

  HRESULT add_master_slot() {
    Ref<IAAFSourceMob> mob;
    HRESULT r = m_session.hand_out(*m_file_mob, mob.put());
    if (r < 0) return r;
    r = m_master.AddMasterSlot(m_request.media_kind, file_slot_id, mob.get(),
                               m_request.master_slot_id, master_slot_name);
    if (r < 0) return r;
    return clip_of_slot(m_master_mob.stored(), m_request.master_slot_id, m_parts.master_clip);
  }

  HRESULT open_essence_data(std::unique_ptr<EssenceSink>& sink) {
    StoredObject* content = nullptr;
    StoredObject* data = nullptr;
    Stream stream;
    HRESULT r = m_session.file().content(content);
    if (r < 0) return r;
    if (r = create_stored(m_session, ClassIndex::EssenceData, data); r < 0) return r;
    r = first_failure(
        {set_value(*data, pid::EssenceData_MobID, m_file_mob_id),
         content->insert_keyed(pid::ContentStorage_EssenceData, StoredKey(m_file_mob_id), *data),
         data->create_stream(pid::EssenceData_Data, stream)});
    if (r >= 0) sink = make_stream_sink(std::move(stream));
    return r;
  }

  FileSession& m_session;
  AafObject& m_master_mob;
  IAAFMasterMob& m_master;
  const EssenceRequest& m_request;
  EssenceParts m_parts;
  StoredObject* m_file_mob = nullptr;
  aafMobID_t m_file_mob_id{};
};

// Essence in the file, read and written at one position.
class EssenceData final : public Adds<AafObject, IAAFEssenceData, IAAFEssenceData2> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFSourceMob* pFileMob) override { return SetFileMob(pFileMob); }

  HRESULT Write(aafUInt32 bytes, aafDataBuffer_t buffer, aafUInt32* bytesWritten) override {
    if (!buffer || !bytesWritten) return AAFRESULT_NULL_PARAM;
    Stream stream;
    if (const HRESULT r = stored().create_stream(pid::EssenceData_Data, stream); r < 0) return r;
    const Result r = stream.write_at(m_position, std::as_bytes(std::span(buffer, bytes)));
    if (r != Result::ok) return r == Result::io_error ? AAFRESULT_CONTAINERWRITE : aaf_result(r);
    m_position += bytes;
    *bytesWritten = bytes;
    return AAFRESULT_SUCCESS;
  }

  HRESULT Read(aafUInt32 bytes, aafDataBuffer_t buffer, aafUInt32* bytesRead) override {
    if (!buffer || !bytesRead) return AAFRESULT_NULL_PARAM;
    *bytesRead = 0;
    Stream stream;
    if (const HRESULT r = stored().open_stream(pid::EssenceData_Data, stream); r < 0) return r;
    std::size_t count = 0;
    const Result r =
        stream.read_at(m_position, std::as_writable_bytes(std::span(buffer, bytes)), count);
    if (r != Result::ok) return aaf_result(r);
    m_position += count;
    *bytesRead = static_cast<aafUInt32>(count);
    return count == 0 && bytes > 0 ? AAFRESULT_END_OF_DATA : AAFRESULT_SUCCESS;
  }

  HRESULT SetPosition(aafPosition_t offset) override {
    if (offset < 0) return AAFRESULT_BADDATAADDRESS;
    m_position = static_cast<std::uint64_t>(offset);
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetPosition(aafPosition_t* pOffset) override {
    if (!pOffset) return AAFRESULT_NULL_PARAM;
    *pOffset = static_cast<aafPosition_t>(m_position);
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetSize(aafLength_t* pSize) override {
    if (!pSize) return AAFRESULT_NULL_PARAM;
    Stream stream;
    if (const HRESULT r = stored().open_stream(pid::EssenceData_Data, stream); r < 0) return r;
    *pSize = static_cast<aafLength_t>(stream.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetFileMob(IAAFSourceMob* pFileMob) override {
    if (!pFileMob) return AAFRESULT_NULL_PARAM;
    AafObject* mob = AafObject::behind(pFileMob);
    if (!mob) return AAFRESULT_INVALID_OBJ;
    if (stored().owner()) return AAFRESULT_OBJECT_ALREADY_ATTACHED;
    aafMobID_t id{};
    if (const HRESULT r = get_value(mob->stored(), pid::Mob_MobID, id); r < 0) return r;
    return write_same(pid::EssenceData_MobID, id);
  }
  HRESULT GetFileMob(IAAFSourceMob** ppFileMob) override {
    if (!ppFileMob) return AAFRESULT_NULL_PARAM;
    aafMobID_t id{};
    StoredObject* mob = nullptr;
    if (const HRESULT r = GetFileMobID(&id); r < 0) return r;
    if (const HRESULT r = find_mob(session().file(), id, mob); r < 0) return r;
    return session().hand_out(*mob, ppFileMob);
  }
  HRESULT GetFileMobID(aafMobID_t* pFileMobID) override {
    return read_same(pid::EssenceData_MobID, pFileMobID);
  }

 private:
  ~EssenceData() override = default;

  std::uint64_t m_position = 0;
};

}  // namespace

HRESULT create_essence(AafObject& master_mob, IAAFMasterMob& master, const EssenceRequest& request,
                       IAAFEssenceAccess** access) {
  return EssenceMaker(master_mob, master, request).make(access);
}

AafObject* make_essence_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                               StoredObject& stored) {
  return index == ClassIndex::EssenceData ? new EssenceData(session, stored) : nullptr;
}

}  // namespace aafobj
