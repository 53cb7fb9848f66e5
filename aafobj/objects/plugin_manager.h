#pragma once

#include "aafobj/objects/com_object.h"
#include "aafobj/objects/not_offered_file.h"

namespace aafobj {

// The codecs are built in: registering plugins succeeds and changes nothing.
IAAFPluginManager* make_plugin_manager();

// The forms of file that the library writes, one after another.
IEnumAAFFileEncodings* make_file_encodings();

}  // namespace aafobj
