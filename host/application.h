// What the library asks of the host's application object.
#pragma once

#include <cstdint>

#include "host/api.h"
#include "host/folders.h"
#include "host/framework/string.h"

// Levels of a fade curve: falling from 16384 (full) at index 0 to silence at 127.
inline constexpr int fade_curve_levels = 128;
inline constexpr int fade_curve_full_level = 16384;

class EDL_API Application {
 public:
  virtual ~Application() = default;

  // Samples.
  [[nodiscard]] virtual std::int64_t get_default_crossfade_length() = 0;
  virtual void set_default_crossfade_length(std::int64_t length_samples) = 0;
  // Curve numbers.
  [[nodiscard]] virtual std::uint16_t get_default_infade_curve() = 0;
  [[nodiscard]] virtual std::uint16_t get_default_outfade_curve() = 0;
  // Whether to adopt a crossfade length that a list brings; `ask` becomes nonzero
  // when the person is to be asked instead.
  [[nodiscard]] virtual bool get_crossfade_update_policy(int& ask) = 0;
  [[nodiscard]] virtual int get_butt_splice_export() = 0;
  [[nodiscard]] virtual CString get_project_title() = 0;

  // The 128 levels of a curve; null for a number that has none.
  [[nodiscard]] virtual const std::uint16_t* get_fade_curve(int number) = 0;
  // LAGetNoXfades: how many curves there are.
  [[nodiscard]] virtual int fade_curve_count() = 0;
  // Where imported audio goes; may be null.
  [[nodiscard]] virtual HostFolder* get_imported_audio_folder() = 0;

  // 1 for AIFC, anything else for WAVE.
  [[nodiscard]] virtual int get_aaf_export_file_type() = 0;
  [[nodiscard]] virtual int get_aaf_embed_audio() = 0;
  // Whether an export may put its own in the place of an audio file that stands beside
  // its AAF file already.
  [[nodiscard]] virtual bool may_replace_audio(const wide_char* /*path*/) { return false; }
  // An export is about to write an audio file, or to move an older one to `aside`, which
  // is empty for a file that is new. Both go back by themselves when it fails; this is
  // for a host that ends in the middle.
  virtual void note_audio_file(const wide_char* /*path*/, const wide_char* /*aside*/) {}
  [[nodiscard]] virtual int get_aaf_export_fixed_gain() = 0;
  [[nodiscard]] virtual int get_aaf_export_gain_automation() = 0;
  [[nodiscard]] virtual int get_aaf_export_pan_automation() = 0;
};
