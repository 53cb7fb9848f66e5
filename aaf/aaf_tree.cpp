#include "aaf/aaf_tree.h"

#include <array>
#include <vector>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_ref.h"
#include "aaf/aaf_text.h"
#include "aafobj/api/aaf_result_codes.h"
#include "host/text_format.h"

namespace aaf {

namespace {

// Real files go some twenty objects deep, and each takes a few calls of this walk.
constexpr int deepest = 200;
// Names of classes, properties and values.
constexpr std::size_t name_room = 512;
// Longer runs of bytes are shown by their beginning and their size.
constexpr std::size_t most_bytes = 64;

std::string hexadecimal(const aafUInt8* bytes, std::size_t count) {
  constexpr const char* digits = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += digits[bytes[i] >> 4U];
    text += digits[bytes[i] & 15U];
  }
  return text;
}

// `digits` of the lowest, with zeros in front.
std::string hexadecimal(std::uint32_t value, unsigned digits) {
  const std::array<aafUInt8, 4> bytes = {
      static_cast<aafUInt8>(value >> 24U), static_cast<aafUInt8>(value >> 16U),
      static_cast<aafUInt8>(value >> 8U), static_cast<aafUInt8>(value)};
  return hexadecimal(bytes.data(), bytes.size()).substr(8U - digits);
}

std::string decimal_text(std::int64_t value, int width = 0) {
  return utf8_from_text(decimal(value, width));
}

std::string text_of(const aafUID_t& id) {
  return "{" + hexadecimal(id.Data1, 8) + "-" + hexadecimal(id.Data2, 4) + "-" +
         hexadecimal(id.Data3, 4) + "-" + hexadecimal(id.Data4, 2) + "-" +
         hexadecimal(id.Data4 + 2, 6) + "}";
}

// The label, length and instance bytes, then the material number.
std::string text_of(const aafMobID_t& id) {
  return hexadecimal(id.SMPTELabel, sizeof id.SMPTELabel) + "-" + hexadecimal(&id.length, 1) + "-" +
         hexadecimal(&id.instanceHigh, 3) + "-" + text_of(id.material);
}

std::string text_of(const aafTimeStamp_t& at) {
  return decimal_text(at.date.year, 4) + "-" + decimal_text(at.date.month, 2) + "-" +
         decimal_text(at.date.day, 2) + " " + decimal_text(at.time.hour, 2) + ":" +
         decimal_text(at.time.minute, 2) + ":" + decimal_text(at.time.second, 2) + "." +
         decimal_text(at.time.fraction, 2);
}

std::string text_of(const aafRational_t& value) {
  return decimal_text(value.numerator) + "/" + decimal_text(value.denominator);
}

std::string text_of(const aafVersionType_t& value) {
  return decimal_text(value.major) + "." + decimal_text(value.minor);
}

std::string text_of(const aafProductVersion_t& value) {
  return decimal_text(value.major) + "." + decimal_text(value.minor) + "." +
         decimal_text(value.tertiary) + "." + decimal_text(value.patchLevel) + " type " +
         decimal_text(value.type);
}

template <class Named>
std::string name_of(Named* named) {
  std::u16string name;
  if (named == nullptr) return {};
  const HRESULT result = read_aaf_text<name_room>(
      name, [named](aafCharacter* out, aafUInt32 bytes) { return named->GetName(out, bytes); });
  return result == 0 ? utf8_from_text(name) : std::string();
}

std::string id_of(IUnknown* definition) {
  aafUID_t id{};
  const auto meta = AAF_QUERY(IAAFMetaDefinition, definition);
  return meta && meta->GetAUID(&id) == 0 ? text_of(id) : std::string("{?}");
}

aafMemPtr_t memory(void* pointer) {
  return static_cast<aafMemPtr_t>(pointer);
}

class Walk {
 public:
  explicit Walk(TreeSink& sink) : sink_(sink) {}

  void object(IUnknown* pointer);

 private:
  void properties(IAAFObject* object);
  void property(IAAFProperty* property);
  void value(IAAFPropertyValue* value);
  void value_of(IAAFTypeDef* type, IAAFPropertyValue* value);
  void fault(HRESULT result) { sink_.fault(result, result_words(result)); }

