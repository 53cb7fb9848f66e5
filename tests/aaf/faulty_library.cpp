// Files of a library of another make, which throws where a test wants it to, and says of
// its audio what is not so.
#include "tests/aaf/faulty_library.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "aafobj/api/aaf_entry_points.h"
#include "aafobj/objects/com_object.h"
#include "aafobj/objects/not_offered_component.h"
#include "aafobj/objects/not_offered_definition.h"
#include "aafobj/objects/not_offered_descriptor.h"
#include "aafobj/objects/not_offered_enumerator.h"
#include "aafobj/objects/not_offered_essence.h"
#include "aafobj/objects/not_offered_file.h"
#include "aafobj/objects/not_offered_meta.h"
#include "aafobj/objects/not_offered_mob.h"

using namespace aafobj;

namespace {

FaultyLibrary library;

// No class that anybody else knows.
struct OwnFault {};

// Every operation begins with this.
void called() {
  if (++library.calls != library.throw_at) return;
  switch (library.thrown) {
    case FaultyLibrary::Thrown::standard:
      throw std::runtime_error("out of an interface");
    case FaultyLibrary::Thrown::number:
      throw 20;
    case FaultyLibrary::Thrown::own:
      throw OwnFault{};
    case FaultyLibrary::Thrown::memory:
      throw std::bad_alloc();
  }
}

template <class... Interfaces>
class Object : public Adds<ComObject, Interfaces...> {
 public:
  HRESULT QueryInterface(REFIID iid, LPVOID* out) override {
    called();
    return this->query_interface(iid, out);
  }

 protected:
  ~Object() override = default;
};

template <class Made, class Interface, class... Arguments>
HRESULT hand_out(Interface** out, Arguments... arguments) {
  called();
  *out = new Made(arguments...);
  return AAFRESULT_SUCCESS;
}

template <class Value>
HRESULT answer(Value* out, const std::type_identity_t<Value>& value) {
  called();
  *out = value;
  return AAFRESULT_SUCCESS;
}

// As many items as are said, each made with its number.
template <class Enumerator, class Item, class Made>
class List final : public Object<Enumerator> {
 public:
  explicit List(std::size_t count) : count_(count) {}
  HRESULT NextOne(Item** out) override {
    called();
    if (next_ == count_) return AAFRESULT_NO_MORE_OBJECTS;
    *out = new Made(next_++);
    return AAFRESULT_SUCCESS;
  }

 private:
  ~List() override = default;

  std::size_t count_;
  std::size_t next_ = 0;
};

aafMobID_t mob_id(std::size_t number) {
  aafMobID_t id{};
  id.material.Data1 = static_cast<aafUInt32>(number);
  return id;
}

class WaveDescriptor final : public Object<IAAFEssenceDescriptor, IAAFWAVEDescriptor> {
  ~WaveDescriptor() override = default;
};

class SourceMob final : public Object<IAAFMob, IAAFSourceMob> {
 public:
  HRESULT GetEssenceDescriptor(IAAFEssenceDescriptor** out) override {
    if (library.described) return hand_out<WaveDescriptor>(out);
    called();
    return AAFRESULT_PROP_NOT_PRESENT;
  }

 private:
  ~SourceMob() override = default;
};

class Audio final : public Object<IAAFEssenceData> {
 public:
  explicit Audio(std::size_t number) : number_(number) {}
  HRESULT GetSize(aafLength_t* out) override { return answer(out, row().size); }
  HRESULT GetFileMob(IAAFSourceMob** out) override { return hand_out<SourceMob>(out); }
  HRESULT GetFileMobID(aafMobID_t* out) override { return answer(out, mob_id(number_)); }
  HRESULT SetPosition(aafPosition_t position) override { return answer(&position_, position); }
  HRESULT Read(aafUInt32 bytes, aafDataBuffer_t out, aafUInt32* read) override {
    called();
    const aafLength_t left = std::max<aafLength_t>(row().held - position_, 0);
    *read = static_cast<aafUInt32>(std::min<aafLength_t>(bytes, left));
    std::memset(out, static_cast<int>('a' + number_), *read);
    position_ += *read;
    return AAFRESULT_SUCCESS;
  }

 private:
  ~Audio() override = default;
  [[nodiscard]] const FaultyLibrary::Audio& row() const { return library.audio.at(number_); }

  std::size_t number_;
  aafPosition_t position_ = 0;
};

class SoundDefinition final : public Object<IAAFDataDef> {
 public:
  HRESULT IsSoundKind(aafBoolean_t* out) override { return answer(out, kAAFTrue); }
  HRESULT IsPictureKind(aafBoolean_t* out) override { return answer(out, kAAFFalse); }

 private:
  ~SoundDefinition() override = default;
};

class Filler final : public Object<IAAFSegment, IAAFComponent, IAAFFiller> {
 public:
  HRESULT GetLength(aafLength_t* out) override { return answer(out, 10); }

 private:
  ~Filler() override = default;
};

// Both what a mark is and what that is under its name.
class MarkType final : public Object<IAAFTypeDef, IAAFTypeDefRename, IAAFTypeDefInt> {
 public:
  HRESULT GetBaseValue(IAAFPropertyValue* value, IAAFPropertyValue** out) override {
    called();
    value->AddRef();
    *out = value;
    return AAFRESULT_SUCCESS;
  }
  HRESULT GetSize(aafUInt32* out) override { return answer(out, library.mark_size); }
  HRESULT GetInteger(IAAFPropertyValue*, aafMemPtr_t out, aafUInt32 size) override {
    called();
    if (size < library.mark_size) return AAFRESULT_BAD_SIZE;
    std::memset(out, 1, library.mark_size);
    return AAFRESULT_SUCCESS;
  }

