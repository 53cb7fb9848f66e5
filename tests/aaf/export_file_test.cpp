// What an export collects, refuses, tells of itself, and leaves behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <random>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_text.h"
#include "aaf/export_identification.h"
#include "aaf/export_overlap.h"
#include "aafobj/api/aaf_class_ids.h"
#include "native/generic_edl_file_chunks.h"
#include "tests/aaf/export_scene.h"
#include "tests/support/faulty_files.h"

namespace {

using aaf_test::Edit;
using aaf_test::ExportScene;
using aaf_test::ReadFile;
using support::BoxRecord;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(ExportedName, TakesThePlaceOfAnEdlName) {
  ExportScene scene;
  support::write_file(scene.path("x.EDL"), "a list");
  ASSERT_EQ(scene.run("x.EDL"), 101);
  EXPECT_TRUE(scene.exists("x.aaf"));
  EXPECT_FALSE(scene.exists("x.EDL"));
}

TEST(ExportedName, OfAFileThatExistsIsReplaced) {
  ExportScene scene;
  support::write_file(scene.path(), "old");
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).mob_names(kAAFCompMob), ElementsAre("x"));
}

// The file under the other name is not deleted before; trying whether one can be made
// there empties it.
TEST(ExportedName, OfAnEdlNameMeetsAFileThatExists) {
  ExportScene scene;
  support::write_file(scene.path("x.aaf"), "old");
  EXPECT_EQ(scene.run("x.edl"), 0);
  EXPECT_THAT(scene.host.boxes.shown, IsEmpty());
  EXPECT_FALSE(scene.exists("x.aaf"));
  EXPECT_EQ(scene.run("x.edl"), 101);
}

TEST(ExportedList, LeavesOutEntriesWithoutAudioContent) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000}, nullptr);
  scene.add({.in = 1000, .out = 2000});
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(scene.host.boxes.shown, IsEmpty());
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("filler 1000", "clip 1000 from 0 of take 0"));
}

TEST(ExportedList, AsksOnceAboutAudioThatIsNotAvailable) {
  for (const int answer : {box_answer_no, box_answer_yes}) {
    ExportScene scene;
    scene.host.boxes.default_question_answer = answer;
    support::FakeAudCnt& gone = scene.add_audio(1, 10);
    gone.available = false;
    support::FakeAudCnt& there = scene.add_audio(1, 10);
    scene.add({.in = 0, .out = 1000}, &there);
    scene.add({.in = 1000, .out = 2000}, &gone);
    scene.add({.in = 2000, .out = 3000}, &gone);
    scene.add({.in = 3000, .out = 4000}, &there);
    EXPECT_EQ(scene.run(), answer == box_answer_yes ? 101 : 0);
    ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
    const BoxRecord& box = scene.host.boxes.shown[0];
    EXPECT_EQ(box.kind, BoxRecord::Kind::question);
    EXPECT_EQ(box.title_id, 21715U);
    EXPECT_EQ(box.text_id, 26413U);
    EXPECT_EQ(scene.exists(), answer == box_answer_yes);
    if (answer != box_answer_yes) continue;
    EXPECT_THAT(
        ReadFile(scene.path()).track(0),
        ElementsAre("clip 1000 from 0 of take 1", "filler 2000", "clip 1000 from 0 of take 1"));
  }
}

TEST(ExportedSources, OfEqualEntriesAreOne) {
  ExportScene scene;
  support::FakeAudCnt& audio = scene.add_audio(1, 10);
  for (int i = 0; i < 3; ++i) {
    auto& entry = scene.add({.in = i * 10, .out = i * 10 + 10}, &audio);
    // As an entry that was imported from such a file has it.
    entry.first_channel = 65535;
  }
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).mob_names(kAAFMasterMob), ElementsAre("take 0"));
}

TEST(ExportedSources, OfAnotherTimeStampAreTwo) {
  ExportScene scene;
  support::FakeAudCnt& audio = scene.add_audio(1, 10);
  scene.add({.in = 0, .out = 10}, &audio).source_timestamp = 5;
  scene.add({.in = 10, .out = 20}, &audio).source_timestamp = 6;
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).mob_names(kAAFMasterMob), ElementsAre("take 0", "take 0"));
}

