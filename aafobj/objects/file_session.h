#pragma once

#include <filesystem>
#include <memory>
#include <unordered_map>

#include "aafobj/model/object_file.h"
#include "aafobj/objects/com_object.h"
#include "aafobj/objects/counted_life.h"
#include "aafobj/objects/search_index.h"

namespace aafobj {

class AafObject;

// One open file behind the interfaces: the objects of the model, and the interface objects
// that were made for them. Every interface object keeps its session alive, so that it stays
// safe to use after the file is closed, when most operations give NOT_OPEN.
class FileSession : public std::enable_shared_from_this<FileSession>, private CountedLife {
 public:
  explicit FileSession(std::unique_ptr<ObjectFile> file)
      : m_file(std::move(file)), m_search_index(*m_file) {}
  FileSession(const FileSession&) = delete;
  FileSession& operator=(const FileSession&) = delete;
  ~FileSession();

  ObjectFile& file() { return *m_file; }
  SearchIndex& search_index() { return m_search_index; }
  MetaModel& meta_model() { return m_file->meta_model(); }
  bool is_open() const { return m_file->is_open(); }
  bool is_writable() const { return m_file->is_writable(); }

  // Folder of the file on disk; empty for one in memory.
  const std::filesystem::path& folder() const { return m_folder; }
  void set_folder(std::filesystem::path folder) { m_folder = std::move(folder); }

  // The interface of an object; an object has one interface object as long as anyone holds it.
  // Errors: E_NOINTERFACE.
  template <typename Interface>
  HRESULT hand_out(StoredObject& object, Interface** out) {
    return hand_out(object, NotOffered<Interface>::interface_id, reinterpret_cast<void**>(out));
  }
  HRESULT hand_out(StoredObject& object, REFIID iid, void** out);

  // The same for definitions of the meta model, which live as long as the session.
  template <typename Interface>
  HRESULT hand_out(const ClassDef& definition, Interface** out) {
    return hand_out_class(definition, NotOffered<Interface>::interface_id,
                          reinterpret_cast<void**>(out));
  }
  template <typename Interface>
  HRESULT hand_out(const PropertyDef& definition, Interface** out) {
    return hand_out_property(definition, NotOffered<Interface>::interface_id,
                             reinterpret_cast<void**>(out));
  }
  template <typename Interface>
  HRESULT hand_out(const TypeDef& definition, Interface** out) {
    return hand_out_type(definition, NotOffered<Interface>::interface_id,
                         reinterpret_cast<void**>(out));
  }
  HRESULT hand_out_class(const ClassDef& definition, REFIID iid, void** out);
  HRESULT hand_out_property(const PropertyDef& definition, REFIID iid, void** out);
  HRESULT hand_out_type(const TypeDef& definition, REFIID iid, void** out);

  // Called by interface objects of definitions when they end.
  void forget(const void* definition) { m_definitions.erase(definition); }

  // The definition with the identifier, of the set of the Dictionary that the property holds.
  // One that the file lacks may be built in: a writable file then takes it in, for a file that
  // is read it comes from a file of the library's own in memory, with its session.
  // Errors: NO_MORE_OBJECTS when nobody knows it.
  HRESULT find_definition(std::uint16_t set, const aafUID_t& id, StoredObject*& object,
                          std::shared_ptr<FileSession>& session);
  template <typename Interface>
  HRESULT hand_out_definition(std::uint16_t set, const aafUID_t& id, Interface** out) {
    StoredObject* object = nullptr;
    std::shared_ptr<FileSession> session;
    const HRESULT found = find_definition(set, id, object, session);
    return found < 0 ? found : session->hand_out(*object, out);
  }

 private:
  template <typename Definition, typename Object>
  HRESULT hand_out_definition_object(const Definition& definition, REFIID iid, void** out);
  HRESULT built_in_session(std::shared_ptr<FileSession>& session);

  std::unique_ptr<ObjectFile> m_file;
  SearchIndex m_search_index;
  std::filesystem::path m_folder;
  std::unordered_map<const void*, ComObject*> m_definitions;  // not owned
  std::shared_ptr<FileSession> m_built_in;
};

}  // namespace aafobj
