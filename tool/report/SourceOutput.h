#pragma once

#include <string>

#include "model/UpgradeSources.h"
#include "report/JsonOutput.h"

/// \file
/// From which libraries a document's upgrades came.

namespace tool {

/// Such as "AcmeUpgrades 3.1", as it is to be printed.
[[nodiscard]] std::string WordsOf(const standalone::UpgradeSource& source);

/// The libraries that the document tells of, as the value of "libraries".
void AppendSources(JsonObject& object, const standalone::UpgradeSources& sources);
/// Name and version of one of them.
void AppendSource(JsonObject& object, std::string_view key, const standalone::UpgradeSource& source);

}  // namespace tool
