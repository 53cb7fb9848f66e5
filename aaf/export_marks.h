// The ends of the host's range of work, and its place, on the slots of an exported
// composition.
#pragma once

#include <cstdint>
#include <optional>

#include "aaf/export_objects.h"
#include "host/framework/ob_list.h"

namespace aaf {

class ExportMarks {
 public:
  // `locator_groups` are CGenericEDLFileLocatorEntryChunk objects, of which the first
  // counts; it tells a range when it is made of one left and one right locator.
  ExportMarks(ObjectFactory& factory, const CObList& locator_groups, std::int64_t position);

  // A mark that cannot be written is left out.
  void write_marks(IUnknown* slot);

 private:
  struct Range {
    std::int64_t left;
    std::int64_t right;
  };

  static std::optional<Range> range_of(const CObList& locator_groups);
  void write_mark(IAAFObject* slot, const aafUID_t& property, std::int64_t value);

  ObjectFactory& m_factory;
  std::optional<Range> m_range;
  std::int64_t m_position;
};

}  // namespace aaf
