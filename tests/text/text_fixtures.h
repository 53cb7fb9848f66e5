// What the tests of line formats share: a host and a folder for each test, files
// from bytes, and a tiny format of fixed columns to try the drivers with.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/generic_edl_video_entry.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"
#include "text/text_edl.h"

namespace support {

// Samples of a second and of a frame at 48000 Hz and 25 frames.
inline constexpr std::int64_t second = 48000;
inline constexpr std::int64_t frame = 1920;

class TextTest : public testing::Test {
 protected:
  // Writes the bytes to a file of the test's folder and imports it.
  result_code import_bytes(CGenericEdl& edl, std::string_view bytes,
                           const std::string& name = "list.edl") {
    write_file(folder.file(name), bytes);
    return edl.import_edl(folder.wide_file(name));
  }
  // Exports to a file of the test's folder and answers its bytes.
  std::string exported(CGenericEdl& edl, const std::string& name = "b.edl") {
    EXPECT_EQ(edl.export_edl(folder.wide_file(name), 0), result::done);
    return read_file(folder.file(name));
  }
  // The lines of an export behind its title line.
  std::string exported_events(CGenericEdl& edl) {
    const std::string bytes = exported(edl);
    return bytes.substr(bytes.find('\n') + 1);
  }

  ScriptedHost host;
  TempFolder folder;
};

inline std::vector<CGenericEdlVideoEntry*> videos_of(const CGenericEdl& edl) {
  std::vector<CGenericEdlVideoEntry*> entries;
  const CObList* const list = edl.get_video_list();
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    entries.push_back(static_cast<CGenericEdlVideoEntry*>(list->GetNext(at)));
  }
  return entries;
}

// A format for trying the framework:
//
//   7 A 100 200 300 400      an audio event: number, then the four times in samples
//   7 V 100 200 300 400      a video event
//   7 B 100 200 300 400      both
//   anything else            a line behind an event
//
// The scripts of the test say what the hooks answer; what they were asked is kept.
class ToyEdl : public CTextEdl {
 public:
  explicit ToyEdl(CGenericEdl* parent = nullptr, int interactive = 0)
      : CTextEdl(parent, interactive) {}

  int is_audio_event(const wide_char* text) override { return kind(text) & 1; }
  int is_video_event(const wide_char* text) override { return kind(text) & 2; }
  int is_ignored_event(const wide_char* text) override {
    ++ignored_asked;
    return utf8_from_text(text).find("IGNORE") == std::string::npos ? 0 : 1;
  }
  int check_special_line(CGenericEdlEntry* entry, const wide_char* text) override {
    special_lines.push_back(utf8_from_text(text));
    return utf8_from_text(text).find("DROPPED") == std::string::npos
               ? CTextEdl::check_special_line(entry, text)
               : 0;
  }
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) override {
    parsed.push_back(utf8_from_text(text));
    skip_found = *skip;
    take_numbers(text, entry->event_number, times_of(*entry));
    if (on_entry) on_entry(*entry);
    if (utf8_from_text(text).find("SKIP") != std::string::npos) *skip = 1;
    return code_of(text);
  }
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override {
    parsed_video.push_back(utf8_from_text(text));
    take_numbers(text, entry->event_number,
                 {&entry->source_in, &entry->source_out, &entry->dest_in, &entry->dest_out});
    return code_of(text);
  }
  void parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) override {
    calls.push_back("audio " + number_of(entry) + ": " + utf8_from_text(text));
    const std::u16string_view line(text, text_length(text));
    static_cast<void>(parse_fcm(line, line.substr(std::min<std::size_t>(4, line.size()))));
  }
  void parse_video_line(CGenericEdlVideoEntry* entry, const wide_char* text) override {
    calls.push_back("video " + number_of(entry) + ": " + utf8_from_text(text));
  }
  int get_format_name(wide_char* out) const override {
    copy_text(out, format_name_size, format_name);
    return 1;
  }
  result_code write_event(CTextFile& file, CGenericEdlEntry* entry) override {
    if (entry->event_number >= 900) return entry->event_number == 909 ? 9 : 92;
    const std::u16string line = u"event " + text_from_utf8(std::to_string(entry->event_number));
    if (file.add_text(line) == 0 || file.add_text(u"\n") == 0) return result::line_full;
    return file.flush_line();
  }

  // The base hooks, as a format that keeps them has them.
  using CTextEdl::check_lengths;
  using CTextEdl::dispatch_line;

  std::u16string_view format_name = u"Toy";
  std::function<void(CGenericEdlEntry&)> on_entry;
  int ignored_asked = 0;
  int skip_found = -1;
  std::vector<std::string> special_lines;
  std::vector<std::string> parsed;
  std::vector<std::string> parsed_video;
  std::vector<std::string> calls;

 private:
  static std::vector<std::string> words(const wide_char* text) {
    std::vector<std::string> found;
    std::string word;
    for (const char c : utf8_from_text(text) + " ") {
      if (c != ' ') {
        word += c;
      } else if (!word.empty()) {
        found.push_back(std::move(word));
        word.clear();
      }
    }
    return found;
  }
  // 1 audio, 2 video, 3 both.
  static int kind(const wide_char* text) {
    const auto found = words(text);
    if (found.size() < 2) return 0;
    return found[1] == "A" ? 1 : found[1] == "V" ? 2 : found[1] == "B" ? 3 : 0;
  }
  static std::vector<std::int64_t*> times_of(CGenericEdlEntry& entry) {
    return {&entry.source_in, &entry.source_out, &entry.dest_in, &entry.dest_out};
  }
  static void take_numbers(const wide_char* text, std::uint16_t& number,
                           const std::vector<std::int64_t*>& times) {
    const auto found = words(text);
    number = static_cast<std::uint16_t>(std::stoi(found.at(0)));
    for (std::size_t i = 0; i < 4; ++i)
      *times[i] = found.size() > i + 2 ? std::stoll(found[i + 2]) : 0;
  }
  // A last word "=92" is the code to answer.
  static result_code code_of(const wide_char* text) {
    const std::string line = utf8_from_text(text);
    const std::size_t at = line.find('=');
    return at == std::string::npos ? result::line_good
                                   : static_cast<result_code>(std::stoi(line.substr(at + 1)));
  }
  template <class Entry>
  static std::string number_of(const Entry* entry) {
    return entry == nullptr ? "none" : std::to_string(entry->event_number);
  }
};

}  // namespace support
