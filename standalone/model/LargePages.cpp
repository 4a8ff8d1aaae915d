#include "model/LargePages.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace standalone {
namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;

std::size_t AlignmentOf(std::size_t bytes, std::size_t alignment) {
  return bytes >= kLargePage ? std::max(alignment, kLargePage) : alignment;
}

}  // namespace

LargePages& LargePages::Instance() {
  static LargePages instance;
  return instance;
}

void* LargePages::do_allocate(std::size_t bytes, std::size_t alignment) {
  void* const memory = ::operator new(bytes, std::align_val_t(AlignmentOf(bytes, alignment)));
  // Only advice: without large pages the memory works as well.
  if (bytes >= kLargePage) static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE));
  return memory;
}

void LargePages::do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) {
  ::operator delete(memory, std::align_val_t(AlignmentOf(bytes, alignment)));
}

}  // namespace standalone
