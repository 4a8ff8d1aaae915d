// The conditions whose migration trims the sons that an old release listed.

#include <fmt/format.h>

#include <algorithm>

#include "base/VLMFatalError.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

class SonsListTest : public testing_support::UpgradeTest {
 protected:
  // Condition #2, whose sons #3, #4, ... are basic components of these names; "-" is a connector. All are
  // listed.
  void GivenSons(const std::string& lateType, const std::vector<std::string>& names) {
    std::string list;
    std::string sons;
    int id = 3;
    for (const std::string& name : names) {
      if (!list.empty()) list += ",";
      list += fmt::format(R"({{"ref":{}}})", id);
      sons += fmt::format(R"({{"id":{},"type":"{}","name":"{}","father":{{"ref":2}}}})"
                          "\n",
                          id, name == "-" ? "GeometrySmartConnector" : "SAMBasicComponent", name);
      ++id;
    }
    Given(fmt::format(R"({{"id":1,"type":"AnalysisModel","attributes":{{"FeatList":[]}}}}
                         {{"id":2,"type":"{}","father":{{"ref":1}},"attributes":{{"SonsList":[{}]}}}}
                         {})",
                      lateType, list, sons));
  }

  // What the sons list holds, by id.
  std::vector<standalone::FeatureId> Listed() {
    std::vector<standalone::FeatureId> ids;
    static const standalone::Key sonsList("SonsList");
    for (const standalone::Feature* son : standalone::LinkedFeatures(At(2), sonsList)) ids.push_back(son->id);
    return ids;
  }
  using Ids = std::vector<standalone::FeatureId>;

  [[nodiscard]] bool IsRegistered() { return Line(1).find(R"([{"ref":2}])") != std::string::npos; }

  void ExpectAssertion(const char* withheld, const char* identifier, const std::string& message,
                       const std::string& source) {
    try {
      static_cast<void>(UpgradeUnder(Withholding(withheld, 2), 2, {identifier}));
      FAIL() << message;
    } catch (const VLMFatalAssertion& assertion) {
      EXPECT_EQ(assertion.what(), "AssertionFailed:NULL_var != " + message);
      EXPECT_EQ(assertion.SourcePath(), "HVXUpgradeComponents.m/src/" + source);
    }
  }
};

TEST_F(SonsListTest, DisplacementKeepsTwoSons) {
  GivenSons("HVXDisplacementBC", {"-", "DisplBCTrans", "AxisSystemType", "DisplBCTrans", "DisplBCTrans"});
  EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeDispBCBasicComponents"}), S_OK);
  EXPECT_EQ(Listed(), (Ids{3, 5}));
  EXPECT_TRUE(IsRegistered());
  const CallList calls = Calls();
  EXPECT_LT(std::ranges::find(calls, "VLMISpecObject::RemoveSon #2 DisplBCTrans"),
            std::ranges::find(calls, "VLMISamUpgrade::Upgrade #2"));
  EXPECT_EQ(calls.back(), "VLMIModelEvents::Dispatch #2 VLMBaseUnknown");
}

TEST_F(SonsListTest, DisplacementWithAnotherNumberOfSonsIsNeitherUpgradedNorRegisteredButAnnounced) {
  for (const std::vector<std::string>& sons : {std::vector<std::string>{"-"},
                                               {"-", "DisplBCTrans"},
                                               {"-", "AxisSystemType", "Other", "DisplBCTrans"}}) {
    GivenSons("HVXDisplacementBC", sons);
    EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeDispBCBasicComponents"}), S_OK);
    EXPECT_EQ(Calls("VLMISamUpgrade::"), CallList{});
    EXPECT_FALSE(IsRegistered());
    EXPECT_EQ(Calls("VLMIModelEvents::").size(), 1U);
  }
  EXPECT_EQ(Listed(), (Ids{3, 4, 5}));  // trimmed all the same
}

TEST_F(SonsListTest, ATrimmedDisplacementIsRegisteredWithoutTheHostUpgrade) {
  GivenSons("HVXDisplacementBC", {"-", "AxisSystemType"});
  EXPECT_EQ(UpgradeUnder(Failing("VLMISamUpgrade::Upgrade"), 2, {"UpgradeDispBCBasicComponents"}), S_OK);
  EXPECT_TRUE(IsRegistered());
}

