#include "aafobj/container/compound_file.h"

#include <utility>

#include "aafobj/container/compound_header.h"
#include "aafobj/container/compound_state.h"
#include "aafobj/container/stream_body.h"

namespace aafobj {

namespace {

constexpr std::uint32_t number(StorageId id) {
  return static_cast<std::uint32_t>(id);
}

Element make_element(std::uint32_t id, const DirectoryEntry& entry) {
  Element element;
  element.name = entry.name();
  if (entry.is(EntryType::stream)) {
    element.size = entry.size;
    return element;
  }
  element.type = ElementType::storage;
  element.storage = StorageId{id};
  element.class_id = entry.class_id;
  return element;
}

Result find_entry(CompoundState& state, StorageId parent, std::u16string_view name,
                  std::uint32_t& id, const DirectoryEntry*& entry) {
  if (!is_valid_name(name)) return Result::bad_name;
  if (const Result r = state.m_directory.find(number(parent), name, id); r != Result::ok) return r;
  return state.m_directory.entry(id, entry);
}

Result find_storage(CompoundState& state, StorageId storage, const DirectoryEntry*& entry) {
  if (const Result r = state.m_directory.entry(number(storage), entry); r != Result::ok) return r;
  return entry->is_folder() ? Result::ok : Result::invalid_argument;
}

Result add_element(CompoundState& state, StorageId parent, std::u16string_view name, EntryType type,
                   std::uint32_t& id) {
  if (const Result r = state.begin_change(); r != Result::ok) return r;
  if (!is_valid_name(name)) return Result::bad_name;
  const Result found = state.m_directory.find(number(parent), name, id);
  if (found != Result::not_found) return found == Result::ok ? Result::already_exists : found;
  return state.m_directory.add(number(parent), name, type, id);
}

}  // namespace

std::uint64_t Stream::size() const {
  return m_body == nullptr ? 0 : m_body->size();
}

Result Stream::read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) const {
  count = 0;
  return m_body == nullptr ? Result::closed : m_body->read_at(position, out, count);
}

Result Stream::write_at(std::uint64_t position, std::span<const std::byte> bytes) const {
  return m_body == nullptr ? Result::closed : m_body->write_at(position, bytes);
}

Result Stream::set_size(std::uint64_t bytes) const {
  return m_body == nullptr ? Result::closed : m_body->set_size(bytes);
}

Result Stream::read(std::span<std::byte> out, std::size_t& count) {
  const Result r = read_at(m_position, out, count);
  m_position += count;
  return r;
}

Result Stream::write(std::span<const std::byte> bytes) {
  const Result r = write_at(m_position, bytes);
  if (r == Result::ok) m_position += bytes.size();
  return r;
}

CompoundFile::CompoundFile(std::unique_ptr<CompoundState> state)
    : m_state(std::move(state)),
      m_kind(m_state->header().kind),
      m_access(m_state->access()),
      m_sector_size(m_state->m_io.sector_size()) {}

CompoundFile::~CompoundFile() = default;

Result CompoundFile::recognise(RawStorage& storage, FileKind& kind) {
  std::array<std::byte, k_recognition_size> bytes{};
  std::size_t count = 0;
  if (const Result r = storage.read_at(0, bytes, count); r != Result::ok) return r;
  return recognise_header(std::span(bytes).first(count), kind);
}

Result CompoundFile::create(std::shared_ptr<RawStorage> storage, FileKind kind,
                            std::unique_ptr<CompoundFile>& file) {
  if (storage == nullptr) return Result::invalid_argument;
  if (!storage->writable()) return Result::read_only;
  if (const Result r = storage->set_size(0); r != Result::ok) return r;
  CompoundHeader header;
  header.kind = kind;
  header.sector_shift = kind == FileKind::aaf_512 ? 9 : 12;
  auto state = std::make_unique<CompoundState>(std::move(storage), 0, header, Access::modify);
  state->start_empty();
  file.reset(new CompoundFile(std::move(state)));
  return Result::ok;
}

