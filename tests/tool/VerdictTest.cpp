// What the program says of results that need a person, what it then writes, and how such a document is
// mended.

#include <fmt/format.h>

#include <cstdlib>

#include "ToolRun.h"

namespace tool_testing {
namespace {

bool Has(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

// A film condition whose upgrade lacks what it reads, in a document that is fine otherwise.
constexpr std::string_view kFilmLines =
    R"({"id":1,"type":"AnalysisModel","name":"Model","attributes":{"FeatList":[]}}
{"id":2,"type":"AnalysisCase","alias":"Thermal Case","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":2}}
{"id":3,"type":"HVXLoadContainerLT","alias":"Loads","father":{"ref":2}}
{"id":4,"type":"HVXFilmCondition","alias":"Film","father":{"ref":3},"attributes":{"refTemperature_param":null}}
)";

class VerdictTest : public ToolTest {
 protected:
  // What a person does: gives the condition the parameter that it lacks.
  static void Correct(const std::string& file) {
    std::string text = Content(file);
    const std::string_view lacking = R"("refTemperature_param":null)";
    text.replace(text.find(lacking), lacking.size(), R"("refTemperature_param":{"ref":900})");
    text +=
        R"({"id":900,"type":"Parameter","father":{"ref":4},"attributes":{"Magnitude":"TEMPRTRE","Value":293.5}})"
        "\n";
    const std::string_view count = "\"features\":";
    const std::size_t at = text.find(count) + count.size();
    std::size_t digits = 0;
    const int features = std::stoi(text.substr(at), &digits);
    Put(file, text.replace(at, digits, std::to_string(features + 1)));
  }
};

TEST_F(VerdictTest, WhatWasLeftBehindIsToldWithOwnerKeyAndNextStep) {
  const std::string file = Document("film.hvxdoc", kFilmLines);
  const Ended ended = Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--report", Path("report.json")});
  EXPECT_EQ(ended.code, 1);
  EXPECT_TRUE(Has(ended.out, "upgraded, 1 thing needs a person")) << ended.out;
  EXPECT_TRUE(Has(ended.out, R"(HVXFilmCondition "Film" (id 4) in "Thermal Case / Loads", left behind: )"))
      << ended.out;
  EXPECT_TRUE(Has(ended.out, R"("refTemperature_param")"));
  EXPECT_TRUE(Has(ended.out, "(UpgradeFilmConditionBasicComponents: 0x80004005 (E_FAIL))")) << ended.out;
  EXPECT_TRUE(Has(ended.out, "then upgrade the document again with --retry."));
  const std::string report = Content(Path("report.json"));
  for (const char* const part :
       {R"("kind":"leftBehind")", R"("owner":"Thermal Case / Loads")", R"("key":"refTemperature_param")",
        R"("upgrade":"UpgradeFilmConditionBasicComponents")", R"("codeName":"E_FAIL")", R"("nextStep":")"})
    EXPECT_TRUE(Has(report, part)) << part;
  // The document itself keeps the verdict, whoever asks.
  EXPECT_EQ(Run({"check", Path("new.hvxdoc")}).code, 1);
  const Ended again = Run({"upgrade", Path("new.hvxdoc"), "--dry-run"});
  EXPECT_EQ(again.code, 1);
  EXPECT_TRUE(Has(again.out, "already current, 1 thing needs a person")) << again.out;
}

// On a terminal, where the summary has colours: the message has only its own.
TEST_F(VerdictTest, QuietTellsInPlainWords) {
  const std::string file = Document("film.hvxdoc", kFilmLines);
  const std::string terminal = fmt::format("script -qec true '{}' >'{}' 2>&1", Path("typed"), Path("shown"));
  if (std::system(terminal.c_str()) != 0) GTEST_SKIP() << "no terminal can be had here";
  const std::string command = fmt::format("script -qec \"'{}' upgrade '{}' --dry-run -q\" '{}' >'{}' 2>&1",
                                          HVXUPGRADE_PROGRAM, file, Path("typed"), Path("shown"));
  static_cast<void>(std::system(command.c_str()));
  const std::string shown = Content(Path("shown"));
  EXPECT_TRUE(Has(shown, "film.hvxdoc: would be upgraded, 1 thing needs a person, ")) << shown;
  EXPECT_FALSE(Has(shown, "u001b")) << shown;
}

TEST_F(VerdictTest, InPlaceSuchAResultReplacesNothingUnlessTheOldOneIsSafe) {
  const std::string file = Document("film.hvxdoc", kFilmLines);
  const std::string before = Content(file);
  const Ended held = Run({"upgrade", file, "--in-place", "--report", Path("report.json")});
  EXPECT_EQ(held.code, 1);
  EXPECT_TRUE(Has(held.out, "NOT WRITTEN")) << held.out;
  EXPECT_TRUE(Has(held.out, "give --backup SUFFIX, or --accept-failures"));
  EXPECT_TRUE(Has(Content(Path("report.json")), R"("verdict":"heldBack")"));
  EXPECT_EQ(Content(file), before);

  EXPECT_EQ(Run({"upgrade", file, "--in-place", "--backup", ".old", "--strict"}).code, 1);
  EXPECT_EQ(Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--strict"}).code, 1);
  EXPECT_EQ(Names(), "film.hvxdoc report.json");
  EXPECT_EQ(Content(file), before);

  EXPECT_EQ(Run({"upgrade", file, "--in-place", "--accept-failures", "--dry-run"}).code, 1);
  EXPECT_EQ(Content(file), before);
  EXPECT_EQ(Run({"upgrade", file, "--in-place", "--accept-failures"}).code, 1);
  EXPECT_NE(Content(file), before);
  EXPECT_EQ(Run({"upgrade", file, "--strict", "--in-place", "--accept-failures"}).code, 2);
  EXPECT_EQ(Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--accept-failures"}).code, 2);
}

TEST_F(VerdictTest, RetryCompletesWhatAPersonCorrectedAndNothingElse) {
  const std::string file = Document("film.hvxdoc", kFilmLines);
  ASSERT_EQ(Run({"upgrade", file, "--in-place", "--accept-failures"}).code, 1);
  Correct(file);
  const Ended mended = Run({"upgrade", file, "--retry", "--in-place", "--report", Path("report.json")});
  EXPECT_EQ(mended.code, 0) << mended.out << mended.err;
  EXPECT_TRUE(Has(mended.out, ", 1 upgrade\n")) << mended.out;
  EXPECT_TRUE(Has(Content(file), "293.5"));
  EXPECT_EQ(Run({"check", file}).code, 0);

  const std::string complete = Content(file);
  const Ended again = Run({"upgrade", file, "--retry", "--in-place"});
  EXPECT_EQ(again.code, 0);
  EXPECT_TRUE(Has(again.out, "already current")) << again.out;
  EXPECT_EQ(Content(file), complete);
}

// Without an analysis model a run gives up after the first request of a container.
TEST_F(VerdictTest, OneRetryDoesAllThatSeveralRunsCan) {
  const std::string file = Document("outputs.hvxdoc", R"({"id":1,"type":"SAMContainer"}
{"id":2,"type":"HVXFieldOutputRequestContainerLT","container":{"ref":1}}
{"id":3,"type":"HVXFieldOutputLT","father":{"ref":2},"container":{"ref":1}}
{"id":4,"type":"HVXFieldOutputLT","father":{"ref":2},"container":{"ref":1}}
{"id":5,"type":"HVXFieldOutputLT","father":{"ref":2},"container":{"ref":1}}
{"id":6,"type":"HVXFieldOutputLT","father":{"ref":2},"container":{"ref":1}}
)");
  ASSERT_EQ(Run({"upgrade", file, "--in-place", "--accept-failures"}).code, 1);
  ASSERT_TRUE(Has(Content(file), "HVXFieldOutputLT"));
  const Ended retried = Run({"upgrade", file, "--retry", "--in-place", "--accept-failures"});
  EXPECT_TRUE(Has(retried.out, "upgraded, 1 thing needs a person")) << retried.out;  // what failed, once
  const std::string complete = Content(file);
  EXPECT_FALSE(Has(complete, "\"HVXFieldOutputLT\""));
  EXPECT_TRUE(Has(Run({"upgrade", file, "--retry", "--in-place"}).out, "already current"));
  EXPECT_EQ(Content(file), complete);
}

// A contact that an earlier run made without sides is not known again as the property's.
TEST_F(VerdictTest, APropertyWithoutSidesIsRunAgainOnlyWhenItHasThem) {
  const std::string file = Document("contact.hvxdoc", R"({"id":1,"type":"AnalysisModel"}
{"id":2,"type":"PropertySet","father":{"ref":1}}
{"id":3,"type":"SAMFaceFaceContact","father":{"ref":2},"attributes":{"ClearanceFlag":true,"Clearance":0.1,"Supports":[{"ref":4}]}}
{"id":4,"type":"GeometrySmartConnector","father":{"ref":3},"attributes":{"FirstObject":null,"SecondObject":{"ref":9}}}
{"id":5,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1,"CaseKind":1}}
{"id":6,"type":"HVXInteractionContainerLT","father":{"ref":5}}
{"id":7,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1,"CaseKind":1}}
{"id":8,"type":"Surface"}
{"id":9,"type":"Surface"}
)");
  ASSERT_EQ(Run({"upgrade", file, "--in-place", "--accept-failures"}).code, 1);
  const std::string upgraded = Content(file);
  EXPECT_TRUE(Has(upgraded, "HVXContactConnectionEnhancementStdLT"));
  const Ended again = Run({"upgrade", file, "--retry", "--in-place", "--accept-failures"});
  EXPECT_TRUE(Has(again.out, "already current")) << again.out;
  EXPECT_TRUE(Has(again.out, "its first support has only one of its two sides")) << again.out;
  EXPECT_EQ(Content(file), upgraded);

  std::string corrected = upgraded;
  const auto replace = [&corrected](std::string_view old, std::string_view now) {
    ASSERT_TRUE(Has(corrected, std::string(old))) << old;
    corrected.replace(corrected.find(old), old.size(), now);
  };
  replace(R"("FirstObject":null)", R"("FirstObject":{"ref":8})");
  Put(file, corrected);
  const Ended stuck = Run({"check", file});
  EXPECT_TRUE(Has(stuck.out, "the analysis case has no \"HVXInteractionContainerLT\"")) << stuck.out;
}

TEST_F(VerdictTest, DroppedValuesAreListedAndMayBeAFailure) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const Ended told = Run({"upgrade", file, "--dry-run", "--report", Path("report.json")});
  EXPECT_EQ(told.code, 0);
  EXPECT_TRUE(Has(told.out, "Dropped: 2 attributes of the old document")) << told.out;
  EXPECT_TRUE(Has(
      Content(Path("report.json")),
      R"("key":"RunType","values":["From InputFile"],"instead":"Full Analysis","by":[{"upgrade":"UpgradeJobForFromInputFile"}])"))
      << Content(Path("report.json"));
  EXPECT_TRUE(Has(told.out, "\n    RunType of HVXJobLT \"Job.1\" (id 3): \"From InputFile\"\n")) << told.out;
  EXPECT_EQ(Run({"upgrade", file, "--dry-run", "--fail-on-drop"}).code, 1);
}

// The conversion goes through the whole document; a property without sides would get another contact pair.
TEST_F(VerdictTest, WhatMustNotBeConvertedAgainHoldsTheOthersBack) {
  const std::string file = Document("hold.hvxdoc", R"({"id":1,"type":"AnalysisModel"}
{"id":2,"type":"PropertySet","father":{"ref":1}}
{"id":3,"type":"SAMFaceFaceContact","father":{"ref":2},"attributes":{"Supports":[{"ref":4}]}}
{"id":4,"type":"GeometrySmartConnector","father":{"ref":3},"attributes":{"FirstObject":{"ref":8},"SecondObject":{"ref":9}}}
{"id":5,"type":"SAMFaceFaceContact","father":{"ref":2},"attributes":{"ClearanceFlag":true,"Supports":[{"ref":6}]}}
{"id":6,"type":"GeometrySmartConnector","father":{"ref":5},"attributes":{"FirstObject":{"ref":8},"SecondObject":null}}
{"id":7,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1,"CaseKind":1}}
{"id":8,"type":"Surface"}
{"id":9,"type":"Surface"}
{"id":10,"type":"HVXSimulationHistoryLT","father":{"ref":7}}
)");
  ASSERT_EQ(Run({"upgrade", file, "--in-place", "--accept-failures"}).code, 1);
  const auto addLine = [&file](const std::string& line) {
    std::string content = Content(file);
    const std::size_t place = content.find("\"features\":") + 11;
    const std::size_t end = content.find('}', place);
    const int count = std::stoi(content.substr(place, end - place));
    content.replace(place, end - place, std::to_string(count + 1));
    Put(file, content + line + "\n");
  };
  addLine(R"({"id":99,"type":"HVXInteractionContainerLT","father":{"ref":7}})");
  const std::string before = Content(file);
  const Ended held = Run({"upgrade", file, "--retry", "--in-place", "--accept-failures"});
  EXPECT_TRUE(Has(held.out, "its upgrade would convert feature 5 (SAMFaceFaceContact) once more"))
      << held.out;
  EXPECT_TRUE(Has(held.out, "See to feature 5 first, then upgrade the document again with --retry."))
      << held.out;
  EXPECT_EQ(Content(file), before);
}

