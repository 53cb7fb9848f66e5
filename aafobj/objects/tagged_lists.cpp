#include "aafobj/objects/tagged_lists.h"

#include "aafobj/model/object_file.h"
#include "aafobj/model/stored_values.h"
#include "aafobj/objects/text_conversion.h"

namespace aafobj {

AAFRESULT append_tagged_text(StoredObject& object, std::uint16_t pid, aafCharacter_constptr name,
                             aafCharacter_constptr value) {
  if (!name || !value) return AAFRESULT_NULL_PARAM;
  StoredObject* tagged = nullptr;
  const AAFRESULT made = object.file().create_object(ClassIndex::TaggedValue, tagged);
  if (made < 0) return made;
  const std::vector<std::byte> text = stored_text(from_wide(value));
  const AAFRESULT steps[] = {
      set_text(*tagged, pid::TaggedValue_Name, from_wide(name)),
      set_indirect(*tagged, pid::TaggedValue_Value, {row_of(TypeIndex::String).identifier, text}),
      object.append(pid, *tagged)};
  for (const AAFRESULT r : steps) {
    if (r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
