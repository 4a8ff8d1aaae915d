// Every way to get memory: malloc and its like, and through them operator new.
#include <cerrno>
#include <cstddef>

#include "Faults.h"

// What malloc calls itself in the C library: asking for its address would take memory.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* old, std::size_t size);
extern "C" void* __libc_memalign(std::size_t alignment, std::size_t size);

using torture::Call;
using torture::Fails;

extern "C" void* malloc(std::size_t size) {
  return Fails(Call::k_alloc) ? nullptr : __libc_malloc(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) {
  return Fails(Call::k_alloc) ? nullptr : __libc_calloc(count, size);
}

extern "C" void* realloc(void* old, std::size_t size) {
  return Fails(Call::k_alloc) ? nullptr : __libc_realloc(old, size);
}

extern "C" void* memalign(std::size_t alignment, std::size_t size) {
  return Fails(Call::k_alloc) ? nullptr : __libc_memalign(alignment, size);
}

extern "C" void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return Fails(Call::k_alloc) ? nullptr : __libc_memalign(alignment, size);
}

extern "C" int posix_memalign(void** out, std::size_t alignment, std::size_t size) {
  if (Fails(Call::k_alloc)) return ENOMEM;
  void* const memory = __libc_memalign(alignment, size);
  if (memory == nullptr) return ENOMEM;
  *out = memory;
  return 0;
}
