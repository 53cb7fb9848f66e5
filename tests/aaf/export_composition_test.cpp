// Edits as the components of tracks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/aaf/export_scene.h"

namespace {

using aaf_test::Edit;
using aaf_test::ExportScene;
using aaf_test::ReadFile;
using testing::ElementsAre;

struct Row {
  const char* name;
  std::vector<Edit> edits;
  std::vector<std::string> components;
};

std::string clip(std::int64_t length, std::int64_t from) {
  return "clip " + std::to_string(length) + " from " + std::to_string(from) + " of take 0";
}

class TrackForms : public testing::TestWithParam<Row> {};

TEST_P(TrackForms, OfOneStream) {
  ExportScene scene;
  for (Edit edit : GetParam().edits) {
    edit.source_in = 10000 + edit.in;
    scene.add(edit);
  }
  ASSERT_EQ(scene.run(), 101);
  const ReadFile file(scene.path());
  EXPECT_EQ(file.track(0), GetParam().components);
}

// In, out, fade-in, fade-out; each plays its source from 10000 samples behind its place.
INSTANTIATE_TEST_SUITE_P(
    Export, TrackForms,
    testing::Values(Row{"LoneFadeIn",
                        {{1000, 6000, 200, 0}},
                        {"filler 1200", "dissolve 200 cut 100", clip(5000, 11000)}},
                    Row{"FadeInAtTheStart",
                        {{0, 5000, 200, 0}},
                        {"filler 200", "dissolve 200 cut 100", clip(5000, 10000)}},
                    Row{"LoneFadeOut",
                        {{1000, 6000, 0, 300}},
                        {"filler 1000", clip(5000, 11000), "dissolve 300 cut 150", "filler 300"}},
                    Row{"BothFades",
                        {{1000, 6000, 200, 300}},
                        {"filler 1200", "dissolve 200 cut 100", clip(5000, 11000),
                         "dissolve 300 cut 150", "filler 300"}},
                    Row{"SymmetricCrossfade",
                        {{0, 1000, 0, 100}, {900, 1900, 100, 0}},
                        {clip(1000, 10000), "two-level dissolve 100 cut 50", clip(1000, 10900)}},
                    Row{"OutFadeFirst",
                        {{0, 1000, 0, 300}, {900, 1900, 100, 0}},
                        {clip(1000, 10000), "two-level dissolve 300 cut 150", clip(1200, 10700)}},
                    Row{"InFadeLonger",
                        {{0, 1000, 0, 100}, {900, 1900, 300, 0}},
                        {clip(1200, 10000), "two-level dissolve 300 cut 150", clip(1000, 10900)}},
                    Row{"BothLonger",
                        {{0, 1000, 0, 300}, {900, 1900, 300, 0}},
                        {clip(1200, 10000), "two-level dissolve 500 cut 250", clip(1200, 10700)}},
                    Row{"FadesShorterThanTheOverlap",
                        {{0, 1000, 0, 50}, {900, 1900, 50, 0}},
                        {clip(1000, 10000), "two-level dissolve 100 cut 50", clip(1000, 10900)}},
                    Row{"OverlapWithoutFades",
                        {{0, 1000, 0, 0}, {900, 1900, 0, 0}},
                        {clip(1000, 10000), "two-level dissolve 100 cut 50", clip(1000, 10900)}},
                    Row{"ButtWithFades",
                        {{0, 1000, 0, 100}, {1000, 2000, 100, 0}},
                        {clip(1000, 10000), "dissolve 100 cut 50", "filler 200",
                         "dissolve 100 cut 50", clip(1000, 11000)}},
                    Row{"ButtWithoutFades",
                        {{0, 1000, 0, 0}, {1000, 2000, 0, 0}},
                        {clip(1000, 10000), clip(1000, 11000)}},
                    Row{"FadeOutGapFadeIn",
                        {{0, 1000, 0, 100}, {3000, 4000, 50, 0}},
                        {clip(1000, 10000), "dissolve 100 cut 50", "filler 2150",
                         "dissolve 50 cut 25", clip(1000, 13000)}}),
    [](const auto& each) { return each.param.name; });

}  // namespace
