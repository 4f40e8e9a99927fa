#pragma once
// Intrusive reference counts. An object shared by several holders derives from
// RefCountedThreadSafe and is held through RefPtr; it deletes itself when the last holder lets
// go. The count is atomic, so holders on different threads may copy and drop their RefPtrs
// freely; the object itself is not made thread-safe by this.
#include <atomic>
#include <cstddef>
#include <utility>

namespace nbase {

class RefCountedThreadSafe {
 public:
  RefCountedThreadSafe(const RefCountedThreadSafe&) = delete;
  RefCountedThreadSafe& operator=(const RefCountedThreadSafe&) = delete;

  // Adds one reference. Thread-safe.
  void AddRef() const { count_.fetch_add(1, std::memory_order_relaxed); }

  // Drops one reference and deletes the object when it was the last one. Returns true when
  // the object was deleted (it must not be touched afterwards). Thread-safe.
  bool Release() const {
    // acquire-release: whatever the other holders wrote happens before the deletion
    if (count_.fetch_sub(1, std::memory_order_acq_rel) != 1) return false;
    delete this;
    return true;
  }

  // True while exactly one reference is held: its holder is the only one that can see the
  // object, and may change it without a lock.
  bool HasOneRef() const { return count_.load(std::memory_order_acquire) == 1; }

 protected:
  // A new object has no reference yet; the first RefPtr to it adds one.
  RefCountedThreadSafe() = default;
  virtual ~RefCountedThreadSafe() = default;

 private:
  mutable std::atomic<int> count_{0};
};

// Holds one reference to a T (a RefCountedThreadSafe) or nothing. Copying adds a reference,
// destroying or resetting drops it. One RefPtr object is not itself safe to change from two
// threads at once; distinct RefPtrs to the same object are.
template <typename T>
class RefPtr {
 public:
  RefPtr() = default;
  RefPtr(std::nullptr_t) {}
  RefPtr(T* object) : ptr_(object) {
    if (ptr_) ptr_->AddRef();
  }
  RefPtr(const RefPtr& other) : RefPtr(other.ptr_) {}
  RefPtr(RefPtr&& other) noexcept : ptr_(std::exchange(other.ptr_, nullptr)) {}
  ~RefPtr() { reset(); }

  RefPtr& operator=(RefPtr other) noexcept {
    std::swap(ptr_, other.ptr_);
    return *this;
  }

  // Drops the reference held, if any; the object goes when that was its last.
  void reset() {
    if (T* old = std::exchange(ptr_, nullptr)) old->Release();
  }

  T* get() const { return ptr_; }
  T& operator*() const { return *ptr_; }
  T* operator->() const { return ptr_; }
  explicit operator bool() const { return ptr_ != nullptr; }

 private:
  T* ptr_ = nullptr;
};

// Makes a T and returns the first reference to it.
template <typename T, typename... Args>
RefPtr<T> MakeRefCounted(Args&&... args) {
  return RefPtr<T>(new T(std::forward<Args>(args)...));
}

}  // namespace nbase
