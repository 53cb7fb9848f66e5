// The shared library from outside: the names that it exports, what it needs, and a
// program that is linked against it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <regex>
#include <set>
#include <sstream>

#include "tests/support/compare.h"
#include "tests/support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

std::string output_of(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
  std::string text;
  std::array<char, 4096> buffer;
  while (const std::size_t got = std::fread(buffer.data(), 1, buffer.size(), pipe.get()))
    text.append(buffer.data(), got);
  return text;
}

// What the library's headers mark for export: classes and functions by name.
struct Marked {
  std::set<std::string> classes;
  // Format classes, which a host builds.
  std::set<std::string> formats;
  std::set<std::string> functions;
  std::set<std::string> objects;
};

void collect(const std::string& text, const std::string& form, std::set<std::string>& names) {
  const std::regex expression(form);
  for (auto at = std::sregex_iterator(text.begin(), text.end(), expression);
       at != std::sregex_iterator(); ++at) {
    names.insert((*at)[1]);
  }
}

Marked marked_names() {
  Marked marked;
  const fs::path root = EDL_SOURCE_DIR;
  for (const char* const folder : {"host", "core", "text", "native", "adl", "aaf"}) {
    if (!fs::is_directory(root / folder)) continue;
    for (const auto& item : fs::recursive_directory_iterator(root / folder)) {
      if (item.path().extension() != ".h") continue;
      const std::string text = support::read_file(item.path().string());
      collect(text, R"((?:class|struct) EDL_API (\w+))", marked.classes);
      collect(text, R"(class EDL_API (C\w+)(?: final)? : public C(?:GenericEdl|TextEdl|CMXEdl)\b)",
              marked.formats);
      collect(text, R"(\nEDL_API (?!extern)[^;(]*?(\w+)\()", marked.functions);
      collect(text, R"(\nEDL_API extern [^;(]*?(\w+);)", marked.objects);
    }
  }
  return marked;
}

// The demangled names that the library exports.
std::vector<std::string> exported_names() {
  std::istringstream lines(output_of("nm -D --defined-only -C '" EDL_LIBRARY "'"));
  std::vector<std::string> names;
  for (std::string line; std::getline(lines, line);) {
    // Address, a letter for the kind, and the name.
    const std::size_t name = line.find(' ', line.find(' ') + 1);
    if (name != std::string::npos) names.push_back(line.substr(name + 1));
  }
  return names;
}

// The class or function, without its ABI tag, that an exported name belongs to.
std::string owner_of(std::string name) {
  for (const char* const prefix : {"vtable for ", "typeinfo for ", "typeinfo name for ", "VTT for ",
                                   "non-virtual thunk to ", "guard variable for "}) {
    if (name.starts_with(prefix)) name.erase(0, std::string_view(prefix).size());
  }
  return name.substr(0, std::min({name.find("::"), name.find('('), name.find('[')}));
}

bool is_sanitizers_own(const std::string& name) {
  return name.find("asan") != std::string::npos || name.find("ubsan") != std::string::npos;
}

TEST(Library, ExportsNothingButWhatIsMarked) {
  const Marked marked = marked_names();
  ASSERT_GT(marked.classes.size(), 20U);
  ASSERT_GT(marked.functions.size(), 20U);
  const std::vector<std::string> names = exported_names();
  ASSERT_GT(names.size(), 200U);
  for (const std::string& name : names) {
    if (is_sanitizers_own(name)) continue;
    const std::string owner = owner_of(name);
    EXPECT_TRUE(marked.classes.contains(owner) || marked.functions.contains(owner) ||
                marked.objects.contains(owner))
        << name;
  }
}

