#pragma once

#include <CLI/CLI.hpp>

#include "settings/Arguments.h"

namespace tool {

/// The command that upgrades documents, with all its options.
void AddUpgrade(CLI::App& app, UpgradeArguments& upgrade);

/// Once all was parsed: makes of the texts what they stand for. Throws `UsageError` when options contradict
/// each other or something lacks.
void Check(UpgradeArguments& upgrade, const CLI::App& verb);

}  // namespace tool
