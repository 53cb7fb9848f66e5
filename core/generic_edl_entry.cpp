#include "core/generic_edl_entry.h"

#include <algorithm>
#include <new>

#include "core/clock_time.h"
#include "core/generic_edl.h"
#include "core/generic_reel.h"
#include "core/reel_name.h"
#include "host/rates.h"

namespace {

template <std::size_t size>
void read_field(const wide_char (&field)[size], wide_char* out, int out_size) {
  if (out_size > 0) copy_text(out, static_cast<std::size_t>(out_size), field_text(field));
}

TimeBase base_of(const CGenericEdl* owner) {
  return owner == nullptr ? TimeBase() : owner->time_base();
}

}  // namespace

CGenericEdlEntry::CGenericEdlEntry(CGenericEdl* owner_edl)
    : dest_in(time_not_given),
      dest_out(time_not_given),
      source_in(time_not_given),
      source_out(time_not_given),
      frame_rate(base_of(owner_edl).frame_rate_index),
      owner(owner_edl),
      dest_length(time_not_given) {
  const EDL_CONVERSION_SETTINGS& settings = settings_of(owner_edl);
  fade_in_curve = settings.default_fade_in_curve;
  fade_out_curve = settings.default_fade_out_curve;
  fade_in_length = settings.default_fade_length;
  fade_out_length = settings.default_fade_length;
}

CGenericEdlEntry::CGenericEdlEntry(CGenericEdl* owner_edl, const CGenericEdlEntry* other)
    : dest_in(other->dest_in),
      dest_out(other->dest_out),
      source_in(other->source_in),
      source_out(other->source_out),
      first_channel(other->first_channel),
      event_number(other->event_number),
      reel(other->reel),
      fade_in_length(other->fade_in_length),
      fade_out_length(other->fade_out_length),
      transition_type(other->transition_type),
      frame_rate(other->frame_rate),
      no_channels(other->no_channels),
      owner(owner_edl),
      dest_length(other->dest_length),
      original_dest_in(other->original_dest_in),
      original_dest_out(other->original_dest_out),
      original_source_in(other->original_source_in),
      original_source_out(other->original_source_out),
      source_is_timestamped(other->source_is_timestamped),
      reel_no_streams(other->reel_no_streams),
      fade_in_curve(other->fade_in_curve),
      fade_out_curve(other->fade_out_curve),
      channel_offset(other->channel_offset),
      gain_left(other->gain_left),
      gain_right(other->gain_right),
      level_in(other->level_in),
      level_out(other->level_out),
      event_flags(other->event_flags),
      source_index(other->source_index),
      chunk_flags(other->chunk_flags),
      fade_in_shape(other->fade_in_shape),
      mute_flag(other->mute_flag),
      fade_out_shape(other->fade_out_shape),
      source_timestamp(other->source_timestamp),
      source_time_word(other->source_time_word),
      source_channel(other->source_channel),
      lw_channel_word(other->lw_channel_word),
      source_word(other->source_word) {
  std::copy(std::begin(other->source_in_string), std::end(other->source_in_string),
            source_in_string);
  std::copy(std::begin(other->source_out_string), std::end(other->source_out_string),
            source_out_string);
  std::copy(std::begin(other->reel_name), std::end(other->reel_name), reel_name);
  std::copy(std::begin(other->fade_in_name), std::end(other->fade_in_name), fade_in_name);
  std::copy(std::begin(other->fade_out_name), std::end(other->fade_out_name), fade_out_name);
  std::copy(std::begin(other->clip_name), std::end(other->clip_name), clip_name);
  std::copy(std::begin(other->file_path), std::end(other->file_path), file_path);
  std::copy(std::begin(other->comment), std::end(other->comment), comment);
  std::copy(std::begin(other->source_reel_name), std::end(other->source_reel_name),
            source_reel_name);
  std::copy(std::begin(other->src_index), std::end(other->src_index), src_index);
  std::copy(std::begin(other->originator), std::end(other->originator), originator);
  std::copy(std::begin(other->originator_reference), std::end(other->originator_reference),
            originator_reference);
  set_no_streams(other->no_streams);
  std::copy_n(other->streams, no_streams, streams);
}

