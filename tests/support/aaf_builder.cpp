#include "tests/support/aaf_builder.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_text.h"
#include "aafobj/api/aaf_class_ids.h"

namespace support {

namespace {

// The definition of an 8-byte rational.
constexpr aafUID_t rational_type = {
    0x03010100, 0x0000, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x01}};
constexpr aafUID_t operational_pattern = {
    0x01020203, 0x0000, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05}};
constexpr aafUID_t component_length = {
    0x07020201, 0x0103, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x02}};

void check(HRESULT result, const char* what) {
  if (result >= 0) return;
  char number[16];
  std::snprintf(number, sizeof number, ": 0x%08X", static_cast<unsigned>(result));
  throw std::runtime_error(std::string(what) + number);
}
#define AAF_CHECK(call) check(call, #call)

template <class Interface>
AafRef<Interface> need(AafRef<Interface> reference) {
  if (!reference) throw std::runtime_error("an AAF object lacks an interface");
  return reference;
}
#define AAF_NEED(Interface, pointer) need(AAF_QUERY(Interface, pointer))

bool same(const aafUID_t& a, const aafUID_t& b) {
  return a.Data1 == b.Data1 && a.Data2 == b.Data2 && a.Data3 == b.Data3 &&
         std::equal(std::begin(a.Data4), std::end(a.Data4), std::begin(b.Data4));
}

AafPart part_of(const aafUID_t& cls, std::optional<aafLength_t> length) {
  AafPart part;
  part.cls = cls;
  part.length = length;
  return part;
}

aafDataBuffer_t memory(aafRational_t& value) {
  return reinterpret_cast<aafDataBuffer_t>(&value);
}

const aafUID_t& descriptor_class(AafSource::Essence essence) {
  switch (essence) {
    case AafSource::Essence::aifc:
      return AUID_AAFAIFCDescriptor;
    case AafSource::Essence::pcm:
      return AUID_AAFPCMDescriptor;
    case AafSource::Essence::picture:
      return AUID_AAFCDCIDescriptor;
    case AafSource::Essence::tape:
      return AUID_AAFTapeDescriptor;
    case AafSource::Essence::import_only:
      return AUID_AAFImportDescriptor;
    default:
      return AUID_AAFWAVEDescriptor;
  }
}

}  // namespace

AafPart AafPart::with_fades(const AafFades& value) const {
  AafPart part = *this;
  part.fades = value;
  return part;
}

AafPart AafPart::with_data(const aafUID_t& definition) const {
  AafPart part = *this;
  part.data = definition;
  return part;
}

AafPart AafPart::with_length(aafLength_t value) const {
  AafPart part = *this;
  part.length = value;
  return part;
}

AafPart AafPart::without_length() const {
  AafPart part = *this;
  part.length.reset();
  part.length_removed = true;
  return part;
}

AafPart clip(const aafMobID_t& mob, aafLength_t length, aafPosition_t start, aafSlotID_t slot) {
  AafPart part = part_of(AUID_AAFSourceClip, length);
  part.source = {mob, slot, start};
  return part;
}

AafPart clip(const AafTake& take, aafLength_t length, aafPosition_t start) {
  return clip(take.master, length, start);
}

AafPart filler(aafLength_t length) {
  return part_of(AUID_AAFFiller, length);
}

AafPart sequence(std::vector<AafPart> parts) {
  AafPart part = part_of(AUID_AAFSequence, std::nullopt);
  part.parts = std::move(parts);
  return part;
}

AafPart transition(aafLength_t length) {
  return part_of(AUID_AAFTransition, length);
}

AafPart transition(aafLength_t length, const aafUID_t& operation,
                   std::vector<AafParameter> parameters) {
  AafPart part = transition(length);
  part.operation = operation;
  part.parameters = std::move(parameters);
  return part;
}

AafPart dissolve(aafLength_t length, std::vector<AafPoint> incoming) {
  return transition(length, kAAFOperationDef_MonoAudioDissolve,
                    {varying(kAAFParameterDef_Level, std::move(incoming))});
}

