#include "aafobj/model/storage_name.h"

namespace aafobj {
namespace {

constexpr std::size_t single_limit = 32;
constexpr std::size_t collection_limit = 22;

std::u16string hexadecimal(std::uint32_t number) {
  std::u16string digits;
  do {
    digits.insert(digits.begin(), u"0123456789abcdef"[number & 15]);
    number >>= 4;
  } while (number != 0);
  return digits;
}

}  // namespace

std::u16string storage_name(std::u16string_view property_name, std::uint16_t pid, StoredForm form) {
  const bool single = form == StoredForm::strong_reference || form == StoredForm::data_stream;
  const std::u16string number = hexadecimal(pid);
  const std::size_t room = (single ? single_limit : collection_limit) - number.size() - 2;
  std::u16string name(property_name);
  if (name.size() > room) {
    const std::size_t half = room / 2;
    name = name.substr(0, half) + u"-" + name.substr(name.size() - (room - half - 1));
  }
  return name + u"-" + number;
}

std::u16string element_name(std::u16string_view collection, std::uint32_t local_key) {
  return std::u16string(collection) + u"{" + hexadecimal(local_key) + u"}";
}

std::u16string index_name(std::u16string_view collection) {
  return std::u16string(collection) + u" index";
}

}  // namespace aafobj
