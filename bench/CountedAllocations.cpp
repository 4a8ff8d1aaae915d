// Has all memory of the program counted that is asked for by `new`.

#include <cstdlib>
#include <new>

#include "Trip.h"

namespace {

void Count(std::size_t bytes) {
  ++bench::allocationCount.count;
  bench::allocationCount.bytes += bytes;
}

void* Allocated(std::size_t bytes, std::size_t alignment) {
  Count(bytes);
  // What is asked for by alignment must be a multiple of it.
  void* const memory = alignment <= alignof(std::max_align_t)
                           ? std::malloc(bytes)
                           : std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t bytes) {
  return Allocated(bytes, 1);
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
  return Allocated(bytes, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/, std::align_val_t /*alignment*/) noexcept {
  std::free(memory);
}
