#include "core/edl_conversion.h"

#include "host/host.h"
#include "host/settings.h"

namespace {

std::uint16_t open_count = 0;

bool version_is_ignored() {
  return host().settings().ini_integer(u"marlo3.ini", u"Tribble", u"Ignore Version Numbers", 0) !=
         0;
}

// Runs when the platform unloads the library.
struct Unloader {
  ~Unloader() { edl_conversion_unload(); }
};
const Unloader unloader;

}  // namespace

unsigned short EDLConversionDLLInitialise(unsigned long version) {
  if (!version_is_ignored() && version != edl_conversion_version) return 1;
  const std::uint16_t before = open_count;
  ++open_count;
  // The first open makes the library's texts and dialogs known to the host. After
  // 65536 opens the count is 0 again and this runs once more, which does no harm;
  // nor does a failure, since every text has a source of its own.
  if (before == 0) static_cast<void>(host().link_resources());
  return 0;
}

void EDLConversionDLLWindup() {
  if (open_count != 0) --open_count;
}

std::uint16_t edl_conversion_open_count() {
  return open_count;
}

void edl_conversion_unload() {
  if (open_count == 0) return;
  open_count = 1;
  EDLConversionDLLWindup();
}
