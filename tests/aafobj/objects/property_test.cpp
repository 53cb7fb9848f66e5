// Values by way of the meta model: definitions, types, property values.

#include "tests/aafobj/objects/client.h"

namespace {

using client::File;
using client::Held;

constexpr aafUID_t usage_code_id = {
    0x05010108, 0, 0, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x07}};
constexpr aafUID_t mark_in_id = {
    0x07020103, 0x010c, 0, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x07}};
constexpr aafUID_t pattern_id = {
    0x01020203, 0, 0, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05}};
constexpr aafUID_t int64_id = {0x01010800, 0, 0, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x01}};

struct Property {
  Held<IAAFPropertyDef> definition;
  Held<IAAFTypeDef> type;
};

Property property_of(File& file, const aafUID_t& cls, const aafUID_t& id) {
  Property property;
  Held<IAAFClassDef> class_def;
  EXPECT_EQ(file.dictionary->LookupClassDef(cls, class_def.put()), 0);
  EXPECT_EQ(class_def->LookupPropertyDef(id, property.definition.put()), 0);
  EXPECT_EQ(property.definition->GetTypeDef(property.type.put()), 0);
  return property;
}

aafMemPtr_t memory(void* pointer) {
  return static_cast<aafMemPtr_t>(pointer);
}

TEST(Properties, UsageCodesGoByName) {
  File file = client::transient_file();
  const Property usage = property_of(file, AUID_AAFCompositionMob, usage_code_id);
  auto mob = client::create<IAAFObject>(file.dictionary, AUID_AAFCompositionMob, IID_IAAFObject);
  aafBoolean_t present = kAAFTrue;
  EXPECT_EQ(mob->IsPropertyPresent(usage.definition, &present), 0);
  EXPECT_EQ(present, kAAFFalse);
  Held<IAAFPropertyValue> value;
  EXPECT_EQ(mob->GetPropertyValue(usage.definition, value.put()), AAFRESULT_PROP_NOT_PRESENT);
  auto type = CLIENT_AS(IAAFTypeDefExtEnum, usage.type);
  EXPECT_EQ(type->CreateValueFromName(L"Usage_Nothing", value.put()), AAFRESULT_INVALID_PARAM);
  for (const wchar_t* name : {L"Usage_TopLevel", L"kAAFUsage_TopLevel"}) {
    ASSERT_EQ(type->CreateValueFromName(name, value.put()), 0);
    ASSERT_EQ(mob->SetPropertyValue(usage.definition, value), 0);
    ASSERT_EQ(mob->GetPropertyValue(usage.definition, value.put()), 0);
    aafUID_t id{};
    EXPECT_EQ(type->GetAUIDValue(value, &id), 0);
    EXPECT_TRUE(client::same(id, kAAFUsage_TopLevel));
    aafUInt32 size = 0;
    wchar_t text[19];
    EXPECT_EQ(type->GetNameBufLenFromValue(value, &size), 0);
    EXPECT_EQ(size, sizeof(text));
    EXPECT_EQ(type->GetNameFromValue(value, text, sizeof(text)), 0);
    EXPECT_STREQ(text, L"kAAFUsage_TopLevel");
  }
  EXPECT_EQ(mob->RemoveOptionalProperty(usage.definition), 0);
  EXPECT_EQ(mob->IsPropertyPresent(usage.definition, &present), 0);
  EXPECT_EQ(present, kAAFFalse);
}

