#include <gmock/gmock.h>
#include <simdjson.h>

#include <algorithm>
#include <sstream>

#include "ToolRun.h"

namespace tool_testing {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kExample = HVX_SOURCE_DIR "/examples/bolted_bracket.hvxdoc";

// Two steps with pressures: one as it should be, one without a value, one that cannot be read.
constexpr std::string_view kLines =
    R"({"id":1,"type":"AnalysisModel","name":"Model"}
{"id":2,"type":"Product","name":"Bracket"}
{"id":3,"type":"Product","name":"Bracket.1","father":{"ref":2}}
{"id":4,"type":"Surface","name":"Lug Face"}
{"id":10,"type":"AnalysisCase","name":"Case","alias":"Bearing, \"slow\"","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1}}
{"id":11,"type":"HVXSimulationHistoryLT","father":{"ref":10}}
{"id":12,"type":"HVXGeneralStaticStepLT","name":"Preload","father":{"ref":11},"attributes":{"StepTimePeriod_param":{"ref":13}}}
{"id":13,"type":"Parameter","name":"Step Time Period","father":{"ref":12},"attributes":{"Magnitude":"Time","Value":2.0}}
{"id":14,"type":"HVXLoadContainerLT","name":"Loads","father":{"ref":12}}
{"id":15,"type":"HVXPressure","name":"Bolt","father":{"ref":14},"attributes":{"pressure_param":{"ref":16},"Supports":[{"ref":17}]}}
{"id":16,"type":"Parameter","name":"Pressure","father":{"ref":15},"attributes":{"Magnitude":"PRESSURE","Value":3000000.0}}
{"id":17,"type":"GeometrySmartConnector","father":{"ref":15},"attributes":{"FirstObject":{"ref":4},"SecondObject":{"ref":3}}}
{"id":22,"type":"HVXGeneralStaticStepLT","name":"Service","father":{"ref":11}}
{"id":24,"type":"HVXLoadContainerLT","name":"Loads","father":{"ref":22}}
{"id":25,"type":"HVXPressure","name":"not set","father":{"ref":24}}
{"id":26,"type":"HVXPressure","name":"Odd","father":{"ref":24},"attributes":{"pressure_param":{"ref":27}}}
{"id":27,"type":"Parameter","name":"Pressure","father":{"ref":26},"attributes":{"Magnitude":"PRESSURE","Value":"odd"}}
)";

class SheetCommandTest : public ToolTest {
 protected:
  static std::string With(std::string text, std::string_view old, std::string_view now) {
    const std::size_t at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return at == std::string::npos ? text : text.replace(at, old.size(), now);
  }
  static std::size_t LongestLine(const std::string& text) {
    std::istringstream lines(text);
    std::size_t longest = 0;
    for (std::string line; std::getline(lines, line);) longest = std::max(longest, line.size());
    return longest;
  }

