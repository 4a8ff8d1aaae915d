#include <gmock/gmock.h>

#include "support/UpgradeFixture.h"

namespace {

using testing::HasSubstr;
using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

std::string Assignment(int id, int father, const std::string& attributes) {
  return R"({"id":)" + std::to_string(id) + R"(,"type":"HVXElementAssignmentLT","father":{"ref":)" +
         std::to_string(father) + R"(},"attributes":{)" + attributes + "}}\n";
}

// A local assignment (#1) with the element assignments #2 (with section controls #4) and #3 (without).
class HVXELocalElemAsgnUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenLocal(const std::string& list = R"([{"ref":2},{"ref":3}])") {
    Given(
        R"({"id":1,"type":"HVXLocalElemAsgnLT","attributes":{"HVXListElementAsgnSpec":)" + list + "}}\n" +
        Assignment(
            2, 1,
            R"("ElementShape":7,"ElementOrder":1,"Formulation":2,"ElementOptions":[true,false,true,false],)"
            R"("ElementOptionValues":[0.25,0.75],"SectionControlsSpec":{"ref":4})") +
        Assignment(3, 1, R"("ElementShape":5,"SectionControlsSpec":null)") +
        R"({"id":4,"type":"HVXSectionControlsLT","father":{"ref":2},"attributes":{"DistortionContol":2,)"
        R"("SecondOrderAccuracy":true,"HourglassControl":3,"LengthRatio":0.2,"StiffnessViscousWtFactor":0.3,)"
        R"("DispHourglassScalingFactor":0.4,"RotHourglassScalingFactor":0.5,"OutOfPlaneHourglassScalingFactor":0.6}})");
  }
  HRESULT Replace(standalone::CheckpointPlan plan = {}) {
    return UpgradeUnder(std::move(plan), 1, {"UpgradeLocalElementAssignment"});
  }
  std::string Local(const std::string& attributes) {
    return R"({"id":1,"type":"HVXLocalElemAsgnLT")" +
           (attributes.empty() ? "" : R"(,"attributes":{)" + attributes + "}") + "}";
  }
};

TEST_F(HVXELocalElemAsgnUpgradeTest, BothAssignmentsAreReplacedWithTheirSettings) {
  GivenLocal();
  EXPECT_EQ(Replace(), S_OK);
  EXPECT_EQ(Line(1), Local(R"("ElementAssignments":[{"ref":5},{"ref":7}])"));
  for (const standalone::FeatureId id : {2, 3, 4}) EXPECT_EQ(Line(id), "removed");
  EXPECT_THAT(Line(5),
              HasSubstr(R"("attributes":{"ElementShape":7,"ElementOrder":1,"Formulation":2,)"
                        R"("ElementOptions":[true,false,true,false],"ElementOptionValues":[0.25,0.75],)"
                        R"("SectionControlsSpec":{"ref":6}}})"));
  EXPECT_THAT(
      Line(6),
      HasSubstr(R"("attributes":{"DistortionContol":2,"SecondOrderAccuracy":true,"HourglassControl":3,)"
                R"("LengthRatio":0.2,"StiffnessViscousWtFactor":0.3,"DispHourglassScalingFactor":0.4,)"
                R"("RotHourglassScalingFactor":0.5,"OutOfPlaneHourglassScalingFactor":0.6}})"));
  // The second had no section controls: its settings are there all the same, beside controls of their
  // defaults.
  EXPECT_THAT(Line(7), HasSubstr(R"("ElementShape":5,"ElementOrder":0,"Formulation":0)"));
  EXPECT_THAT(Line(8), HasSubstr(R"("LengthRatio":0.1)"));
}

TEST_F(HVXELocalElemAsgnUpgradeTest, UnreadableValuesAreWrittenAsTheirDefaults) {
  GivenLocal();
  EXPECT_EQ(Replace(Failing("HVXIElementAssignment::GetElementShape")), S_OK);
  EXPECT_THAT(Line(5), HasSubstr(R"("ElementShape":13,"ElementOrder":1)"));
  GivenLocal();
  EXPECT_EQ(Replace(Failing("HVXISectionControls::GetLengthRatio")), S_OK);
  EXPECT_THAT(Line(6), HasSubstr(R"("LengthRatio":0.0,"StiffnessViscousWtFactor":0.3)"));
}

