// The interfaces of types, one class for each kind; arrays and sets are in array_types.cpp.

#include <algorithm>

#include "aafobj/objects/meta_objects.h"
#include "aafobj/objects/native_layout.h"
#include "aafobj/objects/type_values.h"

namespace aafobj {
namespace {

class IntegerType final : public Adds<TypeObject, IAAFTypeDefInt> {
 public:
  using Adds::Adds;

  HRESULT CreateValue(aafMemPtr_t pVal, aafUInt32 valSize, IAAFPropertyValue** ppPropVal) override {
    if (!pVal || !ppPropVal) return AAFRESULT_NULL_PARAM;
    Ref<ValueObject> value = new_value(*this);
    if (!convert(bytes_at(pVal, valSize), definition().size_bytes, value->bytes)) {
      return AAFRESULT_BAD_SIZE;
    }
    *ppPropVal = value.detach();
    return AAFRESULT_SUCCESS;
  }

  HRESULT GetInteger(IAAFPropertyValue* pPropVal, aafMemPtr_t pVal, aafUInt32 valSize) override {
    if (!pVal) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    std::vector<std::byte> number;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    // A file may store any number of bytes; what is not as long as its type is no number.
    if (value->bytes.size() != definition().size_bytes) return AAFRESULT_BAD_SIZE;
    if (!convert(value->bytes, valSize, number)) return AAFRESULT_BAD_SIZE;
    std::memcpy(pVal, number.data(), number.size());
    return AAFRESULT_SUCCESS;
  }

  HRESULT SetInteger(IAAFPropertyValue* pPropVal, aafMemPtr_t pVal, aafUInt32 valSize) override {
    if (!pVal) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    const bool fits = convert(bytes_at(pVal, valSize), definition().size_bytes, value->bytes);
    return fits ? AAFRESULT_SUCCESS : AAFRESULT_BAD_SIZE;
  }

  HRESULT GetSize(aafUInt32* pSize) override {
    if (!pSize) return AAFRESULT_NULL_PARAM;
    *pSize = static_cast<aafUInt32>(definition().size_bytes);
    return AAFRESULT_SUCCESS;
  }

  HRESULT IsSigned(aafBoolean_t* pSigned) override {
    if (!pSigned) return AAFRESULT_NULL_PARAM;
    *pSigned = definition().is_signed ? kAAFTrue : kAAFFalse;
    return AAFRESULT_SUCCESS;
  }

 private:
  ~IntegerType() override = default;

  // To a number of as many bytes or more, with the sign where the type has one.
  bool convert(std::span<const std::byte> from, std::size_t size,
               std::vector<std::byte>& to) const {
    const bool is_size = size == 1 || size == 2 || size == 4 || size == 8;
    if (!is_size || from.empty() || from.size() > size) return false;
    const bool is_negative =
        definition().is_signed && (from.back() & std::byte{0x80}) != std::byte{};
    std::vector<std::byte> number(size, is_negative ? std::byte{0xff} : std::byte{0});
    std::copy(from.begin(), from.end(), number.begin());
    to = std::move(number);
    return true;
  }
};

class RecordType final : public Adds<TypeObject, IAAFTypeDefRecord> {
 public:
  using Adds::Adds;