  std::string file_ = Document("small.hvxdoc", kLines);
  simdjson::dom::parser parser_;
};

TEST_F(SheetCommandTest, TellsValuesWithUnitsAndWhatIsMissing) {
  const std::string service =
      "  Step 2, Service (general static step)\n"
      "    time period not set, initial increment not set, minimum increment not set,\n"
      "    maximum increment not set\n"
      "    Loads\n"
      "      \"not set\"  pressure  pressure not set (without support)\n"
      "      Odd        pressure  cannot be read: \"odd\" (without support)\n";
  const Ended ended = Run({"sheet", file_, "--units", "mm-t-s"});
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_EQ(ended.out, file_ +
                           ": 1 analysis case, 2 steps\n"
                           "Units: mm, t, s, K; N, MPa\n"
                           "\n"
                           "Analysis case \"Bearing, \\\"slow\\\"\"\n"
                           "  solver: Halvex, analysis type: nonlinear structural\n"
                           "\n"
                           "  Step 1, Preload (general static step)\n"
                           "    time period 2 s, initial increment not set, minimum increment not set, "
                           "maximum increment not set\n"
                           "    Loads\n"
                           "      Bolt  pressure  3 MPa on Lug Face (Bracket.1)\n"
                           "\n" +
                           service);
  const std::string part = Run({"sheet", file_, "--case", "Bearing, \"slow\"", "--step", "Service"}).out;
  EXPECT_THAT(part, HasSubstr(service));
  EXPECT_THAT(part, Not(HasSubstr("Preload")));
  EXPECT_THAT(Run({"sheet", file_, "--all", "--step", "Preload"}).out,
              HasSubstr("Bolt  pressure  3e+06 Pa, amplitude not set; on Lug Face (Bracket.1)"));
}

TEST_F(SheetCommandTest, ACaseBeneathAStepStandsForItself) {
  const std::string file = Document(
      "astray.hvxdoc",
      std::string(kLines) +
          R"({"id":90,"type":"AnalysisCase","alias":"Astray","father":{"ref":22},"attributes":{"Solver":"Halvex"}}
{"id":91,"type":"HVXJobLT","alias":"Astray Job","father":{"ref":90}}
)");
  const Ended ended = Run({"sheet", file});
  EXPECT_EQ(ended.code, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("Analysis case Astray\n  solver: Halvex\n"));
  EXPECT_THAT(ended.out, HasSubstr("Astray Job"));
}

TEST_F(SheetCommandTest, ProgramsGetWhatStandsThere) {
  const simdjson::padded_string text(Run({"sheet", "--json", file_, "--step", "Service"}).out);
  const simdjson::dom::element top = parser_.parse(text);
  EXPECT_EQ(std::int64_t(top["version"]), 3);
  const simdjson::dom::array subjects = top["subjects"];
  ASSERT_EQ(subjects.size(), 3U);
  const simdjson::dom::element odd = subjects.at(2);
  EXPECT_EQ(std::string_view(odd["kind"]), "pressure");
  EXPECT_EQ(std::string_view(odd["case"]["alias"]), "Bearing, \"slow\"");
  EXPECT_EQ(std::int64_t(odd["step"]["ref"]), 22);
  EXPECT_EQ(std::string_view(odd["facts"].at(0)["standing"]), "unreadable");
  EXPECT_EQ(std::string_view(odd["facts"].at(0)["value"]), "odd");
  EXPECT_EQ(std::string_view(odd["facts"].at(0)["unit"]), "Pa");

  const std::string csv = Run({"sheet", "--csv", file_, "--units", "mm-t-s"}).out;
  EXPECT_THAT(csv,
              testing::StartsWith("case,step,chapter,kind,id,alias,quantity,index,standing,value,unit\r\n"));
  EXPECT_THAT(csv,
              HasSubstr("\r\n\"Bearing, \"\"slow\"\"\",Preload,load,pressure,15,Bolt,support,1,set,"
                        "Lug Face (Bracket.1),\r\n"
                        "\"Bearing, \"\"slow\"\"\",Preload,load,pressure,15,Bolt,pressure,,set,3,MPa\r\n"));
  EXPECT_THAT(csv, HasSubstr(",25,not set,pressure,,notSet,,MPa\r\n"));
}

TEST_F(SheetCommandTest, WhatAnUpgradeLeftOutIsToldWithTheUpgrade) {
  const std::string old = Document("old.hvxdoc", kJobLines);
  const std::string misled = Document("new.hvxdoc", kJobLines, R"("UpgradeJobForFromInputFile")");
  const simdjson::padded_string text(Run({"sheet", "--json", old, misled}).out);
  const simdjson::dom::element top = parser_.parse(text);
  EXPECT_TRUE(bool(top["comparison"]));
  const simdjson::dom::element difference = top["differences"].at(0);
  EXPECT_EQ(std::string_view(difference["meaning"]), "unaccounted");
  EXPECT_EQ(std::string_view(difference["upgrade"]), "UpgradeJobForFromInputFile");
  EXPECT_EQ(std::string_view(difference["quantity"]), "a run without the input file");
  EXPECT_THAT(Run({"sheet", old, misled}).out,
              HasSubstr("a run without the input file (UpgradeJobForFromInputFile) was due"));
}

TEST_F(SheetCommandTest, AnUpgradedExampleIsAccountedFor) {
  const std::string old(kExample);
  ASSERT_EQ(Run({"upgrade", old, "-o", Path("new.hvxdoc")}).code, 0);
  for (const std::string& file : {old, Path("new.hvxdoc")}) {
    const Ended sheet = Run({"sheet", file});
    EXPECT_EQ(sheet.code, 0) << sheet.err;
    EXPECT_THAT(sheet.out, HasSubstr("Pressure.3  pressure  3e+06 Pa on Bore Face (Bracket.1)\n"));
    EXPECT_LE(LongestLine(sheet.out), 104U);  // in bytes: units have letters of two
  }
  const Ended compared = Run({"sheet", old, Path("new.hvxdoc")});
  EXPECT_EQ(compared.code, 0) << compared.out;
  EXPECT_THAT(compared.out, HasSubstr(": every difference is accounted for\n"));
  EXPECT_THAT(compared.out, HasSubstr("  UpgradeMatOrientAngleToRadians: degrees become radians (1)\n"));
  EXPECT_THAT(compared.out, HasSubstr("    contact pair (9): search tolerance, ...             "
                                      "0 m (default)          0.1 m\n"));
  EXPECT_LE(std::ranges::count(compared.out, '\n'), 70);  // a screen
  EXPECT_GT(std::ranges::count(Run({"sheet", "--all", old, Path("new.hvxdoc")}).out, '\n'), 200);
  EXPECT_THAT(Run({"sheet", old, old}).out, HasSubstr(": no difference\n"));
  // Names of another language, which no option tells.
  static_cast<void>(Run({"upgrade", old, "-o", Path("neu.hvxdoc"), "--language", "de"}));
  EXPECT_EQ(Run({"sheet", old, Path("neu.hvxdoc")}).code, 0);
}

TEST_F(SheetCommandTest, WhatNoUpgradeDidIsNamedAndTheExitCodeTells) {
  // As little as can differ: more digits than usual show it.
  const std::string other =
      Document("other.hvxdoc", With(std::string(kLines), "3000000.0", "3000000.0000000005"),
               R"("UpgradePressureBasicComponents")");
  const Ended ended = Run({"sheet", file_, other});
  EXPECT_EQ(ended.code, 1);
  EXPECT_THAT(ended.out, HasSubstr(": 1 difference unaccounted for\n"));
  EXPECT_THAT(ended.out, HasSubstr("\nUnaccounted for: no upgrade is there to do this (1)\n"
                                   "  pressure Bolt, step Preload, case \"Bearing, \\\"slow\\\"\": "
                                   "pressure was 3000000 Pa,\n    is 3000000.0000000005 Pa\n"));
  EXPECT_EQ(Run({"sheet", file_, other, "--step", "Service"}).code, 0);

  const simdjson::padded_string text(Run({"sheet", "--json", file_, other}).out);
  const simdjson::dom::element top = parser_.parse(text);
  EXPECT_EQ(std::int64_t(top["counts"]["unaccounted"]), 1);
  const simdjson::dom::element difference = top["differences"].at(0);
  EXPECT_EQ(std::string_view(difference["meaning"]), "unaccounted");
  EXPECT_EQ(double(difference["before"].at(0)["value"]), 3e6);
  EXPECT_GT(double(difference["after"].at(0)["value"]), 3e6);
  EXPECT_THAT(
      Run({"sheet", "--csv", file_, other}).out,
      HasSubstr("\r\nunaccounted,,kept,\"Bearing, \"\"slow\"\"\",Preload,load,pressure,15,Bolt,pressure,,"
                "set,3000000,Pa,set,3000000.0000000005,Pa\r\n"));

  // A whole subject.
  const std::string lost =
      Document("lost.hvxdoc", With(std::string(kLines),
                                   R"({"id":25,"type":"HVXPressure","name":"not set","father":{"ref":24}}
)",
                                   ""));
  EXPECT_THAT(Run({"sheet", file_, lost}).out,
              HasSubstr("  pressure \"not set\", step Service, case \"Bearing, \\\"slow\\\"\": is gone\n"));
  EXPECT_EQ(Run({"sheet", file_, lost}).code, 1);
}