TEST(Library, ExportsAllFunctionsAndFormatsThatAreMarked) {
  const Marked marked = marked_names();
  EXPECT_TRUE(marked.functions.contains("EDLConversionDLLInitialise"));
  EXPECT_TRUE(marked.functions.contains("EDLConversionDLLWindup"));
  EXPECT_TRUE(marked.functions.contains("GetInterchangerSourceList"));
  EXPECT_TRUE(marked.formats.contains("CCMXEdl"));
  EXPECT_TRUE(marked.formats.contains("CAES31File"));
  std::set<std::string> owners;
  std::set<std::string> constructed;
  for (const std::string& name : exported_names()) {
    const std::string owner = owner_of(name);
    owners.insert(owner);
    if (name.starts_with(owner + "::" + owner + "(")) constructed.insert(owner);
  }
  for (const std::string& function : marked.functions)
    EXPECT_TRUE(owners.contains(function)) << function;
  for (const std::string& object : marked.objects)
    EXPECT_TRUE(owners.contains(object)) << object;
  for (const std::string& format : marked.formats)
    EXPECT_TRUE(constructed.contains(format)) << format;
}

// A host numbers the sources of an interchange job through these.
TEST(Library, ExportsTheOperationsOfTheSourceList) {
  const std::vector<std::string> names = exported_names();
  for (const char* const operation :
       {"GetInterchangerSourceList()", "CInterchangerSourceList::CInterchangerSourceList()",
        "CInterchangerSourceList::AddSource(CAudCnt*, short, int)",
        "CInterchangerSourceList::GetSourceIndex(CAudCnt*)",
        "CInterchangerSourceList::ChangeSource(CAudCnt*, CAudCnt*)"}) {
    EXPECT_NE(std::find(names.begin(), names.end(), operation), names.end()) << operation;
  }
}

TEST(Library, NeedsTheStandardLibraryAlone) {
  std::istringstream lines(output_of("readelf -d '" EDL_LIBRARY "'"));
  static const std::regex needed(R"(\(NEEDED\).*\[([^\]]*)\])");
  int count = 0;
  for (std::string line; std::getline(lines, line);) {
    std::smatch match;
    if (!std::regex_search(line, match, needed)) continue;
    ++count;
    const std::string name = match[1].str().substr(0, match[1].str().find('.'));
    const std::set<std::string> allowed = {"libstdc++", "libm",       "libgcc_s",        "libc",
                                           "libdl",     "libpthread", "ld-linux-x86-64", "libasan",
                                           "libubsan"};
    EXPECT_TRUE(allowed.contains(name)) << match[1];
  }
  EXPECT_GE(count, 2);
}

TEST(Library, IsLoadedAndUnloaded) {
  void* const library = ::dlopen(EDL_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << ::dlerror();
  using Initialise = unsigned short(unsigned long);
  // The functions have C++ names.
  auto* const initialise =
      reinterpret_cast<Initialise*>(::dlsym(library, "_Z26EDLConversionDLLInitialisem"));
  ASSERT_NE(initialise, nullptr);
  EXPECT_EQ(initialise(1), 1);
  EXPECT_EQ(initialise(100738457), 0);
  // Opens that were left unclosed do not keep the library from going.
  EXPECT_EQ(::dlclose(library), 0);
}

TEST(Library, ClientConvertsAList) {
  const support::TempFolder folder;
  const std::string in = folder.file("in.edl");
  const std::string out = folder.file("out.edl");
  support::write_file(in,
                      "TITLE: T\n"
                      "001  TAPE01  A  C  01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00\n"
                      "002  TAPE02  A2 C  02:00:00:00 02:00:10:00 10:00:20:00 10:00:30:00\n");
  EXPECT_EQ(output_of("'" EDL_CLIENT "' '" + in + "' '" + out + "'"),
            "1 TAPE01 1728000000\n"
            "2 TAPE02 1728960000\n");
  EXPECT_TRUE(support::same_lines(
      support::read_file(out),
      "TITLE: out        FORMAT: CMX 340 2-Ch \n"
      "001  TAPE01 \tA     C         01:00:00:00 01:00:10:00 10:00:00:00 10:00:10:00 \n"
      "002  TAPE02 \tA2    C         02:00:00:00 02:00:10:00 10:00:20:00 10:00:30:00 \n"));
}

}  // namespace
