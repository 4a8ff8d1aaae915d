#pragma once

#include "report/SheetPart.h"
#include "report/SheetWords.h"
#include "terminal/Output.h"

namespace tool {

/// What two sheets say differently, for people: first what no upgrade accounts for, each by itself; then, by
/// upgrade, what changes the analysis on purpose, and how much only says the same otherwise. Where several
/// subjects differ alike, they are told once, and of what an upgrade does to many quantities the first; with
/// `style.all` every difference is told.
void PrintComparison(Output& output, const ComparedFiles& files,
                     const standalone::sheet::SheetComparison& comparison, const SheetPart& part,
                     const Style& style);

/// What is different, as a part of a sentence: "pressure was 3 MPa, is not set", "is gone".
[[nodiscard]] std::string SentenceOf(const standalone::sheet::Difference& difference, const Style& style);

}  // namespace tool
