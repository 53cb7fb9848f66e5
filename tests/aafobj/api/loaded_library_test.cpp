// A program that knows the published declarations alone and loads the library by name.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "aafobj/api/aaf_entry_points.h"
#include "aafobj/api/aaf_interfaces.h"
#include "aafobj/api/aaf_result_codes.h"

namespace {

const std::set<std::string> entry_points = {
    "AAFFileOpenExistingRead",       "AAFFileOpenExistingModify", "AAFFileOpenNewModify",
    "AAFFileOpenNewModifyEx",        "AAFFileOpenTransient",      "AAFFileIsAAFFile",
    "AAFRawStorageIsAAFFile",        "AAFFileIsAAFFileKind",      "AAFRawStorageIsAAFFileKind",
    "AAFGetPluginManager",           "AAFCreateRawStorageMemory", "AAFCreateRawStorageDisk",
    "AAFCreateRawStorageCachedDisk", "AAFCreateRawStorageCached", "AAFCreateRawStorageCached2",
    "AAFCreateAAFFileOnRawStorage",  "AAFSetProgressCallback",    "AAFGetFileEncodings",
    "AAFSetDiagnosticOutput",        "AAFGetLibraryVersion",      "AAFGetLibraryPathNameBufLen",
    "AAFGetLibraryPathName",         "AAFResultToTextBufLen",     "AAFResultToText"};

std::string output_of(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  std::string text;
  char piece[4096];
  while (const std::size_t count = std::fread(piece, 1, sizeof piece, pipe.get()))
    text.append(piece, count);
  return text;
}

TEST(LoadedLibrary, ExportsTheEntryPointsAndNoOtherName) {
  EXPECT_EQ(entry_points.size(), 24U);
  std::istringstream lines(output_of("nm -D --defined-only '" EDL_AAF_LIBRARY "'"));
  std::set<std::string> exported;
  std::string address;
  std::string kind;
  std::string name;
  while (lines >> address >> kind >> name)
    exported.insert(name);
  EXPECT_EQ(exported, entry_points);
}

class LoadedLibraryTest : public testing::Test {
 protected:
  void SetUp() override {
    library_ = ::dlopen(EDL_AAF_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library_, nullptr) << ::dlerror();
  }
  void TearDown() override {
    if (library_ != nullptr) ::dlclose(library_);
  }
  template <class Function>
  Function* entry(const char* name) {
    void* const found = ::dlsym(library_, name);
    EXPECT_NE(found, nullptr) << name;
    return reinterpret_cast<Function*>(found);
  }

