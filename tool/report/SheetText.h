#pragma once

#include "report/SheetPart.h"
#include "report/SheetWords.h"
#include "terminal/Output.h"

namespace tool {

/// The sheet for people: each case with its steps and what acts in them, then what all cases share. `title`:
/// which document it is of. What is not set, and defaults that ask for nothing, are told with `style.all`
/// only.
void PrintSheet(Output& output, std::string_view title, const standalone::sheet::Sheet& sheet,
                const SheetPart& part, const Style& style);

}  // namespace tool
