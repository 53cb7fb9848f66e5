#include "aafobj/objects/definition_objects.h"

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/model/meta_dictionary.h"
#include "aafobj/objects/meta_objects.h"
#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/object_factory.h"

namespace aafobj {
namespace {

constexpr std::uint16_t data_set = pid::Dictionary_DataDefinitions;
constexpr std::uint16_t parameter_set = pid::Dictionary_ParameterDefinitions;

class DefObject : public Adds<AafObject, IAAFDefObject> {
 public:
  using Adds::Adds;

  HRESULT SetName(aafCharacter_constptr pName) override {
    return write_text(pid::DefinitionObject_Name, pName);
  }
  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return read_text(pid::DefinitionObject_Name, pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::DefinitionObject_Name, pBufSize);
  }
  HRESULT SetDescription(aafCharacter_constptr pDescription) override {
    return write_text(pid::DefinitionObject_Description, pDescription);
  }
  HRESULT GetDescription(aafCharacter* pDescription, aafUInt32 bufSize) override {
    return read_text(pid::DefinitionObject_Description, pDescription, bufSize);
  }
  HRESULT GetDescriptionBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::DefinitionObject_Description, pBufSize);
  }
  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName) override {
    if (!pName) return AAFRESULT_NULL_PARAM;
    bool present = false;
    const HRESULT r = stored().is_present(pid::DefinitionObject_Identification, present);
    if (r < 0) return r;
    if (present) return AAFRESULT_ALREADY_INITIALIZED;
    const HRESULT written = write_same(pid::DefinitionObject_Identification, id);
    return written < 0 ? written : SetName(pName);
  }
  HRESULT GetAUID(aafUID_t* pAuid) override {
    return read_same(pid::DefinitionObject_Identification, pAuid);
  }

 protected:
  ~DefObject() override = default;

  HRESULT begin(aafUID_constref id, aafCharacter_constptr name, aafCharacter_constptr description) {
    if (!name || !description) return AAFRESULT_NULL_PARAM;
    const HRESULT r = DefObject::Initialize(id, name);
    return r < 0 ? r : SetDescription(description);
  }

  // The definitions that a list of weak references names; those that nobody has are left out.
  template <typename Enumerator, typename Interface>
  HRESULT enumerate_targets(std::uint16_t pid, std::uint16_t set, Enumerator** out) const {
    if (!out) return AAFRESULT_NULL_PARAM;
    std::vector<WeakTarget> targets;
    std::vector<SessionItem<StoredObject>> items;
    const HRESULT r = stored().get_weak_list(pid, targets);
    if (r < 0 && r != AAFRESULT_PROP_NOT_PRESENT) return r;
    for (const WeakTarget& target : targets) {
      SessionItem<StoredObject> item{};
      if (session().find_definition(set, target.key.auid(), item.thing, item.session) >= 0) {
        items.push_back(std::move(item));
      }
    }
    *out = new aafobj::Enumerator<Enumerator, Interface*, SessionItem<StoredObject>>(
        std::move(items), 0);
    return AAFRESULT_SUCCESS;
  }

  // Errors: OBJECT_ALREADY_ATTACHED when the list has the definition.
  HRESULT add_target(std::uint16_t pid, IUnknown* definition) {
    std::vector<WeakTarget> targets;
    const HRESULT r = get_targets(pid, targets);
    return r < 0 ? r : insert_target(pid, targets, targets.size(), definition);
  }

  // The same, before the one that is there. Errors: BADINDEX behind the last.
  HRESULT insert_target(std::uint16_t pid, aafUInt32 index, IUnknown* definition) {
    if (!definition) return AAFRESULT_NULL_PARAM;
    std::vector<WeakTarget> targets;
    if (const HRESULT r = get_targets(pid, targets); r < 0) return r;
    return index > targets.size() ? AAFRESULT_BADINDEX
                                  : insert_target(pid, targets, index, definition);
  }

  // An empty list goes with its last one.
  HRESULT remove_target_at(std::uint16_t pid, aafUInt32 index) {
    std::vector<WeakTarget> targets;
    if (const HRESULT r = get_targets(pid, targets); r < 0) return r;
    if (index >= targets.size()) return AAFRESULT_BADINDEX;
    if (targets.size() == 1) return stored().remove(pid);
    targets.erase(targets.begin() + static_cast<std::ptrdiff_t>(index));
    return stored().set_weak_list(pid, targets);
  }

  HRESULT remove_target(std::uint16_t pid, IUnknown* definition) {
    WeakTarget target;
    std::vector<WeakTarget> targets;
    if (const HRESULT r = target_of(definition, target); r < 0) return r;
    if (const HRESULT r = stored().get_weak_list(pid, targets); r < 0) return r;
    const auto removed =
        std::erase_if(targets, [&](const WeakTarget& each) { return each.key == target.key; });
    return removed == 0 ? AAFRESULT_OBJECT_NOT_FOUND : stored().set_weak_list(pid, targets);
  }

 private:
  HRESULT get_targets(std::uint16_t pid, std::vector<WeakTarget>& targets) const {
    const HRESULT r = stored().get_weak_list(pid, targets);
    return r == AAFRESULT_PROP_NOT_PRESENT ? AAFRESULT_SUCCESS : r;
  }
  HRESULT insert_target(std::uint16_t pid, std::vector<WeakTarget>& targets, std::size_t index,
                        IUnknown* definition) {
    WeakTarget target;
    if (const HRESULT r = target_of(definition, target); r < 0) return r;
    for (const WeakTarget& each : targets) {
      if (each.key == target.key) return AAFRESULT_OBJECT_ALREADY_ATTACHED;
    }
    targets.insert(targets.begin() + static_cast<std::ptrdiff_t>(index), target);
    return stored().set_weak_list(pid, targets);
  }
};

