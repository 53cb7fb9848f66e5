#include "aaf/aaf_dll.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "host/text.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace {

constexpr auto no_library = static_cast<HRESULT>(0x8007007EU);
constexpr auto no_entry = static_cast<HRESULT>(0x8007007FU);

std::u16string stub(const std::string& name) {
  return text_from_utf8(std::string(EDL_STUB_FOLDER) + "/lib" + name + ".so");
}

class AafDllTest : public testing::Test {
 protected:
  ~AafDllTest() override {
    host.libraries.unload_error = 0;
    EXPECT_EQ(unload_aaf_library(), 0);
    EXPECT_EQ(host.libraries.still_loaded, 0);
  }

  // The library that is found under the platform's own name.
  void provide(const std::string& name) {
    host.libraries.redirected["libAAFCOAPI.so"] = name.empty() ? name : utf8_from_text(stub(name));
    host.libraries.redirected["libcom-api.so"] = "";
  }

  support::ScriptedHost host;
};

TEST_F(AafDllTest, LoadsAWholeLibrary) {
  ASSERT_EQ(load_aaf_library(stub("aaf_stub_whole").c_str()), 0);
  ASSERT_NE(AAFDLL::instance(), nullptr);
  for (void* const entry : AAFDLL::instance()->entry_points)
    EXPECT_NE(entry, nullptr);
}

TEST_F(AafDllTest, EachOperationReachesItsOwnEntryPoint) {
  provide("aaf_stub_whole");
  const std::vector<HRESULT> answers = {
      AAFDLL::AAFFileOpenExistingRead(nullptr, 0, nullptr),
      AAFDLL::AAFFileOpenExistingModify(nullptr, 0, nullptr, nullptr),
      AAFDLL::AAFFileOpenNewModify(nullptr, 0, nullptr, nullptr),
      AAFDLL::AAFFileOpenNewModifyEx(nullptr, nullptr, 0, nullptr, nullptr),
      AAFDLL::AAFFileOpenTransient(nullptr, nullptr),
      AAFDLL::AAFFileIsAAFFile(nullptr, nullptr, nullptr),
      AAFDLL::AAFRawStorageIsAAFFile(nullptr, nullptr, nullptr),
      AAFDLL::AAFFileIsAAFFileKind(nullptr, nullptr, nullptr),
      AAFDLL::AAFRawStorageIsAAFFileKind(nullptr, nullptr, nullptr),
      AAFDLL::AAFGetPluginManager(nullptr),
      AAFDLL::AAFCreateRawStorageMemory({}, nullptr),
      AAFDLL::AAFCreateRawStorageDisk(nullptr, {}, {}, nullptr),
      AAFDLL::AAFCreateRawStorageCachedDisk(nullptr, {}, {}, 0, 0, nullptr),
      AAFDLL::AAFCreateRawStorageCached(nullptr, 0, 0, nullptr),
      AAFDLL::AAFCreateRawStorageCached2(nullptr, 0, 0, nullptr, nullptr),
      AAFDLL::AAFCreateAAFFileOnRawStorage(nullptr, {}, {}, nullptr, 0, nullptr, nullptr),
      AAFDLL::AAFSetProgressCallback(nullptr),
      AAFDLL::AAFGetFileEncodings(nullptr),
      AAFDLL::AAFSetDiagnosticOutput(nullptr),
      AAFDLL::AAFGetLibraryVersion(nullptr),
      AAFDLL::AAFGetLibraryPathNameBufLen(nullptr),
      AAFDLL::AAFGetLibraryPathName(nullptr, 0),
      AAFDLL::AAFResultToTextBufLen(0, nullptr),
      AAFDLL::AAFResultToText(0, nullptr, 0),
  };
  ASSERT_EQ(answers.size(), 24U);
  for (std::size_t i = 0; i < answers.size(); ++i)
    EXPECT_EQ(answers[i], 1001 + static_cast<HRESULT>(i));
}

TEST_F(AafDllTest, LoadsOurOwnLibrary) {
  ASSERT_EQ(load_aaf_library(text_from_utf8(EDL_AAF_LIBRARY).c_str()), 0);
  for (void* const entry : AAFDLL::instance()->entry_points)
    EXPECT_NE(entry, nullptr);
  aafProductVersion_t version{};
  EXPECT_EQ(AAFDLL::AAFGetLibraryVersion(&version), 0);
}

TEST_F(AafDllTest, AnOptionalEntryPointMayBeMissing) {
  provide("aaf_stub_no_new_modify_ex");
  ASSERT_EQ(load_aaf_library(nullptr), 0);
  EXPECT_EQ(AAFDLL::AAFFileOpenNewModifyEx(nullptr, nullptr, 0, nullptr, nullptr),
            aaf_result::not_offered);
  EXPECT_EQ(AAFDLL::AAFFileOpenNewModify(nullptr, 0, nullptr, nullptr), 1003);
}

