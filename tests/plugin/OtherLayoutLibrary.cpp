// Plug-ins as they are built with other headers: nothing but what a description begins with may be read of
// them. HVX_DESCRIPTION says what that is, as words of 64 bits.

#include <cstdint>

extern "C" __attribute__((visibility("default"))) const std::uint64_t* HVXGetUpgradeLibrary();

extern "C" const std::uint64_t* HVXGetUpgradeLibrary() {
  static const std::uint64_t description[] = {HVX_DESCRIPTION};
  return description;
}
