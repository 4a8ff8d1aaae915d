#include "commands/SheetCommand.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "base/Resemblance.h"
#include "check/Conformity.h"
#include "document/Reading.h"
#include "report/SheetComparisonText.h"
#include "report/SheetCsv.h"
#include "report/SheetJson.h"
#include "report/SheetText.h"
#include "session/Messages.h"
#include "settings/UsageError.h"

namespace tool {
namespace {

using namespace standalone::sheet;
using standalone::FeatureId;
namespace fs = std::filesystem;

// A document with what it says.
struct ReadSheetOf {
  std::string file;
  standalone::DocumentPtr document;
  Sheet sheet;
};

ReadSheetOf Read(const std::string& file) {
  standalone::DocumentPtr document = ReadWithProgress(file);
  Sheet sheet = ReadSheet(*document.Get());
  return {file, std::move(document), std::move(sheet)};
}

// The names of cases or steps, each once.
std::vector<std::string_view> NamesOf(const std::vector<ReadSheetOf>& documents, Chapter chapter,
                                      const SheetPart& part) {
  std::vector<std::string_view> names;
  for (const ReadSheetOf& document : documents) {
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
std::vector<FeatureId> Named(const std::vector<ReadSheetOf>& documents, Chapter chapter,
                             const std::string& name, const SheetPart& part) {
  std::vector<FeatureId> ids;
  for (const ReadSheetOf& document : documents) {
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

SheetPart PartOf(const SheetArguments& arguments, const std::vector<ReadSheetOf>& documents) {
  SheetPart part;
  if (!arguments.caseName.empty()) part.cases = Named(documents, Chapter::kCase, arguments.caseName, part);
  if (!arguments.stepName.empty()) part.steps = Named(documents, Chapter::kStep, arguments.stepName, part);
  return part;
}

// Compares two documents by what upgrades can have run in between.
class Accounting {
 public:
  Accounting(const ReadSheetOf& before, const ReadSheetOf& after, const fs::path& messages)
      : before_(before), after_(after), messages_(messages) {
    for (const std::string& upgrade : after.sheet.Upgrades()) {
      if (!before.document->HasRecorded(upgrade)) mayHaveRun_.push_back(upgrade);
    }
  }

  // What an upgrade had left behind, `upgrade --retry` lets it change once more. Names and lists of variables
  // are of the language of the session that upgraded the document. Nothing tells either: it is what leaves
  // the least to be explained.
  [[nodiscard]] SheetComparison Best() {
    constexpr const char* kUsual = "en";
    Try(kUsual);
    if (IsDone()) return std::move(best_);
    for (const standalone::Finding& finding : standalone::CheckConformity(*before_.document.Get())) {
      if (finding.kind == standalone::FindingKind::kLeftBehind) mayHaveRun_.emplace_back(finding.identifier);
    }
    Try(kUsual);
    for (const std::string& language : standalone::Messages::LanguagesOf(messages_)) {
      if (!IsDone() && language != kUsual) Try(language);
    }
    return std::move(best_);
  }

 private:
  void Try(const std::string& language) {
    standalone::Messages::Use(messages_, language);
    SheetComparison comparison = Compare(before_.sheet, after_.sheet, mayHaveRun_);
    const std::size_t left = comparison.Count(Meaning::kUnaccounted);
    if (left >= left_) return;
    best_ = std::move(comparison);
    left_ = left;
  }
  [[nodiscard]] bool IsDone() const { return left_ == 0; }

  const ReadSheetOf& before_;
  const ReadSheetOf& after_;
  fs::path messages_;
  std::vector<std::string> mayHaveRun_;
  SheetComparison best_;
  std::size_t left_ = std::numeric_limits<std::size_t>::max();
};

// What a later release writes may stand where nobody here looks.
ExitCode TellNewer(const ReadSheetOf& document, const standalone::VersionManager& manager) {
  const std::vector<std::string> unknown = manager.Unknown(*document.document.Get());
  if (unknown.empty()) return ExitCode::kDone;
  Complain(fmt::format("{} is newer than this program, which does not know {}: what is told may be wrong",
                       document.file, Count(unknown.size(), "upgrade")));
  return ExitCode::kNewer;
}

}  // namespace

ExitCode RunSheet(const SheetArguments& arguments, const Places& places,
                  const standalone::VersionManager& manager) {
  std::vector<ReadSheetOf> documents;
  ExitCode code = ExitCode::kDone;
  for (const std::string& file : {arguments.file, arguments.current}) {
    if (file.empty()) continue;
    documents.push_back(Read(file));
    code = MoreSerious(code, TellNewer(documents.back(), manager));
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
      Accounting(documents.front(), documents.back(), DataFolder(places) / "messages").Best();
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
