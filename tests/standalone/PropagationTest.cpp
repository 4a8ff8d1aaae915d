#include <gmock/gmock.h>

#include "base/VLMLibrary.h"
#include "support/References.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIFactoryExtForPropagation.h"

namespace {

using standalone::UpgradeRun;
using testing_support::Failing;

// A case with an old contact (#10), two pairs (#11, #12) and a tie (#13) in its set and a pair (#14) in its
// second step.
class PropagationTest : public testing_support::UpgradeTest {
 protected:
  PropagationTest() {
    Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
             {"id":2,"type":"AnalysisCase","father":{"ref":1},)"
          R"("attributes":{"Solver":"Halvex","AnalysisType":1,"CaseKind":1}}
             {"id":3,"type":"HVXInteractionContainerLT","father":{"ref":2}}
             {"id":4,"type":"HVXSimulationHistoryLT","father":{"ref":2}}
             {"id":5,"type":"HVXInitialStepLT","father":{"ref":4}}
             {"id":6,"type":"HVXGeneralStaticStepLT","father":{"ref":4}}
             {"id":7,"type":"HVXStaticLPStepLT","father":{"ref":4}}
             {"id":8,"type":"HVXGeneralStaticStepLT","father":{"ref":4}}
             {"id":9,"type":"HVXInteractionContainerLT","father":{"ref":6}}
             {"id":10,"type":"HVXSurfaceToSurfaceContactLT","alias":"Contact Connection Enhancement-4",)"
          R"("father":{"ref":3},"attributes":{"connectionProperty":null}}
             {"id":11,"type":"HVXContactConnectionEnhancementStdLT","father":{"ref":3}}
             {"id":12,"type":"HVXContactConnectionEnhancementExplicitLT","father":{"ref":3}}
             {"id":13,"type":"HVXTiedContactLT","father":{"ref":3}}
             {"id":14,"type":"HVXContactConnectionEnhancementStdLT","father":{"ref":9}})");
  }

  UpgradeRun Run(const std::vector<std::string>& identifiers) {
    const standalone::VersionManager manager({&testing_support::Library()});
    return manager.Run(standalone::DocumentPtr(&Doc()), identifiers);
  }
};

TEST_F(PropagationTest, SiblingsOfAConvertedContactArePropagatedOnceAndLast) {
  const standalone::CheckpointScope scope(testing_support::Recording());
  const UpgradeRun run = Run({"UpgradeToContactConnectionEnhancementLT"});
  EXPECT_TRUE(run.failures.empty());
  EXPECT_EQ(
      Calls("HVXIFactoryExtForPropagation::Propagate"),
      (CallList{"HVXIFactoryExtForPropagation::Propagate #10", "HVXIFactoryExtForPropagation::Propagate #11",
                "HVXIFactoryExtForPropagation::Propagate #12"}));
  // The contact itself was propagated on the way.
  for (const standalone::FeatureId pair : {10, 11, 12})
    EXPECT_NE(Line(pair).find(R"("PropagationState":0,"PropagatedTo":"later steps")"), std::string::npos);
  EXPECT_EQ(Line(13), R"({"id":13,"type":"HVXTiedContactLT","father":{"ref":3}})");
  EXPECT_EQ(Line(14).find("PropagatedTo"), std::string::npos);
}

TEST_F(PropagationTest, FailuresAreReportedForTheFeature) {
  const standalone::CheckpointScope scope(Failing("HVXIFactoryExtForPropagation::Propagate", "", -77));
  const UpgradeRun run = Run({"UpgradeToContactConnectionEnhancementLT"});
  std::vector<std::pair<standalone::FeatureId, HRESULT>> failures;
  for (const standalone::UpgradeFailure& failure : run.failures) {
    if (failure.work.kind != standalone::UpgradeWork::Kind::kPropagation) continue;
    failures.emplace_back(failure.work.feature->id, failure.code);
  }
  EXPECT_THAT(failures, testing::ElementsAre(testing::Pair(11, -77), testing::Pair(12, -77)));
}

TEST_F(PropagationTest, ConvertedContactIsUpgradedFurtherInTheSameRun) {
  const UpgradeRun run = Run({"UpgradeToContactConnectionEnhancementLT", "UpgContactStdWithInterference",
                              "UpgContactWithContactControl", "UpgradeContactWithSurfSmoothParam"});
  EXPECT_EQ(At(10).externalName, "Contact Pair-4");
  EXPECT_NE(Line(10).find("\"InterferenceFit\""), std::string::npos);
  EXPECT_NE(Line(10).find(R"("SearchTolerance":0.1)"), std::string::npos);
  // Settings with three values, a fit, and a control with three values.
  EXPECT_EQ(standalone::Document::CountBeneath(At(10)), 9U);
  EXPECT_THAT(testing_support::BrokenReferences(Doc()), testing::IsEmpty());
}

TEST_F(PropagationTest, FeatureOfAStepReachesTheStepsBehindIt) {
  HVXIFactoryExtForPropagation_var factory;
  ASSERT_EQ(VLMInstantiateComponent("HVXEFactoryExtForPropagation", factory), S_OK);
  EXPECT_EQ(factory->Propagate(As<VLMBaseUnknown>(14), 0), E_FAIL);  // without propagation data
  EXPECT_EQ(factory->SetDefaultPropagationData(As<VLMBaseUnknown>(14), 0, NULL_var), S_OK);
  EXPECT_EQ(factory->Propagate(As<VLMBaseUnknown>(14), 0), S_OK);
  EXPECT_NE(Line(14).find(R"("PropagatedTo":"later steps")"), std::string::npos);
}

}  // namespace
