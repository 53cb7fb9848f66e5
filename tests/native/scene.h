// One run of a binary format over a file of its own, under a scripted host.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/generic_automation.h"
#include "core/generic_edl.h"
#include "core/generic_edl_entry.h"
#include "core/generic_locator_entry.h"
#include "core/generic_pq_entry.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"
#include "tests/support/temp_folder.h"

namespace native_test {

template <class T>
std::vector<T*> objects(const CObList* list) {
  std::vector<T*> all;
  for (POSITION at = list->GetHeadPosition(); at != nullptr;)
    all.push_back(static_cast<T*>(list->GetNext(at)));
  return all;
}

inline std::vector<CGenericEdlEntry*> entries_of(const CGenericEdl& edl) {
  return objects<CGenericEdlEntry>(edl.get_generic_entry_list());
}
inline std::vector<CGenericPQEntry*> pq_of(const CGenericEdl& edl) {
  return objects<CGenericPQEntry>(edl.get_pq_list());
}
inline std::vector<CGenericLocatorEntry*> locators_of(const CGenericEdl& edl) {
  return objects<CGenericLocatorEntry>(edl.get_locator_list());
}
inline std::vector<CGenericAutomationChunk*> automation_of(const CGenericEdl& edl) {
  return objects<CGenericAutomationChunk>(edl.get_automation_list());
}

// Sets rate indices (48000 and 25 when left out) and the highest stream.
void set_rates(CGenericEdl& edl, unsigned highest_stream = 0, std::uint8_t sample_rate_index = 2,
               std::uint8_t frame_rate = 1, std::uint8_t edl_word = 255);

// Adds entries of one kind to a root.
CGenericEdlEntry& add_entry(CGenericEdl& root, std::int64_t dest_in, std::int64_t dest_out,
                            std::vector<unsigned> streams = {0});
CGenericPQEntry& add_pq_entry(CGenericEdl& root);
CGenericLocatorEntry& add_locator(CGenericEdl& root, std::int64_t time, const wide_char* name,
                                  std::int64_t value);
CGenericAutomationChunk& add_automation(
    CGenericEdl& root, unsigned type, unsigned channel,
    const std::vector<std::pair<std::int64_t, std::int64_t>>& points);

template <class Edl>
class Scene {
 public:
  // Imports `bytes` into a fresh root that has no rates.
  result_code import(std::string_view bytes) {
    edl = std::make_unique<Edl>();
    return import_again(bytes);
  }
  // The same into the object that stands.
  result_code import_again(std::string_view bytes) {
    support::write_file(folder.file("in"), bytes);
    return edl->import_edl(folder.wide_file("in"));
  }
  // Exports `from`'s lists through a format object of their own.
  result_code export_from(CGenericEdl& from, int flag = 0) {
    Edl format(&from);
    return format.export_edl(folder.wide_file("out"), flag);
  }
  std::string exported(CGenericEdl& from, int flag = 0) {
    EXPECT_EQ(export_from(from, flag), result::done);
    return support::read_file(folder.file("out"));
  }
  void set_key(const std::u16string& section, const std::u16string& key, int value) {
    host.keys.ini[{u"marlo3.ini", section, key}] = value;
  }
  void set_disc_texts(int value) { set_key(u"DG", u"special interchange format", value); }

  support::ScriptedHost host;
  support::TempFolder folder;
  std::unique_ptr<Edl> edl;
};

}  // namespace native_test
