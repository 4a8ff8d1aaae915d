#include "support/FailingAllocations.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();
thread_local std::size_t left = kNever;
thread_local bool haveFailed = false;

}  // namespace

#if !defined(HVX_SANITIZED)

namespace {

bool Fails() {
  if (left == kNever) return false;
  haveFailed = haveFailed || left == 0;
  if (left != 0) --left;
  return haveFailed;
}

void* Allocate(std::size_t size, std::size_t alignment) {
  if (Fails()) return nullptr;
  if (size == 0) size = 1;
  if (alignment == 0) return std::malloc(size);
  return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* const memory = Allocate(size, alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// The forms for arrays come to these; what they give is given back by the standard library's own delete,
// which frees it.
void* operator new(std::size_t size) {
  return AllocateOrThrow(size, 0);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size, 0);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return Allocate(size, static_cast<std::size_t>(alignment));
}

#endif

namespace testing_support {

bool CanFailAllocations() {
#if defined(HVX_SANITIZED)
  return false;
#else
  return true;
#endif
}

FailingAllocations::FailingAllocations(std::size_t countdown) {
  haveFailed = false;
  left = countdown;
}

FailingAllocations::~FailingAllocations() {
  left = kNever;
}

bool FailingAllocations::HaveFailed() {
  return haveFailed;
}

}  // namespace testing_support