TEST_F(HVXELocalElemAsgnUpgradeTest, OnlyListsOfTwoAreMigrated) {
  for (const char* const list : {"[]", R"([{"ref":2}])", R"([{"ref":2},{"ref":3},{"ref":2}])"}) {
    GivenLocal(list);
    const std::string before = Lines();
    EXPECT_EQ(Replace(Recording()), S_OK);
    EXPECT_EQ(Lines(), before) << list;
    EXPECT_EQ(Calls("HVXAnalysisEntityUtils::"), CallList{});
  }
}

TEST_F(HVXELocalElemAsgnUpgradeTest, WhatCannotBeCreatedIsLeftOutAndAFailedListKeepsTheOldOne) {
  GivenLocal();
  EXPECT_EQ(Replace(Failing("HVXAnalysisEntityUtils::CreateElementAssignment")), S_OK);
  EXPECT_EQ(Line(1), Local(R"("ElementAssignments":[])"));
  GivenLocal();
  EXPECT_EQ(Replace(Failing("HVXILocalElemAssignment::SetElementAssignments")), S_OK);
  EXPECT_EQ(Line(1), Local(R"("HVXListElementAsgnSpec":[{"ref":2},{"ref":3}])"));
  GivenLocal();
  EXPECT_EQ(Replace(Withholding("HVXIElementAssignment", 2)), S_OK);  // nothing is copied, yet it is listed
  EXPECT_EQ(Line(1), Local(R"("ElementAssignments":[{"ref":5},{"ref":7}])"));
  EXPECT_THAT(Line(5), HasSubstr(R"("ElementShape":13)"));
}

