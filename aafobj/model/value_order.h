#pragma once

#include <cstddef>
#include <span>

#include "aafobj/model/byte_stream.h"
#include "aafobj/model/meta_model.h"

namespace aafobj {

// Turns a stored value of the type from one byte order into the other, in place. False, with
// the bytes as they were, when they do not fit the type. Bytes that are no numbers (a DataValue,
// the last eight of an identifier) stay. An Indirect or Opaque value tells its own order in
// its first byte; it is turned when that is `from`, together with its type's identifier.
bool turn_value(MetaModel& model, const TypeDef& type, std::span<std::byte> value, ByteOrder from);

}  // namespace aafobj
