#include <algorithm>
#include <iterator>

#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/generic_reel.h"

namespace {

// Copies a text between a record and a field of an entry, to the end of the
// smaller of the two; the target keeps a terminator where it has room for one.
template <std::size_t out_size, std::size_t in_size>
void copy_field(wide_char (&out)[out_size], const wide_char (&in)[in_size]) {
  set_field(out, field_text(in));
}

// The index column is a text of up to ten places with its terminator inside.
void copy_index(wide_char (&out)[10], const wide_char (&in)[10]) {
  std::copy(std::begin(in), std::end(in), out);
}

std::uint16_t* copied_streams(const CGenericEdlEntry& entry) {
  if (entry.no_streams <= 0) return nullptr;
  auto* const words = new std::uint16_t[static_cast<std::size_t>(entry.no_streams)];
  std::copy_n(entry.streams, entry.no_streams, words);
  return words;
}

}  // namespace

void CGenericEdlEntry::get_entry_details(ENTRY_DETAILS* details) const {
  ENTRY_DETAILS& d = *details;
  d = ENTRY_DETAILS();
  d.owner = owner;
  d.source_in = source_in;
  d.source_out = source_out;
  samples_to_timecode(source_in, d.source_in_string);
  samples_to_timecode(source_out, d.source_out_string);
  d.frame_rate = frame_rate;
  d.source_is_timestamped = static_cast<std::uint32_t>(source_is_timestamped);
  d.dest_in = dest_in;
  d.dest_out = dest_out;
  d.dest_length = dest_length;
  get_reel_name(d.reel_name, static_cast<int>(std::size(d.reel_name)));
  d.reel_frame_rate = reel == nullptr ? std::uint16_t{0} : reel->frame_rate();
  d.reel_no_streams = reel == nullptr ? reel_no_streams : reel->no_streams;
  d.first_channel = first_channel;
  d.fade_in_curve = fade_in_curve;
  d.fade_out_curve = fade_out_curve;
  d.fade_in_length = fade_in_length;
  d.fade_out_length = fade_out_length;
  copy_field(d.fade_in_name, fade_in_name);
  copy_field(d.fade_out_name, fade_out_name);
  copy_field(d.clip_name, clip_name);
  copy_field(d.file_path, file_path);
  d.event_number = event_number;
  d.event_flags = event_flags;
  d.source_index = source_index;
  copy_field(d.comment, comment);
  d.detail_word = detail_word;
  d.gain_left = gain_left;
  d.gain_right = gain_right;
  copy_field(d.source_reel_name, source_reel_name);
  d.source_timestamp = source_timestamp;
  d.source_time_word = source_time_word;
  d.source_channel = source_channel;
  d.chunk_flags = chunk_flags;
  d.no_streams = no_streams;
  d.streams = copied_streams(*this);
  d.no_channels = no_channels;
  d.channel_offset = channel_offset;
  d.fade_in_shape = fade_in_shape;
  d.mute_flag = mute_flag;
  d.fade_out_shape = fade_out_shape;
  d.level_in = level_in;
  d.level_out = level_out;
  d.transition_type = transition_type;
  d.original_dest_in = original_dest_in;
  d.original_dest_out = original_dest_out;
  d.original_source_in = original_source_in;
  d.original_source_out = original_source_out;
  copy_index(d.src_index, src_index);
  d.lw_channel_word = lw_channel_word;
  d.source_word = source_word;
  copy_field(d.originator, originator);
  copy_field(d.originator_reference, originator_reference);
}

// The order counts: the reel is looked up with the owner just stored, its rate
// and stream count follow, and curves pass the settings of that owner.
void CGenericEdlEntry::set_entry_details(const ENTRY_DETAILS* details) {
  const ENTRY_DETAILS& d = *details;
  owner = d.owner;
  frame_rate = static_cast<std::uint16_t>(d.frame_rate);
  source_is_timestamped = static_cast<std::int32_t>(d.source_is_timestamped);
  source_in = d.source_in;
  source_out = d.source_out;
  dest_in = d.dest_in;
  dest_out = d.dest_out;
  dest_length = d.dest_length;
  // The record's last place is a terminator whatever stands in it.
  wide_char name[13];
  set_field(name, field_text(d.reel_name));
  set_reel_name(name);
  if (reel != nullptr) {
    reel->set_frame_rate(d.reel_frame_rate);
    reel->set_reel_no_streams(d.reel_no_streams);
  } else {
    reel_no_streams = d.reel_no_streams;
  }
  first_channel = d.first_channel;
  set_fade_in_curve(d.fade_in_curve);
  set_fade_out_curve(d.fade_out_curve);
  fade_in_length = d.fade_in_length;
  fade_out_length = d.fade_out_length;
  set_fade_in_name(d.fade_in_name);
  set_fade_out_name(d.fade_out_name);
  set_clip_name(d.clip_name);
  set_file_path(d.file_path);
  event_number = d.event_number;
  event_flags = d.event_flags;
  source_index = d.source_index;
  copy_field(comment, d.comment);
  detail_word = d.detail_word;
  gain_left = d.gain_left;
  gain_right = d.gain_right;
  set_source_reel_name(d.source_reel_name);
  source_timestamp = d.source_timestamp;
  source_time_word = d.source_time_word;
  source_channel = d.source_channel;
  chunk_flags = d.chunk_flags;
  set_no_streams(d.streams == nullptr ? 0 : d.no_streams);
  for (int i = 0; d.streams != nullptr && i < no_streams; ++i)
    set_stream(i, d.streams[i]);
  no_channels = d.no_channels;
  channel_offset = d.channel_offset;
  fade_in_shape = d.fade_in_shape;
  mute_flag = d.mute_flag;
  fade_out_shape = d.fade_out_shape;
  level_in = d.level_in;
  level_out = d.level_out;
  transition_type = d.transition_type;
  original_dest_in = d.original_dest_in;
  original_dest_out = d.original_dest_out;
  original_source_in = d.original_source_in;
  original_source_out = d.original_source_out;
  copy_index(src_index, d.src_index);
  lw_channel_word = d.lw_channel_word;
  source_word = d.source_word;
  set_originator(d.originator);
  set_originator_reference(d.originator_reference);
}
