#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_text.h"
#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "tests/aaf/export_scene.h"

namespace aaf_test {

namespace {

std::string text(std::int64_t number) {
  return std::to_string(number);
}

std::string text(const aafRational_t& value) {
  return text(value.numerator) + "/" + text(value.denominator);
}

template <class Object>
std::string name_text(Object& object) {
  std::u16string name;
  EXPECT_EQ(read_aaf_text<1000>(name, [&](aafCharacter* out,
                                          aafUInt32 bytes) { return object.GetName(out, bytes); }),
            0);
  return utf8_from_text(name);
}

template <class Value>
std::string value_text(Value& value) {
  aafRational_t number{};
  aafUInt32 read = 0;
  EXPECT_EQ(value.GetValue(sizeof number, reinterpret_cast<aafDataBuffer_t>(&number), &read), 0);
  EXPECT_EQ(read, sizeof number);
  return text(number);
}

aafUID_t definition_of(IUnknown* definition) {
  aafUID_t id{};
  const auto object = AAF_QUERY(IAAFDefObject, definition);
  EXPECT_TRUE(object);
  if (object) {
    EXPECT_EQ(object->GetAUID(&id), 0);
  }
  return id;
}

bool same(const aafUID_t& a, const aafUID_t& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

aafUID_t operation_of(IAAFOperationGroup& group) {
  AafRef<IAAFOperationDef> definition;
  EXPECT_EQ(group.GetOperationDefinition(definition.put()), 0);
  return definition_of(definition.get());
}

std::string operation_text(IAAFOperationGroup& group) {
  const aafUID_t id = operation_of(group);
  if (same(id, kAAFOperationDef_MonoAudioGain)) return "gain";
  if (same(id, kAAFOperationDef_MonoAudioPan)) return "pan";
  if (same(id, kAAFOperationDef_MonoAudioDissolve)) return "dissolve";
  if (same(id, kAAFOperationDef_TwoParameterMonoAudioDissolve)) return "two-level dissolve";
  return "?";
}

std::vector<AafRef<IAAFParameter>> parameters_of(IAAFOperationGroup& group) {
  std::vector<AafRef<IAAFParameter>> all;
  AafRef<IEnumAAFParameters> each;
  AafRef<IAAFParameter> parameter;
  EXPECT_EQ(group.GetParameters(each.put()), 0);
  while (each && each->NextOne(parameter.put()) == 0)
    all.push_back(parameter);
  return all;
}

aafLength_t length_of(IUnknown* component) {
  aafLength_t length = -1;
  const auto object = AAF_QUERY(IAAFComponent, component);
  EXPECT_TRUE(object);
  if (object) {
    EXPECT_EQ(object->GetLength(&length), 0);
  }
  return length;
}

std::string parameter_name(IAAFParameter& parameter) {
  AafRef<IAAFParameterDef> definition;
  EXPECT_EQ(parameter.GetParameterDefinition(definition.put()), 0);
  const aafUID_t id = definition_of(definition.get());
  if (same(id, kAAFParameterDef_Level)) return "level";
  if (id.Data1 == 0x9e610007) return "outgoing";
  if (id.Data1 == 0x48cea642) return "incoming";
  return "?";
}

}  // namespace

std::string parameter_text(IUnknown* parameter) {
  if (const auto constant = AAF_QUERY(IAAFConstantValue, parameter); constant)
    return value_text(*constant.get());
  const auto varying = AAF_QUERY(IAAFVaryingValue, parameter);
  EXPECT_TRUE(varying);
  AafRef<IEnumAAFControlPoints> each;
  AafRef<IAAFControlPoint> point;
  std::string out;
  EXPECT_EQ(varying->GetControlPoints(each.put()), 0);
  while (each->NextOne(point.put()) == 0) {
    aafRational_t time{};
    EXPECT_EQ(point->GetTime(&time), 0);
    if (!out.empty()) out += " ";
    out += text(time) + " " + value_text(*point.get());
  }
  return "[" + out + "]";
}

ReadFile::ReadFile(const std::string& path) {
  EXPECT_EQ(
      AAFDLL::AAFFileOpenExistingRead(aaf_from_text(text_from_utf8(path)).c_str(), 0, m_file.put()),
      0);
  if (m_file) {
    EXPECT_EQ(m_file->GetHeader(m_header.put()), 0);
  }
}

ReadFile::~ReadFile() {
  m_header.reset();
  if (m_file) {
    EXPECT_EQ(m_file->Close(), 0);
  }
}

std::vector<std::string> ReadFile::mob_names(aafMobKind_t kind) const {
  aafSearchCrit_t criterion{};
  criterion.searchTag = kAAFByMobKind;
  criterion.tags.mobKind = kind;
  AafRef<IEnumAAFMobs> each;
  AafRef<IAAFMob> mob;
  std::vector<std::string> names;
  EXPECT_EQ(m_header->GetMobs(&criterion, each.put()), 0);
  while (each->NextOne(mob.put()) == 0) {
    aafUInt32 bytes = 0;
    names.push_back(mob->GetNameBufLen(&bytes) == 0 ? name_text(*mob.get()) : std::string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

AafRef<IAAFMob> ReadFile::mob(std::string_view name) const {
  AafRef<IEnumAAFMobs> each;
  AafRef<IAAFMob> mob;
  EXPECT_EQ(m_header->GetMobs(nullptr, each.put()), 0);
  while (each->NextOne(mob.put()) == 0) {
    aafUInt32 bytes = 0;
    if (mob->GetNameBufLen(&bytes) == 0 && name_text(*mob.get()) == name) return mob;
  }
  ADD_FAILURE() << "no mob " << name;
  return {};
}

AafRef<IAAFMob> ReadFile::composition() const {
  aafSearchCrit_t criterion{};
  criterion.searchTag = kAAFByMobKind;
  criterion.tags.mobKind = kAAFCompMob;
  AafRef<IEnumAAFMobs> each;
  AafRef<IAAFMob> mob;
  EXPECT_EQ(m_header->GetMobs(&criterion, each.put()), 0);
  EXPECT_EQ(each->NextOne(mob.put()), 0);
  return mob;
}

std::string ReadFile::name_of(const aafMobID_t& id) const {
  AafRef<IAAFMob> mob;
  EXPECT_EQ(m_header->LookupMob(id, mob.put()), 0);
  return mob ? name_text(*mob.get()) : std::string();
}

std::vector<ReadFile::Slot> ReadFile::slots() const {
  std::vector<Slot> all;
  AafRef<IEnumAAFMobSlots> each;
  AafRef<IAAFMobSlot> slot;
  const AafRef<IAAFMob> mob = composition();
  EXPECT_EQ(mob->GetSlots(each.put()), 0);
  while (each->NextOne(slot.put()) == 0) {
    Slot read;
    read.name = name_text(*slot.get());
    read.slot = AAF_QUERY(IAAFTimelineMobSlot, slot.get());
    aafPosition_t origin = -1;
    EXPECT_EQ(slot->GetSlotID(&read.id), 0);
    EXPECT_EQ(slot->GetPhysicalNum(&read.physical), 0);
    EXPECT_EQ(slot->GetSegment(read.segment.put()), 0);
    EXPECT_EQ(read.slot->GetEditRate(&read.rate), 0);
    EXPECT_EQ(read.slot->GetOrigin(&origin), 0);
    EXPECT_EQ(origin, 0);
    all.push_back(std::move(read));
  }
  return all;
}

AafRef<IAAFSequence> ReadFile::sequence(std::size_t slot) const {
  AafRef<IAAFSegment> segment = slots().at(slot).segment;
  if (const auto group = AAF_QUERY(IAAFOperationGroup, segment.get()); group) {
    EXPECT_EQ(operation_text(*group.get()), "pan");
    EXPECT_EQ(group->GetInputSegmentAt(0, segment.put()), 0);
  }
  auto found = AAF_QUERY(IAAFSequence, segment.get());
  EXPECT_TRUE(found);
  return found;
}

std::vector<std::string> ReadFile::track(std::size_t slot) const {
  std::vector<std::string> all;
  AafRef<IEnumAAFComponents> each;
  AafRef<IAAFComponent> component;
  EXPECT_EQ(sequence(slot)->GetComponents(each.put()), 0);
  while (each->NextOne(component.put()) == 0)
    all.push_back(text_of(component.get()));
  return all;
}

std::string ReadFile::text_of(IUnknown* component) const {
  const aafLength_t length = length_of(component);
  if (const auto clip = AAF_QUERY(IAAFSourceClip, component); clip) {
    aafSourceRef_t reference{};
    EXPECT_EQ(clip->GetSourceReference(&reference), 0);
    EXPECT_EQ(reference.sourceSlotID, 1U);
    return "clip " + text(length) + " from " + text(reference.startTime) + " of " +
           name_of(reference.sourceID);
  }
  if (AAF_QUERY(IAAFFiller, component)) return "filler " + text(length);
  if (const auto transition = AAF_QUERY(IAAFTransition, component); transition) {
    AafRef<IAAFOperationGroup> group;
    aafPosition_t cut = -1;
    EXPECT_EQ(transition->GetOperationGroup(group.put()), 0);
    EXPECT_EQ(transition->GetCutPoint(&cut), 0);
    EXPECT_EQ(length_of(group.get()), length);
    return operation_text(*group.get()) + " " + text(length) + " cut " + text(cut);
  }
  if (const auto group = AAF_QUERY(IAAFOperationGroup, component); group)
    return group_text(*group.get(), length);
  return "?";
}

std::string ReadFile::group_text(IAAFOperationGroup& group, aafLength_t length) const {
  const auto parameters = parameters_of(group);
  AafRef<IAAFSegment> input;
  aafUInt32 inputs = 0;
  EXPECT_EQ(parameters.size(), 1U);
  EXPECT_EQ(group.CountSourceSegments(&inputs), 0);
  EXPECT_EQ(inputs, 1U);
  EXPECT_EQ(group.GetInputSegmentAt(0, input.put()), 0);
  return operation_text(group) + " " + text(length) + " " + parameter_text(parameters.at(0).get()) +
         " (" + text_of(input.get()) + ")";
}

std::vector<std::string> ReadFile::levels(std::size_t slot, std::size_t transition) const {
  AafRef<IEnumAAFComponents> each;
  AafRef<IAAFComponent> component;
  std::vector<std::string> all;
  EXPECT_EQ(sequence(slot)->GetComponents(each.put()), 0);
  while (each->NextOne(component.put()) == 0) {
    const auto found = AAF_QUERY(IAAFTransition, component.get());
    if (!found || transition-- != 0) continue;
    AafRef<IAAFOperationGroup> group;
    EXPECT_EQ(found->GetOperationGroup(group.put()), 0);
    for (const auto& parameter : parameters_of(*group.get()))
      all.push_back(parameter_name(*parameter.get()) + " " + parameter_text(parameter.get()));
    break;
  }
  return all;
}

std::string ReadFile::pan(std::size_t slot) const {
  const Slot read = slots().at(slot);
  const auto group = AAF_QUERY(IAAFOperationGroup, read.segment.get());
  if (!group) return {};
  EXPECT_EQ(operation_text(*group.get()), "pan");
  return text(length_of(group.get())) + " " +
         parameter_text(parameters_of(*group.get()).at(0).get());
}

aafLength_t ReadFile::length(std::size_t slot) const {
  return length_of(slots().at(slot).segment.get());
}

std::int64_t ReadFile::mark(std::size_t slot, aafUInt16 number) const {
  const aafUID_t id = {
      0x07020103, number, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x07}};
  AafRef<IAAFDictionary> dictionary;
  AafRef<IAAFClassDef> cls;
  AafRef<IAAFPropertyDef> property;
  AafRef<IAAFPropertyValue> value;
  AafRef<IAAFPropertyValue> base_value;
  AafRef<IAAFTypeDef> type;
  AafRef<IAAFTypeDef> base;
  EXPECT_EQ(m_header->GetDictionary(dictionary.put()), 0);
  EXPECT_EQ(dictionary->LookupClassDef(AUID_AAFTimelineMobSlot, cls.put()), 0);
  EXPECT_EQ(cls->LookupPropertyDef(id, property.put()), 0);
  const auto object = AAF_QUERY(IAAFObject, slots().at(slot).slot.get());
  if (object->GetPropertyValue(property.get(), value.put()) != 0) return -1;
  EXPECT_EQ(property->GetTypeDef(type.put()), 0);
  const auto renamed = AAF_QUERY(IAAFTypeDefRename, type.get());
  EXPECT_EQ(renamed->GetBaseValue(value.get(), base_value.put()), 0);
  EXPECT_EQ(renamed->GetBaseType(base.put()), 0);
  std::int64_t read = 0;
  EXPECT_EQ(AAF_QUERY(IAAFTypeDefInt, base.get())
                ->GetInteger(base_value.get(), reinterpret_cast<aafMemPtr_t>(&read), sizeof read),
            0);
  return read;
}

AafRef<IAAFMob> ReadFile::file_mob(std::string_view master) const {
  AafRef<IAAFFindSourceInfo> found;
  AafRef<IAAFMob> out;
  const AafRef<IAAFMob> from = mob(master);
  const auto search = AAF_QUERY(IAAFSearchSource, from.get());
  EXPECT_EQ(search->SearchSource(1, 0, kAAFFileMob, nullptr, nullptr, found.put()), 0);
  if (found) {
    EXPECT_EQ(found->GetMob(out.put()), 0);
  }
  return out;
}

AafRef<IAAFEssenceDescriptor> ReadFile::descriptor(std::string_view master) const {
  AafRef<IAAFEssenceDescriptor> out;
  const auto source = AAF_QUERY(IAAFSourceMob, file_mob(master).get());
  EXPECT_TRUE(source);
  if (source) {
    EXPECT_EQ(source->GetEssenceDescriptor(out.put()), 0);
  }
  return out;
}

std::string ReadFile::essence(std::string_view master) const {
  aafMobID_t id{};
  AafRef<IAAFEssenceData> data;
  aafLength_t size = 0;
  aafUInt32 read = 0;
  EXPECT_EQ(file_mob(master)->GetMobID(&id), 0);
  if (m_header->LookupEssenceData(id, data.put()) != 0) return {};
  EXPECT_EQ(data->GetSize(&size), 0);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  EXPECT_EQ(data->Read(static_cast<aafUInt32>(size),
                       reinterpret_cast<aafDataBuffer_t>(bytes.data()), &read),
            0);
  EXPECT_EQ(read, bytes.size());
  return bytes;
}

std::string ReadFile::locator(std::string_view master) const {
  AafRef<IEnumAAFLocators> each;
  AafRef<IAAFLocator> locator;
  std::u16string path;
  const AafRef<IAAFEssenceDescriptor> of = descriptor(master);
  EXPECT_EQ(of->GetLocators(each.put()), 0);
  if (each->NextOne(locator.put()) != 0) return {};
  EXPECT_EQ(
      read_aaf_text<1000>(
          path, [&](aafCharacter* out, aafUInt32 bytes) { return locator->GetPath(out, bytes); }),
      0);
  return utf8_from_text(path);
}

}  // namespace aaf_test