  HRESULT GetMemberType(aafUInt32 index, IAAFTypeDef** ppTypeDef) override {
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    return hand_out_type_of(*this, definition().members[index].type, ppTypeDef);
  }
  HRESULT GetMemberName(aafUInt32 index, aafCharacter* pName, aafUInt32 bufSize) override {
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    return copy_text(definition().members[index].name, pName, bufSize);
  }
  HRESULT GetMemberNameBufLen(aafUInt32 index, aafUInt32* pLen) override {
    if (!pLen) return AAFRESULT_NULL_PARAM;
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    *pLen = wide_bytes(definition().members[index].name);
    return AAFRESULT_SUCCESS;
  }
  // One value for each member, in their order.
  HRESULT CreateValueFromValues(IAAFPropertyValue** pMemberValues, aafUInt32 numMembers,
                                IAAFPropertyValue** ppPropVal) override {
    if (!pMemberValues || !ppPropVal) return AAFRESULT_NULL_PARAM;
    if (numMembers != definition().members.size()) return AAFRESULT_INVALID_PARAM;
    Ref<ValueObject> value = new_value(*this);
    for (aafUInt32 i = 0; i < numMembers; ++i) {
      ValueObject* member = nullptr;
      const HRESULT r = part_of(*definition().members[i].type, pMemberValues[i], member);
      if (r < 0) return r;
      value->bytes.insert(value->bytes.end(), member->bytes.begin(), member->bytes.end());
    }
    *ppPropVal = value.detach();
    return AAFRESULT_SUCCESS;
  }
  HRESULT CreateValueFromStruct(aafMemPtr_t pInitData, aafUInt32 initDataSize,
                                IAAFPropertyValue** ppPropVal) override {
    return value_from_memory(*this, pInitData, initDataSize, ppPropVal);
  }
  HRESULT GetValue(IAAFPropertyValue* pInPropVal, aafUInt32 index,
                   IAAFPropertyValue** ppOutPropVal) override {
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pInPropVal, value); r < 0) return r;
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    return part_value(*this, *value, *definition().members[index].type, offset_of(index),
                      ppOutPropVal);
  }
  HRESULT SetValue(IAAFPropertyValue* pPropVal, aafUInt32 index,
                   IAAFPropertyValue* pMemberPropVal) override {
    ValueObject* value = nullptr;
    ValueObject* member = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    const HRESULT r = part_of(*definition().members[index].type, pMemberPropVal, member);
    return r < 0 ? r : replace_bytes(*value, offset_of(index), *member);
  }
  HRESULT GetStruct(IAAFPropertyValue* pPropVal, aafMemPtr_t pData, aafUInt32 dataSize) override {
    return value_to_memory(*this, pPropVal, pData, dataSize);
  }
  HRESULT SetStruct(IAAFPropertyValue* pPropVal, aafMemPtr_t pData, aafUInt32 dataSize) override {
    return change_from_memory(*this, pPropVal, pData, dataSize);
  }
  HRESULT GetCount(aafUInt32* pCount) override {
    if (!pCount) return AAFRESULT_NULL_PARAM;
    *pCount = static_cast<aafUInt32>(definition().members.size());
    return AAFRESULT_SUCCESS;
  }

 private:
  ~RecordType() override = default;

  std::size_t offset_of(aafUInt32 index) const {
    std::size_t offset = 0;
    for (aafUInt32 i = 0; i < index; ++i)
      offset += definition().members[i].type->size_bytes;
    return offset;
  }
};

class RenamedType final : public Adds<TypeObject, IAAFTypeDefRename> {
 public:
  using Adds::Adds;

  HRESULT GetBaseType(IAAFTypeDef** ppBaseType) override {
    return hand_out_type_of(*this, definition().element, ppBaseType);
  }
  HRESULT GetBaseValue(IAAFPropertyValue* pInPropVal, IAAFPropertyValue** ppOutPropVal) override {
    return retyped(pInPropVal, *definition().element, ppOutPropVal);
  }
  HRESULT CreateValue(IAAFPropertyValue* pInPropVal, IAAFPropertyValue** ppOutPropVal) override {
    return retyped(pInPropVal, definition(), ppOutPropVal);
  }

 private:
  ~RenamedType() override = default;

  HRESULT retyped(IAAFPropertyValue* in, const TypeDef& type, IAAFPropertyValue** out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), in, value); r < 0) return r;
    Ref<ValueObject> made(new ValueObject(shared_session(), type));
    made->bytes = value->bytes;
    made->objects = value->objects;
    made->targets = value->targets;
    *out = made.detach();
    return AAFRESULT_SUCCESS;
  }
};

class EnumerationType final : public Adds<TypeObject, IAAFTypeDefEnum> {
 public:
  using Adds::Adds;

