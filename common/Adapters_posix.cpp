// Lists the interfaces getifaddrs reports: one record per address, the MAC from AF_PACKET's.
#include <ifaddrs.h>
#include <linux/if_packet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "common/Adapters.h"

namespace mivo::common::detail {

bool ListAdapters(std::vector<AdapterInfo>& out) {
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return false;
  for (ifaddrs* entry = list; entry; entry = entry->ifa_next) {
    if (!entry->ifa_name) continue;
    AdapterInfo& adapter = AdapterNamed(out, CString(entry->ifa_name));
    const sockaddr* address = entry->ifa_addr;
    if (!address) continue;
    if (address->sa_family == AF_INET) {
      const auto* in4 = reinterpret_cast<const sockaddr_in*>(address);
      adapter.ipv4.push_back(FormatIPv4Address(reinterpret_cast<const unsigned char*>(&in4->sin_addr)));
    } else if (address->sa_family == AF_INET6) {
      const auto* in6 = reinterpret_cast<const sockaddr_in6*>(address);
      adapter.ipv6.push_back(FormatIPv6Address(in6->sin6_addr.s6_addr));
    } else if (address->sa_family == AF_PACKET) {
      const auto* link = reinterpret_cast<const sockaddr_ll*>(address);
      SetAdapterMac(adapter, link->sll_addr, link->sll_halen);
    }
  }
  freeifaddrs(list);
  return true;
}

}  // namespace mivo::common::detail
