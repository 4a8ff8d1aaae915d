#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "ToolRun.h"

namespace tool_testing {
namespace {

namespace fs = std::filesystem;

class UpgradeCommandTest : public ToolTest {};

bool Has(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

TEST_F(UpgradeCommandTest, WritesTheResultBesideTheDocument) {
  const std::string old = Document("old.hvxdoc", kJobLines);
  const std::string before = Content(old);
  const Ended ended = Run({"upgrade", old, "-o", Path("new.hvxdoc")});
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_EQ(Content(old), before);
  EXPECT_TRUE(Has(Content(Path("new.hvxdoc")), R"("RunType":"Full Analysis")"));
  EXPECT_TRUE(ended.out.starts_with(old + ": upgraded, ")) << ended.out;
  EXPECT_TRUE(Has(ended.out, "Result: " + Path("new.hvxdoc")));
  EXPECT_EQ(ended.err, "");
}

TEST_F(UpgradeCommandTest, TheSummaryTellsWhatMattersFirstAndTheTableLast) {
  const std::string example = HVX_SOURCE_DIR "/examples/bolted_bracket.hvxdoc";
  const std::vector<std::string> command{"upgrade", example, "--dry-run", "--report", Path("report")};
  const std::string text = Run(command).out;
  std::size_t last = 0;
  for (const char* const part :
       {": would be upgraded, ", "\n  Dropped: ", "\n    Clearance of SAMFaceFaceContact \"",
        "\n  Analysis: ", "\n      18  UpgContactWithContactControl: ",
        "\n       2  UpgDocumentForCCPRemoval: ", "\n  Nothing was written", "\n  Report: ", "\n  Late type ",
        "\n  SAMBasicComponent ", "\n  and 41 more late types, 10 of them unchanged; "}) {
    const std::size_t found = text.find(part, last);
    ASSERT_NE(found, std::string::npos) << part << text;
    last = found;
  }
  const auto linesOfTable = [](const std::string& out) {
    return std::ranges::count(out.substr(out.find("\n  Late type ") + 1), '\n');
  };
  EXPECT_EQ(linesOfTable(text), 1 + 20 + 1);

  std::vector<std::string> verbose = command;
  verbose.insert(verbose.end(), {"--verbose", "--force"});
  const std::string all = Run(verbose).out;
  EXPECT_EQ(linesOfTable(all), 1 + 61);
  EXPECT_FALSE(Has(all, "--verbose"));
  EXPECT_EQ(Run({"upgrade", example, "--dry-run", "--quiet"}).out, "");
}

TEST_F(UpgradeCommandTest, TheSummaryShortensWhatWasDropped) {
  std::string attributes;
  std::string longText;
  std::string begin;
  for (int i = 0; i < 50; ++i) longText += "\u00e4";
  for (int i = 0; i < 19; ++i) begin += "\u00e4";
  for (int i = 0; i < 30; ++i) attributes += "\"Key" + std::to_string(i) + "\":[\"" + longText + "\",7],";
  attributes.pop_back();
  const std::string file = Document("old.hvxdoc", R"({"id":1,"type":"AnalysisModel"}
{"id":2,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1}}
{"id":3,"type":"HVXGeneralStaticStepLT","father":{"ref":2}}
{"id":4,"type":"HVXFieldOutputRequestContainerLT","father":{"ref":3}}
{"id":5,"type":"HVXFieldOutputLT","name":"Old","father":{"ref":4},"attributes":{)" +
                                                      attributes + "}}\n");
  const Ended ended = Run({"upgrade", file, "--dry-run"});
  EXPECT_TRUE(Has(ended.out, "; --report lists them\n")) << ended.out;
  EXPECT_TRUE(
      Has(ended.out, "\n    Key19 of HVXFieldOutputLT \"Old\" (id 5): \"" + begin + " ... and 1 more\n"))
      << ended.out;
  EXPECT_TRUE(Has(ended.out, "\n    and 10 more keys; --verbose lists them\n"));
  EXPECT_TRUE(Has(Run({"upgrade", file, "--dry-run", "--verbose"}).out, "\n    Key29 of "));
}

TEST_F(UpgradeCommandTest, CopiesACurrentDocumentUnchanged) {
  const std::string old = Document("old.hvxdoc", kJobLines);
  ASSERT_EQ(Run({"upgrade", old, "-o", Path("new.hvxdoc")}).code, 0);
  // A blank that this program would not write shows that bytes are copied.
  Put(Path("new.hvxdoc"), Content(Path("new.hvxdoc")) + "\n");
  const Ended ended = Run({"upgrade", Path("new.hvxdoc"), "-o", Path("again.hvxdoc")});
  EXPECT_EQ(ended.code, 0);
  EXPECT_TRUE(Has(ended.out, "already current"));
  EXPECT_EQ(Content(Path("again.hvxdoc")), Content(Path("new.hvxdoc")));
}

TEST_F(UpgradeCommandTest, ReplacesInPlaceOnceAndKeepsTheBackup) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string before = Content(file);
  EXPECT_EQ(Run({"upgrade", file, "--in-place", "--backup", ".old"}).code, 0);
  EXPECT_EQ(Content(file + ".old"), before);
  EXPECT_NE(Content(file), before);

  const auto written = fs::last_write_time(file);
  EXPECT_EQ(Run({"upgrade", file, "--in-place"}).code, 0);
  EXPECT_EQ(fs::last_write_time(file), written);
  EXPECT_EQ(Names(), "job.hvxdoc job.hvxdoc.old");
}

TEST_F(UpgradeCommandTest, DryRunTellsButWritesNothing) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string before = Content(file);
  const Ended ended = Run({"upgrade", file, "--dry-run", "--output-dir", Path("new")});
  EXPECT_EQ(ended.code, 0);
  EXPECT_TRUE(Has(ended.out, "would be upgraded"));
  EXPECT_TRUE(Has(ended.out, Path("new") + "/job.hvxdoc"));
  EXPECT_EQ(Content(file), before);
  EXPECT_EQ(Names(), "job.hvxdoc");
}

TEST_F(UpgradeCommandTest, FailedFeaturesAreNamedAndTheResultIsWritten) {
  const std::string file = Document("job.hvxdoc", std::string(kJobLines) + std::string(kBrokenJobLine));
  const Ended ended = Run({"upgrade", file, "-o", Path("new.hvxdoc")});
  EXPECT_EQ(ended.code, 1);
  EXPECT_TRUE(Has(ended.out, "HVXJobLT \"Stray Job\" (id 4), left behind: ")) << ended.out;
  EXPECT_TRUE(Has(ended.out, "(UpgradeJobRestartData: 0x80004005 (E_FAIL))")) << ended.out;
  EXPECT_TRUE(Has(Content(Path("new.hvxdoc")), R"("RunType":"Full Analysis")"));

  const Ended quiet = Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--force", "--quiet"});
  EXPECT_EQ(quiet.out, "");
  EXPECT_TRUE(Has(quiet.err, "1 thing needs a person")) << quiet.err;
}

TEST_F(UpgradeCommandTest, AnExistingFileIsReplacedOnlyWhenForced) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  Put(Path("new.hvxdoc"), "mine");
  const Ended refused = Run({"upgrade", file, "-o", Path("new.hvxdoc")});
  EXPECT_EQ(refused.code, 5);
  EXPECT_TRUE(Has(refused.err, "--force")) << refused.err;
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(Content(Path("new.hvxdoc")), "mine");
  EXPECT_EQ(Names(), "job.hvxdoc new.hvxdoc");

