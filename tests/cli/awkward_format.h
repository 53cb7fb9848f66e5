// Formats whose exports go wrong in every way that an export can.
#pragma once

#include "formats/format_table.h"

// What the export flag asks of an awkward export. Each first writes the first half of
// the list and of its companion.
enum AwkwardExport : int {
  // Writes the rest as well.
  awkward_good = 0,
  // Makes the file "<list>.half" and waits for a signal.
  awkward_stall = 1,
  awkward_not_done = 2,
  awkward_refused = 3,
  awkward_source_refused = 4,
  awkward_throw = 5,
  awkward_incomplete = 6,
  // Says that it is done and has taken the list away.
  awkward_vanish = 7,
  // Good, with no companion.
  awkward_alone = 8,
  awkward_no_memory = 9,
  awkward_not_sd2 = 10,
};

// Reads "AWKWARD" and a word that says how the import ends: "good", "damaged" (10),
// "unread" (0), "failing" (an error of the disk), "boxes" (good, with a box of each
// kind), "rates" (good, at 44100 Hz and 24 frames, which it states).
FormatRow awkward_row();
// The same under a name that ends in ".renamed" in place of ".awkward", as formats
// do that fix the extension of what they write.
FormatRow renaming_row();
// Go in one direction. The one that writes is the renaming one, with ".awkward" among
// its extensions.
FormatRow reading_row();
FormatRow writing_row();
