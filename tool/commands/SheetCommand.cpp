#include "commands/SheetCommand.h"

#include <algorithm>
#include <filesystem>

#include "base/Resemblance.h"
#include "document/SheetAccounting.h"
#include "report/SheetComparisonText.h"
#include "report/SheetCsv.h"
#include "report/SheetJson.h"
#include "report/SheetText.h"
#include "settings/UsageError.h"

namespace tool {
namespace {

using namespace standalone::sheet;
using standalone::FeatureId;
namespace fs = std::filesystem;

// The names of cases or steps, each once.
std::vector<std::string_view> NamesOf(const std::vector<DocumentSheet>& documents, Chapter chapter,
                                      const SheetPart& part) {
  std::vector<std::string_view> names;
  for (const DocumentSheet& document : documents) {
    for (const Subject& subject : document.sheet.Subjects()) {
      if (subject.kind->chapter == chapter && part.Holds(subject) &&
          std::ranges::find(names, subject.name) == names.end())
        names.push_back(subject.name);
    }
  }
  return names;
}

// The one that was probably meant; empty for none.
std::string_view Meant(std::string_view name, const std::vector<std::string_view>& known) {
  constexpr std::size_t kLettersPerFault = 3;
  const std::string_view nearest = standalone::Resembling(name, known, kLettersPerFault);
  if (!nearest.empty()) return nearest;
  const auto holding = std::ranges::find_if(
      known, [name](std::string_view each) { return each.find(name) != std::string_view::npos; });
  return holding == known.end() ? std::string_view() : *holding;
}

std::string Suggestion(std::string_view name, const std::vector<std::string_view>& known) {
  constexpr std::size_t kMost = 10;
  if (known.empty()) return "there is none";
  std::string text = "there is ";
  for (std::size_t i = 0; i < std::min(kMost, known.size()); ++i)
    text += fmt::format("{}{}", i == 0 ? "" : ", ", Quoted(known[i]));
  if (known.size() > kMost) text += fmt::format(" and {} more", known.size() - kMost);
  if (const std::string_view meant = Meant(name, known); !meant.empty() && known.size() > 1)
    text += fmt::format("; did you mean {}?", Quoted(meant));
  return text;
}

// The ids of all cases or steps of that name. An upgrade may have renamed what it is in one of two documents.
std::vector<FeatureId> Named(const std::vector<DocumentSheet>& documents, Chapter chapter,
                             const std::string& name, const SheetPart& part) {
  std::vector<FeatureId> ids;
  for (const DocumentSheet& document : documents) {
    for (const Subject& subject : document.sheet.Subjects()) {
      if (subject.kind->chapter == chapter && subject.name == name && part.Holds(subject))
        ids.push_back(subject.id);
    }
  }
  if (!ids.empty()) return ids;
  throw UsageError(
      fmt::format("{} no {} {}; {}",
                  documents.size() == 1 ? documents.front().file + " has" : std::string("the documents have"),
                  chapter == Chapter::kCase ? "analysis case" : "step", Quoted(name),
                  Suggestion(name, NamesOf(documents, chapter, part))));
}

SheetPart PartOf(const SheetArguments& arguments, const std::vector<DocumentSheet>& documents) {
  SheetPart part;
  if (!arguments.caseName.empty()) part.cases = Named(documents, Chapter::kCase, arguments.caseName, part);
  if (!arguments.stepName.empty()) part.steps = Named(documents, Chapter::kStep, arguments.stepName, part);
  return part;
}

// What a later release, or another library, writes may stand where nobody here looks.
ExitCode TellUnknown(const DocumentSheet& document, const standalone::VersionManager& manager) {
  const standalone::UnknownUpgrades unknown = manager.Unknown(*document.document.Get());
  if (unknown.IsEmpty()) return ExitCode::kDone;
  Complain(fmt::format("{} was upgraded by {}: the sheet may be wrong. {}", document.file, unknown.Words(),
                       unknown.NextStep()));
  return manager.Refuses(*document.document.Get()) ? ExitCode::kNewer : ExitCode::kDone;
}

}  // namespace

ExitCode RunSheet(const SheetArguments& arguments, const Places& places,
                  const standalone::VersionManager& manager) {
  std::vector<DocumentSheet> documents;
  ExitCode code = ExitCode::kDone;
  for (const std::string& file : {arguments.file, arguments.current}) {
    if (file.empty()) continue;
    documents.push_back(ReadDocumentSheet(file));
    code = MoreSerious(code, TellUnknown(documents.back(), manager));
  }
  const SheetPart part = PartOf(arguments, documents);
  const Style style{.units = arguments.units == "mm-t-s" ? UnitSystem::kMmT : UnitSystem::kSi,
                    .all = arguments.all};
  Output output;
  if (documents.size() == 1) {
    const Sheet& sheet = documents.front().sheet;
    if (arguments.json) {
      PrintJson(output, documents.front().file, sheet, part);
    } else if (arguments.csv) {
      PrintCsv(output, sheet, part, style.units);
    } else {
      PrintSheet(output, documents.front().file, sheet, part, style);
    }
    return code;
  }
  const SheetComparison comparison =
      AccountFor(documents.front(), documents.back(), DataFolder(places) / "messages");
  const ComparedFiles files{documents.front().file, documents.back().file};
  if (arguments.json) {
    PrintJson(output, files, comparison, part);
  } else if (arguments.csv) {
    PrintCsv(output, comparison, part, style.units);
  } else {
    PrintComparison(output, files, comparison, part, style);
  }
  return CountOf(comparison, part, Meaning::kUnaccounted) == 0 ? code
                                                               : MoreSerious(code, ExitCode::kUnaccounted);
}

}  // namespace tool
