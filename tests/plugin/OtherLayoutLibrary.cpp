// A plug-in as it was built when descriptions of upgrade libraries had another layout: nothing but the number
// that tells so may be read of it.

#include <cstdint>

namespace {

struct Description {
  std::uint64_t layout;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const Description* HVXGetUpgradeLibrary();

extern "C" const Description* HVXGetUpgradeLibrary() {
  static const Description description{1};
  return &description;
}
