#include "aafobj/objects/component_objects.h"

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/objects/not_offered_component.h"
#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/not_offered_mob.h"
#include "aafobj/objects/object_factory.h"
#include "aafobj/objects/stored_queries.h"
#include "aafobj/objects/tagged_lists.h"

namespace aafobj {
namespace {

constexpr std::uint16_t operation_set = pid::Dictionary_OperationDefinitions;
constexpr std::uint16_t data_set = pid::Dictionary_DataDefinitions;

class Component : public Adds<AafObject, IAAFComponent, IAAFComponent2> {
 public:
  using Adds::Adds;

  HRESULT SetLength(aafLength_constref length) override {
    return write_same(pid::Component_Length, length);
  }
  HRESULT GetLength(aafLength_t* pLength) override {
    return read_same(pid::Component_Length, pLength);
  }
  HRESULT SetDataDef(IAAFDataDef* pDataDef) override {
    return write_definition(pid::Component_DataDefinition, pDataDef);
  }
  HRESULT GetDataDef(IAAFDataDef** ppDatadef) override {
    return read_definition(pid::Component_DataDefinition, data_set, ppDatadef);
  }
  HRESULT AppendKLVData(IAAFKLVData* pData) override {
    return append(pid::Component_KLVData, pData);
  }
  HRESULT CountKLVData(aafUInt32* pNumData) override {
    return count(pid::Component_KLVData, pNumData);
  }
  HRESULT GetKLVData(IEnumAAFKLVData** ppEnum) override {
    return enumerate<IEnumAAFKLVData, IAAFKLVData>(pid::Component_KLVData, ppEnum);
  }
  HRESULT RemoveKLVData(IAAFKLVData* pData) override {
    return remove_element(pid::Component_KLVData, pData);
  }
  HRESULT AppendComment(aafCharacter_constptr pName, aafCharacter_constptr pValue) override {
    return append_tagged_text(stored(), pid::Component_UserComments, pName, pValue);
  }
  HRESULT CountComments(aafUInt32* pNumComments) override {
    return count(pid::Component_UserComments, pNumComments);
  }
  HRESULT GetComments(IEnumAAFTaggedValues** ppEnum) override {
    return enumerate<IEnumAAFTaggedValues, IAAFTaggedValue>(pid::Component_UserComments, ppEnum);
  }
  HRESULT RemoveComment(IAAFTaggedValue* pComment) override {
    return remove_element(pid::Component_UserComments, pComment);
  }
  HRESULT AppendAttribute(aafCharacter_constptr pName, aafCharacter_constptr pValue) override {
    return append_tagged_text(stored(), pid::Component_Attributes, pName, pValue);
  }
  HRESULT CountAttributes(aafUInt32* pNumAttributes) override {
    return count(pid::Component_Attributes, pNumAttributes);
  }
  HRESULT GetAttributes(IEnumAAFTaggedValues** ppEnum) override {
    return enumerate<IEnumAAFTaggedValues, IAAFTaggedValue>(pid::Component_Attributes, ppEnum);
  }
  HRESULT RemoveAttribute(IAAFTaggedValue* pAttribute) override {
    return remove_element(pid::Component_Attributes, pAttribute);
  }

 protected:
  ~Component() override = default;

  // Data definition and length, as most Initialize operations set them.
  HRESULT begin(IAAFDataDef* data_def, aafLength_t length) {
    if (const HRESULT r = write_definition(pid::Component_DataDefinition, data_def); r < 0) {
      return r;
    }
    return write_same(pid::Component_Length, length);
  }
};

class Segment : public Adds<Component, IAAFSegment> {
 public:
  using Adds::Adds;

 protected:
  ~Segment() override = default;
};

class Filler final : public Adds<Segment, IAAFFiller> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFDataDef* pDataDef, aafLength_t length) override {
    return begin(pDataDef, length);
  }

 private:
  ~Filler() override = default;
};

