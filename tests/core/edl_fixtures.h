// Lists and entries that tests of several folders build.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "host/rates.h"

namespace support {

inline void set_rates(CGenericEdl& edl, std::uint8_t sample_rate_index = 2,
                      std::uint8_t frame_rate = 1, std::int32_t interactive = 0) {
  EDL_DETAILS details;
  details.sample_rate_index = sample_rate_index;
  details.frame_rate = frame_rate;
  details.interactive = interactive;
  edl.set_edl_details(&details);
}

// What a test says of an entry; all else is as the constructor leaves it.
struct Edit {
  std::int64_t dest_in = 0;
  std::int64_t dest_out = 0;
  std::int64_t source_in = 0;
  std::int64_t source_out = 0;
  std::vector<int> streams = {0};
  std::u16string reel = {};
  std::int64_t fade_in = 0;
  std::int64_t fade_out = 0;
  std::uint16_t event_number = 65535;
  std::uint16_t first_channel = 0;
  std::uint32_t transition = 0;
};

inline std::unique_ptr<CGenericEdlEntry> make_entry(CGenericEdl& owner, const Edit& edit) {
  auto entry = std::make_unique<CGenericEdlEntry>(&owner);
  entry->dest_in = edit.dest_in;
  entry->dest_out = edit.dest_out;
  entry->source_in = edit.source_in;
  entry->source_out = edit.source_out;
  entry->set_no_streams(static_cast<int>(edit.streams.size()));
  for (std::size_t i = 0; i < edit.streams.size(); ++i) {
    entry->set_stream(static_cast<int>(i), static_cast<std::uint16_t>(edit.streams[i]));
  }
  if (!edit.reel.empty()) entry->set_reel_name(edit.reel.c_str());
  entry->fade_in_length = edit.fade_in;
  entry->fade_out_length = edit.fade_out;
  entry->event_number = edit.event_number;
  entry->first_channel = edit.first_channel;
  entry->transition_type = edit.transition;
  return entry;
}

// Adds an entry at the tail; the list owns it.
inline CGenericEdlEntry& add_entry(CGenericEdl& edl, const Edit& edit) {
  auto entry = make_entry(edl, edit);
  edl.get_generic_entry_list()->AddTail(entry.get());
  return *entry.release();
}

// Ten seconds from 01:00:00:00 of "TAPE01" at 10:00:00:00, at 48000 Hz and 25
// frames, event 1 on stream 0.
inline Edit standard_edit() {
  Edit edit;
  edit.event_number = 1;
  edit.reel = u"TAPE01";
  edit.source_in = 172800000;
  edit.source_out = 173280000;
  edit.dest_in = 1728000000;
  edit.dest_out = 1728480000;
  return edit;
}

inline std::vector<CGenericEdlEntry*> entries_of(const CObList* list) {
  std::vector<CGenericEdlEntry*> entries;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    entries.push_back(static_cast<CGenericEdlEntry*>(list->GetNext(at)));
  }
  return entries;
}
inline std::vector<CGenericEdlEntry*> entries_of(const CGenericEdl& edl) {
  return entries_of(edl.get_generic_entry_list());
}

inline std::vector<int> streams_of(const CGenericEdlEntry& entry) {
  return {entry.streams, entry.streams + entry.no_streams};
}

inline std::u16string reel_of(const CGenericEdlEntry& entry) {
  wide_char name[13];
  entry.get_reel_name(name, 13);
  return name;
}

}  // namespace support
