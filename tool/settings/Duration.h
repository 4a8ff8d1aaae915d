#pragma once

#include <optional>
#include <string_view>

namespace tool {

/// The seconds that a text such as "90", "90s", "10m", "2h" or "0.5" tells; empty when it tells none, or more
/// than a clock can wait for.
[[nodiscard]] std::optional<double> SecondsOf(std::string_view text);

}  // namespace tool
