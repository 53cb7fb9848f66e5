#include "aafobj/objects/source_search.h"

#include <algorithm>

#include "aafobj/model/stored_values.h"
#include "aafobj/objects/stored_queries.h"

namespace aafobj {
namespace {

constexpr int max_hops = 64;     // mobs on a way; more than any real chain has
constexpr int max_nesting = 64;  // segments in segments

// A place on the way: a mob, a slot of it and a position there, with what is left behind it.
struct Place {
  StoredObject* mob = nullptr;
  StoredObject* slot = nullptr;
  aafSourceRef_t reference{};
  aafRational_t rate = {1, 1};
  aafLength_t length = 0;
};

HRESULT only_input(StoredObject& group, StoredObject*& input) {
  std::size_t inputs = 0;
  HRESULT r = group.count_elements(pid::OperationGroup_InputSegments, inputs);
  if (r < 0) return r;
  if (inputs != 1) return AAFRESULT_TRAVERSAL_NOT_POSS;
  return group.element_at(pid::OperationGroup_InputSegments, 0, input);
}

// One step from a segment into what it holds. The position stays one of the same slot.
HRESULT step_into(SearchIndex& index, StoredObject*& segment, aafPosition_t& position) {
  StoredObject& outer = *segment;
  if (outer.is_kind_of(ClassIndex::Sequence)) {
    return index.find_component(outer, position, segment);
  }
  if (outer.is_kind_of(ClassIndex::OperationGroup)) return only_input(outer, segment);
  if (outer.is_kind_of(ClassIndex::Pulldown)) {
    return outer.get_object(pid::Pulldown_InputSegment, segment);
  }
  if (outer.is_kind_of(ClassIndex::EssenceGroup)) {
    return outer.element_at(pid::EssenceGroup_Choices, 0, segment);
  }
  return AAFRESULT_TRAVERSAL_NOT_POSS;
}

// The source clip at a place's position, and the position within it.
HRESULT find_clip(SearchIndex& index, const Place& place, StoredObject*& clip,
                  aafPosition_t& position) {
  position = place.reference.startTime;
  if (const HRESULT r = place.slot->get_object(pid::MobSlot_Segment, clip); r < 0) return r;
  for (int depth = 0; !clip->is_kind_of(ClassIndex::SourceClip); ++depth) {
    if (depth == max_nesting) return AAFRESULT_TRAVERSAL_NOT_POSS;
    if (const HRESULT r = step_into(index, clip, position); r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

// On to the mob that the clip at the place refers to.
HRESULT follow(FileSession& session, Place& place) {
  StoredObject* clip = nullptr;
  aafPosition_t position = 0;
  if (const HRESULT r = find_clip(session.search_index(), place, clip, position); r < 0) return r;
  aafSourceRef_t reference{};
  if (const HRESULT r = read_source_reference(*clip, reference); r < 0) return r;
  if (is_null(reference.sourceID)) return AAFRESULT_TRAVERSAL_NOT_POSS;
  Place next;
  if (const HRESULT r = find_mob(session.file(), reference.sourceID, next.mob); r < 0) return r;
  if (const HRESULT r =
          session.search_index().find_slot(*next.mob, reference.sourceSlotID, next.slot);
      r < 0) {
    return r;
  }
  if (const HRESULT r = edit_rate_of(*next.slot, next.rate); r < 0) return r;
  const aafLength_t left = saturating_subtract(length_of(*clip), position);
  next.reference = reference;
  next.reference.startTime =
      convert_rate(saturating_add(reference.startTime, position), place.rate, next.rate);
  next.length = convert_rate(std::min(place.length, left), place.rate, next.rate);
  place = next;
  return AAFRESULT_SUCCESS;
}

class FoundSource final : public Adds<ComObject, IAAFFindSourceInfo> {
 public:
  FoundSource(std::shared_ptr<FileSession> session, const Place& place)
      : m_session(std::move(session)), m_place(place) {}

  HRESULT GetMob(IAAFMob** ppMob) override {
    if (!ppMob) return AAFRESULT_NULL_PARAM;
    return m_session->hand_out(*m_place.mob, ppMob);
  }
  HRESULT GetSourceReference(aafSourceRef_t* pSourceRef) override {
    return tell(m_place.reference, pSourceRef);
  }
  HRESULT GetLength(aafLength_t* pLength) override { return tell(m_place.length, pLength); }
  HRESULT GetEditRate(aafRational_t* pEditRate) override { return tell(m_place.rate, pEditRate); }

 private:
  ~FoundSource() override = default;

  template <typename T>
  static HRESULT tell(const T& value, T* out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    *out = value;
    return AAFRESULT_SUCCESS;
  }

  std::shared_ptr<FileSession> m_session;
  Place m_place;
};

}  // namespace

HRESULT edit_rate_of(StoredObject& slot, aafRational_t& rate) {
  const bool is_event = slot.is_kind_of(ClassIndex::EventMobSlot);
  if (!is_event && !slot.is_kind_of(ClassIndex::TimelineMobSlot)) {
    rate = {1, 1};
    return AAFRESULT_SUCCESS;
  }
  return get_value(slot, is_event ? pid::EventMobSlot_EditRate : pid::TimelineMobSlot_EditRate,
                   rate);
}

aafInt64 convert_rate(aafInt64 position, const aafRational_t& from, const aafRational_t& to) {
  const bool is_same = from.numerator == to.numerator && from.denominator == to.denominator;
  const bool is_whole =
      from.numerator > 0 && from.denominator > 0 && to.numerator > 0 && to.denominator > 0;
  if (is_same || !is_whole) return position;
  // 64 bits times two of 32 need 126.
  __extension__ using Wide = __int128;
  const Wide converted =
      Wide{position} * to.numerator * from.denominator / (Wide{to.denominator} * from.numerator);
  constexpr aafInt64 largest = std::numeric_limits<aafInt64>::max();
  constexpr aafInt64 smallest = std::numeric_limits<aafInt64>::min();
  return static_cast<aafInt64>(std::clamp<Wide>(converted, smallest, largest));
}

HRESULT search_source(const std::shared_ptr<FileSession>& session, StoredObject& mob,
                      aafSlotID_t slot_id, aafPosition_t offset, aafMobKind_t kind,
                      IAAFFindSourceInfo** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  Place place;
  place.mob = &mob;
  place.length = std::numeric_limits<aafLength_t>::max();
  place.reference.startTime = offset;
  if (const HRESULT r = session->search_index().find_slot(mob, slot_id, place.slot); r < 0) {
    return r;
  }
  if (const HRESULT r = edit_rate_of(*place.slot, place.rate); r < 0) return r;
  aafPosition_t origin = 0;
  if (get_value(*place.slot, pid::TimelineMobSlot_Origin, origin) >= 0) {
    place.reference.startTime = saturating_add(offset, origin);
  }
  for (int hop = 0; hop < max_hops; ++hop) {
    if (const HRESULT r = follow(*session, place); r < 0) return r;
    aafMobKind_t found = kAAFAllMob;
    if (const HRESULT r = mob_kind(*place.mob, found); r < 0) return r;
    if (kind != kAAFAllMob && found != kind) continue;
    *out = new FoundSource(session, place);
    return AAFRESULT_SUCCESS;
  }
  return AAFRESULT_TRAVERSAL_NOT_POSS;
}

}  // namespace aafobj
