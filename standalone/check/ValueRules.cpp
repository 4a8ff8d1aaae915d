#include "check/Rules.h"
namespace standalone {
std::span<const ConformityRule> ValueRules() {
  return {};
}
}  // namespace standalone