TEST(ExportedSources, GetTheChannelsThatTheirEntriesPlay) {
  ExportScene scene;
  support::FakeAudCnt& audio = scene.add_audio(3, 10);
  scene.add({.in = 0, .out = 10}, &audio);
  scene.add({.in = 10, .out = 20, .channel_offset = 1}, &audio);
  // A count that is behind what the entry plays.
  scene.add({.in = 20, .out = 30, .channel_offset = 2}, &audio).no_channels = 0;
  // A further source, so that channels cannot be taken from the next one.
  scene.add({.in = 30, .out = 40}, &scene.add_audio(1, 10));
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).track(0),
              ElementsAre("clip 10 from 0 of take 01", "clip 10 from 0 of take 02",
                          "clip 10 from 0 of take 03", "clip 10 from 0 of take 1"));
}

TEST(ExportedSources, WithoutChannelsMakeNoMob) {
  ExportScene scene;
  scene.add({.in = 0, .out = 10, .streams = 0}, &scene.add_audio(1, 10));
  ASSERT_EQ(scene.run(), 101);
  EXPECT_THAT(ReadFile(scene.path()).mob_names(kAAFMasterMob), IsEmpty());
}

TEST(ExportRefusal, OfRatesThatAreNotExported) {
  for (const std::uint8_t rate : {std::uint8_t{0}, std::uint8_t{5}, std::uint8_t{10}}) {
    ExportScene scene(rate);
    scene.host.texts.texts[24864] = u"Not at %d.";
    EXPECT_EQ(scene.run(), 0);
    EXPECT_FALSE(scene.exists());
    ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
    EXPECT_EQ(scene.host.boxes.shown[0].message_icon, BoxIcon::warning);
    EXPECT_EQ(scene.host.boxes.shown[0].body,
              "Not at " + std::to_string(samples_per_second(rate)) + ".");
  }
  for (const std::uint8_t rate : {std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{7}})
    EXPECT_EQ(ExportScene(rate).run(), 101);
}

TEST(ExportRefusal, OfASourceAtAnotherRate) {
  ExportScene scene;
  support::FakeAudCnt& audio = scene.add_audio(1, 10);
  audio.rate = 44100;
  scene.add({.in = 0, .out = 10}, &audio);
  EXPECT_EQ(scene.run(), 0);
  ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
  EXPECT_EQ(scene.host.boxes.shown[0].body, "[24863]");
  EXPECT_FALSE(scene.exists());
}

struct Overlap {
  const char* name;
  Edit a;
  Edit b;
  bool refused;
};

class Overlaps : public testing::TestWithParam<Overlap> {};

TEST_P(Overlaps, OfTwoEdits) {
  ExportScene scene;
  support::FakeAudCnt& audio = scene.add_audio(2, 10);
  scene.add(GetParam().a, &audio);
  scene.add(GetParam().b, &audio);
  EXPECT_EQ(scene.run(), GetParam().refused ? 0 : 101);
  EXPECT_EQ(scene.host.boxes.shown.size(), GetParam().refused ? 1U : 0U);
  EXPECT_EQ(scene.exists(), !GetParam().refused);
}

INSTANTIATE_TEST_SUITE_P(
    Export, Overlaps,
    testing::Values(
        Overlap{"AtTheEndOfTheFadeIn", {0, 1000, 100, 0}, {100, 2000, 0, 0}, true},
        Overlap{"BehindTheFadeIn", {0, 1000, 100, 0}, {101, 2000, 0, 0}, false},
        Overlap{"Inside", {0, 1000, 0, 0}, {500, 900, 0, 0}, true},
        Overlap{"FadeOutFromTheOthersEnd", {0, 1000, 0, 0}, {900, 1900, 0, 900}, true},
        Overlap{"FadeOutBehindTheOthersEnd", {0, 1000, 0, 0}, {900, 1900, 0, 899}, false},
        Overlap{"OfEqualStart", {0, 1000, 0, 0}, {0, 2000, 0, 0}, true},
        Overlap{"LaterInTheListButEarlier", {500, 1000, 0, 0}, {0, 600, 0, 0}, true},
        Overlap{"OnAnotherStream", {0, 1000, 0, 0}, {0, 1000, 0, 0, 0, 1.0F, 1}, false},
        Overlap{
            "OfAStereoEdit", {0, 1000, 0, 0, 0, 1.0F, 0, 2}, {0, 1000, 0, 0, 0, 1.0F, 1}, true}),
    [](const auto& each) { return each.param.name; });

