// Makes the objects of a file that is being written.
#pragma once

#include <map>

#include "aaf/aaf_ref.h"
#include "aafobj/api/aaf_class_ids.h"

namespace aaf {

class ObjectFactory {
 public:
  // Holds the dictionary of the header, and its definition of sound.
  explicit ObjectFactory(IAAFHeader* header);
  // Whether both are there.
  [[nodiscard]] bool is_ready() const { return static_cast<bool>(m_sound); }

  [[nodiscard]] IAAFDictionary* dictionary() const { return m_dictionary.get(); }
  [[nodiscard]] IAAFDataDef* sound() const { return m_sound.get(); }

  // The definition of a class, looked up once. Null when there is none. Lives as long as
  // this object.
  [[nodiscard]] IAAFClassDef* class_def(const aafUID_t& id);
  // A new object; empty on failure. Use AAF_MAKE(factory, Filler).
  template <class Interface>
  [[nodiscard]] AafRef<Interface> make(const aafUID_t& cls, REFIID iid) {
    AafRef<Interface> made;
    IAAFClassDef* const definition = class_def(cls);
    IUnknown* out = nullptr;
    if (definition == nullptr || definition->CreateInstance(iid, &out) != 0) return made;
    *made.put() = static_cast<Interface*>(out);
    return made;
  }

 private:
  AafRef<IAAFDictionary> m_dictionary;
  AafRef<IAAFDataDef> m_sound;
  // By the number that tells the classes of the baseline apart.
  std::map<aafUInt16, AafRef<IAAFClassDef>> m_classes;
};
#define AAF_MAKE(factory, Name) (factory).make<IAAF##Name>(AUID_AAF##Name, IID_IAAF##Name)

}  // namespace aaf
