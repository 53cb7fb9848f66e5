#include "aafobj/container/stream_body.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "aafobj/container/compound_state.h"

namespace aafobj {

namespace {

constexpr std::size_t k_buffer_bytes = 65536;
constexpr std::size_t k_scattered_read_bytes = 4096;
// Reads and writes of this size and above do not go through the buffer.
constexpr std::size_t k_direct_bytes = 16384;

// Streams of a file with 512-byte sectors stay below 2 GiB.
constexpr std::uint64_t k_largest_small_stream = 0x7fffffff;

}  // namespace

StreamBody::StreamBody(CompoundState& state, std::uint32_t id) : m_state(&state), m_id(id) {}

StreamBody::~StreamBody() {
  if (m_state == nullptr) return;
  m_state->set_claimed_sectors(m_id, m_chain.marked());
  const Result flushed = flush();
  m_state->body_gone(m_id, flushed);
}

void StreamBody::detach() {
  m_state = nullptr;
  m_buffer = {};
  m_buffer_changed = false;
}

Result StreamBody::open() {
  const DirectoryEntry* entry = nullptr;
  if (const Result r = m_state->m_directory.entry(m_id, entry); r != Result::ok) return r;
  m_size = m_stored_size = entry->size;
  if (m_size == 0) return Result::ok;
  if (in_minis()) {
    const std::uint32_t count = divide_up(m_size, k_mini_sector_size);
    return m_state->m_mini.follow(entry->start, count, m_state->claim_minis_once(m_id), m_minis);
  }
  const std::uint32_t sector_size = m_state->m_io.sector_size();
  const std::uint64_t room = std::uint64_t{m_state->m_table.sector_count()} * sector_size;
  if (m_size > room) return Result::damaged;
  m_chain = Chain(entry->start);
  m_chain.set_marked(m_state->claimed_sectors(m_id));
  return Result::ok;
}

bool StreamBody::in_minis() const {
  return m_stored_size < k_mini_cutoff;
}

bool StreamBody::buffer_holds(std::uint64_t position, std::size_t count) const {
  return position >= m_buffer_at && position - m_buffer_at <= m_buffer.size() &&
         count <= m_buffer.size() - (position - m_buffer_at);
}

// Scattered small reads take less than consecutive ones.
Result StreamBody::fill_buffer(std::uint64_t position) {
  if (const Result r = flush(); r != Result::ok) return r;
  const bool consecutive = position == m_last_read_end;
  const std::size_t most =
      consecutive ? k_buffer_bytes : std::max(k_scattered_read_bytes, k_direct_bytes);
  m_buffer.resize(static_cast<std::size_t>(std::min<std::uint64_t>(most, m_size - position)));
  m_buffer_at = position;
  const Result r = read_stored(position, m_buffer);
  if (r != Result::ok) m_buffer.clear();
  return r;
}

Result StreamBody::read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) {
  count = 0;
  if (m_state == nullptr) return Result::closed;
  if (position >= m_size || out.empty()) return Result::ok;
  out = out.first(static_cast<std::size_t>(std::min<std::uint64_t>(out.size(), m_size - position)));
  Result r = Result::ok;
  if (in_minis()) {
    r = m_state->m_mini.read(m_minis, static_cast<std::uint32_t>(position), out);
  } else if (out.size() >= k_direct_bytes) {
    r = flush();
    if (r == Result::ok) r = read_stored(position, out);
  } else {
    if (!buffer_holds(position, out.size())) r = fill_buffer(position);
    if (r == Result::ok) {
      std::memcpy(out.data(), m_buffer.data() + (position - m_buffer_at), out.size());
    }
  }
  if (r != Result::ok) return r;
  count = out.size();
  m_last_read_end = position + count;
  return Result::ok;
}

Result StreamBody::prepare_write(std::uint64_t end) const {
  if (const Result r = m_state->begin_change(); r != Result::ok) return r;
  const std::uint32_t sector_size = m_state->m_io.sector_size();
  const std::uint64_t largest =
      sector_size == 512 ? k_largest_small_stream : std::uint64_t{k_last_sector} * sector_size;
  return end > largest ? Result::too_large : Result::ok;
}

Result StreamBody::write_buffered(std::uint64_t position, std::span<const std::byte> bytes) {
  const bool joins = position >= m_buffer_at && position - m_buffer_at <= m_buffer.size() &&
                     position - m_buffer_at + bytes.size() <= k_buffer_bytes;
  if (!joins) {
    if (const Result r = flush(); r != Result::ok) return r;
    m_buffer.clear();
    m_buffer_at = position;
  }
  const auto offset = position - m_buffer_at;
  m_buffer.resize(std::max(m_buffer.size(), offset + bytes.size()));
  std::memcpy(m_buffer.data() + offset, bytes.data(), bytes.size());
  m_buffer_changed = true;
  m_size = std::max(m_size, position + bytes.size());
  return Result::ok;
}

