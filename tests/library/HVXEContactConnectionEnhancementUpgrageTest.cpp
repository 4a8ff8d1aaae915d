#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A contact (#10) that rests on a connection property (#3, in product #1), which connects a design (#2) with
// the product. The contact has settings, and what `attributes` and `sons` give it.
class HVXEContactConnectionEnhancementUpgrageTest : public testing_support::UpgradeTest {
 protected:
  struct Contact {
    std::string type = "HVXContactConnectionEnhancementStdLT";
    std::string propertyType = "SAMFaceFaceContact";
    std::string propertyAttributes = {};
    std::string attributes = {};
    std::string sons = {};
    std::string second = R"({"ref":1})";
  };

  void GivenContact(const Contact& contact) {
    Given(R"({"id":1,"type":"Product"}
             {"id":2,"type":"SAMGenericConnDesign"}
             {"id":3,"type":")" +
          contact.propertyType + R"(","attributes":{)" + contact.propertyAttributes +
          R"("Supports":[{"ref":4}]}}
             {"id":4,"type":"GeometrySmartConnector","father":{"ref":3},)"
          R"("attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":1}}}
             {"id":9,"type":"SAMContainer"}
             {"id":10,"type":")" +
          contact.type + R"(","container":{"ref":9},"attributes":{)" + contact.attributes +
          R"("Supports":[{"ref":11}]}}
             {"id":11,"type":"GeometrySmartConnector","father":{"ref":10},)"
          R"("attributes":{"FirstObject":{"ref":3},"SecondObject":)" +
          contact.second +
          R"(}}
             {"id":12,"type":"SAMBasicComponent","name":"ContactSettings","father":{"ref":10},)"
          R"("attributes":{"Type":"SAMComposite"}}
             )" +
          contact.sons);
  }

  static std::string Control(const std::string& components = "") {
    return R"({"id":20,"type":"HVXContactControlsLT","father":{"ref":10}}
             )" +
           components;
  }
  static constexpr const char* kHasControl = R"("ContactControl":{"ref":20},)";
  static constexpr const char* kMode =
      R"({"id":21,"type":"SAMBasicComponent","name":"OverclosureToleranceMode","father":{"ref":20},)"
      R"("attributes":{"Type":"SAMInteger","Values":0}})";
  static constexpr const char* kFit = R"({"id":30,"type":"HVXInterferenceFitLT","father":{"ref":10},)"
                                      R"("attributes":{"FitType":0,"Definition":0,"Value":0.0}})";
  static constexpr const char* kHasFit = R"("InterferenceFit":{"ref":30},)";
  static constexpr const char* kExplicit = "HVXContactConnectionEnhancementExplicitLT";
};

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, StandardContactGetsControlAndDefaults) {
  GivenContact({});
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgContactWithContactControl"}), S_OK);
  EXPECT_EQ(Line(10),
            R"({"id":10,"type":"HVXContactConnectionEnhancementStdLT","container":{"ref":9},)"
            R"("attributes":{"Supports":[{"ref":11}],"ContactControl":{"ref":15},"SearchTolerance":0.1,)"
            R"("OverclosureTolerance":-0.001,"AutomaticTolerances":false}})");
  EXPECT_EQ(Line(15), R"({"id":15,"type":"HVXContactControlsLT","name":"HVXContactControlsLT.15",)"
                      R"("alias":"Contact Controls","father":{"ref":10},"container":{"ref":9}})");
  // The host's upgrade of the contact comes before its control is asked for.
  EXPECT_EQ(
      Calls(),
      (CallList{"VLMInstantiateComponent #0 HVXSurfaceToSurfaceContactFact",
                "VLMISpecObject::GetContainer #10", "VLMISamUpgrade::Upgrade #10",
                "HVXIContactConnectionEnhancementStd::GetContactControl #10 ContactControl",
                "HVXISurfaceToSurfaceContactFact::CreateContactControl #10",
                "HVXIContactConnectionEnhancementStd::SetSearchTolerance #10 SearchTolerance",
                "HVXIContactConnectionEnhancementStd::SetOverclosureTolerance #10 OverclosureTolerance",
                "HVXIContactConnectionEnhancementStd::SetAutomaticTolerances #10 AutomaticTolerances"}));
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, DefaultsAreSetWithoutControlToo) {
  for (const auto& plan : {Failing("VLMInstantiateComponent"),
                           Failing("HVXISurfaceToSurfaceContactFact::CreateContactControl")}) {
    GivenContact({});
    EXPECT_EQ(UpgradeUnder(plan, 10, {"UpgContactWithContactControl"}), S_OK);
    EXPECT_EQ(Line(10), R"({"id":10,"type":"HVXContactConnectionEnhancementStdLT","container":{"ref":9},)"
                        R"("attributes":{"Supports":[{"ref":11}],"SearchTolerance":0.1,)"
                        R"("OverclosureTolerance":-0.001,"AutomaticTolerances":false}})");
  }
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, ContactWithControlKeepsItsTolerances) {
  GivenContact(
      {.attributes = std::string(kHasControl) + R"("SearchTolerance":0.5,"AutomaticTolerances":true,)",
       .sons = Control()});
  const std::string before = Line(10);
  EXPECT_EQ(Upgrade(10, {"UpgContactWithContactControl"}), S_OK);
  EXPECT_EQ(Line(10), before);
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, ExplicitContactGetsControlWithoutDefaults) {
  GivenContact({.type = kExplicit});
  EXPECT_EQ(Upgrade(10, {"UpgContactWithContactControl"}), S_OK);
  EXPECT_EQ(Line(10), R"({"id":10,"type":"HVXContactConnectionEnhancementExplicitLT","container":{"ref":9},)"
                      R"("attributes":{"Supports":[{"ref":11}],"ContactControl":{"ref":15}}})");
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, InterferenceFitIsCompletedOnceAndOnStandardContactsOnly) {
  GivenContact({});
  EXPECT_EQ(Upgrade(10, {"UpgContactStdWithInterference", "UpgContactStdWithInterference"}), S_OK);
  EXPECT_EQ(Line(10), R"({"id":10,"type":"HVXContactConnectionEnhancementStdLT","container":{"ref":9},)"
                      R"("attributes":{"Supports":[{"ref":11}],"InterferenceFit":{"ref":13}}})");
  EXPECT_EQ(Line(13),
            R"({"id":13,"type":"HVXInterferenceFitLT","name":"HVXInterferenceFitLT.13","father":{"ref":10},)"
            R"("container":{"ref":9},"attributes":{"FitType":0,"Definition":0,"Value":0.0}})");
  EXPECT_EQ(Doc().Find(14), nullptr);

  GivenContact({.type = kExplicit});
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(10, {"UpgContactStdWithInterference"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, ClearanceBecomesInterferenceAsItStands) {
  GivenContact({.propertyAttributes = R"("ClearanceFlag":true,"Clearance":4.999999873689376e-05,)",
                .attributes = kHasFit,
                .sons = kFit});
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgMapCCPClearanceToInterference"}), S_OK);
  EXPECT_EQ(Line(30),
            R"({"id":30,"type":"HVXInterferenceFitLT","father":{"ref":10},"attributes":{"FitType":1,)"
            R"("Definition":1,"Value":4.999999873689376e-05}})");
  EXPECT_EQ(Calls("HVXIInterferenceFit"), (CallList{"HVXIInterferenceFit::SetFitType #30 FitType",
                                                    "HVXIInterferenceFit::SetDefinition #30 Definition",
                                                    "HVXIInterferenceFit::SetValue #30 Value"}));

  // No clearance is a clearance of zero, once it is prescribed.
  GivenContact({.propertyAttributes = R"("ClearanceFlag":true,)", .attributes = kHasFit, .sons = kFit});
  EXPECT_EQ(Upgrade(10, {"UpgMapCCPClearanceToInterference"}), S_OK);
  EXPECT_EQ(Line(30),
            R"({"id":30,"type":"HVXInterferenceFitLT","father":{"ref":10},"attributes":{"FitType":1,)"
            R"("Definition":1,"Value":0.0}})");
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, WhatHasNoClearanceToMapIsLeftAlone) {
  const std::string clearance = R"("ClearanceFlag":true,"Clearance":0.5,)";
  const Contact contacts[] = {
      {.propertyAttributes = R"("ClearanceFlag":false,"Clearance":0.5,)",
       .attributes = kHasFit,
       .sons = kFit},
      {.propertyType = "ConstraintASM", .propertyAttributes = clearance, .attributes = kHasFit, .sons = kFit},
      {.propertyType = "SAMGenericConnDesign",
       .propertyAttributes = clearance,
       .attributes = kHasFit,
       .sons = kFit},
      {.propertyType = "SAMFaceFaceFastened",
       .propertyAttributes = clearance,
       .attributes = kHasFit,
       .sons = kFit},
      {.type = kExplicit, .propertyAttributes = clearance, .attributes = kHasFit, .sons = kFit},
      {.propertyAttributes = clearance},
  };
  for (const Contact& contact : contacts) {
    GivenContact(contact);
    const std::string before = Lines();
    EXPECT_EQ(Upgrade(10, {"UpgMapCCPClearanceToInterference"}), S_OK);
    EXPECT_EQ(Lines(), before);
  }
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, SupportMovesToWhatThePropertyConnects) {
  for (const char* const type : {"HVXContactConnectionEnhancementStdLT", kExplicit}) {
    GivenContact({.type = type});
    EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgCCPToGACOrConstraintAsSupp"}), S_OK);
    EXPECT_EQ(Line(11), "removed");
    EXPECT_EQ(Line(13), R"({"id":13,"type":"GeometrySmartConnector","name":"GeometrySmartConnector.13",)"
                        R"("father":{"ref":10},"container":{"ref":9},)"
                        R"("attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":1}}})");
    EXPECT_EQ(Calls("VLMISamAnalysisSupport::"),
              (CallList{"VLMISamAnalysisSupport::ListSupports #10", "VLMISamAnalysisSupport::ListSupports #3",
                        "VLMISamAnalysisSupport::PrepareSupports #10",
                        "VLMISamAnalysisSupport::AddSupport #10 GeometrySmartConnector"}));
  }
  for (const char* const property : {"ConstraintASM", "SAMGenericConnDesign", "SAMFaceFaceFastened"}) {
    GivenContact({.propertyType = property});
    const std::string before = Lines();
    EXPECT_EQ(Upgrade(10, {"UpgCCPToGACOrConstraintAsSupp"}), S_OK);
    EXPECT_EQ(Lines(), before);
  }
}

// The property is what the support rests on, whatever its second object is.
TEST_F(HVXEContactConnectionEnhancementUpgrageTest, ThePropertyIsFoundWithoutASecondObject) {
  GivenContact({.propertyAttributes = R"("ClearanceFlag":true,"Clearance":0.5,)",
                .attributes = kHasFit,
                .sons = kFit,
                .second = "null"});
  EXPECT_EQ(Upgrade(10, {"UpgMapCCPClearanceToInterference", "UpgCCPToGACOrConstraintAsSupp"}), S_OK);
  EXPECT_NE(Line(30).find(R"("FitType":1)"), std::string::npos);
  EXPECT_EQ(Line(11), "removed");
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, PreparationOfTheSupportsIsNotLookedAt) {
  GivenContact({});
  EXPECT_EQ(
      UpgradeUnder(Failing("VLMISamAnalysisSupport::PrepareSupports"), 10, {"UpgCCPToGACOrConstraintAsSupp"}),
      S_OK);
  EXPECT_EQ(Line(10), R"({"id":10,"type":"HVXContactConnectionEnhancementStdLT","container":{"ref":9},)"
                      R"("attributes":{"Supports":[{"ref":11},{"ref":13}]}})");
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, ControlIsUpgradedInBothVariants) {
  for (const char* const type : {"HVXContactConnectionEnhancementStdLT", kExplicit}) {
    GivenContact({.type = type, .attributes = kHasControl, .sons = Control()});
    EXPECT_EQ(Upgrade(10, {"UpgradeAutomaticOverclosureTolerancesInContactPair"}), S_OK);
    EXPECT_EQ(Line(21),
              R"({"id":21,"type":"SAMBasicComponent","name":"OverclosureToleranceMode","father":{"ref":20},)"
              R"("attributes":{"Type":"SAMInteger","Values":0}})");
  }
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, OverclosureModeIsResetOnStandardContactsOnly) {
  GivenContact({.attributes = kHasControl, .sons = Control(kMode)});
  EXPECT_EQ(Upgrade(10, {"UpgradeReAutomaticOverclosureTolerancesInContactPair"}), S_OK);
  EXPECT_EQ(Line(21),
            R"({"id":21,"type":"SAMBasicComponent","name":"OverclosureToleranceMode","father":{"ref":20},)"
            R"("attributes":{"Type":"SAMInteger","Values":2}})");

  GivenContact({.type = kExplicit, .attributes = kHasControl, .sons = Control(kMode)});
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(10, {"UpgradeReAutomaticOverclosureTolerancesInContactPair"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, SurfaceSmoothingIsAddedOnceAndSwitchedOff) {
  GivenContact({});
  EXPECT_EQ(UpgradeUnder(Recording(), 10,
                         {"UpgradeContactWithSurfSmoothParam", "UpgradeContactWithSurfSmoothParam"}),
            S_OK);
  EXPECT_EQ(Line(13), R"({"id":13,"type":"SAMBasicComponent","name":"SurfaceSmoothing","father":{"ref":12},)"
                      R"("attributes":{"Type":"SAMBoolean","Values":false}})");
  EXPECT_EQ(Calls("VLMISamBasicComponent::CreateComponent").size(), 1U);
  EXPECT_EQ(Calls("VLMISamBasicComponent::SetBoolean").size(), 1U);

  GivenContact({.sons =
                    R"({"id":13,"type":"SAMBasicComponent","name":"SurfaceSmoothing","father":{"ref":12},)"
                    R"("attributes":{"Type":"SAMBoolean","Values":true}})"});
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(10, {"UpgradeContactWithSurfSmoothParam"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXEContactConnectionEnhancementUpgrageTest, FailedRoutineDoesNotKeepTheNextIdentifierFromRunning) {
  GivenContact({});  // without a control to reset
  AlsoKnown("Unknown");
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISamAnalysisSupport", 10), 10,
                         {"UpgradeReAutomaticOverclosureTolerancesInContactPair",
                          "UpgCCPToGACOrConstraintAsSupp", "Unknown", "UpgradeContactWithSurfSmoothParam"}),
            S_OK);
  EXPECT_EQ(Calls("VLMISamAnalysisSupport::AddSupport"), CallList{});
  EXPECT_NE(Line(13).find("SurfaceSmoothing"), std::string::npos);
}

}  // namespace
