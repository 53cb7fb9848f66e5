#include "aafobj/container/sector_io.h"

#include <algorithm>
#include <array>

#include "aafobj/container/sector_layout.h"

namespace aafobj {

namespace {

std::uint32_t sectors_in(std::uint64_t size, std::uint32_t shift) {
  const std::uint64_t sector_size = std::uint64_t{1} << shift;
  if (size <= sector_size) return 0;
  const std::uint64_t count = (size - sector_size + sector_size - 1) >> shift;
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(count, std::uint64_t{k_last_sector}));
}

constexpr std::array<std::byte, 65536> k_zeros{};

}  // namespace

SectorIo::SectorIo(std::shared_ptr<RawStorage> storage, std::uint32_t sector_shift,
                   std::uint64_t size)
    : m_storage(std::move(storage)),
      m_shift(sector_shift),
      m_stored_sectors(sectors_in(size, sector_shift)),
      m_written_end(size) {}

Result SectorIo::read(std::uint64_t position, std::span<std::byte> out) {
  std::size_t count = 0;
  if (const Result r = m_storage->read_at(position, out, count); r != Result::ok) return r;
  if (count < out.size()) std::ranges::fill(out.subspan(count), std::byte{0});
  return Result::ok;
}

Result SectorIo::write(std::uint64_t position, std::span<const std::byte> bytes) {
  if (bytes.empty()) return Result::ok;
  // Also when the write fails, for a part of the bytes may be there.
  m_written_end = std::max(m_written_end, position + bytes.size());
  return m_storage->write_at(position, bytes);
}

Result SectorIo::clear(std::uint64_t position, std::uint64_t count) {
  const std::uint64_t end = std::min(position + count, m_written_end);
  while (position < end) {
    const auto part =
        static_cast<std::size_t>(std::min<std::uint64_t>(end - position, k_zeros.size()));
    if (const Result r = write(position, std::span(k_zeros).first(part)); r != Result::ok) return r;
    position += part;
  }
  return Result::ok;
}

Result SectorIo::set_sector_count(std::uint32_t count) {
  m_written_end = position_of(count);
  return m_storage->set_size(m_written_end);
}

}  // namespace aafobj
