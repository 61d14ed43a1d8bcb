#ifndef DFDL_FOUNDATION_GUARD_H
#define DFDL_FOUNDATION_GUARD_H

#include <memory>

// Calls Delete on an object that has not been handed on. For objects that hold more than memory of their
// adapter (ICU handles above all): an allocation failure passes through as an exception.
template <auto Delete>
struct Deleter {
    template <class T>
    void operator()(T* object) const {
        Delete(object);
    }
};

template <class T, auto Delete>
using Owned = std::unique_ptr<T, Deleter<Delete>>;

// Runs a function when the scope is left, on every road out of it.
template <class F>
class ScopeExit {
  public:
    explicit ScopeExit(F action) : action_(action) {}
    ~ScopeExit() { action_(); }
    ScopeExit(const ScopeExit&) = delete;
    ScopeExit& operator=(const ScopeExit&) = delete;

  private:
    F action_;
};

#endif
