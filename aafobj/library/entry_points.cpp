#include "aafobj/api/aaf_entry_points.h"

#include <dlfcn.h>

#include <filesystem>
#include <new>
#include <string>

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/model/auid.h"
#include "aafobj/model/model_result.h"
#include "aafobj/objects/file_object.h"
#include "aafobj/objects/library_version.h"
#include "aafobj/objects/plugin_manager.h"
#include "aafobj/objects/raw_storage_object.h"
#include "aafobj/objects/result_text.h"
#include "aafobj/objects/text_conversion.h"

namespace {

using namespace aafobj;

// No exception leaves the library.
template <typename Operation>
HRESULT guarded(const Operation& operation) {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return AAFRESULT_NOMEMORY;
  } catch (...) {
    return AAFRESULT_UNEXPECTED_EXCEPTION;
  }
}

std::filesystem::path path_of(aafCharacter_constptr text) {
  return to_utf8(text);
}

HRESULT open_disk(aafCharacter_constptr name, DiskMode mode, OpenRequest& request) {
  const std::filesystem::path path = path_of(name);
  request.folder = std::filesystem::absolute(path).parent_path();
  const Result r = open_disk_storage(path, mode, request.storage);
  if (r == Result::access_denied || r == Result::invalid_argument) return AAFRESULT_OPEN_FAILURE;
  return aaf_result(r);
}

HRESULT open_and_hand_out(OpenRequest request, IAAFFile** out) {
  Ref<FileObject> file(new FileObject(std::move(request)));
  if (const HRESULT r = file->Open(); r < 0) return r;
  *out = file.detach();
  return AAFRESULT_SUCCESS;
}

// 512-byte sectors unless larger ones are asked for.
FileKind kind_of_flags(aafUInt32 mode_flags) {
  return (mode_flags & AAF_FILE_MODE_USE_LARGE_SS_SECTORS) != 0 ? FileKind::aaf_4k
                                                                : FileKind::aaf_512;
}

// The kinds of file that can be written. Errors: FILEREV_NOT_SUPP for any other.
HRESULT kind_of_id(const aafUID_t& id, aafUInt32 mode_flags, FileKind& kind) {
  for (const aafUID_t& small : {kAAFFileKind_Aaf512Binary, kAAFFileKind_AafM512Binary,
                                kAAFFileKind_AafS512Binary, kAAFFileKind_AafG512Binary}) {
    if (id != small) continue;
    kind = FileKind::aaf_512;
    return AAFRESULT_SUCCESS;
  }
  for (const aafUID_t& large : {kAAFFileKind_Aaf4KBinary, kAAFFileKind_AafM4KBinary,
                                kAAFFileKind_AafS4KBinary, kAAFFileKind_AafG4KBinary}) {
    if (id != large) continue;
    kind = FileKind::aaf_4k;
    return AAFRESULT_SUCCESS;
  }
  kind = kind_of_flags(mode_flags);
  return id == kAAFFileKind_DontCare ? AAFRESULT_SUCCESS : AAFRESULT_FILEREV_NOT_SUPP;
}

HRESULT open_new(aafCharacter_constptr name, FileKind kind,
                 const aafProductIdentification_t& product, IAAFFile** out) {
  OpenRequest request;
  if (const HRESULT r = open_disk(name, DiskMode::create_new, request); r < 0) return r;
  request.is_new = true;
  request.access = Access::modify;
  request.kind = kind;
  request.has_identification = true;
  request.identification = product;
  return open_and_hand_out(std::move(request), out);
}

// Of which kind a storage's file is, by its first bytes.
HRESULT recognise(RawStorage& storage, aafUID_t* kind, aafBool* is_aaf) {
  FileKind found{};
  const Result r = CompoundFile::recognise(storage, found);
  if (r != Result::ok && r != Result::not_aaf) return aaf_result(r);
  *is_aaf = r == Result::ok ? kAAFTrue : kAAFFalse;
  if (r == Result::ok) {
    *kind = found == FileKind::aaf_4k ? kAAFFileKind_AafS4KBinary : kAAFFileKind_AafS512Binary;
  }
  return AAFRESULT_SUCCESS;
}

