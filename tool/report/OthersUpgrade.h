#pragma once

#include <simdjson.h>

#include <string>

namespace tool {

/// Of an entry of a record's "needsPerson": whose upgrade failed, such as "AcmeBoltUpgrade of AcmeUpgrades
/// 3.1"; empty for the built-in library's, and where none failed.
[[nodiscard]] std::string OthersIn(simdjson::dom::element item);

}  // namespace tool