CGenericEdlEntry::~CGenericEdlEntry() {
  if (streams != few_streams_) delete[] streams;
}

void CGenericEdlEntry::set_no_streams(int n) {
  if (streams != few_streams_) delete[] streams;
  streams = nullptr;
  if (n > 0 && n <= static_cast<int>(std::size(few_streams_))) streams = few_streams_;
  if (n > static_cast<int>(std::size(few_streams_))) {
    streams = new (std::nothrow) std::uint16_t[static_cast<std::size_t>(n)];
  }
  no_streams = streams == nullptr ? 0 : n;
  std::fill_n(streams, no_streams, no_stream);
}

void CGenericEdlEntry::set_stream(int i, unsigned short stream) {
  if (i < 0 || i >= no_streams) return;
  streams[i] = stream;
  if (owner != nullptr) owner->note_stream(stream);
}

void CGenericEdlEntry::set_reel_name(const wide_char* name) {
  set_reel_name(std::u16string_view(name, text_length(name)));
}

void CGenericEdlEntry::set_reel_name(std::u16string_view name) {
  reel = owner == nullptr ? nullptr : owner->find_or_add_reel(name);
  if (reel == nullptr) set_field(reel_name, name);
}

void CGenericEdlEntry::get_reel_name(wide_char* out, int size) const {
  if (reel != nullptr) {
    reel->get_reel_name(out, size);
  } else {
    read_field(reel_name, out, size);
  }
}

void CGenericEdlEntry::raise_source_streams(unsigned short n) {
  if (reel != nullptr) {
    reel->set_reel_no_streams(n);
  } else {
    reel_no_streams = std::max<std::uint16_t>(reel_no_streams, n);
  }
}

void CGenericEdlEntry::set_clip_name(const wide_char* text) {
  set_field(clip_name, text);
}

void CGenericEdlEntry::set_clip_name(std::u16string_view text) {
  set_field(clip_name, text);
}

void CGenericEdlEntry::set_file_path(const wide_char* text) {
  set_field(file_path, text);
}

void CGenericEdlEntry::set_file_path(std::u16string_view text) {
  set_field(file_path, text);
}

void CGenericEdlEntry::set_source_reel_name(const wide_char* text) {
  set_padded_name(source_reel_name, {text, text_length(text, std::size(source_reel_name))});
}

void CGenericEdlEntry::set_source_reel_name(std::u16string_view text) {
  set_padded_name(source_reel_name, text);
}

void CGenericEdlEntry::set_originator(const wide_char* text) {
  set_field(originator, text);
}

void CGenericEdlEntry::set_originator_reference(const wide_char* text) {
  set_field(originator_reference, text);
}

void CGenericEdlEntry::set_fade_in_name(const wide_char* text) {
  set_field(fade_in_name, text);
}

void CGenericEdlEntry::set_fade_out_name(const wide_char* text) {
  set_field(fade_out_name, text);
}

void CGenericEdlEntry::get_clip_name(wide_char* out, int size) const {
  read_field(clip_name, out, size);
}

void CGenericEdlEntry::get_file_path(wide_char* out, int size) const {
  read_field(file_path, out, size);
}

void CGenericEdlEntry::get_source_reel_name(wide_char* out, int size) const {
  read_field(source_reel_name, out, size);
}

void CGenericEdlEntry::get_originator(wide_char* out, int size) const {
  read_field(originator, out, size);
}

void CGenericEdlEntry::get_originator_reference(wide_char* out, int size) const {
  read_field(originator_reference, out, size);
}

void CGenericEdlEntry::get_fade_in_name(wide_char* out, int size) const {
  read_field(fade_in_name, out, size);
}

void CGenericEdlEntry::get_fade_out_name(wide_char* out, int size) const {
  read_field(fade_out_name, out, size);
}

void CGenericEdlEntry::set_fade_in_curve(unsigned short curve) {
  const EDL_CONVERSION_SETTINGS& settings = settings_of(owner);
  fade_in_curve = settings.force_default_fade_curves != 0 ? settings.default_fade_in_curve : curve;
}

