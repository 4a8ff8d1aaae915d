#include "page/CheckPage.h"

#include <simdjson.h>

#include "page/Findings.h"
#include "page/JsonParts.h"
#include "page/MissingNote.h"
#include "page/Numbers.h"
#include "page/Page.h"
#include "page/ValueText.h"
#include "terminal/Terminal.h"
#include "terminal/VisibleText.h"

namespace tool::page {
namespace {

using simdjson::dom::element;

constexpr const char* kKinds[] = {"leftBehind", "beyondUpgrades", "pending", "unknown"};

class CheckPage {
 public:
  CheckPage(const standalone::VersionManager& manager, const Explanations& explanations)
      : upgrades_(manager, explanations),
        page_(Page::Kind::kCheck,
              {{.label = "Left behind",
                .help = "An upgrade ran and could not change these; they need a person"},
               {.label = "Beyond upgrades", .help = "No upgrade changes these; they need a person"},
               {.label = "Pending", .help = "An upgrade that is still to be run changes these"},
               {.label = "Unknown", .help = "Late types that no part of the program knows"},
               {.label = "Features", .help = "Features of the document"}}) {}

  void Add(const std::string& entry) {
    simdjson::dom::parser parser;
    const element document = parser.parse(entry).value();
    element counts;
    const bool isChecked = document["counts"].get(counts) == simdjson::SUCCESS;
    std::vector<double> values;
    for (std::size_t i = 0; i < std::size(kKinds); ++i) {
      const std::size_t count = isChecked ? CountIn(counts, kKinds[i]) : 0;
      sums_[i] += count;
      values.push_back(static_cast<double>(count));
    }
    values.push_back(static_cast<double>(CountIn(document, "features")));
    const Verdict verdict = VerdictOf(document, values);
    if (verdict.tone == Tone::kBad) ++unchecked_;
    const bool needsPerson = verdict.tone == Tone::kAttention || verdict.tone == Tone::kBad;
    if (needsPerson && first_.words.empty()) first_ = verdict;
    const std::string name = NameFromUtf8(TextIn(document, "file"));
    if (page_.Documents() == 0) title_ = name;
    const std::size_t place = page_.Add(name, verdict, values);
    if (!file_.IsFull()) page_.SetBlock(place, AddDetail(place, document, verdict));
  }

  void Finish(std::size_t left, const Writer& write) {
    const std::size_t documents = page_.Documents();
    page_.title = fmt::format("Check of {}", documents == 1 ? title_ : CountOf(documents, "document"));
    page_.verdict = Overall(documents);
    if (left != 0) page_.verdict = OfUnfinished(page_.verdict, left);
    page_.numbers = {
        {"documents", documents, Tone::kQuiet},
        {"left behind", sums_[0], sums_[0] == 0 ? Tone::kQuiet : Tone::kAttention},
        {"beyond upgrades", sums_[1], sums_[1] == 0 ? Tone::kQuiet : Tone::kAttention},
        {"pending", sums_[2], Tone::kQuiet},
        {"of unknown late types", sums_[3], Tone::kQuiet},
        {"documents not checked", unchecked_ + left, unchecked_ + left == 0 ? Tone::kQuiet : Tone::kBad}};
    if (left != 0)
      page_.notes.push_back(fmt::format("{} not checked: the run was stopped", CountOf(left, "document")));
    page_.runs = {{{"Program", "hvxupgrade " HVXUPGRADE_VERSION}, {"Command", "hvxupgrade check"}}};
    page_.Finish(file_, upgrades_, write);
  }

 private:
  static Verdict VerdictOf(element document, const std::vector<double>& counts) {
    const std::string_view word = TextIn(document, "verdict");
    std::string words(TextIn(document, "words"));
    if (word == "conforms") return {Tone::kGood, std::move(words), ""};
    if (word != "doesNotConform")
      return {Tone::kBad, std::move(words), "Do what the problem of each document says"};
    if (counts[0] + counts[1] != 0)
      return {Tone::kAttention, "needs a person", "Do what each finding says, then run check again"};
    return {Tone::kQuiet, "an upgrade is pending", "Upgrade it"};
  }

  int AddDetail(std::size_t place, element document, const Verdict& verdict) {
    Detail detail;
    detail.verdict = verdict;
    detail.problem = TextIn(document, "problem");
    if (const std::size_t features = CountIn(document, "features"); features != 0)
      detail.facts.emplace_back("Features", std::to_string(features));
    Findings findings(upgrades_);
    // What needs a person comes first.
    for (const char* const kind : kKinds) {
      for (const element finding : EntriesIn(document, "findings")) {
        if (TextIn(finding, "kind") == kind) findings.Add(finding);
      }
    }
    detail.attention = findings.Take();
    for (const element library : EntriesIn(document, "missingLibraries"))
      detail.notes.push_back(NoteOnMissing(library));
    detail.cut = "Long lists are cut; 'hvxupgrade check --all' prints all of them";
    fmt::memory_buffer json;
    AppendJson(json, detail);
    return file_.AddDetail(place, {json.data(), json.size()});
  }

  // What is said of those that were checked must not be taken for all.
  static Verdict OfUnfinished(const Verdict& verdict, std::size_t left) {
    const bool isBad = verdict.tone == Tone::kBad;
    return {isBad ? Tone::kBad : Tone::kAttention,
            fmt::format("Not finished, {} not checked{}{}", CountOf(left, "document"),
                        verdict.next.empty() ? "" : ": ", verdict.next.empty() ? "" : verdict.words),
            verdict.next.empty() ? "Run the check again" : verdict.next};
  }

  [[nodiscard]] Verdict Overall(std::size_t documents) const {
    if (documents == 0) return {Tone::kQuiet, "No document was checked", ""};
    const std::size_t need = page_.NeedPerson();
    if (need != 0) {
      return {unchecked_ != 0 ? Tone::kBad : Tone::kAttention,
              documents == 1 ? first_.words
                             : fmt::format("{} of {} {} a person", Grouped(need),
                                           CountOf(documents, "document"), need == 1 ? "needs" : "need"),
              first_.next};
    }
    if (sums_[2] != 0)
      return {Tone::kAttention, "Upgrades are pending, and nothing needs a person yet",
              "Upgrade the documents"};
    return {
        Tone::kGood,
        documents == 1 ? "It conforms to the current data model" : "All conform to the current data model",
        ""};
  }

  UpgradeIndex upgrades_;
  Page page_;
  PageFile file_;
  std::size_t sums_[std::size(kKinds)] = {};
  std::size_t unchecked_ = 0;
  Verdict first_;  // of those that need a person
  std::string title_;
};

}  // namespace

void WriteCheckPage(std::span<const std::string> entries, std::size_t left,
                    const standalone::VersionManager& manager, const Explanations& explanations,
                    const Writer& write) {
  CheckPage page(manager, explanations);
  for (const std::string& entry : entries) {
    if (!entry.empty()) page.Add(entry);
  }
  page.Finish(left, write);
}

}  // namespace tool::page