AafPart dissolve(aafLength_t length, std::vector<AafPoint> outgoing,
                 std::vector<AafPoint> incoming) {
  return transition(length, kAAFOperationDef_TwoParameterMonoAudioDissolve,
                    {varying(kAAFParameterDef_OutgoingLevel, std::move(outgoing)),
                     varying(kAAFParameterDef_IncomingLevel, std::move(incoming))});
}

AafPart group(aafLength_t length, const aafUID_t& operation, std::vector<AafPart> inputs,
              std::vector<AafParameter> parameters) {
  AafPart part = part_of(AUID_AAFOperationGroup, length);
  part.operation = operation;
  part.parts = std::move(inputs);
  part.parameters = std::move(parameters);
  return part;
}

AafPart gain(aafLength_t length, aafRational_t value, AafPart input) {
  return group(length, kAAFOperationDef_MonoAudioGain, {std::move(input)},
               {constant(kAAFParameterDef_Amplitude, value)});
}

AafPart gain(aafLength_t length, std::vector<AafPoint> points, AafPart input) {
  return group(length, kAAFOperationDef_MonoAudioGain, {std::move(input)},
               {varying(kAAFParameterDef_Amplitude, std::move(points))});
}

AafPart pan(aafLength_t length, aafRational_t value, AafPart input) {
  return group(length, kAAFOperationDef_MonoAudioPan, {std::move(input)},
               {constant(kAAFParameterDef_Pan, value)});
}

AafPart pan(aafLength_t length, std::vector<AafPoint> points, AafPart input) {
  return group(length, kAAFOperationDef_MonoAudioPan, {std::move(input)},
               {varying(kAAFParameterDef_Pan, std::move(points))});
}

AafPart scope(aafLength_t length, std::vector<AafPart> segments) {
  AafPart part = part_of(AUID_AAFNestedScope, length);
  part.parts = std::move(segments);
  return part;
}

AafPart scope_reference(aafLength_t length) {
  return part_of(AUID_AAFScopeReference, length);
}

AafPart selector(aafLength_t length) {
  return part_of(AUID_AAFSelector, length);
}

AafPart selector(aafLength_t length, AafPart selected) {
  AafPart part = selector(length);
  part.parts.push_back(std::move(selected));
  return part;
}

AafPart essence_group(aafLength_t length, std::vector<AafPart> choices) {
  AafPart part = part_of(AUID_AAFEssenceGroup, length);
  part.parts = std::move(choices);
  return part;
}

AafPart pulldown(aafLength_t length, AafPart input) {
  AafPart part = part_of(AUID_AAFPulldown, length);
  part.parts.push_back(std::move(input));
  return part;
}

AafParameter constant(const aafUID_t& id, aafRational_t value) {
  return {.id = id, .constant = value};
}

AafParameter varying(const aafUID_t& id, std::vector<AafPoint> points) {
  return {.id = id, .points = std::move(points)};
}

AafSlot sound(std::vector<AafPart> parts, aafRational_t rate) {
  return {.segment = sequence(std::move(parts)), .rate = rate};
}

AafSlot timecode(aafFrameOffset_t start, aafUInt16 frames_per_second, aafDropType_t drop,
                 aafUInt32 physical) {
  AafPart part = part_of(AUID_AAFTimecode, 1'000'000);
  part.data = kAAFDataDef_Timecode;
  part.timecode = {start, drop, frames_per_second};
  return {.segment = part, .rate = {frames_per_second, 1}, .physical = physical};
}

