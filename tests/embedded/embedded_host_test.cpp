#include "embedded/embedded_host.h"

#include <gtest/gtest.h>

#include "host/code_page.h"
#include "host/corrections.h"
#include "host/string_ids.h"
#include "tests/embedded/pty.h"
#include "tests/support/compare.h"
#include "tests/support/temp_folder.h"

namespace {

using embedded::CrossfadePolicy;
using embedded::EmbeddedHost;
using embedded::EmbeddedOptions;
using support::utf8;

// In force for one test, where nobody sits.
struct InForce {
  explicit InForce(EmbeddedOptions options = {})
      : embedded(std::move(options), line.input(), line.output()) {
    set_host(&embedded);
  }
  ~InForce() { set_host(nullptr); }
  InForce(const InForce&) = delete;
  InForce& operator=(const InForce&) = delete;

  support::NoTerminal line;
  EmbeddedHost embedded;
};

TEST(EmbeddedHost, InventsNoFades) {
  const InForce run;
  Application& application = host().application();
  EXPECT_EQ(application.get_default_crossfade_length(), 0);
  EXPECT_EQ(application.get_default_infade_curve(), 0);
  EXPECT_EQ(application.get_default_outfade_curve(), 0);
  EXPECT_EQ(application.get_butt_splice_export(), 0);
}

TEST(EmbeddedHost, AdoptsTheCrossfadeLengthOfAFileForTheRun) {
  const InForce run;
  Application& application = host().application();
  int ask = 5;
  EXPECT_TRUE(application.get_crossfade_update_policy(ask));
  EXPECT_EQ(ask, 0);
  application.set_default_crossfade_length(480);
  EXPECT_EQ(application.get_default_crossfade_length(), 480);
}

TEST(EmbeddedHost, OtherCrossfadePolicies) {
  int ask = 5;
  {
    EmbeddedOptions options;
    options.crossfade_policy = CrossfadePolicy::keep;
    const InForce run(options);
    EXPECT_FALSE(host().application().get_crossfade_update_policy(ask));
    EXPECT_EQ(ask, 0);
  }
  EmbeddedOptions options;
  options.crossfade_policy = CrossfadePolicy::ask;
  const InForce run(options);
  EXPECT_FALSE(host().application().get_crossfade_update_policy(ask));
  EXPECT_EQ(ask, 1);
}

TEST(EmbeddedHost, OptionsReachTheApplication) {
  EmbeddedOptions options;
  options.crossfade_length = 960;
  options.infade_curve = 3;
  options.outfade_curve = 4;
  options.butt_splices = true;
  options.project_title = "Caf\xC3\xA9";
  options.aaf_aifc = true;
  options.aaf_embed_audio = false;
  options.aaf_fixed_gain = false;
  options.aaf_gain_automation = false;
  options.aaf_pan_automation = false;
  const InForce run(options);
  Application& application = host().application();
  EXPECT_EQ(application.get_default_crossfade_length(), 960);
  EXPECT_EQ(application.get_default_infade_curve(), 3);
  EXPECT_EQ(application.get_default_outfade_curve(), 4);
  EXPECT_NE(application.get_butt_splice_export(), 0);
  EXPECT_EQ(application.get_project_title(), u"Caf\u00E9");
  EXPECT_EQ(application.get_aaf_export_file_type(), 1);
  EXPECT_EQ(application.get_aaf_embed_audio(), 0);
  EXPECT_EQ(application.get_aaf_export_fixed_gain(), 0);
  EXPECT_EQ(application.get_aaf_export_gain_automation(), 0);
  EXPECT_EQ(application.get_aaf_export_pan_automation(), 0);
}

TEST(EmbeddedHost, HasTheCurvesOfTheTable) {
  const InForce run;
  Application& application = host().application();
  EXPECT_EQ(application.fade_curve_count(), 117);
  ASSERT_NE(application.get_fade_curve(116), nullptr);
  EXPECT_EQ(application.get_fade_curve(116)[0], 16384);
  EXPECT_EQ(application.get_fade_curve(117), nullptr);
  EXPECT_EQ(application.get_fade_curve(-1), nullptr);
}

TEST(EmbeddedHost, AllCorrectionsAreOn) {
  const InForce run;
  for (std::size_t i = 0; i < correction_names.size(); ++i)
    EXPECT_TRUE(corrected(static_cast<Correction>(i))) << correction_names[i];
}

TEST(EmbeddedHost, ClassicHasNoneAndSingleSwitches) {
  EmbeddedOptions options;
  options.corrections = embedded::classic_corrections();
  EXPECT_TRUE(embedded::set_correction(options.corrections, "aaf_clip_rate=on"));
  EXPECT_FALSE(embedded::set_correction(options.corrections, "aaf_clip_rate"));
  EXPECT_FALSE(embedded::set_correction(options.corrections, "aaf_clip_rate=yes"));
  EXPECT_FALSE(embedded::set_correction(options.corrections, "no_such=on"));
  const InForce run(options);
  for (std::size_t i = 0; i < correction_names.size(); ++i) {
    EXPECT_EQ(corrected(static_cast<Correction>(i)), correction_names[i] == "aaf_clip_rate")
        << correction_names[i];
  }
}

TEST(EmbeddedHost, CodePageOfTheOptions) {
  {
    const InForce run;
    EXPECT_EQ(text_from_bytes("\x93"), u"\u201C");
  }
  EmbeddedOptions options;
  options.code_page = "utf-8";
  const InForce run(options);
  EXPECT_EQ(text_from_bytes("\xC3\xA9"), u"\u00E9");
}

TEST(EmbeddedHost, ReportsRunThroughTheServices) {
  InForce run;
  host().message_boxes().note_place(u"a.edl", 4);
  const std::u16string title = host().strings().load(string_id::error_title);
  const std::u16string body = host().strings().load_into_slot(string_id::bad_line, 1);
  EXPECT_EQ(host().message_boxes().show(title.c_str(), body.c_str(), MessageBoxes::style_may_stop),
            0U);
  EXPECT_EQ(run.line.written(),
            "a.edl:4: error: This line could not be read as an edit and was left out.\n");
  ASSERT_EQ(run.embedded.boxes().shown().size(), 1U);
  EXPECT_EQ(run.embedded.boxes().shown()[0].id, 22231U);
}

TEST(EmbeddedHost, FoldersAreRealOnes) {
  const InForce run;
  const support::TempFolder folder;
  HostFolder* const found = host().folders().find_folder(folder.wide_file("."));
  ASSERT_NE(found, nullptr);
  wide_char path[262];
  host().folders().local_path(found, path, 262);
  EXPECT_EQ(utf8(path), "/" + folder.path() + "/");
  support::write_file(utf8(path) + "x.wav", "x");
  EXPECT_TRUE(support::file_exists(folder.file("x.wav")));
  EXPECT_EQ(host().folders().find_folder(CString(text_from_utf8("/" + folder.path() + "/"))),
            found);
  EXPECT_EQ(host().folders().find_folder(folder.wide_file("missing")), nullptr);
  EXPECT_EQ(host().folders().find_folder(folder.wide_file("x.wav")), nullptr);
  host().folders().local_path(nullptr, path, 262);
  EXPECT_EQ(utf8(path), "");
  host().folders().local_path(found, path, 5);
  EXPECT_EQ(utf8(path), "");
  host().folders().refresh(nullptr);
}

TEST(EmbeddedHost, RootFolderTakesAName) {
  const InForce run;
  wide_char path[262];
  host().folders().local_path(host().folders().find_folder(u"/"), path, 262);
  EXPECT_EQ(utf8(path), "//");
}

TEST(EmbeddedHost, ImportedAudioFolderIsMadeWhenAskedFor) {
  const support::TempFolder folder;
  EmbeddedOptions options;
  options.audio_folder = folder.file("audio/new");
  const InForce run(options);
  EXPECT_FALSE(support::file_exists(options.audio_folder));
  EXPECT_NE(host().application().get_imported_audio_folder(), nullptr);
  EXPECT_TRUE(support::file_exists(options.audio_folder));
}

TEST(EmbeddedHost, NoImportedAudioFolderWithoutTheOption) {
  {
    const InForce run;
    EXPECT_EQ(host().application().get_imported_audio_folder(), nullptr);
  }
  EmbeddedOptions options;
  options.audio_folder = "/proc/cannot/be/made";
  const InForce run(options);
  EXPECT_EQ(host().application().get_imported_audio_folder(), nullptr);
}

TEST(EmbeddedHost, IdsDiffer) {
  const InForce run;
  EXPECT_NE(host().unique_ids().create(), host().unique_ids().create());
}

}  // namespace
