#include "common/PatternMatcher.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

namespace mivo::common {
namespace {

constexpr uint32_t kNone = UINT32_MAX;
constexpr uint32_t kComplete = 0x80000000u;  // in `link`: the state's edges hold its fail chain's
constexpr size_t kInheritLimit = 16;         // edges a state may copy from its fail state
constexpr uint64_t kWindowHash = 0x9E3779B97F4A7C15ull;

inline uint32_t Unit(wchar_t c) { return static_cast<uint32_t>(c); }

// One Aho-Corasick automaton over "classes": every character of the patterns has a class
// from 1 up, every other character is class 0, which leads back to the root from anywhere.
// The root's transitions are a dense row; any other state keeps the edges where it differs
// from the root (its own, plus those of its fail chain while that stays small) in one
// open-addressed hash of (state, class). A miss goes to the root row, or for a state whose
// chain was too large to copy, on to its fail state.
class Automaton {
 public:
  bool Empty() const { return m_stateCount <= 1; }

  void Build(const std::vector<std::wstring>& texts, const std::vector<int>& ids, bool folded);

  uint32_t Class(wchar_t c) const {
    uint32_t u = Unit(c);
    if (u <= 0xFFFF) return m_page[u >> 8][u & 0xFF];
    auto it = m_astral.find(u);
    return it == m_astral.end() ? 0 : it->second;
  }

  uint32_t Next(uint32_t s, uint32_t cls) const {
    if (cls == 0) return 0;
    for (;;) {
      if (s == 0) return m_rootNext[cls];
      uint32_t hit = Probe(s, cls);
      if (hit != kNone) return hit;
      uint32_t link = m_link[s];
      if (link & kComplete) return m_rootNext[cls];
      s = link;
    }
  }

  bool HasOutput(uint32_t s) const { return m_hasOutput[s] != 0; }

  // The q-gram filter: q is the length of the shortest pattern, at most 4 (0: no filter). A window
  // of the last q classes that occurs in no pattern means that no pattern ends at this character and
  // that the automaton's state is within the last q-1 characters, so the walk can skip the step
  // and recover the state from those characters when a window hits. The windows are hashed into a
  // bitmap: a collision costs a step, never a match.
  int Q() const { return m_q; }
  uint64_t Window(uint64_t window, uint32_t cls) const { return ((window << 16) | (cls & 0xFFFF)) & m_windowMask; }
  const uint64_t* FilterBits() const { return m_filter.data(); }
  int FilterShift() const { return m_filterShift; }
  uint64_t WindowMask() const { return m_windowMask; }
  // The classes of the first 65,536 characters in one array, when there are at most 65,535.
  const uint16_t* FlatClasses() const { return m_flat.empty() ? nullptr : m_flat.data(); }
  // From a state of fewer than q characters the next state is the walk over the window alone:
  // that walk is kept for every window found in a pattern (with at most 65,535 classes, where
  // the window holds them exactly). kNone: the window is in no pattern.
  bool HasJumps() const { return !m_jumps.empty(); }
  int Depth(uint32_t s) const { return m_depth[s]; }
  uint32_t Jump(uint64_t window) const {
    for (uint64_t i = (window * kWindowHash) >> m_jumpShift;; i = (i + 1) & m_jumpMask) {
      const JumpSlot& slot = m_jumps[i];
      if (slot.window == window) return slot.next;
      if (slot.window == 0) return kNone;
    }
  }

  void Report(uint32_t s, unsigned long long end, IMatchCallBack* callBack) const {
    if (!callBack) return;
    for (; s != kNone; s = m_dict[s])
      for (uint32_t i = m_outBegin[s]; i < m_outBegin[s + 1]; ++i) callBack->OnMatch(m_outIds[i], end);
  }

  // The characters (folded if the automaton is) that lead from the root to `s`.
  std::wstring PathTo(uint32_t s) const {
    std::wstring path;
    for (; s != 0; s = m_parent[s]) path.insert(path.begin(), static_cast<wchar_t>(m_parentChar[s]));
    return path;
  }

