#include "aafobj/objects/type_values.h"

#include <algorithm>

#include "aafobj/objects/native_layout.h"

namespace aafobj {

// A caller's value, if it is ours and its type is this one or has this one for its base.
HRESULT value_of(const TypeDef& type, IAAFPropertyValue* pointer, ValueObject*& value) {
  if (!pointer) return AAFRESULT_NULL_PARAM;
  value = ValueObject::behind(pointer);
  if (!value) return AAFRESULT_INVALID_OBJ;
  const bool fits = base_type(value->type()).identifier == base_type(type).identifier;
  return fits ? AAFRESULT_SUCCESS : AAFRESULT_BAD_TYPE;
}

std::span<std::byte> bytes_at(aafMemPtr_t memory, std::size_t size) {
  return std::as_writable_bytes(std::span(memory, size));
}

Ref<ValueObject> new_value(TypeObject& type) {
  return Ref<ValueObject>(new ValueObject(type.shared_session(), type.definition()));
}

// A value of a fixed layout from a program's memory, and back.
HRESULT value_from_memory(TypeObject& type, aafMemPtr_t data, aafUInt32 size,
                          IAAFPropertyValue** out) {
  if (!data || !out) return AAFRESULT_NULL_PARAM;
  Ref<ValueObject> value = new_value(type);
  value->bytes.resize(type.definition().size_bytes);
  if (value->bytes.empty() || !from_native(type.definition(), bytes_at(data, size), value->bytes)) {
    return AAFRESULT_BAD_SIZE;
  }
  *out = value.detach();
  return AAFRESULT_SUCCESS;
}

HRESULT value_to_memory(TypeObject& type, IAAFPropertyValue* pointer, aafMemPtr_t data,
                        aafUInt32 size) {
  if (!data) return AAFRESULT_NULL_PARAM;
  ValueObject* value = nullptr;
  if (const HRESULT r = value_of(type.definition(), pointer, value); r < 0) return r;
  const bool fits = to_native(type.definition(), value->bytes, bytes_at(data, size));
  return fits ? AAFRESULT_SUCCESS : AAFRESULT_BAD_SIZE;
}

HRESULT change_from_memory(TypeObject& type, IAAFPropertyValue* pointer, aafMemPtr_t data,
                           aafUInt32 size) {
  if (!data) return AAFRESULT_NULL_PARAM;
  ValueObject* value = nullptr;
  if (const HRESULT r = value_of(type.definition(), pointer, value); r < 0) return r;
  std::vector<std::byte> bytes(type.definition().size_bytes);
  if (!from_native(type.definition(), bytes_at(data, size), bytes)) return AAFRESULT_BAD_SIZE;
  value->bytes = std::move(bytes);
  return AAFRESULT_SUCCESS;
}

HRESULT hand_out_type_of(TypeObject& type, const TypeDef* wanted, IAAFTypeDef** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  return wanted ? type.session().hand_out(*wanted, out) : AAFRESULT_TYPE_NOT_FOUND;
}

// One element of a value with parts, as a value of its own.
HRESULT part_value(TypeObject& type, ValueObject& whole, const TypeDef& part, std::size_t offset,
                   IAAFPropertyValue** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  if (offset + part.size_bytes > whole.bytes.size()) return AAFRESULT_BAD_SIZE;
  Ref<ValueObject> value(new ValueObject(type.shared_session(), part));
  const auto from = whole.bytes.begin() + static_cast<std::ptrdiff_t>(offset);
  value->bytes.assign(from, from + static_cast<std::ptrdiff_t>(part.size_bytes));
  *out = value.detach();
  return AAFRESULT_SUCCESS;
}

HRESULT replace_bytes(ValueObject& whole, std::size_t offset, const ValueObject& part) {
  if (offset + part.bytes.size() > whole.bytes.size()) return AAFRESULT_BAD_SIZE;
  std::copy(part.bytes.begin(), part.bytes.end(),
            whole.bytes.begin() + static_cast<std::ptrdiff_t>(offset));
  return AAFRESULT_SUCCESS;
}

// A caller's value for a part of another one: of the part's type, and of its size where it has
// one.
HRESULT part_of(const TypeDef& part, IAAFPropertyValue* pointer, ValueObject*& value) {
  if (const HRESULT r = value_of(part, pointer, value); r < 0) return r;
  const bool fits = part.size_bytes == 0 || value->bytes.size() == part.size_bytes;
  return fits ? AAFRESULT_SUCCESS : AAFRESULT_BAD_SIZE;
}

}  // namespace aafobj
