#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

#include "common/Trace.h"
#include "support/Files.h"
#include "support/TempDir.h"

namespace fs = std::filesystem;
using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

namespace {

std::string Today() {
  std::time_t now = std::time(nullptr);
  char buf[32];
  std::strftime(buf, sizeof buf, "%Y_%m_%d", std::localtime(&now));
  return buf;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> out;
  size_t pos = 0;
  while (pos < text.size()) {
    size_t end = text.find("\r\n", pos);
    if (end == std::string::npos) {
      out.push_back(text.substr(pos) + "<unterminated>");
      break;
    }
    out.push_back(text.substr(pos, end - pos));
    pos = end + 2;
  }
  return out;
}

TEST(Trace, LineFormatFileNameAndLevels) {
  TempDir dir;
  auto* trace = new ITrace_imp(dir.Path() + L"logs\\");
  EXPECT_EQ(trace->GetLogPath(), dir.Path() + L"logs\\trace_log_" + CString(Today().c_str()) + L".txt");
  EXPECT_TRUE(trace->IsOpen());
  trace->Trace(0, true, L"level zero is below the default minimum");
  trace->Trace(1, false, L"%s %d %S", L"\u4e2d\u6587", 42, "bytes");
  trace->SetLevel(3);
  trace->Trace(2, true, L"suppressed");
  trace->Trace(3, true, L"kept");
  trace->Release();
  std::string text = Read(dir.NativeOf(L"logs\\trace_log_" + CString(Today().c_str()) + L".txt"));
  std::vector<std::string> lines = Lines(text);
  ASSERT_EQ(lines.size(), 2u) << text;
  // [YYYY/MM/DD HH:MM:SS] then the message, UTF-8 without a byte-order mark
  ASSERT_EQ(lines[0].size(), 21u + std::string("\xe4\xb8\xad\xe6\x96\x87 42 bytes").size());
  EXPECT_EQ(lines[0][0], '[');
  EXPECT_EQ(lines[0][5], '/');
  EXPECT_EQ(lines[0][11], ' ');
  EXPECT_EQ(lines[0][20], ']');
  EXPECT_EQ(lines[0].substr(21), "\xe4\xb8\xad\xe6\x96\x87 42 bytes");
  EXPECT_EQ(lines[1].substr(21), "kept");
}

// The stamp is formatted once a second and reused: each line still carries the second it
// was written in.
TEST(Trace, StampFollowsTheClockFromSecondToSecond) {
  auto now = [] {
    std::time_t t = std::time(nullptr);
    char buf[32];
    std::strftime(buf, sizeof buf, "[%Y/%m/%d %H:%M:%S]", std::localtime(&t));
    return std::string(buf);
  };
  TempDir dir;
  auto* trace = new ITrace_imp(dir.Path());
  std::vector<std::pair<std::string, std::string>> windows;
  for (int i = 0; i < 3; ++i) {
    std::string before = now();
    trace->Trace(1, false, L"line %d", i);
    std::string after = now();
    windows.emplace_back(before, after);
    while (now() == after) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  CString path = trace->GetLogPath();
  trace->Release();
  std::vector<std::string> lines = Lines(Read(dir.NativeOf(path.Mid(dir.Path().GetLength()))));
  ASSERT_EQ(lines.size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    std::string stamp = lines[i].substr(0, 21);
    EXPECT_TRUE(stamp >= windows[i].first && stamp <= windows[i].second) << stamp << " " << windows[i].first;
  }
  EXPECT_NE(lines[0].substr(0, 21), lines[2].substr(0, 21));
}

// A zero character ends the message, as it ends a C string; a long one is cut at 1023.
TEST(Trace, MessageEndsAtAZeroCharacterOrIsCutAt1023) {
  TempDir dir;
  auto* trace = new ITrace_imp(dir.Path());
  trace->Trace(1, false, L"before%cafter", 0);
  trace->Trace(1, true, L"%s", std::wstring(5000, L'x').c_str());
  CString path = trace->GetLogPath();
  trace->Release();
  std::vector<std::string> lines = Lines(Read(dir.NativeOf(path.Mid(dir.Path().GetLength()))));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].substr(21), "before");
  EXPECT_EQ(lines[1], lines[1].substr(0, 21) + std::string(1023, 'x'));
}