class DataDef final : public Adds<DefObject, IAAFDataDef, IAAFDataDef2, IAAFDataDef3> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName,
                     aafCharacter_constptr pDescription) override {
    return begin(id, pName, pDescription);
  }
  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName) override {
    return DefObject::Initialize(id, pName);
  }
  // Old files use the former identifiers of some kinds; both count.
  HRESULT IsPictureKind(aafBoolean_t* bIsPictureKind) override {
    return is_one_of({kAAFDataDef_Picture, kAAFDataDef_LegacyPicture}, bIsPictureKind);
  }
  HRESULT IsMatteKind(aafBoolean_t* bIsMatteKind) override {
    return is_one_of({kAAFDataDef_Matte}, bIsMatteKind);
  }
  HRESULT IsPictureWithMatteKind(aafBoolean_t* bIsPictureWithMatteKind) override {
    return is_one_of({kAAFDataDef_PictureWithMatte}, bIsPictureWithMatteKind);
  }
  HRESULT IsSoundKind(aafBoolean_t* bIsSoundKind) override {
    return is_one_of({kAAFDataDef_Sound, kAAFDataDef_LegacySound}, bIsSoundKind);
  }
  HRESULT IsEdgecodeKind(aafBoolean_t* bIsEdgecodeKind) override {
    return is_one_of({kAAFDataDef_Edgecode}, bIsEdgecodeKind);
  }
  HRESULT IsTimecodeKind(aafBoolean_t* bIsTimecodeKind) override {
    return is_one_of({kAAFDataDef_Timecode, kAAFDataDef_LegacyTimecode}, bIsTimecodeKind);
  }
  HRESULT IsAuxiliaryKind(aafBoolean_t* bIsAuxiliaryKind) override {
    return is_one_of({kAAFDataDef_Auxiliary}, bIsAuxiliaryKind);
  }
  HRESULT IsDescriptiveMetadataKind(aafBoolean_t* bIsDescriptiveMetadataKind) override {
    return is_one_of({kAAFDataDef_DescriptiveMetadata}, bIsDescriptiveMetadataKind);
  }
  HRESULT IsDataDefOf(IAAFDataDef* pDataDef, aafBoolean_t* bIsDataDefOf) override {
    AafObject* other = AafObject::behind(pDataDef);
    if (!pDataDef || !bIsDataDefOf) return AAFRESULT_NULL_PARAM;
    if (!other) return AAFRESULT_INVALID_OBJ;
    aafUID_t id{};
    const HRESULT r = get_value(other->stored(), pid::DefinitionObject_Identification, id);
    return r < 0 ? r : is_one_of({id}, bIsDataDefOf);
  }

 private:
  ~DataDef() override = default;

  HRESULT is_one_of(std::initializer_list<aafUID_t> kinds, aafBoolean_t* out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    aafUID_t id{};
    if (const HRESULT r = GetAUID(&id); r < 0) return r;
    *out = kAAFFalse;
    for (const aafUID_t& kind : kinds) {
      if (kind == id) *out = kAAFTrue;
    }
    return AAFRESULT_SUCCESS;
  }
};

