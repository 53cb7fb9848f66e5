#include "adl/list_sections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "adl/adl_fader_table.h"
#include "adl/adl_time_code.h"
#include "adl/source_numbers.h"
#include "adl/text_out.h"
#include "core/sample_math.h"
#include "host/application.h"
#include "host/clock.h"
#include "host/fade_levels_table.h"
#include "host/host.h"
#include "host/rates.h"
#include "host/text_format.h"
#include "native/generic_edl_file_chunks.h"

namespace adl {

namespace {

using Event = CGenericEDLFileEntry;
using Source = CGenericEDLFileTrack;
using Automation = CGenericEDLFileAutomationEntryChunk;

constexpr std::uint32_t mute_flag = 1;

template <class Object, class Work>
void for_each(const CObList& list, Work work) {
  for (POSITION at = list.GetHeadPosition(); at != nullptr;)
    work(*static_cast<const Object*>(list.GetNext(at)));
}

template <class Object, class Test>
bool any_of(const CObList& list, Test test) {
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
    if (test(*static_cast<const Object*>(list.GetNext(at)))) return true;
  }
  return false;
}

std::u16string uuid_text(const std::array<std::uint8_t, 16>& id) {
  constexpr std::u16string_view digits = u"0123456789abcdef";
  std::u16string text;
  for (std::size_t i = 0; i < id.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back(u'-');
    text.push_back(digits[id[i] >> 4U]);
    text.push_back(digits[id[i] & 15U]);
  }
  return text;
}

// The zone is the difference of the two hours alone, so it is off by a day where the
// dates differ, and blind to half hours.
std::u16string date_text(const Moment& moment) {
  const CalendarTime& t = moment.local;
  const int zone = t.hour - moment.utc.hour;
  return decimal(t.year, 4) + u"-" + decimal(t.month, 2) + u"-" + decimal(t.day, 2) + u"T" +
         decimal(t.hour, 2) + u":" + decimal(t.minute, 2) + u":" + decimal(t.second, 2) +
         (zone < 0 ? u"-" : u"+") + decimal(std::abs(zone), 2) + u":00";
}

// The two forms of a fade's shape. A fade-out has its levels the other way round.
struct ShapeTexts {
  std::u16string in;
  std::u16string out;
};

ShapeTexts shape_texts(const FadeLevels& levels) {
  const auto in = [](double db) { return u"  " + signed_fixed_point(db, 2); };
  const auto out = [](double db) { return u"  " + signed_fixed_point(db, 1); };
  return {u"  CURVE" + in(levels.quarter_db) + in(levels.half_db) + in(levels.three_quarters_db) +
              u"\n",
          u"  CURVE" + out(levels.three_quarters_db) + out(levels.half_db) +
              out(levels.quarter_db) + u"\n"};
}

std::array<ShapeTexts, fade_levels_count> all_shape_texts() {
  std::array<ShapeTexts, fade_levels_count> texts;
  std::transform(fade_levels_table.begin(), fade_levels_table.end(), texts.begin(), shape_texts);
  const std::u16string_view line = u"  LIN  _  _  _\n";
  texts[0] = {std::u16string(line), std::u16string(line)};
  return texts;
}

// A number that no curve has is written as the straight line.
const ShapeTexts& shape_of(std::uint16_t curve) {
  static const std::array<ShapeTexts, fade_levels_count> texts = all_shape_texts();
  return texts[curve < texts.size() ? curve : 0];
}

struct AutomationForm {
  std::uint16_t type;
  std::u16string_view opening;
  std::u16string_view point;
  std::u16string_view closing;
};

enum AutomationType : std::uint16_t {
  automation_fader = 0,
  automation_mute = 1,
  automation_pan = 2
};

constexpr AutomationForm automation_forms[] = {
    {automation_fader, u"    <FADER_LIST>\n", u"        (FP)  ", u"    </FADER_LIST>\n\n"},
    {automation_mute, u"    <MUTE_LIST>\n", u"        (MP)  ", u"    </MUTE_LIST>\n\n"},
    {automation_pan, u"    <PAN_LIST>\n", u"        (PP)  ", u"    </PAN_LIST>\n\n"},
};

class Writer {
 public:
  Writer(CTextFile& file, const ListText& list)
      : m_list(list),
        m_out(file),
        m_sample_rate(samples_per_second(list.rates.sample_rate_index)) {}

  void write() {
    m_out << u"<ADL>\n\n";
    write_version();
    write_project();
    write_system();
    write_sequence();
    write_sources();
    write_events();
    for (const AutomationForm& form : automation_forms)
      write_automation(form);
    m_out << u"</ADL>\n";
    m_out.write();
  }

