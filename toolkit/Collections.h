#pragma once
// The framework's containers: CArray, CList and the string forms CStringArray, CStringList
// and CMapStringToString. Out-of-range indexes raise CInvalidArgException, as the
// framework's checked builds do. Header-only, so a module gets them without imports.
#include <map>
#include <utility>
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/Exception.h"
#include "toolkit/platform.h"

template <typename TYPE, typename ARG_TYPE = const TYPE&>
class CArray {
 public:
  INT_PTR GetSize() const { return static_cast<INT_PTR>(m_items.size()); }
  INT_PTR GetCount() const { return GetSize(); }
  bool IsEmpty() const { return m_items.empty(); }
  INT_PTR GetUpperBound() const { return GetSize() - 1; }
  void SetSize(INT_PTR size) { m_items.resize(size < 0 ? 0 : static_cast<size_t>(size)); }

  const TYPE& GetAt(INT_PTR i) const { return m_items[Check(i)]; }
  TYPE& GetAt(INT_PTR i) { return m_items[Check(i)]; }
  TYPE& ElementAt(INT_PTR i) { return m_items[Check(i)]; }
  void SetAt(INT_PTR i, ARG_TYPE value) { m_items[Check(i)] = value; }
  const TYPE& operator[](INT_PTR i) const { return GetAt(i); }
  TYPE& operator[](INT_PTR i) { return GetAt(i); }
  const TYPE* GetData() const { return m_items.data(); }
  TYPE* GetData() { return m_items.data(); }

  INT_PTR Add(ARG_TYPE value) {
    m_items.push_back(value);
    return GetUpperBound();
  }
  INT_PTR Append(const CArray& other) {
    INT_PTR first = GetSize();
    m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
    return first;
  }
  void Copy(const CArray& other) { m_items = other.m_items; }
  void SetAtGrow(INT_PTR i, ARG_TYPE value) {
    if (i < 0) AfxThrowInvalidArgException();
    if (i >= GetSize()) SetSize(i + 1);
    m_items[static_cast<size_t>(i)] = value;
  }
  void InsertAt(INT_PTR i, ARG_TYPE value, INT_PTR count = 1) {
    if (i < 0 || count < 0) AfxThrowInvalidArgException();
    if (i > GetSize()) SetSize(i);
    m_items.insert(m_items.begin() + i, static_cast<size_t>(count), value);
  }
  void RemoveAt(INT_PTR i, INT_PTR count = 1) {
    if (i < 0 || count < 0 || i + count > GetSize()) AfxThrowInvalidArgException();
    m_items.erase(m_items.begin() + i, m_items.begin() + i + count);
  }
  void RemoveAll() { m_items.clear(); }

  typename std::vector<TYPE>::const_iterator begin() const { return m_items.begin(); }
  typename std::vector<TYPE>::const_iterator end() const { return m_items.end(); }
  typename std::vector<TYPE>::iterator begin() { return m_items.begin(); }
  typename std::vector<TYPE>::iterator end() { return m_items.end(); }

 private:
  size_t Check(INT_PTR i) const {
    if (i < 0 || i >= GetSize()) AfxThrowInvalidArgException();
    return static_cast<size_t>(i);
  }
  std::vector<TYPE> m_items;
};

class CStringArray : public CArray<CString, const CString&> {
 public:
  INT_PTR Add(const wchar_t* text) { return CArray::Add(CString(text)); }
  INT_PTR Add(const CString& text) { return CArray::Add(text); }
};

// Doubly linked list walked with POSITION, as in the framework.
template <typename TYPE, typename ARG_TYPE = const TYPE&>
class CList {
  struct Node {
    Node* prev;
    Node* next;
    TYPE data;
  };
  static Node* N(POSITION p) { return reinterpret_cast<Node*>(p); }
  static POSITION P(Node* n) { return reinterpret_cast<POSITION>(n); }

 public:
  CList() = default;
  CList(const CList& other) { AddTail(&other); }
  CList& operator=(const CList& other) {
    if (this != &other) {
      RemoveAll();
      AddTail(&other);
    }
    return *this;
  }
  ~CList() { RemoveAll(); }

  INT_PTR GetCount() const { return m_count; }
  INT_PTR GetSize() const { return m_count; }
  bool IsEmpty() const { return m_count == 0; }

  TYPE& GetHead() { return NonEmpty(m_head)->data; }
  const TYPE& GetHead() const { return NonEmpty(m_head)->data; }
  TYPE& GetTail() { return NonEmpty(m_tail)->data; }
  const TYPE& GetTail() const { return NonEmpty(m_tail)->data; }

  POSITION AddHead(ARG_TYPE value) { return InsertBefore(P(m_head), value); }
  POSITION AddTail(ARG_TYPE value) { return InsertAfter(P(m_tail), value); }
  void AddTail(const CList* other) {
    for (Node* n = other->m_head; n; n = n->next) AddTail(n->data);
  }
  void AddHead(const CList* other) {
    for (Node* n = other->m_tail; n; n = n->prev) AddHead(n->data);
  }

