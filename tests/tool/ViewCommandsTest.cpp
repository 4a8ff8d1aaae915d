#include <simdjson.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <sstream>
#include <thread>
#include <vector>

#include "ToolRun.h"

namespace tool_testing {
namespace {

class ViewCommandsTest : public ToolTest {};

std::size_t CountOf(const std::string& text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(ViewCommandsTest, StatusTellsPendingAndDone) {
  const std::string file = Document("job.hvxdoc", kJobLines, R"("MakeOutOfdateARS")");
  const Ended ended = Run({"status", file});
  EXPECT_EQ(ended.code, 0);
  EXPECT_EQ(ended.out, file + ": upgrade needed, 65 upgrades pending, 1 done (3 features)\n" +
                           "  Pending: from UpgradeToElemType to UpgradeJobMemoryUnit; -v lists them\n");
  const std::string all = Run({"status", "-v", file}).out;
  EXPECT_NE(all.find("  Done:\n    MakeOutOfdateARS\n"), std::string::npos) << all;
  EXPECT_NE(all.find("    UpgradeJobRestartData\n"), std::string::npos);
  EXPECT_EQ(Run({"status", "--check", file}).code, 6);

  ASSERT_EQ(Run({"upgrade", file, "--in-place", "--until", "UpgradeThermalSolutionStep"}).code, 0);
  EXPECT_EQ(Run({"status", file}).out,
            file + ": upgrade needed, 2 upgrades pending, 64 done (3 features)\n" +
                "  Pending: UpgradeContactWithSurfSmoothParam, UpgradeJobMemoryUnit\n");
  ASSERT_EQ(Run({"upgrade", file, "--in-place"}).code, 0);
  EXPECT_EQ(Run({"status", file}).out, file + ": current, 66 upgrades done (3 features)\n");
  EXPECT_EQ(Run({"status", "--check", file}).code, 0);
}

TEST_F(ViewCommandsTest, StatusKnowsNewerAndBrokenDocuments) {
  const std::string newer = Document("newer.hvxdoc", kJobLines, R"("UpgradeOfTheFuture")");
  EXPECT_EQ(Run({"status", "--check", newer}).code, 4);
  const Ended ended = Run({"status", "--json", newer, Path("none.hvxdoc")});
  EXPECT_EQ(ended.code, 3);
  simdjson::dom::parser parser;
  const simdjson::padded_string text(ended.out);
  const simdjson::dom::element status = parser.parse(text);
  EXPECT_EQ(std::string_view(status["documents"].at(0)["newerUpgrades"].at(0)), "UpgradeOfTheFuture");
  EXPECT_EQ(std::string_view(status["documents"].at(1)["verdict"]), "broken");
}

// Programs that read it must not meet half of it.
TEST_F(ViewCommandsTest, JsonIsWholeWhenTheUserInterrupts) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  const std::string endless = Path("endless.hvxdoc");
  ASSERT_EQ(mkfifo(endless.c_str(), 0600), 0);
  for (const char* const command : {"status", "check"}) {
    const pid_t program = Start({command, "--json", endless, file});
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    kill(program, SIGINT);
    const Ended ended = Wait(program);
    EXPECT_EQ(ended.code, 130) << command << ended.err;
    simdjson::dom::parser parser;
    const simdjson::padded_string text(ended.out);
    const simdjson::dom::element top = parser.parse(text);
    EXPECT_TRUE(bool(top["interrupted"])) << command;
    EXPECT_EQ(std::size_t(std::uint64_t(top["left"])) + top["documents"].get_array().size(), 2U) << command;
  }
}

TEST_F(ViewCommandsTest, IdentifiersListsAllBindings) {
  const Ended ended = Run({"identifiers", "--json"});
  EXPECT_EQ(ended.code, 0);
  simdjson::dom::parser parser;
  const simdjson::padded_string text(ended.out);
  const simdjson::dom::array all = parser.parse(text)["upgrades"];
  EXPECT_EQ(all.size(), 66U);
  EXPECT_EQ(std::string_view(all.at(0)["upgrade"]), "UpgradeToElemType");
  EXPECT_EQ(std::string_view(all.at(65)["upgrade"]), "UpgradeJobMemoryUnit");
  EXPECT_TRUE(bool(all.at(28)["documentWide"]));
  std::size_t bindings = 0;
  for (const simdjson::dom::element identifier : all) {
    bindings += identifier["bindings"].get_array().size();
    const bool unanswered =
        std::string_view(identifier["upgrade"]) == "UpgradeFastenedConnectionEnhancementToFastenedPair";
    const bool answered = identifier["bindings"].get_array().size() != 0 || bool(identifier["documentWide"]);
    EXPECT_EQ(answered, !unanswered) << identifier;
  }
  const simdjson::dom::element hostUpgrade = parser.parse(text)["hostUpgrades"].at(0);
  EXPECT_EQ(std::string_view(hostUpgrade["class"]), "HVXEBasicComponentUpgrade");
  EXPECT_EQ(std::string_view(hostUpgrade["interface"]), "VLMISamUpgrade");
  EXPECT_EQ(hostUpgrade["lateTypes"].get_array().size(), 18U);
  // One line for people for each binding, and one for the host's upgrade.
  EXPECT_EQ(CountOf(Run({"identifiers"}).out, " [HVXE"), bindings + 1);
}

TEST_F(ViewCommandsTest, IdentifiersExplainsOneInWords) {
  const Ended ended = Run({"identifiers", "FrictionValueUpgrade"});
  EXPECT_TRUE(
      ended.out.starts_with("FrictionValueUpgrade (15 of 66)\n\n"
                            "  The friction coefficient goes from a list of values to a table of one row,\n"))
      << ended.out;
  for (const char* const part : {"which tests all its upgrades in turn;", "  HVXInteractionPropertyLT: ",
                                 "  Before ", "\n  examples/heated_pipe.hvxdoc ",
                                 "\nWhat the analysis says\n", "upgrades/FrictionValueUpgrade.md\n"})
    EXPECT_NE(ended.out.find(part), std::string::npos) << part;
  EXPECT_EQ(Run({"identifiers", "Friction"}).code, 2);
}

TEST_F(ViewCommandsTest, EveryUpgradeIsExplainedInLinesThatFit) {
  std::vector<std::string> arguments{"identifiers"};
  std::istringstream list(Run(arguments).out);
  for (std::string line; std::getline(list, line);) {
    std::size_t number = 0;
    if (std::string name; std::istringstream(line) >> number >> name) arguments.push_back(name);
  }
  std::istringstream lines(Run(arguments).out);
  std::size_t pages = 0;
  for (std::string line; std::getline(lines, line);) {
    const bool isPage = line.starts_with("Its page: ");
    if (isPage) ++pages;
    EXPECT_TRUE(isPage || line.size() <= 80) << line;
    EXPECT_EQ(line.find('`'), std::string::npos) << line;
  }
  EXPECT_EQ(pages, 66U);
}

// A data folder of an installation that brings no explanations, and one that is damaged.
TEST_F(ViewCommandsTest, IdentifiersNeedsNoExplanationsButWholeOnes) {
  for (const char* const folder : {"messages", "catalogs"})
    std::filesystem::create_symlink(std::filesystem::path(HVX_SOURCE_DIR) / "standalone" / folder,
                                    Path(folder));
  const std::vector<std::string> command{"--data", Path("."), "identifiers", "FrictionValueUpgrade"};
  const Ended without = Run(command);
  EXPECT_EQ(without.code, 0);
  EXPECT_NE(without.out.find("HVXInteractionPropertyLT"), std::string::npos) << without.out;
  EXPECT_EQ(without.out.find("Its page"), std::string::npos);

  std::filesystem::create_directory(Path("upgrades"));
  const std::string file = Path("./upgrades/explanations.json");
  for (
      const char* const broken :
      {"", "{", "[]", R"({"upgrades":{"FrictionValueUpgrade":{"about":5}}})",
       R"({"upgrades":{"FrictionValueUpgrade":{"about":"","examples":[{"of":"","rows":[["",""]],"more":0}]}}})"}) {
    Put(file, broken);
    const Ended ended = Run(command);
    EXPECT_EQ(ended.code, 3) << broken;
    EXPECT_NE(ended.err.find(file + ": the explanations of the upgrades cannot be read ("), std::string::npos)
        << ended.err;
    EXPECT_NE(ended.err.find("Reinstall the program"), std::string::npos);
  }
  EXPECT_EQ(Run({"--data", Path("."), "identifiers"}).code, 0);  // the list needs none
}

TEST_F(ViewCommandsTest, ShowPrintsTheTreeAndItsParts) {
  const std::string file = Document("job.hvxdoc", kJobLines);
  EXPECT_EQ(Run({"show", file}).out,
            "1 AnalysisModel \"Model\"\n"
            "  2 AnalysisCase \"Case\"\n"
            "    3 HVXJobLT \"Job.1\" name=\"Job\"\n");
  EXPECT_EQ(Run({"show", file, "--depth", "1"}).out, "1 AnalysisModel \"Model\"\n");
  EXPECT_EQ(Run({"show", file, "--id", "2", "--depth", "1"}).out, "2 AnalysisCase \"Case\"\n");
  EXPECT_EQ(Run({"show", file, "--type", "HVXJobLT", "-a"}).out,
            "3 HVXJobLT \"Job.1\" name=\"Job\"\n"
            "    - \"AnalysisCase\": {\"ref\":2}\n"
            "    - \"RunType\": \"From InputFile\"\n"
            "    - \"RestartFrequency\": 0\n"
            "    - \"InputFileFlag\": 1\n");
  EXPECT_EQ(Run({"show", file, "--id", "99"}).code, 2);
}

TEST_F(ViewCommandsTest, ShowPrintsFeaturesAsTheirFileHoldsThem) {
  const std::string lines(kJobLines);
  const std::string file = Document("job.hvxdoc", lines, R"("MakeOutOfdateARS")");
  const std::string begin = R"({"show":"hvxupgrade","version":3,"file":")" + file +
                            R"(","upgrades":["MakeOutOfdateARS"],"libraries":[],"features":[)";
  std::string all = lines.substr(0, lines.size() - 1);
  std::ranges::replace(all, '\n', ',');
  EXPECT_EQ(Run({"show", "--json", file}).out, begin + all + "]}\n");

