#pragma once

#include "report/SheetWords.h"
#include "terminal/Table.h"

namespace tool {

/// Which step it is of its history. It belongs into titles, and no piece tells it.
inline constexpr std::string_view kPositionQuantity = "position in the history";

/// What a subject says of itself, a piece for each quantity: defaults stand behind the others, and last where
/// it acts. What is not set, and defaults that ask for nothing, are told with `style.all`, else only where
/// they mean something: a pressure without a value.
[[nodiscard]] Cell PiecesOf(const standalone::sheet::Sheet& sheet, const standalone::sheet::Subject& subject,
                            const Style& style);

}  // namespace tool
