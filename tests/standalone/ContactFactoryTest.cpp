#include <gmock/gmock.h>

#include "base/VLMLibrary.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXISurfaceToSurfaceContactFact.h"

namespace {

// A structural case (#1) and an explicit one (#2), each with an interaction set (#3, #4), and old contacts in
// the first's: #5 and #6.
class ContactFactoryTest : public testing_support::UpgradeTest {
 protected:
  ContactFactoryTest() {
    Given(R"({"id":1,"type":"AnalysisCase","attributes":{"Solver":"Halvex","AnalysisType":1}}
             {"id":2,"type":"AnalysisCase","attributes":{"Solver":"Halvex","AnalysisType":3}}
             {"id":3,"type":"HVXInteractionContainerLT","father":{"ref":1}}
             {"id":4,"type":"HVXInteractionContainerLT","father":{"ref":2}}
             {"id":5,"type":"HVXSurfaceToSurfaceContactLT","alias":"Contact Pair-7","father":{"ref":3}}
             {"id":6,"type":"HVXSurfaceToSurfaceContactLT","alias":"Contact Pair-x9","father":{"ref":3}})");
    static_cast<void>(VLMInstantiateComponent("HVXSurfaceToSurfaceContactFact", factory_));
  }

  standalone::Feature* Create(standalone::FeatureId set, standalone::FeatureId analysisCase) {
    VLMISpecObject_var pair;
    static_cast<void>(
        factory_->CreateContactPair(As<VLMISamAnalysisSet>(set), As<VLMBaseUnknown>(analysisCase), pair));
    return standalone::FeatureOf(pair);
  }
  static std::vector<std::string> Sons(const standalone::Feature& feature) {
    std::vector<std::string> sons;
    for (const standalone::Feature* son = feature.firstSon; son != nullptr; son = son->nextSibling)
      sons.push_back(std::string(son->TypeName()) + " " + std::string(son->externalName));
    return sons;
  }

  HVXISurfaceToSurfaceContactFact_var factory_;
};

TEST_F(ContactFactoryTest, PairSuitsTheCaseAndIsComplete) {
  const standalone::Feature* const standard = Create(3, 1);
  ASSERT_NE(standard, nullptr);
  EXPECT_EQ(standard->TypeName(), "HVXContactConnectionEnhancementStdLT");
  EXPECT_EQ(standard->father->lastSon, standard);
  EXPECT_THAT(Sons(*standard),
              testing::ElementsAre("SAMBasicComponent ", "HVXContactControlsLT Contact Controls",
                                   "HVXInterferenceFitLT "));
  EXPECT_EQ(standalone::Document::CountBeneath(*standard),
            9U);  // three settings, three values of the control
  EXPECT_NE(Line(standard->id).find(R"("SearchTolerance":0.1,"OverclosureTolerance":-0.001)"),
            std::string::npos);

  const standalone::Feature* const forExplicit = Create(4, 2);
  EXPECT_EQ(forExplicit->TypeName(), "HVXContactConnectionEnhancementExplicitLT");
  EXPECT_THAT(Sons(*forExplicit),
              testing::ElementsAre("SAMBasicComponent ", "HVXContactControlsLT Contact Controls"));
}

TEST_F(ContactFactoryTest, PairsAreNumberedBehindTheHighestInTheDocument) {
  EXPECT_EQ(Create(3, 1)->externalName, "Contact Pair-8");
  EXPECT_EQ(Create(4, 2)->externalName, "Contact Pair-9");
  Doc().SetExternalName(At(6), "Contact Pair-20");
  standalone::Feature* const next = Create(3, 1);
  EXPECT_EQ(next->externalName, "Contact Pair-21");
  Doc().Remove(*next);
  Doc().SetExternalName(At(6), "Contact");
  EXPECT_EQ(Create(3, 1)->externalName, "Contact Pair-10");
  Doc().SetExternalName(At(6), "Contact Pair-99999999999999999999");  // no number that can be counted on from
  EXPECT_EQ(Create(3, 1)->externalName, "Contact Pair-11");
}

TEST_F(ContactFactoryTest, OldContactIsConvertedOnceAndAnswersToBothViews) {
  const auto convert = [this] {
    return factory_->ConvertContact(As<VLMISamAnalysisSet>(4), As<VLMBaseUnknown>(5), As<VLMBaseUnknown>(1),
                                    VLMDocument_var(&Doc()));
  };
  EXPECT_EQ(convert(), S_OK);
  EXPECT_EQ(At(5).father->id, 4);
  for (const char* const view : {"HVXISurfaceToSurfaceContact", "HVXIContactConnectionEnhancementStd"})
    EXPECT_TRUE(standalone::Offers(At(5), VLMInterfaceId(view))) << view;
  EXPECT_EQ(standalone::Document::CountBeneath(At(5)), 3U);  // the settings of the layout, nothing else
  EXPECT_EQ(convert(), E_FAIL);
}

TEST_F(ContactFactoryTest, ControlAndFitAreMadeOnce) {
  EXPECT_EQ(factory_->CreateContactControl(As<VLMBaseUnknown>(5)), E_FAIL);  // no contact pair yet
  EXPECT_EQ(factory_->CompleteContact(As<VLMBaseUnknown>(5)), E_FAIL);
  const standalone::FeatureId pair = Create(3, 1)->id;
  const std::string before = Lines();
  EXPECT_EQ(factory_->CreateContactControl(As<VLMBaseUnknown>(pair)), E_FAIL);
  EXPECT_EQ(factory_->CompleteContact(As<VLMBaseUnknown>(pair)), S_OK);
  EXPECT_EQ(Lines(), before);
}

}  // namespace
