#include "aafobj/dump/tree_dump.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/model/index_stream.h"
#include "tests/aafobj/dump/recording_sink.h"
#include "tests/aafobj/model/hand_made_file.h"
#include "tests/support/aaf_samples.h"

namespace aafobj {
namespace {

using testing::Bytes;
using testing::bytes_of;
using testing::HandMadeFile;
using ::testing::HasSubstr;
using testing::MemoryFile;
using testing::new_file;
using testing::open_bytes;
using testing::RandomTree;
using testing::RecordingSink;

std::string told(StoredObject& top) {
  RecordingSink sink;
  dump_tree(top, sink);
  return sink.lines;
}

std::string told_header(ObjectFile& file) {
  StoredObject* header = nullptr;
  EXPECT_EQ(file.header(header), AAFRESULT_SUCCESS);
  return told(*header);
}

template <typename Index>
Bytes index_bytes(const Index& index) {
  return write_index(index, ByteOrder::little);
}

TEST(TreeDump, UnknownClassesAndPropertiesAreShownByNumber) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  made.put_properties(header, ByteOrder::little,
                      {{0x3b01, StoredForm::data, bytes_of({0x49, 0x49})},
                       {0x7123, StoredForm::data, bytes_of({1, 2})},
                       {0xc001, static_cast<StoredForm>(0x777), bytes_of({4})},
                       {0xc002, StoredForm::data, Bytes(70, std::byte{7})},
                       {0xc003, StoredForm::strong_reference, stored_text(u"Odd-c003")},
                       {0xc004, StoredForm::strong_vector, stored_text(u"Odds-c004")},
                       {0xc005, StoredForm::data_stream, bytes_of({0x55, 'x', 0, 0, 0})}});
  made.put(header, u"x", Bytes(5000));
  const StorageId odd = made.add(header, u"Odd-c003", {0x12345678, 1, 1, {}});
  made.put_properties(odd, ByteOrder::little, {{0x8001, StoredForm::data, bytes_of({9})}});
  made.put(header, u"Odds-c004 index", index_bytes(VectorIndex{1, no_last_free_key, {0}}));
  made.put_properties(made.add(header, u"Odds-c004{0}", AUID_AAFFiller), ByteOrder::little, {});
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  std::string sevens;
  for (int i = 0; i < 64; ++i)
    sevens += "07";
  EXPECT_EQ(told_header(*file),
            "object Header\n"
            "  .ByteOrder\n  number 18761\n"
            "  #28963\n  bytes 2 0102\n"
            "  #49153\n  bytes 1 04\n"
            "  #49154\n  bytes 70 " +
                sevens +
                "\n"
                "  #49155\n  object {12345678-0001-0001-0000-000000000000}?\n"
                "    #32769\n    bytes 1 09\n"
                "  #49156\n  list 1\n    object Filler\n"
                "  #49157\n  stream 5000\n");
}

// What the file itself says of an extension.
TEST(TreeDump, DefinitionsOfTheFileGiveNames) {
  MemoryFile made = new_file();
  StoredObject* header = nullptr;
  ASSERT_EQ(made.file->header(header), AAFRESULT_SUCCESS);
  MetaModel& meta = made.file->meta_model();
  PropertyDef property;
  property.name = u"Düsseldorf";
  property.identifier = {0x45, 0, 0, {1}};
  property.type = row_of(TypeIndex::StringArray).identifier;
  const PropertyDef* added = nullptr;
  ASSERT_EQ(meta.add_property(meta.class_of(ClassIndex::Header), property, added), 0);
  ASSERT_EQ(header->set_data(added->pid, bytes_of({'a', 0, 0, 0, 'b', 0, 0, 0})), 0);
  ASSERT_EQ(made.file->save(), AAFRESULT_SUCCESS);
  ASSERT_EQ(made.file->close(), AAFRESULT_SUCCESS);
  const auto file = open_bytes(made.storage->bytes());
  ASSERT_NE(file, nullptr);
  EXPECT_THAT(told_header(*file), HasSubstr("\n  .Düsseldorf\n  list 2\n    text a\n    text b\n"));
}

TEST(TreeDump, PropertiesThatCannotBeReadAreToldOnce) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  made.put_properties(header, ByteOrder::little,
                      {{0x3b03, StoredForm::strong_reference, stored_text(u"Content-3b03")},
                       {0x3b04, StoredForm::strong_reference, stored_text(u"Missing-3b04")},
                       {0x3b06, StoredForm::strong_vector, stored_text(u"Missing-3b06")},
                       {0x3b07, StoredForm::data, bytes_of({1, 0, 0})}});
  made.put(made.add(header, u"Content-3b03", AUID_AAFContentStorage), u"properties",
           bytes_of({0x4c, 0x20, 9, 9}));
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(told_header(*file),
            "object Header\n"
            "  .Content\n  object ContentStorage\n"
            "    .(properties)\n    FAULT the structure of the file is damaged here\n"
            "  .Dictionary\n  FAULT the structure of the file is damaged here\n"
            "  .IdentificationList\n  FAULT the structure of the file is damaged here\n"
            "  .ObjectModelVersion\n  FAULT no value of aafUInt32: 010000\n");
}

