#include <gmock/gmock.h>

#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A spring (#10) with mesh part #11, operator #12 and mesher #13; its designs #20 (unfilled, resting on point
// #2 in product #3) and #21 (filled, point #4 in product #3); a property set #30 with virtual parts #31 (mesh
// parts #33 and #34) and #32. At point #2 the solid mesh part #5 and the connection mesh part #6 are
// attached.
class HVXESpringUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenSpring(const std::string& designs = R"([{"ref":20},{"ref":21}])", const std::string& more = {}) {
    Given(R"({"id":1,"type":"AnalysisModel"}
             {"id":2,"type":"Point"}
             {"id":3,"type":"Product"}
             {"id":4,"type":"Point"}
             {"id":5,"type":"MSHMeshPart","attributes":{"MeshType":"Solid"}}
             {"id":6,"type":"MSHMeshPart","attributes":{"MeshType":"Connection"}}
             {"id":10,"type":"HVXSpringLT","attributes":{"MeshPart":{"ref":11},"ConnectionDesigns":)" +
          designs + R"(}}
             {"id":11,"type":"MSHMeshPart","father":{"ref":10},"attributes":{"MeshingOperator":{"ref":12}}}
             {"id":12,"type":"MSHMeshingOperator","father":{"ref":11},"attributes":{"ConnectionMesher":{"ref":13}}}
             {"id":13,"type":"MSHConnectionMesher","father":{"ref":12},"attributes":{"Points":[{"ref":2},{"ref":2}],"Products":[{"ref":3},{"ref":3}],"MeshParts":[{"ref":5},{"ref":6}]}}
             {"id":20,"type":"SAMGenericConnDesign","attributes":{"Supports":[{"ref":22},{"ref":23}]}}
             {"id":21,"type":"SAMGenericConnDesign","attributes":{"Points":[{"ref":4}],"Products":[{"ref":3}]}}
             {"id":22,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":3}}}
             {"id":23,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":4},"SecondObject":null}}
             {"id":30,"type":"PropertySet","father":{"ref":1}}
             {"id":31,"type":"HVXVirtualPartLT","father":{"ref":30},"attributes":{"MeshParts":[{"ref":33},{"ref":34}]}}
             {"id":32,"type":"HVXRigidVirtualPartLT","father":{"ref":30}}
             {"id":33,"type":"MSHMeshPart","father":{"ref":31}}
             {"id":34,"type":"MSHMeshPart","father":{"ref":31}}
             {"id":35,"type":"SAMFaceFaceFastened","father":{"ref":30}}
          )" +
          more);
  }
  std::vector<standalone::FeatureId> OutOfDate() {
    std::vector<standalone::FeatureId> ids;
    for (const standalone::Feature* each = Doc().First(); each != nullptr; each = each->next) {
      if (!each->upToDate) ids.push_back(each->id);
    }
    return ids;
  }
  using Ids = std::vector<standalone::FeatureId>;
};

TEST_F(HVXESpringUpgradeTest, ModeOfTheMeshPartLinkIsSetOnce) {
  Given(R"({"id":1,"type":"HVXSpringLT","attributes":{"MeshPart":{"ref":3}}}
           {"id":2,"type":"HVXDamperLT","attributes":{"MeshPart":{"ref":3}},"modes":{"MeshPart":1}}
           {"id":3,"type":"MSHMeshPart"}
           {"id":4,"type":"HVXSpringLT","attributes":{"Stiffness":5.0}})");
  EXPECT_EQ(UpgradeUnder(Recording(), 1, {"UpgradeSpringConnectionProperty"}), S_OK);
  EXPECT_EQ(Line(1),
            R"({"id":1,"type":"HVXSpringLT","attributes":{"MeshPart":{"ref":3}},"modes":{"MeshPart":1}})");
  EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeSpringConnectionProperty"}), S_OK);
  EXPECT_EQ(Calls("VLMISpecAttrAccess::SetMode"), CallList{});
  EXPECT_EQ(Upgrade(4, {"UpgradeSpringConnectionProperty"}), S_OK);
  EXPECT_EQ(Line(4), R"({"id":4,"type":"HVXSpringLT","attributes":{"Stiffness":5.0}})");
}

TEST_F(HVXESpringUpgradeTest, ExplicitationReachesTheVirtualPartsOfTheOnePropertySet) {
  GivenSpring();
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgradeSpringMeshExplicitation"}), S_OK);
  EXPECT_EQ(Calls("VLMISpecObject::SetUpToDate"),
            (CallList{"VLMISpecObject::SetUpToDate #11", "VLMISpecObject::SetUpToDate #10",
                      "VLMISpecObject::SetUpToDate #31", "VLMISpecObject::SetUpToDate #33",
                      "VLMISpecObject::SetUpToDate #34", "VLMISpecObject::SetUpToDate #32"}));

  GivenSpring("[]", R"({"id":40,"type":"PropertySet"})");
  EXPECT_EQ(Upgrade(10, {"UpgradeSpringMeshExplicitation"}), S_OK);
  EXPECT_EQ(OutOfDate(), (Ids{10, 11}));  // of two property sets neither is the spring's
}

TEST_F(HVXESpringUpgradeTest, OrphanPointsOnAConnectionMeshTheSpringAgain) {
  GivenSpring();
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK);
  EXPECT_EQ(OutOfDate(), (Ids{11}));
  EXPECT_EQ(Calls("HVXISamAnalysisConnectionDesign::"),
            (CallList{"HVXISamAnalysisConnectionDesign::GetPoints #20 Points",
                      "HVXISamAnalysisConnectionDesign::GetProducts #20 Products",
                      "HVXISamAnalysisConnectionDesign::FillFromPoints #20",
                      "HVXISamAnalysisConnectionDesign::FillFromProducts #20",
                      "HVXISamAnalysisConnectionDesign::GetPoints #21 Points",
                      "HVXISamAnalysisConnectionDesign::GetProducts #21 Products"}));
  // The second filling leaves out the support that no product belongs to.
  EXPECT_THAT(Line(20), testing::HasSubstr(R"("Points":[{"ref":2}],"Products":[{"ref":3}])"));
  EXPECT_EQ(Calls("VLMIMSHConnectionMesher::ListMeshPartsAtPoint").size(), 2U);
  EXPECT_EQ(Calls("VLMIMSHMeshPart::IsOfType"),
            (CallList{"VLMIMSHMeshPart::IsOfType #5 Connection", "VLMIMSHMeshPart::IsOfType #6 Connection"}));

