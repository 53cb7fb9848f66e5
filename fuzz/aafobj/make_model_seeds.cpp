// Makes the seeds of the object model target: make_model_seeds FOLDER.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/model/index_stream.h"
#include "aafobj/model/object_file.h"
#include "aafobj/model/storage_name.h"
#include "aafobj/model/stored_values.h"

namespace {

using namespace aafobj;

// The baseline would be most of a seed, and every reader has it. Of its definitions one class,
// to which a seed adds a property, and one type stay.
bool is_left_out(const aafUID_t& id) {
  const ClassRow* cls = find_class(id);
  const TypeRow* type = find_type(id);
  return (cls && cls->name != "MasterMob") || (type && type->name != "Int16");
}

// Turns a file's storages and streams into the target's own form.
class SeedWriter {
 public:
  explicit SeedWriter(CompoundFile& file) : m_file(file) {}

  const ByteWriter& write() {
    put_storage(k_root_storage);
    return m_out;
  }

 private:
  void put_storage(StorageId storage) {
    std::vector<Element> elements;
    if (m_file.children(storage, elements) != Result::ok) return;
    for (const std::u16string_view set : {u"ClassDefinitions-3", u"TypeDefinitions-4"}) {
      shorten(storage, std::u16string(set));
    }
    const std::set<std::u16string> left_out = m_left_out;
    for (const Element& element : elements) {
      if (left_out.contains(element.name)) continue;
      if (element.type == ElementType::storage) {
        put_name(1, element.name);
        m_out.put_bytes(std::as_bytes(std::span(element.class_id)));
        put_storage(element.storage);
        m_out.put(std::uint8_t{2});
      } else {
        put_stream(storage, element.name);
      }
    }
  }

  void shorten(StorageId storage, const std::u16string& set) {
    std::vector<std::byte> bytes;
    SetIndex index;
    if (m_file.read_stream(storage, index_name(set), 1 << 20, bytes) != Result::ok) return;
    if (parse_index(bytes, ByteOrder::little, index) < 0) return;
    std::vector<SetIndex::Entry> kept;
    for (const SetIndex::Entry& entry : index.entries) {
      if (is_left_out(entry.key.auid())) {
        m_left_out.insert(element_name(set, entry.local_key));
      } else {
        kept.push_back(entry);
      }
    }
    index.entries = kept;
    bytes = write_index(index, ByteOrder::little);
    if (m_file.write_stream(storage, index_name(set), bytes) != Result::ok) return;
  }

  void put_name(std::uint8_t kind, const std::u16string& name) {
    m_out.put(kind);
    m_out.put(static_cast<std::uint8_t>(name.size()));
    for (const char16_t unit : name)
      m_out.put(static_cast<std::uint8_t>(unit));
  }

  void put_stream(StorageId storage, const std::u16string& name) {
    std::vector<std::byte> bytes;
    if (m_file.read_stream(storage, name, 65535, bytes) != Result::ok) bytes.clear();
    put_name(3, name);
    m_out.put(static_cast<std::uint16_t>(bytes.size()));
    m_out.put_bytes(bytes);
  }

  CompoundFile& m_file;
  ByteWriter m_out;
  std::set<std::u16string> m_left_out;
};

// An extension of the model.
AAFRESULT add_extension(ObjectFile& file, StoredObject& mob) {
  MetaModel& meta = file.meta_model();
  TypeDef type;
  type.name = u"Pair";
  type.identifier = {0x44, 0, 0, {1}};
  type.kind = TypeKind::record;
  type.size_bytes = 6;
  type.members = {{u"a", &meta.type_of(TypeIndex::Int16), 0, {}},
                  {u"b", &meta.type_of(TypeIndex::UInt32), 0, {}}};
  const TypeDef* added = nullptr;
  if (const AAFRESULT r = meta.add_type(type, added); r < 0) return r;
  PropertyDef property;
  property.name = u"Extension";
  property.identifier = {0x45, 0, 0, {1}};
  property.type = type.identifier;
  const PropertyDef* known = nullptr;
  const AAFRESULT r = meta.add_property(meta.class_of(ClassIndex::MasterMob), property, known);
  if (r < 0) return r;
  return mob.set_data(known->pid, std::vector<std::byte>(6, std::byte{1}));
}

AAFRESULT fill(ObjectFile& file) {
  StoredObject* content = nullptr;
  StoredObject* dictionary = nullptr;
  StoredObject* objects[6] = {};
  const ClassIndex classes[6] = {ClassIndex::MasterMob,      ClassIndex::TimelineMobSlot,
                                 ClassIndex::Sequence,       ClassIndex::SourceClip,
                                 ClassIndex::DataDefinition, ClassIndex::TaggedValue};
  if (const AAFRESULT r = file.content(content); r < 0) return r;
  if (const AAFRESULT r = file.dictionary(dictionary); r < 0) return r;
  for (int i = 0; i < 6; ++i) {
    if (const AAFRESULT r = file.create_object(classes[i], objects[i]); r < 0) return r;
  }
  auto& [mob, slot, sequence, clip, sound, value] = objects;
  aafMobID_t id{};
  id.material.Data1 = 1;
  const aafRational_t rate = {25, 1};
  WeakTarget target;
  const AAFRESULT steps[] = {
      set_value(*mob, pid::Mob_MobID, id),
      set_text(*mob, pid::Mob_Name, u"mob"),
      set_value(*sound, pid::DefinitionObject_Identification, kAAFDataDef_Sound),
      dictionary->insert_keyed(pid::Dictionary_DataDefinitions, StoredKey(kAAFDataDef_Sound),
                               *sound),
      file.target_to(*sound, target),
      clip->set_weak(pid::Component_DataDefinition, target),
      clip->set_data(pid::SourceReference_ChannelIDs, std::vector<std::byte>(8)),
      sequence->append(pid::Sequence_Components, *clip),
      slot->set_object(pid::MobSlot_Segment, *sequence),
      set_value(*slot, pid::TimelineMobSlot_EditRate, rate),
      set_indirect(
          *value, pid::TaggedValue_Value,
          {row_of(TypeIndex::Int32).identifier, std::as_bytes(std::span(&rate.numerator, 1))}),
      mob->append(pid::Mob_UserComments, *value),
      mob->append(pid::Mob_Slots, *slot),
      content->insert_keyed(pid::ContentStorage_Mobs, StoredKey(id), *mob)};
  for (const AAFRESULT r : steps) {
    if (r < 0) return r;
  }
  return add_extension(file, *mob);
}

bool make(const std::filesystem::path& path, bool filled) {
  auto storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> container;
  std::unique_ptr<ObjectFile> file;
  if (CompoundFile::create(storage, FileKind::aaf_512, container) != Result::ok) return false;
  if (ObjectFile::create(std::move(container), file) < 0) return false;
  if (filled && fill(*file) < 0) return false;
  if (file->save() < 0) return false;
  SeedWriter writer(file->container());
  const ByteWriter& out = writer.write();
  std::ofstream stream(path, std::ios::binary);
  for (const std::byte byte : out.bytes())
    stream.put(static_cast<char>(byte));
  return stream.good();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::filesystem::path folder(argv[1]);
  if (make(folder / "empty", false) && make(folder / "mob", true)) return 0;
  std::fputs("cannot make the seeds\n", stderr);
  return 1;
}
