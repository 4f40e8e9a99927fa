#pragma once
// Where the launcher's start-up spends its time. Each Mark ends the phase that ran since the
// previous one (or since construction) under the given name; Report writes them all as one
// trace line, "CStartApp start-up phases (ms): name 1.23, name 0.45, ... total 2.01", when the
// environment variable MIVO_START_PROFILE is set, and does nothing otherwise, so that a user's
// trace log holds only what it always held. bench/launch_bench.sh prints the line.
#include <chrono>
#include <utility>
#include <vector>

#include "toolkit/CString.h"

class CStartProfile {
 public:
  CStartProfile();
  void Mark(const wchar_t* phase);
  // A phase measured elsewhere, before this object existed (counted in the total).
  void Add(const wchar_t* phase, double ms);
  CString Summary() const;
  void Report() const;

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point m_start, m_last;
  std::vector<std::pair<const wchar_t*, double>> m_phases;
  double m_before = 0;
};
