#include "report/TypeTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr std::size_t kMostRows = 20;

using Row = const std::pair<const std::string, Totals>*;

std::size_t Changes(const Totals& totals) {
  return totals.changed + totals.created + totals.removed;
}

// What failed comes first, then what was changed most.
std::vector<Row> Shortened(std::vector<Row> rows) {
  std::erase_if(rows, [](Row row) { return Changes(row->second) == 0 && row->second.failed == 0; });
  std::ranges::stable_sort(rows, [](Row one, Row other) {
    if (one->second.failed != other->second.failed) return one->second.failed > other->second.failed;
    return Changes(one->second) > Changes(other->second);
  });
  if (rows.size() > kMostRows) rows.resize(kMostRows);
  return rows;
}

std::string Number(std::size_t count) {
  return fmt::format(" {:>9}", count == 0 ? "-" : std::to_string(count));
}

}  // namespace

std::string TypeTable(const std::map<std::string, Totals>& byType, bool all) {
  if (byType.empty()) return {};
  std::vector<Row> rows;
  rows.reserve(byType.size());
  for (const auto& entry : byType) rows.push_back(&entry);
  if (!all && rows.size() > kMostRows) rows = Shortened(std::move(rows));
  std::size_t width = std::string_view("Late type").size();
  for (const Row row : rows) width = std::max(width, Word(row->first).size());
  std::string text = fmt::format("  {:<{}}  {:>9} {:>9} {:>9} {:>9} {:>9}\n", "Late type", width, "concerned",
                                 "changed", "created", "removed", "failed");
  for (const Row row : rows) {
    const Totals& totals = row->second;
    const std::string failed = Number(totals.failed);
    text += fmt::format("  {:<{}} {}{}{}{}{}\n", Word(row->first), width, Number(totals.concerned),
                        Number(totals.changed), Number(totals.created), Number(totals.removed),
                        totals.failed == 0 ? failed : Paint(stdout, Colour::kYellow, failed));
  }
  if (rows.size() == byType.size()) return text;
  const auto idle = static_cast<std::size_t>(std::ranges::count_if(
      byType, [](const auto& entry) { return Changes(entry.second) == 0 && entry.second.failed == 0; }));
  const std::size_t left = byType.size() - rows.size();
  return text + fmt::format("  and {}, {} of them unchanged; --verbose lists all\n",
                            Count(left, "more late type"), idle);
}

}  // namespace tool
