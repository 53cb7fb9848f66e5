// The text of an audio decision list, section by section, in the fixed columns that
// other systems read it by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/clock_time.h"
#include "host/framework/ob_list.h"

class CTextFile;

namespace adl {

// What a list says of the files that its sources are.
enum class SourceExtension { wav, aif, sd2 };

// All that is written; nothing is owned.
struct ListText {
  // CGenericEDLFileTrack, CGenericEDLFileEntry and CGenericEDLFileAutomationEntryChunk
  // objects. An event names its source by the place among the sources.
  const CObList& sources;
  const CObList& events;
  const CObList& automation;
  std::u16string_view title;
  TimeBase rates;
  SourceExtension extension = SourceExtension::wav;
  // The sources belong to an interchange job, whose list of numbers this export makes
  // or uses up.
  bool interchange = false;
};

// Answers how many of the times read back moved (see time_code_moves). Raises
// CFileException when the system refuses a write.
[[nodiscard]] std::size_t write_list(CTextFile& file, const ListText& list);

// The path of a source as its URL has it behind the host: from the drive letter where
// there is one, without leading slashes elsewhere, and with "/" throughout. Nothing is
// escaped.
[[nodiscard]] std::u16string url_path(std::u16string_view path, SourceExtension extension);

// Pan in percent, -100 to +100 for the steps 0 to 504, rounded towards the left in
// single precision. Only multiples of 25 come back as they were.
[[nodiscard]] int pan_percent(std::uint32_t step);

}  // namespace adl
