// A composition as an exporting program makes it, read back as an importing one reads it.

#include "tests/aafobj/objects/client.h"

namespace {

using client::File;
using client::Held;
using client::TemporaryFolder;

aafMobID_t mob_id_of(IAAFMob* mob) {
  aafMobID_t id{};
  EXPECT_EQ(mob->GetMobID(&id), 0);
  return id;
}

Held<IAAFSourceClip> make_clip(File& file, const aafSourceRef_t& reference, aafLength_t length) {
  auto clip = CLIENT_CREATE(file.dictionary, SourceClip);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  EXPECT_EQ(clip->Initialize(sound, length, reference), 0);
  return clip;
}

Held<IAAFSequence> make_sequence(File& file) {
  auto sequence = CLIENT_CREATE(file.dictionary, Sequence);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  EXPECT_EQ(sequence->Initialize(sound), 0);
  return sequence;
}

Held<IAAFFiller> make_filler(File& file, aafLength_t length) {
  auto filler = CLIENT_CREATE(file.dictionary, Filler);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  EXPECT_EQ(filler->Initialize(sound, length), 0);
  return filler;
}

void register_operation(File& file, const aafUID_t& operation, const aafUID_t& parameter,
                        aafInt32 inputs) {
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  auto operation_def = CLIENT_CREATE(file.dictionary, OperationDef);
  auto parameter_def = CLIENT_CREATE(file.dictionary, ParameterDef);
  Held<IAAFTypeDef> rational;
  const aafUID_t rational_id = {0x03010100, 0, 0, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x01}};
  ASSERT_EQ(file.dictionary->LookupTypeDef(rational_id, rational.put()), 0);
  ASSERT_EQ(parameter_def->Initialize(parameter, L"Level", L"A level", rational), 0);
  ASSERT_EQ(parameter_def->SetDisplayUnits(L" "), 0);
  ASSERT_EQ(file.dictionary->RegisterParameterDef(parameter_def), 0);
  ASSERT_EQ(operation_def->Initialize(operation, L"Audio Gain", L"A gain"), 0);
  ASSERT_EQ(operation_def->SetDataDef(sound), 0);
  ASSERT_EQ(operation_def->SetIsTimeWarp(kAAFFalse), 0);
  ASSERT_EQ(operation_def->SetNumberInputs(inputs), 0);
  ASSERT_EQ(file.dictionary->RegisterOperationDef(operation_def), 0);
  ASSERT_EQ(operation_def->AddParameterDef(parameter_def), 0);
  EXPECT_EQ(operation_def->AddParameterDef(parameter_def), AAFRESULT_OBJECT_ALREADY_ATTACHED);
  EXPECT_EQ(file.dictionary->RegisterOperationDef(operation_def),
            AAFRESULT_OBJECT_ALREADY_ATTACHED);
}

Held<IAAFOperationGroup> make_group(File& file, const aafUID_t& operation, aafLength_t length) {
  auto group = CLIENT_CREATE(file.dictionary, OperationGroup);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  Held<IAAFOperationDef> definition;
  EXPECT_EQ(file.dictionary->LookupOperationDef(operation, definition.put()), 0);
  EXPECT_EQ(group->Initialize(sound, length, definition), 0);
  return group;
}

aafDataBuffer_t memory(aafRational_t& value) {
  return reinterpret_cast<aafDataBuffer_t>(&value);
}

Held<IAAFParameterDef> parameter_def(File& file, const aafUID_t& id) {
  Held<IAAFParameterDef> found;
  EXPECT_EQ(file.dictionary->LookupParameterDef(id, found.put()), 0);
  return found;
}

Held<IAAFVaryingValue> make_varying(File& file, const aafUID_t& parameter,
                                    const std::vector<std::array<aafRational_t, 2>>& points) {
  auto varying = CLIENT_CREATE(file.dictionary, VaryingValue);
  Held<IAAFInterpolationDef> linear;
  EXPECT_EQ(file.dictionary->LookupInterpolationDef(kAAFInterpolationDef_Linear, linear.put()), 0);
  EXPECT_EQ(varying->Initialize(parameter_def(file, parameter), linear), 0);
  for (std::array<aafRational_t, 2> point : points) {
    auto object = CLIENT_CREATE(file.dictionary, ControlPoint);
    EXPECT_EQ(object->Initialize(varying, point[0], sizeof(aafRational_t), memory(point[1])), 0);
    EXPECT_EQ(varying->AddControlPoint(object), 0);
  }
  return varying;
}

