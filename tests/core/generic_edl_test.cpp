#include "core/generic_edl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "core/generic_automation.h"
#include "core/generic_edl_video_entry.h"
#include "core/generic_locator_entry.h"
#include "core/generic_pq_entry.h"
#include "core/generic_reel.h"
#include "tests/core/edl_fixtures.h"
#include "tests/support/compare.h"
#include "tests/support/scripted_host.h"

namespace {

using support::utf8;

class GenericEdl : public testing::Test {
 protected:
  static void allow_question(CGenericEdl& edl) {
    EDL_CONVERSION_SETTINGS settings;
    settings.ask_on_frame_rate_change = 1;
    edl.set_edl_conversion_settings(&settings);
  }
  support::ScriptedHost host_;
};

TEST_F(GenericEdl, NewRoot) {
  CGenericEdl edl;
  EDL_DETAILS details;
  edl.get_edl_details(&details);
  EXPECT_EQ(details.frame_rate, 255);
  EXPECT_EQ(details.sample_rate_index, 255);
  EXPECT_EQ(edl.original_frame_rate(), 255);
  EXPECT_EQ(details.time_format, 3);
  EXPECT_EQ(details.edl_word, 255);
  EXPECT_EQ(details.highest_stream, 0U);
  EXPECT_EQ(edl.report_errors, 1);
  PQ_DETAILS pq;
  edl.get_pq_details(&pq);
  EXPECT_EQ(utf8({pq.pq_catalogue, 13}), "0000000000000");
  EXPECT_EQ(pq.pq_word, 0);
  UPDATE_SETTINGS_DETAILS updates;
  edl.get_update_settings_details(&updates);
  EXPECT_EQ(updates.sample_rate_changed + updates.frame_rate_changed, 0);
  LIST_DETAILS lists;
  edl.get_list_details(&lists);
  EXPECT_NE(lists.entry_list, nullptr);
  EXPECT_NE(lists.pq_list, nullptr);
  EXPECT_NE(lists.locator_list, nullptr);
  EXPECT_NE(lists.automation_list, nullptr);
  EXPECT_NE(lists.video_list, nullptr);
  EXPECT_NE(lists.reel_list, nullptr);
  EXPECT_EQ(lists.parent, nullptr);
}

TEST_F(GenericEdl, BaseSlotsDoNothing) {
  CGenericEdl edl;
  EXPECT_EQ(edl.import_edl(u"x"), 0);
  EXPECT_EQ(edl.export_edl(u"x", 0), 0);
}

TEST_F(GenericEdl, ChildWorksOnTheListsOfItsParent) {
  CGenericEdl root;
  CGenericEdl child(&root, 0);
  LIST_DETAILS lists;
  child.get_list_details(&lists);
  EXPECT_EQ(lists.entry_list, root.get_generic_entry_list());
  EXPECT_EQ(lists.video_list, root.get_video_list());
  EXPECT_EQ(lists.parent, &root);
  EXPECT_NE(lists.reel_list, root.get_reel_list());
  EXPECT_TRUE(child.get_reel_list()->IsEmpty());
  EXPECT_EQ(lists.pq_list, root.get_pq_list());
  EXPECT_EQ(lists.locator_list, root.get_locator_list());
  EXPECT_EQ(lists.automation_list, root.get_automation_list());
}

TEST_F(GenericEdl, GrandchildHasNoListsButTheSettingsOfTheRoot) {
  CGenericEdl root;
  EDL_CONVERSION_SETTINGS settings;
  settings.default_fade_length = 77;
  root.set_edl_conversion_settings(&settings);
  CGenericEdl child(&root, 0);
  CGenericEdl grandchild(&child, 0);
  EXPECT_EQ(grandchild.get_generic_entry_list(), nullptr);
  EXPECT_EQ(grandchild.get_pq_list(), nullptr);
  EXPECT_EQ(grandchild.get_automation_list(), nullptr);
  EXPECT_EQ(grandchild.get_locator_list(), nullptr);
  EXPECT_EQ(grandchild.get_video_list(), nullptr);
  ASSERT_NE(grandchild.find_or_add_reel(u"R"), nullptr);
  grandchild.remove_all_reels();
  EXPECT_EQ(grandchild.settings().default_fade_length, 77);
  // Operations on lists that are not there do nothing.
  grandchild.sort_generic_list();
  grandchild.merge_into_n_channel_entries();
  grandchild.offset_edl(0, 2);
  unsigned short low = 9;
  unsigned short high = 1;
  grandchild.get_min_max_channels(&low, &high);
  EXPECT_EQ(low, 9);
  EXPECT_EQ(high, 1);
  EXPECT_EQ(grandchild.check_reel_frame_rates(), 1);
}

TEST_F(GenericEdl, FirstFrameRateIsTaken) {
  CGenericEdl edl(nullptr, 1);
  edl.set_frame_rate(1);
  EXPECT_EQ(edl.frame_rate(), 1);
  EXPECT_EQ(edl.original_frame_rate(), 1);
  EXPECT_TRUE(host_.boxes.shown.empty());
}

TEST_F(GenericEdl, LaterFrameRateNeedsSettingInteractiveAndYes) {
  CGenericEdl quiet(nullptr, 1);
  quiet.set_frame_rate(1);
  quiet.set_frame_rate(3);
  EXPECT_EQ(quiet.frame_rate(), 1);
  CGenericEdl not_interactive(nullptr, 0);
  allow_question(not_interactive);
  not_interactive.set_frame_rate(1);
  not_interactive.set_frame_rate(3);
  EXPECT_EQ(not_interactive.frame_rate(), 1);
  EXPECT_TRUE(host_.boxes.shown.empty());

  CGenericEdl edl(nullptr, 1);
  allow_question(edl);
  edl.set_frame_rate(1);
  edl.set_frame_rate(1);
  EXPECT_TRUE(host_.boxes.shown.empty());
  edl.set_frame_rate(3);
  EXPECT_EQ(edl.frame_rate(), 1);
  UPDATE_SETTINGS_DETAILS refused;
  edl.get_update_settings_details(&refused);
  EXPECT_EQ(refused.frame_rate_changed, 0);
  host_.boxes.default_question_answer = box_answer_yes;
  edl.set_frame_rate(3);
  EXPECT_EQ(edl.frame_rate(), 3);
  EXPECT_EQ(edl.original_frame_rate(), 1);
  UPDATE_SETTINGS_DETAILS updates;
  edl.get_update_settings_details(&updates);
  EXPECT_EQ(updates.frame_rate_changed, 1);
  EXPECT_EQ(updates.sample_rate_changed, 0);
  ASSERT_EQ(host_.boxes.shown.size(), 2U);
  EXPECT_EQ(host_.boxes.shown[0].title_id, 21715U);
  EXPECT_EQ(host_.boxes.shown[0].text_id, 22386U);
  EXPECT_EQ(host_.boxes.shown[0].buttons, 4U);
  EXPECT_EQ(host_.boxes.shown[0].icon, 2U);
}

TEST_F(GenericEdl, SampleRateAlwaysFollowsAndTheAnswerIsNoted) {
  CGenericEdl edl(nullptr, 0);
  edl.set_sample_rate_index(2);
  EXPECT_TRUE(host_.boxes.shown.empty());
  edl.set_sample_rate_index(1);
  EXPECT_EQ(edl.sample_rate_index(), 1);
  UPDATE_SETTINGS_DETAILS updates;
  edl.get_update_settings_details(&updates);
  EXPECT_EQ(updates.sample_rate_changed, 0);
  host_.boxes.default_question_answer = box_answer_yes;
  edl.set_sample_rate_index(2);
  edl.get_update_settings_details(&updates);
  EXPECT_EQ(updates.sample_rate_changed, 1);
  EXPECT_EQ(edl.sample_rate_index(), 2);
  EXPECT_EQ(host_.boxes.shown.at(0).text_id, 22387U);
  EXPECT_EQ(host_.boxes.shown.at(0).title_id, 21715U);
  EXPECT_EQ(host_.boxes.shown.at(0).buttons, 4U);
  EXPECT_EQ(host_.boxes.shown.at(0).icon, 2U);
  edl.set_sample_rate_index(2);
  EXPECT_EQ(host_.boxes.shown.size(), 2U);
}

TEST_F(GenericEdl, SettingsOfTheRootAllowTheQuestionOfAChild) {
  CGenericEdl root;
  CGenericEdl child(&root, 1);
  host_.boxes.default_question_answer = box_answer_yes;
  allow_question(child);
  child.set_frame_rate(1);
  child.set_frame_rate(3);
  EXPECT_EQ(child.frame_rate(), 1);
  allow_question(root);
  child.set_frame_rate(3);
  EXPECT_EQ(child.frame_rate(), 3);
}

TEST_F(GenericEdl, NotedStreamsOnlyRise) {
  CGenericEdl edl;
  edl.note_stream(5);
  EXPECT_EQ(edl.highest_stream(), 5);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(edl.track_id(i), 0U);
  edl.set_track_id(0, 42);
  edl.set_track_id(5, 43);
  edl.set_track_id(6, 44);
  EXPECT_EQ(edl.track_id(0), 42U);
  EXPECT_EQ(edl.track_id(5), 43U);
  EXPECT_EQ(edl.track_id(6), 0U);
  edl.note_stream(3);
  edl.note_stream(65535);
  EXPECT_EQ(edl.highest_stream(), 5);
  EXPECT_EQ(edl.track_id(0), 42U);
  edl.note_stream(7);
  EXPECT_EQ(edl.highest_stream(), 7);
  EXPECT_EQ(edl.track_id(0), 0U);
  edl.note_stream(65534);
  edl.note_stream(65535);
  EXPECT_EQ(edl.highest_stream(), 65534);
  edl.set_track_id(65534, 45);
  EXPECT_EQ(edl.track_id(65534), 45U);
  EXPECT_EQ(edl.track_id(65535), 0U);
}

TEST_F(GenericEdl, HighestStreamIsReadFromTheRootAndNotedInTheObject) {
  CGenericEdl root;
  CGenericEdl child(&root, 0);
  CGenericEdl grandchild(&child, 0);
  root.note_stream(4);
  grandchild.note_stream(9);
  EXPECT_EQ(grandchild.highest_stream(), 4);
  EDL_DETAILS details;
  grandchild.get_edl_details(&details);
  EXPECT_EQ(details.highest_stream, 4U);
}

TEST_F(GenericEdl, DetailsAreSetInOrder) {
  CGenericEdl edl;
  const EDL_DETAILS details{4, 1, 3, 7, 9, 24};
  edl.set_edl_details(&details);
  EDL_DETAILS read;
  edl.get_edl_details(&read);
  EXPECT_EQ(read.highest_stream, 4U);
  EXPECT_EQ(read.interactive, 1);
  EXPECT_EQ(read.frame_rate, 3);
  EXPECT_EQ(read.sample_rate_index, 7);
  EXPECT_EQ(read.time_format, 9);
  EXPECT_EQ(read.edl_word, 24);
  // `interactive` is set before the rate, so the question may come at once.
  CGenericEdl asking;
  allow_question(asking);
  asking.set_frame_rate(1);
  asking.set_edl_details(&details);
  ASSERT_EQ(host_.boxes.shown.size(), 1U);
  EXPECT_EQ(host_.boxes.shown[0].text_id, 22386U);
  // The frame rate is asked for before the sample rate.
  EDL_DETAILS other = details;
  other.frame_rate = 4;
  other.sample_rate_index = 2;
  asking.set_edl_details(&other);
  ASSERT_EQ(host_.boxes.shown.size(), 3U);
  EXPECT_EQ(host_.boxes.shown[1].text_id, 22386U);
  EXPECT_EQ(host_.boxes.shown[2].text_id, 22387U);
}

TEST_F(GenericEdl, PqTextsComeBackWhole) {
  CGenericEdl edl;
  PQ_DETAILS details;
  for (int i = 0; i < pq_text_count; ++i) {
    std::fill(std::begin(details.pq_text[i]), std::end(details.pq_text[i]),
              static_cast<wide_char>(u'a' + i));
  }
  std::fill(std::begin(details.pq_catalogue), std::end(details.pq_catalogue), u'7');
  details.pq_word = 65535;
  edl.set_pq_details(&details);
  PQ_DETAILS read;
  edl.get_pq_details(&read);
  for (int i = 0; i < pq_text_count; ++i) {
    EXPECT_EQ(utf8(field_text(read.pq_text[i])), std::string(128, static_cast<char>('a' + i)));
  }
  EXPECT_EQ(utf8({read.pq_catalogue, 13}), "7777777777777");
  EXPECT_EQ(read.pq_word, 65535);
}

TEST_F(GenericEdl, PqDetailsAreReadFromTheRootAndSetInTheObject) {
  CGenericEdl root;
  CGenericEdl child(&root, 0);
  PQ_DETAILS details;
  set_field(details.pq_text[0], u"root");
  details.pq_word = 3;
  root.set_pq_details(&details);
  set_field(details.pq_text[0], u"child");
  child.set_pq_details(&details);
  PQ_DETAILS read;
  child.get_pq_details(&read);
  EXPECT_EQ(utf8(read.pq_text[0]), "root");
  EXPECT_EQ(read.pq_word, 3);
}

// Counts the objects of its kind that are alive.
template <class Base>
class Counted final : public Base {
 public:
  template <class... Arguments>
  explicit Counted(int& alive, Arguments... arguments) : Base(arguments...), alive_(alive) {
    ++alive_;
  }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() override { --alive_; }

