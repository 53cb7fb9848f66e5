// After the last line: segments of one edit become one entry again.
#include <memory>

#include "core/entry_walk.h"
#include "core/generic_edl_entry.h"
#include "core/sample_math.h"
#include "text/lightworks_edl.h"

namespace {

// Characters of a name by which two segments are of one clip.
constexpr std::size_t name_head = 8;

template <std::size_t size>
bool same_head(const wide_char (&a)[size], const wide_char (&b)[size]) {
  return field_text(a).substr(0, name_head) == field_text(b).substr(0, name_head);
}

bool is_body_with_fade_out(std::uint32_t type) {
  return type == lightworks::body_before_fade_out || type == lightworks::body_between_fades;
}

bool types_fit(const CGenericEdlEntry& first, const CGenericEdlEntry& second) {
  if (first.transition_type == lightworks::fade_in) {
    return second.transition_type == lightworks::body_between_fades ||
           second.transition_type == lightworks::body_after_fade_in;
  }
  return is_body_with_fade_out(first.transition_type) &&
         second.transition_type == lightworks::fade_out;
}

bool are_one_edit(const CGenericEdlEntry& first, const CGenericEdlEntry& second) {
  return types_fit(first, second) && first.get_stream(0) == second.get_stream(0) &&
         first.dest_out == second.dest_in && first.source_out == second.source_in &&
         same_head(first.clip_name, second.clip_name) &&
         same_head(first.source_reel_name, second.source_reel_name);
}

// The level of an edit is that of its body.
void merge(CGenericEdlEntry& first, const CGenericEdlEntry& second) {
  const std::int64_t length = minus(second.dest_out, second.dest_in);
  if (first.transition_type == lightworks::fade_in) {
    first.fade_in_length = minus(first.dest_out, first.dest_in);
    first.gain_left = first.level_in = second.level_in;
    if (second.transition_type == lightworks::body_between_fades) {
      first.transition_type = lightworks::body_between_fades;
    }
  } else {
    first.fade_out_length = length;
    first.gain_left = first.level_in;
  }
  first.dest_out = plus(first.dest_out, length);
  first.source_out = plus(first.source_out, length);
}

// Edits that meet at fades of the default length overlap by that length.
void fold_crossfade(CGenericEdlEntry& first, CGenericEdlEntry& second, std::int64_t fade) {
  if (second.source_in <= 0 || second.dest_in <= 0) {
    first.fade_out_length = second.fade_in_length = 0;
    return;
  }
  first.original_dest_out = first.dest_out;
  first.original_source_out = first.source_out;
  second.original_dest_in = second.dest_in;
  second.original_source_in = second.source_in;
  const std::int64_t half = fade / 2;
  first.dest_out = plus(first.dest_out, half);
  first.source_out = plus(first.source_out, half);
  second.dest_in = minus(second.dest_in, half);
  second.source_in = minus(second.source_in, half);
}

}  // namespace

void CLightworksEdl::rebuild() {
  merge_segments();
  if (settings().lightworks_merge_channels == 0) {
    fold_midpoint_crossfades();
    sort_by_dest_in();
  } else {
    sort_by_dest_in();
    merge_into_n_channel_entries();
    fold_midpoint_crossfades();
  }
}

void CLightworksEdl::merge_segments() {
  CObList* const list = get_generic_entry_list();
  if (list == nullptr || list->IsEmpty()) return;
  EntryWalk<&CGenericEdlEntry::dest_in, &CGenericEdlEntry::transition_type> walk(*list);
  auto* first = walk.next();
  while (walk.position() != nullptr) {
    const POSITION here = walk.position();
    auto* const second = walk.next();
    if (are_one_edit(*first, *second)) {
      const std::unique_ptr<CGenericEdlEntry> merged(second);
      merge(*first, *second);
      list->RemoveAt(here);
    } else {
      first = second;
    }
  }
}

void CLightworksEdl::fold_midpoint_crossfades() {
  const CObList* const list = get_generic_entry_list();
  if (list == nullptr || list->IsEmpty()) return;
  const std::int64_t fade = settings().default_fade_length;
  // From head to tail: a fold moves the second edit, which the next pair sees.
  EntryWalk<&CGenericEdlEntry::dest_in, &CGenericEdlEntry::fade_in_length> walk(*list);
  auto* first = walk.next();
  while (walk.position() != nullptr) {
    auto* const second = walk.next();
    if (first->dest_out == second->dest_in && first->fade_out_length == fade &&
        second->fade_in_length == fade) {
      fold_crossfade(*first, *second, fade);
    }
    first = second;
  }
}
