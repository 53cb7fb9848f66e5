// Opens the input as an AAF file in memory, walks its whole tree by way of the published
// interfaces and reads what essence it has. Then opens it for changes, makes some and saves;
// what could be saved can be opened again. Every object is given back at the end.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "aaf/aaf_ref.h"
#include "aaf/aaf_tree.h"
#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_entry_points.h"
#include "aafobj/objects/counted_life.h"

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

AafRef<IAAFFile> open_file(IAAFRawStorage& storage, aafFileAccess_t access) {
  wchar_t name[] = L"fuzz";
  aafProductIdentification_t who{};
  who.companyName = who.productName = who.productVersionString = name;
  AafRef<IAAFFile> file;
  if (AAFCreateAAFFileOnRawStorage(&storage, kAAFFileExistence_existing, access, nullptr, 0, &who,
                                   file.put()) < 0 ||
      file->Open() < 0) {
    file.reset();
  }
  return file;
}

void walk(IAAFFile& file) {
  Checker checker;
  static_cast<void>(aaf::tell_tree_of(file, checker));
}

// A comment at each mob that takes one, and a mob the less and one more.
void change(IAAFFile& file) {
  AafRef<IAAFHeader> header;
  AafRef<IAAFDictionary> dictionary;
  AafRef<IEnumAAFMobs> all;
  AafRef<IAAFMob> mob;
  if (file.GetHeader(header.put()) < 0 || header->GetMobs(nullptr, all.put()) < 0) return;
  wchar_t words[] = L"fuzz";
  bool is_first = true;
  while (all->NextOne(mob.put()) == 0) {
    static_cast<void>(mob->AppendComment(words, words));
    if (is_first) static_cast<void>(header->RemoveMob(mob.get()));
    is_first = false;
  }
  AafRef<IUnknown> made;
  if (header->GetDictionary(dictionary.put()) < 0 ||
      dictionary->CreateInstance(AUID_AAFMasterMob, IID_IAAFMob, made.put()) < 0) {
    return;
  }
  static_cast<void>(header->AddMob(AAF_QUERY(IAAFMob, made.get()).get()));
}

void change_and_save(IAAFRawStorage& storage) {
  bool is_saved = false;
  if (const auto file = open_file(storage, kAAFFileAccess_modify)) {
    change(*file.get());
    is_saved = file->Save() == 0;
    is_saved = file->Close() == 0 && is_saved;
  }
  if (!is_saved) return;
  const auto again = open_file(storage, kAAFFileAccess_read);
  require(static_cast<bool>(again));
  walk(*again.get());
  static_cast<void>(again->Close());
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
  {
    const auto file = open_file(*storage.get(), kAAFFileAccess_read);
    if (!file) return 0;
    walk(*file.get());
    read_essence(*file.get());
    static_cast<void>(file->Close());
  }
  change_and_save(*storage.get());
  storage.reset();
  require(aafobj::CountedLife::number() == 1);  // what `random` holds
  return 0;
}
