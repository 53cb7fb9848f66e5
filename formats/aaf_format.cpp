// Advanced Authoring Format files, known by the head of the compound file that they are.
#include <algorithm>

#include "aaf/aaf_edl_file.h"
#include "formats/format_rows.h"

namespace {

constexpr std::string_view compound_file("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
// What stands behind it names the kind of file; a compound file of no kind at all may
// still be one, as the oldest are.
constexpr std::size_t kind_size = 16;
constexpr std::string_view kinds[] = {
    // 512-byte and 4096-byte sectors, as files of today have them.
    {"\x41\x41\x46\x42\x0D\x00\x4F\x4D\x06\x0E\x2B\x34\x01\x01\x01\xFF", kind_size},
    {"\x01\x02\x01\x0D\x00\x02\x00\x00\x06\x0E\x2B\x34\x03\x02\x01\x01", kind_size},
};

HeadMatch match(std::string_view head) {
  if (!head.starts_with(compound_file)) return HeadMatch::none;
  const std::string_view kind = head.substr(compound_file.size()).substr(0, kind_size);
  return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds)
             ? HeadMatch::certain
             : HeadMatch::possible;
}

std::unique_ptr<CGenericEdl> make(CGenericEdl* parent, int interactive,
                                  const FormatOptions& /*options*/) {
  return std::make_unique<CAAFEdlFile>(parent, interactive);
}

}  // namespace

FormatRow aaf_row() {
  FormatRow row;
  row.name = "aaf";
  row.title = "Advanced Authoring Format (AAF)";
  row.extensions = {".aaf"};
  row.exports = false;
  row.carries.automation = true;
  row.carries.locators = true;
  row.make = make;
  row.match = match;
  // Its clips and its time code say both, as far as it has any.
  row.states_sample_rate = always_stated;
  row.states_frame_rate = always_stated;
  return row;
}
