// Drives the export of an AAF file.
#include <cerrno>
#include <new>

#include "aaf/aaf_comp_mob.h"
#include "aaf/aaf_dll.h"
#include "aaf/aaf_edl_file.h"
#include "aaf/essence_progress.h"
#include "aaf/export_audio.h"
#include "aaf/export_identification.h"
#include "aaf/export_output.h"
#include "aaf/export_url.h"
#include "aaf/file_facts.h"
#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_result_codes.h"
#include "host/framework/file.h"
#include "host/host.h"
#include "host/message_boxes.h"
#include "host/string_ids.h"
#include "host/strings.h"

namespace {

constexpr std::u16string_view aaf_extension = u".aaf";
constexpr std::u16string_view replaced_extension = u".edl";

struct Reason {
  int os_error;
  unsigned text_id;
};
constexpr Reason reasons[] = {
    {EACCES, string_id::aaf_reason_access},       {EPERM, string_id::aaf_reason_access},
    {EROFS, string_id::aaf_reason_protected},     {EBUSY, string_id::aaf_reason_in_use},
    {ETXTBSY, string_id::aaf_reason_in_use},      {EAGAIN, string_id::aaf_reason_in_use},
    {ENOSPC, string_id::aaf_reason_disk_full},    {EDQUOT, string_id::aaf_reason_disk_full},
    {ENETUNREACH, string_id::aaf_reason_network},
};

std::u16string reason_of(int os_error) {
  for (const Reason& reason : reasons) {
    if (reason.os_error == os_error) return host().strings().load(reason.text_id);
  }
  return {};
}

void remove_file(const wide_char* path) {
  try {
    CFile::Remove(path);
  } catch (const CFileException&) {
    // It is gone, or stays: nobody is told of either.
  }
}

void remove_if_there(const wide_char* path) {
  CFile file;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone)) return;
  file.Close();
  remove_file(path);
}

// Tells why a file of that name cannot be made. Nothing is told when it can: the
// fault was not the system's.
void tell_why_not_created(const CString& path) {
  CFile probe;
  CFileException failure;
  const unsigned flags = CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive;
  if (probe.Open(path, flags, &failure)) {
    probe.Close();
    remove_file(path);
    return;
  }
  std::u16string text = host().strings().load(string_id::aaf_cannot_create);
  text += reason_of(static_cast<int>(failure.m_lOsError));
  host().message_boxes().message(text.c_str(), BoxIcon::warning, BoxButtons::ok);
}

}  // namespace

std::u16string aaf::output_path(std::u16string_view path) {
  std::u16string written(path);
  const std::size_t size = replaced_extension.size();
  if (path.size() >= size && equal_no_case(path.substr(path.size() - size), replaced_extension)) {
    written.replace(path.size() - size, size, aaf_extension);
  }
  return written;
}

result_code CAAFEdlFile::export_edl(const wide_char* path, int /*option*/) {
  m_aaf_path = CString(aaf::output_path({path, text_length(path)}));
  remove_if_there(path);
  if (!collect_export_entries()) return result::not_done;
  collect_export_automation();
  collect_export_locators();
  if (!register_aaf_plugins() || !check_exportable()) return result::not_done;

  aaf::ExportIdentification identification;
  AafRef<IAAFFile> file;
  const HRESULT created = AAFDLL::AAFFileOpenNewModify(aaf_from_text(m_aaf_path.view()).c_str(),
                                                       AAF_FILE_MODE_USE_LARGE_SS_SECTORS,
                                                       identification.get(), file.put());
  if (created != 0 || !file) {
    tell_why_not_created(m_aaf_path);
    return result::not_done;
  }
  begin_export_log();
  m_external_audio = std::make_unique<aaf::ExternalAudio>(aaf::folder_of(m_aaf_path.view()));
  const bool written = write_open_file(*file.get());
  file.reset();
  if (written) {
    m_external_audio->keep();
  } else {
    remove_file(path);
  }
  m_external_audio.reset();
  finish_logger();
  return written ? result::done : result::not_done;
}

// Everything behind the creation of the file, which is closed in any case.
bool CAAFEdlFile::write_open_file(IAAFFile& file) {
  AafRef<IAAFHeader> header;
  bool written = file.GetHeader(header.put()) == 0 && header;
  if (written) {
    store_operational_pattern(header.get());
    written = write_content(header.get()) && file.Save() == 0;
  }
  if (written) read_back_identification(header.get());
  m_essence_access.reset();
  header.reset();
  return file.Close() == 0 && written;
}

// False also when memory runs out.
bool CAAFEdlFile::write_content(IAAFHeader* header) {
  try {
    return export_essence(header) && CAAFCompMob(this).export_composition(header) != 0;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void CAAFEdlFile::begin_export_log() {
  m_logger = std::make_unique<CAAFLogger>(0);
  m_logger->set_file_path(m_aaf_path);
  m_logger->company_name = CString(aaf::export_company);
  m_logger->product_name = CString(aaf::export_product);
  m_logger->product_version = CString(aaf::version_text(aaf::export_version_digits));
  m_logger->platform = CString(aaf::export_platform);
}

bool CAAFEdlFile::register_aaf_plugins() const {
  AafRef<IAAFPluginManager> manager;
  return AAFDLL::AAFGetPluginManager(manager.put()) == 0 && manager &&
         manager->RegisterSharedPlugins() == 0;
}

// Labels the file as one of the Edit Protocol.
bool CAAFEdlFile::store_operational_pattern(IAAFHeader* header) const {
  AafRef<IAAFDictionary> dictionary;
  AafRef<IAAFClassDef> cls;
  AafRef<IAAFPropertyDef> property;
  AafRef<IAAFTypeDef> type;
  AafRef<IAAFPropertyValue> value;
  const AafRef<IAAFObject> object = AAF_QUERY(IAAFObject, header);
  if (!object || header->GetDictionary(dictionary.put()) != 0) return false;
  if (dictionary->LookupClassDef(AUID_AAFHeader, cls.put()) != 0) return false;
  if (cls->LookupPropertyDef(aaf::operational_pattern_property, property.put()) != 0) return false;
  if (property->GetTypeDef(type.put()) != 0) return false;
  const AafRef<IAAFTypeDefRecord> record = AAF_QUERY(IAAFTypeDefRecord, type.get());
  if (!record) return false;
  aafUID_t pattern = aaf::edit_protocol_pattern;
  if (record->CreateValueFromStruct(reinterpret_cast<aafMemPtr_t>(&pattern), sizeof pattern,
                                    value.put()) != 0)
    return false;
  return object->SetPropertyValue(property.get(), value.get()) == 0;
}

void CAAFEdlFile::read_back_identification(IAAFHeader* header) {
  aaf::report_file(*header, *m_logger);
  m_logger->edit_protocol = 1;
  AafRef<IAAFIdentification> last;
  if (header->GetLastIdentification(last.put()) != 0) return;
  aaf::report_identification(*last.get(), *m_logger);
}
