#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "report/ReportFile.h"

/// \file
/// The forms in which reports are told. Each goes through the reports as often as it takes and keeps nothing
/// of a document that is told, so that it is as small for many documents as for some.

namespace tool {

using Reports = std::vector<std::unique_ptr<ReportFile>>;
/// Takes what is written, in pieces.
using Writer = std::function<void(std::string_view bytes)>;

/// For people at the end of a run: what became of it all; then what needs a person, why, and the next step;
/// then totals; then which values were dropped.
void WriteText(const Reports& reports, const Writer& write);

/// One JSON object: of each report its heads, its documents (whole records) and its totals.
void WriteJson(const Reports& reports, const Writer& write);

/// Comma-separated values (RFC 4180) with a line of headings: a row for each document. No field is one that a
/// spreadsheet would take for a formula.
void WriteCsv(const Reports& reports, const Writer& write);

}  // namespace tool
