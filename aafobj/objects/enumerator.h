#pragma once

#include <memory>
#include <vector>

#include "aafobj/objects/com_object.h"
#include "aafobj/objects/file_session.h"
#include "aafobj/objects/not_offered_enumerator.h"

namespace aafobj {

// Hands out a list of things one after another. Item says how: item.hand_out(Interface**).
// What is added to a collection later does not come up in an enumerator that was made before.
template <typename Interface, typename Out, typename Item>
class Enumerator final : public Adds<ComObject, Interface> {
 public:
  Enumerator(std::vector<Item> items, std::size_t at) : m_items(std::move(items)), m_at(at) {}

  HRESULT NextOne(Out* out) override {
    if (!out) return AAFRESULT_NULL_PARAM;
    if (m_at >= m_items.size()) return AAFRESULT_NO_MORE_OBJECTS;
    const HRESULT r = m_items[m_at].hand_out(out);
    if (r >= 0) ++m_at;
    return r;
  }

  // Fewer than asked for only at the end, which is told by NO_MORE_OBJECTS.
  HRESULT Next(aafUInt32 count, Out* out, aafUInt32* fetched) override {
    if (!out || (!fetched && count != 1)) return AAFRESULT_NULL_PARAM;
    aafUInt32 done = 0;
    HRESULT r = AAFRESULT_SUCCESS;
    while (done < count && (r = NextOne(out + done)) >= 0)
      ++done;
    if (fetched) *fetched = done;
    return r;
  }

  HRESULT Skip(aafUInt32 count) override {
    const std::size_t left = m_items.size() - m_at;
    if (count > left) {
      m_at = m_items.size();
      return AAFRESULT_NO_MORE_OBJECTS;
    }
    m_at += count;
    return AAFRESULT_SUCCESS;
  }

  HRESULT Reset() override {
    m_at = 0;
    return AAFRESULT_SUCCESS;
  }

  HRESULT Clone(Interface** out) override {
    if (!out) return AAFRESULT_NULL_PARAM;
    *out = new Enumerator(m_items, m_at);
    return AAFRESULT_SUCCESS;
  }

 private:
  ~Enumerator() override = default;

  std::vector<Item> m_items;
  std::size_t m_at;
};

// Objects of a file, and definitions of its meta model.
template <typename Thing>
struct SessionItem {
  std::shared_ptr<FileSession> session;
  Thing* thing;  // not owned; lives as long as the session

  template <typename Interface>
  HRESULT hand_out(Interface** out) const {
    return session->hand_out(*thing, out);
  }
};

template <typename EnumInterface, typename Interface, typename Thing>
HRESULT enumerate_objects(const std::shared_ptr<FileSession>& session,
                          const std::vector<Thing*>& things, EnumInterface** out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  std::vector<SessionItem<Thing>> items;
  items.reserve(things.size());
  for (Thing* thing : things)
    items.push_back({session, thing});
  *out = new Enumerator<EnumInterface, Interface*, SessionItem<Thing>>(std::move(items), 0);
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
