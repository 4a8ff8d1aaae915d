#pragma once

#include <string>

#include "report/SheetPart.h"
#include "sheet/Comparison.h"
#include "terminal/Output.h"

namespace tool {

/// The sheet as one JSON object. Numbers are in SI units, which are named.
void PrintJson(Output& output, const std::string& file, const standalone::sheet::Sheet& sheet,
               const SheetPart& part);

/// The same of what two sheets say differently.
void PrintJson(Output& output, const ComparedFiles& files,
               const standalone::sheet::SheetComparison& comparison, const SheetPart& part);

/// Appends a subject, with all that it says, as a JSON object.
void AppendSubject(fmt::memory_buffer& out, const standalone::sheet::Subject& subject);
/// Appends the fields of a record's "sheet": counts, differences and all subjects.
void AppendComparison(fmt::memory_buffer& out, const standalone::sheet::SheetComparison& comparison,
                      const standalone::sheet::Sheet& after);
/// Appends one difference as a JSON object.
void AppendDifference(fmt::memory_buffer& out, const standalone::sheet::Difference& difference);

}  // namespace tool
