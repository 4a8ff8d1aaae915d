#include <fmt/format.h>

#include "check/Conformity.h"

namespace standalone {

std::string_view NameOf(FindingKind kind) {
  switch (kind) {
    case FindingKind::kPending:
      return "pending";
    case FindingKind::kLeftBehind:
      return "leftBehind";
    case FindingKind::kBeyondUpgrades:
      return "beyondUpgrades";
    case FindingKind::kUnknown:
      return "unknown";
  }
  return {};
}

std::string_view WordsFor(FindingKind kind) {
  switch (kind) {
    case FindingKind::kLeftBehind:
      return "left behind";
    case FindingKind::kBeyondUpgrades:
      return "beyond upgrades";
    default:
      return NameOf(kind);
  }
}

std::string Finding::Explanation() const {
  return damage.empty() ? std::string(reason) : fmt::format("{}: {}", reason, damage);
}

std::string Finding::NextStep() const {
  switch (kind) {
    case FindingKind::kPending:
      return remedy.empty() ? "Run hvxupgrade upgrade" : remedy + ", then run hvxupgrade upgrade";
    case FindingKind::kLeftBehind:
      return remedy.empty() ? "Run hvxupgrade upgrade --retry"
                            : remedy + ", then run hvxupgrade upgrade --retry";
    case FindingKind::kBeyondUpgrades:
      return remedy.empty() ? "Give the feature these values anew in the workbench" : remedy;
    case FindingKind::kUnknown:
      return remedy.empty() ? "Nothing needs to be done: they are kept as they are" : remedy;
  }
  return {};
}

bool Finding::NeedsPerson() const {
  return kind == FindingKind::kUnknown ? !key.empty() : kind != FindingKind::kPending;
}

}  // namespace standalone