TEST(Trace, OversizedLogStartsOverAndTheLimitItselfIsKept) {
  for (ULONGLONG size : {10000001ULL, 10000000ULL}) {
    TempDir dir;
    fs::path log = dir.NativeOf(L"trace_log_" + CString(Today().c_str()) + L".txt");
    {
      std::ofstream out(log, std::ios::binary);
      out.seekp(static_cast<std::streamoff>(size - 1));
      out.put('z');
    }
    auto* trace = new ITrace_imp(dir.Path());
    trace->Trace(1, true, L"first");
    trace->Release();
    ULONGLONG expected = (size > ITrace_imp::kSizeLimit ? 0 : size) + 21 + 5 + 2;
    EXPECT_EQ(fs::file_size(log), expected) << size;
  }
}

TEST(Trace, FifthOpeningAttemptUsesTheTmpNameThenLinesAreDropped) {
  TempDir dir;
  CString name = L"trace_log_" + CString(Today().c_str()) + L".txt";
  fs::create_directories(dir.NativeOf(name));  // a folder where the log should be: cannot open
  auto* trace = new ITrace_imp(dir.Path());
  EXPECT_FALSE(trace->IsOpen());
  for (int i = 1; i <= 4; ++i) trace->Trace(1, true, L"lost %d", i);
  EXPECT_FALSE(trace->IsOpen());
  EXPECT_EQ(trace->GetLogPath(), dir.Path() + name);
  trace->Trace(1, true, L"fifth");
  EXPECT_TRUE(trace->IsOpen());
  EXPECT_EQ(trace->GetLogPath(), dir.Path() + name + L".tmp");
  trace->Release();
  std::vector<std::string> lines = Lines(Read(dir.NativeOf(name + L".tmp")));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].substr(21), "fifth");

  // after five failures nothing more is tried
  TempDir second;
  fs::create_directories(second.NativeOf(name));
  fs::create_directories(second.NativeOf(name + L".tmp"));
  trace = new ITrace_imp(second.Path());
  for (int i = 0; i < 8; ++i) trace->Trace(1, true, L"dropped");
  EXPECT_FALSE(trace->IsOpen());
  trace->Release();
}

TEST(Trace, ConcurrentWritersNeverInterleaveOrLoseLines) {
  TempDir dir;
  auto* trace = new ITrace_imp(dir.Path());
  constexpr int kThreads = 8, kLines = 2000;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([trace, t] {
      for (int i = 0; i < kLines; ++i) trace->Trace(1, i % 100 == 0, L"thread %d line %d %s", t, i, L"padding-padding");
    });
  }
  for (auto& th : threads) th.join();
  CString path = trace->GetLogPath();
  trace->Release();
  std::vector<std::string> lines = Lines(Read(dir.NativeOf(path.Mid(dir.Path().GetLength()))));
  ASSERT_EQ(lines.size(), static_cast<size_t>(kThreads * kLines));
  std::set<std::string> seen;
  for (const auto& line : lines) {
    ASSERT_GT(line.size(), 21u) << line;
    std::istringstream in(line.substr(21));
    std::string w1, w2, pad;
    int t = -1, i = -1;
    in >> w1 >> t >> w2 >> i >> pad;
    ASSERT_TRUE(w1 == "thread" && w2 == "line" && pad == "padding-padding" && in.eof()) << line;
    seen.insert(std::to_string(t) + ":" + std::to_string(i));
  }
  EXPECT_EQ(seen.size(), static_cast<size_t>(kThreads * kLines));
}

TEST(Trace, GlobalInstanceWritesBesideTheExecutable) {
  ASSERT_NE(g_ITrace, nullptr);
  ITrace_imp* instance = ITrace_imp::GetInstance();
  EXPECT_EQ(static_cast<ITrace*>(instance), g_ITrace);
  EXPECT_NE(instance->GetLogPath().Find(L"\\logs\\trace_log_"), -1);
  g_ITrace->Trace(3, true, L"global instance test line");
  EXPECT_TRUE(instance->IsOpen());
}

}  // namespace
