// The edit list in memory, and the base of every format.
//
// An object without a parent is a root: it owns its five lists and what is on
// them. An object with a parent works on the parent's lists and owns only its own
// reels. List accessors follow one parent; settings, PQ texts and the highest
// stream are read from the root, however far up it is.
#pragma once

#include <cstdint>
#include <vector>

#include "core/clock_time.h"
#include "core/edl_conversion.h"
#include "core/edl_details.h"
#include "core/reel_index.h"
#include "core/result_codes.h"
#include "host/framework/ob_list.h"
#include "host/framework/object.h"
#include "host/framework/string.h"
#include "host/rates.h"
#include "host/text.h"

class CGenericEdlEntry;
class CGenericReel;

class EDL_API CGenericEdl : public CObject {
 public:
  // `parent` is not owned and must outlive this object. `interactive` nonzero
  // allows the frame-rate question.
  explicit CGenericEdl(CGenericEdl* parent = nullptr, int interactive = 0);
  CGenericEdl(const CGenericEdl&) = delete;
  CGenericEdl& operator=(const CGenericEdl&) = delete;
  ~CGenericEdl() override;

  // The slots, in their order. A format fills the lists from a file or writes
  // them to one; the base does nothing and answers 0.
  [[nodiscard]] virtual result_code import_edl(const wide_char* path);
  // What `option` asks for is the format's own.
  [[nodiscard]] virtual result_code export_edl(const wide_char* path, int option);
  // Where an entry's channels begin for the operations below: its stream 0.
  [[nodiscard]] virtual unsigned short get_first_stream(const CGenericEdlEntry* entry) const;
  // Nonzero when reels of this name may be shared objects.
  [[nodiscard]] virtual int supports_reel_objects(const wide_char* name) const;
  // Adds to `out`, for each entry from `reel` (the very object), the pieces of
  // `source_edl` that its source range covers; with a null source, a copy of the
  // entry. The caller owns what is added. Mode 0: the pieces, or a plain copy when
  // they leave a gap; 1: the pieces; 2: the pieces, with gaps filled from the
  // entry itself. Always 101.
  virtual result_code traceback(CObList* out, CGenericEdl* source_edl, CGenericReel* reel,
                                unsigned short mode);

  // Null where the object in question has no list.
  [[nodiscard]] CObList* get_generic_entry_list() const;
  [[nodiscard]] CObList* get_pq_list() const;
  [[nodiscard]] CObList* get_locator_list() const;
  // CGenericAutomationChunk objects; the root ends their points with them.
  [[nodiscard]] CObList* get_automation_list() const;
  [[nodiscard]] CObList* get_video_list() const;
  [[nodiscard]] CObList* get_reel_list() { return &reel_list; }

  void get_list_details(LIST_DETAILS* details);
  void get_edl_details(EDL_DETAILS* details) const;
  // Acts in the record's order; the two rates go through their setters.
  void set_edl_details(const EDL_DETAILS* details);
  // Reads the root's PQ texts; sets this object's own.
  void get_pq_details(PQ_DETAILS* details) const;
  void set_pq_details(const PQ_DETAILS* details);
  void get_update_settings_details(UPDATE_SETTINGS_DETAILS* details) const;
  // Copied whole. The channel map that it points to is not owned.
  void set_edl_conversion_settings(const EDL_CONVERSION_SETTINGS* settings);
  // Those of the root.
  [[nodiscard]] const EDL_CONVERSION_SETTINGS& settings() const { return root()->settings_; }

  // The first rate given is taken. A later one changes nothing unless the settings
  // and `interactive` allow the question and the person says Yes.
  void set_frame_rate(unsigned char rate);
  // The rate always follows. Where it differs from one already set, the person is
  // asked; the answer only decides whether the change is noted.
  void set_sample_rate_index(unsigned char rate);

  // The first reel of this name (ASCII case aside, compared whole), or a new one at
  // the tail of the list with this EDL's frame rate. Null where reels are not
  // supported, and where memory runs out: the list then gets a null.
  [[nodiscard]] CGenericReel* find_or_add_reel(const wide_char* name);
  [[nodiscard]] CGenericReel* find_or_add_reel(std::u16string_view name);
  // Deletes the reels. Entries that used them keep the names, and the stream counts
  // of audio, in their own fields.
  void remove_all_reels();
  void show_reel_list() const;

