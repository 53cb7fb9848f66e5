// One composition of an AAF file: walked on import, made on export.
//
// Import walks every sound slot, and turns source clips into records of its owner's
// lists. A transition overlaps the two clips beside it, so the walk goes back by its
// length, and its level curves become a fade-out and a fade-in. A clip that plays another
// composition is walked by an object of its own, through the window that the clip leaves
// open. Positions are edit units of the slot until a clip is placed, samples in the lists.
#pragma once

#include <cstdint>
#include <vector>

#include "aaf/aaf_ref.h"
#include "host/framework/ob_list.h"
#include "host/framework/object.h"

class CAAFEdlFile;
class CGenericEDLFileEntry;
struct CAAFClipSource;

// A control point: both its time, as a share of the whole, and its value are fractions.
class CAAFPoint : public CObject {
 public:
  aafRational_t m_time{0, 1};
  aafRational_t m_value{0, 1};
};

class CAAFCompMob : public CObject {
 public:
  // Null leaves the object without lists.
  explicit CAAFCompMob(CAAFEdlFile* owner);
  CAAFCompMob(const CAAFCompMob&) = delete;
  CAAFCompMob& operator=(const CAAFCompMob&) = delete;

  // Import of the chosen composition. 1: all of it was walked. 0: it does not hold
  // together, or asks for more than any real one does.
  [[nodiscard]] int compose_top_level(IAAFCompositionMob* composition, IAAFDictionary* dictionary);

  // Export: makes the composition and adds it to the file. 1 on success.
  [[nodiscard]] int export_composition(IAAFHeader* header);

 private:
  friend class CAAFEdlFile;

  // Kinds of component.
  static constexpr std::uint8_t kind_source_clip = 1;
  static constexpr std::uint8_t kind_filler = 2;
  static constexpr std::uint8_t kind_transition = 3;
  static constexpr std::uint8_t kind_nested_scope = 4;
  static constexpr std::uint8_t kind_operation_group = 5;
  static constexpr std::uint8_t kind_scope_reference = 6;
  static constexpr std::uint8_t kind_sequence = 7;
  static constexpr std::uint8_t kind_selector = 8;
  static constexpr std::uint8_t kind_none = 0xFF;

  // A component's length; how much of it lies in the window, and from where. Edit units.
  struct Extent {
    std::int64_t length = 0;
    std::int64_t visible = 0;
    std::int64_t offset = 0;
    bool in_window = true;
  };
  // What became of a component that holds others: skipped when it holds none.
  enum class Walk { failed, skipped, walked };
  // Where a walk stood in front of a component.
  struct Place {
    std::int64_t position;
    std::int64_t parent_position;
    bool in_scope;
  };
  // What a parent's clip opens of this composition.
  struct Window {
    std::int64_t length;
    std::int64_t start;
    aafRational_t rate;
    std::int64_t pending_fade_length;
    std::uint16_t pending_fade_curve;
    std::int64_t pending_offset;
    std::int64_t parent_position;
    std::uint16_t parent_stream;
  };
  // A fade out of a transition, edit units.
  struct TransitionFade {
    std::int64_t length;
    std::uint16_t curve;
    std::int64_t offset;
  };
  // A stretch of the timeline: edit units of the whole and of what is visible, and the
  // samples at which that lies.
  struct Span {
    Extent extent;
    std::int64_t start = 0;
    std::int64_t samples = 0;
  };

  // Slots.
  [[nodiscard]] int import_sound_slots(IAAFMob* mob, aafNumSlots_t count,
                                       IAAFDictionary* dictionary);
  [[nodiscard]] int read_timecode_slots(IAAFMob* mob, IAAFDictionary* dictionary);
  void read_timecode(IAAFMobSlot* slot);
  [[nodiscard]] int import_track(IAAFMobSlot* slot, IAAFDictionary* dictionary);
  [[nodiscard]] int start_nested(IAAFMob* mob, aafSlotID_t slot, const Window& window);
  void read_default_fade(IAAFCompositionMob* composition);
  void offer_default_fade() const;
  void shift_by_timecode() const;
  void read_slot_marks(IAAFMobSlot* slot, IAAFDictionary* dictionary);
  void read_mark(IAAFObject* slot, IAAFClassDef* definition, const aafUID_t& property);
  void add_mark_locator(std::int64_t value, const aafUID_t& property) const;

