// The application object: what the options say, and the fade curves.
#pragma once

#include "embedded/audio.h"
#include "embedded/folders.h"
#include "embedded/options.h"
#include "host/application.h"

namespace embedded {

class EmbeddedApplication final : public Application {
 public:
  // None is owned.
  EmbeddedApplication(const EmbeddedOptions& options, EmbeddedFolders& folders,
                      const EmbeddedAudio& audio);

  std::int64_t get_default_crossfade_length() override { return crossfade_length_; }
  // For this run alone.
  void set_default_crossfade_length(std::int64_t length_samples) override;
  std::uint16_t get_default_infade_curve() override;
  std::uint16_t get_default_outfade_curve() override;
  bool get_crossfade_update_policy(int& ask) override;
  int get_butt_splice_export() override;
  CString get_project_title() override;
  const std::uint16_t* get_fade_curve(int number) override;
  int fade_curve_count() override;
  // Made when it is first asked for; null without the option, or when it cannot be
  // made.
  HostFolder* get_imported_audio_folder() override;
  int get_aaf_export_file_type() override;
  int get_aaf_embed_audio() override;
  // Never a file that edits of this run play.
  bool may_replace_audio(const wide_char* path) override;
  void note_audio_file(const wide_char* path, const wide_char* aside) override;
  int get_aaf_export_fixed_gain() override;
  int get_aaf_export_gain_automation() override;
  int get_aaf_export_pan_automation() override;

 private:
  const EmbeddedOptions& options_;
  EmbeddedFolders& folders_;
  const EmbeddedAudio& audio_;
  std::int64_t crossfade_length_;
};

}  // namespace embedded
