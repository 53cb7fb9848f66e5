#include "aaf/aaf_dll.h"

#include <memory>
#include <new>

#include "host/dynamic_libraries.h"
#include "host/host.h"

namespace {

AAFDLL* the_instance = nullptr;

#ifdef _WIN32
constexpr const wide_char* library_names[] = {u"AAFCOAPI.dll"};
#else
// Ours, and the name under which the published library goes here.
constexpr const wide_char* library_names[] = {u"libAAFCOAPI.so", u"libcom-api.so"};
#endif

// In the order of AAFDLL::Entry.
constexpr const char* entry_names[AAFDLL::entry_count] = {
    "AAFFileOpenExistingRead",       "AAFFileOpenExistingModify", "AAFFileOpenNewModify",
    "AAFFileOpenNewModifyEx",        "AAFFileOpenTransient",      "AAFFileIsAAFFile",
    "AAFRawStorageIsAAFFile",        "AAFFileIsAAFFileKind",      "AAFRawStorageIsAAFFileKind",
    "AAFGetPluginManager",           "AAFCreateRawStorageMemory", "AAFCreateRawStorageDisk",
    "AAFCreateRawStorageCachedDisk", "AAFCreateRawStorageCached", "AAFCreateRawStorageCached2",
    "AAFCreateAAFFileOnRawStorage",  "AAFSetProgressCallback",    "AAFGetFileEncodings",
    "AAFSetDiagnosticOutput",        "AAFGetLibraryVersion",      "AAFGetLibraryPathNameBufLen",
    "AAFGetLibraryPathName",         "AAFResultToTextBufLen",     "AAFResultToText",
};

enum class Need { required, required_with_memory_storage, optional };

struct Step {
  AAFDLL::Entry entry;
  Need need;
};

// The order in which the names are asked for.
constexpr Step steps[] = {
    {AAFDLL::file_open_existing_read, Need::required},
    {AAFDLL::file_open_existing_modify, Need::required},
    {AAFDLL::file_open_new_modify, Need::required},
    {AAFDLL::file_open_new_modify_ex, Need::optional},
    {AAFDLL::file_open_transient, Need::required},
    {AAFDLL::file_is_aaf_file, Need::required},
    {AAFDLL::raw_storage_is_aaf_file, Need::optional},
    {AAFDLL::get_plugin_manager, Need::required},
    {AAFDLL::create_raw_storage_memory, Need::optional},
    {AAFDLL::create_raw_storage_disk, Need::required_with_memory_storage},
    {AAFDLL::create_aaf_file_on_raw_storage, Need::required_with_memory_storage},
    {AAFDLL::set_progress_callback, Need::optional},
    {AAFDLL::create_raw_storage_cached_disk, Need::optional},
    {AAFDLL::create_raw_storage_cached, Need::optional},
    {AAFDLL::create_raw_storage_cached2, Need::optional},
    {AAFDLL::get_file_encodings, Need::optional},
    {AAFDLL::file_is_aaf_file_kind, Need::optional},
    {AAFDLL::raw_storage_is_aaf_file_kind, Need::optional},
    {AAFDLL::set_diagnostic_output, Need::optional},
    {AAFDLL::get_library_version, Need::optional},
    {AAFDLL::get_library_path_name_buf_len, Need::optional},
    {AAFDLL::get_library_path_name, Need::optional},
    {AAFDLL::result_to_text_buf_len, Need::optional},
    {AAFDLL::result_to_text, Need::optional},
};

HRESULT result_of_system_error(std::uint32_t error) {
  const auto code = static_cast<std::int32_t>(error);
  return code > 0 ? static_cast<HRESULT>(0x80070000U | (error & 0xFFFFU)) : code;
}

// `Function` is the entry point's type; its address must not be asked for, since nothing
// of the library is linked.
template <class Function, class... Arguments>
HRESULT forward(AAFDLL::Entry entry, Arguments... arguments) {
  AAFDLL* library = nullptr;
  const HRESULT loaded = ensure_aaf_library(&library);
  if (loaded < 0) return loaded;
  void* const found = library == nullptr ? nullptr : library->entry_points[entry];
  if (found == nullptr) return aaf_result::not_offered;
  try {
    return reinterpret_cast<Function*>(found)(arguments...);
  } catch (...) {
    return aaf_result::exception_left;
  }
}

// Ends the library at the end of this library's life.
struct CleanUp {
  ~CleanUp() { static_cast<void>(unload_aaf_library()); }
};

}  // namespace

AAFDLL::AAFDLL() {
  the_instance = this;
}

AAFDLL::~AAFDLL() {
  the_instance = nullptr;
}

AAFDLL* AAFDLL::instance() {
  return the_instance;
}

