// A silent host with a crossfade length, curves, and the corrections.
#pragma once

#include "host/plain_host.h"

namespace fuzzing {

class AdlHost final : public PlainHost {
 public:
  AdlHost() { set_host(this); }
  ~AdlHost() override { set_host(nullptr); }
  AdlHost(const AdlHost&) = delete;
  AdlHost& operator=(const AdlHost&) = delete;

  Application& application() override { return m_application; }
  Corrections& corrections() override { return m_corrections; }
  void set_corrected(bool corrected) { m_corrections.all = corrected; }

 private:
  struct Fades final : PlainApplication {
    std::int64_t get_default_crossfade_length() override { return 200; }
    std::uint16_t get_default_infade_curve() override { return 1; }
    std::uint16_t get_default_outfade_curve() override { return 2; }
  };
  struct Switches final : Corrections {
    bool is_on(Correction) override { return all; }
    bool all = true;
  };

  Fades m_application;
  Switches m_corrections;
};

}  // namespace fuzzing
