// Writing a multitrack list, and the dump file with the material of edits that
// overlap on one reel.
#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "host/rates.h"
#include "text/event_line.h"
#include "text/leftmost_tree.h"
#include "text/lw_multi_channel_edl.h"

namespace {

constexpr const wide_char* dump_reel = u"900";
// Characters of a reel name by which two entries are of one reel, and the terminator.
constexpr int reel_head_size = 5;

// Pairs of an entry and a later one of the same stream and reel that begins before
// the first ends. A pair is told by its second entry:
//   a dissolve that is not dumped yet, behind an entry that is none; or
//   a cut of no length, behind an entry that is dumped.
// Each entry leads to one pair at most, the nearest.
class OverlapSearch {
 public:
  explicit OverlapSearch(const CObList& list) {
    for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
      auto* const entry = static_cast<CGenericEdlEntry*>(list.GetNext(at));
      const auto [hit, added] = group_of_.try_emplace(key_of(*entry), groups_.size());
      if (added) groups_.emplace_back();
      Group& group = groups_[hit->second];
      order_.emplace_back(hit->second, group.entries.size());
      group.entries.push_back(entry);
    }
    for (Group& group : groups_)
      group.index();
  }

  // The second entry of the next pair, null at the end. An entry that was handed out
  // and marked as dumped since counts as such.
  CGenericEdlEntry* next() {
    for (; cursor_ < order_.size(); ++cursor_) {
      const auto [group, place] = order_[cursor_];
      if (const std::size_t later = groups_[group].overlap_behind(place); later != no_place) {
        ++cursor_;
        CGenericEdlEntry* const found = groups_[group].entries[later];
        // Whoever dumps it marks it; a dissolve is then no candidate any more.
        groups_[group].dissolves->set(later, Earliest());
        return found;
      }
    }
    return nullptr;
  }

 private:
  static constexpr std::size_t no_place = static_cast<std::size_t>(-1);
  using Key = std::pair<std::uint16_t, std::u16string>;

  // Of a stretch of candidates, the earliest destination in.
  struct Earliest {
    bool any = false;
    std::int64_t dest_in = std::numeric_limits<std::int64_t>::max();
    static Earliest join(const Earliest& a, const Earliest& b) {
      if (!a.any || !b.any) return a.any ? a : b;
      return a.dest_in <= b.dest_in ? a : b;
    }
  };
  using Candidates = text::LeftmostTree<Earliest>;

  // The entries of one stream and reel, in list order.
  struct Group {
    std::vector<CGenericEdlEntry*> entries;
    std::optional<Candidates> dissolves;
    std::optional<Candidates> cuts;

    void index() {
      std::vector<Earliest> dissolve(entries.size());
      std::vector<Earliest> cut(entries.size());
      for (std::size_t i = 0; i < entries.size(); ++i) {
        const CGenericEdlEntry& e = *entries[i];
        dissolve[i] = {e.transition_type == transition_dissolve && e.lw_channel_word != 1,
                       e.dest_in};
        cut[i] = {e.transition_type == transition_cut && e.dest_in == e.dest_out, e.dest_in};
      }
      dissolves.emplace(dissolve);
      cuts.emplace(cut);
    }

    [[nodiscard]] std::size_t overlap_behind(std::size_t place) const {
      const CGenericEdlEntry& e = *entries[place];
      const auto begins_inside = [&e](const Earliest& earliest) {
        return earliest.any && earliest.dest_in < e.dest_out;
      };
      std::size_t found = no_place;
      if (e.transition_type != transition_dissolve) {
        found = dissolves->find(place + 1, begins_inside);
      }
      if (e.lw_channel_word == 1) found = std::min(found, cuts->find(place + 1, begins_inside));
      return found;
    }
  };

  static Key key_of(const CGenericEdlEntry& entry) {
    wide_char reel[reel_head_size];
    entry.get_reel_name(reel, reel_head_size);
    return {entry.get_stream(0), reel};
  }

  std::map<Key, std::size_t> group_of_;
  std::vector<Group> groups_;
  // Each entry in list order: its group and its place there.
  std::vector<std::pair<std::size_t, std::size_t>> order_;
  std::size_t cursor_ = 0;
};

// The dump's own timeline: on each stream its entries stand one behind the other.
class DumpTimeline {
 public:
  DumpTimeline(std::int64_t base, const CObList& dump_list) : base_(base) {
    for (POSITION at = dump_list.GetHeadPosition(); at != nullptr;)
      add(*static_cast<const CGenericEdlEntry*>(dump_list.GetNext(at)));
  }
  void add(const CGenericEdlEntry& entry) {
    std::int64_t& used = used_[entry.get_stream(0)];
    used = plus(used, minus(entry.dest_out, entry.dest_in));
  }
  [[nodiscard]] std::int64_t end_of(std::uint16_t stream) const {
    const auto hit = used_.find(stream);
    return hit == used_.end() ? base_ : plus(base_, hit->second);
  }