TEST(Properties, MarksAreRenamedNumbers) {
  File file = client::transient_file();
  const Property mark = property_of(file, AUID_AAFTimelineMobSlot, mark_in_id);
  auto slot = client::create<IAAFObject>(file.dictionary, AUID_AAFTimelineMobSlot, IID_IAAFObject);
  auto rename = CLIENT_AS(IAAFTypeDefRename, mark.type);
  Held<IAAFTypeDef> found;
  ASSERT_EQ(file.dictionary->LookupTypeDef(int64_id, found.put()), 0);
  auto number = CLIENT_AS(IAAFTypeDefInt, found);
  aafInt64 position = -123456789012;
  Held<IAAFPropertyValue> value;
  Held<IAAFPropertyValue> renamed;
  ASSERT_EQ(number->CreateValue(memory(&position), sizeof(position), value.put()), 0);
  // Both a value of the base type and one made of it by the renaming type are taken.
  ASSERT_EQ(slot->SetPropertyValue(mark.definition, value), 0);
  ASSERT_EQ(rename->CreateValue(value, renamed.put()), 0);
  ASSERT_EQ(slot->SetPropertyValue(mark.definition, renamed), 0);
  ASSERT_EQ(slot->GetPropertyValue(mark.definition, value.put()), 0);
  ASSERT_EQ(rename->GetBaseValue(value, renamed.put()), 0);
  ASSERT_EQ(rename->GetBaseType(found.put()), 0);
  number = CLIENT_AS(IAAFTypeDefInt, found);
  aafInt64 read = 0;
  EXPECT_EQ(number->GetInteger(renamed, memory(&read), sizeof(read)), 0);
  EXPECT_EQ(read, position);
  EXPECT_EQ(number->GetInteger(renamed, memory(&read), 4), AAFRESULT_BAD_SIZE);
  auto timeline = CLIENT_AS(IAAFTimelineMobSlot2, slot);
  EXPECT_EQ(timeline->GetMarkIn(&read), 0);
  EXPECT_EQ(read, position);
  EXPECT_EQ(timeline->GetMarkOut(&read), AAFRESULT_PROP_NOT_PRESENT);
}

TEST(Properties, NumbersTakeTheirSignAlong) {
  File file = client::transient_file();
  Held<IAAFTypeDef> found;
  ASSERT_EQ(file.dictionary->LookupTypeDef(int64_id, found.put()), 0);
  auto number = CLIENT_AS(IAAFTypeDefInt, found);
  Held<IAAFPropertyValue> value;
  aafInt16 small = -2;
  ASSERT_EQ(number->CreateValue(memory(&small), sizeof(small), value.put()), 0);
  aafInt64 read = 0;
  EXPECT_EQ(number->GetInteger(value, memory(&read), sizeof(read)), 0);
  EXPECT_EQ(read, -2);
  aafUInt8 odd[3] = {};
  EXPECT_EQ(number->CreateValue(odd, 3, value.put()), 0);  // fewer bytes than the type has
  EXPECT_EQ(number->GetInteger(value, odd, 3), AAFRESULT_BAD_SIZE);
  aafUInt32 size = 0;
  aafBoolean_t is_signed = kAAFFalse;
  EXPECT_EQ(number->GetSize(&size), 0);
  EXPECT_EQ(size, 8u);
  EXPECT_EQ(number->IsSigned(&is_signed), 0);
  EXPECT_EQ(is_signed, kAAFTrue);
}

TEST(Properties, OperationalPatternsAreRecords) {
  File file = client::transient_file();
  const Property pattern = property_of(file, AUID_AAFHeader, pattern_id);
  auto header = CLIENT_AS(IAAFObject, file.header);
  auto record = CLIENT_AS(IAAFTypeDefRecord, pattern.type);
  aafUID_t edit_protocol = kAAFOPDef_EditProtocol;
  Held<IAAFPropertyValue> value;
  ASSERT_EQ(
      record->CreateValueFromStruct(memory(&edit_protocol), sizeof(edit_protocol), value.put()), 0);
  ASSERT_EQ(header->SetPropertyValue(pattern.definition, value), 0);
  ASSERT_EQ(header->GetPropertyValue(pattern.definition, value.put()), 0);
  aafUID_t read{};
  EXPECT_EQ(record->GetStruct(value, memory(&read), sizeof(read)), 0);
  EXPECT_TRUE(client::same(read, kAAFOPDef_EditProtocol));
  EXPECT_EQ(record->GetStruct(value, memory(&read), 15), AAFRESULT_BAD_SIZE);
  aafUInt32 count = 0;
  EXPECT_EQ(record->GetCount(&count), 0);
  EXPECT_EQ(count, 4u);
  Held<IAAFPropertyValue> field;
  Held<IAAFTypeDef> field_type;
  ASSERT_EQ(record->GetValue(value, 1, field.put()), 0);
  ASSERT_EQ(record->GetMemberType(1, field_type.put()), 0);
  aafUInt16 data2 = 0;
  EXPECT_EQ(CLIENT_AS(IAAFTypeDefInt, field_type)->GetInteger(field, memory(&data2), 2), 0);
  EXPECT_EQ(data2, 0x0100);
  EXPECT_EQ(record->GetValue(value, 4, field.put()), AAFRESULT_BADINDEX);
}

