#pragma once

#include <simdjson.h>

#include <string>

namespace tool::page {

/// What a page tells of a library whose upgrades a document has been through and nobody here knows, an entry
/// of "missingLibraries".
[[nodiscard]] std::string NoteOnMissing(simdjson::dom::element library);

}  // namespace tool::page