  EXPECT_EQ(Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--force"}).code, 0);
  EXPECT_NE(Content(Path("new.hvxdoc")), "mine");

  Put(Path("r.json"), "mine");
  const Ended noReport = Run({"upgrade", file, "--dry-run", "--report", Path("r.json")});
  EXPECT_EQ(noReport.code, 5);
  EXPECT_TRUE(Has(noReport.err, "--force")) << noReport.err;
  EXPECT_EQ(Content(Path("r.json")), "mine");
}

TEST_F(UpgradeCommandTest, WhatIsNoFileIsNeverReplaced) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  fs::create_symlink(Path("nowhere"), Path("link"));
  for (const std::string option : {"-o", "--report"}) {
    const std::string other = option == "-o" ? "--quiet" : "--dry-run";
    EXPECT_EQ(Run({"upgrade", file, other, "--force", option, Path("pipe")}).code, 5);
    EXPECT_EQ(Run({"upgrade", file, other, option, Path("link")}).code, 5);
  }
  EXPECT_TRUE(fs::is_fifo(Path("pipe")));
  EXPECT_EQ(Names(), "job.hvxdoc link pipe");
}

TEST_F(UpgradeCommandTest, NobodyReadingIsNoReasonToLeaveDocumentsUndone) {
  const std::string first = Document("a.hvxdoc", kJobLines);
  const std::string second = Document("b.hvxdoc", kJobLines);
  for (const std::string out : {"/dev/full", "closed"}) {
    const Ended ended = Run({"upgrade", first, second, "--output-dir", Path(out.substr(1)), "--report",
                             Path("r.json"), "--force"},
                            out);
    EXPECT_EQ(ended.code, 5);
    EXPECT_TRUE(ended.err.starts_with("hvxupgrade: standard output cannot be written (")) << ended.err;
    for (const char* const name : {"/a.hvxdoc", "/b.hvxdoc"})
      EXPECT_TRUE(Has(Content(Path(out.substr(1)) + name), R"("RunType":"Full Analysis")"));
    EXPECT_TRUE(Content(Path("r.json")).starts_with("{\"record\":\"run\""));
  }
}