  const std::size_t second = lines.find('\n') + 1;
  const std::string model = lines.substr(0, second - 1);
  const std::string one = lines.substr(second, lines.find('\n', second) - second);
  EXPECT_EQ(Run({"show", "--json", file, "--depth", "1"}).out, begin + model + "]}\n");
  EXPECT_EQ(Run({"show", "--json", file, "--type", "AnalysisCase"}).out, begin + one + "]}\n");
  const Ended none = Run({"show", "--json", file, "--id", "99"});
  EXPECT_EQ(none.code, 2);
  EXPECT_EQ(none.out, "");  // nothing that begins like a result
}

// A name must not reach the terminal as a command.
TEST_F(ViewCommandsTest, ShowEscapesControlCharacters) {
  const std::string file =
      Document("evil.hvxdoc", "{\"id\":1,\"type\":\"A\\u001b[2J\",\"name\":\"\\u009b2J\\u007f\"}\n");
  EXPECT_EQ(Run({"show", file}).out, "1 \"A\\u001b[2J\" \"\\u009b2J\\u007f\"\n");
  const Ended json = Run({"show", "--json", file});
  EXPECT_NE(json.out.find(R"({"id":1,"type":"A\u001b[2J","name":"\u009b2J\u007f"})"), std::string::npos)
      << json.out;
}

TEST_F(ViewCommandsTest, HelpAndVersionAreResults) {
  const Ended help = Run({"--help"});
  EXPECT_EQ(help.code, 0);
  EXPECT_NE(help.out.find("Examples:"), std::string::npos);
  EXPECT_EQ(Run({"help"}).out, help.out);
  EXPECT_EQ(Run({"help", "upgrade"}).out, Run({"upgrade", "--help"}).out);
  EXPECT_EQ(Run({"help", "help"}).code, 0);
  const Ended version = Run({"--version"});
  EXPECT_EQ(version.out.substr(0, 11), "hvxupgrade ");
  EXPECT_EQ(Run({"-V"}).out, version.out);
}

TEST_F(ViewCommandsTest, HelpFitsIntoLinesButKeepsCommandsWhole) {
  constexpr std::size_t kColumns = 80;
  for (const char* const command : {"", "status", "upgrade", "identifiers", "check", "sheet", "report"}) {
    std::istringstream lines(
        Run(*command == 0 ? std::vector<std::string>{"--help"} : std::vector<std::string>{"help", command})
            .out);
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with("  hvxupgrade") && !line.starts_with("  find")) {
        EXPECT_LE(line.size(), kColumns) << command << ": " << line;
      }
    }
  }
  const std::string help = Run({"--help"}).out;
  EXPECT_NE(help.find("\n  upgrade                     Bring documents up"), std::string::npos) << help;
  EXPECT_NE(help.find("  hvxupgrade upgrade bracket.hvxdoc -o current.hvxdoc  write the current\n" +
                      std::string(55, ' ') + "document beside the old\n"),
            std::string::npos)
      << help;
}

}  // namespace
}  // namespace tool_testing