TEST(Composition, ComesBackWhole) {
  TemporaryFolder folder;
  aafMobID_t source_id{};
  {
    File file = client::new_file(folder.path("a.aaf"), AAF_FILE_MODE_USE_LARGE_SS_SECTORS);
    register_operation(file, kAAFOperationDef_MonoAudioGain, kAAFParameterDef_Amplitude, 1);
    register_operation(file, kAAFOperationDef_MonoAudioDissolve, kAAFParameterDef_Level, 2);
    auto master = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    ASSERT_EQ(master->SetName(L"take \U0001f3a7"), 0);
    ASSERT_EQ(file.header->AddMob(master), 0);
    source_id = mob_id_of(master);

    auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFCompositionMob, IID_IAAFMob);
    auto composition = CLIENT_AS(IAAFCompositionMob, mob);
    ASSERT_EQ(composition->SetDefaultFade(480, kAAFFadeLinearAmp, {48000, 1}), 0);
    ASSERT_EQ(mob->SetName(L"Cut"), 0);
    ASSERT_EQ(file.header->AddMob(mob), 0);
    EXPECT_EQ(file.header->AddMob(mob), AAFRESULT_OBJECT_ALREADY_ATTACHED);
    auto sequence = make_sequence(file);
    auto segment = CLIENT_AS(IAAFSegment, sequence);
    Held<IAAFTimelineMobSlot> slot;
    EXPECT_EQ(mob->AppendNewTimelineSlot({48000, 1}, segment, 2, nullptr, 0, slot.put()),
              AAFRESULT_NULL_PARAM);
    ASSERT_EQ(mob->AppendNewTimelineSlot({48000, 1}, segment, 2, L"Audio 1", 0, slot.put()), 0);
    auto mob_slot = CLIENT_AS(IAAFMobSlot, slot);
    ASSERT_EQ(mob_slot->SetPhysicalNum(1), 0);

    // A filler, a clip with a constant gain, a transition, a clip with a varying gain.
    ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, make_filler(file, 1000))), 0);
    auto constant = CLIENT_CREATE(file.dictionary, ConstantValue);
    aafRational_t half = {1, 2};
    ASSERT_EQ(constant->Initialize(parameter_def(file, kAAFParameterDef_Amplitude), sizeof(half),
                                   memory(half)),
              0);
    auto gain = make_group(file, kAAFOperationDef_MonoAudioGain, 5000);
    ASSERT_EQ(gain->AddParameter(CLIENT_AS(IAAFParameter, constant)), 0);
    auto clip = make_clip(file, {source_id, 1, 77}, 5000);
    ASSERT_EQ(clip->SetFade(10, kAAFFadeLinearAmp, 20, kAAFFadeLinearPower), 0);
    ASSERT_EQ(gain->AppendInputSegment(CLIENT_AS(IAAFSegment, clip)), 0);
    EXPECT_EQ(gain->AppendInputSegment(CLIENT_AS(IAAFSegment, clip)),
              AAFRESULT_OBJECT_ALREADY_ATTACHED);
    ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, gain)), 0);

    auto transition = CLIENT_CREATE(file.dictionary, Transition);
    auto dissolve = make_group(file, kAAFOperationDef_MonoAudioDissolve, 200);
    auto level =
        make_varying(file, kAAFParameterDef_Level, {{{{0, 1}, {0, 1}}}, {{{1, 1}, {1, 1}}}});
    ASSERT_EQ(dissolve->AddParameter(CLIENT_AS(IAAFParameter, level)), 0);
    auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
    ASSERT_EQ(transition->Initialize(sound, 200, 100, dissolve), 0);
    ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, transition)), 0);

    auto varying_gain = make_group(file, kAAFOperationDef_MonoAudioGain, 3000);
    // The points arrive out of order.
    auto varying = make_varying(file, kAAFParameterDef_Amplitude,
                                {{{{1, 2}, {5, 10}}}, {{{1, 1}, {9, 10}}}, {{{0, 1}, {1, 10}}}});
    ASSERT_EQ(varying_gain->AddParameter(CLIENT_AS(IAAFParameter, varying)), 0);
    ASSERT_EQ(varying_gain->AppendInputSegment(
                  CLIENT_AS(IAAFSegment, make_clip(file, {source_id, 1, 0}, 3000))),
              0);
    ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, varying_gain)), 0);

    auto timecode = CLIENT_CREATE(file.dictionary, Timecode);
    aafTimecode_t start = {90000, kAAFTcNonDrop, 25};
    ASSERT_EQ(timecode->Initialize(8800, &start), 0);
    ASSERT_EQ(mob->AppendNewTimelineSlot({48000, 1}, CLIENT_AS(IAAFSegment, timecode), 1,
                                         L"Timecode slot", 0, slot.put()),
              0);
    mob.reset();
    file.save_and_close();
  }

  File file = client::open_file(folder.path("a.aaf"));
  const auto compositions = client::mobs_of(file.header, kAAFCompMob);
  ASSERT_EQ(compositions.size(), 1u);
  IAAFMob* mob = compositions[0];
  EXPECT_EQ(client::name_of(mob), L"Cut");
  aafDefaultFade_t fade{};
  EXPECT_EQ(CLIENT_AS(IAAFCompositionMob, mob)->GetDefaultFade(&fade), 0);
  EXPECT_EQ(fade.fadeLength, 480);
  EXPECT_EQ(fade.fadeType, kAAFFadeLinearAmp);
  EXPECT_EQ(fade.fadeEditUnit.numerator, 48000);
  EXPECT_EQ(fade.valid, kAAFTrue);
  aafNumSlots_t slots = 0;
  EXPECT_EQ(mob->CountSlots(&slots), 0);
  EXPECT_EQ(slots, 2u);

  Held<IAAFMobSlot> slot;
  ASSERT_EQ(mob->LookupSlot(2, slot.put()), 0);
  EXPECT_EQ(client::name_of(slot.get()), L"Audio 1");
  aafUInt32 physical = 0;
  EXPECT_EQ(slot->GetPhysicalNum(&physical), 0);
  EXPECT_EQ(physical, 1u);
  Held<IAAFDataDef> data_def;
  aafBoolean_t is_sound = kAAFFalse;
  ASSERT_EQ(slot->GetDataDef(data_def.put()), 0);
  EXPECT_EQ(data_def->IsSoundKind(&is_sound), 0);
  EXPECT_EQ(is_sound, kAAFTrue);
  auto timeline = CLIENT_AS(IAAFTimelineMobSlot, slot);
  aafRational_t rate{};
  aafPosition_t origin = 9;
  EXPECT_EQ(timeline->GetEditRate(&rate), 0);
  EXPECT_EQ(rate.numerator, 48000);
  EXPECT_EQ(timeline->GetOrigin(&origin), 0);
  EXPECT_EQ(origin, 0);

  Held<IAAFSegment> segment;
  ASSERT_EQ(slot->GetSegment(segment.put()), 0);
  auto sequence = CLIENT_AS(IAAFSequence, segment);
  aafUInt32 count = 0;
  EXPECT_EQ(sequence->CountComponents(&count), 0);
  ASSERT_EQ(count, 4u);
  aafLength_t length = 0;
  EXPECT_EQ(CLIENT_AS(IAAFComponent, sequence)->GetLength(&length), 0);
  EXPECT_EQ(length, 1000 + 5000 - 200 + 3000);

  Held<IEnumAAFComponents> components;
  Held<IAAFComponent> component;
  ASSERT_EQ(sequence->GetComponents(components.put()), 0);
  ASSERT_EQ(components->NextOne(component.put()), 0);
  EXPECT_TRUE(client::answers(component, IID_IAAFFiller));
  ASSERT_EQ(components->NextOne(component.put()), 0);
  auto gain = CLIENT_AS(IAAFOperationGroup, component);
  Held<IAAFOperationDef> operation;
  aafUID_t id{};
  ASSERT_EQ(gain->GetOperationDefinition(operation.put()), 0);
  EXPECT_EQ(CLIENT_AS(IAAFDefObject, operation)->GetAUID(&id), 0);
  EXPECT_TRUE(client::same(id, kAAFOperationDef_MonoAudioGain));
  Held<IAAFParameter> parameter;
  EXPECT_EQ(gain->LookupParameter(kAAFParameterDef_Pan, parameter.put()),
            AAFRESULT_NO_MORE_OBJECTS);
  ASSERT_EQ(gain->LookupParameter(kAAFParameterDef_Amplitude, parameter.put()), 0);
  auto constant = CLIENT_AS(IAAFConstantValue, parameter);
  aafUInt32 size = 0;
  aafRational_t value{};
  EXPECT_EQ(constant->GetValueBufLen(&size), 0);
  EXPECT_EQ(size, 8u);  // without what leads an indirect value
  EXPECT_EQ(constant->GetValue(sizeof(value), memory(value), &size), 0);
  EXPECT_EQ(value.denominator, 2);
  EXPECT_EQ(constant->GetValue(7, memory(value), &size), AAFRESULT_SMALLBUF);
  ASSERT_EQ(gain->GetInputSegmentAt(0, segment.put()), 0);
  auto clip = CLIENT_AS(IAAFSourceClip, segment);
  aafSourceRef_t reference{};
  EXPECT_EQ(clip->GetSourceReference(&reference), 0);
  EXPECT_TRUE(client::same(reference.sourceID, source_id));
  EXPECT_EQ(reference.sourceSlotID, 1u);
  EXPECT_EQ(reference.startTime, 77);
  Held<IAAFMob> source;
  ASSERT_EQ(clip->ResolveRef(source.put()), 0);
  EXPECT_EQ(client::name_of(source.get()), L"take \U0001f3a7");
  aafLength_t in = 0;
  aafLength_t out = 0;
  aafFadeType_t in_type = 0;
  aafFadeType_t out_type = 0;
  aafBoolean_t in_present = 0;
  aafBoolean_t out_present = 0;
  EXPECT_EQ(clip->GetFade(&in, &in_type, &in_present, &out, &out_type, &out_present), 0);
  EXPECT_EQ(in, 10);
  EXPECT_EQ(out, 20);
  EXPECT_EQ(out_type, kAAFFadeLinearPower);
  EXPECT_EQ(in_present, kAAFTrue);

  ASSERT_EQ(components->NextOne(component.put()), 0);
  auto transition = CLIENT_AS(IAAFTransition, component);
  aafPosition_t cut = 0;
  EXPECT_EQ(transition->GetCutPoint(&cut), 0);
  EXPECT_EQ(cut, 100);
  Held<IAAFOperationGroup> dissolve;
  ASSERT_EQ(transition->GetOperationGroup(dissolve.put()), 0);
  aafBoolean_t is_valid = kAAFFalse;
  EXPECT_EQ(dissolve->IsValidTranOperation(&is_valid), 0);
  EXPECT_EQ(is_valid, kAAFTrue);

  ASSERT_EQ(components->NextOne(component.put()), 0);
  gain = CLIENT_AS(IAAFOperationGroup, component);
  ASSERT_EQ(gain->LookupParameter(kAAFParameterDef_Amplitude, parameter.put()), 0);
  auto varying = CLIENT_AS(IAAFVaryingValue, parameter);
  Held<IEnumAAFControlPoints> points;
  Held<IAAFControlPoint> point;
  ASSERT_EQ(varying->GetControlPoints(points.put()), 0);
  std::vector<aafInt32> numerators;
  while (points->NextOne(point.put()) == 0) {
    EXPECT_EQ(point->GetValue(sizeof(value), memory(value), &size), 0);
    numerators.push_back(value.numerator);
  }
  EXPECT_EQ(numerators, (std::vector<aafInt32>{1, 5, 9}));
  EXPECT_EQ(components->NextOne(component.put()), AAFRESULT_NO_MORE_OBJECTS);

  ASSERT_EQ(mob->LookupSlot(1, slot.put()), 0);
  ASSERT_EQ(slot->GetSegment(segment.put()), 0);
  aafTimecode_t timecode{};
  EXPECT_EQ(CLIENT_AS(IAAFTimecode, segment)->GetTimecode(&timecode), 0);
  EXPECT_EQ(timecode.startFrame, 90000);
  EXPECT_EQ(timecode.fps, 25);
  EXPECT_EQ(timecode.drop, kAAFTcNonDrop);
  EXPECT_EQ(mob->LookupSlot(3, slot.put()), AAFRESULT_SLOT_NOT_FOUND);
}

