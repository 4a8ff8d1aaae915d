#include <gmock/gmock.h>

#include "base/VLMFatalError.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A part (#3) with main body #4, whose result #5 produces the topological body #6, a solid #7 and a body #8
// that is both kinds at once; a product #9. Constraint #20 rests on what each test gives it.
class HVXERigidBodyConstraintUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenConstraintOn(const std::vector<std::string>& firstObjects, const std::string& more = {},
                         const std::string& attributes = {}) {
    std::string lines = R"({"id":1,"type":"SAMContainer"}
        {"id":2,"type":"PrtContainer","attributes":{"Part":{"ref":3}}}
        {"id":3,"type":"Part","container":{"ref":2},"attributes":{"MainBody":{"ref":4},"Bodies":[{"ref":4}]}}
        {"id":4,"type":"MechanicalPart","father":{"ref":3},"container":{"ref":2},"attributes":{"Results":[{"ref":5}]}}
        {"id":5,"type":"GeometricalElement","father":{"ref":4},"container":{"ref":2},"attributes":{"Body":{"ref":6}}}
        {"id":6,"type":"TopologicalBody","father":{"ref":3},"container":{"ref":2}}
        {"id":7,"type":"Solid","father":{"ref":3},"container":{"ref":2}}
        {"id":8,"type":"ShapeBody","father":{"ref":3},"container":{"ref":2}}
        {"id":9,"type":"Product"}
        )";
    std::string supports;
    std::string connectors;
    for (std::size_t i = 0; i < firstObjects.size(); ++i) {
      const std::string id = std::to_string(21 + i);
      if (i > 0) supports += ",";
      supports.append(R"({"ref":)").append(id).append("}");
      connectors += R"({"id":)" + id +
                    R"(,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":)" +
                    firstObjects[i] + "}\n";
    }
    Given(lines +
          R"({"id":20,"type":"HVXRigidBodyConstraintLT","container":{"ref":1},"attributes":{"Supports":[)" +
          supports + "]" + attributes + "}}\n" + connectors + more);
  }
  static std::string On(int first, const std::string& second = R"({"ref":9})") {
    return R"({"FirstObject":{"ref":)" + std::to_string(first) + R"(},"SecondObject":)" + second + "}";
  }
  std::vector<standalone::FeatureId> SupportedObjects(standalone::FeatureId of = 20) {
    std::vector<standalone::FeatureId> objects;
    for (standalone::Feature* const connector :
         standalone::LinkedFeatures(At(of), standalone::Key("Supports"))) {
      objects.push_back(standalone::LinkedFeature(*connector, standalone::Key("FirstObject"))->id);
    }
    return objects;
  }
  using Ids = std::vector<standalone::FeatureId>;
};

TEST_F(HVXERigidBodyConstraintUpgradeTest, BodiesAreToldByInterfaceAndMoveToTheCurrentBody) {
  GivenConstraintOn({On(6), On(7), On(6, "null")});
  EXPECT_EQ(Upgrade(20, {"UpgradeBodySupport"}), S_OK);
  EXPECT_EQ(SupportedObjects(), (Ids{6, 4, 4}));  // one without a context stays
}

TEST_F(HVXERigidBodyConstraintUpgradeTest, AnObjectThatIsBothKindsOfBodyGoesThroughBothRoutines) {
  GivenConstraintOn({On(8)});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {"UpgradeBodySupport"}), S_OK);
  EXPECT_EQ(SupportedObjects(), (Ids{4}));
  EXPECT_EQ(Calls("VLMISamAnalysisSupport::"),
            (CallList{"VLMISamAnalysisSupport::ListSupports #20", "VLMISamAnalysisSupport::TakeOut #20",
                      "VLMISamAnalysisSupport::PutIn #20", "VLMISamAnalysisSupport::GetContainerOf #20"}));
}

TEST_F(HVXERigidBodyConstraintUpgradeTest, MeshPartIsMadeAndFilledFromTheSupports) {
  GivenConstraintOn({On(7), On(4, "null"), On(6)});
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {"UpgradeToConnMeshPart"}), S_OK);
  EXPECT_EQ(
      Line(24),
      R"({"id":24,"type":"MSHMeshPart","name":"MSHMeshPart.24","father":{"ref":20},"container":{"ref":1},)"
      R"("upToDate":false,"attributes":{"MeshType":"Connection","Supports":[{"ref":25},{"ref":26}]}})");
  EXPECT_EQ(Line(25), R"({"id":25,"type":"GeometrySmartConnector","name":"GeometrySmartConnector.25",)"
                      R"("father":{"ref":24},"container":{"ref":1},"attributes":)" +
                          On(7) + "}");
  EXPECT_EQ(SupportedObjects(24), (Ids{7, 6}));
  EXPECT_EQ(Calls("HVXIRigidBodyConstraint::"),
            (CallList{"HVXIRigidBodyConstraint::GetMeshPart #20 MeshPart",
                      "HVXIRigidBodyConstraint::CreateMeshPart #20",
                      "HVXIRigidBodyConstraint::GetMeshPart #20 MeshPart"}));

  const std::string filled = Lines();
  EXPECT_EQ(Upgrade(20, {"UpgradeToConnMeshPart"}), S_OK);
  EXPECT_EQ(Lines(), filled);
}

TEST_F(HVXERigidBodyConstraintUpgradeTest, FillingStopsAtTheFirstRefusal) {
  GivenConstraintOn({On(7), On(6, R"({"ref":3})"), On(4)});  // a part is no product
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {"UpgradeToConnMeshPart"}), S_OK);
  EXPECT_EQ(SupportedObjects(24), (Ids{7}));
  EXPECT_EQ(Calls("VLMIMSHMeshPart::AddSupport").size(), 2U);
}