  uint32_t Walk(const std::wstring& text) const {
    uint32_t s = 0;
    for (wchar_t c : text) s = Next(s, Class(c));
    return s;
  }

 private:
  struct Slot {
    uint32_t state, cls, next;
  };

  static uint64_t Hash(uint32_t s, uint32_t cls) {
    return ((static_cast<uint64_t>(s) << 32) | cls) * 0x9E3779B97F4A7C15ull;
  }
  uint32_t Probe(uint32_t s, uint32_t cls) const {
    for (uint64_t i = Hash(s, cls) >> m_shift;; i = (i + 1) & m_mask) {
      const Slot& slot = m_slots[i];
      if (slot.state == s && slot.cls == cls) return slot.next;
      if (slot.state == kNone) return kNone;
    }
  }
  uint32_t ClassOrNew(uint32_t u);
  void SetClass(uint32_t u, uint32_t cls);

  uint32_t m_stateCount = 0;
  const uint32_t* m_page[256] = {};
  std::vector<std::vector<uint32_t>> m_pages;  // [0] is all zeros
  std::unordered_map<uint32_t, uint32_t> m_astral;
  uint32_t m_classCount = 1;
  std::vector<uint32_t> m_rootNext;
  std::vector<Slot> m_slots;
  uint64_t m_mask = 0;
  int m_shift = 63;
  std::vector<uint32_t> m_link;  // fail state, or kComplete
  std::vector<uint8_t> m_hasOutput;
  std::vector<uint32_t> m_outBegin, m_dict;
  std::vector<int> m_outIds;
  std::vector<uint32_t> m_parent, m_parentChar;
  int m_q = 0;
  uint64_t m_windowMask = 0;
  int m_filterShift = 63;
  std::vector<uint64_t> m_filter;
  struct JumpSlot {
    uint64_t window;  // 0: free (no pattern holds class 0)
    uint32_t next;
  };
  std::vector<JumpSlot> m_jumps;
  uint64_t m_jumpMask = 0;
  int m_jumpShift = 63;
  std::vector<uint8_t> m_depth;  // up to 255
  std::vector<uint16_t> m_flat;
};

uint32_t Automaton::ClassOrNew(uint32_t u) {
  uint32_t cls = u <= 0xFFFF ? m_page[u >> 8][u & 0xFF] : (m_astral.count(u) ? m_astral[u] : 0);
  if (cls == 0) SetClass(u, cls = m_classCount++);
  return cls;
}

void Automaton::SetClass(uint32_t u, uint32_t cls) {
  if (u > 0xFFFF) {
    m_astral[u] = cls;
    return;
  }
  if (m_page[u >> 8] == m_pages[0].data()) {
    m_pages.emplace_back(256, 0);
    m_page[u >> 8] = m_pages.back().data();
  }
  const_cast<uint32_t*>(m_page[u >> 8])[u & 0xFF] = cls;
}

void Automaton::Build(const std::vector<std::wstring>& texts, const std::vector<int>& ids, bool folded) {
  *this = Automaton();
  m_pages.reserve(257);  // the page pointers stay valid
  m_pages.emplace_back(256, 0);
  for (auto& page : m_page) page = m_pages[0].data();

  // the trie; edges per state as (class, child), the own ones first
  std::vector<std::vector<std::pair<uint32_t, uint32_t>>> edges(1);
  std::unordered_map<uint64_t, uint32_t> child;
  std::vector<std::vector<int>> own(1);
  m_parent.assign(1, 0);
  m_parentChar.assign(1, 0);
  for (size_t p = 0; p < texts.size(); ++p) {
    uint32_t s = 0;
    for (wchar_t c : texts[p]) {
      uint32_t cls = ClassOrNew(Unit(c));
      auto [it, added] = child.emplace((static_cast<uint64_t>(s) << 32) | cls, static_cast<uint32_t>(edges.size()));
      if (added) {
        edges[s].emplace_back(cls, it->second);
        edges.emplace_back();
        own.emplace_back();
        m_parent.push_back(s);
        m_parentChar.push_back(Unit(c));
      }
      s = it->second;
    }
    own[s].push_back(ids[p]);
  }
  child.clear();
  m_stateCount = static_cast<uint32_t>(edges.size());
  if (folded)  // every character that folds onto a pattern character shares its class
    for (uint32_t u = 0; u <= 0xFFFF; ++u) {
      uint32_t f = Unit(CPatternMatcher::FoldCase(static_cast<wchar_t>(u)));
      if (f != u && m_page[f >> 8][f & 0xFF]) SetClass(u, m_page[f >> 8][f & 0xFF]);
    }

  m_rootNext.assign(m_classCount, 0);
  for (auto [cls, next] : edges[0]) m_rootNext[cls] = next;
  m_link.assign(m_stateCount, kComplete);
  m_dict.assign(m_stateCount, kNone);
  std::vector<uint32_t> ownCount(m_stateCount, 0);
  for (uint32_t s = 0; s < m_stateCount; ++s) ownCount[s] = static_cast<uint32_t>(edges[s].size());
  // breadth first: a fail state is shallower, so its edges are final before they are copied
  auto nextDuringBuild = [&](uint32_t s, uint32_t cls) {
    for (;;) {
      if (s == 0) return m_rootNext[cls];
      for (auto [c, n] : edges[s])
        if (c == cls) return n;
      if (m_link[s] & kComplete) return m_rootNext[cls];
      s = m_link[s];
    }
  };
  std::vector<uint32_t> queue{0};
  size_t budget = 4 * static_cast<size_t>(m_stateCount) + 4096;  // copied edges, shallow states first
  for (size_t q = 0; q < queue.size(); ++q) {
    uint32_t s = queue[q];
    uint32_t fail = m_link[s] & ~kComplete;
    if (s != 0 && fail != 0) {
      auto& from = edges[fail];
      // only a fail state whose edges hold its own chain can stand for that chain
      if ((m_link[fail] & kComplete) && from.size() <= kInheritLimit && from.size() <= budget) {
        for (auto [cls, next] : from) {
          bool mine = false;
          for (uint32_t i = 0; i < ownCount[s] && !mine; ++i) mine = edges[s][i].first == cls;
          if (!mine) edges[s].emplace_back(cls, next);
        }
        budget -= from.size();
        m_link[s] = kComplete;
      } else {
        m_link[s] = fail;
      }
    }
    if (s != 0) m_dict[s] = own[fail].empty() ? m_dict[fail] : fail;
    for (uint32_t i = 0; i < ownCount[s]; ++i) {
      auto [cls, t] = edges[s][i];
      // t's fail state, flagged until t is dequeued and decides whether it copies its edges
      m_link[t] = (s == 0 ? 0 : nextDuringBuild(fail, cls)) | kComplete;
      queue.push_back(t);
    }
  }

  size_t entries = 0;
  for (uint32_t s = 1; s < m_stateCount; ++s) entries += edges[s].size();
  uint64_t capacity = 16;
  while (capacity < 2 * entries) capacity <<= 1;
  m_mask = capacity - 1;
  m_shift = 64;
  for (uint64_t c = capacity; c > 1; c >>= 1) --m_shift;
  m_slots.assign(capacity, Slot{kNone, 0, 0});
  for (uint32_t s = 1; s < m_stateCount; ++s)
    for (auto [cls, next] : edges[s]) {
      uint64_t i = Hash(s, cls) >> m_shift;
      while (m_slots[i].state != kNone) i = (i + 1) & m_mask;
      m_slots[i] = Slot{s, cls, next};
    }

  m_outBegin.assign(m_stateCount + 1, 0);
  for (uint32_t s = 0; s < m_stateCount; ++s) {
    m_outBegin[s + 1] = m_outBegin[s] + static_cast<uint32_t>(own[s].size());
    m_outIds.insert(m_outIds.end(), own[s].begin(), own[s].end());
  }
  m_hasOutput.assign(m_stateCount, 0);
  for (uint32_t s = 0; s < m_stateCount; ++s) m_hasOutput[s] = !own[s].empty() || m_dict[s] != kNone;

  size_t shortest = SIZE_MAX, windows = 0;
  for (const auto& text : texts) shortest = std::min(shortest, text.size()), windows += text.size();
  if (texts.empty() || shortest < 2) return;
  m_q = static_cast<int>(std::min<size_t>(shortest, 4));
  m_windowMask = m_q == 4 ? ~0ull : (1ull << (16 * m_q)) - 1;
  int bits = 16;  // about 64 bits per window keeps collisions rare; at most 4 Mbit
  while (bits < 22 && (1ull << bits) < 64 * windows) ++bits;
  m_filterShift = 64 - bits;
  m_filter.assign((1ull << bits) / 64, 0);
  for (const auto& text : texts) {
    uint64_t window = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      window = Window(window, Class(text[i]));
      if (i + 1 >= static_cast<size_t>(m_q)) {
        uint64_t bit = (window * kWindowHash) >> m_filterShift;
        m_filter[bit >> 6] |= 1ull << (bit & 63);
      }
    }
  }

