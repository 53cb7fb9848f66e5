#include "aafobj/model/stored_values.h"

namespace aafobj {
namespace {

constexpr std::size_t indirect_head = 1 + sizeof(aafUID_t);

std::u16string units_of(std::span<const std::byte> bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  std::memcpy(units.data(), bytes.data(), units.size() * 2);
  return units;
}

}  // namespace

AAFRESULT get_text(StoredObject& object, std::uint16_t pid, std::u16string& text) {
  std::span<const std::byte> bytes;
  if (const AAFRESULT r = object.get_data(pid, bytes); r < 0) return r;
  text = units_of(bytes);
  text.resize(std::min(text.size(), text.find(u'\0')));
  return AAFRESULT_SUCCESS;
}

AAFRESULT set_text(StoredObject& object, std::uint16_t pid, std::u16string_view text) {
  return object.set_data(pid, stored_text(text));
}

AAFRESULT get_text_list(StoredObject& object, std::uint16_t pid,
                        std::vector<std::u16string>& texts) {
  std::span<const std::byte> bytes;
  if (const AAFRESULT r = object.get_data(pid, bytes); r < 0) return r;
  const std::u16string units = units_of(bytes);
  texts.clear();
  for (std::size_t at = 0; at < units.size();) {
    const std::size_t end = std::min(units.size(), units.find(u'\0', at));
    texts.push_back(units.substr(at, end - at));
    at = end + 1;
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT get_auid_list(StoredObject& object, std::uint16_t pid, std::vector<aafUID_t>& ids) {
  std::span<const std::byte> bytes;
  if (const AAFRESULT r = object.get_data(pid, bytes); r < 0) return r;
  if (bytes.size() % sizeof(aafUID_t) != 0) return AAFRESULT_BAD_SIZE;
  ids.resize(bytes.size() / sizeof(aafUID_t));
  if (!ids.empty()) std::memcpy(ids.data(), bytes.data(), bytes.size());
  return AAFRESULT_SUCCESS;
}

AAFRESULT get_indirect(StoredObject& object, std::uint16_t pid, IndirectValue& value) {
  std::span<const std::byte> bytes;
  if (const AAFRESULT r = object.get_data(pid, bytes); r < 0) return r;
  if (bytes.size() < indirect_head) return AAFRESULT_BAD_SIZE;
  if (bytes[0] != static_cast<std::byte>(ByteOrder::little)) return AAFRESULT_BAD_TYPE;
  std::memcpy(&value.type, bytes.data() + 1, sizeof(aafUID_t));
  value.bytes = bytes.subspan(indirect_head);
  return AAFRESULT_SUCCESS;
}

AAFRESULT set_indirect(StoredObject& object, std::uint16_t pid, const IndirectValue& value) {
  ByteWriter writer;
  writer.put(static_cast<std::uint8_t>(ByteOrder::little));
  writer.put_auid(value.type);
  writer.put_bytes(value.bytes);
  return object.set_data(pid, writer.bytes());
}

std::vector<std::byte> stored_text(std::u16string_view text) {
  ByteWriter writer;
  writer.put_text(text);
  return writer.release();
}

std::u16string widen(std::string_view text) {
  return {text.begin(), text.end()};
}

}  // namespace aafobj
