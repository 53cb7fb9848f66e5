#include <fstream>

#include "tests/aafobj/objects/client.h"

namespace {

using client::File;
using client::Held;
using client::TemporaryFolder;

TEST(AafFile, ANewFileTellsWhoMadeIt) {
  TemporaryFolder folder;
  client::new_file(folder.path("a.aaf")).save_and_close();
  File opened = client::open_file(folder.path("a.aaf"));
  aafUInt32 count = 0;
  EXPECT_EQ(opened.header->CountIdentifications(&count), 0);
  EXPECT_EQ(count, 1u);
  Held<IAAFIdentification> identification;
  ASSERT_EQ(opened.header->GetLastIdentification(identification.put()), 0);
  wchar_t text[100];
  EXPECT_EQ(identification->GetCompanyName(text, sizeof(text)), 0);
  EXPECT_STREQ(text, L"Company");
  EXPECT_EQ(identification->GetProductName(text, sizeof(text)), 0);
  EXPECT_STREQ(text, L"Product");
  EXPECT_EQ(identification->GetProductVersionString(text, sizeof(text)), 0);
  EXPECT_STREQ(text, L"v1.2");
  aafProductVersion_t version{};
  EXPECT_EQ(identification->GetProductVersion(&version), 0);
  EXPECT_EQ(version.patchLevel, 4);
  EXPECT_EQ(version.type, kAAFVersionBeta);
  aafUID_t id{};
  EXPECT_EQ(identification->GetProductID(&id), 0);
  EXPECT_TRUE(client::same(id, client::product().productID));
  aafTimeStamp_t time{};
  EXPECT_EQ(identification->GetDate(&time), 0);
  EXPECT_GE(time.date.year, 2024);
  EXPECT_EQ(opened.header->GetLastModified(&time), 0);
  aafVersionType_t revision{};
  EXPECT_EQ(opened.header->GetFileRevision(&revision), 0);
  EXPECT_EQ(revision.major, 1);
  EXPECT_EQ(revision.minor, 1);
  aafFileRev_t file_revision = 99;
  EXPECT_EQ(opened.file->GetRevision(&file_revision), 0);
  EXPECT_EQ(file_revision, kAAFRev2);
}

TEST(AafFile, TextsAreMeasuredInBytesWithTheirEnd) {
  File file = client::transient_file();
  Held<IAAFIdentification> identification;
  ASSERT_EQ(file.header->GetLastIdentification(identification.put()), 0);
  aafUInt32 size = 0;
  EXPECT_EQ(identification->GetCompanyNameBufLen(&size), 0);
  EXPECT_EQ(size, 8 * sizeof(wchar_t));
  wchar_t text[8];
  EXPECT_EQ(identification->GetCompanyName(text, size), 0);
  EXPECT_EQ(identification->GetCompanyName(text, size - 1), AAFRESULT_SMALLBUF);
  EXPECT_EQ(identification->GetCompanyName(nullptr, size), AAFRESULT_NULL_PARAM);
  EXPECT_EQ(identification->GetCompanyNameBufLen(nullptr), AAFRESULT_NULL_PARAM);
}

TEST(AafFile, NullTextsOfAnIdentificationAreFilled) {
  aafProductIdentification_t product{};
  Held<IAAFFile> file;
  ASSERT_EQ(AAFFileOpenTransient(&product, file.put()), 0);
  Held<IAAFHeader> header;
  Held<IAAFIdentification> identification;
  ASSERT_EQ(file->GetHeader(header.put()), 0);
  ASSERT_EQ(header->GetLastIdentification(identification.put()), 0);
  wchar_t text[100];
  EXPECT_EQ(identification->GetCompanyName(text, sizeof(text)), 0);
  EXPECT_STREQ(text, L"");
  EXPECT_EQ(identification->GetProductVersionString(text, sizeof(text)), 0);
  EXPECT_STREQ(text, L"Unknown version");
  aafProductVersion_t version{};
  EXPECT_EQ(identification->GetProductVersion(&version), AAFRESULT_PROP_NOT_PRESENT);
}

TEST(AafFile, OpeningFailsWithThePublishedCodes) {
  TemporaryFolder folder;
  Held<IAAFFile> file;
  EXPECT_EQ(AAFFileOpenExistingRead(folder.path("none.aaf").c_str(), 0, file.put()),
            AAFRESULT_FILE_NOT_FOUND);
  std::ofstream(folder.file("text.aaf")) << "this is no file of objects, but a text of some length";
  EXPECT_EQ(AAFFileOpenExistingRead(folder.path("text.aaf").c_str(), 0, file.put()),
            AAFRESULT_NOT_AAF_FILE);
  client::new_file(folder.path("a.aaf")).save_and_close();
  aafProductIdentification_t product = client::product();
  EXPECT_EQ(AAFFileOpenNewModify(folder.path("a.aaf").c_str(), 0, &product, file.put()),
            AAFRESULT_FILE_EXISTS);
  EXPECT_EQ(AAFFileOpenExistingRead(nullptr, 0, file.put()), AAFRESULT_NULL_PARAM);
  EXPECT_EQ(AAFFileOpenNewModify(folder.path("b.aaf").c_str(), 0, nullptr, file.put()),
            AAFRESULT_NULL_PARAM);
  EXPECT_FALSE(std::filesystem::exists(folder.file("b.aaf")));
}

TEST(AafFile, KindsAreRecognised) {
  TemporaryFolder folder;
  client::new_file(folder.path("small.aaf")).save_and_close();
  client::new_file(folder.path("large.aaf"), AAF_FILE_MODE_USE_LARGE_SS_SECTORS).save_and_close();
  std::ofstream(folder.file("text.txt")) << "text";
  aafUID_t kind{};
  aafBool is_aaf = kAAFFalse;
  EXPECT_EQ(AAFFileIsAAFFile(folder.path("small.aaf").c_str(), &kind, &is_aaf), 0);
  EXPECT_EQ(is_aaf, kAAFTrue);
  EXPECT_TRUE(client::same(kind, kAAFFileKind_AafS512Binary));
  EXPECT_EQ(AAFFileIsAAFFile(folder.path("large.aaf").c_str(), &kind, &is_aaf), 0);
  EXPECT_EQ(is_aaf, kAAFTrue);
  EXPECT_TRUE(client::same(kind, kAAFFileKind_AafS4KBinary));
  EXPECT_EQ(AAFFileIsAAFFile(folder.path("text.txt").c_str(), &kind, &is_aaf), 0);
  EXPECT_EQ(is_aaf, kAAFFalse);
  EXPECT_EQ(AAFFileIsAAFFile(folder.path("none").c_str(), &kind, &is_aaf),
            AAFRESULT_FILE_NOT_FOUND);
  EXPECT_EQ(
      AAFFileIsAAFFileKind(folder.path("large.aaf").c_str(), &kAAFFileKind_Aaf4KBinary, &is_aaf),
      0);
  EXPECT_EQ(is_aaf, kAAFTrue);
  EXPECT_EQ(
      AAFFileIsAAFFileKind(folder.path("large.aaf").c_str(), &kAAFFileKind_Aaf512Binary, &is_aaf),
      0);
  EXPECT_EQ(is_aaf, kAAFFalse);
  // Sector shift in the header: 9 and 12.
  EXPECT_EQ(client::bytes_of(folder.file("small.aaf"))[0x1e], 9);
  EXPECT_EQ(client::bytes_of(folder.file("large.aaf"))[0x1e], 12);
}

TEST(AafFile, WithoutSavingNothingIsThere) {
  TemporaryFolder folder;
  {
    File file = client::new_file(folder.path("a.aaf"));
    EXPECT_EQ(file.file->Close(), 0);
    EXPECT_EQ(file.file->Close(), AAFRESULT_NOT_OPEN);
    EXPECT_EQ(file.file->Save(), AAFRESULT_NOT_OPEN);
    Held<IAAFHeader> header;
    EXPECT_EQ(file.file->GetHeader(header.put()), AAFRESULT_NOT_OPEN);
  }
  Held<IAAFFile> file;
  EXPECT_LT(AAFFileOpenExistingRead(folder.path("a.aaf").c_str(), 0, file.put()), 0);
}

TEST(AafFile, ObjectsOutliveTheirFile) {
  Held<IAAFMob> mob;
  {
    File file = client::transient_file();
    mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    ASSERT_EQ(mob->SetName(L"still here"), 0);
    ASSERT_EQ(file.header->AddMob(mob), 0);
    EXPECT_EQ(file.file->Close(), 0);
  }
  EXPECT_EQ(client::name_of(mob.get()), L"still here");
  EXPECT_EQ(mob->SetName(L"x"), AAFRESULT_NOT_WRITEABLE);
}

TEST(AafFile, AFileOpenedForReadingTakesNoChange) {
  TemporaryFolder folder;
  client::new_file(folder.path("a.aaf")).save_and_close();
  File file = client::open_file(folder.path("a.aaf"));
  Held<IAAFMob> mob;
  EXPECT_EQ(file.dictionary->CreateInstance(AUID_AAFMasterMob, IID_IAAFMob,
                                            reinterpret_cast<IUnknown**>(mob.put())),
            AAFRESULT_NOT_WRITEABLE);
  EXPECT_EQ(file.file->Save(), AAFRESULT_NOT_WRITEABLE);
}

TEST(AafFile, OpeningForChangesAppendsAnIdentification) {
  TemporaryFolder folder;
  {
    File made = client::new_file(folder.path("a.aaf"));
    auto mob = client::create<IAAFMob>(made.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    ASSERT_EQ(mob->SetName(L"first"), 0);
    ASSERT_EQ(made.header->AddMob(mob), 0);
    mob.reset();
    made.save_and_close();
  }
  {
    File changed;
    aafProductIdentification_t product = client::product();
    wchar_t other[] = L"Other";
    product.productName = other;
    ASSERT_EQ(
        AAFFileOpenExistingModify(folder.path("a.aaf").c_str(), 0, &product, changed.file.put()),
        0);
    ASSERT_EQ(changed.file->GetHeader(changed.header.put()), 0);
    ASSERT_EQ(changed.header->GetDictionary(changed.dictionary.put()), 0);
    auto mob = client::create<IAAFMob>(changed.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
    ASSERT_EQ(mob->SetName(L"second"), 0);
    ASSERT_EQ(changed.header->AddMob(mob), 0);
    mob.reset();
    changed.save_and_close();
  }
  File opened = client::open_file(folder.path("a.aaf"));
  aafUInt32 count = 0;
  EXPECT_EQ(opened.header->CountIdentifications(&count), 0);
  EXPECT_EQ(count, 2u);
  Held<IAAFIdentification> last;
  ASSERT_EQ(opened.header->GetLastIdentification(last.put()), 0);
  wchar_t text[20];
  EXPECT_EQ(last->GetProductName(text, sizeof(text)), 0);
  EXPECT_STREQ(text, L"Other");
  aafNumSlots_t mobs = 0;
  EXPECT_EQ(opened.header->CountMobs(kAAFAllMob, &mobs), 0);
  EXPECT_EQ(mobs, 2u);
}

TEST(AafFile, ACopyHoldsWhatTheFileHolds) {
  TemporaryFolder folder;
  File file = client::transient_file();
  auto mob = client::create<IAAFMob>(file.dictionary, AUID_AAFMasterMob, IID_IAAFMob);
  ASSERT_EQ(mob->SetName(L"copied"), 0);
  ASSERT_EQ(file.header->AddMob(mob), 0);
  {
    File copy = client::new_file(folder.path("copy.aaf"), AAF_FILE_MODE_USE_LARGE_SS_SECTORS);
    ASSERT_EQ(file.file->SaveCopyAs(copy.file), 0);
    ASSERT_EQ(copy.file->Save(), 0);
    ASSERT_EQ(copy.file->Close(), 0);
  }
  File opened = client::open_file(folder.path("copy.aaf"));
  const auto mobs = client::mobs_of(opened.header);
  ASSERT_EQ(mobs.size(), 1u);
  EXPECT_EQ(client::name_of(mobs[0].get()), L"copied");
}

TEST(AafFile, StandsOnRawStoragesInMemory) {
  Held<IAAFRawStorage> storage;
  ASSERT_EQ(AAFCreateRawStorageMemory(kAAFFileAccess_modify, storage.put()), 0);
  const aafProductIdentification_t product = client::product();
  {
    File made;
    ASSERT_EQ(AAFCreateAAFFileOnRawStorage(storage, kAAFFileExistence_new, kAAFFileAccess_modify,
                                           &kAAFFileKind_Aaf4KBinary, 0, &product, made.file.put()),
              0);
    EXPECT_EQ(made.file->Save(), AAFRESULT_NOT_OPEN);
    ASSERT_EQ(made.file->Open(), 0);
    EXPECT_EQ(made.file->Open(), AAFRESULT_ALREADY_OPEN);
    ASSERT_EQ(made.file->Save(), 0);
    ASSERT_EQ(made.file->Close(), 0);
  }
  aafUID_t kind{};
  aafBool is_aaf = kAAFFalse;
  EXPECT_EQ(AAFRawStorageIsAAFFile(storage, &kind, &is_aaf), 0);
  EXPECT_EQ(is_aaf, kAAFTrue);
  Held<IAAFFile> opened;
  ASSERT_EQ(AAFCreateAAFFileOnRawStorage(storage, kAAFFileExistence_existing, kAAFFileAccess_read,
                                         nullptr, 0, nullptr, opened.put()),
            0);
  EXPECT_EQ(opened->Open(), 0);
  auto random = CLIENT_AS(IAAFRandomRawStorage, storage);
  aafUInt64 size = 0;
  EXPECT_EQ(random->GetSize(&size), 0);
  EXPECT_GT(size, 4096u);
}

// A raw storage of the program's own.
class OwnStorage final : public IAAFRawStorage, public IAAFRandomRawStorage {
 public:
  std::vector<unsigned char> bytes;
  ULONG references = 1;

  HRESULT QueryInterface(REFIID iid, void** out) override {
    if (std::memcmp(&iid, &IID_IAAFRawStorage, sizeof(iid)) == 0) {
      *out = static_cast<IAAFRawStorage*>(this);
    } else if (std::memcmp(&iid, &IID_IAAFRandomRawStorage, sizeof(iid)) == 0) {
      *out = static_cast<IAAFRandomRawStorage*>(this);
    } else {
      return E_NOINTERFACE;
    }
    ++references;
    return 0;
  }
  ULONG AddRef() override { return ++references; }
  ULONG Release() override { return --references; }
  HRESULT IsReadable(aafBoolean_t* out) override { return *out = kAAFTrue, 0; }
  HRESULT IsWriteable(aafBoolean_t* out) override { return *out = kAAFTrue, 0; }
  HRESULT Read(aafMemPtr_t, aafUInt32, aafUInt32*) override { return E_FAIL; }
  HRESULT Write(aafMemConstPtr_t, aafUInt32, aafUInt32*) override { return E_FAIL; }
  HRESULT Synchronize() override { return 0; }
  HRESULT ReadAt(aafUInt64 position, aafMemPtr_t buffer, aafUInt32 size, aafUInt32* read) override {
    const aafUInt64 left = position < bytes.size() ? bytes.size() - position : 0;
    // In small pieces, as a storage may.
    *read = static_cast<aafUInt32>(std::min<aafUInt64>({left, size, 1000}));
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(left ? position : 0), *read, buffer);
    return 0;
  }
  HRESULT WriteAt(aafUInt64 position, aafMemConstPtr_t buffer, aafUInt32 size,
                  aafUInt32* written) override {
    if (bytes.size() < position + size) bytes.resize(position + size);
    std::copy_n(buffer, size, bytes.begin() + static_cast<std::ptrdiff_t>(position));
    *written = size;
    return 0;
  }
  HRESULT GetSize(aafUInt64* size) override { return *size = bytes.size(), 0; }
  HRESULT IsExtendable(aafBoolean_t* out) override { return *out = kAAFTrue, 0; }
  HRESULT GetExtent(aafUInt64* extent) override { return GetSize(extent); }
  HRESULT SetExtent(aafUInt64 extent) override { return bytes.resize(extent), 0; }
};

TEST(AafFile, StandsOnARawStorageOfTheProgram) {
  OwnStorage storage;
  IAAFRawStorage* raw = &storage;
  const aafProductIdentification_t product = client::product();
  {
    Held<IAAFFile> file;
    ASSERT_EQ(AAFCreateAAFFileOnRawStorage(raw, kAAFFileExistence_new, kAAFFileAccess_modify,
                                           &kAAFFileKind_DontCare, 0, &product, file.put()),
              0);
    ASSERT_EQ(file->Open(), 0);
    ASSERT_EQ(file->Save(), 0);
    ASSERT_EQ(file->Close(), 0);
  }
  {
    Held<IAAFFile> file;
    ASSERT_EQ(AAFCreateAAFFileOnRawStorage(raw, kAAFFileExistence_existing, kAAFFileAccess_read,
                                           nullptr, 0, nullptr, file.put()),
              0);
    ASSERT_EQ(file->Open(), 0);
  }
  EXPECT_EQ(storage.references, 1u);
}

TEST(AafFile, TheLibraryTellsOfItself) {
  aafProductVersion_t version{};
  EXPECT_EQ(AAFGetLibraryVersion(&version), 0);
  EXPECT_EQ(version.major, 1);
  aafUInt32 size = 0;
  ASSERT_EQ(AAFGetLibraryPathNameBufLen(&size), 0);
  std::vector<wchar_t> path(size / sizeof(wchar_t));
  ASSERT_EQ(AAFGetLibraryPathName(path.data(), size), 0);
  EXPECT_NE(std::wstring(path.data()).find(L"aafobj_objects_test"), std::wstring::npos);
  ASSERT_EQ(AAFResultToTextBufLen(AAFRESULT_NO_MORE_OBJECTS, &size), 0);
  std::vector<wchar_t> text(size / sizeof(wchar_t));
  ASSERT_EQ(AAFResultToText(AAFRESULT_NO_MORE_OBJECTS, text.data(), size), 0);
  EXPECT_STREQ(text.data(), L"AAFRESULT_NO_MORE_OBJECTS");
  EXPECT_EQ(AAFResultToTextBufLen(12345, &size), AAFRESULT_RESULT_NOT_RECOGNIZED);
  Held<IAAFPluginManager> plugins;
  ASSERT_EQ(AAFGetPluginManager(plugins.put()), 0);
  EXPECT_EQ(plugins->RegisterSharedPlugins(), 0);
  Held<IEnumAAFFileEncodings> encodings;
  ASSERT_EQ(AAFGetFileEncodings(encodings.put()), 0);
  Held<IAAFFileEncoding> encoding;
  aafUID_t kind{};
  EXPECT_EQ(encodings->NextOne(encoding.put()), 0);
  EXPECT_EQ(encoding->GetFileKind(&kind), 0);
  EXPECT_TRUE(client::same(kind, kAAFFileKind_Aaf512Binary));
  EXPECT_EQ(AAFSetProgressCallback(nullptr), 0);
}

}  // namespace
