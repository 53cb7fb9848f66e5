#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "aafobj/model/stored_form.h"

// Names of the storages and streams in which a property's value stands.
namespace aafobj {

// The property's name, squeezed in the middle where it is long, "-", and its number in
// hexadecimal. Names stay within the 31 characters of a storage's name, collections shorter
// since the key of an element is added to them.
std::u16string storage_name(std::u16string_view property_name, std::uint16_t pid, StoredForm form);

// "Slots-4403" and 26 give "Slots-4403{1a}".
std::u16string element_name(std::u16string_view collection, std::uint32_t local_key);

// "Slots-4403" gives "Slots-4403 index".
std::u16string index_name(std::u16string_view collection);

}  // namespace aafobj
