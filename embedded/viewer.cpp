#include "embedded/viewer.h"

#include <fcntl.h>
#include <langinfo.h>
#include <locale.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "embedded/user_folders.h"

namespace embedded {

namespace {

// What Viewer::open answers.
constexpr int opened = 33;
constexpr int no_memory = 8;
constexpr int file_not_found = 2;
constexpr int access_denied = 5;
constexpr int no_program = 31;

std::string file_name_of(const std::string& path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

int answer_of_error(int error) {
  if (error == ENOMEM || error == EAGAIN) return no_memory;
  if (error == EACCES || error == EPERM) return access_denied;
  return no_program;
}

// xdg-open and its kin: 2 for no such file, 3 and 4 for no program that does it;
// 126 and 127 come from the shell and the system.
int answer_of_exit(int code) {
  if (code == 0) return opened;
  if (code == 2) return file_not_found;
  if (code == 126) return access_denied;
  return no_program;
}

// Copies the 16-bit text of a report behind a byte order mark. 0 or an errno.
int make_readable_copy(const std::string& report, const std::string& copy) {
  std::ifstream in(report, std::ios::binary);
  if (!in) return ENOENT;
  std::ofstream out(copy, std::ios::binary | std::ios::trunc);
  out.write("\xFF\xFE", 2);
  if (in.peek() != std::ifstream::traits_type::eof()) out << in.rdbuf();
  out.close();
  return out ? 0 : EACCES;
}

// The name of the locale for times that the environment asks for.
std::string_view time_locale_name() {
  for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* const value = std::getenv(variable);
    if (value != nullptr && value[0] != '\0') return value;
  }
  return {};
}

// A format of the person's locale; empty where there is none but the bare "C",
// which says nothing about a person.
std::string locale_format(nl_item item) {
  const std::string_view name = time_locale_name();
  if (name.empty() || name == "C" || name == "POSIX" || name.starts_with("C.")) return {};
  const locale_t locale = ::newlocale(LC_TIME_MASK, "", nullptr);
  if (locale == nullptr) return {};
  std::string format = ::nl_langinfo_l(item, locale);
  ::freelocale(locale);
  return format;
}

}  // namespace

std::string readable_copy_path(const std::string& report) {
  const std::size_t dot = report.rfind('.');
  const std::size_t slash = report.rfind('/');
  const bool has_extension =
      dot != std::string::npos && (slash == std::string::npos || dot > slash + 1);
  if (!has_extension) return report + ".view";
  return report.substr(0, dot) + ".view" + report.substr(dot);
}

int date_order_of(std::string_view format) {
  for (std::size_t i = 0; i + 1 < format.size(); ++i) {
    if (format[i] != '%') continue;
    const char letter = format[++i];
    if (letter == 'D' || letter == 'm' || letter == 'b' || letter == 'B') return 0;
    if (letter == 'd' || letter == 'e') return 1;
    if (letter == 'F' || letter == 'Y' || letter == 'y') return 2;
  }
  return 1;
}

int clock_form_of(std::string_view format) {
  for (const std::string_view twelve : {"%r", "%I", "%l", "%p", "%P"}) {
    if (format.find(twelve) != std::string_view::npos) return 0;
  }
  return 1;
}

int launch_viewer(const std::string& program, const std::string& file) {
  posix_spawn_file_actions_t actions;
  if (::posix_spawn_file_actions_init(&actions) != 0) return no_memory;
  for (const int descriptor : {0, 1, 2})
    ::posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
  std::string name = program;
  std::string argument = file;
  const std::array<char*, 3> arguments = {name.data(), argument.data(), nullptr};
  pid_t child = 0;
  const int error =
      ::posix_spawnp(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return answer_of_error(error);

  using std::chrono::steady_clock;
  const auto patience = steady_clock::now() + std::chrono::seconds(5);
  while (steady_clock::now() < patience) {
    int status = 0;
    const pid_t ended = ::waitpid(child, &status, WNOHANG);
    if (ended == child) return WIFEXITED(status) ? answer_of_exit(WEXITSTATUS(status)) : no_program;
    if (ended < 0 && errno != EINTR) return opened;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return opened;
}

EmbeddedViewer::EmbeddedViewer(const EmbeddedOptions& options, Terminal& terminal)
    : options_(options), terminal_(terminal) {}

CString EmbeddedViewer::report_path(const wide_char* fixed_path) {
  const std::string name = file_name_of(utf8_from_text({fixed_path, text_length(fixed_path)}));
  std::string folder = options_.report_folder;
  if (folder.empty()) folder = user_state_folder();
  if (folder.empty()) folder = std::filesystem::temp_directory_path().string();
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  return {text_from_utf8(folder + "/" + name)};
}

int EmbeddedViewer::open(const wide_char* path, const wide_char*, int, bool) {
  const std::string report = utf8_from_text({path, text_length(path)});
  const std::string copy = readable_copy_path(report);
  const int failure = make_readable_copy(report, copy);
  if (failure == ENOENT) return file_not_found;
  if (failure != 0) return access_denied;
  reports_.push_back(copy);
  terminal_.write_line(options_.program_name + ": report: " + copy);
  if (!terminal_.interactive() && !options_.open_report) return opened;
  return launch_viewer(options_.viewer_command, copy);
}

int EmbeddedViewer::date_order() {
  return options_.date_order ? *options_.date_order : date_order_of(locale_format(D_FMT));
}

int EmbeddedViewer::clock_form() {
  return options_.clock_form ? *options_.clock_form : clock_form_of(locale_format(T_FMT));
}

}  // namespace embedded
