// Reading the table.
#include "text/lightworks_edl.h"

#include <array>
#include <cmath>
#include <memory>

#include "core/error_report.h"
#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "core/sample_math.h"
#include "host/rates.h"
#include "host/text_format.h"
#include "text/line_cursor.h"

namespace {

constexpr std::size_t longest_column = 130;

// The columns of a terminated line. Each begins behind a quote and ends at the next one.
class Columns {
 public:
  explicit Columns(const wide_char* line) : rest_(line) { pass(1); }

  // Empty, without passing anything, when no quote closes the column in time.
  std::u16string_view next() {
    std::size_t quote = 0;
    for (; rest_[quote] != u'"'; ++quote) {
      if (rest_[quote] == u'\0' || quote == longest_column) return {};
    }
    const std::u16string_view column(rest_, quote);
    rest_ += quote;
    // The quote, the comma and the opening quote of the next column.
    pass(3);
    return column;
  }
  void skip(int columns) {
    for (int i = 0; i < columns; ++i)
      next();
  }

 private:
  void pass(int count) {
    for (; count > 0 && *rest_ != u'\0'; --count)
      ++rest_;
  }

  const wide_char* rest_;
};

// The two digits of "A01".
std::int32_t channel_number(std::u16string_view channel) {
  return channel.size() < 2 ? 0 : digits_value(trimmed(channel.substr(1, 2)));
}

double number_of(std::u16string_view text) {
  double value = 0;
  return scan_number(text, value) ? value : 0;
}

// Cut towards zero; 0 for what no sample count can be.
std::int64_t cut(double samples) {
  constexpr double limit = 9.2e18;
  return std::abs(samples) < limit ? static_cast<std::int64_t>(samples) : 0;
}

constexpr std::size_t level_length = 6;

struct Code {
  std::u16string_view text;
  std::uint32_t type;
};
constexpr std::array<Code, 6> codes = {{
    {u"CT", lightworks::plain},
    {u"DI", lightworks::fade_in},
    {u"DO", lightworks::fade_out},
    {u"CI", lightworks::body_after_fade_in},
    {u"CO", lightworks::body_before_fade_out},
    {u"CB", lightworks::body_between_fades},
}};

std::uint32_t type_of(std::u16string_view code) {
  for (const Code& known : codes) {
    if (code.starts_with(known.text)) return known.type;
  }
  return code.starts_with(u'C') ? lightworks::plain : lightworks::other;
}

// Brings source and destination to the shorter of their lengths.
template <class Entry>
void agree_lengths(Entry& entry) {
  const std::int64_t length =
      std::min(minus(entry.dest_out, entry.dest_in), minus(entry.source_out, entry.source_in));
  entry.dest_out = plus(entry.dest_in, length);
  entry.source_out = plus(entry.source_in, length);
}

// The first three columns have fixed widths, and the reel stands behind them.
constexpr std::size_t reel_place = 37;

bool is_black(std::u16string_view line) {
  return line.size() > reel_place && line.substr(reel_place).starts_with(u"__BLACK");
}

}  // namespace

CLightworksEdl::CLightworksEdl(CGenericEdl* parent, int interactive)
    : CTextEdl(parent, interactive) {}

result_code CLightworksEdl::import_edl(const wide_char* path) {
  CTextFile file(line_file_size);
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite)) return result::not_done;
  const ReadingScope scope(*this, file);
  if (find_first_event(file) == 0) return result::wrong_format;
  std::int32_t report_flag = report_errors;
  while (file.get_line() != 0)
    add_table_line(file.text(), report_flag);
  file.close_quietly();
  rebuild();
  return read_footer(file);
}

int CLightworksEdl::find_first_event(CTextFile& file) {
  struct HeadLine {
    std::u16string_view text;
    // Takes what stands behind the text; null where nothing may.
    CString* rest;
  };
  const HeadLine head[] = {
      {u"\"OLEDB:Rev 1\"", nullptr},
      {u"\"EDLGEN:Rev 4\"", nullptr},
      {u"\"variant:", &m_variant},
      {u"\"edit_cookie:", &m_edit_cookie},
      {u"\"project_name:", &m_project_name},
      {u"\"edit_name:", &m_edit_name},
      {u"\"modification_time:", &m_modification_time},
      {u"\"edit_date:", &m_edit_date},
      {u"\"edit label_std:", &m_edit_label_std},
      {u"\"OLEDB\"", nullptr},
  };
  for (const auto& [text, rest] : head) {
    if (file.get_line() == 0) return 0;
    const std::u16string_view line = file.text();
    if (!line.starts_with(text) || (rest == nullptr && line.size() != text.size())) return 0;
    if (rest != nullptr) *rest = CString(line.substr(text.size()));
  }
  // Widths, types and names of the columns.
  for (int i = 0; i < 3; ++i) {
    if (file.get_line() == 0) return 0;
  }
  // The table must not be empty; its first line is read again.
  const CTextFile::Mark table = file.mark();
  if (file.get_line() == 0) return 0;
  file.return_to(table);
  return 1;
}

