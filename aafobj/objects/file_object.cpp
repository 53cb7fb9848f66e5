#include "aafobj/objects/file_object.h"

#include "aafobj/model/stored_values.h"
#include "aafobj/objects/aaf_object.h"
#include "aafobj/objects/header_objects.h"
#include "aafobj/objects/not_offered_definition.h"

namespace aafobj {
namespace {

constexpr IID iid_file_object = {
    0x9c2f6f0f, 0x53a1, 0x4c57, {0x8e, 0x0d, 0x6d, 0x3a, 0xb2, 0x41, 0x7f, 0x15}};

HRESULT open_container(const OpenRequest& request, std::unique_ptr<CompoundFile>& container) {
  const Result r = request.is_new ? CompoundFile::create(request.storage, request.kind, container)
                                  : CompoundFile::open(request.storage, request.access, container);
  return aaf_result(r);
}

// Keeps a text and points the caller's pointer at what is kept.
void keep(std::wstring& store, aafCharacter*& text) {
  if (!text) return;
  store = text;
  text = store.data();
}

}  // namespace

FileObject::FileObject(OpenRequest request) : m_request(std::move(request)) {
  aafProductIdentification_t& product = m_request.identification;
  keep(m_texts.company, product.companyName);
  keep(m_texts.product, product.productName);
  keep(m_texts.version, product.productVersionString);
  product.platform = nullptr;
  if (!product.productVersion) return;
  m_texts.product_version = *product.productVersion;
  product.productVersion = &m_texts.product_version;
}

void* FileObject::find_interface(REFIID iid) {
  return same_iid(iid, iid_file_object) ? this : Adds::find_interface(iid);
}

FileObject* FileObject::behind(IAAFFile* pointer) {
  void* object = nullptr;
  if (!pointer || pointer->QueryInterface(iid_file_object, &object) < 0) return nullptr;
  auto* found = static_cast<FileObject*>(object);
  found->release();  // the caller's own reference keeps it
  return found;
}

HRESULT FileObject::Open() {
  if (m_session) return AAFRESULT_ALREADY_OPEN;
  std::unique_ptr<CompoundFile> container;
  std::unique_ptr<ObjectFile> file;
  if (const HRESULT r = open_container(m_request, container); r < 0) return r;
  const HRESULT opened = m_request.is_new ? ObjectFile::create(std::move(container), file)
                                          : ObjectFile::open(std::move(container), file);
  if (opened < 0) return opened;
  auto session = std::make_shared<FileSession>(std::move(file));
  session->set_folder(m_request.folder);
  if (m_request.access == Access::modify && m_request.has_identification) {
    if (const HRESULT r = append_identification(*session, m_request.identification); r < 0) {
      return r;
    }
  }
  m_session = std::move(session);
  return AAFRESULT_SUCCESS;
}

HRESULT FileObject::check_open() const {
  return m_session && m_session->is_open() ? AAFRESULT_SUCCESS : AAFRESULT_NOT_OPEN;
}

HRESULT FileObject::GetHeader(IAAFHeader** ppHeader) {
  if (!ppHeader) return AAFRESULT_NULL_PARAM;
  StoredObject* header = nullptr;
  if (const HRESULT r = check_open(); r < 0) return r;
  if (const HRESULT r = m_session->file().header(header); r < 0) return r;
  return m_session->hand_out(*header, ppHeader);
}

HRESULT FileObject::GetDictionary(IAAFDictionary** ppDictionary) {
  if (!ppDictionary) return AAFRESULT_NULL_PARAM;
  StoredObject* dictionary = nullptr;
  if (const HRESULT r = check_open(); r < 0) return r;
  if (const HRESULT r = m_session->file().dictionary(dictionary); r < 0) return r;
  return m_session->hand_out(*dictionary, ppDictionary);
}

// Files of the first line of the published library have no object model version.
HRESULT FileObject::GetRevision(aafFileRev_t* pRev) {
  if (!pRev) return AAFRESULT_NULL_PARAM;
  StoredObject* header = nullptr;
  bool present = false;
  if (const HRESULT r = check_open(); r < 0) return r;
  if (const HRESULT r = m_session->file().header(header); r < 0) return r;
  if (const HRESULT r = header->is_present(pid::Header_ObjectModelVersion, present); r < 0) {
    return r;
  }
  *pRev = present ? kAAFRev2 : kAAFRev1;
  return AAFRESULT_SUCCESS;
}

HRESULT FileObject::Save() {
  StoredObject* header = nullptr;
  if (const HRESULT r = check_open(); r < 0) return r;
  if (!m_session->is_writable()) return AAFRESULT_NOT_WRITEABLE;
  if (const HRESULT r = m_session->file().header(header); r < 0) return r;
  const HRESULT r = set_value(*header, pid::Header_LastModified, time_now());
  return r < 0 ? r : m_session->file().save();
}

HRESULT FileObject::Close() {
  if (const HRESULT r = check_open(); r < 0) return r;
  return m_session->file().close();
}

// The destination, a new file, gets the whole tree in place of its own. It is saved with it;
// objects that were handed out of it before are of no file any more.
HRESULT FileObject::SaveCopyAs(IAAFFile* pDestFile) {
  if (!pDestFile) return AAFRESULT_NULL_PARAM;
  FileObject* destination = behind(pDestFile);
  if (!destination || destination == this) return AAFRESULT_INVALID_OBJ;
  if (const HRESULT r = check_open(); r < 0) return r;
  if (const HRESULT r = destination->check_open(); r < 0) return r;
  FileSession& former = *destination->m_session;
  if (!former.is_writable() || !destination->m_request.is_new) return AAFRESULT_NOT_WRITEABLE;
  std::unique_ptr<CompoundFile> container;
  if (const HRESULT r = former.file().release_container(container); r < 0) return r;
  if (const HRESULT r = m_session->file().save_copy(*container); r < 0) return r;
  if (const Result r = container->flush(); r != Result::ok) return aaf_result(r);
  std::unique_ptr<ObjectFile> file;
  if (const HRESULT r = ObjectFile::open(std::move(container), file); r < 0) return r;
  auto session = std::make_shared<FileSession>(std::move(file));
  session->set_folder(former.folder());
  destination->m_former_session = std::move(destination->m_session);
  destination->m_session = std::move(session);
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
