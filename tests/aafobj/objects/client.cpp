#include "tests/aafobj/objects/client.h"

#include <unistd.h>

#include <atomic>
#include <fstream>
#include <iterator>

namespace client {
namespace {

wchar_t company[] = L"Company";
wchar_t product_name[] = L"Product";
wchar_t version_text[] = L"v1.2";
aafProductVersion_t version = {1, 2, 3, 4, kAAFVersionBeta};

void take_parts(File& opened) {
  ASSERT_NE(opened.file.get(), nullptr);
  EXPECT_EQ(opened.file->GetHeader(opened.header.put()), 0);
  EXPECT_EQ(opened.header->GetDictionary(opened.dictionary.put()), 0);
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  static std::atomic<int> count{0};
  m_path = std::filesystem::temp_directory_path() /
           ("aafobj_objects_" + std::to_string(::getpid()) + "_" + std::to_string(++count));
  std::filesystem::create_directories(m_path);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

aafProductIdentification_t product() {
  aafProductIdentification_t identification{};
  identification.companyName = company;
  identification.productName = product_name;
  identification.productVersionString = version_text;
  identification.productID = {0x3c1462a0, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
  identification.productVersion = &version;
  return identification;
}

void File::save_and_close() {
  EXPECT_EQ(file->Save(), 0);
  header.reset();
  dictionary.reset();
  EXPECT_EQ(file->Close(), 0);
  file.reset();
}

File new_file(const std::wstring& path, aafUInt32 flags) {
  File made;
  aafProductIdentification_t identification = product();
  EXPECT_EQ(AAFFileOpenNewModify(path.c_str(), flags, &identification, made.file.put()), 0);
  take_parts(made);
  return made;
}

File open_file(const std::wstring& path) {
  File opened;
  EXPECT_EQ(AAFFileOpenExistingRead(path.c_str(), 0, opened.file.put()), 0);
  take_parts(opened);
  return opened;
}

File transient_file() {
  File made;
  aafProductIdentification_t identification = product();
  EXPECT_EQ(AAFFileOpenTransient(&identification, made.file.put()), 0);
  take_parts(made);
  return made;
}

Held<IAAFDataDef> data_def(IAAFDictionary* dictionary, const aafUID_t& id) {
  Held<IAAFDataDef> found;
  EXPECT_EQ(dictionary->LookupDataDef(id, found.put()), 0);
  return found;
}

std::vector<unsigned char> bytes_of(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), {});
  return {bytes.begin(), bytes.end()};
}

std::vector<Held<IAAFMob>> mobs_of(IAAFHeader* header, aafMobKind_t kind) {
  std::vector<Held<IAAFMob>> mobs;
  aafSearchCrit_t criterion{};
  criterion.searchTag = kAAFByMobKind;
  criterion.tags.mobKind = kind;
  Held<IEnumAAFMobs> enumerator;
  EXPECT_EQ(header->GetMobs(&criterion, enumerator.put()), 0);
  Held<IAAFMob> mob;
  while (enumerator->NextOne(mob.put()) == 0)
    mobs.push_back(std::move(mob));
  return mobs;
}

}  // namespace client
