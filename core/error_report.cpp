#include "core/error_report.h"

#include <array>

#include "core/generic_edl.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"
#include "host/text_format.h"

namespace {

// Rows 0 to 28 of the report; rows that nobody raises stay for the host.
constexpr std::array<unsigned, error_row_count> text_ids = {
    22230, 22231, 22232, 22233, 22234, 22235, 22236, 22237, 22238, 22239,
    22240, 22241, 22242, 22246, 22247, 22248, 22249, 22250, 22251, 23314,
    22254, 22255, 22256, 22257, 22258, 22259, 24387, 24388, 25698};

constexpr std::size_t box_text_size = 300;

std::u16string report_body(unsigned short index, int event_number, int event_kind) {
  StringService& strings = host().strings();
  const unsigned text_id = error_text_id(index);
  if (event_number == no_event_number) return text_id == 0 ? u"" : strings.load(text_id);
  const std::u16string text = text_id == 0 ? u"" : strings.load_into_slot(text_id, 1);
  const unsigned format_id = event_kind == 1 ? string_id::edit_format : string_id::event_format;
  return fill_host_format(strings.load_into_slot(format_id, 0), text, event_number);
}

}  // namespace

unsigned error_text_id(unsigned short error_index) {
  return error_index < text_ids.size() ? text_ids[error_index] : 0;
}

int CGenericEdl::report_edl_conversion_error(unsigned short error_index, int may_stop,
                                             int event_number, int event_kind) {
  wide_char title[box_text_size];
  wide_char body[box_text_size];
  set_field(title, host().strings().load(string_id::error_title));
  set_field(body, report_body(error_index, event_number, event_kind));
  const unsigned style = may_stop != 0 ? MessageBoxes::style_may_stop : 0;
  return static_cast<int>(host().message_boxes().show(title, body, style) &
                          MessageBoxes::result_stop);
}