AafBuilder::AafBuilder(const std::string& path, const AafProduct& product) {
  AafProduct names = product;
  aafProductVersion_t version = {1, 2, 3, 4, kAAFVersionReleased};
  aafProductIdentification_t identification{};
  identification.companyName = names.company.data();
  identification.productName = names.product.data();
  identification.productVersionString = names.version.data();
  identification.productID = {0x1e5700d0, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
  identification.productVersion = &version;
  const aaf_string name = aaf_from_text(text_from_utf8(path));
  AAF_CHECK(AAFDLL::AAFFileOpenNewModify(name.c_str(), 0, &identification, file_.put()));
  AAF_CHECK(file_->GetHeader(header_.put()));
  AAF_CHECK(header_->GetDictionary(dictionary_.put()));
}

AafBuilder::~AafBuilder() {
  header_.reset();
  dictionary_.reset();
  if (file_) static_cast<void>(file_->Close());
}

void AafBuilder::save() {
  AAF_CHECK(file_->Save());
  header_.reset();
  dictionary_.reset();
  AAF_CHECK(file_->Close());
  file_.reset();
}

aafMobID_t AafBuilder::new_id() {
  aafMobID_t id = {{0x06, 0x0a, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x0f, 0x00},
                   0x13,
                   0,
                   0,
                   0,
                   {++mobs_, 7, 9, {1, 2, 3, 4, 5, 6, 7, 8}}};
  return id;
}

template <class Interface>
AafRef<Interface> AafBuilder::create(const aafUID_t& cls, const IID& iid) {
  AafRef<IUnknown> made;
  AAF_CHECK(dictionary_->CreateInstance(cls, iid, made.put()));
  return need(aaf_query<Interface>(made.get(), iid));
}
#define AAF_CREATE(Name) create<IAAF##Name>(AUID_AAF##Name, IID_IAAF##Name)

AafRef<IAAFDataDef> AafBuilder::data_definition(const aafUID_t& id) {
  AafRef<IAAFDataDef> found;
  if (dictionary_->LookupDataDef(id, found.put()) == 0) return found;
  found = AAF_CREATE(DataDef);
  AAF_CHECK(found->Initialize(id, L"data", L"data"));
  AAF_CHECK(dictionary_->RegisterDataDef(found.get()));
  return found;
}

AafRef<IAAFOperationDef> AafBuilder::operation_definition(const aafUID_t& id) {
  AafRef<IAAFOperationDef> found;
  if (dictionary_->LookupOperationDef(id, found.put()) == 0) return found;
  found = AAF_CREATE(OperationDef);
  AAF_CHECK(found->Initialize(id, L"operation", L"operation"));
  AAF_CHECK(found->SetDataDef(data_definition(kAAFDataDef_Sound).get()));
  AAF_CHECK(found->SetIsTimeWarp(kAAFFalse));
  AAF_CHECK(found->SetNumberInputs(1));
  AAF_CHECK(dictionary_->RegisterOperationDef(found.get()));
  return found;
}

AafRef<IAAFParameterDef> AafBuilder::parameter_definition(const aafUID_t& id) {
  AafRef<IAAFParameterDef> found;
  if (dictionary_->LookupParameterDef(id, found.put()) == 0) return found;
  AafRef<IAAFTypeDef> rational;
  AAF_CHECK(dictionary_->LookupTypeDef(rational_type, rational.put()));
  found = AAF_CREATE(ParameterDef);
  AAF_CHECK(found->Initialize(id, L"parameter", L"parameter", rational.get()));
  AAF_CHECK(dictionary_->RegisterParameterDef(found.get()));
  return found;
}

AafRef<IAAFComponent> AafBuilder::make(const AafPart& part) {
  auto component = create<IAAFComponent>(part.cls, IID_IAAFComponent);
  AAF_CHECK(component->SetDataDef(data_definition(part.data).get()));
  fill(*component.get(), part);
  if (part.length) AAF_CHECK(component->SetLength(*part.length));
  if (part.length_removed && same(part.cls, AUID_AAFSequence) && !part.parts.empty()) {
    AafRef<IAAFClassDef> cls;
    AafRef<IAAFPropertyDef> property;
    AAF_CHECK(dictionary_->LookupClassDef(AUID_AAFComponent, cls.put()));
    AAF_CHECK(cls->LookupPropertyDef(component_length, property.put()));
    AAF_CHECK(AAF_NEED(IAAFObject, component.get())->RemoveOptionalProperty(property.get()));
  }
  return component;
}

AafRef<IAAFSegment> AafBuilder::make_segment(const AafPart& part) {
  return AAF_NEED(IAAFSegment, make(part).get());
}

void AafBuilder::fill(IAAFComponent& component, const AafPart& part) {
  if (same(part.cls, AUID_AAFSourceClip)) return fill_clip(component, part);
  if (same(part.cls, AUID_AAFSequence)) return fill_sequence(component, part);
  if (same(part.cls, AUID_AAFOperationGroup)) return fill_group(component, part);
  if (same(part.cls, AUID_AAFTransition)) return fill_transition(component, part);
  if (same(part.cls, AUID_AAFTimecode)) {
    aafTimecode_t value = part.timecode;
    AAF_CHECK(AAF_NEED(IAAFTimecode, &component)->SetTimecode(&value));
  }
  if (same(part.cls, AUID_AAFScopeReference)) {
    const auto reference = AAF_NEED(IAAFScopeReference, &component);
    AAF_CHECK(reference->Create(0, 1));
  }
  fill_holder(component, part);
}

void AafBuilder::fill_clip(IAAFComponent& component, const AafPart& part) {
  const auto made = AAF_NEED(IAAFSourceClip, &component);
  AAF_CHECK(made->SetSourceReference(part.source));
  if (part.fades) {
    AAF_CHECK(made->SetFade(part.fades->in_length, part.fades->in_type, part.fades->out_length,
                            part.fades->out_type));
  }
}

void AafBuilder::fill_sequence(IAAFComponent& component, const AafPart& part) {
  const auto made = AAF_NEED(IAAFSequence, &component);
  aafUInt32 place = 0;
  for (const AafPart& child : part.parts)
    AAF_CHECK(made->InsertComponentAt(place++, make(child).get()));
  if (part.parts.empty() && !part.length_removed) AAF_CHECK(component.SetLength(0));
}

void AafBuilder::fill_group(IAAFComponent& component, const AafPart& part) {
  const auto made = AAF_NEED(IAAFOperationGroup, &component);
  if (part.operation)
    AAF_CHECK(made->SetOperationDefinition(operation_definition(*part.operation).get()));
  for (const AafParameter& parameter : part.parameters)
    AAF_CHECK(made->AddParameter(make_parameter(parameter).get()));
  for (const AafPart& input : part.parts)
    AAF_CHECK(made->AppendInputSegment(make_segment(input).get()));
}

void AafBuilder::fill_transition(IAAFComponent& component, const AafPart& part) {
  const auto made = AAF_NEED(IAAFTransition, &component);
  AAF_CHECK(made->SetCutPoint(part.length.value_or(0) / 2));
  if (!part.operation) return;
  const AafPart own = group(part.length.value_or(0), *part.operation, {}, part.parameters);
  AAF_CHECK(made->SetOperationGroup(AAF_NEED(IAAFOperationGroup, make(own).get()).get()));
}

void AafBuilder::fill_holder(IAAFComponent& component, const AafPart& part) {
  const auto as_scope = AAF_QUERY(IAAFNestedScope, &component);
  const auto as_selector = AAF_QUERY(IAAFSelector, &component);
  const auto as_choices = AAF_QUERY(IAAFEssenceGroup, &component);
  const auto as_pulldown = AAF_QUERY(IAAFPulldown, &component);
  for (const AafPart& child : part.parts) {
    const auto segment = make_segment(child);
    if (as_scope) AAF_CHECK(as_scope->AppendSegment(segment.get()));
    if (as_selector) AAF_CHECK(as_selector->SetSelectedSegment(segment.get()));
    if (as_choices) AAF_CHECK(as_choices->AppendChoice(segment.get()));
    if (as_pulldown) AAF_CHECK(as_pulldown->SetInputSegment(segment.get()));
  }
}

AafRef<IAAFParameter> AafBuilder::make_parameter(const AafParameter& parameter) {
  const auto definition = parameter_definition(parameter.id);
  if (parameter.constant) {
    aafRational_t value = *parameter.constant;
    const auto made = AAF_CREATE(ConstantValue);
    AAF_CHECK(made->Initialize(definition.get(), sizeof value, memory(value)));
    return AAF_NEED(IAAFParameter, made.get());
  }
  AafRef<IAAFInterpolationDef> linear;
  AAF_CHECK(dictionary_->LookupInterpolationDef(kAAFInterpolationDef_Linear, linear.put()));
  const auto made = AAF_CREATE(VaryingValue);
  AAF_CHECK(made->Initialize(definition.get(), linear.get()));
  add_points(*made.get(), parameter);
  return AAF_NEED(IAAFParameter, made.get());
}

void AafBuilder::add_points(IAAFVaryingValue& varying, const AafParameter& parameter) {
  for (const AafPoint& point : parameter.points) {
    const auto made = AAF_CREATE(ControlPoint);
    aafRational_t value = point.value;
    std::vector<aafUInt8> bytes = point.bytes;
    const bool is_value = bytes.empty();
    AAF_CHECK(made->Initialize(
        &varying, point.time,
        is_value ? static_cast<aafUInt32>(sizeof value) : static_cast<aafUInt32>(bytes.size()),
        is_value ? memory(value) : bytes.data()));
    AAF_CHECK(varying.AddControlPoint(made.get()));
  }
}

AafRef<IAAFMob> AafBuilder::make_mob(const aafUID_t& cls, const std::optional<std::wstring>& name,
                                     const aafMobID_t& id) {
  auto mob = create<IAAFMob>(cls, IID_IAAFMob);
  AAF_CHECK(mob->SetMobID(id));
  if (name) AAF_CHECK(mob->SetName(name->c_str()));
  AAF_CHECK(header_->AddMob(mob.get()));
  return mob;
}

void AafBuilder::add_slot(IAAFMob& mob, const AafSlot& slot, std::size_t place) {
  const aafUID_t& cls = slot.kind == AafSlot::Kind::timeline ? AUID_AAFTimelineMobSlot
                        : slot.kind == AafSlot::Kind::event  ? AUID_AAFEventMobSlot
                                                             : AUID_AAFStaticMobSlot;
  const auto made = create<IAAFMobSlot>(cls, IID_IAAFMobSlot);
  AAF_CHECK(made->SetSlotID(slot.id != 0 ? slot.id : static_cast<aafSlotID_t>(place + 1)));
  AAF_CHECK(made->SetName(L"slot"));
  if (slot.physical != 0) AAF_CHECK(made->SetPhysicalNum(slot.physical));
  if (!slot.empty) AAF_CHECK(made->SetSegment(make_segment(slot.segment).get()));
  if (slot.kind == AafSlot::Kind::timeline) {
    const auto timeline = AAF_NEED(IAAFTimelineMobSlot2, made.get());
    AAF_CHECK(timeline->SetEditRate(slot.rate));
    AAF_CHECK(timeline->SetOrigin(slot.origin));
    if (slot.mark_in) AAF_CHECK(timeline->SetMarkIn(*slot.mark_in));
    if (slot.mark_out) AAF_CHECK(timeline->SetMarkOut(*slot.mark_out));
  }
  if (slot.kind == AafSlot::Kind::event) {
    aafRational_t rate = slot.rate;
    AAF_CHECK(AAF_NEED(IAAFEventMobSlot, made.get())->SetEditRate(&rate));
  }
  AAF_CHECK(mob.AppendSlot(made.get()));
}

void AafBuilder::describe(IAAFMob& mob, const AafSource& source) {
  const auto descriptor =
      create<IAAFEssenceDescriptor>(descriptor_class(source.essence), IID_IAAFEssenceDescriptor);
  if (const auto file = AAF_QUERY(IAAFFileDescriptor, descriptor.get())) {
    AAF_CHECK(file->SetSampleRate(source.sample_rate));
    AAF_CHECK(file->SetLength(source.length));
  }
  std::vector<aafUInt8> summary = source.summary;
  const auto size = static_cast<aafUInt32>(summary.size());
  if (size > 0) {
    if (const auto wave = AAF_QUERY(IAAFWAVEDescriptor, descriptor.get()))
      AAF_CHECK(wave->SetSummary(size, summary.data()));
    if (const auto aifc = AAF_QUERY(IAAFAIFCDescriptor, descriptor.get()))
      AAF_CHECK(aifc->SetSummary(size, summary.data()));
  }
  if (source.leading_text_locator) {
    const auto locator = create<IAAFLocator>(AUID_AAFTextLocator, IID_IAAFLocator);
    AAF_CHECK(descriptor->AppendLocator(locator.get()));
  }
  for (const std::wstring& path : source.locators) {
    const auto locator = create<IAAFLocator>(AUID_AAFNetworkLocator, IID_IAAFLocator);
    AAF_CHECK(locator->SetPath(path.c_str()));
    AAF_CHECK(descriptor->AppendLocator(locator.get()));
  }
  AAF_CHECK(AAF_NEED(IAAFSourceMob, &mob)->SetEssenceDescriptor(descriptor.get()));
}

AafTake AafBuilder::source(const AafSource& source) {
  AafTake take;
  take.master = new_id();
  const aafRational_t rate = source.slot_rate.value_or(source.sample_rate);
  if (source.essence != AafSource::Essence::none) {
    take.file = source.file_id ? *source.file_id : new_id();
    const auto mob = make_mob(AUID_AAFSourceMob, L"source", take.file);
    add_slot(*mob.get(), {.segment = clip(aafMobID_t{}, source.length, 0, 0), .rate = rate}, 0);
    describe(*mob.get(), source);
  }
  const auto master = make_mob(AUID_AAFMasterMob, source.name, take.master);
  add_slot(*master.get(), {.segment = clip(take.file, source.length), .rate = rate}, 0);
  return take;
}

aafMobID_t AafBuilder::composition(const AafComposition& composition) {
  const aafMobID_t id = composition.id ? *composition.id : new_id();
  const auto mob = make_mob(AUID_AAFCompositionMob, composition.name, id);
  if (composition.usage) AAF_CHECK(AAF_NEED(IAAFMob2, mob.get())->SetUsageCode(*composition.usage));
  if (composition.default_fade) {
    const AafDefaultFade& fade = *composition.default_fade;
    AAF_CHECK(
        AAF_NEED(IAAFCompositionMob, mob.get())->SetDefaultFade(fade.length, fade.type, fade.unit));
  }
  std::size_t place = 0;
  for (const AafSlot& slot : composition.slots)
    add_slot(*mob.get(), slot, place++);
  return id;
}

void AafBuilder::essence(const aafMobID_t& mob, std::string_view bytes) {
  AafRef<IAAFMob> found;
  AAF_CHECK(header_->LookupMob(mob, found.put()));
  const auto data = AAF_CREATE(EssenceData);
  AAF_CHECK(data->Initialize(AAF_NEED(IAAFSourceMob, found.get()).get()));
  AAF_CHECK(header_->AddEssenceData(data.get()));
  // Never without a buffer: data of no bytes is data.
  std::vector<aafUInt8> copy(bytes.begin(), bytes.end());
  copy.push_back(0);
  aafUInt32 written = 0;
  AAF_CHECK(data->Write(static_cast<aafUInt32>(bytes.size()), copy.data(), &written));
}

void AafBuilder::identify(const AafProduct& product) {
  const auto identification = AAF_CREATE(Identification);
  AAF_CHECK(identification->Initialize(product.company.c_str(), product.product.c_str(),
                                       product.version.c_str(), aafUID_t{1, 2, 3, {}}));
  AAF_CHECK(header_->AppendIdentification(identification.get()));
}

void AafBuilder::set_operational_pattern(const aafUID_t& pattern) {
  aafUID_t copy = pattern;
  AafRef<IAAFClassDef> cls;
  AafRef<IAAFPropertyDef> property;
  AafRef<IAAFTypeDef> type;
  AafRef<IAAFPropertyValue> value;
  AAF_CHECK(dictionary_->LookupClassDef(AUID_AAFHeader, cls.put()));
  AAF_CHECK(cls->LookupPropertyDef(operational_pattern, property.put()));
  AAF_CHECK(property->GetTypeDef(type.put()));
  AAF_CHECK(
      AAF_NEED(IAAFTypeDefRecord, type.get())
          ->CreateValueFromStruct(reinterpret_cast<aafMemPtr_t>(&copy), sizeof copy, value.put()));
  AAF_CHECK(AAF_NEED(IAAFObject, header_.get())->SetPropertyValue(property.get(), value.get()));
}

}  // namespace support
