#include "text/text_edl.h"

#include <memory>

#include "core/edl_rates.h"
#include "core/error_report.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/sample_math.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "text/dump_index.h"
#include "text/line_cursor.h"

namespace {

// Moves the object to the tail of a list and answers it; null where there is no list
// and the object is deleted.
template <class T>
T* add_tail(CObList* list, std::unique_ptr<T> object) {
  if (list == nullptr) return nullptr;
  list->AddTail(object.get());
  return object.release();
}

// Characters in front of the first space, letter or digit.
std::size_t unreadable_head(std::u16string_view line) {
  std::size_t count = 0;
  while (count < line.size() && !is_white_space(line[count]) && !is_alphanumeric(line[count]))
    ++count;
  return count;
}

bool sum_exceeds(std::int64_t a, std::int64_t b, std::int64_t limit) {
  std::int64_t sum = 0;
  return __builtin_add_overflow(a, b, &sum) ? a > 0 : sum > limit;
}

bool differ_by_more(std::int64_t a, std::int64_t b, std::int64_t limit) {
  std::int64_t difference = 0;
  if (__builtin_sub_overflow(a, b, &difference)) return true;
  return difference > limit || difference < -limit;
}

}  // namespace

CTextEdl::CTextEdl(CGenericEdl* parent, int interactive) : CGenericEdl(parent, interactive) {
  if (parent == nullptr) dump_list_ = new CObList(10);
}

CTextEdl::~CTextEdl() {
  if (dump_list_ != nullptr) delete_all(*dump_list_);
  delete dump_list_;
}

result_code CTextEdl::import_edl(const wide_char* path) {
  CTextFile file(line_file_size);
  set_field(path_, path);
  dump_refused_ = false;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite)) return result::not_done;
  const ReadingScope scope(*this, file);
  Run run{report_errors};
  if (find_first_event(file) == 0) return result::wrong_format;
  while (file.get_line() != 0) {
    std::u16string_view line = file.cut_line(event_line_size - 1);
    line.remove_prefix(unreadable_head(line));
    import_line(run, line.substr(leading_space(line)));
  }
  return result::import_complete;
}

void CTextEdl::import_line(Run& run, std::u16string_view line) {
  const WordsScope words(*this, line);
  const wide_char* const text = line.data();
  const bool audio = is_audio_event(text) != 0;
  const bool video = is_video_event(text) != 0;
  if (audio) import_audio_line(run, text);
  if (video) import_video_line(run, text, audio);
  if (!audio && !video) dispatch_line(run.last_kind, text);
}

void CTextEdl::import_audio_line(Run& run, const wide_char* text) {
  if (is_ignored_event(text) != 0) return;
  run.last_kind = 1;
  auto entry = std::make_unique<CGenericEdlEntry>(this);
  if (check_special_line(entry.get(), text) == 0) return;
  int skip = 0;
  const result_code code = parse_event(entry.get(), text, &skip);
  if (skip != 0) count_skipped_line();
  switch (code) {
    case result::line_good: {
      CGenericEdlEntry* const added = add_tail(get_generic_entry_list(), std::move(entry));
      if (added != nullptr && added->dest_out != added->dest_in) check_lengths(*added, run.report);
      break;
    }
    case result::line_bad:
      report(run.report, error_index::bad_line, entry->event_number);
      break;
    case result::negative_time:
      report(run.report, error_index::negative_time, entry->event_number);
      break;
    default:
      break;
  }
}

void CTextEdl::import_video_line(Run& run, const wide_char* text, bool also_audio) {
  if (is_ignored_event(text) != 0) return;
  run.last_kind = also_audio ? 3 : 2;
  auto entry = std::make_unique<CGenericEdlVideoEntry>(this);
  const result_code code = parse_video_event(entry.get(), text);
  if (code == result::line_good) {
    add_tail(get_video_list(), std::move(entry));
  } else if (code == result::line_bad) {
    report(run.report, error_index::bad_line, entry->event_number);
  }
}

void CTextEdl::dispatch_line(int last_kind, const wide_char* text) {
  if (last_kind == 1 || last_kind == 3) parse_audio_line(first_entry(), text);
  if (last_kind == 2 || last_kind == 3) parse_video_line(first_video_entry(), text);
}