TEST_F(HVXERigidBodyConstraintUpgradeTest, MeshPartThatCannotBeHadIsNotFilled) {
  GivenConstraintOn({On(7)});
  EXPECT_EQ(UpgradeUnder(Failing("HVXIRigidBodyConstraint::CreateMeshPart"), 20, {"UpgradeToConnMeshPart"}),
            S_OK);
  EXPECT_EQ(Calls("HVXIRigidBodyConstraint::").size(), 2U);
  EXPECT_EQ(UpgradeUnder(Failing("HVXIRigidBodyConstraint::GetMeshPart"), 20, {"UpgradeToConnMeshPart"}),
            S_OK);
  EXPECT_EQ(Calls("VLMIMSHMeshPart::"), CallList{});
}

TEST_F(HVXERigidBodyConstraintUpgradeTest, GroupsOfSupportsBecomeSupports) {
  GivenConstraintOn(
      {On(30), On(7), On(30, "null"), On(31)},
      R"({"id":30,"type":"SAMGroup","attributes":{"GroupKind":1,"Members":[{"ref":32},{"ref":33}]}}
                       {"id":31,"type":"SAMProximityGroup"}
                       {"id":32,"type":"GeometrySmartConnector","father":{"ref":30},"attributes":{"FirstObject":{"ref":4},"SecondObject":{"ref":9}}}
                       {"id":33,"type":"GeometrySmartConnector","father":{"ref":30},"attributes":{"FirstObject":{"ref":6},"SecondObject":{"ref":9}}})",
      R"(,"SupportListMode":0,"SupportListKinds":2)");
  EXPECT_EQ(UpgradeUnder(Recording(), 20, {"UpgradeGroupToSupport"}), S_OK);
  // The mode is set first, so that the group is listed as the support that it is; one without a context
  // stays.
  EXPECT_EQ(SupportedObjects(), (Ids{7, 30, 31, 6, 6}));
  EXPECT_EQ(Doc().FindAttribute(At(20), standalone::Key("SupportListMode").Id()), nullptr);
  EXPECT_EQ(
      Calls("VLMISamAnalysisSupport::"),
      (CallList{"VLMISamAnalysisSupport::SetMode #20", "VLMISamAnalysisSupport::ListSupports #20",
                "VLMISamAnalysisSupport::AddSupports #20", "VLMISamAnalysisSupport::RemoveSupport #20"}));
}

// A support that is no connector, points at nothing, or has no context is passed over wherever it stands.
TEST_F(HVXERigidBodyConstraintUpgradeTest, ASupportThatIsPassedOverDoesNotEndTheWalk) {
  const std::string group =
      R"({"id":30,"type":"SAMGroup","attributes":{"GroupKind":1,"Members":[{"ref":31}]}}
         {"id":31,"type":"GeometrySmartConnector","father":{"ref":30},"attributes":{"FirstObject":{"ref":4}}})";
  for (const std::string& first : {On(4), On(7, "null"), std::string(R"({"FirstObject":null})")}) {
    const auto supportsAfter = [&](const char* identifier, int second) {
      GivenConstraintOn({first, On(second)}, group);
      EXPECT_EQ(UpgradeUnder(first == On(4) ? Withholding("VLMISamAnalysisConnector", 21) : Recording(), 20,
                             {identifier}),
                S_OK);
      return Line(22);
    };
    EXPECT_EQ(supportsAfter("UpgradeBodySupport", 7), "removed") << first;
    EXPECT_EQ(supportsAfter("UpgradeGroupToSupport", 30), "removed") << first;
    static_cast<void>(supportsAfter("UpgradeToConnMeshPart", 7));
    EXPECT_EQ(Calls("VLMIMSHMeshPart::AddSupport").size(), 1U) << first;
  }
}

TEST_F(HVXERigidBodyConstraintUpgradeTest, CenterOfMassIsUsedWithoutAReference) {
  GivenConstraintOn({On(7)}, "", R"(,"CenterOfMass":0)");
  EXPECT_EQ(Upgrade(20, {"AddCenterOfMassToRBC"}), S_OK);
  EXPECT_THAT(Line(20), testing::HasSubstr(R"("CenterOfMass":1)"));
  GivenConstraintOn({On(7)}, "", R"(,"ReferenceConnector":{"ref":21},"CenterOfMass":1)");
  EXPECT_EQ(Upgrade(20, {"AddCenterOfMassToRBC"}), S_OK);
  EXPECT_THAT(Line(20), testing::HasSubstr(R"("CenterOfMass":0)"));
  try {
    static_cast<void>(UpgradeUnder(Withholding("HVXIRigidBodyConstraint", 20), 20, {"AddCenterOfMassToRBC"}));
    ADD_FAILURE() << "no assertion";
  } catch (const VLMFatalAssertion& assertion) {
    EXPECT_STREQ(assertion.what(), "AssertionFailed:NULL_var != spConstraint");
    EXPECT_EQ(assertion.SourcePath(), "HVXUpgradeComponents.m/src/HVXERigidBodyConstraintUpgrade");
  }
}

TEST_F(HVXERigidBodyConstraintUpgradeTest, OnlyTheHostsUpgradeStopsTheUpgrade) {
  GivenConstraintOn({});
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(20, {"UpgradeBodySupport", "UpgradeGroupToSupport"}), S_OK);
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamUpgrade::Upgrade", "", -77), 20,
                         {"UpgradeToConnMeshPart", "UpgradeBasicComponents", "AddCenterOfMassToRBC"}),
            -77);
  EXPECT_EQ(Calls("HVXIRigidBodyConstraint::SetCenterOfMass"), CallList{});
}

}  // namespace