  HRESULT character(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT integer(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT renamed(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT enumeration(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT extendible(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT record(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT members(IAAFTypeDefRecord* type, IAAFPropertyValue* value);
  HRESULT text(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT fixed_array(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT variable_array(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT set(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT elements(IEnumAAFPropertyValues* values, std::size_t count);
  HRESULT strong(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT weak(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT stream(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT indirect(IAAFTypeDef* type, IAAFPropertyValue* value);
  HRESULT opaque(IAAFTypeDef* type, IAAFPropertyValue* value);

  template <class Native>
  HRESULT native(ScalarKind kind, IAAFTypeDefRecord* type, IAAFPropertyValue* value) {
    Native out{};
    const HRESULT result = type->GetStruct(value, memory(&out), sizeof out);
    if (result == 0) sink_.scalar(kind, text_of(out));
    return result;
  }
  template <class Array>
  HRESULT bytes(Array* type, IAAFPropertyValue* value, std::size_t count);

  TreeSink& sink_;
  int depth_ = 0;
};

// Counts a level of the tree, and knows when it is one too many.
class Level {
 public:
  explicit Level(int& depth) : depth_(depth) { ++depth_; }
  ~Level() { --depth_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  [[nodiscard]] bool too_deep() const { return depth_ > deepest; }

 private:
  int& depth_;
};

void Walk::object(IUnknown* pointer) {
  const Level level(depth_);
  if (level.too_deep()) return sink_.fault(AAFRESULT_BADCONTAINER, "the tree is too deep");
  const auto object = AAF_QUERY(IAAFObject, pointer);
  if (!object) {
    // Definitions of classes and types are no objects here, and have names.
    const auto meta = AAF_QUERY(IAAFMetaDefinition, pointer);
    return sink_.scalar(ScalarKind::reference, name_of(meta.get()) + " " + id_of(meta.get()));
  }
  AafRef<IAAFClassDef> cls;
  ObjectHead head;
  if (object->GetDefinition(cls.put()) == 0) head.class_name = name_of(cls.get());
  if (head.class_name.empty()) {
    head.is_known = false;
    head.class_name = id_of(cls.get());
  }
  sink_.begin_object(head);
  properties(object.get());
}

void Walk::properties(IAAFObject* object) {
  aafUInt32 there = 0;
  aafUInt32 told = 0;
  AafRef<IEnumAAFProperties> all;
  AafRef<IAAFProperty> each;
  static_cast<void>(object->CountProperties(&there));
  const HRESULT result = object->GetProperties(all.put());
  if (result < 0) {
    sink_.name("(properties)");
    fault(result);
    return sink_.end_object(0);
  }
  while (all->NextOne(each.put()) == 0) {
    property(each.get());
    ++told;
  }
  sink_.end_object(there > told ? there - told : 0);
}

void Walk::property(IAAFProperty* property) {
  AafRef<IAAFPropertyDef> definition;
  AafRef<IAAFPropertyValue> found;
  std::string name;
  if (property->GetDefinition(definition.put()) == 0) name = name_of(definition.get());
  sink_.name(name.empty() ? id_of(definition.get()) : name);
  const HRESULT result = property->GetValue(found.put());
  if (result < 0) return fault(result);
  value(found.get());
}

void Walk::value(IAAFPropertyValue* value) {
  AafRef<IAAFTypeDef> type;
  const HRESULT result = value->GetType(type.put());
  if (result < 0) return fault(result);
  value_of(type.get(), value);
}

void Walk::value_of(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const Level level(depth_);
  if (level.too_deep()) return sink_.fault(AAFRESULT_BADCONTAINER, "the tree is too deep");
  using Reader = HRESULT (Walk::*)(IAAFTypeDef*, IAAFPropertyValue*);
  static constexpr struct {
    eAAFTypeCategory_t category;
    Reader read;
  } readers[] = {
      {kAAFTypeCatInt, &Walk::integer},
      {kAAFTypeCatCharacter, &Walk::character},
      {kAAFTypeCatStrongObjRef, &Walk::strong},
      {kAAFTypeCatWeakObjRef, &Walk::weak},
      {kAAFTypeCatRename, &Walk::renamed},
      {kAAFTypeCatEnum, &Walk::enumeration},
      {kAAFTypeCatFixedArray, &Walk::fixed_array},
      {kAAFTypeCatVariableArray, &Walk::variable_array},
      {kAAFTypeCatSet, &Walk::set},
      {kAAFTypeCatRecord, &Walk::record},
      {kAAFTypeCatStream, &Walk::stream},
      {kAAFTypeCatString, &Walk::text},
      {kAAFTypeCatExtEnum, &Walk::extendible},
      {kAAFTypeCatIndirect, &Walk::indirect},
      {kAAFTypeCatOpaque, &Walk::opaque},
  };
  eAAFTypeCategory_t category = kAAFTypeCatUnknown;
  HRESULT result = type->GetTypeCategory(&category);
  if (result < 0) return fault(result);
  result = AAFRESULT_BAD_TYPE;
  for (const auto& reader : readers) {
    if (reader.category == category) result = (this->*reader.read)(type, value);
  }
  if (result < 0) fault(result);
}

HRESULT Walk::integer(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto number = AAF_QUERY(IAAFTypeDefInt, type);
  if (!number) return AAFRESULT_BAD_TYPE;
  aafBoolean_t is_signed = kAAFTrue;
  aafInt64 out = 0;
  static_cast<void>(number->IsSigned(&is_signed));
  const HRESULT result = number->GetInteger(value, memory(&out), sizeof out);
  if (result < 0) return result;
  const bool is_unsigned = is_signed == kAAFFalse;
  sink_.scalar(ScalarKind::number,
               is_unsigned ? std::to_string(static_cast<std::uint64_t>(out)) : std::to_string(out));
  return 0;
}

HRESULT Walk::character(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto character = AAF_QUERY(IAAFTypeDefCharacter, type);
  if (!character) return AAFRESULT_BAD_TYPE;
  aafCharacter out{};
  const HRESULT result = character->GetCharacter(value, &out);
  if (result == 0) sink_.scalar(ScalarKind::text, utf8_from_text(text_from_aaf({&out, 1})));
  return result;
}

HRESULT Walk::renamed(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto rename = AAF_QUERY(IAAFTypeDefRename, type);
  AafRef<IAAFPropertyValue> base;
  if (!rename) return AAFRESULT_BAD_TYPE;
  const HRESULT result = rename->GetBaseValue(value, base.put());
  if (result == 0) this->value(base.get());
  return result;
}

HRESULT Walk::enumeration(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto enumerated = AAF_QUERY(IAAFTypeDefEnum, type);
  if (!enumerated) return AAFRESULT_BAD_TYPE;
  std::u16string name;
  const auto read = [&](aafCharacter* out, aafUInt32 bytes) {
    return enumerated->GetNameFromValue(value, out, bytes);
  };
  if (read_aaf_text<name_room>(name, read) == 0) {
    const bool is_boolean = name == u"True" || name == u"False";
    sink_.scalar(is_boolean ? ScalarKind::boolean : ScalarKind::identifier, utf8_from_text(name));
    return 0;
  }
  aafInt64 number = 0;
  const HRESULT result = enumerated->GetIntegerValue(value, &number);
  if (result == 0) sink_.scalar(ScalarKind::number, std::to_string(number));
  return result;
}

HRESULT Walk::extendible(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto enumerated = AAF_QUERY(IAAFTypeDefExtEnum, type);
  if (!enumerated) return AAFRESULT_BAD_TYPE;
  std::u16string name;
  const auto read = [&](aafCharacter* out, aafUInt32 bytes) {
    return enumerated->GetNameFromValue(value, out, bytes);
  };
  if (read_aaf_text<name_room>(name, read) == 0) {
    sink_.scalar(ScalarKind::identifier, utf8_from_text(name));
    return 0;
  }
  aafUID_t id{};
  const HRESULT result = enumerated->GetAUIDValue(value, &id);
  if (result == 0) sink_.scalar(ScalarKind::identifier, text_of(id));
  return result;
}

HRESULT Walk::record(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto fields = AAF_QUERY(IAAFTypeDefRecord, type);
  const auto meta = AAF_QUERY(IAAFMetaDefinition, type);
  if (!fields || !meta) return AAFRESULT_BAD_TYPE;
  const std::string name = name_of(meta.get());
  if (name == "AUID") return native<aafUID_t>(ScalarKind::identifier, fields.get(), value);
  if (name == "MobIDType") return native<aafMobID_t>(ScalarKind::identifier, fields.get(), value);
  if (name == "Rational") return native<aafRational_t>(ScalarKind::text, fields.get(), value);
  if (name == "TimeStamp") return native<aafTimeStamp_t>(ScalarKind::text, fields.get(), value);
  if (name == "VersionType") {
    return native<aafVersionType_t>(ScalarKind::text, fields.get(), value);
  }
  if (name == "ProductVersion" || name == "ProductVersionType") {
    return native<aafProductVersion_t>(ScalarKind::text, fields.get(), value);
  }
  return members(fields.get(), value);
}

HRESULT Walk::members(IAAFTypeDefRecord* type, IAAFPropertyValue* value) {
  aafUInt32 count = 0;
  const HRESULT result = type->GetCount(&count);
  if (result < 0) return result;
  sink_.begin_list(count, true);
  for (aafUInt32 i = 0; i < count; ++i) {
    std::u16string name;
    AafRef<IAAFPropertyValue> member;
    const auto read = [&](aafCharacter* out, aafUInt32 bytes) {
      return type->GetMemberName(i, out, bytes);
    };
    const bool is_named = read_aaf_text<name_room>(name, read) == 0;
    sink_.name(is_named ? utf8_from_text(name) : std::to_string(i));
    const HRESULT got = type->GetValue(value, i, member.put());
    if (got < 0) {
      fault(got);
    } else {
      this->value(member.get());
    }
  }
  sink_.end_list();
  return 0;
}

HRESULT Walk::text(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto string = AAF_QUERY(IAAFTypeDefString, type);
  if (!string) return AAFRESULT_BAD_TYPE;
  aafUInt32 count = 0;
  HRESULT result = string->GetCount(value, &count);
  if (result < 0) return result;
  std::vector<aafCharacter> room(count + std::size_t{1});
  const auto size = static_cast<aafUInt32>(room.size() * sizeof(aafCharacter));
  result = string->GetElements(value, memory(room.data()), size);
  if (result < 0) return result;
  const aaf_string_view all(room.data(), count);
  sink_.scalar(ScalarKind::text, utf8_from_text(text_from_aaf(all.substr(0, all.find(L'\0')))));
  return 0;
}

// Whether elements are single bytes, which are shown together.
bool are_bytes(IAAFTypeDef* element) {
  const auto number = AAF_QUERY(IAAFTypeDefInt, element);
  aafUInt32 size = 0;
  return number && number->GetSize(&size) == 0 && size == 1;
}

template <class Array>
HRESULT Walk::bytes(Array* type, IAAFPropertyValue* value, std::size_t count) {
  std::vector<aafUInt8> all(count + std::size_t{1});
  const HRESULT result = type->GetCArray(value, all.data(), static_cast<aafUInt32>(all.size()));
  if (result < 0) return result;
  if (count > most_bytes) {
    sink_.cut_bytes(hexadecimal(all.data(), most_bytes), count);
  } else {
    sink_.scalar(ScalarKind::bytes, hexadecimal(all.data(), count));
  }
  return 0;
}

HRESULT Walk::fixed_array(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto array = AAF_QUERY(IAAFTypeDefFixedArray, type);
  if (!array) return AAFRESULT_BAD_TYPE;
  aafUInt32 count = 0;
  AafRef<IAAFTypeDef> element;
  AafRef<IEnumAAFPropertyValues> values;
  HRESULT result = array->GetCount(&count);
  if (result < 0) return result;
  if (array->GetType(element.put()) == 0 && are_bytes(element.get())) {
    return bytes(array.get(), value, count);
  }
  result = array->GetElements(value, values.put());
  return result < 0 ? result : elements(values.get(), count);
}

HRESULT Walk::variable_array(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto array = AAF_QUERY(IAAFTypeDefVariableArray, type);
  if (!array) return AAFRESULT_BAD_TYPE;
  aafUInt32 count = 0;
  AafRef<IAAFTypeDef> element;
  AafRef<IEnumAAFPropertyValues> values;
  HRESULT result = array->GetCount(value, &count);
  if (result < 0) return result;
  if (array->GetType(element.put()) == 0 && are_bytes(element.get())) {
    return bytes(array.get(), value, count);
  }
  result = array->GetElements(value, values.put());
  return result < 0 ? result : elements(values.get(), count);
}

HRESULT Walk::set(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto all = AAF_QUERY(IAAFTypeDefSet, type);
  if (!all) return AAFRESULT_BAD_TYPE;
  aafUInt32 count = 0;
  AafRef<IEnumAAFPropertyValues> values;
  HRESULT result = all->GetCount(value, &count);
  if (result == 0) result = all->GetElements(value, values.put());
  return result < 0 ? result : elements(values.get(), count);
}

HRESULT Walk::elements(IEnumAAFPropertyValues* values, std::size_t count) {
  sink_.begin_list(count, false);
  AafRef<IAAFPropertyValue> each;
  HRESULT result = values->NextOne(each.put());
  while (result == 0) {
    value(each.get());
    result = values->NextOne(each.put());
  }
  if (result != AAFRESULT_NO_MORE_OBJECTS) fault(result);
  sink_.end_list();
  return 0;
}

HRESULT Walk::strong(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto reference = AAF_QUERY(IAAFTypeDefObjectRef, type);
  AafRef<IUnknown> target;
  if (!reference) return AAFRESULT_BAD_TYPE;
  const HRESULT result = reference->GetObject(value, IID_IUnknown, target.put());
  if (result == 0) object(target.get());
  return result;
}

HRESULT Walk::weak(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto reference = AAF_QUERY(IAAFTypeDefObjectRef, type);
  AafRef<IUnknown> target;
  if (!reference) return AAFRESULT_BAD_TYPE;
  const HRESULT result = reference->GetObject(value, IID_IUnknown, target.put());
  if (result < 0) return result;
  std::string shown;
  aafUID_t id{};
  aafMobID_t mob_id{};
  if (const auto meta = AAF_QUERY(IAAFMetaDefinition, target.get())) {
    shown = name_of(meta.get()) + " " + id_of(meta.get());
  } else if (const auto definition = AAF_QUERY(IAAFDefObject, target.get())) {
    shown = name_of(definition.get());
    if (definition->GetAUID(&id) == 0) shown += (shown.empty() ? "" : " ") + text_of(id);
  } else if (const auto mob = AAF_QUERY(IAAFMob, target.get())) {
    shown = name_of(mob.get());
    if (mob->GetMobID(&mob_id) == 0) shown += (shown.empty() ? "" : " ") + text_of(mob_id);
  } else {
    shown = "an object";
  }
  sink_.scalar(ScalarKind::reference, shown);
  return 0;
}

HRESULT Walk::stream(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto data = AAF_QUERY(IAAFTypeDefStream, type);
  aafInt64 size = 0;
  if (!data) return AAFRESULT_BAD_TYPE;
  const HRESULT result = data->GetSize(value, &size);
  if (result == 0) sink_.scalar(ScalarKind::stream_size, std::to_string(size));
  return result;
}

HRESULT Walk::indirect(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto wrapped = AAF_QUERY(IAAFTypeDefIndirect, type);
  AafRef<IAAFPropertyValue> actual;
  if (!wrapped) return AAFRESULT_BAD_TYPE;
  const HRESULT result = wrapped->GetActualValue(value, actual.put());
  if (result == 0) this->value(actual.get());
  return result;
}

HRESULT Walk::opaque(IAAFTypeDef* type, IAAFPropertyValue* value) {
  const auto data = AAF_QUERY(IAAFTypeDefOpaque, type);
  aafUInt32 size = 0;
  aafUInt32 read = 0;
  if (!data) return AAFRESULT_BAD_TYPE;
  HRESULT result = data->GetHandleBufLen(value, &size);
  if (result < 0) return result;
  std::vector<aafUInt8> all(size + std::size_t{1});
  result = data->GetHandle(value, static_cast<aafUInt32>(all.size()), all.data(), &read);
  if (result < 0) return result;
  const std::size_t shown = read < most_bytes ? read : most_bytes;
  sink_.cut_bytes(hexadecimal(all.data(), shown), read);
  return 0;
}

}  // namespace

std::string result_words(std::int32_t result) {
  std::string number = "0x" + hexadecimal(static_cast<std::uint32_t>(result), 8);
  std::u16string words;
  const auto read = [result](aafCharacter* out, aafUInt32 bytes) {
    return AAFDLL::AAFResultToText(result, out, bytes);
  };
  if (AAFDLL::instance() == nullptr || read_aaf_text<name_room>(words, read) != 0) return number;
  return utf8_from_text(words) + " (" + number + ")";
}

std::int32_t tell_tree(const std::string& utf8_path, TreeSink& sink) {
  const aaf_string path = aaf_from_text(text_from_utf8(utf8_path));
  AafRef<IAAFFile> file;
  HRESULT result = AAFDLL::AAFFileOpenExistingRead(path.c_str(), 0, file.put());
  if (result < 0) return result;
  result = tell_tree_of(*file.get(), sink);
  static_cast<void>(file->Close());
  return result;
}

std::int32_t tell_tree_of(IAAFFile& file, TreeSink& sink) {
  AafRef<IAAFHeader> header;
  const HRESULT result = file.GetHeader(header.put());
  if (result >= 0) Walk(sink).object(header.get());
  return result;
}

}  // namespace aaf
