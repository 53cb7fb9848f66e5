#pragma once

#include "aafobj/dump/dump_sink.h"
#include "aafobj/model/object_file.h"

namespace aafobj {

// Tells the object and everything in it. What cannot be read is a fault, and what stands beside
// it is told all the same. A property that nobody knows is told by its number: its bytes, or
// what its stored form says. Weak references are told by the name and identifier of their
// target; one that is not in the file is no fault. Essence is never read. Objects stay in the
// file's memory; the sink gets each value as soon as it is known.
void dump_tree(StoredObject& top, DumpSink& sink);

}  // namespace aafobj
