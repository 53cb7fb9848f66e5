// A silent host whose settings file has what a fuzz target puts into it.
#pragma once

#include "host/plain_host.h"

namespace fuzzing {

class SettingsHost : public PlainHost {
 public:
  SettingsHost() { set_host(this); }
  ~SettingsHost() override { set_host(nullptr); }
  SettingsHost(const SettingsHost&) = delete;
  SettingsHost& operator=(const SettingsHost&) = delete;

  Settings& settings() override { return m_keys; }
  // What every integer key of the settings file answers.
  void set_keys(int value) { m_keys.value = value; }

 private:
  struct Keys final : PlainSettings {
    int ini_integer(const wide_char*, const wide_char*, const wide_char*, int) override {
      return value;
    }
    int value = 0;
  };
  Keys m_keys;
};

}  // namespace fuzzing
