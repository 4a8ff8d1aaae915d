#include <gmock/gmock.h>

#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A coupling (#10) with a mesh part (#11), resting on face #2 of product #3. Groups #20 (of supports), #21
// (on a mesh part), #22 (of mesh) and #23 (of proximity), each with the members #31 and #32.
class HVXERigidCouplingUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenCoupling(const std::string& attributes, const std::string& more = {},
                     const std::string& lateType = "HVXRigidCouplingLT") {
    Given(R"({"id":1,"type":"SAMContainer"}
             {"id":2,"type":"Surface"}
             {"id":3,"type":"Product"}
             {"id":10,"type":")" +
          lateType + R"(","container":{"ref":1},"attributes":{)" + attributes + R"(}}
             {"id":11,"type":"MSHMeshPart","father":{"ref":10},"container":{"ref":1}}
             {"id":20,"type":"SAMGroup","attributes":{"GroupKind":1,"Members":[{"ref":31},{"ref":32}]}}
             {"id":21,"type":"SAMGroup","attributes":{"GroupKind":1,"DefinedOnMeshPart":true,"Members":[{"ref":31}]}}
             {"id":22,"type":"SAMGroup","attributes":{"GroupKind":0,"Members":[{"ref":31}]}}
             {"id":23,"type":"SAMProximityGroup","attributes":{"Members":[{"ref":31}]}}
             {"id":31,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":3}}}
             {"id":32,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":3}}}
          )" +
          more);
  }
  static std::string Connector(int id, int first, const std::string& second = R"({"ref":3})") {
    return R"({"id":)" + std::to_string(id) +
           R"(,"type":"GeometrySmartConnector","father":{"ref":10},"attributes":{"FirstObject":)" +
           (first == 0 ? "null" : R"({"ref":)" + std::to_string(first) + "}") + R"(,"SecondObject":)" +
           second + "}}\n";
  }
};

TEST_F(HVXERigidCouplingUpgradeTest, BothKindsOfCouplingGetAFilledMeshPart) {
  for (const char* const lateType : {"HVXRigidCouplingLT", "HVXSmoothCouplingLT"}) {
    GivenCoupling(R"("MeshPart":{"ref":11},"Supports":[{"ref":40}])", Connector(40, 2), lateType);
    EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgradeToConnMeshPart"}), S_OK);
    EXPECT_EQ(Line(11),
              R"({"id":11,"type":"MSHMeshPart","father":{"ref":10},"container":{"ref":1},"upToDate":false,)"
              R"("attributes":{"Supports":[{"ref":41}]}})");
    EXPECT_EQ(Calls("HVXIRigidCoupling::"), (CallList{"HVXIRigidCoupling::GetMeshPart #10 MeshPart"}));
  }
}

TEST_F(HVXERigidCouplingUpgradeTest, GroupsBecomeSupportsWithoutAContextAndWithoutASetMode) {
  GivenCoupling(R"("Supports":[{"ref":40},{"ref":41},{"ref":42}])",
                Connector(40, 20, "null") + Connector(41, 21) + Connector(42, 0));
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgradeGroupToSupport"}), S_OK);
  EXPECT_THAT(Line(10), testing::HasSubstr(R"("Supports":[{"ref":41},{"ref":42},{"ref":43},{"ref":44}])"));
  EXPECT_EQ(Calls("VLMISamAnalysisSupport::SetMode"), CallList{});
  EXPECT_EQ(Calls("VLMISamAnalysisConnector::GetSecondObject"), CallList{});
}

TEST_F(HVXERigidCouplingUpgradeTest, ASupportThatIsPassedOverDoesNotEndTheWalk) {
  for (const int first : {2, 0}) {
    GivenCoupling(R"("Supports":[{"ref":40},{"ref":41}],"ExclusionRegions":[{"ref":40},{"ref":41}])",
                  Connector(40, first) + Connector(41, 20));
    const auto plan = [first] {
      return first == 2 ? Withholding("VLMISamAnalysisConnector", 40) : Recording();
    };
    EXPECT_EQ(UpgradeUnder(plan(), 10, {"UpdateGroupToExclusionRegion"}), S_OK);
    EXPECT_THAT(Line(10), testing::HasSubstr(R"("ExclusionRegions":[{"ref":31},{"ref":32}])"));
    EXPECT_EQ(UpgradeUnder(plan(), 10, {"UpgradeGroupToSupport"}), S_OK);
    EXPECT_EQ(Line(41), "removed");
  }
}

