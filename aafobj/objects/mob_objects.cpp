#include "aafobj/objects/mob_objects.h"

#include "aafobj/objects/essence_access.h"
#include "aafobj/objects/not_offered_component.h"
#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/not_offered_descriptor.h"
#include "aafobj/objects/not_offered_mob.h"
#include "aafobj/objects/object_factory.h"
#include "aafobj/objects/source_search.h"
#include "aafobj/objects/stored_queries.h"
#include "aafobj/objects/tagged_lists.h"

namespace aafobj {
namespace {

class MobSlot : public Adds<AafObject, IAAFMobSlot> {
 public:
  using Adds::Adds;

  HRESULT GetSegment(IAAFSegment** ppResult) override {
    return read_object(pid::MobSlot_Segment, ppResult);
  }
  HRESULT SetSegment(IAAFSegment* pSegment) override {
    return write_object(pid::MobSlot_Segment, pSegment);
  }
  HRESULT SetName(aafCharacter_constptr pName) override {
    return write_text(pid::MobSlot_SlotName, pName);
  }
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return read_text(pid::MobSlot_SlotName, pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::MobSlot_SlotName, pBufSize);
  }
  HRESULT GetPhysicalNum(aafUInt32* pResult) override {
    return read_same(pid::MobSlot_PhysicalTrackNumber, pResult);
  }
  HRESULT SetPhysicalNum(aafUInt32 number) override {
    return write_same(pid::MobSlot_PhysicalTrackNumber, number);
  }
  HRESULT GetSlotID(aafSlotID_t* pResult) override {
    return read_same(pid::MobSlot_SlotID, pResult);
  }
  HRESULT SetSlotID(aafSlotID_t value) override { return write_same(pid::MobSlot_SlotID, value); }

  // That of the segment.
  HRESULT GetDataDef(IAAFDataDef** ppResult) override {
    if (!ppResult) return AAFRESULT_NULL_PARAM;
    StoredObject* segment = nullptr;
    WeakTarget target;
    HRESULT r = stored().get_object(pid::MobSlot_Segment, segment);
    if (r < 0) return r;
    if (r = segment->get_weak(pid::Component_DataDefinition, target); r < 0) return r;
    return session().hand_out_definition(pid::Dictionary_DataDefinitions, target.key.auid(),
                                         ppResult);
  }

 protected:
  ~MobSlot() override = default;
};

class TimelineMobSlot final : public Adds<MobSlot, IAAFTimelineMobSlot, IAAFTimelineMobSlot2> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override {
    const HRESULT r = SetOrigin(0);
    return r < 0 ? r : SetEditRate({0, 1});
  }
  HRESULT GetEditRate(aafRational_t* pEditRate) override {
    return read_same(pid::TimelineMobSlot_EditRate, pEditRate);
  }
  HRESULT SetEditRate(aafRational_constref editRate) override {
    return write_same(pid::TimelineMobSlot_EditRate, editRate);
  }
  HRESULT GetOrigin(aafPosition_t* pOrigin) override {
    return read_same(pid::TimelineMobSlot_Origin, pOrigin);
  }
  HRESULT SetOrigin(aafPosition_t origin) override {
    return write_same(pid::TimelineMobSlot_Origin, origin);
  }
  HRESULT GetMarkIn(aafPosition_t* result) override {
    return read_same(pid::TimelineMobSlot_MarkIn, result);
  }
  HRESULT SetMarkIn(aafPosition_t value) override {
    return write_same(pid::TimelineMobSlot_MarkIn, value);
  }
  HRESULT GetMarkOut(aafPosition_t* result) override {
    return read_same(pid::TimelineMobSlot_MarkOut, result);
  }
  HRESULT SetMarkOut(aafPosition_t value) override {
    return write_same(pid::TimelineMobSlot_MarkOut, value);
  }
  HRESULT GetUserPos(aafPosition_t* result) override {
    return read_same(pid::TimelineMobSlot_UserPos, result);
  }
  HRESULT SetUserPos(aafPosition_t value) override {
    return write_same(pid::TimelineMobSlot_UserPos, value);
  }

