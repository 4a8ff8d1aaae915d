// What each routine makes of every failing call and of every missing interface, compared with the table
// tests/golden/failing_calls.txt. scripts/renew-golden writes the table anew.
//
// A section of the table is a class. A row beneath a feature and an identifier is one call that fails with
// -77, or one interface that a feature seems not to offer; behind the bar stand the result (with the
// routine's own, where the class gives another), how many host calls follow, and the document: "untouched",
// "done" (as without the failure), or a sum over its lines.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "base/VLMFatalError.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "support/Sums.h"
#include "support/TempFolder.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIUpgrade.h"

namespace {

using namespace standalone;
using testing_support::Library;
using testing_support::LinesOf;

constexpr HRESULT kFailure = -77;
constexpr std::int64_t kEndless = 3000;  // no routine makes so many calls
// Of the rows of each routine; under sanitizers, where each takes thirty times as long, a sample.
#ifdef HVX_SANITIZED
constexpr std::size_t kEvery = 5;
#else
constexpr std::size_t kEvery = 1;
#endif
constexpr const char* kTable = HVX_SOURCE_DIR "/tests/golden/failing_calls.txt";

struct Outcome {
  std::string result;
  DocumentPtr document;
  std::string printed;
  std::vector<HostCall> calls;
  std::vector<HostCall> casts;
};

// Where a routine starts: the document, and what runs it there.
struct Start {
  std::function<DocumentPtr()> document;
  std::function<HRESULT(Document&)> run;
  std::string title;
};

std::string NameOf(HRESULT result) {
  if (result == E_FAIL) return "E_FAIL";
  if (result == E_NOINTERFACE) return "E_NOINTERFACE";
  return std::to_string(result);
}

// Keeps what the last routine gave.
class RoutineResult final : public HVXUpgradeObserver {
 public:
  RoutineResult() { *Library().observer() = this; }
  ~RoutineResult() { *Library().observer() = nullptr; }

  void BeforeRoutine(const VLMBaseUnknown_var& /*feature*/, const HVXUpgradeBinding& /*row*/) override {}
  void AfterRoutine(const VLMBaseUnknown_var& /*feature*/, const HVXUpgradeBinding& /*row*/,
                    HRESULT result) override {
    last_ = result;
  }

  [[nodiscard]] std::string Beside(HRESULT reported) const {
    const std::string text = NameOf(reported);
    return !last_ || *last_ == reported ? text : fmt::format("{} for {}", text, NameOf(*last_));
  }

 private:
  std::optional<HRESULT> last_;
};

Outcome RunUnder(CheckpointPlan plan, const Start& start) {
  const DocumentPtr document = start.document();
  const CurrentDocumentScope current(document);
  std::ostringstream printed;
  std::streambuf* const output = std::cout.rdbuf(printed.rdbuf());
  plan.record = true;
  plan.callLimit = kEndless;
  plan.failure = kFailure;
  const CheckpointScope scope(std::move(plan));
  Outcome outcome;
  const RoutineResult routine;
  try {
    outcome.result = routine.Beside(start.run(*document.Get()));
  } catch (const VLMFatalAssertion& assertion) {
    outcome.result = assertion.what();
  } catch (const VLMNullVarError&) {
    outcome.result = "null handle";
  } catch (const CallLimitReached&) {
    outcome.result = "endless";
  }
  std::cout.rdbuf(output);
  outcome.calls = Checkpoint::Recorded();
  outcome.casts = Checkpoint::RecordedCasts();
  outcome.document = document;
  outcome.printed = printed.str();
  return outcome;
}

std::string SumOf(std::string_view text) {
  return fmt::format("{:08x}", testing_support::Shortened(testing_support::SumOf(text)));
}

std::string TextOf(const HostCall& call) {
  std::string text = fmt::format("{} #{}", call.operation, call.feature);
  if (!call.detail.empty()) text += " " + call.detail;
  if (call.option != 0) text += fmt::format(" ({})", call.option);
  return text;
}

// Of calls of one operation, or casts to one interface, on features of one late type: what comes round again
// and again fails alike.
std::set<std::size_t> FirstTwoAndLast(const std::vector<HostCall>& calls, const Document& document) {
  static const std::size_t first = std::getenv("HVX_ACCOUNT") == nullptr ? 2 : 4;
  std::map<std::pair<std::string, std::string_view>, std::vector<std::size_t>> positions;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const Feature* const feature = document.Find(calls[i].feature);
    const std::string_view type = feature == nullptr ? std::string_view() : feature->TypeName();
    positions[{calls[i].operation, type}].push_back(i);
  }
  std::set<std::size_t> chosen;
  for (const auto& [operation, all] : positions) {
    chosen.insert(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(std::min(first, all.size())));
    chosen.insert(all.back());
  }
  return chosen;
}

