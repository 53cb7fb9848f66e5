#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "aafobj/container/chain.h"
#include "aafobj/container/result.h"

namespace aafobj {

class CompoundState;

/// The bytes of one open stream, shared by all handles on it.
///
/// A stream below the cut-off is a chain of mini sectors, any other a chain of
/// sectors; it moves when its size crosses the line. Only streams in sectors
/// use the buffer.
class StreamBody {
 public:
  StreamBody(CompoundState& state, std::uint32_t id);
  StreamBody(const StreamBody&) = delete;
  StreamBody& operator=(const StreamBody&) = delete;
  ~StreamBody();

  /// Checks the stated size against the file; to be called once.
  Result open();

  std::uint64_t size() const { return m_state == nullptr ? 0 : m_size; }
  Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count);
  Result write_at(std::uint64_t position, std::span<const std::byte> bytes);
  Result set_size(std::uint64_t bytes);

  /// Writes what is in the buffer.
  Result flush();

  /// The file is closed or the stream removed: nothing is written any more.
  void detach();

 private:
  bool in_minis() const;
  Result prepare_write(std::uint64_t end) const;
  bool buffer_holds(std::uint64_t position, std::size_t count) const;
  Result fill_buffer(std::uint64_t position);
  Result write_buffered(std::uint64_t position, std::span<const std::byte> bytes);

  Result read_stored(std::uint64_t position, std::span<std::byte> out);
  Result write_stored(std::uint64_t position, std::span<const std::byte> bytes);
  Result clear_stored(std::uint64_t from, std::uint64_t to);
  Result grow(std::uint64_t bytes, std::uint64_t data_from);
  Result grow_minis(std::uint64_t bytes, std::uint64_t data_from);
  Result grow_sectors(std::uint64_t bytes, std::uint64_t data_from);
  Result move_to_sectors(std::uint32_t sectors);
  Result move_to_minis(std::uint64_t bytes);
  Result shrink(std::uint64_t bytes);
  Result store_size(std::uint64_t bytes);

  CompoundState* m_state;  // not owned; null once detached
  std::uint32_t m_id;
  std::uint64_t m_size = 0;         // as handles see it
  std::uint64_t m_stored_size = 0;  // without bytes that are only in the buffer
  Chain m_chain;
  std::vector<std::uint32_t> m_minis;
  std::vector<std::byte> m_buffer;
  std::uint64_t m_buffer_at = 0;
  bool m_buffer_changed = false;
  std::uint64_t m_last_read_end = 0;
};

}  // namespace aafobj
