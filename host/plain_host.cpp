#include "host/plain_host.h"

#include <ctime>
#include <random>

namespace {

// A window that nobody sees and whose buttons nobody presses.
class NoWindow final : public ProgressWindow {
 public:
  void set_caption(const wide_char*) override {}
  void set_text(const wide_char*) override {}
  void set_position(std::uint32_t) override {}
  bool pump(Event&) override { return false; }
  void close() override {}
};

CalendarTime calendar(const std::tm& from) {
  return {from.tm_year + 1900, from.tm_mon + 1, from.tm_mday,
          from.tm_hour,        from.tm_min,     from.tm_sec};
}

}  // namespace

const wide_char* PlainStrings::load(unsigned) {
  return u"";
}

const wide_char* PlainStrings::load_into_slot(unsigned, int) {
  return u"";
}

unsigned PlainBoxes::show(const wide_char*, const wide_char*, unsigned) {
  return 0;
}

int PlainBoxes::ask_by_ids(unsigned, unsigned, unsigned, unsigned) {
  return box_answer_no;
}

int PlainBoxes::message(const wide_char*, BoxIcon, BoxButtons buttons) {
  return buttons == BoxButtons::ok ? box_answer_ok : box_answer_no;
}

void PlainBoxes::note_place(const wide_char*, int) {}

std::unique_ptr<ProgressWindow> PlainDialogs::open_progress(std::uint32_t) {
  return std::make_unique<NoWindow>();
}

int PlainDialogs::choose(const ChoiceDialog&) {
  return -1;
}

int PlainSettings::ini_integer(const wide_char*, const wide_char*, const wide_char*,
                               int otherwise) {
  return otherwise;
}

std::optional<std::uint32_t> PlainSettings::registry_number(const wide_char*, const wide_char*,
                                                            std::uint32_t) {
  return std::nullopt;
}

bool PlainApplication::get_crossfade_update_policy(int& ask) {
  ask = 0;
  return false;
}

void PlainFolders::local_path(HostFolder*, wide_char* out, std::size_t size) {
  copy_text(out, size, u"");
}

Moment SystemClock::now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  std::tm utc{};
  ::localtime_r(&seconds, &local);
  ::gmtime_r(&seconds, &utc);
  return {calendar(local), calendar(utc)};
}

std::array<std::uint8_t, 16> RandomIds::create() {
  std::random_device source;
  std::array<std::uint8_t, 16> id;
  for (auto& byte : id)
    byte = static_cast<std::uint8_t>(source());
  id[6] = static_cast<std::uint8_t>((id[6] & 0x0F) | 0x40);
  id[8] = static_cast<std::uint8_t>((id[8] & 0x3F) | 0x80);
  return id;
}