TEST_F(SonsListTest, DisplacementsFirstSonStaysWhateverItIs) {
  GivenSons("HVXDisplacementBC", {"DisplBCTrans", "AxisSystemType"});
  EXPECT_EQ(Upgrade(2, {"UpgradeDispBCBasicComponents"}), S_OK);
  EXPECT_EQ(Listed(), (Ids{3, 4}));
}

// Only layouts on which the second pass has an end.
TEST_F(SonsListTest, ConcentratedForceRemovesFromBehindAndThenAtPositionTwo) {
  struct Case {
    std::vector<std::string> sons;
    Ids left;
  };
  const Case cases[] = {
      {{"-", "AxisSystemType"}, {3, 4}},
      {{"-", "ConcForce", "AxisSystemType"}, {3, 5}},
      {{"-", "ConcForce", "ConcForce", "AxisSystemType", "ConcForceMoment", "ConcForce"}, {3, 6}},
      {{"-", "ConcForce", "ConcForce", "ConcForce", "ConcForce"}, {3, 6}},
  };
  for (const Case& each : cases) {
    GivenSons("HVXConcentratedForce", each.sons);
    EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeConcForceBasicComponents"}), S_OK);
    EXPECT_EQ(Listed(), each.left);
    EXPECT_TRUE(IsRegistered());
    EXPECT_EQ(Calls().back(), "VLMIModelEvents::Dispatch #2 VLMBaseUnknown");
  }
}

TEST_F(SonsListTest, AForceWithTooFewSonsFailsAtOnce) {
  for (const std::vector<std::string>& sons : {std::vector<std::string>{}, {"-"}}) {
    GivenSons("HVXConcentratedForce", sons);
    EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeConcForceBasicComponents"}), S_OK);
    EXPECT_EQ(Calls("VLMISpecAttrAccess::GetObject"), CallList{});
    EXPECT_FALSE(IsRegistered());
    EXPECT_EQ(Calls("VLMIModelEvents::").size(), 1U);
  }
}

TEST_F(SonsListTest, AForceWhoseSonsCannotBeRemovedFailsInTheEnd) {
  GivenSons("HVXConcentratedForce", {"-", "ConcForce", "AxisSystemType"});
  EXPECT_EQ(UpgradeUnder(Failing("VLMISpecObject::RemoveSon"), 2, {"UpgradeConcForceBasicComponents"}), S_OK);
  EXPECT_FALSE(IsRegistered());
}

TEST_F(SonsListTest, TrimsNeedTheListAndTheFeaturesOwnInterfaces) {
  Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
           {"id":2,"type":"HVXDisplacementBC","father":{"ref":1}}
           {"id":3,"type":"HVXConcentratedForce","father":{"ref":1}})");
  EXPECT_EQ(Upgrade(2, {"UpgradeDispBCBasicComponents"}), S_OK);
  EXPECT_EQ(Upgrade(3, {"UpgradeConcForceBasicComponents"}), S_OK);
  EXPECT_EQ(Line(1), R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}})");

  GivenSons("HVXDisplacementBC", {"-", "AxisSystemType"});
  ExpectAssertion("VLMISpecAttrAccess", "UpgradeDispBCBasicComponents", "spAttrAccessOnBC",
                  "HVXEDisplacementBCUpgrade");
  ExpectAssertion("VLMISpecObject", "UpgradeDispBCBasicComponents", "spSpecOnSelf",
                  "HVXEDisplacementBCUpgrade");
  GivenSons("HVXConcentratedForce", {"-", "AxisSystemType"});
  ExpectAssertion("VLMISpecAttrAccess", "UpgradeConcForceBasicComponents", "spAttrAccessOnConcForce",
                  "HVXEConcForceUpgrade");
  ExpectAssertion("VLMISpecObject", "UpgradeConcForceBasicComponents", "spSpecOnSelf",
                  "HVXEConcForceUpgrade");
}

