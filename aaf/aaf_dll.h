// The AAF object library, loaded by name at the first call.
//
// There is at most one instance in a process. It serves all jobs, and goes at the end of
// this library's life. After a load that failed there is none, and the next call tries
// again. Not for more than one thread.
//
// Results are those of the published interfaces: 0 is success, a negative value a failure.
#pragma once

#include <array>
#include <cstddef>

#include "aafobj/api/aaf_entry_points.h"
#include "host/text.h"

// Failures of the binding itself.
namespace aaf_result {
inline constexpr HRESULT out_of_memory = static_cast<HRESULT>(0x8012015EU);
inline constexpr HRESULT null_argument = static_cast<HRESULT>(0x80120164U);
inline constexpr HRESULT already_loaded = static_cast<HRESULT>(0x80120166U);
inline constexpr HRESULT text_too_long = static_cast<HRESULT>(0x8012016CU);
inline constexpr HRESULT exception_left = static_cast<HRESULT>(0x801201D1U);
inline constexpr HRESULT not_offered = static_cast<HRESULT>(0x80120401U);
inline constexpr HRESULT not_implemented = static_cast<HRESULT>(0x80004001U);
}  // namespace aaf_result

class EDL_API AAFDLL {
 public:
  // Places in entry_points.
  enum Entry : std::size_t {
    file_open_existing_read,
    file_open_existing_modify,
    file_open_new_modify,
    file_open_new_modify_ex,
    file_open_transient,
    file_is_aaf_file,
    raw_storage_is_aaf_file,
    file_is_aaf_file_kind,
    raw_storage_is_aaf_file_kind,
    get_plugin_manager,
    create_raw_storage_memory,
    create_raw_storage_disk,
    create_raw_storage_cached_disk,
    create_raw_storage_cached,
    create_raw_storage_cached2,
    create_aaf_file_on_raw_storage,
    set_progress_callback,
    get_file_encodings,
    set_diagnostic_output,
    get_library_version,
    get_library_path_name_buf_len,
    get_library_path_name,
    result_to_text_buf_len,
    result_to_text,
    entry_count
  };

  AAFDLL();
  virtual ~AAFDLL();
  AAFDLL(const AAFDLL&) = delete;
  AAFDLL& operator=(const AAFDLL&) = delete;

  // Null without one.
  [[nodiscard]] static AAFDLL* instance();

  // Loads the library and finds its entry points. Null takes the library of the
  // platform's own name, from beside this library or by the system's search. A system
  // error e is answered as 0x80070000 with the low 16 bits of e.
  [[nodiscard]] HRESULT load(const wide_char* path);
  // Frees the library. When the system refuses, everything stays as it was.
  [[nodiscard]] HRESULT unload();

  // The library's operations, as it declares them. Each loads the library when there is
  // none. An operation that the library does not have answers aaf_result::not_offered,
  // an exception out of it aaf_result::exception_left.
  static HRESULT AAFFileOpenExistingRead(aafCharacter_constptr name, aafUInt32 flags,
                                         IAAFFile** file);
  static HRESULT AAFFileOpenExistingModify(aafCharacter_constptr name, aafUInt32 flags,
                                           aafProductIdentification_t* product, IAAFFile** file);
  static HRESULT AAFFileOpenNewModify(aafCharacter_constptr name, aafUInt32 flags,
                                      aafProductIdentification_t* product, IAAFFile** file);
  static HRESULT AAFFileOpenNewModifyEx(aafCharacter_constptr name, aafUID_constptr kind,
                                        aafUInt32 flags, aafProductIdentification_t* product,
                                        IAAFFile** file);
  static HRESULT AAFFileOpenTransient(aafProductIdentification_t* product, IAAFFile** file);
  static HRESULT AAFFileIsAAFFile(aafCharacter_constptr name, aafUID_t* kind, aafBool* is_aaf);
  static HRESULT AAFRawStorageIsAAFFile(IAAFRawStorage* storage, aafUID_t* kind, aafBool* is_aaf);
  static HRESULT AAFFileIsAAFFileKind(aafCharacter_constptr name, aafUID_constptr kind,
                                      aafBool* is_aaf);
  static HRESULT AAFRawStorageIsAAFFileKind(IAAFRawStorage* storage, aafUID_constptr kind,
                                            aafBool* is_aaf);
  static HRESULT AAFGetPluginManager(IAAFPluginManager** manager);
  static HRESULT AAFCreateRawStorageMemory(aafFileAccess_t access, IAAFRawStorage** storage);
  static HRESULT AAFCreateRawStorageDisk(aafCharacter_constptr name, aafFileExistence_t existence,
                                         aafFileAccess_t access, IAAFRawStorage** storage);
  static HRESULT AAFCreateRawStorageCachedDisk(aafCharacter_constptr name,
                                               aafFileExistence_t existence, aafFileAccess_t access,
                                               aafUInt32 pages, aafUInt32 page_size,
                                               IAAFRawStorage** storage);
  static HRESULT AAFCreateRawStorageCached(IAAFRawStorage* under, aafUInt32 pages,
                                           aafUInt32 page_size, IAAFRawStorage** storage);
  static HRESULT AAFCreateRawStorageCached2(IAAFRawStorage* under, aafUInt32 pages,
                                            aafUInt32 page_size, IAAFCachePageAllocator* allocator,
                                            IAAFRawStorage** storage);
  static HRESULT AAFCreateAAFFileOnRawStorage(IAAFRawStorage* storage, aafFileExistence_t existence,
                                              aafFileAccess_t access, aafUID_constptr kind,
                                              aafUInt32 flags,
                                              aafProductIdentification_constptr product,
                                              IAAFFile** file);
  static HRESULT AAFSetProgressCallback(IAAFProgress* progress);
  static HRESULT AAFGetFileEncodings(IEnumAAFFileEncodings** encodings);
  static HRESULT AAFSetDiagnosticOutput(IAAFDiagnosticOutput* output);
  static HRESULT AAFGetLibraryVersion(aafProductVersion_t* version);
  static HRESULT AAFGetLibraryPathNameBufLen(aafUInt32* bytes);
  static HRESULT AAFGetLibraryPathName(aafCharacter* name, aafUInt32 bytes);
  static HRESULT AAFResultToTextBufLen(AAFRESULT result, aafUInt32* bytes);
  static HRESULT AAFResultToText(AAFRESULT result, aafCharacter* text, aafUInt32 bytes);

  // Null while nothing is loaded, or for what the library does not have.
  std::array<void*, entry_count> entry_points{};

 private:
  [[nodiscard]] HRESULT resolve(Entry entry);

  void* library_ = nullptr;
};

// Makes the instance and loads; aaf_result::already_loaded when there is one. After a
// failure there is none.
EDL_API HRESULT load_aaf_library(const wide_char* path);
// Frees the library and removes the instance; 0 without one, or when it holds no library.
EDL_API HRESULT unload_aaf_library();
// Delivers the instance, made with a null path when there is none; null on failure.
EDL_API HRESULT ensure_aaf_library(AAFDLL** instance);
