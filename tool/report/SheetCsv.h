#pragma once

#include "report/SheetPart.h"
#include "terminal/Output.h"

namespace tool {

/// The sheet as comma-separated values (RFC 4180) with a line of headings: a row for each fact. What is not
/// seen is escaped as everywhere.
void PrintCsv(Output& output, const standalone::sheet::Sheet& sheet, const SheetPart& part,
              standalone::sheet::UnitSystem units);

/// The same of what two sheets say differently: a row for each fact that one of them says, or both.
void PrintCsv(Output& output, const standalone::sheet::SheetComparison& comparison, const SheetPart& part,
              standalone::sheet::UnitSystem units);

}  // namespace tool