void CTextEdl::check_lengths(CGenericEdlEntry& entry, std::int32_t& flag) const {
  const std::int64_t source_length = minus(entry.source_out, entry.source_in);
  const std::int64_t dest_length = minus(entry.dest_out, entry.dest_in);
  if (sum_exceeds(entry.fade_in_length, entry.fade_out_length, source_length)) {
    entry.fade_in_length = entry.fade_out_length = source_length / 2;
  }
  if (differ_by_more(source_length, dest_length, samples_per_frame())) {
    report(flag, error_index::lengths_differ, entry.event_number);
  }
  if (source_length == 0) report(flag, error_index::source_length_zero, entry.event_number);
}

void CTextEdl::report(std::int32_t& flag, unsigned short error_index, int event_number,
                      int event_kind) const {
  if (flag == 0) return;
  note_reading_place();
  flag = report_edl_conversion_error(error_index, 1, event_number, event_kind) == 0 ? 1 : 0;
}

CTextEdl::ReadingScope::~ReadingScope() {
  edl_.reading_ = before_;
  // Boxes of what follows are not of this file.
  if (before_ == nullptr) host().message_boxes().note_place(u"", 0);
}

void CTextEdl::note_reading_place() const {
  if (reading_ == nullptr) return;
  host().message_boxes().note_place(reading_->GetFilePath(), reading_->physical_line());
}

result_code CTextEdl::export_edl(const wide_char* path, int /*option*/) {
  CTextFile file(line_file_size);
  set_output_incomplete(0);
  if (!file.Open(path, CFile::modeCreate | CFile::modeWrite)) return result::not_done;
  std::int32_t flag = report_errors;
  static_cast<void>(write_header(file, path));
  const CObList* const list = get_generic_entry_list();
  for (POSITION at = list == nullptr ? nullptr : list->GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    if (write_event(file, entry) == result::line_bad) {
      host().message_boxes().note_place(path, 0);
      report(flag, error_index::bad_line, entry->event_number);
    }
  }
  static_cast<void>(write_footer(file, path));
  file.close_quietly();
  set_output_incomplete(file.write_failed() ? 1 : 0);
  return result::done;
}

int CTextEdl::read_file_line(CTextFile& file, wide_char* out, int size) {
  const int read = file.get_line();
  const std::u16string_view line = file.text().substr(0, static_cast<std::size_t>(size - 1));
  std::copy(line.begin(), line.end(), out);
  out[line.size()] = u'\0';
  std::fill_n(out, unreadable_head(line), u' ');
  return read;
}

int CTextEdl::read_token(const wide_char* text) {
  const std::u16string_view read = leading_token({text, text_length(text)});
  std::copy(read.begin(), read.end(), token_.begin());
  token_[read.size()] = u'\0';
  return static_cast<int>(read.size());
}

int CTextEdl::skip_space(const wide_char* text) {
  LineCursor line(text);
  line.peek();
  return static_cast<int>(line.at() - text);
}

int CTextEdl::is_number(const wide_char* text) {
  return all_digits({text, text_length(text, 255)}) ? 1 : 0;
}

std::int64_t CTextEdl::frames_to_samples(std::int64_t frames) const {
  const TimeBase base = time_base();
  return ::frames_to_samples(base.sample_rate_index, base.frame_rate_index, frames);
}

std::int64_t CTextEdl::samples_to_frames(std::int64_t samples) const {
  const TimeBase base = time_base();
  return ::samples_to_frames(base.sample_rate_index, base.frame_rate_index, samples);
}

CGenericEdlEntry* CTextEdl::first_entry() const {
  const CObList* const list = get_generic_entry_list();
  if (list == nullptr || list->IsEmpty()) return nullptr;
  return static_cast<CGenericEdlEntry*>(list->GetTail());
}

CGenericEdlVideoEntry* CTextEdl::first_video_entry() const {
  const CObList* const list = get_video_list();
  if (list == nullptr || list->IsEmpty()) return nullptr;
  return static_cast<CGenericEdlVideoEntry*>(list->GetTail());
}
