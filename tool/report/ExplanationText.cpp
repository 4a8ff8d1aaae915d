#include "report/ExplanationText.h"

#include <fmt/ranges.h>

#include <algorithm>

#include "terminal/Table.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr std::size_t kIndent = 2;

void AppendTitle(fmt::memory_buffer& out, std::string_view title, std::size_t columns) {
  out.push_back('\n');
  AppendProse(out, title, 0, columns);
}

std::vector<std::size_t> LongestWords(const std::vector<TableRow>& rows) {
  std::vector<std::size_t> longest(rows.front().size());
  for (const TableRow& row : rows) {
    for (std::size_t column = 0; column < longest.size(); ++column) {
      for (const std::string& word : EachWord(row[column].front()))
        longest[column] = std::max(longest[column], word.size());
    }
  }
  return longest;
}

// Widths with which no word stands out of its column; none when the lines have no room for such.
std::vector<std::size_t> WidthsOfWholeWords(const std::vector<TableRow>& rows, std::size_t columns) {
  const std::vector<std::size_t> longest = LongestWords(rows);
  std::vector<std::size_t> widths = ColumnWidths(rows, kIndent, columns);
  std::size_t spare = 0;
  std::size_t missing = 0;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    spare += widths[i] - std::min(widths[i], longest[i]);
    missing += longest[i] - std::min(widths[i], longest[i]);
    widths[i] = std::max(widths[i], longest[i]);
  }
  if (missing > spare) return {};
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const std::size_t given = std::min(missing, widths[i] - longest[i]);
    widths[i] -= given;
    missing -= given;
  }
  return widths;
}

std::string OrDash(std::string_view text) {
  return text.empty() ? "-" : Printable(text);
}

// Side by side where there is room, else one after the other.
void AppendRows(fmt::memory_buffer& out, const Explanation::Example& example, std::size_t columns) {
  std::vector<TableRow> rows{{{""}, {"Before"}, {"After"}}};
  for (const Explanation::Row& row : example.rows)
    rows.push_back({{Printable(row.what)}, {OrDash(row.before)}, {OrDash(row.after)}});
  if (const auto widths = WidthsOfWholeWords(rows, columns); !widths.empty()) {
    for (const TableRow& row : rows) AppendRow(out, row, widths, kIndent);
  } else {
    for (std::size_t i = 1; i < rows.size(); ++i) {
      const std::string line =
          fmt::format("{}: {} -> {}", rows[i][0].front(), rows[i][1].front(), rows[i][2].front());
      AppendProse(out, line, kIndent, columns, kIndent);
    }
  }
  if (example.more != 0) fmt::format_to(std::back_inserter(out), "  and {} more\n", example.more);
}

void AppendExamples(fmt::memory_buffer& out, const Explanation& explanation, std::size_t columns) {
  for (const Explanation::Example& example : explanation.examples) {
    AppendTitle(out, "Before and after, " + example.of, columns);
    AppendRows(out, example, columns);
  }
  if (!explanation.none.empty()) {
    AppendTitle(out, "Before and after", columns);
    AppendProse(out, explanation.none, kIndent, columns);
  }
  if (explanation.features.empty()) return;
  AppendTitle(out, "Features in all", columns);
  std::vector<TableRow> rows;
  for (const Explanation::Features& each : explanation.features) {
    rows.push_back({{Printable(each.of)},
                    {fmt::format("{} changed", each.changed)},
                    {fmt::format("{} created", each.created)},
                    {fmt::format("{} removed", each.removed)}});
  }
  const std::vector<std::size_t> widths = ColumnWidths(rows, kIndent, columns);
  for (const TableRow& row : rows) AppendRow(out, row, widths, kIndent);
}

void AppendAnalysis(fmt::memory_buffer& out, const Explanation& explanation, std::size_t columns) {
  AppendTitle(out, "What the analysis says", columns);
  if (explanation.analysis.empty())
    fmt::format_to(std::back_inserter(out), "  The same before and after, in both examples.\n");
  for (const Explanation::Difference& each : explanation.analysis) {
    std::vector<std::string> counts;
    for (const auto& [of, count] : each.counts) counts.push_back(fmt::format("{} in {}", count, of));
    AppendProse(out, fmt::format("{}: {} ({})", each.meaning, each.reason, fmt::join(counts, ", ")), kIndent,
                columns, kIndent);
    AppendProse(out, "such as " + each.first, 2 * kIndent, columns, kIndent);
  }
}

}  // namespace

void AppendProse(fmt::memory_buffer& out, std::string_view text, std::size_t indent, std::size_t columns,
                 std::size_t hanging) {
  AppendParagraph(out, EachWord(Printable(text)), indent, hanging, std::min(columns, kLineWidth));
}

void AppendParts(fmt::memory_buffer& out, const Explanation& explanation, std::size_t columns) {
  for (const std::string& sentence : explanation.harmless) AppendProse(out, sentence, kIndent, columns);
  if (!explanation.before.empty()) AppendTitle(out, "What must run before it, and is run as well", columns);
  for (const Explanation::Predecessor& each : explanation.before)
    AppendProse(out, fmt::format("{}: {}", each.upgrade, each.reason), kIndent, columns, kIndent);
  if (!explanation.leaves.empty())
    AppendTitle(out, "When it fails: what 'hvxupgrade check' reports as left behind", columns);
  for (const Explanation::Left& each : explanation.leaves) {
    const std::string whose =
        each.lateTypes.empty() ? "any feature" : fmt::to_string(fmt::join(each.lateTypes, ", "));
    AppendProse(out, fmt::format("{}: {}", whose, each.what), kIndent, columns, kIndent);
  }
  AppendExamples(out, explanation, columns);
  AppendAnalysis(out, explanation, columns);
}

}  // namespace tool