std::string TitleOf(const Start& start, const Outcome& normal, const std::string& done) {
  return fmt::format("{}: {}, {}\n", start.title, normal.result, SumOf(done));
}

std::string RowsOf(const Start& start) {
  const Outcome normal = RunUnder({}, start);
  const std::string untouched = LinesOf(*start.document().Get());
  const std::string done = LinesOf(*normal.document.Get()) + normal.printed;
  const auto row = [&](const std::string& failing, const Outcome& outcome, std::size_t callsBefore) {
    const std::string lines = LinesOf(*outcome.document.Get()) + outcome.printed;
    const std::string state = lines == untouched ? "untouched" : lines == done ? "done" : SumOf(lines);
    return fmt::format("  {} | {}, {}, {}\n", failing, outcome.result, outcome.calls.size() - callsBefore,
                       state);
  };
  std::string rows = TitleOf(start, normal, done);
  std::size_t count = 0;
  for (const std::size_t i : FirstTwoAndLast(normal.calls, *normal.document.Get())) {
    if (count++ % kEvery != 0) continue;
    CheckpointPlan plan;
    plan.failNth = static_cast<std::int64_t>(i) + 1;
    rows += row(TextOf(normal.calls[i]), RunUnder(plan, start), i + 1);
  }
  std::vector<HostCall> casts;
  for (const HostCall& cast : normal.casts) {
    if (cast.operation != "HVXIUpgrade" && cast.operation != "VLMBaseUnknown" &&
        std::ranges::find(casts, cast) == casts.end())
      casts.push_back(cast);
  }
  for (const std::size_t i : FirstTwoAndLast(casts, *normal.document.Get())) {
    if (count++ % kEvery != 0) continue;
    CheckpointPlan plan;
    plan.withholdInterface = casts[i].operation;
    plan.withholdFrom = casts[i].feature;
    rows += row("no " + TextOf(casts[i]), RunUnder(plan, start), 0);
  }
  return rows;
}

HRESULT Upgrade(Document& document, FeatureId id, const VLMUnicodeString& identifier) {
  const HVXIUpgrade_var spUpgrade = HandleOn<HVXIUpgrade>(document.Find(id));
  return spUpgrade->Upgrade({identifier});
}

// A file that holds the example with small meshes, written once.
std::filesystem::path FileOf(const std::string& example) {
  static const testing_support::TempFolder folder;
  const std::filesystem::path file = folder / example.c_str();
  if (!exists(file)) WriteDocument(*testing_support::ExampleWithSmallMeshes(example).Get(), file);
  return file;
}

// The first feature that a routine runs on, and each later one on which it makes a call that it made on none;
// without failures also those on which it makes so many calls, or gives such a result, as on none.
std::string RowsOf(const HVXUpgradeClass& upgradeClass, const VLMUnicodeString& identifier) {
  std::string rows;
  std::set<std::string> met;
  std::set<std::pair<std::string, std::size_t>> outcomes;
  for (const char* const example : {"bolted_bracket", "heated_pipe"}) {
    const std::filesystem::path file = FileOf(example);
    const auto read = [file] { return ReadDocument(file); };
    const DocumentPtr document = read();
    for (const Feature* each = document->First(); each != nullptr; each = each->next) {
      if (std::ranges::find(upgradeClass.lateTypes, each->TypeName()) == upgradeClass.lateTypes.end())
        continue;
      const Start start{
          read, [id = each->id, identifier](Document& on) { return Upgrade(on, id, identifier); },
          fmt::format("{} on {} #{} of {}", identifier.View(), each->TypeName(), each->id, example)};
      bool isNew = met.empty();
      const Outcome normal = RunUnder({}, start);
      for (const HostCall& call : normal.calls) isNew |= met.insert(call.operation).second;
      const bool endsAnew = outcomes.emplace(normal.result, normal.calls.size()).second;
      if (isNew) {
        rows += RowsOf(start);
      } else if (endsAnew) {
        rows += TitleOf(start, normal, LinesOf(*normal.document.Get()) + normal.printed);
      }
    }
  }
  return rows;
}

