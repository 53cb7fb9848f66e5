#pragma once

#include <atomic>
#include <cstring>
#include <type_traits>
#include <utility>

#include "aafobj/api/aaf_result_codes.h"
#include "aafobj/api/aaf_unknown.h"
#include "aafobj/objects/counted_life.h"
#include "aafobj/objects/not_offered.h"

namespace aafobj {

inline bool same_iid(REFIID a, REFIID b) {
  return std::memcmp(&a, &b, sizeof(IID)) == 0;
}

// The identifier that other platforms give IUnknown. Answered beside the one of this platform,
// which is all zero.
inline constexpr IID iid_unknown_elsewhere = {
    0x00000000, 0x0000, 0x0000, {0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

inline bool is_unknown_iid(REFIID iid) {
  return same_iid(iid, IID_IUnknown) || same_iid(iid, iid_unknown_elsewhere);
}

// What is behind every interface pointer that we hand out: a count of references, which begins
// at 1, and the interfaces of the object's class and of those above it. Counting is safe
// between threads; nothing else is.
class ComObject : private CountedLife {
 public:
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  ULONG add_reference() { return m_references.fetch_add(1, std::memory_order_relaxed) + 1; }

  ULONG release() {
    const ULONG left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) delete this;
    return left;
  }

  // The interface with a reference of the caller's, or null and E_NOINTERFACE.
  HRESULT query_interface(REFIID iid, void** out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    *out = find_interface(iid);
    if (!*out) return E_NOINTERFACE;
    add_reference();
    return AAFRESULT_SUCCESS;
  }

  // The same, typed.
  template <typename Interface>
  HRESULT query(Interface** out) {
    return query_interface(NotOffered<Interface>::interface_id, reinterpret_cast<void**>(out));
  }

  // The interface without a reference; null when the object does not have it.
  virtual void* find_interface(REFIID) { return nullptr; }

 protected:
  ComObject() = default;
  virtual ~ComObject() = default;

 private:
  std::atomic<ULONG> m_references{1};
};

// A class that adds interfaces to those of its base:
//
//   class Sequence : public Adds<Segment, IAAFSequence>
//
// Operations that the class does not override answer "not implemented".
template <typename Base, typename First, typename... More>
class Adds : public Base, public NotOffered<First>, public NotOffered<More>... {
 public:
  using Base::Base;

  HRESULT QueryInterface(REFIID riid, LPVOID* ppvObj) override {
    return this->query_interface(riid, ppvObj);
  }
  ULONG AddRef() override { return this->add_reference(); }
  ULONG Release() override { return this->release(); }

  void* find_interface(REFIID iid) override {
    // One of an object's pointers stands for the whole object: the lowest class's first.
    if constexpr (std::is_same_v<Base, ComObject>) {
      if (is_unknown_iid(iid)) return static_cast<IUnknown*>(static_cast<First*>(this));
    }
    void* found = nullptr;
    const auto try_one = [&]<typename Interface>(Interface* pointer) {
      if (!same_iid(iid, NotOffered<Interface>::interface_id)) return false;
      found = pointer;
      return true;
    };
    if (try_one(static_cast<First*>(this)) || (try_one(static_cast<More*>(this)) || ...)) {
      return found;
    }
    return Base::find_interface(iid);
  }

 protected:
  ~Adds() override = default;
};

// Holds one reference.
template <typename Object>
class Ref {
 public:
  Ref() = default;
  // Takes over a reference that the caller has.
  explicit Ref(Object* object) : m_object(object) {}
  Ref(const Ref& other) : m_object(other.m_object) { hold(); }
  Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  ~Ref() { drop(); }

  Object* get() const { return m_object; }
  Object* operator->() const { return m_object; }
  Object& operator*() const { return *m_object; }
  explicit operator bool() const { return m_object != nullptr; }

  // For an operation that hands out a reference.
  Object** put() {
    drop();
    m_object = nullptr;
    return &m_object;
  }
  Object* detach() { return std::exchange(m_object, nullptr); }

 private:
  void hold() {
    if (!m_object) return;
    if constexpr (std::is_base_of_v<ComObject, Object>) {
      m_object->add_reference();
    } else {
      m_object->AddRef();
    }
  }
  void drop() {
    if (!m_object) return;
    if constexpr (std::is_base_of_v<ComObject, Object>) {
      m_object->release();
    } else {
      m_object->Release();
    }
  }

  Object* m_object = nullptr;
};

}  // namespace aafobj
