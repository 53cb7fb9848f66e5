#include "tests/support/faulty_allocations.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

struct Script {
  bool in_force = false;
  bool keep_failing = false;
  std::uint64_t nth = 0;
  std::uint64_t count = 0;
  std::uint64_t failed = 0;
  std::uint64_t largest = 0;
};

thread_local Script script;

bool refused(std::size_t size) {
  if (!script.in_force) return false;
  script.largest = std::max<std::uint64_t>(script.largest, size);
  ++script.count;
  const bool fails = script.nth > 0 && (script.count == script.nth ||
                                        (script.count > script.nth && script.keep_failing));
  if (fails) ++script.failed;
  return fails;
}

void* take(std::size_t size) {
  return refused(size) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* take_aligned(std::size_t size, std::align_val_t alignment) {
  const auto step = static_cast<std::size_t>(alignment);
  return refused(size) ? nullptr : std::aligned_alloc(step, (size + step) / step * step);
}

void* or_throw(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

namespace support {

FaultyAllocations::FaultyAllocations(std::uint64_t nth, After after) {
  script = {};
  script.nth = nth;
  script.keep_failing = after == After::keep_failing;
  script.in_force = true;
}

FaultyAllocations::~FaultyAllocations() {
  script.in_force = false;
}

std::uint64_t FaultyAllocations::count() {
  return script.count;
}

std::uint64_t FaultyAllocations::failed() {
  return script.failed;
}

std::uint64_t FaultyAllocations::largest() {
  return script.largest;
}

}  // namespace support

void* operator new(std::size_t size) {
  return or_throw(take(size));
}
void* operator new[](std::size_t size) {
  return or_throw(take(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return take(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return or_throw(take_aligned(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return or_throw(take_aligned(size, alignment));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
