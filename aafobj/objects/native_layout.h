#pragma once

#include <cstddef>
#include <span>

#include "aafobj/model/meta_model.h"

// Values as programs pass them: records with the gaps that the platform leaves, enumerations
// as 32-bit integers, characters four bytes wide. In files they stand back to back.
namespace aafobj {

struct NativeLayout {
  std::size_t size_bytes = 0;  // 0: the type has no fixed layout
  std::size_t alignment = 1;
};
NativeLayout native_layout(const TypeDef& type);

// Between the two forms of one value. False when the sizes do not fit the type.
bool to_native(const TypeDef& type, std::span<const std::byte> stored, std::span<std::byte> native);
bool from_native(const TypeDef& type, std::span<const std::byte> native,
                 std::span<std::byte> stored);

// The type behind any number of other names for it.
const TypeDef& base_type(const TypeDef& type);

}  // namespace aafobj