  [[nodiscard]] std::size_t moved_times() const { return m_moved_times; }

 private:
  std::u16string_view time(std::int64_t samples) {
    if (time_code_moves(samples, m_sample_rate, m_list.rates.frame_rate_index)) ++m_moved_times;
    format_time_code(samples, m_sample_rate, m_list.rates.frame_rate_index, m_time);
    return {m_time, time_code_length};
  }

  void write_version() {
    m_out << u"    <VERSION>\n"
          << u"        (ADL_ID)           \"\"\n"
          << u"        (ADL_UID)          " << uuid_text(host().unique_ids().create()) << u"\n"
          << u"        (VER_ADL_VERSION)  01.01.00\n"
          << u"        (VER_CREATOR)      \"Marlo\"\n"
          << u"        (VER_CRTR)         06.01.37\n"
          << u"    </VERSION>\n\n";
  }

  void write_project() {
    m_out << u"    <PROJECT>\n"
          << u"        (PROJ_TITLE)       \"" << host().application().get_project_title().view()
          << u"\"\n"
          << u"        (PROJ_ORIGINATOR)  \"\"\n"
          << u"        (PROJ_CREATE_DATE) " << date_text(host().clock().now()) << u"\n"
          << u"        (PROJ_NOTES)       \"\"\n"
          << u"        (PROJ_CLIENT_DATA) \"\"\n"
          << u"    </PROJECT>\n\n";
  }

  void write_system() {
    m_out << u"    <SYSTEM>\n" << u"        (SYS_XFADE_LEN)    ";
    m_out.number(host().application().get_default_crossfade_length()) << u"\n"
                                                                      << u"    </SYSTEM>\n\n";
  }

  void write_sequence() {
    const bool clean = !any_of<Event>(m_list.events, [](const Event& e) { return e.m_clean == 0; });
    const bool multichannel =
        any_of<Event>(m_list.events, [](const Event& e) { return e.m_stream_count >= 2; });
    m_out << u"    <SEQUENCE>\n"
          << u"        (SEQ_TITLE)        \"" << m_list.title << u"\"\n"
          << u"        (SEQ_SAMPLE_RATE)  S";
    m_out.number(m_sample_rate) << u"\n        (SEQ_FRAME_RATE)   ";
    m_out.number(written_frame_rate())
        << u"\n"
        << u"        (SEQ_ADL_LEVEL)    1\n"
        << u"        (SEQ_CLEAN)        " << (clean ? u"TRUE\n" : u"FALSE\n")
        << u"        (SEQ_SORT)         0\n"
        << u"        (SEQ_MULTICHAN)    " << (multichannel ? u"TRUE\n" : u"FALSE\n")
        << u"        (SEQ_DEST_START)   " << time(0) << u"\n"
        << u"    </SEQUENCE>\n\n";
  }

  [[nodiscard]] int written_frame_rate() const {
    switch (m_list.rates.frame_rate_index) {
      case frame_rate_24:
        return 24;
      case frame_rate_25:
        return 25;
      default:
        return 30;
    }
  }

  void write_sources() {
    SourceNumbers numbers(m_list.interchange);
    m_out << u"    <SOURCE_INDEX>\n";
    for_each<Source>(m_list.sources, [&](const Source& source) {
      write_source(source, numbers.next(source.m_source_object));
      m_out.write_when_full();
    });
    m_out << u"    </SOURCE_INDEX>\n\n";
    numbers.finish();
  }

  void write_source(const Source& source, std::uint16_t number) {
    m_out << u"        (Index) ";
    m_out.number(number, 4) << u"\n            (F) \"URL:file://localhost/"
                            << url_path(source.get_path(), m_list.extension) << u"\"\n            ";
    if (const std::u16string_view umid = source.get_originator_reference(); umid.empty()) {
      m_out << u"_  ";
    } else {
      m_out << u"\"" << umid << u"\"  ";
    }
    m_out << time(source.m_time_stamp) << u"  _  \"" << source.get_file_name() << u"\"  N\n";
  }

  void write_events() {
    m_out << u"    <EVENT_LIST>\n";
    std::int64_t number = 0;
    for_each<Event>(m_list.events, [&](const Event& event) {
      m_out << u"        (Entry) ";
      m_out.number(++number, 4) << u"\n";
      write_cut(event);
      write_fades(event);
      write_gain(event);
      write_name(event);
      m_out.write_when_full();
    });
    m_out << u"    </EVENT_LIST>\n\n";
  }

