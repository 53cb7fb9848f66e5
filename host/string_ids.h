// The ids of every text that the library can ask its host for. The wording is the
// host's; the numbers are fixed. A message number of an ADL parser is such an id.
#pragma once

#include <span>

#include "host/api.h"

namespace string_id {

enum Id : unsigned {
  unnamed_fault = 1,  // An event entry that holds nothing but its number; shown as it stands
  reel_rate_24 = 20659,
  reel_rate_25 = 20660,
  reel_rate_2997 = 20661,
  reel_rate_2997_drop = 20662,
  reel_rate_30 = 20663,
  reel_rate_unknown = 21641,
  question_title = 21715,  // title of the library's questions
  error_0 = 22230,
  bad_line = 22231,  // a line that no format could read
  error_2 = 22232,
  error_3 = 22233,
  error_4 = 22234,
  error_5 = 22235,
  error_6 = 22236,
  error_7 = 22237,
  error_8 = 22238,
  error_9 = 22239,
  error_10 = 22240,
  error_11 = 22241,
  error_12 = 22242,
  error_title = 22243,        // title of the error box
  too_many_streams = 22246,   // EDL2: more than eight streams
  bad_stream_count = 22247,   // EDL2: neither mono nor stereo
  odd_stereo_start = 22248,   // EDL2: a stereo edit from an odd stream
  overlapping_edits = 22249,  // EDL2: no free channel
  source_length_zero = 22250,
  lengths_differ = 22251,      // source and destination lengths more than a frame apart
  edit_format = 22252,         // a text and a number, for numbered edits of a dump file
  event_format = 22253,        // a text and a number, for events
  negative_source_in = 22254,  // Lightworks
  video_level = 22255,         // Lightworks
  dump_file_missing = 22256,
  no_edit_before = 22257,
  negative_time = 22258,
  error_25 = 22259,
  ask_frame_rate = 22386,
  ask_sample_rate = 22387,
  error_19 = 23314,
  chunk_warning_0 = 23872,
  chunk_header_version = 23873,
  chunk_list_version = 23874,
  chunk_entry_version = 23875,
  chunk_track_version = 23876,
  chunk_automation_version = 23877,  // also locators
  chunk_pq_header_version = 23878,
  chunk_pq_entry_version = 23879,
  chunk_unknown_list = 23880,
  chunk_unknown_item = 23881,
  chunk_warning_title = 23882,
  chunk_warning_tail = 23883,  // second paragraph of every chunk warning
  chunk_pq_details_version = 23884,
  error_26 = 24387,
  error_27 = 24388,
  adl_no_adl = 24389,
  adl_version_twice = 24390,
  adl_version_open = 24391,
  adl_project_twice = 24392,
  adl_project_open = 24393,
  adl_system_twice = 24394,
  adl_system_open = 24395,
  adl_sequence_twice = 24396,
  adl_sequence_open = 24397,
  adl_tracklist_twice = 24398,
  adl_tracklist_open = 24399,
  adl_source_index_twice = 24400,
  adl_source_index_open = 24401,
  adl_event_list_twice = 24402,
  adl_event_list_open = 24403,
  adl_fader_list_twice = 24404,
  adl_fader_list_open = 24405,
  adl_mute_list_twice = 24406,
  adl_mute_list_open = 24407,
  adl_unknown_section_open = 24408,
  adl_section_missing = 24409,  // VERSION, PROJECT or SEQUENCE
  adl_token_expected = 24410,
  adl_bad_start = 24411,
  adl_no_start = 24412,
  adl_sequence_end = 24413,
  adl_source_index_end = 24414,
  adl_event_list_end = 24415,
  adl_fader_channel = 24416,
  adl_fader_time = 24417,
  adl_fader_value = 24418,
  adl_fader_end = 24419,
  adl_mute_channel = 24420,
  adl_mute_time = 24421,
  adl_mute_value = 24422,
  adl_mute_end = 24423,
  adl_index_empty = 24424,
  adl_index_number = 24425,
  adl_index_marker = 24426,
  adl_index_no_url = 24427,
  adl_url = 24428,
  adl_extension = 24429,
  adl_index_no_umid = 24430,
  adl_index_time_stamp = 24431,
  adl_entry_ended = 24432,
  adl_entry_number = 24433,
  adl_two_cuts = 24434,
  adl_cut_no_kind = 24435,
  adl_cut_no_source = 24436,
  adl_cut_source_number = 24437,
  adl_source_unknown = 24438,  // a warning
  adl_cut_kind = 24439,
  adl_source_channels = 24440,
  adl_destination_channels = 24441,
  adl_channels_differ = 24442,
  adl_source_in = 24443,
  adl_destination_in = 24444,
  adl_destination_out = 24445,
  adl_destination_order = 24446,
  adl_mode = 24447,
  adl_two_infades = 24448,
  adl_infade_no_time = 24449,
  adl_infade_time = 24450,
  adl_infade_shape = 24451,
  adl_two_outfades = 24452,
  adl_outfade_no_time = 24453,
  adl_outfade_time = 24454,
  adl_outfade_shape = 24455,
  adl_two_gains = 24456,
  adl_gain = 24457,
  adl_umid_long = 24458,  // a warning
  adl_remark = 24459,
  adl_crossfade_length = 24493,
  ask_crossfade_length = 24494,
  aaf_rate_changes = 24730,  // holds a place for a rate
  aaf_rate_unknown = 24731,  // holds a place for a rate
  aaf_ask_default_fade = 24732,
  aaf_no_audio_folder = 24743,
  aaf_cannot_create = 24787,
  aaf_reason_access = 24788,
  aaf_reason_protected = 24789,
  aaf_reason_in_use = 24790,
  aaf_reason_disk_full = 24791,
  aaf_reason_network = 24792,
  aaf_audio_exists_head = 24793,
  aaf_audio_exists_middle = 24794,
  aaf_audio_exists_tail = 24795,
  aaf_source_rates_differ = 24863,
  aaf_rate_refused = 24864,  // holds a place for a rate
  adl_pan_list_twice = 24875,
  adl_pan_list_open = 24876,
  adl_pan_channel = 24877,
  adl_pan_time = 24878,
  adl_pan_value = 24880,
  adl_pan_end = 24881,
  aaf_no_composition = 24962,
  error_28 = 25698,
  aaf_ask_missing_sources = 26413,
  adl_fades_too_long = 28198,
};

}  // namespace string_id

// All of them, in rising order.
EDL_API std::span<const unsigned> all_string_ids();