TEST(TreeDump, OneBrokenElementDoesNotHideTheOthers) {
  HandMadeFile made;
  const StorageId header = made.put_top();
  made.put_properties(header, ByteOrder::little,
                      {{0x3b03, StoredForm::strong_reference, stored_text(u"Content-3b03")},
                       {0x3b06, StoredForm::strong_vector, stored_text(u"Ids-3b06")}});
  made.put(header, u"Ids-3b06 index", index_bytes(VectorIndex{9, no_last_free_key, {4, 1, 4, 0}}));
  for (const std::u16string_view name : {u"Ids-3b06{0}", u"Ids-3b06{4}"})
    made.put_properties(made.add(header, name, AUID_AAFIdentification), ByteOrder::little, {});
  const StorageId content = made.add(header, u"Content-3b03", AUID_AAFContentStorage);
  made.put_properties(content, ByteOrder::little,
                      {{0x1901, StoredForm::strong_set, stored_text(u"Mobs-1901")}});
  SetIndex mobs;
  mobs.key_pid = 0x4401;
  mobs.key_bytes = 1;
  for (std::uint32_t i = 0; i < 4; ++i) {
    // The third has the key of the second, the first has no storage.
    const Bytes key = bytes_of({static_cast<int>(i == 2 ? 1 : i)});
    mobs.entries.push_back({i, 1, StoredKey(key)});
  }
  made.put(content, u"Mobs-1901 index", index_bytes(mobs));
  for (const std::u16string_view name : {u"Mobs-1901{1}", u"Mobs-1901{2}", u"Mobs-1901{3}"})
    made.put_properties(made.add(content, name, AUID_AAFMasterMob), ByteOrder::little, {});
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(told_header(*file),
            "object Header\n"
            "  .Content\n  object ContentStorage\n"
            "    .Mobs\n    list 4\n"
            "      FAULT the structure of the file is damaged here: 00\n"
            "      object MasterMob\n"
            "      FAULT the key stands twice: 01\n"
            "      object MasterMob\n"
            "  .IdentificationList\n  list 4\n"
            "    object Identification\n"
            "    FAULT the structure of the file is damaged here\n"
            "    FAULT the structure of the file is damaged here\n"
            "    object Identification\n");
}

TEST(TreeDump, ReferencesAreToldByTheirTarget) {
  MemoryFile made = new_file();
  StoredObject* dictionary = nullptr;
  StoredObject* sound = nullptr;
  StoredObject* filler = nullptr;
  StoredObject* header = nullptr;
  ObjectFile& file = *made.file;
  ASSERT_EQ(file.dictionary(dictionary), AAFRESULT_SUCCESS);
  ASSERT_EQ(file.header(header), AAFRESULT_SUCCESS);
  ASSERT_EQ(file.create_object(ClassIndex::DataDefinition, sound), AAFRESULT_SUCCESS);
  ASSERT_EQ(file.create_object(ClassIndex::Filler, filler), AAFRESULT_SUCCESS);
  ASSERT_EQ(set_text(*sound, pid::DefinitionObject_Name, u"Ton"), AAFRESULT_SUCCESS);
  ASSERT_EQ(set_value(*sound, pid::DefinitionObject_Identification, kAAFDataDef_Sound), 0);
  ASSERT_EQ(dictionary->insert_keyed(pid::Dictionary_DataDefinitions, StoredKey(kAAFDataDef_Sound),
                                     *sound),
            AAFRESULT_SUCCESS);
  WeakTarget target;
  ASSERT_EQ(file.target_to(*sound, target), AAFRESULT_SUCCESS);
  ASSERT_EQ(filler->set_weak(pid::Component_DataDefinition, target), AAFRESULT_SUCCESS);
  EXPECT_EQ(told(*filler),
            "object Filler\n  .DataDefinition\n"
            "  -> Ton {01030202-0200-0000-060e-2b3404010101}\n");
  // One that is not there is no fault; a class or type of the published model has its name.
  target.key = StoredKey(kAAFDataDef_Picture);
  ASSERT_EQ(filler->set_weak(pid::Component_DataDefinition, target), AAFRESULT_SUCCESS);
  EXPECT_EQ(told(*filler),
            "object Filler\n  .DataDefinition\n"
            "  -> {01030202-0100-0000-060e-2b3404010101} (not in the file)\n");
  target.key = StoredKey(AUID_AAFMasterMob);
  ASSERT_EQ(filler->set_weak(pid::Component_DataDefinition, target), AAFRESULT_SUCCESS);
  EXPECT_THAT(told(*filler), HasSubstr("-> MasterMob {0d010101-0101-3600-060e-2b3402060101} (not"));
}

