#include "Execute/StartProfile.h"

#include <cstdlib>

#include "common/Trace.h"

CStartProfile::CStartProfile() : m_start(Clock::now()), m_last(m_start) {}

void CStartProfile::Mark(const wchar_t* phase) {
  Clock::time_point now = Clock::now();
  m_phases.emplace_back(phase, std::chrono::duration<double, std::milli>(now - m_last).count());
  m_last = now;
}

void CStartProfile::Add(const wchar_t* phase, double ms) {
  m_phases.emplace_back(phase, ms);
  m_before += ms;
}

CString CStartProfile::Summary() const {
  CString text = L"CStartApp start-up phases (ms):", item;
  for (const auto& [phase, ms] : m_phases) {
    item.Format(L" %s %.2f,", phase, ms);
    text += item;
  }
  item.Format(L" total %.2f", m_before + std::chrono::duration<double, std::milli>(m_last - m_start).count());
  return text + item;
}

void CStartProfile::Report() const {
  if (g_ITrace && std::getenv("MIVO_START_PROFILE")) g_ITrace->Trace(3, true, L"%s", Summary().GetString());
}
