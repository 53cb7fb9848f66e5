#include "aafobj/objects/header_objects.h"

#include "aafobj/objects/library_version.h"
#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/not_offered_essence.h"
#include "aafobj/objects/not_offered_file.h"
#include "aafobj/objects/not_offered_mob.h"
#include "aafobj/objects/object_factory.h"
#include "aafobj/objects/stored_queries.h"

namespace aafobj {
namespace {

// Stored without gaps and with a type of one byte.
HRESULT read_version(StoredObject& object, std::uint16_t pid, aafProductVersion_t* out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  std::span<const std::byte> bytes;
  if (const HRESULT r = object.get_data(pid, bytes); r < 0) return r;
  if (bytes.size() != 9) return AAFRESULT_BAD_SIZE;
  ByteReader reader(bytes, ByteOrder::little);
  out->major = reader.take<std::uint16_t>();
  out->minor = reader.take<std::uint16_t>();
  out->tertiary = reader.take<std::uint16_t>();
  out->patchLevel = reader.take<std::uint16_t>();
  out->type = reader.take<std::uint8_t>();
  return AAFRESULT_SUCCESS;
}

HRESULT write_version(StoredObject& object, std::uint16_t pid, const aafProductVersion_t& version) {
  ByteWriter writer;
  writer.put(std::uint16_t{version.major});
  writer.put(std::uint16_t{version.minor});
  writer.put(std::uint16_t{version.tertiary});
  writer.put(std::uint16_t{version.patchLevel});
  writer.put(static_cast<std::uint8_t>(version.type));
  return object.set_data(pid, writer.bytes());
}

HRESULT all_of(std::initializer_list<HRESULT> results) {
  for (const HRESULT r : results) {
    if (r < 0) return r;
  }
  return AAFRESULT_SUCCESS;
}

class Identification final : public Adds<AafObject, IAAFIdentification> {
 public:
  using Adds::Adds;

  HRESULT Initialize(aafCharacter_constptr companyName, aafCharacter_constptr productName,
                     aafCharacter_constptr productVersionString,
                     aafUID_constref productID) override {
    return all_of({write_text(pid::Identification_CompanyName, companyName),
                   write_text(pid::Identification_ProductName, productName),
                   write_text(pid::Identification_ProductVersionString, productVersionString),
                   write_same(pid::Identification_ProductID, productID),
                   write_same(pid::Identification_Date, time_now()),
                   write_same(pid::Identification_GenerationAUID, new_auid())});
  }
  HRESULT GetCompanyName(aafCharacter* pCompanyName, aafUInt32 bufSize) override {
    return read_text(pid::Identification_CompanyName, pCompanyName, bufSize);
  }
  HRESULT GetCompanyNameBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::Identification_CompanyName, pBufSize);
  }
  HRESULT GetProductName(aafCharacter* pProductName, aafUInt32 bufSize) override {
    return read_text(pid::Identification_ProductName, pProductName, bufSize);
  }
  HRESULT GetProductNameBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::Identification_ProductName, pBufSize);
  }
  HRESULT GetProductVersionString(aafCharacter* pProductVersionString, aafUInt32 bufSize) override {
    return read_text(pid::Identification_ProductVersionString, pProductVersionString, bufSize);
  }
  HRESULT GetProductVersionStringBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::Identification_ProductVersionString, pBufSize);
  }
  HRESULT GetProductVersion(aafProductVersion_t* pVersion) override {
    return read_version(stored(), pid::Identification_ProductVersion, pVersion);
  }
  HRESULT SetProductVersion(aafProductVersion_constref version) override {
    return write_version(stored(), pid::Identification_ProductVersion, version);
  }
  HRESULT GetProductID(aafUID_t* pProductID) override {
    return read_same(pid::Identification_ProductID, pProductID);
  }
  HRESULT GetDate(aafTimeStamp_t* pTimestamp) override {
    return read_same(pid::Identification_Date, pTimestamp);
  }
  HRESULT GetRefImplVersion(aafProductVersion_t* pVersion) override {
    return read_version(stored(), pid::Identification_ToolkitVersion, pVersion);
  }
  HRESULT GetPlatform(aafCharacter* pPlatform, aafUInt32 bufSize) override {
    return read_text(pid::Identification_Platform, pPlatform, bufSize);
  }
  HRESULT GetPlatformBufLen(aafUInt32* pBufSize) override {
    return read_text_bytes(pid::Identification_Platform, pBufSize);
  }
  HRESULT GetGenerationID(aafUID_t* pGeneration) override {
    return read_same(pid::Identification_GenerationAUID, pGeneration);
  }

 private:
  ~Identification() override = default;
};

