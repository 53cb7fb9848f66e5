#include "core/generic_edl.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <unordered_set>

#include "core/edl_rates.h"
#include "core/generic_automation.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/generic_reel.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/rates.h"
#include "host/string_ids.h"

namespace {

constexpr std::intptr_t list_block_size = 10;

bool ask(unsigned text_id) {
  MessageBoxes& boxes = host().message_boxes();
  return boxes.ask_by_ids(string_id::question_title, text_id, MessageBoxes::buttons_yes_no,
                          MessageBoxes::icon_question) == box_answer_yes;
}

void delete_list(CObList* list) {
  if (list == nullptr) return;
  delete_all(*list);
  delete list;
}

void delete_automation_list(CObList* list) {
  while (list != nullptr && !list->IsEmpty()) {
    CObject* const object = list->RemoveHead();
    if (auto* const chunk = dynamic_cast<CGenericAutomationChunk*>(object); chunk != nullptr) {
      delete_automation_chunk(chunk);
    } else {
      delete object;
    }
  }
  delete list;
}

// Entries of a list that use one of the reels keep what they knew of it and let it go.
template <class Entry>
void detach_reels(const CObList* entries, const std::unordered_set<const CGenericReel*>& reels) {
  if (entries == nullptr) return;
  for (POSITION at = entries->GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<Entry*>(entries->GetNext(at));
    if (entry == nullptr || !reels.contains(entry->reel)) continue;
    set_field(entry->reel_name, field_text(entry->reel->reel_name));
    if constexpr (requires { entry->reel_no_streams; }) {
      entry->reel_no_streams = entry->reel->no_streams;
    }
    entry->reel = nullptr;
  }
}

}  // namespace

const EDL_CONVERSION_SETTINGS& settings_of(const CGenericEdl* owner) {
  static const EDL_CONVERSION_SETTINGS none;
  return owner == nullptr ? none : owner->settings();
}

CGenericEdl::CGenericEdl(CGenericEdl* parent, int interactive)
    : parent_(parent), interactive_(interactive), track_ids_(1) {
  std::fill(std::begin(pq_catalogue_), std::end(pq_catalogue_), u'0');
  if (parent != nullptr) return;
  entry_list_ = new CObList(list_block_size);
  pq_list_ = new CObList(list_block_size);
  locator_list_ = new CObList(list_block_size);
  automation_list_ = new CObList(list_block_size);
  video_list_ = new CObList(list_block_size);
}

CGenericEdl::~CGenericEdl() {
  if (parent_ == nullptr) {
    delete_list(entry_list_);
    delete_list(pq_list_);
    delete_list(locator_list_);
    delete_automation_list(automation_list_);
    delete_list(video_list_);
    entry_list_ = video_list_ = nullptr;
  }
  remove_all_reels();
}

result_code CGenericEdl::import_edl(const wide_char* /*path*/) {
  return result::not_done;
}

result_code CGenericEdl::export_edl(const wide_char* /*path*/, int /*option*/) {
  return result::not_done;
}

unsigned short CGenericEdl::get_first_stream(const CGenericEdlEntry* entry) const {
  return entry->get_stream(0);
}

int CGenericEdl::supports_reel_objects(const wide_char* /*name*/) const {
  return 1;
}

CObList* CGenericEdl::get_generic_entry_list() const {
  return parent_ == nullptr ? entry_list_ : parent_->entry_list_;
}

CObList* CGenericEdl::get_pq_list() const {
  return parent_ == nullptr ? pq_list_ : parent_->pq_list_;
}

CObList* CGenericEdl::get_locator_list() const {
  return parent_ == nullptr ? locator_list_ : parent_->locator_list_;
}

CObList* CGenericEdl::get_automation_list() const {
  return parent_ == nullptr ? automation_list_ : parent_->automation_list_;
}

CObList* CGenericEdl::get_video_list() const {
  return parent_ == nullptr ? video_list_ : parent_->video_list_;
}

void CGenericEdl::get_list_details(LIST_DETAILS* details) {
  *details = {get_generic_entry_list(), &reel_list,       get_pq_list(), get_locator_list(),
              get_automation_list(),    get_video_list(), parent_};
}

void CGenericEdl::get_edl_details(EDL_DETAILS* details) const {
  *details = {highest_stream(),   interactive_, frame_rate_,
              sample_rate_index_, time_format_, edl_word_};
}

void CGenericEdl::set_edl_details(const EDL_DETAILS* details) {
  note_stream(static_cast<unsigned short>(details->highest_stream));
  interactive_ = details->interactive;
  set_frame_rate(details->frame_rate);
  set_sample_rate_index(details->sample_rate_index);
  time_format_ = details->time_format;
  edl_word_ = details->edl_word;
}

