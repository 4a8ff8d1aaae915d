// What is listed beneath features by late type, while these are made, moved, changed and removed: against a
// walk that remembers nothing.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "adapters/FeatureAdapter.h"
#include "analysis/VLMISamAnalysisScan.h"
#include "support/UpgradeFixture.h"

namespace standalone {
namespace {

// Sets and others, one deriving from the kind that is asked for.
constexpr std::array kTypes{"HVXInteractionContainerLT", "HVXGeneralStaticStepLT", "AnalysisCase",
                            "HVXPressure", "HVXGravity"};
constexpr std::array kAskedFor{"HVXInteractionContainerLT", "HVXPressure", "HVXStep"};

class ListingsTest : public testing_support::UpgradeTest {
 protected:
  ListingsTest() {
    Given(R"({"id":1,"type":"AnalysisCase"})");
    features_.push_back(&At(1));
    while (features_.size() < 60) Make();
  }

  std::size_t Number(std::size_t below) { return random_() % below; }
  Feature& Any() { return *features_[Number(features_.size())]; }
  const LateType& AnyType() { return LateType::Of(kTypes[Number(kTypes.size())]); }

  void Make() { features_.push_back(Doc().Create(AnyType(), "Made", &Any(), nullptr)); }

  void ChangeSomehow() {
    Feature& feature = Any();
    switch (features_.size() < 40 ? 0 : Number(6)) {
      case 0:
      case 1:
        return Make();
      case 2:
        static_cast<void>(Doc().PlaceBeneath(feature, Any()));
        return;
      case 3:
        if (feature.nextSibling != nullptr) Doc().PlaceBeside(feature, *feature.nextSibling, true);
        return;
      case 4:
        return Doc().SetType(feature, AnyType());
      default:
        if (&feature == features_.front() || Document::CountBeneath(feature) > 5) return;
        Doc().Remove(feature);
        std::erase_if(features_, [](const Feature* each) { return each->removed; });
    }
  }

  static void Walk(const Feature& top, std::string_view type, int levels, bool throughSetsOnly,
                   std::vector<const Feature*>& found) {
    for (const Feature* son = top.firstSon; son != nullptr; son = son->nextSibling) {
      if (son->type->MetaClass().IsAKindOf(type)) found.push_back(son);
      if (levels > 1 && (!throughSetsOnly || son->type->IsAnalysisSet()))
        Walk(*son, type, levels - 1, throughSetsOnly, found);
    }
  }

  template <class List>
  static std::vector<const Feature*> FeaturesOf(const List& list) {
    std::vector<const Feature*> features;
    for (const VLMBaseUnknown_var& each : list) features.push_back(FeatureOf(each));
    return features;
  }

  void Compare() {
    Feature& top = Any();
    const std::string_view type = kAskedFor[Number(kAskedFor.size())];
    const VLMISamAnalysisScan_var scan = HandleOn<VLMISamAnalysisScan>(&top);
    if (scan == NULL_var) return;
    VLMListValVLMBaseUnknown_var listed;
    for (const auto& [mode, levels, throughSetsOnly] :
         {std::tuple{VLMScanMode::kSons, 1, false}, std::tuple{VLMScanMode::kSonsOfSets, 2, true},
          std::tuple{VLMScanMode::kAll, 1000, false}}) {
      ASSERT_EQ(scan->ListChildrenOfLateType(type, listed, mode), S_OK);
      std::vector<const Feature*> found;
      Walk(top, type, levels, throughSetsOnly, found);
      ASSERT_EQ(FeaturesOf(listed), found) << fmt::format("{} beneath #{}", type, top.id);
    }
    ASSERT_EQ(HandleOn<VLMISamAnalysisSet>(&top)->ListMembersOfLateType(type, listed), S_OK);
    std::vector<const Feature*> members;
    Walk(top, type, 1, false, members);
    ASSERT_EQ(FeaturesOf(listed), members);
  }

  std::vector<Feature*> features_;
  std::minstd_rand random_{5};
};

TEST_F(ListingsTest, AreThoseOfAWalk) {
  for (int i = 0; i < 20'000 && !HasFatalFailure(); ++i) {
    if (Number(3) == 0) ChangeSomehow();
    Compare();
  }
}

}  // namespace
}  // namespace standalone
