// The binary formats, known by the magic numbers at their heads.
#include "formats/format_rows.h"
#include "native/generic_edl_file.h"
#include "native/marlo2_edl.h"

namespace {

template <std::size_t size>
HeadMatch begins_with(std::string_view head, const char (&magic)[size]) {
  return head.starts_with(std::string_view(magic, size - 1)) ? HeadMatch::certain : HeadMatch::none;
}

HeadMatch match_edl2(std::string_view head) {
  return begins_with(head, "\x35\x21\x92\x91");
}

// Two magic numbers, of which an export writes the one or the other.
HeadMatch match_chunked(std::string_view head) {
  const HeadMatch first = begins_with(head, "\x94\x27\x17\x76");
  return first != HeadMatch::none ? first : begins_with(head, "\x6E\x72\x61\x54");
}

std::unique_ptr<CGenericEdl> make_edl2(CGenericEdl* parent, int interactive,
                                       const FormatOptions& /*options*/) {
  return std::make_unique<CMarlo2Edl>(parent, interactive);
}

std::unique_ptr<CGenericEdl> make_chunked(CGenericEdl* parent, int interactive,
                                          const FormatOptions& /*options*/) {
  return std::make_unique<CGenericEDLFile>(parent, interactive);
}

}  // namespace

FormatRow edl2_row() {
  FormatRow row;
  row.name = "edl2";
  row.title = "EDL2 (8 channels, binary)";
  row.extensions = {".edl2", ".ed2"};
  row.carries.pq = true;
  row.make = make_edl2;
  row.match = match_edl2;
  row.states_sample_rate = always_stated;
  row.states_frame_rate = always_stated;
  return row;
}

FormatRow chunked_row() {
  FormatRow row;
  row.name = "chunked";
  row.title = "Chunked interchange file (binary)";
  row.extensions = {".chk"};
  row.carries.pq = row.carries.locators = row.carries.automation = true;
  row.make = make_chunked;
  row.match = match_chunked;
  row.states_sample_rate = always_stated;
  row.states_frame_rate = always_stated;
  return row;
}