void CGenericEdl::get_pq_details(PQ_DETAILS* details) const {
  const CGenericEdl* const from = root();
  std::copy(std::begin(from->pq_catalogue_), std::end(from->pq_catalogue_), details->pq_catalogue);
  for (int i = 0; i < pq_text_count; ++i) {
    std::copy(std::begin(from->pq_text_[i]), std::end(from->pq_text_[i]), details->pq_text[i]);
  }
  details->pq_word = from->pq_word_;
}

void CGenericEdl::set_pq_details(const PQ_DETAILS* details) {
  std::copy(std::begin(details->pq_catalogue), std::end(details->pq_catalogue), pq_catalogue_);
  for (int i = 0; i < pq_text_count; ++i) {
    std::copy(std::begin(details->pq_text[i]), std::end(details->pq_text[i]), pq_text_[i]);
  }
  pq_word_ = details->pq_word;
}

void CGenericEdl::get_update_settings_details(UPDATE_SETTINGS_DETAILS* details) const {
  *details = updates_;
}

void CGenericEdl::set_edl_conversion_settings(const EDL_CONVERSION_SETTINGS* settings) {
  settings_ = *settings;
}

void CGenericEdl::set_frame_rate(unsigned char rate) {
  if (frame_rate_ == rate_not_set) {
    frame_rate_ = original_frame_rate_ = rate;
    return;
  }
  if (settings().ask_on_frame_rate_change == 0 || interactive_ == 0 || rate == frame_rate_) return;
  if (!ask(string_id::ask_frame_rate)) return;
  frame_rate_ = rate;
  updates_.frame_rate_changed = 1;
}

void CGenericEdl::set_sample_rate_index(unsigned char rate) {
  if (sample_rate_index_ != rate_not_set && rate != sample_rate_index_ &&
      ask(string_id::ask_sample_rate)) {
    updates_.sample_rate_changed = 1;
  }
  sample_rate_index_ = rate;
}

CGenericReel* CGenericEdl::find_or_add_reel(const wide_char* name) {
  return find_or_add_reel(std::u16string_view(name, text_length(name)));
}

CGenericReel* CGenericEdl::find_or_add_reel(std::u16string_view name) {
  const bool short_enough = name.size() <= ReelName::longest;
  const ReelName short_name(short_enough ? name : std::u16string_view());
  // The slot takes a terminated text.
  const std::u16string long_name(short_enough ? std::u16string_view() : name);
  const wide_char* const text = short_enough ? short_name.text() : long_name.c_str();
  if (supports_reel_objects(text) == 0) return nullptr;
  if (!short_enough) {
    reel_index_.follow(reel_list);
  } else if (CGenericReel* const known = reel_index_.find(reel_list, short_name);
             known != nullptr) {
    return known;
  }
  // Without memory for it the list gets a null, and the entry keeps the name itself.
  std::unique_ptr<CGenericReel> reel(new (std::nothrow)
                                         CGenericReel(text, time_base().frame_rate_index));
  reel_list.AddTail(reel.get());
  CGenericReel* const added = reel.release();
  if (added != nullptr) reel_index_.added(reel_list, added);
  return added;
}

void CGenericEdl::remove_all_reels() {
  if (reel_list.IsEmpty()) return;
  std::unordered_set<const CGenericReel*> reels;
  for (POSITION at = reel_list.GetHeadPosition(); at != nullptr;) {
    const auto* const reel = static_cast<const CGenericReel*>(reel_list.GetNext(at));
    if (reel != nullptr) reels.insert(reel);
  }
  detach_reels<CGenericEdlEntry>(get_generic_entry_list(), reels);
  detach_reels<CGenericEdlVideoEntry>(get_video_list(), reels);
  delete_all(reel_list);
}

void CGenericEdl::show_reel_list() const {
  // A host may watch the walk in a debugger; the library has nothing to show.
  for (POSITION at = reel_list.GetHeadPosition(); at != nullptr;)
    reel_list.GetNext(at);
}

void CGenericEdl::note_stream(unsigned short stream) {
  const unsigned short wanted = stream == no_stream || highest_stream_ > 65534 ? 0 : stream;
  if (wanted <= highest_stream_) return;
  highest_stream_ = wanted;
  track_ids_.assign(std::size_t{wanted} + 1, 0);
}

signed char CGenericEdl::sample_rate_to_index(unsigned rate) {
  return sample_rate_index_of(rate);
}

std::int64_t CGenericEdl::samples_per_frame() const {
  const TimeBase base = time_base();
  return ::samples_per_frame(base.sample_rate_index, base.frame_rate_index);
}

std::uint32_t CGenericEdl::track_id(unsigned stream) const {
  return stream < track_ids_.size() ? track_ids_[stream] : 0;
}

void CGenericEdl::set_track_id(unsigned stream, std::uint32_t id) {
  if (stream < track_ids_.size()) track_ids_[stream] = id;
}
