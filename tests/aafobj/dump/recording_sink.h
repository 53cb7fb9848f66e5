#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "aafobj/dump/dump_sink.h"

namespace aafobj::testing {

// What it is told, one line for each call, two blanks a level. The order of calls must be that
// of a tree: a value behind each name, an end for each beginning.
class RecordingSink final : public DumpSink {
 public:
  ~RecordingSink() override { EXPECT_TRUE(m_levels.empty()); }

  void begin_object(std::string_view class_name, bool is_known) override {
    begin_value();
    line("object " + std::string(class_name) + (is_known ? "" : "?"));
    EXPECT_FALSE(class_name.empty());
    m_levels.push_back(Level::object);
  }
  void end_object() override { end(Level::object, Level::object); }
  void name(std::string_view name) override {
    begin_name();
    line("." + std::string(name));
  }
  void unknown_property(std::uint16_t pid) override {
    begin_name();
    line("#" + std::to_string(pid));
    ++unknown;
  }
  void begin_list(std::size_t count, bool is_record) override {
    begin_value();
    line((is_record ? "record " : "list ") + std::to_string(count));
    m_levels.push_back(is_record ? Level::record : Level::list);
  }
  void end_list() override { end(Level::list, Level::record); }
  void scalar(ShownKind kind, std::string_view text) override {
    constexpr const char* words[] = {"number ", "boolean ", "word ", "text ", "-> "};
    begin_value();
    line(words[static_cast<std::size_t>(kind)] + std::string(text));
  }
  void bytes(std::string_view hexadecimal, std::size_t count) override {
    begin_value();
    EXPECT_EQ(hexadecimal.size(), 2 * std::min<std::size_t>(count, 64));
    line("bytes " + std::to_string(count) + " " + std::string(hexadecimal));
  }
  void stream(std::uint64_t bytes) override {
    begin_value();
    line("stream " + std::to_string(bytes));
  }
  void fault(std::string_view words) override {
    begin_value();
    EXPECT_FALSE(words.empty());
    line("FAULT " + std::string(words));
    ++faults;
  }

  std::string lines;
  int faults = 0;
  int unknown = 0;

 private:
  enum class Level { object, record, list };

  void begin_name() {
    ASSERT_FALSE(m_levels.empty());
    EXPECT_NE(m_levels.back(), Level::list) << "a name in a list";
    EXPECT_FALSE(m_has_name) << "a name without a value";
    m_has_name = true;
  }
  void begin_value() {
    const bool needs_name = !m_levels.empty() && m_levels.back() != Level::list;
    EXPECT_EQ(m_has_name, needs_name) << lines;
    m_has_name = false;
  }
  void end(Level one, Level other) {
    ASSERT_FALSE(m_levels.empty());
    EXPECT_TRUE(m_levels.back() == one || m_levels.back() == other);
    EXPECT_FALSE(m_has_name) << "a name without a value";
    m_levels.pop_back();
  }
  void line(const std::string& words) {
    lines += std::string(2 * m_levels.size(), ' ') + words + "\n";
  }

  std::vector<Level> m_levels;
  bool m_has_name = false;
};

}  // namespace aafobj::testing