// What the header and the content answer alike: the mobs and the essence of the file.
class Contents {
 public:
  Contents(const std::shared_ptr<FileSession>& session, StoredObject& content)
      : m_session(session), m_content(content) {}

  HRESULT look_up_mob(const aafMobID_t& id, IAAFMob** out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    StoredObject* mob = nullptr;
    const HRESULT r = find_mob(m_session->file(), id, mob);
    return r < 0 ? r : m_session->hand_out(*mob, out);
  }

  HRESULT count_mobs(aafMobKind_t kind, aafNumSlots_t* out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    aafSearchCrit_t criterion{};
    criterion.searchTag = kAAFByMobKind;
    criterion.tags.mobKind = kind;
    std::vector<StoredObject*> mobs;
    if (const HRESULT r = matching_mobs(&criterion, mobs); r < 0) return r;
    *out = static_cast<aafNumSlots_t>(mobs.size());
    return AAFRESULT_SUCCESS;
  }

  HRESULT get_mobs(const aafSearchCrit_t* criterion, IEnumAAFMobs** out) {
    std::vector<StoredObject*> mobs;
    if (!out) return AAFRESULT_NULL_PARAM;
    if (const HRESULT r = matching_mobs(criterion, mobs); r < 0) return r;
    return enumerate_objects<IEnumAAFMobs, IAAFMob>(m_session, mobs, out);
  }

  HRESULT add_mob(IAAFMob* pointer) {
    AafObject* mob = AafObject::behind(pointer);
    aafMobID_t id{};
    if (!pointer) return AAFRESULT_NULL_PARAM;
    if (!mob || mob->shared_session() != m_session) return AAFRESULT_INVALID_OBJ;
    if (mob->stored().owner()) return AAFRESULT_OBJECT_ALREADY_ATTACHED;
    if (const HRESULT r = get_value(mob->stored(), pid::Mob_MobID, id); r < 0) return r;
    const HRESULT r =
        m_content.insert_keyed(pid::ContentStorage_Mobs, StoredKey(id), mob->stored());
    return r == AAFRESULT_PROPERTY_DUPLICATE ? AAFRESULT_DUPLICATE_MOBID : r;
  }

  HRESULT remove_mob(IAAFMob* pointer) {
    aafMobID_t id{};
    if (!pointer) return AAFRESULT_NULL_PARAM;
    if (const HRESULT r = pointer->GetMobID(&id); r < 0) return r;
    const HRESULT r = m_content.remove_keyed(pid::ContentStorage_Mobs, StoredKey(id));
    return r == AAFRESULT_OBJECT_NOT_FOUND ? AAFRESULT_MOB_NOT_FOUND : r;
  }

  HRESULT count_essence(aafUInt32* out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    std::size_t number = 0;
    const HRESULT r = m_content.count_elements(pid::ContentStorage_EssenceData, number);
    if (r >= 0) *out = static_cast<aafUInt32>(number);
    return r;
  }

  HRESULT is_essence_present(const aafMobID_t& id, aafBoolean_t* out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    StoredObject* data = nullptr;
    const HRESULT r = m_content.find_element(pid::ContentStorage_EssenceData, StoredKey(id), data);
    if (r < 0 && r != AAFRESULT_OBJECT_NOT_FOUND) return r;
    *out = r < 0 ? kAAFFalse : kAAFTrue;
    return AAFRESULT_SUCCESS;
  }

  HRESULT enumerate_essence(IEnumAAFEssenceData** out) {
    std::vector<StoredObject*> data;
    const HRESULT r = m_content.contained_objects(pid::ContentStorage_EssenceData, data);
    if (r < 0 && r != AAFRESULT_PROP_NOT_PRESENT) return r;
    return enumerate_objects<IEnumAAFEssenceData, IAAFEssenceData>(m_session, data, out);
  }

