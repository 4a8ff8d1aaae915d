#include <simdjson.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "ToolRun.h"

namespace tool_testing {
namespace {

using simdjson::dom::element;

class ReportTest : public ToolTest {
 protected:
  // The lines of the report, as a list.
  element Report(const std::vector<std::string>& arguments, int code) {
    std::vector<std::string> all = {"upgrade", "--report", Path("r.jsonl"), "--force"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Ended ended = Run(all);
    EXPECT_EQ(ended.code, code) << ended.err;
    return Lines(Content(Path("r.jsonl")));
  }
  element Lines(std::string lines) {
    EXPECT_TRUE(lines.ends_with('\n'));
    lines.pop_back();
    std::ranges::replace(lines, '\n', ',');
    text_ = simdjson::padded_string("[" + lines + "]");
    return parser_.parse(text_);
  }
  static element RecordOf(element report, std::string_view file) {
    for (const element line : report) {
      std::string_view text;
      if (line["file"].get(text) == simdjson::SUCCESS && text.find(file) != std::string_view::npos)
        return line;
    }
    ADD_FAILURE() << file;
    return report.at(0);
  }

 private:
  simdjson::dom::parser parser_;
  simdjson::padded_string text_;
};

std::string Text(element value) {
  return simdjson::minify(value);
}

TEST_F(ReportTest, ListsTheChangedFeatureWithItsValuesBeforeAndAfter) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const element report = Report(
      {file, "-o", Path("new.hvxdoc"), "--only", "UpgradeJobForFromInputFile,UpgradeJobMemoryUnit"}, 0);
  EXPECT_EQ(Text(report.at(0)["report"]), R"("hvxupgrade")");
  EXPECT_EQ(Text(report.at(0)["version"]), "4");
  EXPECT_EQ(Text(report.at(2)["totals"]),
            R"({"documents":1,"features":3,"concerned":1,"changed":1,"created":0,"removed":0,"failed":0})");
  const element document = report.at(1);
  EXPECT_EQ(Text(document["needsPerson"]), "[]");
  EXPECT_EQ(Text(document["verdict"]), R"("upgraded")");
  EXPECT_EQ(Text(document["upgrades"]), R"(["UpgradeJobForFromInputFile","UpgradeJobMemoryUnit"])");
  EXPECT_EQ(Text(document["changed"]),
            R"([{"id":3,"type":"HVXJobLT","name":"Job","alias":"Job.1","father":{"ref":2},"changes":[)"
            R"({"field":"attributes","key":"RunType","before":"From InputFile","after":"Full Analysis",)"
            R"("by":[{"upgrade":"UpgradeJobForFromInputFile","feature":3,"type":"HVXJobLT"}]},)"
            R"({"field":"attributes","key":"InputFileFlag","before":1,"after":0,)"
            R"("by":[{"upgrade":"UpgradeJobForFromInputFile","feature":3,"type":"HVXJobLT"}]},)"
            R"({"field":"attributes","key":"MemoryUnit","after":1,)"
            R"("by":[{"upgrade":"UpgradeJobMemoryUnit","feature":3,"type":"HVXJobLT"}]}]}])");
}

TEST_F(ReportTest, TellsWhatBroughtEachChangeAbout) {
  const element report =
      Report({std::string(HVX_SOURCE_DIR) + "/examples/bolted_bracket.hvxdoc", "--dry-run"}, 0);
  const element document = report.at(1);
  std::map<std::string, int> causes;
  const auto count = [&causes](element by) {
    ASSERT_GT(by.get_array().size(), 0U) << "nothing is said to have made the change";
    for (const element cause : by) {
      element part;
      ASSERT_EQ(cause["upgrade"].get(part), simdjson::SUCCESS);
      if (cause["linkRemoved"].get(part) == simdjson::SUCCESS) {
        ++causes["link"];
      } else if (cause["propagation"].get(part) == simdjson::SUCCESS) {
        ++causes["propagation"];
      } else {
        ++causes[cause["feature"].get(part) == simdjson::SUCCESS ? "visit" : Text(cause["upgrade"])];
      }
    }
  };
  for (const element feature : document["changed"]) {
    for (const element change : feature["changes"]) count(change["by"]);
  }
  for (const char* const kind : {"created", "removed"}) {
    for (const element feature : document[kind]) count(feature["by"]);
  }
  for (const char* const cause : {"visit", "propagation", "link", R"("UpgDocumentForCCPRemoval")"})
    EXPECT_GT(causes[cause], 0) << cause;
}

TEST_F(ReportTest, SaysWhatNeedsAPersonOverAllDocuments) {
  const std::string failing =
      Document("failing.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine));
  const std::string missing = Path("missing.hvxdoc");
  const std::string odd = Document("odd\xff.hvxdoc", kJobLines);  // a name that is not UTF-8
  const element report = Report({failing, missing, odd, "--dry-run"}, 3);
  const element failure = RecordOf(report, "failing")["needsPerson"].at(0);
  EXPECT_EQ(Text(failure["kind"]), R"("leftBehind")");
  EXPECT_EQ(Text(failure["id"]), "4");
  EXPECT_EQ(Text(failure["code"]), R"("0x80004005")");
  EXPECT_EQ(Text(failure["upgrade"]), R"("UpgradeJobRestartData")");
  EXPECT_EQ(Text(failure["key"]), R"("AnalysisCase")");
  EXPECT_EQ(Text(RecordOf(report, "missing")["needsPerson"].at(0)["file"]), '"' + missing + '"');
  EXPECT_EQ(Text(RecordOf(report, "missing")["verdict"]), R"("broken")");
  EXPECT_EQ(Text(RecordOf(report, "odd")["verdict"]), R"("upgraded")");
  EXPECT_EQ(Text(report.at(4)["exitCode"]), "3");
}

TEST_F(ReportTest, EveryRunSaysWhereItComesFrom) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::vector<std::string> command = {"upgrade", file, "--dry-run", "--report", Path("r.jsonl")};
  ASSERT_EQ(Run(command).code, 0);
  std::vector<std::string> later = command;
  later.insert(later.end(), {"--timeout", "2m"});
  ASSERT_EQ(Run(later).code, 0);
  const element report = Lines(Content(Path("r.jsonl")));
  EXPECT_EQ(Text(report.at(2)["record"]), R"("continued")");
  EXPECT_EQ(Text(report.at(2)["otherArguments"]), R"(["--timeout","120"])");
  EXPECT_EQ(report.at(2)["commandLine"].get_array().size(), 8U);
  for (const std::size_t line : {0U, 2U}) {
    const element origin = report.at(line);
    EXPECT_EQ(std::string_view(origin["commandLine"].at(2)), file);
    const std::string_view time(origin["time"]);
    EXPECT_TRUE(time.size() == 20 && time.starts_with("20") && time.ends_with('Z')) << time;
    for (const char* const key : {"host", "user"}) EXPECT_NE(std::string_view(origin[key]), "") << key;
    const element library = origin["libraries"].at(0);
    EXPECT_EQ(Text(library["name"]), R"("HVXUpgradeComponents")");
    EXPECT_EQ(std::string_view(library["version"]).substr(0, 2), "1.");
    EXPECT_EQ(std::string_view(library["file"]), UPGRADE_LIBRARY);
    EXPECT_EQ(std::string_view(library["sha256"]).size(), 64U);
  }

  // Of the same library elsewhere the results are the same, of another one they may not be.
  const std::string copy = Path("copy.so");
  std::filesystem::copy_file(UPGRADE_LIBRARY, copy);
  std::vector<std::string> withCopy = command;
  withCopy.insert(withCopy.begin(), {"--no-default-library", "--library", copy});
  EXPECT_EQ(Run(withCopy).code, 0);
  const std::string before = Content(Path("r.jsonl"));
  withCopy.insert(withCopy.begin(), {"--library", TROUBLE_LIBRARY});
  const Ended other = Run(withCopy);
  EXPECT_EQ(other.code, 5);
  EXPECT_NE(
      other.err.find("r.jsonl: the report belongs to a run with other upgrade libraries (HVXUpgradeCompon"),
      std::string::npos)
      << other.err;
  EXPECT_EQ(Content(Path("r.jsonl")), before);
}

TEST_F(ReportTest, AMergedReportKeepsTheHeads) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  for (const char* const shard : {"1/2", "2/2", "2/2"})
    static_cast<void>(Run({"upgrade", file, "--dry-run", "--report", Path(shard[0] + std::string(".jsonl")),
                           "--shard", shard}));
  const Ended merged = Run({"merge", Path("1.jsonl"), Path("2.jsonl"), "--report", Path("all.jsonl")});
  EXPECT_EQ(merged.code, 0) << merged.err;
  const element report = Lines(Content(Path("all.jsonl")));
  EXPECT_EQ(std::string_view(report.at(0)["commandLine"].at(1)), "merge");
  std::string records;
  for (const element line : report) records += std::string(std::string_view(line["record"])) + " ";
  EXPECT_EQ(records, "run joined joined continued document end ");
  EXPECT_EQ(std::string_view(report.at(2)["file"]), Path("2.jsonl"));
  EXPECT_EQ(std::string_view(report.at(2)["arguments"].at(3)), "2/2");
  // Results of several libraries are told as that.
  static_cast<void>(Run({"--library", UPGRADE_LIBRARY, "--library", TROUBLE_LIBRARY, "upgrade", file,
                         "--dry-run", "--report", Path("other.jsonl"), "--shard", "2/2"}));
  const Ended mixed = Run({"merge", Path("1.jsonl"), Path("other.jsonl")});
  EXPECT_EQ(mixed.code, 1);
  EXPECT_NE(mixed.err.find("these shards were upgraded with different upgrade libraries"), std::string::npos)
      << mixed.err;
  // The whole command goes on with it.
  EXPECT_EQ(Run({"upgrade", file, "--dry-run", "--report", Path("all.jsonl")}).code, 0);
  EXPECT_EQ(Lines(Content(Path("all.jsonl"))).get_array().size(), 7U);
}

TEST_F(ReportTest, StandardOutputGetsTheReportAlone) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const Ended ended = Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--report", "-"});
  EXPECT_EQ(ended.code, 0) << ended.err;
  const element report = Lines(ended.out);
  ASSERT_EQ(report.get_array().size(), 3U);
  EXPECT_EQ(Text(report.at(1)["changed"].at(0)["id"]), "3");
  EXPECT_EQ(Text(report.at(2)["record"]), R"("end")");
  EXPECT_NE(ended.err.find("  Result: "), std::string::npos) << ended.err;
  EXPECT_EQ(Names(), "job.hvxdoc new.hvxdoc");

  const Ended full = Run({"upgrade", file, "--dry-run", "--report", "-"}, "/dev/full");
  EXPECT_EQ(full.code, 5);
  EXPECT_NE(full.err.find("standard output: the report cannot be written"), std::string::npos) << full.err;
}

// What a worker had written before it failed must not stay.
TEST_F(ReportTest, StaysSoundWhenTheResultCannotBeWritten) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string lost = Path(std::string(256, 'x'));  // too long, but its temporary file's name is not
  const element report = Report({file, "-o", lost}, 5);
  EXPECT_EQ(Text(report.at(1)["verdict"]), R"("unwritable")");
  element changed;
  EXPECT_NE(report.at(1)["changed"].get(changed), simdjson::SUCCESS);
  EXPECT_EQ(Text(report.at(2)["totals"]["changed"]), "0");
}

}  // namespace
}  // namespace tool_testing