  if (m_classCount > 0x10000) return;
  m_flat.resize(0x10000);
  for (uint32_t u = 0; u <= 0xFFFF; ++u) m_flat[u] = static_cast<uint16_t>(m_page[u >> 8][u & 0xFF]);
  m_depth.assign(m_stateCount, 0);
  for (uint32_t s = 1; s < m_stateCount; ++s)  // parents come before their children
    m_depth[s] = static_cast<uint8_t>(std::min(255, m_depth[m_parent[s]] + 1));
  uint64_t jumpCapacity = 16;
  while (jumpCapacity < 2 * windows) jumpCapacity <<= 1;
  m_jumpMask = jumpCapacity - 1;
  m_jumpShift = 64;
  for (uint64_t c = jumpCapacity; c > 1; c >>= 1) --m_jumpShift;
  m_jumps.assign(jumpCapacity, JumpSlot{0, 0});
  for (const auto& text : texts) {
    uint64_t window = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      window = Window(window, Class(text[i]));
      if (i + 1 < static_cast<size_t>(m_q)) continue;
      uint64_t at = (window * kWindowHash) >> m_jumpShift;
      while (m_jumps[at].window != 0 && m_jumps[at].window != window) at = (at + 1) & m_jumpMask;
      if (m_jumps[at].window == window) continue;
      uint32_t next = 0;
      for (size_t k = i + 1 - static_cast<size_t>(m_q); k <= i; ++k) next = Next(next, Class(text[k]));
      m_jumps[at] = JumpSlot{window, next};
    }
  }
}

}  // namespace

