#include "aaf/file_facts.h"

#include <cstdint>

#include "aaf/aaf_logger.h"

namespace aaf {

namespace {

std::uint64_t packed(const aafTimeStamp_t& at) {
  return std::uint64_t{static_cast<std::uint16_t>(at.date.year)} |
         std::uint64_t{at.date.month} << 16U | std::uint64_t{at.date.day} << 24U |
         std::uint64_t{at.time.hour} << 32U | std::uint64_t{at.time.minute} << 40U |
         std::uint64_t{at.time.second} << 48U;
}

}  // namespace

void report_file(IAAFHeader& header, CAAFLogger& report) {
  aafTimeStamp_t modified{};
  aafVersionType_t revision{};
  if (header.GetLastModified(&modified) == 0) report.set_modification_time(packed(modified));
  if (header.GetFileRevision(&revision) == 0) {
    report.aaf_major = static_cast<std::uint8_t>(revision.major);
    report.aaf_minor = static_cast<std::uint8_t>(revision.minor);
  }
}

void report_identification(IAAFIdentification& last, CAAFLogger& report) {
  aafTimeStamp_t created{};
  aafProductVersion_t toolkit{};
  if (last.GetDate(&created) == 0) report.set_creation_time(packed(created));
  if (last.GetRefImplVersion(&toolkit) == 0) {
    report.set_implementation_version(toolkit.major, toolkit.minor, toolkit.tertiary,
                                      toolkit.patchLevel);
  }
}

}  // namespace aaf
