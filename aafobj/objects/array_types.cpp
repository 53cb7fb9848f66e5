// The interfaces of array and set types.

#include "aafobj/objects/meta_objects.h"
#include "aafobj/objects/native_layout.h"
#include "aafobj/objects/type_values.h"

namespace aafobj {
namespace {

// Arrays and sets: what is the same for elements that are data and for those that are objects.
std::size_t element_count(const TypeDef& type, const ValueObject& value) {
  if (!value.objects.empty()) return value.objects.size();
  if (!value.targets.empty()) return value.targets.size();
  const std::size_t each = type.element ? type.element->size_bytes : 0;
  return each == 0 ? 0 : value.bytes.size() / each;
}

HRESULT element_value(TypeObject& type, ValueObject& whole, std::size_t index,
                      IAAFPropertyValue** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  if (index >= element_count(type.definition(), whole)) return AAFRESULT_BADINDEX;
  const TypeDef& element = *type.definition().element;
  if (whole.objects.empty() && whole.targets.empty()) {
    return part_value(type, whole, element, index * element.size_bytes, out);
  }
  Ref<ValueObject> value(new ValueObject(type.shared_session(), element));
  if (!whole.objects.empty()) {
    value->objects.push_back(whole.objects[index]);
  } else {
    value->targets.push_back(whole.targets[index]);
  }
  *out = value.detach();
  return AAFRESULT_SUCCESS;
}

// What the elements have: bytes, objects or targets.
void append_element(ValueObject& whole, const ValueObject& element) {
  whole.bytes.insert(whole.bytes.end(), element.bytes.begin(), element.bytes.end());
  whole.objects.insert(whole.objects.end(), element.objects.begin(), element.objects.end());
  whole.targets.insert(whole.targets.end(), element.targets.begin(), element.targets.end());
}

HRESULT replace_element(const TypeDef& type, ValueObject& whole, std::size_t index,
                        const ValueObject& element) {
  if (index >= element_count(type, whole)) return AAFRESULT_BADINDEX;
  if (whole.objects.empty() && whole.targets.empty()) {
    return replace_bytes(whole, index * type.element->size_bytes, element);
  }
  if (whole.objects.empty() ? element.targets.empty() : element.objects.empty()) {
    return AAFRESULT_BAD_TYPE;
  }
  if (whole.objects.empty()) {
    whole.targets[index] = element.targets[0];
  } else {
    whole.objects[index] = element.objects[0];
  }
  return AAFRESULT_SUCCESS;
}

struct ElementItem {
  Ref<TypeObject> type;
  Ref<ValueObject> whole;
  std::size_t index;

  HRESULT hand_out(IAAFPropertyValue** out) const {
    return element_value(*type, *whole, index, out);
  }
};

HRESULT enumerate_elements(TypeObject& type, IAAFPropertyValue* pointer,
                           IEnumAAFPropertyValues** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  ValueObject* value = nullptr;
  if (const HRESULT r = value_of(type.definition(), pointer, value); r < 0) return r;
  std::vector<ElementItem> items;
  for (std::size_t i = 0; i < element_count(type.definition(), *value); ++i) {
    type.add_reference();
    value->add_reference();
    items.push_back({Ref<TypeObject>(&type), Ref<ValueObject>(value), i});
  }
  *out =
      new Enumerator<IEnumAAFPropertyValues, IAAFPropertyValue*, ElementItem>(std::move(items), 0);
  return AAFRESULT_SUCCESS;
}

// Elements of a fixed layout, one after the other as in a C array.
HRESULT array_to_memory(TypeObject& type, IAAFPropertyValue* pointer, aafMemPtr_t data,
                        aafUInt32 size) {
  if (!data) return AAFRESULT_NULL_PARAM;
  ValueObject* value = nullptr;
  if (const HRESULT r = value_of(type.definition(), pointer, value); r < 0) return r;
  const TypeDef& element = *type.definition().element;
  const std::size_t native = native_layout(element).size_bytes;
  const std::size_t count = element_count(type.definition(), *value);
  if (native == 0 || !value->objects.empty() || !value->targets.empty()) return AAFRESULT_BAD_TYPE;
  if (size < count * native) return AAFRESULT_SMALLBUF;
  for (std::size_t i = 0; i < count; ++i) {
    const auto stored = std::span<const std::byte>(value->bytes)
                            .subspan(i * element.size_bytes, element.size_bytes);
    if (!to_native(element, stored, bytes_at(data, size).subspan(i * native, native))) {
      return AAFRESULT_BAD_SIZE;
    }
  }
  return AAFRESULT_SUCCESS;
}

HRESULT array_from_memory(const TypeDef& type, aafMemPtr_t data, aafUInt32 size,
                          std::vector<std::byte>& bytes) {
  if (!data) return AAFRESULT_NULL_PARAM;
  const TypeDef& element = *type.element;
  const std::size_t native = native_layout(element).size_bytes;
  if (native == 0) return AAFRESULT_BAD_TYPE;
  if (size % native != 0) return AAFRESULT_BAD_SIZE;
  std::vector<std::byte> stored(size / native * element.size_bytes);
  for (std::size_t i = 0; i < size / native; ++i) {
    const auto to = std::span(stored).subspan(i * element.size_bytes, element.size_bytes);
    if (!from_native(element, bytes_at(data, size).subspan(i * native, native), to)) {
      return AAFRESULT_BAD_SIZE;
    }
  }
  bytes = std::move(stored);
  return AAFRESULT_SUCCESS;
}

HRESULT array_value(TypeObject& type, aafMemPtr_t data, aafUInt32 size, IAAFPropertyValue** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  Ref<ValueObject> value = new_value(type);
  const HRESULT r = array_from_memory(type.definition(), data, size, value->bytes);
  if (r >= 0) *out = value.detach();
  return r;
}

// What the two kinds of array have in common.
template <typename Interface>
class ArrayType : public Adds<TypeObject, Interface> {
 public:
  using Adds<TypeObject, Interface>::Adds;