  HRESULT add_essence(IAAFEssenceData* pointer) {
    AafObject* data = AafObject::behind(pointer);
    aafMobID_t id{};
    if (!pointer) return AAFRESULT_NULL_PARAM;
    if (!data || data->shared_session() != m_session) return AAFRESULT_INVALID_OBJ;
    if (data->stored().owner()) return AAFRESULT_OBJECT_ALREADY_ATTACHED;
    const HRESULT r = get_value(data->stored(), pid::EssenceData_MobID, id);
    if (r < 0) return r;
    return m_content.insert_keyed(pid::ContentStorage_EssenceData, StoredKey(id), data->stored());
  }

  HRESULT remove_essence(IAAFEssenceData* pointer) {
    aafMobID_t id{};
    if (!pointer) return AAFRESULT_NULL_PARAM;
    if (const HRESULT r = pointer->GetFileMobID(&id); r < 0) return r;
    const HRESULT r = m_content.remove_keyed(pid::ContentStorage_EssenceData, StoredKey(id));
    return r == AAFRESULT_OBJECT_NOT_FOUND ? AAFRESULT_ESSENCE_NOT_FOUND : r;
  }

  HRESULT look_up_essence(const aafMobID_t& id, IAAFEssenceData** out) {
    if (!out) return AAFRESULT_NULL_PARAM;
    StoredObject* data = nullptr;
    const HRESULT r = m_content.find_element(pid::ContentStorage_EssenceData, StoredKey(id), data);
    if (r == AAFRESULT_OBJECT_NOT_FOUND) return AAFRESULT_ESSENCE_NOT_FOUND;
    return r < 0 ? r : m_session->hand_out(*data, out);
  }

 private:
  // In the order of their identifiers. A null criterion takes all.
  HRESULT matching_mobs(const aafSearchCrit_t* criterion, std::vector<StoredObject*>& mobs) {
    std::vector<StoredObject*> all;
    const HRESULT there = m_content.contained_objects(pid::ContentStorage_Mobs, all);
    if (there < 0 && there != AAFRESULT_PROP_NOT_PRESENT) return there;
    for (StoredObject* mob : all) {
      bool matches = true;
      if (criterion) {
        if (const HRESULT r = match(*mob, *criterion, matches); r < 0) return r;
      }
      if (matches) mobs.push_back(mob);
    }
    return AAFRESULT_SUCCESS;
  }

  static HRESULT match(StoredObject& mob, const aafSearchCrit_t& criterion, bool& matches) {
    switch (criterion.searchTag) {
      case kAAFNoSearch:
        matches = true;
        return AAFRESULT_SUCCESS;
      case kAAFByMobKind:
        return match_kind(mob, criterion.tags.mobKind, matches);
      case kAAFByMobID:
        return match_value(mob, pid::Mob_MobID, criterion.tags.mobID, matches);
      case kAAFByUsageCode:
        return match_value(mob, pid::Mob_UsageCode, criterion.tags.usageCode, matches);
      case kAAFByName:
        return match_name(mob, criterion.tags.name, matches);
      case kAAFByClass:
        matches = false;
        for (const ClassDef* at = &mob.class_def(); at; at = at->parent) {
          if (at->identifier == criterion.tags.objClass) matches = true;
        }
        return AAFRESULT_SUCCESS;
      default:
        return AAFRESULT_NOT_IMPLEMENTED;
    }
  }

  static HRESULT match_kind(StoredObject& mob, aafMobKind_t kind, bool& matches) {
    aafMobKind_t found = kAAFAllMob;
    matches = kind == kAAFAllMob;
    if (matches) return AAFRESULT_SUCCESS;
    if (const HRESULT r = mob_kind(mob, found); r < 0) return r;
    matches = found == kind;
    return AAFRESULT_SUCCESS;
  }

  template <typename T>
  static HRESULT match_value(StoredObject& mob, std::uint16_t pid, const T& wanted, bool& matches) {
    T value{};
    const HRESULT r = get_value(mob, pid, value);
    matches = r >= 0 && value == wanted;
    return r == AAFRESULT_PROP_NOT_PRESENT ? AAFRESULT_SUCCESS : r;
  }

  static HRESULT match_name(StoredObject& mob, const aafCharacter* wanted, bool& matches) {
    if (!wanted) return AAFRESULT_NULL_PARAM;
    std::u16string name;
    const HRESULT r = get_text(mob, pid::Mob_Name, name);
    matches = r >= 0 && name == from_wide(wanted);
    return r == AAFRESULT_PROP_NOT_PRESENT ? AAFRESULT_SUCCESS : r;
  }

