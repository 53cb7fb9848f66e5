#include "aafobj/objects/stored_queries.h"

#include <random>

#include "aafobj/model/stored_values.h"

namespace aafobj {

AAFRESULT find_mob(ObjectFile& file, const aafMobID_t& id, StoredObject*& mob) {
  StoredObject* content = nullptr;
  if (const AAFRESULT r = file.content(content); r < 0) return r;
  const AAFRESULT r = content->find_element(pid::ContentStorage_Mobs, StoredKey(id), mob);
  return r == AAFRESULT_OBJECT_NOT_FOUND ? AAFRESULT_MOB_NOT_FOUND : r;
}

AAFRESULT find_slot(StoredObject& mob, aafSlotID_t id, StoredObject*& slot) {
  std::vector<StoredObject*> slots;
  const AAFRESULT there = mob.contained_objects(pid::Mob_Slots, slots);
  if (there < 0 && there != AAFRESULT_PROP_NOT_PRESENT) return there;
  for (StoredObject* each : slots) {
    aafSlotID_t slot_id = 0;
    if (get_value(*each, pid::MobSlot_SlotID, slot_id) < 0 || slot_id != id) continue;
    slot = each;
    return AAFRESULT_SUCCESS;
  }
  return AAFRESULT_SLOT_NOT_FOUND;
}

aafLength_t length_of(StoredObject& component) {
  aafLength_t length = 0;
  return get_value(component, pid::Component_Length, length) < 0 ? 0 : length;
}

AAFRESULT read_source_reference(StoredObject& clip, aafSourceRef_t& reference) {
  const AAFRESULT source = get_value(clip, pid::SourceReference_SourceID, reference.sourceID);
  if (source < 0 && source != AAFRESULT_PROP_NOT_PRESENT) return source;
  const AAFRESULT start = get_value(clip, pid::SourceClip_StartTime, reference.startTime);
  if (start < 0 && start != AAFRESULT_PROP_NOT_PRESENT) return start;
  return get_value(clip, pid::SourceReference_SourceMobSlotID, reference.sourceSlotID);
}

AAFRESULT mob_kind(StoredObject& mob, aafMobKind_t& kind) {
  kind = kAAFAllMob;
  if (mob.is_kind_of(ClassIndex::CompositionMob)) kind = kAAFCompMob;
  if (mob.is_kind_of(ClassIndex::MasterMob)) kind = kAAFMasterMob;
  if (!mob.is_kind_of(ClassIndex::SourceMob)) return AAFRESULT_SUCCESS;
  StoredObject* descriptor = nullptr;
  const AAFRESULT r = mob.get_object(pid::SourceMob_EssenceDescription, descriptor);
  if (r == AAFRESULT_PROP_NOT_PRESENT) return AAFRESULT_SUCCESS;
  if (r < 0) return r;
  if (descriptor->is_kind_of(ClassIndex::FileDescriptor)) kind = kAAFFileMob;
  if (descriptor->is_kind_of(ClassIndex::TapeDescriptor)) kind = kAAFTapeMob;
  if (descriptor->is_kind_of(ClassIndex::FilmDescriptor)) kind = kAAFFilmMob;
  if (descriptor->is_kind_of(ClassIndex::PhysicalDescriptor)) kind = kAAFPhysicalMob;
  return AAFRESULT_SUCCESS;
}

aafUID_t new_auid() {
  static thread_local std::random_device source;
  aafUID_t id{};
  std::uint32_t words[4];
  for (std::uint32_t& word : words)
    word = source();
  std::memcpy(&id, words, sizeof(id));
  id.Data3 = static_cast<aafUInt16>((id.Data3 & 0x0fff) | 0x4000);
  id.Data4[0] = static_cast<aafUInt8>((id.Data4[0] & 0x3f) | 0x80);
  return id;
}

aafMobID_t new_mob_id() {
  aafMobID_t id = {{0x06, 0x0a, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05, 0x01, 0x01, 0x0f, 0x20},
                   0x13,
                   0x00,
                   0x00,
                   0x00,
                   new_auid()};
  return id;
}

bool is_null(const aafMobID_t& id) {
  return id == aafMobID_t{};
}

}  // namespace aafobj