// A global assignment (#1) with entries of kind 2 (#2), without a kind (#3), of kind 1 (#4, listing #6) and
// of kind 1 again (#5).
class HVXEGlobalElementUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenGlobal(const std::string& list = R"([{"ref":6}])") {
    Given(
        R"({"id":1,"type":"HVXGlobalElemAsgnLT","attributes":{"Entries":[{"ref":2},{"ref":3},{"ref":4},{"ref":5}]}}
             {"id":2,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":1},"attributes":{"Kind":2,"ElementAssignments":[{"ref":6}]}}
             {"id":3,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":1}}
             {"id":4,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":1},"attributes":{"Kind":1,"ElementAssignments":)" +
        list + R"(}}
             {"id":5,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":1},"attributes":{"Kind":1,"ElementAssignments":[{"ref":6}]}}
          )" +
        Assignment(6, 4, R"("ElementShape":7)"));
  }
  HRESULT AddDefault(standalone::CheckpointPlan plan = {}) {
    return UpgradeUnder(std::move(plan), 1, {"UpdateGlobalElementAsgnList"});
  }
};

TEST_F(HVXEGlobalElementUpgradeTest, FirstEntryOfItsKindGetsTheDefaultsOfBothQueries) {
  GivenGlobal();
  EXPECT_EQ(AddDefault(Recording()), S_OK);
  EXPECT_THAT(Line(4), HasSubstr(R"("ElementAssignments":[{"ref":6},{"ref":7}])"));
  EXPECT_THAT(Line(5), HasSubstr(R"("ElementAssignments":[{"ref":6}])"));
  // A pyramid's reduced integration or its modified formulation's flag; the value is the formulation's 0.5,
  // not the shape's 0.25.
  EXPECT_THAT(Line(7),
              HasSubstr(R"("attributes":{"ElementShape":8,"ElementOrder":0,"Formulation":2,)"
                        R"("ElementOptions":[true,false,false,true],"ElementOptionValues":[0.0,0.5])"));
  EXPECT_EQ(
      Calls("HVXIElementAssignment::"),
      (CallList{"HVXIElementAssignment::SetElementShape #7 ElementShape",
                "HVXIElementAssignment::GetDefaultFlags #7", "HVXIElementAssignment::SetFlagGroup #7",
                "HVXIElementAssignment::GetDefaultFormulation #7",
                "HVXIElementAssignment::SetFormulation #7 Formulation",
                "HVXIElementAssignment::GetFormulationFlags #7", "HVXIElementAssignment::SetFlagGroup #7"}));
}

TEST_F(HVXEGlobalElementUpgradeTest, OneEntryIsEnough) {
  GivenGlobal();
  for (const standalone::FeatureId other : {2, 3, 5}) Doc().Remove(At(other));
  EXPECT_EQ(AddDefault(), S_OK);
  EXPECT_THAT(Line(4), HasSubstr(R"("ElementAssignments":[{"ref":6},{"ref":7}])"));
}

TEST_F(HVXEGlobalElementUpgradeTest, EveryFailureLeavesTheListsAsTheyWere) {
  for (const char* const operation :
       {"HVXIGlobalElemAssignment::GetEntries", "HVXIGlobalElemAsgnEntry::GetKind",
        "HVXIGlobalElemAsgnEntry::GetElementAssignments", "HVXAnalysisEntityUtils::CreateElementAssignment",
        "HVXIElementAssignment::SetElementShape", "HVXIElementAssignment::GetDefaultFlags",
        "HVXIElementAssignment::SetFlagGroup", "HVXIElementAssignment::GetDefaultFormulation",
        "HVXIElementAssignment::SetFormulation", "HVXIElementAssignment::GetFormulationFlags"}) {
    GivenGlobal();
    EXPECT_EQ(AddDefault(Failing(operation)), S_OK) << operation;
    EXPECT_THAT(Line(4), HasSubstr(R"("ElementAssignments":[{"ref":6}])")) << operation;
    EXPECT_EQ(Calls("HVXIGlobalElemAsgnEntry::SetElementAssignments"), CallList{}) << operation;
  }
  GivenGlobal("[]");
  const std::string before = Lines();
  EXPECT_EQ(AddDefault(), S_OK);
  EXPECT_EQ(Lines(), before);
}

// A case (#2) of analysis type 1 with a global assignment (#4) whose entry of that type (#5) lists #6 (with
// section controls #8) and #7 (without). Local assignments begin at #10.
class HVXSectionControlsUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenCaseWith(const std::string& locals) {
    Given(R"({"id":1,"type":"AnalysisModel"}
             {"id":2,"type":"AnalysisCase","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":1}}
             {"id":4,"type":"HVXGlobalElemAsgnLT","father":{"ref":2},"attributes":{"Entries":[{"ref":5}]}}
             {"id":5,"type":"HVXGlobalElemAsgnEntryLT","father":{"ref":4},"attributes":{"Kind":1,"ElementAssignments":[{"ref":6},{"ref":7}]}}
             )" +
          Assignment(6, 5, R"("SectionControlsSpec":{"ref":8})") +
          Assignment(7, 5, R"("SectionControlsSpec":null)") +
          R"({"id":8,"type":"HVXSectionControlsLT","father":{"ref":6}}
          )" +
          locals);
  }
  static std::string Local(int id, const std::string& list) {
    return R"({"id":)" + std::to_string(id) +
           R"(,"type":"HVXLocalElemAsgnLT","father":{"ref":4},"attributes":{"ElementAssignments":)" + list +
           "}}\n";
  }
  HRESULT AddControls(standalone::CheckpointPlan plan = {}) {
    return UpgradeUnder(std::move(plan), 2, {"UpgradeGlobalAndLocalElemAssgnToContainSectionControls"});
  }
  // The section controls of an element assignment; 0 without.
  standalone::FeatureId Controls(standalone::FeatureId assignment) {
    const standalone::Feature* const controls =
        standalone::LinkedFeature(At(assignment), standalone::Key("SectionControlsSpec"));
    return controls == nullptr ? 0 : controls->id;
  }
};

TEST_F(HVXSectionControlsUpgradeTest, GlobalAssignmentsWithoutControlsGetThem) {
  GivenCaseWith("");
  EXPECT_EQ(AddControls(Recording()), S_OK);
  EXPECT_EQ(Controls(6), 8);
  EXPECT_EQ(
      Line(9),
      R"({"id":9,"type":"HVXSectionControlsLT","name":"HVXSectionControlsLT.9","alias":"Section Controls",)"
      R"("father":{"ref":7},"attributes":{"DistortionContol":0,"SecondOrderAccuracy":false,)"
      R"("HourglassControl":0,"LengthRatio":0.1,"StiffnessViscousWtFactor":0.5,)"
      R"("DispHourglassScalingFactor":1.0,"RotHourglassScalingFactor":1.0,)"
      R"("OutOfPlaneHourglassScalingFactor":1.0}})");
  EXPECT_EQ(Controls(7), 9);
  const std::string once = Lines();
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_EQ(Lines(), once);

  GivenCaseWith("");
  EXPECT_EQ(AddControls(Failing("VLMMsgCatalog::BuildMessage")), S_OK);
  EXPECT_THAT(Line(9), HasSubstr(R"x("alias":"Section Controls(NLS Error)")x"));
}

