#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "aafobj/container/raw_storage.h"

namespace aafobj {

// A file in memory that counts how often it is read.
class CountingStorage final : public RawStorage {
 public:
  explicit CountingStorage(std::vector<std::byte> bytes) : m_inner(std::move(bytes)) {}
  Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) override {
    ++reads;
    return m_inner.read_at(position, out, count);
  }
  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) override {
    return m_inner.write_at(position, bytes);
  }
  Result size(std::uint64_t& bytes) override { return m_inner.size(bytes); }
  Result set_size(std::uint64_t bytes) override { return m_inner.set_size(bytes); }
  Result synchronize() override { return Result::ok; }
  bool writable() const override { return true; }
  std::size_t reads = 0;

 private:
  MemoryStorage m_inner;
};

}  // namespace aafobj
