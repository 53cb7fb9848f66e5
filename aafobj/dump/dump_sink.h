#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace aafobj {

// How a value's text is meant. Numbers are decimal; a word is the name of an enumeration's
// value, or an identifier in its registry form; a reference tells its target.
enum class ShownKind : std::uint8_t { number, boolean, word, text, reference };

// Takes what a dump tells, in the order of the file. A value is one of scalar, bytes, stream
// and fault, or an object, or a list or record of values between its begin and end. All texts
// are UTF-8, and may hold control characters, since most of them come from the file.
class DumpSink {
 public:
  virtual ~DumpSink() = default;
  // `is_known`: the class has a name; otherwise its identifier stands in the name's place.
  virtual void begin_object(std::string_view class_name, bool is_known) = 0;
  virtual void end_object() = 0;
  // Of an object's property or a record's field: its value follows.
  virtual void name(std::string_view name) = 0;
  // The same for a property without a definition, by its number.
  virtual void unknown_property(std::uint16_t pid) = 0;
  // In a record each value comes with a name.
  virtual void begin_list(std::size_t count, bool is_record) = 0;
  virtual void end_list() = 0;
  virtual void scalar(ShownKind kind, std::string_view text) = 0;
  // The first of them in hexadecimal, and how many there are in the file.
  virtual void bytes(std::string_view hexadecimal, std::size_t count) = 0;
  virtual void stream(std::uint64_t bytes) = 0;
  // A value that could not be read, and why.
  virtual void fault(std::string_view words) = 0;
};

}  // namespace aafobj
