#include "aafobj/objects/component_objects.h"
#include "aafobj/objects/not_offered_component.h"
#include "aafobj/objects/not_offered_definition.h"

namespace aafobj {
namespace {

constexpr std::uint16_t parameter_set = pid::Dictionary_ParameterDefinitions;

// The identifier of the type that a parameter's definition gives its values.
HRESULT value_type_of(AafObject& parameter, aafUID_t& type) {
  aafUID_t id{};
  StoredObject* definition = nullptr;
  std::shared_ptr<FileSession> session;
  WeakTarget target;
  HRESULT r = get_value(parameter.stored(), pid::Parameter_Definition, id);
  if (r < 0) return r;
  r = parameter.session().find_definition(parameter_set, id, definition, session);
  if (r < 0) return r;
  if (r = definition->get_weak(pid::ParameterDefinition_Type, target); r < 0) return r;
  type = target.key.auid();
  return AAFRESULT_SUCCESS;
}

class Parameter : public Adds<AafObject, IAAFParameter> {
 public:
  using Adds::Adds;

  HRESULT GetParameterDefinition(IAAFParameterDef** ppParmDef) override {
    if (!ppParmDef) return AAFRESULT_NULL_PARAM;
    aafUID_t id{};
    if (const HRESULT r = read_same(pid::Parameter_Definition, &id); r < 0) return r;
    return session().hand_out_definition(parameter_set, id, ppParmDef);
  }
  HRESULT GetTypeDefinition(IAAFTypeDef** ppTypeDef) override {
    if (!ppTypeDef) return AAFRESULT_NULL_PARAM;
    aafUID_t id{};
    if (const HRESULT r = value_type_of(*this, id); r < 0) return r;
    const TypeDef* type = session().meta_model().find_type(id);
    return type ? session().hand_out(*type, ppTypeDef) : AAFRESULT_TYPE_NOT_FOUND;
  }

 protected:
  ~Parameter() override = default;

  HRESULT set_definition(IAAFParameterDef* definition) {
    AafObject* object = AafObject::behind(definition);
    if (!definition) return AAFRESULT_NULL_PARAM;
    if (!object) return AAFRESULT_INVALID_OBJ;
    if (!object->stored().is_attached()) return AAFRESULT_OBJECT_NOT_ATTACHED;
    aafUID_t id{};
    const HRESULT r = get_value(object->stored(), pid::DefinitionObject_Identification, id);
    return r < 0 ? r : write_same(pid::Parameter_Definition, id);
  }
};

class ConstantValue final : public Adds<Parameter, IAAFConstantValue> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFParameterDef* pParameterDef, aafUInt32 valueSize,
                     aafDataBuffer_t pValue) override {
    aafUID_t type{};
    if (!pValue) return AAFRESULT_NULL_PARAM;
    if (const HRESULT r = set_definition(pParameterDef); r < 0) return r;
    if (const HRESULT r = value_type_of(*this, type); r < 0) return r;
    return write_indirect(pid::ConstantValue_Value, type, valueSize, pValue);
  }
  HRESULT GetValue(aafUInt32 valueSize, aafDataBuffer_t pValue, aafUInt32* bytesRead) override {
    return read_indirect(pid::ConstantValue_Value, valueSize, pValue, bytesRead);
  }
  HRESULT GetValueBufLen(aafUInt32* pLen) override {
    return read_indirect_size(pid::ConstantValue_Value, pLen);
  }
  HRESULT GetTypeDefinition(IAAFTypeDef** ppTypeDef) override {
    return read_indirect_type(pid::ConstantValue_Value, ppTypeDef);
  }
  HRESULT SetValue(aafUInt32 valueSize, aafDataBuffer_t pValue) override {
    return rewrite_indirect(pid::ConstantValue_Value, valueSize, pValue);
  }

 private:
  ~ConstantValue() override = default;
};

// Whether a comes after b; a time without a denominator comes after none.
bool is_later(const aafRational_t& a, const aafRational_t& b) {
  if (a.denominator == 0 || b.denominator == 0) return false;
  const std::int64_t left = std::int64_t{a.numerator} * b.denominator;
  const std::int64_t right = std::int64_t{b.numerator} * a.denominator;
  return (a.denominator < 0) == (b.denominator < 0) ? left > right : left < right;
}