HRESULT AAFDLL::load(const wide_char* path) {
  std::uint32_t error = 0;
  DynamicLibraries& libraries = host().dynamic_libraries();
  if (path != nullptr) {
    library_ = libraries.load(path, error);
  } else {
    for (const wide_char* const name : library_names) {
      library_ = libraries.load(name, error);
      if (library_ != nullptr) break;
    }
  }
  if (library_ == nullptr) return result_of_system_error(error);
  for (const Step& step : steps) {
    if (step.need == Need::required_with_memory_storage &&
        entry_points[create_raw_storage_memory] == nullptr) {
      continue;
    }
    const HRESULT resolved = resolve(step.entry);
    if (resolved != 0 && step.need != Need::optional) return resolved;
  }
  return 0;
}

HRESULT AAFDLL::resolve(Entry entry) {
  std::uint32_t error = 0;
  entry_points[entry] = host().dynamic_libraries().entry(library_, entry_names[entry], error);
  return entry_points[entry] == nullptr ? result_of_system_error(error) : 0;
}

HRESULT AAFDLL::unload() {
  if (library_ == nullptr) return 0;
  std::uint32_t error = 0;
  if (!host().dynamic_libraries().unload(library_, error)) return result_of_system_error(error);
  entry_points.fill(nullptr);
  library_ = nullptr;
  return 0;
}

HRESULT load_aaf_library(const wide_char* path) {
  if (the_instance != nullptr) return aaf_result::already_loaded;
  auto* const made = new (std::nothrow) AAFDLL;
  if (made == nullptr) return aaf_result::out_of_memory;
  // Behind the host's own statics, so that it runs before they go.
  static_cast<void>(host());
  static const CleanUp clean_up;
  const HRESULT loaded = made->load(path);
  if (loaded == 0) return 0;
  static_cast<void>(made->unload());
  delete made;
  return loaded;
}

HRESULT unload_aaf_library() {
  if (the_instance == nullptr) return 0;
  const HRESULT freed = the_instance->unload();
  if (freed == 0) delete the_instance;
  return freed;
}

HRESULT ensure_aaf_library(AAFDLL** instance) {
  if (instance == nullptr) return aaf_result::null_argument;
  const HRESULT loaded = the_instance == nullptr ? load_aaf_library(nullptr) : 0;
  *instance = the_instance;
  return loaded;
}

HRESULT AAFDLL::AAFFileOpenExistingRead(aafCharacter_constptr name, aafUInt32 flags,
                                        IAAFFile** file) {
  return forward<decltype(::AAFFileOpenExistingRead)>(file_open_existing_read, name, flags, file);
}

HRESULT AAFDLL::AAFFileOpenExistingModify(aafCharacter_constptr name, aafUInt32 flags,
                                          aafProductIdentification_t* product, IAAFFile** file) {
  return forward<decltype(::AAFFileOpenExistingModify)>(file_open_existing_modify, name, flags,
                                                        product, file);
}

HRESULT AAFDLL::AAFFileOpenNewModify(aafCharacter_constptr name, aafUInt32 flags,
                                     aafProductIdentification_t* product, IAAFFile** file) {
  return forward<decltype(::AAFFileOpenNewModify)>(file_open_new_modify, name, flags, product,
                                                   file);
}

HRESULT AAFDLL::AAFFileOpenNewModifyEx(aafCharacter_constptr name, aafUID_constptr kind,
                                       aafUInt32 flags, aafProductIdentification_t* product,
                                       IAAFFile** file) {
  return forward<decltype(::AAFFileOpenNewModifyEx)>(file_open_new_modify_ex, name, kind, flags,
                                                     product, file);
}

HRESULT AAFDLL::AAFFileOpenTransient(aafProductIdentification_t* product, IAAFFile** file) {
  return forward<decltype(::AAFFileOpenTransient)>(file_open_transient, product, file);
}

HRESULT AAFDLL::AAFFileIsAAFFile(aafCharacter_constptr name, aafUID_t* kind, aafBool* is_aaf) {
  const HRESULT result =
      forward<decltype(::AAFFileIsAAFFile)>(file_is_aaf_file, name, kind, is_aaf);
  return result == aaf_result::not_implemented ? aaf_result::not_offered : result;
}

HRESULT AAFDLL::AAFRawStorageIsAAFFile(IAAFRawStorage* storage, aafUID_t* kind, aafBool* is_aaf) {
  return forward<decltype(::AAFRawStorageIsAAFFile)>(raw_storage_is_aaf_file, storage, kind,
                                                     is_aaf);
}

HRESULT AAFDLL::AAFFileIsAAFFileKind(aafCharacter_constptr name, aafUID_constptr kind,
                                     aafBool* is_aaf) {
  return forward<decltype(::AAFFileIsAAFFileKind)>(file_is_aaf_file_kind, name, kind, is_aaf);
}

