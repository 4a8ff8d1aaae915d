#pragma once

#include <string>
#include <vector>

#include "settings/Arguments.h"

/// \file
/// Commands that are proposed to users, to be copied into a shell.

namespace tool {

/// A word of such a command.
[[nodiscard]] std::string ShellWord(const std::string& word);

/// The program, with the options of this run that say which libraries and data it works with:
/// "hvxupgrade --library libAcme.so".
[[nodiscard]] std::string ProgramWith(const Places& places);

/// What shows all that needs a person in a run that wrote no report, done again as a dry run: `places` and
/// `arguments` are those of the run, `firstInNeed` names documents for runs whose documents nobody can name
/// in a line.
[[nodiscard]] std::string DryRunOf(const Places& places, const UpgradeArguments& arguments,
                                   const std::vector<std::string>& firstInNeed);
/// The same of a check of the results.
[[nodiscard]] std::string CheckOf(const Places& places, const UpgradeArguments& arguments,
                                  const std::vector<std::string>& firstInNeed);

}  // namespace tool
