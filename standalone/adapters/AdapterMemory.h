#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace standalone {

/// The memory of adapters: made and given back by the million, a few at a time. Every thread keeps some
/// pieces, until it ends. Where memory is watched, each comes from the system, so that the use of one that is
/// gone is noticed.
class AdapterMemory {
 public:
  static void* Take(std::size_t bytes) {
    if (!IsKept(bytes)) return ::operator new(bytes);
    if (kept_ == nullptr) return ::operator new(kBytes);
    ++room_;
    return std::exchange(kept_, kept_->next);
  }
  static void GiveBack(void* memory, std::size_t bytes) noexcept {
    if (!IsKept(bytes) || (room_ == 0 && !MakeRoom())) {
      ::operator delete(memory);
      return;
    }
    --room_;
    kept_ = new (memory) Piece{kept_};
  }

 private:
  struct Piece {
    Piece* next;
  };
  static constexpr std::size_t kBytes = 32;  // of one interface of one feature
  static constexpr std::size_t kMostKept = 1024;
  static constexpr bool IsKept([[maybe_unused]] std::size_t bytes) {
#ifdef HVX_SANITIZED
    return false;
#else
    return bytes <= kBytes;
#endif
  }
  /// The first time in a thread, which keeps pieces from then on; false later.
  static bool MakeRoom() noexcept;

  static constinit thread_local Piece* kept_;
  static constinit thread_local std::size_t room_;  // for so many more
};

}  // namespace standalone
