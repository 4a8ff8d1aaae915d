// What reports hold, in other forms.

#include <gmock/gmock.h>
#include <simdjson.h>

#include <algorithm>
#include <filesystem>

#include "ToolRun.h"

namespace tool_testing {
namespace {

using testing::HasSubstr;
using testing::Not;

class ReportCommandTest : public ToolTest {
 protected:
  // Of a document that needs a person, one that there is not, and a sound one.
  ReportCommandTest() {
    static_cast<void>(Document("=failing.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine)));
    static_cast<void>(Document("sound.hvxdoc", kJobLines));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(Path(""));
    EXPECT_EQ(Run({"upgrade", "=failing.hvxdoc", "missing.hvxdoc", "sound.hvxdoc", "--dry-run", "--report",
                   "r.jsonl"})
                  .code,
              3);
    std::filesystem::current_path(before);
  }
  [[nodiscard]] Ended Told(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"report", Path("r.jsonl")});
    return Run(more);
  }

  simdjson::dom::parser parser_;
};

TEST_F(ReportCommandTest, TextBeginsWithTheVerdictAndTellsWhatToDo) {
  const Ended told = Told();
  EXPECT_EQ(told.code, 0) << told.err;
  EXPECT_TRUE(
      told.out.starts_with("3 documents: 1 would be upgraded, 1 would be upgraded but needing a "
                           "person, 1 unreadable or broken\n"))
      << told.out;
  EXPECT_THAT(told.out, HasSubstr(", with HVXUpgradeComponents "));
  EXPECT_THAT(told.out, HasSubstr(" with exit code 3\n"));
  const std::size_t persons = told.out.find("\nNeeds a person\n");
  const std::size_t totals = told.out.find("\nTotals\n  7 features: ");
  const std::size_t dropped = told.out.find("\nDropped values");
  EXPECT_LT(persons, totals) << told.out;
  EXPECT_LT(totals, dropped) << told.out;
  EXPECT_NE(dropped, std::string::npos);
  EXPECT_THAT(told.out, HasSubstr("\n  =failing.hvxdoc: upgraded\n"));
  EXPECT_THAT(told.out,
              HasSubstr("    HVXJobLT \"Stray Job\" (id 4), left behind: its restart settings are not"));
  EXPECT_THAT(told.out,
              HasSubstr("(UpgradeJobRestartData 0x80004005 E_FAIL)\n      -> Give the job its case"));
  EXPECT_THAT(told.out, HasSubstr("  missing.hvxdoc: broken\n    missing.hvxdoc: cannot be opened"));
  EXPECT_THAT(told.out,
              HasSubstr("    HVXJobLT \"Job.1\" (id 3) in \"Case\", \"RunType\" "
                        "(UpgradeJobForFromInputFile): [\"From InputFile\"], now \"Full Analysis\"\n"));

  const Ended one = Told({"--document", "sound.hvxdoc"});
  EXPECT_TRUE(one.out.starts_with("1 document: 1 would be upgraded\n")) << one.out;
  EXPECT_THAT(one.out, Not(HasSubstr("failing.hvxdoc:")));
  EXPECT_EQ(Told({"--document", "ound.hvxdoc"}).code, 2);
}

TEST_F(ReportCommandTest, ATrialIsNotToldAsDone) {
  EXPECT_EQ(
      Run({"upgrade", Path("sound.hvxdoc"), "-o", Path("new.hvxdoc"), "--report", Path("real.jsonl")}).code,
      0);
  const Ended told = Told({Path("real.jsonl")});
  EXPECT_TRUE(told.out.starts_with("1 document: 1 upgraded\n3 documents: 1 would be upgraded, ")) << told.out;
}

TEST_F(ReportCommandTest, CsvHasARowForEachDocumentAndNoFormula) {
  const std::string csv = Told({"--format", "csv"}).out;
  EXPECT_EQ(std::ranges::count(csv, '\n'), 4);
  EXPECT_TRUE(csv.starts_with("report,file,verdict,problem,thingsForPerson,dropped,")) << csv;
  EXPECT_THAT(csv, HasSubstr(",'=failing.hvxdoc,upgraded,,1,"));
  EXPECT_THAT(csv, HasSubstr(",missing.hvxdoc,broken,missing.hvxdoc: cannot be opened"));
  EXPECT_THAT(csv, HasSubstr(",sound.hvxdoc,upgraded,,0,2,3,"));
}

TEST_F(ReportCommandTest, JsonHoldsHeadsAndWholeRecords) {
  const simdjson::padded_string text(Told({"--format", "json"}).out);
  const simdjson::dom::element top = parser_.parse(text);
  const simdjson::dom::element report = top["reports"].at(0);
  EXPECT_TRUE(bool(report["finished"]));
  EXPECT_EQ(std::string_view(report["heads"].at(0)["record"]), "run");
  ASSERT_EQ(report["documents"].get_array().size(), 3U);
  EXPECT_EQ(std::int64_t(top["totals"]["verdicts"]["upgraded"]), 2);
  EXPECT_EQ(std::int64_t(top["totals"]["thingsForPerson"]), 2);  // one has no result
  bool hasChange = false;
  for (const simdjson::dom::element document : report["documents"]) {
    simdjson::dom::element changed;
    hasChange = hasChange || (document["changed"].get(changed) == simdjson::SUCCESS &&
                              std::string_view(changed.at(0)["type"]) == "HVXJobLT");
  }
  EXPECT_TRUE(hasChange);
}

TEST_F(ReportCommandTest, OfSeveralRecordsOfADocumentTheLastCounts) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(Path(""));
  static_cast<void>(Document("missing.hvxdoc", kJobLines));
  EXPECT_EQ(Run({"upgrade", "=failing.hvxdoc", "missing.hvxdoc", "sound.hvxdoc", "--dry-run", "--report",
                 "r.jsonl"})
                .code,
            1);
  std::filesystem::current_path(before);
  EXPECT_TRUE(Told().out.starts_with("3 documents: 2 would be upgraded, 1 would be upgraded but"))
      << Told().out;
  EXPECT_THAT(Told().out, HasSubstr("  resumed once\n"));
  EXPECT_EQ(std::ranges::count(Told({"--format", "csv"}).out, '\n'), 4);
  // Two reports stand for themselves.
  std::filesystem::copy_file(Path("r.jsonl"), Path("other.jsonl"));
  EXPECT_TRUE(Told({Path("other.jsonl")}).out.starts_with("6 documents: "));
}

TEST_F(ReportCommandTest, AnUnfinishedReportIsToldAsThat) {
  const std::string whole = Content(Path("r.jsonl"));
  Put(Path("r.jsonl"), whole.substr(0, whole.rfind(R"({"record":"end")") - 100));
  const Ended told = Told();
  EXPECT_EQ(told.code, 0);
  EXPECT_TRUE(told.out.starts_with("2 documents: ")) << told.out;
  EXPECT_THAT(told.out, HasSubstr("NOT FINISHED: its last run was killed"));
  EXPECT_THAT(Told({"--format", "json"}).out, HasSubstr(R"("finished":false,"heads":)"));
}

TEST_F(ReportCommandTest, TheOutputIsWholeAndReplacesNothingUnasked) {
  for (const char* const format : {"text", "json", "csv"}) {
    const std::string told = Told({"--format", format}).out;
    ASSERT_EQ(Told({"--format", format, "-o", Path("out"), "--force"}).code, 0);
    EXPECT_EQ(Content(Path("out")), told);
  }
  const std::string before = Content(Path("out"));
  EXPECT_EQ(Told({"-o", Path("out")}).code, 5);
  EXPECT_EQ(Content(Path("out")), before);
  EXPECT_EQ(Told({"-o", Path("r.jsonl"), "--force"}).code, 2);
  Put(Path("odd.jsonl"), "odd\n");
  EXPECT_EQ(Run({"report", Path("odd.jsonl"), "-o", Path("none")}).code, 3);
  EXPECT_FALSE(std::filesystem::exists(Path("none")));
}

}  // namespace
}  // namespace tool_testing