  HRESULT CreateValueFromName(aafCharacter_constptr Name, IAAFPropertyValue** ppPropVal) override {
    if (!Name || !ppPropVal) return AAFRESULT_NULL_PARAM;
    const std::u16string name = from_wide(Name);
    for (const TypeDef::Member& member : definition().members) {
      if (member.name != name) continue;
      Ref<ValueObject> value = new_value(*this);
      value->bytes = stored(member.value);
      *ppPropVal = value.detach();
      return AAFRESULT_SUCCESS;
    }
    return AAFRESULT_INVALID_PARAM;
  }
  HRESULT GetElementType(IAAFTypeDef** ppTypeDef) override {
    return hand_out_type_of(*this, definition().element, ppTypeDef);
  }
  HRESULT GetElementValue(aafUInt32 index, aafInt64* pOutValue) override {
    if (!pOutValue) return AAFRESULT_NULL_PARAM;
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    *pOutValue = definition().members[index].value;
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetElementName(aafUInt32 index, aafCharacter* pOutValue, aafUInt32 bufSize) override {
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    return copy_text(definition().members[index].name, pOutValue, bufSize);
  }
  HRESULT GetElementNameBufLen(aafUInt32 index, aafUInt32* pLen) override {
    if (!pLen) return AAFRESULT_NULL_PARAM;
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    *pLen = wide_bytes(definition().members[index].name);
    return AAFRESULT_SUCCESS;
  }
  HRESULT CountElements(aafUInt32* pCount) override {
    if (!pCount) return AAFRESULT_NULL_PARAM;
    *pCount = static_cast<aafUInt32>(definition().members.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetNameFromValue(IAAFPropertyValue* pValue, aafCharacter* pName,
                           aafUInt32 bufSize) override {
    aafInt64 number = 0;
    if (const HRESULT r = GetIntegerValue(pValue, &number); r < 0) return r;
    return GetNameFromInteger(number, pName, bufSize);
  }
  HRESULT GetNameBufLenFromValue(IAAFPropertyValue* pValue, aafUInt32* pLen) override {
    aafInt64 number = 0;
    if (const HRESULT r = GetIntegerValue(pValue, &number); r < 0) return r;
    return GetNameBufLenFromInteger(number, pLen);
  }
  HRESULT GetNameFromInteger(aafInt64 value, aafCharacter* pName, aafUInt32 bufSize) override {
    const TypeDef::Member* member = find(value);
    return member ? copy_text(member->name, pName, bufSize) : AAFRESULT_INVALID_PARAM;
  }
  HRESULT GetNameBufLenFromInteger(aafInt64 value, aafUInt32* pLen) override {
    if (!pLen) return AAFRESULT_NULL_PARAM;
    const TypeDef::Member* member = find(value);
    if (!member) return AAFRESULT_INVALID_PARAM;
    *pLen = wide_bytes(member->name);
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetIntegerValue(IAAFPropertyValue* pPropValIn, aafInt64* pValueOut) override {
    if (!pValueOut) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropValIn, value); r < 0) return r;
    if (value->bytes.size() > sizeof(aafInt64)) return AAFRESULT_BAD_SIZE;
    *pValueOut = 0;
    if (!value->bytes.empty()) std::memcpy(pValueOut, value->bytes.data(), value->bytes.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetIntegerValue(IAAFPropertyValue* pPropValToSet, aafInt64 valueIn) override {
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropValToSet, value); r < 0) return r;
    if (!find(valueIn)) return AAFRESULT_INVALID_ENUM_VALUE;
    value->bytes = stored(valueIn);
    return AAFRESULT_SUCCESS;
  }

 private:
  ~EnumerationType() override = default;

  const TypeDef::Member* find(aafInt64 value) const {
    for (const TypeDef::Member& member : definition().members) {
      if (member.value == value) return &member;
    }
    return nullptr;
  }

  std::vector<std::byte> stored(aafInt64 value) const {
    std::vector<std::byte> bytes(std::min(definition().size_bytes, sizeof(value)));
    std::memcpy(bytes.data(), &value, bytes.size());
    return bytes;
  }
};

// Files name the values of the usage type without the prefix that programs compare with; so
// both are taken, and the one with the prefix is given.
constexpr std::u16string_view name_prefix = u"kAAF";

class ExtendibleType final : public Adds<TypeObject, IAAFTypeDefExtEnum> {
 public:
  using Adds::Adds;

  HRESULT CreateValueFromName(aafCharacter_constptr Name, IAAFPropertyValue** ppPropVal) override {
    if (!Name || !ppPropVal) return AAFRESULT_NULL_PARAM;
    std::u16string_view name;
    const std::u16string given = from_wide(Name);
    name = given;
    for (const TypeDef::Member& member : definition().members) {
      if (member.name != name && without_prefix(member.name) != without_prefix(name)) continue;
      Ref<ValueObject> value = new_value(*this);
      const auto bytes = std::as_bytes(std::span(&member.identifier, 1));
      value->bytes.assign(bytes.begin(), bytes.end());
      *ppPropVal = value.detach();
      return AAFRESULT_SUCCESS;
    }
    return AAFRESULT_INVALID_PARAM;
  }
  HRESULT CountElements(aafUInt32* pCount) override {
    if (!pCount) return AAFRESULT_NULL_PARAM;
    *pCount = static_cast<aafUInt32>(definition().members.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetElementValue(aafUInt32 index, aafUID_t* pOutValue) override {
    if (!pOutValue) return AAFRESULT_NULL_PARAM;
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    *pOutValue = definition().members[index].identifier;
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetElementName(aafUInt32 index, aafCharacter* pOutValue, aafUInt32 bufSize) override {
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    return copy_text(name_of(definition().members[index]), pOutValue, bufSize);
  }
  HRESULT GetElementNameBufLen(aafUInt32 index, aafUInt32* pLen) override {
    if (!pLen) return AAFRESULT_NULL_PARAM;
    if (index >= definition().members.size()) return AAFRESULT_BADINDEX;
    *pLen = wide_bytes(name_of(definition().members[index]));
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetNameFromValue(IAAFPropertyValue* pValue, aafCharacter* pName,
                           aafUInt32 bufSize) override {
    aafUID_t id{};
    if (const HRESULT r = GetAUIDValue(pValue, &id); r < 0) return r;
    return GetNameFromAUID(id, pName, bufSize);
  }
  HRESULT GetNameBufLenFromValue(IAAFPropertyValue* pValue, aafUInt32* pLen) override {
    aafUID_t id{};
    if (const HRESULT r = GetAUIDValue(pValue, &id); r < 0) return r;
    return GetNameBufLenFromAUID(id, pLen);
  }
  HRESULT GetNameFromAUID(aafUID_constref value, aafCharacter* pName, aafUInt32 bufSize) override {
    const TypeDef::Member* member = find(value);
    return member ? copy_text(name_of(*member), pName, bufSize) : AAFRESULT_INVALID_PARAM;
  }
  HRESULT GetNameBufLenFromAUID(aafUID_constref value, aafUInt32* pLen) override {
    if (!pLen) return AAFRESULT_NULL_PARAM;
    const TypeDef::Member* member = find(value);
    if (!member) return AAFRESULT_INVALID_PARAM;
    *pLen = wide_bytes(name_of(*member));
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetAUIDValue(IAAFPropertyValue* pPropValIn, aafUID_t* pValueOut) override {
    if (!pValueOut) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropValIn, value); r < 0) return r;
    if (value->bytes.size() != sizeof(aafUID_t)) return AAFRESULT_BAD_SIZE;
    std::memcpy(pValueOut, value->bytes.data(), sizeof(aafUID_t));
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetAUIDValue(IAAFPropertyValue* pPropValToSet, aafUID_constref valueIn) override {
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropValToSet, value); r < 0) return r;
    if (!find(valueIn)) return AAFRESULT_INVALID_PARAM;
    const auto bytes = std::as_bytes(std::span(&valueIn, 1));
    value->bytes.assign(bytes.begin(), bytes.end());
    return AAFRESULT_SUCCESS;
  }

 private:
  ~ExtendibleType() override = default;

  static std::u16string_view without_prefix(std::u16string_view name) {
    if (name.starts_with(name_prefix)) name.remove_prefix(name_prefix.size());
    return name;
  }

  std::u16string name_of(const TypeDef::Member& member) const {
    if (definition().baseline != TypeIndex::UsageType) return member.name;
    return std::u16string(name_prefix) + std::u16string(without_prefix(member.name));
  }

  const TypeDef::Member* find(const aafUID_t& value) const {
    for (const TypeDef::Member& member : definition().members) {
      if (member.identifier == value) return &member;
    }
    return nullptr;
  }
};

class StringType final : public Adds<TypeObject, IAAFTypeDefString> {
 public:
  using Adds::Adds;

  HRESULT GetType(IAAFTypeDef** ppTypeDef) override {
    return hand_out_type_of(*this, definition().element, ppTypeDef);
  }
  // In characters, the NUL among them.
  HRESULT GetCount(IAAFPropertyValue* pPropVal, aafUInt32* pCount) override {
    if (!pCount) return AAFRESULT_NULL_PARAM;
    std::wstring text;
    if (const HRESULT r = read(pPropVal, text); r < 0) return r;
    *pCount = static_cast<aafUInt32>(text.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT CreateValueFromCString(aafMemPtr_t pInitData, aafUInt32 initDataSize,
                                 IAAFPropertyValue** ppPropVal) override {
    if (!pInitData || !ppPropVal) return AAFRESULT_NULL_PARAM;
    Ref<ValueObject> value = new_value(*this);
    const HRESULT r = write(*value, pInitData, initDataSize);
    if (r >= 0) *ppPropVal = value.detach();
    return r;
  }
  HRESULT SetCString(IAAFPropertyValue* pPropVal, aafMemPtr_t pData, aafUInt32 dataSize) override {
    if (!pData) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    return write(*value, pData, dataSize);
  }
  HRESULT GetElements(IAAFPropertyValue* pInPropVal, aafMemPtr_t pBuffer,
                      aafUInt32 bufferSize) override {
    if (!pBuffer) return AAFRESULT_NULL_PARAM;
    std::wstring text;
    if (const HRESULT r = read(pInPropVal, text); r < 0) return r;
    const std::size_t size = text.size() * sizeof(aafCharacter);
    if (size > bufferSize) return AAFRESULT_SMALLBUF;
    std::memcpy(pBuffer, text.data(), size);
    return AAFRESULT_SUCCESS;
  }

 private:
  ~StringType() override = default;

  HRESULT read(IAAFPropertyValue* pointer, std::wstring& text) {
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pointer, value); r < 0) return r;
    std::u16string units(value->bytes.size() / 2, u'\0');
    std::memcpy(units.data(), value->bytes.data(), units.size() * 2);
    text = to_wide(units);
    return AAFRESULT_SUCCESS;
  }

  static HRESULT write(ValueObject& value, aafMemPtr_t data, aafUInt32 size) {
    if (size % sizeof(aafCharacter) != 0) return AAFRESULT_BAD_SIZE;
    std::wstring wide(size / sizeof(aafCharacter), L'\0');
    std::memcpy(wide.data(), data, size);
    if (!wide.empty() && wide.back() == L'\0') wide.pop_back();
    value.bytes = stored_text(from_wide(wide));
    return AAFRESULT_SUCCESS;
  }
};

class CharacterType final : public Adds<TypeObject, IAAFTypeDefCharacter> {
 public:
  using Adds::Adds;

  HRESULT CreateValueFromCharacter(aafCharacter character,
                                   IAAFPropertyValue** ppCharacterValue) override {
    return value_from_memory(*this, reinterpret_cast<aafMemPtr_t>(&character), sizeof(character),
                             ppCharacterValue);
  }
  HRESULT SetCharacter(IAAFPropertyValue* pCharacterValue, aafCharacter character) override {
    return change_from_memory(*this, pCharacterValue, reinterpret_cast<aafMemPtr_t>(&character),
                              sizeof(character));
  }

  HRESULT GetCharacter(IAAFPropertyValue* pCharacterValue, aafCharacter* pCharacter) override {
    if (!pCharacter) return AAFRESULT_NULL_PARAM;
    return value_to_memory(*this, pCharacterValue, reinterpret_cast<aafMemPtr_t>(pCharacter),
                           sizeof(aafCharacter));
  }

 private:
  ~CharacterType() override = default;
};

// Streams can be read through their property; essence is written by way of its codec.
class StreamType final : public Adds<TypeObject, IAAFTypeDefStream> {
 public:
  using Adds::Adds;

  HRESULT GetSize(IAAFPropertyValue* pStreamPropertyValue, aafInt64* pSize) override {
    if (!pSize) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    Stream stream;
    if (const HRESULT r = open(pStreamPropertyValue, value, stream); r < 0) return r;
    *pSize = static_cast<aafInt64>(stream.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetPosition(IAAFPropertyValue* pStreamPropertyValue, aafInt64* pPosition) override {
    if (!pPosition) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pStreamPropertyValue, value); r < 0) return r;
    *pPosition = static_cast<aafInt64>(value->stream_position);
    return AAFRESULT_SUCCESS;
  }
  HRESULT SetPosition(IAAFPropertyValue* pStreamPropertyValue, aafInt64 newPosition) override {
    ValueObject* value = nullptr;
    Stream stream;
    if (const HRESULT r = open(pStreamPropertyValue, value, stream); r < 0) return r;
    if (newPosition < 0 || static_cast<std::uint64_t>(newPosition) > stream.size()) {
      return AAFRESULT_INVALID_PARAM;
    }
    value->stream_position = static_cast<std::uint64_t>(newPosition);
    return AAFRESULT_SUCCESS;
  }
  HRESULT Read(IAAFPropertyValue* pStreamPropertyValue, aafUInt32 dataSize, aafMemPtr_t pData,
               aafUInt32* bytesRead) override {
    if (!pData || !bytesRead) return AAFRESULT_NULL_PARAM;
    *bytesRead = 0;
    ValueObject* value = nullptr;
    Stream stream;
    if (const HRESULT r = open(pStreamPropertyValue, value, stream); r < 0) return r;
    std::size_t count = 0;
    const Result result = stream.read_at(value->stream_position, bytes_at(pData, dataSize), count);
    if (result != Result::ok) return aaf_result(result);
    value->stream_position += count;
    *bytesRead = static_cast<aafUInt32>(count);
    return AAFRESULT_SUCCESS;
  }

 private:
  ~StreamType() override = default;

  HRESULT open(IAAFPropertyValue* pointer, ValueObject*& value, Stream& stream) {
    if (const HRESULT r = value_of(definition(), pointer, value); r < 0) return r;
    if (!value->stream_owner) return AAFRESULT_PROP_NOT_PRESENT;
    return value->stream_owner->open_stream(value->stream_pid, stream);
  }
};

// An Indirect value: byte order, identifier of the actual type, actual value.
constexpr std::size_t indirect_head = 1 + sizeof(aafUID_t);

class IndirectType : public Adds<TypeObject, IAAFTypeDefIndirect> {
 public:
  using Adds::Adds;

  HRESULT CreateValueFromActualValue(IAAFPropertyValue* pActualValue,
                                     IAAFPropertyValue** ppIndirectPropertyValue) override {
    if (!pActualValue || !ppIndirectPropertyValue) return AAFRESULT_NULL_PARAM;
    ValueObject* actual = ValueObject::behind(pActualValue);
    if (!actual) return AAFRESULT_INVALID_OBJ;
    ByteWriter writer;
    writer.put(static_cast<std::uint8_t>(ByteOrder::little));
    writer.put_auid(actual->type().identifier);
    writer.put_bytes(actual->bytes);
    Ref<ValueObject> value = new_value(*this);
    value->bytes = writer.release();
    *ppIndirectPropertyValue = value.detach();
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetActualValue(IAAFPropertyValue* pIndirectPropertyValue,
                         IAAFPropertyValue** ppActualPropertyValue) override {
    if (!ppActualPropertyValue) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    const TypeDef* type = nullptr;
    if (const HRESULT r = parts(pIndirectPropertyValue, value, type); r < 0) return r;
    Ref<ValueObject> actual(new ValueObject(shared_session(), *type));
    actual->bytes.assign(value->bytes.begin() + indirect_head, value->bytes.end());
    *ppActualPropertyValue = actual.detach();
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetActualSize(IAAFPropertyValue* pIndirectPropertyValue,
                        aafUInt32* pActualSize) override {
    if (!pActualSize) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    const TypeDef* type = nullptr;
    if (const HRESULT r = parts(pIndirectPropertyValue, value, type); r < 0) return r;
    *pActualSize = static_cast<aafUInt32>(value->bytes.size() - indirect_head);
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetActualType(IAAFPropertyValue* pIndirectPropertyValue,
                        IAAFTypeDef** pActualType) override {
    ValueObject* value = nullptr;
    const TypeDef* type = nullptr;
    if (const HRESULT r = parts(pIndirectPropertyValue, value, type); r < 0) return r;
    return hand_out_type_of(*this, type, pActualType);
  }
  HRESULT GetActualData(IAAFPropertyValue* pPropVal, aafMemPtr_t pData,
                        aafUInt32 dataSize) override {
    if (!pData) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    const TypeDef* type = nullptr;
    if (const HRESULT r = parts(pPropVal, value, type); r < 0) return r;
    const std::size_t size = value->bytes.size() - indirect_head;
    if (size > dataSize) return AAFRESULT_SMALLBUF;
    if (size > 0) std::memcpy(pData, value->bytes.data() + indirect_head, size);
    return AAFRESULT_SUCCESS;
  }

 protected:
  ~IndirectType() override = default;

 private:
  HRESULT parts(IAAFPropertyValue* pointer, ValueObject*& value, const TypeDef*& type) {
    if (const HRESULT r = value_of(definition(), pointer, value); r < 0) return r;
    if (value->bytes.size() < indirect_head) return AAFRESULT_BAD_SIZE;
    if (value->bytes[0] != static_cast<std::byte>(ByteOrder::little)) return AAFRESULT_BAD_TYPE;
    aafUID_t id{};
    std::memcpy(&id, value->bytes.data() + 1, sizeof(id));
    type = session().meta_model().find_type(id);
    return type ? AAFRESULT_SUCCESS : AAFRESULT_TYPE_NOT_FOUND;
  }
};

class OpaqueType final : public Adds<IndirectType, IAAFTypeDefOpaque> {
 public:
  using Adds::Adds;

  HRESULT GetActualTypeID(IAAFPropertyValue* pOpaquePropertyValue,
                          aafUID_t* pActualTypeID) override {
    if (!pActualTypeID) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pOpaquePropertyValue, value); r < 0) return r;
    if (value->bytes.size() < indirect_head) return AAFRESULT_BAD_SIZE;
    std::memcpy(pActualTypeID, value->bytes.data() + 1, sizeof(aafUID_t));
    return AAFRESULT_SUCCESS;
  }
  // The whole value as stored.
  HRESULT GetHandleBufLen(IAAFPropertyValue* pPropVal, aafUInt32* pLen) override {
    if (!pLen) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    *pLen = static_cast<aafUInt32>(value->bytes.size());
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetHandle(IAAFPropertyValue* pPropVal, aafUInt32 handleSize, aafDataBuffer_t pHandle,
                    aafUInt32* bytesRead) override {
    if (!pHandle || !bytesRead) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    if (value->bytes.size() > handleSize) return AAFRESULT_SMALLBUF;
    if (!value->bytes.empty()) std::memcpy(pHandle, value->bytes.data(), value->bytes.size());
    *bytesRead = static_cast<aafUInt32>(value->bytes.size());
    return AAFRESULT_SUCCESS;
  }

 private:
  ~OpaqueType() override = default;
};

class StrongReferenceType final
    : public Adds<TypeObject, IAAFTypeDefObjectRef, IAAFTypeDefStrongObjRef> {
 public:
  using Adds::Adds;

  HRESULT GetObjectType(IAAFClassDef** ppObjType) override {
    if (!ppObjType) return AAFRESULT_NULL_PARAM;
    return session().hand_out(session().meta_model().class_or_unknown(definition().target),
                              ppObjType);
  }
  HRESULT CreateValue(IUnknown* pObj, IAAFPropertyValue** ppPropVal) override {
    if (!pObj || !ppPropVal) return AAFRESULT_NULL_PARAM;
    AafObject* object = AafObject::behind(pObj);
    if (!object || object->shared_session() != shared_session()) return AAFRESULT_INVALID_OBJ;
    Ref<ValueObject> value = new_value(*this);
    value->objects.push_back(&object->stored());
    *ppPropVal = value.detach();
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetObject(IAAFPropertyValue* pPropVal, REFIID iid, IUnknown** ppObject) override {
    if (!ppObject) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    if (value->objects.empty()) return AAFRESULT_OBJECT_NOT_FOUND;
    return session().hand_out(*value->objects[0], iid, reinterpret_cast<void**>(ppObject));
  }

 private:
  ~StrongReferenceType() override = default;
};

class WeakReferenceType final
    : public Adds<TypeObject, IAAFTypeDefObjectRef, IAAFTypeDefWeakObjRef> {
 public:
  using Adds::Adds;

  HRESULT GetObjectType(IAAFClassDef** ppObjType) override {
    if (!ppObjType) return AAFRESULT_NULL_PARAM;
    return session().hand_out(session().meta_model().class_or_unknown(definition().target),
                              ppObjType);
  }
  HRESULT CreateValue(IUnknown* pObj, IAAFPropertyValue** ppPropVal) override {
    if (!pObj || !ppPropVal) return AAFRESULT_NULL_PARAM;
    AafObject* object = AafObject::behind(pObj);
    if (!object || object->shared_session() != shared_session()) return AAFRESULT_INVALID_OBJ;
    Ref<ValueObject> value = new_value(*this);
    const HRESULT r = session().file().target_to(object->stored(), value->targets.emplace_back());
    if (r < 0) return r;
    *ppPropVal = value.detach();
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetObject(IAAFPropertyValue* pPropVal, REFIID iid, IUnknown** ppObject) override {
    if (!ppObject) return AAFRESULT_NULL_PARAM;
    ValueObject* value = nullptr;
    StoredObject* object = nullptr;
    if (const HRESULT r = value_of(definition(), pPropVal, value); r < 0) return r;
    if (value->targets.empty()) return AAFRESULT_OBJECT_NOT_FOUND;
    // Classes and types have interfaces of their own.
    const aafUID_t id = value->targets[0].key.auid();
    void** out = reinterpret_cast<void**>(ppObject);
    MetaModel& meta = session().meta_model();
    if (const ClassDef* cls = meta.find_class(id)) return session().hand_out_class(*cls, iid, out);
    if (const TypeDef* type = meta.find_type(id)) return session().hand_out_type(*type, iid, out);
    if (const HRESULT r = session().file().resolve(value->targets[0], object); r < 0) return r;
    return session().hand_out(*object, iid, out);
  }

 private:
  ~WeakReferenceType() override = default;
};

}  // namespace

ComObject* make_type_object(const std::shared_ptr<FileSession>& session, const TypeDef& type) {
  switch (type.kind) {
    case TypeKind::integer:
      return new IntegerType(session, type);
    case TypeKind::character:
      return new CharacterType(session, type);
    case TypeKind::string:
      return new StringType(session, type);
    case TypeKind::stream:
      return new StreamType(session, type);
    case TypeKind::indirect:
      return new IndirectType(session, type);
    case TypeKind::opaque:
      return new OpaqueType(session, type);
    case TypeKind::enumeration:
      return new EnumerationType(session, type);
    case TypeKind::extendible_enumeration:
      return new ExtendibleType(session, type);
    case TypeKind::fixed_array:
    case TypeKind::variable_array:
    case TypeKind::set:
      return make_array_type_object(session, type);
    case TypeKind::record:
      return new RecordType(session, type);
    case TypeKind::rename:
      return new RenamedType(session, type);
    case TypeKind::strong_reference:
      return new StrongReferenceType(session, type);
    case TypeKind::weak_reference:
      return new WeakReferenceType(session, type);
  }
  return new OpaqueType(session, type);
}

}  // namespace aafobj
