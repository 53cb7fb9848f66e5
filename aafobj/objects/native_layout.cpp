#include "aafobj/objects/native_layout.h"

#include <algorithm>
#include <cstring>

#include "aafobj/api/aaf_types.h"

namespace aafobj {
namespace {

std::size_t aligned(std::size_t offset, std::size_t alignment) {
  return (offset + alignment - 1) / alignment * alignment;
}

NativeLayout record_layout(const TypeDef& type) {
  NativeLayout layout;
  for (const TypeDef::Member& member : type.members) {
    const NativeLayout field = native_layout(*member.type);
    if (field.size_bytes == 0) return {};
    layout.size_bytes = aligned(layout.size_bytes, field.alignment) + field.size_bytes;
    layout.alignment = std::max(layout.alignment, field.alignment);
  }
  layout.size_bytes = aligned(layout.size_bytes, layout.alignment);
  return layout;
}

// Goes through a value's fields in both forms; `leaf` moves one field without parts.
template <typename Stored, typename Native, typename Leaf>
bool walk(const TypeDef& type, Stored stored, Native native, const Leaf& leaf) {
  if (stored.size() != type.size_bytes || native.size() != native_layout(type).size_bytes) {
    return false;
  }
  switch (type.kind) {
    case TypeKind::rename:
      return walk(*type.element, stored, native, leaf);
    case TypeKind::record: {
      std::size_t from = 0;
      std::size_t to = 0;
      for (const TypeDef::Member& member : type.members) {
        const NativeLayout field = native_layout(*member.type);
        to = aligned(to, field.alignment);
        if (!walk(*member.type, stored.subspan(from, member.type->size_bytes),
                  native.subspan(to, field.size_bytes), leaf)) {
          return false;
        }
        from += member.type->size_bytes;
        to += field.size_bytes;
      }
      return true;
    }
    case TypeKind::fixed_array: {
      const std::size_t each = type.element->size_bytes;
      const std::size_t native_each = native_layout(*type.element).size_bytes;
      for (std::size_t i = 0; i < type.element_count; ++i) {
        if (!walk(*type.element, stored.subspan(i * each, each),
                  native.subspan(i * native_each, native_each), leaf)) {
          return false;
        }
      }
      return true;
    }
    default:
      leaf(stored, native);
      return true;
  }
}

}  // namespace

NativeLayout native_layout(const TypeDef& type) {
  switch (type.kind) {
    case TypeKind::integer:
      return {type.size_bytes, type.size_bytes};
    case TypeKind::character:
      return {sizeof(aafCharacter), alignof(aafCharacter)};
    case TypeKind::enumeration:
      return {sizeof(aafInt32), alignof(aafInt32)};
    case TypeKind::extendible_enumeration:
      return {sizeof(aafUID_t), alignof(aafUID_t)};
    case TypeKind::rename:
      return native_layout(*type.element);
    case TypeKind::record:
      return record_layout(type);
    case TypeKind::fixed_array: {
      const NativeLayout element = native_layout(*type.element);
      return {element.size_bytes * type.element_count, element.alignment};
    }
    default:
      return {};
  }
}

bool to_native(const TypeDef& type, std::span<const std::byte> stored,
               std::span<std::byte> native) {
  std::fill(native.begin(), native.end(), std::byte{0});
  return walk(type, stored, native, [](std::span<const std::byte> from, std::span<std::byte> to) {
    std::copy_n(from.begin(), std::min(from.size(), to.size()), to.begin());
  });
}

bool from_native(const TypeDef& type, std::span<const std::byte> native,
                 std::span<std::byte> stored) {
  return walk(type, stored, native, [](std::span<std::byte> to, std::span<const std::byte> from) {
    std::copy_n(from.begin(), std::min(from.size(), to.size()), to.begin());
  });
}

const TypeDef& base_type(const TypeDef& type) {
  const TypeDef* base = &type;
  while (base->kind == TypeKind::rename && base->element)
    base = base->element;
  return *base;
}

}  // namespace aafobj
