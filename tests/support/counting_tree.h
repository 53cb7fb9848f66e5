// A tree of objects that nobody looks at.
#pragma once

#include <cstddef>

#include "aaf/aaf_tree.h"

namespace support {

// Takes everything and only counts.
class CountingTree final : public aaf::TreeSink {
 public:
  void begin_object(const aaf::ObjectHead&) override { ++objects; }
  void end_object(std::uint32_t) override {}
  void name(std::string_view) override {}
  void begin_list(std::size_t, bool) override {}
  void end_list() override {}
  void scalar(aaf::ScalarKind, std::string_view) override {}
  void cut_bytes(std::string_view, std::uint64_t) override {}
  void fault(std::int32_t, std::string_view) override { ++faults; }
  std::size_t objects = 0;
  std::size_t faults = 0;
};

}  // namespace support
