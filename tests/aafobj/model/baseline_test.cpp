#include "aafobj/model/baseline.h"

#include <gtest/gtest.h>

#include <set>

#include "aafobj/api/aaf_class_ids.h"

namespace aafobj {
namespace {

const ClassRow& class_named(std::string_view name) {
  for (const ClassRow& row : class_table) {
    if (row.name == name) return row;
  }
  ADD_FAILURE() << name;
  return class_table[0];
}

const TypeRow& type_named(std::string_view name) {
  for (const TypeRow& row : type_table) {
    if (row.name == name) return row;
  }
  ADD_FAILURE() << name;
  return type_table[0];
}

TEST(Baseline, TablesBeginAndEndWhereTheyShould) {
  EXPECT_EQ(class_table.size(), 103u);
  EXPECT_EQ(property_table.size(), 323u);
  EXPECT_EQ(type_table.size(), 154u);
  EXPECT_EQ(class_table.front().name, "Root");
  EXPECT_EQ(class_table.back().name, "DescriptiveFramework");
  EXPECT_EQ(property_table.front().name, "MetaDictionary");
  EXPECT_EQ(type_table.front().name, "UInt8");
  EXPECT_EQ(type_table.back().name, "StrongReferenceVector<DescriptiveObject>");
  EXPECT_EQ(numbered_property_count, 313u);  // ten of MPEG video have no number
}

TEST(Baseline, EveryRowIsFoundByItsIdentifier) {
  for (const ClassRow& row : class_table)
    EXPECT_EQ(find_class(row.identifier), &row) << row.name;
  for (const TypeRow& row : type_table)
    EXPECT_EQ(find_type(row.identifier), &row) << row.name;
  for (const PropertyRow& row : property_table) {
    EXPECT_EQ(find_property(row.identifier), &row) << row.name;
  }
}

TEST(Baseline, OrdersAreStrictlyAscending) {
  for (std::size_t i = 1; i < class_count; ++i) {
    EXPECT_LT(class_table[class_by_identifier[i - 1]].identifier,
              class_table[class_by_identifier[i]].identifier);
  }
  for (std::size_t i = 1; i < type_count; ++i) {
    EXPECT_LT(type_table[type_by_identifier[i - 1]].identifier,
              type_table[type_by_identifier[i]].identifier);
  }
  for (std::size_t i = 1; i < property_count; ++i) {
    EXPECT_LT(property_table[property_by_identifier[i - 1]].identifier,
              property_table[property_by_identifier[i]].identifier);
  }
  for (std::size_t i = 1; i < numbered_property_count; ++i) {
    EXPECT_LT(property_table[property_by_pid[i - 1]].pid, property_table[property_by_pid[i]].pid);
  }
}

TEST(Baseline, WhatIsNotInTheTablesIsNotFound) {
  EXPECT_EQ(find_class(null_auid), nullptr);
  EXPECT_EQ(find_type(null_auid), nullptr);
  EXPECT_EQ(find_property(null_auid), nullptr);
  aafUID_t last = null_auid;
  last.Data1 = 0xffffffff;
  EXPECT_EQ(find_class(last), nullptr);
  EXPECT_EQ(find_property(std::uint16_t{0}), nullptr);
  EXPECT_EQ(find_property(std::uint16_t{0x4406 + 0x10}), nullptr);
  EXPECT_EQ(find_property(std::uint16_t{0xffff}), nullptr);
}

TEST(Baseline, PropertiesAreFoundByNumber) {
  const PropertyRow* mark = find_property(std::uint16_t{0x4b03});
  ASSERT_NE(mark, nullptr);
  EXPECT_EQ(mark->name, "MarkIn");
  EXPECT_EQ(mark->owner, ClassIndex::TimelineMobSlot);
  EXPECT_EQ(mark->type, TypeIndex::PositionType);
  EXPECT_EQ(mark->form, StoredForm::data);
  EXPECT_TRUE(mark->is_optional);
  EXPECT_EQ(to_text(mark->identifier), "07020103-010c-0000-060e-2b3401010107");
  EXPECT_EQ(pid::TimelineMobSlot_MarkIn, 0x4b03);

  const PropertyRow* parameters = find_property(pid::OperationGroup_Parameters);
  ASSERT_NE(parameters, nullptr);
  EXPECT_EQ(parameters->form, StoredForm::strong_set);  // though its type says vector
  EXPECT_EQ(parameters->type, TypeIndex::StrongReferenceVector_Parameter);
  EXPECT_EQ(parameters->storage_name, "Parameters-b03");

  const PropertyRow* names = find_property(std::uint16_t{0x15});
  ASSERT_NE(names, nullptr);
  EXPECT_EQ(names->type, TypeIndex::StringArray);
  EXPECT_EQ(names->stored_type, TypeIndex::String);
}

TEST(Baseline, StorageNamesAreThePropertyNamesSqueezed) {
  EXPECT_EQ(find_property(std::uint16_t{0x2603})->storage_name, "Operatio-nitions-2603");
  EXPECT_EQ(find_property(std::uint16_t{0x1901})->storage_name, "Mobs-1901");
  EXPECT_EQ(find_property(std::uint16_t{0x2702})->storage_name, "Data-2702");
  EXPECT_EQ(find_property(std::uint16_t{0x4701})->storage_name, "EssenceDescription-4701");
  EXPECT_EQ(find_property(std::uint16_t{0x3b06})->storage_name, "Identifi-ionList-3b06");
}

TEST(Baseline, ClassesStandUnderTheirParents) {
  EXPECT_TRUE(is_kind_of(ClassIndex::AES3PCMDescriptor, ClassIndex::PCMDescriptor));
  EXPECT_TRUE(is_kind_of(ClassIndex::AES3PCMDescriptor, ClassIndex::FileDescriptor));
  EXPECT_TRUE(is_kind_of(ClassIndex::Sequence, ClassIndex::Sequence));
  EXPECT_FALSE(is_kind_of(ClassIndex::Transition, ClassIndex::Segment));
  EXPECT_FALSE(is_kind_of(ClassIndex::TapeDescriptor, ClassIndex::FileDescriptor));
  EXPECT_EQ(branch_of(ClassIndex::SourceClip), ClassIndex::InterchangeObject);
  EXPECT_EQ(branch_of(ClassIndex::TypeDefinitionOpaque), ClassIndex::MetaDefinition);
  EXPECT_EQ(branch_of(ClassIndex::MetaDictionary), ClassIndex::MetaDictionary);
  EXPECT_EQ(branch_of(ClassIndex::Root), ClassIndex::Root);
  for (const ClassRow& row : class_table) {
    if (row.name == "Root") continue;
    EXPECT_TRUE(is_kind_of(index_of(row), ClassIndex::Root)) << row.name;
  }
}

TEST(Baseline, ClassesHaveTheirFlagsAndIdentifiers) {
  EXPECT_EQ(find_class(AUID_AAFTimelineMobSlot), &class_named("TimelineMobSlot"));
  EXPECT_EQ(to_text(class_named("TimelineMobSlot").identifier),
            "0d010101-0101-3b00-060e-2b3402060101");
  EXPECT_FALSE(class_named("Mob").is_concrete);
  EXPECT_TRUE(class_named("CompositionMob").is_concrete);
  EXPECT_TRUE(class_named("ClassDefinition").is_meta);
  EXPECT_FALSE(class_named("Header").is_meta);
}

TEST(Baseline, OwnPropertiesAreThoseOfTheClassAlone) {
  const auto slot = own_properties_of(ClassIndex::TimelineMobSlot);
  ASSERT_EQ(slot.size(), 5u);
  EXPECT_EQ(slot[0].name, "EditRate");
  EXPECT_EQ(slot[4].name, "UserPos");
  EXPECT_TRUE(own_properties_of(ClassIndex::Segment).empty());
  std::size_t total = 0;
  for (const ClassRow& row : class_table) {
    for (const PropertyRow& property : own_properties_of(index_of(row))) {
      EXPECT_EQ(property.owner, index_of(row)) << property.name;
      ++total;
    }
  }
  EXPECT_EQ(total, property_count);
}

TEST(Baseline, TypesHaveTheirShapes) {
  const TypeRow& rational = type_named("Rational");
  EXPECT_EQ(rational.kind, TypeKind::record);
  EXPECT_EQ(rational.size_bytes, 8);
  ASSERT_EQ(members_of(rational).size(), 2u);
  EXPECT_EQ(members_of(rational)[1].name, "Denominator");
  EXPECT_EQ(members_of(rational)[1].type, TypeIndex::Int32);

  const TypeRow& edge = type_named("EdgeType");
  EXPECT_EQ(edge.element, TypeIndex::UInt8);
  ASSERT_EQ(members_of(edge).size(), 5u);
  EXPECT_EQ(members_of(edge)[4].value, 8);

  const TypeRow& usage = type_named("UsageType");
  EXPECT_EQ(usage.kind, TypeKind::extendible_enumeration);
  EXPECT_EQ(members_of(usage)[2].name, "Usage_TopLevel");
  EXPECT_EQ(to_text(members_of(usage)[2].identifier), "0d010102-0101-0700-060e-2b3404010101");

  EXPECT_EQ(type_named("RGBALayout").element_count, 8);
  EXPECT_EQ(type_named("PositionType").kind, TypeKind::rename);
  EXPECT_EQ(type_named("PositionType").element, TypeIndex::Int64);
  EXPECT_EQ(type_named("Int64").is_signed, true);
  EXPECT_EQ(type_named("StrongReferenceSet<Mob>").element, TypeIndex::StrongReference_Mob);
  EXPECT_EQ(type_named("StrongReferenceSet<Mob>").target, ClassIndex::Mob);
  EXPECT_EQ(type_named("String").stored_name, "aafString");
}

TEST(Baseline, WeakReferencesNameTheirWayFromTheRoot) {
  const auto mobs = members_of(type_named("WeakReference<Mob>"));
  ASSERT_EQ(mobs.size(), 3u);
  EXPECT_EQ(mobs[0].value, 0x0002);
  EXPECT_EQ(mobs[1].value, 0x3b03);
  EXPECT_EQ(mobs[2].value, 0x1901);
  const auto classes = members_of(type_named("WeakReference<ClassDefinition>"));
  ASSERT_EQ(classes.size(), 2u);
  EXPECT_EQ(to_text(classes[0].identifier), "0d010301-0101-0100-060e-2b3401010102");
  EXPECT_EQ(to_text(classes[1].identifier), "06010107-0700-0000-060e-2b3401010102");
}

// Sizes told for records and renames are those of their parts.
TEST(Baseline, SizesAddUp) {
  for (const TypeRow& row : type_table) {
    if (row.kind == TypeKind::record) {
      std::size_t sum = 0;
      for (const TypeMemberRow& member : members_of(row))
        sum += row_of(member.type).size_bytes;
      EXPECT_EQ(row.size_bytes, sum) << row.name;
    }
    if (row.kind == TypeKind::rename || row.kind == TypeKind::enumeration) {
      EXPECT_EQ(row.size_bytes, row_of(row.element).size_bytes) << row.name;
    }
    if (row.kind == TypeKind::fixed_array) {
      EXPECT_EQ(row.size_bytes, row.element_count * row_of(row.element).size_bytes) << row.name;
    }
  }
}

TEST(Baseline, TypesFitTheFormsOfTheirProperties) {
  for (const PropertyRow& property : property_table) {
    if (property.owner == ClassIndex::Root) continue;
    ASSERT_NE(property.type, TypeIndex::none) << property.name;
    const TypeRow& type = row_of(property.type);
    const bool strong = property.form == StoredForm::strong_reference;
    const bool weak = property.form == StoredForm::weak_reference;
    EXPECT_EQ(strong, type.kind == TypeKind::strong_reference) << property.name;
    EXPECT_EQ(weak, type.kind == TypeKind::weak_reference) << property.name;
    EXPECT_EQ(property.form == StoredForm::data_stream, type.kind == TypeKind::stream);
    EXPECT_EQ(property.storage_name.empty(), property.form == StoredForm::data || weak)
        << property.name;
  }
}

}  // namespace
}  // namespace aafobj
