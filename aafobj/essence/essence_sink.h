#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "aafobj/container/compound_file.h"
#include "aafobj/container/raw_storage.h"

namespace aafobj {

// Where the bytes of an essence go: a stream of the file, or a file of its own.
class EssenceSink {
 public:
  EssenceSink() = default;
  EssenceSink(const EssenceSink&) = delete;
  EssenceSink& operator=(const EssenceSink&) = delete;
  virtual ~EssenceSink() = default;

  // Errors: those of the container.
  virtual Result write_at(std::uint64_t position, std::span<const std::byte> bytes) = 0;
  // Returns once the bytes are safe, as far as that is the sink's business.
  virtual Result finish() = 0;
};

std::unique_ptr<EssenceSink> make_stream_sink(Stream stream);
std::unique_ptr<EssenceSink> make_file_sink(std::shared_ptr<RawStorage> storage);

}  // namespace aafobj
