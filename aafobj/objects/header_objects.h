#pragma once

#include <memory>

#include "aafobj/objects/aaf_object.h"

namespace aafobj {

// Interface objects for the header, its identifications and the content. Null for a class that
// has none of its own here.
AafObject* make_header_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                              StoredObject& stored);

// Appends to the header's list who changes the file. A null text becomes "Unknown version"
// for the version and an empty one otherwise.
[[nodiscard]] HRESULT append_identification(FileSession& session,
                                            const aafProductIdentification_t& product);

}  // namespace aafobj
