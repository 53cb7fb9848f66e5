#include "tests/support/scripted_services.h"

#include <algorithm>
#include <array>

#include "host/string_ids.h"
#include "host/text_format.h"

namespace support {

namespace {

std::string utf8(const wide_char* text) {
  return utf8_from_text({text, text_length(text)});
}

std::u16string wide(const wide_char* text) {
  return {text, text_length(text)};
}

template <class T>
T next_answer(std::deque<T>& answers, T otherwise) {
  if (answers.empty()) return otherwise;
  const T answer = answers.front();
  answers.pop_front();
  return answer;
}

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  });
  return text;
}

}  // namespace

std::u16string ScriptedStrings::text_of(unsigned id) {
  loaded.push_back(id);
  if (const auto at = texts.find(id); at != texts.end()) return at->second;
  std::u16string text = u"[" + decimal(id) + u"]";
  if (id == string_id::edit_format || id == string_id::event_format) text += u" %s %d";
  if (id == string_id::aaf_rate_changes || id == string_id::aaf_rate_unknown ||
      id == string_id::aaf_rate_refused) {
    text += u" %d";
  }
  return text;
}

const wide_char* ScriptedStrings::load(unsigned id) {
  last_ = text_of(id);
  return last_.c_str();
}

const wide_char* ScriptedStrings::load_into_slot(unsigned id, int slot) {
  std::u16string& text = slots_[slot & 1];
  text = text_of(id);
  return text.c_str();
}

BoxRecord& ScriptedBoxes::add(BoxRecord::Kind kind) {
  BoxRecord& box = shown.emplace_back();
  box.kind = kind;
  box.path = path_;
  box.line = line_;
  return box;
}

unsigned ScriptedBoxes::show(const wide_char* title, const wide_char* body, unsigned style) {
  BoxRecord& box = add(BoxRecord::Kind::report);
  box.title = utf8(title);
  box.body = utf8(body);
  box.style = style;
  const unsigned answer = next_answer(report_answers, default_report_answer);
  box.answer = static_cast<int>(answer);
  return answer;
}

int ScriptedBoxes::ask_by_ids(unsigned title_id, unsigned text_id, unsigned buttons,
                              unsigned icon) {
  BoxRecord& box = add(BoxRecord::Kind::question);
  box.title_id = title_id;
  box.text_id = text_id;
  box.buttons = buttons;
  box.icon = icon;
  box.answer = next_answer(question_answers, default_question_answer);
  return box.answer;
}

int ScriptedBoxes::message(const wide_char* text, BoxIcon icon, BoxButtons buttons) {
  BoxRecord& box = add(BoxRecord::Kind::message);
  box.body = utf8(text);
  box.message_icon = icon;
  box.message_buttons = buttons;
  box.answer = next_answer(message_answers,
                           buttons == BoxButtons::ok ? box_answer_ok : default_message_answer);
  return box.answer;
}

void ScriptedBoxes::note_place(const wide_char* path, int line) {
  path_ = utf8(path);
  line_ = line;
}

std::vector<std::string> ScriptedBoxes::report_bodies() const {
  std::vector<std::string> bodies;
  for (const BoxRecord& box : shown) {
    if (box.kind == BoxRecord::Kind::report) bodies.push_back(box.body);
  }
  return bodies;
}

class ScriptedDialogs::Window final : public ProgressWindow {
 public:
  Window(ScriptedDialogs& owner, std::shared_ptr<ProgressRecord> record)
      : owner_(owner), record_(std::move(record)) {}

  void set_caption(const wide_char* caption) override {
    record_->captions.push_back(utf8(caption));
  }
  void set_text(const wide_char* text) override { record_->texts.push_back(utf8(text)); }

  void set_position(std::uint32_t position) override {
    record_->positions.push_back(position);
    ++owner_.positions_set_;
    if (owner_.on_position) owner_.on_position(position);
  }

  bool pump(Event& event) override {
    ++record_->pumps;
    event = Event::none;
    return press(event, owner_.cancel_at_position, Event::cancel) ||
           press(event, owner_.ok_at_position, Event::ok);
  }

  void close() override { record_->closed = true; }

 private:
  bool press(Event& event, int& at_position, Event button) {
    if (at_position <= 0 || owner_.positions_set_ < at_position) return false;
    at_position = 0;
    event = button;
    return true;
  }

  ScriptedDialogs& owner_;
  std::shared_ptr<ProgressRecord> record_;
};

ScriptedDialogs::~ScriptedDialogs() = default;

std::unique_ptr<ProgressWindow> ScriptedDialogs::open_progress(std::uint32_t range) {
  windows.push_back(std::make_shared<ProgressRecord>());
  windows.back()->range = range;
  return std::make_unique<Window>(*this, windows.back());
}

int ScriptedDialogs::choose(const ChoiceDialog& dialog) {
  ChoiceRecord& record = choices.emplace_back();
  record.caption = utf8(dialog.caption);
  record.prompt = utf8(dialog.prompt);
  record.nothing_chosen = utf8(dialog.nothing_chosen);
  for (const CString& row : dialog.rows)
    record.rows.push_back(utf8_from_text(row.view()));
  record.answer = next_answer(choice_answers, default_choice);
  return record.answer;
}

