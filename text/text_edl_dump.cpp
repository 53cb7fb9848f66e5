// The dump file of a multitrack list: a second list of the same form, which names
// the sources behind the edits of reel "900".
#include <memory>

#include "core/error_report.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "text/text_edl.h"

namespace {

constexpr std::u16string_view dump_reel = u"900";

// Characters of a reel name by which a dump entry is found.
struct ReelHead {
  wide_char text[4];
  explicit ReelHead(const CGenericEdlEntry& entry) { entry.get_reel_name(text, 4); }
  friend bool operator==(const ReelHead& a, const ReelHead& b) {
    return field_text(a.text) == field_text(b.text);
  }
};

bool covers(const CGenericEdlEntry& dump, const CGenericEdlEntry& entry) {
  return entry.source_in == entry.source_out ||
         (dump.dest_in <= entry.source_in && dump.dest_out >= entry.source_out);
}

}  // namespace

CObList* CTextEdl::get_dump_list() {
  if (dump_list_ == nullptr) dump_list_ = new CObList(10);
  return dump_list_;
}

int CTextEdl::load_dump() {
  if (dump_loaded_ == 1) return 1;
  std::u16string name(field_text(path_));
  if (name.size() < 3) return 0;
  name.replace(name.size() - 3, 3, u"dmp");
  const result_code code = read_dump_file(name.c_str());
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
  const ReelHead reel(*entry);
  for (POSITION at = dump_list_->GetHeadPosition(); at != nullptr;) {
    auto* const dump = static_cast<CGenericEdlEntry*>(dump_list_->GetNext(at));
    if (dump->get_stream(0) == entry->get_stream(0) && covers(*dump, *entry) &&
        ReelHead(*dump) == reel) {
      return dump;
    }
  }
  return nullptr;
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
