#include "aaf/export_objects.h"

#include "aafobj/api/aaf_well_known_ids.h"

namespace aaf {

ObjectFactory::ObjectFactory(IAAFHeader* header) {
  if (header->GetDictionary(m_dictionary.put()) != 0 || !m_dictionary) return;
  if (m_dictionary->LookupDataDef(kAAFDataDef_Sound, m_sound.put()) != 0) m_sound.reset();
}

IAAFClassDef* ObjectFactory::class_def(const aafUID_t& id) {
  AafRef<IAAFClassDef>& definition = m_classes[id.Data3];
  if (!definition && m_dictionary->LookupClassDef(id, definition.put()) != 0) definition.reset();
  return definition.get();
}

}  // namespace aaf
