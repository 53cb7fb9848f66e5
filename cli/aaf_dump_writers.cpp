#include "cli/aaf_dump_writers.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/messages.h"

namespace cli {

namespace {

constexpr std::size_t most_held = 1U << 16U;

// Data on its way to standard output, in pieces of a size that pays.
class Output {
 public:
  void put(std::string_view text) {
    held_ += text;
    if (held_.size() >= most_held) send();
  }
  [[nodiscard]] bool finish() {
    send();
    return good_ && flush_data();
  }

 private:
  // After the first refusal, which is told, nothing more is tried.
  void send() {
    good_ = good_ && put_data(held_);
    held_.clear();
  }

  std::string held_;
  bool good_ = true;
};

// JSON's own form of a text. What is no UTF-8 is replaced.
std::string json_text(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// Quoted where blanks or signs would not be seen otherwise; what could steer a terminal is
// escaped.
std::string shown_text(std::string_view text) {
  return json_text(text);
}

std::string shown_scalar(aaf::ScalarKind kind, std::string_view text) {
  switch (kind) {
    case aaf::ScalarKind::text:
      return shown_text(text);
    case aaf::ScalarKind::bytes:
      return "bytes " + std::string(text);
    case aaf::ScalarKind::stream_size:
      return "stream of " + std::string(text) + " bytes";
    case aaf::ScalarKind::reference:
      return "-> " + shown_text(text);
    case aaf::ScalarKind::number:
    case aaf::ScalarKind::boolean:
    case aaf::ScalarKind::identifier:
      break;
  }
  return std::string(text);
}

// One line a value, two blanks a level; elements of lists begin with their place from 0.
class TextWriter final : public DumpWriter {
 public:
  void begin_object(const aaf::ObjectHead& head) override {
    line(plain(head.class_name) + (head.is_known ? "" : " (a class that is not known)"));
    levels_.push_back({});
  }
  void end_object(std::uint32_t unknown_properties) override {
    if (unknown_properties > 0) {
      lead_ = "(";
      line(counted(unknown_properties, "property", "properties") + " that no definition tells of)");
    }
    levels_.pop_back();
  }
  void name(std::string_view name) override { lead_ = plain(name) + ": "; }
  void begin_list(std::size_t count, bool is_record) override {
    line(is_record ? "record" : counted(count, "element", "elements"));
    levels_.push_back({!is_record, 0});
  }
  void end_list() override { levels_.pop_back(); }
  void scalar(aaf::ScalarKind kind, std::string_view text) override {
    line(shown_scalar(kind, text));
  }
  void cut_bytes(std::string_view hexadecimal, std::uint64_t bytes) override {
    const bool is_cut = hexadecimal.size() / 2 < bytes;
    line("bytes " + std::string(hexadecimal) +
         (is_cut ? "... (" + std::to_string(bytes) + " bytes)" : ""));
  }
  void fault(std::int32_t, std::string_view words) override {
    ++faults_;
    line("CANNOT BE READ: " + std::string(words));
  }
  bool finish() override { return output_.finish(); }

 private:
  struct Level {
    bool is_list = false;
    std::size_t next = 0;
  };

  // Names come from the file too.
  static std::string plain(std::string_view name) {
    const std::string inside = json_text(name);
    return inside.substr(1, inside.size() - 2);
  }

  void line(std::string_view text) {
    std::string whole(levels_.size() * 2, ' ');
    if (!levels_.empty() && levels_.back().is_list) {
      whole += "[" + std::to_string(levels_.back().next++) + "] ";
    }
    whole += lead_;
    lead_.clear();
    whole += text;
    output_.put(whole + "\n");
  }

  Output output_;
  std::vector<Level> levels_;
  std::string lead_;
};

class JsonWriter final : public DumpWriter {
 public:
  void begin_object(const aaf::ObjectHead& head) override {
    lead();
    output_.put("{\"class\":" + json_text(head.class_name));
    if (!head.is_known) output_.put(",\"class_known\":false");
    output_.put(",\"properties\":{");
    levels_.push_back({});
  }
  void end_object(std::uint32_t unknown_properties) override {
    levels_.pop_back();
    output_.put("}");
    if (unknown_properties > 0) {
      output_.put(",\"unknown_properties\":" + std::to_string(unknown_properties));
    }
    output_.put("}");
  }
  void name(std::string_view name) override { name_ = json_text(name) + ":"; }
  void begin_list(std::size_t, bool is_record) override {
    lead();
    output_.put(is_record ? "{" : "[");
    levels_.push_back({is_record, true});
  }
  void end_list() override {
    output_.put(levels_.back().is_record ? "}" : "]");
    levels_.pop_back();
  }
  void scalar(aaf::ScalarKind kind, std::string_view text) override {
    lead();
    switch (kind) {
      case aaf::ScalarKind::number:
        return output_.put(text);
      case aaf::ScalarKind::boolean:
        return output_.put(text == "True" ? "true" : "false");
      case aaf::ScalarKind::bytes:
        return output_.put("{\"bytes\":" + json_text(text) + "}");
      case aaf::ScalarKind::stream_size:
        return output_.put("{\"stream_bytes\":" + std::string(text) + "}");
      case aaf::ScalarKind::reference:
        return output_.put("{\"reference\":" + json_text(text) + "}");
      case aaf::ScalarKind::text:
      case aaf::ScalarKind::identifier:
        return output_.put(json_text(text));
    }
  }
  void cut_bytes(std::string_view hexadecimal, std::uint64_t bytes) override {
    lead();
    output_.put("{\"bytes\":" + json_text(hexadecimal) + ",\"size\":" + std::to_string(bytes) +
                "}");
  }
  void fault(std::int32_t, std::string_view words) override {
    ++faults_;
    lead();
    output_.put("{\"error\":" + json_text(words) + "}");
  }
  bool finish() override {
    output_.put("\n");
    return output_.finish();
  }

 private:
  struct Level {
    bool is_record = true;
    bool is_first = true;
  };

  void lead() {
    if (!levels_.empty()) {
      if (!levels_.back().is_first) output_.put(",");
      levels_.back().is_first = false;
    }
    output_.put(name_);
    name_.clear();
  }

  Output output_;
  std::vector<Level> levels_;
  std::string name_;
};

}  // namespace

std::unique_ptr<DumpWriter> make_text_dump_writer() {
  return std::make_unique<TextWriter>();
}

std::unique_ptr<DumpWriter> make_json_dump_writer() {
  return std::make_unique<JsonWriter>();
}

}  // namespace cli