struct CPatternMatcher::Impl {
  std::vector<std::wstring> texts[2];  // [0] exact, [1] folded
  std::vector<int> ids[2];
  size_t totalChars = 0;
  bool dirty = false;
  Automaton automaton[2];
  uint32_t state[2] = {0, 0};
  unsigned long long position = 0;
  wchar_t recent[3] = {};  // the last characters fed, oldest first
  size_t recentCount = 0;

  void Remember(const wchar_t* text, size_t length) {
    size_t keep = std::min<size_t>(recentCount, 3 - std::min<size_t>(length, 3));
    std::copy(recent + recentCount - keep, recent + recentCount, recent);
    size_t take = std::min<size_t>(length, 3);
    std::copy(text + length - take, text + length, recent + keep);
    recentCount = keep + take;
  }

  bool Rebuild() {
    try {
      for (int k = 0; k < 2; ++k) {
        std::wstring pending = automaton[k].Empty() ? std::wstring() : automaton[k].PathTo(state[k]);
        automaton[k].Build(texts[k], ids[k], k == 1);
        state[k] = automaton[k].Walk(pending);
      }
      dirty = false;
      return true;
    } catch (const std::bad_alloc&) {
      for (int k = 0; k < 2; ++k) automaton[k] = Automaton(), state[k] = 0;
      dirty = true;
      return false;
    }
  }
};