  HRESULT GetType(IAAFTypeDef** ppTypeDef) override {
    return hand_out_type_of(*this, this->definition().element, ppTypeDef);
  }
  HRESULT CreateValueFromCArray(aafMemPtr_t pInitData, aafUInt32 initDataSize,
                                IAAFPropertyValue** ppPropVal) override {
    return array_value(*this, pInitData, initDataSize, ppPropVal);
  }
  HRESULT CreateValueFromValues(IAAFPropertyValue** pElementValues, aafUInt32 numElements,
                                IAAFPropertyValue** ppPropVal) override {
    if (!pElementValues || !ppPropVal) return AAFRESULT_NULL_PARAM;
    const TypeDef& type = this->definition();
    if (type.kind == TypeKind::fixed_array && numElements != type.element_count) {
      return AAFRESULT_INVALID_PARAM;
    }
    Ref<ValueObject> value = new_value(*this);
    for (aafUInt32 i = 0; i < numElements; ++i) {
      ValueObject* element = nullptr;
      if (const HRESULT r = part_of(*type.element, pElementValues[i], element); r < 0) return r;
      append_element(*value, *element);
    }
    *ppPropVal = value.detach();
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetElementValue(IAAFPropertyValue* pPropVal, aafUInt32 index,
                          IAAFPropertyValue* pMemberPropVal) override {
    ValueObject* value = nullptr;
    ValueObject* element = nullptr;
    if (const HRESULT r = value_of(this->definition(), pPropVal, value); r < 0) return r;
    const HRESULT r = part_of(*this->definition().element, pMemberPropVal, element);
    return r < 0 ? r : replace_element(this->definition(), *value, index, *element);
  }
  HRESULT GetElementValue(IAAFPropertyValue* pInPropVal, aafUInt32 index,
                          IAAFPropertyValue** ppOutPropVal) override {
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(this->definition(), pInPropVal, value); r < 0) return r;
    return element_value(*this, *value, index, ppOutPropVal);
  }
  HRESULT GetCArray(IAAFPropertyValue* pPropVal, aafMemPtr_t pData, aafUInt32 dataSize) override {
    return array_to_memory(*this, pPropVal, pData, dataSize);
  }
  HRESULT SetCArray(IAAFPropertyValue* pPropVal, aafMemPtr_t pData, aafUInt32 dataSize) override {
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(this->definition(), pPropVal, value); r < 0) return r;
    return array_from_memory(this->definition(), pData, dataSize, value->bytes);
  }
  HRESULT GetElements(IAAFPropertyValue* pPropVal, IEnumAAFPropertyValues** ppEnum) override {
    return enumerate_elements(*this, pPropVal, ppEnum);
  }

 protected:
  ~ArrayType() override = default;
};

class FixedArrayType final : public ArrayType<IAAFTypeDefFixedArray> {
 public:
  using ArrayType::ArrayType;

  HRESULT GetCount(aafUInt32* pCount) override {
    if (!pCount) return AAFRESULT_NULL_PARAM;
    *pCount = definition().element_count;
    return AAFRESULT_SUCCESS;
  }

 private:
  ~FixedArrayType() override = default;
};

class VariableArrayType final : public ArrayType<IAAFTypeDefVariableArray> {
 public:
  using ArrayType::ArrayType;

  HRESULT GetCount(IAAFPropertyValue* pPropVal, aafUInt32* pCount) override {
    if (!pCount) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    *pCount = static_cast<aafUInt32>(element_count(definition(), *value));
    return AAFRESULT_SUCCESS;
  }
  HRESULT CreateEmptyValue(IAAFPropertyValue** ppPropVal) override {
    if (!ppPropVal) return AAFRESULT_NULL_PARAM;
    *ppPropVal = new_value(*this).detach();
    return AAFRESULT_SUCCESS;
  }
  HRESULT AppendElement(IAAFPropertyValue* pInPropVal, IAAFPropertyValue* pMemberPropVal) override {
    ValueObject* value = nullptr;
    ValueObject* member = nullptr;
    if (const HRESULT r = value_of(definition(), pInPropVal, value); r < 0) return r;
    if (const HRESULT r = part_of(*definition().element, pMemberPropVal, member); r < 0) return r;
    append_element(*value, *member);
    return AAFRESULT_SUCCESS;
  }

 private:
  ~VariableArrayType() override = default;
};

class SetType final : public Adds<TypeObject, IAAFTypeDefSet> {
 public:
  using Adds::Adds;

  HRESULT GetElementType(IAAFTypeDef** ppTypeDef) override {
    return hand_out_type_of(*this, definition().element, ppTypeDef);
  }
  HRESULT GetCount(IAAFPropertyValue* pSetPropertyValue, aafUInt32* pCount) override {
    if (!pCount) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pSetPropertyValue, value); r < 0) return r;
    *pCount = static_cast<aafUInt32>(element_count(definition(), *value));
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetElements(IAAFPropertyValue* pSetPropertyValue,
                      IEnumAAFPropertyValues** ppEnum) override {
    return enumerate_elements(*this, pSetPropertyValue, ppEnum);
  }

 private:
  ~SetType() override = default;
};

}  // namespace

ComObject* make_array_type_object(const std::shared_ptr<FileSession>& session,
                                  const TypeDef& type) {
  if (type.kind == TypeKind::fixed_array) return new FixedArrayType(session, type);
  if (type.kind == TypeKind::variable_array) return new VariableArrayType(session, type);
  return new SetType(session, type);
}

}  // namespace aafobj
