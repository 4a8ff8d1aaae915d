#include "page/DiffPage.h"

#include <simdjson.h>

#include <algorithm>
#include <map>
#include <utility>

#include "page/FeatureMap.h"
#include "page/JsonParts.h"
#include "page/Numbers.h"
#include "page/Page.h"
#include "page/SheetView.h"
#include "page/Steps.h"
#include "page/ValueText.h"
#include "terminal/Terminal.h"
#include "terminal/VisibleText.h"

namespace tool::page {
namespace {

using simdjson::dom::element;

constexpr std::size_t kMostNodes = 3000;

std::size_t CountEntries(std::string_view list, std::vector<std::string>* names = nullptr) {
  std::size_t count = 0;
  ForEachEntry(list, [&](element entry) {
    ++count;
    std::string_view text;
    if (names != nullptr && entry.get(text) == simdjson::SUCCESS) names->emplace_back(text);
  });
  return count;
}

std::string NameOf(std::string_view json) {
  simdjson::dom::parser parser;
  return NameFromUtf8(parser.parse(simdjson::padded_string(json)).get_string().value());
}

std::vector<TypeTotals> TypesOf(const JsonParts& parts) {
  std::map<std::string, TypeTotals> byType;
  const auto count = [&](std::string_view key, std::size_t TypeTotals::*which) {
    ForEachEntry(parts[key], [&](element entry) {
      TypeTotals& totals = byType[std::string(TextIn(entry, "type"))];
      totals.type = TextIn(entry, "type");
      ++(totals.*which);
    });
  };
  count("changed", &TypeTotals::changed);
  count("created", &TypeTotals::made);
  count("removed", &TypeTotals::removed);
  std::vector<TypeTotals> types;
  types.reserve(byType.size());
  for (auto& [type, totals] : byType) types.push_back(std::move(totals));
  std::ranges::stable_sort(types, std::greater<>(),
                           [](const TypeTotals& each) { return each.changed + each.made + each.removed; });
  return types;
}

std::string SourceIn(element entry, const char* key) {
  element source;
  if (entry[key].get(source) != simdjson::SUCCESS) return "no library that is told";
  const std::string_view version = TextIn(source, "version");
  return fmt::format("{}{}{}", TextIn(source, "name"), version.empty() ? "" : " ", version);
}

void AddUpgradeNotes(const JsonParts& parts, Detail& detail) {
  for (const auto& [key, what] :
       {std::pair("upgradesBefore", "first"), std::pair("upgradesAfter", "second")}) {
    const std::size_t count = CountEntries(parts[key]);
    if (count != 0)
      detail.notes.push_back(
          fmt::format("Only the {} document has been through {}", what, CountOf(count, "upgrade")));
  }
  std::map<std::pair<std::string, std::string>, std::size_t> sources;
  ForEachEntry(parts["sources"], [&sources](element entry) {
    ++sources[{SourceIn(entry, "before"), SourceIn(entry, "after")}];
  });
  for (const auto& [between, count] : sources)
    detail.notes.push_back(fmt::format("{} came from {} by the first document, from {} by the second",
                                       CountOf(count, "upgrade"), between.first, between.second));
  if (const std::size_t moved = CountEntries(parts["moved"]); moved != 0)
    detail.notes.push_back(fmt::format("{} moved among their siblings", CountOf(moved, "feature")));
}

}  // namespace

void WriteDiffPage(std::string_view difference, std::string_view sheet,
                   const standalone::VersionManager& manager, const Explanations& explanations,
                   const Writer& write) {
  UpgradeIndex upgrades(manager, explanations);
  Page page(Page::Kind::kDiff, {});
  PageFile out;

  const JsonParts parts(difference);
  FeatureMap features;
  for (const auto& [key, mark] : {std::pair("mentioned", ' '), std::pair("changed", 'c'),
                                  std::pair("created", 'm'), std::pair("removed", 'r')})
    features.AddAll(parts[key], mark);
  Steps steps(upgrades, &features);
  ForEachEntry(parts["changed"], [&steps](element entry) { steps.AddChanged(entry); });
  ForEachEntry(parts["created"], [&steps](element entry) { steps.AddMade(entry); });
  ForEachEntry(parts["removed"], [&steps](element entry) { steps.AddRemoved(entry); });
  Detail detail;
  detail.steps = steps.Take();
  detail.types = TypesOf(parts);
  detail.tree = features.MakeTree(kMostNodes);

  detail.sheet = SheetOf(sheet, upgrades);
  detail.facts = {{"First document", NameOf(parts["before"])}, {"Second document", NameOf(parts["after"])}};
  AddUpgradeNotes(parts, detail);
  detail.cut = "Long lists are cut; 'hvxupgrade diff' prints all of them";
  const std::size_t changed = CountEntries(parts["changed"]);
  const std::size_t made = CountEntries(parts["created"]);
  const std::size_t removed = CountEntries(parts["removed"]);
  const bool isSame = parts["different"] != "true";
  detail.verdict = {isSame ? Tone::kGood : Tone::kQuiet,
                    isSame ? "Both have the same content" : "The documents differ", ""};
  page.title = fmt::format("{} and {}", detail.facts[0].second, detail.facts[1].second);
  page.verdict = detail.verdict;
  page.numbers = {{"features changed", changed, Tone::kQuiet},
                  {"only in the second", made, Tone::kQuiet},
                  {"only in the first", removed, Tone::kQuiet}};
  page.runs = {{{"Program", "hvxupgrade " HVXUPGRADE_VERSION}, {"Command", "hvxupgrade diff"}}};
  page.CountTypes(detail.types);
  const std::size_t place = page.Add(page.title, detail.verdict, {});
  fmt::memory_buffer json;
  AppendJson(json, detail);
  page.SetBlock(place, out.AddDetail(place, {json.data(), json.size()}));
  page.Finish(out, upgrades, write);
}

}  // namespace tool::page
