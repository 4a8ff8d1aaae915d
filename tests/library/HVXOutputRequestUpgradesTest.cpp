#include <gmock/gmock.h>

#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A case (#2) with an initial step (#4), a static step (#5), which has an output container (#10), a
// perturbation step (#6) and a last static step (#7).
class HVXEFORequestContainerTest : public testing_support::UpgradeTest {
 protected:
  void GivenRequests(const std::string& requests) {
    Given(R"({"id":1,"type":"AnalysisModel"}
             {"id":2,"type":"AnalysisCase","father":{"ref":1}}
             {"id":3,"type":"HVXSimulationHistoryLT","father":{"ref":2}}
             {"id":4,"type":"HVXInitialStepLT","father":{"ref":3}}
             {"id":5,"type":"HVXGeneralStaticStepLT","father":{"ref":3}}
             {"id":6,"type":"HVXStaticLPStepLT","father":{"ref":3}}
             {"id":7,"type":"HVXGeneralStaticStepLT","father":{"ref":3}}
             {"id":10,"type":"HVXFieldOutputRequestContainerLT","father":{"ref":5}}
          )" +
          requests);
  }
  static std::string Old(int id, const std::string& attributes) {
    return R"({"id":)" + std::to_string(id) +
           R"(,"type":"HVXFieldOutputLT","father":{"ref":10},"attributes":{)" + attributes + "}}\n";
  }
  HRESULT Replace(standalone::CheckpointPlan plan) {
    return UpgradeUnder(std::move(plan), 10, {"UpgradeFieldOutputRequest"});
  }
  std::size_t Members() { return standalone::Document::CountBeneath(At(10)); }
};

TEST_F(HVXEFORequestContainerTest, OldRequestsAreReplacedByCurrentOnes) {
  GivenRequests(Old(20, R"("FrequencyType":1,"Frequency":7,"VariableSelection":2)") +
                R"({"id":21,"type":"HVXNewFieldOutputLT","alias":"Field Output Request-4","father":{"ref":10}}
                   {"id":22,"type":"HVXHistoryOutputLT","father":{"ref":10}})");
  const std::string current = Line(21);
  EXPECT_EQ(Replace(Recording()), S_OK);
  EXPECT_EQ(Line(20), "removed");
  EXPECT_EQ(Line(21), current);
  EXPECT_EQ(
      Line(23),
      R"({"id":23,"type":"HVXNewFieldOutputLT","name":"HVXNewFieldOutputLT.23","alias":"Field Output Request-5",)"
      R"("father":{"ref":10},"attributes":{"FrequencyType":1,"Frequency":7,"VariableSelection":1,)"
      R"("PreselectedVariableList":"S,E,U,RF,NT","Supports":[{"ref":26}],"PropagationState":0,)"
      R"("PropagatedTo":"later steps"}})");
  EXPECT_THAT(Line(24), testing::HasSubstr("ElementOutputPosition"));
  EXPECT_THAT(Line(26),
              testing::HasSubstr(R"("attributes":{"FirstObject":{"ref":1},"SecondObject":{"ref":1}})"));
  EXPECT_EQ(Calls("HVXIBaseOutput::Set"),
            (CallList{"HVXIBaseOutput::SetFrequencyType #23 FrequencyType",
                      "HVXIBaseOutput::SetFrequency #23 Frequency",
                      "HVXIBaseOutput::SetVariableSelection #23 VariableSelection",
                      "HVXIBaseOutput::SetPreselectedVariableList #23 PreselectedVariableList"}));
  EXPECT_EQ(Calls("HVXIFactoryExtForPropagation::"),
            (CallList{"HVXIFactoryExtForPropagation::SetDefaultPropagationData #10",
                      "HVXIFactoryExtForPropagation::Propagate #10"}));
}

TEST_F(HVXEFORequestContainerTest, UnreadableSettingsHaveDefaultsAndTheListComesFromTheCatalogOnly) {
  GivenRequests(Old(20, R"("FrequencyType":1,"Frequency":7)"));
  EXPECT_EQ(Replace(Withholding("HVXIBaseOutput", 20)), S_OK);
  EXPECT_THAT(Line(21), testing::HasSubstr(R"("FrequencyType":0,"Frequency":1,"VariableSelection":1)"));
  GivenRequests(Old(20, ""));
  EXPECT_EQ(Replace(Failing("VLMMsgCatalog::BuildMessage")), S_OK);
  EXPECT_THAT(Line(21), testing::HasSubstr(R"("PreselectedVariableList":"")"));
}

TEST_F(HVXEFORequestContainerTest, OldRequestsStayRemovedWhenNothingMakesNewOnes) {
  GivenRequests(Old(20, "") + Old(21, ""));
  EXPECT_EQ(Replace(Withholding("HVXIFieldOutputFact", 10)), S_OK);
  EXPECT_EQ(Members(), 0U);

  GivenRequests(Old(20, "") + Old(21, ""));
  EXPECT_EQ(Replace(Failing("HVXIFieldOutputFact::CreateFieldOutputRequest", "", -77)), E_FAIL);
  EXPECT_EQ(Line(20), "removed");
  EXPECT_NE(Line(21), "removed");  // the first failure ends the upgrade

  GivenRequests(Old(20, ""));
  EXPECT_EQ(Replace(Failing("VLMISamAnalysisSet::RemoveMember")), S_OK);
  EXPECT_EQ(Calls("HVXIFieldOutputFact::"), CallList{});
}

