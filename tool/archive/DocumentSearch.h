#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "record/GivenDocument.h"
#include "settings/ExitCode.h"
#include "settings/Sources.h"

namespace tool {

struct FoundDocuments {
  /// In the order of what was given; those of one folder by their place in it. None stands there twice.
  std::vector<GivenDocument> documents;
  /// What could not be searched, and that nothing was found at all: sentences for people, each naming its
  /// folder.
  std::vector<std::string> problems;
  /// Whether a folder was searched, or a list read: there may be more than anybody named.
  bool areSearched = false;
};

/// The documents of files, folders and lists. A file is taken as it is given, whether it exists or not; a
/// folder stands for the documents beneath it, as `Sources` describes. What stands beneath `results`, where
/// the run itself writes, is left out, and in folders the backups with `backupSuffix`; empty for nothing.
/// Throws `standalone::DocumentError` (`kUnreadable`) when a list cannot be read.
[[nodiscard]] FoundDocuments FindDocuments(const Sources& sources, const std::filesystem::path& results = {},
                                           const std::string& backupSuffix = {});

/// Tells the problems on standard error; gives the exit code that they deserve.
[[nodiscard]] ExitCode TellProblems(const FoundDocuments& found);

/// The same for the end of a long run, as a list under its title; empty without any.
[[nodiscard]] std::string ListOfProblems(const FoundDocuments& found);

}  // namespace tool
