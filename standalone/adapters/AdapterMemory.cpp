#include "adapters/AdapterMemory.h"

namespace standalone {
namespace {

constinit thread_local bool hadRoom = false;

}  // namespace

constinit thread_local AdapterMemory::Piece* AdapterMemory::kept_ = nullptr;
constinit thread_local std::size_t AdapterMemory::room_ = 0;

bool AdapterMemory::MakeRoom() noexcept {
  struct AtEndOfThread {
    ~AtEndOfThread() {
      // What goes after this, such as a document of the session, may still give back adapters.
      room_ = 0;
      while (kept_ != nullptr) ::operator delete(std::exchange(kept_, kept_->next));
    }
  };
  if (std::exchange(hadRoom, true)) return false;
  static thread_local const AtEndOfThread atEnd;
  room_ = kMostKept;
  return true;
}

}  // namespace standalone
