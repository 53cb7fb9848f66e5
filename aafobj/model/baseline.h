#pragma once

#include <span>

#include "aafobj/model/auid.h"
#include "aafobj/model/class_table.h"
#include "aafobj/model/property_table.h"
#include "aafobj/model/type_table.h"

// Look-ups in the tables of the baseline model. All rows live as long as the program; null
// says that the baseline has no such row.
namespace aafobj {

const ClassRow& row_of(ClassIndex index);  // index must not be none
const TypeRow& row_of(TypeIndex index);    // index must not be none

const ClassRow* find_class(const aafUID_t& identifier);
const TypeRow* find_type(const aafUID_t& identifier);
const PropertyRow* find_property(const aafUID_t& identifier);
// Numbers below 0x8000 mean the same in every file, whatever the class. 0 finds nothing.
const PropertyRow* find_property(std::uint16_t pid);

ClassIndex index_of(const ClassRow& row);
TypeIndex index_of(const TypeRow& row);

// Whether the class is the other one or descends from it.
bool is_kind_of(ClassIndex index, ClassIndex ancestor);

// The properties that the class adds to those of its ancestors.
std::span<const PropertyRow> own_properties_of(ClassIndex index);

// Fields, values or path steps of the type, in order.
std::span<const TypeMemberRow> members_of(const TypeRow& row);

// The class that stands above all others in its branch: InterchangeObject, MetaDefinition or
// MetaDictionary; Root for itself.
ClassIndex branch_of(ClassIndex index);

}  // namespace aafobj