Result CompoundFile::open(std::shared_ptr<RawStorage> storage, Access access,
                          std::unique_ptr<CompoundFile>& file) {
  if (storage == nullptr) return Result::invalid_argument;
  if (access == Access::modify && !storage->writable()) return Result::read_only;
  std::uint64_t size = 0;
  if (const Result r = storage->size(size); r != Result::ok) return r;
  std::array<std::byte, k_header_size> bytes{};
  std::size_t count = 0;
  if (const Result r = storage->read_at(0, bytes, count); r != Result::ok) return r;
  CompoundHeader header;
  const Result decoded = decode_header(std::span(bytes).first(count), header);
  if (decoded != Result::ok) return decoded;
  auto state = std::make_unique<CompoundState>(std::move(storage), size, header, access);
  if (const Result r = state->start_existing(); r != Result::ok) return r;
  file.reset(new CompoundFile(std::move(state)));
  return Result::ok;
}

Result CompoundFile::create_disk(const std::filesystem::path& path, FileKind kind, bool replace,
                                 std::unique_ptr<CompoundFile>& file) {
  std::shared_ptr<RawStorage> storage;
  const DiskMode mode = replace ? DiskMode::create_over : DiskMode::create_new;
  if (const Result r = open_disk_storage(path, mode, storage); r != Result::ok) return r;
  return create(std::move(storage), kind, file);
}

Result CompoundFile::open_disk(const std::filesystem::path& path, Access access,
                               std::unique_ptr<CompoundFile>& file) {
  std::shared_ptr<RawStorage> storage;
  const DiskMode mode = access == Access::modify ? DiskMode::modify : DiskMode::read;
  if (const Result r = open_disk_storage(path, mode, storage); r != Result::ok) return r;
  return open(std::move(storage), access, file);
}

FileKind CompoundFile::kind() const {
  return m_kind;
}

Access CompoundFile::access() const {
  return m_access;
}

std::uint32_t CompoundFile::sector_size() const {
  return m_sector_size;
}

Result CompoundFile::flush() {
  return m_state == nullptr ? Result::closed : m_state->flush();
}

Result CompoundFile::close() {
  if (m_state == nullptr) return Result::closed;
  const Result r = m_state->close();
  m_state.reset();
  return r;
}

Result CompoundFile::verify() {
  return m_state == nullptr ? Result::closed : m_state->verify();
}

Result CompoundFile::children(StorageId storage, std::vector<Element>& elements) {
  elements.clear();
  if (m_state == nullptr) return Result::closed;
  const Directory::Children* ids = nullptr;
  const Result r = m_state->m_directory.children(number(storage), ids);
  if (r != Result::ok) return r;
  elements.reserve(ids->size());
  for (const std::uint32_t id : *ids) {
    const DirectoryEntry* entry = nullptr;
    if (const Result e = m_state->m_directory.entry(id, entry); e != Result::ok) return e;
    elements.push_back(make_element(id, *entry));
  }
  return Result::ok;
}

Result CompoundFile::find(StorageId parent, std::u16string_view name, Element& element) {
  if (m_state == nullptr) return Result::closed;
  std::uint32_t id = 0;
  const DirectoryEntry* entry = nullptr;
  if (const Result r = find_entry(*m_state, parent, name, id, entry); r != Result::ok) return r;
  element = make_element(id, *entry);
  return Result::ok;
}

Result CompoundFile::open_storage(StorageId parent, std::u16string_view name, StorageId& storage) {
  if (m_state == nullptr) return Result::closed;
  std::uint32_t id = 0;
  const DirectoryEntry* entry = nullptr;
  if (const Result r = find_entry(*m_state, parent, name, id, entry); r != Result::ok) return r;
  if (!entry->is_folder()) return Result::wrong_type;
  storage = StorageId{id};
  return Result::ok;
}

Result CompoundFile::create_storage(StorageId parent, std::u16string_view name,
                                    const ClassId& class_id, StorageId& storage) {
  if (m_state == nullptr) return Result::closed;
  std::uint32_t id = 0;
  const Result r = add_element(*m_state, parent, name, EntryType::storage, id);
  if (r != Result::ok) return r;
  storage = StorageId{id};
  return set_class_id(storage, class_id);
}

