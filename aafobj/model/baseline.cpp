#include "aafobj/model/baseline.h"

#include <algorithm>
#include <cassert>

namespace aafobj {
namespace {

template <typename Table, typename Order>
const typename Table::value_type* find_by_identifier(const Table& table, const Order& order,
                                                     const aafUID_t& identifier) {
  const auto at = std::lower_bound(
      order.begin(), order.end(), identifier,
      [&](std::size_t row, const aafUID_t& id) { return table[row].identifier < id; });
  if (at == order.end() || table[*at].identifier != identifier) return nullptr;
  return &table[*at];
}

std::size_t number(ClassIndex index) {
  return static_cast<std::size_t>(index);
}

}  // namespace

const ClassRow& row_of(ClassIndex index) {
  assert(index != ClassIndex::none);
  return class_table[number(index)];
}

const TypeRow& row_of(TypeIndex index) {
  assert(index != TypeIndex::none);
  return type_table[static_cast<std::size_t>(index)];
}

const ClassRow* find_class(const aafUID_t& identifier) {
  return find_by_identifier(class_table, class_by_identifier, identifier);
}

const TypeRow* find_type(const aafUID_t& identifier) {
  return find_by_identifier(type_table, type_by_identifier, identifier);
}

const PropertyRow* find_property(const aafUID_t& identifier) {
  return find_by_identifier(property_table, property_by_identifier, identifier);
}

const PropertyRow* find_property(std::uint16_t pid) {
  const auto at = std::lower_bound(
      property_by_pid.begin(), property_by_pid.end(), pid,
      [](std::size_t row, std::uint16_t n) { return property_table[row].pid < n; });
  if (at == property_by_pid.end() || property_table[*at].pid != pid) return nullptr;
  return &property_table[*at];
}

ClassIndex index_of(const ClassRow& row) {
  return static_cast<ClassIndex>(&row - class_table.data());
}

TypeIndex index_of(const TypeRow& row) {
  return static_cast<TypeIndex>(&row - type_table.data());
}

bool is_kind_of(ClassIndex index, ClassIndex ancestor) {
  while (index != ClassIndex::none) {
    if (index == ancestor) return true;
    index = row_of(index).parent;
  }
  return false;
}

std::span<const PropertyRow> own_properties_of(ClassIndex index) {
  const ClassRow& row = row_of(index);
  return {property_table.data() + row.first_property, row.property_count};
}

std::span<const TypeMemberRow> members_of(const TypeRow& row) {
  return {type_member_table.data() + row.first_member, row.member_count};
}

ClassIndex branch_of(ClassIndex index) {
  while (row_of(index).parent != ClassIndex::Root && row_of(index).parent != ClassIndex::none) {
    index = row_of(index).parent;
  }
  return index;
}

}  // namespace aafobj
