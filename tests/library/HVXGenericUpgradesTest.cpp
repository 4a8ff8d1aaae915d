#include "support/UpgradeFixture.h"

namespace {

// Whole-document conversions, called as the version manager calls them.
class HVXGenericUpgradesTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(
        R"({"id":1,"type":"HVXJobLT","attributes":{"ListOfRuleNames":["a"],"ListOfRuleStatus":[1],"RunType":"x"}}
             {"id":2,"type":"MyHVXJobLT","attributes":{"ListOfRuleNames":["a"]}}
             {"id":3,"type":"HVX","attributes":{"ListOfRuleNames":null}}
             {"id":4,"type":"AnalysisCase","attributes":{"ListOfRuleNames":["a"]}})");
    before_ = Lines();
  }

  HRESULT Upgtade(std::initializer_list<const char*> identifiers, bool withNull = false) {
    VLMListValVLMUnicodeString list;
    for (const char* const identifier : identifiers) list.Append(identifier);
    VLMListValVLMISpecObject_var features;
    if (withNull) features.Append(VLMISpecObject_var());
    for (const int id : {1, 2, 3, 4}) features.Append(As<VLMISpecObject>(id));
    return testing_support::Library().documentUpgrades[0].upgrade(list, features);
  }

  std::string before_;
};

TEST_F(HVXGenericUpgradesTest, ActsOnAListOfExactlyOneIdentifier) {
  EXPECT_EQ(Upgtade({}), E_FAIL);
  EXPECT_EQ(Upgtade({"RemoveConsisChkAttr", "UpgDocumentForCCPRemoval"}), S_OK);
  EXPECT_EQ(Upgtade({"RemoveConsisChkAttr", "RemoveConsisChkAttr"}), S_OK);
  EXPECT_EQ(Upgtade({"removeconsischkattr"}), S_OK);
  EXPECT_EQ(Upgtade({"UpgradeJobMemoryUnit"}), S_OK);
  EXPECT_EQ(Lines(), before_);
}

TEST_F(HVXGenericUpgradesTest, RuleNamesGoAndTheirStatusStays) {
  EXPECT_EQ(Upgtade({"RemoveConsisChkAttr"}, /*withNull=*/true), S_OK);
  EXPECT_EQ(Lines(), R"({"id":1,"type":"HVXJobLT","attributes":{"ListOfRuleStatus":[1],"RunType":"x"}})"
                     "\n"
                     R"({"id":2,"type":"MyHVXJobLT","attributes":{"ListOfRuleNames":["a"]}})"
                     "\n"
                     R"({"id":3,"type":"HVX"})"
                     "\n"
                     R"({"id":4,"type":"AnalysisCase","attributes":{"ListOfRuleNames":["a"]}})"
                     "\n");
}

TEST_F(HVXGenericUpgradesTest, NoFailureIsReported) {
  standalone::CheckpointPlan plan = testing_support::Failing("VLMISpecAttrAccess::RemoveAttribute");
  plan.withholdInterface = "VLMISpecAttrAccess";
  plan.withholdFrom = 3;
  const standalone::CheckpointScope scope(plan);
  EXPECT_EQ(Upgtade({"RemoveConsisChkAttr"}), S_OK);
  EXPECT_EQ(Calls("VLMISpecAttrAccess::GetAttrKey"),
            (CallList{"VLMISpecAttrAccess::GetAttrKey #1 ListOfRuleNames",
                      "VLMISpecAttrAccess::GetAttrKey #1 ListOfRuleStatus"}));
  EXPECT_EQ(Lines(), before_);
}

}  // namespace
