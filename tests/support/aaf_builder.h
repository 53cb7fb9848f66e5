// Makes AAF files through the published interfaces of the loaded object library, from
// descriptions that read like the edit:
//
//   AafBuilder file(path);
//   const AafTake take = file.source({.locators = {L"file:///C:/a.wav"}});
//   file.composition({.slots = {sound({clip(take, 100), transition(10), clip(take, 50)})}});
//   file.save();
//
// Nothing that the interfaces would refuse in a sequence is refused here: lengths,
// neighbours and references are what the description says, right or wrong.
//
// Mobs get identifiers that count up from 1, in the order in which they are made, so
// that every order of enumeration gives that order. Failures throw std::runtime_error.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "aaf/aaf_ref.h"
#include "aafobj/api/aaf_well_known_ids.h"

namespace support {

inline constexpr aafRational_t at_48000 = {48000, 1};

struct AafPoint {
  aafRational_t time{0, 1};
  aafRational_t value{0, 1};
  // When not empty, written in place of the value.
  std::vector<aafUInt8> bytes{};
};

// A constant, or without one the points of a varying value.
struct AafParameter {
  aafUID_t id{};
  std::optional<aafRational_t> constant{};
  std::vector<AafPoint> points{};
};

struct AafFades {
  aafInt32 in_length = 0;
  aafFadeType_t in_type = kAAFFadeLinearAmp;
  aafInt32 out_length = 0;
  aafFadeType_t out_type = kAAFFadeLinearAmp;
};

// A component: a class, what all components have, and what some classes have.
struct AafPart {
  aafUID_t cls{};
  // Edit units. A sequence without one gets the sum of its parts (less transitions); a
  // part of another class has no length then.
  std::optional<aafLength_t> length{};
  bool length_removed = false;
  aafUID_t data = kAAFDataDef_Sound;
  // Components of a sequence, segments of a scope, inputs of a group, choices of an
  // essence group, the input of a pulldown, the selected segment of a selector.
  std::vector<AafPart> parts{};
  aafSourceRef_t source{};
  std::optional<AafFades> fades{};
  // Of a group, and of a transition, which then has a group.
  std::optional<aafUID_t> operation{};
  std::vector<AafParameter> parameters{};
  aafTimecode_t timecode{};

  [[nodiscard]] AafPart with_fades(const AafFades& value) const;
  [[nodiscard]] AafPart with_data(const aafUID_t& definition) const;
  [[nodiscard]] AafPart with_length(aafLength_t value) const;
  [[nodiscard]] AafPart without_length() const;
};

struct AafTake {
  aafMobID_t master{};
  // Nil for a source without a file or tape mob.
  aafMobID_t file{};
};

// Parts. Lengths and starts are edit units; slot 1 of the source is played.
[[nodiscard]] AafPart clip(const AafTake& take, aafLength_t length, aafPosition_t start = 0);
[[nodiscard]] AafPart clip(const aafMobID_t& mob, aafLength_t length, aafPosition_t start = 0,
                           aafSlotID_t slot = 1);
[[nodiscard]] AafPart filler(aafLength_t length);
[[nodiscard]] AafPart sequence(std::vector<AafPart> parts);
// Without an operation group.
[[nodiscard]] AafPart transition(aafLength_t length);
[[nodiscard]] AafPart transition(aafLength_t length, const aafUID_t& operation,
                                 std::vector<AafParameter> parameters = {});
// One level, which is the incoming one; two levels.
[[nodiscard]] AafPart dissolve(aafLength_t length, std::vector<AafPoint> incoming);
[[nodiscard]] AafPart dissolve(aafLength_t length, std::vector<AafPoint> outgoing,
                               std::vector<AafPoint> incoming);
[[nodiscard]] AafPart group(aafLength_t length, const aafUID_t& operation,
                            std::vector<AafPart> inputs, std::vector<AafParameter> parameters = {});
// Of the amplitude, for one input.
[[nodiscard]] AafPart gain(aafLength_t length, aafRational_t constant, AafPart input);
[[nodiscard]] AafPart gain(aafLength_t length, std::vector<AafPoint> points, AafPart input);
[[nodiscard]] AafPart pan(aafLength_t length, aafRational_t constant, AafPart input);
[[nodiscard]] AafPart pan(aafLength_t length, std::vector<AafPoint> points, AafPart input);
[[nodiscard]] AafPart scope(aafLength_t length, std::vector<AafPart> segments);
[[nodiscard]] AafPart scope_reference(aafLength_t length);
// Without a selected segment, and with one.
[[nodiscard]] AafPart selector(aafLength_t length);
[[nodiscard]] AafPart selector(aafLength_t length, AafPart selected);
[[nodiscard]] AafPart essence_group(aafLength_t length, std::vector<AafPart> choices);
[[nodiscard]] AafPart pulldown(aafLength_t length, AafPart input);

[[nodiscard]] AafParameter constant(const aafUID_t& id, aafRational_t value);
[[nodiscard]] AafParameter varying(const aafUID_t& id, std::vector<AafPoint> points);

struct AafSlot {
  enum class Kind { timeline, event, fixed };