TEST(Properties, ValuesOfAnotherTypeAreRefused) {
  File file = client::transient_file();
  const Property pattern = property_of(file, AUID_AAFHeader, pattern_id);
  const Property mark = property_of(file, AUID_AAFTimelineMobSlot, mark_in_id);
  auto header = CLIENT_AS(IAAFObject, file.header);
  Held<IAAFTypeDef> found;
  ASSERT_EQ(file.dictionary->LookupTypeDef(int64_id, found.put()), 0);
  auto number = CLIENT_AS(IAAFTypeDefInt, found);
  Held<IAAFPropertyValue> value;
  aafInt64 one = 1;
  ASSERT_EQ(number->CreateValue(memory(&one), sizeof(one), value.put()), 0);
  EXPECT_EQ(header->SetPropertyValue(pattern.definition, value), AAFRESULT_BAD_TYPE);
  EXPECT_EQ(header->SetPropertyValue(mark.definition, value), AAFRESULT_BAD_PROP);
  aafUID_t read{};
  EXPECT_EQ(CLIENT_AS(IAAFTypeDefRecord, pattern.type)->GetStruct(value, memory(&read), 16),
            AAFRESULT_BAD_TYPE);
}

TEST(Properties, ClassesTellOfThemselves) {
  File file = client::transient_file();
  Held<IAAFClassDef> clip;
  Held<IAAFClassDef> above;
  ASSERT_EQ(file.dictionary->LookupClassDef(AUID_AAFSourceClip, clip.put()), 0);
  EXPECT_EQ(client::name_of(clip.get()), L"SourceClip");
  aafUInt32 count = 0;
  EXPECT_EQ(clip->CountPropertyDefs(&count), 0);
  EXPECT_EQ(count, 5u);
  ASSERT_EQ(clip->GetParent(above.put()), 0);
  EXPECT_EQ(client::name_of(above.get()), L"SourceReference");
  aafBoolean_t flag = kAAFTrue;
  EXPECT_EQ(above->IsConcrete(&flag), 0);
  EXPECT_EQ(flag, kAAFFalse);
  aafUID_t id{};
  EXPECT_EQ(CLIENT_AS(IAAFMetaDefinition, clip)->GetAUID(&id), 0);
  EXPECT_TRUE(client::same(id, AUID_AAFSourceClip));
  ASSERT_EQ(file.dictionary->LookupClassDef(AUID_AAFObject, above.put()), 0);
  EXPECT_EQ(above->IsRoot(&flag), 0);
  EXPECT_EQ(flag, kAAFTrue);
  EXPECT_EQ(above->GetParent(clip.put()), AAFRESULT_IS_ROOT_CLASS);
  EXPECT_EQ(file.dictionary->LookupClassDef(int64_id, clip.put()), AAFRESULT_NO_MORE_OBJECTS);
  EXPECT_EQ(file.dictionary->CountClassDefs(&count), 0);
  EXPECT_EQ(count, 102u);
  EXPECT_EQ(file.dictionary->CountTypeDefs(&count), 0);
  EXPECT_EQ(count, 154u);
  Held<IUnknown> instance;
  ASSERT_EQ(file.dictionary->LookupClassDef(AUID_AAFFiller, clip.put()), 0);
  EXPECT_EQ(clip->CreateInstance(IID_IAAFFiller, instance.put()), 0);
  ASSERT_EQ(file.dictionary->LookupClassDef(AUID_AAFSegment, clip.put()), 0);
  EXPECT_EQ(clip->CreateInstance(IID_IAAFSegment, instance.put()), AAFRESULT_ABSTRACT_CLASS);
}