// A sequence's own length follows its components: a transition takes from it what it overlaps.
class Sequence final : public Adds<Segment, IAAFSequence> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFDataDef* pDataDef) override { return begin(pDataDef, 0); }

  HRESULT AppendComponent(IAAFComponent* pComponent) override {
    StoredObject* component = nullptr;
    if (const HRESULT r = take_object(pComponent, component); r < 0) return r;
    std::size_t count = 0;
    if (const HRESULT r = stored().count_elements(pid::Sequence_Components, count); r < 0) return r;
    StoredObject* before = nullptr;
    if (count > 0) {
      const HRESULT r = stored().element_at(pid::Sequence_Components, count - 1, before);
      if (r < 0) return r;
    }
    if (const HRESULT r = check_neighbours(before, *component); r < 0) return r;
    if (const HRESULT r = stored().insert_at(pid::Sequence_Components, count, *component); r < 0) {
      return r;
    }
    return add_length(*component);
  }
  HRESULT PrependComponent(IAAFComponent* pComponent) override {
    return InsertComponentAt(0, pComponent);
  }
  HRESULT InsertComponentAt(aafUInt32 index, IAAFComponent* pComponent) override {
    StoredObject* component = nullptr;
    if (const HRESULT r = take_object(pComponent, component); r < 0) return r;
    if (const HRESULT r = stored().insert_at(pid::Sequence_Components, index, *component); r < 0) {
      return r;
    }
    return add_length(*component);
  }
  HRESULT GetComponentAt(aafUInt32 index, IAAFComponent** ppComponent) override {
    return element_at(pid::Sequence_Components, index, ppComponent);
  }
  HRESULT RemoveComponentAt(aafUInt32 index) override {
    StoredObject* component = nullptr;
    HRESULT r = stored().element_at(pid::Sequence_Components, index, component);
    if (r < 0) return r;
    const aafLength_t length = signed_length(*component);
    if (r = stored().remove_at(pid::Sequence_Components, index); r < 0) return r;
    return change_length(saturating_subtract(0, length));
  }
  HRESULT CountComponents(aafUInt32* pResult) override {
    return count(pid::Sequence_Components, pResult);
  }
  HRESULT GetComponents(IEnumAAFComponents** ppEnum) override {
    return enumerate<IEnumAAFComponents, IAAFComponent>(pid::Sequence_Components, ppEnum);
  }

 private:
  ~Sequence() override = default;

  // A transition stands between two components that are at least as long as it is.
  static HRESULT check_neighbours(StoredObject* before, StoredObject& component) {
    const bool is_transition = component.is_kind_of(ClassIndex::Transition);
    const bool follows_transition = before && before->is_kind_of(ClassIndex::Transition);
    if (is_transition && !before) return AAFRESULT_LEADING_TRAN;
    if (is_transition && follows_transition) return AAFRESULT_ADJACENT_TRAN;
    if (!before || is_transition == follows_transition) return AAFRESULT_SUCCESS;
    aafLength_t first = 0;
    aafLength_t second = 0;
    if (get_value(*before, pid::Component_Length, first) < 0) return AAFRESULT_SUCCESS;
    if (get_value(component, pid::Component_Length, second) < 0) return AAFRESULT_SUCCESS;
    const bool is_enough = is_transition ? first >= second : second >= first;
    return is_enough ? AAFRESULT_SUCCESS : AAFRESULT_INSUFF_TRAN_MATERIAL;
  }

  // What the component adds to a sequence; 0 for one without a length.
  static aafLength_t signed_length(StoredObject& component) {
    aafLength_t length = 0;
    if (get_value(component, pid::Component_Length, length) < 0) return 0;
    return component.is_kind_of(ClassIndex::Transition) ? saturating_subtract(0, length) : length;
  }

  HRESULT add_length(StoredObject& component) { return change_length(signed_length(component)); }

  HRESULT change_length(aafLength_t change) {
    aafLength_t length = 0;
    const HRESULT r = get_value(stored(), pid::Component_Length, length);
    if (r < 0 && r != AAFRESULT_PROP_NOT_PRESENT) return r;
    return write_same(pid::Component_Length, saturating_add(length, change));
  }
};

