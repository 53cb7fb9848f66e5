#pragma once

#include <cstddef>
#include <span>

#include "aafobj/dump/dump_sink.h"
#include "aafobj/model/meta_model.h"

namespace aafobj {

// Real files go some twenty levels of objects and values deep.
inline constexpr int deepest_level = 200;

// Tells the bytes of a data value, in little-endian order, as one value of the type. Bytes that
// are no value of it are a fault that shows them. `level` counts from the top of the tree;
// below deepest_level there is a fault in place of the value.
void dump_value(MetaModel& meta, const TypeDef& type, std::span<const std::byte> bytes, int level,
                DumpSink& sink);

}  // namespace aafobj
