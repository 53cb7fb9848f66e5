// What the description says is in the file, and all of it can be read.

#include "tests/support/aaf_builder.h"

#include <map>

#include "aaf/aaf_dll.h"
#include "aaf/aaf_tree.h"
#include "tests/aaf/import_fixture.h"

using namespace support;

namespace {

class Counter final : public aaf::TreeSink {
 public:
  void begin_object(const aaf::ObjectHead& head) override { ++objects[head.class_name]; }
  void end_object(std::uint32_t unknown_properties) override { EXPECT_EQ(unknown_properties, 0U); }
  void name(std::string_view) override {}
  void begin_list(std::size_t, bool) override {}
  void end_list() override {}
  void scalar(aaf::ScalarKind, std::string_view) override {}
  void cut_bytes(std::string_view, std::uint64_t) override {}
  void fault(std::int32_t, std::string_view words) override { ADD_FAILURE() << words; }
  std::map<std::string, int> objects;
};

using AafBuilderTest = AafImportTest;

TEST_F(AafBuilderTest, EveryKindOfPartIsWritten) {
  const AafTake wave = file().source({.locators = {L"a.wav"}, .summary = {1, 2, 3}});
  static_cast<void>(file().source({.essence = AafSource::Essence::aifc, .summary = {1}}));
  static_cast<void>(file().source({.essence = AafSource::Essence::pcm}));
  static_cast<void>(file().source({.essence = AafSource::Essence::picture}));
  static_cast<void>(file().source({.essence = AafSource::Essence::tape}));
  static_cast<void>(file().source({.essence = AafSource::Essence::import_only}));
  static_cast<void>(file().source({.essence = AafSource::Essence::none}));
  file().essence(wave.file, "bytes");
  file().identify({});
  AafSlot event{.kind = AafSlot::Kind::event, .segment = filler(1)};
  AafSlot fixed{.kind = AafSlot::Kind::fixed, .segment = filler(1)};
  file().composition(
      {.slots = {sound({clip(wave, 10).with_fades({.in_length = 1}), transition(1),
                        gain(10, {1, 2}, clip(wave, 10)),
                        dissolve(2, {point(0, 1, 1)}, {point(1, 1, 1)}),
                        pan(10, {point(0, 1, 1)}, filler(10)),
                        scope(10, {filler(10), scope_reference(10)}), selector(10, filler(10)),
                        essence_group(10, {filler(10)}), pulldown(10, filler(10))}),
                 timecode(0, 25), event, fixed},
       .usage = kAAFUsage_TopLevel,
       .default_fade = AafDefaultFade{.length = 1}});
  file().save();
  Counter counter;
  ASSERT_EQ(aaf::tell_tree(path, counter), 0);
  const std::map<std::string, int> expected = {
      {"CompositionMob", 1}, {"MasterMob", 7},      {"SourceMob", 6},      {"TimelineMobSlot", 15},
      {"EventMobSlot", 1},   {"StaticMobSlot", 1},  {"WAVEDescriptor", 1}, {"AIFCDescriptor", 1},
      {"PCMDescriptor", 1},  {"CDCIDescriptor", 1}, {"TapeDescriptor", 1}, {"ImportDescriptor", 1},
      {"NetworkLocator", 1}, {"EssenceData", 1},    {"Identification", 2}, {"SourceClip", 15},
      {"Filler", 7},         {"Sequence", 1},       {"Transition", 2},     {"OperationGroup", 3},
      {"ConstantValue", 1},  {"VaryingValue", 3},   {"ControlPoint", 3},   {"NestedScope", 1},
      {"ScopeReference", 1}, {"Selector", 1},       {"EssenceGroup", 1},   {"Pulldown", 1},
      {"Timecode", 1}};
  for (const auto& [cls, count] : expected)
    EXPECT_EQ(counter.objects[cls], count) << cls;
}

TEST_F(AafBuilderTest, WhatTheLibraryRefusesIsTold) {
  EXPECT_THROW(AafBuilder(folder.file("missing/x.aaf")), std::runtime_error);
  AafBuilder& made = file();
  EXPECT_THROW(made.essence(made.new_id(), ""), std::runtime_error);
}

}  // namespace
