#include "commands/DiffCommand.h"

#include <algorithm>
#include <set>

#include "compare/DocumentDifference.h"
#include "compare/FeatureDifference.h"
#include "document/Reading.h"
#include "document/SheetAccounting.h"
#include "file/FeatureText.h"
#include "page/DiffPage.h"
#include "page/PageFile.h"
#include "report/FeatureOutput.h"
#include "report/MentionedFeatures.h"
#include "report/SheetJson.h"
#include "report/SourceOutput.h"
#include "terminal/Output.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::Document;
using standalone::DocumentDifference;
using standalone::Feature;

void AppendField(fmt::memory_buffer& out, const standalone::FieldDifference& difference) {
  auto to = std::back_inserter(out);
  fmt::format_to(to, "    {}", difference.field);
  if (!difference.key.empty()) fmt::format_to(to, " {}", Quoted(difference.key));
  fmt::format_to(to, ": {} -> {}\n", difference.before.empty() ? "(none)" : Printable(difference.before),
                 difference.after.empty() ? "(none)" : Printable(difference.after));
}

void AppendFeature(Output& output, char mark, const Feature* before, const Feature* after) {
  fmt::memory_buffer& out = output.Buffer();
  out.push_back(mark);
  out.push_back(' ');
  AppendLabel(out, after == nullptr ? *before : *after);
  out.push_back('\n');
  for (const standalone::FieldDifference& difference : standalone::Differences(before, after))
    AppendField(out, difference);
  output.FlushIfLarge();
}

std::string WordsOrNone(const standalone::UpgradeSource* source) {
  return source == nullptr ? "a library that is not told" : WordsOf(*source);
}

void AppendUpgrades(fmt::memory_buffer& out, const DocumentDifference& difference) {
  auto to = std::back_inserter(out);
  std::set<std::string_view> told;
  const auto append = [&](char mark, const std::vector<std::string>& upgrades,
                          const standalone::UpgradeSource* DocumentDifference::Source::*which) {
    for (const std::string& upgrade : upgrades) {
      fmt::format_to(to, "{} upgrade {}", mark, Word(upgrade));
      const auto source =
          std::ranges::find(difference.sources, upgrade, &DocumentDifference::Source::upgrade);
      if (source != difference.sources.end()) {
        fmt::format_to(to, " of {}", WordsOrNone((*source).*which));
        told.insert(source->upgrade);
      }
      out.push_back('\n');
    }
  };
  append('-', difference.upgradesBefore, &DocumentDifference::Source::before);
  append('+', difference.upgradesAfter, &DocumentDifference::Source::after);
  for (const auto& [upgrade, before, after] : difference.sources) {
    if (told.contains(upgrade)) continue;
    fmt::format_to(to, "~ upgrade {}: {} -> {}\n", Word(upgrade), WordsOrNone(before), WordsOrNone(after));
  }
}

void PrintText(const DiffArguments& arguments, const DocumentDifference& difference) {
  Output output;
  auto to = std::back_inserter(output.Buffer());
  if (difference.IsEmpty()) {
    fmt::format_to(to, "{} and {} have the same content\n", Printable(arguments.before),
                   Printable(arguments.after));
    return;
  }
  fmt::format_to(to, "{} changed, {} moved, {} created, {} removed\n",
                 Count(difference.changed.size(), "feature"), difference.moved.size(),
                 difference.created.size(), difference.removed.size());
  AppendUpgrades(output.Buffer(), difference);
  for (const auto& [before, after] : difference.changed) AppendFeature(output, '~', before, after);
  for (const Feature* const feature : difference.moved) {
    fmt::format_to(to, "> ");
    AppendLabel(output.Buffer(), *feature);
    fmt::format_to(to, "\n    moved among its siblings\n");
    output.FlushIfLarge();
  }
  for (const Feature* const feature : difference.created) AppendFeature(output, '+', nullptr, feature);
  for (const Feature* const feature : difference.removed) AppendFeature(output, '-', feature, nullptr);
}

