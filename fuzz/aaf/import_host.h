// A silent host for imports of AAF files. The object library is the one that is compiled
// in, so that it is watched as well; audio goes to a folder in memory and the report
// nowhere.
#pragma once

#include <cstdint>
#include <string>

#include "host/plain_host.h"

namespace fuzzing {

class ImportHost final : public PlainHost {
 public:
  ImportHost();
  ~ImportHost() override;
  ImportHost(const ImportHost&) = delete;
  ImportHost& operator=(const ImportHost&) = delete;

  Application& application() override { return m_application; }
  Corrections& corrections() override { return m_corrections; }
  Dialogs& dialogs() override { return m_dialogs; }
  DynamicLibraries& dynamic_libraries() override { return m_libraries; }
  Folders& folders() override { return m_folders; }
  MessageBoxes& message_boxes() override { return m_boxes; }
  Viewer& viewer() override { return m_viewer; }

  void set_corrected(bool corrected) { m_corrections.all = corrected; }
  // A file in the folder in memory; all of them go with clear().
  [[nodiscard]] std::string file(const std::string& name) const { return m_folder + "/" + name; }
  void clear() const;

 private:
  struct AudioFolder final : HostFolder {};
  struct Settings final : PlainApplication {
    Settings();
    const std::uint16_t* get_fade_curve(int number) override;
    int fade_curve_count() override { return 2; }
    HostFolder* get_imported_audio_folder() override { return &audio; }
    AudioFolder audio;
    std::uint16_t curves[2][128];
  };
  struct Switches final : Corrections {
    bool is_on(Correction) override { return all; }
    bool all = true;
  };
  struct Windows final : PlainDialogs {
    int choose(const ChoiceDialog&) override { return 0; }
  };
  struct Yes final : PlainBoxes {
    int ask_by_ids(unsigned, unsigned, unsigned, unsigned) override { return box_answer_yes; }
    int message(const wide_char*, BoxIcon, BoxButtons buttons) override {
      return buttons == BoxButtons::ok ? box_answer_ok : box_answer_yes;
    }
  };
  struct Linked final : DynamicLibraries {
    void* load(const wide_char*, std::uint32_t&) override { return this; }
    void* entry(void*, const char* name, std::uint32_t& error) override;
    bool unload(void*, std::uint32_t&) override { return true; }
  };
  struct Places final : PlainFolders {
    explicit Places(const std::string& folder) : path(folder) {}
    void local_path(HostFolder*, wide_char* out, std::size_t size) override;
    const std::string& path;
  };
  struct Nowhere final : PlainViewer {
    CString report_path(const wide_char*) override { return u"/dev/null"; }
  };

  std::string m_folder;
  Settings m_application;
  Switches m_corrections;
  Windows m_dialogs;
  Linked m_libraries;
  Places m_folders{m_folder};
  Yes m_boxes;
  Nowhere m_viewer;
};

// Imports the file without the corrections and with them. The result is a told one, and
// without success the lists are empty.
void import_both_ways(ImportHost& host, const std::u16string& path);

}  // namespace fuzzing
