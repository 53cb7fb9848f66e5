// Holds one reference to an object of the AAF library and gives it back.
#pragma once

#include <utility>

#include "aafobj/api/aaf_interfaces.h"

template <class Interface>
class AafRef {
 public:
  AafRef() = default;
  // Takes a further reference.
  explicit AafRef(Interface* pointer) : pointer_(pointer) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  AafRef(const AafRef& other) : AafRef(other.pointer_) {}
  AafRef(AafRef&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  AafRef& operator=(AafRef other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~AafRef() { reset(); }

  [[nodiscard]] Interface* get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  // Where an operation delivers an object. What was held goes back first.
  [[nodiscard]] Interface** put() {
    reset();
    return &pointer_;
  }
  void reset() {
    // Taken out first: giving back may run anything.
    Interface* const held = std::exchange(pointer_, nullptr);
    if (held != nullptr) held->Release();
  }

 private:
  Interface* pointer_ = nullptr;
};

// Another interface of the object; empty when it has none, or for null. Use
// AAF_QUERY(IAAFMob, pointer).
template <class Interface>
[[nodiscard]] AafRef<Interface> aaf_query(IUnknown* object, REFIID iid) {
  AafRef<Interface> found;
  if (object == nullptr) return found;
  void* out = nullptr;
  if (object->QueryInterface(iid, &out) != 0) return found;
  *found.put() = static_cast<Interface*>(out);
  return found;
}
#define AAF_QUERY(Interface, pointer) ::aaf_query<Interface>(pointer, IID_##Interface)
