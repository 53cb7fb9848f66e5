#include "aafobj/objects/property_objects.h"

#include "aafobj/objects/native_layout.h"

namespace aafobj {
namespace {

// A property of an object, as an enumeration of its properties hands it out.
class PropertyObject final : public Adds<ComObject, IAAFProperty> {
 public:
  PropertyObject(Ref<AafObject> object, const PropertyDef& definition)
      : m_object(std::move(object)), m_definition(&definition) {}

  HRESULT GetDefinition(IAAFPropertyDef** ppPropDef) override {
    if (!ppPropDef) return AAFRESULT_NULL_PARAM;
    return m_object->session().hand_out(*m_definition, ppPropDef);
  }

  HRESULT GetValue(IAAFPropertyValue** ppValue) override {
    if (!ppValue) return AAFRESULT_NULL_PARAM;
    return make_value_of_property(*m_object, *m_definition, ppValue);
  }

 private:
  ~PropertyObject() override = default;

  Ref<AafObject> m_object;
  const PropertyDef* m_definition;
};

struct PropertyItem {
  Ref<AafObject> object;
  const PropertyDef* definition;

  HRESULT hand_out(IAAFProperty** out) const {
    *out = new PropertyObject(object, *definition);
    return AAFRESULT_SUCCESS;
  }
};

HRESULT read_value(StoredObject& object, std::uint16_t pid, StoredForm form, ValueObject& value) {
  switch (form) {
    case StoredForm::strong_reference:
    case StoredForm::strong_vector:
    case StoredForm::strong_set:
      return object.contained_objects(pid, value.objects);
    case StoredForm::weak_reference:
      return object.get_weak(pid, value.targets.emplace_back());
    case StoredForm::weak_vector:
    case StoredForm::weak_set:
      return object.get_weak_list(pid, value.targets);
    case StoredForm::data_stream:
      value.stream_owner = &object;
      value.stream_pid = pid;
      return AAFRESULT_SUCCESS;
    default: {
      std::span<const std::byte> bytes;
      if (const HRESULT r = object.get_raw(pid, bytes); r < 0) return r;
      value.bytes.assign(bytes.begin(), bytes.end());
      return AAFRESULT_SUCCESS;
    }
  }
}

HRESULT store_objects(StoredObject& object, std::uint16_t pid,
                      const std::vector<StoredObject*>& objects) {
  for (StoredObject* each : objects) {
    if (each->owner()) return AAFRESULT_OBJECT_ALREADY_ATTACHED;
  }
  bool present = false;
  if (const HRESULT r = object.is_present(pid, present); r < 0) return r;
  if (present) {
    if (const HRESULT r = object.remove(pid); r < 0) return r;
  }
  for (StoredObject* each : objects) {
    if (const HRESULT r = object.append(pid, *each); r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

HRESULT find_present_definition(StoredObject& object, std::uint16_t pid,
                                const PropertyDef*& definition) {
  definition = object.file().meta_model().find_property(object.class_def(), pid);
  return definition ? AAFRESULT_SUCCESS : AAFRESULT_PROPERTY_NOT_FOUND;
}

}  // namespace

ValueObject* ValueObject::behind(IAAFPropertyValue* pointer) {
  void* value = nullptr;
  if (!pointer || pointer->QueryInterface(iid_property_value, &value) < 0) return nullptr;
  auto* behind = static_cast<ValueObject*>(value);
  behind->release();  // the caller's own reference keeps it
  return behind;
}

void* ValueObject::find_interface(REFIID iid) {
  if (same_iid(iid, iid_property_value)) return this;
  return Adds::find_interface(iid);
}

HRESULT ValueObject::GetType(IAAFTypeDef** ppTypeDef) {
  if (!ppTypeDef) return AAFRESULT_NULL_PARAM;
  return m_session->hand_out(*m_type, ppTypeDef);
}

HRESULT ValueObject::IsDefinedType(aafBoolean_t* pIsDefined) {
  if (!pIsDefined) return AAFRESULT_NULL_PARAM;
  *pIsDefined = kAAFTrue;
  return AAFRESULT_SUCCESS;
}

HRESULT make_value_of_property(AafObject& object, const PropertyDef& definition,
                               IAAFPropertyValue** out) {
  bool present = false;
  if (const HRESULT r = object.stored().is_present(definition.pid, present); r < 0) return r;
  if (!present) return AAFRESULT_PROP_NOT_PRESENT;
  const TypeDef* type = object.session().meta_model().find_type(definition.type);
  if (!type) return AAFRESULT_TYPE_NOT_FOUND;
  Ref<ValueObject> value(new ValueObject(object.shared_session(), *type));
  const HRESULT r = read_value(object.stored(), definition.pid, definition.form, *value);
  if (r < 0) return r;
  *out = value.detach();
  return AAFRESULT_SUCCESS;
}

HRESULT make_empty_value(AafObject& object, const PropertyDef& definition,
                         IAAFPropertyValue** out) {
  const TypeDef* type = object.session().meta_model().find_type(definition.type);
  if (!type) return AAFRESULT_TYPE_NOT_FOUND;
  Ref<ValueObject> value(new ValueObject(object.shared_session(), *type));
  value->bytes.resize(type->size_bytes);
  *out = value.detach();
  return AAFRESULT_SUCCESS;
}

HRESULT store_value(AafObject& object, const PropertyDef& definition, IAAFPropertyValue* pointer) {
  ValueObject* value = ValueObject::behind(pointer);
  if (!value) return AAFRESULT_INVALID_OBJ;
  const TypeDef* type = object.session().meta_model().find_type(definition.type);
  if (!type) return AAFRESULT_TYPE_NOT_FOUND;
  if (base_type(*type).identifier != base_type(value->type()).identifier) return AAFRESULT_BAD_TYPE;
  StoredObject& stored = object.stored();
  const std::uint16_t pid = definition.pid;
  switch (definition.form) {
    case StoredForm::data:
      return stored.set_data(pid, value->bytes);
    case StoredForm::strong_reference:
      if (value->objects.empty()) return AAFRESULT_OBJECT_NOT_FOUND;
      if (value->objects[0]->owner()) return AAFRESULT_OBJECT_ALREADY_ATTACHED;
      return stored.set_object(pid, *value->objects[0]);
    case StoredForm::strong_vector:
      return store_objects(stored, pid, value->objects);
    case StoredForm::weak_reference:
      if (value->targets.empty()) return AAFRESULT_OBJECT_NOT_FOUND;
      return stored.set_weak(pid, value->targets[0]);
    case StoredForm::weak_vector:
    case StoredForm::weak_set:
      return stored.set_weak_list(pid, value->targets);
    default:
      return AAFRESULT_NOT_IMPLEMENTED;
  }
}

HRESULT enumerate_properties(AafObject& object, IEnumAAFProperties** out) {
  std::vector<PropertyItem> items;
  for (const Property& property : object.stored().properties()) {
    const PropertyDef* definition = nullptr;
    if (find_present_definition(object.stored(), property.pid, definition) < 0) continue;
    object.add_reference();
    items.push_back({Ref<AafObject>(&object), definition});
  }
  *out = new Enumerator<IEnumAAFProperties, IAAFProperty*, PropertyItem>(std::move(items), 0);
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
