#include "aafobj/container/directory.h"

#include <algorithm>
#include <bit>
#include <span>

namespace aafobj {

namespace {

// Neighbouring sectors of the directory are read together, up to this many.
constexpr std::uint32_t k_read_ahead_bytes = 65536;

// The links of a balanced tree over sorted ids. Every level but the deepest is
// full; a deepest level that is not full is red, all else black, so every path
// has the same number of black entries and no red one has a red child.
struct TreeBuilder {
  std::span<DirectoryEntry* const> entries;
  std::span<const std::uint32_t> ids;
  int red_level = -1;

  std::uint32_t build(std::size_t first, std::size_t end, int level) const {
    if (first == end) return k_no_entry;
    const std::size_t middle = first + (end - first) / 2;
    DirectoryEntry& entry = *entries[middle];
    entry.left = build(first, middle, level + 1);
    entry.right = build(middle + 1, end, level + 1);
    entry.black = level != red_level;
    return ids[middle];
  }
};

}  // namespace

Directory::Directory(SectorIo& io, SectorTable& table) : m_io(io), m_table(table) {}

Directory::~Directory() = default;

void Directory::start_empty() {
  add_page();
  DirectoryEntry& root = m_pages[0].entries[0];
  root.set_name(u"Root Entry");
  root.type = static_cast<std::uint8_t>(EntryType::root);
  root.start = k_end_of_chain;
  m_unused.pop_back();
  m_folders[0].children = std::make_unique<Children>(NameOrder{this});
}

void Directory::start(const CompoundHeader& header) {
  m_chain = Chain(header.first_directory_sector);
}

const DirectoryEntry& Directory::loaded(std::uint32_t id) const {
  return m_pages[id / per_page()].entries[id % per_page()];
}

void Directory::decode_page(std::uint32_t page, std::span<const std::byte> bytes) {
  if (m_pages[page].entries != nullptr) return;
  m_pages[page].entries = std::make_unique<DirectoryEntry[]>(per_page());
  for (std::uint32_t i = 0; i < per_page(); ++i) {
    const auto stored = bytes.subspan(i * k_entry_size).first<k_entry_size>();
    m_pages[page].entries[i] = decode_entry(stored, m_io.sector_size() == 512);
  }
}

Result Directory::load_page(std::uint32_t page) {
  SectorRun run;
  const std::uint32_t limit = m_table.sector_count();
  if (page >= limit) return Result::damaged;
  if (const Result r = m_chain.locate(m_table, page, limit, run); r != Result::ok) return r;
  const std::uint32_t sector_size = m_io.sector_size();
  const std::uint32_t count = std::min(run.count, k_read_ahead_bytes / sector_size);
  std::vector<std::byte> bytes(std::size_t{count} * sector_size);
  if (const Result r = m_io.read(m_io.position_of(run.first), bytes); r != Result::ok) return r;
  if (m_pages.size() < std::size_t{page} + count) m_pages.resize(std::size_t{page} + count);
  for (std::uint32_t i = 0; i < count; ++i) {
    decode_page(page + i, std::span(bytes).subspan(std::size_t{i} * sector_size, sector_size));
  }
  return Result::ok;
}

Result Directory::entry(std::uint32_t id, const DirectoryEntry*& entry) {
  const std::uint32_t page = id / per_page();
  if (page >= m_pages.size() || m_pages[page].entries == nullptr) {
    if (const Result r = load_page(page); r != Result::ok) return r;
  }
  entry = &loaded(id);
  return Result::ok;
}

Result Directory::walk(std::uint32_t top, Children& children) {
  std::vector<std::uint32_t> waiting{top};
  while (!waiting.empty()) {
    const std::uint32_t id = waiting.back();
    waiting.pop_back();
    if (id == k_no_entry) continue;
    const DirectoryEntry* found = nullptr;
    if (const Result r = entry(id, found); r != Result::ok) return r;
    if (id == 0 || !m_seen.insert(id)) return Result::damaged;
    if (!found->is(EntryType::storage) && !found->is(EntryType::stream)) return Result::damaged;
    if (!is_valid_name(found->name()) || !children.insert(id).second) return Result::damaged;
    waiting.push_back(found->right);
    waiting.push_back(found->left);
  }
  return Result::ok;
}

Result Directory::folder(std::uint32_t parent, Folder*& folder) {
  if (const auto known = m_folders.find(parent); known != m_folders.end()) {
    folder = &known->second;
    return Result::ok;
  }
  const DirectoryEntry* found = nullptr;
  if (const Result r = entry(parent, found); r != Result::ok) return r;
  if (parent == 0 ? !found->is(EntryType::root) : !found->is(EntryType::storage)) {
    return parent == 0 ? Result::damaged : Result::invalid_argument;
  }
  auto children = std::make_unique<Children>(NameOrder{this});
  if (const Result r = walk(found->child, *children); r != Result::ok) return r;
  folder = &m_folders[parent];
  folder->children = std::move(children);
  return Result::ok;
}

Result Directory::children(std::uint32_t parent, const Children*& children) {
  Folder* known = nullptr;
  if (const Result r = folder(parent, known); r != Result::ok) return r;
  children = known->children.get();
  return Result::ok;
}

Result Directory::find(std::uint32_t parent, std::u16string_view name, std::uint32_t& id) {
  const Children* all = nullptr;
  if (const Result r = children(parent, all); r != Result::ok) return r;
  const auto known = all->find(name);
  if (known == all->end()) return Result::not_found;
  id = *known;
  return Result::ok;
}

Result Directory::verify(SectorSet& used) {
  return m_chain.verify(m_table, m_chain_sectors, used);
}

Result Directory::start_changes() {
  const Result measured = m_chain.measure(m_table, m_table.sector_count(), m_chain_sectors);
  if (measured != Result::ok) return measured;
  for (std::uint32_t id = m_chain_sectors * per_page(); id-- > 0;) {
    const DirectoryEntry* found = nullptr;
    if (const Result r = entry(id, found); r != Result::ok) return r;
    if (id != 0 && found->is(EntryType::unused) && !m_seen.contains(id)) m_unused.push_back(id);
  }
  return Result::ok;
}

Result Directory::change(std::uint32_t id, DirectoryEntry*& changed) {
  const DirectoryEntry* found = nullptr;
  if (const Result r = entry(id, found); r != Result::ok) return r;
  Page& page = m_pages[id / per_page()];
  page.changed = true;
  changed = &page.entries[id % per_page()];
  return Result::ok;
}

void Directory::add_page() {
  const auto first = static_cast<std::uint32_t>(m_pages.size()) * per_page();
  m_pages.push_back({std::make_unique<DirectoryEntry[]>(per_page()), true});
  for (std::uint32_t i = per_page(); i-- > 0;)
    m_unused.push_back(first + i);
}

Result Directory::add(std::uint32_t parent, std::u16string_view name, EntryType type,
                      std::uint32_t& id) {
  Folder* home = nullptr;
  if (const Result r = folder(parent, home); r != Result::ok) return r;
  if (m_unused.empty()) {
    if (m_pages.size() * per_page() > k_last_sector - per_page()) return Result::too_large;
    add_page();
  }
  DirectoryEntry* added = nullptr;
  if (const Result r = change(m_unused.back(), added); r != Result::ok) return r;
  id = m_unused.back();
  m_unused.pop_back();
  *added = DirectoryEntry();
  added->set_name(name);
  added->type = static_cast<std::uint8_t>(type);
  added->start = type == EntryType::stream ? k_end_of_chain : 0;
  home->children->insert(id);
  home->changed = true;
  if (type == EntryType::storage) {
    m_folders[id].children = std::make_unique<Children>(NameOrder{this});
  }
  return Result::ok;
}

Result Directory::remove(std::uint32_t parent, std::uint32_t id) {
  Folder* home = nullptr;
  DirectoryEntry* removed = nullptr;
  if (const Result r = folder(parent, home); r != Result::ok) return r;
  if (const Result r = change(id, removed); r != Result::ok) return r;
  home->children->erase(id);
  home->changed = true;
  m_folders.erase(id);
  *removed = DirectoryEntry();
  return Result::ok;
}

Result Directory::rename(std::uint32_t parent, std::uint32_t id, std::u16string_view name) {
  Folder* home = nullptr;
  DirectoryEntry* renamed = nullptr;
  if (const Result r = folder(parent, home); r != Result::ok) return r;
  if (const Result r = change(id, renamed); r != Result::ok) return r;
  home->children->erase(id);
  renamed->set_name(name);
  home->children->insert(id);
  home->changed = true;
  return Result::ok;
}

Result Directory::build_tree(std::uint32_t parent, const Children& children) {
  const std::vector<std::uint32_t> ids(children.begin(), children.end());
  std::vector<DirectoryEntry*> entries(ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    if (const Result r = change(ids[i], entries[i]); r != Result::ok) return r;
  }
  DirectoryEntry* top = nullptr;
  if (const Result r = change(parent, top); r != Result::ok) return r;
  TreeBuilder builder{entries, ids};
  if (!std::has_single_bit(ids.size() + 1)) {
    builder.red_level = static_cast<int>(std::bit_width(ids.size())) - 1;
  }
  top->child = builder.build(0, ids.size(), 0);
  return Result::ok;
}

Result Directory::write_page(std::uint32_t index) {
  SectorRun run;
  const Result located = m_chain.locate(m_table, index, m_chain_sectors, run);
  if (located != Result::ok) return located;
  std::vector<std::byte> bytes(m_io.sector_size());
  for (std::uint32_t i = 0; i < per_page(); ++i) {
    encode_entry(m_pages[index].entries[i],
                 std::span(bytes).subspan(i * k_entry_size).first<k_entry_size>());
  }
  return m_io.write(m_io.position_of(run.first), bytes);
}

Result Directory::place(CompoundHeader& header) {
  for (auto& [parent, folder] : m_folders) {
    if (!folder.changed) continue;
    if (const Result r = build_tree(parent, *folder.children); r != Result::ok) return r;
    folder.changed = false;
  }
  const auto wanted = static_cast<std::uint32_t>(m_pages.size());
  if (wanted > m_chain_sectors) {
    const Result r = m_chain.resize(m_table, m_chain_sectors, wanted);
    if (r != Result::ok) return r;
    m_chain_sectors = wanted;
  }
  header.first_directory_sector = m_chain.first();
  header.directory_sector_count = m_chain_sectors;
  return Result::ok;
}

Result Directory::write() {
  for (std::uint32_t i = 0; i < m_pages.size(); ++i) {
    if (!m_pages[i].changed) continue;
    if (const Result r = write_page(i); r != Result::ok) return r;
    m_pages[i].changed = false;
  }
  return Result::ok;
}

}  // namespace aafobj
