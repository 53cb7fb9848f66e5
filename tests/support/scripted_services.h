// The services of ScriptedHost. Each records what it was asked and answers what
// the test set; everything a test reads or sets is a public member.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "host/plain_host.h"

namespace support {

// Answers "[22250]" for an id that no text was set for. The two formats of error
// reports and the three AAF messages with a rate hold their places as well:
// "[22253] %s %d", "[24730] %d".
class ScriptedStrings final : public StringService {
 public:
  const wide_char* load(unsigned id) override;
  const wide_char* load_into_slot(unsigned id, int slot) override;

  std::map<unsigned, std::u16string> texts;
  // Every id asked for, in order.
  std::vector<unsigned> loaded;

 private:
  [[nodiscard]] std::u16string text_of(unsigned id);

  std::u16string last_;
  std::u16string slots_[2];
};

struct BoxRecord {
  enum class Kind { report, question, message };

  Kind kind = Kind::report;
  // UTF-8. Of a question both are empty; a message has no title.
  std::string title;
  std::string body;
  // Of a report.
  unsigned style = 0;
  // Of a question.
  unsigned title_id = 0;
  unsigned text_id = 0;
  unsigned buttons = 0;
  unsigned icon = 0;
  // Of a message.
  BoxIcon message_icon = BoxIcon::information;
  BoxButtons message_buttons = BoxButtons::ok;
  // What the script answered, and the place told last before the box.
  int answer = 0;
  std::string path;
  int line = 0;
};

class ScriptedBoxes final : public MessageBoxes {
 public:
  unsigned show(const wide_char* title, const wide_char* body, unsigned style) override;
  int ask_by_ids(unsigned title_id, unsigned text_id, unsigned buttons, unsigned icon) override;
  int message(const wide_char* text, BoxIcon icon, BoxButtons buttons) override;
  void note_place(const wide_char* path, int line) override;

  // The bodies of all reports, in order.
  [[nodiscard]] std::vector<std::string> report_bodies() const;

  // All boxes of all kinds in the order in which they came up.
  std::vector<BoxRecord> shown;
  // Taken from the front while they last, then the default.
  std::deque<unsigned> report_answers;
  std::deque<int> question_answers;
  std::deque<int> message_answers;
  unsigned default_report_answer = 0;
  int default_question_answer = box_answer_no;
  // For messages with Yes and No; one with OK alone is answered OK.
  int default_message_answer = box_answer_no;

 private:
  BoxRecord& add(BoxRecord::Kind kind);

  std::string path_;
  int line_ = 0;
};

struct ProgressRecord {
  std::uint32_t range = 0;
  std::vector<std::string> captions;
  std::vector<std::string> texts;
  std::vector<std::uint32_t> positions;
  int pumps = 0;
  bool closed = false;
};

struct ChoiceRecord {
  std::string caption;
  std::string prompt;
  std::string nothing_chosen;
  std::vector<std::string> rows;
  int answer = 0;
};

class ScriptedDialogs final : public Dialogs {
 public:
  ~ScriptedDialogs() override;
  std::unique_ptr<ProgressWindow> open_progress(std::uint32_t range) override;
  int choose(const ChoiceDialog& dialog) override;
  void begin_wait() override { ++waits; }
  void end_wait() override { --waits; }

  // Every window opened, alive or closed.
  std::vector<std::shared_ptr<ProgressRecord>> windows;
  // Cancel is pressed once, at the first pump behind the nth position (from 1)
  // set on any window; 0 for never.
  int cancel_at_position = 0;
  int ok_at_position = 0;
  // Called with each position, before it is pumped.
  std::function<void(std::uint32_t)> on_position;

  std::vector<ChoiceRecord> choices;
  std::deque<int> choice_answers;
  // -1 is Cancel.
  int default_choice = 0;
  // begin_wait less end_wait.
  int waits = 0;

 private:
  class Window;

  int positions_set_ = 0;
};

class ScriptedSettings final : public Settings {
 public:
  int ini_integer(const wide_char* file, const wide_char* section, const wide_char* key,
                  int otherwise) override;
  std::optional<std::uint32_t> registry_number(const wide_char* path, const wide_char* value,
                                               std::uint32_t otherwise) override;