  POSITION InsertBefore(POSITION pos, ARG_TYPE value) {
    Node* at = N(pos);
    Node* n = new Node{at ? at->prev : nullptr, at, value};
    if (!at) {  // empty list, or before nothing: becomes the only/first node
      n->next = m_head;
      if (m_head) m_head->prev = n;
      m_head = n;
      if (!m_tail) m_tail = n;
    } else {
      if (at->prev)
        at->prev->next = n;
      else
        m_head = n;
      at->prev = n;
    }
    ++m_count;
    return P(n);
  }
  POSITION InsertAfter(POSITION pos, ARG_TYPE value) {
    Node* at = N(pos);
    Node* n = new Node{at, at ? at->next : nullptr, value};
    if (!at) {
      n->prev = m_tail;
      if (m_tail) m_tail->next = n;
      m_tail = n;
      if (!m_head) m_head = n;
    } else {
      if (at->next)
        at->next->prev = n;
      else
        m_tail = n;
      at->next = n;
    }
    ++m_count;
    return P(n);
  }

  TYPE RemoveHead() {
    TYPE v = NonEmpty(m_head)->data;
    RemoveAt(P(m_head));
    return v;
  }
  TYPE RemoveTail() {
    TYPE v = NonEmpty(m_tail)->data;
    RemoveAt(P(m_tail));
    return v;
  }
  void RemoveAt(POSITION pos) {
    Node* n = NonEmpty(N(pos));
    if (n->prev)
      n->prev->next = n->next;
    else
      m_head = n->next;
    if (n->next)
      n->next->prev = n->prev;
    else
      m_tail = n->prev;
    delete n;
    --m_count;
  }
  void RemoveAll() {
    while (m_head) {
      Node* next = m_head->next;
      delete m_head;
      m_head = next;
    }
    m_tail = nullptr;
    m_count = 0;
  }

  POSITION GetHeadPosition() const { return P(m_head); }
  POSITION GetTailPosition() const { return P(m_tail); }
  TYPE& GetNext(POSITION& pos) {
    Node* n = NonEmpty(N(pos));
    pos = P(n->next);
    return n->data;
  }
  const TYPE& GetNext(POSITION& pos) const {
    Node* n = NonEmpty(N(pos));
    pos = P(n->next);
    return n->data;
  }
  TYPE& GetPrev(POSITION& pos) {
    Node* n = NonEmpty(N(pos));
    pos = P(n->prev);
    return n->data;
  }
  TYPE& GetAt(POSITION pos) { return NonEmpty(N(pos))->data; }
  const TYPE& GetAt(POSITION pos) const { return NonEmpty(N(pos))->data; }
  void SetAt(POSITION pos, ARG_TYPE value) { NonEmpty(N(pos))->data = value; }
  POSITION Find(ARG_TYPE value, POSITION after = nullptr) const {
    for (Node* n = after ? N(after)->next : m_head; n; n = n->next)
      if (n->data == value) return P(n);
    return nullptr;
  }
  POSITION FindIndex(INT_PTR index) const {
    if (index < 0) return nullptr;
    Node* n = m_head;
    while (n && index--) n = n->next;
    return P(n);
  }

 private:
  static Node* NonEmpty(Node* n) {
    if (!n) AfxThrowInvalidArgException();
    return n;
  }
  Node* m_head = nullptr;
  Node* m_tail = nullptr;
  INT_PTR m_count = 0;
};

class CStringList : public CList<CString, const CString&> {
 public:
  POSITION AddTail(const wchar_t* text) { return CList::AddTail(CString(text)); }
  POSITION AddTail(const CString& text) { return CList::AddTail(text); }
  void AddTail(const CStringList* other) { CList::AddTail(other); }
  POSITION AddHead(const wchar_t* text) { return CList::AddHead(CString(text)); }
  POSITION AddHead(const CString& text) { return CList::AddHead(text); }
};

// Case-sensitive map of strings. Iteration with GetStartPosition/GetNextAssoc visits the
// keys in ordinal order (the framework leaves the order open).
class CMapStringToString {
  using Map = std::map<CString, CString>;

 public:
  INT_PTR GetCount() const { return static_cast<INT_PTR>(m_map.size()); }
  INT_PTR GetSize() const { return GetCount(); }
  bool IsEmpty() const { return m_map.empty(); }

  BOOL Lookup(const wchar_t* key, CString& value) const {
    auto it = m_map.find(CString(key));
    if (it == m_map.end()) return FALSE;
    value = it->second;
    return TRUE;
  }
  const CString* PLookup(const wchar_t* key) const {
    auto it = m_map.find(CString(key));
    return it == m_map.end() ? nullptr : &it->second;
  }
  void SetAt(const wchar_t* key, const wchar_t* value) { m_map[CString(key)] = value; }
  CString& operator[](const wchar_t* key) { return m_map[CString(key)]; }
  BOOL RemoveKey(const wchar_t* key) { return m_map.erase(CString(key)) ? TRUE : FALSE; }
  void RemoveAll() { m_map.clear(); }

  POSITION GetStartPosition() const { return ToPos(m_map.begin()); }
  void GetNextAssoc(POSITION& pos, CString& key, CString& value) const {
    if (!pos) AfxThrowInvalidArgException();
    const auto* entry = reinterpret_cast<const Map::value_type*>(pos);
    key = entry->first;
    value = entry->second;
    pos = ToPos(std::next(m_map.find(entry->first)));
  }

  Map::const_iterator begin() const { return m_map.begin(); }
  Map::const_iterator end() const { return m_map.end(); }

 private:
  POSITION ToPos(Map::const_iterator it) const {
    return it == m_map.end() ? nullptr : reinterpret_cast<POSITION>(const_cast<Map::value_type*>(&*it));
  }
  Map m_map;
};
