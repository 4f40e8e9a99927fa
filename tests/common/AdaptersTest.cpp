#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "common/Adapters.h"

namespace mc = mivo::common;

namespace {

struct MacRow {
  std::vector<unsigned char> bytes;
  const wchar_t* text;
};

TEST(FormatMacAddress, Rows) {
  const MacRow rows[] = {
      {{0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}, L"00-1A-2B-3C-4D-5E"},
      {{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}, L"FF-FF-FF-FF-FF-FF"},
      {{0, 0, 0, 0, 0, 0}, L""},  // loopback on Linux: a link address of zeros
      {{}, L""},
      {{0x02, 0, 0, 0, 0, 0, 0, 0x01}, L"02-00-00-00-00-00-00-01"},  // EUI-64
  };
  for (const MacRow& row : rows)
    EXPECT_EQ(mc::FormatMacAddress(row.bytes.data(), row.bytes.size()), row.text) << row.text;
}

struct IPv6Row {
  unsigned short groups[8];
  const wchar_t* text;
};

TEST(FormatIPv6Address, Rows) {
  const IPv6Row rows[] = {
      {{0, 0, 0, 0, 0, 0, 0, 1}, L"::1"},
      {{0, 0, 0, 0, 0, 0, 0, 0}, L"::"},
      {{0xFE80, 0, 0, 0, 0x0211, 0x22FF, 0xFE33, 0x4455}, L"fe80::211:22ff:fe33:4455"},
      {{0x2001, 0xDB8, 0, 0, 1, 0, 0, 1}, L"2001:db8::1:0:0:1"},     // equal runs: the first
      {{0x2001, 0, 0, 1, 0, 0, 0, 1}, L"2001:0:0:1::1"},             // the longer run
      {{0x2001, 0xDB8, 0, 1, 1, 1, 1, 1}, L"2001:db8:0:1:1:1:1:1"},  // one zero group stays
      {{1, 0, 0, 0, 0, 0, 0, 0}, L"1::"},
      {{0x2001, 0x0DB8, 0x00AB, 0, 0, 0, 0, 0}, L"2001:db8:ab::"},
      {{0, 0, 0, 0, 0, 0xFFFF, 0xC000, 0x0201}, L"::ffff:192.0.2.1"},
  };
  for (const IPv6Row& row : rows) {
    unsigned char bytes[16];
    for (int i = 0; i < 8; ++i) {
      bytes[2 * i] = static_cast<unsigned char>(row.groups[i] >> 8);
      bytes[2 * i + 1] = static_cast<unsigned char>(row.groups[i]);
    }
    EXPECT_EQ(mc::FormatIPv6Address(bytes), row.text) << row.text;
  }
  const unsigned char v4[] = {192, 168, 0, 255};
  EXPECT_EQ(mc::FormatIPv4Address(v4), L"192.168.0.255");
}

// Every system has a loopback adapter: 127.0.0.1 and no hardware address.
TEST(GetAdapterAddresses, ListsTheLoopbackAdapter) {
  std::vector<mc::AdapterInfo> adapters(1);
  ASSERT_TRUE(mc::GetAdapterAddresses(adapters));
  auto loopback = std::find_if(adapters.begin(), adapters.end(), [](const mc::AdapterInfo& a) {
    return std::find(a.ipv4.begin(), a.ipv4.end(), CString(L"127.0.0.1")) != a.ipv4.end();
  });
  ASSERT_NE(loopback, adapters.end());
  EXPECT_FALSE(loopback->name.IsEmpty());
  EXPECT_TRUE(loopback->mac.empty());
  EXPECT_TRUE(loopback->macText.IsEmpty());
  for (const mc::AdapterInfo& adapter : adapters) EXPECT_FALSE(adapter.name.IsEmpty());
}

}  // namespace
