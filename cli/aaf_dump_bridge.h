// Hands what a dump of stored objects tells to the writers of the command.
#pragma once

#include <string>

#include "aafobj/dump/dump_sink.h"
#include "cli/aaf_dump_writers.h"

namespace cli {

class DumpBridge final : public aafobj::DumpSink {
 public:
  // The writer must outlive the bridge.
  explicit DumpBridge(DumpWriter& writer) : writer_(writer) {}

  void begin_object(std::string_view class_name, bool is_known) override;
  void end_object() override;
  void name(std::string_view name) override;
  void unknown_property(std::uint16_t pid) override;
  void begin_list(std::size_t count, bool is_record) override;
  void end_list() override;
  void scalar(aafobj::ShownKind kind, std::string_view text) override;
  void bytes(std::string_view hexadecimal, std::size_t count) override;
  void stream(std::uint64_t bytes) override;
  void fault(std::string_view words) override;

 private:
  DumpWriter& writer_;
};

}  // namespace cli
