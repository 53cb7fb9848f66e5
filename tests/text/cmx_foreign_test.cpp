// Lists by other makers. The folder is named by EDL_SAMPLES.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/core/edl_fixtures.h"
#include "tests/support/scripted_host.h"
#include "text/cmx_edl.h"

namespace {

TEST(ForeignCmx, AllAreReadAtSeveralSettings) {
  const char* const samples = std::getenv("EDL_SAMPLES");
  if (samples == nullptr) GTEST_SKIP() << "EDL_SAMPLES names no folder of samples";
  int read = 0;
  for (const auto& item :
       std::filesystem::directory_iterator(std::filesystem::path(samples) / "cmx3600")) {
    for (std::uint8_t mode = 0; mode < 4; ++mode) {
      const support::ScriptedHost host;
      CCMXEdl edl(4, nullptr, 0);
      EDL_CONVERSION_SETTINGS settings;
      settings.cmx_channel_mode = mode;
      settings.cmx_merge_channels = mode % 2;
      settings.cmx_mapping_comments = mode / 2;
      edl.set_edl_conversion_settings(&settings);
      support::set_rates(edl, 2, mode);
      EXPECT_EQ(edl.import_edl(text_from_utf8(item.path().string()).c_str()), 100) << item.path();
      EXPECT_FALSE(support::entries_of(edl).empty() && edl.get_video_list()->IsEmpty())
          << item.path();
    }
    ++read;
  }
  EXPECT_GE(read, 30);
}

}  // namespace
