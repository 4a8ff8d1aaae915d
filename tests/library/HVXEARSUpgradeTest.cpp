#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A rigid surface (#1) with a mesh part (#2), and one (#3) without.
class HVXEARSUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(R"({"id":1,"type":"HVXARSurfLT","attributes":{"MeshPart":{"ref":2}}}
             {"id":2,"type":"MSHMeshPart","father":{"ref":1}}
             {"id":3,"type":"HVXARSurfLT"})");
  }
};

TEST_F(HVXEARSUpgradeTest, TheMeshPartGoesOutOfDateBeforeTheSurface) {
  EXPECT_EQ(UpgradeUnder(Recording(), 1, {"MakeOutOfdateARS"}), S_OK);
  const CallList once = {"VLMISpecObject::SetUpToDate #2", "VLMISpecObject::SetUpToDate #1"};
  EXPECT_EQ(Calls("VLMISpecObject"), once);
  EXPECT_EQ(Line(1), R"({"id":1,"type":"HVXARSurfLT","upToDate":false,"attributes":{"MeshPart":{"ref":2}}})");
  EXPECT_EQ(Line(2), R"({"id":2,"type":"MSHMeshPart","father":{"ref":1},"upToDate":false})");

  const std::string before = Lines();
  EXPECT_EQ(UpgradeUnder(Recording(), 1, {"MakeOutOfdateARS", "MakeOutOfdateARS"}), S_OK);
  EXPECT_EQ(Calls("VLMISpecObject"), (CallList{once[0], once[1], once[0], once[1]}));
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXEARSUpgradeTest, ASurfaceWithoutMeshPartIsMarkedAlone) {
  EXPECT_EQ(Upgrade(3, {"MakeOutOfdateARS"}), S_OK);
  EXPECT_FALSE(At(3).upToDate);
  // Nor is a mesh part that cannot be told a failure.
  EXPECT_EQ(UpgradeUnder(Failing("HVXIARSurf::GetMeshPart"), 1, {"MakeOutOfdateARS"}), S_OK);
  EXPECT_FALSE(At(1).upToDate);
  EXPECT_TRUE(At(2).upToDate);
}

TEST_F(HVXEARSUpgradeTest, OnlyTheSurfacesOwnInterfaceIsMandatory) {
  const std::string before = Lines();
  EXPECT_EQ(UpgradeUnder(Withholding("HVXIARSurf"), 1, {"MakeOutOfdateARS"}), S_OK);
  EXPECT_EQ(Lines(), before);
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecObject", 2), 1, {"MakeOutOfdateARS"}), S_OK);
  EXPECT_TRUE(At(2).upToDate);
  EXPECT_FALSE(At(1).upToDate);
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecObject", 1), 1, {"MakeOutOfdateARS"}), S_OK);
  EXPECT_FALSE(At(2).upToDate);
}

}  // namespace