TEST_F(HVXERigidCouplingUpgradeTest, ExclusionRegionsAreHandedToTheMeshPart) {
  GivenCoupling(R"("MeshPart":{"ref":11},"ExclusionRegions":[{"ref":41},{"ref":40}])",
                Connector(40, 2) + Connector(41, 2));
  EXPECT_EQ(Upgrade(10, {"AddExclusionRegionToMeshPart"}), S_OK);
  EXPECT_EQ(Line(11), R"({"id":11,"type":"MSHMeshPart","father":{"ref":10},"container":{"ref":1},)"
                      R"("attributes":{"ExclusionRegions":[{"ref":41},{"ref":40}]}})");
  for (const char* const operation :
       {"HVXIRigidCoupling::GetExclusionRegions", "HVXIRigidCoupling::GetMeshPart"}) {
    EXPECT_EQ(UpgradeUnder(Failing(operation), 10, {"AddExclusionRegionToMeshPart"}), S_OK);
    EXPECT_EQ(Calls("HVXIInteractionMeshPart::"), CallList{}) << operation;
  }
  EXPECT_EQ(UpgradeUnder(Withholding("HVXIInteractionMeshPart", 11), 10, {"AddExclusionRegionToMeshPart"}),
            S_OK);
}

TEST_F(HVXERigidCouplingUpgradeTest, GroupsOfSupportsAmongTheRegionsGiveEachMemberOnce) {
  GivenCoupling(
      R"("ExclusionRegions":[{"ref":40},{"ref":41},{"ref":42},{"ref":43},{"ref":44},{"ref":45},{"ref":2}])",
      Connector(40, 2) + Connector(41, 20) + Connector(42, 21) + Connector(43, 22) + Connector(44, 23) +
          Connector(45, 0));
  EXPECT_EQ(Upgrade(10, {"UpdateGroupToExclusionRegion"}), S_OK);
  // What is no connector, or connects nothing, is left out; other groups stay as they are.
  EXPECT_EQ(Line(10),
            R"({"id":10,"type":"HVXRigidCouplingLT","container":{"ref":1},"attributes":{"ExclusionRegions":)"
            R"([{"ref":40},{"ref":31},{"ref":32},{"ref":42},{"ref":43},{"ref":44}]}})");
  EXPECT_FALSE(At(41).removed);
}

TEST_F(HVXERigidCouplingUpgradeTest, TwoIdentifiersMarkTheMeshPartOutOfDateAndNotTheCoupling) {
  GivenCoupling(R"("MeshPart":{"ref":11})");
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {"ReExplicitateFeature", "UpgradeCouplingMeshPart"}), S_OK);
  EXPECT_EQ(Calls("VLMISpecObject::SetUpToDate"),
            (CallList{"VLMISpecObject::SetUpToDate #11", "VLMISpecObject::SetUpToDate #11"}));
  EXPECT_FALSE(At(11).upToDate);
  EXPECT_TRUE(At(10).upToDate);
}

TEST_F(HVXERigidCouplingUpgradeTest, NoFailureStopsTheUpgrade) {
  GivenCoupling(R"("MeshPart":null)");
  const std::string before = Lines();
  EXPECT_EQ(UpgradeUnder(Withholding("HVXIRigidCoupling", 10), 10,
                         {"UpgradeToConnMeshPart", "UpgradeGroupToSupport", "AddExclusionRegionToMeshPart",
                          "UpdateGroupToExclusionRegion", "ReExplicitateFeature", "UpgradeCouplingMeshPart"}),
            S_OK);
  EXPECT_EQ(Upgrade(10, {"UpgradeGroupToSupport", "AddExclusionRegionToMeshPart", "ReExplicitateFeature"}),
            S_OK);
  EXPECT_EQ(Lines(), before);
}

}  // namespace