TEST_F(HVXEFORequestContainerTest, DocumentAndModelAreNeededButSupportAndPropagationAreNot) {
  for (const char* const operation :
       {"HVXAnalysisDocUtils::GetDocument", "HVXAnalysisDocUtils::GetAnalysisModel"}) {
    GivenRequests(Old(20, "") + Old(21, ""));
    EXPECT_EQ(Replace(Failing(operation)), E_FAIL) << operation;
    EXPECT_NE(Line(21), "removed") << operation;
  }
  for (const char* const operation :
       {"VLMISamAnalysisSupport::AddSupport", "HVXIFactoryExtForPropagation::SetDefaultPropagationData",
        "HVXIFactoryExtForPropagation::Propagate", "VLMISamAnalysisEntity::ListParents"}) {
    GivenRequests(Old(20, "") + Old(21, ""));
    EXPECT_EQ(Replace(Failing(operation)), S_OK) << operation;
    EXPECT_EQ(Line(21), "removed") << operation;
  }
  GivenRequests(Old(20, "") + Old(21, ""));
  EXPECT_EQ(Replace(Withholding("HVXIBaseOutput", 22)), S_OK);  // the first new one is left as it was made
  EXPECT_THAT(Line(22), testing::Not(testing::HasSubstr("Supports")));
  EXPECT_EQ(Line(21), "removed");
}

TEST_F(HVXEFORequestContainerTest, NothingToReplaceIsSuccess) {
  GivenRequests("");
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(10, {"UpgradeFieldOutputRequest"}), S_OK);
  EXPECT_EQ(Replace(Failing("VLMISamAnalysisSet::ListMembersOfLateType")), S_OK);
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(Replace(Withholding("VLMISamAnalysisSet", 10)), E_FAIL);
}

// A request (#2) of a case (#1).
class HVXEFORUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenList(const std::string& list, int selection = 1, int analysisType = 1) {
    Given(R"({"id":1,"type":"AnalysisCase","attributes":{"Solver":"Halvex","AnalysisType":)" +
          std::to_string(analysisType) +
          R"(}}
             {"id":2,"type":"HVXNewFieldOutputLT","father":{"ref":1},"attributes":{"VariableSelection":)" +
          std::to_string(selection) + R"(,"PreselectedVariableList":")" + list + R"("}})");
  }
  std::string List() {
    VLMUnicodeString list;
    static_cast<void>(standalone::ReadAttribute(At(2), standalone::Key("PreselectedVariableList"), list));
    return list.ConvertToChar();
  }
  HRESULT RemoveNodalTemperature(standalone::CheckpointPlan plan = {}) {
    return UpgradeUnder(std::move(plan), 2, {"UpgradeFORPreselectedVarListAttr"});
  }
};

TEST_F(HVXEFORUpgradeTest, NodalTemperatureLeavesTheList) {
  const std::pair<const char*, const char*> lists[] = {{"S,NT,U", "S,U"},
                                                       {"NT,S", "S"},
                                                       {"S,NT", "S"},
                                                       {"S,NT,NT", "S"},
                                                       {"NT11,S", "NT11,S"},
                                                       {"NT", "NT"},
                                                       {"", ""},
                                                       {"U,NT11", "U,NT11"},
                                                       {"NT,S,NT,U,NT", "S,U"},
                                                       {"S,NT,NT,U", "S,NT,U"},
                                                       {"NT,NT,S", "S"},
                                                       {"NT,NT", "NT"},
                                                       {"S,NTX,NT", "S,NTX"},
                                                       {"NTX,NT,S", "NTX,S"},
                                                       {"NTX,SNT,S", "NTX,SS"},
                                                       {"XY", "XY"},
                                                       {",NT", ""}};
  for (const auto& [before, after] : lists) {
    GivenList(before);
    EXPECT_EQ(RemoveNodalTemperature(), S_OK);
    EXPECT_EQ(List(), after) << before;
  }
}

TEST_F(HVXEFORUpgradeTest, OtherSelectionsAndThermalCasesKeepTheirList) {
  GivenList("S,NT,U", 0);
  EXPECT_EQ(RemoveNodalTemperature(Recording()), S_OK);
  EXPECT_EQ(Calls("HVXIBaseOutput::Set"), CallList{});
  GivenList("S,NT,U", 1, 2);
  EXPECT_EQ(RemoveNodalTemperature(), S_OK);
  EXPECT_EQ(List(), "S,NT,U");
}

TEST_F(HVXEFORUpgradeTest, NoFailureStopsTheUpgrade) {
  for (const char* const operation :
       {"HVXAnalysisEntityUtils::GetParentCaseFromObject", "HVXIBaseOutput::GetVariableSelection"}) {
    GivenList("S,NT,U");
    EXPECT_EQ(RemoveNodalTemperature(Failing(operation)), S_OK);
    EXPECT_EQ(List(), "S,NT,U") << operation;
  }
  EXPECT_EQ(RemoveNodalTemperature(Failing("HVXIBaseOutput::GetPreselectedVariableList")), S_OK);
  EXPECT_EQ(List(), "");  // an unread list is written back as the empty one that the walk began with
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamUpgrade::Upgrade"), 2, {"UpgradeFORBasicComponents"}), S_OK);
  EXPECT_EQ(Upgrade(2, {"UpgradeFORBasicComponents"}), S_OK);
  EXPECT_THAT(Line(3), testing::HasSubstr("ElementOutputPosition"));
}

}  // namespace
