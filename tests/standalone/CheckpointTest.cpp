#include <gmock/gmock.h>

#include "modeler/VLMIAlias.h"
#include "support/UpgradeFixture.h"

namespace {

using standalone::Checkpoint;
using standalone::CheckpointPlan;
using standalone::CheckpointScope;
using testing::ElementsAre;

class CheckpointTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(R"({"id":1,"type":"HVXJobLT"}
             {"id":2,"type":"HVXJobLT"})");
  }
  // Names feature 1 "a" to "e", under a plan, and tells what came of each.
  std::vector<HRESULT> Results(CheckpointPlan plan) {
    const CheckpointScope scope(std::move(plan));
    const VLMIAlias_var spAlias = As<VLMIAlias>(1);
    std::vector<HRESULT> results;
    for (const char* const name : {"a", "b", "c", "d", "e"})
      results.push_back(spAlias->SetExternalName(name));
    return results;
  }
};

TEST_F(CheckpointTest, FailsTheNthCallOnceOrFromThereOn) {
  CheckpointPlan plan;
  plan.failNth = 3;
  plan.failure = -5;
  EXPECT_THAT(Results(plan), ElementsAre(0, 0, -5, 0, 0));
  EXPECT_EQ(Checkpoint::CallCount(), 5);
  EXPECT_TRUE(Checkpoint::Recorded().empty());
  plan.failFromNthOn = true;
  EXPECT_THAT(Results(plan), ElementsAre(0, 0, -5, -5, -5));
  EXPECT_EQ(At(1).externalName, "b");  // what fails does nothing
}

TEST_F(CheckpointTest, FailsAnOperationByNameAndDetail) {
  EXPECT_THAT(Results(testing_support::Failing("VLMIAlias::SetExternalName", "b")),
              ElementsAre(0, E_FAIL, 0, 0, 0));
  EXPECT_THAT(Results(testing_support::Failing("VLMIAlias::SetExternalName", "", -9)),
              ElementsAre(-9, -9, -9, -9, -9));
  EXPECT_THAT(Results(testing_support::Failing("VLMIAlias::GetExternalName")), ElementsAre(0, 0, 0, 0, 0));
}

TEST_F(CheckpointTest, RecordsAndTellsOfEveryCallUntilItStops) {
  CheckpointPlan plan = testing_support::Recording();
  int told = 0;
  plan.onCall = [&told](const standalone::HostCall& call, const standalone::Feature* feature) {
    EXPECT_EQ(call.feature, feature->id);
    ++told;
  };
  static_cast<void>(Results(plan));
  EXPECT_EQ(told, 5);
  EXPECT_EQ(As<VLMIAlias>(2)->SetExternalName("later"), S_OK);
  EXPECT_EQ(Calls().size(), 5U);
  EXPECT_EQ(Calls().front(), "VLMIAlias::SetExternalName #1 a");
}

TEST_F(CheckpointTest, WithholdsAnInterfaceFromOneFeatureOrAll) {
  {
    const CheckpointScope scope(testing_support::Withholding("VLMIAlias", 2));
    EXPECT_FALSE(As<VLMIAlias>(1) == NULL_var);
    EXPECT_TRUE(As<VLMIAlias>(2) == NULL_var);
    EXPECT_TRUE(VLMIAlias_var(As<VLMISpecObject>(2)) == NULL_var);
  }
  {
    const CheckpointScope scope(testing_support::Withholding("VLMIAlias"));
    EXPECT_TRUE(As<VLMIAlias>(1) == NULL_var);
  }
  EXPECT_FALSE(As<VLMIAlias>(2) == NULL_var);
}

}  // namespace