TEST(Composition, ATransitionNeedsNeighboursThatAreLongEnough) {
  File file = client::transient_file();
  register_operation(file, kAAFOperationDef_MonoAudioDissolve, kAAFParameterDef_Level, 2);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  const auto make_transition = [&](aafLength_t length) {
    auto transition = CLIENT_CREATE(file.dictionary, Transition);
    EXPECT_EQ(transition->Initialize(sound, length, length / 2,
                                     make_group(file, kAAFOperationDef_MonoAudioDissolve, length)),
              0);
    return CLIENT_AS(IAAFComponent, transition);
  };
  auto sequence = make_sequence(file);
  EXPECT_EQ(sequence->AppendComponent(make_transition(10)), AAFRESULT_LEADING_TRAN);
  ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, make_filler(file, 100))), 0);
  EXPECT_EQ(sequence->AppendComponent(make_transition(101)), AAFRESULT_INSUFF_TRAN_MATERIAL);
  ASSERT_EQ(sequence->AppendComponent(make_transition(100)), 0);
  EXPECT_EQ(sequence->AppendComponent(make_transition(10)), AAFRESULT_ADJACENT_TRAN);
  EXPECT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, make_filler(file, 99))),
            AAFRESULT_INSUFF_TRAN_MATERIAL);
  ASSERT_EQ(sequence->AppendComponent(CLIENT_AS(IAAFComponent, make_filler(file, 100))), 0);
  aafLength_t length = 0;
  EXPECT_EQ(CLIENT_AS(IAAFComponent, sequence)->GetLength(&length), 0);
  EXPECT_EQ(length, 100);
  ASSERT_EQ(sequence->RemoveComponentAt(2), 0);
  EXPECT_EQ(CLIENT_AS(IAAFComponent, sequence)->GetLength(&length), 0);
  EXPECT_EQ(length, 0);
}