// What an upgrade left behind, a person corrects, and `upgrade --retry` changes: it is recorded before.
TEST_F(SheetCommandTest, AnUpgradeThatRanAgainAccountsForWhatItDid) {
  const std::string lines = std::string(kJobLines) + std::string(kBrokenJobLine);
  const std::string old = Document("job.hvxdoc", lines);
  ASSERT_EQ(Run({"upgrade", old, "--in-place", "--accept-failures"}).code, 1);
  const std::string corrected = Path("corrected.hvxdoc");
  Put(corrected, With(Content(old), R"("alias":"Stray Job",)", R"("alias":"Stray Job",)"));
  const std::string text = Content(corrected);
  const std::size_t stray = text.find("Stray Job");
  const std::size_t attributes = text.find(R"("attributes":{)", stray);
  ASSERT_NE(attributes, std::string::npos) << text;
  Put(corrected,
      std::string(text).insert(attributes + 14, R"("AnalysisCase":{"ref":2},"RestartFrequency":5,)"));
  ASSERT_EQ(Run({"upgrade", "--retry", corrected, "-o", Path("new.hvxdoc")}).code, 0);
  const Ended ended = Run({"sheet", corrected, Path("new.hvxdoc")});
  EXPECT_EQ(ended.code, 0) << ended.out;
  EXPECT_THAT(ended.out, HasSubstr("UpgradeJobRestartData: "));
}

