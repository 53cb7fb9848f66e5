#include "aafobj/dump/value_dump.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "aafobj/dump/shown_text.h"
#include "aafobj/model/byte_stream.h"

namespace aafobj {
namespace {

using Bytes = std::span<const std::byte>;

constexpr std::byte little_mark{0x4c};

// Sign-extended when the type says so.
bool take_number(Bytes bytes, bool is_signed, std::uint64_t& number) {
  if (bytes.empty() || bytes.size() > sizeof(number)) return false;
  number = 0;
  for (std::size_t i = bytes.size(); i-- > 0;)
    number = (number << 8) | std::to_integer<std::uint64_t>(bytes[i]);
  const auto bits = static_cast<unsigned>(bytes.size() * 8);
  if (is_signed && bits < 64 && ((number >> (bits - 1)) & 1u) != 0) number |= ~0ULL << bits;
  return true;
}

std::string number_text(std::uint64_t number, bool is_signed) {
  return is_signed ? std::to_string(static_cast<std::int64_t>(number)) : std::to_string(number);
}

template <typename T>
T read_as(Bytes bytes) {
  T value{};
  std::memcpy(&value, bytes.data(), sizeof(T));
  return value;
}

std::u16string units_of(Bytes bytes) {
  std::u16string text(bytes.size() / 2, u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * 2);
  return text;
}

std::string rational_text(Bytes bytes) {
  const auto value = read_as<aafRational_t>(bytes);
  return std::to_string(value.numerator) + "/" + std::to_string(value.denominator);
}

std::string time_text(Bytes bytes) {
  const auto at = read_as<aafTimeStamp_t>(bytes);
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02u:%02u:%02u.%02u", at.date.year,
                unsigned{at.date.month}, unsigned{at.date.day}, unsigned{at.time.hour},
                unsigned{at.time.minute}, unsigned{at.time.second}, unsigned{at.time.fraction});
  return text.data();
}

std::string version_text(Bytes bytes) {
  return std::to_string(std::to_integer<std::int8_t>(bytes[0])) + "." +
         std::to_string(std::to_integer<std::int8_t>(bytes[1]));
}

// Four numbers, and the kind of release.
std::string product_version_text(Bytes bytes) {
  ByteReader reader(bytes, ByteOrder::little);
  std::string text;
  for (int i = 0; i < 4; ++i)
    text += (i > 0 ? "." : "") + std::to_string(reader.take<std::uint16_t>());
  return text + " type " + std::to_string(reader.take<std::uint8_t>());
}

std::string identifier_text(Bytes bytes) {
  return shown(read_as<aafUID_t>(bytes));
}

std::string mob_id_text(Bytes bytes) {
  return shown(read_as<aafMobID_t>(bytes));
}

// Records that have a form of their own, in place of their fields.
struct RecordForm {
  TypeIndex type;
  std::size_t size_bytes;
  ShownKind kind;
  std::string (*text)(Bytes);
};

constexpr std::array<RecordForm, 6> record_forms = {{
    {TypeIndex::AUID, 16, ShownKind::word, identifier_text},
    {TypeIndex::MobIDType, 32, ShownKind::word, mob_id_text},
    {TypeIndex::Rational, 8, ShownKind::text, rational_text},
    {TypeIndex::TimeStamp, 8, ShownKind::text, time_text},
    {TypeIndex::VersionType, 2, ShownKind::text, version_text},
    {TypeIndex::ProductVersion, 9, ShownKind::text, product_version_text},
}};
static_assert(sizeof(aafUID_t) == 16 && sizeof(aafMobID_t) == 32);
static_assert(sizeof(aafRational_t) == 8 && sizeof(aafTimeStamp_t) == 8);

bool is_single_byte(const TypeDef& type) {
  return type.kind == TypeKind::integer && type.size_bytes == 1;
}

}  // namespace