TEST(Composition, DefinitionsMustBeInTheDictionary) {
  File file = client::transient_file();
  auto loose = CLIENT_CREATE(file.dictionary, OperationDef);
  ASSERT_EQ(loose->Initialize(kAAFOperationDef_MonoAudioGain, L"n", L"d"), 0);
  EXPECT_EQ(loose->Initialize(kAAFOperationDef_MonoAudioGain, L"n", L"d"),
            AAFRESULT_ALREADY_INITIALIZED);
  auto group = CLIENT_CREATE(file.dictionary, OperationGroup);
  auto sound = client::data_def(file.dictionary, kAAFDataDef_Sound);
  EXPECT_EQ(group->Initialize(sound, 1, loose), AAFRESULT_OBJECT_NOT_ATTACHED);
  Held<IAAFOperationDef> found;
  EXPECT_EQ(file.dictionary->LookupOperationDef(kAAFOperationDef_MonoAudioGain, found.put()),
            AAFRESULT_NO_MORE_OBJECTS);
  Held<IAAFDataDef> unknown;
  EXPECT_EQ(file.dictionary->LookupDataDef(kAAFOperationDef_MonoAudioGain, unknown.put()),
            AAFRESULT_NO_MORE_OBJECTS);
}

TEST(Composition, FadesCountOnlyWhenTheyAreWhole) {
  File file = client::transient_file();
  auto clip = make_clip(file, {}, 10);
  aafLength_t length = 0;
  aafFadeType_t type = 0;
  aafBoolean_t in_present = 0;
  aafBoolean_t out_present = 0;
  EXPECT_EQ(clip->GetFade(&length, &type, &in_present, &length, &type, &out_present),
            AAFRESULT_PROP_NOT_PRESENT);
  ASSERT_EQ(clip->SetFade(0, kAAFFadeNone, 3, kAAFFadeLinearAmp), 0);
  EXPECT_EQ(clip->GetFade(&length, &type, &in_present, &length, &type, &out_present), 0);
  EXPECT_EQ(in_present, kAAFFalse);
  EXPECT_EQ(out_present, kAAFTrue);
  EXPECT_EQ(clip->GetFade(nullptr, &type, &in_present, &length, &type, &out_present),
            AAFRESULT_NULL_PARAM);
  auto mob = client::create<IAAFCompositionMob>(file.dictionary, AUID_AAFCompositionMob,
                                                IID_IAAFCompositionMob);
  aafDefaultFade_t fade{};
  EXPECT_EQ(mob->GetDefaultFade(&fade), AAFRESULT_PROP_NOT_PRESENT);
  ASSERT_EQ(mob->SetDefaultFade(5, kAAFFadeNone, {25, 1}), 0);
  fade.fadeLength = 99;
  fade.valid = kAAFTrue;
  EXPECT_EQ(mob->GetDefaultFade(&fade), 0);
  EXPECT_EQ(fade.valid, kAAFFalse);
  EXPECT_EQ(fade.fadeLength, 99);  // left alone
}