void CLightworksEdl::add_table_line(std::u16string_view text, std::int32_t& report_flag) {
  const wide_char* const line = text.data();
  if (text.size() < 2 || text[1] != u'A') {
    auto entry = std::make_unique<CGenericEdlVideoEntry>(this);
    static_cast<void>(parse_video_event(entry.get(), line));
    if (CObList* const list = get_video_list(); list != nullptr) list->AddTail(entry.release());
    return;
  }
  if (is_black(text)) return;
  auto entry = std::make_unique<CGenericEdlEntry>(this);
  int skip = 0;
  static_cast<void>(parse_event(entry.get(), line, &skip));
  if (entry->dest_out != entry->dest_in) check_lengths(*entry, report_flag);
  if (CObList* const list = get_generic_entry_list(); list != nullptr) {
    list->AddTail(entry.release());
  }
}

double CLightworksEdl::samples_of(std::u16string_view seconds) const {
  return number_of(seconds) * samples_per_second(time_base().sample_rate_index);
}

result_code CLightworksEdl::parse_event(CGenericEdlEntry* entry, const wide_char* text,
                                        int* /*skip*/) {
  Columns columns(text);
  entry->set_no_streams(1);
  entry->raise_source_streams(1);
  entry->set_stream(0, static_cast<std::uint16_t>(channel_number(columns.next()) - 1));
  entry->dest_in = cut(samples_of(columns.next()) + 0.5);
  const double edit_out = samples_of(columns.next());
  entry->original_dest_out = cut(edit_out);
  entry->dest_out = cut(edit_out + 0.5);
  if (const std::u16string_view reel = columns.next(); !reel.empty()) {
    entry->set_reel_name(reel);
    entry->raise_source_streams(1);
  }
  entry->first_channel = static_cast<std::uint16_t>(channel_number(columns.next()) - 1);
  const double source_in = samples_of(columns.next()) + 0.5;
  entry->source_in = cut(source_in);
  if (source_in < 0) {
    report_line(error_index::negative_source_in, entry->event_number);
    entry->dest_in = minus(entry->dest_in, entry->source_in);
    entry->source_in = 0;
  }
  const double source_out = samples_of(columns.next());
  entry->original_source_out = cut(source_out);
  entry->source_out = cut(source_out + 0.5);
  take_standard(columns.next());
  entry->level_in = level_value(columns.next().substr(0, level_length));
  entry->level_out = level_value(columns.next().substr(0, level_length));
  entry->transition_type = type_of(columns.next());
  columns.skip(2);
  if (const std::u16string_view name = columns.next(); !name.empty()) {
    entry->set_source_reel_name(name);
  }
  entry->no_channels = 1;
  entry->channel_offset = 0;
  // Only 16 bits of the length, with their sign, are taken.
  entry->fade_in_length = entry->fade_out_length =
      static_cast<std::int16_t>(settings().default_fade_length & 0xFFFF);
  agree_lengths(*entry);
  return result::line_good;
}

result_code CLightworksEdl::parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) {
  Columns columns(text);
  if (channel_number(columns.next()) > 1) return result::line_good;
  entry->dest_in = cut(samples_of(columns.next()) + 0.5);
  entry->dest_out = cut(samples_of(columns.next()));
  if (const std::u16string_view reel = columns.next(); !reel.empty()) {
    entry->set_reel_name(reel);
  }
  columns.skip(1);
  entry->source_in = cut(samples_of(columns.next()) + 0.5);
  entry->source_out = cut(samples_of(columns.next()));
  const std::u16string_view standard = columns.next();
  // The drop flag.
  entry->detail_words[0] = standard.starts_with(u'N') || standard.starts_with(u'n') ? 1 : 0;
  take_standard(standard);
  columns.skip(1);
  entry->gain = level_value(columns.next());
  if (entry->gain != 1.0F) report_line(error_index::video_level, entry->event_number);
  entry->transition_type = lightworks::plain;
  columns.skip(3);
  if (const std::u16string_view name = columns.next(); !name.empty()) {
    entry->set_source_reel_name(name);
  }
  agree_lengths(*entry);
  return result::line_good;
}

// "NN", "ND", "FR24.0", "PR25.0", "FR30.0": the second character decides.
void CLightworksEdl::take_standard(std::u16string_view standard) {
  if (standard.size() < 2) return;
  const std::u16string_view behind = standard.substr(2);
  switch (fold_case(standard[1])) {
    case u'n':
      set_frame_rate(frame_rate_2997_non_drop);
      break;
    case u'd':
      set_frame_rate(frame_rate_2997_drop);
      break;
    case u'r':
      if (behind.starts_with(u"24")) set_frame_rate(frame_rate_24);
      if (behind.starts_with(u"25")) set_frame_rate(frame_rate_25);
      if (behind.starts_with(u"30")) set_frame_rate(frame_rate_30);
      break;
    default:
      break;
  }
}

void CLightworksEdl::report_line(unsigned short error_index, std::uint16_t event_number) const {
  note_reading_place();
  report_edl_conversion_error(
      error_index, 0, event_number == event_number_not_set ? no_event_number : event_number, 0);
}

result_code CLightworksEdl::read_footer(CTextFile& /*file*/) {
  return result::import_complete;
}
