#include "aafobj/objects/raw_storage_object.h"

#include <algorithm>

#include "aafobj/model/model_result.h"

namespace aafobj {
namespace {

constexpr IID iid_raw_storage_object = {
    0x9c2f6f10, 0x53a1, 0x4c57, {0x8e, 0x0d, 0x6d, 0x3a, 0xb2, 0x41, 0x7f, 0x15}};

HRESULT tell(bool truth, aafBoolean_t* out) {
  if (!out) return AAFRESULT_NULL_PARAM;
  *out = truth ? kAAFTrue : kAAFFalse;
  return AAFRESULT_SUCCESS;
}

class RawStorageObject final : public Adds<ComObject, IAAFRawStorage, IAAFRandomRawStorage> {
 public:
  RawStorageObject(std::shared_ptr<RawStorage> storage, aafFileAccess_t access)
      : m_storage(std::move(storage)), m_access(access) {}

  const std::shared_ptr<RawStorage>& storage() const { return m_storage; }

  void* find_interface(REFIID iid) override {
    return same_iid(iid, iid_raw_storage_object) ? this : Adds::find_interface(iid);
  }

  HRESULT IsReadable(aafBoolean_t* pResult) override { return tell(can_read(), pResult); }
  HRESULT IsWriteable(aafBoolean_t* pResult) override { return tell(can_write(), pResult); }
  HRESULT Read(aafMemPtr_t buf, aafUInt32 bufSize, aafUInt32* pNumRead) override {
    const HRESULT r = ReadAt(m_position, buf, bufSize, pNumRead);
    if (r >= 0) m_position += *pNumRead;
    return r;
  }
  HRESULT Write(aafMemConstPtr_t buf, aafUInt32 bufSize, aafUInt32* pNumWritten) override {
    const HRESULT r = WriteAt(m_position, buf, bufSize, pNumWritten);
    if (r >= 0) m_position += *pNumWritten;
    return r;
  }
  HRESULT Synchronize() override { return aaf_result(m_storage->synchronize()); }

  HRESULT ReadAt(aafUInt64 position, aafMemPtr_t buf, aafUInt32 bufSize,
                 aafUInt32* pNumRead) override {
    if (!buf || !pNumRead) return AAFRESULT_NULL_PARAM;
    if (!can_read()) return AAFRESULT_NOT_READABLE;
    std::size_t count = 0;
    const Result r =
        m_storage->read_at(position, std::as_writable_bytes(std::span(buf, bufSize)), count);
    *pNumRead = static_cast<aafUInt32>(count);
    return aaf_result(r);
  }
  HRESULT WriteAt(aafUInt64 position, aafMemConstPtr_t buf, aafUInt32 bufSize,
                  aafUInt32* pNumWritten) override {
    if (!buf || !pNumWritten) return AAFRESULT_NULL_PARAM;
    if (!can_write()) return AAFRESULT_NOT_WRITEABLE;
    const Result r = m_storage->write_at(position, std::as_bytes(std::span(buf, bufSize)));
    *pNumWritten = r == Result::ok ? bufSize : 0;
    return aaf_result(r);
  }
  HRESULT GetSize(aafUInt64* pSize) override {
    return pSize ? aaf_result(m_storage->size(*pSize)) : AAFRESULT_NULL_PARAM;
  }
  HRESULT IsExtendable(aafBoolean_t* pResult) override { return tell(can_write(), pResult); }
  HRESULT GetExtent(aafUInt64* pExtent) override { return GetSize(pExtent); }
  HRESULT SetExtent(aafUInt64 extent) override {
    return can_write() ? aaf_result(m_storage->set_size(extent)) : AAFRESULT_NOT_WRITEABLE;
  }

 private:
  ~RawStorageObject() override = default;

  bool can_read() const { return (m_access & kAAFFileAccess_read) != 0; }
  bool can_write() const { return (m_access & kAAFFileAccess_write) != 0 && m_storage->writable(); }

  std::shared_ptr<RawStorage> m_storage;
  aafFileAccess_t m_access;
  aafUInt64 m_position = 0;
};

// A storage of a program's own making.
class ForeignStorage final : public RawStorage {
 public:
  ForeignStorage(Ref<IAAFRawStorage> storage, Ref<IAAFRandomRawStorage> random, bool is_writable)
      : m_storage(std::move(storage)), m_random(std::move(random)), m_is_writable(is_writable) {}

  Result read_at(std::uint64_t position, std::span<std::byte> out, std::size_t& count) override {
    count = 0;
    while (count < out.size()) {
      aafUInt32 read = 0;
      const auto part = out.subspan(count, std::min(out.size() - count, largest_part));
      const HRESULT r =
          m_random->ReadAt(position + count, reinterpret_cast<aafMemPtr_t>(part.data()),
                           static_cast<aafUInt32>(part.size()), &read);
      if (r < 0) return Result::io_error;
      if (read == 0 || read > part.size()) break;
      count += read;
    }
    return Result::ok;
  }

  Result write_at(std::uint64_t position, std::span<const std::byte> bytes) override {
    while (!bytes.empty()) {
      aafUInt32 written = 0;
      const auto part = bytes.first(std::min(bytes.size(), largest_part));
      const HRESULT r = m_random->WriteAt(position, reinterpret_cast<aafMemConstPtr_t>(part.data()),
                                          static_cast<aafUInt32>(part.size()), &written);
      if (r < 0 || written == 0 || written > part.size()) return Result::io_error;
      position += written;
      bytes = bytes.subspan(written);
    }
    return Result::ok;
  }

  Result size(std::uint64_t& bytes) override {
    return m_random->GetSize(&bytes) < 0 ? Result::io_error : Result::ok;
  }
  Result set_size(std::uint64_t bytes) override {
    return m_random->SetExtent(bytes) < 0 ? Result::io_error : Result::ok;
  }
  Result synchronize() override {
    return m_storage->Synchronize() < 0 ? Result::io_error : Result::ok;
  }
  bool writable() const override { return m_is_writable; }

 private:
  static constexpr std::size_t largest_part = std::size_t{1} << 30;

  Ref<IAAFRawStorage> m_storage;
  Ref<IAAFRandomRawStorage> m_random;
  bool m_is_writable;
};

}  // namespace

IAAFRawStorage* make_raw_storage_object(std::shared_ptr<RawStorage> storage,
                                        aafFileAccess_t access) {
  return new RawStorageObject(std::move(storage), access);
}

HRESULT storage_behind(IAAFRawStorage* pointer, std::shared_ptr<RawStorage>& storage) {
  void* ours = nullptr;
  if (pointer->QueryInterface(iid_raw_storage_object, &ours) >= 0) {
    const Ref<RawStorageObject> object(static_cast<RawStorageObject*>(ours));
    storage = object->storage();
    return AAFRESULT_SUCCESS;
  }
  Ref<IAAFRandomRawStorage> random;
  aafBoolean_t is_writable = kAAFFalse;
  HRESULT r =
      pointer->QueryInterface(IID_IAAFRandomRawStorage, reinterpret_cast<void**>(random.put()));
  if (r < 0) return r;
  if (r = pointer->IsWriteable(&is_writable); r < 0) return r;
  pointer->AddRef();
  storage = std::make_shared<ForeignStorage>(Ref<IAAFRawStorage>(pointer), std::move(random),
                                             is_writable != kAAFFalse);
  return AAFRESULT_SUCCESS;
}

}  // namespace aafobj
