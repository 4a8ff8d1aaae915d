#pragma once

#include <string>
#include <vector>

#include "settings/Explanations.h"
#include "upgrade/VersionManager.h"

namespace tool::page {

/// What a page of runs is made from.
struct RunPageSource {
  std::vector<std::string> reports;    ///< Files; of a document the last record counts.
  bool isKept = true;                  ///< Whether the reports stay, for who wants to see more.
  std::vector<std::string> documents;  ///< Only these; empty for all.
  const standalone::VersionManager& manager;
  Explanations explanations;
};

/// Makes the page `file` ("-": standard output) of what runs did to documents. What stands there is replaced
/// when `overwrite` allows it or it is such a page. Throws `standalone::DocumentError` when a report cannot
/// be read (`kUnreadable`) or is none (`kInvalid`), or the page cannot be written (`kUnwritable`), and
/// `UsageError` for documents that no report knows.
void WriteRunPage(const RunPageSource& source, const std::string& file, bool overwrite);

}  // namespace tool::page