  // Components.
  [[nodiscard]] int process_component(IAAFComponent* component);
  [[nodiscard]] int process_segment(IAAFSegment* segment);
  [[nodiscard]] Extent extent_of(std::int64_t length) const;
  // Runs the handling of a component that holds others; the kind is 0 for one that holds
  // none.
  [[nodiscard]] Walk walk_container(IAAFComponent* component, const Extent& extent,
                                    std::uint8_t& kind);
  [[nodiscard]] Walk process_sequence(IAAFSequence* sequence);
  [[nodiscard]] Walk process_nested_scope(IAAFNestedScope* scope);
  [[nodiscard]] Walk process_selector(IAAFSelector* selector);
  void process_transition(IAAFTransition* transition, const Extent& extent);
  void advance(const Extent& extent, const Place& before, std::uint8_t kind, Walk walk);
  void trim_previous_entry(const TransitionFade& fade) const;

  // Clips.
  [[nodiscard]] int process_source_clip(IAAFSourceClip* clip, const Extent& extent);
  void set_fades(IAAFSourceClip* clip, std::int64_t visible, CGenericEDLFileEntry& record);
  [[nodiscard]] bool find_source(IAAFMasterMob* master, aafSlotID_t slot,
                                 CAAFClipSource& source) const;
  [[nodiscard]] bool find_path(const CAAFClipSource& source, std::u16string& path) const;
  void take_sample_rate(std::uint32_t rate);
  [[nodiscard]] int place_record(CGenericEDLFileEntry& record, const CAAFClipSource& source);

  // Operations.
  [[nodiscard]] Walk process_operation_group(IAAFOperationGroup* group, const Extent& extent);
  void apply_gain(IAAFOperationGroup* group, const Span& span);
  void apply_pan(IAAFOperationGroup* group, const Span& span);
  void apply_constant_gain(IAAFConstantValue* value, const Span& span) const;
  void add_points(IAAFVaryingValue* value, const Span& span, std::uint16_t parameter);
  void add_automation_point(std::uint16_t parameter, std::int64_t time, std::uint32_t value);

  [[nodiscard]] bool is_nested() const { return m_top_level == 0; }
  // Where the next clip starts on the timeline, edit units.
  [[nodiscard]] std::int64_t base() const { return is_nested() ? m_parent_position : m_position; }
  // The stream of clips, and the one of gain, pan and fades.
  [[nodiscard]] std::uint16_t clip_stream() const {
    return is_nested() ? m_parent_stream : m_stream;
  }
  [[nodiscard]] std::uint16_t effective_stream() const;
  [[nodiscard]] std::int64_t edit_to_samples(std::int64_t units) const;
  // Of the owner, or 48000 as long as it has none.
  [[nodiscard]] std::uint32_t sample_rate() const;

  CAAFEdlFile* m_owner;
  // 1 on the chosen composition, 0 on one that a clip plays.
  std::int32_t m_top_level = 1;
  // Nested: the stretch of this composition that the parent's clip opens, and the
  // parent's edit rate, which is not converted.
  std::int64_t m_window_length = 0x7FFFFFFFFFFFFFFF;
  std::int64_t m_window_start = 0x7FFFFFFFFFFFFFFF;
  aafRational_t m_window_rate{1, 1};
  // Nested: position on the parent's timeline.
  std::int64_t m_parent_position = 0xFFFFFFFF;
  std::uint16_t m_parent_stream = 0xFFFF;
  std::int64_t m_default_fade_length = 0;
  aafFadeType_t m_default_fade_type = 0;
  aafRational_t m_default_fade_unit{1, 1};
  std::int32_t m_default_fade_valid = 0;
  // Sound slots done so far.
  std::uint16_t m_stream = 0;
  aafSlotID_t m_slot_id = 0;
  // On the current slot, edit units.
  std::int64_t m_position = 0;
  // Start of the composition in frames; 0 for none.
  std::int64_t m_start_frames = 0;
  // What the last transition leaves to the next clip: its fade-in, and how far behind the
  // transition's start that begins. Edit units.
  std::int64_t m_pending_fade_length = 0;
  std::uint16_t m_pending_fade_curve = 0;
  std::int64_t m_pending_offset = 0;
  // Boxes that were shown.
  std::int32_t m_unknown_rate_warned = 0;
  std::int32_t m_rate_change_warned = 0;
  // Sample-rate index of the last clip.
  std::uint8_t m_last_rate_index = 0xFF;
  std::int32_t m_frame_rate_set = 0;
  std::int32_t m_marks_read = 0;
  std::int32_t m_in_nested_scope = 0;
  std::uint8_t m_last_kind = kind_none;
  aafRational_t m_edit_rate{25, 1};

  // Export.
  std::uint16_t m_stream_index = 0;
  // Samples: where the longest track ends.
  std::int64_t m_end_position = 0;
  std::int32_t m_export_fixed_gain = 0;
  std::int32_t m_export_gain_automation = 0;
  std::int32_t m_export_pan_automation = 0;
};
