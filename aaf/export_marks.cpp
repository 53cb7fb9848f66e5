#include "aaf/export_marks.h"

#include "aaf/file_facts.h"
#include "native/generic_edl_file_chunks.h"
#include "native/record_transfer.h"

namespace aaf {

namespace {

constexpr aafUID_t user_position = {
    0x07020103, 0x010d, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x07}};
constexpr aafUID_t int64_type = {
    0x01010800, 0x0000, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x01}};

}  // namespace

ExportMarks::ExportMarks(ObjectFactory& factory, const CObList& locator_groups,
                         std::int64_t position)
    : m_factory(factory), m_range(range_of(locator_groups)), m_position(position) {}

std::optional<ExportMarks::Range> ExportMarks::range_of(const CObList& locator_groups) {
  if (locator_groups.IsEmpty()) return std::nullopt;
  const auto& group =
      *static_cast<const CGenericEDLFileLocatorEntryChunk*>(locator_groups.GetHead());
  if (group.m_locators.GetCount() != 2) return std::nullopt;
  const auto& first = *static_cast<const CGenericEDLFileLocatorEntry*>(group.m_locators.GetHead());
  const auto& second = *static_cast<const CGenericEDLFileLocatorEntry*>(group.m_locators.GetTail());
  const auto is_range = [](const CGenericEDLFileLocatorEntry& left,
                           const CGenericEDLFileLocatorEntry& right) {
    return left.get_name() == native::left_locator_name &&
           right.get_name() == native::right_locator_name;
  };
  if (is_range(first, second)) return Range{first.m_time, second.m_time};
  if (is_range(second, first)) return Range{second.m_time, first.m_time};
  return std::nullopt;
}

void ExportMarks::write_marks(IUnknown* slot) {
  if (!m_range) return;
  const AafRef<IAAFObject> object = AAF_QUERY(IAAFObject, slot);
  if (!object) return;
  write_mark(object.get(), mark_in_property, m_range->left);
  write_mark(object.get(), mark_out_property, m_range->right);
  write_mark(object.get(), user_position, m_position);
}

void ExportMarks::write_mark(IAAFObject* slot, const aafUID_t& property, std::int64_t value) {
  IAAFClassDef* const cls = m_factory.class_def(AUID_AAFTimelineMobSlot);
  AafRef<IAAFPropertyDef> definition;
  AafRef<IAAFTypeDef> type;
  AafRef<IAAFTypeDef> base;
  AafRef<IAAFPropertyValue> stored;
  if (cls == nullptr || cls->LookupPropertyDef(property, definition.put()) != 0 ||
      definition->GetTypeDef(type.put()) != 0 || !AAF_QUERY(IAAFTypeDefRename, type.get()) ||
      m_factory.dictionary()->LookupTypeDef(int64_type, base.put()) != 0)
    return;
  const AafRef<IAAFTypeDefInt> number = AAF_QUERY(IAAFTypeDefInt, base.get());
  if (!number ||
      number->CreateValue(reinterpret_cast<aafMemPtr_t>(&value), sizeof value, stored.put()) != 0)
    return;
  // Refused by the file: it then has no such mark.
  static_cast<void>(slot->SetPropertyValue(definition.get(), stored.get()));
}

}  // namespace aaf