TEST(Composition, AbsentValuesAreTold) {
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFCompositionMob, IID_IAAFMob);
  wchar_t text[4];
  aafUInt32 number = 0;
  EXPECT_EQ(mob->GetName(text, sizeof(text)), AAFRESULT_PROP_NOT_PRESENT);
  EXPECT_EQ(mob->GetNameBufLen(&number), AAFRESULT_PROP_NOT_PRESENT);
  auto slot =
      client::create<IAAFMobSlot>(file.dictionary, AUID_AAFTimelineMobSlot, IID_IAAFMobSlot);
  EXPECT_EQ(slot->GetPhysicalNum(&number), AAFRESULT_PROP_NOT_PRESENT);
  auto clip = CLIENT_CREATE(file.dictionary, SourceClip);
  aafLength_t length = 0;
  EXPECT_EQ(CLIENT_AS(IAAFComponent, clip)->GetLength(&length), AAFRESULT_PROP_NOT_PRESENT);
  Held<IAAFMob> found;
  EXPECT_EQ(make_clip(file, {{}, 1, 0}, 1)->ResolveRef(found.put()), AAFRESULT_MOB_NOT_FOUND);
}

TEST(Composition, CommentsAndTaggedValues) {
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  wchar_t category[] = L"Scene";
  ASSERT_EQ(mob->AppendComment(category, L"12b"), 0);
  aafUInt32 count = 0;
  EXPECT_EQ(mob->CountComments(&count), 0);
  EXPECT_EQ(count, 1u);
  Held<IEnumAAFTaggedValues> comments;
  Held<IAAFTaggedValue> comment;
  ASSERT_EQ(mob->GetComments(comments.put()), 0);
  ASSERT_EQ(comments->NextOne(comment.put()), 0);
  EXPECT_EQ(client::name_of(comment.get()), L"Scene");
  aafUInt32 size = 0;
  EXPECT_EQ(comment->GetValueBufLen(&size), 0);
  ASSERT_EQ(size, 4 * sizeof(wchar_t));
  wchar_t text[4];
  EXPECT_EQ(comment->GetValue(size, reinterpret_cast<aafDataBuffer_t>(text), &size), 0);
  EXPECT_STREQ(text, L"12b");
  EXPECT_EQ(mob->RemoveComment(comment), 0);
  EXPECT_EQ(mob->RemoveComment(comment), AAFRESULT_OBJECT_NOT_FOUND);
}