class OperationDef final : public Adds<DefObject, IAAFOperationDef> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName,
                     aafCharacter_constptr pDescription) override {
    return begin(id, pName, pDescription);
  }
  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName) override {
    return DefObject::Initialize(id, pName);
  }
  HRESULT GetDataDef(IAAFDataDef** ppDataDef) override {
    return read_definition(pid::OperationDefinition_DataDefinition, data_set, ppDataDef);
  }
  HRESULT SetDataDef(IAAFDataDef* pDataDef) override {
    return write_definition(pid::OperationDefinition_DataDefinition, pDataDef);
  }
  HRESULT IsTimeWarp(aafBoolean_t* bIsTimeWarp) override {
    const HRESULT r = read_flag(pid::OperationDefinition_IsTimeWarp, bIsTimeWarp);
    if (r != AAFRESULT_PROP_NOT_PRESENT) return r;
    *bIsTimeWarp = kAAFFalse;
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetIsTimeWarp(aafBoolean_t IsTimeWarp) override {
    return write_flag(pid::OperationDefinition_IsTimeWarp, IsTimeWarp);
  }
  HRESULT GetCategory(aafUID_t* pValue) override {
    return read_same(pid::OperationDefinition_OperationCategory, pValue);
  }
  HRESULT SetCategory(aafUID_constref value) override {
    return write_same(pid::OperationDefinition_OperationCategory, value);
  }
  HRESULT GetNumberInputs(aafInt32* pNumberInputs) override {
    return read_same(pid::OperationDefinition_NumberInputs, pNumberInputs);
  }
  HRESULT SetNumberInputs(aafInt32 NumberInputs) override {
    return write_same(pid::OperationDefinition_NumberInputs, NumberInputs);
  }
  HRESULT GetBypass(aafUInt32* pBypass) override {
    return read_same(pid::OperationDefinition_Bypass, pBypass);
  }
  HRESULT SetBypass(aafUInt32 bypass) override {
    return write_same(pid::OperationDefinition_Bypass, bypass);
  }
  HRESULT AddParameterDef(IAAFParameterDef* pParameterDef) override {
    return add_target(pid::OperationDefinition_ParametersDefined, pParameterDef);
  }
  HRESULT GetParameterDefs(IEnumAAFParameterDefs** ppEnum) override {
    return enumerate_targets<IEnumAAFParameterDefs, IAAFParameterDef>(
        pid::OperationDefinition_ParametersDefined, parameter_set, ppEnum);
  }
  HRESULT CountParameterDefs(aafUInt32* pResult) override {
    return count(pid::OperationDefinition_ParametersDefined, pResult);
  }
  HRESULT LookupParameterDef(aafUID_constref parameterDefId,
                             IAAFParameterDef** ppParameterDef) override {
    if (!ppParameterDef) return AAFRESULT_NULL_PARAM;
    std::vector<WeakTarget> targets;
    const HRESULT r = stored().get_weak_list(pid::OperationDefinition_ParametersDefined, targets);
    if (r < 0 && r != AAFRESULT_PROP_NOT_PRESENT) return r;
    for (const WeakTarget& target : targets) {
      if (target.key.auid() != parameterDefId) continue;
      return session().hand_out_definition(parameter_set, parameterDefId, ppParameterDef);
    }
    return AAFRESULT_OBJECT_NOT_FOUND;
  }
  HRESULT PrependDegradeToOperation(IAAFOperationDef* pOperationDef) override {
    return insert_target(pid::OperationDefinition_DegradeTo, 0, pOperationDef);
  }
  HRESULT InsertDegradeToOperationAt(aafUInt32 index, IAAFOperationDef* pOperationDef) override {
    return insert_target(pid::OperationDefinition_DegradeTo, index, pOperationDef);
  }
  HRESULT RemoveDegradeToOperationAt(aafUInt32 index) override {
    return remove_target_at(pid::OperationDefinition_DegradeTo, index);
  }
  HRESULT AppendDegradeToOperation(IAAFOperationDef* pOperationDef) override {
    return add_target(pid::OperationDefinition_DegradeTo, pOperationDef);
  }
  HRESULT GetDegradeToOperations(IEnumAAFOperationDefs** ppEnum) override {
    return enumerate_targets<IEnumAAFOperationDefs, IAAFOperationDef>(
        pid::OperationDefinition_DegradeTo, pid::Dictionary_OperationDefinitions, ppEnum);
  }
  HRESULT CountDegradeToOperations(aafUInt32* pResult) override {
    return count(pid::OperationDefinition_DegradeTo, pResult);
  }

 private:
  ~OperationDef() override = default;
};