HRESULT is_of_kind(RawStorage& storage, const aafUID_t& wanted, aafBool* is_kind) {
  aafUID_t kind{};
  FileKind found{};
  FileKind asked{};
  aafBool is_aaf = kAAFFalse;
  if (const HRESULT r = recognise(storage, &kind, &is_aaf); r < 0) return r;
  *is_kind = kAAFFalse;
  if (is_aaf == kAAFFalse || kind_of_id(wanted, 0, asked) < 0) return AAFRESULT_SUCCESS;
  if (const HRESULT r = kind_of_id(kind, 0, found); r < 0) return r;
  *is_kind = wanted == kAAFFileKind_DontCare || found == asked ? kAAFTrue : kAAFFalse;
  return AAFRESULT_SUCCESS;
}

HRESULT text_size(std::u16string_view text, aafUInt32* out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  *out = wide_bytes(text);
  return AAFRESULT_SUCCESS;
}

std::u16string library_path() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&AAFGetLibraryPathName), &info) == 0) return {};
  return from_wide(from_utf8(info.dli_fname));
}

// What a program asked to be told; kept, and not used.
Ref<IAAFProgress> progress_callback;
Ref<IAAFDiagnosticOutput> diagnostic_output;

template <typename Interface>
HRESULT keep_callback(Ref<Interface>& store, Interface* pointer) {
  if (pointer) pointer->AddRef();
  store = Ref<Interface>(pointer);
  return AAFRESULT_SUCCESS;
}

}  // namespace

HRESULT AAFFileOpenExistingRead(aafCharacter_constptr pFileName, aafUInt32, IAAFFile** ppFile) {
  if (!pFileName || !ppFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    OpenRequest request;
    if (const HRESULT r = open_disk(pFileName, DiskMode::read, request); r < 0) return r;
    return open_and_hand_out(std::move(request), ppFile);
  });
}

HRESULT AAFFileOpenExistingModify(aafCharacter_constptr pFileName, aafUInt32,
                                  aafProductIdentification_t* pIdent, IAAFFile** ppFile) {
  if (!pFileName || !pIdent || !ppFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    OpenRequest request;
    if (const HRESULT r = open_disk(pFileName, DiskMode::modify, request); r < 0) return r;
    request.access = Access::modify;
    request.has_identification = true;
    request.identification = *pIdent;
    return open_and_hand_out(std::move(request), ppFile);
  });
}

HRESULT AAFFileOpenNewModify(aafCharacter_constptr pFileName, aafUInt32 modeFlags,
                             aafProductIdentification_t* pIdent, IAAFFile** ppFile) {
  if (!pFileName || !pIdent || !ppFile) return AAFRESULT_NULL_PARAM;
  return guarded([&] { return open_new(pFileName, kind_of_flags(modeFlags), *pIdent, ppFile); });
}

HRESULT AAFFileOpenNewModifyEx(aafCharacter_constptr pFileName, aafUID_constptr pFileKind,
                               aafUInt32 modeFlags, aafProductIdentification_t* pIdent,
                               IAAFFile** ppFile) {
  if (!pFileName || !pFileKind || !pIdent || !ppFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    FileKind kind{};
    if (const HRESULT r = kind_of_id(*pFileKind, modeFlags, kind); r < 0) return r;
    return open_new(pFileName, kind, *pIdent, ppFile);
  });
}

HRESULT AAFFileOpenTransient(aafProductIdentification_t* pIdent, IAAFFile** ppFile) {
  if (!pIdent || !ppFile) return AAFRESULT_NULL_PARAM;
  return guarded([&] {
    OpenRequest request;
    request.storage = std::make_shared<MemoryStorage>();
    request.is_new = true;
    request.access = Access::modify;
    request.has_identification = true;
    request.identification = *pIdent;
    return open_and_hand_out(std::move(request), ppFile);
  });
}

