#include <gmock/gmock.h>

#include "check/Losses.h"
#include "support/UpgradeFixture.h"
#include "upgrade/VersionManager.h"

namespace {

using standalone::DocumentPtr;
using testing::ElementsAre;
using testing::IsEmpty;

class LossesTest : public testing_support::UpgradeTest {
 protected:
  // A model (#1) with a case (#2) that has an interaction container (#3), properties (#4), two sides (#5, #6)
  // and what a test adds.
  void GivenCaseWith(std::string_view lines, int analysisType = 1) {
    Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
             {"id":2,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":)" +
          std::to_string(analysisType) + R"(}}
             {"id":3,"type":"HVXInteractionContainerLT","father":{"ref":2}}
             {"id":4,"type":"PropertySet","father":{"ref":1}}
             {"id":5,"type":"Surface"}
             {"id":6,"type":"Surface"}
             )" +
          std::string(lines));
  }
  // Six components of a velocity condition (#10), and what a test adds.
  void GivenVelocityWith(const std::string& line) {
    std::string lines = R"({"id":10,"type":"HVXVelocityBCLT","father":{"ref":2}})";
    const char* const names[] = {"HVXTranslationalVelocity_", "HVXRotationalVelocity_"};
    for (int i = 0; i < 6; ++i) {
      lines += "\n" + Component(11 + i, names[i / 3] + std::to_string(1 + i % 3), i, R"(,"IsActive":1)");
    }
    GivenCaseWith(lines + "\n" + line);
  }
  static std::string Component(int id, const std::string& name, double value, const std::string& more = "") {
    return R"({"id":)" + std::to_string(id) + R"(,"type":"SAMBasicComponent","name":")" + name +
           R"(","father":{"ref":10},"attributes":{"Type":"SAMDouble","Values":)" + std::to_string(value) +
           more + "}}";
  }
  // A contact property (#10) on both sides.
  static std::string Property(const std::string& attributes) {
    return R"({"id":10,"type":"SAMFaceFaceContact","father":{"ref":4},"attributes":{"Supports":[{"ref":11}])" +
           attributes + R"(}}
             {"id":11,"type":"GeometrySmartConnector","father":{"ref":10},"attributes":{"FirstObject":{"ref":5},"SecondObject":{"ref":6}}}
             )";
  }

  void RunAll() {
    const DocumentPtr document(&Doc());
    static_cast<void>(manager_.Run(document, manager_.Pending(Doc())));
  }
  std::vector<std::string> Lost() {
    std::vector<std::string> lost;
    for (const standalone::Finding& finding : standalone::FindLosses(Doc())) {
      EXPECT_FALSE(finding.remedy.empty());
      lost.push_back('#' + std::to_string(finding.feature->id) + ' ' + finding.key);
    }
    return lost;
  }

  standalone::VersionManager manager_{{&testing_support::Library()}};
};

