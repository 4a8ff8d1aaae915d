#include <gmock/gmock.h>

#include <algorithm>

#include "analysis/VLMISamAnalysisSupport.h"
#include "support/References.h"
#include "support/UpgradeFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::BrokenReferences;
using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// Old contact #20 in the interaction set (#12) of case #10, beside tie #23. The initial step (#15) has an
// interaction container (#16); step #17 has all three kinds of output request, each with one request on the
// contact (#31, #33 and #35), and a data request on the tie (#37).
class HVXESurfaceToSurfaceContactUpgrageTest : public testing_support::UpgradeTest {
 protected:
  struct Old {
    std::string name = "Contact Connection Enhancement-3";
    std::string attributes = R"("connectionProperty":{"ref":5})";
    std::string property = R"("ClearanceFlag":true)";
    std::string caseKind = "0";
    std::string initialStepContainer = R"("HVXInteractionContainerLT")";
    std::string interactionSet = R"("HVXInteractionContainerLT")";
    std::string featList = R"("FeatList":[])";
  };

  void GivenContact(const Old& old) {
    Given(R"({"id":1,"type":"SAMContainer"}
             {"id":2,"type":"Product"}
             {"id":3,"type":"AnalysisModel","attributes":{)" +
          old.featList + R"(}}
             {"id":4,"type":"PropertySet","father":{"ref":3}}
             {"id":5,"type":"SAMFaceFaceContact","father":{"ref":4},"attributes":{)" +
          old.property +
          R"(}}
             {"id":6,"type":"SAMGroup","father":{"ref":3}}
             {"id":10,"type":"AnalysisCase","father":{"ref":3},)"
          R"("attributes":{"Solver":"Halvex","AnalysisType":1,"CaseKind":)" +
          old.caseKind + R"(}}
             {"id":12,"type":)" +
          old.interactionSet + R"(,"father":{"ref":10}}
             {"id":14,"type":"HVXSimulationHistoryLT","father":{"ref":10}}
             {"id":15,"type":"HVXInitialStepLT","father":{"ref":14}}
             {"id":16,"type":)" +
          old.initialStepContainer + R"(,"father":{"ref":15}}
             {"id":17,"type":"HVXGeneralStaticStepLT","father":{"ref":14}}
             {"id":18,"type":"HVXStaticLPStepLT","father":{"ref":14}}
             {"id":20,"type":"HVXSurfaceToSurfaceContactLT","alias":")" +
          old.name + R"(","father":{"ref":12},"container":{"ref":1},"attributes":{)" + old.attributes + R"(}}
             {"id":21,"type":"Parameter","father":{"ref":20},"attributes":{"Magnitude":"LENGTH","Value":0.25}}
             {"id":23,"type":"HVXTiedContactLT","father":{"ref":12}}
             )" +
          Request(30, "HVXDatOutputRequestContainerLT", "HVXDatOutputLT", 20) +
          Request(32, "HVXHistoryOutputRequestContainerLT", "HVXHistoryOutputLT", 20) +
          Request(34, "HVXFieldOutputRequestContainerLT", "HVXNewFieldOutputLT", 20) +
          R"({"id":37,"type":"HVXDatOutputLT","father":{"ref":30},"attributes":{"Supports":[{"ref":137}]}}
             {"id":137,"type":"GeometrySmartConnector","father":{"ref":37},)"
          R"("attributes":{"FirstObject":{"ref":23},"SecondObject":{"ref":2}}})");
  }

  static std::string Request(int set, const std::string& setType, const std::string& type, int support) {
    const std::string request = std::to_string(set + 1);
    const std::string connector = std::to_string(set + 101);
    return R"({"id":)" + std::to_string(set) + R"(,"type":")" + setType + R"(","father":{"ref":17}}
             {"id":)" +
           request + R"(,"type":")" + type + R"(","father":{"ref":)" + std::to_string(set) +
           R"(},"attributes":{"Supports":[{"ref":)" + connector + R"(}]}}
             {"id":)" +
           connector + R"(,"type":"GeometrySmartConnector","father":{"ref":)" + request +
           R"(},"attributes":{"FirstObject":{"ref":)" + std::to_string(support) +
           R"(},"SecondObject":{"ref":2}}}
             )";
  }