 private:
  ~MarkType() override = default;
};

class Mark final : public Object<IAAFPropertyValue> {
 public:
  HRESULT GetType(IAAFTypeDef** out) override { return hand_out<MarkType>(out); }

 private:
  ~Mark() override = default;
};

class Slot final : public Object<IAAFMobSlot, IAAFTimelineMobSlot, IAAFObject> {
 public:
  explicit Slot(std::size_t) {}
  HRESULT GetSegment(IAAFSegment** out) override { return hand_out<Filler>(out); }
  HRESULT GetDataDef(IAAFDataDef** out) override { return hand_out<SoundDefinition>(out); }
  HRESULT GetSlotID(aafSlotID_t* out) override { return answer(out, 1); }
  HRESULT GetEditRate(aafRational_t* out) override { return answer(out, {25, 1}); }
  HRESULT GetOrigin(aafPosition_t* out) override { return answer(out, 0); }
  HRESULT IsPropertyPresent(IAAFPropertyDef*, aafBoolean_t* out) override {
    return answer(out, kAAFTrue);
  }
  HRESULT GetPropertyValue(IAAFPropertyDef*, IAAFPropertyValue** out) override {
    return hand_out<Mark>(out);
  }

 private:
  ~Slot() override = default;
};

class Composition final : public Object<IAAFMob, IAAFCompositionMob> {
 public:
  explicit Composition(std::size_t) {}
  HRESULT GetMobID(aafMobID_t* out) override { return answer(out, mob_id(100)); }
  HRESULT GetName(aafCharacter* out, aafUInt32) override { return answer(out, L'c'); }
  HRESULT GetDefaultFade(aafDefaultFade_t* out) override { return answer(out, {}); }
  HRESULT CountSlots(aafNumSlots_t* out) override { return answer(out, library.slot_count); }
  HRESULT GetSlots(IEnumAAFMobSlots** out) override {
    return hand_out<List<IEnumAAFMobSlots, IAAFMobSlot, Slot>>(out, 1U);
  }

 private:
  ~Composition() override = default;
};

class PropertyDefinition final : public Object<IAAFPropertyDef> {
  ~PropertyDefinition() override = default;
};

class ClassDefinition final : public Object<IAAFClassDef> {
 public:
  HRESULT LookupPropertyDef(aafUID_constref, IAAFPropertyDef** out) override {
    return hand_out<PropertyDefinition>(out);
  }

 private:
  ~ClassDefinition() override = default;
};

class Dictionary final : public Object<IAAFDictionary> {
 public:
  HRESULT LookupClassDef(aafUID_constref, IAAFClassDef** out) override {
    return hand_out<ClassDefinition>(out);
  }

 private:
  ~Dictionary() override = default;
};

// Texts without an end.
class Identification final : public Object<IAAFIdentification> {
 public:
  HRESULT GetCompanyNameBufLen(aafUInt32* out) override { return answer(out, library.text_bytes); }
  HRESULT GetCompanyName(aafCharacter* out, aafUInt32 bytes) override { return fill(out, bytes); }
  HRESULT GetProductNameBufLen(aafUInt32* out) override { return answer(out, library.text_bytes); }
  HRESULT GetProductName(aafCharacter* out, aafUInt32 bytes) override { return fill(out, bytes); }
  HRESULT GetDate(aafTimeStamp_t* out) override { return answer(out, {}); }

 private:
  ~Identification() override = default;

  static HRESULT fill(aafCharacter* out, aafUInt32 bytes) {
    called();
    std::fill_n(out, bytes / sizeof(aafCharacter), L'n');
    return AAFRESULT_SUCCESS;
  }
};

class Header final : public Object<IAAFHeader> {
 public:
  HRESULT GetLastModified(aafTimeStamp_t* out) override { return answer(out, {}); }
  HRESULT GetLastIdentification(IAAFIdentification** out) override {
    return hand_out<Identification>(out);
  }
  HRESULT EnumEssenceData(IEnumAAFEssenceData** out) override {
    return hand_out<List<IEnumAAFEssenceData, IAAFEssenceData, Audio>>(out, library.audio.size());
  }
  HRESULT CountMobs(aafMobKind_t, aafNumSlots_t* out) override { return answer(out, 1); }
  HRESULT GetMobs(aafSearchCrit_t*, IEnumAAFMobs** out) override {
    return hand_out<List<IEnumAAFMobs, IAAFMob, Composition>>(out, 1U);
  }
  HRESULT GetDictionary(IAAFDictionary** out) override { return hand_out<Dictionary>(out); }

 private:
  ~Header() override = default;
};

class File final : public Object<IAAFFile> {
 public:
  HRESULT GetHeader(IAAFHeader** out) override { return hand_out<Header>(out); }
  HRESULT Close() override {
    ++library.closed;
    called();
    return AAFRESULT_SUCCESS;
  }

 private:
  ~File() override = default;
};

}  // namespace

HRESULT AAFFileOpenExistingRead(aafCharacter_constptr, aafUInt32, IAAFFile** out) {
  const HRESULT result = hand_out<File>(out);
  ++library.opened;
  return result;
}

extern "C" __attribute__((visibility("default"))) FaultyLibrary* faulty_library();
FaultyLibrary* faulty_library() {
  library.objects = &CountedLife::number;
  return &library;
}
