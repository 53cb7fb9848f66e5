#pragma once

#include "aafobj/objects/aaf_object.h"
#include "aafobj/objects/not_offered_essence.h"
#include "aafobj/objects/not_offered_mob.h"

namespace aafobj {

// What a program asks for when it makes essence.
struct EssenceRequest {
  aafSlotID_t master_slot_id;
  IAAFDataDef* media_kind;  // not owned, as the rest
  aafUID_t codec;
  aafRational_t edit_rate;
  aafRational_t sample_rate;
  IAAFLocator* destination;  // null: in the file itself
  aafUID_t container;
};

// Makes a file mob with a descriptor of the codec's class and a slot, a slot of the master mob
// that leads to it, and opens what the samples go to: essence data in the file, or a file of
// their own, which must not exist. A locator's path without a folder is one beside the AAF file.
// Errors: CODEC_INVALID, WRONG_MEDIATYPE, FILE_EXISTS, OPEN_FAILURE; those of making objects.
HRESULT create_essence(AafObject& master_mob, IAAFMasterMob& master, const EssenceRequest& request,
                       IAAFEssenceAccess** access);

// Interface objects of essence data.
AafObject* make_essence_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                               StoredObject& stored);

}  // namespace aafobj
