// The folder in which an AAF library looks for its plug-ins.
#pragma once

#include "aafobj/api/aaf_forward.h"
#include "host/api.h"

// Called with the path and the name of an entry. Anything but 0 ends the walk.
using PluginDirectoryCallback = HRESULT (*)(const char* path, const char* name, int is_directory,
                                            void* user);

// Hands every folder and every file whose name ends in ".dll", in any case, to the
// callback, in the system's order. An empty text stands for the two plug-ins that come
// with a library. Answers what ended the walk, otherwise 0; aaf_result::null_argument
// without a directory or a callback; aaf_result::text_too_long above 256 bytes, or 257
// with a separator at the end.
EDL_API HRESULT walk_plugin_directory(const char* directory, PluginDirectoryCallback callback,
                                      void* user);
