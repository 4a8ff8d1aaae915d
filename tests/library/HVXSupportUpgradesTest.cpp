#include <array>
#include <span>

#include "HVXSupportUpgrades.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A part (#3) with main body #4, and solids #5 and #6 of it; #7 is a solid that no part holds. Conditions
// begin at #20.
class BodySupportTest : public testing_support::UpgradeTest {
 protected:
  void GivenPartAnd(const std::string& condition) {
    Given(R"({"id":1,"type":"SAMContainer"}
             {"id":2,"type":"PrtContainer","attributes":{"Part":{"ref":3}}}
             {"id":3,"type":"Part","container":{"ref":2},"attributes":{"MainBody":{"ref":4},"Bodies":[{"ref":4}]}}
             {"id":4,"type":"MechanicalPart","father":{"ref":3},"container":{"ref":2}}
             {"id":5,"type":"Solid","father":{"ref":3},"container":{"ref":2}}
             {"id":6,"type":"Solid","father":{"ref":3},"container":{"ref":2}}
             {"id":7,"type":"Solid"}
             {"id":8,"type":"Edge","father":{"ref":3},"container":{"ref":2}}
             {"id":9,"type":"Product"}
          )" +
          condition);
  }

  static std::string Support(int id, int first, const char* second = R"({"ref":9})") {
    return R"({"id":)" + std::to_string(id) +
           R"(,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":)" +
           std::to_string(first) + R"(},"SecondObject":)" + second + "}}\n";
  }

  static std::string ConditionOn(const std::string& supports) {
    return R"({"id":20,"type":"HVXBodyHeatFlux","container":{"ref":1},"attributes":{"Supports":)" + supports +
           "}}\n";
  }

  HRESULT Replace(standalone::FeatureId solid) {
    return HVXReplaceSolid(As<VLMISamAnalysisSupport>(20), As<VLMBaseUnknown>(solid), As<VLMBaseUnknown>(9));
  }
};

TEST_F(BodySupportTest, EverySolidIsReplacedByTheMainBodyAndTheRestStays) {
  GivenPartAnd(ConditionOn(R"([{"ref":21},{"ref":22},{"ref":23},{"ref":24},{"ref":25}])") + Support(21, 5) +
               Support(22, 8) + Support(23, 7) + Support(24, 6) + Support(25, 5, "null"));
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {"UpgradeBodySupport"}), S_OK);
  // A solid without a part and a support without a second object are passed over.
  EXPECT_EQ(Line(20), R"({"id":20,"type":"HVXBodyHeatFlux","container":{"ref":1},"attributes":{"Supports":)"
                      R"([{"ref":22},{"ref":23},{"ref":25},{"ref":26},{"ref":27}]}})");
  for (const standalone::FeatureId id : {26, 27}) {
    EXPECT_EQ(Line(id), R"({"id":)" + std::to_string(id) +
                            R"(,"type":"GeometrySmartConnector","name":"GeometrySmartConnector.)" +
                            std::to_string(id) +
                            R"(","father":{"ref":20},"container":{"ref":1},)"
                            R"("attributes":{"FirstObject":{"ref":4},"SecondObject":{"ref":9}}})");
  }
  EXPECT_EQ(Calls("VLMISamAnalysisSupport::"),
            (CallList{"VLMISamAnalysisSupport::ListSupports #20", "VLMISamAnalysisSupport::TakeOut #20",
                      "VLMISamAnalysisSupport::PutIn #20", "VLMISamAnalysisSupport::TakeOut #20",
                      "VLMISamAnalysisSupport::PutIn #20"}));
}

TEST_F(BodySupportTest, NothingToDoIsSuccessButNoSupportsInterfaceStopsTheUpgrade) {
  GivenPartAnd(ConditionOn("[]"));
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(20, {"UpgradeBodySupport"}), S_OK);
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamAnalysisSupport::ListSupports"), 20, {"UpgradeBodySupport"}), S_OK);
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISamAnalysisSupport", 20), 20,
                         {"UpgradeBodySupport", "ReExplicitateFeature"}),
            E_FAIL);
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecObject", 20), 20, {"UpgradeBodySupport"}), E_FAIL);
  EXPECT_EQ(Lines(), before);  // not marked out of date either
}