 private:
  std::int64_t base_;
  std::map<std::uint16_t, std::int64_t> used_;
};

// The material of `edit` with a handle on each side, at `start` of the dump.
std::unique_ptr<CGenericEdlEntry> dump_entry_for(CGenericEdl& owner, const CGenericEdlEntry& edit,
                                                 std::int64_t start, std::int64_t handle) {
  auto entry = std::make_unique<CGenericEdlEntry>(&owner);
  wide_char reel[13];
  edit.get_reel_name(reel, 13);
  entry->set_reel_name(reel);
  entry->set_no_streams(edit.no_streams);
  for (int i = 0; i < edit.no_streams; ++i)
    entry->set_stream(i, edit.streams[i]);
  entry->first_channel = edit.first_channel;
  entry->transition_type = transition_cut;
  entry->source_in = minus(edit.source_in, handle);
  entry->source_out = plus(edit.source_out, handle);
  entry->dest_in = start;
  entry->dest_out = plus(plus(start, 2 * handle), minus(edit.dest_out, edit.dest_in));
  return entry;
}

}  // namespace

result_code CLWMultiChannelEdl::export_edl(const wide_char* path, int option) {
  if (settings().lw_multichannel_cuts_only != 0) {
    mark_all_cuts();
  } else {
    split_for_export();
  }
  int dump_incomplete = 0;
  if (settings().lw_multichannel_export_mode == 1) {
    const result_code code = write_dump(path);
    if (code == result::not_done) return code;
    dump_incomplete = code == result::done ? output_incomplete() : 0;
  }
  const result_code code = CTextEdl::export_edl(path, option);
  if (dump_incomplete != 0) set_output_incomplete(1);
  return code;
}

result_code CLWMultiChannelEdl::write_dump(const wide_char* path) {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr || OverlapSearch(*list).next() == nullptr) return result::nothing_to_dump;
  const std::u16string name = dump_file_path({path, text_length(path)});
  CTextFile file(line_file_size);
  // Before any edit is pointed into a dump that then does not come about, or that the
  // list would write over.
  if (name.empty() || name == path ||
      !file.Open(name.c_str(), CFile::modeCreate | CFile::modeWrite)) {
    return result::not_done;
  }
  fill_dump_list();
  sort_same_start(get_dump_list());
  renumber_events(get_dump_list());
  write_dump_lines(file, path);
  file.close_quietly();
  set_output_incomplete(file.write_failed() ? 1 : 0);
  for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
    auto* const entry = static_cast<CGenericEdlEntry*>(list->GetNext(at));
    if (entry->lw_channel_word != 0) entry->set_reel_name(dump_reel);
  }
  return result::done;
}

void CLWMultiChannelEdl::fill_dump_list() {
  CObList& list = *get_generic_entry_list();
  CObList& dump_list = *get_dump_list();
  const std::int64_t second = samples_per_second(time_base().sample_rate_index);
  DumpTimeline timeline(static_cast<CGenericEdlEntry*>(list.GetHead())->dest_in, dump_list);
  OverlapSearch search(list);
  std::uint16_t event_number = 1;
  while (CGenericEdlEntry* const edit = search.next()) {
    const std::int64_t start = timeline.end_of(edit->get_stream(0));
    const std::int64_t length = minus(edit->dest_out, edit->dest_in);
    edit->lw_channel_word = 1;
    if (length == 0) {
      edit->source_in = edit->source_out = minus(start, second);
      continue;
    }
    auto dumped = dump_entry_for(*this, *edit, start, second);
    dumped->event_number = event_number++;
    timeline.add(*dumped);
    dump_list.AddTail(dumped.get());
    static_cast<void>(dumped.release());
    edit->source_in = plus(start, second);
    edit->source_out = plus(edit->source_in, length);
  }
}

void CLWMultiChannelEdl::write_dump_lines(CTextFile& file, const wide_char* path) {
  static_cast<void>(write_title(file, path, u" (dump)"));
  const CObList& dump_list = *get_dump_list();
  for (POSITION at = dump_list.GetHeadPosition(); at != nullptr;) {
    const auto* const entry = static_cast<const CGenericEdlEntry*>(dump_list.GetNext(at));
    bool need_comment = false;
    // A dump line never has the mapping comment.
    if (write_columns(file, entry, &need_comment) == result::done && file.add_text(u"\n") != 0) {
      file.flush_line();
    }
  }
  static_cast<void>(write_footer(file, path));
}
