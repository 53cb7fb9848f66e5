#pragma once

#include <memory>

#include "aafobj/container/raw_storage.h"
#include "aafobj/objects/com_object.h"
#include "aafobj/objects/not_offered_file.h"

namespace aafobj {

// A raw storage of ours behind its interfaces. `access` says what a program may do with it.
IAAFRawStorage* make_raw_storage_object(std::shared_ptr<RawStorage> storage,
                                        aafFileAccess_t access);

// A program's raw storage as one that a file can stand on, its own included. The program's
// storage must answer to random access. Errors: E_NOINTERFACE.
HRESULT storage_behind(IAAFRawStorage* pointer, std::shared_ptr<RawStorage>& storage);

}  // namespace aafobj
