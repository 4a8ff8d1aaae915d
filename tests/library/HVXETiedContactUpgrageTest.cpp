#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;

// A tie (#10) on a connection property (#3), which connects a design (#2) with the product (#1).
class HVXETiedContactUpgrageTest : public testing_support::UpgradeTest {
 protected:
  void GivenTie(const std::string& propertyType, const std::string& name, const std::string& attributes) {
    Given(R"({"id":1,"type":"Product"}
             {"id":2,"type":"SAMGenericConnDesign"}
             {"id":3,"type":")" +
          propertyType +
          R"(","attributes":{"Supports":[{"ref":4}]}}
             {"id":4,"type":"GeometrySmartConnector","father":{"ref":3},)"
          R"("attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":1}}}
             {"id":10,"type":"HVXTiedContactLT","alias":")" +
          name + R"(","attributes":{)" + attributes +
          R"("Supports":[{"ref":11}]}}
             {"id":11,"type":"GeometrySmartConnector","father":{"ref":10},)"
          R"("attributes":{"FirstObject":{"ref":3},"SecondObject":{"ref":1}}})");
  }

  static constexpr const char* kProperty = R"("connectionProperty":{"ref":3},)";
  static constexpr const char* kIdentifier = "UpgCCPToGACOrConstraintAsSupp";
};

TEST_F(HVXETiedContactUpgrageTest, SupportMovesAndThenTheNameChanges) {
  GivenTie("SAMFaceFaceFastened", "Fastened Connection Enhancement-2", kProperty);
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {kIdentifier}), S_OK);
  EXPECT_EQ(Line(10), R"({"id":10,"type":"HVXTiedContactLT","alias":"Fastened Pair-2",)"
                      R"("attributes":{"connectionProperty":{"ref":3},"Supports":[{"ref":12}]}})");
  EXPECT_EQ(Line(11), "removed");
  EXPECT_EQ(Line(12),
            R"({"id":12,"type":"GeometrySmartConnector","name":"GeometrySmartConnector.12",)"
            R"("father":{"ref":10},"attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":1}}})");
  const CallList calls = Calls();
  EXPECT_EQ(calls.back(), "VLMIAlias::SetExternalName #10 Fastened Pair-2");
}

TEST_F(HVXETiedContactUpgrageTest, OtherPropertiesKeepTheirSupportAndTheTieIsRenamed) {
  for (const char* const type : {"ConstraintASM", "SAMGenericConnDesign", "SAMFaceFaceContact"}) {
    GivenTie(type, "Fastened Connection Enhancement-7", kProperty);
    EXPECT_EQ(Upgrade(10, {kIdentifier}), S_OK);
    EXPECT_EQ(Line(10), R"({"id":10,"type":"HVXTiedContactLT","alias":"Fastened Pair-7",)"
                        R"("attributes":{"connectionProperty":{"ref":3},"Supports":[{"ref":11}]}})");
  }
  GivenTie("SAMFaceFaceFastened", "Fastened Connection Enhancement-8", R"("connectionProperty":null,)");
  EXPECT_EQ(Upgrade(10, {kIdentifier}), S_OK);
  EXPECT_EQ(At(10).externalName, "Fastened Pair-8");
}

TEST_F(HVXETiedContactUpgrageTest, TieWhoseSupportCannotBeMovedKeepsItsName) {
  GivenTie("SAMFaceFaceFastened", "Fastened Connection Enhancement-2", "");
  EXPECT_EQ(Upgrade(10, {kIdentifier}), S_OK);
  EXPECT_EQ(At(10).externalName, "Fastened Connection Enhancement-2");

  GivenTie("SAMFaceFaceFastened", "Fastened Connection Enhancement-2", kProperty);
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamAnalysisSupport::AddSupport"), 10, {kIdentifier}), S_OK);
  EXPECT_EQ(At(10).externalName, "Fastened Connection Enhancement-2");
}

TEST_F(HVXETiedContactUpgrageTest, TheAttributeTellsThePropertyAndItsFirstSupportCounts) {
  Given(R"({"id":1,"type":"Product"}
           {"id":2,"type":"SAMGenericConnDesign"}
           {"id":3,"type":"SAMFaceFaceFastened","attributes":{"Supports":[{"ref":4},{"ref":5}]}}
           {"id":4,"type":"GeometrySmartConnector","father":{"ref":3},"attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":1}}}
           {"id":5,"type":"GeometrySmartConnector","father":{"ref":3},"attributes":{"FirstObject":{"ref":6},"SecondObject":{"ref":1}}}
           {"id":6,"type":"SAMGenericConnDesign"}
           {"id":7,"type":"SAMFaceFaceContact","attributes":{"Supports":[{"ref":5}]}}
           {"id":10,"type":"HVXTiedContactLT","attributes":{"connectionProperty":{"ref":3},"Supports":[{"ref":11}]}}
           {"id":11,"type":"GeometrySmartConnector","father":{"ref":10},"attributes":{"FirstObject":{"ref":7},"SecondObject":{"ref":1}}})");
  EXPECT_EQ(Upgrade(10, {kIdentifier}), S_OK);
  EXPECT_EQ(Line(12),
            R"({"id":12,"type":"GeometrySmartConnector","name":"GeometrySmartConnector.12",)"
            R"("father":{"ref":10},"attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":1}}})");
}

TEST_F(HVXETiedContactUpgrageTest, PreparationOfTheSupportsIsNotLookedAt) {
  GivenTie("SAMFaceFaceFastened", "Fastened Connection Enhancement-2", kProperty);
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamAnalysisSupport::PrepareSupports"), 10, {kIdentifier}), S_OK);
  EXPECT_EQ(At(10).externalName, "Fastened Pair-2");
}

TEST_F(HVXETiedContactUpgrageTest, TheFirstOldNameAnywhereIsReplaced) {
  for (const auto& [old, now] :
       {std::pair{"My Fastened Connection Enhancement-2", "My Fastened Pair-2"},
        {"Fastened Connection Enhancement-2, Fastened Connection Enhancement-2",
         "Fastened Pair-2, Fastened Connection Enhancement-2"},
        {"fastened connection enhancement-2", "fastened connection enhancement-2"}}) {
    GivenTie("ConstraintASM", old, kProperty);
    EXPECT_EQ(Upgrade(10, {kIdentifier}), S_OK);
    EXPECT_EQ(At(10).externalName, now);
  }
}

TEST_F(HVXETiedContactUpgrageTest, NameIsWrittenBackEvenWhenItStays) {
  GivenTie("ConstraintASM", "Bolt Tie", kProperty);
  EXPECT_EQ(UpgradeUnder(Recording(), 10, {kIdentifier}), S_OK);
  EXPECT_EQ(Calls("VLMIAlias::Set"), CallList{"VLMIAlias::SetExternalName #10 Bolt Tie"});
}

TEST_F(HVXETiedContactUpgrageTest, IdentifierNamedForTheRenameDoesNothing) {
  GivenTie("ConstraintASM", "Fastened Connection Enhancement-2", kProperty);
  const std::string before = Lines();
  EXPECT_EQ(Upgrade(10, {"UpgradeFastenedConnectionEnhancementToFastenedPair"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

}  // namespace
