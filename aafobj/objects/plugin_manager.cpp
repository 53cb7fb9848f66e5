#include "aafobj/objects/plugin_manager.h"

#include "aafobj/api/aaf_well_known_ids.h"
#include "aafobj/objects/enumerator.h"
#include "aafobj/objects/text_conversion.h"

namespace aafobj {
namespace {

class PluginManager final : public Adds<ComObject, IAAFPluginManager> {
 public:
  HRESULT RegisterSharedPlugins() override { return AAFRESULT_SUCCESS; }
  HRESULT RegisterPluginDirectory(aafCharacter_constptr directoryName) override {
    return directoryName ? AAFRESULT_SUCCESS : AAFRESULT_NULL_PARAM;
  }
  HRESULT RegisterPluginFile(aafCharacter_constptr fileName) override {
    return fileName ? AAFRESULT_SUCCESS : AAFRESULT_NULL_PARAM;
  }

 private:
  ~PluginManager() override = default;
};

struct EncodingRow {
  aafUID_t kind;
  std::u16string_view name;
  std::u16string_view description;
};

constexpr EncodingRow encodings[] = {
    {kAAFFileKind_Aaf512Binary, u"AAF 512", u"Structured storage with 512-byte sectors"},
    {kAAFFileKind_Aaf4KBinary, u"AAF 4K", u"Structured storage with 4096-byte sectors"}};

class FileEncoding final : public Adds<ComObject, IAAFFileEncoding> {
 public:
  explicit FileEncoding(const EncodingRow& row) : m_row(row) {}

  HRESULT GetName(aafCharacter* pName, aafUInt32 bufSize) override {
    return copy_text(m_row.name, pName, bufSize);
  }
  HRESULT GetNameBufLen(aafUInt32* pBufSize) override { return tell_size(m_row.name, pBufSize); }
  HRESULT GetDescription(aafCharacter* pDescription, aafUInt32 bufSize) override {
    return copy_text(m_row.description, pDescription, bufSize);
  }
  HRESULT GetDescriptionBufLen(aafUInt32* pBufSize) override {
    return tell_size(m_row.description, pBufSize);
  }
  HRESULT GetFileKind(aafUID_t* pFileKind) override {
    if (!pFileKind) return AAFRESULT_NULL_PARAM;
    *pFileKind = m_row.kind;
    return AAFRESULT_SUCCESS;
  }

 private:
  ~FileEncoding() override = default;

  static HRESULT tell_size(std::u16string_view text, aafUInt32* out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    *out = wide_bytes(text);
    return AAFRESULT_SUCCESS;
  }

  const EncodingRow& m_row;
};

struct EncodingItem {
  const EncodingRow* row;

  HRESULT hand_out(IAAFFileEncoding** out) const {
    *out = new FileEncoding(*row);
    return AAFRESULT_SUCCESS;
  }
};

}  // namespace

IAAFPluginManager* make_plugin_manager() {
  return new PluginManager;
}

IEnumAAFFileEncodings* make_file_encodings() {
  std::vector<EncodingItem> items;
  for (const EncodingRow& row : encodings)
    items.push_back({&row});
  return new Enumerator<IEnumAAFFileEncodings, IAAFFileEncoding*, EncodingItem>(std::move(items),
                                                                                0);
}

}  // namespace aafobj