 private:
  ~TimelineMobSlot() override = default;
};

class EventMobSlot final : public Adds<MobSlot, IAAFEventMobSlot, IAAFEventMobSlot2> {
 public:
  using Adds::Adds;

  HRESULT GetEditRate(aafRational_t* pEditRate) override {
    return read_same(pid::EventMobSlot_EditRate, pEditRate);
  }
  HRESULT SetEditRate(aafRational_t* pEditRate) override {
    return pEditRate ? write_same(pid::EventMobSlot_EditRate, *pEditRate) : AAFRESULT_NULL_PARAM;
  }
  HRESULT GetEventSlotOrigin(aafPosition_t* pEventSlotOrigin) override {
    return read_same(pid::EventMobSlot_EventSlotOrigin, pEventSlotOrigin);
  }
  HRESULT SetEventSlotOrigin(aafPosition_t eventSlotOrigin) override {
    return write_same(pid::EventMobSlot_EventSlotOrigin, eventSlotOrigin);
  }

 private:
  ~EventMobSlot() override = default;
};

class StaticMobSlot final : public Adds<MobSlot, IAAFStaticMobSlot> {
 public:
  using Adds::Adds;

 private:
  ~StaticMobSlot() override = default;
};

class Mob : public Adds<AafObject, IAAFMob, IAAFMob2, IAAFSearchSource> {
 public:
  using Adds::Adds;

  HRESULT GetMobID(aafMobID_t* pMobID) override { return read_same(pid::Mob_MobID, pMobID); }