std::string SectionOf(const HVXUpgradeClass& upgradeClass) {
  std::string section;
  std::set<std::string_view> done;
  for (const HVXUpgradeBinding& binding : upgradeClass.bindings) {
    if (done.insert(binding.identifier.View()).second) section += RowsOf(upgradeClass, binding.identifier);
  }
  return section;
}

// Conversions of the whole document, handed all features.
std::string SectionOf(std::span<const HVXDocumentUpgrade> conversions) {
  std::string section;
  for (const HVXDocumentUpgrade& conversion : conversions) {
    const auto run = [&conversion](Document& document) {
      VLMListValVLMISpecObject_var features;
      for (Feature* each = document.First(); each != nullptr; each = each->next)
        features.Append(HandleOn<VLMISpecObject>(each));
      return conversion.upgrade({conversion.identifier}, features);
    };
    section += RowsOf({[] { return ReadDocument(FileOf("bolted_bracket")); }, run,
                       std::string(conversion.identifier.View())});
  }
  return section;
}

// The sections as the library makes them, by their names.
std::map<std::string, std::function<std::string()>> Sections() {
  std::map<std::string, std::function<std::string()>> sections;
  for (const HVXUpgradeClass* const upgradeClass : Library().classes) {
    if (!upgradeClass->bindings.empty())
      sections[upgradeClass->name] = [upgradeClass] { return SectionOf(*upgradeClass); };
  }
  sections["Documents"] = [] { return SectionOf(Library().documentUpgrades); };
  return sections;
}

// The sections of the table by their names.
std::map<std::string, std::string> Table() {
  std::map<std::string, std::string> table;
  std::ifstream file(kTable);
  std::string* section = nullptr;
  std::size_t count = 0;  // of the rows beneath a title
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("== ")) {
      section = &table[line.substr(3)];
    } else if (section != nullptr) {
      const bool isRow = line.starts_with("  ");
      if (!isRow) count = 0;
      if (!isRow || count++ % kEvery == 0) *section += line + '\n';
    }
  }
  return table;
}

class FailingCallsTest : public testing_support::UpgradeTest,
                         public testing::WithParamInterface<std::string> {};

TEST_P(FailingCallsTest, DoWhatTheTableSays) {
  const auto sections = Sections();
  ASSERT_TRUE(sections.contains(GetParam()));
  EXPECT_EQ(sections.at(GetParam())(), Table()[GetParam()]);
}

std::vector<std::string> NamesOfSections() {
  std::vector<std::string> names;
  for (const auto& [name, rows] : Table()) names.push_back(name);
  return names;
}
INSTANTIATE_TEST_SUITE_P(Sections, FailingCallsTest, testing::ValuesIn(NamesOfSections()),
                         [](const auto& test) { return test.param; });

class FailingCallsTableTest : public testing_support::UpgradeTest {};

TEST_F(FailingCallsTableTest, HasASectionForEveryClass) {
  if (std::getenv("HVX_RENEW_GOLDEN") != nullptr) {
    std::ofstream file(kTable);
    for (const auto& [name, rows] : Sections()) file << "== " << name << '\n' << rows();
  }
  const std::map<std::string, std::string> table = Table();
  for (const auto& [name, rows] : Sections()) EXPECT_TRUE(table.contains(name)) << name;
}

// What scripts/mutate compares: the table with more calls.
TEST_F(FailingCallsTableTest, DISABLED_Account) {
  ASSERT_NE(std::getenv("HVX_ACCOUNT"), nullptr);
  std::ofstream account(std::getenv("HVX_ACCOUNT"), std::ios::app);
  const char* const only = std::getenv("HVX_ACCOUNT_OF");  // a section, where only that can differ
  for (const auto& [name, rows] : Sections()) {
    if (only == nullptr || name == only) account << "== " << name << '\n' << rows();
  }
}

}  // namespace
