#include "core/generic_edl_video_entry.h"

#include <algorithm>
#include <iterator>

#include "core/clock_time.h"
#include "core/generic_edl.h"
#include "core/generic_reel.h"
#include "core/reel_name.h"

namespace {

template <std::size_t size>
void read_field(const wide_char (&field)[size], wide_char* out, int out_size) {
  if (out_size > 0) copy_text(out, static_cast<std::size_t>(out_size), field_text(field));
}

TimeBase base_of(const CGenericEdl* owner) {
  return owner == nullptr ? TimeBase() : owner->time_base();
}

}  // namespace

CGenericEdlVideoEntry::CGenericEdlVideoEntry(CGenericEdl* owner_edl) : owner(owner_edl) {
  const EDL_CONVERSION_SETTINGS& settings = settings_of(owner_edl);
  fade_in_curve = settings.default_fade_in_curve;
  fade_out_curve = settings.default_fade_out_curve;
}

void CGenericEdlVideoEntry::set_reel_name(const wide_char* name) {
  set_reel_name(std::u16string_view(name, text_length(name)));
}

void CGenericEdlVideoEntry::set_reel_name(std::u16string_view name) {
  reel = owner == nullptr ? nullptr : owner->find_or_add_reel(name);
  if (reel == nullptr) set_field(reel_name, name);
}

void CGenericEdlVideoEntry::get_reel_name(wide_char* out, int size) const {
  if (reel != nullptr) {
    reel->get_reel_name(out, size);
  } else {
    read_field(reel_name, out, size);
  }
}

void CGenericEdlVideoEntry::set_clip_name(const wide_char* text) {
  set_field(clip_name, text);
}

void CGenericEdlVideoEntry::set_file_path(const wide_char* text) {
  set_field(file_path, text);
}

void CGenericEdlVideoEntry::set_source_reel_name(const wide_char* text) {
  set_padded_name(source_reel_name, {text, text_length(text, std::size(source_reel_name))});
}

void CGenericEdlVideoEntry::set_source_reel_name(std::u16string_view text) {
  set_padded_name(source_reel_name, text);
}

void CGenericEdlVideoEntry::get_clip_name(wide_char* out, int size) const {
  read_field(clip_name, out, size);
}

void CGenericEdlVideoEntry::get_file_path(wide_char* out, int size) const {
  read_field(file_path, out, size);
}

void CGenericEdlVideoEntry::get_source_reel_name(wide_char* out, int size) const {
  read_field(source_reel_name, out, size);
}

void CGenericEdlVideoEntry::set_fade_in_curve(unsigned short curve) {
  const EDL_CONVERSION_SETTINGS& settings = settings_of(owner);
  fade_in_curve = settings.force_default_fade_curves != 0 ? settings.default_fade_in_curve : curve;
}

void CGenericEdlVideoEntry::set_fade_out_curve(unsigned short curve) {
  const EDL_CONVERSION_SETTINGS& settings = settings_of(owner);
  fade_out_curve =
      settings.force_default_fade_curves != 0 ? settings.default_fade_out_curve : curve;
}

void CGenericEdlVideoEntry::samples_to_timecode(std::int64_t samples, wide_char* out) const {
  ::samples_to_timecode(base_of(owner), samples, out, 12);
}

std::int64_t CGenericEdlVideoEntry::timecode_to_samples(const wide_char* text) const {
  return ::timecode_to_samples(base_of(owner), {text, text_length(text)});
}

std::int64_t CGenericEdlVideoEntry::timecode_to_samples(const CString& text) const {
  return ::timecode_to_samples(base_of(owner), text.view());
}

void CGenericEdlVideoEntry::set_source_in_string(std::u16string_view text) {
  source_in = ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlVideoEntry::set_source_in_string(const wide_char* text) {
  source_in = timecode_to_samples(text);
}

void CGenericEdlVideoEntry::set_source_out_string(std::u16string_view text) {
  source_out = ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlVideoEntry::set_source_out_string(const wide_char* text) {
  source_out = timecode_to_samples(text);
}

void CGenericEdlVideoEntry::set_dest_in_string(std::u16string_view text) {
  dest_in = ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlVideoEntry::set_dest_in_string(const wide_char* text) {
  dest_in = timecode_to_samples(text);
}

void CGenericEdlVideoEntry::set_dest_out_string(std::u16string_view text) {
  dest_out = ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlVideoEntry::set_dest_out_string(const wide_char* text) {
  dest_out = timecode_to_samples(text);
}

int CGenericEdlVideoEntry::check_reel_name() const {
  wide_char name[40] = {};
  get_reel_name(name, 40);
  return reel_name_is_long(field_text(name)) ? 1 : 0;
}

void CGenericEdlVideoEntry::get_video_details(VIDEO_DETAILS* details) const {
  VIDEO_DETAILS& d = *details;
  d = VIDEO_DETAILS();
  d.owner = owner;
  d.source_in = source_in;
  d.source_out = source_out;
  d.video_word = video_word;
  d.dest_in = dest_in;
  d.dest_out = dest_out;
  d.dest_length = dest_length;
  get_reel_name(d.reel_name, static_cast<int>(std::size(d.reel_name)));
  d.reel_frame_rate = reel == nullptr ? std::uint16_t{0} : reel->frame_rate();
  d.fade_in_curve = fade_in_curve;
  d.fade_out_curve = fade_out_curve;
  set_field(d.clip_name, field_text(clip_name));
  set_field(d.file_path, field_text(file_path));
  set_field(d.source_reel_name, field_text(source_reel_name));
  d.event_flags = event_flags;
  d.event_number = event_number;
  d.reserved_word = reserved_word;
  d.source_index = source_index;
  set_field(d.comment, field_text(comment));
  d.source_timestamp = source_timestamp;
  std::copy(std::begin(detail_words), std::end(detail_words), d.detail_words);
  d.transition_type = transition_type;
  std::copy(std::begin(transition_times), std::end(transition_times), d.transition_times);
  d.gain = gain;
}

void CGenericEdlVideoEntry::set_video_details(const VIDEO_DETAILS* details) {
  const VIDEO_DETAILS& d = *details;
  CGenericReel* const reel_before = reel;
  owner = d.owner;
  source_in = d.source_in;
  source_out = d.source_out;
  video_word = d.video_word;
  dest_in = d.dest_in;
  dest_out = d.dest_out;
  dest_length = d.dest_length;
  event_flags = d.event_flags;
  event_number = d.event_number;
  reserved_word = d.reserved_word;
  source_index = d.source_index;
  source_timestamp = d.source_timestamp;
  std::copy(std::begin(d.detail_words), std::end(d.detail_words), detail_words);
  transition_type = d.transition_type;
  std::copy(std::begin(d.transition_times), std::end(d.transition_times), transition_times);
  gain = d.gain;
  // The record's last place is a terminator whatever stands in it.
  wide_char name[13];
  set_field(name, field_text(d.reel_name));
  set_reel_name(name);
  if (reel_before != nullptr) reel_before->set_frame_rate(d.reel_frame_rate);
  set_fade_in_curve(d.fade_in_curve);
  set_fade_out_curve(d.fade_out_curve);
  set_clip_name(d.clip_name);
  set_file_path(d.file_path);
  set_source_reel_name(d.source_reel_name);
  set_field(comment, field_text(d.comment));
}
