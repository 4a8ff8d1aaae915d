#pragma once

#include <utility>

namespace standalone {

/// One `T` for each thread, made when the thread asks for it first and gone with the thread. Only a pointer
/// to it stands in the memory that every thread has from its beginning, of which there is little.
template <class T>
class OfThread {
 public:
  /// Null when the thread is ending and its `T` is gone.
  static T* Get() { return own_ != nullptr ? own_ : Make(); }

 private:
  static T* Make() {
    struct AtEndOfThread {
      ~AtEndOfThread() { delete std::exchange(own_, nullptr); }
    };
    if (hadOwn_) return nullptr;
    own_ = new T;
    hadOwn_ = true;
    static thread_local const AtEndOfThread atEnd;
    return own_;
  }

  static inline constinit thread_local T* own_ = nullptr;
  static inline constinit thread_local bool hadOwn_ = false;
};

}  // namespace standalone
