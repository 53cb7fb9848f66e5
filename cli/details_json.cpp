#include "cli/details_json.h"

#include <memory>

#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/generic_locator_entry.h"
#include "core/generic_pq_entry.h"
#include "core/generic_reel.h"

namespace cli {

namespace {

Json time_json(std::int64_t samples) {
  return samples == time_not_given ? Json(nullptr) : Json(samples);
}

template <std::size_t size>
std::string field_json(const wide_char (&field)[size]) {
  return shown_text(field_text(field));
}

template <class T, class Make>
Json list_json(const CObList* list, Make make) {
  Json all = Json::array();
  for (POSITION at = list == nullptr ? nullptr : list->GetHeadPosition(); at != nullptr;) {
    if (auto* const object = static_cast<T*>(list->GetNext(at)); object != nullptr) {
      all.push_back(make(*object));
    }
  }
  return all;
}

Json entry_json(const CGenericEdlEntry& entry) {
  ENTRY_DETAILS d;
  entry.get_entry_details(&d);
  const std::unique_ptr<std::uint16_t[]> streams(d.streams);
  Json json;
  json["source_in"] = time_json(d.source_in);
  json["source_out"] = time_json(d.source_out);
  json["source_in_string"] = field_json(d.source_in_string);
  json["source_out_string"] = field_json(d.source_out_string);
  json["frame_rate"] = d.frame_rate;
  json["source_is_timestamped"] = d.source_is_timestamped;
  json["dest_in"] = time_json(d.dest_in);
  json["dest_out"] = time_json(d.dest_out);
  json["dest_length"] = time_json(d.dest_length);
  json["reel_name"] = field_json(d.reel_name);
  json["reel_frame_rate"] = d.reel_frame_rate;
  json["reel_no_streams"] = d.reel_no_streams;
  json["first_channel"] = d.first_channel;
  json["fade_in_curve"] = d.fade_in_curve;
  json["fade_out_curve"] = d.fade_out_curve;
  json["fade_in_length"] = time_json(d.fade_in_length);
  json["fade_out_length"] = time_json(d.fade_out_length);
  json["fade_in_name"] = field_json(d.fade_in_name);
  json["fade_out_name"] = field_json(d.fade_out_name);
  json["clip_name"] = field_json(d.clip_name);
  json["file_path"] = field_json(d.file_path);
  json["event_number"] = d.event_number;
  json["event_flags"] = d.event_flags;
  json["source_index"] = d.source_index;
  json["comment"] = field_json(d.comment);
  json["detail_word"] = d.detail_word;
  json["gain_left"] = d.gain_left;
  json["gain_right"] = d.gain_right;
  json["source_reel_name"] = field_json(d.source_reel_name);
  json["source_timestamp"] = time_json(d.source_timestamp);
  json["source_time_word"] = d.source_time_word;
  json["source_channel"] = d.source_channel;
  json["chunk_flags"] = d.chunk_flags;
  json["no_streams"] = d.no_streams;
  json["streams"] = std::vector<std::uint16_t>(d.streams, d.streams + d.no_streams);
  json["no_channels"] = d.no_channels;
  json["channel_offset"] = d.channel_offset;
  json["fade_in_shape"] = d.fade_in_shape;
  json["mute_flag"] = d.mute_flag;
  json["fade_out_shape"] = d.fade_out_shape;
  json["level_in"] = d.level_in;
  json["level_out"] = d.level_out;
  json["transition_type"] = d.transition_type;
  json["original_dest_in"] = d.original_dest_in;
  json["original_dest_out"] = d.original_dest_out;
  json["original_source_in"] = d.original_source_in;
  json["original_source_out"] = d.original_source_out;
  json["src_index"] = field_json(d.src_index);
  json["lw_channel_word"] = d.lw_channel_word;
  json["source_word"] = d.source_word;
  json["originator"] = field_json(d.originator);
  json["originator_reference"] = field_json(d.originator_reference);
  return json;
}

Json video_entry_json(const CGenericEdlVideoEntry& entry) {
  VIDEO_DETAILS d;
  entry.get_video_details(&d);
  Json json;
  json["source_in"] = time_json(d.source_in);
  json["source_out"] = time_json(d.source_out);
  json["video_word"] = d.video_word;
  json["dest_in"] = time_json(d.dest_in);
  json["dest_out"] = time_json(d.dest_out);
  json["dest_length"] = time_json(d.dest_length);
  json["reel_name"] = field_json(d.reel_name);
  json["reel_frame_rate"] = d.reel_frame_rate;
  json["fade_in_curve"] = d.fade_in_curve;
  json["fade_out_curve"] = d.fade_out_curve;
  json["clip_name"] = field_json(d.clip_name);
  json["file_path"] = field_json(d.file_path);
  json["source_reel_name"] = field_json(d.source_reel_name);
  json["event_flags"] = d.event_flags;
  json["event_number"] = d.event_number;
  json["reserved_word"] = d.reserved_word;
  json["source_index"] = d.source_index;
  json["comment"] = field_json(d.comment);
  json["source_timestamp"] = time_json(d.source_timestamp);
  json["detail_words"] = d.detail_words;
  json["transition_type"] = d.transition_type;
  json["transition_times"] = d.transition_times;
  json["gain"] = d.gain;
  return json;
}

Json pq_entry_json(const CGenericPQEntry& entry) {
  return {{"position_a", entry.position_a},
          {"position_b", entry.position_b},
          {"track_number", entry.track_number},
          {"index_number", entry.index_number},
          {"first_text", shown_text(entry.first_text.view())},
          {"second_text", shown_text(entry.second_text.view())},
          {"flag_a", entry.flag_a},
          {"flag_b", entry.flag_b},
          {"isrc", shown_text(entry.isrc.view())},
          {"third_text", shown_text(entry.third_text.view())}};
}

Json automation_run_json(const CGenericAutomationChunk& chunk) {
  return {{"type", chunk.type},
          {"channel", chunk.channel},
          {"points", list_json<CGenericAutomationEntry>(
                         chunk.points, [](const CGenericAutomationEntry& point) {
                           return Json::array({point.time, point.value});
                         })}};
}

}  // namespace

std::string shown_text(std::u16string_view text) {
  return utf8_from_text(trimmed_right(text));
}

Json entries_json(const CObList* entries) {
  return list_json<CGenericEdlEntry>(entries, entry_json);
}

Json video_json(const CObList* entries) {
  return list_json<CGenericEdlVideoEntry>(entries, video_entry_json);
}

Json reels_json(const CObList* reels) {
  return list_json<CGenericReel>(reels, [](const CGenericReel& reel) -> Json {
    return {{"reel_name", shown_text(field_text(reel.reel_name))},
            {"frame_rate", reel.frame_rate()},
            {"no_streams", reel.no_streams}};
  });
}

Json pq_json(const CGenericEdl& edl) {
  PQ_DETAILS details;
  edl.get_pq_details(&details);
  Json texts = Json::array();
  for (const auto& text : details.pq_text)
    texts.push_back(field_json(text));
  return {{"catalogue", field_json(details.pq_catalogue)},
          {"texts", texts},
          {"word", details.pq_word},
          {"entries", list_json<CGenericPQEntry>(edl.get_pq_list(), pq_entry_json)}};
}

Json locators_json(const CObList* locators) {
  return list_json<CGenericLocatorEntry>(locators, [](const CGenericLocatorEntry& l) -> Json {
    return {
        {"time", l.time}, {"name", shown_text(l.name.view())}, {"locator_value", l.locator_value}};
  });
}

Json automation_json(const CObList* chunks) {
  return list_json<CGenericAutomationChunk>(chunks, automation_run_json);
}

}  // namespace cli