class SourceReference : public Adds<Segment, IAAFSourceReference, IAAFSourceReference2> {
 public:
  using Adds::Adds;

  HRESULT GetSourceID(aafMobID_t* pSourceID) override {
    return read_same(pid::SourceReference_SourceID, pSourceID);
  }
  HRESULT SetSourceID(aafMobID_constref sourceID) override {
    return write_same(pid::SourceReference_SourceID, sourceID);
  }
  HRESULT GetSourceMobSlotID(aafSlotID_t* pMobSlotID) override {
    return read_same(pid::SourceReference_SourceMobSlotID, pMobSlotID);
  }
  HRESULT SetSourceMobSlotID(aafSlotID_t mobSlotID) override {
    return write_same(pid::SourceReference_SourceMobSlotID, mobSlotID);
  }
  HRESULT SetChannelIDs(aafUInt32 numberElements, aafUInt32* pChannelIDs) override {
    return write_numbers(pid::SourceReference_ChannelIDs, numberElements, pChannelIDs);
  }
  HRESULT GetChannelIDs(aafUInt32 numberElements, aafUInt32* pChannelIDs) override {
    return read_numbers(pid::SourceReference_ChannelIDs, numberElements, pChannelIDs);
  }
  HRESULT GetChannelIDsSize(aafUInt32* pSize) override {
    return read_byte_count(pid::SourceReference_ChannelIDs, pSize);
  }
  HRESULT SetMonoSourceSlotIDs(aafUInt32 numberElements, aafUInt32* pMonoSourceSlotIDs) override {
    return write_numbers(pid::SourceReference_MonoSourceSlotIDs, numberElements,
                         pMonoSourceSlotIDs);
  }
  HRESULT GetMonoSourceSlotIDs(aafUInt32 numberElements, aafUInt32* pMonoSourceSlotIDs) override {
    return read_numbers(pid::SourceReference_MonoSourceSlotIDs, numberElements, pMonoSourceSlotIDs);
  }
  HRESULT GetMonoSourceSlotIDsSize(aafUInt32* pSize) override {
    return read_byte_count(pid::SourceReference_MonoSourceSlotIDs, pSize);
  }

 protected:
  ~SourceReference() override = default;

 private:
  HRESULT write_numbers(std::uint16_t pid, aafUInt32 count, const aafUInt32* numbers) {
    if (!numbers) return AAFRESULT_NULL_PARAM;
    return stored().set_data(pid, std::as_bytes(std::span(numbers, count)));
  }
  HRESULT read_numbers(std::uint16_t pid, aafUInt32 count, aafUInt32* numbers) const {
    if (!numbers) return AAFRESULT_NULL_PARAM;
    std::span<const std::byte> bytes;
    if (const HRESULT r = stored().get_data(pid, bytes); r < 0) return r;
    if (bytes.size() > std::size_t{count} * sizeof(aafUInt32)) return AAFRESULT_SMALLBUF;
    if (!bytes.empty()) std::memcpy(numbers, bytes.data(), bytes.size());
    return AAFRESULT_SUCCESS;
  }
};

