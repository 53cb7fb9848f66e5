#include "aafobj/model/object_file.h"

#include <chrono>

#include "aafobj/model/meta_dictionary.h"
#include "aafobj/model/object_writer.h"
#include "aafobj/model/storage_name.h"
#include "aafobj/model/stored_values.h"

namespace aafobj {
namespace {

constexpr std::size_t max_path_table = std::size_t{1} << 20;
constexpr std::size_t max_path_steps = 16;

}  // namespace

ObjectFile::ObjectFile(std::unique_ptr<CompoundFile> container)
    : m_container(std::move(container)) {}

ObjectFile::~ObjectFile() = default;

AAFRESULT ObjectFile::open(std::unique_ptr<CompoundFile> container,
                           std::unique_ptr<ObjectFile>& file) {
  std::unique_ptr<ObjectFile> opened(new ObjectFile(std::move(container)));
  if (const AAFRESULT r = opened->read_root(); r < 0) return r;
  file = std::move(opened);
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectFile::create(std::unique_ptr<CompoundFile> container,
                             std::unique_ptr<ObjectFile>& file) {
  if (container->access() != Access::modify) return AAFRESULT_NOT_WRITEABLE;
  std::unique_ptr<ObjectFile> made(new ObjectFile(std::move(container)));
  if (const AAFRESULT r = made->make_root(); r < 0) return r;
  file = std::move(made);
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectFile::read_root() {
  m_root = &add_object(m_meta.class_of(ClassIndex::Root));
  m_root->m_has_storage = true;
  m_root->m_storage = k_root_storage;
  if (const AAFRESULT r = claim(k_root_storage); r < 0) return r;
  if (const AAFRESULT r = m_root->load(); r < 0) return r;
  if (const AAFRESULT r = read_paths(); r < 0) return r;
  StoredObject* object = nullptr;
  if (meta_dictionary(object) >= 0) m_meta.set_dictionary(object);
  const AAFRESULT found = header(object);
  return found == AAFRESULT_PROP_NOT_PRESENT ? AAFRESULT_BADCONTAINER : found;
}

// A file without weak references may lack the table.
AAFRESULT ObjectFile::read_paths() {
  std::vector<std::byte> bytes;
  const Result read =
      m_container->read_stream(k_root_storage, u"referenced properties", max_path_table, bytes);
  if (read == Result::not_found) return AAFRESULT_SUCCESS;
  if (read != Result::ok) return aaf_result(read);
  return m_paths.parse(bytes);
}

AAFRESULT ObjectFile::make_root() {
  m_root = &add_object(m_meta.class_of(ClassIndex::Root));
  m_root->m_has_storage = true;
  m_root->m_is_loaded = true;
  m_root->m_storage = k_root_storage;
  if (const AAFRESULT r = claim(k_root_storage); r < 0) return r;
  ClassId class_id{};
  std::memcpy(class_id.data(), StoredKey(root_class_id).bytes().data(), class_id.size());
  if (const Result r = m_container->set_class_id(k_root_storage, class_id); r != Result::ok) {
    return aaf_result(r);
  }
  StoredObject* dictionary = nullptr;
  if (const AAFRESULT r = create_object(ClassIndex::MetaDictionary, dictionary); r < 0) return r;
  if (const AAFRESULT r = m_root->set_object(pid::Root_MetaDictionary, *dictionary); r < 0) {
    return r;
  }
  if (const AAFRESULT r = define_baseline(*dictionary); r < 0) return r;
  m_meta.set_dictionary(dictionary);
  return make_header();
}

AAFRESULT ObjectFile::make_header() {
  StoredObject* header = nullptr;
  StoredObject* content = nullptr;
  StoredObject* dictionary = nullptr;
  if (const AAFRESULT r = create_object(ClassIndex::Header, header); r < 0) return r;
  if (const AAFRESULT r = create_object(ClassIndex::ContentStorage, content); r < 0) return r;
  if (const AAFRESULT r = create_object(ClassIndex::Dictionary, dictionary); r < 0) return r;
  constexpr std::uint16_t little_endian = 0x4949;
  constexpr aafVersionType_t version = {1, 1};
  constexpr std::uint32_t object_model_version = 1;
  const AAFRESULT steps[] = {
      set_value(*header, pid::Header_ByteOrder, little_endian),
      set_value(*header, pid::Header_LastModified, time_now()),
      set_value(*header, pid::Header_Version, version),
      set_value(*header, pid::Header_ObjectModelVersion, object_model_version),
      header->set_object(pid::Header_Content, *content),
      header->set_object(pid::Header_Dictionary, *dictionary),
      m_root->set_object(pid::Root_Header, *header)};
  for (const AAFRESULT r : steps) {
    if (r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

AAFRESULT ObjectFile::header(StoredObject*& object) {
  return m_root->get_object(pid::Root_Header, object);
}

AAFRESULT ObjectFile::meta_dictionary(StoredObject*& object) {
  return m_root->get_object(pid::Root_MetaDictionary, object);
}

AAFRESULT ObjectFile::content(StoredObject*& object) {
  StoredObject* above = nullptr;
  if (const AAFRESULT r = header(above); r < 0) return r;
  return above->get_object(pid::Header_Content, object);
}

AAFRESULT ObjectFile::dictionary(StoredObject*& object) {
  StoredObject* above = nullptr;
  if (const AAFRESULT r = header(above); r < 0) return r;
  return above->get_object(pid::Header_Dictionary, object);
}

StoredObject& ObjectFile::add_object(const ClassDef& cls) {
  m_objects.emplace_back(new StoredObject(*this, cls));
  return *m_objects.back();
}

AAFRESULT ObjectFile::create_object(ClassIndex index, StoredObject*& object) {
  return create_object(row_of(index).identifier, object);
}

AAFRESULT ObjectFile::create_object(const aafUID_t& class_id, StoredObject*& object) {
  if (!is_writable()) return AAFRESULT_NOT_WRITEABLE;
  const ClassDef* cls = m_meta.find_class(class_id);
  if (!cls) return AAFRESULT_CLASS_NOT_FOUND;
  if (!cls->is_concrete) return AAFRESULT_ABSTRACT_CLASS;
  StoredObject& made = add_object(*cls);
  made.m_is_loaded = true;
  note_change(made);
  for (const ClassDef* at = cls; at; at = at->parent) {
    for (const PropertyDef* property : m_meta.own_properties(*at)) {
      const bool is_collection =
          property->form == StoredForm::strong_vector || property->form == StoredForm::strong_set ||
          property->form == StoredForm::weak_vector || property->form == StoredForm::weak_set;
      if (property->is_optional || !is_collection) continue;
      if (const AAFRESULT r = made.make_collection(property->pid); r < 0) return r;
    }
  }
  object = &made;
  return AAFRESULT_SUCCESS;
}

// A storage stands for one object. Two properties that name the same one would give it two
// lives, and a damaged file more objects than it has bytes.
AAFRESULT ObjectFile::claim(StorageId storage) {
  const auto number = static_cast<std::size_t>(storage);
  if (number >= m_claimed.size()) m_claimed.resize(number + 1);
  if (m_claimed[number]) return AAFRESULT_BADCONTAINER;
  m_claimed[number] = true;
  return AAFRESULT_SUCCESS;
}

// Gives storages of objects that were let go other names, so that new ones can have theirs.
AAFRESULT ObjectFile::set_cast_off_aside() {
  for (CastOff& each : m_cast_off) {
    if (each.is_aside) continue;
    std::u16string name = element_name(u"~", m_cast_off_count++);
    const Result renamed = m_container->rename(each.parent, each.name, name);
    // Its parent may have gone before it.
    if (renamed != Result::ok && renamed != Result::invalid_argument) return aaf_result(renamed);
    each.name = std::move(name);
    each.is_aside = true;
  }
  return AAFRESULT_SUCCESS;
}

void ObjectFile::note_change(StoredObject& object) {
  m_path_index.clear();
  ++m_change_count;
  if (object.m_is_changed) return;
  object.m_is_changed = true;
  m_changed.push_back(&object);
}

AAFRESULT ObjectFile::tag_of(std::span<const std::uint16_t> path, std::uint16_t& tag) {
  const std::size_t before = m_paths.paths().size();
  const AAFRESULT r = m_paths.tag_of(path, tag);
  if (m_paths.paths().size() != before) m_paths_changed = true;
  return r;
}

// Real ways lead over single objects to a set; whatever else a file thinks of is left to an
// index.
AAFRESULT ObjectFile::resolve(const WeakTarget& target, StoredObject*& object) {
  const ReferencedProperties::Path* path = m_paths.path_of(target.tag);
  if (!path || path->empty() || path->size() > max_path_steps) return AAFRESULT_OBJECT_NOT_FOUND;
  StoredObject* at = m_root;
  for (std::size_t i = 0; i + 1 < path->size(); ++i) {
    const AAFRESULT r = at->get_object((*path)[i], at);
    if (r == AAFRESULT_BAD_TYPE) return m_path_index.find(*m_root, *path, target.key, object);
    if (r < 0) return r == AAFRESULT_PROP_NOT_PRESENT ? AAFRESULT_OBJECT_NOT_FOUND : r;
  }
  const AAFRESULT r = at->find_element(path->back(), target.key, object);
  return r == AAFRESULT_BAD_TYPE ? AAFRESULT_OBJECT_NOT_FOUND : r;
}

AAFRESULT ObjectFile::target_to(StoredObject& object, WeakTarget& target) {
  if (!object.is_attached() || !object.m_owner) return AAFRESULT_OBJECT_NOT_ATTACHED;
  StrongSetValue* set = nullptr;
  if (const AAFRESULT r = object.m_owner->get_set(object.m_owner_pid, set); r < 0) return r;
  std::span<const std::byte> key;
  if (const AAFRESULT r = object.get_data(set->key_pid, key); r < 0) return r;
  if (key.size() != set->key_bytes) return AAFRESULT_BAD_SIZE;
  std::vector<std::uint16_t> path;
  for (StoredObject* at = &object; at->m_owner; at = at->m_owner) {
    path.insert(path.begin(), at->m_owner_pid);
  }
  target.key_pid = set->key_pid;
  target.key = StoredKey(key);
  return tag_of(path, target.tag);
}

AAFRESULT ObjectFile::save() {
  if (!is_writable()) return AAFRESULT_NOT_WRITEABLE;
  return ObjectWriter(*this).write_changes();
}

AAFRESULT ObjectFile::save_copy(CompoundFile& copy) {
  return ObjectWriter(*this).write_copy(copy);
}

AAFRESULT ObjectFile::close() {
  if (!m_is_open) return AAFRESULT_NOT_OPEN;
  m_is_open = false;
  return aaf_result(m_container->close());
}

AAFRESULT ObjectFile::release_container(std::unique_ptr<CompoundFile>& container) {
  std::vector<Element> elements;
  if (!is_writable()) return AAFRESULT_NOT_WRITEABLE;
  if (const Result r = m_container->children(k_root_storage, elements); r != Result::ok) {
    return aaf_result(r);
  }
  if (!elements.empty()) return AAFRESULT_NOT_WRITEABLE;
  m_is_open = false;
  container = std::move(m_container);
  return AAFRESULT_SUCCESS;
}

aafTimeStamp_t time_now() {
  using namespace std::chrono;
  const auto now = floor<milliseconds>(system_clock::now());
  const auto today = floor<days>(now);
  const year_month_day date(today);
  const hh_mm_ss time(now - today);
  aafTimeStamp_t stamp{};
  stamp.date.year = static_cast<aafInt16>(static_cast<int>(date.year()));
  stamp.date.month = static_cast<aafUInt8>(static_cast<unsigned>(date.month()));
  stamp.date.day = static_cast<aafUInt8>(static_cast<unsigned>(date.day()));
  stamp.time.hour = static_cast<aafUInt8>(time.hours().count());
  stamp.time.minute = static_cast<aafUInt8>(time.minutes().count());
  stamp.time.second = static_cast<aafUInt8>(time.seconds().count());
  stamp.time.fraction = static_cast<aafUInt8>(time.subseconds().count() / 10);
  return stamp;
}

}  // namespace aafobj