 private:
  void* library_ = nullptr;
};
#define LOADED(name) entry<decltype(::name)>(#name)

// The operation in a slot of the object's table, counted from QueryInterface.
template <class Function>
Function* slot_of(void* object, std::size_t slot) {
  void** table = nullptr;
  std::memcpy(&table, object, sizeof table);
  return reinterpret_cast<Function*>(table[slot]);
}

// By number rather than by declaration: a table with an operation too many or too few
// would call another one.
TEST_F(LoadedLibraryTest, OperationsAreInTheirSlots) {
  wchar_t company[] = L"company";
  wchar_t product[] = L"product";
  wchar_t version[] = L"1";
  aafProductIdentification_t who{};
  who.companyName = company;
  who.productName = product;
  who.productVersionString = version;
  IAAFFile* file = nullptr;
  ASSERT_EQ(LOADED(AAFFileOpenTransient)(&who, &file), 0);
  // AddRef and Release are 1 and 2.
  EXPECT_EQ(slot_of<ULONG(void*)>(file, 1)(file), 2U);
  EXPECT_EQ(slot_of<ULONG(void*)>(file, 2)(file), 1U);
  IAAFHeader* header = nullptr;
  ASSERT_EQ(file->GetHeader(&header), 0);
  // IAAFObject has its operations from slot 3: GetGeneration, GetGenerationAUID,
  // GetDefinition, GetProperties, CountProperties.
  IAAFObject* object = nullptr;
  ASSERT_EQ(header->QueryInterface(IID_IAAFObject, reinterpret_cast<void**>(&object)), 0);
  aafUInt32 by_slot = 0;
  aafUInt32 by_name = 1;
  EXPECT_EQ(slot_of<HRESULT(void*, aafUInt32*)>(object, 7)(object, &by_slot), 0);
  EXPECT_EQ(object->CountProperties(&by_name), 0);
  EXPECT_EQ(by_slot, by_name);
  EXPECT_GT(by_slot, 0U);
  // IAAFMetaDefinition: Initialize in slot 3, GetAUID in 4.
  IAAFClassDef* cls = nullptr;
  IAAFMetaDefinition* meta = nullptr;
  aafUID_t id{};
  EXPECT_EQ(slot_of<HRESULT(void*, IAAFClassDef**)>(object, 5)(object, &cls), 0);
  ASSERT_NE(cls, nullptr);
  ASSERT_EQ(cls->QueryInterface(IID_IAAFMetaDefinition, reinterpret_cast<void**>(&meta)), 0);
  EXPECT_EQ(slot_of<HRESULT(void*, aafUID_t*)>(meta, 4)(meta, &id), 0);
  EXPECT_EQ(id.Data1, 0x0d010101U);
  EXPECT_EQ(id.Data2, 0x0101U);
  EXPECT_EQ(id.Data3, 0x2f00U);
  // Every reference goes back, and the last one ends its object.
  EXPECT_EQ(meta->Release(), 1U);
  EXPECT_EQ(cls->Release(), 0U);
  EXPECT_EQ(object->Release(), 1U);
  EXPECT_EQ(header->Release(), 0U);
  EXPECT_EQ(file->Close(), 0);
  EXPECT_EQ(file->Release(), 0U);
}

TEST_F(LoadedLibraryTest, TheSmallEntryPointsAnswer) {
  aafProductVersion_t version{};
  EXPECT_EQ(LOADED(AAFGetLibraryVersion)(&version), 0);
  EXPECT_EQ(LOADED(AAFGetLibraryVersion)(nullptr), AAFRESULT_NULL_PARAM);
  aafUInt32 bytes = 0;
  ASSERT_EQ(LOADED(AAFGetLibraryPathNameBufLen)(&bytes), 0);
  ASSERT_EQ(bytes % sizeof(aafCharacter), 0U);
  std::wstring path(bytes / sizeof(aafCharacter), L'\0');
  ASSERT_EQ(LOADED(AAFGetLibraryPathName)(path.data(), bytes), 0);
  EXPECT_NE(path.find(L"libAAFCOAPI.so"), std::wstring::npos);
  ASSERT_EQ(LOADED(AAFResultToTextBufLen)(AAFRESULT_BADCONTAINER, &bytes), 0);
  std::wstring words(bytes / sizeof(aafCharacter), L'\0');
  ASSERT_EQ(LOADED(AAFResultToText)(AAFRESULT_BADCONTAINER, words.data(), bytes), 0);
  EXPECT_STREQ(words.c_str(), L"AAFRESULT_BADCONTAINER");
  IEnumAAFFileEncodings* encodings = nullptr;
  ASSERT_EQ(LOADED(AAFGetFileEncodings)(&encodings), 0);
  EXPECT_EQ(encodings->Release(), 0U);
  IAAFRawStorage* storage = nullptr;
  ASSERT_EQ(LOADED(AAFCreateRawStorageMemory)(kAAFFileAccess_modify, &storage), 0);
  aafBool is_aaf = kAAFTrue;
  aafUID_t kind{};
  EXPECT_EQ(LOADED(AAFRawStorageIsAAFFile)(storage, &kind, &is_aaf), 0);
  EXPECT_EQ(is_aaf, kAAFFalse);
  EXPECT_EQ(storage->Release(), 0U);
  IAAFPluginManager* plugins = nullptr;
  ASSERT_EQ(LOADED(AAFGetPluginManager)(&plugins), 0);
  ASSERT_NE(plugins, nullptr);
  plugins->Release();
}

}  // namespace