class SourceClip : public Adds<SourceReference, IAAFSourceClip> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFDataDef* pDataDef, aafLength_constref length,
                     aafSourceRef_t sourceRef) override {
    if (const HRESULT r = begin(pDataDef, length); r < 0) return r;
    return SetSourceReference(sourceRef);
  }

  // All four values are there or none counts. A length above 0 is what "present" means.
  HRESULT GetFade(aafLength_t* pFadeInLen, aafFadeType_t* pFadeInType, aafBoolean_t* pFadeInPresent,
                  aafLength_t* pFadeOutLen, aafFadeType_t* pFadeOutType,
                  aafBoolean_t* pFadeOutPresent) override {
    if (!pFadeInLen || !pFadeInType || !pFadeInPresent || !pFadeOutLen || !pFadeOutType ||
        !pFadeOutPresent) {
      return AAFRESULT_NULL_PARAM;
    }
    aafLength_t in = 0;
    aafLength_t out = 0;
    std::uint8_t in_type = 0;
    std::uint8_t out_type = 0;
    const HRESULT steps[] = {get_value(stored(), pid::SourceClip_FadeInLength, in),
                             get_value(stored(), pid::SourceClip_FadeInType, in_type),
                             get_value(stored(), pid::SourceClip_FadeOutLength, out),
                             get_value(stored(), pid::SourceClip_FadeOutType, out_type)};
    for (const HRESULT r : steps) {
      if (r < 0) return r;
    }
    *pFadeInLen = in;
    *pFadeInType = in_type;
    *pFadeInPresent = in > 0 ? kAAFTrue : kAAFFalse;
    *pFadeOutLen = out;
    *pFadeOutType = out_type;
    *pFadeOutPresent = out > 0 ? kAAFTrue : kAAFFalse;
    return AAFRESULT_SUCCESS;
  }

  HRESULT ResolveRef(IAAFMob** ppMob) override {
    if (!ppMob) return AAFRESULT_NULL_PARAM;
    aafMobID_t id{};
    StoredObject* mob = nullptr;
    if (const HRESULT r = GetSourceID(&id); r < 0) return r;
    if (const HRESULT r = find_mob(session().file(), id, mob); r < 0) return r;
    return session().hand_out(*mob, ppMob);
  }

  HRESULT GetSourceReference(aafSourceRef_t* pSourceRef) override {
    if (!pSourceRef) return AAFRESULT_NULL_PARAM;
    aafSourceRef_t reference{};
    if (const HRESULT r = read_source_reference(stored(), reference); r < 0) return r;
    *pSourceRef = reference;
    return AAFRESULT_SUCCESS;
  }

  HRESULT SetFade(aafInt32 fadeInLen, aafFadeType_t fadeInType, aafInt32 fadeOutLen,
                  aafFadeType_t fadeOutType) override {
    if (fadeInLen < 0 || fadeOutLen < 0) return AAFRESULT_INVALID_PARAM;
    const HRESULT steps[] = {write<aafLength_t>(pid::SourceClip_FadeInLength, fadeInLen),
                             write<std::uint8_t>(pid::SourceClip_FadeInType, fadeInType),
                             write<aafLength_t>(pid::SourceClip_FadeOutLength, fadeOutLen),
                             write<std::uint8_t>(pid::SourceClip_FadeOutType, fadeOutType)};
    for (const HRESULT r : steps) {
      if (r < 0) return r;
    }
    return AAFRESULT_SUCCESS;
  }

  HRESULT SetSourceReference(aafSourceRef_t sourceRef) override {
    if (const HRESULT r = SetSourceID(sourceRef.sourceID); r < 0) return r;
    if (const HRESULT r = SetSourceMobSlotID(sourceRef.sourceSlotID); r < 0) return r;
    return write_same(pid::SourceClip_StartTime, sourceRef.startTime);
  }

 protected:
  ~SourceClip() override = default;
};

class Transition final : public Adds<Component, IAAFTransition> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFDataDef* pDataDef, aafLength_t length, aafPosition_t cutPoint,
                     IAAFOperationGroup* op) override {
    if (const HRESULT r = begin(pDataDef, length); r < 0) return r;
    if (const HRESULT r = SetCutPoint(cutPoint); r < 0) return r;
    return SetOperationGroup(op);
  }
  HRESULT GetCutPoint(aafPosition_t* cutPoint) override {
    return read_same(pid::Transition_CutPoint, cutPoint);
  }
  HRESULT GetOperationGroup(IAAFOperationGroup** groupObj) override {
    return read_object(pid::Transition_OperationGroup, groupObj);
  }
  HRESULT SetCutPoint(aafPosition_t cutPoint) override {
    return write_same(pid::Transition_CutPoint, cutPoint);
  }
  HRESULT SetOperationGroup(IAAFOperationGroup* opgroup) override {
    return write_object(pid::Transition_OperationGroup, opgroup);
  }

 private:
  ~Transition() override = default;
};

