// Reads the fader, mute and pan lists.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <memory>

#include "adl/adl_fader_table.h"
#include "adl/adl_time_code.h"
#include "adl/list_parser.h"
#include "host/corrections.h"
#include "host/string_ids.h"

namespace adl {

namespace {

using Run = CGenericEDLFileAutomationEntryChunk;
using Point = CGenericEDLFileAutomationEntry;
using Points = std::vector<std::unique_ptr<Point>>;

enum AutomationType : std::uint16_t { fader = 0, mute = 1, pan = 2 };

struct ListForm {
  AutomationType type;
  std::string_view keyword;
  std::string_view closing_tag;
  // False for a text that is no value.
  bool (*value)(Token token, std::uint32_t& value);
  Message bad_channel;
  Message bad_time;
  Message bad_value;
  Message no_end;
};

bool fader_value(Token token, std::uint32_t& value) {
  if (!is_decimal_number(token)) return false;
  value = fader_step_from_db(std::clamp(decimal_number(token), -160.0, 12.0));
  return true;
}

bool mute_value(Token token, std::uint32_t& value) {
  value = is_keyword(token, "M") ? 1 : 0;
  return value == 1 || is_keyword(token, "U");
}

// The nearest number of 32 bits, cut towards zero.
std::int32_t cut_to_word(float number) {
  if (number >= 2147483648.0F) return INT32_MAX;
  if (number < -2147483648.0F) return INT32_MIN;
  return static_cast<std::int32_t>(number);
}

bool pan_value(Token token, std::uint32_t& value) {
  const bool has_point = token.find('.') != Token::npos;
  if (!is_decimal_number(token) || (has_point && !corrected(Correction::adl_pan_decimals)))
    return false;
  const double percent = std::clamp(decimal_number(token), -2147483648.0, 2147483647.0);
  const float step = (static_cast<float>(percent) + 100.0F) / 200.0F * 504.0F;
  value = static_cast<std::uint32_t>(cut_to_word(step));
  return true;
}

// Points of one run go behind the last earlier one, so among equal times the later
// read stands first; all are sorted at once when the run is done. In a mute run a point
// at time 0 finds no earlier one and goes to the end, and what is read from then on
// stays behind it.
class RunFiller {
 public:
  explicit RunFiller(Run& run) : m_run(run) {}

  void add(std::int64_t time, std::uint32_t value) {
    if (m_run.m_parameter == mute && (time == 0 || is_empty())) {
      if (time != 0) m_run.points().AddTail(new_point(0, 0).release());
      settle();
    }
    auto point = new_point(time, value);
    if (m_run.m_parameter == mute && time == 0) {
      m_run.points().AddTail(point.release());
    } else {
      m_new.push_back(std::move(point));
    }
  }

  // Puts the points of the list in order.
  void settle() {
    CObList& list = m_run.points();
    if (goes_behind(list)) {
      for (auto& point : m_new)
        list.AddTail(point.release());
      m_new.clear();
    }
    if (!m_new.empty()) {
      Points before;
      while (!list.IsEmpty() && !starts_segment(list))
        before.emplace_back(static_cast<Point*>(list.RemoveTail()));
      std::reverse(before.begin(), before.end());
      std::reverse(m_new.begin(), m_new.end());
      const auto earlier = [](const auto& a, const auto& b) { return a->m_time < b->m_time; };
      std::stable_sort(m_new.begin(), m_new.end(), earlier);
      Points merged;
      merged.reserve(before.size() + m_new.size());
      std::merge(std::move_iterator(m_new.begin()), std::move_iterator(m_new.end()),
                 std::move_iterator(before.begin()), std::move_iterator(before.end()),
                 std::back_inserter(merged), earlier);
      for (auto& point : merged)
        list.AddTail(point.release());
      m_new.clear();
    }
    m_run.m_count = static_cast<std::uint32_t>(list.GetCount());
  }

 private:
  static std::unique_ptr<Point> new_point(std::int64_t time, std::uint32_t value) {
    auto point = std::make_unique<Point>();
    point->m_time = time;
    point->m_value = value;
    return point;
  }
  // Whether the new points are in order already, and all later than those of the list.
  [[nodiscard]] bool goes_behind(const CObList& list) const {
    if (m_new.empty()) return false;
    if (!list.IsEmpty() &&
        static_cast<const Point*>(list.GetTail())->m_time >= m_new.front()->m_time) {
      return false;
    }
    return std::adjacent_find(m_new.begin(), m_new.end(), [](const auto& a, const auto& b) {
             return a->m_time >= b->m_time;
           }) == m_new.end();
  }
  [[nodiscard]] bool is_empty() { return m_new.empty() && m_run.points().IsEmpty(); }
  [[nodiscard]] bool starts_segment(const CObList& list) const {
    return m_run.m_parameter == mute && static_cast<const Point*>(list.GetTail())->m_time == 0;
  }

