#pragma once
// Callbacks that die with their owner. An object that schedules work for later (a timer, a
// button handler bound to a form) derives from SupportWeakCallback; whoever runs the work
// holds only a weak reference to the object's lifetime flag and skips the work once the
// object is gone. The check is not a lock: run the callbacks on the thread that destroys
// the owner (the UI thread), as the UI framework does.
#include <memory>
#include <type_traits>
#include <utility>

namespace nbase {

// The lifetime flag itself carries nothing; only whether it is still alive matters.
struct WeakFlag {};

class SupportWeakCallback {
 public:
  SupportWeakCallback() : flag_(std::make_shared<WeakFlag>()) {}
  // A copy is a different object with a life of its own, so it gets its own flag, and
  // assigning keeps the flag this object already handed out.
  SupportWeakCallback(const SupportWeakCallback&) : flag_(std::make_shared<WeakFlag>()) {}
  SupportWeakCallback& operator=(const SupportWeakCallback&) { return *this; }
  virtual ~SupportWeakCallback() = default;

  std::weak_ptr<WeakFlag> GetWeakFlag() const { return flag_; }

  template <typename Callable>
  auto ToWeakCallback(Callable&& callable) const;

 protected:
  // Expires every weak reference handed out so far; later ones see the new flag.
  void RenewWeakFlag() { flag_ = std::make_shared<WeakFlag>(); }

 private:
  std::shared_ptr<WeakFlag> flag_;
};

// A callable that runs only while its flag lives. When the flag has expired a call does
// nothing and yields a value-initialised result.
template <typename Callable>
class WeakCallback {
 public:
  WeakCallback(std::weak_ptr<WeakFlag> flag, Callable callable)
      : flag_(std::move(flag)), callable_(std::move(callable)) {}

  bool Expired() const { return flag_.expired(); }

  template <typename... Args>
  auto operator()(Args&&... args) const {
    using Result = std::invoke_result_t<const Callable&, Args...>;
    if (flag_.expired()) {
      if constexpr (std::is_void_v<Result>) {
        return;
      } else {
        return Result{};
      }
    }
    return callable_(std::forward<Args>(args)...);
  }

 private:
  std::weak_ptr<WeakFlag> flag_;
  Callable callable_;
};

template <typename Callable>
WeakCallback<std::decay_t<Callable>> MakeWeakCallback(std::weak_ptr<WeakFlag> flag, Callable&& callable) {
  return WeakCallback<std::decay_t<Callable>>(std::move(flag), std::forward<Callable>(callable));
}

template <typename Callable>
auto SupportWeakCallback::ToWeakCallback(Callable&& callable) const {
  return MakeWeakCallback(GetWeakFlag(), std::forward<Callable>(callable));
}

// A stand-alone flag for code that is not itself an object with a lifetime: Cancel() drops
// every callback made from it so far, without destroying anything.
class WeakCallbackFlag : public SupportWeakCallback {
 public:
  void Cancel() { RenewWeakFlag(); }
};

}  // namespace nbase
