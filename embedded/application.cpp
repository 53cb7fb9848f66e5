#include "embedded/application.h"

#include <filesystem>

#include "embedded/fade_curves.h"

namespace embedded {

EmbeddedApplication::EmbeddedApplication(const EmbeddedOptions& options, EmbeddedFolders& folders,
                                         const EmbeddedAudio& audio)
    : options_(options),
      folders_(folders),
      audio_(audio),
      crossfade_length_(options.crossfade_length) {}

void EmbeddedApplication::set_default_crossfade_length(std::int64_t length_samples) {
  crossfade_length_ = length_samples;
}

std::uint16_t EmbeddedApplication::get_default_infade_curve() {
  return options_.infade_curve;
}

std::uint16_t EmbeddedApplication::get_default_outfade_curve() {
  return options_.outfade_curve;
}

bool EmbeddedApplication::get_crossfade_update_policy(int& ask) {
  ask = options_.crossfade_policy == CrossfadePolicy::ask ? 1 : 0;
  return options_.crossfade_policy == CrossfadePolicy::adopt;
}

int EmbeddedApplication::get_butt_splice_export() {
  return options_.butt_splices ? 1 : 0;
}

CString EmbeddedApplication::get_project_title() {
  return {text_from_utf8(options_.project_title)};
}

const std::uint16_t* EmbeddedApplication::get_fade_curve(int number) {
  if (number < 0 || number >= fade_levels_count) return nullptr;
  return fade_curves()[static_cast<std::size_t>(number)].data();
}

int EmbeddedApplication::fade_curve_count() {
  return fade_levels_count;
}

HostFolder* EmbeddedApplication::get_imported_audio_folder() {
  if (options_.audio_folder.empty())
    return options_.leave_audio_inside ? folders_.nowhere() : nullptr;
  std::error_code failure;
  std::filesystem::create_directories(options_.audio_folder, failure);
  return folders_.find(options_.audio_folder);
}

int EmbeddedApplication::get_aaf_export_file_type() {
  return options_.aaf_aifc ? 1 : 0;
}

int EmbeddedApplication::get_aaf_embed_audio() {
  return options_.aaf_embed_audio ? 1 : 0;
}

bool EmbeddedApplication::may_replace_audio(const wide_char* path) {
  return options_.aaf_overwrite_audio &&
         !audio_.is_source(utf8_from_text({path, text_length(path)}));
}

void EmbeddedApplication::note_audio_file(const wide_char* path, const wide_char* aside) {
  if (!options_.on_audio_file) return;
  options_.on_audio_file(utf8_from_text({path, text_length(path)}),
                         utf8_from_text({aside, text_length(aside)}));
}

int EmbeddedApplication::get_aaf_export_fixed_gain() {
  return options_.aaf_fixed_gain ? 1 : 0;
}

int EmbeddedApplication::get_aaf_export_gain_automation() {
  return options_.aaf_gain_automation ? 1 : 0;
}

int EmbeddedApplication::get_aaf_export_pan_automation() {
  return options_.aaf_pan_automation ? 1 : 0;
}

}  // namespace embedded
