#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "check/Conformity.h"
#include "settings/ExitCode.h"

namespace tool {

/// A document that was held against the rules.
struct CheckedDocument {
  std::string file;
  standalone::DocumentPtr document;
  std::vector<standalone::Finding> findings;
  std::vector<std::string> unknown;  ///< Upgrades that it has been through, of a later release.

  [[nodiscard]] bool HasPending() const {
    return std::ranges::any_of(findings, [](const standalone::Finding& each) {
      return each.kind == standalone::FindingKind::kPending;
    });
  }
  [[nodiscard]] bool NeedsPerson() const {
    return std::ranges::any_of(findings, [](const standalone::Finding& each) { return each.NeedsPerson(); });
  }
  /// The word for programs.
  [[nodiscard]] std::string_view Verdict() const {
    if (!unknown.empty()) return "newer";
    return Code() == ExitCode::kDone ? "conforms" : "doesNotConform";
  }
  /// The words for people.
  [[nodiscard]] std::string_view Words() const {
    if (!unknown.empty()) return "newer than this program";
    return Code() == ExitCode::kDone ? "conforms" : "does not conform";
  }
  [[nodiscard]] ExitCode Code() const {
    if (!unknown.empty()) return ExitCode::kNewer;
    if (NeedsPerson()) return ExitCode::kNeedsPerson;
    return HasPending() ? ExitCode::kUpgradeNeeded : ExitCode::kDone;
  }
};

}  // namespace tool
