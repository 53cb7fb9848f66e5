#pragma once

#include "aafobj/objects/meta_objects.h"

// Values on their way through the interfaces of types.
namespace aafobj {

// A caller's value, if it is ours and its type is this one or has this one for its base.
HRESULT value_of(const TypeDef& type, IAAFPropertyValue* pointer, ValueObject*& value);
std::span<std::byte> bytes_at(aafMemPtr_t memory, std::size_t size);
Ref<ValueObject> new_value(TypeObject& type);
// A value of a fixed layout from a program's memory, and back.
HRESULT value_from_memory(TypeObject& type, aafMemPtr_t data, aafUInt32 size,
                          IAAFPropertyValue** out);
HRESULT value_to_memory(TypeObject& type, IAAFPropertyValue* pointer, aafMemPtr_t data,
                        aafUInt32 size);
HRESULT change_from_memory(TypeObject& type, IAAFPropertyValue* pointer, aafMemPtr_t data,
                           aafUInt32 size);
HRESULT hand_out_type_of(TypeObject& type, const TypeDef* wanted, IAAFTypeDef** out);
// One element of a value with parts, as a value of its own.
HRESULT part_value(TypeObject& type, ValueObject& whole, const TypeDef& part, std::size_t offset,
                   IAAFPropertyValue** out);
HRESULT replace_bytes(ValueObject& whole, std::size_t offset, const ValueObject& part);
// A caller's value for a part of another one: of the part's type, and of its size where it has
// one.
HRESULT part_of(const TypeDef& part, IAAFPropertyValue* pointer, ValueObject*& value);

// Of types whose kind is fixed_array, variable_array or set.
ComObject* make_array_type_object(const std::shared_ptr<FileSession>& session, const TypeDef& type);

}  // namespace aafobj