TEST(ExportRefusal, OfAnOverlapNamesTheLaterEditTwice) {
  ExportScene scene;
  support::FakeAudCnt& audio = scene.add_audio(2, 10);
  scene.add({172800000, 172848000, 0, 0, 0, 1.0F, 3}, &audio).set_source_reel_name(u"first");
  scene.add({172800005, 172800010, 0, 0, 0, 1.0F, 2, 2}, &audio).set_source_reel_name(u"second");
  EXPECT_EQ(scene.run(), 0);
  ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
  const std::string name = "second" + std::string(25, ' ');
  EXPECT_EQ(scene.host.boxes.shown[0].body,
            "Overlaps other than time-symmetrical crossfades cannot be exported to Advanced "
            "Authoring Format files!\n\n"
            "Entry: " +
                name +
                " \nstarts at: 01:00:00:000000\nduration: 00:00:01:000000"
                "\nstream(s): 4\n\nOverlaps with...\n\n"
                "Entry: " +
                name +
                " \nstarts at: 01:00:00:000005\nduration: 00:00:00:000005"
                "\nstream(s): 3");
}

TEST(ExportRefusal, OfAnOverlapTellsTimesAsHoursMinutesSecondsAndSamples) {
  ExportScene scene;
  const std::int64_t minute = 48000 * 61 + 5;
  scene.add({minute, minute + 100});
  scene.add({minute, minute - 1});
  scene.add({minute, minute + 200});
  EXPECT_EQ(scene.run(), 0);
  ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
  const std::string& body = scene.host.boxes.shown[0].body;
  EXPECT_THAT(body, HasSubstr("starts at: 00:01:01:000005\n"));
  // The second has no length at all and yet stands in the way.
  EXPECT_THAT(body, HasSubstr("duration: INVALID!!!\n"));
}

// The plain search against that by streams, over lists that are sorted and that are not.
TEST(BadOverlaps, AreThoseOfThePlainSearch) {
  std::mt19937 engine(7);
  const auto below = [&](std::uint32_t limit) {
    return static_cast<std::int64_t>(engine() % limit);
  };
  int found = 0;
  for (int round = 0; round < 3000; ++round) {
    std::vector<CGenericEDLFileEntry> events(static_cast<std::size_t>(2 + below(12)));
    std::int64_t at = 0;
    for (CGenericEDLFileEntry& event : events) {
      at = round % 2 == 0 ? at + below(60) : below(400);
      event.m_dest_in = at;
      event.m_length = below(80) - (round % 5 == 0 ? 5 : 0);
      event.m_fade_in_length = below(10);
      event.m_fade_out_length = below(10);
      event.m_first_stream = static_cast<std::uint16_t>(below(5));
      event.m_stream_count = static_cast<std::uint16_t>(below(3) + (round % 7 == 0 ? 0 : 1));
    }
    CObList list;
    for (CGenericEDLFileEntry& event : events)
      list.AddTail(&event);
    aaf::EventPair plain;
    for (std::size_t a = 0; a < events.size() && plain.first == nullptr; ++a) {
      for (std::size_t b = a + 1; b < events.size() && plain.first == nullptr; ++b) {
        if (aaf::is_bad_overlap(events[a], events[b])) plain = {&events[a], &events[b]};
      }
    }
    const aaf::EventPair quick = aaf::first_bad_overlap(list);
    ASSERT_EQ(quick.first, plain.first) << round;
    ASSERT_EQ(quick.second, plain.second) << round;
    found += plain.first != nullptr ? 1 : 0;
  }
  EXPECT_GT(found, 300);
  EXPECT_LT(found, 2900);
}

TEST(ExportedIdentification, NamesTheProgram) {
  ExportScene scene;
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  AafRef<IAAFIdentification> last;
  ASSERT_EQ(file.header()->GetLastIdentification(last.put()), 0);
  std::u16string company;
  std::u16string product;
  std::u16string version;
  aafUID_t id{};
  aafProductVersion_t number{};
  EXPECT_EQ(read_aaf_text<100>(company,
                               [&](aafCharacter* out, aafUInt32 bytes) {
                                 return last->GetCompanyName(out, bytes);
                               }),
            0);
  EXPECT_EQ(read_aaf_text<100>(product,
                               [&](aafCharacter* out, aafUInt32 bytes) {
                                 return last->GetProductName(out, bytes);
                               }),
            0);
  EXPECT_EQ(read_aaf_text<100>(version,
                               [&](aafCharacter* out, aafUInt32 bytes) {
                                 return last->GetProductVersionString(out, bytes);
                               }),
            0);
  EXPECT_EQ(company, u"Karsten Sound & Film Ltd");
  EXPECT_EQ(product, u"Marlo");
  EXPECT_EQ(version, u"v6.1.25");
  ASSERT_EQ(last->GetProductID(&id), 0);
  EXPECT_EQ(id.Data1, 0x3c1462a0U);
  EXPECT_EQ(id.Data2, 0x8401);
  EXPECT_EQ(id.Data3, 0x09ba);
  EXPECT_THAT(id.Data4, ElementsAre(0x81, 0xc4, 0x00, 0x70, 0x06, 0x02, 0xe9, 0x78));
  ASSERT_EQ(last->GetProductVersion(&number), 0);
  EXPECT_EQ(number.major, 6);
  EXPECT_EQ(number.minor, 1);
  EXPECT_EQ(number.tertiary, 25);
  EXPECT_EQ(number.patchLevel, 99);
  EXPECT_EQ(number.type, 0);
}

