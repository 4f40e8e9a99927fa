#include "base/memory/ref_count.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

std::atomic<int> g_deleted{0};

class Shared : public nbase::RefCountedThreadSafe {
 public:
  ~Shared() override { ++g_deleted; }
};

// Holders on several threads copy and drop their references at once: the object goes exactly
// once, and only with the last reference.
TEST(RefCount, LastReleaseAcrossThreadsDeletesOnce) {
  for (int round = 0; round < 20; ++round) {
    g_deleted = 0;
    nbase::RefPtr<Shared> kept = nbase::MakeRefCounted<Shared>();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([copy = kept]() mutable {
        for (int i = 0; i < 1000; ++i) nbase::RefPtr<Shared> again = copy;
        copy.reset();
      });
    }
    for (auto& thread : threads) thread.join();
    ASSERT_EQ(g_deleted, 0);
    EXPECT_TRUE(kept->HasOneRef());
    kept.reset();
    EXPECT_EQ(g_deleted, 1);
  }
}

TEST(RefCount, ReleaseSaysWhetherItDeleted) {
  g_deleted = 0;
  nbase::RefPtr<Shared> first = nbase::MakeRefCounted<Shared>();
  nbase::RefPtr<Shared> second = first;
  Shared* raw = first.get();
  raw->AddRef();
  EXPECT_FALSE(raw->Release());
  nbase::RefPtr<Shared> moved = std::move(first);
  EXPECT_FALSE(first);
  second = nullptr;
  EXPECT_EQ(g_deleted, 0);
  raw->AddRef();
  moved.reset();
  EXPECT_TRUE(raw->Release());
  EXPECT_EQ(g_deleted, 1);
}

}  // namespace