  // A mob in the content goes there under its new identifier.
  HRESULT SetMobID(aafMobID_constref mobID) override {
    StoredObject* content = stored().owner();
    aafMobID_t former{};
    if (!content) return write_same(pid::Mob_MobID, mobID);
    if (const HRESULT r = GetMobID(&former); r < 0) return r;
    if (former == mobID) return AAFRESULT_SUCCESS;
    StoredObject* other = nullptr;
    if (find_mob(session().file(), mobID, other) >= 0) return AAFRESULT_DUPLICATE_MOBID;
    HRESULT r = content->remove_keyed(pid::ContentStorage_Mobs, StoredKey(former));
    if (r < 0) return r;
    if (r = write_same(pid::Mob_MobID, mobID); r < 0) return r;
    return content->insert_keyed(pid::ContentStorage_Mobs, StoredKey(mobID), stored());
  }
  HRESULT SetName(aafCharacter_constptr pName) override { return write_text(pid::Mob_Name, pName); }
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return read_text(pid::Mob_Name, pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::Mob_Name, pBufSize);
  }
  HRESULT CountSlots(aafNumSlots_t* pNumSlots) override { return count(pid::Mob_Slots, pNumSlots); }
  HRESULT AppendSlot(IAAFMobSlot* pSlot) override { return append(pid::Mob_Slots, pSlot); }
  HRESULT PrependSlot(IAAFMobSlot* pSlot) override { return prepend(pid::Mob_Slots, pSlot); }
  HRESULT InsertSlotAt(aafUInt32 index, IAAFMobSlot* pSlot) override {
    return insert_at(pid::Mob_Slots, index, pSlot);
  }
  HRESULT RemoveSlotAt(aafUInt32 index) override { return remove_at(pid::Mob_Slots, index); }
  HRESULT GetSlotAt(aafUInt32 index, IAAFMobSlot** ppSlot) override {
    return element_at(pid::Mob_Slots, index, ppSlot);
  }
  HRESULT GetSlots(IEnumAAFMobSlots** ppEnum) override {
    return enumerate<IEnumAAFMobSlots, IAAFMobSlot>(pid::Mob_Slots, ppEnum);
  }
  HRESULT GetModTime(aafTimeStamp_t* pLastModified) override {
    return read_same(pid::Mob_LastModified, pLastModified);
  }
  HRESULT SetModTime(aafTimeStamp_constref modTime) override {
    return write_same(pid::Mob_LastModified, modTime);
  }
  HRESULT GetCreateTime(aafTimeStamp_t* pCreationTime) override {
    return read_same(pid::Mob_CreationTime, pCreationTime);
  }
  HRESULT SetCreateTime(aafTimeStamp_constref createTime) override {
    return write_same(pid::Mob_CreationTime, createTime);
  }
  HRESULT GetMobInfo(aafTimeStamp_t* pLastModified, aafTimeStamp_t* pCreationTime,
                     aafCharacter* pName, aafInt32 bufSize) override {
    if (bufSize < 0) return AAFRESULT_INVALID_PARAM;
    if (const HRESULT r = GetModTime(pLastModified); r < 0) return r;
    if (const HRESULT r = GetCreateTime(pCreationTime); r < 0) return r;
    return GetName(pName, static_cast<aafUInt32>(bufSize));
  }
  HRESULT AppendComment(aafCharacter* pCategory, aafCharacter_constptr pComment) override {
    return append_tagged_text(stored(), pid::Mob_UserComments, pCategory, pComment);
  }
  HRESULT CountComments(aafUInt32* pNumComments) override {
    return count(pid::Mob_UserComments, pNumComments);
  }
  HRESULT GetComments(IEnumAAFTaggedValues** ppEnum) override {
    return enumerate<IEnumAAFTaggedValues, IAAFTaggedValue>(pid::Mob_UserComments, ppEnum);
  }
  HRESULT RemoveComment(IAAFTaggedValue* pComment) override {
    return remove_element(pid::Mob_UserComments, pComment);
  }
  HRESULT AppendKLVData(IAAFKLVData* pData) override { return append(pid::Mob_KLVData, pData); }
  HRESULT CountKLVData(aafUInt32* pNumData) override { return count(pid::Mob_KLVData, pNumData); }
  HRESULT GetKLVData(IEnumAAFKLVData** ppEnum) override {
    return enumerate<IEnumAAFKLVData, IAAFKLVData>(pid::Mob_KLVData, ppEnum);
  }
  HRESULT RemoveKLVData(IAAFKLVData* pData) override {
    return remove_element(pid::Mob_KLVData, pData);
  }
  HRESULT AppendAttribute(aafCharacter_constptr pName, aafCharacter_constptr pValue) override {
    return append_tagged_text(stored(), pid::Mob_Attributes, pName, pValue);
  }
  HRESULT CountAttributes(aafUInt32* pNumAttributes) override {
    return count(pid::Mob_Attributes, pNumAttributes);
  }
  HRESULT GetAttributes(IEnumAAFTaggedValues** ppEnum) override {
    return enumerate<IEnumAAFTaggedValues, IAAFTaggedValue>(pid::Mob_Attributes, ppEnum);
  }
  HRESULT RemoveAttribute(IAAFTaggedValue* pAttribute) override {
    return remove_element(pid::Mob_Attributes, pAttribute);
  }
  HRESULT SetUsageCode(aafUID_constref usageCode) override {
    return write_same(pid::Mob_UsageCode, usageCode);
  }
  HRESULT GetUsageCode(aafUID_t* pUsageCode) override {
    return read_same(pid::Mob_UsageCode, pUsageCode);
  }
  HRESULT LookupSlot(aafSlotID_t slotId, IAAFMobSlot** ppDestSlot) override {
    if (!ppDestSlot) return AAFRESULT_NULL_PARAM;
    StoredObject* slot = nullptr;
    const HRESULT r = session().search_index().find_slot(stored(), slotId, slot);
    return r < 0 ? r : session().hand_out(*slot, ppDestSlot);
  }

  HRESULT AppendNewTimelineSlot(aafRational_t editRate, IAAFSegment* pSegment, aafSlotID_t slotID,
                                aafCharacter_constptr pSlotName, aafPosition_t origin,
                                IAAFTimelineMobSlot** ppNewSlot) override {
    if (!pSegment || !pSlotName || !ppNewSlot) return AAFRESULT_NULL_PARAM;
    StoredObject* slot = nullptr;
    if (const HRESULT r =
            append_slot(ClassIndex::TimelineMobSlot, pSegment, slotID, pSlotName, slot);
        r < 0) {
      return r;
    }
    if (const HRESULT r = set_value(*slot, pid::TimelineMobSlot_EditRate, editRate); r < 0)
      return r;
    if (const HRESULT r = set_value(*slot, pid::TimelineMobSlot_Origin, origin); r < 0) return r;
    return session().hand_out(*slot, ppNewSlot);
  }
  HRESULT AppendNewStaticSlot(IAAFSegment* pSegment, aafSlotID_t slotID,
                              aafCharacter_constptr pSlotName,
                              IAAFStaticMobSlot** ppNewSlot) override {
    if (!pSegment || !pSlotName || !ppNewSlot) return AAFRESULT_NULL_PARAM;
    StoredObject* slot = nullptr;
    const HRESULT r = append_slot(ClassIndex::StaticMobSlot, pSegment, slotID, pSlotName, slot);
    return r < 0 ? r : session().hand_out(*slot, ppNewSlot);
  }
  HRESULT AppendNewEventSlot(aafRational_t editRate, IAAFSegment* pSegment, aafSlotID_t slotID,
                             aafCharacter_constptr pSlotName, aafPosition_t origin,
                             IAAFEventMobSlot** ppNewSlot) override {
    if (!pSegment || !pSlotName || !ppNewSlot) return AAFRESULT_NULL_PARAM;
    StoredObject* slot = nullptr;
    if (const HRESULT r = append_slot(ClassIndex::EventMobSlot, pSegment, slotID, pSlotName, slot);
        r < 0) {
      return r;
    }
    if (const HRESULT r = set_value(*slot, pid::EventMobSlot_EditRate, editRate); r < 0) return r;
    if (const HRESULT r = set_value(*slot, pid::EventMobSlot_EventSlotOrigin, origin); r < 0) {
      return r;
    }
    return session().hand_out(*slot, ppNewSlot);
  }

  HRESULT SearchSource(aafSlotID_t slotID, aafPosition_t offset, aafMobKind_t mobKind,
                       aafMediaCriteria_t*, aafOperationChoice_t*,
                       IAAFFindSourceInfo** ppSourceInfo) override {
    return search_source(shared_session(), stored(), slotID, offset, mobKind, ppSourceInfo);
  }

 protected:
  ~Mob() override = default;

  // A slot with a clip that leads to a slot of another mob, or nowhere.
  HRESULT append_clip_slot(const aafRational_t& rate, aafSlotID_t slot_id,
                           aafCharacter_constptr name, IAAFDataDef* data_def,
                           const aafSourceRef_t& reference, aafLength_t length) {
    StoredObject* clip = nullptr;
    if (const HRESULT r = create_stored(session(), ClassIndex::SourceClip, clip); r < 0) return r;
    Ref<IAAFSourceClip> clip_object;
    Ref<IAAFSegment> segment;
    Ref<IAAFTimelineMobSlot> slot;
    if (const HRESULT r = session().hand_out(*clip, clip_object.put()); r < 0) return r;
    if (const HRESULT r = session().hand_out(*clip, segment.put()); r < 0) return r;
    if (const HRESULT r = clip_object->Initialize(data_def, length, reference); r < 0) return r;
    return AppendNewTimelineSlot(rate, segment.get(), slot_id, name, 0, slot.put());
  }

 private:
  HRESULT append_slot(ClassIndex index, IAAFSegment* segment, aafSlotID_t id,
                      aafCharacter_constptr name, StoredObject*& slot) {
    StoredObject* taken = nullptr;
    StoredObject* made = nullptr;
    if (const HRESULT r = take_object(segment, taken); r < 0) return r;
    if (const HRESULT r = create_stored(session(), index, made); r < 0) return r;
    const HRESULT steps[] = {set_value(*made, pid::MobSlot_SlotID, id),
                             set_text(*made, pid::MobSlot_SlotName, from_wide(name)),
                             made->set_object(pid::MobSlot_Segment, *taken),
                             stored().append(pid::Mob_Slots, *made)};
    for (const HRESULT r : steps) {
      if (r < 0) return r;
    }
    slot = made;
    return AAFRESULT_SUCCESS;
  }
};