TEST_F(AafDllTest, ARequiredEntryPointMustBeThere) {
  EXPECT_EQ(load_aaf_library(stub("aaf_stub_no_plugin_manager").c_str()), no_entry);
  EXPECT_EQ(AAFDLL::instance(), nullptr);
  EXPECT_EQ(host.libraries.still_loaded, 0);
}

TEST_F(AafDllTest, StorageInMemoryDemandsTheOthers) {
  EXPECT_EQ(load_aaf_library(stub("aaf_stub_no_disk").c_str()), no_entry);
  EXPECT_EQ(load_aaf_library(stub("aaf_stub_no_file_on_storage").c_str()), no_entry);
  EXPECT_EQ(AAFDLL::instance(), nullptr);
}

TEST_F(AafDllTest, WithoutStorageInMemoryTheOthersAreNotAskedFor) {
  ASSERT_EQ(load_aaf_library(stub("aaf_stub_no_memory").c_str()), 0);
  EXPECT_EQ(AAFDLL::AAFCreateRawStorageMemory({}, nullptr), aaf_result::not_offered);
  EXPECT_EQ(AAFDLL::AAFCreateRawStorageDisk(nullptr, {}, {}, nullptr), aaf_result::not_offered);
  EXPECT_EQ(AAFDLL::AAFCreateAAFFileOnRawStorage(nullptr, {}, {}, nullptr, 0, nullptr, nullptr),
            aaf_result::not_offered);
}

TEST_F(AafDllTest, AllStoragesMayBeMissing) {
  ASSERT_EQ(load_aaf_library(stub("aaf_stub_no_storages").c_str()), 0);
  EXPECT_EQ(AAFDLL::AAFCreateRawStorageMemory({}, nullptr), aaf_result::not_offered);
  EXPECT_EQ(AAFDLL::AAFCreateRawStorageDisk(nullptr, {}, {}, nullptr), aaf_result::not_offered);
  EXPECT_EQ(AAFDLL::AAFCreateAAFFileOnRawStorage(nullptr, {}, {}, nullptr, 0, nullptr, nullptr),
            aaf_result::not_offered);
}

TEST_F(AafDllTest, ACallTriesAgainAfterALoadThatFailed) {
  provide("");
  EXPECT_EQ(AAFDLL::AAFGetPluginManager(nullptr), no_library);
  AAFDLL* library = nullptr;
  EXPECT_EQ(ensure_aaf_library(&library), no_library);
  EXPECT_EQ(library, nullptr);
  provide("aaf_stub_whole");
  EXPECT_EQ(AAFDLL::AAFGetPluginManager(nullptr), 1010);
  EXPECT_EQ(ensure_aaf_library(&library), 0);
  EXPECT_EQ(library, AAFDLL::instance());
}

TEST_F(AafDllTest, ThePublishedNameIsTriedSecond) {
  host.libraries.redirected["libAAFCOAPI.so"] = "";
  host.libraries.redirected["libcom-api.so"] = utf8_from_text(stub("aaf_stub_whole"));
  EXPECT_EQ(AAFDLL::AAFGetPluginManager(nullptr), 1010);
}

TEST_F(AafDllTest, AGivenPathIsUsedAsItIs) {
  provide("aaf_stub_whole");
  EXPECT_EQ(load_aaf_library(u"/nowhere/libAAFCOAPI.so"), no_library);
}

TEST_F(AafDllTest, LoadedTwice) {
  provide("aaf_stub_whole");
  ASSERT_EQ(load_aaf_library(nullptr), 0);
  const AAFDLL* const first = AAFDLL::instance();
  EXPECT_EQ(load_aaf_library(nullptr), aaf_result::already_loaded);
  EXPECT_EQ(AAFDLL::instance(), first);
  EXPECT_EQ(AAFDLL::AAFGetPluginManager(nullptr), 1010);
}

TEST_F(AafDllTest, Unloaded) {
  EXPECT_EQ(unload_aaf_library(), 0) << "nothing is loaded";
  provide("aaf_stub_whole");
  ASSERT_EQ(load_aaf_library(nullptr), 0);
  EXPECT_EQ(unload_aaf_library(), 0);
  EXPECT_EQ(AAFDLL::instance(), nullptr);
  EXPECT_EQ(AAFDLL::AAFGetPluginManager(nullptr), 1010) << "loads again";
}