TEST_F(SonsListTest, InitialVelocityKeepsItsFirstThreeSonsAndWhatIsNoComponent) {
  GivenSons("HVXInitialVelocityLT", {"HVXInitialVelocity_1", "HVXInitialVelocity_2", "HVXInitialVelocity_3",
                                     "InitialVelocityTrans", "-", "Other"});
  EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeInitialVelocityBasicComponents"}), S_OK);
  EXPECT_EQ(Listed(), (Ids{3, 4, 5, 7}));
  EXPECT_TRUE(IsRegistered());
  EXPECT_EQ(Calls().front(), "VLMISamUpgrade::Upgrade #2");
  EXPECT_EQ(
      Calls("VLMISpecObject::RemoveSon"),
      (CallList{"VLMISpecObject::RemoveSon #2 Other", "VLMISpecObject::RemoveSon #2 InitialVelocityTrans"}));

  GivenSons("HVXInitialVelocityLT", {"a", "b", "c"});
  EXPECT_EQ(Upgrade(2, {"UpgradeInitialVelocityBasicComponents"}), S_OK);
  EXPECT_EQ(Listed(), (Ids{3, 4, 5}));
}

TEST_F(SonsListTest, InitialVelocityGivesTheResultOfItsFirstRunOnly) {
  GivenSons("HVXInitialVelocityLT", {"a"});
  AlsoKnown("Other");
  EXPECT_EQ(UpgradeUnder(
                Failing("VLMISamUpgrade::Upgrade", "", -77), 2,
                {"Other", "UpgradeInitialVelocityBasicComponents", "UpgradeInitialVelocityBasicComponents"}),
            -77);
  EXPECT_EQ(Calls("VLMISamUpgrade::").size(), 1U);
  EXPECT_EQ(UpgradeUnder(Failing("VLMISpecAttrAccess::GetAttrKey", "SonsList"), 2,
                         {"UpgradeInitialVelocityBasicComponents"}),
            E_FAIL);
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecObject", 2), 2, {"UpgradeInitialVelocityBasicComponents"}),
            E_FAIL);
}

TEST_F(SonsListTest, SubmodelKeepsTheFirstOfEachParameter) {
  GivenSons("HVXSubmodelBCLT",
            {"Magnitude.2", "GlobalStepNumber", "Magnitude", "ScaleTimePeriod", "GlobalStepNumber.3",
             "Magnitude.2.1", "AbsoluteExteriorTolerance.1", "Magnitude.", "Magnitude.10",
             "AbsoluteExteriorTolerance", "RelativeExteriorTolerance", "Other", "Other", "GlobalStepNumber"});
  EXPECT_EQ(UpgradeUnder(Recording(), 2, {"UpgradeSubModelBCBasicComponents"}), S_OK);
  // "Magnitude." and "Magnitude.2.1" are names of their own: a number stands behind the last dot.
  EXPECT_EQ(Listed(), (Ids{3, 4, 6, 8, 9, 10, 13, 14, 15}));
  EXPECT_EQ(Calls("VLMISpecObject::RemoveSon"),
            (CallList{"VLMISpecObject::RemoveSon #2 GlobalStepNumber",
                      "VLMISpecObject::RemoveSon #2 GlobalStepNumber.3",
                      "VLMISpecObject::RemoveSon #2 Magnitude.10", "VLMISpecObject::RemoveSon #2 Magnitude",
                      "VLMISpecObject::RemoveSon #2 AbsoluteExteriorTolerance"}));
  EXPECT_TRUE(IsRegistered());
}

TEST_F(SonsListTest, SubmodelFailuresAreTheResultAndRemovalsAreNotLookedAt) {
  GivenSons("HVXSubmodelBCLT", {"Magnitude", "Magnitude.2"});
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecObject", 2), 2, {"UpgradeSubModelBCBasicComponents"}), E_FAIL);
  EXPECT_EQ(Calls("VLMISamUpgrade::"), CallList{});  // asked for before anything is upgraded
  EXPECT_EQ(UpgradeUnder(Withholding("VLMISpecAttrAccess", 2), 2, {"UpgradeSubModelBCBasicComponents"}),
            E_FAIL);
  EXPECT_EQ(Calls("VLMISamUpgrade::").size(), 1U);
  EXPECT_EQ(
      UpgradeUnder(Failing("VLMISamUpgrade::Upgrade", "", -77), 2, {"UpgradeSubModelBCBasicComponents"}),
      -77);
  EXPECT_FALSE(IsRegistered());
  EXPECT_EQ(UpgradeUnder(Failing("VLMISpecObject::RemoveSon"), 2, {"UpgradeSubModelBCBasicComponents"}),
            S_OK);
  EXPECT_TRUE(IsRegistered());
}

}  // namespace