  Run& m_run;
  Points m_new;
};

// The runs of one type, by channel. A new one stands behind that of the next lower
// channel, at the head of the list when there is none.
class Runs {
 public:
  Runs(CObList& automation, std::uint16_t type) : m_automation(automation), m_type(type) {
    for (POSITION at = automation.GetHeadPosition(); at != nullptr;) {
      const POSITION here = at;
      auto& run = *static_cast<Run*>(automation.GetNext(at));
      if (run.m_parameter == type) m_runs.emplace(run.m_channel, Place{here, RunFiller(run)});
    }
  }

  // Puts all points in order.
  void settle() {
    for (auto& [channel, place] : m_runs)
      place.filler.settle();
  }

  RunFiller& of_channel(std::uint16_t channel) {
    const auto behind = m_runs.lower_bound(channel);
    if (behind != m_runs.end() && behind->first == channel) return behind->second.filler;
    auto run = std::make_unique<Run>();
    run->m_parameter = m_type;
    run->m_channel = channel;
    static_cast<void>(run->points());
    const POSITION at = behind == m_runs.begin()
                            ? m_automation.AddHead(run.get())
                            : m_automation.InsertAfter(std::prev(behind)->second.at, run.get());
    Run& kept = *run.release();
    return m_runs.emplace_hint(behind, channel, Place{at, RunFiller(kept)})->second.filler;
  }

 private:
  struct Place {
    POSITION at;
    RunFiller filler;
  };

  CObList& m_automation;
  std::uint16_t m_type;
  std::map<std::uint16_t, Place> m_runs;
};

class AutomationParser {
 public:
  AutomationParser(std::string_view list, ListRecords& records, const ListForm& form)
      : m_list(list), m_records(records), m_form(form), m_runs(records.automation, form.type) {}

  // What was read in front of a fault stays.
  Message parse(std::size_t position) {
    m_at = position;
    const Message message = walk();
    m_runs.settle();
    return message;
  }

 private:
  Message walk() {
    Token token;
    while (m_at < m_list.size() && !is_keyword(token, m_form.closing_tag)) {
      if (!is_keyword(token, m_form.keyword) && !get_next_token(m_list, m_at, token))
        return fail(string_id::adl_token_expected);
      if (!is_keyword(token, m_form.keyword)) continue;
      if (const Message message = parse_point(token); message != no_message) return message;
    }
    return is_keyword(token, m_form.closing_tag) ? no_message : fail(m_form.no_end);
  }

  // Channel, time and value; the last of them stays the current word.
  Message parse_point(Token& token) {
    if (!get_next_token(m_list, m_at, token)) return fail(string_id::adl_token_expected);
    if (!all_digits(token)) return fail(m_form.bad_channel);
    const std::uint16_t channel = channel_number(token);
    if (!get_next_token(m_list, m_at, token)) return fail(string_id::adl_token_expected);
    std::uint32_t sample_rate = 0;
    std::uint8_t frame_rate = 0;
    const std::int64_t time =
        token.size() != time_code_length
            ? invalid_time_code
            : parse_time_code(token.data(), time_code_places, sample_rate, frame_rate);
    if (time == invalid_time_code) return fail(m_form.bad_time);
    if (!get_next_token(m_list, m_at, token)) return fail(string_id::adl_token_expected);
    std::uint32_t value = 0;
    if (!m_form.value(token, value)) return fail(m_form.bad_value);
    m_runs.of_channel(channel).add(time, value);
    return no_message;
  }

  Message fail(Message message) {
    m_records.error_position = static_cast<std::uint32_t>(m_at);
    return message;
  }

  std::string_view m_list;
  ListRecords& m_records;
  const ListForm& m_form;
  Runs m_runs;
  std::size_t m_at = 0;
};

}  // namespace

Message ListParser::parse_fader_list(std::size_t position) {
  static constexpr ListForm form = {fader,
                                    "(FP)",
                                    "</FADER_LIST>",
                                    fader_value,
                                    string_id::adl_fader_channel,
                                    string_id::adl_fader_time,
                                    string_id::adl_fader_value,
                                    string_id::adl_fader_end};
  return AutomationParser(m_list, m_records, form).parse(position);
}

Message ListParser::parse_mute_list(std::size_t position) {
  static constexpr ListForm form = {mute,
                                    "(MP)",
                                    "</MUTE_LIST>",
                                    mute_value,
                                    string_id::adl_mute_channel,
                                    string_id::adl_mute_time,
                                    string_id::adl_mute_value,
                                    string_id::adl_mute_end};
  return AutomationParser(m_list, m_records, form).parse(position);
}

Message ListParser::parse_pan_list(std::size_t position) {
  static constexpr ListForm form = {pan,
                                    "(PP)",
                                    "</PAN_LIST>",
                                    pan_value,
                                    string_id::adl_pan_channel,
                                    string_id::adl_pan_time,
                                    string_id::adl_pan_value,
                                    string_id::adl_pan_end};
  return AutomationParser(m_list, m_records, form).parse(position);
}

}  // namespace adl
