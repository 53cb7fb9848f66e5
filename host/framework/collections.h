// The framework's small typed collections, over the standard ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <vector>

#include "host/framework/string.h"

// A growing array. `Argument` is how elements are handed in.
template <class T, class Argument = const T&>
class CArray {
 public:
  [[nodiscard]] std::intptr_t GetSize() const { return static_cast<std::intptr_t>(items_.size()); }
  [[nodiscard]] bool IsEmpty() const { return items_.empty(); }
  // The index must lie inside the array.
  [[nodiscard]] const T& GetAt(std::intptr_t i) const {
    return items_[static_cast<std::size_t>(i)];
  }
  [[nodiscard]] T& GetAt(std::intptr_t i) { return items_[static_cast<std::size_t>(i)]; }
  // Grows the array with new elements up to `i` when it is shorter.
  void SetAtGrow(std::intptr_t i, Argument item) {
    if (i >= GetSize()) items_.resize(static_cast<std::size_t>(i) + 1);
    items_[static_cast<std::size_t>(i)] = item;
  }
  std::intptr_t Add(Argument item) {
    items_.push_back(item);
    return GetSize() - 1;
  }
  void RemoveAll() { items_.clear(); }
  [[nodiscard]] const T* begin() const { return items_.data(); }
  [[nodiscard]] const T* end() const { return items_.data() + items_.size(); }

 private:
  std::vector<T> items_;
};

// A list of values in order of arrival.
template <class T, class Argument = const T&>
class CList {
 public:
  [[nodiscard]] std::intptr_t GetCount() const { return static_cast<std::intptr_t>(items_.size()); }
  [[nodiscard]] bool IsEmpty() const { return items_.empty(); }
  void AddTail(Argument item) { items_.push_back(item); }
  T RemoveHead() {
    T item = std::move(items_.front());
    items_.pop_front();
    return item;
  }
  void RemoveAll() { items_.clear(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  std::list<T> items_;
};

using CStringArray = CArray<CString>;
using CStringList = CList<CString>;