class CompositionMob final : public Adds<Mob, IAAFCompositionMob, IAAFCompositionMob2> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafCharacter_constptr pName) override { return SetName(pName); }

  HRESULT GetDefaultFade(aafDefaultFade_t* pResult) override {
    if (!pResult) return AAFRESULT_NULL_PARAM;
    aafLength_t length = 0;
    std::uint8_t type = 0;
    aafRational_t unit{};
    const HRESULT steps[] = {get_value(stored(), pid::CompositionMob_DefaultFadeLength, length),
                             get_value(stored(), pid::CompositionMob_DefFadeType, type),
                             get_value(stored(), pid::CompositionMob_DefFadeEditUnit, unit)};
    for (const HRESULT r : steps) {
      if (r < 0) return r;
    }
    if (type == kAAFFadeNone) {
      pResult->valid = kAAFFalse;
      return AAFRESULT_SUCCESS;
    }
    *pResult = {length, type, unit, kAAFTrue};
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetDefaultFade(aafLength_t fadeLength, aafFadeType_t fadeType,
                         aafRational_t fadeEditUnit) override {
    if (fadeType < kAAFFadeNone || fadeType > kAAFFadeLinearPower) return AAFRESULT_INVALID_PARAM;
    const HRESULT steps[] = {write_same(pid::CompositionMob_DefaultFadeLength, fadeLength),
                             write<std::uint8_t>(pid::CompositionMob_DefFadeType, fadeType),
                             write_same(pid::CompositionMob_DefFadeEditUnit, fadeEditUnit)};
    for (const HRESULT r : steps) {
      if (r < 0) return r;
    }
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetRendering(aafMobID_constref mobID) override {
    return write_same(pid::CompositionMob_Rendering, mobID);
  }
  HRESULT GetRendering(aafMobID_t* pMobID) override {
    return read_same(pid::CompositionMob_Rendering, pMobID);
  }

 private:
  ~CompositionMob() override = default;
};

class MasterMob final : public Adds<Mob, IAAFMasterMob, IAAFMasterMob2, IAAFMasterMob3> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }

  // A slot with a clip that holds the whole of the source mob's slot.
  HRESULT AddMasterSlot(IAAFDataDef* pDataDef, aafSlotID_t sourceSlotID, IAAFSourceMob* pSourceMob,
                        aafSlotID_t masterSlotID, aafCharacter_constptr pSlotName) override {
    if (!pDataDef || !pSourceMob || !pSlotName) return AAFRESULT_NULL_PARAM;
    AafObject* source = AafObject::behind(pSourceMob);
    if (!source) return AAFRESULT_INVALID_OBJ;
    StoredObject* slot = nullptr;
    StoredObject* segment = nullptr;
    aafRational_t rate{};
    aafSourceRef_t reference{};
    aafLength_t length = 0;
    reference.sourceSlotID = sourceSlotID;
    HRESULT r = find_slot(source->stored(), sourceSlotID, slot);
    if (r < 0) return r;
    if (r = edit_rate_of(*slot, rate); r < 0) return r;
    if (r = slot->get_object(pid::MobSlot_Segment, segment); r < 0) return r;
    if (r = get_value(*segment, pid::Component_Length, length); r < 0) return r;
    r = get_value(source->stored(), pid::Mob_MobID, reference.sourceID);
    if (r < 0) return r;
    return append_clip_slot(rate, masterSlotID, pSlotName, pDataDef, reference, length);
  }

  HRESULT CreateEssence(aafSlotID_t masterSlotID, IAAFDataDef* pMediaKind, aafUID_constref codecID,
                        aafRational_t editRate, aafRational_t samplerate, aafCompressEnable_t,
                        IAAFLocator* destination, aafUID_constref fileFormat,
                        IAAFEssenceAccess** access) override {
    if (!pMediaKind || !access) return AAFRESULT_NULL_PARAM;
    const EssenceRequest request = {masterSlotID, pMediaKind,  codecID,   editRate,
                                    samplerate,   destination, fileFormat};
    return create_essence(*this, *static_cast<NotOffered<IAAFMasterMob>*>(this), request, access);
  }

 private:
  ~MasterMob() override = default;
};

