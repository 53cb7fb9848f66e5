#pragma once

#include <memory>

#include "aafobj/objects/com_object.h"
#include "aafobj/objects/file_session.h"
#include "aafobj/objects/not_offered_file.h"

namespace aafobj {

// How a file on a raw storage is to be opened.
struct OpenRequest {
  std::shared_ptr<RawStorage> storage;
  bool is_new = false;
  Access access = Access::read;
  FileKind kind = FileKind::aaf_512;  // of a new file
  std::filesystem::path folder;       // where it is on disk; empty in memory
  bool has_identification = false;
  aafProductIdentification_t identification{};  // of who changes it; texts are copied
};

// A file behind its interface. Every operation but Open gives NOT_OPEN before it and after
// Close. Closing without saving loses what was changed.
class FileObject final : public Adds<ComObject, IAAFFile> {
 public:
  explicit FileObject(OpenRequest request);

  HRESULT Open() override;
  HRESULT SaveCopyAs(IAAFFile* pDestFile) override;
  HRESULT GetHeader(IAAFHeader** ppHeader) override;
  HRESULT GetRevision(aafFileRev_t* pRev) override;
  HRESULT Save() override;
  HRESULT Close() override;
  HRESULT GetDictionary(IAAFDictionary** ppDictionary) override;

  void* find_interface(REFIID iid) override;
  static FileObject* behind(IAAFFile* pointer);

 private:
  ~FileObject() override = default;

  // Texts of the identification, which the caller's need not outlive.
  struct Texts {
    std::wstring company;
    std::wstring product;
    std::wstring version;
    aafProductVersion_t product_version{};
  };

  HRESULT check_open() const;

  OpenRequest m_request;
  Texts m_texts;
  std::shared_ptr<FileSession> m_session;
  std::shared_ptr<FileSession> m_former_session;  // of what SaveCopyAs replaced
};

}  // namespace aafobj
