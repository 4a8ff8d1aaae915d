#pragma once

#include <string>

#include "upgrade/UpgradeRun.h"

/// \file
/// Where a run is, and whose upgrade that is, in words for people.

namespace standalone {

/// Who answers for `upgrade` on features of a late type: the class whose routine `row` is; where that is
/// null, `upgradeClass`; where that is null too, the first class that lists the late type.
[[nodiscard]] Answerable AnswerableFor(const KnownUpgrade& upgrade, std::string_view lateType,
                                       const HVXUpgradeClass* upgradeClass = nullptr,
                                       const HVXUpgradeBinding* row = nullptr);
[[nodiscard]] Answerable AnswerableAt(const UpgradePlace& place);

/// Such as "AcmeBoltUpgrade of AcmeUpgrades 3.1".
[[nodiscard]] std::string WordsOf(const Answerable& answerable);
/// The version of a library; empty where it tells none.
[[nodiscard]] std::string_view VersionOf(const HVXUpgradeLibrary& library);

/// Such as: AcmeBoltLT "Bolt.1" (id 2), AcmeBoltDiameter (AcmeBoltUpgrade of AcmeUpgrades 3.1).
[[nodiscard]] std::string WordsOf(const UpgradePlace& place);
/// What to do when something broke there, as a sentence without its full stop.
[[nodiscard]] std::string AdviceAt(const UpgradePlace& place);

}  // namespace standalone