HRESULT AAFDLL::AAFRawStorageIsAAFFileKind(IAAFRawStorage* storage, aafUID_constptr kind,
                                           aafBool* is_aaf) {
  return forward<decltype(::AAFRawStorageIsAAFFileKind)>(raw_storage_is_aaf_file_kind, storage,
                                                         kind, is_aaf);
}

HRESULT AAFDLL::AAFGetPluginManager(IAAFPluginManager** manager) {
  return forward<decltype(::AAFGetPluginManager)>(get_plugin_manager, manager);
}

HRESULT AAFDLL::AAFCreateRawStorageMemory(aafFileAccess_t access, IAAFRawStorage** storage) {
  return forward<decltype(::AAFCreateRawStorageMemory)>(create_raw_storage_memory, access, storage);
}

HRESULT AAFDLL::AAFCreateRawStorageDisk(aafCharacter_constptr name, aafFileExistence_t existence,
                                        aafFileAccess_t access, IAAFRawStorage** storage) {
  return forward<decltype(::AAFCreateRawStorageDisk)>(create_raw_storage_disk, name, existence,
                                                      access, storage);
}

HRESULT AAFDLL::AAFCreateRawStorageCachedDisk(aafCharacter_constptr name,
                                              aafFileExistence_t existence, aafFileAccess_t access,
                                              aafUInt32 pages, aafUInt32 page_size,
                                              IAAFRawStorage** storage) {
  return forward<decltype(::AAFCreateRawStorageCachedDisk)>(
      create_raw_storage_cached_disk, name, existence, access, pages, page_size, storage);
}

HRESULT AAFDLL::AAFCreateRawStorageCached(IAAFRawStorage* under, aafUInt32 pages,
                                          aafUInt32 page_size, IAAFRawStorage** storage) {
  return forward<decltype(::AAFCreateRawStorageCached)>(create_raw_storage_cached, under, pages,
                                                        page_size, storage);
}

HRESULT AAFDLL::AAFCreateRawStorageCached2(IAAFRawStorage* under, aafUInt32 pages,
                                           aafUInt32 page_size, IAAFCachePageAllocator* allocator,
                                           IAAFRawStorage** storage) {
  return forward<decltype(::AAFCreateRawStorageCached2)>(create_raw_storage_cached2, under, pages,
                                                         page_size, allocator, storage);
}

HRESULT AAFDLL::AAFCreateAAFFileOnRawStorage(IAAFRawStorage* storage, aafFileExistence_t existence,
                                             aafFileAccess_t access, aafUID_constptr kind,
                                             aafUInt32 flags,
                                             aafProductIdentification_constptr product,
                                             IAAFFile** file) {
  return forward<decltype(::AAFCreateAAFFileOnRawStorage)>(
      create_aaf_file_on_raw_storage, storage, existence, access, kind, flags, product, file);
}

HRESULT AAFDLL::AAFSetProgressCallback(IAAFProgress* progress) {
  return forward<decltype(::AAFSetProgressCallback)>(set_progress_callback, progress);
}

HRESULT AAFDLL::AAFGetFileEncodings(IEnumAAFFileEncodings** encodings) {
  return forward<decltype(::AAFGetFileEncodings)>(get_file_encodings, encodings);
}

HRESULT AAFDLL::AAFSetDiagnosticOutput(IAAFDiagnosticOutput* output) {
  return forward<decltype(::AAFSetDiagnosticOutput)>(set_diagnostic_output, output);
}

HRESULT AAFDLL::AAFGetLibraryVersion(aafProductVersion_t* version) {
  return forward<decltype(::AAFGetLibraryVersion)>(get_library_version, version);
}

HRESULT AAFDLL::AAFGetLibraryPathNameBufLen(aafUInt32* bytes) {
  return forward<decltype(::AAFGetLibraryPathNameBufLen)>(get_library_path_name_buf_len, bytes);
}

HRESULT AAFDLL::AAFGetLibraryPathName(aafCharacter* name, aafUInt32 bytes) {
  return forward<decltype(::AAFGetLibraryPathName)>(get_library_path_name, name, bytes);
}

HRESULT AAFDLL::AAFResultToTextBufLen(AAFRESULT result, aafUInt32* bytes) {
  return forward<decltype(::AAFResultToTextBufLen)>(result_to_text_buf_len, result, bytes);
}

HRESULT AAFDLL::AAFResultToText(AAFRESULT result, aafCharacter* text, aafUInt32 bytes) {
  return forward<decltype(::AAFResultToText)>(result_to_text, result, text, bytes);
}
