#include <fmt/format.h>

#include "support/GermanMessages.h"
#include "support/TempFolder.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A case (#1) and beneath it a history (#2), which holds a step (#3), and jobs (#4).
class HVXEAnalysisCaseUpgradeTest : public testing_support::UpgradeTest {
 protected:
  using Names = std::vector<std::string>;

  void GivenNames(const Names& names) {
    Given(fmt::format(R"({{"id":1,"type":"AnalysisCase","alias":"{}"}}
                         {{"id":2,"type":"HVXSimulationHistoryLT","alias":"{}","father":{{"ref":1}}}}
                         {{"id":3,"type":"HVXGeneralStaticStepLT","alias":"{}","father":{{"ref":2}}}}
                         {{"id":4,"type":"HVXJobContainerLT","alias":"{}","father":{{"ref":1}}}})",
                      names[0], names[1], names[2], names[3]));
  }
  Names NamesNow() {
    Names names;
    for (const int id : {1, 2, 3, 4}) names.emplace_back(At(id).externalName);
    return names;
  }
  Names Renamed(const Names& names, const char* identifier = "UpgradeFeaturesExternalName") {
    GivenNames(names);
    EXPECT_EQ(UpgradeUnder(Recording(), 1, {identifier}), S_OK);
    return NamesNow();
  }
};

TEST_F(HVXEAnalysisCaseUpgradeTest, CaseNames) {
  EXPECT_EQ(Renamed({"Halvex-Structural-Case", "", "", ""})[0], "Nonlinear Structural Case");
  EXPECT_EQ(Renamed({"Halvex-Explicit-Dynamics-Case.2", "", "", ""})[0], "Explicit Dynamics Case.2");
  EXPECT_EQ(Renamed({"My Halvex-Thermal-Case, Halvex-Thermal-Case-14", "", "", ""})[0],
            "My Thermal Case, Thermal Case-14");
  EXPECT_EQ(Renamed({"Halvex Thermal Case", "", "", ""})[0], "Halvex Thermal Case");  // hyphens count
  // The case's own name gets the case's names only, a sub-feature's only those of sub-features.
  EXPECT_EQ(Renamed({"Halvex Jobs", "Halvex-Thermal-Case", "", ""}),
            (Names{"Halvex Jobs", "Halvex-Thermal-Case", "", ""}));
}

TEST_F(HVXEAnalysisCaseUpgradeTest, EverySubFeatureGetsAllFiveReplacementsWhateverItIs) {
  EXPECT_EQ(Renamed({"Case", "Halvex Simulation History", "Old Halvex Jobs of mine", "Halvex Jobs"}),
            (Names{"Case", "Simulation History", "Old Jobs of mine", "Jobs"}));
  EXPECT_EQ(Renamed({"Case", "Halvex Display Groups.1", "Halvex-Analysis-Case Solution",
                     "Halvex Solution Sensors"}),
            (Names{"Case", "Display Groups.1", "Analysis Case Solution", "Solution Sensors"}));
}

TEST_F(HVXEAnalysisCaseUpgradeTest, NamesAreWrittenBackEvenUnchanged) {
  static_cast<void>(Renamed({"a", "b", "c", "d"}));
  EXPECT_EQ(Calls("VLMIAlias::Set"),
            (CallList{"VLMIAlias::SetExternalName #1 a", "VLMIAlias::SetExternalName #2 b",
                      "VLMIAlias::SetExternalName #3 c", "VLMIAlias::SetExternalName #4 d"}));
}

TEST_F(HVXEAnalysisCaseUpgradeTest, InAnotherLanguageBothItsNamesAndTheDefaultsAreReplaced) {
  const testing_support::GermanMessages german;
  EXPECT_EQ(
      Renamed({"Halvex-Thermischer-Analysefall.3", "Halvex Simulationsverlauf", "Halvex Simulation History",
               "Halvex Rechenaufträge"}),
      (Names{"Thermischer Analysefall.3", "Simulationsverlauf", "Simulation History", "Rechenaufträge"}));
  // The defaults are looked for first, so a product word within a longer translated name is safe.
  EXPECT_EQ(Renamed({"Halvex-Analysefall Explizite Dynamik", "Halvex-Analysefall Lösung", "", ""}),
            (Names{"Analysefall Explizite Dynamik", "Lösung des Analysefalls", "", ""}));
}

TEST_F(HVXEAnalysisCaseUpgradeTest, DefaultTextsAreReplacedInEveryLanguage) {
  const testing_support::GermanMessages german;
  struct Row {
    std::size_t feature;
    const char* old;
    const char* now;
    const char* key;
    const char* germanOld;
  };
  for (const Row& row : {
           Row{0, "Halvex-Structural-Case", "Nonlinear Structural Case", "Nonlinear.Structural.Case",
               "Halvex-Struktur-Analysefall"},
           Row{0, "Halvex-Explicit-Dynamics-Case", "Explicit Dynamics Case", "Explicit.Dynamics.Case",
               "Halvex-Analysefall Explizite Dynamik"},
           Row{0, "Halvex-Thermal-Case", "Thermal Case", "Thermal.Case", "Halvex-Thermischer-Analysefall"},
           Row{1, "Halvex Simulation History", "Simulation History", "Simulation.History",
               "Halvex Simulationsverlauf"},
           Row{1, "Halvex Jobs", "Jobs", "Jobs", "Halvex Rechenaufträge"},
           Row{1, "Halvex Display Groups", "Display Groups", "Display.Groups", "Halvex Anzeigegruppen"},
           Row{1, "Halvex-Analysis-Case Solution", "Analysis Case Solution", "Analysis.Case.Solution",
               "Halvex-Analysefall Lösung"},
           Row{1, "Halvex Solution Sensors", "Solution Sensors", "Solution.Sensors",
               "Halvex Lösungssensoren"},
       }) {
    Names names(4);
    names[row.feature] = row.old;
    EXPECT_EQ(Renamed(names)[row.feature], row.now);
    // What the catalog lacks is the default text.
    names[row.feature] = row.germanOld;
    GivenNames(names);
    EXPECT_EQ(
        UpgradeUnder(Failing("VLMMsgCatalog::BuildMessage", row.key), 1, {"UpgradeFeaturesExternalName"}),
        S_OK);
    EXPECT_EQ(NamesNow()[row.feature], row.now);
  }
}

