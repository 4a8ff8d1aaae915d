#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace standalone {

/// Of `known`, the one that is most like `text`, when no more than one letter in `lettersPerFault` must be
/// changed, added or taken away to make it; empty when there is none.
[[nodiscard]] std::string_view Resembling(std::string_view text, std::span<const std::string_view> known,
                                          std::size_t lettersPerFault);

}  // namespace standalone
