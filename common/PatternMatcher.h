#pragma once
// A multi-pattern matcher fed one character or one chunk at a time (Aho-Corasick): every
// occurrence of every pattern is reported, overlapping ones and ones that straddle two
// chunks included, at a cost per character that does not grow with the number of patterns.
//
// Characters are wchar_t units (UTF-16 code units on Windows, code points on Linux); a match
// is reported as (pattern id, end position), the end position being the number of characters
// fed since construction or the last Reset() up to and including the match's last one. A
// match "ab" in the stream "xab" ends at 3. Matches ending at the same character come in no
// particular order.
//
// Letter case: each pattern is matched exactly or, when added with ignoreCase, under FoldCase
// (both the pattern and the text are folded). FoldCase is the same on every platform: ASCII,
// Latin-1, Latin Extended-A, Greek, Cyrillic and the full-width Latin letters; other
// characters fold to themselves.
//
// Adding patterns after feeding started is allowed: the automaton is rebuilt before the next
// character and the stream position is kept. Partial matches of the earlier patterns carry on,
// so none of their occurrences is lost. A new pattern is reported for every occurrence that
// starts after it was added, and may be for one that began shortly before (within a partial
// match still in progress); never for one that ended before.
//
// Bounds: a pattern is 1 to kMaxPatternChars characters; all patterns together at most
// kMaxTotalChars. Past a bound (or for an empty pattern) AddPattern returns false and the
// matcher is unchanged.
//
// Thread safety: none inside; use one matcher per thread. The callback runs on the feeding
// thread, inside Feed, and must not call back into the same matcher.
#include <cstddef>

#include "toolkit/export.h"

namespace mivo::common {

class MIVO_COMMON_API IMatchCallBack {
 public:
  virtual void OnMatch(int patternId, unsigned long long endPosition) = 0;

 protected:
  ~IMatchCallBack() = default;
};

class MIVO_COMMON_API CPatternMatcher {
 public:
  static constexpr size_t kMaxPatternChars = 4096;
  static constexpr size_t kMaxTotalChars = 4u << 20;

  CPatternMatcher();
  ~CPatternMatcher();
  CPatternMatcher(const CPatternMatcher&) = delete;
  CPatternMatcher& operator=(const CPatternMatcher&) = delete;

  // Adds a pattern with the caller's id (ids need not be unique; the same text may be added
  // under several ids, each is reported). false: empty, too long, over the total, or no memory.
  bool AddPattern(const wchar_t* text, size_t length, int id, bool ignoreCase = false);
  bool AddPattern(const wchar_t* text, int id, bool ignoreCase = false);  // zero-terminated
  // Forgets every pattern and resets the stream.
  void Clear();
  // Starts a new stream: position 0, no partial match carried over. Patterns are kept.
  void Reset();

  // Feeds characters; `callBack` may be null (the position still advances). false only when
  // the automaton could not be built (no memory); nothing is reported then.
  bool Feed(wchar_t c, IMatchCallBack* callBack);
  bool Feed(const wchar_t* text, size_t length, IMatchCallBack* callBack);

  size_t GetPatternCount() const;
  unsigned long long GetPosition() const;  // characters fed since the last Reset

  // The case folding of ignoreCase patterns (see above).
  static wchar_t FoldCase(wchar_t c);

 private:
  struct Impl;
  Impl* m_impl;
};

}  // namespace mivo::common