TEST(Composition, MobsAreFoundByManyCriteria) {
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  auto composition = client::create<IAAFMob>(file.dictionary, AUID_AAFCompositionMob, IID_IAAFMob);
  ASSERT_EQ(composition->SetName(L"the one"), 0);
  ASSERT_EQ(CLIENT_AS(IAAFMob2, composition)->SetUsageCode(kAAFUsage_TopLevel), 0);
  ASSERT_EQ(file.header->AddMob(mob), 0);
  ASSERT_EQ(file.header->AddMob(composition), 0);
  const auto found = [&](aafSearchCrit_t criterion) {
    Held<IEnumAAFMobs> mobs;
    Held<IAAFMob> first;
    Held<IAAFMob> second;
    EXPECT_EQ(file.header->GetMobs(&criterion, mobs.put()), 0);
    if (mobs->NextOne(first.put()) < 0) return false;
    return first.get() == composition.get() &&
           mobs->NextOne(second.put()) == AAFRESULT_NO_MORE_OBJECTS;
  };
  aafSearchCrit_t criterion{};
  criterion.searchTag = kAAFByName;
  wchar_t name[] = L"the one";
  criterion.tags.name = name;
  EXPECT_TRUE(found(criterion));
  criterion.searchTag = kAAFByUsageCode;
  criterion.tags.usageCode = kAAFUsage_TopLevel;
  EXPECT_TRUE(found(criterion));
  criterion.searchTag = kAAFByClass;
  criterion.tags.objClass = AUID_AAFCompositionMob;
  EXPECT_TRUE(found(criterion));
  criterion.searchTag = kAAFByMobID;
  criterion.tags.mobID = mob_id_of(composition);
  EXPECT_TRUE(found(criterion));
  aafNumSlots_t count = 0;
  EXPECT_EQ(file.header->CountMobs(kAAFMasterMob, &count), 0);
  EXPECT_EQ(count, 1u);
  ASSERT_EQ(file.header->RemoveMob(mob), 0);
  EXPECT_EQ(file.header->CountMobs(kAAFAllMob, &count), 0);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(file.header->RemoveMob(mob), AAFRESULT_MOB_NOT_FOUND);
  EXPECT_EQ(file.header->AddMob(mob), 0);
  aafMobID_t other{};
  other.material.Data1 = 5;
  EXPECT_EQ(mob->SetMobID(other), 0);
  Held<IAAFMob> again;
  EXPECT_EQ(file.header->LookupMob(other, again.put()), 0);
  EXPECT_EQ(again.get(), mob.get());
  EXPECT_EQ(composition->SetMobID(other), AAFRESULT_DUPLICATE_MOBID);
}

