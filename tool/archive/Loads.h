#pragma once

#include <cstdint>
#include <string>

#include "archive/Supervisor.h"
#include "settings/Arguments.h"
#include "settings/Limits.h"

namespace tool {

/// What the supervisor must know of the document.
[[nodiscard]] Load LoadOf(const std::string& document, const Limits& limits);

/// How many workers there may be for so many documents, and how much memory for all of them: what the user
/// chose, or what this machine has.
[[nodiscard]] Supervisor::Settings SettingsFor(const ManyDocuments& many, std::size_t documents);

}  // namespace tool