class SourceMob final : public Adds<Mob, IAAFSourceMob> {
 public:
  using Adds::Adds;

  HRESULT Initialize() override { return AAFRESULT_SUCCESS; }
  HRESULT GetEssenceDescriptor(IAAFEssenceDescriptor** ppEssence) override {
    return read_object(pid::SourceMob_EssenceDescription, ppEssence);
  }
  HRESULT SetEssenceDescriptor(IAAFEssenceDescriptor* pEssence) override {
    return write_object(pid::SourceMob_EssenceDescription, pEssence);
  }
  HRESULT AddNilReference(aafSlotID_t slotID, aafLength_t length, IAAFDataDef* pDataDef,
                          aafRational_t editRate) override {
    return append_clip_slot(editRate, slotID, L"", pDataDef, {}, length);
  }
  HRESULT NewPhysSourceRef(aafRational_t editrate, aafSlotID_t aMobSlot, IAAFDataDef* pEssenceKind,
                           aafSourceRef_t ref, aafLength_t srcRefLength) override {
    return append_clip_slot(editrate, aMobSlot, L"", pEssenceKind, ref, srcRefLength);
  }
  HRESULT AppendTimecodeSlot(aafRational_t editrate, aafInt32 slotID, aafTimecode_t startTC,
                             aafFrameLength_t length32) override {
    StoredObject* timecode = nullptr;
    if (const HRESULT r = create_stored(session(), ClassIndex::Timecode, timecode); r < 0) return r;
    Ref<IAAFTimecode> object;
    Ref<IAAFSegment> segment;
    Ref<IAAFTimelineMobSlot> slot;
    if (const HRESULT r = session().hand_out(*timecode, object.put()); r < 0) return r;
    if (const HRESULT r = session().hand_out(*timecode, segment.put()); r < 0) return r;
    if (const HRESULT r = object->Initialize(length32, &startTC); r < 0) return r;
    return AppendNewTimelineSlot(editrate, segment.get(), static_cast<aafSlotID_t>(slotID), L"", 0,
                                 slot.put());
  }

