#include "cli/aaf_dump_bridge.h"

#include <array>
#include <cstdio>

#include "aafobj/api/aaf_result_codes.h"

namespace cli {

namespace {

aaf::ScalarKind kind_of(aafobj::ShownKind kind) {
  switch (kind) {
    case aafobj::ShownKind::number:
      return aaf::ScalarKind::number;
    case aafobj::ShownKind::boolean:
      return aaf::ScalarKind::boolean;
    case aafobj::ShownKind::word:
      return aaf::ScalarKind::identifier;
    case aafobj::ShownKind::text:
      return aaf::ScalarKind::text;
    case aafobj::ShownKind::reference:
      return aaf::ScalarKind::reference;
  }
  return aaf::ScalarKind::text;
}

}  // namespace

void DumpBridge::begin_object(std::string_view class_name, bool is_known) {
  writer_.begin_object({std::string(class_name), is_known});
}

void DumpBridge::end_object() {
  // Properties that nobody knows were told one by one.
  writer_.end_object(0);
}

void DumpBridge::name(std::string_view name) {
  writer_.name(name);
}

void DumpBridge::unknown_property(std::uint16_t pid) {
  std::array<char, 16> name{};
  std::snprintf(name.data(), name.size(), "unknown 0x%04x", unsigned{pid});
  writer_.name(name.data());
}

void DumpBridge::begin_list(std::size_t count, bool is_record) {
  writer_.begin_list(count, is_record);
}

void DumpBridge::end_list() {
  writer_.end_list();
}

void DumpBridge::scalar(aafobj::ShownKind kind, std::string_view text) {
  writer_.scalar(kind_of(kind), text);
}

void DumpBridge::bytes(std::string_view hexadecimal, std::size_t count) {
  if (hexadecimal.size() / 2 < count) return writer_.cut_bytes(hexadecimal, count);
  writer_.scalar(aaf::ScalarKind::bytes, hexadecimal);
}

void DumpBridge::stream(std::uint64_t bytes) {
  writer_.scalar(aaf::ScalarKind::stream_size, std::to_string(bytes));
}

void DumpBridge::fault(std::string_view words) {
  writer_.fault(AAFRESULT_BADCONTAINER, words);
}

}  // namespace cli
