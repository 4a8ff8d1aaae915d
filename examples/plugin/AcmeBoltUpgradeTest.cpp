// Each test states old bolts, runs upgrades on one, and states what it must be then.

#include "UpgradeTest.h"

const char* testing_support::LibraryFile() {
  return ACME_LIBRARY;
}

namespace {

using testing_support::Failing;

TEST(AcmeUpgradesTest, TheLibraryIsSound) {
  EXPECT_EQ(testing_support::FaultsOf(testing_support::Library()), std::vector<std::string>());
}

class AcmeBoltUpgradeTest : public testing_support::UpgradeTest {};

TEST_F(AcmeBoltUpgradeTest, TheDiameterIsStoredInMetres) {
  Given(R"({"id":1,"type":"AcmeBoltLT","attributes":{"DiameterMm":12.0,"Washer":true}})");
  EXPECT_EQ(Upgrade(1, {"AcmeBoltDiameterInMetres"}), S_OK);
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AcmeBoltLT","attributes":{"Washer":true,"Diameter":0.012}})");
}

TEST_F(AcmeBoltUpgradeTest, APropertyClassBecomesStrengths) {
  Given(R"({"id":1,"type":"AcmeBoltLT","attributes":{"PropertyClass":"10.9"}})");
  EXPECT_EQ(Upgrade(1, {"AcmeBoltStrengths"}), S_OK);
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AcmeBoltLT","attributes":{"TensileStrength":1000000000.0,)"
                     R"("YieldStrength":900000000.0}})");
}

TEST_F(AcmeBoltUpgradeTest, WhatIsMigratedAlreadyStaysAsItIs) {
  Given(R"({"id":1,"type":"AcmeBoltLT","attributes":{"Diameter":0.02}}
           {"id":2,"type":"AcmeBoltLT"})");
  const std::string before = Lines();
  for (const FeatureId bolt : {1, 2})
    EXPECT_EQ(Upgrade(bolt, {"AcmeBoltDiameterInMetres", "AcmeBoltStrengths"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(AcmeBoltUpgradeTest, WhatIsNoPropertyClassStays) {
  for (const char* const text : {"high", "8", "8.", ".8", "8.8 ", "8.0", "0.8"}) {
    Given(R"({"id":1,"type":"AcmeBoltLT","attributes":{"PropertyClass":")" + std::string(text) + R"("}})");
    const std::string before = Lines();
    EXPECT_EQ(Upgrade(1, {"AcmeBoltStrengths"}), S_OK) << text;  // the table ignores the failure ...
    EXPECT_EQ(Lines(), before) << text;                          // ... and nothing is lost
  }
}

// Whichever call of the host fails, the old value is there until the new one is.
TEST_F(AcmeBoltUpgradeTest, AFailingCallLosesNothing) {
  for (const char* const call : {"VLMISpecAttrAccess::GetReal", "VLMISpecAttrAccess::AddAttribute",
                                 "VLMISpecAttrAccess::SetReal", "VLMISpecAttrAccess::RemoveAttribute"}) {
    Given(R"({"id":1,"type":"AcmeBoltLT","attributes":{"DiameterMm":12.0}})");
    EXPECT_EQ(UpgradeUnder(Failing(call), 1, {"AcmeBoltDiameterInMetres"}), E_FAIL) << call;
    EXPECT_NE(Line(1).find(R"("DiameterMm":12.0)"), std::string::npos) << call;
    EXPECT_EQ(Upgrade(1, {"AcmeBoltDiameterInMetres"}), S_OK) << call;  // and again, when it works
    EXPECT_EQ(Line(1), R"({"id":1,"type":"AcmeBoltLT","attributes":{"Diameter":0.012}})") << call;
  }
}

}  // namespace