TEST_F(HVXSectionControlsUpgradeTest, OfSeveralGlobalAssignmentsTheFirstCounts) {
  GivenCaseWith(Local(10, R"([{"ref":11}])") + Assignment(11, 10, R"("SectionControlsSpec":null)") +
                R"({"id":12,"type":"HVXGlobalElemAsgnLT","father":{"ref":2}})");
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_NE(Controls(7), 0);
  EXPECT_NE(Controls(11), 0);
}

TEST_F(HVXSectionControlsUpgradeTest, TheGlobalAssignmentMayStandAtAnyDepthBeneathTheCase) {
  GivenCaseWith("");
  Given(Lines() + R"({"id":20,"type":"HVXInteractionContainerLT","father":{"ref":2}})");
  EXPECT_TRUE(Doc().PlaceBeneath(At(4), At(20)));
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_NE(Controls(7), 0);
}

TEST_F(HVXSectionControlsUpgradeTest, OneLocalAssignmentBecomesTwoWithTheSettingsOfTheFirst) {
  GivenCaseWith(
      Local(10, R"([{"ref":11}])") +
      Assignment(
          11, 10,
          R"("ElementShape":7,"ElementOrder":1,"Formulation":2,"ElementOptions":[true,false,false,true],)"
          R"("ElementOptionValues":[0.25,0.75],"SectionControlsSpec":null)"));
  EXPECT_EQ(AddControls(Recording()), S_OK);
  EXPECT_EQ(Line(10),
            R"({"id":10,"type":"HVXLocalElemAsgnLT","father":{"ref":4},"attributes":{"ElementAssignments":)"
            R"([{"ref":11},{"ref":13}]}})");
  // The shape does not go over.
  EXPECT_THAT(
      Line(13),
      HasSubstr(
          R"("ElementShape":13,"ElementOrder":1,"Formulation":2,"ElementOptions":[true,false,false,true],)"
          R"("ElementOptionValues":[0.25,0.75])"));
  EXPECT_EQ(Controls(11), 15);
  EXPECT_EQ(Controls(13), 14);  // made with the assignment
  const CallList calls = Calls();
  const auto at = [&calls](const char* call) { return std::ranges::find(calls, call) - calls.begin(); };
  EXPECT_LT(at("VLMISamAnalysisModelFactory::CreateFeature #11 HVXSectionControlsLT"),
            at("HVXIElementAssignment::SetFormulation #13 Formulation"));
  EXPECT_LT(at("HVXIElementAssignment::SetFormulation #13 Formulation"),
            at("HVXIElementAssignment::SetElementOrder #13 ElementOrder"));
  EXPECT_LT(at("HVXIElementAssignment::SetElementOrder #13 ElementOrder"),
            at("HVXIElementAssignment::SetFlagGroup #13"));
  EXPECT_LT(at("HVXIElementAssignment::SetFlagGroup #13"), static_cast<std::ptrdiff_t>(calls.size()));
}

TEST_F(HVXSectionControlsUpgradeTest, OfThreeTheSecondIsOverwrittenAndTheOthersKeepTheirSettings) {
  GivenCaseWith(Local(10, R"([{"ref":11},{"ref":12},{"ref":13}])") +
                Assignment(11, 10, R"("Formulation":1,"SectionControlsSpec":null)") +
                Assignment(12, 10, R"("Formulation":2,"SectionControlsSpec":null)") +
                Assignment(13, 10, R"("Formulation":2,"SectionControlsSpec":null)"));
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_THAT(Line(10), HasSubstr(R"([{"ref":11},{"ref":12},{"ref":13},{"ref":15}])"));
  EXPECT_THAT(Line(12), HasSubstr(R"("Formulation":1)"));
  EXPECT_THAT(Line(13), HasSubstr(R"("Formulation":2)"));
  EXPECT_THAT(Line(15), HasSubstr(R"("Formulation":0)"));
  for (const standalone::FeatureId id : {11, 12, 13, 15}) EXPECT_NE(Controls(id), 0) << id;
}

