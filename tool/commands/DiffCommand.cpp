#include "commands/DiffCommand.h"

#include "compare/DocumentDifference.h"
#include "compare/FeatureDifference.h"
#include "document/Reading.h"
#include "file/FeatureText.h"
#include "report/FeatureOutput.h"
#include "terminal/Output.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

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

void PrintText(const DiffArguments& arguments, const DocumentDifference& difference) {
  Output output;
  auto to = std::back_inserter(output.Buffer());
  if (difference.IsEmpty()) {
    fmt::format_to(to, "{} and {} hold the same\n", Printable(arguments.before), Printable(arguments.after));
    return;
  }
  fmt::format_to(to, "{} changed, {} moved, {} created, {} removed\n",
                 Count(difference.changed.size(), "feature"), difference.moved.size(),
                 difference.created.size(), difference.removed.size());
  for (const std::string& upgrade : difference.upgradesBefore)
    fmt::format_to(to, "- upgrade {}\n", Word(upgrade));
  for (const std::string& upgrade : difference.upgradesAfter)
    fmt::format_to(to, "+ upgrade {}\n", Word(upgrade));
  for (const auto& [before, after] : difference.changed) AppendFeature(output, '~', before, after);
  for (const Feature* const feature : difference.moved) {
    fmt::format_to(to, "> ");
    AppendLabel(output.Buffer(), *feature);
    fmt::format_to(to, "\n    stands elsewhere among its brothers\n");
    output.FlushIfLarge();
  }
  for (const Feature* const feature : difference.created) AppendFeature(output, '+', nullptr, feature);
  for (const Feature* const feature : difference.removed) AppendFeature(output, '-', feature, nullptr);
}

// As a document holds it.
void AppendWhole(JsonList& list, const Feature& feature) {
  fmt::memory_buffer line;
  standalone::AppendFeature(line, feature);
  list.Value({line.data(), line.size()});
}

void PrintJson(const DiffArguments& arguments, const DocumentDifference& difference) {
  Output output;
  JsonObject top(output.Buffer());
  top.Text("diff", "hvxupgrade");
  top.Number("version", kJsonVersion);
  top.Name("before", arguments.before);
  top.Name("after", arguments.after);
  top.Flag("different", !difference.IsEmpty());
  top.Texts("upgradesBefore", difference.upgradesBefore);
  top.Texts("upgradesAfter", difference.upgradesAfter);
  JsonList changed(top.Key("changed"));
  for (const auto& [before, after] : difference.changed) {
    AppendChange(changed.Entry(), before, after);
    output.FlushIfLarge();
  }
  changed.Close();
  JsonList moved(top.Key("moved"));
  for (const Feature* const feature : difference.moved) {
    JsonObject entry(moved.Entry());
    AppendIdentity(entry, *feature);
    entry.Close();
    output.FlushIfLarge();
  }
  moved.Close();
  JsonList created(top.Key("created"));
  for (const Feature* const feature : difference.created) {
    AppendWhole(created, *feature);
    output.FlushIfLarge();
  }
  created.Close();
  JsonList removed(top.Key("removed"));
  for (const Feature* const feature : difference.removed) {
    AppendWhole(removed, *feature);
    output.FlushIfLarge();
  }
  removed.Close();
  top.Close();
  output.Buffer().push_back('\n');
}

}  // namespace

ExitCode RunDiff(const DiffArguments& arguments) {
  const standalone::DocumentPtr before = ReadWithProgress(arguments.before);
  const standalone::DocumentPtr after = ReadWithProgress(arguments.after);
  const DocumentDifference difference = standalone::Compare(*before.Get(), *after.Get());
  (arguments.json ? PrintJson : PrintText)(arguments, difference);
  return difference.IsEmpty() ? ExitCode::kDone : ExitCode::kDifferent;
}

}  // namespace tool