TEST(Properties, OneDefinitionIsOneObject) {
  File file = client::transient_file();
  Held<IAAFClassDef> first;
  Held<IAAFClassDef> second;
  ASSERT_EQ(file.dictionary->LookupClassDef(AUID_AAFMob, first.put()), 0);
  ASSERT_EQ(file.dictionary->LookupClassDef(AUID_AAFMob, second.put()), 0);
  EXPECT_EQ(first.get(), second.get());
}

TEST(Properties, ReferencesLeadToObjects) {
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  ASSERT_EQ(file.header->AddMob(mob), 0);
  auto header = CLIENT_AS(IAAFObject, file.header);
  Held<IEnumAAFProperties> properties;
  Held<IAAFProperty> property;
  aafUInt32 count = 0;
  aafUInt32 seen = 0;
  bool found_content = false;
  EXPECT_EQ(header->CountProperties(&count), 0);
  ASSERT_EQ(header->GetProperties(properties.put()), 0);
  while (properties->NextOne(property.put()) == 0) {
    ++seen;
    Held<IAAFPropertyDef> definition;
    Held<IAAFPropertyValue> value;
    Held<IAAFTypeDef> type;
    ASSERT_EQ(property->GetDefinition(definition.put()), 0);
    ASSERT_EQ(property->GetValue(value.put()), 0);
    ASSERT_EQ(value->GetType(type.put()), 0);
    if (client::name_of(definition.get()) != L"Content") continue;
    found_content = true;
    eAAFTypeCategory_t category = kAAFTypeCatUnknown;
    EXPECT_EQ(type->GetTypeCategory(&category), 0);
    EXPECT_EQ(category, kAAFTypeCatStrongObjRef);
    Held<IUnknown> content;
    auto reference = CLIENT_AS(IAAFTypeDefObjectRef, type);
    ASSERT_EQ(reference->GetObject(value, IID_IAAFContentStorage, content.put()), 0);
    aafNumSlots_t mobs = 0;
    EXPECT_EQ(CLIENT_AS(IAAFContentStorage, content)->CountMobs(kAAFAllMob, &mobs), 0);
    EXPECT_EQ(mobs, 1u);
  }
  EXPECT_EQ(seen, count);
  EXPECT_TRUE(found_content);
}