TEST_F(UpgradeCommandTest, ADocumentFromAPipeIsReadOnce) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  ASSERT_EQ(Run({"upgrade", file, "-o", Path("new.hvxdoc")}).code, 0);
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const pid_t program = Start({"upgrade", Path("pipe"), "-o", Path("again.hvxdoc"), "--timeout", "20"});
  Put(Path("pipe"), Content(Path("new.hvxdoc")));
  EXPECT_EQ(Wait(program).code, 0);
  EXPECT_EQ(Content(Path("again.hvxdoc")), Content(Path("new.hvxdoc")));
}

TEST_F(UpgradeCommandTest, AReportMayStandAmongTheResults) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  EXPECT_EQ(Run({"upgrade", file, "--output-dir", Path("new"), "--report", Path("new/r.json")}).code, 0);
  EXPECT_TRUE(fs::exists(Path("new/r.json")));
}

TEST_F(UpgradeCommandTest, AFolderThatCannotBeWrittenIsReported) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  EXPECT_EQ(Run({"upgrade", file, "-o", Path("missing/new.hvxdoc")}).code, 5);
  EXPECT_EQ(Run({"upgrade", file, "--output-dir", file}).code, 5);
  if (geteuid() == 0) return;  // nothing is read-only for root
  fs::create_directory(Path("locked"));
  fs::permissions(Path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(Run({"upgrade", file, "-o", Path("locked/new.hvxdoc")}).code, 5);
  fs::permissions(Path("locked"), fs::perms::owner_all);
}

TEST_F(UpgradeCommandTest, OnlyAndUntilChooseAmongThePending) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const auto recorded = [&](const std::string& option, const std::string& value) {
    EXPECT_EQ(Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--force", option, value}).code, 0);
    const std::string content = Content(Path("new.hvxdoc"));
    return content.substr(0, content.find('\n'));
  };
  // Chronological, whatever order they are given in.
  EXPECT_TRUE(Has(recorded("--only", "UpgradeJobMemoryUnit,UpgradeJobRestartData"),
                  R"("upgrades":["UpgradeJobRestartData","UpgradeJobMemoryUnit"])"));
  EXPECT_TRUE(Has(recorded("--until", "UpgradeJobRestartData"), R"("UpgradeJobRestartData"])"));
}

TEST_F(UpgradeCommandTest, WrongUsageIsExplained) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string other = Document("other.hvxdoc", kJobLines);
  const auto refused = [this](const std::vector<std::string>& arguments, std::string_view explained) {
    const Ended ended = Run(arguments);
    EXPECT_EQ(ended.code, 2) << explained;
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(Has(ended.err, explained)) << ended.err;
  };
  refused({}, "give a command");
  refused({"upgrade", file}, "give a place for the result");
  refused({"upgrade", file, "--in-place", "-o", Path("x")}, "give only one of");
  refused({"upgrade", file, other, "-o", Path("x")}, "--output-dir");
  refused({"upgrade"}, "give documents");
  refused({"upgrade", file, "--dry-run", "-0"}, "--files-from");
  refused({"upgrade", file, "-o", Path("x"), "--report", Path("x")}, "written twice");
  refused({"upgrade", file, "--dry-run", "--report", file, "--force"}, "would replace");
  refused({"upgrade", file, "--in-place", "--backup", ".old", "--report", file + ".old"}, "written twice");
  refused({"upgrade", file, "-o", Path("x"), "--backup", ".old"}, "--in-place");
  refused({"upgrade", file, "--dry-run", "--only", "UpgradeJobMemoryUnti"}, "\"UpgradeJobMemoryUnit\"?");
  refused({"upgrade", file, "--dry-run", "--only", "Foo"},
          "there is no upgrade \"Foo\"; the command identifiers");
  refused({"upgrade", file, "--dry-run", "--only", "InitialTemp"}, "BasicComponents\"?");
  refused({"upgrade", file, "--dry-run", "--until", ""}, "--until");
  refused({"upgrade", file, "--dry-run", "--report", ""}, "--report");
  refused({"upgrade", file, "-o", "-", "--report", "-"}, "standard output can be written only once");
  refused({"upgrade", file, "--dry-run", "--report", "-", "--again", "all"}, "--again");
  refused({"upgrade", file, "-o", ""}, "--output");
  refused({"show", file, "--depth", "0"}, "must be a whole number above 0");
  refused({"frob", file}, "there is no command \"frob\"; use status, ");
  refused({"shwo", file}, "did you mean 'show'?");
  refused({"help", "upgrad"}, "did you mean 'upgrade'?");
  refused({"upgrade", file, "--dry-run", "--timout=10"}, "no option \"--timout\"; did you mean '--timeout'?");
  refused({"--dta", Path("x"), "status", file}, "did you mean '--data'?");
  refused({"status", file, "-check"}, "did you mean '--check'?");
  refused({"--check", "status", file}, "the option \"--check\" belongs behind status\n");
  refused({"status", file, "--timeout", "1"}, "there is no option \"--timeout\"\n");  // though another has it
  refused({"--data", Path("x"), "frob", file}, "there is no command \"frob\"");
  refused({"upgrade", file, "--dry-run", "--language", "xx"}, "choose one of: ");
  refused({"upgrade", file, "--dry-run", "--timeout", "-1"}, "--timeout");
  refused({"upgrade", file, "--dry-run", "--timeout", "1d"}, "must be a time such as 90 (seconds), 90s, 10m");
  EXPECT_EQ(Names(), "job.hvxdoc other.hvxdoc");
}