Result StreamBody::write_at(std::uint64_t position, std::span<const std::byte> bytes) {
  if (m_state == nullptr) return Result::closed;
  if (position + bytes.size() < position) return Result::too_large;
  if (const Result r = prepare_write(position + bytes.size()); r != Result::ok) return r;
  if (bytes.empty()) return Result::ok;
  if (!in_minis() && bytes.size() < k_direct_bytes && position <= m_size) {
    return write_buffered(position, bytes);
  }
  if (const Result r = flush(); r != Result::ok) return r;
  m_buffer.clear();
  return write_stored(position, bytes);
}

Result StreamBody::flush() {
  if (!m_buffer_changed) return Result::ok;
  if (const Result r = write_stored(m_buffer_at, m_buffer); r != Result::ok) return r;
  m_buffer_changed = false;
  return Result::ok;
}

Result StreamBody::set_size(std::uint64_t bytes) {
  if (m_state == nullptr) return Result::closed;
  if (const Result r = prepare_write(bytes); r != Result::ok) return r;
  if (const Result r = flush(); r != Result::ok) return r;
  m_buffer.clear();
  if (bytes == m_stored_size) return Result::ok;
  if (bytes > m_stored_size) return grow(bytes, bytes);
  if (const Result r = shrink(bytes); r != Result::ok) return r;
  m_size = bytes;
  return store_size(bytes);
}

Result StreamBody::read_stored(std::uint64_t position, std::span<std::byte> out) {
  const std::uint32_t sector_size = m_state->m_io.sector_size();
  const std::uint32_t limit = divide_up(m_stored_size, sector_size);
  while (!out.empty()) {
    SectorRun run;
    const auto index = static_cast<std::uint32_t>(position / sector_size);
    const Result r = m_chain.locate(m_state->m_table, index, limit, run);
    if (r != Result::ok) return r;
    const std::uint64_t skip = position % sector_size;
    const auto part = static_cast<std::size_t>(
        std::min<std::uint64_t>(out.size(), std::uint64_t{run.count} * sector_size - skip));
    const std::uint64_t from = m_state->m_io.position_of(run.first) + skip;
    if (const Result read = m_state->m_io.read(from, out.first(part)); read != Result::ok) {
      return read;
    }
    out = out.subspan(part);
    position += part;
  }
  return Result::ok;
}

Result StreamBody::write_stored(std::uint64_t position, std::span<const std::byte> bytes) {
  const std::uint64_t end = position + bytes.size();
  if (end > m_stored_size) {
    if (const Result r = grow(end, position); r != Result::ok) return r;
  }
  if (in_minis()) {
    return m_state->m_mini.write(m_minis, static_cast<std::uint32_t>(position), bytes);
  }
  const std::uint32_t sector_size = m_state->m_io.sector_size();
  const std::uint32_t limit = divide_up(m_stored_size, sector_size);
  while (!bytes.empty()) {
    SectorRun run;
    const auto index = static_cast<std::uint32_t>(position / sector_size);
    const Result r = m_chain.locate(m_state->m_table, index, limit, run);
    if (r != Result::ok) return r;
    const std::uint64_t skip = position % sector_size;
    const auto part = static_cast<std::size_t>(
        std::min<std::uint64_t>(bytes.size(), std::uint64_t{run.count} * sector_size - skip));
    const std::uint64_t to = m_state->m_io.position_of(run.first) + skip;
    if (const Result put = m_state->m_io.write(to, bytes.first(part)); put != Result::ok)
      return put;
    bytes = bytes.subspan(part);
    position += part;
  }
  return Result::ok;
}

// Zeros within the sectors of the chain, also past the end of the stream.
Result StreamBody::clear_stored(std::uint64_t from, std::uint64_t to) {
  const std::uint32_t sector_size = m_state->m_io.sector_size();
  const std::uint32_t limit = divide_up(to, sector_size);
  while (from < to) {
    SectorRun run;
    const auto index = static_cast<std::uint32_t>(from / sector_size);
    const Result r = m_chain.locate(m_state->m_table, index, limit, run);
    if (r != Result::ok) return r;
    const std::uint64_t skip = from % sector_size;
    const std::uint64_t part = std::min(to - from, std::uint64_t{run.count} * sector_size - skip);
    const Result cleared = m_state->m_io.clear(m_state->m_io.position_of(run.first) + skip, part);
    if (cleared != Result::ok) return cleared;
    from += part;
  }
  return Result::ok;
}

Result StreamBody::store_size(std::uint64_t bytes) {
  DirectoryEntry* entry = nullptr;
  if (const Result r = m_state->m_directory.change(m_id, entry); r != Result::ok) return r;
  m_stored_size = bytes;
  m_size = std::max(m_size, bytes);
  entry->size = bytes;
  if (in_minis()) {
    entry->start = m_minis.empty() ? k_end_of_chain : m_minis.front();
  } else {
    entry->start = m_chain.first();
  }
  return Result::ok;
}

