// "edlconv aaf-dump".
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_ref.h"
#include "aaf/aaf_text.h"
#include "aafobj/api/aaf_class_ids.h"
#include "tests/cli/program_run.h"
#include "tests/support/aaf_samples.h"
#include "tests/support/temp_folder.h"

namespace {

using Json = nlohmann::ordered_json;
using support::run_edlconv;
using support::RunResult;
using testing::HasSubstr;
using testing::Not;

aaf_string wide(const std::string& text) {
  return aaf_from_text(text_from_utf8(text));
}

// A file with one composition mob of this name.
void make_file(const std::string& path, const std::string& mob_name) {
  ASSERT_EQ(load_aaf_library(text_from_utf8(EDL_AAF_LIBRARY).c_str()), 0);
  aaf_string company = L"c";
  aaf_string product = L"p";
  aaf_string version = L"v";
  aafProductIdentification_t who{};
  who.companyName = company.data();
  who.productName = product.data();
  who.productVersionString = version.data();
  {
    AafRef<IAAFFile> file;
    AafRef<IAAFHeader> header;
    AafRef<IAAFDictionary> dictionary;
    AafRef<IUnknown> made;
    ASSERT_EQ(AAFDLL::AAFFileOpenNewModify(wide(path).c_str(), 0, &who, file.put()), 0);
    ASSERT_EQ(file->GetHeader(header.put()), 0);
    ASSERT_EQ(header->GetDictionary(dictionary.put()), 0);
    ASSERT_EQ(dictionary->CreateInstance(AUID_AAFCompositionMob, IID_IAAFMob, made.put()), 0);
    const auto mob = AAF_QUERY(IAAFMob, made.get());
    ASSERT_TRUE(mob);
    ASSERT_EQ(mob->SetName(wide(mob_name).c_str()), 0);
    ASSERT_EQ(header->AddMob(mob.get()), 0);
    ASSERT_EQ(file->Save(), 0);
    ASSERT_EQ(file->Close(), 0);
  }
  ASSERT_EQ(unload_aaf_library(), 0);
}

class AafDumpTest : public testing::Test {
 protected:
  void SetUp() override {
    path_ = folder_.file("a.aaf");
    ASSERT_NO_FATAL_FAILURE(make_file(path_, "Reel \"2\"\x1b[2J"));
  }
  support::TempFolder folder_;
  std::string path_;
};

TEST_F(AafDumpTest, ObjectsStandUnderTheirProperties) {
  const RunResult run = run_edlconv({"aaf-dump", path_});
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.rfind("Header\n", 0), 0U);
  EXPECT_THAT(run.out, HasSubstr("\n  Content: ContentStorage\n    Mobs: 1 element\n"
                                 "      [0] CompositionMob\n        MobID: 060a2b34"));
  // What could steer a terminal is escaped.
  EXPECT_THAT(run.out, HasSubstr("\n        Name: \"Reel \\\"2\\\"\\u001b[2J\"\n"));
  EXPECT_THAT(run.out, HasSubstr("\n  Version: \"1.1\"\n"));
  EXPECT_THAT(run.out, HasSubstr("CompanyName: \"c\"\n"));
}

TEST_F(AafDumpTest, AsJson) {
  const RunResult run = run_edlconv({"aaf-dump", "--json", path_});
  EXPECT_EQ(run.code, 0) << run.err;
  const Json header = Json::parse(run.out, nullptr, false);
  ASSERT_FALSE(header.is_discarded()) << run.out;
  EXPECT_EQ(header["class"], "Header");
  const Json& mobs = header["properties"]["Content"]["properties"]["Mobs"];
  ASSERT_EQ(mobs.size(), 1U);
  EXPECT_EQ(mobs[0]["class"], "CompositionMob");
  EXPECT_EQ(mobs[0]["properties"]["Name"], "Reel \"2\"\x1b[2J");
  EXPECT_EQ(header["properties"]["Version"], "1.1");
}

TEST_F(AafDumpTest, WhatIsNoAafFileIsRefused) {
  support::write_file(path_, "TITLE: NOT AN AAF\n");
  const RunResult run = run_edlconv({"aaf-dump", path_});
  EXPECT_EQ(run.code, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("cannot be read as an AAF file: "));
  EXPECT_EQ(run_edlconv({"aaf-dump", folder_.file("none.aaf")}).code, 2);
}

// Every cut and every overwritten sector ends in an answer: read whole, in part or not.
TEST_F(AafDumpTest, DamagedFilesAreReadAsFarAsTheyGo) {
  const std::string whole = support::read_file(path_);
  int refused = 0;
  const std::size_t step = std::max<std::size_t>(whole.size() / 40, 512);
  for (std::size_t at = 0; at < whole.size(); at += step) {
    std::string damaged = whole;
    std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(at),
                std::min<std::size_t>(512, whole.size() - at), '\xA5');
    support::write_file(path_, damaged);
    const RunResult run = run_edlconv({"aaf-dump", path_});
    EXPECT_THAT(run.code, testing::AnyOf(0, 2, 4)) << "sector at " << at << ": " << run.err;
    refused += run.code == 2 ? 1 : 0;
    EXPECT_EQ(run.code == 4, run.out.find("CANNOT BE READ") != std::string::npos) << at;
    EXPECT_EQ(run.code == 2, run.out.empty()) << at;
  }
  EXPECT_GT(refused, 0);
}