  const std::shared_ptr<FileSession>& m_session;
  StoredObject& m_content;
};

class ContentStorage final : public Adds<AafObject, IAAFContentStorage> {
 public:
  using Adds::Adds;

  HRESULT LookupMob(aafMobID_constref mobID, IAAFMob** ppMob) override {
    return contents().look_up_mob(mobID, ppMob);
  }
  HRESULT CountMobs(aafMobKind_t mobKind, aafNumSlots_t* pResult) override {
    return contents().count_mobs(mobKind, pResult);
  }
  HRESULT GetMobs(aafSearchCrit_t* pSearchCriteria, IEnumAAFMobs** ppEnum) override {
    return contents().get_mobs(pSearchCriteria, ppEnum);
  }
  HRESULT AddMob(IAAFMob* pMob) override { return contents().add_mob(pMob); }
  HRESULT RemoveMob(IAAFMob* pMob) override { return contents().remove_mob(pMob); }
  HRESULT CountEssenceData(aafUInt32* pResult) override {
    return contents().count_essence(pResult);
  }
  HRESULT IsEssenceDataPresent(aafMobID_constref fileMobID, aafFileFormat_t,
                               aafBoolean_t* pResult) override {
    return contents().is_essence_present(fileMobID, pResult);
  }
  HRESULT EnumEssenceData(IEnumAAFEssenceData** ppEnum) override {
    return contents().enumerate_essence(ppEnum);
  }
  HRESULT AddEssenceData(IAAFEssenceData* pEssenceData) override {
    return contents().add_essence(pEssenceData);
  }
  HRESULT RemoveEssenceData(IAAFEssenceData* pEssenceData) override {
    return contents().remove_essence(pEssenceData);
  }
  HRESULT LookupEssenceData(aafMobID_constref mobID, IAAFEssenceData** ppEssenceData) override {
    return contents().look_up_essence(mobID, ppEssenceData);
  }

 private:
  ~ContentStorage() override = default;

  Contents contents() const { return Contents(shared_session(), stored()); }
};

class Header final : public Adds<AafObject, IAAFHeader> {
 public:
  using Adds::Adds;

