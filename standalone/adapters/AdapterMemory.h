#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace standalone {

/// The memory of adapters: made and given back by the million, a few at a time. Where memory is watched, each
/// comes from the system, so that the use of one that is gone is noticed.
class AdapterMemory {
 public:
  static void* Take(std::size_t bytes) {
#ifndef HVX_SANITIZED
    if (bytes <= kBytes) {
      if (kept_ == nullptr) return ::operator new(kBytes);
      --keptCount_;
      return std::exchange(kept_, kept_->next);
    }
#endif
    return ::operator new(bytes);
  }
  static void GiveBack(void* memory, std::size_t bytes) noexcept {
#ifndef HVX_SANITIZED
    if (bytes <= kBytes && keptCount_ < kMostKept) {
      ++keptCount_;
      kept_ = new (memory) Piece{kept_};
      return;
    }
#endif
    ::operator delete(memory);
  }

 private:
  struct Piece {
    Piece* next;
  };
  static constexpr std::size_t kBytes = 32;  // of one interface of one feature
  static constexpr std::size_t kMostKept = 1024;
  static Piece* kept_;
  static std::size_t keptCount_;
};

}  // namespace standalone