 private:
  ~SourceMob() override = default;
};

class TaggedValue final : public Adds<AafObject, IAAFTaggedValue> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafCharacter_constptr pName, IAAFTypeDef* pTypeDef, aafUInt32 valueSize,
                     aafDataBuffer_t pValue) override {
    if (!pName || !pTypeDef || !pValue) return AAFRESULT_NULL_PARAM;
    Ref<IAAFMetaDefinition> type;
    aafUID_t id{};
    HRESULT r =
        pTypeDef->QueryInterface(IID_IAAFMetaDefinition, reinterpret_cast<void**>(type.put()));
    if (r < 0) return r;
    if (r = type->GetAUID(&id); r < 0) return r;
    if (r = write_text(pid::TaggedValue_Name, pName); r < 0) return r;
    return write_value(id, valueSize, pValue);
  }
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return read_text(pid::TaggedValue_Name, pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::TaggedValue_Name, pBufSize);
  }
  HRESULT GetTypeDefinition(IAAFTypeDef** ppTypeDef) override {
    return read_indirect_type(pid::TaggedValue_Value, ppTypeDef);
  }

  // A text is passed in wide characters, everything else as its bytes.
  HRESULT GetValue(aafUInt32 valueSize, aafDataBuffer_t pValue, aafUInt32* bytesRead) override {
    if (!pValue || !bytesRead) return AAFRESULT_NULL_PARAM;
    std::u16string text;
    if (!read_text_value(text)) {
      return read_indirect(pid::TaggedValue_Value, valueSize, pValue, bytesRead);
    }
    const std::wstring wide = to_wide(text);
    const std::size_t size = (wide.size() + 1) * sizeof(aafCharacter);
    if (size > valueSize) return AAFRESULT_SMALLBUF;
    std::memcpy(pValue, wide.c_str(), size);
    *bytesRead = static_cast<aafUInt32>(size);
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetValueBufLen(aafUInt32* pLen) override {
    if (!pLen) return AAFRESULT_NULL_PARAM;
    std::u16string text;
    if (!read_text_value(text)) return read_indirect_size(pid::TaggedValue_Value, pLen);
    *pLen = wide_bytes(text);
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetValue(aafUInt32 valueSize, aafDataBuffer_t pValue) override {
    if (!pValue) return AAFRESULT_NULL_PARAM;
    IndirectValue value;
    const HRESULT r = aafobj::get_indirect(stored(), pid::TaggedValue_Value, value);
    return r < 0 ? r : write_value(value.type, valueSize, pValue);
  }

 private:
  ~TaggedValue() override = default;

  HRESULT write_value(const aafUID_t& type, aafUInt32 size, const aafUInt8* bytes) {
    if (type != row_of(TypeIndex::String).identifier) {
      return write_indirect(pid::TaggedValue_Value, type, size, bytes);
    }
    std::wstring wide(size / sizeof(aafCharacter), L'\0');
    std::memcpy(wide.data(), bytes, wide.size() * sizeof(aafCharacter));
    wide.resize(std::min(wide.size(), wide.find(L'\0')));
    return set_indirect(stored(), pid::TaggedValue_Value, {type, stored_text(from_wide(wide))});
  }

  bool read_text_value(std::u16string& text) const {
    IndirectValue value;
    if (aafobj::get_indirect(stored(), pid::TaggedValue_Value, value) < 0) return false;
    if (value.type != row_of(TypeIndex::String).identifier) return false;
    text.resize(value.bytes.size() / 2);
    std::memcpy(text.data(), value.bytes.data(), text.size() * 2);
    text.resize(std::min(text.size(), text.find(u'\0')));
    return true;
  }
};

class KLVData final : public Adds<AafObject, IAAFKLVData> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafUID_t key, aafUInt32 length, aafDataBuffer_t pValue) override {
    return write_indirect(pid::KLVData_Value, key, length, pValue);
  }
  HRESULT GetKey(aafUID_t* pKey) override {
    if (!pKey) return AAFRESULT_NULL_PARAM;
    IndirectValue value;
    const HRESULT r = aafobj::get_indirect(stored(), pid::KLVData_Value, value);
    if (r >= 0) *pKey = value.type;
    return r;
  }
  HRESULT GetValue(aafUInt32 valueSize, aafDataBuffer_t pValue, aafUInt32* bytesRead) override {
    return read_indirect(pid::KLVData_Value, valueSize, pValue, bytesRead);
  }
  HRESULT GetValueBufLen(aafUInt32* pLen) override {
    return read_indirect_size(pid::KLVData_Value, pLen);
  }
  HRESULT SetValue(aafUInt32 valueSize, aafDataBuffer_t pValue) override {
    return rewrite_indirect(pid::KLVData_Value, valueSize, pValue);
  }

 private:
  ~KLVData() override = default;
};

}  // namespace