TEST_F(HVXEAnalysisCaseUpgradeTest, DefaultTextsComeBeforeTheCatalogs) {
  const testing_support::TempFolder folder;
  std::filesystem::create_directory(folder / "xx");
  folder.Put("xx/HVXVersionManager.json", R"({"Halvex.Jobs":"Halvex","Jobs":"Tasks"})");
  standalone::Messages::Use(folder / "", "xx");
  EXPECT_EQ(Renamed({"", "Halvex Jobs of Halvex", "", ""})[1], "Jobs of Tasks");
  standalone::Messages::Use(HVX_SOURCE_DIR "/standalone/messages", "en");
}

TEST_F(HVXEAnalysisCaseUpgradeTest, CatalogKeysInTheirOrder) {
  static_cast<void>(Renamed({"a", "b", "c", "d"}));
  std::string keys;
  for (const std::string& call : Calls("VLMMsgCatalog")) keys += call.substr(call.rfind(' '));
  EXPECT_EQ(
      keys,
      " Halvex.Structural.Case Nonlinear.Structural.Case Halvex.Explicit.Dynamics.Case Explicit.Dynamics.Case"
      " Halvex.Thermal.Case Thermal.Case Halvex.Simulation.History Simulation.History Halvex.Jobs Jobs"
      " Halvex.Display.Groups Display.Groups Halvex.Analysis.Case.Solution Analysis.Case.Solution"
      " Halvex.Solution.Sensors Solution.Sensors");
}

TEST_F(HVXEAnalysisCaseUpgradeTest, TheProductWordLosesItsCapitals) {
  EXPECT_EQ(Renamed({"HALVEX-Thermal-Case (HALVEX)", "HALVEX Simulation History", "halvex step", "AHALVEXB"},
                    "UpgradeAnalysisCaseExternalName"),
            (Names{"Halvex-Thermal-Case (Halvex)", "Halvex Simulation History", "halvex step", "AHalvexB"}));
  EXPECT_EQ(Calls("VLMMsgCatalog"), CallList{});
  EXPECT_EQ(Calls("VLMIAlias::Set").size(), 4U);
  // Run one after the other, the two lead from the oldest names to the current ones.
  GivenNames({"HALVEX-Thermal-Case", "HALVEX Jobs", "", ""});
  EXPECT_EQ(Upgrade(1, {"UpgradeAnalysisCaseExternalName", "UpgradeFeaturesExternalName"}), S_OK);
  EXPECT_EQ(NamesNow(), (Names{"Thermal Case", "Jobs", "", ""}));
}

TEST_F(HVXEAnalysisCaseUpgradeTest, TheFirstSubFeatureWithoutANameEndsTheRenaming) {
  for (const auto& [identifier, old, now] :
       {std::tuple{"UpgradeFeaturesExternalName", "Halvex Jobs", "Jobs"},
        std::tuple{"UpgradeAnalysisCaseExternalName", "HALVEX", "Halvex"}}) {
    SCOPED_TRACE(identifier);
    GivenNames({"Halvex-Thermal-Case HALVEX", old, old, old});
    EXPECT_EQ(UpgradeUnder(Withholding("VLMIAlias", 3), 1, {identifier}), S_OK);
    EXPECT_EQ(At(2).externalName, now);
    EXPECT_EQ(At(3).externalName, old);
    EXPECT_EQ(At(4).externalName, old);

    GivenNames({"Halvex-Thermal-Case HALVEX", old, old, old});
    EXPECT_EQ(UpgradeUnder(Withholding("VLMIAlias", 1), 1, {identifier}), S_OK);
    EXPECT_EQ(NamesNow(), (Names{"Halvex-Thermal-Case HALVEX", old, old, old}));

    EXPECT_EQ(UpgradeUnder(Withholding("VLMISamAnalysisScan", 1), 1, {identifier}), S_OK);
    EXPECT_NE(At(1).externalName, "Halvex-Thermal-Case HALVEX");  // its own name stays changed
    EXPECT_EQ(At(2).externalName, old);
  }
}

TEST_F(HVXEAnalysisCaseUpgradeTest, WhatIsNotKnownOfTwoStepsChangesNothing) {
  GivenNames({"Halvex-Thermal-Case", "HALVEX", "", ""});
  const std::string before = Lines();
  EXPECT_EQ(UpgradeUnder(Recording(), 1, {"UpgradeToElemType", "UpgradeToLocalAndGlobalAsgn"}), S_OK);
  EXPECT_EQ(Calls(), CallList{});
  EXPECT_EQ(Lines(), before);
}

}  // namespace
