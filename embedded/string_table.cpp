#include "embedded/string_table.h"

#include <algorithm>
#include <array>

#include "host/string_ids.h"

namespace embedded {

namespace {

using namespace string_id;  // NOLINT(google-build-using-namespace)

// Formats: edit_format and event_format take a text ("%s") and then a number
// ("%d"); the three AAF messages about a rate take it as "%d", in Hz.
constexpr auto rows = std::to_array<StringRow>({
    {unnamed_fault, u"An event holds nothing but its number."},

    {reel_rate_24, u"24 fps"},
    {reel_rate_25, u"25 fps"},
    {reel_rate_2997, u"29.97 fps non-drop"},
    {reel_rate_2997_drop, u"29.97 fps drop"},
    {reel_rate_30, u"30 fps"},
    {reel_rate_unknown, u"rate not known"},
    {question_title, u"Edit list conversion"},

    {error_0, u"The conversion could not be done."},
    {bad_line, u"This event does not fit the format and was left out."},
    {error_2, u"The edit list is empty."},
    {error_3, u"The edit list could not be saved."},
    {error_4, u"The file is not an edit list of this format."},
    {error_5, u"The edit list was written by a later version of its program."},
    {error_6, u"A reel of the edit list is not known."},
    {error_7, u"A transition of the edit list is of a kind that is not supported."},
    {error_8, u"A channel of the edit list does not exist."},
    {error_9,
     u"The edit list holds something that this format cannot express; nothing was written."},
    {error_10, u"The file is damaged and could not be read to its end."},
    {error_11, u"The file could not be opened."},
    {error_12, u"The file could not be written."},
    {error_title, u"Edit list conversion report"},
    {too_many_streams,
     u"The edit list uses more than eight tracks, which is all that this format holds."},
    {bad_stream_count, u"An edit is neither mono nor stereo, so this format cannot hold it."},
    {odd_stereo_start,
     u"A stereo edit begins on an even-numbered track; this format pairs tracks 1 and 2, 3 and 4, "
     u"and so on."},
    {overlapping_edits,
     u"Edits overlap on one track and no free track is left to move one of them to."},
    {source_length_zero, u"The source of this edit has no length."},
    {lengths_differ,
     u"Source and record lengths of this edit differ by more than one frame; the edit is kept as "
     u"it stands."},
    {edit_format, u"%s (edit %d)"},
    {event_format, u"%s (event %d)"},
    {negative_source_in,
     u"The source of this edit would begin before zero; the edit now starts where its source "
     u"does."},
    {video_level,
     u"This picture edit carries a level other than full; check it against the original."},
    {dump_file_missing,
     u"The dump file that belongs to this multitrack list could not be read, so the sources of "
     u"its 900 edits stay unresolved."},
    {no_edit_before, u"This 900 edit has no partner of the same number to take its reel from."},
    {negative_time, u"A time in this line is negative; the edit was left out."},
    {error_25, u"The edit list holds more edits than this format can number."},
    {ask_frame_rate,
     u"The file states another frame rate than the one that is set. Take the file's frame rate?"},
    {ask_sample_rate,
     u"The file states another sample rate than the one that is set. Take the file's sample "
     u"rate?"},
    {error_19, u"The edit list could not be converted to this sample rate."},

    {chunk_warning_0, u"The file holds something unexpected."},
    {chunk_header_version, u"The header of the file is of a later version than is known here."},
    {chunk_list_version, u"A list in the file is of a later version than is known here."},
    {chunk_entry_version, u"An edit in the file is of a later version than is known here."},
    {chunk_track_version, u"A source in the file is of a later version than is known here."},
    {chunk_automation_version,
     u"Automation or a locator in the file is of a later version than is known here."},
    {chunk_pq_header_version,
     u"The PQ header in the file is of a later version than is known here."},
    {chunk_pq_entry_version, u"A PQ entry in the file is of a later version than is known here."},
    {chunk_unknown_list, u"The file holds a list of an unknown kind, which was passed over."},
    {chunk_unknown_item,
     u"A list in the file holds an item of an unknown kind, which was passed "
     u"over."},
    {chunk_warning_title, u"Warning"},
    {chunk_warning_tail, u"Reading goes on; check the result against the original."},
    {chunk_pq_details_version,
     u"The PQ details in the file are of a later version than is known here."},

    {error_26, u"The audio decision list could not be written."},
    {error_27, u"A source is of a file type that this audio decision list cannot name."},

    {adl_no_adl, u"This is not an audio decision list: there is no ADL tag."},
    {adl_version_twice, u"The list has two VERSION sections."},
    {adl_version_open, u"The VERSION section is not closed."},
    {adl_project_twice, u"The list has two PROJECT sections."},
    {adl_project_open, u"The PROJECT section is not closed."},
    {adl_system_twice, u"The list has two SYSTEM sections."},
    {adl_system_open, u"The SYSTEM section is not closed."},
    {adl_sequence_twice, u"The list has two SEQUENCE sections."},
    {adl_sequence_open, u"The SEQUENCE section is not closed."},
    {adl_tracklist_twice, u"The list has two TRACKLIST sections."},
    {adl_tracklist_open, u"The TRACKLIST section is not closed."},
    {adl_source_index_twice, u"The list has two SOURCE_INDEX sections."},
    {adl_source_index_open, u"The SOURCE_INDEX section is not closed."},
    {adl_event_list_twice, u"The list has two EVENT_LIST sections."},
    {adl_event_list_open, u"The EVENT_LIST section is not closed."},
    {adl_fader_list_twice, u"The list has two FADER_LIST sections."},
    {adl_fader_list_open, u"The FADER_LIST section is not closed."},
    {adl_mute_list_twice, u"The list has two MUTE_LIST sections."},
    {adl_mute_list_open, u"The MUTE_LIST section is not closed."},
    {adl_unknown_section_open, u"A section of an unknown kind is not closed."},
    {adl_section_missing,
     u"The list ends without all of the sections that it must have: VERSION, PROJECT and "
     u"SEQUENCE."},
    {adl_token_expected, u"The file ends where another value was expected."},
    {adl_bad_start, u"The start time of the sequence (SEQ_DEST_START) is not a valid time."},
    {adl_no_start, u"The sequence does not state its start time (SEQ_DEST_START)."},
    {adl_sequence_end, u"The SEQUENCE section does not end with its closing tag."},
    {adl_source_index_end, u"The SOURCE_INDEX section does not end with its closing tag."},
    {adl_event_list_end, u"The EVENT_LIST section does not end with its closing tag."},
    {adl_fader_channel, u"A fader point has no valid channel number."},
    {adl_fader_time, u"A fader point has no valid time."},
    {adl_fader_value, u"A fader point has no valid level in dB."},
    {adl_fader_end, u"The FADER_LIST section does not end with its closing tag."},
    {adl_mute_channel, u"A mute point has no valid channel number."},
    {adl_mute_time, u"A mute point has no valid time."},
    {adl_mute_value, u"A mute point is marked neither M (muted) nor U (not muted)."},
    {adl_mute_end, u"The MUTE_LIST section does not end with its closing tag."},
    {adl_index_empty, u"An entry of the source index is empty."},
    {adl_index_number, u"An entry of the source index has no valid number."},
    {adl_index_marker, u"A source is marked neither as a file (F) nor as embedded (E)."},
    {adl_index_no_url, u"A source has no file name (URL)."},
    {adl_url, u"The file name (URL) of a source could not be understood, or is too long."},
    {adl_extension, u"The file of a source is of a type that is not accepted here."},
    {adl_index_no_umid, u"The place for the UMID of a source is empty."},
    {adl_index_time_stamp, u"The time stamp of a source is not a valid time."},
    {adl_entry_ended, u"An event ends before all of its values are given."},
    {adl_entry_number, u"An event has no valid number."},
    {adl_two_cuts, u"An event has two Cut fields."},
    {adl_cut_no_kind, u"The Cut of an event is empty."},
    {adl_cut_no_source, u"The Cut of an event names no source."},
    {adl_cut_source_number, u"The Cut of an event has no valid source number."},
    {adl_source_unknown,
     u"An event uses a source that is not in the source index; the event is left out."},
    {adl_cut_kind, u"The Cut of an event is neither of kind I (index) nor of kind F (file)."},
    {adl_source_channels, u"The source channels of an event are not valid."},
    {adl_destination_channels, u"The destination tracks of an event are not valid."},
    {adl_channels_differ,
     u"An event has not the same number of source channels and destination tracks."},
    {adl_source_in, u"The source start of an event is not a valid time."},
    {adl_destination_in, u"The destination start of an event is not a valid time."},
    {adl_destination_out, u"The destination end of an event is not a valid time."},
    {adl_destination_order, u"An event ends before it starts."},
    {adl_mode, u"The mode of an event is neither R (record) nor M (muted)."},
    {adl_two_infades, u"An event has two Infade fields."},
    {adl_infade_no_time, u"The Infade of an event has no length."},
    {adl_infade_time, u"The length of an Infade is not a valid time."},
    {adl_infade_shape, u"The shape of an Infade is neither LIN nor a complete CURVE."},
    {adl_two_outfades, u"An event has two Outfade fields."},
    {adl_outfade_no_time, u"The Outfade of an event has no length."},
    {adl_outfade_time, u"The length of an Outfade is not a valid time."},
    {adl_outfade_shape, u"The shape of an Outfade is neither LIN nor a complete CURVE."},
    {adl_two_gains, u"An event has two Gain fields."},
    {adl_gain, u"The Gain of an event is not a valid level in dB."},
    {adl_umid_long, u"The UMID of a source is longer than 32 characters and was left out."},
    {adl_remark, u"A remark (Rem) of an event is of an unknown kind."},
    {adl_crossfade_length,
     u"The crossfade length of the system section (SYS_XFADE_LEN) is not valid."},
    {ask_crossfade_length,
     u"The list states another crossfade length than the default one. Take it as the new "
     u"default?"},

    {aaf_rate_changes,
     u"The sources have different sample rates. The edit list runs at %d Hz; edits from sources "
     u"of another rate may not lie where they should."},
    {aaf_rate_unknown,
     u"A source has a sample rate of %d Hz, which cannot be an edit list's own. Edits from it may "
     u"not lie where they should."},
    {aaf_ask_default_fade,
     u"The composition states another default fade length than the one that is set. Take it as "
     u"the new default?"},
    {aaf_no_audio_folder,
     u"The file carries audio inside, but there is no folder to copy it to (--audio-folder)."},
    {aaf_cannot_create, u"The AAF file could not be created. "},
    {aaf_reason_access, u"Access was denied: check the rights of the folder and of the file."},
    {aaf_reason_protected, u"The disk is write-protected."},
    {aaf_reason_in_use, u"Another program has the file open."},
    {aaf_reason_disk_full, u"The disk is full."},
    {aaf_reason_network, u"The network does not allow it."},
    {aaf_audio_exists_head, u"The audio file "},
    {aaf_audio_exists_middle, u" stands there already and is not overwritten. "},
    {aaf_audio_exists_tail,
     u"Move it away, or export to another folder, or with the audio embedded."},
    {aaf_source_rates_differ,
     u"Not all sources have the sample rate of the edit list, which an AAF export needs; nothing "
     u"was written."},
    {aaf_rate_refused, u"An AAF file cannot be exported at %d Hz; nothing was written."},

    {adl_pan_list_twice, u"The list has two PAN_LIST sections."},
    {adl_pan_list_open, u"The PAN_LIST section is not closed."},
    {adl_pan_channel, u"A pan point has no valid channel number."},
    {adl_pan_time, u"A pan point has no valid time."},
    {adl_pan_value, u"A pan point has no valid position."},
    {adl_pan_end, u"The PAN_LIST section does not end with its closing tag."},

    {aaf_no_composition, u"The file holds no composition that could be read."},
    {error_28,
     u"A source is not a Sound Designer II file, and this audio decision list can name no other."},
    {aaf_ask_missing_sources,
     u"The audio of some edits could not be found; they would be left out. Export all the same?"},
    {adl_fades_too_long, u"The two fades of an event together are longer than the event."},
});

static_assert(std::is_sorted(rows.begin(), rows.end(),
                             [](const StringRow& a, const StringRow& b) { return a.id < b.id; }));

}  // namespace

std::span<const StringRow> string_table() {
  return rows;
}

const char16_t* english_text(unsigned id) {
  const auto at =
      std::lower_bound(rows.begin(), rows.end(), id,
                       [](const StringRow& row, unsigned wanted) { return row.id < wanted; });
  return at == rows.end() || at->id != id ? nullptr : at->text;
}

}  // namespace embedded