  Kind kind = Kind::timeline;
  AafPart segment{};
  // No segment at all.
  bool empty = false;
  aafRational_t rate = at_48000;
  aafPosition_t origin = 0;
  // 0: the place in the mob, from 1.
  aafSlotID_t id = 0;
  // 0: none.
  aafUInt32 physical = 0;
  std::optional<aafPosition_t> mark_in{};
  std::optional<aafPosition_t> mark_out{};
};

// A slot with a sequence; a slot with a timecode of that start in frames.
[[nodiscard]] AafSlot sound(std::vector<AafPart> parts, aafRational_t rate = at_48000);
[[nodiscard]] AafSlot timecode(aafFrameOffset_t start, aafUInt16 frames_per_second,
                               aafDropType_t drop = kAAFTcNonDrop, aafUInt32 physical = 1);

struct AafDefaultFade {
  aafLength_t length = 0;
  aafFadeType_t type = kAAFFadeLinearAmp;
  aafRational_t unit = at_48000;
};

struct AafComposition {
  std::optional<std::wstring> name = L"Cut";
  std::vector<AafSlot> slots{};
  std::optional<aafUID_t> usage{};
  std::optional<AafDefaultFade> default_fade{};
  // A new one when empty.
  std::optional<aafMobID_t> id{};
};

// A master mob whose slot 1 plays slot 1 of a source mob.
struct AafSource {
  // What describes the source mob; `none` has a master mob with a slot that leads nowhere.
  enum class Essence { wave, aifc, pcm, picture, tape, import_only, none };

  Essence essence = Essence::wave;
  std::optional<std::wstring> name = L"take";
  aafRational_t sample_rate = at_48000;
  // Of the master mob's slot and of the source mob's; the sample rate when empty.
  std::optional<aafRational_t> slot_rate{};
  aafLength_t length = 2'000'000'000;
  std::vector<std::wstring> locators{};
  // A locator without a path stands before the others.
  bool leading_text_locator = false;
  std::vector<aafUInt8> summary{};
  // Of the source mob; a new one when empty.
  std::optional<aafMobID_t> file_id{};
};

struct AafProduct {
  std::wstring company = L"Company";
  std::wstring product = L"Product";
  std::wstring version = L"v1.2";
};

class AafBuilder {
 public:
  // The path is UTF-8.
  explicit AafBuilder(const std::string& path, const AafProduct& product = {});
  AafBuilder(const AafBuilder&) = delete;
  AafBuilder& operator=(const AafBuilder&) = delete;
  // What is not saved is lost.
  ~AafBuilder();

  AafTake source(const AafSource& source);
  aafMobID_t composition(const AafComposition& composition);
  // Data that lies in the file and belongs to a source mob.
  void essence(const aafMobID_t& mob, std::string_view bytes);
  // A further program that says it has written the file.
  void identify(const AafProduct& product);
  void set_operational_pattern(const aafUID_t& pattern);
  [[nodiscard]] aafMobID_t new_id();
  // Writes the file and closes it. Nothing may follow.
  void save();

  [[nodiscard]] IAAFHeader& header() { return *header_.get(); }

 private:
  template <class Interface>
  [[nodiscard]] AafRef<Interface> create(const aafUID_t& cls, const IID& iid);
  [[nodiscard]] AafRef<IAAFComponent> make(const AafPart& part);
  [[nodiscard]] AafRef<IAAFSegment> make_segment(const AafPart& part);
  void fill(IAAFComponent& component, const AafPart& part);
  void fill_clip(IAAFComponent& component, const AafPart& part);
  void fill_sequence(IAAFComponent& component, const AafPart& part);
  void fill_group(IAAFComponent& component, const AafPart& part);
  void fill_transition(IAAFComponent& component, const AafPart& part);
  void fill_holder(IAAFComponent& component, const AafPart& part);
  [[nodiscard]] AafRef<IAAFParameter> make_parameter(const AafParameter& parameter);
  void add_points(IAAFVaryingValue& varying, const AafParameter& parameter);
  [[nodiscard]] AafRef<IAAFMob> make_mob(const aafUID_t& cls,
                                         const std::optional<std::wstring>& name,
                                         const aafMobID_t& id);
  void add_slot(IAAFMob& mob, const AafSlot& slot, std::size_t place);
  void describe(IAAFMob& mob, const AafSource& source);
  [[nodiscard]] AafRef<IAAFDataDef> data_definition(const aafUID_t& id);
  [[nodiscard]] AafRef<IAAFOperationDef> operation_definition(const aafUID_t& id);
  [[nodiscard]] AafRef<IAAFParameterDef> parameter_definition(const aafUID_t& id);

  AafRef<IAAFFile> file_;
  AafRef<IAAFHeader> header_;
  AafRef<IAAFDictionary> dictionary_;
  aafUInt32 mobs_ = 0;
};

}  // namespace support