TEST_F(BodySupportTest, ASolidThatCannotBeReplacedDoesNotKeepTheNextFromIt) {
  GivenPartAnd(ConditionOn(R"([{"ref":21},{"ref":22}])") + Support(21, 7) + Support(22, 5));
  EXPECT_EQ(Upgrade(20, {"UpgradeBodySupport"}), S_OK);
  EXPECT_EQ(Doc().Find(22)->removed, true);
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamAnalysisConnector::GetSecondObject"), 20, {"UpgradeBodySupport"}),
            S_OK);
  EXPECT_EQ(Calls("VLMISpecObject::GetLateType"), CallList{});

  // Nor does what is passed over: no connector, no context, no feature, no solid.
  const std::string both = ConditionOn(R"([{"ref":21},{"ref":22}])");
  for (const auto& [first, plan] : {std::pair{Support(21, 6), Withholding("VLMISamAnalysisConnector", 21)},
                                    {Support(21, 6), Withholding("VLMISpecObject", 6)},
                                    {Support(21, 5, "null"), Recording()},
                                    {Support(21, 8), Recording()}}) {
    GivenPartAnd(both + first + Support(22, 5));
    EXPECT_EQ(UpgradeUnder(plan, 20, {"UpgradeBodySupport"}), S_OK);
    EXPECT_TRUE(At(22).removed) << first;
  }
}

TEST_F(BodySupportTest, ReplacingASolidNeedsEveryLinkToTheMainBody) {
  GivenPartAnd(ConditionOn(R"([{"ref":21}])") + Support(21, 5));
  const std::string before = Lines();
  EXPECT_EQ(HVXReplaceSolid(NULL_var, As<VLMBaseUnknown>(5), As<VLMBaseUnknown>(9)), E_FAIL);
  EXPECT_EQ(HVXReplaceSolid(As<VLMISamAnalysisSupport>(20), NULL_var, As<VLMBaseUnknown>(9)), E_FAIL);
  EXPECT_EQ(HVXReplaceSolid(As<VLMISamAnalysisSupport>(20), As<VLMBaseUnknown>(5), NULL_var), E_FAIL);
  EXPECT_EQ(Replace(7), E_FAIL);
  for (const char* const operation :
       {"VLMISpecObject::GetContainer", "VLMIPrtContainer::GetPart", "VLMIPartRequest::GetMainBody"}) {
    const standalone::CheckpointScope scope(Failing(operation, "", -77));
    EXPECT_EQ(Replace(5), E_FAIL) << operation;
  }
  for (const auto& [interface, feature] : {std::pair{"VLMIContainerOfDocument", 2},
                                           {"VLMIPrtContainer", 2},
                                           {"VLMIPartRequest", 3},
                                           {"VLMILinkableObject", 4},
                                           {"VLMISpecObject", 9}}) {
    const standalone::CheckpointScope scope(Withholding(interface, feature));
    EXPECT_EQ(Replace(5), E_FAIL) << interface;
  }
  EXPECT_EQ(Lines(), before);
}

TEST_F(BodySupportTest, TheHostsCodesArePassedOnAndNothingIsPutBack) {
  GivenPartAnd(ConditionOn(R"([{"ref":21}])") + Support(21, 5));
  {
    const standalone::CheckpointScope scope(Failing("VLMISamAnalysisSupport::TakeOut", "", -77));
    EXPECT_EQ(Replace(5), -77);
  }
  EXPECT_FALSE(Doc().Find(21)->removed);
  const standalone::CheckpointScope scope(Failing("VLMISamAnalysisSupport::PutIn", "", -78));
  EXPECT_EQ(Replace(5), -78);
  EXPECT_TRUE(Doc().Find(21)->removed);
}

