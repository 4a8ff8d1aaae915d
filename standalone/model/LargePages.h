#pragma once

#include <memory_resource>

namespace standalone {

/// Memory for arenas: asks the system for large pages, which cost a document of a million features a fraction
/// of the page faults. Pages that are not touched cost nothing.
class LargePages final : public std::pmr::memory_resource {
 public:
  static LargePages& Instance();

 private:
  void* do_allocate(std::size_t bytes, std::size_t alignment) override;
  void do_deallocate(void* memory, std::size_t bytes, std::size_t alignment) override;
  [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override {
    return this == &other;
  }
};

}  // namespace standalone
