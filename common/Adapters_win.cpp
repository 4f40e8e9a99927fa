// Lists the adapters GetAdaptersAddresses reports, by friendly name, with their unicast addresses.
// winsock2.h first: iphlpapi.h declares the address lists only after it
#include <winsock2.h>
#include <ws2tcpip.h>

#include <iphlpapi.h>

#include <vector>

#include "common/Adapters.h"

namespace mivo::common::detail {

bool ListAdapters(std::vector<AdapterInfo>& out) {
  const ULONG flags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
  ULONG size = 16 * 1024;
  std::vector<unsigned char> buffer;
  ULONG result = ERROR_BUFFER_OVERFLOW;
  // The list can grow between the sizing call and the next one: try a few times.
  for (int attempt = 0; attempt < 4 && result == ERROR_BUFFER_OVERFLOW; ++attempt) {
    buffer.resize(size);
    result =
        GetAdaptersAddresses(AF_UNSPEC, flags, nullptr, reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data()), &size);
  }
  if (result == ERROR_NO_DATA) return true;
  if (result != NO_ERROR) return false;
  for (auto* entry = reinterpret_cast<IP_ADAPTER_ADDRESSES*>(buffer.data()); entry; entry = entry->Next) {
    CString name =
        entry->FriendlyName && entry->FriendlyName[0] ? CString(entry->FriendlyName) : CString(entry->AdapterName);
    AdapterInfo& adapter = AdapterNamed(out, name);
    SetAdapterMac(adapter, entry->PhysicalAddress, entry->PhysicalAddressLength);
    for (auto* unicast = entry->FirstUnicastAddress; unicast; unicast = unicast->Next) {
      const sockaddr* address = unicast->Address.lpSockaddr;
      if (!address) continue;
      if (address->sa_family == AF_INET) {
        const auto* in4 = reinterpret_cast<const sockaddr_in*>(address);
        adapter.ipv4.push_back(FormatIPv4Address(reinterpret_cast<const unsigned char*>(&in4->sin_addr)));
      } else if (address->sa_family == AF_INET6) {
        const auto* in6 = reinterpret_cast<const sockaddr_in6*>(address);
        adapter.ipv6.push_back(FormatIPv6Address(in6->sin6_addr.s6_addr));
      }
    }
  }
  return true;
}

}  // namespace mivo::common::detail
