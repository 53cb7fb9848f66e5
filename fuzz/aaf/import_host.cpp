#include "fuzz/aaf/import_host.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_edl_file.h"

namespace fuzzing {

namespace {

struct Entry {
  const char* name;
  void* address;
};

#define LINKED(name) \
  { #name, reinterpret_cast < void*>(&::name) }
const Entry entries[] = {
    LINKED(AAFFileOpenExistingRead), LINKED(AAFFileOpenExistingModify),
    LINKED(AAFFileOpenNewModify),    LINKED(AAFFileOpenTransient),
    LINKED(AAFFileIsAAFFile),        LINKED(AAFGetPluginManager),
};
#undef LINKED

void require(bool truth) {
  if (!truth) std::abort();
}

}  // namespace

ImportHost::Settings::Settings() {
  for (unsigned i = 0; i < 128; ++i) {
    const unsigned rest = 127 - i;
    curves[0][i] = static_cast<std::uint16_t>(16384 * rest / 127);
    curves[1][i] = static_cast<std::uint16_t>(16384 * rest * rest / (127 * 127));
  }
}

const std::uint16_t* ImportHost::Settings::get_fade_curve(int number) {
  return number == 0 || number == 1 ? curves[number] : nullptr;
}

void* ImportHost::Linked::entry(void*, const char* name, std::uint32_t& error) {
  for (const Entry& each : entries) {
    if (std::strcmp(each.name, name) == 0) return each.address;
  }
  error = error_no_entry;
  return nullptr;
}

void ImportHost::Places::local_path(HostFolder*, wide_char* out, std::size_t size) {
  copy_text(out, size, text_from_utf8("/" + path + "/audio/"));
}

ImportHost::ImportHost() {
  const bool in_memory = std::filesystem::is_directory("/dev/shm");
  std::string name = (in_memory ? "/dev/shm" : "/tmp") + std::string("/edl_fuzz_XXXXXX");
  require(::mkdtemp(name.data()) != nullptr);
  m_folder = name;
  set_host(this);
  clear();
}

ImportHost::~ImportHost() {
  static_cast<void>(unload_aaf_library());
  std::error_code ignored;
  std::filesystem::remove_all(m_folder, ignored);
  set_host(nullptr);
}

void ImportHost::clear() const {
  std::error_code ignored;
  for (const auto& item : std::filesystem::directory_iterator(m_folder, ignored))
    std::filesystem::remove_all(item.path(), ignored);
  std::filesystem::create_directory(m_folder + "/audio", ignored);
}

void import_both_ways(ImportHost& host, const std::u16string& path) {
  for (const bool corrected : {false, true}) {
    host.set_corrected(corrected);
    CGenericEdl edl;
    CAAFEdlFile file(&edl);
    // Far above what files of this size hold, and soon reached.
    file.set_import_limits({.visits = 100'000, .records = 20'000, .points = 50'000});
    const result_code code = file.import_edl(path.c_str());
    require(code == result::import_complete || code == result::not_opened);
    if (code == result::import_complete) continue;
    for (const CObList* const list :
         {edl.get_generic_entry_list(), edl.get_automation_list(), edl.get_locator_list()})
      require(list->IsEmpty());
  }
}

}  // namespace fuzzing