class ParameterDef final : public Adds<DefObject, IAAFParameterDef> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName,
                     aafCharacter_constptr pDescription, IAAFTypeDef* pType) override {
    if (!pType) return AAFRESULT_NULL_PARAM;
    const TypeDef* type = type_behind(pType);
    WeakTarget target;
    if (!type) return AAFRESULT_INVALID_OBJ;
    HRESULT r = begin(id, pName, pDescription);
    if (r < 0) return r;
    if (r = target_of_type(session().file(), type->identifier, target); r < 0) return r;
    return stored().set_weak(pid::ParameterDefinition_Type, target);
  }
  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName) override {
    return DefObject::Initialize(id, pName);
  }
  HRESULT GetTypeDefinition(IAAFTypeDef** ppTypeDef) override {
    if (!ppTypeDef) return AAFRESULT_NULL_PARAM;
    WeakTarget target;
    if (const HRESULT r = stored().get_weak(pid::ParameterDefinition_Type, target); r < 0) return r;
    const TypeDef* type = session().meta_model().find_type(target.key.auid());
    return type ? session().hand_out(*type, ppTypeDef) : AAFRESULT_TYPE_NOT_FOUND;
  }
  HRESULT SetDisplayUnits(aafCharacter_constptr pDisplayUnits) override {
    return write_text(pid::ParameterDefinition_DisplayUnits, pDisplayUnits);
  }
  HRESULT GetDisplayUnits(aafCharacter* pDisplayUnits, aafUInt32 bufSize) override {
    return read_text(pid::ParameterDefinition_DisplayUnits, pDisplayUnits, bufSize);
  }
  HRESULT GetDisplayUnitsBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::ParameterDefinition_DisplayUnits, pBufSize);
  }

 private:
  ~ParameterDef() override = default;
};

class InterpolationDef final : public Adds<DefObject, IAAFInterpolationDef> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName,
                     aafCharacter_constptr pDescription) override {
    return begin(id, pName, pDescription);
  }
  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName) override {
    return DefObject::Initialize(id, pName);
  }

 private:
  ~InterpolationDef() override = default;
};

class ContainerDef final : public Adds<DefObject, IAAFContainerDef> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName,
                     aafCharacter_constptr pDescription) override {
    return begin(id, pName, pDescription);
  }
  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName) override {
    return DefObject::Initialize(id, pName);
  }
  HRESULT EssenceIsIdentified(aafBoolean_t* pEssenceIsIdentified) override {
    return read_flag(pid::ContainerDefinition_EssenceIsIdentified, pEssenceIsIdentified);
  }
  HRESULT SetEssenceIsIdentified(aafBoolean_t EssenceIsIdentified) override {
    return write_flag(pid::ContainerDefinition_EssenceIsIdentified, EssenceIsIdentified);
  }

 private:
  ~ContainerDef() override = default;
};

