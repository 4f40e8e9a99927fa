#include <gtest/gtest.h>

#include "support/Raises.h"

#include <vector>

#include "toolkit/Collections.h"

namespace {

std::vector<CString> Items(const CStringList& list) {
  std::vector<CString> out;
  for (POSITION pos = list.GetHeadPosition(); pos;) out.push_back(list.GetNext(pos));
  return out;
}

TEST(CStringList, PositionsInsertAndRemove) {
  CStringList list;
  EXPECT_TRUE(list.IsEmpty());
  list.AddTail(L"b");
  list.AddHead(L"a");
  POSITION c = list.AddTail(L"c");
  list.InsertBefore(c, CString(L"b2"));
  list.InsertAfter(c, CString(L"d"));
  EXPECT_EQ(Items(list), (std::vector<CString>{L"a", L"b", L"b2", L"c", L"d"}));
  EXPECT_EQ(list.GetCount(), 5);
  list.RemoveAt(list.Find(CString(L"b2")));
  EXPECT_EQ(list.RemoveHead(), L"a");
  EXPECT_EQ(list.RemoveTail(), L"d");
  EXPECT_EQ(Items(list), (std::vector<CString>{L"b", L"c"}));
  EXPECT_EQ(list.GetHead(), L"b");
  EXPECT_EQ(list.GetTail(), L"c");
  EXPECT_EQ(list.Find(CString(L"zz")), nullptr);
  EXPECT_EQ(list.GetAt(list.FindIndex(1)), L"c");
  EXPECT_EQ(list.FindIndex(2), nullptr);

  CStringList copy(list);
  list.RemoveAll();
  EXPECT_EQ(Items(copy), (std::vector<CString>{L"b", L"c"}));
  EXPECT_RAISES(list.GetHead(), CInvalidArgException);
}

TEST(CStringArray, BoundsAndEditing) {
  CStringArray a;
  a.Add(L"x");
  a.Add(CString(L"z"));
  a.InsertAt(1, CString(L"y"));
  ASSERT_EQ(a.GetSize(), 3);
  EXPECT_EQ(a[1], L"y");
  a.SetAtGrow(5, CString(L"far"));
  EXPECT_EQ(a.GetSize(), 6);
  EXPECT_EQ(a[4], L"");
  a.RemoveAt(3, 2);
  EXPECT_EQ(a.GetUpperBound(), 3);
  EXPECT_EQ(a[3], L"far");
  EXPECT_RAISES(a.GetAt(4), CInvalidArgException);
  EXPECT_RAISES(a.RemoveAt(3, 2), CInvalidArgException);
}

TEST(CMapStringToString, LookupIsCaseSensitiveAndIterationSeesEveryPair) {
  CMapStringToString map;
  map.SetAt(L"b", L"2");
  map[L"a"] = L"1";
  map.SetAt(L"A", L"upper");
  map.SetAt(L"b", L"two");
  CString v;
  EXPECT_TRUE(map.Lookup(L"b", v));
  EXPECT_EQ(v, L"two");
  EXPECT_TRUE(map.Lookup(L"A", v));
  EXPECT_EQ(v, L"upper");
  EXPECT_FALSE(map.Lookup(L"B", v));
  EXPECT_EQ(map.GetCount(), 3);

  std::vector<CString> keys;
  CString key, value;
  for (POSITION pos = map.GetStartPosition(); pos;) {
    map.GetNextAssoc(pos, key, value);
    keys.push_back(key);
  }
  EXPECT_EQ(keys, (std::vector<CString>{L"A", L"a", L"b"}));
  EXPECT_TRUE(map.RemoveKey(L"a"));
  EXPECT_FALSE(map.RemoveKey(L"a"));
  EXPECT_EQ(map.GetCount(), 2);
}

}  // namespace