  // Raises the highest stream, which empties the track ids; 65535 does nothing.
  void note_stream(unsigned short stream);
  // -1 for a rate without an index.
  [[nodiscard]] static signed char sample_rate_to_index(unsigned rate);
  // Whole samples; see core/edl_rates.h.
  [[nodiscard]] std::int64_t samples_per_frame() const;
  // A word per stream; 0 for a stream above the highest.
  [[nodiscard]] std::uint32_t track_id(unsigned stream) const;
  void set_track_id(unsigned stream, std::uint32_t id);

  // One pass over the own entries: neighbours that are out of order change places,
  // so the latest ends up last and no more is promised.
  void sort_generic_list();
  // Joins mono entries that are the two sides of a stereo edit. The list must be in
  // destination order.
  void merge_into_n_channel_entries();
  // Keeps the window of `count` streams from `first` and moves it down to stream 0.
  void offset_edl(unsigned short first, unsigned short count);
  // Widens the range by every entry; `max` is one past the highest. The caller
  // gives the starting values.
  void get_min_max_channels(unsigned short* min, unsigned short* max) const;
  // Brings entries in line with reels whose frame rate was changed. Always 1.
  int check_reel_frame_rates();

  // Shows row `error_index` of the error table. With an event number, the text is
  // put into one of two formats (`event_kind` 1 or other). Nonzero when the person
  // wants no more boxes, which is offered when `may_stop` is nonzero.
  static int report_edl_conversion_error(unsigned short error_index, int may_stop, int event_number,
                                         int event_kind);

  // This object's rates; where one is not set, the root's.
  [[nodiscard]] TimeBase time_base() const {
    const CGenericEdl* const top = root();
    return {sample_rate_index_ == rate_not_set ? top->sample_rate_index_ : sample_rate_index_,
            frame_rate_ == rate_not_set ? top->frame_rate_ : frame_rate_, time_format_};
  }
  [[nodiscard]] std::uint8_t frame_rate() const { return frame_rate_; }
  [[nodiscard]] std::uint8_t sample_rate_index() const { return sample_rate_index_; }
  [[nodiscard]] std::uint8_t original_frame_rate() const { return original_frame_rate_; }
  // Of the root.
  [[nodiscard]] std::uint16_t highest_stream() const { return root()->highest_stream_; }
  // Lines whose channel field was of no known form, in this object's imports.
  [[nodiscard]] std::uint16_t skipped_count() const { return skipped_count_; }
  // Nonzero: the system refused a write of the last export, so the file is not
  // whole although the export ran to its end.
  [[nodiscard]] int output_incomplete() const { return output_incomplete_; }

  // Nonzero: error boxes are shown in the runs of this object.
  std::int32_t report_errors = 1;
  CString source_name;

 protected:
  [[nodiscard]] const CGenericEdl* root() const {
    const CGenericEdl* top = this;
    while (top->parent_ != nullptr)
      top = top->parent_;
    return top;
  }
  void set_original_frame_rate(unsigned char rate) { original_frame_rate_ = rate; }
  void count_skipped_line() { ++skipped_count_; }
  void set_output_incomplete(int incomplete) { output_incomplete_ = incomplete; }
  [[nodiscard]] int interactive() const { return interactive_; }
  [[nodiscard]] CGenericEdl* parent() const { return parent_; }
  // The list of a root, null otherwise.
  [[nodiscard]] CObList* own_entry_list() const { return entry_list_; }
  [[nodiscard]] std::uint8_t edl_word() const { return edl_word_; }

 private:
  CObList* entry_list_ = nullptr;
  CObList reel_list{10};
  CObList* pq_list_ = nullptr;
  wide_char pq_catalogue_[13] = {};
  wide_char pq_text_[pq_text_count][128] = {};
  std::uint16_t pq_word_ = 0;
  CObList* locator_list_ = nullptr;
  CObList* automation_list_ = nullptr;
  CObList* video_list_ = nullptr;
  CGenericEdl* parent_;
  std::uint16_t highest_stream_ = 0;
  std::int32_t interactive_;
  std::uint8_t original_frame_rate_ = 255;
  std::uint8_t frame_rate_ = 255;
  std::uint8_t sample_rate_index_ = 255;
  std::uint8_t time_format_ = 3;
  std::uint8_t edl_word_ = 255;
  std::vector<std::uint32_t> track_ids_;
  EDL_CONVERSION_SETTINGS settings_;
  UPDATE_SETTINGS_DETAILS updates_;
  std::uint16_t skipped_count_ = 0;
  std::int32_t output_incomplete_ = 0;
  ReelIndex reel_index_;
};

// The settings that hold for an owner; all zeros when there is none.
EDL_API const EDL_CONVERSION_SETTINGS& settings_of(const CGenericEdl* owner);
