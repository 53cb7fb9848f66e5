#include "aafobj/model/value_order.h"

#include <algorithm>

namespace aafobj {
namespace {

constexpr int max_depth = 32;  // of types in types; real ones go three deep

class ValueTurner {
 public:
  ValueTurner(MetaModel& model, ByteOrder from) : m_model(model), m_from(from) {}

  bool turn(const TypeDef& type, std::span<std::byte> value, int depth) {
    if (depth > max_depth) return false;
    switch (type.kind) {
      case TypeKind::integer:
        return turn_number(type, value);
      case TypeKind::character:
      case TypeKind::string:
        return turn_units(value);
      case TypeKind::extendible_enumeration:
        return turn_auid(value);
      case TypeKind::enumeration:
      case TypeKind::rename:
        return type.element && turn(*type.element, value, depth + 1);
      case TypeKind::record:
        return turn_record(type, value, depth);
      case TypeKind::fixed_array:
      case TypeKind::variable_array:
      case TypeKind::set:
        return turn_elements(type, value, depth);
      case TypeKind::indirect:
      case TypeKind::opaque:
        return turn_indirect(value, depth);
      case TypeKind::stream:
      case TypeKind::strong_reference:
      case TypeKind::weak_reference:
        return false;
    }
    return false;
  }

 private:
  static bool turn_number(const TypeDef& type, std::span<std::byte> value) {
    if (value.size() != type.size_bytes) return false;
    std::reverse(value.begin(), value.end());
    return true;
  }

  static bool turn_units(std::span<std::byte> value) {
    if (value.size() % 2 != 0) return false;
    for (std::size_t i = 0; i < value.size(); i += 2)
      std::swap(value[i], value[i + 1]);
    return true;
  }

  static bool turn_auid(std::span<std::byte> value) {
    if (value.size() != sizeof(aafUID_t)) return false;
    std::reverse(value.begin(), value.begin() + 4);
    std::reverse(value.begin() + 4, value.begin() + 6);
    std::reverse(value.begin() + 6, value.begin() + 8);
    return true;
  }

  bool turn_record(const TypeDef& type, std::span<std::byte> value, int depth) {
    if (type.size_bytes == 0 || value.size() != type.size_bytes) return false;
    for (const TypeDef::Member& member : type.members) {
      const std::size_t size = member.type->size_bytes;
      if (!turn(*member.type, value.first(size), depth + 1)) return false;
      value = value.subspan(size);
    }
    return true;
  }

  bool turn_elements(const TypeDef& type, std::span<std::byte> value, int depth) {
    if (!type.element) return false;
    const std::size_t size = type.element->size_bytes;
    if (size == 0 || value.size() % size != 0) return false;
    for (std::size_t i = 0; i < value.size(); i += size) {
      if (!turn(*type.element, value.subspan(i, size), depth + 1)) return false;
    }
    return true;
  }

  bool turn_indirect(std::span<std::byte> value, int depth) {
    constexpr std::size_t head = 1 + sizeof(aafUID_t);
    if (value.size() < head || value[0] != static_cast<std::byte>(m_from)) return false;
    ByteReader reader(value.subspan(1), m_from);
    const TypeDef* type = m_model.find_type(reader.take_auid());
    if (!type || !turn(*type, value.subspan(head), depth + 1)) return false;
    value[0] =
        static_cast<std::byte>(m_from == ByteOrder::big ? ByteOrder::little : ByteOrder::big);
    return turn_auid(value.subspan(1, sizeof(aafUID_t)));
  }

  MetaModel& m_model;
  ByteOrder m_from;
};

}  // namespace

bool turn_value(MetaModel& model, const TypeDef& type, std::span<std::byte> value, ByteOrder from) {
  std::vector<std::byte> turned(value.begin(), value.end());
  if (!ValueTurner(model, from).turn(type, turned, 0)) return false;
  std::copy(turned.begin(), turned.end(), value.begin());
  return true;
}

}  // namespace aafobj
