#include "tests/formats/toy/tally_format.h"

#include "tests/formats/toy/tally_edl.h"

namespace {

HeadMatch match_tally(std::string_view head) {
  return head.starts_with("TALLY LIST ") ? HeadMatch::certain : HeadMatch::none;
}

std::unique_ptr<CGenericEdl> make_tally(CGenericEdl* parent, int interactive,
                                        const FormatOptions&) {
  return std::make_unique<CTallyEdl>(parent, interactive);
}

}  // namespace

FormatRow tally_row() {
  FormatRow row;
  row.name = "tally";
  row.title = "Tally list";
  row.extensions = {".tally"};
  row.make = make_tally;
  row.match = match_tally;
  return row;
}