TEST(Properties, ExtensionsAreRegisteredAndComeBack) {
  client::TemporaryFolder folder;
  const aafUID_t id = {0xdeadbeef, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
  {
    File file = client::new_file(folder.path("a.aaf"));
    Held<IAAFClassDef> mob_class;
    Held<IAAFTypeDef> type;
    Held<IAAFPropertyDef> definition;
    ASSERT_EQ(file.dictionary->LookupClassDef(AUID_AAFMob, mob_class.put()), 0);
    ASSERT_EQ(file.dictionary->LookupTypeDef(int64_id, type.put()), 0);
    ASSERT_EQ(mob_class->RegisterOptionalPropertyDef(id, L"Color", type, definition.put()), 0);
    auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    Held<IAAFPropertyValue> value;
    aafInt64 color = 0x00ff8800;
    ASSERT_EQ(CLIENT_AS(IAAFTypeDefInt, type)->CreateValue(memory(&color), 8, value.put()), 0);
    ASSERT_EQ(CLIENT_AS(IAAFObject, mob)->SetPropertyValue(definition, value), 0);
    ASSERT_EQ(file.header->AddMob(mob), 0);
    mob.reset();
    file.save_and_close();
  }
  File file = client::open_file(folder.path("a.aaf"));
  const auto mobs = client::mobs_of(file.header);
  ASSERT_EQ(mobs.size(), 1u);
  const Property color = property_of(file, AUID_AAFMasterMob, id);
  EXPECT_EQ(client::name_of(color.definition.get()), L"Color");
  Held<IAAFPropertyValue> value;
  ASSERT_EQ(CLIENT_AS(IAAFObject, mobs[0])->GetPropertyValue(color.definition, value.put()), 0);
  aafInt64 read = 0;
  EXPECT_EQ(CLIENT_AS(IAAFTypeDefInt, color.type)->GetInteger(value, memory(&read), 8), 0);
  EXPECT_EQ(read, 0x00ff8800);
}

TEST(Properties, DataDefinitionsOfBothGenerationsCount) {
  File file = client::transient_file();
  struct Row {
    aafUID_t id;
    bool is_sound;
    bool is_picture;
  };
  for (const Row& row :
       {Row{kAAFDataDef_Sound, true, false}, Row{kAAFDataDef_LegacySound, true, false},
        Row{kAAFDataDef_Picture, false, true}, Row{kAAFDataDef_LegacyPicture, false, true},
        Row{kAAFDataDef_Timecode, false, false}, Row{kAAFDataDef_Edgecode, false, false}}) {
    auto data_def = client::data_def(file.dictionary, row.id);
    aafBoolean_t is_sound = 99;
    aafBoolean_t is_picture = 99;
    EXPECT_EQ(data_def->IsSoundKind(&is_sound), 0);
    EXPECT_EQ(data_def->IsPictureKind(&is_picture), 0);
    EXPECT_EQ(is_sound, row.is_sound ? kAAFTrue : kAAFFalse);
    EXPECT_EQ(is_picture, row.is_picture ? kAAFTrue : kAAFFalse);
  }
}

// A type of the published model by the first words of its identifier.
template <typename Interface>
Held<Interface> model_type(File& file, aafUInt32 first, aafUInt16 second, REFIID iid) {
  Held<IAAFTypeDef> found;
  EXPECT_EQ(file.dictionary->LookupTypeDef(
                {first, second, 0, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x01}}, found.put()),
            0);
  return client::as<Interface>(found, iid);
}

template <typename Number>
Held<IAAFPropertyValue> number_value(IAAFTypeDefInt* type, Number number) {
  Held<IAAFPropertyValue> value;
  EXPECT_EQ(type->CreateValue(memory(&number), sizeof(number), value.put()), 0);
  return value;
}

TEST(Properties, RecordsAreMadeOfTheirMembers) {
  File file = client::transient_file();
  auto rational = model_type<IAAFTypeDefRecord>(file, 0x03010100, 0, IID_IAAFTypeDefRecord);
  auto int32 = model_type<IAAFTypeDefInt>(file, 0x01010700, 0, IID_IAAFTypeDefInt);
  auto int64 = model_type<IAAFTypeDefInt>(file, 0x01010800, 0, IID_IAAFTypeDefInt);
  auto numerator = number_value(int32.get(), aafInt32{30000});
  auto denominator = number_value(int32.get(), aafInt32{1001});
  IAAFPropertyValue* members[] = {numerator, denominator};
  Held<IAAFPropertyValue> value;
  EXPECT_EQ(rational->CreateValueFromValues(members, 1, value.put()), AAFRESULT_INVALID_PARAM);
  ASSERT_EQ(rational->CreateValueFromValues(members, 2, value.put()), 0);
  aafRational_t read{};
  EXPECT_EQ(rational->GetStruct(value, memory(&read), sizeof(read)), 0);
  EXPECT_EQ(read.numerator, 30000);
  EXPECT_EQ(read.denominator, 1001);
  auto other = number_value(int32.get(), aafInt32{1000});
  EXPECT_EQ(rational->SetValue(value, 1, other), 0);
  EXPECT_EQ(rational->SetValue(value, 2, other), AAFRESULT_BADINDEX);
  EXPECT_EQ(rational->SetValue(value, 1, number_value(int64.get(), aafInt64{1})),
            AAFRESULT_BAD_TYPE);
  EXPECT_EQ(rational->SetValue(value, 1, nullptr), AAFRESULT_NULL_PARAM);
  EXPECT_EQ(rational->GetStruct(value, memory(&read), sizeof(read)), 0);
  EXPECT_EQ(read.numerator, 30000);
  EXPECT_EQ(read.denominator, 1000);
}

