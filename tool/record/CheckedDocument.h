#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "check/Conformity.h"
#include "record/UnknownState.h"
#include "settings/ExitCode.h"
#include "upgrade/UnknownUpgrades.h"

namespace tool {

/// A document that was held against the rules.
struct CheckedDocument {
  std::string file;
  standalone::DocumentPtr document;
  std::vector<standalone::Finding> findings = {};
  standalone::UnknownUpgrades unknown = {};  ///< What it has been through and nobody here knows.
  bool isRefused = false;                    ///< It was not looked at, because of those.

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
    if (isRefused) return unknown.AreOnlyNotLoaded() ? "notLoaded" : "newer";
    return Code() == ExitCode::kDone ? "conforms" : "doesNotConform";
  }
  /// The words for people.
  [[nodiscard]] std::string_view Words() const {
    if (isRefused) return StateOf(unknown);
    return Code() == ExitCode::kDone ? "conforms" : "does not conform";
  }
  [[nodiscard]] ExitCode Code() const {
    if (isRefused) return ExitCode::kNewer;
    if (NeedsPerson()) return ExitCode::kNeedsPerson;
    return HasPending() ? ExitCode::kUpgradeNeeded : ExitCode::kDone;
  }
};

}  // namespace tool
