#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <unordered_map>

#include "aafobj/dump/dump_sink.h"
#include "aafobj/model/meta_model.h"

namespace aafobj {

// Real files go some twenty levels of objects and values deep.
inline constexpr int deepest_level = 200;

// Tells data values of one file. What it learns of the types it keeps, since a file may have a
// great many values of a type with a great many names.
class ValueDump {
 public:
  // Both must outlive it.
  ValueDump(MetaModel& meta, DumpSink& sink) : m_meta(meta), m_sink(sink) {}

  // The bytes, in little-endian order, as one value of the type. Bytes that are no value of it
  // are a fault that shows them. `level` counts from the top of the tree; below deepest_level
  // there is a fault in place of the value.
  void tell(const TypeDef& type, std::span<const std::byte> bytes, int level);

 private:
  using Bytes = std::span<const std::byte>;
  // Tells the value, or answers false and tells nothing.
  using Reader = bool (ValueDump::*)(const TypeDef&, Bytes);
  struct KindReader {
    TypeKind kind;
    Reader read;
  };
  static const std::array<KindReader, 12> readers;

  void value(const TypeDef& type, Bytes bytes);
  bool read(const TypeDef& type, Bytes bytes);
  bool integer(const TypeDef& type, Bytes bytes);
  bool character(const TypeDef& type, Bytes bytes);
  bool string(const TypeDef& type, Bytes bytes);
  bool enumeration(const TypeDef& type, Bytes bytes);
  bool extendible(const TypeDef& type, Bytes bytes);
  bool array(const TypeDef& type, Bytes bytes);
  bool fixed_array(const TypeDef& type, Bytes bytes);
  bool text_list(Bytes bytes);
  bool record(const TypeDef& type, Bytes bytes);
  bool rename(const TypeDef& type, Bytes bytes);
  bool indirect(const TypeDef& type, Bytes bytes);
  bool opaque(const TypeDef& type, Bytes bytes);
  void typed_bytes(const aafUID_t& type, Bytes bytes);
  void plain_bytes(Bytes bytes);
  struct Members {
    std::map<std::uint64_t, const TypeDef::Member*> by_number;
    std::map<aafUID_t, const TypeDef::Member*> by_identifier;
  };
  const Members& members_of(const TypeDef& type);

  MetaModel& m_meta;
  DumpSink& m_sink;
  int m_level = 0;
  std::unordered_map<const TypeDef*, Members> m_members;
};

}  // namespace aafobj