CPatternMatcher::CPatternMatcher() : m_impl(new Impl) {}
CPatternMatcher::~CPatternMatcher() { delete m_impl; }

bool CPatternMatcher::AddPattern(const wchar_t* text, size_t length, int id, bool ignoreCase) {
  if (!text || length == 0 || length > kMaxPatternChars || m_impl->totalChars + length > kMaxTotalChars) return false;
  try {
    std::wstring pattern(text, length);
    if (ignoreCase)
      for (auto& c : pattern) c = FoldCase(c);
    auto& texts = m_impl->texts[ignoreCase ? 1 : 0];
    auto& ids = m_impl->ids[ignoreCase ? 1 : 0];
    texts.reserve(texts.size() + 1);
    ids.reserve(ids.size() + 1);
    texts.push_back(std::move(pattern));  // cannot throw after the reserves
    ids.push_back(id);
  } catch (const std::bad_alloc&) {
    return false;
  }
  m_impl->totalChars += length;
  m_impl->dirty = true;
  return true;
}

bool CPatternMatcher::AddPattern(const wchar_t* text, int id, bool ignoreCase) {
  return text && AddPattern(text, std::wcslen(text), id, ignoreCase);
}

void CPatternMatcher::Clear() {
  delete m_impl;
  m_impl = new Impl;
}

void CPatternMatcher::Reset() {
  m_impl->state[0] = m_impl->state[1] = 0;
  m_impl->position = 0;
  m_impl->recentCount = 0;
}

bool CPatternMatcher::Feed(wchar_t c, IMatchCallBack* callBack) { return Feed(&c, 1, callBack); }

namespace {

constexpr size_t kFilterFrom = 16;  // shorter chunks step every character

// Feeds `text` through one automaton from state `s` and returns the state after it. `recent` holds
// the last `recentCount` (at most 3) characters fed before `text`, oldest first.
uint32_t FeedThrough(const Automaton& a, uint32_t s, const wchar_t* text, size_t length, const wchar_t* recent,
                     size_t recentCount, unsigned long long position, IMatchCallBack* callBack) {
  if (a.Q() == 0 || length < kFilterFrom) {
    for (size_t i = 0; i < length; ++i) {
      s = a.Next(s, a.Class(text[i]));
      if (a.HasOutput(s)) a.Report(s, position + i + 1, callBack);
    }
    return s;
  }
  // the state after text[end - 1] when the window ending there missed: the walk over the last
  // q-1 characters, the ones fed before `text` included
  auto recover = [&](size_t end) {
    size_t n = std::min<size_t>(static_cast<size_t>(a.Q() - 1), end + recentCount);
    uint32_t t = 0;
    for (size_t k = n; k > 0; --k) t = a.Next(t, a.Class(end >= k ? text[end - k] : recent[recentCount + end - k]));
    return t;
  };
  uint64_t window = 0;
  for (size_t j = 0; j < recentCount; ++j) window = a.Window(window, a.Class(recent[j]));
  // the skipping loop keeps what it reads in registers
  const uint16_t* flat = a.FlatClasses();
  const uint64_t* bits = a.FilterBits();
  const int shift = a.FilterShift();
  const uint64_t mask = a.WindowMask();
  bool exact = true;
  for (size_t i = 0; i < length; ++i) {
    uint32_t cls;
    for (;;) {
      uint32_t u = Unit(text[i]);
      cls = flat && u <= 0xFFFF ? flat[u] : a.Class(text[i]);
      window = ((window << 16) | (cls & 0xFFFF)) & mask;
      uint64_t bit = (window * kWindowHash) >> shift;
      if ((bits[bit >> 6] >> (bit & 63)) & 1) break;
      exact = false;
      if (++i == length) return recover(length);
    }
    if (a.HasJumps() && (!exact || a.Depth(s) < a.Q())) {
      // the state is the walk over the window, kept for every window of a pattern; a window
      // found in no pattern (the filter's collision) ends no match and leaves a short state
      uint32_t jump = a.Jump(window);
      if (jump == kNone) {
        exact = false;
        continue;
      }
      s = jump;
    } else {
      if (!exact) s = recover(i);
      s = a.Next(s, cls);
    }
    exact = true;
    if (a.HasOutput(s)) a.Report(s, position + i + 1, callBack);
  }
  return exact ? s : recover(length);
}

}  // namespace

