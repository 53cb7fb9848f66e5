#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "aafobj/model/byte_stream.h"
#include "aafobj/model/model_result.h"

namespace aafobj {

// The stream "referenced properties" of the root storage: the ways from the root to the sets
// that weak references point into, as numbers of properties. A weak reference has the place of
// its way in this list as its tag. The order differs from file to file.
//
//   1  byte order letter    2  count of paths    4  count of numbers, terminators included
//   2 for each number; a 0 ends each path
class ReferencedProperties {
 public:
  using Path = std::vector<std::uint16_t>;

  // Errors: BADCONTAINER when the stream contradicts itself.
  [[nodiscard]] AAFRESULT parse(std::span<const std::byte> bytes);
  std::vector<std::byte> write(ByteOrder order) const;

  const std::vector<Path>& paths() const { return m_paths; }

  // Null for a tag that the table does not have.
  const Path* path_of(std::uint16_t tag) const;

  // The tag of a path, which is added when it is new.
  // Errors: BAD_SIZE when all tags are in use.
  [[nodiscard]] AAFRESULT tag_of(std::span<const std::uint16_t> path, std::uint16_t& tag);

 private:
  std::vector<Path> m_paths;
};

}  // namespace aafobj