  GivenSpring();  // what is no mesh part does not end the search
  EXPECT_EQ(UpgradeUnder(Withholding("VLMIMSHMeshPart", 5), 10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK);
  EXPECT_EQ(OutOfDate(), (Ids{11}));
}

TEST_F(HVXESpringUpgradeTest, WithoutAConnectionAtItsPointsTheSpringIsNotMeshedAgain) {
  GivenSpring(R"([{"ref":21}])");
  EXPECT_EQ(Upgrade(10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK);
  EXPECT_EQ(OutOfDate(), Ids{});
  GivenSpring("[]");
  EXPECT_EQ(Upgrade(10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK);
  EXPECT_EQ(OutOfDate(), Ids{});
  GivenSpring();
  static_cast<void>(
      standalone::WriteAttribute(At(6), standalone::Key("MeshType"), VLMUnicodeString("Shell")));
  EXPECT_EQ(Upgrade(10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK);
  EXPECT_EQ(OutOfDate(), Ids{});
  for (const char* const operation :
       {"VLMIMSHMeshPart::GetMeshingOperator", "VLMIMSHMeshingOperator::GetConnectionMesher",
        "VLMIMSHConnectionMesher::ListMeshPartsAtPoint", "HVXISpring::GetMeshPart"}) {
    GivenSpring();
    EXPECT_EQ(UpgradeUnder(Failing(operation), 10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK) << operation;
    EXPECT_EQ(OutOfDate(), Ids{}) << operation;
  }
}

TEST_F(HVXESpringUpgradeTest, AFillThatWouldLoseAPointChangesNothing) {
  const std::string design =
      R"({"id":40,"type":"SAMGenericConnDesign","attributes":{"Points":[{"ref":2},{"ref":4}],"Supports":[]}})";
  GivenSpring(R"([{"ref":40}])", design);
  EXPECT_EQ(Upgrade(10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK);
  EXPECT_EQ(Line(40), design);
}

TEST_F(HVXESpringUpgradeTest, ADesignThatIsNoneEndsTheRoutine) {
  GivenSpring(R"([{"ref":20},{"ref":2},{"ref":20}])");
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {"UpgradeSpringMeshOnOrphanPoint"}), S_OK);
  EXPECT_EQ(OutOfDate(), Ids{});  // what was found before does not count
  EXPECT_EQ(Calls("HVXISamAnalysisConnectionDesign::GetPoints").size(), 1U);
}

TEST_F(HVXESpringUpgradeTest, AListThatFailsIsNotFilled) {
  GivenSpring(R"([{"ref":20}])");
  EXPECT_EQ(UpgradeUnder(Failing("HVXISamAnalysisConnectionDesign::GetProducts"), 10,
                         {"UpgradeSpringMeshOnOrphanPoint"}),
            S_OK);
  EXPECT_EQ(Calls("HVXISamAnalysisConnectionDesign::FillFromProducts"), CallList{});
  // Filling from the points gives both lists, the second point without a product.
  EXPECT_THAT(Line(20), testing::HasSubstr(R"("Points":[{"ref":2},{"ref":4}],"Products":[{"ref":3},null])"));
  EXPECT_EQ(OutOfDate(), (Ids{11}));
  GivenSpring(R"([{"ref":21}])");
  EXPECT_EQ(UpgradeUnder(Failing("HVXISamAnalysisConnectionDesign::GetProducts"), 10,
                         {"UpgradeSpringMeshOnOrphanPoint"}),
            S_OK);  // points without products
  EXPECT_EQ(UpgradeUnder(Withholding("HVXISpring", 10), 10,
                         {"UpgradeSpringMeshExplicitation", "UpgradeSpringMeshOnOrphanPoint"}),
            S_OK);
  EXPECT_EQ(OutOfDate(), Ids{});
}

}  // namespace
