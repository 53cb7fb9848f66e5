#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "aafobj/container/compound_file.h"
#include "aafobj/container/compound_header.h"
#include "aafobj/container/directory.h"
#include "aafobj/container/mini_stream.h"
#include "aafobj/container/raw_storage.h"
#include "aafobj/container/result.h"
#include "aafobj/container/sector_cache.h"
#include "aafobj/container/sector_io.h"
#include "aafobj/container/sector_set.h"
#include "aafobj/container/sector_table.h"
#include "aafobj/container/stream_body.h"

namespace aafobj {

/// The parts of one open compound file and what they do together.
class CompoundState {
 public:
  /// The size is that of the storage in bytes.
  CompoundState(std::shared_ptr<RawStorage> storage, std::uint64_t size,
                const CompoundHeader& header, Access access);
  CompoundState(const CompoundState&) = delete;
  CompoundState& operator=(const CompoundState&) = delete;
  ~CompoundState();

  void start_empty();
  Result start_existing();

  const CompoundHeader& header() const { return m_header; }
  Access access() const { return m_access; }

  /// To be called before any change. The first time in an existing file it
  /// checks the whole structure.
  Result begin_change();

  Result verify();
  Result flush();
  Result close();

  Result open_body(std::uint32_t id, std::shared_ptr<StreamBody>& body);

  /// Removes an element with all that is in it.
  Result remove(std::uint32_t parent, std::uint32_t id);

  // For the bodies of streams.

  void body_gone(std::uint32_t id, Result flushed);

  /// How much of a chain an earlier body of the same stream claimed.
  std::uint32_t claimed_sectors(std::uint32_t id) const;
  void set_claimed_sectors(std::uint32_t id, std::uint32_t count) { m_claimed[id] = count; }

  /// Whether the mini sectors of a stream are still to be claimed. A stream
  /// that failed to claim them all must try, and fail, again.
  bool must_claim_minis(std::uint32_t id) const {
    return !m_changing && !m_mini_claims.contains(id);
  }
  void set_minis_claimed(std::uint32_t id) { m_mini_claims.insert(id); }

  SectorIo m_io;
  SectorCache m_cache;
  SectorTable m_table;
  MiniStream m_mini;
  Directory m_directory;

 private:
  Result verify(SectorSet& used, SectorSet& used_minis);
  Result verify_stream(const DirectoryEntry& entry, SectorSet& used, SectorSet& used_minis);
  Result flush_bodies();
  Result place();
  Result write_header();
  void keep(const std::shared_ptr<StreamBody>& body);

  CompoundHeader m_header;
  Access m_access;
  bool m_changing = false;  // the structure is known to be sound
  Result m_late_error = Result::ok;
  std::unordered_map<std::uint32_t, std::weak_ptr<StreamBody>> m_bodies;
  // The last large ones opened live on without a handle: a caller who opens a stream anew for
  // each piece would else have its chain followed from the start each time.
  std::array<std::shared_ptr<StreamBody>, 4> m_kept;
  std::size_t m_next_kept = 0;
  std::unordered_map<std::uint32_t, std::uint32_t> m_claimed;
  SectorSet m_mini_claims;  // ids of streams
};

}  // namespace aafobj
