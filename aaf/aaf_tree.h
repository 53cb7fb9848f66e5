// Walks every object of an AAF file by way of the published interfaces, so with any build
// of the object library, and tells what it finds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "aafobj/api/aaf_forward.h"

namespace aaf {

enum class ScalarKind { number, boolean, text, identifier, bytes, stream_size, reference };

// What one object says of itself. All texts are UTF-8.
struct ObjectHead {
  // "{…}" for a class that nobody knows by name.
  std::string class_name;
  bool is_known = true;
};

// What is told, in the order of the file. A value is one scalar, one object, one fault, or
// a list or record of values between its begin and end.
class TreeSink {
 public:
  virtual ~TreeSink() = default;
  virtual void begin_object(const ObjectHead& head) = 0;
  // `unknown_properties` are in the file without a definition.
  virtual void end_object(std::uint32_t unknown_properties) = 0;
  // Of an object's property or a record's field: its value follows.
  virtual void name(std::string_view name) = 0;
  // `is_record`: each value comes with a name.
  virtual void begin_list(std::size_t count, bool is_record) = 0;
  virtual void end_list() = 0;
  // Numbers in decimal, identifiers in their registry form, bytes in hexadecimal (of which
  // `bytes` tells how many there are in the file), sizes of streams in bytes.
  virtual void scalar(ScalarKind kind, std::string_view text) = 0;
  virtual void cut_bytes(std::string_view hexadecimal, std::uint64_t bytes) = 0;
  // What could not be read, with the result's number and words.
  virtual void fault(std::int32_t result, std::string_view words) = 0;
};

// What a result of the library means: its words and its number, "NOT_AAF_FILE (0x8012…)".
[[nodiscard]] std::string result_words(std::int32_t result);

// Opens the file and tells its tree from the header down. A negative result, and nothing
// told, when it cannot be opened as an AAF file at all; otherwise 0, and what could not be
// read is told as faults. A tree deeper than any real one is cut there with a fault.
[[nodiscard]] std::int32_t tell_tree(const std::string& utf8_path, TreeSink& sink);

// The same of a file that is open. The caller closes it.
[[nodiscard]] std::int32_t tell_tree_of(IAAFFile& file, TreeSink& sink);

}  // namespace aaf