class CodecDef final : public Adds<DefObject, IAAFCodecDef> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName,
                     aafCharacter_constptr pDescription) override {
    return begin(id, pName, pDescription);
  }
  HRESULT Initialize(aafUID_constref id, aafCharacter_constptr pName) override {
    return DefObject::Initialize(id, pName);
  }
  HRESULT IsEssenceKindSupported(IAAFDataDef* pEssenceKind, aafBoolean_t* pIsSupported) override {
    if (!pEssenceKind || !pIsSupported) return AAFRESULT_NULL_PARAM;
    AafObject* kind = AafObject::behind(pEssenceKind);
    aafUID_t id{};
    std::vector<WeakTarget> targets;
    if (!kind) return AAFRESULT_INVALID_OBJ;
    HRESULT r = get_value(kind->stored(), pid::DefinitionObject_Identification, id);
    if (r < 0) return r;
    r = stored().get_weak_list(pid::CodecDefinition_DataDefinitions, targets);
    if (r < 0) return r;
    *pIsSupported = kAAFFalse;
    for (const WeakTarget& target : targets) {
      if (target.key.auid() == id) *pIsSupported = kAAFTrue;
    }
    return AAFRESULT_SUCCESS;
  }
  HRESULT AddEssenceKind(IAAFDataDef* pEssenceKind) override {
    return add_target(pid::CodecDefinition_DataDefinitions, pEssenceKind);
  }
  HRESULT RemoveEssenceKind(IAAFDataDef* pEssenceKind) override {
    return remove_target(pid::CodecDefinition_DataDefinitions, pEssenceKind);
  }
  HRESULT CountEssenceKinds(aafUInt32* pResult) override {
    return count(pid::CodecDefinition_DataDefinitions, pResult);
  }
  HRESULT GetEssenceKinds(IEnumAAFDataDefs** ppEnum) override {
    return enumerate_targets<IEnumAAFDataDefs, IAAFDataDef>(pid::CodecDefinition_DataDefinitions,
                                                            data_set, ppEnum);
  }
  HRESULT AreThereFlavours(aafBoolean_t* pResult) override {
    if (!pResult) return AAFRESULT_NULL_PARAM;
    *pResult = kAAFFalse;
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetFileDescriptorClass(IAAFClassDef** ppClass) override {
    if (!ppClass) return AAFRESULT_NULL_PARAM;
    WeakTarget target;
    const HRESULT r = stored().get_weak(pid::CodecDefinition_FileDescriptorClass, target);
    if (r < 0) return r;
    const ClassDef* cls = session().meta_model().find_class(target.key.auid());
    return cls ? session().hand_out(*cls, ppClass) : AAFRESULT_CLASS_NOT_FOUND;
  }
  HRESULT SetFileDescriptorClass(IAAFClassDef* pClass) override {
    if (!pClass) return AAFRESULT_NULL_PARAM;
    const ClassDef* cls = class_behind(pClass);
    WeakTarget target;
    if (!cls) return AAFRESULT_INVALID_OBJ;
    const HRESULT r = target_of_class(session().file(), cls->identifier, target);
    return r < 0 ? r : stored().set_weak(pid::CodecDefinition_FileDescriptorClass, target);
  }

 private:
  ~CodecDef() override = default;
};

class Dictionary final : public Adds<AafObject, IAAFDictionary, IAAFDictionary2> {
 public:
  using Adds::Adds;

  HRESULT CreateInstance(aafUID_constref id, REFIID riid, IUnknown** ppvObject) override {
    return create_instance(session(), id, riid, ppvObject);
  }

  HRESULT LookupClassDef(aafUID_constref classId, IAAFClassDef** ppClassDef) override {
    if (!ppClassDef) return AAFRESULT_NULL_PARAM;
    const ClassDef* cls = session().meta_model().find_class(classId);
    return cls ? session().hand_out(*cls, ppClassDef) : AAFRESULT_NO_MORE_OBJECTS;
  }
  HRESULT LookupTypeDef(aafUID_constref typeId, IAAFTypeDef** ppTypeDef) override {
    if (!ppTypeDef) return AAFRESULT_NULL_PARAM;
    const TypeDef* type = session().meta_model().find_type(typeId);
    return type ? session().hand_out(*type, ppTypeDef) : AAFRESULT_NO_MORE_OBJECTS;
  }
  HRESULT GetClassDefs(IEnumAAFClassDefs** ppEnum) override {
    if (!ppEnum) return AAFRESULT_NULL_PARAM;
    std::vector<const ClassDef*> classes;
    const auto add = [&](const aafUID_t& id) {
      if (const ClassDef* cls = session().meta_model().find_class(id)) classes.push_back(cls);
    };
    const HRESULT r = for_each_definition(pid::MetaDictionary_ClassDefinitions, add);
    return r < 0 ? r
                 : enumerate_objects<IEnumAAFClassDefs, IAAFClassDef>(shared_session(), classes,
                                                                      ppEnum);
  }
  HRESULT CountClassDefs(aafUInt32* pResult) override {
    return count_definitions(pid::MetaDictionary_ClassDefinitions, pResult);
  }
  HRESULT GetTypeDefs(IEnumAAFTypeDefs** ppEnum) override {
    if (!ppEnum) return AAFRESULT_NULL_PARAM;
    std::vector<const TypeDef*> types;
    const auto add = [&](const aafUID_t& id) {
      if (const TypeDef* type = session().meta_model().find_type(id)) types.push_back(type);
    };
    const HRESULT r = for_each_definition(pid::MetaDictionary_TypeDefinitions, add);
    return r < 0
               ? r
               : enumerate_objects<IEnumAAFTypeDefs, IAAFTypeDef>(shared_session(), types, ppEnum);
  }
  HRESULT CountTypeDefs(aafUInt32* pResult) override {
    return count_definitions(pid::MetaDictionary_TypeDefinitions, pResult);
  }

