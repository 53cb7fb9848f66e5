// The dump file of a multitrack list: a second list of the same form, which names
// the sources behind the edits of reel "900".
#include <memory>

#include "core/error_report.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "text/dump_index.h"
#include "text/text_edl.h"

namespace {

constexpr std::u16string_view dump_reel = u"900";

}  // namespace

std::u16string dump_file_path(std::u16string_view edl_path) {
  constexpr std::u16string_view ending = u"dmp";
  if (edl_path.size() < ending.size()) return {};
  return std::u16string(edl_path.substr(0, edl_path.size() - ending.size())).append(ending);
}

CObList* CTextEdl::get_dump_list() {
  if (dump_list_ == nullptr) dump_list_ = new CObList(10);
  return dump_list_;
}

int CTextEdl::load_dump() {
  if (dump_loaded_ == 1) return 1;
  const std::u16string name = dump_file_path(field_text(path_));
  if (name.empty() || dump_refused_) return 0;
  const result_code code = read_dump_file(name.c_str());
  // A missing file is cheap to ask for again; one of another form was read to its
  // end, and would be at every line that wants it.
  dump_refused_ = code == result::wrong_format;
  if (code == result::import_complete) dump_loaded_ = 1;
  if (code == result::not_done) dump_loaded_ = 0;
  return code == result::import_complete ? 1 : 0;
}

result_code CTextEdl::read_dump_file(const wide_char* name) {
  CTextFile file(line_file_size);
  if (!file.Open(name, CFile::modeRead | CFile::shareDenyWrite)) return result::not_done;
  const ReadingScope scope(*this, file);
  if (find_first_event(file) == 0) return result::wrong_format;
  std::int32_t flag = report_errors;
  wide_char line[event_line_size];
  while (read_file_line(file, line, event_line_size) != 0) {
    auto entry = std::make_unique<CGenericEdlEntry>(this);
    int skip = 0;
    const result_code code = parse_event(entry.get(), line + skip_space(line), &skip);
    if (code == result::line_good) {
      get_dump_list()->AddTail(entry.get());
      static_cast<void>(entry.release());
    } else if (code == result::line_bad) {
      report(flag, error_index::bad_line, entry->event_number);
    }
  }
  return result::import_complete;
}

CGenericEdlEntry* CTextEdl::find_event_neighbour(const CGenericEdlEntry* entry,
                                                 POSITION position) const {
  const CObList* const list = get_generic_entry_list();
  if (list == nullptr || position == nullptr) return nullptr;
  POSITION next = position;
  list->GetNext(next);
  POSITION before = position;
  list->GetPrev(before);
  for (const POSITION at : {next, before}) {
    if (at == nullptr) continue;
    auto* const neighbour = static_cast<CGenericEdlEntry*>(list->GetAt(at));
    if (neighbour->event_number == entry->event_number) return neighbour;
  }
  return nullptr;
}

CGenericEdlEntry* CTextEdl::find_dump_entry(const CGenericEdlEntry* entry) const {
  if (dump_list_ == nullptr) return nullptr;
  if (dump_index_ == nullptr || !dump_index_->is_of(*dump_list_)) {
    dump_index_ = std::make_unique<text::DumpIndex>(*dump_list_);
  }
  return dump_index_->find(*entry);
}

void CTextEdl::resolve_dump_sources() {
  const CObList* const list = get_generic_entry_list();
  if (dump_loaded_ == 0 || list == nullptr) return;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    const POSITION here = at;
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    wide_char reel[13];
    entry->get_reel_name(reel, 13);
    if (!field_text(reel).starts_with(dump_reel)) continue;
    const CGenericEdlEntry* const partner = find_event_neighbour(entry, here);
    if (partner == nullptr) {
      host().message_boxes().note_place(path_, 0);
      report(report_dump_errors, error_index::no_edit_before, entry->event_number, 1);
      continue;
    }
    wide_char source_reel[5];
    partner->get_reel_name(source_reel, 5);
    entry->set_reel_name(source_reel);
    entry->set_source_reel_name(source_reel);
    const CGenericEdlEntry* const dump = find_dump_entry(entry);
    if (dump == nullptr) continue;
    if (entry->source_in == entry->source_out) {
      entry->source_in = entry->source_out = partner->source_in;
      continue;
    }
    const std::int64_t length = minus(entry->source_out, entry->source_in);
    entry->source_in = plus(minus(entry->source_in, dump->dest_in), dump->source_in);
    entry->source_out = plus(entry->source_in, length);
  }
}