int ScriptedSettings::ini_integer(const wide_char* file, const wide_char* section,
                                  const wide_char* key, int otherwise) {
  asked.push_back(utf8(file) + "/" + utf8(section) + "/" + utf8(key));
  const auto at = ini.find({wide(file), wide(section), wide(key)});
  return at == ini.end() ? otherwise : at->second;
}

std::optional<std::uint32_t> ScriptedSettings::registry_number(const wide_char* path,
                                                               const wide_char* value,
                                                               std::uint32_t otherwise) {
  asked.push_back(utf8(path) + "/" + utf8(value));
  const auto at = registry.find({wide(path), wide(value)});
  if (at != registry.end()) return at->second;
  const bool opens = registry_paths.contains(wide(path)) ||
                     std::any_of(registry.begin(), registry.end(),
                                 [&](const auto& row) { return row.first.first == wide(path); });
  if (!opens) return std::nullopt;
  return otherwise;
}

void ScriptedApplication::set_default_crossfade_length(std::int64_t length_samples) {
  crossfade_lengths_set.push_back(length_samples);
  default_crossfade_length = length_samples;
}

bool ScriptedApplication::get_crossfade_update_policy(int& ask) {
  ask = crossfade_ask;
  return crossfade_policy;
}

const std::uint16_t* ScriptedApplication::get_fade_curve(int number) {
  const auto at = curves.find(number);
  return at == curves.end() ? nullptr : at->second.data();
}

bool ScriptedApplication::may_replace_audio(const wide_char* path) {
  asked_to_replace.push_back(utf8(path));
  return replace_audio;
}

void ScriptedApplication::set_straight_curve(int number) {
  auto& levels = curves[number];
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const std::size_t steps = levels.size() - 1;
    levels[i] =
        static_cast<std::uint16_t>((fade_curve_full_level * (steps - i) * 2 + steps) / (2 * steps));
  }
}

ScriptedFolder* ScriptedFolders::add(const std::string& path) {
  return folders.emplace_back(std::make_unique<ScriptedFolder>(path)).get();
}

void ScriptedFolders::local_path(HostFolder* folder, wide_char* out, std::size_t size) {
  const auto at = std::find_if(folders.begin(), folders.end(),
                               [folder](const auto& own) { return own.get() == folder; });
  const std::string path = at == folders.end() ? std::string() : "/" + (*at)->path + "/";
  copy_text(out, size, text_from_utf8(path));
}

HostFolder* ScriptedFolders::find_folder(const wide_char* path) {
  std::string name = utf8(path);
  found.push_back(name);
  if (!name.empty() && (name.back() == '/' || name.back() == '\\')) name.pop_back();
  for (const auto& folder : folders) {
    if (folder->path == name) return folder.get();
  }
  return find_any ? add(name) : nullptr;
}

void ScriptedFolders::refresh(HostFolder* folder) {
  refreshed.push_back(folder == nullptr ? std::string()
                                        : static_cast<ScriptedFolder*>(folder)->path);
}

std::array<std::uint8_t, 16> CountedIds::create() {
  std::array<std::uint8_t, 16> id = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x46, 0x77,
                                     0x88, 0x99, 0xaa, 0xbb, 0xcc, 0x00, 0x00, 0x00};
  id[13] = static_cast<std::uint8_t>(next >> 16);
  id[14] = static_cast<std::uint8_t>(next >> 8);
  id[15] = static_cast<std::uint8_t>(next);
  ++next;
  return id;
}

CString ScriptedViewer::report_path(const wide_char* fixed_path) {
  if (report_folder.empty()) return {fixed_path};
  const std::string path = utf8(fixed_path);
  const std::size_t slash = path.find_last_of("/\\");
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  return {text_from_utf8(report_folder + "/" + name)};
}

int ScriptedViewer::open(const wide_char* path, const wide_char* verb, int show_command,
                         bool with_owner) {
  opened.push_back({utf8(path), utf8(verb), show_command, with_owner});
  if (on_open) on_open();
  return result;
}

void ScriptedCorrections::set(Correction correction, bool value) {
  if (value)
    on.insert(correction);
  else
    on.erase(correction);
}

void ScriptedCorrections::set_all() {
  for (std::size_t i = 0; i < correction_names.size(); ++i)
    on.insert(static_cast<Correction>(i));
}

void* ScriptedLibraries::load(const wide_char* name, std::uint32_t& error) {
  const std::string asked = utf8(name);
  loaded.push_back(asked);
  const auto at = std::find_if(redirected.begin(), redirected.end(),
                               [&](const auto& row) { return lower(row.first) == lower(asked); });
  if (at != redirected.end() && at->second.empty()) {
    error = error_not_found;
    return nullptr;
  }
  void* const library = at == redirected.end()
                            ? system_.load(name, error)
                            : system_.load(text_from_utf8(at->second).c_str(), error);
  if (library != nullptr) ++still_loaded;
  return library;
}

void* ScriptedLibraries::entry(void* library, const char* name, std::uint32_t& error) {
  if (hidden_entries.contains(name)) {
    error = error_no_entry;
    return nullptr;
  }
  return system_.entry(library, name, error);
}

bool ScriptedLibraries::unload(void* library, std::uint32_t& error) {
  if (unload_error != 0) {
    error = unload_error;
    return false;
  }
  --still_loaded;
  return system_.unload(library, error);
}

}  // namespace support