TEST_F(AafDllTest, AnUnloadThatTheSystemRefusesLeavesAll) {
  provide("aaf_stub_whole");
  ASSERT_EQ(load_aaf_library(nullptr), 0);
  host.libraries.unload_error = 5;
  EXPECT_EQ(unload_aaf_library(), static_cast<HRESULT>(0x80070005U));
  ASSERT_NE(AAFDLL::instance(), nullptr);
  EXPECT_EQ(AAFDLL::AAFGetPluginManager(nullptr), 1010);
}

TEST_F(AafDllTest, AnInstanceWithoutALibraryUnloads) {
  AAFDLL empty;
  EXPECT_EQ(AAFDLL::instance(), &empty);
  EXPECT_EQ(empty.unload(), 0);
  for (void* const entry : empty.entry_points)
    EXPECT_EQ(entry, nullptr);
}

TEST_F(AafDllTest, AnExceptionOutOfTheLibrary) {
  provide("aaf_stub_whole");
  EXPECT_EQ(AAFDLL::AAFFileOpenExistingRead(nullptr, 99, nullptr), aaf_result::exception_left);
  EXPECT_EQ(AAFDLL::AAFFileOpenExistingRead(nullptr, 98, nullptr),
            static_cast<HRESULT>(0x80120009U));
}

TEST_F(AafDllTest, ALibraryThatDoesNotTellAafFiles) {
  provide("aaf_stub_whole");
  EXPECT_EQ(AAFDLL::AAFFileIsAAFFile(L"n", nullptr, nullptr), aaf_result::not_offered);
  EXPECT_EQ(AAFDLL::AAFFileIsAAFFile(L"e", nullptr, nullptr), static_cast<HRESULT>(0x80120009U));
  AAFDLL::instance()->entry_points[AAFDLL::file_is_aaf_file] = nullptr;
  EXPECT_EQ(AAFDLL::AAFFileIsAAFFile(L"x", nullptr, nullptr), aaf_result::not_offered);
}

// Tells which names were asked for.
class AskedLibraries final : public DynamicLibraries {
 public:
  void* load(const wide_char*, std::uint32_t& error) override {
    error = 0;
    return this;
  }
  void* entry(void*, const char* name, std::uint32_t& error) override {
    asked.emplace_back(name);
    const bool missing = std::find(hidden.begin(), hidden.end(), name) != hidden.end();
    error = missing ? error_no_entry : 0;
    return missing ? nullptr : this;
  }
  bool unload(void*, std::uint32_t& error) override {
    error = 0;
    return true;
  }

  std::vector<std::string> asked;
  std::vector<std::string> hidden;
};

class AskedHost final : public PlainHost {
 public:
  AskedHost() { set_host(this); }
  ~AskedHost() override { set_host(nullptr); }
  DynamicLibraries& dynamic_libraries() override { return libraries; }
  AskedLibraries libraries;
};

TEST(AafDllOrderTest, NamesAreAskedForInTheirOrder) {
  AskedHost host;
  ASSERT_EQ(load_aaf_library(nullptr), 0);
  EXPECT_EQ(host.libraries.asked,
            (std::vector<std::string>{"AAFFileOpenExistingRead",       "AAFFileOpenExistingModify",
                                      "AAFFileOpenNewModify",          "AAFFileOpenNewModifyEx",
                                      "AAFFileOpenTransient",          "AAFFileIsAAFFile",
                                      "AAFRawStorageIsAAFFile",        "AAFGetPluginManager",
                                      "AAFCreateRawStorageMemory",     "AAFCreateRawStorageDisk",
                                      "AAFCreateAAFFileOnRawStorage",  "AAFSetProgressCallback",
                                      "AAFCreateRawStorageCachedDisk", "AAFCreateRawStorageCached",
                                      "AAFCreateRawStorageCached2",    "AAFGetFileEncodings",
                                      "AAFFileIsAAFFileKind",          "AAFRawStorageIsAAFFileKind",
                                      "AAFSetDiagnosticOutput",        "AAFGetLibraryVersion",
                                      "AAFGetLibraryPathNameBufLen",   "AAFGetLibraryPathName",
                                      "AAFResultToTextBufLen",         "AAFResultToText"}));
  EXPECT_EQ(unload_aaf_library(), 0);
}

TEST(AafDllOrderTest, TheFirstThatIsMissingEndsTheLoad) {
  AskedHost host;
  host.libraries.hidden = {"AAFFileOpenExistingModify", "AAFFileOpenTransient"};
  EXPECT_EQ(load_aaf_library(nullptr), no_entry);
  EXPECT_EQ(host.libraries.asked,
            (std::vector<std::string>{"AAFFileOpenExistingRead", "AAFFileOpenExistingModify"}));
}

}  // namespace