class OperationGroup final : public Adds<Segment, IAAFOperationGroup> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFDataDef* pDataDef, aafLength_t length,
                     IAAFOperationDef* operationDef) override {
    if (const HRESULT r = begin(pDataDef, length); r < 0) return r;
    return SetOperationDefinition(operationDef);
  }
  HRESULT GetOperationDefinition(IAAFOperationDef** ppOperationDef) override {
    return read_definition(pid::OperationGroup_Operation, operation_set, ppOperationDef);
  }
  HRESULT SetOperationDefinition(IAAFOperationDef* pOperationDef) override {
    return write_definition(pid::OperationGroup_Operation, pOperationDef);
  }
  HRESULT GetRender(IAAFSourceReference** ppSourceRef) override {
    return read_object(pid::OperationGroup_Rendering, ppSourceRef);
  }
  HRESULT SetRender(IAAFSourceReference* ppSourceRef) override {
    return write_object(pid::OperationGroup_Rendering, ppSourceRef);
  }
  HRESULT IsATimeWarp(aafBoolean_t* pIsTimeWarp) override {
    Ref<IAAFOperationDef> definition;
    if (const HRESULT r = GetOperationDefinition(definition.put()); r < 0) return r;
    return definition->IsTimeWarp(pIsTimeWarp);
  }
  HRESULT IsValidTranOperation(aafBoolean_t* pValidTransition) override {
    if (!pValidTransition) return AAFRESULT_NULL_PARAM;
    Ref<IAAFOperationDef> definition;
    aafInt32 inputs = 0;
    if (const HRESULT r = GetOperationDefinition(definition.put()); r < 0) return r;
    if (const HRESULT r = definition->GetNumberInputs(&inputs); r < 0) return r;
    *pValidTransition = inputs == 2 ? kAAFTrue : kAAFFalse;
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetBypassOverride(aafUInt32* pBypassOverride) override {
    return read_same(pid::OperationGroup_BypassOverride, pBypassOverride);
  }
  HRESULT SetBypassOverride(aafUInt32 bypassOverride) override {
    return write_same(pid::OperationGroup_BypassOverride, bypassOverride);
  }
  HRESULT CountSourceSegments(aafUInt32* pResult) override {
    return count(pid::OperationGroup_InputSegments, pResult);
  }
  HRESULT AppendInputSegment(IAAFSegment* pSegment) override {
    return append(pid::OperationGroup_InputSegments, pSegment);
  }
  HRESULT PrependInputSegment(IAAFSegment* pSegment) override {
    return prepend(pid::OperationGroup_InputSegments, pSegment);
  }
  HRESULT InsertInputSegmentAt(aafUInt32 index, IAAFSegment* pSegment) override {
    return insert_at(pid::OperationGroup_InputSegments, index, pSegment);
  }
  HRESULT GetInputSegmentAt(aafUInt32 index, IAAFSegment** ppInputSegment) override {
    return element_at(pid::OperationGroup_InputSegments, index, ppInputSegment);
  }
  HRESULT RemoveInputSegmentAt(aafUInt32 index) override {
    return remove_at(pid::OperationGroup_InputSegments, index);
  }

  HRESULT CountParameters(aafUInt32* pResult) override {
    return count(pid::OperationGroup_Parameters, pResult);
  }
  HRESULT AddParameter(IAAFParameter* pParameter) override {
    StoredObject* parameter = nullptr;
    aafUID_t id{};
    if (const HRESULT r = take_object(pParameter, parameter); r < 0) return r;
    if (const HRESULT r = get_value(*parameter, pid::Parameter_Definition, id); r < 0) return r;
    return stored().insert_keyed(pid::OperationGroup_Parameters, StoredKey(id), *parameter);
  }
  HRESULT GetParameters(IEnumAAFParameters** ppEnum) override {
    return enumerate<IEnumAAFParameters, IAAFParameter>(pid::OperationGroup_Parameters, ppEnum);
  }
  // By what the parameter itself says of its definition, which need not be in the Dictionary.
  HRESULT LookupParameter(aafArgIDType_constref argID, IAAFParameter** ppParameter) override {
    if (!ppParameter) return AAFRESULT_NULL_PARAM;
    std::vector<StoredObject*> parameters;
    if (const HRESULT r = elements(pid::OperationGroup_Parameters, parameters); r < 0) return r;
    for (StoredObject* parameter : parameters) {
      aafUID_t id{};
      if (get_value(*parameter, pid::Parameter_Definition, id) < 0 || id != argID) continue;
      return session().hand_out(*parameter, ppParameter);
    }
    return AAFRESULT_NO_MORE_OBJECTS;
  }

 private:
  ~OperationGroup() override = default;
};