void CGenericEdlEntry::set_fade_out_curve(unsigned short curve) {
  const EDL_CONVERSION_SETTINGS& settings = settings_of(owner);
  fade_out_curve =
      settings.force_default_fade_curves != 0 ? settings.default_fade_out_curve : curve;
}

void CGenericEdlEntry::samples_to_timecode(std::int64_t samples, wide_char* out) const {
  ::samples_to_timecode(base_of(owner), samples, out, 12);
}

std::int64_t CGenericEdlEntry::timecode_to_samples(const wide_char* text) const {
  return ::timecode_to_samples(base_of(owner), {text, text_length(text)});
}

std::int64_t CGenericEdlEntry::timecode_to_samples(const CString& text) const {
  return ::timecode_to_samples(base_of(owner), text.view());
}

std::int64_t CGenericEdlEntry::timecode_to_samples(std::u16string_view text) const {
  return ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlEntry::set_source_in_string(std::u16string_view text, unsigned short rate) {
  set_field(source_in_string, text);
  source_in = ::timecode_to_samples(base_of(owner), text);
  frame_rate = rate;
}

void CGenericEdlEntry::set_source_out_string(std::u16string_view text) {
  set_field(source_out_string, text);
  source_out = ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlEntry::set_dest_in_string(std::u16string_view text) {
  dest_in = ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlEntry::set_dest_out_string(std::u16string_view text) {
  dest_out = ::timecode_to_samples(base_of(owner), text);
}

void CGenericEdlEntry::set_source_in_string(const wide_char* text, unsigned short rate) {
  set_source_in_string(std::u16string_view(text, text_length(text)), rate);
}

void CGenericEdlEntry::set_source_out_string(const wide_char* text) {
  set_source_out_string(std::u16string_view(text, text_length(text)));
}

void CGenericEdlEntry::set_dest_in_string(const wide_char* text) {
  set_dest_in_string(std::u16string_view(text, text_length(text)));
}

void CGenericEdlEntry::set_dest_out_string(const wide_char* text) {
  set_dest_out_string(std::u16string_view(text, text_length(text)));
}

void CGenericEdlEntry::set_time_strings(const TimeTexts& texts, unsigned short rate) {
  const TimeBase base = base_of(owner);
  set_field(source_in_string, texts.source_in);
  set_field(source_out_string, texts.source_out);
  source_in = ::timecode_to_samples(base, texts.source_in);
  source_out = ::timecode_to_samples(base, texts.source_out);
  dest_in = ::timecode_to_samples(base, texts.dest_in);
  dest_out = ::timecode_to_samples(base, texts.dest_out);
  frame_rate = rate;
}

void CGenericEdlEntry::update_reel_frame_rate() {
  if (reel == nullptr || owner == nullptr) return;
  // An object that was never given a rate converts at its root's.
  const std::uint8_t rate = owner->original_frame_rate();
  reel->set_frame_rate(rate == rate_not_set ? owner->time_base().frame_rate_index : rate);
}

void CGenericEdlEntry::check_reel_frame_rate() {
  if (reel == nullptr || reel->frame_rate() == frame_rate) return;
  const TimeBase base = base_of(owner);
  TimeBase at_reel_rate = base;
  at_reel_rate.frame_rate_index =
      static_cast<std::uint8_t>(std::min<std::uint16_t>(reel->frame_rate(), rate_not_set));
  frame_rate = reel->frame_rate();
  const auto move = [&](std::int64_t& samples, wide_char(&digits)[12]) {
    wide_char text[time_code_size];
    ::samples_to_timecode(base, samples, text, time_code_size);
    set_field(digits, text);
    samples = ::timecode_to_samples(at_reel_rate, field_text(text));
  };
  move(source_in, source_in_string);
  move(source_out, source_out_string);
}

int CGenericEdlEntry::check_reel_name() const {
  wide_char name[33] = {};
  get_reel_name(name, 33);
  return reel_name_is_long(field_text(name)) ? 1 : 0;
}
