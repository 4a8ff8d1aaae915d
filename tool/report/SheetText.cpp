#include "report/SheetText.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "report/SheetPieces.h"

namespace tool {
namespace {

using standalone::Feature;
using namespace standalone::sheet;

// In this order, beneath each step, beneath each case, and of what all share.
constexpr Chapter kRowChapters[] = {Chapter::kRestraint, Chapter::kLoad,     Chapter::kInteraction,
                                    Chapter::kOutput,    Chapter::kElements, Chapter::kJob,
                                    Chapter::kSolution,  Chapter::kProperty, Chapter::kConnection,
                                    Chapter::kGroup,     Chapter::kMesh};

struct StepPart {
  const Feature* step;
  const Subject* subject = nullptr;  // null for a step that says nothing of itself
  std::vector<const Subject*> members = {};
};

struct CasePart {
  const Feature* analysisCase;  // null for what all share
  const Subject* subject = nullptr;
  std::vector<StepPart> steps = {};
  std::vector<const Subject*> members = {};
};

// The subjects by case and step, in the order in which those are met; what all share stands last.
std::vector<CasePart> PartsOf(const Sheet& sheet, const SheetPart& part) {
  std::vector<CasePart> cases;
  std::unordered_map<const Feature*, std::size_t> casePlaces;
  std::map<std::pair<const Feature*, const Feature*>, std::size_t> stepPlaces;  // by case and step
  for (const Subject& subject : sheet.Subjects()) {
    if (!part.Holds(subject)) continue;
    const auto [place, isNew] = casePlaces.try_emplace(subject.analysisCase, cases.size());
    if (isNew) cases.push_back({subject.analysisCase});
    CasePart& ofCase = cases[place->second];
    if (subject.step == nullptr) {
      if (subject.feature == subject.analysisCase) {
        ofCase.subject = &subject;
      } else {
        ofCase.members.push_back(&subject);
      }
      continue;
    }
    const auto [stepPlace, isNewStep] =
        stepPlaces.try_emplace({subject.analysisCase, subject.step}, ofCase.steps.size());
    if (isNewStep) ofCase.steps.push_back({subject.step});
    StepPart& ofStep = ofCase.steps[stepPlace->second];
    if (subject.feature == subject.step) {
      ofStep.subject = &subject;
    } else {
      ofStep.members.push_back(&subject);
    }
  }
  std::stable_partition(cases.begin(), cases.end(),
                        [](const CasePart& each) { return each.analysisCase != nullptr; });
  return cases;
}

class SheetPrinter {
 public:
  SheetPrinter(Output& output, const Sheet& sheet, const Style& style)
      : output_(output), out_(output.Buffer()), sheet_(sheet), style_(style) {}

  void Print(const CasePart& part) {
    out_.push_back('\n');
    if (part.analysisCase == nullptr) {
      Title("What all cases share", 0);
    } else {
      Title(fmt::format("Analysis case {}", Shown(NameFor(*part.analysisCase))), 0);
    }
    PrintOwn(part.subject, kIndent);
    for (const StepPart& step : part.steps) {
      out_.push_back('\n');
      Title(TitleOfStep(step), kIndent);
      PrintOwn(step.subject, 2 * kIndent);
      PrintRows(step.members, 2 * kIndent);
    }
    if (!part.steps.empty() && !part.members.empty()) out_.push_back('\n');
    PrintRows(part.members, kIndent);
  }

 private:
  static constexpr std::size_t kIndent = 2;

  void Title(std::string_view title, std::size_t indent) {
    fmt::format_to(std::back_inserter(out_), "{:{}}{}\n", "", indent, title);
  }

  [[nodiscard]] std::string TitleOfStep(const StepPart& step) const {
    const std::string name = Shown(NameFor(*step.step));
    if (step.subject == nullptr) return fmt::format("Step {}", name);
    const Fact* const position = sheet_.Find(*step.subject, kPositionQuantity);
    return fmt::format("Step {}{} ({})", position == nullptr ? "" : WordsFor(*position, style_) + ", ", name,
                       step.subject->kind->name);
  }

  void PrintOwn(const Subject* subject, std::size_t indent) {
    if (subject != nullptr) AppendParagraph(out_, PiecesOf(sheet_, *subject, style_), indent, 0);
  }

  void PrintRows(const std::vector<const Subject*>& members, std::size_t indent) {
    for (const Chapter chapter : kRowChapters) {
      std::vector<TableRow> rows;
      for (const Subject* const subject : members) {
        if (subject->kind->chapter != chapter) continue;
        rows.push_back(
            {{ShownName(*subject)}, {std::string(subject->kind->name)}, PiecesOf(sheet_, *subject, style_)});
      }
      if (rows.empty()) continue;
      Title(TitleOf(chapter), indent);
      PrintRows(std::move(rows), indent + kIndent);
      output_.FlushIfLarge();
    }
  }

  // In columns where what most say of themselves fits there, else one below the other.
  void PrintRows(std::vector<TableRow> rows, std::size_t indent) {
    constexpr std::size_t kMostLines = 2;
    const std::vector<std::size_t> widths = ColumnWidths(rows, indent);
    std::size_t lines = 0;
    for (const TableRow& row : rows) lines += LinesOfRow(row, widths);
    if (lines <= kMostLines * rows.size()) {
      for (const TableRow& row : rows) AppendRow(out_, row, widths, indent);
      return;
    }
    for (TableRow& row : rows) {
      Cell pieces{fmt::format("{} ({}) ", row[0].front(), row[1].front())};
      std::ranges::move(row[2], std::back_inserter(pieces));
      AppendParagraph(out_, pieces, indent);
    }
  }

  Output& output_;
  fmt::memory_buffer& out_;
  const Sheet& sheet_;
  Style style_;
};

std::size_t CountOf(const Sheet& sheet, Chapter chapter) {
  return static_cast<std::size_t>(std::ranges::count_if(
      sheet.Subjects(), [chapter](const Subject& each) { return each.kind->chapter == chapter; }));
}

}  // namespace

void PrintSheet(Output& output, std::string_view title, const Sheet& sheet, const SheetPart& part,
                const Style& style) {
  fmt::format_to(std::back_inserter(output.Buffer()), "{}: {}, {}\nUnits: {}\n", Printable(title),
                 Count(CountOf(sheet, Chapter::kCase), "analysis case"),
                 Count(CountOf(sheet, Chapter::kStep), "step"), NameOf(style.units));
  SheetPrinter printer(output, sheet, style);
  for (const CasePart& each : PartsOf(sheet, part)) printer.Print(each);
}

}  // namespace tool