TEST_F(UpgradeCommandTest, BadDocumentsAreNamedWithTheirLineAndTheOthersGoOn) {
  const std::string good = Document("good.hvxdoc", kJobLines);
  const std::string broken = Document("broken.hvxdoc", std::string(kJobLines) + "{\"id\":4,\n");
  const std::string newer = Document("newer.hvxdoc", kJobLines, R"("UpgradeOfTheFuture")");
  Put(Path("format.hvxdoc"), R"({"format":"hvxdoc","version":99,"upgrades":[],"features":0})"
                             "\n");
  const Ended ended = Run({"upgrade", newer, broken, good, "--output-dir", Path("new")});
  EXPECT_EQ(ended.code, 3);
  EXPECT_TRUE(Has(ended.err, broken + ":5: ")) << ended.err;
  EXPECT_TRUE(Has(ended.err, "UpgradeOfTheFuture"));
  EXPECT_TRUE(Has(ended.out,
                  "3 documents: 1 upgraded, 1 unreadable or broken, 1 newer or with "
                  "unknown upgrades"))
      << ended.out;
  EXPECT_EQ(Run({"upgrade", broken, "--output-dir", Path("none")}).code, 3);
  EXPECT_FALSE(fs::exists(Path("none")));  // nothing to put there
  EXPECT_TRUE(fs::exists(Path("new/good.hvxdoc")));
  EXPECT_FALSE(fs::exists(Path("new/broken.hvxdoc")));

  EXPECT_EQ(Run({"upgrade", newer, "--in-place"}).code, 4);
  EXPECT_EQ(Run({"upgrade", Path("format.hvxdoc"), "--in-place"}).code, 4);
  EXPECT_EQ(Run({"upgrade", Path("none/none.hvxdoc"), "--in-place"}).code, 3);
}

TEST_F(UpgradeCommandTest, TraceTellsEveryHostCallInOrder) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  ASSERT_EQ(Run({"upgrade", file, "--dry-run", "--only", "UpgradeJobMemoryUnit", "--trace", Path("t")}).code,
            0);
  EXPECT_EQ(Content(Path("t")), "# " + file +
                                    "\n# UpgradeJobMemoryUnit on 3 HVXJobLT"
                                    "\nHVXIJob::SetMemoryUnit 3 HVXJobLT \"MemoryUnit\"\n");
}

// A variable of a script that was never set, or a slip, must not take a limit away.
TEST_F(UpgradeCommandTest, WhatIsNoNumberIsNoLimit) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  for (const char* const option :
       {"--memory", "--limit-features", "--limit-memory", "--limit-unpacked", "--timeout", "--jobs"}) {
    for (const char* const value : {"-1", "", "many"})
      EXPECT_EQ(Run({"upgrade", file, "--in-place", option, value}).code, 2) << option << " " << value;
  }
  for (const char* const verb : {"status", "check", "show", "merge", "clean"})
    EXPECT_EQ(Run({verb, ""}).code, 2);
  const Ended nameless = Run({"upgrade", "", "--in-place"});
  EXPECT_EQ(nameless.code, 2);
  EXPECT_TRUE(Has(nameless.err, "the value is empty")) << nameless.err;
  EXPECT_TRUE(Has(Content(file), R"("upgrades":[])"));
}

}  // namespace
}  // namespace tool_testing
