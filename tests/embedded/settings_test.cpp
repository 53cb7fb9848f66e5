#include "embedded/settings.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "embedded/user_folders.h"
#include "tests/support/temp_folder.h"

namespace {

using embedded::ini_number;
using embedded::IniFile;

constexpr const wide_char* vcs = u"Software\\Karsten Sound & Film\\VCS";

// Sets an environment variable for one test.
class Environment {
 public:
  Environment(const char* name, const std::string& value) : name_(name) {
    const char* const before = std::getenv(name);
    if (before != nullptr) before_ = before;
    ::setenv(name, value.c_str(), 1);
  }
  ~Environment() {
    if (before_)
      ::setenv(name_, before_->c_str(), 1);
    else
      ::unsetenv(name_);
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

TEST(IniFile, ReadsSectionsAndKeys) {
  IniFile ini;
  ini.read(
      "\xEF\xBB\xBF; comment\r\n"
      "stray = 1\r\n"
      "[Tribble]\r\n"
      "Ignore Version Numbers = 1\r\n"
      "# comment\r\n"
      "ignore version numbers=2\r\n"
      "no equals sign\r\n"
      "[ DG ]\n"
      "quoted = \" two words \"\n"
      "empty =\n"
      "[broken\n"
      "lost = 1");
  EXPECT_EQ(ini.value("tribble", "IGNORE VERSION NUMBERS"), "1");
  EXPECT_EQ(ini.value("DG", "quoted"), " two words ");
  EXPECT_EQ(ini.value("DG", "empty"), "");
  EXPECT_FALSE(ini.value("DG", "lost"));
  EXPECT_FALSE(ini.value("", "stray"));
  EXPECT_TRUE(ini.has_section("dg"));
  EXPECT_FALSE(ini.has_section("broken"));
}

TEST(IniFile, SetIsStrongerThanWhatWasRead) {
  IniFile ini;
  ini.read("[A]\nk=1\n");
  ini.set("a", "K", "2");
  EXPECT_EQ(ini.value("A", "k"), "2");
}

TEST(IniFile, Numbers) {
  EXPECT_EQ(ini_number(" 12 "), 12);
  EXPECT_EQ(ini_number("-3x"), -3);
  EXPECT_EQ(ini_number("+4"), 4);
  EXPECT_EQ(ini_number("0x1F"), 31);
  EXPECT_EQ(ini_number("99999999999999999999"), 9223372036854775807LL);
  EXPECT_EQ(ini_number("-99999999999999999999"), -9223372036854775807LL);
  EXPECT_FALSE(ini_number(""));
  EXPECT_FALSE(ini_number("on"));
  EXPECT_FALSE(ini_number("--1"));
  EXPECT_FALSE(ini_number("0x"));
}

TEST(Settings, ReadAtTheMomentOfUse) {
  const support::TempFolder folder;
  embedded::EmbeddedOptions options;
  options.settings_file = folder.file("s.ini");
  embedded::EmbeddedSettings settings(options);
  EXPECT_EQ(settings.ini_integer(u"marlo3.ini", u"Edl Conversion", u"Studer", 7), 7);
  support::write_file(options.settings_file, "[Edl Conversion]\nStuder=1\n");
  EXPECT_EQ(settings.ini_integer(u"marlo3.ini", u"Edl Conversion", u"Studer", 7), 1);
  support::write_file(options.settings_file, "[Edl Conversion]\nStuder=yes\n");
  EXPECT_EQ(settings.ini_integer(u"marlo3.ini", u"Edl Conversion", u"Studer", 7), 0);
  support::write_file(options.settings_file, "[Edl Conversion]\nStuder=5000000000\n");
  EXPECT_EQ(settings.ini_integer(u"marlo3.ini", u"Edl Conversion", u"Studer", 7), 2147483647);
}

TEST(Settings, RegistryPathsAreSections) {
  const support::TempFolder folder;
  embedded::EmbeddedOptions options;
  options.settings_file = folder.file("s.ini");
  embedded::EmbeddedSettings settings(options);
  EXPECT_EQ(settings.registry_number(vcs, u"Allow Marlo3 files", 9), std::nullopt);
  support::write_file(options.settings_file, "[VCS]\nother=1\n");
  EXPECT_EQ(settings.registry_number(vcs, u"Allow Marlo3 files", 9), 9U);
  support::write_file(options.settings_file, "[VCS]\nAllow Marlo3 files=1\n");
  EXPECT_EQ(settings.registry_number(vcs, u"Allow Marlo3 files", 9), 1U);
  support::write_file(options.settings_file,
                      "[VCS]\nAllow Marlo3 files=1\n"
                      "[Software\\Karsten Sound & Film\\VCS]\nAllow Marlo3 files=2\n");
  EXPECT_EQ(settings.registry_number(vcs, u"Allow Marlo3 files", 9), 2U);
  support::write_file(options.settings_file, "[VCS]\nAllow Marlo3 files=-1\n");
  EXPECT_EQ(settings.registry_number(vcs, u"Allow Marlo3 files", 9), 0U);
  EXPECT_EQ(settings.registry_number(vcs, u"other", 9), 9U);
}

TEST(Settings, OverridesFromTheOptions) {
  embedded::EmbeddedOptions options;
  options.settings_file = "/nowhere/at/all.ini";
  options.settings = {"Tribble/Ignore Version Numbers=1", "MarloPT/TIMESTAMP FRIG=3", "nonsense"};
  embedded::EmbeddedSettings settings(options);
  EXPECT_EQ(settings.ini_integer(u"marlo3.ini", u"Tribble", u"Ignore Version Numbers", 0), 1);
  EXPECT_EQ(
      settings.registry_number(u"Software\\Karsten Sound & Film\\MarloPT", u"TIMESTAMP FRIG", 0),
      3U);
}

TEST(Settings, FormOfAnOverride) {
  EXPECT_TRUE(embedded::is_setting("A/b=1"));
  EXPECT_TRUE(embedded::is_setting("A/b/c=x=y"));
  EXPECT_FALSE(embedded::is_setting("A=1"));
  EXPECT_FALSE(embedded::is_setting("A/b"));
  EXPECT_FALSE(embedded::is_setting("/b=1"));
  EXPECT_FALSE(embedded::is_setting("A/=1"));
  EXPECT_FALSE(embedded::is_setting("A=1/b"));
}

TEST(Settings, LieUnderTheUsersConfigurationFolder) {
  const support::TempFolder home;
  const Environment config("XDG_CONFIG_HOME", home.path());
  embedded::EmbeddedOptions options;
  embedded::EmbeddedSettings settings(options);
  EXPECT_EQ(settings.file(), home.path() + "/edl-conversion/settings.ini");
  support::write_file(home.folder("edl-conversion") + "/settings.ini", "[DG]\nk=4\n");
  EXPECT_EQ(settings.ini_integer(u"marlo3.ini", u"DG", u"k", 0), 4);
}

TEST(UserFolders, FollowTheEnvironment) {
  const Environment home("HOME", "/home/mia");
  const Environment config("XDG_CONFIG_HOME", "relative/is/not/taken");
  const Environment state("XDG_STATE_HOME", "/state");
  EXPECT_EQ(embedded::user_config_folder(), "/home/mia/.config/edl-conversion");
  EXPECT_EQ(embedded::user_state_folder(), "/state/edl-conversion");
  const Environment no_state("XDG_STATE_HOME", "");
  EXPECT_EQ(embedded::user_state_folder(), "/home/mia/.local/state/edl-conversion");
  const Environment no_home("HOME", "");
  EXPECT_EQ(embedded::user_config_folder(), "");
}

}  // namespace
