#include "aafobj/essence/essence_sink.h"

namespace aafobj {
namespace {

class StreamSink final : public EssenceSink {
 public:
  explicit StreamSink(Stream stream) : m_stream(std::move(stream)) {}

  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) override {
    return m_stream.write_at(position, bytes);
  }
  Result finish() override { return Result::ok; }  // saving the file sees to it

 private:
  Stream m_stream;
};

class FileSink final : public EssenceSink {
 public:
  explicit FileSink(std::shared_ptr<RawStorage> storage) : m_storage(std::move(storage)) {}

  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) override {
    return m_storage->write_at(position, bytes);
  }
  Result finish() override { return m_storage->synchronize(); }

 private:
  std::shared_ptr<RawStorage> m_storage;
};

}  // namespace

std::unique_ptr<EssenceSink> make_stream_sink(Stream stream) {
  return std::make_unique<StreamSink>(std::move(stream));
}

std::unique_ptr<EssenceSink> make_file_sink(std::shared_ptr<RawStorage> storage) {
  return std::make_unique<FileSink>(std::move(storage));
}

}  // namespace aafobj