class VaryingValue final : public Adds<Parameter, IAAFVaryingValue> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFParameterDef* pParameterDef,
                     IAAFInterpolationDef* pInterpolation) override {
    if (const HRESULT r = set_definition(pParameterDef); r < 0) return r;
    return write_definition(pid::VaryingValue_Interpolation, pInterpolation);
  }

  // Points stand in the order of their times, those of one time in the order of their arrival.
  HRESULT AddControlPoint(IAAFControlPoint* pControlPoint) override {
    StoredObject* point = nullptr;
    aafRational_t time{};
    if (const HRESULT r = take_object(pControlPoint, point); r < 0) return r;
    if (const HRESULT r = get_value(*point, pid::ControlPoint_Time, time); r < 0) return r;
    std::size_t place = 0;
    if (const HRESULT r = stored().count_elements(pid::VaryingValue_PointList, place); r < 0) {
      return r;
    }
    for (; place > 0; --place) {
      StoredObject* before = nullptr;
      aafRational_t earlier{};
      const HRESULT r = stored().element_at(pid::VaryingValue_PointList, place - 1, before);
      if (r < 0) return r;
      if (get_value(*before, pid::ControlPoint_Time, earlier) < 0 || !is_later(earlier, time)) {
        break;
      }
    }
    return stored().insert_at(pid::VaryingValue_PointList, place, *point);
  }
  HRESULT GetControlPoints(IEnumAAFControlPoints** ppEnum) override {
    return enumerate<IEnumAAFControlPoints, IAAFControlPoint>(pid::VaryingValue_PointList, ppEnum);
  }
  HRESULT CountControlPoints(aafUInt32* pResult) override {
    return count(pid::VaryingValue_PointList, pResult);
  }
  HRESULT GetControlPointAt(aafUInt32 index, IAAFControlPoint** ppControlPoint) override {
    return element_at(pid::VaryingValue_PointList, index, ppControlPoint);
  }
  HRESULT RemoveControlPointAt(aafUInt32 index) override {
    return remove_at(pid::VaryingValue_PointList, index);
  }
  HRESULT GetInterpolationDefinition(IAAFInterpolationDef** ppInterpolation) override {
    return read_definition(pid::VaryingValue_Interpolation,
                           pid::Dictionary_InterpolationDefinitions, ppInterpolation);
  }

 private:
  ~VaryingValue() override = default;
};

class ControlPoint final : public Adds<AafObject, IAAFControlPoint> {
 public:
  using Adds::Adds;

  HRESULT Initialize(IAAFVaryingValue* pVaryingValue, aafRational_constref time,
                     aafUInt32 valueSize, aafDataBuffer_t pValue) override {
    if (!pVaryingValue || !pValue) return AAFRESULT_NULL_PARAM;
    AafObject* varying = AafObject::behind(pVaryingValue);
    aafUID_t type{};
    if (!varying) return AAFRESULT_INVALID_OBJ;
    if (const HRESULT r = value_type_of(*varying, type); r < 0) return r;
    if (const HRESULT r = SetTime(time); r < 0) return r;
    return write_indirect(pid::ControlPoint_Value, type, valueSize, pValue);
  }
  HRESULT GetTime(aafRational_t* pTime) override {
    return read_same(pid::ControlPoint_Time, pTime);
  }
  HRESULT SetTime(aafRational_t pTime) override {
    return write_same(pid::ControlPoint_Time, pTime);
  }
  HRESULT GetEditHint(aafEditHint_t* pEditHint) override {
    return read<std::uint8_t>(pid::ControlPoint_EditHint, pEditHint);
  }
  HRESULT SetEditHint(aafEditHint_t editHint) override {
    return write<std::uint8_t>(pid::ControlPoint_EditHint, editHint);
  }
  HRESULT GetValueBufLen(aafUInt32* pLen) override {
    return read_indirect_size(pid::ControlPoint_Value, pLen);
  }
  HRESULT GetValue(aafUInt32 valueSize, aafDataBuffer_t pValue, aafUInt32* bytesRead) override {
    return read_indirect(pid::ControlPoint_Value, valueSize, pValue, bytesRead);
  }
  HRESULT GetTypeDefinition(IAAFTypeDef** ppTypeDef) override {
    return read_indirect_type(pid::ControlPoint_Value, ppTypeDef);
  }
  HRESULT SetValue(aafUInt32 valueSize, aafDataBuffer_t pValue) override {
    return rewrite_indirect(pid::ControlPoint_Value, valueSize, pValue);
  }

 private:
  ~ControlPoint() override = default;
};

}  // namespace

AafObject* make_parameter_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                                 StoredObject& stored) {
  switch (index) {
    case ClassIndex::Parameter:
      return new Parameter(session, stored);
    case ClassIndex::ConstantValue:
      return new ConstantValue(session, stored);
    case ClassIndex::VaryingValue:
      return new VaryingValue(session, stored);
    case ClassIndex::ControlPoint:
      return new ControlPoint(session, stored);
    default:
      return nullptr;
  }
}

}  // namespace aafobj