class NestedScope final : public Adds<Segment, IAAFNestedScope> {
 public:
  using Adds::Adds;

  HRESULT AppendSegment(IAAFSegment* pSegment) override {
    return append(pid::NestedScope_Slots, pSegment);
  }
  HRESULT PrependSegment(IAAFSegment* pSegment) override {
    return prepend(pid::NestedScope_Slots, pSegment);
  }
  HRESULT InsertSegmentAt(aafUInt32 index, IAAFSegment* pSegment) override {
    return insert_at(pid::NestedScope_Slots, index, pSegment);
  }
  HRESULT RemoveSegmentAt(aafUInt32 index) override {
    return remove_at(pid::NestedScope_Slots, index);
  }
  HRESULT CountSegments(aafUInt32* pResult) override {
    return count(pid::NestedScope_Slots, pResult);
  }
  HRESULT GetSegmentAt(aafUInt32 index, IAAFSegment** ppSegment) override {
    return element_at(pid::NestedScope_Slots, index, ppSegment);
  }
  HRESULT GetSegments(IEnumAAFSegments** ppEnum) override {
    return enumerate<IEnumAAFSegments, IAAFSegment>(pid::NestedScope_Slots, ppEnum);
  }

 private:
  ~NestedScope() override = default;
};

class ScopeReference final : public Adds<Segment, IAAFScopeReference> {
 public:
  using Adds::Adds;

  HRESULT Create(aafUInt32 RelativeScope, aafUInt32 RelativeSlot) override {
    const HRESULT r = write_same(pid::ScopeReference_RelativeScope, RelativeScope);
    return r < 0 ? r : write_same(pid::ScopeReference_RelativeSlot, RelativeSlot);
  }
  HRESULT Initialize(IAAFDataDef* pDataDef, aafUInt32 RelativeScope,
                     aafUInt32 RelativeSlot) override {
    const HRESULT r = write_definition(pid::Component_DataDefinition, pDataDef);
    return r < 0 ? r : Create(RelativeScope, RelativeSlot);
  }
  HRESULT GetRelativeScope(aafUInt32* pnRelativeScope) override {
    return read_same(pid::ScopeReference_RelativeScope, pnRelativeScope);
  }
  HRESULT GetRelativeSlot(aafUInt32* pnRelativeSlot) override {
    return read_same(pid::ScopeReference_RelativeSlot, pnRelativeSlot);
  }

 private:
  ~ScopeReference() override = default;
};

class Selector final : public Adds<Segment, IAAFSelector> {
 public:
  using Adds::Adds;

  HRESULT GetSelectedSegment(IAAFSegment** ppSelSegment) override {
    return read_object(pid::Selector_Selected, ppSelSegment);
  }
  HRESULT SetSelectedSegment(IAAFSegment* pSelSegment) override {
    return write_object(pid::Selector_Selected, pSelSegment);
  }
  HRESULT AppendAlternateSegment(IAAFSegment* pSegment) override {
    return append(pid::Selector_Alternates, pSegment);
  }
  HRESULT GetNumAlternateSegments(aafInt32* pNumSegments) override {
    if (!pNumSegments) return AAFRESULT_NULL_PARAM;
    aafUInt32 number = 0;
    const HRESULT r = count(pid::Selector_Alternates, &number);
    if (r >= 0) *pNumSegments = static_cast<aafInt32>(number);
    return r;
  }
  HRESULT EnumAlternateSegments(IEnumAAFSegments** ppEnum) override {
    return enumerate<IEnumAAFSegments, IAAFSegment>(pid::Selector_Alternates, ppEnum);
  }
  HRESULT RemoveAlternateSegment(IAAFSegment* pSegment) override {
    return remove_element(pid::Selector_Alternates, pSegment);
  }

