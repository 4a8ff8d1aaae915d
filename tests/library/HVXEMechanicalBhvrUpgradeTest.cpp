#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// An interaction property (#1) with its tangential behavior (#2).
class HVXEMechanicalBhvrUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenBehavior(const std::string& attributes) {
    Given(R"({"id":1,"type":"HVXInteractionPropertyLT","attributes":{"tangentialBehavior":{"ref":2}}}
             {"id":2,"type":"HVXTangentialBehaviorLT","father":{"ref":1},"attributes":{)" +
          attributes + "}}");
  }
  static std::string Behavior(const std::string& attributes) {
    return R"({"id":2,"type":"HVXTangentialBehaviorLT","father":{"ref":1},"attributes":{)" + attributes +
           "}}";
  }
};

TEST_F(HVXEMechanicalBhvrUpgradeTest, FirstFrictionValueBecomesOneRowOfFour) {
  GivenBehavior(R"("frictionValList":[0.3,0.5])");
  EXPECT_EQ(Upgrade(1, {"FrictionValueUpgrade"}), S_OK);
  EXPECT_EQ(Line(2), Behavior(R"("frictionValList":[0.3,0.5],"FrictionTable":[[0.3,0.0,0.0,0.0]])"));
}

TEST_F(HVXEMechanicalBhvrUpgradeTest, WithoutAFrictionValueTheTableStays) {
  for (const char* const attributes :
       {R"("frictionValList":[],"FrictionTable":[[0.7,0.0,0.0,0.0]])",
        R"("FrictionTable":[[0.7,0.0,0.0,0.0]])", R"("frictionValList":["0.3"])"}) {
    GivenBehavior(attributes);
    EXPECT_EQ(Upgrade(1, {"FrictionValueUpgrade"}), S_OK);
    EXPECT_EQ(Line(2), Behavior(attributes));
  }
}

TEST_F(HVXEMechanicalBhvrUpgradeTest, OnlyUserSubroutinesChangeTheFormulation) {
  GivenBehavior(R"("UserSubroutine":true,"FrictionFormulation":1)");
  EXPECT_EQ(Upgrade(1, {"UserSubRoutineAttrUpgrade"}), S_OK);
  EXPECT_EQ(Line(2), Behavior(R"("UserSubroutine":true,"FrictionFormulation":3)"));
  for (const char* const attributes :
       {R"("UserSubroutine":false,"FrictionFormulation":1)", R"("FrictionFormulation":2)"}) {
    GivenBehavior(attributes);
    EXPECT_EQ(Upgrade(1, {"UserSubRoutineAttrUpgrade"}), S_OK);
    EXPECT_EQ(Line(2), Behavior(attributes));
  }
}

TEST_F(HVXEMechanicalBhvrUpgradeTest, FailuresSkipTheIdentifierOnly) {
  Given(R"({"id":1,"type":"HVXInteractionPropertyLT"})");
  EXPECT_EQ(Upgrade(1, {"UserSubRoutineAttrUpgrade", "FrictionValueUpgrade"}), S_OK);

  GivenBehavior(R"("frictionValList":[0.3])");
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecAttrAccess", 2), 1, {"FrictionValueUpgrade"}), S_OK);
  EXPECT_EQ(Calls("HVXTangentialBehavior::Set"), CallList{});
  EXPECT_EQ(UpgradeUnder(Failing("HVXTangentialBehavior::SetFrictionTable"), 1,
                         {"FrictionValueUpgrade", "UserSubRoutineAttrUpgrade"}),
            S_OK);
  EXPECT_EQ(Calls("HVXTangentialBehavior::IsUserSubroutine").size(), 1U);
}

}  // namespace
