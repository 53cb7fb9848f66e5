// A small line format for tests of the framework: "number channels times…" lines
// whose channel field begins with "A" or "V". Everything else is the framework's.
#pragma once

#include <string>
#include <vector>

#include "core/generic_edl_entry.h"
#include "core/generic_edl_video_entry.h"
#include "tests/support/compare.h"
#include "text/line_cursor.h"
#include "text/text_edl.h"

namespace support {

class LineFormat : public CTextEdl {
 public:
  explicit LineFormat(CGenericEdl* parent = nullptr, int interactive = 0)
      : CTextEdl(parent, interactive) {}

  using CTextEdl::dispatch_line;

  result_code write_event(CTextFile& file, CGenericEdlEntry* entry) override {
    if (entry->event_number == refused_event) return result::line_bad;
    if (file.add_text(u"event\n") == 0) return result::line_full;
    return file.flush_line();
  }
  int get_format_name(wide_char* out) const override {
    copy_text(out, format_name_size, format_name.c_str());
    return 1;
  }
  int is_audio_event(const wide_char* text) override { return kind(text) == u'A' ? 1 : 0; }
  int is_video_event(const wide_char* text) override { return kind(text) == u'V' ? 1 : 0; }
  result_code parse_event(CGenericEdlEntry* entry, const wide_char* text, int* skip) override {
    LineCursor line(text);
    entry->event_number = event_number_value(line.next());
    const std::u16string_view channels = line.next();
    *skip = channels == u"As" ? 1 : 0;
    if (channels == u"Abad") {
      *skip = 1;
      return result::line_bad;
    }
    if (channels == u"Aother") return 17;
    bool negative = false;
    read_four_times(entry, line.rest().data(), &negative);
    return negative ? result::negative_time : result::line_good;
  }
  result_code parse_video_event(CGenericEdlVideoEntry* entry, const wide_char* text) override {
    LineCursor line(text);
    entry->event_number = event_number_value(line.next());
    return line.next() == u"Vbad" ? result::line_bad : result::line_good;
  }
  void parse_audio_line(CGenericEdlEntry* entry, const wide_char* text) override {
    calls.push_back("audio " + std::string(entry == nullptr ? "-" : "+") + " " +
                    utf8({text, text_length(text)}));
    LineCursor line(text);
    const std::u16string_view word = line.next();
    static_cast<void>(parse_fcm(word, line.rest()));
  }
  void parse_video_line(CGenericEdlVideoEntry*, const wide_char* text) override {
    calls.push_back("video " + utf8({text, text_length(text)}));
  }

  // What came to the hooks of lines that are no events.
  std::vector<std::string> calls;
  std::u16string format_name = u"Lines";
  int refused_event = -1;

 private:
  static wide_char kind(const wide_char* text) {
    LineCursor line(text);
    line.next();
    const std::u16string_view field = line.next();
    return field.empty() ? u'\0' : field[0];
  }
};

}  // namespace support