Held<IAAFOperationDef> registered_operation(File& file, aafUInt32 number) {
  auto operation = CLIENT_CREATE(file.dictionary, OperationDef);
  EXPECT_EQ(operation->Initialize({number, 0, 0, {}}, L"operation", L""), 0);
  EXPECT_EQ(file.dictionary->RegisterOperationDef(operation), 0);
  return operation;
}

// Each by the first word of its identifier.
std::vector<aafUInt32> degrade_to(IAAFOperationDef* operation) {
  std::vector<aafUInt32> numbers;
  Held<IEnumAAFOperationDefs> all;
  Held<IAAFOperationDef> each;
  EXPECT_EQ(operation->GetDegradeToOperations(all.put()), 0);
  while (all->NextOne(each.put()) == 0) {
    aafUID_t id{};
    EXPECT_EQ(CLIENT_AS(IAAFDefObject, each)->GetAUID(&id), 0);
    numbers.push_back(id.Data1);
  }
  return numbers;
}

TEST(Composition, OperationsHaveOthersToFallBackOn) {
  File file = client::transient_file();
  auto operation = registered_operation(file, 9);
  std::vector<Held<IAAFOperationDef>> others;
  for (aafUInt32 i = 0; i < 4; ++i)
    others.push_back(registered_operation(file, i));
  using Numbers = std::vector<aafUInt32>;
  EXPECT_EQ(operation->AppendDegradeToOperation(others[2]), 0);
  EXPECT_EQ(operation->PrependDegradeToOperation(others[0]), 0);
  EXPECT_EQ(operation->InsertDegradeToOperationAt(1, others[1]), 0);
  EXPECT_EQ(operation->InsertDegradeToOperationAt(3, others[3]), 0);
  EXPECT_EQ(degrade_to(operation), (Numbers{0, 1, 2, 3}));
  EXPECT_EQ(operation->InsertDegradeToOperationAt(5, operation), AAFRESULT_BADINDEX);
  EXPECT_EQ(operation->PrependDegradeToOperation(others[3]), AAFRESULT_OBJECT_ALREADY_ATTACHED);
  EXPECT_EQ(operation->PrependDegradeToOperation(nullptr), AAFRESULT_NULL_PARAM);
  EXPECT_EQ(operation->RemoveDegradeToOperationAt(4), AAFRESULT_BADINDEX);
  EXPECT_EQ(operation->RemoveDegradeToOperationAt(1), 0);
  EXPECT_EQ(degrade_to(operation), (Numbers{0, 2, 3}));
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(operation->RemoveDegradeToOperationAt(0), 0);
  EXPECT_EQ(degrade_to(operation), Numbers{});
  EXPECT_EQ(operation->RemoveDegradeToOperationAt(0), AAFRESULT_BADINDEX);
}

}  // namespace