// Bytes from `data_from` to the new end are about to be written; what lies
// between the old end and them becomes zeros, and so does the rest of the last
// sector.
Result StreamBody::grow(std::uint64_t bytes, std::uint64_t data_from) {
  const Result r =
      bytes < k_mini_cutoff ? grow_minis(bytes, data_from) : grow_sectors(bytes, data_from);
  return r == Result::ok ? store_size(bytes) : r;
}

Result StreamBody::grow_minis(std::uint64_t bytes, std::uint64_t data_from) {
  static constexpr std::array<std::byte, k_mini_sector_size> zeros{};
  const Result r = m_state->m_mini.resize(m_minis, divide_up(bytes, k_mini_sector_size));
  if (r != Result::ok) return r;
  const auto old_end = static_cast<std::uint32_t>(m_stored_size);
  const std::uint64_t slack =
      (k_mini_sector_size - old_end % k_mini_sector_size) % k_mini_sector_size;
  const auto gap = static_cast<std::size_t>(std::min(slack, data_from - old_end));
  return m_state->m_mini.write(m_minis, old_end, std::span(zeros).first(gap));
}

Result StreamBody::grow_sectors(std::uint64_t bytes, std::uint64_t data_from) {
  const std::uint32_t sector_size = m_state->m_io.sector_size();
  const std::uint32_t have = in_minis() ? 0 : divide_up(m_stored_size, sector_size);
  const std::uint32_t want = divide_up(bytes, sector_size);
  if (in_minis()) {
    if (const Result r = move_to_sectors(want); r != Result::ok) return r;
  } else if (want > have) {
    const Result r = m_chain.resize(m_state->m_table, have, want);
    if (r != Result::ok) return r;
  }
  if (const Result r = clear_stored(m_stored_size, data_from); r != Result::ok) return r;
  const std::uint64_t fresh = std::max(bytes, std::uint64_t{have} * sector_size);
  return clear_stored(fresh, std::uint64_t{want} * sector_size);
}

Result StreamBody::move_to_sectors(std::uint32_t sectors) {
  std::vector<std::byte> content(m_stored_size);
  if (const Result r = m_state->m_mini.read(m_minis, 0, content); r != Result::ok) return r;
  if (const Result r = m_chain.resize(m_state->m_table, 0, sectors); r != Result::ok) return r;
  for (std::size_t done = 0; done < content.size();) {
    SectorRun run;
    const std::uint32_t sector_size = m_state->m_io.sector_size();
    const auto index = static_cast<std::uint32_t>(done / sector_size);
    const Result r = m_chain.locate(m_state->m_table, index, sectors, run);
    if (r != Result::ok) return r;
    const std::size_t part = std::min(content.size() - done, std::size_t{run.count} * sector_size);
    const Result put = m_state->m_io.write(m_state->m_io.position_of(run.first),
                                           std::span(content).subspan(done, part));
    if (put != Result::ok) return put;
    done += part;
  }
  return m_state->m_mini.resize(m_minis, 0);
}

Result StreamBody::move_to_minis(std::uint64_t bytes) {
  std::vector<std::byte> content(bytes);
  if (const Result r = read_stored(0, content); r != Result::ok) return r;
  const Result r = m_state->m_mini.resize(m_minis, divide_up(bytes, k_mini_sector_size));
  if (r != Result::ok) return r;
  if (const Result put = m_state->m_mini.write(m_minis, 0, content); put != Result::ok) return put;
  return m_chain.resize(m_state->m_table, divide_up(m_stored_size, m_state->m_io.sector_size()), 0);
}

Result StreamBody::shrink(std::uint64_t bytes) {
  static constexpr std::array<std::byte, k_mini_sector_size> zeros{};
  if (!in_minis() && bytes < k_mini_cutoff) return move_to_minis(bytes);
  if (in_minis()) {
    const std::uint32_t want = divide_up(bytes, k_mini_sector_size);
    if (const Result r = m_state->m_mini.resize(m_minis, want); r != Result::ok) return r;
    const auto tail = std::uint64_t{want} * k_mini_sector_size - bytes;
    return m_state->m_mini.write(m_minis, static_cast<std::uint32_t>(bytes),
                                 std::span(zeros).first(tail));
  }
  const std::uint32_t sector_size = m_state->m_io.sector_size();
  const std::uint32_t want = divide_up(bytes, sector_size);
  const std::uint32_t have = divide_up(m_stored_size, sector_size);
  if (const Result r = m_chain.resize(m_state->m_table, have, want); r != Result::ok) return r;
  return clear_stored(bytes, std::uint64_t{want} * sector_size);
}

}  // namespace aafobj
