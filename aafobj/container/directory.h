#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "aafobj/container/chain.h"
#include "aafobj/container/compound_header.h"
#include "aafobj/container/directory_entry.h"
#include "aafobj/container/result.h"
#include "aafobj/container/sector_io.h"
#include "aafobj/container/sector_set.h"
#include "aafobj/container/sector_table.h"

namespace aafobj {

/// The tree of names. Entries are numbered; entry 0 is the root. Sectors of the
/// directory are read when an entry of theirs is first needed and then stay in
/// memory, so pointers to entries stay valid.
///
/// The children of a storage are found by walking their whole stored tree, so
/// that a wrong order in it does no harm. No entry is accepted twice in the
/// whole file, which ends loops.
class Directory {
 public:
  struct NameOrder;
  using Children = std::set<std::uint32_t, NameOrder>;

  struct NameOrder {
    using is_transparent = void;
    const Directory* directory;
    bool operator()(std::uint32_t a, std::uint32_t b) const {
      return name_less(directory->loaded(a).name(), directory->loaded(b).name());
    }
    bool operator()(std::uint32_t a, std::u16string_view b) const {
      return name_less(directory->loaded(a).name(), b);
    }
    bool operator()(std::u16string_view a, std::uint32_t b) const {
      return name_less(a, directory->loaded(b).name());
    }
  };

  Directory(SectorIo& io, SectorTable& table);
  Directory(const Directory&) = delete;
  Directory& operator=(const Directory&) = delete;
  ~Directory();

  /// Makes an empty directory: a root without children.
  void start_empty();

  /// Takes over that of an existing file.
  void start(const CompoundHeader& header);

  Result entry(std::uint32_t id, const DirectoryEntry*& entry);

  /// The children of a storage or the root, in the order of names.
  Result children(std::uint32_t parent, const Children*& children);

  Result find(std::uint32_t parent, std::u16string_view name, std::uint32_t& id);

  /// Checks the chain of the directory and adds its sectors to `used`.
  Result verify(SectorSet& used);

  // What follows changes the directory. Nothing reaches the file before
  // flush().

  /// Reads the whole directory and finds the unused entries.
  Result start_changes();

  /// Marks the sector of the entry as changed.
  Result change(std::uint32_t id, DirectoryEntry*& entry);

  /// Adds an empty element. The name must be valid and not yet in use there.
  Result add(std::uint32_t parent, std::u16string_view name, EntryType type, std::uint32_t& id);

  /// Takes one element out; its number is not used again while the file is
  /// open.
  Result remove(std::uint32_t parent, std::uint32_t id);

  Result rename(std::uint32_t parent, std::uint32_t id, std::u16string_view name);

  /// Before a flush: builds the trees of changed storages anew and finds room
  /// for new sectors. Fills its part of the header.
  Result place(CompoundHeader& header);

  /// Writes changed sectors.
  Result write();

 private:
  struct Page {
    std::unique_ptr<DirectoryEntry[]> entries;
    bool changed = false;
  };
  struct Folder {
    std::unique_ptr<Children> children;
    bool changed = false;
  };

  std::uint32_t per_page() const {
    return m_io.sector_size() / static_cast<std::uint32_t>(k_entry_size);
  }
  const DirectoryEntry& loaded(std::uint32_t id) const;
  Result load_page(std::uint32_t page);
  void decode_page(std::uint32_t page, std::span<const std::byte> bytes);
  Result walk(std::uint32_t top, Children& children);
  Result folder(std::uint32_t parent, Folder*& folder);
  void add_page();
  Result build_tree(std::uint32_t parent, const Children& children);
  Result write_page(std::uint32_t index);

  SectorIo& m_io;
  SectorTable& m_table;
  Chain m_chain;
  std::uint32_t m_chain_sectors = 0;  // 0 until changes start
  std::vector<Page> m_pages;
  SectorSet m_seen;  // entries that are in a tree
  std::unordered_map<std::uint32_t, Folder> m_folders;
  std::vector<std::uint32_t> m_unused;  // highest first
};

}  // namespace aafobj