const std::array<ValueDump::KindReader, 12> ValueDump::readers = {{
    {TypeKind::integer, &ValueDump::integer},
    {TypeKind::character, &ValueDump::character},
    {TypeKind::string, &ValueDump::string},
    {TypeKind::enumeration, &ValueDump::enumeration},
    {TypeKind::extendible_enumeration, &ValueDump::extendible},
    {TypeKind::fixed_array, &ValueDump::fixed_array},
    {TypeKind::variable_array, &ValueDump::array},
    {TypeKind::set, &ValueDump::array},
    {TypeKind::record, &ValueDump::record},
    {TypeKind::rename, &ValueDump::rename},
    {TypeKind::indirect, &ValueDump::indirect},
    {TypeKind::opaque, &ValueDump::opaque},
}};

void ValueDump::tell(const TypeDef& type, Bytes bytes, int level) {
  m_level = level;
  value(type, bytes);
}

void ValueDump::plain_bytes(Bytes bytes) {
  m_sink.bytes(shown_bytes(bytes), bytes.size());
}

// Of several values with one number the first counts.
const ValueDump::Members& ValueDump::members_of(const TypeDef& type) {
  const auto [at, is_new] = m_members.try_emplace(&type);
  Members& members = at->second;
  if (!is_new) return members;
  for (const TypeDef::Member& member : type.members) {
    members.by_number.try_emplace(static_cast<std::uint64_t>(member.value), &member);
    members.by_identifier.try_emplace(member.identifier, &member);
  }
  return members;
}

void ValueDump::value(const TypeDef& type, Bytes bytes) {
  if (m_level > deepest_level) return m_sink.fault("the tree is too deep");
  ++m_level;
  if (!read(type, bytes)) {
    const std::string name = type.name.empty() ? shown(type.identifier) : shown_name(type.name);
    m_sink.fault(bytes.empty() ? "no bytes, where " + name + " is expected"
                               : "no value of " + name + ": " + shown_bytes_and_count(bytes));
  }
  --m_level;
}

bool ValueDump::read(const TypeDef& type, Bytes bytes) {
  const auto at = std::find_if(readers.begin(), readers.end(),
                               [&](const KindReader& r) { return r.kind == type.kind; });
  return at != readers.end() && (this->*at->read)(type, bytes);
}

bool ValueDump::integer(const TypeDef& type, Bytes bytes) {
  std::uint64_t number = 0;
  if (bytes.size() != type.size_bytes || !take_number(bytes, type.is_signed, number)) return false;
  m_sink.scalar(ShownKind::number, number_text(number, type.is_signed));
  return true;
}

bool ValueDump::character(const TypeDef&, Bytes bytes) {
  if (bytes.size() != 2) return false;
  m_sink.scalar(ShownKind::text, utf8_text(units_of(bytes)));
  return true;
}

// What stands behind the NUL is no part of the text, and a missing NUL is forgiven.
bool ValueDump::string(const TypeDef&, Bytes bytes) {
  if (bytes.size() % 2 != 0) return false;
  const std::u16string text = units_of(bytes);
  m_sink.scalar(ShownKind::text, utf8_text(std::u16string_view(text).substr(0, text.find(u'\0'))));
  return true;
}

bool ValueDump::enumeration(const TypeDef& type, Bytes bytes) {
  std::uint64_t number = 0;
  const bool is_signed = type.element && type.element->is_signed;
  if (type.size_bytes != 0 && bytes.size() != type.size_bytes) return false;
  if (!take_number(bytes, is_signed, number)) return false;
  const auto& members = members_of(type).by_number;
  const auto member = members.find(number);
  if (member == members.end()) {
    m_sink.scalar(ShownKind::number, number_text(number, is_signed));
    return true;
  }
  const bool is_boolean = type.baseline == TypeIndex::Boolean;
  m_sink.scalar(is_boolean ? ShownKind::boolean : ShownKind::word,
                shown_name(member->second->name));
  return true;
}

bool ValueDump::extendible(const TypeDef& type, Bytes bytes) {
  if (bytes.size() != sizeof(aafUID_t)) return false;
  const auto id = read_as<aafUID_t>(bytes);
  const auto& members = members_of(type).by_identifier;
  const auto member = members.find(id);
  m_sink.scalar(ShownKind::word,
                member == members.end() ? shown(id) : shown_name(member->second->name));
  return true;
}

