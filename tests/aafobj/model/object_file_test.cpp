#include "aafobj/model/object_file.h"

#include <gtest/gtest.h>

#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/model/stored_values.h"
#include "aafobj/model/tree_walk.h"
#include "tests/aafobj/model/object_trees.h"

namespace aafobj {
namespace {

using testing::MemoryFile;
using testing::new_file;
using testing::open_bytes;
using testing::tree_text;

aafMobID_t mob_id(std::uint32_t number) {
  aafMobID_t id{};
  id.length = 0x13;
  id.material.Data1 = number;
  return id;
}

StoredObject* content_of(ObjectFile& file) {
  StoredObject* content = nullptr;
  EXPECT_EQ(file.content(content), AAFRESULT_SUCCESS);
  return content;
}

StoredObject* made(ObjectFile& file, ClassIndex index) {
  StoredObject* object = nullptr;
  EXPECT_EQ(file.create_object(index, object), AAFRESULT_SUCCESS);
  return object;
}

StoredObject* add_mob(ObjectFile& file, std::uint32_t number, std::u16string_view name) {
  StoredObject* mob = made(file, ClassIndex::MasterMob);
  EXPECT_EQ(set_value(*mob, pid::Mob_MobID, mob_id(number)), AAFRESULT_SUCCESS);
  EXPECT_EQ(set_text(*mob, pid::Mob_Name, name), AAFRESULT_SUCCESS);
  EXPECT_EQ(
      content_of(file)->insert_keyed(pid::ContentStorage_Mobs, StoredKey(mob_id(number)), *mob),
      AAFRESULT_SUCCESS);
  return mob;
}

StoredObject* add_slot(StoredObject& mob, std::uint32_t id) {
  StoredObject* slot = made(mob.file(), ClassIndex::TimelineMobSlot);
  EXPECT_EQ(set_value(*slot, pid::MobSlot_SlotID, id), AAFRESULT_SUCCESS);
  EXPECT_EQ(mob.append(pid::Mob_Slots, *slot), AAFRESULT_SUCCESS);
  return slot;
}

// Saves and closes, and opens what came of it.
std::unique_ptr<ObjectFile> reopened(MemoryFile& made_file, Access access = Access::read) {
  EXPECT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  EXPECT_EQ(made_file.file->close(), AAFRESULT_SUCCESS);
  return open_bytes(made_file.storage->bytes(), access);
}

TEST(ObjectFile, ANewFileHoldsTheWholeBaseline) {
  MemoryFile made_file = new_file();
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  StoredObject* dictionary = nullptr;
  ASSERT_EQ(file->meta_dictionary(dictionary), AAFRESULT_SUCCESS);
  std::size_t count = 0;
  ASSERT_EQ(dictionary->count_elements(pid::MetaDictionary_ClassDefinitions, count), 0);
  EXPECT_EQ(count, 102u);
  ASSERT_EQ(dictionary->count_elements(pid::MetaDictionary_TypeDefinitions, count), 0);
  EXPECT_EQ(count, 154u);
  std::size_t objects = 0;
  std::size_t properties = 0;
  EXPECT_EQ(walk_tree(file->root(),
                      [&](StoredObject& object) {
                        ++objects;
                        if (object.is_kind_of(ClassIndex::PropertyDefinition)) ++properties;
                        return AAFRESULT_SUCCESS;
                      }),
            AAFRESULT_SUCCESS);
  EXPECT_EQ(properties, 321u);
  // Root, MetaDictionary, Header, ContentStorage, Dictionary, and the definitions.
  EXPECT_EQ(objects, 5u + 102u + 154u + 321u);
}

TEST(ObjectFile, EveryRequiredPropertyOfADefinitionIsThere) {
  MemoryFile made_file = new_file();
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(walk_tree(file->root(),
                      [&](StoredObject& object) {
                        for (auto* cls = &object.class_def(); cls; cls = cls->parent) {
                          for (const PropertyDef* p : file->meta_model().own_properties(*cls)) {
                            bool present = false;
                            EXPECT_EQ(object.is_present(p->pid, present), AAFRESULT_SUCCESS);
                            EXPECT_TRUE(present || p->is_optional || p->pid == 0x0101)
                                << p->pid << " of " << to_text(object.class_def().identifier);
                          }
                        }
                        return AAFRESULT_SUCCESS;
                      }),
            AAFRESULT_SUCCESS);
}

TEST(ObjectFile, ATopClassIsItsOwnParent) {
  MemoryFile made_file = new_file();
  StoredObject* dictionary = nullptr;
  ASSERT_EQ(made_file.file->meta_dictionary(dictionary), AAFRESULT_SUCCESS);
  for (const auto& [id, parent] : {std::pair{AUID_AAFObject, AUID_AAFObject},
                                   std::pair{AUID_AAFMetaDictionary, AUID_AAFMetaDictionary},
                                   std::pair{AUID_AAFComponent, AUID_AAFObject}}) {
    StoredObject* definition = nullptr;
    WeakTarget target;
    ASSERT_EQ(
        dictionary->find_element(pid::MetaDictionary_ClassDefinitions, StoredKey(id), definition),
        AAFRESULT_SUCCESS);
    ASSERT_EQ(definition->get_weak(pid::ClassDefinition_ParentClass, target), AAFRESULT_SUCCESS);
    EXPECT_EQ(target.key.auid(), parent);
    StoredObject* found = nullptr;
    ASSERT_EQ(made_file.file->resolve(target, found), AAFRESULT_SUCCESS);
    EXPECT_EQ(found == definition, id == parent);
  }
}

TEST(ObjectFile, ValuesComeBackAsTheyWereSet) {
  MemoryFile made_file = new_file(FileKind::aaf_4k);
  StoredObject* mob = add_mob(*made_file.file, 7, u"Naïve");
  StoredObject* slot = add_slot(*mob, 3);
  const aafRational_t rate = {30000, 1001};
  ASSERT_EQ(set_value(*slot, pid::TimelineMobSlot_EditRate, rate), AAFRESULT_SUCCESS);
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  StoredObject* read = nullptr;
  ASSERT_EQ(content_of(*file)->find_element(pid::ContentStorage_Mobs, StoredKey(mob_id(7)), read),
            AAFRESULT_SUCCESS);
  EXPECT_EQ(read->class_def().identifier, AUID_AAFMasterMob);
  std::u16string name;
  ASSERT_EQ(get_text(*read, pid::Mob_Name, name), AAFRESULT_SUCCESS);
  EXPECT_EQ(name, u"Naïve");
  StoredObject* read_slot = nullptr;
  ASSERT_EQ(read->element_at(pid::Mob_Slots, 0, read_slot), AAFRESULT_SUCCESS);
  aafRational_t read_rate{};
  ASSERT_EQ(get_value(*read_slot, pid::TimelineMobSlot_EditRate, read_rate), AAFRESULT_SUCCESS);
  EXPECT_EQ(read_rate.numerator, 30000);
  EXPECT_EQ(read_rate.denominator, 1001);
  EXPECT_EQ(read_slot->owner(), read);
  EXPECT_EQ(read_slot->owner_pid(), pid::Mob_Slots);
}

TEST(ObjectFile, WhatIsAbsentIsToldApartFromWhatIsWrong) {
  MemoryFile made_file = new_file();
  StoredObject* mob = add_mob(*made_file.file, 1, u"");
  std::u16string text;
  std::span<const std::byte> bytes;
  StoredObject* object = nullptr;
  WeakTarget target;
  Stream stream;
  EXPECT_EQ(get_text(*mob, pid::Mob_UsageCode, text), AAFRESULT_PROP_NOT_PRESENT);
  EXPECT_EQ(mob->get_data(pid::Mob_Slots, bytes), AAFRESULT_BAD_TYPE);
  EXPECT_EQ(mob->get_object(pid::Mob_Name, object), AAFRESULT_BAD_TYPE);
  EXPECT_EQ(mob->get_weak(pid::Mob_Name, target), AAFRESULT_BAD_TYPE);
  EXPECT_EQ(mob->open_stream(pid::Mob_Name, stream), AAFRESULT_BAD_TYPE);
  EXPECT_EQ(mob->element_at(pid::Mob_Slots, 0, object), AAFRESULT_BADINDEX);
  EXPECT_EQ(mob->set_data(pid::Sequence_Components, stored_text(u"x")), AAFRESULT_BAD_PROP);
  EXPECT_EQ(mob->set_data(pid::Mob_Name, {}), AAFRESULT_BAD_SIZE);
  EXPECT_EQ(mob->set_data(pid::Mob_Name, std::vector<std::byte>(65536)), AAFRESULT_BAD_SIZE);
  EXPECT_EQ(mob->set_data(pid::Mob_Name, std::vector<std::byte>(65535)), AAFRESULT_SUCCESS);
  EXPECT_EQ(mob->remove(pid::Mob_UsageCode), AAFRESULT_PROP_NOT_PRESENT);
  EXPECT_EQ(made_file.file->create_object(ClassIndex::Mob, object), AAFRESULT_ABSTRACT_CLASS);
  EXPECT_EQ(made_file.file->create_object(kAAFDataDef_Sound, object), AAFRESULT_CLASS_NOT_FOUND);
  aafUID_t wrong_size{};
  EXPECT_EQ(get_value(*mob, pid::Mob_MobID, wrong_size), AAFRESULT_BAD_SIZE);
}

TEST(ObjectFile, AnObjectIsInOneOtherObjectOnly) {
  MemoryFile made_file = new_file();
  MemoryFile other_file = new_file();
  StoredObject* mob = add_mob(*made_file.file, 1, u"a");
  StoredObject* slot = add_slot(*mob, 1);
  StoredObject* second = add_mob(*made_file.file, 2, u"b");
  EXPECT_EQ(second->append(pid::Mob_Slots, *slot), AAFRESULT_OBJECT_ALREADY_ATTACHED);
  EXPECT_EQ(second->append(pid::Mob_Slots, made_file.file->root()),
            AAFRESULT_OBJECT_ALREADY_ATTACHED);
  EXPECT_EQ(second->append(pid::Mob_Slots, *made(*other_file.file, ClassIndex::StaticMobSlot)),
            AAFRESULT_INVALID_OBJ);
  StoredObject* sequence = made(*made_file.file, ClassIndex::Sequence);
  EXPECT_EQ(sequence->append(pid::Sequence_Components, *sequence), AAFRESULT_INVALID_OBJ);
  StoredObject* inner = made(*made_file.file, ClassIndex::Sequence);
  ASSERT_EQ(sequence->append(pid::Sequence_Components, *inner), AAFRESULT_SUCCESS);
  EXPECT_EQ(inner->append(pid::Sequence_Components, *sequence), AAFRESULT_INVALID_OBJ);
  EXPECT_EQ(content_of(*made_file.file)
                ->insert_keyed(pid::ContentStorage_Mobs, StoredKey(mob_id(2)),
                               *made(*made_file.file, ClassIndex::MasterMob)),
            AAFRESULT_PROPERTY_DUPLICATE);
  EXPECT_EQ(content_of(*made_file.file)
                ->insert_keyed(pid::ContentStorage_Mobs, StoredKey(kAAFDataDef_Sound),
                               *made(*made_file.file, ClassIndex::MasterMob)),
            AAFRESULT_BAD_SIZE);
}

TEST(ObjectFile, SetsAreInTheOrderOfTheirStoredBytes) {
  MemoryFile made_file = new_file();
  // As bytes 00 01 00 00 comes before 01 00 00 00, though 256 is more than 1.
  for (const std::uint32_t number : {1u, 256u, 2u, 0x01000000u}) {
    add_mob(*made_file.file, number, u"m");
  }
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  std::vector<std::uint32_t> order;
  StoredKey key;
  StoredObject* mob = nullptr;
  for (bool first = true;
       content_of(*file)->next_element(pid::ContentStorage_Mobs, key, first, mob) >= 0 && mob;
       first = false) {
    order.push_back(key.mob_id().material.Data1);
  }
  EXPECT_EQ(order, (std::vector<std::uint32_t>{0x01000000u, 256u, 1u, 2u}));
}

TEST(ObjectFile, VectorsKeepTheirOrderThroughInsertionAndRemoval) {
  MemoryFile made_file = new_file();
  StoredObject* mob = add_mob(*made_file.file, 1, u"m");
  for (std::uint32_t id = 1; id <= 4; ++id)
    add_slot(*mob, id);
  ASSERT_EQ(mob->remove_at(pid::Mob_Slots, 1), AAFRESULT_SUCCESS);
  StoredObject* head = made(*made_file.file, ClassIndex::StaticMobSlot);
  ASSERT_EQ(set_value(*head, pid::MobSlot_SlotID, std::uint32_t{9}), AAFRESULT_SUCCESS);
  ASSERT_EQ(mob->insert_at(pid::Mob_Slots, 0, *head), AAFRESULT_SUCCESS);
  EXPECT_EQ(mob->insert_at(pid::Mob_Slots, 9, *made(*made_file.file, ClassIndex::StaticMobSlot)),
            AAFRESULT_BADINDEX);
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  StoredObject* read = nullptr;
  ASSERT_EQ(content_of(*file)->find_element(pid::ContentStorage_Mobs, StoredKey(mob_id(1)), read),
            AAFRESULT_SUCCESS);
  std::vector<StoredObject*> slots;
  ASSERT_EQ(read->contained_objects(pid::Mob_Slots, slots), AAFRESULT_SUCCESS);
  std::vector<std::uint32_t> ids;
  for (StoredObject* slot : slots) {
    EXPECT_EQ(get_value(*slot, pid::MobSlot_SlotID, ids.emplace_back()), AAFRESULT_SUCCESS);
  }
  EXPECT_EQ(ids, (std::vector<std::uint32_t>{9, 1, 3, 4}));
}

TEST(ObjectFile, WeakReferencesLeadToTheirTargets) {
  MemoryFile made_file = new_file();
  ObjectFile& file = *made_file.file;
  StoredObject* dictionary = nullptr;
  ASSERT_EQ(file.dictionary(dictionary), AAFRESULT_SUCCESS);
  StoredObject* sound = made(file, ClassIndex::DataDefinition);
  ASSERT_EQ(set_value(*sound, pid::DefinitionObject_Identification, kAAFDataDef_Sound), 0);
  ASSERT_EQ(set_text(*sound, pid::DefinitionObject_Name, u"Sound"), AAFRESULT_SUCCESS);
  WeakTarget target;
  EXPECT_EQ(file.target_to(*sound, target), AAFRESULT_OBJECT_NOT_ATTACHED);
  ASSERT_EQ(dictionary->insert_keyed(pid::Dictionary_DataDefinitions, StoredKey(kAAFDataDef_Sound),
                                     *sound),
            AAFRESULT_SUCCESS);
  ASSERT_EQ(file.target_to(*sound, target), AAFRESULT_SUCCESS);
  EXPECT_EQ(target.key_pid, 0x1b01);
  StoredObject* slot = add_slot(*add_mob(file, 1, u"m"), 1);
  StoredObject* filler = made(file, ClassIndex::Filler);
  ASSERT_EQ(filler->set_weak(pid::Component_DataDefinition, target), AAFRESULT_SUCCESS);
  ASSERT_EQ(slot->set_object(pid::MobSlot_Segment, *filler), AAFRESULT_SUCCESS);

  const auto read = reopened(made_file);
  ASSERT_NE(read, nullptr);
  StoredObject* mob = nullptr;
  StoredObject* found = nullptr;
  ASSERT_EQ(content_of(*read)->find_element(pid::ContentStorage_Mobs, StoredKey(mob_id(1)), mob),
            AAFRESULT_SUCCESS);
  ASSERT_EQ(mob->element_at(pid::Mob_Slots, 0, slot), AAFRESULT_SUCCESS);
  ASSERT_EQ(slot->get_object(pid::MobSlot_Segment, filler), AAFRESULT_SUCCESS);
  ASSERT_EQ(filler->get_weak(pid::Component_DataDefinition, target), AAFRESULT_SUCCESS);
  ASSERT_EQ(read->resolve(target, found), AAFRESULT_SUCCESS);
  std::u16string name;
  ASSERT_EQ(get_text(*found, pid::DefinitionObject_Name, name), AAFRESULT_SUCCESS);
  EXPECT_EQ(name, u"Sound");
  target.key = StoredKey(kAAFDataDef_Picture);
  EXPECT_EQ(read->resolve(target, found), AAFRESULT_OBJECT_NOT_FOUND);
  target.tag = 999;
  EXPECT_EQ(read->resolve(target, found), AAFRESULT_OBJECT_NOT_FOUND);
}

StoredObject* add_essence(ObjectFile& file, std::uint32_t number, std::size_t size) {
  StoredObject* essence = made(file, ClassIndex::EssenceData);
  EXPECT_EQ(set_value(*essence, pid::EssenceData_MobID, mob_id(number)), AAFRESULT_SUCCESS);
  Stream stream;
  EXPECT_EQ(essence->create_stream(pid::EssenceData_Data, stream), AAFRESULT_OBJECT_NOT_ATTACHED);
  EXPECT_EQ(content_of(file)->insert_keyed(pid::ContentStorage_EssenceData,
                                           StoredKey(mob_id(number)), *essence),
            AAFRESULT_SUCCESS);
  EXPECT_EQ(essence->create_stream(pid::EssenceData_Data, stream), AAFRESULT_SUCCESS);
  std::vector<std::byte> bytes(size);
  for (std::size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<std::byte>(i * 7 + number);
  EXPECT_EQ(stream.write(bytes), Result::ok);
  return essence;
}

TEST(ObjectFile, EssenceStandsInStreams) {
  MemoryFile made_file = new_file();
  add_essence(*made_file.file, 1, 5000);
  add_essence(*made_file.file, 2, 12);
  const std::string before = tree_text(made_file.file->root());
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(tree_text(file->root()), before);
  StoredObject* essence = nullptr;
  ASSERT_EQ(content_of(*file)->find_element(pid::ContentStorage_EssenceData, StoredKey(mob_id(2)),
                                            essence),
            AAFRESULT_SUCCESS);
  Stream stream;
  ASSERT_EQ(essence->open_stream(pid::EssenceData_Data, stream), AAFRESULT_SUCCESS);
  EXPECT_EQ(stream.size(), 12u);
  EXPECT_EQ(essence->open_stream(pid::EssenceData_SampleIndex, stream), AAFRESULT_PROP_NOT_PRESENT);
}

TEST(ObjectFile, ChangesOfAStoredFileAreSavedInPlace) {
  MemoryFile made_file = new_file();
  for (std::uint32_t i = 1; i <= 3; ++i)
    add_slot(*add_mob(*made_file.file, i, u"before"), i);
  add_essence(*made_file.file, 1, 9000);
  auto file = reopened(made_file, Access::modify);
  ASSERT_NE(file, nullptr);
  StoredObject* mob = nullptr;
  ASSERT_EQ(content_of(*file)->find_element(pid::ContentStorage_Mobs, StoredKey(mob_id(2)), mob),
            AAFRESULT_SUCCESS);
  ASSERT_EQ(set_text(*mob, pid::Mob_Name, u"after, and longer"), AAFRESULT_SUCCESS);
  ASSERT_EQ(mob->remove_at(pid::Mob_Slots, 0), AAFRESULT_SUCCESS);
  add_slot(*mob, 77);
  ASSERT_EQ(content_of(*file)->remove_keyed(pid::ContentStorage_Mobs, StoredKey(mob_id(3))),
            AAFRESULT_SUCCESS);
  add_mob(*file, 4, u"new");
  EXPECT_TRUE(file->has_unsaved_changes());
  ASSERT_EQ(file->save(), AAFRESULT_SUCCESS);
  const std::string text = tree_text(file->root());
  EXPECT_EQ(file->container().verify(), Result::ok);
  ASSERT_EQ(file->close(), AAFRESULT_SUCCESS);
  EXPECT_NE(text.find("61006600740065007200"), std::string::npos);  // "after"
}

TEST(ObjectFile, AnObjectThatWasLetGoTakesItsStreamsAlong) {
  MemoryFile made_file = new_file();
  add_essence(*made_file.file, 1, 9000);
  auto storage = std::make_shared<MemoryStorage>();
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  StoredObject* content = content_of(*made_file.file);
  StoredObject* essence = nullptr;
  ASSERT_EQ(content->find_element(pid::ContentStorage_EssenceData, StoredKey(mob_id(1)), essence),
            AAFRESULT_SUCCESS);
  const std::string before = tree_text(*essence);
  ASSERT_EQ(content->remove_keyed(pid::ContentStorage_EssenceData, StoredKey(mob_id(1))), 0);
  EXPECT_FALSE(essence->is_attached());
  EXPECT_EQ(tree_text(*essence), before);
  ASSERT_EQ(content->insert_keyed(pid::ContentStorage_EssenceData, StoredKey(mob_id(5)), *essence),
            AAFRESULT_SUCCESS);
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  ASSERT_EQ(content_of(*file)->find_element(pid::ContentStorage_EssenceData, StoredKey(mob_id(5)),
                                            essence),
            AAFRESULT_SUCCESS);
  EXPECT_EQ(tree_text(*essence), before);
}

TEST(ObjectFile, ReplacingAnObjectRemovesTheFormerOne) {
  MemoryFile made_file = new_file();
  StoredObject* slot = add_slot(*add_mob(*made_file.file, 1, u"m"), 1);
  ASSERT_EQ(slot->set_object(pid::MobSlot_Segment, *made(*made_file.file, ClassIndex::Sequence)),
            AAFRESULT_SUCCESS);
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  StoredObject* former = nullptr;
  ASSERT_EQ(slot->get_object(pid::MobSlot_Segment, former), AAFRESULT_SUCCESS);
  ASSERT_EQ(slot->set_object(pid::MobSlot_Segment, *made(*made_file.file, ClassIndex::Filler)),
            AAFRESULT_SUCCESS);
  EXPECT_EQ(former->owner(), nullptr);
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  const std::string text = tree_text(made_file.file->root());
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(tree_text(file->root()), text);
  std::vector<Element> elements;
  EXPECT_EQ(file->container().children(k_root_storage, elements), Result::ok);
  EXPECT_EQ(elements.size(), 4u);  // two objects, their properties, the table of paths
}

TEST(ObjectFile, WithoutSavingTheFileStaysAsItWas) {
  MemoryFile made_file = new_file();
  add_mob(*made_file.file, 1, u"before");
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  const std::string before = tree_text(made_file.file->root());
  ASSERT_EQ(made_file.file->close(), AAFRESULT_SUCCESS);
  auto storage = std::make_shared<MemoryStorage>(made_file.storage->bytes());
  std::unique_ptr<CompoundFile> container;
  ASSERT_EQ(CompoundFile::open(storage, Access::modify, container), Result::ok);
  std::unique_ptr<ObjectFile> file;
  ASSERT_EQ(ObjectFile::open(std::move(container), file), AAFRESULT_SUCCESS);
  add_mob(*file, 2, u"lost");
  ASSERT_EQ(content_of(*file)->remove_keyed(pid::ContentStorage_Mobs, StoredKey(mob_id(1))), 0);
  file.reset();
  const auto again = open_bytes(storage->bytes());
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(tree_text(again->root()), before);
}

TEST(ObjectFile, ClosingWithoutSavingKeepsTheFormerTree) {
  MemoryFile made_file = new_file();
  add_slot(*add_mob(*made_file.file, 1, u"before"), 1);
  add_essence(*made_file.file, 1, 9000);
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  const std::string before = tree_text(made_file.file->root());
  StoredObject* content = content_of(*made_file.file);
  ASSERT_EQ(content->remove_keyed(pid::ContentStorage_Mobs, StoredKey(mob_id(1))), 0);
  ASSERT_EQ(content->remove(pid::ContentStorage_EssenceData), AAFRESULT_SUCCESS);
  add_mob(*made_file.file, 2, u"lost");
  ASSERT_EQ(made_file.file->close(), AAFRESULT_SUCCESS);
  const auto file = open_bytes(made_file.storage->bytes());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(tree_text(file->root()), before);
}

TEST(ObjectFile, AStreamThatWasRemovedComesBackEmpty) {
  MemoryFile made_file = new_file();
  StoredObject* essence = add_essence(*made_file.file, 1, 9000);
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  ASSERT_EQ(essence->remove(pid::EssenceData_Data), AAFRESULT_SUCCESS);
  Stream stream;
  EXPECT_EQ(essence->open_stream(pid::EssenceData_Data, stream), AAFRESULT_PROP_NOT_PRESENT);
  ASSERT_EQ(essence->create_stream(pid::EssenceData_Data, stream), AAFRESULT_SUCCESS);
  EXPECT_EQ(stream.size(), 0u);
  const std::vector<std::byte> bytes(3, std::byte{1});
  ASSERT_EQ(stream.write(bytes), Result::ok);
  const std::string text = tree_text(made_file.file->root());
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(tree_text(file->root()), text);
}

TEST(ObjectFile, StreamsGoWithASaveOutsideOfTheTree) {
  MemoryFile made_file = new_file();
  StoredObject* essence = add_essence(*made_file.file, 1, 9000);
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  StoredObject* content = content_of(*made_file.file);
  ASSERT_EQ(content->remove(pid::ContentStorage_EssenceData), AAFRESULT_SUCCESS);
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  ASSERT_EQ(content->insert_keyed(pid::ContentStorage_EssenceData, StoredKey(mob_id(1)), *essence),
            AAFRESULT_SUCCESS);
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  ASSERT_EQ(content_of(*file)->find_element(pid::ContentStorage_EssenceData, StoredKey(mob_id(1)),
                                            essence),
            AAFRESULT_SUCCESS);
  Stream stream;
  EXPECT_EQ(essence->open_stream(pid::EssenceData_Data, stream), AAFRESULT_PROP_NOT_PRESENT);
}

TEST(ObjectFile, AFileOpenedForReadingTakesNoChange) {
  MemoryFile made_file = new_file();
  add_mob(*made_file.file, 1, u"m");
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  StoredObject* content = content_of(*file);
  StoredObject* object = nullptr;
  EXPECT_EQ(file->create_object(ClassIndex::MasterMob, object), AAFRESULT_NOT_WRITEABLE);
  EXPECT_EQ(content->remove(pid::ContentStorage_Mobs), AAFRESULT_NOT_WRITEABLE);
  EXPECT_EQ(content->remove_keyed(pid::ContentStorage_Mobs, StoredKey(mob_id(1))),
            AAFRESULT_NOT_WRITEABLE);
  EXPECT_EQ(file->save(), AAFRESULT_NOT_WRITEABLE);
}

TEST(ObjectFile, AfterClosingWhatWasReadCanStillBeHad) {
  MemoryFile made_file = new_file();
  add_mob(*made_file.file, 1, u"m");
  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  StoredObject* content = content_of(*file);
  std::size_t count = 0;
  ASSERT_EQ(content->count_elements(pid::ContentStorage_Mobs, count), AAFRESULT_SUCCESS);
  ASSERT_EQ(file->close(), AAFRESULT_SUCCESS);
  EXPECT_EQ(file->close(), AAFRESULT_NOT_OPEN);
  EXPECT_EQ(content->count_elements(pid::ContentStorage_Mobs, count), AAFRESULT_SUCCESS);
  EXPECT_EQ(count, 1u);
  StoredObject* mob = nullptr;
  EXPECT_EQ(content->find_element(pid::ContentStorage_Mobs, StoredKey(mob_id(1)), mob),
            AAFRESULT_NOT_OPEN);
}

TEST(ObjectFile, AFileClosedBeforeItWasSavedHoldsNoObjects) {
  auto storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> container;
  ASSERT_EQ(CompoundFile::create(storage, FileKind::aaf_512, container), Result::ok);
  ASSERT_EQ(container->close(), Result::ok);
  std::unique_ptr<ObjectFile> file;
  ASSERT_EQ(CompoundFile::open(storage, Access::read, container), Result::ok);
  EXPECT_EQ(ObjectFile::open(std::move(container), file), AAFRESULT_BADCONTAINER);
}

// An extension: a class, a property on it and one on a class of the baseline, with a type.
TEST(ObjectFile, ExtensionsAreDefinedInTheFileThatUsesThem) {
  MemoryFile made_file = new_file();
  MetaModel& meta = made_file.file->meta_model();
  const aafUID_t class_id = {0x11111111, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  const aafUID_t property_id = {0x22222222, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  const aafUID_t mob_property_id = {0x33333333, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  const aafUID_t type_id = {0x44444444, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
  TypeDef type;
  type.name = u"ThreeNumbers";
  type.identifier = type_id;
  type.kind = TypeKind::fixed_array;
  type.element = &meta.type_of(TypeIndex::Int16);
  type.element_count = 3;
  type.size_bytes = 6;
  const TypeDef* added_type = nullptr;
  ASSERT_EQ(meta.add_type(type, added_type), AAFRESULT_SUCCESS);
  ClassDef cls;
  cls.name = u"Special Clip";
  cls.identifier = class_id;
  cls.parent = &meta.class_of(ClassIndex::SourceClip);
  const ClassDef* added_class = nullptr;
  ASSERT_EQ(meta.add_class(cls, added_class), AAFRESULT_SUCCESS);
  PropertyDef property;
  property.name = u"Numbers";
  property.identifier = property_id;
  property.type = type_id;
  const PropertyDef* numbers = nullptr;
  ASSERT_EQ(meta.add_property(*added_class, property, numbers), AAFRESULT_SUCCESS);
  EXPECT_EQ(meta.add_property(*added_class, property, numbers), AAFRESULT_PROPERTY_DUPLICATE);
  PropertyDef inner;
  inner.name = u"A property with quite a long name";
  inner.identifier = mob_property_id;
  inner.type = row_of(TypeIndex::StrongReferenceVector_Segment).identifier;
  const PropertyDef* segments = nullptr;
  ASSERT_EQ(meta.add_property(meta.class_of(ClassIndex::Mob), inner, segments), AAFRESULT_SUCCESS);
  // Ten numbers from the top went to the properties of MPEG video.
  EXPECT_EQ(numbers->pid, 0xffff - 10);
  EXPECT_EQ(segments->pid, 0xffff - 11);

  StoredObject* mob = add_mob(*made_file.file, 1, u"m");
  StoredObject* clip = nullptr;
  ASSERT_EQ(made_file.file->create_object(class_id, clip), AAFRESULT_SUCCESS);
  ASSERT_EQ(clip->set_data(numbers->pid, std::vector<std::byte>(6, std::byte{9})), 0);
  ASSERT_EQ(mob->append(segments->pid, *clip), AAFRESULT_SUCCESS);
  const std::uint16_t numbers_pid = numbers->pid;
  const std::uint16_t segments_pid = segments->pid;

  const auto file = reopened(made_file);
  ASSERT_NE(file, nullptr);
  ASSERT_EQ(content_of(*file)->find_element(pid::ContentStorage_Mobs, StoredKey(mob_id(1)), mob),
            AAFRESULT_SUCCESS);
  const PropertyDef* read = file->meta_model().find_property(mob->class_def(), mob_property_id);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->pid, segments_pid);
  EXPECT_EQ(read->form, StoredForm::strong_vector);
  ASSERT_EQ(mob->element_at(read->pid, 0, clip), AAFRESULT_SUCCESS);
  EXPECT_EQ(clip->class_def().name, u"Special Clip");
  EXPECT_EQ(clip->class_def().baseline, ClassIndex::none);
  EXPECT_TRUE(clip->is_kind_of(ClassIndex::SourceClip));
  EXPECT_TRUE(clip->is_kind_of(ClassIndex::Component));
  const PropertyDef* read_numbers =
      file->meta_model().find_property(clip->class_def(), numbers_pid);
  ASSERT_NE(read_numbers, nullptr);
  EXPECT_EQ(read_numbers->identifier, property_id);
  const TypeDef* read_type = file->meta_model().find_type(read_numbers->type);
  ASSERT_NE(read_type, nullptr);
  EXPECT_EQ(read_type->kind, TypeKind::fixed_array);
  EXPECT_EQ(read_type->size_bytes, 6u);
  EXPECT_EQ(read_type->name, u"ThreeNumbers");
}

TEST(ObjectFile, ACopyHoldsTheSameTree) {
  MemoryFile made_file = new_file();
  testing::RandomTree random(*made_file.file, 5);
  add_essence(*made_file.file, 1, 9000);
  for (std::uint32_t i = 1; i <= 5; ++i) {
    StoredObject* mob = random.make(ClassIndex::CompositionMob, 4);
    ASSERT_EQ(content_of(*made_file.file)
                  ->insert_keyed(pid::ContentStorage_Mobs, StoredKey(mob_id(i)), *mob),
              AAFRESULT_SUCCESS);
  }
  auto storage = std::make_shared<MemoryStorage>();
  std::unique_ptr<CompoundFile> copy;
  ASSERT_EQ(CompoundFile::create(storage, FileKind::aaf_4k, copy), Result::ok);
  // Some objects are stored by now, others in memory only.
  ASSERT_EQ(made_file.file->save(), AAFRESULT_SUCCESS);
  add_mob(*made_file.file, 100, u"unsaved");
  ASSERT_EQ(made_file.file->save_copy(*copy), AAFRESULT_SUCCESS);
  ASSERT_EQ(copy->close(), Result::ok);
  const auto file = open_bytes(storage->bytes());
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(tree_text(file->root()), tree_text(made_file.file->root()));
}

}  // namespace
}  // namespace aafobj