 private:
  ~Selector() override = default;
};

class EssenceGroup final : public Adds<Segment, IAAFEssenceGroup> {
 public:
  using Adds::Adds;

  HRESULT SetStillFrame(IAAFSourceClip* pStillFrame) override {
    return write_object(pid::EssenceGroup_StillFrame, pStillFrame);
  }
  HRESULT GetStillFrame(IAAFSourceClip** ppStillFrame) override {
    return read_object(pid::EssenceGroup_StillFrame, ppStillFrame);
  }
  HRESULT AppendChoice(IAAFSegment* pChoice) override {
    return append(pid::EssenceGroup_Choices, pChoice);
  }
  HRESULT PrependChoice(IAAFSegment* pChoice) override {
    return prepend(pid::EssenceGroup_Choices, pChoice);
  }
  HRESULT InsertChoiceAt(aafUInt32 index, IAAFSegment* pChoice) override {
    return insert_at(pid::EssenceGroup_Choices, index, pChoice);
  }
  HRESULT CountChoices(aafUInt32* pCount) override {
    return count(pid::EssenceGroup_Choices, pCount);
  }
  HRESULT GetChoiceAt(aafUInt32 index, IAAFSegment** ppChoice) override {
    return element_at(pid::EssenceGroup_Choices, index, ppChoice);
  }
  HRESULT RemoveChoiceAt(aafUInt32 index) override {
    return remove_at(pid::EssenceGroup_Choices, index);
  }

 private:
  ~EssenceGroup() override = default;
};

class Pulldown final : public Adds<Segment, IAAFPulldown> {
 public:
  using Adds::Adds;

  HRESULT GetInputSegment(IAAFSegment** ppInputSegment) override {
    return read_object(pid::Pulldown_InputSegment, ppInputSegment);
  }
  HRESULT SetInputSegment(IAAFSegment* pInputSegment) override {
    return write_object(pid::Pulldown_InputSegment, pInputSegment);
  }
  HRESULT GetPulldownKind(aafPulldownKind_t* pPulldownKind) override {
    return read<std::uint8_t>(pid::Pulldown_PulldownKind, pPulldownKind);
  }
  HRESULT SetPulldownKind(aafPulldownKind_t pulldownKind) override {
    return write<std::uint8_t>(pid::Pulldown_PulldownKind, pulldownKind);
  }
  HRESULT GetPulldownDirection(aafPulldownDir_t* pPulldownDirection) override {
    return read<std::uint8_t>(pid::Pulldown_PulldownDirection, pPulldownDirection);
  }
  HRESULT SetPulldownDirection(aafPulldownDir_t pulldownDirection) override {
    return write<std::uint8_t>(pid::Pulldown_PulldownDirection, pulldownDirection);
  }
  HRESULT GetPhaseFrame(aafPhaseFrame_t* pPhaseFrame) override {
    return read_same(pid::Pulldown_PhaseFrame, pPhaseFrame);
  }
  HRESULT SetPhaseFrame(aafPhaseFrame_t phaseFrame) override {
    return write_same(pid::Pulldown_PhaseFrame, phaseFrame);
  }

 private:
  ~Pulldown() override = default;
};

