#include "common/FormatUtil.h"

#include "common/MutiLanSupport.h"

namespace mivo::common {
namespace {

constexpr float kKB = 1024.0f;
constexpr float kMB = 1048576.0f;
constexpr float kGB = 1073741824.0f;

}  // namespace

CString GetFormatSizeString(ULONGLONG bytes) {
  CString s;
  float size = static_cast<float>(bytes);
  if (bytes >= 1073741824ULL || (bytes >> 32) != 0) {
    s.Format(L"%0.1f GB", size * (1.0f / kGB));
  } else if (bytes >= 1048576ULL) {
    s.Format(L"%0.1f MB", size * (1.0f / kMB));
  } else if (bytes >= 1024ULL) {
    s.Format(L"%0.1f KB", size * (1.0f / kKB));
  } else {
    s.Format(L"%I64u B", bytes);
  }
  return s;
}

CString GetFormatSizeString(float bytesPerSecond) {
  CString s;
  if (bytesPerSecond >= kGB) {
    s.Format(L"%0.1f GB/S", bytesPerSecond * (1.0f / kGB));
  } else if (bytesPerSecond >= kMB) {
    s.Format(L"%0.1f MB/S", bytesPerSecond * (1.0f / kMB));
  } else if (bytesPerSecond >= kKB) {
    s.Format(L"%0.1f KB/S", bytesPerSecond * (1.0f / kKB));
  } else {
    s.Format(L"%0.1f B/S", bytesPerSecond);
  }
  return s;
}

CString GetFormatTimeString(ULONGLONG seconds) {
  CMutiLanSupport* lang = CMutiLanSupport::GetInstance();
  ULONGLONG hours = seconds / 3600, minutes = (seconds % 3600) / 60, secs = seconds % 60;
  CString s;
  if (hours > 0) s.AppendFormat(L"%I64u%s", hours, lang->GetStringViaID(L"STRID_SESSION_HOUR").GetString());
  if (hours > 0 || minutes > 0)
    s.AppendFormat(L"%I64u%s", minutes, lang->GetStringViaID(L"STRID_SESSION_MINUTE").GetString());
  s.AppendFormat(L"%I64u%s", secs, lang->GetStringViaID(L"STRID_SESSION_SECOND").GetString());
  return s;
}

}  // namespace mivo::common