TEST_F(SheetCommandTest, WrongUsageAndUnreadableDocumentsAreTold) {
  const Ended noCase = Run({"sheet", file_, "--case", "Bearing"});
  EXPECT_EQ(noCase.code, 2);
  EXPECT_THAT(noCase.err,
              HasSubstr("has no analysis case \"Bearing\"; there is \"Bearing, \\\"slow\\\"\"\n"));
  EXPECT_THAT(
      Run({"sheet", file_, file_, "--step", "Perload"}).err,
      HasSubstr("the documents have no step \"Perload\"; there is \"Preload\", \"Service\"; did you mean "
                "\"Preload\"?\n"));
  EXPECT_EQ(Run({"sheet", file_, "--json", "--csv"}).code, 2);
  EXPECT_EQ(Run({"sheet", file_, "--json", "--units", "si"}).code, 2);
  EXPECT_EQ(Run({"sheet", "-", "-"}).code, 2);
  EXPECT_EQ(Run({"sheet", file_, Path("none.hvxdoc")}).code, 3);
  const Ended newer = Run({"sheet", Document("newer.hvxdoc", kLines, R"("UpgradeOfTheFuture")")});
  EXPECT_EQ(newer.code, 4);
  EXPECT_THAT(newer.out, HasSubstr("3e+06 Pa"));
}

// A part whose main body is a face: no rule looks at that, and the gravity comes to act on a face.
constexpr std::string_view kMisledLines =
    R"({"id":1,"type":"AnalysisModel","name":"Model","attributes":{"FeatList":[]}}
{"id":2,"type":"PrtContainer","name":"Geometry","attributes":{"Part":{"ref":4}}}
{"id":3,"type":"Product","name":"Bracket.1"}
{"id":4,"type":"Part","name":"Bracket","father":{"ref":3},"container":{"ref":2},"attributes":{"MainBody":{"ref":6}}}
{"id":5,"type":"Solid","alias":"Pad.1","father":{"ref":4},"container":{"ref":2}}
{"id":6,"type":"Surface","alias":"Lug Face","father":{"ref":4},"container":{"ref":2}}
{"id":10,"type":"HVXGravity","alias":"Gravity.1","father":{"ref":1},"attributes":{"Supports":[{"ref":11}],"component1_param":{"ref":12},"component2_param":{"ref":13},"component3_param":{"ref":14}}}
{"id":11,"type":"GeometrySmartConnector","father":{"ref":10},"attributes":{"FirstObject":{"ref":5},"SecondObject":{"ref":3}}}
{"id":12,"type":"Parameter","father":{"ref":10},"attributes":{"Magnitude":"ACCELERATION","Value":0.0}}
{"id":13,"type":"Parameter","father":{"ref":10},"attributes":{"Magnitude":"ACCELERATION","Value":0.0}}
{"id":14,"type":"Parameter","father":{"ref":10},"attributes":{"Magnitude":"ACCELERATION","Value":-9.81}}
)";

TEST_F(SheetCommandTest, AnUpgradeTellsWhatNobodyAccountsFor) {
  const std::string misled = Document("misled.hvxdoc", kMisledLines);
  const Ended ended = Run({"upgrade", misled, "--dry-run", "--report", Path("run.jsonl")});
  EXPECT_EQ(ended.code, 1);
  EXPECT_THAT(ended.out, HasSubstr("1 thing needs a person"));
  EXPECT_THAT(ended.out, HasSubstr("\"Gravity.1\" (id 10), unaccounted for: support was Pad.1 (Bracket.1), "
                                   "is Lug Face (Bracket.1)\n"));
  EXPECT_THAT(ended.out, HasSubstr("1 UNACCOUNTED FOR"));
  const std::string report = Content(Path("run.jsonl"));
  EXPECT_THAT(report, HasSubstr("\"kind\":\"unaccounted\""));
  EXPECT_THAT(report, HasSubstr("\"unaccounted\":1},\"differences\":[{\"meaning\":"));
  EXPECT_THAT(report, HasSubstr("\"quantity\":\"support\",\"before\":["));

  const Ended without = Run({"upgrade", misled, "--dry-run", "--no-sheet", "--report", Path("other.jsonl")});
  EXPECT_EQ(without.code, 0);
  EXPECT_THAT(without.out, Not(HasSubstr("Analysis:")));
  EXPECT_THAT(Content(Path("other.jsonl")), Not(HasSubstr("\"sheet\"")));
}

// What a finding tells already is not told twice, but in the words of the analysis as well.
TEST_F(SheetCommandTest, WhatNobodyAccountsForGoesWithWhatIsToldOfTheFeature) {
  const std::string damaged = HVX_SOURCE_DIR "/tests/damaged/bolted_bracket.hvxdoc";
  const Ended ended = Run({"upgrade", damaged, "--dry-run"});
  const Ended without = Run({"upgrade", damaged, "--dry-run", "--no-sheet"});
  EXPECT_THAT(ended.out, HasSubstr("holds none of its codes; unaccounted for: constraint enforcement was 7, "
                                   "is node to surface\n"));
  EXPECT_THAT(ended.out, HasSubstr("4 UNACCOUNTED FOR"));
  const auto things = [](const Ended& run) { return run.out.substr(0, run.out.find(" things need")); };
  EXPECT_EQ(things(ended), things(without));
}

}  // namespace
}  // namespace tool_testing
