#include "aafobj/objects/built_in_definitions.h"

#include <algorithm>

#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/model/meta_dictionary.h"
#include "aafobj/model/stored_values.h"

namespace aafobj {
namespace {

constexpr std::uint16_t data_set = pid::Dictionary_DataDefinitions;
constexpr std::uint16_t container_set = pid::Dictionary_ContainerDefinitions;
constexpr std::uint16_t codec_set = pid::Dictionary_CodecDefinitions;
constexpr std::uint16_t interpolation_set = pid::Dictionary_InterpolationDefinitions;

// set, identifier, name, description
constexpr BuiltInDefinition definitions[] = {
    {data_set, kAAFDataDef_Picture, u"Picture", u"Picture data"},
    {data_set, kAAFDataDef_LegacyPicture, u"LegacyPicture", u"Picture data"},
    {data_set, kAAFDataDef_Matte, u"Matte", u"Matte data"},
    {data_set, kAAFDataDef_PictureWithMatte, u"PictureWithMatte", u"Picture with matte data"},
    {data_set, kAAFDataDef_Sound, u"Sound", u"Sound data"},
    {data_set, kAAFDataDef_LegacySound, u"LegacySound", u"Sound data"},
    {data_set, kAAFDataDef_Timecode, u"Timecode", u"Timecode data"},
    {data_set, kAAFDataDef_LegacyTimecode, u"LegacyTimecode", u"Timecode data"},
    {data_set, kAAFDataDef_Edgecode, u"Edgecode", u"Edge code data"},
    {data_set, kAAFDataDef_DescriptiveMetadata, u"DescriptiveMetadata", u"Descriptive metadata"},
    {data_set, kAAFDataDef_Auxiliary, u"Auxiliary", u"Auxiliary data"},
    {data_set, kAAFDataDef_Unknown, u"Unknown", u"Unknown data"},
    {container_set, kAAFContainerDef_AAF, u"AAF Container", u"Essence is in an AAF file."},
    {container_set, kAAFContainerDef_External, u"Raw file Container",
     u"Essence is in a non-container file."},
    {container_set, kAAFContainerDef_OMF, u"OMF Container", u"Essence is in an OMF file."},
    {container_set, kAAFContainerDef_AAFKLV, u"AAF KLV Container",
     u"Essence is in an AAF file in KLV form."},
    {codec_set, kAAFCodecDef_WAVE, u"WAVE Codec", u"Handles RIFF WAVE data."},
    {codec_set, kAAFCodecDef_AIFC, u"AIFC Codec", u"Handles RIFF AIFC data."},
    {codec_set, kAAFCodecDef_PCM, u"PCM Codec", u"Handles raw PCM data."},
    {interpolation_set, kAAFInterpolationDef_None, u"NoInterp", u"No interpolation"},
    {interpolation_set, kAAFInterpolationDef_Linear, u"LinearInterp", u"Linear interpolation"},
    {interpolation_set, kAAFInterpolationDef_Constant, u"ConstantInterp",
     u"Constant interpolation"},
};

ClassIndex class_in(std::uint16_t set) {
  switch (set) {
    case data_set:
      return ClassIndex::DataDefinition;
    case container_set:
      return ClassIndex::ContainerDefinition;
    case codec_set:
      return ClassIndex::CodecDefinition;
    default:
      return ClassIndex::InterpolationDefinition;
  }
}

aafUID_t descriptor_class(const aafUID_t& codec) {
  if (codec == kAAFCodecDef_WAVE) return AUID_AAFWAVEDescriptor;
  if (codec == kAAFCodecDef_AIFC) return AUID_AAFAIFCDescriptor;
  return AUID_AAFPCMDescriptor;
}

AAFRESULT target_of_data(ObjectFile& file, const aafUID_t& id, WeakTarget& target) {
  StoredObject* dictionary = nullptr;
  StoredObject* object = nullptr;
  if (const AAFRESULT r = file.dictionary(dictionary); r < 0) return r;
  const AAFRESULT there = dictionary->find_element(data_set, StoredKey(id), object);
  if (there == AAFRESULT_OBJECT_NOT_FOUND) {
    const AAFRESULT r = add_built_in(file, *find_built_in(data_set, id), object);
    if (r < 0) return r;
  } else if (there < 0) {
    return there;
  }
  return file.target_to(*object, target);
}

// Sound, in its two forms, and the class of the descriptors that the codec makes.
AAFRESULT add_codec_parts(ObjectFile& file, StoredObject& codec, const aafUID_t& id) {
  WeakTarget cls;
  WeakTarget kinds[2];
  if (const AAFRESULT r = target_of_class(file, descriptor_class(id), cls); r < 0) return r;
  if (const AAFRESULT r = codec.set_weak(pid::CodecDefinition_FileDescriptorClass, cls); r < 0) {
    return r;
  }
  if (const AAFRESULT r = target_of_data(file, kAAFDataDef_Sound, kinds[0]); r < 0) return r;
  if (const AAFRESULT r = target_of_data(file, kAAFDataDef_LegacySound, kinds[1]); r < 0) return r;
  return codec.set_weak_list(pid::CodecDefinition_DataDefinitions, kinds);
}

}  // namespace

const BuiltInDefinition* find_built_in(std::uint16_t set, const aafUID_t& id) {
  const auto at = std::find_if(std::begin(definitions), std::end(definitions),
                               [&](const auto& d) { return d.set == set && d.identifier == id; });
  return at == std::end(definitions) ? nullptr : at;
}

AAFRESULT add_built_in(ObjectFile& file, const BuiltInDefinition& definition,
                       StoredObject*& object) {
  StoredObject* dictionary = nullptr;
  StoredObject* made = nullptr;
  if (const AAFRESULT r = file.dictionary(dictionary); r < 0) return r;
  if (const AAFRESULT r = file.create_object(class_in(definition.set), made); r < 0) return r;
  const AAFRESULT steps[] = {
      set_value(*made, pid::DefinitionObject_Identification, definition.identifier),
      set_text(*made, pid::DefinitionObject_Name, definition.name),
      set_text(*made, pid::DefinitionObject_Description, definition.description),
      definition.set == container_set
          ? set_value(*made, pid::ContainerDefinition_EssenceIsIdentified,
                      static_cast<std::uint8_t>(definition.identifier == kAAFContainerDef_AAF))
          : AAFRESULT_SUCCESS,
      definition.set == codec_set ? add_codec_parts(file, *made, definition.identifier)
                                  : AAFRESULT_SUCCESS,
      dictionary->insert_keyed(definition.set, StoredKey(definition.identifier), *made)};
  for (const AAFRESULT r : steps) {
    if (r < 0) return r;
  }
  object = made;
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
