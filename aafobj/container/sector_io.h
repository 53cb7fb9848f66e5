#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "aafobj/container/raw_storage.h"
#include "aafobj/container/result.h"

namespace aafobj {

/// Sectors of a storage by number. Sector n starts at byte (n + 1) << shift,
/// since the header takes the place of one sector.
class SectorIo {
 public:
  SectorIo(std::shared_ptr<RawStorage> storage, std::uint32_t sector_shift, std::uint64_t size);

  std::uint32_t sector_size() const { return 1U << m_shift; }
  std::uint64_t position_of(std::uint32_t sector) const {
    return (std::uint64_t{sector} + 1) << m_shift;
  }

  /// Sectors that the storage held when it was opened, a cut last one counted.
  std::uint32_t stored_sectors() const { return m_stored_sectors; }

  /// Bytes past the end of the storage read as zero.
  Result read(std::uint64_t position, std::span<std::byte> out);
  Result write(std::uint64_t position, std::span<const std::byte> bytes);

  /// Makes the bytes zero; those past everything written are so already.
  Result clear(std::uint64_t position, std::uint64_t count);

  /// Ends the storage after this many sectors.
  Result set_sector_count(std::uint32_t count);

 private:
  std::shared_ptr<RawStorage> m_storage;
  std::uint32_t m_shift;
  std::uint32_t m_stored_sectors;
  std::uint64_t m_written_end;  // no byte at or past it was ever written
};

}  // namespace aafobj