HRESULT begin_mob(StoredObject& mob) {
  const aafTimeStamp_t now = time_now();
  const HRESULT steps[] = {set_value(mob, pid::Mob_MobID, new_mob_id()),
                           set_value(mob, pid::Mob_CreationTime, now),
                           set_value(mob, pid::Mob_LastModified, now)};
  for (const HRESULT r : steps) {
    if (r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

AafObject* make_mob_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                           StoredObject& stored) {
  switch (index) {
    case ClassIndex::Mob:
      return new Mob(session, stored);
    case ClassIndex::CompositionMob:
      return new CompositionMob(session, stored);
    case ClassIndex::MasterMob:
      return new MasterMob(session, stored);
    case ClassIndex::SourceMob:
      return new SourceMob(session, stored);
    case ClassIndex::MobSlot:
      return new MobSlot(session, stored);
    case ClassIndex::TimelineMobSlot:
      return new TimelineMobSlot(session, stored);
    case ClassIndex::EventMobSlot:
      return new EventMobSlot(session, stored);
    case ClassIndex::StaticMobSlot:
      return new StaticMobSlot(session, stored);
    case ClassIndex::TaggedValue:
      return new TaggedValue(session, stored);
    case ClassIndex::KLVData:
      return new KLVData(session, stored);
    default:
      return nullptr;
  }
}

}  // namespace aafobj
