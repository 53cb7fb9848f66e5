// The silent host, whose services other hosts may start from: no texts, no boxes
// on any screen, questions answered No, settings at their defaults, no audio.
#pragma once

#include "host/api.h"
#include "host/application.h"
#include "host/audio.h"
#include "host/clock.h"
#include "host/code_page.h"
#include "host/corrections.h"
#include "host/dialogs.h"
#include "host/dynamic_libraries.h"
#include "host/folders.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/settings.h"
#include "host/strings.h"
#include "host/viewer.h"

class EDL_API PlainStrings : public StringService {
 public:
  const wide_char* load(unsigned id) override;
  const wide_char* load_into_slot(unsigned id, int slot) override;
};

class EDL_API PlainBoxes : public MessageBoxes {
 public:
  unsigned show(const wide_char* title, const wide_char* body, unsigned style) override;
  int ask_by_ids(unsigned title_id, unsigned text_id, unsigned buttons, unsigned icon) override;
  int message(const wide_char* text, BoxIcon icon, BoxButtons buttons) override;
  void note_place(const wide_char* path, int line) override;
};

class EDL_API PlainDialogs : public Dialogs {
 public:
  std::unique_ptr<ProgressWindow> open_progress(std::uint32_t range) override;
  int choose(const ChoiceDialog& dialog) override;
  void begin_wait() override {}
  void end_wait() override {}
};

class EDL_API PlainSettings : public Settings {
 public:
  int ini_integer(const wide_char* file, const wide_char* section, const wide_char* key,
                  int otherwise) override;
  std::optional<std::uint32_t> registry_number(const wide_char* path, const wide_char* value,
                                               std::uint32_t otherwise) override;
};

class EDL_API PlainApplication : public Application {
 public:
  std::int64_t get_default_crossfade_length() override { return 0; }
  void set_default_crossfade_length(std::int64_t) override {}
  std::uint16_t get_default_infade_curve() override { return 0; }
  std::uint16_t get_default_outfade_curve() override { return 0; }
  bool get_crossfade_update_policy(int& ask) override;
  int get_butt_splice_export() override { return 0; }
  CString get_project_title() override { return {}; }
  const std::uint16_t* get_fade_curve(int) override { return nullptr; }
  int fade_curve_count() override { return 0; }
  HostFolder* get_imported_audio_folder() override { return nullptr; }
  int get_aaf_export_file_type() override { return 0; }
  int get_aaf_embed_audio() override { return 0; }
  int get_aaf_export_fixed_gain() override { return 0; }
  int get_aaf_export_gain_automation() override { return 0; }
  int get_aaf_export_pan_automation() override { return 0; }
};

class EDL_API PlainFolders : public Folders {
 public:
  void local_path(HostFolder* folder, wide_char* out, std::size_t size) override;
  HostFolder* find_folder(const wide_char*) override { return nullptr; }
  void refresh(HostFolder*) override {}
};

class EDL_API PlainAudio : public AudioService {
 public:
  AudioFile* channel_file(AudioFile*, int) override { return nullptr; }
  int enable_waveforms(int) override { return 1; }
  void add_waveform_request(AudioFile*, std::int64_t, std::uint32_t, WaveformCallback,
                            void*) override {}
  void poll_waveforms() override {}
  void cancel_waveform_requests(WaveformCallback) override {}
  void reindex_omf_source(int, int) override {}
};

class EDL_API PlainViewer : public Viewer {
 public:
  CString report_path(const wide_char* fixed_path) override { return fixed_path; }
  // 31: there is no program for it.
  int open(const wide_char*, const wide_char*, int, bool) override { return 31; }
  int date_order() override { return 1; }
  int clock_form() override { return 1; }
};

// The system's clock in its own time zone.
class EDL_API SystemClock : public Clock {
 public:
  Moment now() override;
};

// Random UUIDs (version 4) from the system's source of randomness.
class EDL_API RandomIds : public UniqueIds {
 public:
  std::array<std::uint8_t, 16> create() override;
};

class EDL_API NoCorrections : public Corrections {
 public:
  bool is_on(Correction) override { return false; }
};

class EDL_API PlainHost : public Host {
 public:
  Application& application() override { return application_; }
  AudioService& audio() override { return audio_; }
  Clock& clock() override { return clock_; }
  const CodePage& code_page() override { return windows_1252(); }
  Corrections& corrections() override { return corrections_; }
  Dialogs& dialogs() override { return dialogs_; }
  DynamicLibraries& dynamic_libraries() override { return libraries_; }
  Folders& folders() override { return folders_; }
  MessageBoxes& message_boxes() override { return boxes_; }
  Settings& settings() override { return settings_; }
  StringService& strings() override { return strings_; }
  UniqueIds& unique_ids() override { return ids_; }
  Viewer& viewer() override { return viewer_; }

 private:
  PlainApplication application_;
  PlainAudio audio_;
  SystemClock clock_;
  NoCorrections corrections_;
  PlainDialogs dialogs_;
  SystemLibraries libraries_;
  PlainFolders folders_;
  PlainBoxes boxes_;
  PlainSettings settings_;
  PlainStrings strings_;
  RandomIds ids_;
  PlainViewer viewer_;
};
