#include "aafobj/dump/tree_dump.h"

#include <array>
#include <string>
#include <vector>

#include "aafobj/dump/shown_text.h"
#include "aafobj/dump/value_dump.h"
#include "aafobj/model/stored_values.h"

namespace aafobj {
namespace {

class TreeDump {
 public:
  TreeDump(MetaModel& meta, DumpSink& sink) : m_values(meta, sink), m_sink(sink) {}

  void object(StoredObject& object);

 private:
  using Teller = void (TreeDump::*)(StoredObject&, const Property&);
  struct FormTeller {
    StoredForm form;
    Teller tell;
  };
  static const std::array<FormTeller, 7> tellers;

  void property(StoredObject& object, const Property& property);
  void data(StoredObject& object, const Property& property);
  void raw(StoredObject& object, const Property& property);
  void stream(StoredObject& object, const Property& property);
  void strong(StoredObject& object, const Property& property);
  void strong_vector(StoredObject& object, const Property& property);
  void strong_set(StoredObject& object, const Property& property);
  void weak(StoredObject& object, const Property& property);
  void weak_list(StoredObject& object, const Property& property);
  void target(ObjectFile& file, const WeakTarget& target);
  void fault(AAFRESULT result) { m_sink.fault(shown(result)); }

  ValueDump m_values;
  DumpSink& m_sink;
  int m_level = 0;
};

const std::array<TreeDump::FormTeller, 7> TreeDump::tellers = {{
    {StoredForm::data, &TreeDump::data},
    {StoredForm::data_stream, &TreeDump::stream},
    {StoredForm::strong_reference, &TreeDump::strong},
    {StoredForm::strong_vector, &TreeDump::strong_vector},
    {StoredForm::strong_set, &TreeDump::strong_set},
    {StoredForm::weak_reference, &TreeDump::weak},
    {StoredForm::weak_vector, &TreeDump::weak_list},
}};

void TreeDump::object(StoredObject& object) {
  if (m_level > deepest_level) return m_sink.fault("the tree is too deep");
  ++m_level;
  const ClassDef& cls = object.class_def();
  const bool is_known = !cls.name.empty();
  m_sink.begin_object(is_known ? shown_name(cls.name) : shown(cls.identifier), is_known);
  if (const AAFRESULT r = object.load(); r < 0) {
    m_sink.name("(properties)");
    fault(r);
  }
  for (const Property& each : object.properties())
    property(object, each);
  m_sink.end_object();
  --m_level;
}

void TreeDump::property(StoredObject& object, const Property& property) {
  const PropertyDef* const definition =
      object.file().meta_model().find_property(object.class_def(), property.pid);
  if (!definition || definition->name.empty()) {
    m_sink.unknown_property(property.pid);
  } else {
    m_sink.name(shown_name(definition->name));
  }
  const StoredForm form =
      property.form == StoredForm::weak_set ? StoredForm::weak_vector : property.form;
  for (const FormTeller& teller : tellers) {
    if (teller.form == form) return (this->*teller.tell)(object, property);
  }
  raw(object, property);
}

void TreeDump::data(StoredObject& object, const Property& property) {
  MetaModel& meta = object.file().meta_model();
  const PropertyDef* const definition = meta.find_property(object.class_def(), property.pid);
  const TypeDef* const type = definition ? meta.find_type(definition->type) : nullptr;
  if (!type || property.is_foreign) return raw(object, property);
  std::span<const std::byte> bytes;
  if (const AAFRESULT r = object.get_data(property.pid, bytes); r < 0) return fault(r);
  m_values.tell(*type, bytes, m_level);
}

void TreeDump::raw(StoredObject& object, const Property& property) {
  std::span<const std::byte> bytes;
  if (const AAFRESULT r = object.get_raw(property.pid, bytes); r < 0) return fault(r);
  m_sink.bytes(shown_bytes(bytes), bytes.size());
}

void TreeDump::stream(StoredObject& object, const Property& property) {
  Stream stream;
  if (const AAFRESULT r = object.open_stream(property.pid, stream); r < 0) return fault(r);
  m_sink.stream(stream.size());
}

void TreeDump::strong(StoredObject& object, const Property& property) {
  StoredObject* contained = nullptr;
  if (const AAFRESULT r = object.get_object(property.pid, contained); r < 0) return fault(r);
  this->object(*contained);
}

void TreeDump::strong_vector(StoredObject& object, const Property& property) {
  std::size_t count = 0;
  if (const AAFRESULT r = object.count_elements(property.pid, count); r < 0) return fault(r);
  m_sink.begin_list(count, false);
  for (std::size_t i = 0; i < count; ++i) {
    StoredObject* element = nullptr;
    if (const AAFRESULT r = object.element_at(property.pid, i, element); r < 0) {
      fault(r);
    } else {
      this->object(*element);
    }
  }
  m_sink.end_list();
}

// By its keys rather than by next_element(), so that one broken element does not hide the rest.
void TreeDump::strong_set(StoredObject& object, const Property& property) {
  std::size_t count = 0;
  if (const AAFRESULT r = object.count_elements(property.pid, count); r < 0) return fault(r);
  m_sink.begin_list(count, false);
  const StoredKey* former = nullptr;
  for (const auto& [key, held] : std::get<StrongSetValue>(*property.value).elements) {
    StoredObject* element = nullptr;
    if (former && *former == key) {
      m_sink.fault("the key stands twice: " + shown(key));
    } else if (const AAFRESULT r = object.find_element(property.pid, key, element); r < 0) {
      m_sink.fault(shown(r) + ": " + shown(key));
    } else {
      this->object(*element);
    }
    former = &key;
  }
  m_sink.end_list();
}

void TreeDump::weak(StoredObject& object, const Property& property) {
  WeakTarget found;
  if (const AAFRESULT r = object.get_weak(property.pid, found); r < 0) return fault(r);
  target(object.file(), found);
}

void TreeDump::weak_list(StoredObject& object, const Property& property) {
  std::vector<WeakTarget> targets;
  if (const AAFRESULT r = object.get_weak_list(property.pid, targets); r < 0) return fault(r);
  m_sink.begin_list(targets.size(), false);
  for (const WeakTarget& each : targets)
    target(object.file(), each);
  m_sink.end_list();
}

// The name that the object says it has; empty when it has none.
std::u16string name_in(StoredObject& object) {
  constexpr std::array<std::uint16_t, 3> names = {pid::DefinitionObject_Name,
                                                  pid::MetaDefinition_Name, pid::Mob_Name};
  std::u16string name;
  for (const std::uint16_t pid : names) {
    if (get_text(object, pid, name) >= 0) return name;
  }
  return {};
}

// Files may leave out definitions of the published model.
std::u16string name_of_missing(MetaModel& meta, const StoredKey& key) {
  if (key.size() != sizeof(aafUID_t)) return {};
  if (const ClassDef* const cls = meta.find_class(key.auid())) return cls->name;
  if (const TypeDef* const type = meta.find_type(key.auid())) return type->name;
  return {};
}

void TreeDump::target(ObjectFile& file, const WeakTarget& target) {
  StoredObject* object = nullptr;
  const AAFRESULT found = file.resolve(target, object);
  const std::u16string name =
      found < 0 ? name_of_missing(file.meta_model(), target.key) : name_in(*object);
  std::string text = shown_name(name) + (name.empty() ? "" : " ") + shown(target.key);
  if (found == AAFRESULT_OBJECT_NOT_FOUND) {
    text += " (not in the file)";
  } else if (found < 0) {
    text += " (out of reach: " + shown(found) + ")";
  }
  m_sink.scalar(ShownKind::reference, text);
}

}  // namespace

void dump_tree(StoredObject& top, DumpSink& sink) {
  TreeDump(top.file().meta_model(), sink).object(top);
}

}  // namespace aafobj
