#include "common/Adapters.h"

#include <exception>

namespace mivo::common {

CString FormatMacAddress(const unsigned char* bytes, size_t length) {
  if (!bytes) return CString();
  bool allZero = true;
  for (size_t i = 0; i < length; ++i) allZero = allZero && bytes[i] == 0;
  if (allZero) return CString();
  static const wchar_t kHex[] = L"0123456789ABCDEF";
  CString text;
  for (size_t i = 0; i < length; ++i) {
    if (i) text += L'-';
    text += kHex[bytes[i] >> 4];
    text += kHex[bytes[i] & 0xF];
  }
  return text;
}

CString FormatIPv4Address(const unsigned char* bytes) {
  CString text;
  if (bytes) text.Format(L"%u.%u.%u.%u", bytes[0], bytes[1], bytes[2], bytes[3]);
  return text;
}

CString FormatIPv6Address(const unsigned char* bytes) {
  if (!bytes) return CString();
  unsigned groups[8];
  for (int i = 0; i < 8; ++i) groups[i] = (bytes[2 * i] << 8) | bytes[2 * i + 1];
  bool mapped =
      groups[0] == 0 && groups[1] == 0 && groups[2] == 0 && groups[3] == 0 && groups[4] == 0 && groups[5] == 0xFFFF;
  if (mapped) return L"::ffff:" + FormatIPv4Address(bytes + 12);
  int bestStart = -1, bestLength = 1;  // a lone zero group is not compressed
  for (int i = 0; i < 8;) {
    if (groups[i] != 0) {
      ++i;
      continue;
    }
    int start = i;
    while (i < 8 && groups[i] == 0) ++i;
    if (i - start > bestLength) {
      bestStart = start;
      bestLength = i - start;
    }
  }
  CString text;
  for (int i = 0; i < 8; ++i) {
    if (i == bestStart) {
      text += L"::";
      i += bestLength - 1;
      continue;
    }
    if (i && i != bestStart + bestLength) text += L':';
    text.AppendFormat(L"%x", groups[i]);
  }
  return text;
}

bool GetAdapterAddresses(std::vector<AdapterInfo>& out) {
  out.clear();
  try {
    if (detail::ListAdapters(out)) return true;
  } catch (...) {
  }
  out.clear();
  return false;
}

namespace detail {

AdapterInfo& AdapterNamed(std::vector<AdapterInfo>& adapters, const CString& name) {
  for (AdapterInfo& adapter : adapters)
    if (adapter.name == name) return adapter;
  adapters.push_back(AdapterInfo{name, {}, {}, {}, {}});
  return adapters.back();
}

void SetAdapterMac(AdapterInfo& adapter, const unsigned char* bytes, size_t length) {
  if (!adapter.mac.empty()) return;
  adapter.macText = FormatMacAddress(bytes, length);
  if (!adapter.macText.IsEmpty()) adapter.mac.assign(bytes, bytes + length);
}

}  // namespace detail
}  // namespace mivo::common
