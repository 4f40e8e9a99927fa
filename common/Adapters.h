#pragma once
// The machine's network adapters: name, hardware (MAC) address and IP addresses.
//
// Windows: every adapter GetAdaptersAddresses reports, by its friendly name ("Ethernet",
// "Loopback Pseudo-Interface 1"). Linux: every interface getifaddrs reports ("lo", "eth0").
// An adapter without a hardware address (loopback, tunnels) has an empty `mac` and `macText`.
// Addresses are text: IPv4 dotted ("192.168.1.5"), IPv6 in the compressed lower-case form
// ("fe80::1"), without a zone index. The functions are thread-safe and never throw.
#include <cstddef>
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

struct AdapterInfo {
  CString name;
  std::vector<unsigned char> mac;  // the raw hardware address; empty when there is none
  CString macText;                 // "AA-BB-CC-DD-EE-FF"; empty when there is none
  std::vector<CString> ipv4;
  std::vector<CString> ipv6;
};

// Replaces `out` with the adapters in the order the system lists them. false (and `out`
// empty) when the system cannot be asked.
MIVO_COMMON_API bool GetAdapterAddresses(std::vector<AdapterInfo>& out);

// "AA-BB-CC-DD-EE-FF" for any length (bytes upper-case hex, joined by '-'); "" for no bytes
// or all zero bytes, which is how systems say "no hardware address".
MIVO_COMMON_API CString FormatMacAddress(const unsigned char* bytes, size_t length);
// Four bytes in network order, dotted decimal.
MIVO_COMMON_API CString FormatIPv4Address(const unsigned char* bytes);
// Sixteen bytes in network order: lower-case groups without leading zeros, the longest run of
// two or more zero groups (the first of equal ones) written "::", and IPv4-mapped addresses
// as "::ffff:a.b.c.d".
MIVO_COMMON_API CString FormatIPv6Address(const unsigned char* bytes);

namespace detail {
// The adapter of that name in `adapters`, appended when it is not there yet (the platform
// halves see one record per address).
AdapterInfo& AdapterNamed(std::vector<AdapterInfo>& adapters, const CString& name);
// Stores the hardware address unless the adapter already has one.
void SetAdapterMac(AdapterInfo& adapter, const unsigned char* bytes, size_t length);
// Platform half: appends the system's adapters; false when the system cannot be asked.
bool ListAdapters(std::vector<AdapterInfo>& out);
}  // namespace detail

}  // namespace mivo::common
