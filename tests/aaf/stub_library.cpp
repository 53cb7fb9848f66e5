// Every entry point of an AAF library, each answering with a number of its own, so that
// a test sees which was called. Left out are those that the build names.
#include <stdexcept>

#include "aafobj/api/aaf_entry_points.h"

// 1000 and its place among the entry points.
constexpr HRESULT answer(int place) {
  return 1000 + place;
}

#ifndef WITHOUT_EXISTING_READ
HRESULT AAFFileOpenExistingRead(aafCharacter_constptr, aafUInt32 flags, IAAFFile**) {
  if (flags == 99) throw std::runtime_error("out of the library");
  if (flags == 98) return static_cast<HRESULT>(0x80120009U);
  return answer(1);
}
#endif
HRESULT AAFFileOpenExistingModify(aafCharacter_constptr, aafUInt32, aafProductIdentification_t*,
                                  IAAFFile**) {
  return answer(2);
}
HRESULT AAFFileOpenNewModify(aafCharacter_constptr, aafUInt32, aafProductIdentification_t*,
                             IAAFFile**) {
  return answer(3);
}
#ifndef WITHOUT_NEW_MODIFY_EX
HRESULT AAFFileOpenNewModifyEx(aafCharacter_constptr, aafUID_constptr, aafUInt32,
                               aafProductIdentification_t*, IAAFFile**) {
  return answer(4);
}
#endif
HRESULT AAFFileOpenTransient(aafProductIdentification_t*, IAAFFile**) {
  return answer(5);
}
// The name says what to answer.
HRESULT AAFFileIsAAFFile(aafCharacter_constptr name, aafUID_t*, aafBool*) {
  if (name != nullptr && name[0] == L'n') return static_cast<HRESULT>(0x80004001U);
  if (name != nullptr && name[0] == L'e') return static_cast<HRESULT>(0x80120009U);
  return answer(6);
}
HRESULT AAFRawStorageIsAAFFile(IAAFRawStorage*, aafUID_t*, aafBool*) {
  return answer(7);
}
HRESULT AAFFileIsAAFFileKind(aafCharacter_constptr, aafUID_constptr, aafBool*) {
  return answer(8);
}
HRESULT AAFRawStorageIsAAFFileKind(IAAFRawStorage*, aafUID_constptr, aafBool*) {
  return answer(9);
}
#ifndef WITHOUT_PLUGIN_MANAGER
HRESULT AAFGetPluginManager(IAAFPluginManager**) {
  return answer(10);
}
#endif
#ifndef WITHOUT_MEMORY
HRESULT AAFCreateRawStorageMemory(aafFileAccess_t, IAAFRawStorage**) {
  return answer(11);
}
#endif
#ifndef WITHOUT_DISK
HRESULT AAFCreateRawStorageDisk(aafCharacter_constptr, aafFileExistence_t, aafFileAccess_t,
                                IAAFRawStorage**) {
  return answer(12);
}
#endif
HRESULT AAFCreateRawStorageCachedDisk(aafCharacter_constptr, aafFileExistence_t, aafFileAccess_t,
                                      aafUInt32, aafUInt32, IAAFRawStorage**) {
  return answer(13);
}
HRESULT AAFCreateRawStorageCached(IAAFRawStorage*, aafUInt32, aafUInt32, IAAFRawStorage**) {
  return answer(14);
}
HRESULT AAFCreateRawStorageCached2(IAAFRawStorage*, aafUInt32, aafUInt32, IAAFCachePageAllocator*,
                                   IAAFRawStorage**) {
  return answer(15);
}
#ifndef WITHOUT_FILE_ON_STORAGE
HRESULT AAFCreateAAFFileOnRawStorage(IAAFRawStorage*, aafFileExistence_t, aafFileAccess_t,
                                     aafUID_constptr, aafUInt32, aafProductIdentification_constptr,
                                     IAAFFile**) {
  return answer(16);
}
#endif
HRESULT AAFSetProgressCallback(IAAFProgress*) {
  return answer(17);
}
HRESULT AAFGetFileEncodings(IEnumAAFFileEncodings**) {
  return answer(18);
}
HRESULT AAFSetDiagnosticOutput(IAAFDiagnosticOutput*) {
  return answer(19);
}
HRESULT AAFGetLibraryVersion(aafProductVersion_t*) {
  return answer(20);
}
HRESULT AAFGetLibraryPathNameBufLen(aafUInt32*) {
  return answer(21);
}
HRESULT AAFGetLibraryPathName(aafCharacter*, aafUInt32) {
  return answer(22);
}
HRESULT AAFResultToTextBufLen(AAFRESULT, aafUInt32*) {
  return answer(23);
}
HRESULT AAFResultToText(AAFRESULT, aafCharacter*, aafUInt32) {
  return answer(24);
}
