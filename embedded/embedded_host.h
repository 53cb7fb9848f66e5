// The default host: a workstation's services for a program at the command line.
//
//   embedded::EmbeddedOptions options;
//   options.media_folders = {"/media/reels"};
//   embedded::EmbeddedHost host(options);
//   set_host(&host);
#pragma once

#include <memory>

#include "embedded/application.h"
#include "embedded/audio.h"
#include "embedded/boxes.h"
#include "embedded/dialogs.h"
#include "embedded/folders.h"
#include "embedded/media.h"
#include "embedded/options.h"
#include "embedded/settings.h"
#include "embedded/strings.h"
#include "embedded/terminal.h"
#include "embedded/viewer.h"
#include "host/host.h"
#include "host/plain_host.h"

namespace embedded {

class EmbeddedHost final : public Host {
 public:
  // `input` and `output` are where a person sits, or not: standard input and
  // standard error. An unknown code page stands as Windows-1252; whoever fills the
  // options tests the name with make_code_page.
  explicit EmbeddedHost(EmbeddedOptions options, int input = 0, int output = 2);
  ~EmbeddedHost() override;
  EmbeddedHost(const EmbeddedHost&) = delete;
  EmbeddedHost& operator=(const EmbeddedHost&) = delete;

  Application& application() override { return application_; }
  AudioService& audio() override { return audio_; }
  Clock& clock() override { return clock_; }
  const CodePage& code_page() override { return *code_page_; }
  Corrections& corrections() override { return corrections_; }
  Dialogs& dialogs() override { return dialogs_; }
  DynamicLibraries& dynamic_libraries() override { return libraries_; }
  Folders& folders() override { return folders_; }
  MessageBoxes& message_boxes() override { return boxes_; }
  Settings& settings() override { return settings_; }
  StringService& strings() override { return strings_; }
  UniqueIds& unique_ids() override { return ids_; }
  Viewer& viewer() override { return viewer_; }

  [[nodiscard]] const EmbeddedOptions& options() const { return options_; }
  [[nodiscard]] Terminal& terminal() { return terminal_; }
  // Every box that was shown, in order.
  [[nodiscard]] const EmbeddedBoxes& boxes() const { return boxes_; }
  // The audio of edits: after an import the program asks it for the source of each
  // entry's path and hands that to the entry.
  [[nodiscard]] MediaLibrary& media() { return media_; }
  // The readable copies of the reports that were written.
  [[nodiscard]] const EmbeddedViewer& reports() const { return viewer_; }

 private:
  class Switches final : public Corrections {
   public:
    explicit Switches(const EmbeddedOptions& options) : options_(options) {}
    bool is_on(Correction correction) override {
      return options_.corrections.test(static_cast<std::size_t>(correction));
    }

   private:
    const EmbeddedOptions& options_;
  };

  EmbeddedOptions options_;
  Terminal terminal_;
  std::unique_ptr<CodePage> code_page_;
  EnglishStrings strings_;
  EmbeddedFolders folders_;
  EmbeddedAudio audio_;
  EmbeddedApplication application_{options_, folders_, audio_};
  MediaLibrary media_{options_, audio_};
  SystemClock clock_;
  Switches corrections_{options_};
  EmbeddedDialogs dialogs_{options_, terminal_};
  SystemLibraries libraries_;
  EmbeddedBoxes boxes_{options_, strings_, terminal_};
  EmbeddedSettings settings_{options_};
  RandomIds ids_;
  EmbeddedViewer viewer_{options_, terminal_};
};

}  // namespace embedded