 private:
  int& alive_;
};

TEST_F(GenericEdl, RootDeletesWhatItsListsHold) {
  int alive = 0;
  {
    CGenericEdl root;
    root.get_generic_entry_list()->AddTail(new Counted<CGenericEdlEntry>(alive, &root));
    root.get_video_list()->AddTail(new Counted<CGenericEdlVideoEntry>(alive, &root));
    root.get_pq_list()->AddTail(new Counted<CGenericPQEntry>(alive));
    root.get_locator_list()->AddTail(new Counted<CGenericLocatorEntry>(alive));
    auto* const chunk = new Counted<CGenericAutomationChunk>(alive);
    chunk->points = new CObList(10);
    chunk->points->AddTail(new Counted<CGenericAutomationEntry>(alive));
    root.get_automation_list()->AddTail(chunk);
    { const CGenericEdl child(&root, 0); }
    EXPECT_EQ(alive, 6);
  }
  EXPECT_EQ(alive, 0);
}

TEST_F(GenericEdl, EntriesKeepTheNamesOfReelsThatGo) {
  CGenericEdl edl;
  support::set_rates(edl);
  const CGenericEdlEntry& entry = support::add_entry(edl, support::standard_edit());
  entry.reel->set_reel_no_streams(6);
  auto* const video = new CGenericEdlVideoEntry(&edl);
  video->set_reel_name(u"V1");
  edl.get_video_list()->AddTail(video);
  edl.remove_all_reels();
  EXPECT_TRUE(edl.get_reel_list()->IsEmpty());
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(support::reel_of(entry), u"TAPE01");
  EXPECT_EQ(entry.reel_no_streams, 6);
  EXPECT_EQ(video->reel, nullptr);
  EXPECT_EQ(utf8(video->reel_name), "V1");
}

TEST_F(GenericEdl, ReelsOfAChildLeaveEntriesOfTheRootWithTheirNames) {
  CGenericEdl root;
  const CGenericEdlEntry& own = support::add_entry(root, {.reel = u"ROOT"});
  auto child = std::make_unique<CGenericEdl>(&root, 0);
  CGenericEdlEntry& entry = support::add_entry(*child, {.reel = u"CHILD"});
  child.reset();
  entry.owner = &root;
  EXPECT_EQ(entry.reel, nullptr);
  EXPECT_EQ(support::reel_of(entry), u"CHILD");
  ASSERT_NE(own.reel, nullptr);
  EXPECT_EQ(support::reel_of(own), u"ROOT");
}

TEST_F(GenericEdl, ChildThatGoesLeavesTheReelsOfTheRoot) {
  CGenericEdl root;
  const CGenericEdlEntry& entry = support::add_entry(root, support::standard_edit());
  auto child = std::make_unique<CGenericEdl>(&root, 0);
  ASSERT_NE(child->find_or_add_reel(u"MINE"), nullptr);
  child.reset();
  ASSERT_NE(entry.reel, nullptr);
  EXPECT_EQ(support::reel_of(entry), u"TAPE01");
}

TEST_F(GenericEdl, SampleRatesWithAnIndex) {
  const unsigned rates[] = {32000, 44100, 48000,  44056,  47952,  64000,  88200, 96000,
                            88112, 95904, 128000, 176400, 192000, 176224, 191808};
  for (int i = 0; i < 15; ++i)
    EXPECT_EQ(CGenericEdl::sample_rate_to_index(rates[i]), i);
  for (const unsigned none : {44057U, 0U, 48001U}) {
    EXPECT_EQ(CGenericEdl::sample_rate_to_index(none), -1);
  }
}

TEST_F(GenericEdl, UnsetRatesOfAChildAreThoseOfTheRoot) {
  CGenericEdl root;
  support::set_rates(root, 2, 3);
  const CGenericEdl child(&root, 0);
  EXPECT_EQ(child.samples_per_frame(), 1601);
  const CGenericEdlEntry entry(const_cast<CGenericEdl*>(&child));
  EXPECT_EQ(entry.timecode_to_samples(u"01:00:00:00"), 172799827);
}

}  // namespace
