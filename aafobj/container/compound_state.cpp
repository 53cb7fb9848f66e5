#include "aafobj/container/compound_state.h"

#include <algorithm>
#include <utility>

namespace aafobj {

CompoundState::CompoundState(std::shared_ptr<RawStorage> storage, std::uint64_t size,
                             const CompoundHeader& header, Access access)
    : m_io(std::move(storage), header.sector_shift, size),
      m_cache(m_io),
      m_table(m_io, m_cache),
      m_mini(m_io, m_cache, m_table),
      m_directory(m_io, m_table),
      m_header(header),
      m_access(access) {}

CompoundState::~CompoundState() {
  for (const auto& [id, known] : m_bodies) {
    if (const auto body = known.lock()) body->detach();
  }
}

void CompoundState::start_empty() {
  m_directory.start_empty();
  m_changing = true;
}

Result CompoundState::start_existing() {
  if (const Result r = m_table.start(m_header); r != Result::ok) return r;
  m_directory.start(m_header);
  const DirectoryEntry* root = nullptr;
  if (const Result r = m_directory.entry(0, root); r != Result::ok) return r;
  if (!root->is(EntryType::root)) return Result::damaged;
  m_mini.start(m_header, root->start, root->size);
  return Result::ok;
}

Result CompoundState::begin_change() {
  if (m_access != Access::modify) return Result::read_only;
  if (m_changing) return Result::ok;
  SectorSet used;
  SectorSet used_minis;
  Result r = verify(used, used_minis);
  if (r == Result::ok) r = m_table.start_changes(used);
  if (r == Result::ok) r = m_directory.start_changes();
  if (r == Result::ok) r = m_mini.start_changes(used_minis);
  if (r != Result::ok) return r;
  m_changing = true;
  m_claimed.clear();
  m_mini_claims.clear();
  return Result::ok;
}

Result CompoundState::verify_stream(const DirectoryEntry& entry, SectorSet& used,
                                    SectorSet& used_minis) {
  if (entry.size == 0) return Result::ok;
  if (entry.size < k_mini_cutoff) {
    return m_mini.verify_chain(entry.start, divide_up(entry.size, k_mini_sector_size), used_minis);
  }
  const std::uint32_t sector_size = m_io.sector_size();
  if (entry.size / sector_size > m_table.sector_count()) return Result::damaged;
  return Chain(entry.start).verify(m_table, divide_up(entry.size, sector_size), used);
}

Result CompoundState::verify(SectorSet& used, SectorSet& used_minis) {
  if (const Result r = m_table.load_all(used); r != Result::ok) return r;
  if (const Result r = m_directory.verify(used); r != Result::ok) return r;
  if (const Result r = m_mini.verify(used); r != Result::ok) return r;
  std::vector<std::uint32_t> folders{0};
  while (!folders.empty()) {
    const std::uint32_t folder = folders.back();
    folders.pop_back();
    const Directory::Children* children = nullptr;
    if (const Result r = m_directory.children(folder, children); r != Result::ok) return r;
    for (const std::uint32_t id : *children) {
      const DirectoryEntry* entry = nullptr;
      if (const Result r = m_directory.entry(id, entry); r != Result::ok) return r;
      if (entry->is_folder()) {
        folders.push_back(id);
      } else if (const Result r = verify_stream(*entry, used, used_minis); r != Result::ok) {
        return r;
      }
    }
  }
  return Result::ok;
}

Result CompoundState::verify() {
  if (const Result r = flush_bodies(); r != Result::ok) return r;
  SectorSet used;
  SectorSet used_minis;
  return verify(used, used_minis);
}

Result CompoundState::flush_bodies() {
  for (const auto& [id, known] : m_bodies) {
    const auto body = known.lock();
    if (body == nullptr) continue;
    if (const Result r = body->flush(); r != Result::ok) return r;
  }
  return std::exchange(m_late_error, Result::ok);
}

// Everything that needs sectors takes them here, before anything that the
// former state of the file rests on is written over.
Result CompoundState::place() {
  if (const Result r = m_mini.place(m_header); r != Result::ok) return r;
  DirectoryEntry* root = nullptr;
  if (const Result r = m_directory.change(0, root); r != Result::ok) return r;
  root->start = m_mini.first_sector();
  root->size = m_mini.size();
  return m_directory.place(m_header);
}

Result CompoundState::write_header() {
  std::vector<std::byte> bytes(m_io.sector_size());
  encode_header(m_header, std::span(bytes).first<k_header_size>());
  return m_io.write(0, bytes);
}

Result CompoundState::flush() {
  if (m_access != Access::modify || !m_changing) return Result::ok;
  Result r = flush_bodies();
  if (r == Result::ok) r = place();
  if (r == Result::ok) r = m_cache.flush();
  if (r == Result::ok) r = m_mini.write_table();
  if (r == Result::ok) r = m_table.write_list(m_header);
  if (r == Result::ok) r = m_directory.write();
  if (r == Result::ok) r = write_header();
  if (r == Result::ok) r = m_table.free_released();
  if (r == Result::ok) r = m_cache.flush();
  if (r != Result::ok) return r;
  m_mini.free_released();
  m_table.drop_free_tail();
  return m_io.set_sector_count(m_table.sector_count());
}

Result CompoundState::close() {
  const bool changed = m_access == Access::modify && m_changing;
  if (const Result r = flush(); r != Result::ok) return r;
  if (!changed || m_header.has_signature) return Result::ok;
  m_header.has_signature = true;
  return write_header();
}

Result CompoundState::open_body(std::uint32_t id, std::shared_ptr<StreamBody>& body) {
  if (const auto known = m_bodies.find(id); known != m_bodies.end()) {
    body = known->second.lock();
    if (body != nullptr) return Result::ok;
  }
  auto opened = std::make_shared<StreamBody>(*this, id);
  if (const Result r = opened->open(); r != Result::ok) return r;
  m_bodies[id] = opened;
  keep(opened);
  body = std::move(opened);
  return Result::ok;
}

void CompoundState::keep(const std::shared_ptr<StreamBody>& body) {
  if (body->size() < k_mini_cutoff) return;
  m_kept[m_next_kept] = body;
  m_next_kept = (m_next_kept + 1) % m_kept.size();
}

void CompoundState::body_gone(std::uint32_t id, Result flushed) {
  m_bodies.erase(id);
  if (m_late_error == Result::ok) m_late_error = flushed;
}

std::uint32_t CompoundState::claimed_sectors(std::uint32_t id) const {
  const auto known = m_claimed.find(id);
  return known == m_claimed.end() ? 0 : known->second;
}

Result CompoundState::remove(std::uint32_t parent, std::uint32_t id) {
  struct Item {
    std::uint32_t parent;
    std::uint32_t id;
  };
  std::vector<Item> items{{parent, id}};
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Item item = items[i];
    const DirectoryEntry* entry = nullptr;
    if (const Result r = m_directory.entry(item.id, entry); r != Result::ok) return r;
    if (entry->is_folder()) {
      const Directory::Children* children = nullptr;
      if (const Result r = m_directory.children(item.id, children); r != Result::ok) return r;
      for (const std::uint32_t child : *children)
        items.push_back({item.id, child});
    } else {
      std::shared_ptr<StreamBody> body;
      if (const Result r = open_body(item.id, body); r != Result::ok) return r;
      if (const Result r = body->set_size(0); r != Result::ok) return r;
      body->detach();
      m_bodies.erase(item.id);
    }
  }
  for (std::size_t i = items.size(); i-- > 0;) {
    const Result r = m_directory.remove(items[i].parent, items[i].id);
    if (r != Result::ok) return r;
  }
  return Result::ok;
}

}  // namespace aafobj
