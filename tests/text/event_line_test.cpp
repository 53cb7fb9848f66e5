// Columns that the event lines of several formats share, and what becomes of a line
// for which the buffer has no room.
#include "text/event_line.h"

#include "tests/text/format_fixtures.h"
#include "text/cmx_edl.h"
#include "text/grass_valley_edl.h"
#include "text/lightworks_edl.h"
#include "text/lw_multi_channel_edl.h"
#include "text/sony9000_edl.h"

namespace {

using support::standard_edit;
using support::utf8;

class EventLine : public support::FormatTest {
 protected:
  EventLine() { support::set_rates(edl_); }
  // What `add` puts into a file.
  template <class Add>
  std::string text_of(Add add) {
    CTextFile file(line_file_size);
    EXPECT_TRUE(file.Open(folder_.wide_file("line"), CFile::modeCreate | CFile::modeWrite));
    EXPECT_TRUE(add(file));
    file.flush_line();
    file.Close();
    return support::read_file(folder_.file("line"));
  }
  // The least room in which `format` writes an edit; with less it answers 9.
  int room_for(CTextEdl& format, const support::Edit& edit) {
    CTextFile file(line_file_size);
    EXPECT_TRUE(file.Open(folder_.wide_file("line"), CFile::modeCreate | CFile::modeWrite));
    int least = -1;
    for (int room = 0; room <= 250; ++room) {
      // Writing changes the entries of some formats.
      const auto entry = support::make_entry(edl_, edit);
      EXPECT_NE(file.add_text(std::u16string(static_cast<std::size_t>(250 - room), u'x')), 0);
      const result_code code = format.write_event(file, entry.get());
      file.flush_line();
      if (code == result::done && least < 0) least = room;
      EXPECT_EQ(code, least < 0 ? result::line_full : result::done) << room;
    }
    return least;
  }

  CCMXEdl edl_{4, nullptr, 0};
};

TEST_F(EventLine, DigitsAndWordsOfThreeCharactersNumberAnEvent) {
  for (const std::u16string_view word : {u"1", u"001", u"1234567", u"AUD", u"1-2", u"..."})
    EXPECT_TRUE(text::numbers_an_event(word)) << utf8(word);
  for (const std::u16string_view word : {u"", u"A", u"12AB", u"-1", u"AUDI"})
    EXPECT_FALSE(text::numbers_an_event(word)) << utf8(word);
}

TEST_F(EventLine, NumberAndReel) {
  const auto columns = [this](std::uint16_t number, const std::u16string& reel, int size) {
    const auto entry = support::make_entry(edl_, {.reel = reel, .event_number = number});
    return text_of([&](CTextFile& file) { return text::add_number_and_reel(file, *entry, size); });
  };
  EXPECT_EQ(columns(7, u"TAPE01", 11), "007  TAPE01 \t");
  EXPECT_EQ(columns(65535, u"TAPE01", 5), "65535  TAPE \t");
  EXPECT_EQ(columns(1, u"", 11), "001  N/A\t");
  EXPECT_EQ(columns(1, u"\fR", 11), "001  N/A\t");
}

TEST_F(EventLine, TimesOutOfRange) {
  auto edit = standard_edit();
  edit.source_in = -1920;
  edit.source_out = INT64_MIN;
  edit.dest_in = std::int64_t{24 * 3600} * 48000 - 1;
  edit.dest_out = std::int64_t{24 * 3600} * 48000;
  const auto entry = support::make_entry(edl_, edit);
  EXPECT_EQ(text_of([&](CTextFile& file) { return text::add_times(file, *entry); }),
            "-00:00:00:01 -23:59:59:00 23:59:59:24 23:59:59:00 ");
}

TEST_F(EventLine, TransitionOfAnEntryWithoutOwnRates) {
  CCMXEdl unset(4, nullptr, 0);
  const auto entry = support::make_entry(edl_, {.fade_in = 46080, .transition = 51});
  EXPECT_EQ(utf8(text::frames_transition(edl_, *entry)), "D   024   ");
  EXPECT_EQ(utf8(text::frames_transition(unset, *entry)), "C         ");
}

// Five characters of number, eight of "TAPE01" with its blank and TAB, six or two of
// channels, ten of transition, forty-eight of times, and the end of the line.
TEST_F(EventLine, ALineThatDoesNotFitIsRefusedWhole) {
  support::Edit edit = standard_edit();
  support::Edit third = edit;
  third.streams = {2};
  CSony9000Edl sony(nullptr, 0);
  CGrassValleyEdl valley(nullptr, 0);
  for (CTextEdl* format : std::initializer_list<CTextEdl*>{&sony, &valley}) {
    support::set_rates(*format);
  }
  EXPECT_EQ(room_for(edl_, edit), 5 + 8 + 6 + 10 + 48 + 1);
  // "\nAUD\t3\t\n" in place of the end.
  EXPECT_EQ(room_for(edl_, third), 5 + 8 + 6 + 10 + 48 + 8);
  EXPECT_EQ(room_for(sony, edit), 5 + 8 + 6 + 10 + 48 + 1);
  // "A\t", and "\nA3\n".
  EXPECT_EQ(room_for(sony, third), 5 + 8 + 2 + 10 + 48 + 4);
  EXPECT_EQ(room_for(valley, edit), 5 + 8 + 6 + 10 + 48 + 1);
}

TEST_F(EventLine, AMultichannelLineThatDoesNotFitIsRefusedWhole) {
  CLWMultiChannelEdl format(nullptr, 0);
  EDL_CONVERSION_SETTINGS settings;
  settings.lw_multichannel_mapping_comments = 1;
  format.set_edl_conversion_settings(&settings);
  support::set_rates(format);
  support::Edit edit = standard_edit();
  // "TAPE \t" is six characters.
  EXPECT_EQ(room_for(format, edit), 5 + 6 + 6 + 10 + 48 + 1);
  // A line end, 22 characters of "COMMENT: AUDIO MAPPING", a TAB, 15 of
  // "FROM CH6 TO CH1" and a line end.
  edit.first_channel = 5;
  EXPECT_EQ(room_for(format, edit), 5 + 6 + 6 + 10 + 48 + 40);
}

// Columns with their quotes and commas: two channels of 6, four times of 15, the reel
// of 9, the standard of 9, two levels of 9, the code of 5, three empty ones of 3, and
// the last two with the line end of 6.
TEST_F(EventLine, ATableLineThatDoesNotFitIsRefusedWhole) {
  CLightworksEdl format(nullptr, 0);
  support::set_rates(format);
  EXPECT_EQ(room_for(format, standard_edit()), 12 + 60 + 9 + 9 + 18 + 5 + 9 + 6);
}

}  // namespace