TEST(ExportedIdentification, TellsTheStageOfAVersion) {
  EXPECT_EQ(aaf::version_text(0x06012599), u"v6.1.25");
  EXPECT_EQ(aaf::version_text(0x10000007), u"v10.0.0 alpha 7");
  EXPECT_EQ(aaf::version_text(0x01020349), u"v1.2.3 alpha 49");
  EXPECT_EQ(aaf::version_text(0x01020350), u"v1.2.3 beta 0");
  EXPECT_EQ(aaf::version_text(0x01020389), u"v1.2.3 beta 39");
  EXPECT_EQ(aaf::version_text(0x01020390), u"v1.2.3 pre-rel 0");
  EXPECT_EQ(aaf::version_text(0x01020398), u"v1.2.3 pre-rel 8");
}

TEST(ExportedHeader, ClaimsTheEditProtocol) {
  ExportScene scene;
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  const aafUID_t property_id = {
      0x01020203, 0x0000, 0x0000, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05}};
  AafRef<IAAFDictionary> dictionary;
  AafRef<IAAFClassDef> cls;
  AafRef<IAAFPropertyDef> property;
  AafRef<IAAFTypeDef> type;
  AafRef<IAAFPropertyValue> value;
  ASSERT_EQ(file.header()->GetDictionary(dictionary.put()), 0);
  ASSERT_EQ(dictionary->LookupClassDef(AUID_AAFHeader, cls.put()), 0);
  ASSERT_EQ(cls->LookupPropertyDef(property_id, property.put()), 0);
  ASSERT_EQ(property->GetTypeDef(type.put()), 0);
  ASSERT_EQ(AAF_QUERY(IAAFObject, file.header())->GetPropertyValue(property.get(), value.put()), 0);
  const auto record = AAF_QUERY(IAAFTypeDefRecord, type.get());
  ASSERT_TRUE(record);
  aafUID_t pattern{};
  ASSERT_EQ(record->GetStruct(value.get(), reinterpret_cast<aafMemPtr_t>(&pattern), sizeof pattern),
            0);
  EXPECT_EQ(pattern.Data1, 0x0d011201U);
  EXPECT_EQ(pattern.Data2, 0x0100);
  EXPECT_EQ(pattern.Data3, 0x0000);
  EXPECT_THAT(pattern.Data4, ElementsAre(0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x05));
}

// The sector size of a compound file is a power of two at byte 30.
TEST(ExportedHeader, HasLargeSectors) {
  ExportScene scene;
  ASSERT_EQ(scene.run(), 101);
  EXPECT_EQ(support::read_file(scene.path())[30], 12);
}

std::string report_of(const ExportScene& scene, const char* name) {
  const std::string bytes = support::read_file(scene.reports.file(name));
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 2)
    text.push_back(bytes[i]);
  return text;
}

TEST(ExportReport, TellsWhatWasWritten) {
  ExportScene scene;
  ASSERT_EQ(scene.run(), 101);
  const std::string report = report_of(scene, "AAFExportlog_x.htm");
  EXPECT_THAT(report, HasSubstr(" Marlo AAF Export Report"));
  EXPECT_THAT(report, HasSubstr("<TR><TH>Company Name&nbsp\t<TD>Karsten Sound & Film Ltd\r\n"));
  EXPECT_THAT(report, HasSubstr("<TR><TH>Product Version&nbsp\t<TD>v6.1.25\r\n"));
  EXPECT_THAT(report, HasSubstr("<TR><TH>Platform&nbsp\t<TD>Win32\r\n"));
  EXPECT_THAT(report, HasSubstr("<TR><TH>AAF Version&nbsp\t<TD>v1.1\r\n"));
  EXPECT_THAT(report, HasSubstr("<TR><TH>Labelled as Edit Protocol&nbsp\t<TD>Yes\r\n"));
  EXPECT_THAT(report, testing::Not(HasSubstr("1970")));
  EXPECT_EQ(scene.host.browser.opened.size(), 1U);
}

