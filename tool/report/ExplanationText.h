#pragma once

#include <fmt/format.h>

#include "settings/Explanations.h"

namespace tool {

/// Appends, for people, what an explanation says beyond its first sentences: what goes before the upgrade,
/// what failures mean, before and after, what the analysis says. Lines have at most so many columns, unless a
/// single word has more.
void AppendParts(fmt::memory_buffer& out, const Explanation& explanation, std::size_t columns);
/// Appends sentences in lines that are not too long to be read.
void AppendProse(fmt::memory_buffer& out, std::string_view text, std::size_t indent, std::size_t columns,
                 std::size_t hanging = 0);

}  // namespace tool