HRESULT AAFFileIsAAFFile(aafCharacter_constptr pFileName, aafUID_t* pAAFFileKind,
                         aafBool* pFileIsAAFFile) {
  if (!pFileName || !pAAFFileKind || !pFileIsAAFFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    OpenRequest request;
    if (const HRESULT r = open_disk(pFileName, DiskMode::read, request); r < 0) return r;
    return recognise(*request.storage, pAAFFileKind, pFileIsAAFFile);
  });
}

HRESULT AAFRawStorageIsAAFFile(IAAFRawStorage* pRawStorage, aafUID_t* pAAFFileKind,
                               aafBool* pRawStorageIsAAFFile) {
  if (!pRawStorage || !pAAFFileKind || !pRawStorageIsAAFFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    std::shared_ptr<RawStorage> storage;
    if (const HRESULT r = storage_behind(pRawStorage, storage); r < 0) return r;
    return recognise(*storage, pAAFFileKind, pRawStorageIsAAFFile);
  });
}

HRESULT AAFFileIsAAFFileKind(aafCharacter_constptr pFileName, aafUID_constptr pAAFFileKind,
                             aafBool* pFileIsAAFFile) {
  if (!pFileName || !pAAFFileKind || !pFileIsAAFFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    OpenRequest request;
    if (const HRESULT r = open_disk(pFileName, DiskMode::read, request); r < 0) return r;
    return is_of_kind(*request.storage, *pAAFFileKind, pFileIsAAFFile);
  });
}

HRESULT AAFRawStorageIsAAFFileKind(IAAFRawStorage* pRawStorage, aafUID_constptr pAAFFileKind,
                                   aafBool* pRawStorageIsAAFFile) {
  if (!pRawStorage || !pAAFFileKind || !pRawStorageIsAAFFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    std::shared_ptr<RawStorage> storage;
    if (const HRESULT r = storage_behind(pRawStorage, storage); r < 0) return r;
    return is_of_kind(*storage, *pAAFFileKind, pRawStorageIsAAFFile);
  });
}

HRESULT AAFGetPluginManager(IAAFPluginManager** ppPluginManager) {
  if (!ppPluginManager) return AAFRESULT_NULL_PARAM;
  return guarded([&] {
    *ppPluginManager = make_plugin_manager();
    return AAFRESULT_SUCCESS;
  });
}

HRESULT AAFCreateRawStorageMemory(aafFileAccess_t access, IAAFRawStorage** ppNewRawStorage) {
  if (!ppNewRawStorage) return AAFRESULT_NULL_PARAM;
  return guarded([&] {
    *ppNewRawStorage = make_raw_storage_object(std::make_shared<MemoryStorage>(), access);
    return AAFRESULT_SUCCESS;
  });
}

HRESULT AAFCreateRawStorageDisk(aafCharacter_constptr pFilename, aafFileExistence_t existence,
                                aafFileAccess_t access, IAAFRawStorage** ppNewRawStorage) {
  if (!pFilename || !ppNewRawStorage) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    const bool is_new = existence == kAAFFileExistence_new;
    const bool is_writable = (access & kAAFFileAccess_write) != 0;
    if (is_new && !is_writable) return AAFRESULT_INVALID_PARAM;
    OpenRequest request;
    const DiskMode mode = is_new        ? DiskMode::create_new
                          : is_writable ? DiskMode::modify
                                        : DiskMode::read;
    if (const HRESULT r = open_disk(pFilename, mode, request); r < 0) return r;
    *ppNewRawStorage = make_raw_storage_object(std::move(request.storage), access);
    return AAFRESULT_SUCCESS;
  });
}

// Files are read through a cache of their own, whatever storage they stand on.
HRESULT AAFCreateRawStorageCachedDisk(aafCharacter_constptr pFilename, aafFileExistence_t existence,
                                      aafFileAccess_t access, aafUInt32, aafUInt32,
                                      IAAFRawStorage** ppNewRawStorage) {
  return AAFCreateRawStorageDisk(pFilename, existence, access, ppNewRawStorage);
}