// A part (#3) whose bodies #4 and #5 result in elements that stand for the topological bodies #8 and #9.
class TopologicalBodyTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(R"({"id":1,"type":"SAMContainer"}
             {"id":2,"type":"PrtContainer","attributes":{"Part":{"ref":3}}}
             {"id":3,"type":"Part","attributes":{"MainBody":{"ref":4},"Bodies":[{"ref":4},{"ref":5}]}}
             {"id":4,"type":"MechanicalPart","container":{"ref":2},"attributes":{"Results":[{"ref":6}]}}
             {"id":5,"type":"MechanicalPart","container":{"ref":2},"attributes":{"Results":[{"ref":10},{"ref":7}]}}
             {"id":6,"type":"GeometricalElement","attributes":{"Body":{"ref":8}}}
             {"id":7,"type":"GeometricalElement","attributes":{"Body":{"ref":9}}}
             {"id":8,"type":"TopologicalBody","container":{"ref":2}}
             {"id":9,"type":"TopologicalBody","container":{"ref":2}}
             {"id":10,"type":"Edge"}
             {"id":11,"type":"Product"}
             {"id":12,"type":"TopologicalBody","container":{"ref":2}}
             {"id":13,"type":"TopologicalBody"}
             {"id":20,"type":"HVXRigidBodyConstraintLT","container":{"ref":1},"attributes":{"Supports":[{"ref":21}]}}
             {"id":21,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":9},"SecondObject":{"ref":11}}})");
  }

  HRESULT Move(standalone::FeatureId body) {
    return HVXUpgradeTopologicalBodySupport(As<VLMISamAnalysisSupport>(20), As<VLMBody>(body),
                                            As<VLMBaseUnknown>(11));
  }
};

TEST_F(TopologicalBodyTest, TheFeatureThatProducesTheBodyTakesItsPlace) {
  EXPECT_EQ(Move(9), S_OK);
  EXPECT_EQ(Line(21), "removed");
  EXPECT_EQ(
      Line(22),
      R"({"id":22,"type":"GeometrySmartConnector","name":"GeometrySmartConnector.22","father":{"ref":20},"container":{"ref":1},)"
      R"("attributes":{"FirstObject":{"ref":5},"SecondObject":{"ref":11}}})");
}

TEST_F(TopologicalBodyTest, ABodyThatNothingProducesIsLeftAlone) {
  const std::string before = Lines();
  EXPECT_EQ(Move(12), S_OK);
  EXPECT_EQ(Move(8), E_FAIL);   // produced, but no support rests on it
  EXPECT_EQ(Move(13), E_FAIL);  // stands in no container
  EXPECT_EQ(HVXUpgradeTopologicalBodySupport(NULL_var, As<VLMBody>(9), As<VLMBaseUnknown>(11)), E_FAIL);
  EXPECT_EQ(
      HVXUpgradeTopologicalBodySupport(As<VLMISamAnalysisSupport>(20), NULL_var, As<VLMBaseUnknown>(11)),
      E_FAIL);
  EXPECT_EQ(HVXUpgradeTopologicalBodySupport(As<VLMISamAnalysisSupport>(20), As<VLMBody>(9), NULL_var),
            E_FAIL);
  EXPECT_EQ(Lines(), before);
}

TEST_F(TopologicalBodyTest, TheWalkGoesOnBehindAMatch) {
  Doc().SetAttribute(At(6), standalone::NameTable::Intern("Body"), standalone::Value::Link(&At(9)));
  EXPECT_EQ(Move(9), E_FAIL);  // of the second body, for which no support is left
  EXPECT_NE(Line(22).find(R"("FirstObject":{"ref":4})"), std::string::npos);
}

TEST_F(TopologicalBodyTest, AFailedTakeOutPutsNothingIn) {
  {
    const standalone::CheckpointScope scope(Failing("VLMISamAnalysisSupport::TakeOut", "", -77));
    EXPECT_EQ(Move(9), -77);
    EXPECT_EQ(Calls("VLMISamAnalysisSupport::PutIn"), CallList{});
  }
  const standalone::CheckpointScope scope(Failing("VLMISamAnalysisSupport::PutIn", "", -78));
  EXPECT_EQ(Move(9), -78);
}

