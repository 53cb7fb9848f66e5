// A host for tests: it records everything that the library asks and answers from
// what the test has set.
//
//   support::ScriptedHost host;                       // in force while it lives
//   host.boxes.question_answers = {box_answer_yes};
//   … run …
//   EXPECT_EQ(host.boxes.shown[0].body, "[22253] [22250] 12");
#pragma once

#include "tests/support/scripted_audio.h"
#include "tests/support/scripted_services.h"

namespace support {

class ScriptedHost final : public Host {
 public:
  // Sets itself as the host in force, and at the end the one of before.
  ScriptedHost();
  ~ScriptedHost() override;
  ScriptedHost(const ScriptedHost&) = delete;
  ScriptedHost& operator=(const ScriptedHost&) = delete;

  Application& application() override { return app; }
  AudioService& audio() override { return sound; }
  Clock& clock() override { return time; }
  const CodePage& code_page() override { return *page; }
  Corrections& corrections() override { return fixes; }
  Dialogs& dialogs() override { return windows; }
  DynamicLibraries& dynamic_libraries() override { return libraries; }
  Folders& folders() override { return places; }
  MessageBoxes& message_boxes() override { return boxes; }
  Settings& settings() override { return keys; }
  StringService& strings() override { return texts; }
  UniqueIds& unique_ids() override { return ids; }
  Viewer& viewer() override { return browser; }
  bool link_resources() override;

  ScriptedApplication app;
  ScriptedAudio sound;
  FixedClock time;
  // Not owned.
  const CodePage* page = &windows_1252();
  ScriptedCorrections fixes;
  ScriptedDialogs windows;
  ScriptedLibraries libraries;
  ScriptedFolders places;
  ScriptedBoxes boxes;
  ScriptedSettings keys;
  ScriptedStrings texts;
  CountedIds ids;
  ScriptedViewer browser;
  bool link_result = true;
  int links = 0;

 private:
  Host* before_;
};

}  // namespace support
