// A doubly linked list of CObject pointers. The list owns its nodes and not the
// objects. A POSITION stays valid until its own node is removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/framework/object.h"

struct CObListNode;
using POSITION = CObListNode*;

class EDL_API CObList : public CObject {
 public:
  // Nodes are allocated `block_size` at a time, and more as the list grows.
  explicit CObList(std::intptr_t block_size = 10);
  ~CObList() override;
  CObList(const CObList&) = delete;
  CObList& operator=(const CObList&) = delete;

  [[nodiscard]] std::intptr_t GetCount() const { return count_; }
  [[nodiscard]] bool IsEmpty() const { return count_ == 0; }
  // Rises with every change of the list's structure or of a node's object, so
  // that an index kept beside the list can tell that it is out of date.
  [[nodiscard]] std::uint64_t changes() const { return changes_; }

  // Null for an empty list.
  [[nodiscard]] POSITION GetHeadPosition() const { return head_; }
  [[nodiscard]] POSITION GetTailPosition() const { return tail_; }
  // The list must not be empty.
  [[nodiscard]] CObject* GetHead() const;
  [[nodiscard]] CObject* GetTail() const;

  // The object at `position`, which then moves on (to null behind the end).
  CObject* GetNext(POSITION& position) const;
  CObject* GetPrev(POSITION& position) const;
  [[nodiscard]] CObject* GetAt(POSITION position) const;
  void SetAt(POSITION position, CObject* object);

  POSITION AddHead(CObject* object);
  POSITION AddTail(CObject* object);
  // A null position puts the object at the head, or for InsertAfter at the tail.
  POSITION InsertBefore(POSITION position, CObject* object);
  POSITION InsertAfter(POSITION position, CObject* object);

  // Hand back the object, which the caller now holds. The list must not be empty.
  CObject* RemoveHead();
  CObject* RemoveTail();
  void RemoveAt(POSITION position);
  // Forgets all nodes; the objects live on.
  void RemoveAll();

  // The first node behind `after` (from the head when null) with this object.
  [[nodiscard]] POSITION Find(const CObject* object, POSITION after = nullptr) const;

 private:
  CObListNode* new_node(CObject* object);
  void grow();

  CObListNode* head_ = nullptr;
  CObListNode* tail_ = nullptr;
  CObListNode* free_ = nullptr;
  std::intptr_t count_ = 0;
  std::uint64_t changes_ = 0;
  std::size_t block_size_;
  std::vector<std::unique_ptr<CObListNode[]>> blocks_;
};

// Removes and deletes everything on the list.
EDL_API void delete_all(CObList& list);