// A constraint (#20) that rests on a group (#10) of three faces.
class GroupToSupportTest : public testing_support::UpgradeTest {
 protected:
  void GivenGroup(const std::string& type, const std::string& attributes) {
    Given(R"({"id":1,"type":"SAMContainer"}
             {"id":2,"type":"Surface"}
             {"id":3,"type":"Surface"}
             {"id":10,"type":")" +
          type + R"(","container":{"ref":1},"attributes":{"Members":[{"ref":11},{"ref":12},{"ref":13}])" +
          attributes +
          R"(}}
             {"id":11,"type":"GeometrySmartConnector","father":{"ref":10},"container":{"ref":1},"attributes":{"FirstObject":{"ref":2}}}
             {"id":12,"type":"GeometrySmartConnector","father":{"ref":10},"container":{"ref":1},"attributes":{"FirstObject":{"ref":2}}}
             {"id":13,"type":"GeometrySmartConnector","father":{"ref":10},"container":{"ref":1},"attributes":{"FirstObject":{"ref":3}}}
             {"id":20,"type":"HVXRigidBodyConstraintLT","container":{"ref":1},"attributes":{"Supports":[{"ref":21}]}}
             {"id":21,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":10}}})");
  }

  HRESULT Convert() {
    return HVXConvertGroupToSupport(As<VLMBaseUnknown>(10), As<VLMISamAnalysisSupport>(20),
                                    As<VLMISamAnalysisConnector>(21));
  }
};

TEST_F(GroupToSupportTest, AGroupOfNMembersBecomesNSupportsOnTheLast) {
  GivenGroup("SAMGroup", R"(,"GroupKind":1)");
  EXPECT_EQ(Convert(), S_OK);
  EXPECT_EQ(Line(21), "removed");
  EXPECT_EQ(Line(20),
            R"({"id":20,"type":"HVXRigidBodyConstraintLT","container":{"ref":1},"attributes":{"Supports":)"
            R"([{"ref":22},{"ref":23},{"ref":24}]}})");
  for (const standalone::FeatureId id : {22, 23, 24})
    EXPECT_NE(
        Line(id).find(R"("father":{"ref":20},"container":{"ref":1},"attributes":{"FirstObject":{"ref":3})"),
        std::string::npos)
        << Line(id);
}

TEST_F(GroupToSupportTest, AGroupWhoseLastMemberIsNoConnectorIsTakenOutOnly) {
  GivenGroup("SAMGroup", R"(,"GroupKind":1)");
  const std::array members{standalone::Value::Link(&At(11)), standalone::Value::Link(&At(3))};
  Doc().SetAttribute(At(10), standalone::NameTable::Intern("Members"),
                     standalone::Value::List(Doc().Keep(std::span<const standalone::Value>(members))));
  EXPECT_EQ(Convert(), S_OK);
  EXPECT_EQ(Line(21), "removed");
  EXPECT_NE(Line(20).find(R"("Supports":[])"), std::string::npos);
}

TEST_F(GroupToSupportTest, OtherGroupsStayAndSucceed) {
  for (const auto& [type, attributes] : {std::pair{"SAMGroup", R"(,"GroupKind":0)"},
                                         {"SAMGroup", R"(,"GroupKind":1,"DefinedOnMeshPart":true)"},
                                         {"SAMProximityGroup", R"(,"GroupKind":1)"}}) {
    GivenGroup(type, attributes);
    const std::string before = Lines();
    EXPECT_EQ(Convert(), S_OK);
    EXPECT_EQ(Lines(), before) << type << attributes;
  }
}

TEST_F(GroupToSupportTest, FailuresBeforeTheSupportsAreGeneralOnesAndLaterOnesPassedOn) {
  struct Case {
    const char* operation;
    HRESULT result;
  };
  for (const auto& [operation, result] : {Case{"HVXISamGroupExt::GetKind", S_OK},  // counts as another kind
                                          {"VLMILinkableObject::GetDocument", E_FAIL},
                                          {"HVXAnalysisDocUtils::GetFactory", E_FAIL},
                                          {"HVXISamGroupExt::ListMembers", E_FAIL},
                                          {"VLMISamAnalysisModelFactory::CreateSupport", E_FAIL},
                                          {"VLMISamAnalysisSupport::AddSupports", -77},
                                          {"VLMISamAnalysisSupport::RemoveSupport", -77}}) {
    GivenGroup("SAMGroup", R"(,"GroupKind":1)");
    const standalone::CheckpointScope scope(Failing(operation, "", -77));
    EXPECT_EQ(Convert(), result) << operation;
    EXPECT_FALSE(Doc().Find(21)->removed) << operation;
  }
}

}  // namespace