TEST_F(AafDumpTest, RoundADamagedObjectTheRestIsShown) {
  std::string bytes = support::read_file(path_);
  const std::size_t name = bytes.find(std::string("R\0e\0e\0l\0", 8));
  ASSERT_NE(name, std::string::npos);
  // Small streams lie in pieces of 64 bytes. The one before the name's holds the index of
  // the mob's properties.
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(name / 64 * 64 - 64), 64, '\xA5');
  support::write_file(path_, bytes);
  const RunResult run = run_edlconv({"aaf-dump", path_});
  EXPECT_EQ(run.code, 4);
  EXPECT_THAT(run.out, HasSubstr("\n  Content: ContentStorage\n    Mobs: 1 element\n"));
  EXPECT_THAT(run.out, HasSubstr("CANNOT BE READ: "));
  EXPECT_THAT(run.err, HasSubstr("could not be read"));
}

// The number of the mob's name becomes one that no definition tells of.
TEST_F(AafDumpTest, PropertiesWithoutADefinitionAreShownByNumber) {
  std::string bytes = support::read_file(path_);
  // In the index of a mob's properties: number 0x4402, stored as data, 26 bytes long, which
  // are the twelve units of the name and its end.
  const std::size_t entry = bytes.find(std::string("\x02\x44\x82\0\x1a\0", 6));
  ASSERT_NE(entry, std::string::npos);
  bytes[entry + 1] = '\x75';
  support::write_file(path_, bytes);
  const RunResult run = run_edlconv({"aaf-dump", path_});
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("\n        unknown 0x7502: bytes 5200650065006c00"));
  EXPECT_THAT(run.out, Not(HasSubstr("Reel")));
  const Json header = Json::parse(run_edlconv({"aaf-dump", "--json", path_}).out, nullptr, false);
  ASSERT_FALSE(header.is_discarded());
  const Json& mob = header["properties"]["Content"]["properties"]["Mobs"][0];
  EXPECT_TRUE(mob["properties"]["unknown 0x7502"].contains("bytes"));
  // The interfaces can only count them.
  const RunResult library = run_edlconv({"aaf-dump", "--aaf-library", EDL_AAF_LIBRARY, path_});
  EXPECT_THAT(library.out, HasSubstr("(1 property that no definition tells of)"));
}

TEST_F(AafDumpTest, DefinitionsAreShownWhenAskedFor) {
  const RunResult run = run_edlconv({"aaf-dump", "--all", path_});
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(run.out.rfind("Root\n  MetaDictionary: MetaDictionary\n    ClassDefinitions: ", 0), 0U)
      << run.out.substr(0, 200);
  EXPECT_THAT(run.out, HasSubstr("\n  Header: Header\n"));
  EXPECT_THAT(run.out, HasSubstr("        ElementNames: 2 elements\n"
                                 "          [0] \"False\"\n          [1] \"True\"\n"));
  const RunResult json = run_edlconv({"aaf-dump", "--all", "--json", path_});
  EXPECT_EQ(json.code, 0) << json.err;
  const Json root = Json::parse(json.out, nullptr, false);
  ASSERT_FALSE(root.is_discarded());
  EXPECT_EQ(root["class"], "Root");
  EXPECT_EQ(root["properties"]["Header"]["class"], "Header");
}

TEST_F(AafDumpTest, AllIsNotForAnotherLibrary) {
  const RunResult run = run_edlconv({"aaf-dump", "--all", "--aaf-library", EDL_AAF_LIBRARY, path_});
  EXPECT_EQ(run.code, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("--all"));
}

TEST_F(AafDumpTest, AnotherLibraryInItsPlace) {
  EXPECT_EQ(run_edlconv({"aaf-dump", "--aaf-library", EDL_AAF_LIBRARY, path_}).code, 0);
  const RunResult run = run_edlconv({"aaf-dump", "--aaf-library", folder_.file("none.so"), path_});
  EXPECT_EQ(run.code, 3);
  EXPECT_THAT(run.err, HasSubstr("none.so: cannot be used as the AAF object library: 0x8007007e"));
}

TEST(AafDumpSamples, NothingInThemIsUnknown) {
  const auto paths = support::aaf_samples();
  if (paths.empty()) GTEST_SKIP() << "EDL_SAMPLES is not set";
  for (const auto& path : paths) {
    SCOPED_TRACE(path.filename());
    const RunResult text = run_edlconv({"aaf-dump", path.string()});
    EXPECT_EQ(text.code, 0) << text.err;
    EXPECT_THAT(text.out, Not(HasSubstr("CANNOT BE READ")));
    EXPECT_THAT(text.out, Not(HasSubstr("a class that is not known")));
    EXPECT_THAT(text.out, Not(HasSubstr("no definition tells of")));
    EXPECT_THAT(text.out, Not(HasSubstr(" unknown 0x")));
    const RunResult json = run_edlconv({"aaf-dump", "--json", path.string()});
    EXPECT_EQ(json.code, 0) << json.err;
    EXPECT_TRUE(Json::accept(json.out));
  }
}

}  // namespace
