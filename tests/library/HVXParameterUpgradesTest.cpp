#include "HVXParameterUpgrades.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Withholding;

class HVXParameterUpgradesTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":3}]}}
             {"id":2,"type":"HVXPressure","father":{"ref":1},"attributes":{"a":{"ref":4},"empty":null,"other":{"ref":3},"unset":{"ref":5},"list":[{"ref":4}]}}
             {"id":3,"type":"HVXClamp","father":{"ref":1}}
             {"id":4,"type":"Parameter","father":{"ref":2},"attributes":{"Value":0.1}}
             {"id":5,"type":"Parameter","father":{"ref":2}})");
  }

  HRESULT Read(const char* key, double& value) {
    return HVXGetRealParmValue(key, value, As<VLMISpecAttrAccess>(2));
  }
};

TEST_F(HVXParameterUpgradesTest, ReadingNeedsKeyParameterAndValue) {
  double value = 7.0;
  EXPECT_EQ(HVXGetRealParmValue("a", value, NULL_var), E_FAIL);
  for (const char* const key : {"missing", "empty", "other", "unset"})
    EXPECT_EQ(Read(key, value), E_FAIL) << key;
  EXPECT_EQ(value, 7.0);
  EXPECT_EQ(Read("a", value), S_OK);
  EXPECT_EQ(value, 0.1);
}

TEST_F(HVXParameterUpgradesTest, AValueObjectIsEnough) {
  const standalone::CheckpointScope scope(Failing("VLMIKpeValue::AsReal"));
  double value = 7.0;
  EXPECT_EQ(Read("a", value), S_OK);
  EXPECT_EQ(value, 7.0);
}

TEST_F(HVXParameterUpgradesTest, RemovalTakesTheParameterOutThroughTheModel) {
  EXPECT_EQ(HVXRemoveParameter("a", As<VLMBaseUnknown>(2)), S_OK);
  EXPECT_EQ(Line(4), "removed");
  EXPECT_EQ(Line(2), R"({"id":2,"type":"HVXPressure","father":{"ref":1},"attributes":{"empty":null,)"
                     R"("other":{"ref":3},"unset":{"ref":5},"list":[]}})");
  EXPECT_EQ(HVXRemoveParameter("a", As<VLMBaseUnknown>(2)), E_FAIL);
  EXPECT_EQ(HVXRemoveParameter("empty", As<VLMBaseUnknown>(2)), S_OK);
  EXPECT_EQ(HVXRemoveParameter("a", NULL_var), E_FAIL);
}

TEST_F(HVXParameterUpgradesTest, RemovalGivesTheModelsResult) {
  {
    const standalone::CheckpointScope scope(Failing("VLMISamAnalysisModel::RemoveObject", "", -77));
    EXPECT_EQ(HVXRemoveParameter("a", As<VLMBaseUnknown>(2)), -77);
  }
  const standalone::CheckpointScope scope(Failing("HVXAnalysisDocUtils::GetAnalysisModel", "", -77));
  EXPECT_EQ(HVXRemoveParameter("a", As<VLMBaseUnknown>(2)), E_FAIL);
}

TEST_F(HVXParameterUpgradesTest, RegistrationAppendsToTheModelsList) {
  EXPECT_EQ(HVXRegisterInFeatureList(As<VLMBaseUnknown>(2)), S_OK);
  EXPECT_EQ(HVXRegisterInFeatureList(As<VLMBaseUnknown>(2)), S_OK);  // registered again when asked again
  EXPECT_EQ(Line(1),
            R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":3},{"ref":2},{"ref":2}]}})");
}

TEST_F(HVXParameterUpgradesTest, RegistrationNeedsDocumentModelAndList) {
  EXPECT_EQ(HVXRegisterInFeatureList(NULL_var), E_FAIL);
  for (const char* const operation :
       {"HVXAnalysisDocUtils::GetDocument", "HVXAnalysisDocUtils::GetAnalysisModel"}) {
    const standalone::CheckpointScope scope(Failing(operation, "", -77));
    EXPECT_EQ(HVXRegisterInFeatureList(As<VLMBaseUnknown>(2)), E_FAIL) << operation;
  }
  {
    const standalone::CheckpointScope scope(Withholding("VLMISpecAttrAccess", 1));
    EXPECT_EQ(HVXRegisterInFeatureList(As<VLMBaseUnknown>(2)), E_FAIL);
  }
  Given(R"({"id":1,"type":"AnalysisModel"}
           {"id":2,"type":"HVXPressure","father":{"ref":1}})");
  EXPECT_EQ(HVXRegisterInFeatureList(As<VLMBaseUnknown>(2)), E_FAIL);
}

TEST_F(HVXParameterUpgradesTest, AttributeRemovalNeedsTheAttribute) {
  EXPECT_EQ(HVXRemoveFeatureAttribute("a", NULL_var), E_FAIL);
  EXPECT_EQ(HVXRemoveFeatureAttribute("missing", As<VLMISpecAttrAccess>(2)), E_FAIL);
  EXPECT_EQ(HVXRemoveFeatureAttribute("list", As<VLMISpecAttrAccess>(2)), S_OK);
  EXPECT_EQ(Line(2),
            R"({"id":2,"type":"HVXPressure","father":{"ref":1},"attributes":{"a":{"ref":4},"empty":null,)"
            R"("other":{"ref":3},"unset":{"ref":5}}})");
}

}  // namespace