class Timecode final : public Adds<Segment, IAAFTimecode> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafLength_t length, aafTimecode_t* pTimecode) override {
    if (!pTimecode) return AAFRESULT_NULL_PARAM;
    Ref<IAAFDataDef> data_def;
    const HRESULT r = session().hand_out_definition(data_set, kAAFDataDef_Timecode, data_def.put());
    if (r < 0) return r;
    if (const HRESULT begun = begin(data_def.get(), length); begun < 0) return begun;
    return SetTimecode(pTimecode);
  }
  HRESULT GetTimecode(aafTimecode_t* pTimecode) override {
    if (!pTimecode) return AAFRESULT_NULL_PARAM;
    aafTimecode_t timecode{};
    std::uint8_t drop = 0;
    const HRESULT steps[] = {get_value(stored(), pid::Timecode_Start, timecode.startFrame),
                             get_value(stored(), pid::Timecode_FPS, timecode.fps),
                             get_value(stored(), pid::Timecode_Drop, drop)};
    for (const HRESULT r : steps) {
      if (r < 0) return r;
    }
    timecode.drop = drop != 0 ? kAAFTcDrop : kAAFTcNonDrop;
    *pTimecode = timecode;
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetTimecode(aafTimecode_t* timecode) override {
    if (!timecode) return AAFRESULT_NULL_PARAM;
    const HRESULT steps[] = {
        write_same(pid::Timecode_Start, timecode->startFrame),
        write_same(pid::Timecode_FPS, timecode->fps),
        write_flag(pid::Timecode_Drop, timecode->drop == kAAFTcDrop ? kAAFTrue : kAAFFalse)};
    for (const HRESULT r : steps) {
      if (r < 0) return r;
    }
    return AAFRESULT_SUCCESS;
  }

 private:
  ~Timecode() override = default;
};

class Event : public Adds<Segment, IAAFEvent> {
 public:
  using Adds::Adds;

  HRESULT GetPosition(aafPosition_t* pPosition) override {
    return read_same(pid::Event_Position, pPosition);
  }
  HRESULT SetPosition(aafPosition_t Position) override {
    return write_same(pid::Event_Position, Position);
  }
  HRESULT SetComment(aafCharacter_constptr pComment) override {
    return write_text(pid::Event_Comment, pComment);
  }
  HRESULT GetComment(aafCharacter* pComment, aafUInt32 bufSize) override {
    return read_text(pid::Event_Comment, pComment, bufSize);
  }
  HRESULT GetCommentBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::Event_Comment, pBufSize);
  }

 protected:
  ~Event() override = default;
};

class CommentMarker : public Adds<Event, IAAFCommentMarker> {
 public:
  using Adds::Adds;

  HRESULT GetAnnotation(IAAFSourceReference** ppResult) override {
    return read_object(pid::CommentMarker_Annotation, ppResult);
  }
  HRESULT SetAnnotation(IAAFSourceReference* pAnnotation) override {
    return write_object(pid::CommentMarker_Annotation, pAnnotation);
  }

 protected:
  ~CommentMarker() override = default;
};

}  // namespace

AafObject* make_component_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                                 StoredObject& stored) {
  switch (index) {
    case ClassIndex::Component:
      return new Component(session, stored);
    case ClassIndex::Segment:
      return new Segment(session, stored);
    case ClassIndex::Filler:
      return new Filler(session, stored);
    case ClassIndex::Sequence:
      return new Sequence(session, stored);
    case ClassIndex::SourceReference:
      return new SourceReference(session, stored);
    case ClassIndex::SourceClip:
      return new SourceClip(session, stored);
    case ClassIndex::Transition:
      return new Transition(session, stored);
    case ClassIndex::OperationGroup:
      return new OperationGroup(session, stored);
    case ClassIndex::NestedScope:
      return new NestedScope(session, stored);
    case ClassIndex::ScopeReference:
      return new ScopeReference(session, stored);
    case ClassIndex::Selector:
      return new Selector(session, stored);
    case ClassIndex::EssenceGroup:
      return new EssenceGroup(session, stored);
    case ClassIndex::Pulldown:
      return new Pulldown(session, stored);
    case ClassIndex::Timecode:
      return new Timecode(session, stored);
    case ClassIndex::Event:
      return new Event(session, stored);
    case ClassIndex::CommentMarker:
      return new CommentMarker(session, stored);
    default:
      return nullptr;
  }
}

}  // namespace aafobj