TEST(ExportReport, IsWrittenForAFailureToo) {
  ExportScene scene;
  scene.host.sound.enable_result = 1;
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
  EXPECT_THAT(report_of(scene, "AAFExportlog_x.htm"),
              HasSubstr("<TR><TH>Labelled as Edit Protocol&nbsp\t<TD>No\r\n"));
}

TEST(ExportReport, IsNotBegunByARefusal) {
  ExportScene scene(0);
  EXPECT_EQ(scene.run(), 0);
  EXPECT_THAT(scene.host.browser.opened, IsEmpty());
}

// Deleted is by the name that was given.
TEST(FailedExport, OfAnEdlNameLeavesItsFile) {
  ExportScene scene;
  scene.host.sound.enable_result = 1;
  EXPECT_EQ(scene.run("x.edl"), 0);
  EXPECT_TRUE(scene.exists("x.aaf"));
}

TEST(FailedExport, WithoutALibraryHasNoFile) {
  ExportScene scene;
  scene.host.libraries.redirected["libAAFCOAPI.so"] = "";
  scene.host.libraries.redirected["libcom-api.so"] = "";
  EXPECT_EQ(scene.run(), 0);
  EXPECT_FALSE(scene.exists());
  EXPECT_THAT(scene.host.boxes.shown, IsEmpty());
}

TEST(FailedExport, OfAFolderThatIsNotThereTellsSo) {
  ExportScene scene;
  scene.host.texts.texts[24787] = u"Not made.";
  EXPECT_EQ(scene.run("none/x.aaf"), 0);
  ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
  EXPECT_EQ(scene.host.boxes.shown[0].body, "Not made.");
  EXPECT_EQ(scene.host.boxes.shown[0].message_icon, BoxIcon::warning);
}

TEST(FailedExport, TellsWhyTheSystemRefusesTheFile) {
  const std::pair<int, const char*> reasons[] = {
      {EACCES, "[24787][24788]"}, {EROFS, "[24787][24789]"},       {EBUSY, "[24787][24790]"},
      {ENOSPC, "[24787][24791]"}, {ENETUNREACH, "[24787][24792]"}, {EIO, "[24787]"}};
  for (const auto& [error, text] : reasons) {
    ExportScene scene;
    // A folder of that name: the object library cannot make the file.
    static_cast<void>(scene.folder.folder("x.aaf"));
    const support::FaultyFiles faults(FileFaults::Operation::open, 1, error,
                                      support::FaultyFiles::After::keep_failing);
    EXPECT_EQ(scene.run(), 0);
    ASSERT_EQ(scene.host.boxes.shown.size(), 1U);
    EXPECT_EQ(scene.host.boxes.shown[0].body, text);
  }
}

// In force while it lives: no file grows beyond so many bytes.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    old_handler_ = std::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, old_handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit old_{};
  void (*old_handler_)(int);
};

// The system refuses to write any further, at every place from the first byte to the last.
TEST(FailedExport, OfAFileThatCannotGrowLeavesNothing) {
  for (const bool embed : {true, false}) {
    const auto export_under = [embed](std::uint64_t limit, std::uint64_t* size) {
      ExportScene scene;
      scene.host.app.aaf_embed_audio = embed ? 1 : 0;
      scene.add({.in = 0, .out = 1000}, &scene.add_audio(1, 200000, 16));
      result_code code = 0;
      {
        const FileSizeLimit in_force(limit);
        code = scene.run();
      }
      if (code != 101) {
        EXPECT_FALSE(scene.exists());
        EXPECT_FALSE(scene.exists("take 0.wav"));
      }
      if (size != nullptr) {
        *size = support::read_file(scene.path(embed ? "x.aaf" : "take 0.wav")).size();
      }
      return code;
    };
    std::uint64_t whole = 0;
    ASSERT_EQ(export_under(RLIM_INFINITY, &whole), 101);
    ASSERT_GT(whole, 400000U);
    for (std::uint64_t limit = 0; limit < whole; limit += whole / 20)
      EXPECT_EQ(export_under(limit, nullptr), 0) << limit << " of " << whole;
    EXPECT_EQ(export_under(whole - 1, nullptr), 0);
    EXPECT_EQ(export_under(whole + 100000, nullptr), 101);
  }
}

TEST(ExportedFlag, ChangesNothing) {
  ExportScene scene;
  scene.add({.in = 0, .out = 1000});
  ASSERT_EQ(scene.run("a.aaf", 0), 101);
  ASSERT_EQ(scene.run("b.aaf", 1), 101);
  EXPECT_EQ(ReadFile(scene.path("a.aaf")).track(0), ReadFile(scene.path("b.aaf")).track(0));
}

}  // namespace