  HRESULT RegisterDataDef(IAAFDataDef* pDataDef) override {
    return add_definition(data_set, pDataDef);
  }
  HRESULT LookupDataDef(aafUID_constref dataDefinitionId, IAAFDataDef** ppDataDef) override {
    return look_up(data_set, dataDefinitionId, ppDataDef);
  }
  HRESULT GetDataDefs(IEnumAAFDataDefs** ppEnum) override {
    return enumerate<IEnumAAFDataDefs, IAAFDataDef>(data_set, ppEnum);
  }
  HRESULT CountDataDefs(aafUInt32* pResult) override { return count(data_set, pResult); }

  HRESULT RegisterOperationDef(IAAFOperationDef* pOperationDef) override {
    return add_definition(pid::Dictionary_OperationDefinitions, pOperationDef);
  }
  HRESULT LookupOperationDef(aafUID_constref operationId,
                             IAAFOperationDef** ppOperationDef) override {
    return look_up(pid::Dictionary_OperationDefinitions, operationId, ppOperationDef);
  }
  HRESULT GetOperationDefs(IEnumAAFOperationDefs** ppEnum) override {
    return enumerate<IEnumAAFOperationDefs, IAAFOperationDef>(pid::Dictionary_OperationDefinitions,
                                                              ppEnum);
  }
  HRESULT CountOperationDefs(aafUInt32* pResult) override {
    return count(pid::Dictionary_OperationDefinitions, pResult);
  }

  HRESULT RegisterParameterDef(IAAFParameterDef* pParmDef) override {
    return add_definition(parameter_set, pParmDef);
  }
  HRESULT LookupParameterDef(aafUID_constref parameterId, IAAFParameterDef** ppParmDef) override {
    return look_up(parameter_set, parameterId, ppParmDef);
  }
  HRESULT GetParameterDefs(IEnumAAFParameterDefs** ppEnum) override {
    return enumerate<IEnumAAFParameterDefs, IAAFParameterDef>(parameter_set, ppEnum);
  }
  HRESULT CountParameterDefs(aafUInt32* pResult) override { return count(parameter_set, pResult); }

  HRESULT RegisterCodecDef(IAAFCodecDef* pParmDef) override {
    return add_definition(pid::Dictionary_CodecDefinitions, pParmDef);
  }
  HRESULT LookupCodecDef(aafUID_constref parameterId, IAAFCodecDef** ppParmDef) override {
    return look_up(pid::Dictionary_CodecDefinitions, parameterId, ppParmDef);
  }
  HRESULT GetCodecDefs(IEnumAAFCodecDefs** ppEnum) override {
    return enumerate<IEnumAAFCodecDefs, IAAFCodecDef>(pid::Dictionary_CodecDefinitions, ppEnum);
  }
  HRESULT CountCodecDefs(aafUInt32* pResult) override {
    return count(pid::Dictionary_CodecDefinitions, pResult);
  }

  HRESULT RegisterContainerDef(IAAFContainerDef* pParmDef) override {
    return add_definition(pid::Dictionary_ContainerDefinitions, pParmDef);
  }
  HRESULT LookupContainerDef(aafUID_constref parameterId, IAAFContainerDef** ppParmDef) override {
    return look_up(pid::Dictionary_ContainerDefinitions, parameterId, ppParmDef);
  }
  HRESULT GetContainerDefs(IEnumAAFContainerDefs** ppEnum) override {
    return enumerate<IEnumAAFContainerDefs, IAAFContainerDef>(pid::Dictionary_ContainerDefinitions,
                                                              ppEnum);
  }
  HRESULT CountContainerDefs(aafUInt32* pResult) override {
    return count(pid::Dictionary_ContainerDefinitions, pResult);
  }