TEST(Properties, ArraysAreMadeOfTheirElements) {
  File file = client::transient_file();
  auto array =
      model_type<IAAFTypeDefVariableArray>(file, 0x04010300, 0, IID_IAAFTypeDefVariableArray);
  auto int32 = model_type<IAAFTypeDefInt>(file, 0x01010700, 0, IID_IAAFTypeDefInt);
  auto one = number_value(int32.get(), aafInt32{1});
  auto two = number_value(int32.get(), aafInt32{-2});
  IAAFPropertyValue* elements[] = {one, two, one};
  Held<IAAFPropertyValue> value;
  ASSERT_EQ(array->CreateValueFromValues(elements, 3, value.put()), 0);
  EXPECT_EQ(array->SetElementValue(value, 2, two), 0);
  EXPECT_EQ(array->SetElementValue(value, 3, two), AAFRESULT_BADINDEX);
  EXPECT_EQ(array->AppendElement(value, one), 0);
  aafInt32 read[4] = {};
  EXPECT_EQ(array->GetCArray(value, memory(read), sizeof(read)), 0);
  EXPECT_EQ(read[0], 1);
  EXPECT_EQ(read[1], -2);
  EXPECT_EQ(read[2], -2);
  EXPECT_EQ(read[3], 1);
  ASSERT_EQ(array->CreateValueFromValues(elements, 0, value.put()), 0);
  aafUInt32 count = 99;
  EXPECT_EQ(array->GetCount(value, &count), 0);
  EXPECT_EQ(count, 0U);

  auto fixed = model_type<IAAFTypeDefFixedArray>(file, 0x04010800, 0, IID_IAAFTypeDefFixedArray);
  auto uint8 = model_type<IAAFTypeDefInt>(file, 0x01010100, 0, IID_IAAFTypeDefInt);
  auto byte = number_value(uint8.get(), aafUInt8{7});
  IAAFPropertyValue* bytes[] = {byte, byte, byte, byte, byte, byte, byte, byte};
  EXPECT_EQ(fixed->CreateValueFromValues(bytes, 7, value.put()), AAFRESULT_INVALID_PARAM);
  ASSERT_EQ(fixed->CreateValueFromValues(bytes, 8, value.put()), 0);
  EXPECT_EQ(fixed->SetElementValue(value, 0, number_value(uint8.get(), aafUInt8{9})), 0);
  EXPECT_EQ(fixed->SetElementValue(value, 8, byte), AAFRESULT_BADINDEX);
  aafUInt8 back[8] = {};
  EXPECT_EQ(fixed->GetCArray(value, back, sizeof(back)), 0);
  EXPECT_EQ(back[0], 9);
  EXPECT_EQ(back[7], 7);
}

TEST(Properties, CharactersAreValuesToo) {
  File file = client::transient_file();
  auto type = model_type<IAAFTypeDefCharacter>(file, 0x01100100, 0, IID_IAAFTypeDefCharacter);
  Held<IAAFPropertyValue> value;
  aafCharacter read = 0;
  ASSERT_EQ(type->CreateValueFromCharacter(L'ü', value.put()), 0);
  EXPECT_EQ(type->GetCharacter(value, &read), 0);
  EXPECT_EQ(read, L'ü');
  EXPECT_EQ(type->SetCharacter(value, L'x'), 0);
  EXPECT_EQ(type->GetCharacter(value, &read), 0);
  EXPECT_EQ(read, L'x');
}

}  // namespace
