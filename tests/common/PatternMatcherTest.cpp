#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "common/PatternMatcher.h"

namespace mc = mivo::common;
using Match = std::pair<int, unsigned long long>;  // (pattern id, end position)

namespace {

struct Pattern {
  std::wstring text;
  bool ignoreCase;
};

struct Collector : mc::IMatchCallBack {
  std::vector<Match> matches;
  void OnMatch(int id, unsigned long long end) override { matches.emplace_back(id, end); }
};

bool Same(wchar_t a, wchar_t b, bool ignoreCase) {
  return ignoreCase ? mc::CPatternMatcher::FoldCase(a) == mc::CPatternMatcher::FoldCase(b) : a == b;
}

// Every (id, end) where pattern id ends at end, found by trying every place; ids are indexes.
std::vector<Match> BruteForce(const std::vector<Pattern>& patterns, const std::wstring& text, size_t from = 0) {
  std::vector<Match> result;
  for (size_t id = 0; id < patterns.size(); ++id) {
    const std::wstring& p = patterns[id].text;
    for (size_t start = from; start + p.size() <= text.size(); ++start) {
      size_t i = 0;
      while (i < p.size() && Same(text[start + i], p[i], patterns[id].ignoreCase)) ++i;
      if (i == p.size()) result.emplace_back(static_cast<int>(id), start + p.size());
    }
  }
  std::sort(result.begin(), result.end());
  return result;
}

// Feeds in random chunks (single characters among them); the matches come in order of end.
std::vector<Match> FeedInChunks(mc::CPatternMatcher& matcher, const std::wstring& text, std::mt19937& rng) {
  Collector collector;
  size_t done = 0;
  while (done < text.size()) {
    size_t n = std::min<size_t>(text.size() - done, rng() % 3 == 0 ? 1 : rng() % 40);
    if (n == 1 && rng() % 2)
      EXPECT_TRUE(matcher.Feed(text[done], &collector));
    else
      EXPECT_TRUE(matcher.Feed(text.data() + done, n, &collector));
    done += n;
  }
  EXPECT_EQ(matcher.GetPosition(), text.size());
  EXPECT_TRUE(std::is_sorted(collector.matches.begin(), collector.matches.end(),
                             [](const Match& a, const Match& b) { return a.second < b.second; }));
  std::sort(collector.matches.begin(), collector.matches.end());
  return collector.matches;
}

TEST(PatternMatcherTest, AgreesWithBruteForceOnRandomStreams) {
  // small alphabets force overlaps; the larger rows give states more edges than they copy; rows
  // without one-character patterns let the matcher skip characters its filter rules out
  const std::wstring letters = L"aAbB\u00c4\u00e4\u0416\u0436cdefghijklmnopqrstuvwxyz\u4e2d\u6587";
  struct Row {
    size_t alphabet, patterns, minLength, maxLength;
  } rows[] = {{2, 4, 1, 3},     {3, 12, 1, 5}, {4, 60, 1, 8}, {8, 200, 1, 4}, {30, 400, 1, 3},
              {30, 1500, 1, 4}, {3, 6, 2, 3},  {4, 30, 3, 7}, {8, 100, 4, 6}, {30, 300, 5, 9}};
  std::mt19937 rng(20261124);
  for (const Row& row : rows) {
    for (int round = 0; round < (row.patterns > 1000 ? 5 : 20); ++round) {
      std::vector<Pattern> patterns;
      mc::CPatternMatcher matcher;
      for (size_t i = 0; i < row.patterns; ++i) {
        // the filtered rows take one kind of pattern per round: the filter serves one automaton
        bool ignoreCase = row.minLength > 1 ? round % 2 == 1 : rng() % 3 == 0;
        Pattern p{std::wstring(row.minLength + rng() % (row.maxLength - row.minLength + 1), L' '), ignoreCase};
        for (auto& c : p.text) c = letters[rng() % row.alphabet];
        ASSERT_TRUE(matcher.AddPattern(p.text.data(), p.text.size(), static_cast<int>(i), p.ignoreCase));
        patterns.push_back(p);
      }
      for (int stream = 0; stream < 2; ++stream) {  // the second after a Reset
        std::wstring text(rng() % 400, L' ');
        for (auto& c : text) c = letters[rng() % row.alphabet];
        ASSERT_EQ(FeedInChunks(matcher, text, rng), BruteForce(patterns, text))
            << "alphabet " << row.alphabet << ", round " << round;
        matcher.Reset();
      }
    }
  }
}

TEST(PatternMatcherTest, PatternsAddedMidStream) {
  // earlier patterns lose nothing; a new one finds every occurrence that starts after it came
  std::mt19937 rng(7);
  for (int round = 0; round < 200; ++round) {
    std::vector<Pattern> patterns;
    mc::CPatternMatcher matcher;
    std::wstring text(200, L' ');
    for (auto& c : text) c = L"ab"[rng() % 2];
    size_t cut = rng() % text.size();
    for (int i = 0; i < 6; ++i) {
      std::wstring p(1 + rng() % 4, L' ');
      for (auto& c : p) c = L"ab"[rng() % 2];
      patterns.push_back({p, false});
    }
    for (int i = 0; i < 3; ++i) matcher.AddPattern(patterns[i].text.c_str(), i);
    Collector collector;
    matcher.Feed(text.data(), cut, &collector);
    for (int i = 3; i < 6; ++i) matcher.AddPattern(patterns[i].text.c_str(), i);
    matcher.Feed(text.data() + cut, text.size() - cut, &collector);
    std::set<Match> got(collector.matches.begin(), collector.matches.end());
    for (const Match& m : BruteForce(patterns, text)) {
      size_t start = m.second - patterns[m.first].text.size();
      bool required = m.first < 3 || start >= cut;
      bool allowed = m.first < 3 || m.second > cut;
      if (required) {
        EXPECT_TRUE(got.count(m)) << "round " << round << " id " << m.first << " end " << m.second;
      }
      if (allowed) got.erase(m);
    }
    EXPECT_TRUE(got.empty()) << "round " << round << ": reported what is not there";
  }
}

TEST(PatternMatcherTest, EdgeRows) {
  struct Row {
    std::vector<Pattern> patterns;
    std::wstring text;
    std::vector<Match> expected;
  } rows[] = {
      {{{L"he", false}, {L"she", false}, {L"his", false}, {L"hers", false}}, L"ushers", {{0, 4}, {1, 4}, {3, 6}}},
      {{{L"aa", false}, {L"aa", false}}, L"aaa", {{0, 2}, {0, 3}, {1, 2}, {1, 3}}},                // same text, two ids
      {{{L"\u00c4\u00d6\u00dc", true}}, L"x\u00e4\u00f6\u00fc", {{0, 4}}},                         // Latin-1
      {{{L"\u0141\u00f3d\u017a", true}}, L"\u0142\u00d3D\u0179", {{0, 4}}},                        // Latin Extended-A
      {{{L"\u03a3\u039f\u03a6\u0399\u0391", true}}, L"\u03c3\u03bf\u03c6\u03b9\u03b1", {{0, 5}}},  // Greek
      {{{L"\u03c3", true}}, L"\u03c2", {{0, 1}}},                                                  // final sigma
      {{{L"\u041f\u0420\u0418\u0412\u0415\u0422", true}}, L"\u043f\u0440\u0438\u0432\u0435\u0442", {{0, 6}}},
      {{{L"\u0401", true}}, L"\u0451", {{0, 1}}},              // Cyrillic Yo
      {{{L"\uff21\uff22", true}}, L"\uff41\uff42", {{0, 2}}},  // full width
      {{{L"\u00b5", true}}, L"\u03bc", {{0, 1}}},              // micro sign and mu
      {{{L"ABC", false}, {L"abc", true}}, L"aBc", {{1, 3}}},   // only the case-blind one
      {{{L"\u00df", true}}, L"ss", {}},                        // no multi-character folds
      {{{L"\U0001F600!", false}}, L"a\U0001F600!", {{0, sizeof(wchar_t) == 2 ? 4ull : 3ull}}},
      {{{L"\u4e2d\u6587", false}}, L"\u4e2d\u4e2d\u6587\u6587", {{0, 3}}},
  };
  for (size_t r = 0; r < std::size(rows); ++r) {
    mc::CPatternMatcher matcher;
    for (size_t i = 0; i < rows[r].patterns.size(); ++i)
      ASSERT_TRUE(
          matcher.AddPattern(rows[r].patterns[i].text.c_str(), static_cast<int>(i), rows[r].patterns[i].ignoreCase));
    Collector collector;
    matcher.Feed(rows[r].text.data(), rows[r].text.size(), &collector);
    std::sort(collector.matches.begin(), collector.matches.end());
    EXPECT_EQ(collector.matches, rows[r].expected) << "row " << r;
  }
}

TEST(PatternMatcherTest, RefusalsAndReset) {
  mc::CPatternMatcher matcher;
  std::wstring longest(mc::CPatternMatcher::kMaxPatternChars, L'x');
  EXPECT_FALSE(matcher.AddPattern(L"", 1));
  EXPECT_FALSE(matcher.AddPattern(nullptr, 1));
  EXPECT_FALSE(matcher.AddPattern(longest.c_str(), longest.size() + 1, 1));
  EXPECT_EQ(matcher.GetPatternCount(), 0u);
  size_t added = 0;
  while (matcher.AddPattern(longest.c_str(), longest.size(), 2)) ++added;
  EXPECT_EQ(added, mc::CPatternMatcher::kMaxTotalChars / longest.size());

  matcher.Clear();
  ASSERT_TRUE(matcher.AddPattern(L"abc", 7));
  Collector collector;
  matcher.Feed(L"xab", 3, &collector);
  matcher.Reset();  // "ab" + "c" must not join across a Reset
  matcher.Feed(L"cabc", 4, &collector);
  EXPECT_EQ(collector.matches, (std::vector<Match>{{7, 4}}));
}

}  // namespace