TEST_F(VerdictTest, WhatMustHaveRunBeforeComesAlongAndIsTold) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const Ended ended =
      Run({"upgrade", file, "-o", Path("new.hvxdoc"), "--only", "UpgCCPToGACOrConstraintAsSupp"});
  EXPECT_EQ(ended.code, 0);
  EXPECT_TRUE(Has(ended.out,
                  "UpgMapCCPClearanceToInterference was run as well, because "
                  "UpgCCPToGACOrConstraintAsSupp must not run before it: "))
      << ended.out;
  EXPECT_TRUE(Has(ended.out, ", 4 upgrades\n")) << ended.out;
}

TEST_F(VerdictTest, ADefectiveInstallationTouchesNoDocument) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string before = Content(file);
  std::filesystem::create_directory(Path("data"));
  std::filesystem::copy(HVX_SOURCE_DIR "/standalone/catalogs", Path("data/catalogs"),
                        std::filesystem::copy_options::recursive);
  std::filesystem::copy(HVX_SOURCE_DIR "/standalone/messages", Path("data/messages"),
                        std::filesystem::copy_options::recursive);
  const auto refusal = [&] {
    const Ended ended = Run({"--data", Path("data"), "upgrade", file, "--in-place"});
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(Content(file), before);
    return ended.err;
  };
  Put(Path("data/catalogs/HVXAnalysisStepCatalog.VLMfct"), "{\"HVXInteraction");
  EXPECT_TRUE(Has(refusal(), "HVXAnalysisStepCatalog.VLMfct: the feature catalog cannot be read"));
  std::filesystem::remove(Path("data/catalogs/HVXAnalysisStepCatalog.VLMfct"));
  EXPECT_TRUE(Has(refusal(), "HVXAnalysisStepCatalog.VLMfct: the feature catalog is missing. Reinstall"));
  std::filesystem::copy(HVX_SOURCE_DIR "/standalone/catalogs/HVXAnalysisStepCatalog.VLMfct",
                        Path("data/catalogs"));
  std::filesystem::remove(Path("data/messages/en/HVXHacCatalogNLS.json"));
  EXPECT_TRUE(Has(refusal(), "HVXHacCatalogNLS.json: the message catalog is missing. Reinstall"));
}

}  // namespace
}  // namespace tool_testing
