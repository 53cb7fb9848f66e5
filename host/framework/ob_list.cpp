#include "host/framework/ob_list.h"

#include <algorithm>
#include <cassert>

struct CObListNode {
  CObListNode* next;
  CObListNode* previous;
  CObject* object;
};

namespace {

// Large lists take nodes in larger steps, so that a million of them cost a few
// allocations and not a hundred thousand.
constexpr std::size_t largest_block = 4096;

}  // namespace

CObList::CObList(std::intptr_t block_size)
    : block_size_(static_cast<std::size_t>(std::max<std::intptr_t>(block_size, 1))) {}

CObList::~CObList() = default;

CObject* CObList::GetHead() const {
  assert(head_ != nullptr);
  return head_->object;
}

CObject* CObList::GetTail() const {
  assert(tail_ != nullptr);
  return tail_->object;
}

CObject* CObList::GetNext(POSITION& position) const {
  assert(position != nullptr);
  CObject* object = position->object;
  position = position->next;
  return object;
}

CObject* CObList::GetPrev(POSITION& position) const {
  assert(position != nullptr);
  CObject* object = position->object;
  position = position->previous;
  return object;
}

CObject* CObList::GetAt(POSITION position) const {
  assert(position != nullptr);
  return position->object;
}

void CObList::SetAt(POSITION position, CObject* object) {
  assert(position != nullptr);
  position->object = object;
  ++changes_;
}

POSITION CObList::AddHead(CObject* object) {
  return InsertBefore(head_, object);
}

POSITION CObList::AddTail(CObject* object) {
  return InsertAfter(tail_, object);
}

POSITION CObList::InsertBefore(POSITION position, CObject* object) {
  if (position == nullptr) position = head_;
  CObListNode* node = new_node(object);
  node->next = position;
  node->previous = position == nullptr ? nullptr : position->previous;
  (node->previous == nullptr ? head_ : node->previous->next) = node;
  (position == nullptr ? tail_ : position->previous) = node;
  return node;
}

POSITION CObList::InsertAfter(POSITION position, CObject* object) {
  if (position == nullptr) position = tail_;
  CObListNode* node = new_node(object);
  node->previous = position;
  node->next = position == nullptr ? nullptr : position->next;
  (node->next == nullptr ? tail_ : node->next->previous) = node;
  (position == nullptr ? head_ : position->next) = node;
  return node;
}

CObject* CObList::RemoveHead() {
  CObject* object = GetHead();
  RemoveAt(head_);
  return object;
}

CObject* CObList::RemoveTail() {
  CObject* object = GetTail();
  RemoveAt(tail_);
  return object;
}

void CObList::RemoveAt(POSITION position) {
  assert(position != nullptr);
  (position->previous == nullptr ? head_ : position->previous->next) = position->next;
  (position->next == nullptr ? tail_ : position->next->previous) = position->previous;
  position->next = free_;
  free_ = position;
  --count_;
  ++changes_;
}

void CObList::RemoveAll() {
  head_ = tail_ = free_ = nullptr;
  blocks_.clear();
  count_ = 0;
  ++changes_;
}

POSITION CObList::Find(const CObject* object, POSITION after) const {
  for (POSITION at = after == nullptr ? head_ : after->next; at != nullptr; at = at->next) {
    if (at->object == object) return at;
  }
  return nullptr;
}

CObListNode* CObList::new_node(CObject* object) {
  if (free_ == nullptr) grow();
  CObListNode* node = free_;
  free_ = node->next;
  node->object = object;
  ++count_;
  ++changes_;
  return node;
}

void CObList::grow() {
  const std::size_t size =
      std::max(block_size_, std::min(static_cast<std::size_t>(count_), largest_block));
  blocks_.push_back(std::make_unique<CObListNode[]>(size));
  CObListNode* block = blocks_.back().get();
  for (std::size_t i = size; i > 0; --i) {
    block[i - 1].next = free_;
    free_ = &block[i - 1];
  }
}

void delete_all(CObList& list) {
  while (!list.IsEmpty())
    delete list.RemoveHead();
}