  HRESULT RegisterInterpolationDef(IAAFInterpolationDef* pInterpolationDef) override {
    return add_definition(pid::Dictionary_InterpolationDefinitions, pInterpolationDef);
  }
  HRESULT LookupInterpolationDef(aafUID_constref parameterId,
                                 IAAFInterpolationDef** ppInterpolationDef) override {
    return look_up(pid::Dictionary_InterpolationDefinitions, parameterId, ppInterpolationDef);
  }
  HRESULT GetInterpolationDefs(IEnumAAFInterpolationDefs** ppEnum) override {
    return enumerate<IEnumAAFInterpolationDefs, IAAFInterpolationDef>(
        pid::Dictionary_InterpolationDefinitions, ppEnum);
  }
  HRESULT CountInterpolationDefs(aafUInt32* pResult) override {
    return count(pid::Dictionary_InterpolationDefinitions, pResult);
  }

  HRESULT LookupAuxiliaryDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_Auxiliary, ppDataDef);
  }
  HRESULT LookupDescriptiveMetadataDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_DescriptiveMetadata, ppDataDef);
  }
  HRESULT LookupEdgecodeDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_Edgecode, ppDataDef);
  }
  HRESULT LookupLegacyPictureDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_LegacyPicture, ppDataDef);
  }
  HRESULT LookupLegacySoundDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_LegacySound, ppDataDef);
  }
  HRESULT LookupLegacyTimecodeDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_LegacyTimecode, ppDataDef);
  }
  HRESULT LookupMatteDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_Matte, ppDataDef);
  }
  HRESULT LookupPictureDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_Picture, ppDataDef);
  }
  HRESULT LookupPictureWithMatteDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_PictureWithMatte, ppDataDef);
  }
  HRESULT LookupSoundDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_Sound, ppDataDef);
  }
  HRESULT LookupTimecodeDataDef(IAAFDataDef** ppDataDef) override {
    return look_up(data_set, kAAFDataDef_Timecode, ppDataDef);
  }

 private:
  ~Dictionary() override = default;

  template <typename Interface>
  HRESULT look_up(std::uint16_t set, const aafUID_t& id, Interface** out) {
    return out ? session().hand_out_definition(set, id, out) : AAFRESULT_NULL_PARAM;
  }

  // Errors: OBJECT_ALREADY_ATTACHED; PROPERTY_DUPLICATE for an identifier that is there.
  HRESULT add_definition(std::uint16_t set, IUnknown* definition) {
    StoredObject* object = nullptr;
    aafUID_t id{};
    if (const HRESULT r = take_object(definition, object); r < 0) return r;
    const HRESULT r = get_value(*object, pid::DefinitionObject_Identification, id);
    return r < 0 ? r : stored().insert_keyed(set, StoredKey(id), *object);
  }

  template <typename Visit>
  HRESULT for_each_definition(std::uint16_t set, const Visit& visit) const {
    StoredObject* meta = nullptr;
    StoredObject* object = nullptr;
    StoredKey key;
    HRESULT r = session().file().meta_dictionary(meta);
    for (bool first = true; r >= 0; first = false) {
      r = meta->next_element(set, key, first, object);
      if (r < 0 || !object) break;
      visit(key.auid());
    }
    return r;
  }

  HRESULT count_definitions(std::uint16_t set, aafUInt32* out) const {
    if (!out) return AAFRESULT_NULL_PARAM;
    StoredObject* meta = nullptr;
    std::size_t number = 0;
    if (const HRESULT r = session().file().meta_dictionary(meta); r < 0) return r;
    if (const HRESULT r = meta->count_elements(set, number); r < 0) return r;
    *out = static_cast<aafUInt32>(number);
    return AAFRESULT_SUCCESS;
  }
};

}  // namespace

AafObject* make_definition_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                                  StoredObject& stored) {
  switch (index) {
    case ClassIndex::DefinitionObject:
      return new DefObject(session, stored);
    case ClassIndex::DataDefinition:
      return new DataDef(session, stored);
    case ClassIndex::OperationDefinition:
      return new OperationDef(session, stored);
    case ClassIndex::ParameterDefinition:
      return new ParameterDef(session, stored);
    case ClassIndex::InterpolationDefinition:
      return new InterpolationDef(session, stored);
    case ClassIndex::ContainerDefinition:
      return new ContainerDef(session, stored);
    case ClassIndex::CodecDefinition:
      return new CodecDef(session, stored);
    case ClassIndex::Dictionary:
      return new Dictionary(session, stored);
    default:
      return nullptr;
  }
}

}  // namespace aafobj