TEST_F(HVXSectionControlsUpgradeTest, ALocalAssignmentWithTwoEndsTheWalk) {
  GivenCaseWith(Local(10, R"([{"ref":11}])") + Assignment(11, 10, R"("SectionControlsSpec":null)") +
                Local(12, R"([{"ref":13},{"ref":14}])") +
                Assignment(13, 12, R"("SectionControlsSpec":null)") +
                Assignment(14, 12, R"("SectionControlsSpec":null)") + Local(15, R"([{"ref":16}])") +
                Assignment(16, 15, R"("SectionControlsSpec":null)"));
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_NE(Controls(11), 0);
  for (const standalone::FeatureId id : {13, 14, 16}) EXPECT_EQ(Controls(id), 0) << id;
  EXPECT_NE(Controls(7), 0);  // the global ones have theirs whatever becomes of the local ones
}

TEST_F(HVXSectionControlsUpgradeTest, AnEmptyLocalAssignmentEndsTheWalkButAFailureOfTheGlobalOneDoesNot) {
  const std::string local =
      Local(12, R"([{"ref":13}])") + Assignment(13, 12, R"("SectionControlsSpec":null)");
  GivenCaseWith(Local(10, "[]") + local);
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_NE(Controls(7), 0);
  EXPECT_EQ(Controls(13), 0);

  GivenCaseWith(local);
  EXPECT_EQ(AddControls(Failing("HVXIGlobalElemAssignment::GetEntry")), S_OK);
  EXPECT_EQ(Controls(7), 0);
  EXPECT_NE(Controls(13), 0);
}

TEST_F(HVXSectionControlsUpgradeTest, FailuresEndTheWalkWhereTheyHappen) {
  const std::string local =
      Local(10, R"([{"ref":11}])") + Assignment(11, 10, R"("SectionControlsSpec":null)") +
      Local(12, R"([{"ref":13}])") + Assignment(13, 12, R"("SectionControlsSpec":null)");
  for (const char* const operation :
       {"HVXAnalysisEntityUtils::CreateElementAssignment", "HVXILocalElemAssignment::SetElementAssignments",
        "HVXILocalElemAssignment::GetElementAssignments", "HVXIElementAssignment::GetElementShape",
        "HVXIElementAssignment::GetElementOrder", "HVXIElementAssignment::GetFormulation",
        "HVXIElementAssignment::GetFlagGroup", "VLMISamAnalysisSet::ListMembersOffering"}) {
    GivenCaseWith(local);
    EXPECT_EQ(AddControls(Failing(operation)), S_OK) << operation;
    EXPECT_EQ(Controls(11), 0) << operation;
    EXPECT_EQ(Controls(13), 0) << operation;
    EXPECT_NE(Controls(7), 0) << operation;
  }
  for (const char* const operation :
       {"HVXIElementAssignment::SetFormulation", "HVXIElementAssignment::SetElementOrder",
        "HVXIElementAssignment::SetFlagGroup"}) {
    GivenCaseWith(local);
    EXPECT_EQ(AddControls(Failing(operation)), S_OK) << operation;
    EXPECT_NE(Controls(11), 0) << operation;
    EXPECT_EQ(Controls(13), 0) << operation;
  }
}

TEST_F(HVXSectionControlsUpgradeTest, ControlsThatCannotBeMadeOrStoredStopTheGlobalOnesToo) {
  for (const char* const operation : {"HVXAnalysisDocUtils::GetDocument", "HVXAnalysisDocUtils::GetFactory",
                                      "VLMISamAnalysisModelFactory::CreateFeature"}) {
    GivenCaseWith("");
    EXPECT_EQ(AddControls(Failing(operation)), S_OK) << operation;
    EXPECT_EQ(Controls(7), 0) << operation;
  }
  GivenCaseWith("");
  Doc().RemoveAttribute(At(6), standalone::Key("SectionControlsSpec").Id());  // nowhere to store them
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_EQ(Controls(6), 0);
  EXPECT_EQ(Controls(7), 0);  // behind one that failed
  GivenCaseWith(Local(10, R"([{"ref":11}])") + Assignment(11, 10, R"("ElementShape":7)") +  // a missing key
                Local(12, R"([{"ref":13}])") + Assignment(13, 12, R"("SectionControlsSpec":null)"));
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_EQ(Controls(11), 0);
  EXPECT_EQ(Controls(13), 0);
}

TEST_F(HVXSectionControlsUpgradeTest, ACaseWithoutAGlobalAssignmentIsLeftUnchanged) {
  Given(R"({"id":2,"type":"AnalysisCase","attributes":{"Solver":"Halvex","AnalysisType":1}})");
  const std::string before = Lines();
  EXPECT_EQ(AddControls(), S_OK);
  EXPECT_EQ(Lines(), before);
}

}  // namespace
