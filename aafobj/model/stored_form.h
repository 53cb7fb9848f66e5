#pragma once

#include <cstdint>

namespace aafobj {

// How a property's value stands in its object's "properties" stream.
enum class StoredForm : std::uint16_t {
  data = 0x82,                   // the bytes of the value
  data_stream = 0x42,            // byte order mark and name of a stream beside it
  strong_reference = 0x22,       // name of the contained object's storage
  strong_vector = 0x32,          // name of a collection with an index stream
  strong_set = 0x3a,             // the same, each element under a key
  weak_reference = 0x02,         // tag of the target set, and the target's key
  weak_vector = 0x12,            // name of a collection that has an index stream only
  weak_set = 0x1a,               // the same
  weak_stored_reference = 0x03,  // the rest are defined and met in no known file;
  unique_object_id = 0x86,       // their bytes are kept as they stand
  opaque_stream = 0x40
};

}  // namespace aafobj