bool CPatternMatcher::Feed(const wchar_t* text, size_t length, IMatchCallBack* callBack) {
  Impl& m = *m_impl;
  if (m.dirty && !m.Rebuild()) return false;
  if (!text) length = 0;
  unsigned long long position = m.position;
  const bool use[2] = {!m.automaton[0].Empty(), !m.automaton[1].Empty()};
  if (use[0] != use[1]) {  // one kind of pattern
    int k = use[0] ? 0 : 1;
    m.state[k] = FeedThrough(m.automaton[k], m.state[k], text, length, m.recent, m.recentCount, position, callBack);
  } else if (use[0]) {  // both, stepped together so matches come in order of their end
    const Automaton &a = m.automaton[0], &b = m.automaton[1];
    uint32_t s = m.state[0], t = m.state[1];
    for (size_t i = 0; i < length; ++i) {
      s = a.Next(s, a.Class(text[i]));
      t = b.Next(t, b.Class(text[i]));
      if (a.HasOutput(s)) a.Report(s, position + i + 1, callBack);
      if (b.HasOutput(t)) b.Report(t, position + i + 1, callBack);
    }
    m.state[0] = s;
    m.state[1] = t;
  }
  m.position = position + length;
  m.Remember(text, length);
  return true;
}

size_t CPatternMatcher::GetPatternCount() const { return m_impl->ids[0].size() + m_impl->ids[1].size(); }

unsigned long long CPatternMatcher::GetPosition() const { return m_impl->position; }

wchar_t CPatternMatcher::FoldCase(wchar_t c) {
  const uint32_t u = Unit(c);
  auto to = [](uint32_t v) { return static_cast<wchar_t>(v); };
  if (u < 0x80) return u - 'A' < 26 ? to(u + 32) : c;
  if (u < 0x100) {
    if (u >= 0xC0 && u <= 0xDE && u != 0xD7) return to(u + 32);
    return u == 0xB5 ? to(0x3BC) : c;  // micro sign to Greek mu
  }
  if (u < 0x180) {  // Latin Extended-A: upper and lower case side by side
    if (u == 0x130 || u == 0x131 || u == 0x138 || u == 0x149) return c;
    if (u == 0x178) return to(0xFF);
    if (u == 0x17F) return to('s');
    bool oddUpper = (u >= 0x139 && u <= 0x148) || (u >= 0x179 && u <= 0x17E);
    return (u & 1) == (oddUpper ? 1u : 0u) ? to(u + 1) : c;
  }
  if (u >= 0x386 && u <= 0x3C2) {  // Greek
    if (u >= 0x391 && u <= 0x3A9 && u != 0x3A2) return to(u + 0x20);
    if (u == 0x386) return to(0x3AC);
    if (u >= 0x388 && u <= 0x38A) return to(u + 0x25);
    if (u == 0x38C) return to(0x3CC);
    if (u == 0x38E || u == 0x38F) return to(u + 0x3F);
    if (u == 0x3C2) return to(0x3C3);  // final sigma
    return c;
  }
  if (u >= 0x400 && u <= 0x40F) return to(u + 0x50);  // Cyrillic
  if (u >= 0x410 && u <= 0x42F) return to(u + 0x20);
  if (u >= 0xFF21 && u <= 0xFF3A) return to(u + 0x20);  // full-width Latin
  return c;
}

}  // namespace mivo::common
