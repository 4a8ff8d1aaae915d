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

/// The documents of a run in which something needs a person.
struct DocumentsInNeed {
  std::vector<std::string> first;  ///< The first of them, a few; by the names of their backups, if any.
  bool haveBackups = false;        ///< Some of them.
  bool allHaveBackups = false;
};

/// A command that is proposed.
struct ProposedCommand {
  std::string text;
  bool namesFirst = false;  ///< It is about the first documents in need only.
};

/// What shows all that needs a person in a run that wrote no report, done again as a dry run: `places` and
/// `arguments` are those of the run. It names the first in need where nobody can name the documents in a
/// line, and where the backups of some of them are what must be run.
[[nodiscard]] ProposedCommand DryRunOf(const Places& places, const UpgradeArguments& arguments,
                                       const DocumentsInNeed& inNeed);
/// The same of a check of the results.
[[nodiscard]] ProposedCommand CheckOf(const Places& places, const UpgradeArguments& arguments,
                                      const std::vector<std::string>& firstInNeed);

}  // namespace tool
