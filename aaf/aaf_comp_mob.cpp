#include "aaf/aaf_comp_mob.h"

#include "aaf/aaf_edl_file.h"
#include "aaf/aaf_numbers.h"

namespace {

// Samples a second as long as no clip has told a rate.
constexpr std::uint32_t usual_sample_rate = 48000;

}  // namespace

CAAFCompMob::CAAFCompMob(CAAFEdlFile* owner) : m_owner(owner) {}

std::uint32_t CAAFCompMob::sample_rate() const {
  const std::uint32_t rate = m_owner == nullptr ? 0 : m_owner->sample_rate();
  return rate == 0 ? usual_sample_rate : rate;
}

std::int64_t CAAFCompMob::edit_to_samples(std::int64_t units) const {
  if (!aaf::is_positive(m_edit_rate)) return 0;
  return aaf::truncated(static_cast<double>(sample_rate()) * static_cast<double>(units) /
                        aaf::quotient(m_edit_rate));
}