HRESULT AAFCreateRawStorageCached(IAAFRawStorage* pRawStorage, aafUInt32, aafUInt32,
                                  IAAFRawStorage** ppNewRawStorage) {
  if (!pRawStorage || !ppNewRawStorage) return AAFRESULT_NULL_PARAM;
  pRawStorage->AddRef();
  *ppNewRawStorage = pRawStorage;
  return AAFRESULT_SUCCESS;
}

HRESULT AAFCreateRawStorageCached2(IAAFRawStorage* pRawStorage, aafUInt32 pageCount,
                                   aafUInt32 pageSize, IAAFCachePageAllocator* pCachePageAllocator,
                                   IAAFRawStorage** ppNewRawStorage) {
  if (!pCachePageAllocator) return AAFRESULT_NULL_PARAM;
  return AAFCreateRawStorageCached(pRawStorage, pageCount, pageSize, ppNewRawStorage);
}

// The file is opened by its Open operation.
HRESULT AAFCreateAAFFileOnRawStorage(IAAFRawStorage* pRawStorage, aafFileExistence_t existence,
                                     aafFileAccess_t access, aafUID_constptr pFileKind,
                                     aafUInt32 modeFlags, aafProductIdentification_constptr pIdent,
                                     IAAFFile** ppNewFile) {
  if (!pRawStorage || !ppNewFile) return AAFRESULT_NULL_PARAM;
  return guarded([&]() -> HRESULT {
    OpenRequest request;
    if (const HRESULT r = storage_behind(pRawStorage, request.storage); r < 0) return r;
    request.is_new = existence == kAAFFileExistence_new;
    request.access = (access & kAAFFileAccess_write) != 0 ? Access::modify : Access::read;
    if (request.access == Access::modify && !pIdent) return AAFRESULT_NEED_PRODUCT_IDENT;
    if (request.is_new && request.access == Access::read) return AAFRESULT_WRONG_OPENMODE;
    const HRESULT r =
        kind_of_id(pFileKind ? *pFileKind : kAAFFileKind_DontCare, modeFlags, request.kind);
    if (r < 0) return r;
    request.has_identification = pIdent != nullptr;
    if (pIdent) request.identification = *pIdent;
    *ppNewFile = new FileObject(std::move(request));
    return AAFRESULT_SUCCESS;
  });
}

HRESULT AAFSetProgressCallback(IAAFProgress* pProgress) {
  return keep_callback(progress_callback, pProgress);
}

HRESULT AAFGetFileEncodings(IEnumAAFFileEncodings** ppFileEncodings) {
  if (!ppFileEncodings) return AAFRESULT_NULL_PARAM;
  return guarded([&] {
    *ppFileEncodings = make_file_encodings();
    return AAFRESULT_SUCCESS;
  });
}

HRESULT AAFSetDiagnosticOutput(IAAFDiagnosticOutput* pOutput) {
  return keep_callback(diagnostic_output, pOutput);
}

HRESULT AAFGetLibraryVersion(aafProductVersion_t* pVersion) {
  if (!pVersion) return AAFRESULT_NULL_PARAM;
  *pVersion = library_version;
  return AAFRESULT_SUCCESS;
}

HRESULT AAFGetLibraryPathNameBufLen(aafUInt32* pBufSize) {
  return guarded([&] { return text_size(library_path(), pBufSize); });
}

HRESULT AAFGetLibraryPathName(aafCharacter* pLibraryPathName, aafUInt32 bufSize) {
  return guarded([&] { return copy_text(library_path(), pLibraryPathName, bufSize); });
}

HRESULT AAFResultToTextBufLen(AAFRESULT result, aafUInt32* pResultTextSize) {
  return guarded([&]() -> HRESULT {
    const std::u16string text = result_text_of(result);
    if (text.empty()) return AAFRESULT_RESULT_NOT_RECOGNIZED;
    return text_size(text, pResultTextSize);
  });
}

HRESULT AAFResultToText(AAFRESULT result, aafCharacter* pResultText, aafUInt32 resultTextSize) {
  return guarded([&]() -> HRESULT {
    const std::u16string text = result_text_of(result);
    if (text.empty()) return AAFRESULT_RESULT_NOT_RECOGNIZED;
    return copy_text(text, pResultText, resultTextSize);
  });
}