  static constexpr const char* kIdentifier = "UpgradeToContactConnectionEnhancementLT";
  static constexpr const char* kPairType = "HVXContactConnectionEnhancementStdLT";

  // The target of a support: "on what, in what".
  std::pair<standalone::FeatureId, standalone::FeatureId> SupportOf(standalone::FeatureId id,
                                                                    std::size_t position = 0) {
    const standalone::Key supports("Supports");
    standalone::Feature* const connector = standalone::LinkedFeatures(At(id), supports).at(position);
    const auto idOf = [](const standalone::Feature* feature) { return feature == nullptr ? 0 : feature->id; };
    return {idOf(standalone::LinkedFeature(*connector, standalone::Key("FirstObject"))),
            idOf(standalone::LinkedFeature(*connector, standalone::Key("SecondObject")))};
  }
  std::string Setting(const std::string& name) {
    for (standalone::Feature* each = At(20).firstSon; each != nullptr; each = NextBeneath(At(20), *each)) {
      if (each->name == name) return Line(each->id).substr(Line(each->id).find("\"Values\""));
    }
    return "none";
  }
};

using Id = std::pair<standalone::FeatureId, standalone::FeatureId>;

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, BecomesAContactPairWithItsSettings) {
  GivenContact({.attributes = R"("connectionProperty":{"ref":5},"interactionProperty":{"ref":4},)"
                              R"("surfacesSwapped":true,"secondSurfaceReversed":true,"slidingFormulation":1,)"
                              R"("adjustment":2,"adjustmentGroup":{"ref":6},"thicknessOption":true,)"
                              R"("constraintEnforcement":0,"adjustTolVal_param":{"ref":21})"});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {kIdentifier}), S_OK);
  EXPECT_EQ(
      Line(20),
      R"({"id":20,"type":"HVXContactConnectionEnhancementStdLT","alias":"Contact Pair-3","father":{"ref":12},)"
      R"("container":{"ref":1},"attributes":{"connectionProperty":{"ref":5},"interactionProperty":{"ref":4},)"
      R"("surfacesSwapped":true,"secondSurfaceReversed":true,"slidingFormulation":1,"adjustment":2,)"
      R"("adjustmentGroup":{"ref":6},"thicknessOption":true,"constraintEnforcement":0,"Supports":[{"ref":141}],)"
      R"("InteractionProperty":{"ref":4},"SurfacesSwapped":true,"FirstSurfaceReversed":false,)"
      R"("SecondSurfaceReversed":true,"AdjustmentTolerance":0.25,"SlidingFormulation":1,"Adjustment":2,)"
      R"("AdjustmentGroup":{"ref":6},"PropagationState":0,"PropagatedTo":"later steps"}})");
  EXPECT_EQ(SupportOf(20), Id(5, 5));
  EXPECT_EQ(Setting("CnstEnfMethod"), R"("Values":1}})");
  EXPECT_EQ(Setting("ThicknessOptioin"), R"("Values":true}})");
  EXPECT_EQ(Line(21), "removed");
  EXPECT_NE(Line(3).find(R"("FeatList":[{"ref":20}])"), std::string::npos);
  EXPECT_THAT(BrokenReferences(Doc()), IsEmpty());

  EXPECT_THAT(
      Calls("HVXIContactConnectionEnhancementStd::Set"),
      ElementsAre("HVXIContactConnectionEnhancementStd::SetInteractionProperty #20 InteractionProperty",
                  "HVXIContactConnectionEnhancementStd::SetSurfacesSwapped #20 SurfacesSwapped",
                  "HVXIContactConnectionEnhancementStd::SetFirstSurfaceReversed #20 FirstSurfaceReversed",
                  "HVXIContactConnectionEnhancementStd::SetSecondSurfaceReversed #20 SecondSurfaceReversed",
                  "HVXIContactConnectionEnhancementStd::SetAdjustmentTolerance #20 AdjustmentTolerance",
                  "HVXIContactConnectionEnhancementStd::SetSlidingFormulation #20 SlidingFormulation",
                  "HVXIContactConnectionEnhancementStd::SetAdjustment #20 Adjustment",
                  "HVXIContactConnectionEnhancementStd::SetAdjustmentGroup #20 AdjustmentGroup"));
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, StepsComeInTheirOrder) {
  GivenContact({.attributes = R"("connectionProperty":{"ref":5},"adjustTolVal_param":{"ref":21})"});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {kIdentifier}), S_OK);
  CallList landmarks;
  for (const std::string& call : Calls()) {
    for (const char* const landmark :
         {"VLMIAlias::SetExternalName", "HVXISurfaceToSurfaceContactFact::ConvertContact",
          "HVXISurfaceToSurfaceContact::GetConstraintEnforcement", "HVXStepUtils::GetAllSteps",
          "VLMISamAnalysisModel::RemoveObject", "VLMISpecAttrAccess::StoreObject",
          "HVXIFactoryExtForPropagation::", "HVXAnalysisDocUtils::GetAllSiblingFeatures",
          "HVXUpgradeManager::AppendInListOfFeatures"}) {
      if (call.starts_with(landmark)) landmarks.push_back(call);
    }
  }
  EXPECT_THAT(landmarks,
              ElementsAre("VLMIAlias::SetExternalName #20 Contact Pair-3",
                          "HVXISurfaceToSurfaceContactFact::ConvertContact #20",
                          "HVXISurfaceToSurfaceContact::GetConstraintEnforcement #20 constraintEnforcement",
                          "HVXStepUtils::GetAllSteps #10", "VLMISamAnalysisModel::RemoveObject #3",
                          "VLMISpecAttrAccess::StoreObject #3 FeatList",
                          "VLMIAlias::SetExternalName #20 Contact Pair-3",
                          "HVXIFactoryExtForPropagation::SetDefaultPropagationData #20",
                          "HVXIFactoryExtForPropagation::Propagate #20",
                          "HVXAnalysisDocUtils::GetAllSiblingFeatures #20",
                          "HVXUpgradeManager::AppendInListOfFeatures #0"));
  ASSERT_EQ(standalone::Session::Current().ForPropagation().size(), 1U);
  EXPECT_EQ(standalone::Session::Current().ForPropagation()[0]->id, 23);
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, OutputRequestsOnTheContactAreMadeAnew) {
  GivenContact({});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {kIdentifier}), S_OK);
  for (const standalone::FeatureId request : {31, 33, 35})
    EXPECT_EQ(SupportOf(request), Id(20, 20)) << request;
  for (const standalone::FeatureId old : {131, 133, 135}) EXPECT_EQ(Line(old), "removed");
  EXPECT_EQ(SupportOf(37), Id(23, 2));
  EXPECT_THAT(Calls("HVXAnalysisDocUtils::GetFeatureListFromSet"),
              testing::IsSupersetOf(
                  {"HVXAnalysisDocUtils::GetFeatureListFromSet #15 HVXDatOutputRequestContainerLT",
                   "HVXAnalysisDocUtils::GetFeatureListFromSet #18 HVXFieldOutputRequestContainerLT"}));
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, ASupportOnAnotherContactStaysAndDoesNotEndTheWalk) {
  GivenContact({});
  const standalone::FeatureId other =
      Doc().Create(standalone::LateType::Of("HVXSurfaceToSurfaceContactLT"), "", &At(12), nullptr)->id;
  ASSERT_EQ(As<VLMISamAnalysisSupport>(31)->AddSupport(As<VLMILinkableObject>(other), As<VLMBaseUnknown>(2),
                                                       "GeometrySmartConnector", 1),
            S_OK);
  EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
  EXPECT_EQ(SupportOf(31, 0), Id(other, 2));
  EXPECT_EQ(SupportOf(31, 1), Id(20, 20));
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, TheFirstOldNameAnywhereIsReplaced) {
  for (const auto& [old, now] : {std::pair{"My Contact Connection Enhancement-3", "My Contact Pair-3"},
                                 {"Contact Connection Enhancement-3, Contact Connection Enhancement-4",
                                  "Contact Pair-3, Contact Connection Enhancement-4"}}) {
    GivenContact({.name = old});
    EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
    EXPECT_EQ(At(20).externalName, now);
  }
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, NamesWithoutTheOldPrefixStay) {
  for (const char* const name : {"Contact Pair-3", "Contact", ""}) {
    GivenContact({.name = name});
    EXPECT_EQ(UpgradeUnder(Recording(), 20, {kIdentifier}), S_OK);
    EXPECT_EQ(At(20).externalName, name);
    EXPECT_EQ(Calls("VLMIAlias::Set").size(), *name == '\0' ? 0U : 1U) << name;  // the kept name only
  }
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest,
       ContactWithClearanceGoesIntoStepNumberOneWhereTheCaseAllowsIt) {
  struct Placement {
    Old old;
    standalone::FeatureId father;
  };
  const Placement placements[] = {
      {{.caseKind = "1"}, 16},
      {{.property = R"("ClearanceFlag":false)", .caseKind = "1"}, 12},
      {{.caseKind = "0"}, 12},
      {{.caseKind = "2"}, 12},
      {{.caseKind = "1", .initialStepContainer = R"("HVXLoadContainerLT")"}, 12},
      {{.attributes = R"("connectionProperty":null)", .caseKind = "1"}, 12},
      {{.attributes = "", .caseKind = "1"}, 12},
  };
  for (const auto& [old, father] : placements) {
    GivenContact(old);
    EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
    EXPECT_EQ(At(20).TypeName(), kPairType);
    EXPECT_EQ(At(20).father->id, father);
  }
  GivenContact({.caseKind = "1"});
  Doc().Create(standalone::LateType::Of("HVXInteractionContainerLT"), "", &At(15), nullptr);
  EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
  EXPECT_EQ(At(20).father->id, 16);  // the first of the step's containers
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, ConversionStopsWithoutDocumentCaseOrSet) {
  GivenContact({.interactionSet = R"("HVXLoadContainerLT")"});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {kIdentifier}), S_OK);
  EXPECT_EQ(Calls("VLMInstantiateComponent"), CallList{});
  EXPECT_EQ(At(20).externalName, "Contact Pair-3");  // the rename comes first
  for (const char* const call :
       {"HVXAnalysisDocUtils::GetDocument", "HVXAnalysisEntityUtils::GetParentCaseFromObject"}) {
    GivenContact({});
    EXPECT_EQ(UpgradeUnder(Failing(call), 20, {kIdentifier}), S_OK);
    EXPECT_EQ(Calls("VLMInstantiateComponent"), CallList{});
    EXPECT_EQ(At(20).TypeName(), "HVXSurfaceToSurfaceContactLT");
  }
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, SettingsAreNotCopiedWithoutThePropertyAttribute) {
  GivenContact({.attributes = R"("surfacesSwapped":true,"thicknessOption":true)"});
  EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
  EXPECT_EQ(Line(20).find("SurfacesSwapped"), std::string::npos);
  EXPECT_EQ(Setting("ThicknessOptioin"), R"("Values":false}})");
  EXPECT_NE(Line(20).find("PropagatedTo"), std::string::npos);  // the conversion goes on

  GivenContact({.attributes = R"("connectionProperty":null,"surfacesSwapped":true)"});
  EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
  EXPECT_NE(Line(20).find(R"("SurfacesSwapped":true)"), std::string::npos);
  EXPECT_EQ(Line(20).find("\"Supports\""), std::string::npos);
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, FailedPreparationEndsTheCopyButNotTheConversion) {
  GivenContact({});
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamAnalysisSupport::PrepareSupports"), 20, {kIdentifier}), S_OK);
  EXPECT_EQ(Calls("HVXIContactConnectionEnhancementStd::Set"), CallList{});
  EXPECT_EQ(Calls("HVXIFactoryExtForPropagation::Propagate").size(), 1U);
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, EnforcementIsInvertedAndUnknownCodesChangeNothing) {
  const std::pair<const char*, const char*> enforcements[] = {
      {"0", R"("Values":1}})"}, {"1", R"("Values":0}})"}, {"7", R"("Values":0}})"}};
  for (const auto& [code, value] : enforcements) {
    GivenContact({.attributes = R"("connectionProperty":null,"constraintEnforcement":)" + std::string(code)});
    EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
    EXPECT_EQ(Setting("CnstEnfMethod"), value) << code;
  }
  GivenContact({.attributes = R"("connectionProperty":null,"slidingFormulation":0,"adjustment":0)"});
  EXPECT_EQ(Upgrade(20, {kIdentifier}), S_OK);
  EXPECT_THAT(Line(20), testing::HasSubstr(R"("SlidingFormulation":0,"Adjustment":0)"));
  GivenContact({.attributes = R"("connectionProperty":null,"slidingFormulation":2,"adjustment":3)"});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {kIdentifier}), S_OK);
  EXPECT_EQ(Calls("HVXIContactConnectionEnhancementStd::SetSliding"), CallList{});
  EXPECT_EQ(Calls("HVXIContactConnectionEnhancementStd::SetAdjustment #"), CallList{});
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, MissingThicknessComponentIsACallThroughNull) {
  GivenContact({});
  EXPECT_THROW(
      UpgradeUnder(Failing("VLMISamBasicComponent::FindComponent", "ThicknessOptioin"), 20, {kIdentifier}),
      VLMNullVarError);
  GivenContact({});
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamBasicComponent::FindComponent", "CnstEnfMethod"), 20, {kIdentifier}),
            S_OK);
  EXPECT_EQ(Calls("VLMISamBasicComponent::SetBoolean"), CallList{});
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, FailedToleranceStepEndsBeforeNamePropagationAndSiblings) {
  GivenContact({.featList = ""});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {kIdentifier}), S_OK);
  EXPECT_EQ(At(20).TypeName(), kPairType);
  EXPECT_EQ(Calls("HVXIFactoryExtForPropagation").size(), 0U);
  EXPECT_EQ(Calls("HVXUpgradeManager").size(), 0U);
  EXPECT_EQ(Calls("VLMIAlias::SetExternalName").size(), 1U);

  // The step looks for the document once more, behind the settings.
  GivenContact({});
  standalone::CheckpointPlan plan = Recording();
  EXPECT_EQ(UpgradeUnder(plan, 20, {kIdentifier}), S_OK);
  const std::vector<standalone::HostCall>& calls = standalone::Checkpoint::Recorded();
  const auto look = std::ranges::adjacent_find(
      calls, [](const standalone::HostCall& one, const standalone::HostCall& next) {
        return one.operation == "HVXAnalysisDocUtils::GetDocument" &&
               next.operation == "HVXAnalysisDocUtils::GetAnalysisModel";
      });
  ASSERT_NE(look, calls.end());
  plan.failNth = look - calls.begin() + 1;
  GivenContact({});
  EXPECT_EQ(UpgradeUnder(plan, 20, {kIdentifier}), S_OK);
  EXPECT_EQ(Calls().size(), static_cast<std::size_t>(plan.failNth));  // nothing is called after it
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest,
       PropagationFailuresAreToldWithoutNameAndSiblingsAreHandedOver) {
  struct Failure {
    standalone::CheckpointPlan plan;
    const char* message;
    std::size_t propagations;
  };
  const Failure failures[] = {
      {Failing("HVXIFactoryExtForPropagation::SetDefaultPropagationData"),
       "Could not set default propagation data\n", 0},
      {Failing("HVXIFactoryExtForPropagation::Propagate"), "Propagation failed for feature.\n", 1},
      {Failing("VLMInstantiateComponent", "HVXEFactoryExtForPropagation"), "", 0},
  };
  for (const auto& [plan, message, propagations] : failures) {
    GivenContact({});
    testing::internal::CaptureStdout();
    EXPECT_EQ(UpgradeUnder(plan, 20, {kIdentifier}), S_OK);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), message);
    EXPECT_EQ(Calls("HVXIFactoryExtForPropagation::Propagate").size(), propagations);
    EXPECT_EQ(Calls("HVXUpgradeManager").size(), 1U);
  }
}

TEST_F(HVXESurfaceToSurfaceContactUpgrageTest, RequestThatCannotHaveSupportsEndsTheRepointing) {
  GivenContact({});
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISamAnalysisSupport", 31), 20, {kIdentifier}), S_OK);
  EXPECT_EQ(SupportOf(33), Id(20, 2));  // as it was
  EXPECT_EQ(Calls("HVXIFactoryExtForPropagation::Propagate").size(), 1U);
}

}  // namespace
