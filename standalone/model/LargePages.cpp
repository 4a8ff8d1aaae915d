#include "model/LargePages.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>

namespace standalone {
namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;

// Whole large pages: the rest of a piece that ends within one would come as thousands of small ones.
std::size_t SizeOf(std::size_t bytes) {
  return bytes < kLargePage ? bytes : (bytes + kLargePage - 1) / kLargePage * kLargePage;
}

std::align_val_t AlignmentOf(std::size_t bytes, std::size_t alignment) {
  return std::align_val_t(bytes < kLargePage ? alignment : std::max(alignment, kLargePage));
}

}  // namespace

LargePages& LargePages::Instance() {
  static LargePages instance;
  return instance;
}

void* LargePages::do_allocate(std::size_t bytes, std::size_t alignment) {
  void* const memory = ::operator new(SizeOf(bytes), AlignmentOf(bytes, alignment));
  // Only advice: without large pages the memory works as well.
  if (bytes >= kLargePage) static_cast<void>(madvise(memory, SizeOf(bytes), MADV_HUGEPAGE));
  return memory;
}

void LargePages::do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) {
  ::operator delete(memory, AlignmentOf(bytes, alignment));
}

}  // namespace standalone
