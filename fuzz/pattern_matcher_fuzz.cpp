// Splits the input into patterns and a text over a 16-character alphabet (case pairs, a final
// sigma, CJK and a character beyond the BMP, so that overlaps and folds are common), feeds
// the text in chunks the input chooses, and compares every match with a brute-force search.
//   input: pattern lines ("\n"-separated, a first byte with 0x80 set means ignore case),
//          a 0 byte, then the text; in the text a byte with 0x40 set ends a chunk.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "common/PatternMatcher.h"

namespace {

using mivo::common::CPatternMatcher;
using Match = std::pair<int, unsigned long long>;

const wchar_t kAlphabet[] = L"aAbB\u00e4\u00c4\u03c3\u03a3\u03c2\u0416\u0436xyz\u4e2d\U0001F600";
constexpr size_t kLetters = sizeof kAlphabet / sizeof kAlphabet[0] - 1;

std::wstring Letters(const uint8_t* bytes, size_t size) {
  std::wstring text;
  for (size_t i = 0; i < size; ++i) text.push_back(kAlphabet[bytes[i] % kLetters]);
  return text;
}

struct Collector : mivo::common::IMatchCallBack {
  std::vector<Match> matches;
  void OnMatch(int id, unsigned long long end) override { matches.emplace_back(id, end); }
};

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "pattern_matcher_fuzz: %s\n", what);
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const uint8_t* zero = static_cast<const uint8_t*>(std::find(data, data + size, 0));
  struct Pattern {
    std::wstring text;
    bool ignoreCase;
  };
  std::vector<Pattern> patterns;
  CPatternMatcher matcher;
  for (const uint8_t* line = data; line < zero && patterns.size() < 64;) {
    const uint8_t* end = std::find(line, zero, '\n');
    Pattern p{Letters(line, static_cast<size_t>(end - line)), line < end && (*line & 0x80)};
    bool added = matcher.AddPattern(p.text.data(), p.text.size(), static_cast<int>(patterns.size()), p.ignoreCase);
    Check(added == !p.text.empty(), "an empty pattern taken or a pattern refused");
    if (added) patterns.push_back(p);
    line = end + 1;
  }
  const uint8_t* textBytes = zero < data + size ? zero + 1 : zero;
  size_t textSize = std::min<size_t>(static_cast<size_t>(data + size - textBytes), 4096);
  std::wstring text = Letters(textBytes, textSize);

  Collector collector;
  size_t begin = 0;
  for (size_t i = 0; i < textSize; ++i)
    if ((textBytes[i] & 0x40) || i + 1 == textSize) {
      Check(matcher.Feed(text.data() + begin, i + 1 - begin, &collector), "feed failed");
      begin = i + 1;
    }
  Check(matcher.GetPosition() == text.size(), "position");
  Check(std::is_sorted(collector.matches.begin(), collector.matches.end(),
                       [](const Match& a, const Match& b) { return a.second < b.second; }),
        "matches out of order");

  std::vector<Match> expected;
  for (size_t id = 0; id < patterns.size(); ++id) {
    const Pattern& p = patterns[id];
    for (size_t start = 0; start + p.text.size() <= text.size(); ++start) {
      size_t k = 0;
      for (; k < p.text.size(); ++k) {
        wchar_t a = text[start + k], b = p.text[k];
        if (p.ignoreCase ? CPatternMatcher::FoldCase(a) != CPatternMatcher::FoldCase(b) : a != b) break;
      }
      if (k == p.text.size()) expected.emplace_back(static_cast<int>(id), start + p.text.size());
    }
  }
  std::sort(expected.begin(), expected.end());
  std::sort(collector.matches.begin(), collector.matches.end());
  Check(collector.matches == expected, "matches differ from the brute-force search");
  return 0;
}
