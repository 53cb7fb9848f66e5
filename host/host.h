// The host: the workstation, or the program that stands in for it. One object
// groups the services that the library calls.
#pragma once

#include "host/api.h"

class Application;
class AudioService;
class Clock;
class CodePage;
class Corrections;
class Dialogs;
class DynamicLibraries;
class Folders;
class MessageBoxes;
class Settings;
class StringService;
class UniqueIds;
class Viewer;

class EDL_API Host {
 public:
  virtual ~Host() = default;
  virtual Application& application() = 0;
  virtual AudioService& audio() = 0;
  virtual Clock& clock() = 0;
  virtual const CodePage& code_page() = 0;
  virtual Corrections& corrections() = 0;
  virtual Dialogs& dialogs() = 0;
  virtual DynamicLibraries& dynamic_libraries() = 0;
  virtual Folders& folders() = 0;
  virtual MessageBoxes& message_boxes() = 0;
  virtual Settings& settings() = 0;
  virtual StringService& strings() = 0;
  virtual UniqueIds& unique_ids() = 0;
  virtual Viewer& viewer() = 0;

  // Makes the library's own resources reachable for the host. False when that
  // could not be done, which the library takes note of and goes on.
  virtual bool link_resources() { return true; }
};

// The host in force. Until one is set it is a silent one: no texts, every
// question answered No, every setting at its default.
EDL_API Host& host();
// Sets the host in force, before the first call of the library. Not owned; null
// brings the silent one back.
EDL_API void set_host(Host* host);
