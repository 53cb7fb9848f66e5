#include "tests/text/plain_procedures.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "core/generic_edl_entry.h"
#include "tests/core/edl_fixtures.h"

namespace support {

namespace {

constexpr std::uint32_t cut = 50;
constexpr std::uint32_t dissolve = 51;

bool begins_with_bl(const std::u16string& reel) {
  return reel.size() >= 2 && (reel[0] == u'B' || reel[0] == u'b') &&
         (reel[1] == u'L' || reel[1] == u'l');
}

}  // namespace

void PrintTo(const Row& row, std::ostream* out) {
  *out << "source " << row.source_in << '-' << row.source_out << ", dest " << row.dest_in << '-'
       << row.dest_out << ", streams";
  for (const int stream : row.streams)
    *out << ' ' << stream;
  *out << ", reel \"" << utf8_from_text(row.reel) << "\", fades " << row.fade_in << ' '
       << row.fade_out << ", event " << row.event_number << ", channel " << row.first_channel << '/'
       << row.no_channels << ", type " << row.transition << ", originals " << row.original_source_in
       << ' ' << row.original_source_out << ' ' << row.original_dest_in << ' '
       << row.original_dest_out << ", gains " << row.gain_left << ' ' << row.gain_right << ", mark "
       << row.mark;
}

Rows rows_of(const CGenericEdl& edl) {
  Rows rows;
  for (const CGenericEdlEntry* entry : entries_of(edl)) {
    Row row;
    row.source_in = entry->source_in;
    row.source_out = entry->source_out;
    row.dest_in = entry->dest_in;
    row.dest_out = entry->dest_out;
    row.streams = streams_of(*entry);
    row.reel = reel_of(*entry);
    row.fade_in = entry->fade_in_length;
    row.fade_out = entry->fade_out_length;
    row.event_number = entry->event_number;
    row.first_channel = entry->first_channel;
    row.no_channels = entry->no_channels;
    row.transition = entry->transition_type;
    row.original_source_in = entry->original_source_in;
    row.original_source_out = entry->original_source_out;
    row.original_dest_in = entry->original_dest_in;
    row.original_dest_out = entry->original_dest_out;
    row.gain_left = entry->gain_left;
    row.gain_right = entry->gain_right;
    row.mark = static_cast<int>(entry->source_word);
    rows.push_back(std::move(row));
  }
  return rows;
}

void add_rows(CGenericEdl& edl, const Rows& rows) {
  for (const Row& row : rows) {
    CGenericEdlEntry& entry =
        add_entry(edl, {.dest_in = row.dest_in,
                        .dest_out = row.dest_out,
                        .source_in = row.source_in,
                        .source_out = row.source_out,
                        .streams = row.streams,
                        .reel = row.reel,
                        .fade_in = row.fade_in,
                        .fade_out = row.fade_out,
                        .event_number = static_cast<std::uint16_t>(row.event_number),
                        .first_channel = static_cast<std::uint16_t>(row.first_channel),
                        .transition = row.transition});
    entry.no_channels = static_cast<std::uint16_t>(row.no_channels);
    entry.gain_left = row.gain_left;
    entry.gain_right = row.gain_right;
    entry.source_word = static_cast<std::uint32_t>(row.mark);
  }
}

testing::AssertionResult same_rows(const Rows& actual, const Rows& expected) {
  const auto [a, b] = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
  if (a == actual.end() && b == expected.end()) return testing::AssertionSuccess();
  const auto shown = [](const Rows& rows, Rows::const_iterator at) {
    return at == rows.end() ? std::string("(ends)") : testing::PrintToString(*at);
  };
  return testing::AssertionFailure()
         << "entry " << std::distance(actual.begin(), a) << " differs (" << actual.size()
         << " against " << expected.size() << ")\n  actual:   " << shown(actual, a)
         << "\n  expected: " << shown(expected, b);
}

// While a walk moved something: a row whose next one starts strictly earlier goes
// behind that next one.
void plain_sort_by_dest_in(Rows& rows) {
  bool moved = rows.size() > 1;
  while (moved) {
    moved = false;
    for (auto at = rows.begin(); at != rows.end() && std::next(at) != rows.end();) {
      const auto next = std::next(at);
      if (next->dest_in < at->dest_in) {
        rows.splice(std::next(next), rows, at);
        moved = true;
      } else {
        ++at;
      }
    }
  }
}

void plain_sort_same_start(Rows& rows) {
  bool moved = true;
  while (moved) {
    moved = false;
    for (auto at = rows.begin(); at != rows.end() && std::next(at) != rows.end();) {
      const auto next = std::next(at);
      if (next->dest_in == at->dest_in && next->stream() < at->stream()) {
        rows.splice(at, rows, next);
        moved = true;
      } else {
        ++at;
      }
    }
  }
}

void plain_renumber(Rows& rows) {
  int n = 1;
  int c = 0;
  int last_seen = -1;
  for (Row& row : rows) {
    if (row.event_number != last_seen) {
      last_seen = row.event_number;
      if (c != 0) {
        n = (n + 1) % 65536;
        c = 0;
      }
    }
    ++c;
    row.event_number = n;
    if (c == 2) {
      n = (n + 1) % 65536;
      c = 0;
    }
  }
}

void plain_fold_crossfades(Rows& rows) {
  for (auto b = rows.begin(); b != rows.end(); ++b) {
    if (b == rows.begin()) continue;
    const auto a = std::prev(b);
    if (a->dest_out != b->dest_in || a->fade_out != b->fade_in) continue;
    std::int64_t h = a->fade_out / 2;
    if (b->source_in < h || b->dest_in < h) {
      h = std::min(b->source_in, b->dest_in);
      a->fade_out = b->fade_in = h;
    }
    a->original_source_out = a->source_out;
    a->original_dest_out = a->dest_out;
    b->original_source_in = b->source_in;
    b->original_dest_in = b->dest_in;
    a->source_out += h;
    a->dest_out += h;
    b->source_in -= h;
    b->dest_in -= h;
  }
}

void plain_fold_black(Rows& rows) {
  for (auto a = rows.begin(); a != rows.end();) {
    if (a->dest_in != a->dest_out) {
      ++a;
      continue;
    }
    auto b = std::next(a);
    if (b == rows.end()) return;
    if (begins_with_bl(a->reel)) {
      rows.erase(a);
      a = std::next(b);
      continue;
    }
    const std::int64_t f = b->fade_in;
    if (begins_with_bl(b->reel)) rows.erase(b);
    for (auto before = a; before != rows.begin();) {
      --before;
      if (before->dest_out != a->dest_in || before->stream() != a->stream()) continue;
      before->source_out += f;
      before->dest_out += f;
      before->fade_out = f;
      break;
    }
    const bool at_head = a == rows.begin();
    const auto behind = rows.erase(a);
    // One on from the node before, or from the new head.
    a = at_head && behind != rows.end() ? std::next(behind) : behind;
  }
}

void plain_merge(Rows& rows) {
  auto at = rows.begin();
  while (at != rows.end()) {
    const auto current = at;
    auto next = std::next(current);
    for (;; ++next) {
      if (next == rows.end()) return;
      if (next->dest_in != current->dest_in) break;
      const bool fits = current->stream() % 2 == 0 && next->dest_out == current->dest_out &&
                        next->source_in == current->source_in &&
                        next->source_out == current->source_out &&
                        next->stream() - current->stream() == 1 &&
                        next->first_channel - current->first_channel == 1;
      if (!fits) continue;
      current->streams = {current->stream(), current->stream() + 1};
      current->no_channels = 2;
      current->gain_right = next->gain_left;
      rows.erase(next);
      break;
    }
    at = std::next(current);
  }
}

void plain_split_fades(Rows& rows, std::int64_t frame) {
  for (auto e = rows.begin(); e != rows.end(); ++e) {
    const bool in = e->fade_in / frame != 0;
    const bool out = e->fade_out / frame != 0;
    const std::int64_t length = e->fade_out;
    if (!in && !out) {
      e->transition = cut;
      continue;
    }
    if (in && !out) e->fade_out = 0;
    if (out && !in) e->fade_in = 0;
    if (in) {
      Row black = *e;
      black.reel = u"BLK";
      black.source_in = black.source_out = 0;
      black.dest_out = black.dest_in;
      black.transition = cut;
      if (out) black.fade_in = black.fade_out = 0;
      rows.insert(e, black);
      e->transition = dissolve;
    }
    if (!out) continue;
    Row b = *e;
    b.source_in = b.source_out = e->source_out - length;
    b.dest_in = b.dest_out = e->dest_out - length;
    b.fade_in = b.fade_out = 0;
    b.transition = cut;
    b.event_number = (b.event_number + 1) % 65536;
    Row c = *e;
    c.reel = u"BLK";
    c.source_in = 0;
    c.source_out = length;
    c.dest_in = e->dest_out - length;
    c.transition = dissolve;
    c.event_number = (c.event_number + 1) % 65536;
    c.fade_in = in ? length : 0;
    c.fade_out = in ? 0 : length;
    e->source_out -= length;
    e->dest_out -= length;
    e->fade_out = 0;
    e->transition = in ? dissolve : cut;
    e = rows.insert(std::next(e), b);
    e = rows.insert(std::next(e), c);
  }
}

void plain_remove_black_pairs(Rows& rows) {
  for (auto at = rows.begin(); at != rows.end();) {
    const auto e = at++;
    if (e->dest_out - e->dest_in != e->fade_in || e->transition != dissolve || e->reel == u"BLK") {
      continue;
    }
    const auto black = std::find_if(std::next(e), rows.end(), [&e](const Row& row) {
      return row.stream() == e->stream() && row.dest_in == e->dest_in &&
             row.fade_in == e->fade_in && (row.dest_in == row.dest_out || row.reel == u"BLK");
    });
    if (black == rows.end()) continue;
    if (at == black) ++at;
    rows.erase(black);
    rows.erase(e);
  }
}

void plain_split_for_export(Rows& rows, std::int64_t frame) {
  plain_split_fades(rows, frame);
  plain_remove_black_pairs(rows);
  plain_sort_same_start(rows);
  plain_renumber(rows);
}

Rows crowded_rows(std::mt19937& random, int count) {
  static const std::array<std::u16string, 6> reels = {u"BLK", u"bl", u"R1", u"R2", u"Blue", u"B"};
  static const std::array<std::vector<int>, 5> streams = {{{0}, {1}, {2}, {0, 1}, {}}};
  const auto pick = [&random](const auto& from) {
    return from[static_cast<std::size_t>(below(random, static_cast<int>(from.size())))];
  };
  Rows rows;
  for (int i = 0; i < count; ++i) {
    Row row;
    row.dest_in = 10000 * below(random, 6);
    row.dest_out = row.dest_in + 10000 * std::max(0, below(random, 4) - 1);
    row.source_in = 5000 * below(random, 8);
    row.source_out = row.source_in + (row.dest_out - row.dest_in);
    row.streams = pick(streams);
    row.no_channels = static_cast<int>(row.streams.size());
    row.reel = pick(reels);
    row.fade_in = 5000 * std::max(0, below(random, 4) - 1);
    row.fade_out = 5000 * std::max(0, below(random, 4) - 1);
    // Now and then a fade of less than a frame.
    if (below(random, 8) == 0) row.fade_in = 1000;
    row.event_number = below(random, 5) == 0 ? 65535 : below(random, 4);
    row.first_channel = below(random, 2);
    row.transition = below(random, 2) == 0 ? 50 : 51;
    row.gain_left = static_cast<float>(i);
    row.mark = i + 1;
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace support