  void write_cut(const Event& event) {
    m_out << u"            (Cut) I ";
    m_out.number(event.m_track_index + 1, 4) << u"  ";
    write_channels(event.m_channel_offset, event.m_stream_count);
    write_channels(event.m_first_stream, event.m_stream_count);
    m_out << time(event.m_source_in) << u"\n                  " << time(event.m_dest_in) << u"  ";
    m_out << time(plus(event.m_dest_in, event.m_length))
          << ((event.m_flags & mute_flag) != 0 ? u"  M\n" : u"  R\n");
  }

  void write_channels(std::uint16_t first, std::uint16_t count) {
    m_out.number(first + 1);
    if (count >= 2) {
      m_out << u"~";
      m_out.number(first + count);
    }
    m_out << u"  ";
  }

  void write_fades(const Event& event) {
    if (event.m_crossfade_in == 0) {
      m_out << u"            (Infade) " << time(event.m_fade_in_length)
            << shape_of(event.m_fade_in_curve).in;
    }
    if (event.m_crossfade_out == 0) {
      m_out << u"            (Outfade) " << time(event.m_fade_out_length)
            << shape_of(event.m_fade_out_curve).out;
    }
  }

  void write_gain(const Event& event) {
    if (event.m_level == 1.0F) return;
    constexpr double silence_db = -160.0;
    const double db =
        event.m_level == 0.0F ? silence_db : 20.0 * std::log10(static_cast<double>(event.m_level));
    m_out << u"            (Gain)  _  " << signed_fixed_point(db, 2) << u"\n";
  }

  // The name alone is escaped; a reader keeps the backslashes.
  void write_name(const Event& event) {
    m_out << u"            (Rem) NAME \"";
    std::u16string_view name = trimmed(event.get_name());
    for (std::size_t quote = name.find(u'"'); quote != std::u16string_view::npos;
         quote = name.find(u'"')) {
      m_out << name.substr(0, quote) << u"\\\"";
      name.remove_prefix(quote + 1);
    }
    m_out << name << u"\"\n";
  }

  void write_automation(const AutomationForm& form) {
    const auto is_of_type = [&form](const Automation& run) { return run.m_parameter == form.type; };
    if (!any_of<Automation>(m_list.automation, is_of_type)) return;
    m_out << form.opening;
    for_each<Automation>(m_list.automation, [&](const Automation& run) {
      if (is_of_type(run) && run.m_points != nullptr) write_run(form, run);
    });
    m_out << form.closing;
  }

  void write_run(const AutomationForm& form, const Automation& run) {
    bool muted = false;
    for_each<CGenericEDLFileAutomationEntry>(
        *run.m_points, [&](const CGenericEDLFileAutomationEntry& point) {
          // A point that changes nothing is not written, nor is an unmuted one in front.
          const bool mutes = point.m_value != 0;
          if (form.type == automation_mute && mutes == muted) return;
          muted = mutes;
          m_out << form.point;
          m_out.number(run.m_channel + 1) << u"  " << time(point.m_time) << u"  ";
          write_value(form.type, point.m_value);
          m_out << u"\n";
          m_out.write_when_full();
        });
  }

  void write_value(std::uint16_t type, std::uint32_t value) {
    if (type == automation_fader) {
      m_out << fixed_point(fader_db_from_step(value), 2);
    } else if (type == automation_mute) {
      m_out << (value != 0 ? u"M" : u"U");
    } else {
      const int percent = pan_percent(value);
      if (percent >= 1) m_out << u"+";
      m_out.number(percent);
    }
  }

  const ListText& m_list;
  TextOut m_out;
  std::uint32_t m_sample_rate;
  wide_char m_time[time_code_places] = {};
  std::size_t m_moved_times = 0;
};

constexpr bool is_slash(wide_char c) {
  return c == u'\\' || c == u'/';
}

}  // namespace

std::size_t write_list(CTextFile& file, const ListText& list) {
  Writer writer(file, list);
  writer.write();
  return writer.moved_times();
}

std::u16string url_path(std::u16string_view path, SourceExtension extension) {
  std::u16string url(path);
  url += extension == SourceExtension::aif   ? u".aif"
         : extension == SourceExtension::sd2 ? u".sd2"
                                             : u".wav";
  const std::size_t colon = url.find(u':');
  if (colon == std::u16string::npos) {
    url.erase(url.begin(), std::find_if_not(url.begin(), url.end(), is_slash));
  } else if (colon > 1) {
    url.erase(0, colon - 1);
  }
  std::replace(url.begin(), url.end(), u'\\', u'/');
  return url;
}

int pan_percent(std::uint32_t step) {
  const float ratio = static_cast<float>(static_cast<std::int32_t>(step)) / 504.0F;
  return static_cast<int>(ratio * 200.0F) - 100;
}

}  // namespace adl
