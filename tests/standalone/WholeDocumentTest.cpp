// The example documents as wholes: golden results, every starting point, and a second run; and the same
// documents with damaged features, of which the current model is told what is left.

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <sstream>

#include "adapters/Attributes.h"
#include "check/Conformity.h"
#include "check/Losses.h"
#include "compare/DroppedValues.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "support/References.h"
#include "support/TempFolder.h"
#include "support/UpgradeFixture.h"
#include "upgrade/LeftBehind.h"

namespace {

using namespace standalone;
using testing_support::BrokenReferences;

std::string TextOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

// What upgrades are there to take away: the number of attributes, the upgrade, where, and the key.
constexpr const char* kDroppedOfPipe =
    "1 RemoveConsisChkAttr HVXFilmCondition ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXInitialTemperatureLT ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXInteractionPropertyLT ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXTemperatureLT ListOfRuleNames\n"
    "2 RestNodeAndElementUserNumber MSHMeshPart ElementUserNumbers\n"
    "2 RestNodeAndElementUserNumber MSHMeshPart NodeUserNumbers\n"
    "2 UpgradeEndIncrementOption EndIncrement Values\n"
    "1 UpgradeJobForFromInputFile HVXJobLT InputFileFlag\n"
    "1 UpgradeJobForFromInputFile HVXJobLT RunType\n"
    "1 UserSubRoutineAttrUpgrade HVXTangentialBehaviorLT FrictionFormulation\n";
constexpr const char* kDroppedOfBracket =
    "1 RemoveConsisChkAttr HVXClamp ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXContactConnectionEnhancementStdLT ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXGaskPropertyLT ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXGeneralStaticStepLT ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXInteractionPropertyLT ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXPressure ListOfRuleNames\n"
    "1 RemoveConsisChkAttr HVXSurfaceToSurfaceContactLT ListOfRuleNames\n"
    "4 RestNodeAndElementUserNumber MSHMeshPart ElementUserNumbers\n"
    "4 RestNodeAndElementUserNumber MSHMeshPart NodeUserNumbers\n"
    "2 UpgDocumentForCCPRemoval SAMFaceFaceContact Clearance\n"
    "6 UpgDocumentForCCPRemoval SAMFaceFaceContact ContactKind\n"
    "1 UpgradeAcclnBCBasicComponents HVXTranslationalVelocity_1 Values\n"
    "4 UpgradeFORPreselectedVarListAttr HVXNewFieldOutputLT PreselectedVariableList\n"
    "1 UpgradeJobForFromInputFile HVXJobLT InputFileFlag\n"
    "1 UpgradeJobForFromInputFile HVXJobLT RunType\n"
    "2 UpgradeJobMemoryUnit HVXJobLT MemoryUnit\n"
    "1 UserSubRoutineAttrUpgrade HVXTangentialBehaviorLT FrictionFormulation\n";

// From one place where the upgrades are split to the next that is tried.
#ifdef HVX_SANITIZED
constexpr std::size_t kStep = 4;
#else
constexpr std::size_t kStep = 1;
#endif

class WholeDocumentTest : public testing_support::UpgradeTest,
                          public testing::WithParamInterface<const char*> {
 protected:
  [[nodiscard]] std::filesystem::path Example() const {
    return fmt::format("{}/examples/{}.hvxdoc", HVX_SOURCE_DIR, GetParam());
  }
  [[nodiscard]] std::filesystem::path Damaged() const {
    return fmt::format("{}/tests/damaged/{}.hvxdoc", HVX_SOURCE_DIR, GetParam());
  }
  [[nodiscard]] std::filesystem::path Golden() const {
    return fmt::format("{}/tests/golden/{}.hvxdoc", HVX_SOURCE_DIR, GetParam());
  }

  UpgradeRun Run(const DocumentPtr& document, const std::vector<std::string>& identifiers) {
    return manager_.Run(document, identifiers);
  }
  // As several releases would: each opens the document, upgrades it and saves it.
  DocumentPtr RunAndSave(const DocumentPtr& document, const std::vector<std::string>& identifiers) {
    return testing_support::RunAndSave(manager_, document, identifiers);
  }
  // What a person does about a finding: gives the feature what it lacks, or takes away what is in the way.
  static void Correct(Feature& feature, std::string_view keys) {
    Document& document = *feature.document;
    while (!keys.empty()) {
      const std::size_t end = std::min(keys.find(", "), keys.size());
      const Key key(keys.substr(0, end));
      keys.remove_prefix(std::min(end + 2, keys.size()));
      if (key.Text().ends_with("_param")) {
        Feature* const parameter =
            document.Create(LateType::Of("Parameter"), key.Text(), &feature, feature.container);
        static_cast<void>(WriteAttribute(*parameter, Key("Value"), 0.25));
        WriteLink(feature, key, parameter);
      } else if (key.Text() == "SonsList") {
        const Key& sonsList = key;
        std::vector<Feature*> sons = LinkedFeatures(feature, sonsList);
        std::erase_if(
            sons, [](const Feature* son) { return son->externalName == "Stray" || son->name == "Stray"; });
        WriteLinks(feature, sonsList, sons);
      } else if (key.Text() == "connectionProperty") {
        Feature* property = document.First();
        while (property->TypeName() != "SAMFaceFaceFastened") property = property->next;
        WriteLink(feature, key, property);
      } else {
        ADD_FAILURE() << "nobody knows how to correct " << key.Text();
      }
    }
  }

  testing_support::TempFolder folder_;
  VersionManager manager_{{&testing_support::Library()}};
};

TEST_P(WholeDocumentTest, BecomesTheGoldenResult) {
  const DocumentPtr document = ReadDocument(Example());
  const UpgradeRun run = Run(document, manager_.Pending(*document.Get()));
  EXPECT_EQ(run.identifiers.size(), 66U);
  EXPECT_TRUE(run.failures.empty());
  EXPECT_TRUE(FindLosses(*document.Get()).empty());
  EXPECT_THAT(CheckConformity(*document.Get()),
              testing::Each(testing::Field(&Finding::kind, FindingKind::kUnknown)));
  const std::filesystem::path result = folder_ / "result.hvxdoc";
  WriteDocument(*document.Get(), result);
  // After a change that is meant: scripts/renew-golden, and read the difference.
  EXPECT_TRUE(TextOf(result) == TextOf(Golden())) << "the result differs from tests/golden";
}

// In one run, in two after any identifier, and in one run for each: every time with a file in between.
TEST_P(WholeDocumentTest, ComesOutTheSameWhicheverWayItGoes) {
  for (const std::filesystem::path& file : {Example(), Damaged()}) {
    const DocumentPtr original = ReadDocument(file);
    const FeatureId made = original->NextId();
    const std::vector<std::string> all = manager_.Pending(*original.Get());
    const DocumentPtr atOnce = RunAndSave(ReadDocument(file), all);
    const std::string expected = testing_support::LinesNumberedAnew(*atOnce.Get(), made);

    for (std::size_t first = 1; first < all.size(); first += kStep) {
      SCOPED_TRACE(fmt::format("{}, first those up to {}", file.filename().string(), all[first - 1]));
      DocumentPtr document =
          RunAndSave(ReadDocument(file), {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(first)});
      static_cast<void>(Run(document, manager_.Pending(*document.Get())));
      EXPECT_TRUE(testing_support::LinesNumberedAnew(*document.Get(), made) == expected);
    }
    DocumentPtr document = ReadDocument(file);
    for (std::vector<std::string> pending = all; !pending.empty();
         pending = manager_.Pending(*document.Get()))
      document = RunAndSave(document, {pending.front()});
    EXPECT_TRUE(testing_support::LinesNumberedAnew(*document.Get(), made) == expected) << "one by one";
    EXPECT_EQ(document->Upgrades(), atOnce->Upgrades());
  }
}

// Each of these is what the upgrade that took it away is for; nothing else may go.
TEST_P(WholeDocumentTest, OnlyWhatUpgradesTakeAwayIsDropped) {
  const DocumentPtr document = ReadDocument(Example());
  document->Changes().Start();
  const UpgradeRun run = Run(document, manager_.Pending(*document.Get()));
  document->DropAllDeadLinks();
  std::map<std::string, int> dropped;
  for (const DroppedValues& each : FindDroppedValues(*document.Get())) {
    const FeatureState& before = *document->Before(*each.feature);
    const auto& notes = document->Changes().Notes();
    const auto last = std::ranges::find_if(notes.rbegin(), notes.rend(), [&each](const ChangeNote& note) {
      return note.feature == each.feature && (note.part == ChangedPart::kRemoved || note.key == each.key);
    });
    ASSERT_NE(last, notes.rend());
    const std::string name(before.TypeName() == "SAMBasicComponent" ? before.name : before.TypeName());
    ++dropped[fmt::format("{} {} {}", run.works[last->work].upgrade->identifier, name,
                          NameTable::Text(each.key))];
  }
  std::string text;
  for (const auto& [what, count] : dropped) text += fmt::format("{} {}\n", count, what);
  EXPECT_EQ(text, std::string_view(GetParam()) == "heated_pipe" ? kDroppedOfPipe : kDroppedOfBracket);
}

TEST_P(WholeDocumentTest, WhatIsCurrentStaysAsItIs) {
  const DocumentPtr document = ReadDocument(Golden());
  const std::vector<std::string> before = BrokenReferences(*ReadDocument(Example()).Get());
  EXPECT_EQ(BrokenReferences(*document.Get()), before);
  EXPECT_TRUE(manager_.Pending(*document.Get()).empty());
  static_cast<void>(Run(document, {}));
  EXPECT_TRUE(document->Touched().empty());
}

TEST_P(WholeDocumentTest, OnlyTheDamagedFeaturesStayOld) {
  const DocumentPtr document = ReadDocument(Damaged());
  static_cast<void>(Run(document, manager_.Pending(*document.Get())));
  std::size_t damaged = 0;
  for (const Finding& finding : CheckConformity(*document.Get())) {
    if (finding.kind == FindingKind::kUnknown) continue;
    EXPECT_TRUE(finding.feature->externalName.starts_with("Damaged"));
    EXPECT_FALSE(finding.damage.empty());
    ++damaged;
  }
  EXPECT_GE(damaged, 4U);
  for (const Finding& loss : FindLosses(*document.Get()))
    EXPECT_TRUE(loss.feature->externalName.starts_with("Damaged")) << loss.Explanation();
}

// In the midst of the upgrades, so that there are pending findings and others.
TEST_P(WholeDocumentTest, PendingFindingsAreLeftOutOfThoseOfAResult) {
  const DocumentPtr document = ReadDocument(Damaged());
  std::vector<std::string> first = manager_.Pending(*document.Get());
  first.resize(first.size() / 2);
  static_cast<void>(Run(document, first));
  const auto textsOf = [](const std::vector<Finding>& findings) {
    std::vector<std::string> texts;
    for (const Finding& finding : findings) {
      if (finding.kind == FindingKind::kPending) continue;
      texts.push_back(fmt::format("{} {}: {}. {}", WordsFor(finding.kind), finding.feature->id,
                                  finding.Explanation(), finding.NextStep()));
    }
    return texts;
  };
  const std::vector<Finding> all = CheckConformity(*document.Get());
  const std::vector<Finding> ofResult = CheckConformity(*document.Get(), FindingScope::kOfResult);
  EXPECT_LT(ofResult.size(), all.size());
  EXPECT_FALSE(textsOf(all).empty());
  EXPECT_EQ(textsOf(ofResult), textsOf(all));
}

TEST_P(WholeDocumentTest, WhatAPersonCorrectsIsCompletedByRunningAgain) {
  const DocumentPtr document = ReadDocument(Damaged());
  static_cast<void>(Run(document, manager_.Pending(*document.Get())));
  const auto leftBehind = [&document] {
    std::vector<Finding> findings = CheckConformity(*document.Get());
    std::erase_if(findings, [](const Finding& finding) { return finding.kind != FindingKind::kLeftBehind; });
    return findings;
  };
  const std::vector<Finding> before = leftBehind();
  ASSERT_GE(before.size(), 4U);
  for (const Finding& finding : before) Correct(*finding.feature, finding.key);
  LeftBehind again(*document.Get());
  const UpgradeRun run = manager_.RunAgain(document, [&again] { return again.Next(); }, {});
  EXPECT_TRUE(run.failures.empty());
  for (const Finding& finding : leftBehind()) {
    ADD_FAILURE() << finding.feature->externalName << ": " << finding.Explanation();
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, WholeDocumentTest, testing::Values("bolted_bracket", "heated_pipe"));

}  // namespace