TEST_F(LossesTest, WhatAnUpgradeReplacedByNothing) {
  GivenCaseWith(R"({"id":20,"type":"HVXRigidCouplingLT","attributes":{"Supports":[{"ref":21},{"ref":22}]}}
                   {"id":21,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":23},"SecondObject":{"ref":1}}}
                   {"id":22,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":24},"SecondObject":{"ref":1}}}
                   {"id":23,"type":"SAMGroup","attributes":{"GroupKind":1,"Members":[]}}
                   {"id":24,"type":"Surface"}
                   {"id":10,"type":"HVXLocalElemAsgnLT","father":{"ref":2},"attributes":{"HVXListElementAsgnSpec":[{"ref":11},{"ref":12}]}}
                   {"id":11,"type":"HVXElementAssignmentLT","father":{"ref":10},"attributes":{"SectionControlsSpec":{"ref":13}}}
                   {"id":12,"type":"HVXElementAssignmentLT","father":{"ref":10},"attributes":{"SectionControlsSpec":{"ref":14}}}
                   {"id":13,"type":"HVXSectionControlsLT","father":{"ref":11},"attributes":{"LengthRatio":"x","StiffnessViscousWtFactor":0.5}}
                   {"id":14,"type":"HVXSectionControlsLT","father":{"ref":12}})");
  static_cast<void>(Upgrade(20, {"UpgradeGroupToSupport"}));
  static_cast<void>(Upgrade(10, {"UpgradeLocalElementAssignment"}));
  // What could not be copied (#13) stays where it is.
  EXPECT_THAT(Lost(), ElementsAre("#20 Supports",
                                  "#14 LengthRatio, StiffnessViscousWtFactor, DispHourglassScalingFactor, "
                                  "RotHourglassScalingFactor, OutOfPlaneHourglassScalingFactor"));
}

TEST_F(LossesTest, ACodeThatStandsForNothing) {
  GivenCaseWith(
      R"({"id":10,"type":"HVXSurfaceToSurfaceContactLT","father":{"ref":3},"attributes":{"connectionProperty":null,"constraintEnforcement":7}})");
  RunAll();
  EXPECT_THAT(Lost(), ElementsAre("#10 constraintEnforcement"));
}

// Its pair is given the fit in a structural case, where the property is a standard one, and never the
// clearance, which goes over with a standard pair that rests on the property.
TEST_F(LossesTest, WhatAContactPropertyPrescribedMustStandInAPair) {
  const std::string fit =
      R"({"id":12,"type":"HVXInterferenceFitLT","father":{"ref":10},"attributes":{"FitType":1,"Definition":1,"Value":0.004}})";
  const std::string pair =
      R"({"id":13,"type":"HVXContactConnectionEnhancementStdLT","father":{"ref":3},"attributes":{"Supports":[{"ref":14}]}}
         {"id":14,"type":"GeometrySmartConnector","father":{"ref":13},"attributes":{"FirstObject":{"ref":10},"SecondObject":{"ref":6}}})";
  const std::string withFit = R"(,"InterferenceFit":{"ref":12})";
  const std::string withClearance = R"(,"ClearanceFlag":true,"Clearance":0.1)";
  struct {
    std::string lines;
    int analysisType;
    const char* lost;
  } const cases[] = {
      {Property(withFit) + fit, 1, nullptr},
      {Property(withFit) + fit, 3, "#10 InterferenceFit"},
      {Property(withFit + R"(,"ContactKind":2)") + fit, 1, "#10 InterferenceFit"},
      {Property(withFit) + fit + "\n" + pair, 1, "#10 InterferenceFit"},
      {Property(withClearance) + pair, 1, nullptr},
      {Property(withClearance), 1, "#10 Clearance"},
      {Property(R"(,"ClearanceFlag":true,"Clearance":1e300)") + pair, 1, "#10 Clearance"},
      {Property(R"(,"ClearanceFlag":false,"Clearance":0.1)"), 1, nullptr},
  };
  for (const auto& each : cases) {
    GivenCaseWith(each.lines, each.analysisType);
    RunAll();
    EXPECT_TRUE(At(10).removed);
    if (each.lost == nullptr) {
      EXPECT_THAT(Lost(), IsEmpty()) << each.lines;
    } else {
      EXPECT_THAT(Lost(), ElementsAre(each.lost)) << each.lines;
    }
  }
}

// The velocity's upgrade takes all components away and makes the six anew.
TEST_F(LossesTest, AComponentThatNothingTookThePlaceOf) {
  GivenVelocityWith(Component(17, "HVXTranslationalVelocity_1", 9));  // a repetition
  RunAll();
  EXPECT_THAT(Lost(), IsEmpty());
  GivenVelocityWith(Component(17, "Ramp", 9));
  RunAll();
  EXPECT_THAT(Lost(), ElementsAre("#17 Ramp"));

  // Only the first three sons stay, whatever they are.
  GivenCaseWith(
      R"({"id":10,"type":"HVXInitialVelocityLT","father":{"ref":2},"attributes":{"SonsList":[{"ref":14},{"ref":11},{"ref":12},{"ref":13}]}})"
      "\n" +
      Component(11, "HVXInitialVelocity_1", 1) + "\n" + Component(12, "HVXInitialVelocity_2", 2) + "\n" +
      Component(13, "HVXInitialVelocity_3", 3) + "\n" + Component(14, "InitialVelocityTrans", 4));
  RunAll();
  EXPECT_THAT(Lost(), ElementsAre("#13 HVXInitialVelocity_3"));
}

TEST_F(LossesTest, WhatWasCurrentAlready) {
  GivenCaseWith(
      R"({"id":10,"type":"HVXInteractionPropertyLT","father":{"ref":4},"attributes":{"tangentialBehavior":{"ref":11}}}
         {"id":11,"type":"HVXTangentialBehaviorLT","father":{"ref":10},"attributes":{"frictionValList":[0.2],"FrictionTable":[[0.5,0.0,0.0,0.0]]}}
         {"id":12,"type":"HVXNewFieldOutputLT","father":{"ref":2},"attributes":{"VariableSelection":1,"PreselectedVariableList":"NTX,CENT,S"}}
         {"id":13,"type":"HVXNewFieldOutputLT","father":{"ref":2},"attributes":{"VariableSelection":1,"PreselectedVariableList":"NT,CENT,NT,S"}})");
  RunAll();
  EXPECT_THAT(Lost(), testing::UnorderedElementsAre("#11 FrictionTable", "#12 PreselectedVariableList"));
}

}  // namespace
