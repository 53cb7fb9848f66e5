#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "aafobj/api/aaf_class_ids.h"
#include "aafobj/api/aaf_entry_points.h"
#include "aafobj/api/aaf_interfaces.h"
#include "aafobj/api/aaf_result_codes.h"
#include "aafobj/api/aaf_well_known_ids.h"

// What a program that uses the library has of its own.
namespace client {

// Holds one reference.
template <typename Interface>
class Held {
 public:
  Held() = default;
  Held(Held&& other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}
  Held& operator=(Held&& other) noexcept {
    std::swap(m_pointer, other.m_pointer);
    return *this;
  }
  ~Held() { reset(); }

  Interface* get() const { return m_pointer; }
  Interface* operator->() const { return m_pointer; }
  operator Interface*() const { return m_pointer; }
  Interface** put() {
    reset();
    return &m_pointer;
  }
  void reset() {
    if (m_pointer) m_pointer->Release();
    m_pointer = nullptr;
  }

 private:
  Interface* m_pointer = nullptr;
};

template <typename Interface>
Held<Interface> as(IUnknown* pointer, REFIID iid) {
  Held<Interface> held;
  if (pointer) {
    EXPECT_EQ(pointer->QueryInterface(iid, reinterpret_cast<void**>(held.put())), 0);
  }
  return held;
}
#define CLIENT_AS(Interface, pointer) ::client::as<Interface>(pointer, IID_##Interface)

inline bool answers(IUnknown* pointer, REFIID iid) {
  Held<IUnknown> held;
  return pointer->QueryInterface(iid, reinterpret_cast<void**>(held.put())) == 0;
}

inline bool same(const aafUID_t& a, const aafUID_t& b) {
  return std::memcmp(&a, &b, 16) == 0;
}
inline bool same(const aafMobID_t& a, const aafMobID_t& b) {
  return std::memcmp(&a, &b, 32) == 0;
}

// A folder that goes with the test.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  std::wstring path(const std::string& name) const { return (m_path / name).wstring(); }
  std::filesystem::path file(const std::string& name) const { return m_path / name; }

 private:
  std::filesystem::path m_path;
};

aafProductIdentification_t product();

// An open file with the parts that every program takes at once.
struct File {
  Held<IAAFFile> file;
  Held<IAAFHeader> header;
  Held<IAAFDictionary> dictionary;

  void save_and_close();
};
File new_file(const std::wstring& path, aafUInt32 flags = 0);
File open_file(const std::wstring& path);
File transient_file();

// A new object of a class. A failure of the test and null when it cannot be made.
template <typename Interface>
Held<Interface> create(IAAFDictionary* dictionary, const aafUID_t& cls, REFIID iid) {
  Held<Interface> held;
  EXPECT_EQ(dictionary->CreateInstance(cls, iid, reinterpret_cast<IUnknown**>(held.put())), 0);
  return held;
}
#define CLIENT_CREATE(dictionary, Name) \
  ::client::create<IAAF##Name>(dictionary, AUID_AAF##Name, IID_IAAF##Name)

Held<IAAFDataDef> data_def(IAAFDictionary* dictionary, const aafUID_t& id);

template <typename Object>
std::wstring name_of(Object* object) {
  aafUInt32 size = 0;
  EXPECT_EQ(object->GetNameBufLen(&size), 0);
  std::vector<aafCharacter> buffer(size / sizeof(aafCharacter));
  EXPECT_EQ(object->GetName(buffer.data(), size), 0);
  return buffer.data();
}

std::vector<unsigned char> bytes_of(const std::filesystem::path& path);

// All mobs of a file, of one kind.
std::vector<Held<IAAFMob>> mobs_of(IAAFHeader* header, aafMobKind_t kind = kAAFAllMob);

}  // namespace client
