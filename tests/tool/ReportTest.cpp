#include <simdjson.h>

#include <algorithm>
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
    std::string lines = Content(Path("r.jsonl"));
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
            R"([{"id":3,"type":"HVXJobLT","name":"Job","alias":"Job.1","changes":[)"
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