  // By file, section and key; compared exactly.
  std::map<std::tuple<std::u16string, std::u16string, std::u16string>, int> ini;
  // By path and value; a path that can be opened without such a value is in
  // registry_paths alone.
  std::map<std::pair<std::u16string, std::u16string>, std::uint32_t> registry;
  std::set<std::u16string> registry_paths;
  // "marlo3.ini/Tribble/Ignore Version Numbers", "Software\…/TIMESTAMP FRIG".
  std::vector<std::string> asked;
};

class ScriptedApplication final : public PlainApplication {
 public:
  std::int64_t get_default_crossfade_length() override { return default_crossfade_length; }
  void set_default_crossfade_length(std::int64_t length_samples) override;
  std::uint16_t get_default_infade_curve() override { return default_infade_curve; }
  std::uint16_t get_default_outfade_curve() override { return default_outfade_curve; }
  bool get_crossfade_update_policy(int& ask) override;
  int get_butt_splice_export() override { return butt_splice_export; }
  CString get_project_title() override { return CString(project_title); }
  const std::uint16_t* get_fade_curve(int number) override;
  int fade_curve_count() override { return curve_count; }
  HostFolder* get_imported_audio_folder() override { return imported_audio_folder; }
  int get_aaf_export_file_type() override { return aaf_export_file_type; }
  int get_aaf_embed_audio() override { return aaf_embed_audio; }
  bool may_replace_audio(const wide_char* path) override;
  int get_aaf_export_fixed_gain() override { return aaf_export_fixed_gain; }
  int get_aaf_export_gain_automation() override { return aaf_export_gain_automation; }
  int get_aaf_export_pan_automation() override { return aaf_export_pan_automation; }

  // Sets a curve that falls evenly from full at level 0 to nothing at level 127,
  // rounded to the nearest level.
  void set_straight_curve(int number);

  std::int64_t default_crossfade_length = 0;
  // Every length that was set, in order.
  std::vector<std::int64_t> crossfade_lengths_set;
  std::uint16_t default_infade_curve = 0;
  std::uint16_t default_outfade_curve = 0;
  bool crossfade_policy = false;
  int crossfade_ask = 0;
  int butt_splice_export = 0;
  std::u16string project_title;
  // A number without a row has no curve.
  std::map<int, std::array<std::uint16_t, fade_curve_levels>> curves;
  int curve_count = 0;
  HostFolder* imported_audio_folder = nullptr;
  int aaf_export_file_type = 0;
  int aaf_embed_audio = 0;
  bool replace_audio = false;
  // Paths that were asked about, as UTF-8.
  std::vector<std::string> asked_to_replace;
  int aaf_export_fixed_gain = 0;
  int aaf_export_gain_automation = 0;
  int aaf_export_pan_automation = 0;
};

// A folder of this system. Its local path begins with two slashes and ends with
// one, the form in which the system opens it and the library keeps paths.
class ScriptedFolder final : public HostFolder {
 public:
  explicit ScriptedFolder(std::string folder_path) : path(std::move(folder_path)) {}
  const std::string path;
};

class ScriptedFolders final : public Folders {
 public:
  void local_path(HostFolder* folder, wide_char* out, std::size_t size) override;
  HostFolder* find_folder(const wide_char* path) override;
  void refresh(HostFolder* folder) override;

  // Owned here. The path is UTF-8, without a closing "/".
  ScriptedFolder* add(const std::string& path);

  std::vector<std::unique_ptr<ScriptedFolder>> folders;
  // Whether find_folder answers a folder for every path.
  bool find_any = true;
  // Paths asked for, and the path of each folder refreshed ("" for null).
  std::vector<std::string> found;
  std::vector<std::string> refreshed;
};

class FixedClock final : public Clock {
 public:
  Moment now() override { return moment; }
  // Local time is an hour ahead of UTC.
  Moment moment{{2021, 3, 4, 15, 6, 7}, {2021, 3, 4, 14, 6, 7}};
};

// 00112233-4455-4677-8899-aabbcc000001, then …02 and so on.
class CountedIds final : public UniqueIds {
 public:
  std::array<std::uint8_t, 16> create() override;
  unsigned next = 1;
};

class ScriptedViewer final : public Viewer {
 public:
  struct Opened {
    std::string path;
    std::string verb;
    int show_command = 0;
    bool with_owner = false;
  };

  CString report_path(const wide_char* fixed_path) override;
  int open(const wide_char* path, const wide_char* verb, int show_command,
           bool with_owner) override;
  int date_order() override { return order; }
  int clock_form() override { return clock; }

  // Where reports go, without a closing "/"; empty leaves the fixed path.
  std::string report_folder;
  std::vector<Opened> opened;
  int result = 33;
  // Called at each launch, before it is answered.
  std::function<void()> on_open;
  int order = 1;
  int clock = 1;
};

class ScriptedCorrections final : public Corrections {
 public:
  bool is_on(Correction correction) override { return on.contains(correction); }
  void set(Correction correction, bool value);
  void set_all();
  std::set<Correction> on;
};

// The system's libraries, but for names that are sent elsewhere and entry points
// that are hidden.
class ScriptedLibraries final : public DynamicLibraries {
 public:
  void* load(const wide_char* name, std::uint32_t& error) override;
  void* entry(void* library, const char* name, std::uint32_t& error) override;
  bool unload(void* library, std::uint32_t& error) override;

  // A name that is asked for (without regard to case), and the UTF-8 path that is
  // loaded for it; an empty path is a library that cannot be found.
  std::map<std::string, std::string> redirected;
  std::set<std::string> hidden_entries;
  std::vector<std::string> loaded;
  int still_loaded = 0;
  // System error of every unload from now on; 0 lets them through.
  std::uint32_t unload_error = 0;

 private:
  SystemLibraries system_;
};

}  // namespace support