TEST(TreeDump, TreesThatAreTooDeepAreCut) {
  HandMadeFile made;
  StorageId at = made.put_top();
  for (int depth = 0; depth < 300; ++depth) {
    made.put_properties(at, ByteOrder::little,
                        {{0x3b03, StoredForm::strong_reference, stored_text(u"x")}});
    at = made.add(at, u"x", AUID_AAFHeader);
  }
  made.put_properties(at, ByteOrder::little, {});
  const auto file = made.open();
  ASSERT_NE(file, nullptr);
  StoredObject* header = nullptr;
  RecordingSink sink;
  ASSERT_EQ(file->header(header), AAFRESULT_SUCCESS);
  dump_tree(*header, sink);
  EXPECT_EQ(sink.faults, 1);
  EXPECT_THAT(sink.lines, HasSubstr("FAULT the tree is too deep\n"));
}

class TreeDumpOfRandomTrees : public ::testing::TestWithParam<unsigned> {};

// Whole files have no fault, damaged ones an answer; the sink holds the order of calls.
TEST_P(TreeDumpOfRandomTrees, TellsThemWholeAndDamaged) {
  MemoryFile made = new_file();
  RandomTree random(*made.file, GetParam());
  StoredObject* content = nullptr;
  ASSERT_EQ(made.file->content(content), AAFRESULT_SUCCESS);
  for (std::uint32_t i = 1; i <= 4; ++i) {
    aafMobID_t id{};
    id.material.Data1 = i;
    ASSERT_EQ(content->insert_keyed(pid::ContentStorage_Mobs, StoredKey(id),
                                    *random.make(random.random_class(ClassIndex::Mob), 5)),
              AAFRESULT_SUCCESS);
  }
  ASSERT_EQ(made.file->save(), AAFRESULT_SUCCESS);
  const std::string whole = told(made.file->root());
  ASSERT_EQ(made.file->close(), AAFRESULT_SUCCESS);
  const auto read = open_bytes(made.storage->bytes());
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(told(read->root()), whole);
  int faults = 0;
  for (int trial = 0; trial < 20; ++trial) {
    std::vector<std::byte> bytes = made.storage->bytes();
    for (std::size_t i = 1 + random.below(30); i > 0; --i)
      bytes[512 + random.below(bytes.size() - 512)] = static_cast<std::byte>(random.below(256));
    std::unique_ptr<CompoundFile> container;
    std::unique_ptr<ObjectFile> file;
    const auto storage = std::make_shared<MemoryStorage>(std::move(bytes));
    if (CompoundFile::open(storage, Access::read, container) != Result::ok) continue;
    if (ObjectFile::open(std::move(container), file) < 0) continue;
    RecordingSink sink;
    dump_tree(file->root(), sink);
    faults += sink.faults;
  }
  EXPECT_GT(faults, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, TreeDumpOfRandomTrees, ::testing::Range(1u, 5u));

TEST(TreeDumpOfSamples, TheWholeOfEachIsKnown) {
  const auto paths = support::aaf_samples();
  if (paths.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  for (const auto& path : paths) {
    SCOPED_TRACE(path.filename());
    std::unique_ptr<CompoundFile> container;
    std::unique_ptr<ObjectFile> file;
    ASSERT_EQ(CompoundFile::open_disk(path, Access::read, container), Result::ok);
    ASSERT_EQ(ObjectFile::open(std::move(container), file), AAFRESULT_SUCCESS);
    RecordingSink sink;
    dump_tree(file->root(), sink);
    EXPECT_EQ(sink.faults, 0) << sink.lines.substr(sink.lines.find("FAULT"), 200);
    EXPECT_EQ(sink.unknown, 0);
    EXPECT_EQ(sink.lines.find("}?\n"), std::string::npos);
  }
}

}  // namespace
}  // namespace aafobj