bool ValueDump::fixed_array(const TypeDef& type, Bytes bytes) {
  const std::size_t size = type.element ? type.element->size_bytes : 0;
  if (size == 0 || bytes.size() % size != 0 || bytes.size() / size != type.element_count) {
    return false;
  }
  return array(type, bytes);
}

bool ValueDump::array(const TypeDef& type, Bytes bytes) {
  if (!type.element) return false;
  if (is_single_byte(*type.element)) {
    plain_bytes(bytes);
    return true;
  }
  // An array of characters is how the model tells of several texts.
  const bool is_text =
      type.element->kind == TypeKind::string || type.element->kind == TypeKind::character;
  if (is_text && type.kind == TypeKind::variable_array) return text_list(bytes);
  const std::size_t size = type.element->size_bytes;
  if (size == 0 || bytes.size() % size != 0) return false;
  m_sink.begin_list(bytes.size() / size, false);
  for (; !bytes.empty(); bytes = bytes.subspan(size))
    value(*type.element, bytes.first(size));
  m_sink.end_list();
  return true;
}

// Texts one after the other, each with its NUL; the last may lack it.
bool ValueDump::text_list(Bytes bytes) {
  if (bytes.size() % 2 != 0) return false;
  std::u16string all = units_of(bytes);
  if (!all.empty() && all.back() != u'\0') all += u'\0';
  m_sink.begin_list(static_cast<std::size_t>(std::count(all.begin(), all.end(), u'\0')), false);
  std::u16string_view left = all;
  while (!left.empty()) {
    const std::size_t end = left.find(u'\0');
    m_sink.scalar(ShownKind::text, utf8_text(left.substr(0, end)));
    left.remove_prefix(end + 1);
  }
  m_sink.end_list();
  return true;
}

bool ValueDump::record(const TypeDef& type, Bytes bytes) {
  const auto form = std::find_if(record_forms.begin(), record_forms.end(),
                                 [&](const RecordForm& f) { return f.type == type.baseline; });
  if (form != record_forms.end()) {
    if (bytes.size() != form->size_bytes) return false;
    m_sink.scalar(form->kind, form->text(bytes));
    return true;
  }
  // Each field must take bytes, or a type that names itself would fan out without end.
  std::size_t total = 0;
  for (const TypeDef::Member& field : type.members) {
    if (!field.type || field.type->size_bytes == 0) return false;
    total += field.type->size_bytes;
  }
  if (total != bytes.size()) return false;
  m_sink.begin_list(type.members.size(), true);
  for (const TypeDef::Member& field : type.members) {
    m_sink.name(field.name.empty() ? "?" : shown_name(field.name));
    value(*field.type, bytes.first(field.type->size_bytes));
    bytes = bytes.subspan(field.type->size_bytes);
  }
  m_sink.end_list();
  return true;
}

bool ValueDump::rename(const TypeDef& type, Bytes bytes) {
  if (!type.element) return false;
  value(*type.element, bytes);
  return true;
}

// The byte order's letter and the identifier of the type stand in front of the value.
bool ValueDump::indirect(const TypeDef& type, Bytes bytes) {
  constexpr std::size_t head = 1 + sizeof(aafUID_t);
  if (bytes.size() < head || bytes[0] != little_mark) return false;
  const auto id = read_as<aafUID_t>(bytes.subspan(1));
  const TypeDef* const actual = type.kind == TypeKind::opaque ? nullptr : m_meta.find_type(id);
  if (actual) {
    value(*actual, bytes.subspan(head));
  } else {
    typed_bytes(id, bytes.subspan(head));
  }
  return true;
}

bool ValueDump::opaque(const TypeDef& type, Bytes bytes) {
  return indirect(type, bytes);
}

void ValueDump::typed_bytes(const aafUID_t& type, Bytes bytes) {
  m_sink.begin_list(2, true);
  m_sink.name("Type");
  m_sink.scalar(ShownKind::word, shown(type));
  m_sink.name("Value");
  plain_bytes(bytes);
  m_sink.end_list();
}

}  // namespace aafobj
