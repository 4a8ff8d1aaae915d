#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "upgrade/Choice.h"
#include "upgrade/VersionManager.h"

namespace tool {

/// The upgrade of that name. Throws `UsageError`, with the nearest name that there is, for an unknown one.
[[nodiscard]] const standalone::KnownUpgrade& KnownOrRefuse(const standalone::VersionManager& manager,
                                                            std::string_view identifier);

/// Which of a document's pending upgrades the user wants to be run.
class Selection {
 public:
  /// `only`: these, where not empty; `until`: up to and with this one, where not empty. Throws `UsageError`
  /// for names that cannot be run. `manager` must outlive it.
  Selection(const standalone::VersionManager& manager, const std::vector<std::string>& only,
            const std::string& until);

  /// What runs again besides what the rules find left behind: of upgrades of other libraries, those that the
  /// user names.
  [[nodiscard]] std::vector<standalone::VersionManager::Again> NamedAgain(
      standalone::Document& document) const;

  /// Those of `pending` that are wanted, and those that must not be left out with them.
  [[nodiscard]] standalone::Choice Of(const std::vector<std::string>& pending) const {
    return standalone::ChooseUpgrades(manager_, wanted_, pending);
  }

 private:
  const standalone::VersionManager& manager_;
  std::vector<std::string> wanted_;
  std::vector<std::string> named_;
};

}  // namespace tool