// As a document holds it.
void AppendWhole(JsonList& list, standalone::FeatureTexts& texts, const Feature& feature) {
  fmt::memory_buffer line;
  texts.Append(line, feature);
  list.Value({line.data(), line.size()});
}

// `flush` is called between pieces.
template <class Flush>
void AppendJson(fmt::memory_buffer& out, const DiffArguments& arguments, const DocumentDifference& difference,
                const Document& after, const Flush& flush) {
  MentionedFeatures mentioned;
  JsonObject top(out);
  top.Text("diff", "hvxupgrade");
  top.Number("version", kJsonVersion);
  top.Name("before", arguments.before);
  top.Name("after", arguments.after);
  top.Flag("different", !difference.IsEmpty());
  top.Texts("upgradesBefore", difference.upgradesBefore);
  top.Texts("upgradesAfter", difference.upgradesAfter);
  JsonList sources(top.Key("sources"));
  for (const auto& [upgrade, from, to] : difference.sources) {
    JsonObject entry(sources.Entry());
    entry.Text("upgrade", upgrade);
    if (from != nullptr) AppendSource(entry, "before", *from);
    if (to != nullptr) AppendSource(entry, "after", *to);
    entry.Close();
  }
  sources.Close();
  JsonList changed(top.Key("changed"));
  for (const auto& [from, to] : difference.changed) {
    mentioned.Tell(*to);
    AppendChange(changed.Entry(), from, to, {}, &mentioned);
    flush();
  }
  changed.Close();
  JsonList moved(top.Key("moved"));
  for (const Feature* const feature : difference.moved) {
    JsonObject entry(moved.Entry());
    AppendIdentity(entry, *feature);
    entry.Close();
    flush();
  }
  moved.Close();
  const auto appendWhole = [&](std::string_view key, const std::vector<const Feature*>& features) {
    JsonList list(top.Key(key));
    standalone::FeatureTexts texts;
    for (const Feature* const feature : features) {
      mentioned.Tell(*feature);
      AppendWhole(list, texts, *feature);
      flush();
    }
    list.Close();
  };
  appendWhole("created", difference.created);
  appendWhole("removed", difference.removed);
  JsonList others(top.Key("mentioned"));
  mentioned.AppendTo(others, after, flush);
  others.Close();
  top.Close();
}

void PrintJson(const DiffArguments& arguments, const DocumentDifference& difference, const Document& after) {
  Output output;
  AppendJson(output.Buffer(), arguments, difference, after, [&output] { output.FlushIfLarge(); });
  output.Buffer().push_back('\n');
}

void WritePage(const DiffArguments& arguments, const Places& places, const DocumentDifference& difference,
               const DocumentSheet& before, const DocumentSheet& after) {
  fmt::memory_buffer json;
  AppendJson(json, arguments, difference, *after.document.Get(), [] {});
  fmt::memory_buffer sheet;
  AppendComparison(sheet, AccountFor(before, after, DataFolder(places) / "messages"), after.sheet);
  const Installation installation(places);
  page::PutPage(arguments.html, false, [&](const Writer& write) {
    page::WriteDiffPage({json.data(), json.size()}, {sheet.data(), sheet.size()}, installation.Manager(),
                        Explanations(DataFolder(places)), write);
  });
}

}  // namespace

ExitCode RunDiff(const DiffArguments& arguments, const Places& places) {
  if (!arguments.html.empty()) page::CheckPlace(arguments.html, false);
  const standalone::DocumentPtr before = ReadWithProgress(arguments.before);
  const standalone::DocumentPtr after = ReadWithProgress(arguments.after);
  const DocumentDifference difference = standalone::Compare(*before.Get(), *after.Get());
  if (arguments.json) {
    PrintJson(arguments, difference, *after.Get());
  } else {
    PrintText(arguments, difference);
  }
  if (!arguments.html.empty()) {
    WritePage(arguments, places, difference, SheetFor(arguments.before, before),
              SheetFor(arguments.after, after));
    if (!arguments.json) Say(fmt::format("Page: {}\n", Printable(arguments.html)));
  }
  return difference.IsEmpty() ? ExitCode::kDone : ExitCode::kDifferent;
}

}  // namespace tool