Result CompoundFile::class_id(StorageId storage, ClassId& class_id) {
  if (m_state == nullptr) return Result::closed;
  const DirectoryEntry* entry = nullptr;
  if (const Result r = find_storage(*m_state, storage, entry); r != Result::ok) return r;
  class_id = entry->class_id;
  return Result::ok;
}

Result CompoundFile::set_class_id(StorageId storage, const ClassId& class_id) {
  if (m_state == nullptr) return Result::closed;
  const DirectoryEntry* entry = nullptr;
  DirectoryEntry* changed = nullptr;
  Result r = m_state->begin_change();
  if (r == Result::ok) r = find_storage(*m_state, storage, entry);
  if (r == Result::ok) r = m_state->m_directory.change(number(storage), changed);
  if (r != Result::ok) return r;
  changed->class_id = class_id;
  return Result::ok;
}

Result CompoundFile::open_stream(StorageId parent, std::u16string_view name, Stream& stream) {
  if (m_state == nullptr) return Result::closed;
  std::uint32_t id = 0;
  const DirectoryEntry* entry = nullptr;
  if (const Result r = find_entry(*m_state, parent, name, id, entry); r != Result::ok) return r;
  if (!entry->is(EntryType::stream)) return Result::wrong_type;
  std::shared_ptr<StreamBody> body;
  if (const Result r = m_state->open_body(id, body); r != Result::ok) return r;
  stream = Stream(std::move(body));
  return Result::ok;
}

Result CompoundFile::create_stream(StorageId parent, std::u16string_view name, Stream& stream) {
  if (m_state == nullptr) return Result::closed;
  std::uint32_t id = 0;
  const Result r = add_element(*m_state, parent, name, EntryType::stream, id);
  if (r != Result::ok) return r;
  std::shared_ptr<StreamBody> body;
  if (const Result opened = m_state->open_body(id, body); opened != Result::ok) return opened;
  stream = Stream(std::move(body));
  return Result::ok;
}

Result CompoundFile::remove(StorageId parent, std::u16string_view name) {
  if (m_state == nullptr) return Result::closed;
  if (const Result r = m_state->begin_change(); r != Result::ok) return r;
  std::uint32_t id = 0;
  const DirectoryEntry* entry = nullptr;
  if (const Result r = find_entry(*m_state, parent, name, id, entry); r != Result::ok) return r;
  return m_state->remove(number(parent), id);
}

Result CompoundFile::rename(StorageId parent, std::u16string_view name,
                            std::u16string_view new_name) {
  if (m_state == nullptr) return Result::closed;
  if (const Result r = m_state->begin_change(); r != Result::ok) return r;
  if (!is_valid_name(new_name)) return Result::bad_name;
  std::uint32_t id = 0;
  std::uint32_t other = 0;
  const DirectoryEntry* entry = nullptr;
  if (const Result r = find_entry(*m_state, parent, name, id, entry); r != Result::ok) return r;
  const Result taken = m_state->m_directory.find(number(parent), new_name, other);
  if (taken == Result::ok && other != id) return Result::already_exists;
  if (taken != Result::ok && taken != Result::not_found) return taken;
  return m_state->m_directory.rename(number(parent), id, new_name);
}

Result CompoundFile::read_stream(StorageId parent, std::u16string_view name, std::size_t limit,
                                 std::vector<std::byte>& bytes) {
  Stream stream;
  if (const Result r = open_stream(parent, name, stream); r != Result::ok) return r;
  if (stream.size() > limit) return Result::too_large;
  bytes.resize(stream.size());
  std::size_t count = 0;
  return stream.read_at(0, bytes, count);
}

Result CompoundFile::write_stream(StorageId parent, std::u16string_view name,
                                  std::span<const std::byte> bytes) {
  Stream stream;
  Result r = open_stream(parent, name, stream);
  if (r == Result::not_found) r = create_stream(parent, name, stream);
  if (r == Result::ok) r = stream.set_size(0);
  if (r == Result::ok) r = stream.write_at(0, bytes);
  return r;
}

}  // namespace aafobj
