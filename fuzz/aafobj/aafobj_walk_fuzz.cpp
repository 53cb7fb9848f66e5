// Opens the input as an AAF file in memory, walks its whole tree by way of the published
// interfaces and reads what essence it has. Every object is given back at the end: the
// last reference to the file's storage is ours.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "aaf/aaf_ref.h"
#include "aaf/aaf_tree.h"
#include "aafobj/api/aaf_entry_points.h"

namespace {

void require(bool truth) {
  if (!truth) std::abort();
}

// Holds begins and ends together.
class Checker final : public aaf::TreeSink {
 public:
  ~Checker() override { require(open_ == 0); }
  void begin_object(const aaf::ObjectHead& head) override {
    require(!head.class_name.empty());
    ++open_;
  }
  void end_object(std::uint32_t) override { --open_; }
  void name(std::string_view name) override { require(!name.empty()); }
  void begin_list(std::size_t, bool) override { ++open_; }
  void end_list() override { --open_; }
  void scalar(aaf::ScalarKind, std::string_view) override {}
  void cut_bytes(std::string_view hexadecimal, std::uint64_t bytes) override {
    require(hexadecimal.size() / 2 <= bytes);
  }
  void fault(std::int32_t result, std::string_view words) override {
    require(result < 0 && !words.empty());
  }

 private:
  int open_ = 0;
};

void read_essence(IAAFFile& file) {
  AafRef<IAAFHeader> header;
  AafRef<IEnumAAFEssenceData> all;
  AafRef<IAAFEssenceData> data;
  if (file.GetHeader(header.put()) < 0 || header->EnumEssenceData(all.put()) < 0) return;
  while (all->NextOne(data.put()) == 0) {
    std::vector<aafUInt8> piece(4096);
    aafUInt32 read = 0;
    while (data->Read(static_cast<aafUInt32>(piece.size()), piece.data(), &read) == 0 && read > 0) {
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  AafRef<IAAFRawStorage> storage;
  require(AAFCreateRawStorageMemory(kAAFFileAccess_modify, storage.put()) == 0);
  const auto random = AAF_QUERY(IAAFRandomRawStorage, storage.get());
  require(static_cast<bool>(random));
  std::vector<aafUInt8> copy(bytes, bytes + size);
  aafUInt32 written = 0;
  if (size > 0) {
    require(random->WriteAt(0, copy.data(), static_cast<aafUInt32>(size), &written) == 0);
  }
  AafRef<IAAFFile> file;
  if (AAFCreateAAFFileOnRawStorage(storage.get(), kAAFFileExistence_existing, kAAFFileAccess_read,
                                   nullptr, 0, nullptr, file.put()) < 0 ||
      file->Open() < 0) {
    return 0;
  }
  {
    Checker checker;
    static_cast<void>(aaf::tell_tree_of(*file.get(), checker));
  }
  read_essence(*file.get());
  static_cast<void>(file->Close());
  return 0;
}
