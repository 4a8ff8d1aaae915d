#include <gmock/gmock.h>

#include "analysis/VLMIMSHMeshPart.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIElementAssignment.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXIFieldOutputFact.h"
#include "workbench/HVXIGlobalElemAssignment.h"
#include "workbench/HVXILocalElemAssignment.h"
#include "workbench/HVXIRigidCoupling.h"
#include "workbench/HVXTangentialBehavior.h"

namespace {

using testing::HasSubstr;
using Group = HVXElementFlagGroup;

class ElementAssignmentHostTest : public testing_support::UpgradeTest {};

// #3 is what #4 holds, with section controls of its own; #5 has another shape, #6 a name, #7 a son, and #8 is
// listed elsewhere.
TEST_F(ElementAssignmentHostTest, AssignmentsThatAreNoLongerListedGoOnlyWhenAListedOneHoldsThemWhole) {
  Given(
      R"({"id":1,"type":"HVXLocalElemAsgnLT","attributes":{"ElementAssignments":[{"ref":5},{"ref":6}],"HVXListElementAsgnSpec":[{"ref":3},{"ref":4},{"ref":7},{"ref":8}]}}
           {"id":2,"type":"HVXLocalElemAsgnLT","attributes":{"ElementAssignments":[{"ref":8}]}}
           {"id":3,"type":"HVXElementAssignmentLT","father":{"ref":1},"attributes":{"ElementShape":7,"ElementOptionValues":[0,0.5],"SectionControlsSpec":{"ref":10}}}
           {"id":4,"type":"HVXElementAssignmentLT","father":{"ref":1},"attributes":{"ElementShape":7,"ElementOptionValues":[0.0,0.5],"Formulation":1,"SectionControlsSpec":{"ref":11}}}
           {"id":5,"type":"HVXElementAssignmentLT","father":{"ref":1},"attributes":{"ElementShape":5}}
           {"id":6,"type":"HVXElementAssignmentLT","alias":"Mine","father":{"ref":1},"attributes":{"ElementShape":7}}
           {"id":7,"type":"HVXElementAssignmentLT","father":{"ref":1}}
           {"id":8,"type":"HVXElementAssignmentLT","father":{"ref":1},"attributes":{"SectionControlsSpec":null}}
           {"id":9,"type":"SAMBasicComponent","father":{"ref":7}}
           {"id":10,"type":"HVXSectionControlsLT","father":{"ref":3},"attributes":{"LengthRatio":0.12,"SecondOrderAccuracy":1}}
           {"id":11,"type":"HVXSectionControlsLT","father":{"ref":4},"attributes":{"LengthRatio":0.12,"SecondOrderAccuracy":true}})");
  const HVXILocalElemAssignment_var local = As<HVXILocalElemAssignment>(1);
  const std::string before = Lines();
  EXPECT_EQ(local->SetElementAssignments({As<VLMBaseUnknown>(5), As<VLMBaseUnknown>(6)}), S_OK);
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(local->SetElementAssignments({As<VLMBaseUnknown>(4), NULL_var}), S_OK);
  EXPECT_EQ(Line(1),
            R"({"id":1,"type":"HVXLocalElemAsgnLT","attributes":{"ElementAssignments":[{"ref":4},null],)"
            R"("HVXListElementAsgnSpec":[{"ref":4},{"ref":7},{"ref":8}]}})");
  for (const standalone::FeatureId id : {3, 10}) EXPECT_EQ(Line(id), "removed");
  for (const standalone::FeatureId id : {5, 6, 7, 8, 9}) EXPECT_NE(Line(id), "removed") << id;
}

TEST_F(ElementAssignmentHostTest, AnEntryThatHoldsNothingCounts) {
  Given(
      R"({"id":1,"type":"HVXLocalElemAsgnLT","attributes":{"HVXListElementAsgnSpec":[null,{"ref":2},{"ref":3}]}}
           {"id":2,"type":"HVXElementAssignmentLT","father":{"ref":1}}
           {"id":3,"type":"HVXElementAssignmentLT","father":{"ref":1}})");
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(1, {"UpgradeLocalElementAssignment"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(ElementAssignmentHostTest, FlagGroupIsReadAndWrittenWhole) {
  Given(R"({"id":1,"type":"HVXElementAssignmentLT"}
           {"id":2,"type":"HVXElementAssignmentLT","attributes":{"ElementOptions":[true,false,true]}})");
  Group group;
  group.sixth = 3.0;
  EXPECT_EQ(As<HVXIElementAssignment>(2)->GetFlagGroup(group), E_FAIL);
  EXPECT_EQ(group.sixth, 3.0);
  group = {{0, 1, 0, 2}, 0.5, -1.0};
  EXPECT_EQ(As<HVXIElementAssignment>(1)->SetFlagGroup(group), S_OK);
  EXPECT_THAT(Line(1),
              HasSubstr(R"("ElementOptionValues":[0.5,-1.0],"ElementOptions":[false,true,false,true])"));
  group = {};
  EXPECT_EQ(As<HVXIElementAssignment>(1)->GetFlagGroup(group), S_OK);
  EXPECT_EQ(group.flags, (std::array<unsigned char, 4>{0, 1, 0, 1}));
  EXPECT_EQ(group.fifth, 0.5);
}

TEST_F(ElementAssignmentHostTest, DefaultsAreKnownForShapesAndFormulationsOfStructuralElements) {
  Given(R"({"id":1,"type":"HVXElementAssignmentLT"})");
  const HVXIElementAssignment_var assignment = As<HVXIElementAssignment>(1);
  std::array<unsigned char, 4> flags{};
  double value = -1.0;
  std::int32_t formulation = -1;
  EXPECT_EQ(assignment->GetDefaultFlags(9, 1, flags, value), E_FAIL);
  EXPECT_EQ(assignment->GetDefaultFlags(7, 2, flags, value), E_FAIL);
  EXPECT_EQ(assignment->GetFormulationFlags(7, 3, 1, flags, value), E_FAIL);
  EXPECT_EQ(assignment->GetFormulationFlags(9, 1, 1, flags, value), E_FAIL);
  EXPECT_EQ(value, -1.0);
  EXPECT_EQ(assignment->GetDefaultFlags(7, 1, flags, value), S_OK);
  EXPECT_EQ(flags[0], 1);
  EXPECT_EQ(value, 0.5);
  EXPECT_EQ(assignment->GetDefaultFormulation(5, 1, formulation), S_OK);
  EXPECT_EQ(formulation, 2);
}

TEST_F(ElementAssignmentHostTest, EntryIsFoundByItsKind) {
  Given(R"({"id":1,"type":"HVXGlobalElemAsgnLT","attributes":{"Entries":[{"ref":2},{"ref":3}]}}
           {"id":2,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":1}}
           {"id":3,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":1},"attributes":{"Kind":0}})");
  VLMBaseUnknown_var entry;
  EXPECT_EQ(As<HVXIGlobalElemAssignment>(1)->GetEntry(0, entry), S_OK);
  EXPECT_TRUE(entry == As<VLMBaseUnknown>(3));
  EXPECT_EQ(As<HVXIGlobalElemAssignment>(1)->GetEntry(1, entry), S_OK);
  EXPECT_TRUE(entry == NULL_var);
}

class OutputHostTest : public testing_support::UpgradeTest {
 protected:
  // Requests #20 in the case's own set, #21 in the initial step, #22 in the last step and #23 in no case.
  void SetUp() override {
    Given(R"({"id":1,"type":"AnalysisCase"}
             {"id":2,"type":"HVXSimulationHistoryLT","father":{"ref":1}}
             {"id":3,"type":"HVXInitialStepLT","father":{"ref":2}}
             {"id":4,"type":"HVXStaticLPStepLT","father":{"ref":2}}
             {"id":5,"type":"HVXHeatTransferStepLT","father":{"ref":2}}
             {"id":6,"type":"HVXRiksStepLT","father":{"ref":2}}
             {"id":10,"type":"HVXFieldOutputRequestContainerLT","father":{"ref":1}}
             {"id":20,"type":"HVXNewFieldOutputLT","father":{"ref":10}}
             {"id":21,"type":"HVXNewFieldOutputLT","father":{"ref":3},"attributes":{"PropagatedTo":[{"ref":6}]}}
             {"id":22,"type":"HVXNewFieldOutputLT","father":{"ref":6},"attributes":{"PropagatedTo":"everywhere"}}
             {"id":23,"type":"HVXNewFieldOutputLT"})");
  }
};

TEST_F(OutputHostTest, PropagationReachesTheLaterSteps) {
  const HVXIFactoryExtForPropagation_var factory = As<HVXIFactoryExtForPropagation>(10);
  EXPECT_EQ(factory->Propagate(As<VLMBaseUnknown>(20), 0), E_FAIL);  // has no data yet
  EXPECT_EQ(factory->Propagate(NULL_var, 0), E_FAIL);
  EXPECT_EQ(factory->SetDefaultPropagationData(NULL_var, 0, NULL_var), E_FAIL);
  EXPECT_EQ(factory->SetDefaultPropagationData(As<VLMBaseUnknown>(20), 0, NULL_var), S_OK);
  EXPECT_THAT(Line(20), HasSubstr(R"("PropagationState":0,"PropagatedTo":[])"));
  for (int time = 1; time <= 2; ++time) {
    EXPECT_EQ(factory->Propagate(As<VLMBaseUnknown>(20), 0), S_OK);
    EXPECT_THAT(Line(20), HasSubstr(R"("PropagationState":0,"PropagatedTo":"later steps")"));
  }
  // A list of steps gives way; what cannot be read stays; outside of a case there are no steps.
  EXPECT_EQ(factory->Propagate(As<VLMBaseUnknown>(21), 0), S_OK);
  EXPECT_THAT(Line(21), HasSubstr(R"("PropagatedTo":"later steps")"));
  EXPECT_EQ(factory->Propagate(As<VLMBaseUnknown>(22), 0), E_FAIL);
  EXPECT_THAT(Line(22), HasSubstr(R"("PropagatedTo":"everywhere")"));
  EXPECT_EQ(factory->SetDefaultPropagationData(As<VLMBaseUnknown>(23), 0, NULL_var), S_OK);
  EXPECT_EQ(factory->Propagate(As<VLMBaseUnknown>(23), 0), S_OK);
  EXPECT_THAT(Line(23), HasSubstr(R"("PropagatedTo":[])"));
}

TEST_F(OutputHostTest, EachNewRequestTakesTheNextNumber) {
  const HVXIFieldOutputFact_var factory = As<HVXIFieldOutputFact>(10);
  VLMISpecObject_var request;
  EXPECT_EQ(factory->CreateFieldOutputRequest(request), S_OK);
  EXPECT_EQ(At(24).externalName, "Field Output Request-1");
  Doc().SetExternalName(At(21), "Field Output Request-41");
  EXPECT_EQ(factory->CreateFieldOutputRequest(request), S_OK);
  EXPECT_EQ(standalone::FeatureOf(request)->externalName, "Field Output Request-42");
}

class ConstraintHostTest : public testing_support::UpgradeTest {};

TEST_F(ConstraintHostTest, MeshPartIsMadeOnceAndTakesOnlyObjectsInProducts) {
  Given(R"({"id":1,"type":"HVXRigidCouplingLT","attributes":{"MeshPart":null}}
           {"id":2,"type":"Surface"}
           {"id":3,"type":"Product"})");
  const HVXIRigidCoupling_var coupling = As<HVXIRigidCoupling>(1);
  EXPECT_EQ(coupling->CreateMeshPart(), S_OK);
  EXPECT_EQ(coupling->CreateMeshPart(), E_FAIL);
  const VLMIMSHMeshPart_var meshPart = As<VLMIMSHMeshPart>(4);
  EXPECT_EQ(meshPart->IsOfType("Connection"), S_OK);
  EXPECT_EQ(meshPart->IsOfType("Solid"), 1);
  EXPECT_EQ(meshPart->AddSupport(As<VLMIProduct>(3), NULL_var, 2), E_FAIL);
  EXPECT_EQ(meshPart->AddSupport(NULL_var, As<VLMILinkableObject>(2), 2), E_FAIL);
  EXPECT_EQ(meshPart->AddSupport(As<VLMIProduct>(3), As<VLMILinkableObject>(2), 0), S_OK);
  EXPECT_TRUE(At(4).upToDate);
  EXPECT_EQ(meshPart->GetSupportCount(), 1);
}

TEST_F(ConstraintHostTest, FrictionTableTakesRowsOfFourFiniteNumbers) {
  Given(R"({"id":1,"type":"HVXInteractionPropertyLT","attributes":{"tangentialBehavior":{"ref":2}}}
           {"id":2,"type":"HVXTangentialBehaviorLT","father":{"ref":1}}
           {"id":3,"type":"HVXInteractionPropertyLT","attributes":{"tangentialBehavior":{"ref":1}}})");
  HVXGenHeapObjectProxyHVXTangentialBehavior proxy;
  EXPECT_EQ(proxy.Fill(As<VLMBaseUnknown>(1)), S_OK);
  EXPECT_EQ(proxy.Get()->SetFrictionTable({{0.1, 0.0, 0.0, 0.0}, {0.2, 0.0, 0.0}}), E_FAIL);
  EXPECT_EQ(proxy.Get()->SetFrictionTable({{0.1, 0.0, 0.0, std::numeric_limits<double>::infinity()}}),
            E_FAIL);
  EXPECT_EQ(Line(2), R"({"id":2,"type":"HVXTangentialBehaviorLT","father":{"ref":1}})");
  EXPECT_EQ(proxy.Get()->SetFrictionTable({{0.1, 0.0, 0.0, 0.0}, {0.2, 1.0, 0.0, 0.0}}), S_OK);
  EXPECT_THAT(Line(2), HasSubstr(R"("FrictionTable":[[0.1,0.0,0.0,0.0],[0.2,1.0,0.0,0.0]])"));
  EXPECT_EQ(proxy.Fill(As<VLMBaseUnknown>(3)), E_FAIL);
  EXPECT_EQ(proxy.Get(), nullptr);
}

}  // namespace