  HRESULT LookupMob(aafMobID_constref mobID, IAAFMob** ppMob) override {
    return with_contents([&](Contents& c) { return c.look_up_mob(mobID, ppMob); });
  }
  HRESULT CountMobs(aafMobKind_t mobKind, aafNumSlots_t* pResult) override {
    return with_contents([&](Contents& c) { return c.count_mobs(mobKind, pResult); });
  }
  HRESULT GetMobs(aafSearchCrit_t* pSearchCriteria, IEnumAAFMobs** ppEnum) override {
    return with_contents([&](Contents& c) { return c.get_mobs(pSearchCriteria, ppEnum); });
  }
  HRESULT AddMob(IAAFMob* pMob) override {
    return with_contents([&](Contents& c) { return c.add_mob(pMob); });
  }
  HRESULT RemoveMob(IAAFMob* pMob) override {
    return with_contents([&](Contents& c) { return c.remove_mob(pMob); });
  }
  HRESULT CountEssenceData(aafUInt32* pResult) override {
    return with_contents([&](Contents& c) { return c.count_essence(pResult); });
  }
  HRESULT IsEssenceDataPresent(aafMobID_constref fileMobID, aafFileFormat_t,
                               aafBoolean_t* pResult) override {
    return with_contents([&](Contents& c) { return c.is_essence_present(fileMobID, pResult); });
  }
  HRESULT EnumEssenceData(IEnumAAFEssenceData** ppEnum) override {
    return with_contents([&](Contents& c) { return c.enumerate_essence(ppEnum); });
  }
  HRESULT AddEssenceData(IAAFEssenceData* pEssenceData) override {
    return with_contents([&](Contents& c) { return c.add_essence(pEssenceData); });
  }
  HRESULT RemoveEssenceData(IAAFEssenceData* pEssenceData) override {
    return with_contents([&](Contents& c) { return c.remove_essence(pEssenceData); });
  }
  HRESULT LookupEssenceData(aafMobID_constref mobID, IAAFEssenceData** ppEssenceData) override {
    return with_contents([&](Contents& c) { return c.look_up_essence(mobID, ppEssenceData); });
  }
  HRESULT GetDictionary(IAAFDictionary** ppDictionary) override {
    return read_object(pid::Header_Dictionary, ppDictionary);
  }
  HRESULT GetContentStorage(IAAFContentStorage** ppStorage) override {
    return read_object(pid::Header_Content, ppStorage);
  }
  HRESULT GetLastIdentification(IAAFIdentification** ppIdentification) override {
    aafUInt32 number = 0;
    if (const HRESULT r = CountIdentifications(&number); r < 0) return r;
    if (number == 0) return AAFRESULT_OBJECT_NOT_FOUND;
    return GetIdentificationAt(number - 1, ppIdentification);
  }
  HRESULT LookupIdentification(aafUID_constref generation,
                               IAAFIdentification** ppIdentification) override {
    if (!ppIdentification) return AAFRESULT_NULL_PARAM;
    std::vector<StoredObject*> list;
    if (const HRESULT r = elements(pid::Header_IdentificationList, list); r < 0) return r;
    for (StoredObject* each : list) {
      aafUID_t id{};
      if (get_value(*each, pid::Identification_GenerationAUID, id) < 0 || id != generation) {
        continue;
      }
      return session().hand_out(*each, ppIdentification);
    }
    return AAFRESULT_OBJECT_NOT_FOUND;
  }
  HRESULT CountIdentifications(aafUInt32* pResult) override {
    return count(pid::Header_IdentificationList, pResult);
  }
  HRESULT GetIdentifications(IEnumAAFIdentifications** ppEnum) override {
    return enumerate<IEnumAAFIdentifications, IAAFIdentification>(pid::Header_IdentificationList,
                                                                  ppEnum);
  }
  HRESULT AppendIdentification(IAAFIdentification* pIdent) override {
    return append(pid::Header_IdentificationList, pIdent);
  }
  HRESULT GetIdentificationAt(aafUInt32 index, IAAFIdentification** ppIdentification) override {
    return element_at(pid::Header_IdentificationList, index, ppIdentification);
  }
  HRESULT GetRefImplVersion(aafProductVersion_t* pVersion) override {
    if (!pVersion) return AAFRESULT_NULL_PARAM;
    *pVersion = library_version;
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetFileRevision(aafVersionType_t* pRevision) override {
    return read_same(pid::Header_Version, pRevision);
  }
  HRESULT GetLastModified(aafTimeStamp_t* pTimeStamp) override {
    return read_same(pid::Header_LastModified, pTimeStamp);
  }

 private:
  ~Header() override = default;

  template <typename Operation>
  HRESULT with_contents(const Operation& operation) {
    StoredObject* content = nullptr;
    if (const HRESULT r = stored().get_object(pid::Header_Content, content); r < 0) return r;
    Contents contents(shared_session(), *content);
    return operation(contents);
  }
};

}  // namespace

HRESULT append_identification(FileSession& session, const aafProductIdentification_t& product) {
  StoredObject* header = nullptr;
  StoredObject* object = nullptr;
  Ref<IAAFIdentification> identification;
  HRESULT r = session.file().header(header);
  if (r < 0) return r;
  if (r = create_stored(session, ClassIndex::Identification, object); r < 0) return r;
  if (r = session.hand_out(*object, identification.put()); r < 0) return r;
  const auto or_empty = [](const aafCharacter* text) { return text ? text : L""; };
  r = identification->Initialize(
      or_empty(product.companyName), or_empty(product.productName),
      product.productVersionString ? product.productVersionString : L"Unknown version",
      product.productID);
  if (r < 0) return r;
  if (product.productVersion) {
    r = write_version(*object, pid::Identification_ProductVersion, *product.productVersion);
    if (r < 0) return r;
  }
  return all_of({write_version(*object, pid::Identification_ToolkitVersion, library_version),
                 set_text(*object, pid::Identification_Platform, u"Linux"),
                 header->append(pid::Header_IdentificationList, *object)});
}

AafObject* make_header_object(ClassIndex index, const std::shared_ptr<FileSession>& session,
                              StoredObject& stored) {
  switch (index) {
    case ClassIndex::Header:
      return new Header(session, stored);
    case ClassIndex::Identification:
      return new Identification(session, stored);
    case ClassIndex::ContentStorage:
      return new ContentStorage(session, stored);
    default:
      return nullptr;
  }
}

}  // namespace aafobj
