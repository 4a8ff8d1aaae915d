#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

#include "analysis/VLMISamAnalysisSupport.h"
#include "support/PropertyDocuments.h"
#include "support/References.h"
#include "support/UpgradeFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::BrokenReferences;
using testing_support::Failing;

constexpr const char* kRemoveAttributes = "RemoveConsisChkAttr";
constexpr const char* kReplaceProperties = "UpgDocumentForCCPRemoval";

// Hands the identifiers and all features of the document to the library's entry for whole documents.
HRESULT UpgradeDocument(standalone::Document& document, std::initializer_list<const char*> identifiers) {
  VLMListValVLMUnicodeString list;
  for (const char* const identifier : identifiers) list.Append(identifier);
  VLMListValVLMISpecObject_var features;
  for (standalone::Feature* each = document.First(); each != nullptr; each = each->next)
    features.Append(standalone::HandleOn<VLMISpecObject>(each));
  return testing_support::Library().documentUpgrades[0].upgrade(list, features);
}

class HVXGenericUpgradesTest : public testing_support::UpgradeTest {
 protected:
  HRESULT Run(std::initializer_list<const char*> identifiers) { return UpgradeDocument(Doc(), identifiers); }
  HRESULT RunUnder(standalone::CheckpointPlan plan, std::initializer_list<const char*> identifiers) {
    const standalone::CheckpointScope scope(std::move(plan));
    return Run(identifiers);
  }

  // The features of a late type, in document order.
  std::vector<standalone::Feature*> All(std::string_view type) {
    std::vector<standalone::Feature*> found;
    for (standalone::Feature* each = Doc().First(); each != nullptr; each = each->next) {
      if (each->TypeName() == type) found.push_back(each);
    }
    return found;
  }
  static constexpr const char* kPair = "HVXContactConnectionEnhancementStdLT";

  // Property #10 connects design #3 with product #1, property #12 connects design #4 with it and has an
  // interference fit. Case #20, of this product, has two steps after the initial one; case #40 has one.
  // Request #31 rests on both properties and on the model, request #51, of the other case, on #10.
  void GivenProperties(const std::string& clearance = "false", const std::string& firstSolver = "Halvex") {
    Given(R"({"id":1,"type":"Product"}
             {"id":2,"type":"AnalysisModel"}
             {"id":3,"type":"SAMGenericConnDesign","father":{"ref":2}}
             {"id":4,"type":"SAMGenericConnDesign","father":{"ref":2}}
             {"id":5,"type":"PropertySet","father":{"ref":2}}
             {"id":10,"type":"SAMFaceFaceContact","father":{"ref":5},"attributes":{"ClearanceFlag":)" +
          clearance +
          R"(,"Supports":[{"ref":11}]}}
             {"id":11,"type":"GeometrySmartConnector","father":{"ref":10},)"
          R"("attributes":{"FirstObject":{"ref":3},"SecondObject":{"ref":1}}}
             {"id":12,"type":"SAMFaceFaceContact","father":{"ref":5},)"
          R"("attributes":{"InterferenceFit":{"ref":14},"Supports":[{"ref":13}]}}
             {"id":13,"type":"GeometrySmartConnector","father":{"ref":12},)"
          R"("attributes":{"FirstObject":{"ref":4},"SecondObject":{"ref":1}}}
             {"id":14,"type":"HVXInterferenceFitLT","father":{"ref":12},)"
          R"("attributes":{"FitType":1,"Definition":1,"Value":0.125}}
             {"id":20,"type":"AnalysisCase","father":{"ref":2},"attributes":{"Solver":")" +
          firstSolver +
          R"(","AnalysisType":1,"CaseKind":1}}
             {"id":21,"type":"HVXInteractionContainerLT","father":{"ref":20}}
             {"id":22,"type":"HVXSimulationHistoryLT","father":{"ref":20}}
             {"id":23,"type":"HVXInitialStepLT","father":{"ref":22}}
             {"id":24,"type":"HVXInteractionContainerLT","father":{"ref":23}}
             {"id":25,"type":"HVXStaticLPStepLT","father":{"ref":22}}
             {"id":26,"type":"HVXInteractionContainerLT","father":{"ref":25}}
             {"id":27,"type":"HVXGeneralStaticStepLT","father":{"ref":22}}
             {"id":28,"type":"HVXInteractionContainerLT","father":{"ref":27}}
             {"id":30,"type":"HVXHistoryOutputRequestContainerLT","father":{"ref":27}}
             {"id":31,"type":"HVXHistoryOutputLT","father":{"ref":30},)"
          R"("attributes":{"Supports":[{"ref":32},{"ref":33},{"ref":34}]}}
             {"id":32,"type":"GeometrySmartConnector","father":{"ref":31},)"
          R"("attributes":{"FirstObject":{"ref":10},"SecondObject":{"ref":1}}}
             {"id":33,"type":"GeometrySmartConnector","father":{"ref":31},)"
          R"("attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":2}}}
             {"id":34,"type":"GeometrySmartConnector","father":{"ref":31},)"
          R"("attributes":{"FirstObject":{"ref":12},"SecondObject":{"ref":1}}}
             {"id":40,"type":"AnalysisCase","father":{"ref":2},)"
          R"("attributes":{"Solver":"Halvex","AnalysisType":3,"CaseKind":0}}
             {"id":41,"type":"HVXInteractionContainerLT","father":{"ref":40}}
             {"id":42,"type":"HVXSimulationHistoryLT","father":{"ref":40}}
             {"id":43,"type":"HVXInitialStepLT","father":{"ref":42}}
             {"id":50,"type":"HVXFieldOutputRequestContainerLT","father":{"ref":43}}
             {"id":51,"type":"HVXNewFieldOutputLT","father":{"ref":50},"attributes":{"Supports":[{"ref":52}]}}
             {"id":52,"type":"GeometrySmartConnector","father":{"ref":51},)"
          R"("attributes":{"FirstObject":{"ref":10},"SecondObject":{"ref":1}}})");
  }

  // What the supports of a feature rest on, in order.
  std::vector<standalone::Feature*> RestsOn(standalone::Feature& feature) {
    std::vector<standalone::Feature*> objects;
    for (standalone::Feature* const connector :
         standalone::LinkedFeatures(feature, standalone::Key("Supports")))
      objects.push_back(standalone::LinkedFeature(*connector, standalone::Key("FirstObject")));
    return objects;
  }
};

TEST_F(HVXGenericUpgradesTest, EntryActsOnExactlyOneIdentifier) {
  Given(R"({"id":1,"type":"HVXPressure","attributes":{"ListOfRuleNames":["A"]}})");
  const std::string before = Lines();
  EXPECT_EQ(Run({}), E_FAIL);
  EXPECT_EQ(Run({kRemoveAttributes, kReplaceProperties}), S_OK);
  EXPECT_EQ(Run({kRemoveAttributes, kRemoveAttributes}), S_OK);
  EXPECT_EQ(Run({"UpgradeBodySupport"}), S_OK);
  EXPECT_EQ(Lines(), before);
}

TEST_F(HVXGenericUpgradesTest, RuleNamesGoFromProductFeaturesAndRuleStatusStays) {
  Given(R"({"id":1,"type":"HVXPressure","attributes":{"ListOfRuleNames":["A"],"ListOfRuleStatus":[1]}}
           {"id":2,"type":"OldHVXPressure","attributes":{"ListOfRuleNames":["A"]}}
           {"id":3,"type":"SAMGroup","attributes":{"ListOfRuleNames":["A"]}}
           {"id":4,"type":"HVXGravity"})");
  EXPECT_EQ(Run({kRemoveAttributes}), S_OK);
  EXPECT_EQ(Lines(), R"({"id":1,"type":"HVXPressure","attributes":{"ListOfRuleStatus":[1]}})"
                     "\n"
                     R"({"id":2,"type":"OldHVXPressure","attributes":{"ListOfRuleNames":["A"]}})"
                     "\n"
                     R"({"id":3,"type":"SAMGroup","attributes":{"ListOfRuleNames":["A"]}})"
                     "\n"
                     R"({"id":4,"type":"HVXGravity"})"
                     "\n");
}

TEST_F(HVXGenericUpgradesTest, ComponentIsRegisteredByTheFirstCall) {
  Given(R"({"id":1,"type":"HVXPressure"})");
  static_cast<void>(Run({kRemoveAttributes}));
  const VLMMetaClass* const metaClass = VLMMetaClass::Find("HVXGenericUpgrades");
  ASSERT_NE(metaClass, nullptr);
  EXPECT_EQ(metaClass->Kind(), VLMExtensionKind::kImplementation);
  EXPECT_EQ(metaClass->Framework(), "HVXHKPVersion");
  ASSERT_EQ(metaClass->ExtendedLateTypes().size(), 1U);
  EXPECT_EQ(metaClass->ExtendedLateTypes()[0]->Name(), "VLMNull");
}

TEST_F(HVXGenericUpgradesTest, PropertiesBecomePairsInEveryCaseAndRequestsFollow) {
  GivenProperties();
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  EXPECT_THAT(All("SAMFaceFaceContact"), IsEmpty());
  const std::vector<standalone::Feature*> standard = All(kPair);
  const std::vector<standalone::Feature*> explicitPairs = All("HVXContactConnectionEnhancementExplicitLT");
  ASSERT_EQ(standard.size(), 2U);
  ASSERT_EQ(explicitPairs.size(), 2U);
  EXPECT_EQ(standard[0]->father->id, 21);
  EXPECT_EQ(explicitPairs[0]->father->id, 41);
  EXPECT_THAT(RestsOn(*standard[0]), ElementsAre(&At(3)));
  EXPECT_THAT(RestsOn(*standard[1]), ElementsAre(&At(4)));
  // The support on the model stays as it is; the pairs come behind it.
  EXPECT_THAT(RestsOn(At(31)), ElementsAre(&At(2), standard[0], standard[1]));
  EXPECT_THAT(RestsOn(At(51)), ElementsAre(explicitPairs[0]));
  EXPECT_EQ(standard[0]->externalName, "Contact Pair-1");
  EXPECT_EQ(explicitPairs[1]->externalName, "Contact Pair-4");
  EXPECT_NE(Line(standard[1]->id).find(R"("PropagatedTo":"later steps")"), std::string::npos);
  EXPECT_THAT(BrokenReferences(Doc()), IsEmpty());

  const std::vector<standalone::Feature*> fits = All("HVXInterferenceFitLT");
  ASSERT_EQ(fits.size(), 2U);
  EXPECT_NE(Line(fits[0]->id).find(R"({"FitType":0,"Definition":0,"Value":0.0})"), std::string::npos);
  EXPECT_NE(Line(fits[1]->id).find(R"({"FitType":1,"Definition":1,"Value":0.125})"), std::string::npos);
}

// What could not be listed for one property is listed again for the next: no more goes wrong than that one.
TEST_F(HVXGenericUpgradesTest, AListingThatFailedIsMadeAnewForTheNextProperty) {
  // Of two runs on `given`, fails in the second the first such call of the first.
  const auto runWithout = [this](std::string_view operation, standalone::FeatureId feature,
                                 const std::function<void()>& given) {
    given();
    standalone::CheckpointPlan plan;
    plan.record = true;
    static_cast<void>(RunUnder(plan, {kReplaceProperties}));
    const std::vector<standalone::HostCall>& calls = standalone::Checkpoint::Recorded();
    const auto call = std::ranges::find_if(calls, [&](const standalone::HostCall& each) {
      return each.operation == operation && each.feature == feature;
    });
    plan.failNth = call - calls.begin() + 1;
    given();
    EXPECT_EQ(RunUnder(plan, {kReplaceProperties}), S_OK);
  };
  // The requests: the support on the first property is lost with it, the other follows.
  runWithout("VLMISamAnalysisSupport::ListSupports", 31, [this] { GivenProperties(); });
  EXPECT_THAT(RestsOn(At(31)), ElementsAre(nullptr, &At(2), All(kPair)[1]));

  // The pairs of a first run: the first property gets a second pair, the other finds its own.
  runWithout("HVXITraverser::ListFeatures", 41, [this] {
    GivenProperties("false", "Other");
    static_cast<void>(Run({kReplaceProperties}));
  });
  EXPECT_EQ(All("HVXContactConnectionEnhancementExplicitLT").size(), 3U);
}

TEST_F(HVXGenericUpgradesTest, PairWithClearanceGoesIntoTheFirstStepThatIsNoPerturbation) {
  GivenProperties("true");
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  const std::vector<standalone::Feature*> pairs = All(kPair);
  ASSERT_EQ(pairs.size(), 2U);
  EXPECT_EQ(pairs[0]->father->id, 28);
  EXPECT_EQ(pairs[1]->father->id, 21);  // the second property has no clearance
  EXPECT_EQ(All("HVXContactConnectionEnhancementExplicitLT")[0]->father->id,
            41);  // its case keeps none in steps

  GivenProperties("true");
  standalone::Feature& ofOtherKind = At(20);
  Doc().SetAttribute(ofOtherKind, standalone::NameTable::Intern("CaseKind"), standalone::Value::Integer(2));
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  EXPECT_EQ(All(kPair)[0]->father->id, 21);

  GivenProperties("true");
  Doc().Create(standalone::LateType::Of("HVXInteractionContainerLT"), "", &At(27), nullptr);
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  EXPECT_EQ(All(kPair)[0]->father->id, 28);  // the first of the step's sets
}

TEST_F(HVXGenericUpgradesTest, FitsAreCopiedForStandardPropertiesOnlyAlsoWithoutSupports) {
  const auto valueOfLastFit = [this](int kind, bool supported) {
    GivenProperties();
    Doc().SetAttribute(At(12), standalone::NameTable::Intern("ContactKind"),
                       standalone::Value::Integer(kind));
    if (!supported) Doc().Remove(At(13));
    EXPECT_EQ(Run({kReplaceProperties}), S_OK);
    const std::string fit = Line(All("HVXInterferenceFitLT").back()->id);
    return fit.substr(fit.find("attributes"));
  };
  const std::string copied = R"(attributes":{"FitType":1,"Definition":1,"Value":0.125}})";
  EXPECT_EQ(valueOfLastFit(1, true), copied);
  EXPECT_EQ(valueOfLastFit(1, false), copied);
  EXPECT_NE(valueOfLastFit(2, true), copied);
}

TEST_F(HVXGenericUpgradesTest, CaseOfAnotherProductKeepsThePropertiesAndASecondRunMakesNothing) {
  GivenProperties("false", "Other");
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  EXPECT_EQ(All("SAMFaceFaceContact").size(), 2U);
  EXPECT_EQ(All(kPair).size(), 0U);
  EXPECT_EQ(All("HVXContactConnectionEnhancementExplicitLT").size(), 2U);
  EXPECT_THAT(RestsOn(At(31)), ElementsAre(&At(10), &At(2), &At(12)));  // in the case of the other product

  const std::string once = Lines();
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  EXPECT_EQ(Lines(), once);
}

TEST_F(HVXGenericUpgradesTest, RequestsAndSupportsThatArePassedOverDoNotEndTheWalk) {
  GivenProperties();
  EXPECT_EQ(RunUnder(testing_support::Withholding("VLMISamAnalysisConnector", 32), {kReplaceProperties}),
            S_OK);
  EXPECT_THAT(RestsOn(At(31)), testing::Contains(All(kPair)[1]));

  GivenProperties();
  standalone::Feature& later =
      *Doc().Create(standalone::LateType::Of("HVXHistoryOutputLT"), "", &At(30), nullptr);
  ASSERT_EQ(
      As<VLMISamAnalysisSupport>(later.id)->AddSupport(As<VLMILinkableObject>(10), As<VLMBaseUnknown>(1), ""),
      S_OK);
  EXPECT_EQ(RunUnder(testing_support::Withholding("VLMISamAnalysisSupport", 31), {kReplaceProperties}), S_OK);
  EXPECT_THAT(RestsOn(later), ElementsAre(All(kPair)[0]));
}

TEST_F(HVXGenericUpgradesTest, PairThatExistsAlreadyIsUsed) {
  GivenProperties();
  standalone::Feature& old = *Doc().Create(standalone::LateType::Of(kPair), "", &At(28), nullptr);
  VLMISamAnalysisSupport_var supports = standalone::HandleOn<VLMISamAnalysisSupport>(&old);
  ASSERT_EQ(supports->AddSupport(As<VLMILinkableObject>(3), As<VLMBaseUnknown>(1), ""), S_OK);
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  EXPECT_EQ(All(kPair).size(), 2U);  // it and the one for #12
  EXPECT_EQ(RestsOn(At(31))[1], &old);
  EXPECT_EQ(Line(10), "removed");
}

TEST_F(HVXGenericUpgradesTest, PropertyStaysWhereAPairCannotBeMadeAndTheOthersGoOn) {
  // Case #40 has no set for a pair.
  GivenProperties();
  Doc().Remove(At(41));
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
  EXPECT_EQ(All("SAMFaceFaceContact").size(), 2U);
  EXPECT_EQ(All(kPair).size(), 2U);
  EXPECT_THAT(RestsOn(At(51)), ElementsAre(&At(10)));
  EXPECT_THAT(BrokenReferences(Doc()), IsEmpty());

  // A pair whose supports cannot be prepared is made, used and reported.
  GivenProperties();
  EXPECT_EQ(RunUnder(Failing("VLMISamAnalysisSupport::PrepareSupports"), {kReplaceProperties}), S_OK);
  EXPECT_EQ(All("SAMFaceFaceContact").size(), 2U);
  EXPECT_THAT(RestsOn(At(31)), testing::Contains(All(kPair)[0]));
  EXPECT_EQ(Calls("HVXIFactoryExtForPropagation").size(), 0U);
}

TEST_F(HVXGenericUpgradesTest, PairWithoutItsSupportIsNotPropagatedAndKeepsTheProperty) {
  GivenProperties();
  EXPECT_EQ(RunUnder(Failing("VLMISamAnalysisSupport::AddSupport"), {kReplaceProperties}), S_OK);
  EXPECT_EQ(All(kPair).size(), 2U);
  EXPECT_EQ(All("SAMFaceFaceContact").size(), 2U);
  EXPECT_EQ(Calls("HVXIFactoryExtForPropagation").size(), 0U);
}

TEST_F(HVXGenericUpgradesTest, PropagationFailureIsToldWithTheNameAndKeepsTheProperty) {
  GivenProperties();
  testing::internal::CaptureStdout();
  EXPECT_EQ(RunUnder(Failing("HVXIFactoryExtForPropagation::Propagate"), {kReplaceProperties}), S_OK);
  EXPECT_EQ(
      testing::internal::GetCapturedStdout(),
      "Propagation failed for feature: Contact Pair-1\nPropagation failed for feature: Contact Pair-2\n"
      "Propagation failed for feature: Contact Pair-3\nPropagation failed for feature: Contact Pair-4\n");
  EXPECT_EQ(All("SAMFaceFaceContact").size(), 2U);

  GivenProperties();
  testing::internal::CaptureStdout();
  standalone::CheckpointPlan nameless = Failing("HVXIFactoryExtForPropagation::Propagate");
  nameless.withholdInterface = "VLMIAlias";
  EXPECT_EQ(RunUnder(nameless, {kReplaceProperties}), S_OK);
  EXPECT_TRUE(testing::internal::GetCapturedStdout().starts_with("Propagation failed for feature.\n"));
}

TEST_F(HVXGenericUpgradesTest, MissingPropagationDataIsToldAndPropagationIsTriedAllTheSame) {
  GivenProperties();
  testing::internal::CaptureStdout();
  EXPECT_EQ(
      RunUnder(Failing("HVXIFactoryExtForPropagation::SetDefaultPropagationData"), {kReplaceProperties}),
      S_OK);
  const std::string output = testing::internal::GetCapturedStdout();
  EXPECT_TRUE(
      output.starts_with("Could not set default propagation data\nPropagation failed for feature: Contact"))
      << output;
  EXPECT_EQ(Calls("HVXIFactoryExtForPropagation::Propagate").size(), 4U);
}

TEST_F(HVXGenericUpgradesTest, RunEndsWithTheCodeOfWhatCannotBeListed) {
  GivenProperties();
  const std::string before = Lines();
  EXPECT_EQ(RunUnder(Failing("HVXAnalysisDocUtils::GetDocument", "", -77), {kReplaceProperties}), E_FAIL);
  EXPECT_EQ(RunUnder(Failing("HVXAnalysisDocUtils::GetAllAnalysisCases", "", -77), {kReplaceProperties}),
            -77);
  // Nothing to do comes out as success.
  EXPECT_EQ(RunUnder(Failing("HVXAnalPreProcEntityUtils::GetListOfPropFromAnalDoc"), {kReplaceProperties}),
            S_OK);
  EXPECT_EQ(Lines(), before);
  Given(R"({"id":1,"type":"Product"})");
  EXPECT_EQ(Run({kReplaceProperties}), S_OK);
}

TEST_F(HVXGenericUpgradesTest, DoesToRandomDocumentsWhatThePlainAlgorithmDoes) {
  for (std::uint32_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(seed);
    const std::string lines = testing_support::RandomPropertyDocument(seed);
    const standalone::DocumentPtr plain = testing_support::DocumentOf(lines);
    ASSERT_EQ(testing_support::ReplacePropertiesPlainly(*plain.Get()), S_OK);
    const standalone::DocumentPtr indexed = testing_support::DocumentOf(lines);
    ASSERT_EQ(UpgradeDocument(*indexed.Get(), {kReplaceProperties}), S_OK);
    ASSERT_EQ(testing_support::LinesOf(*indexed.Get()), testing_support::LinesOf(*plain.Get()));
  }
}

TEST_F(HVXGenericUpgradesTest, HostCallsGrowInProportionToTheDocument) {
  const auto callsFor = [](int size) {
    const standalone::DocumentPtr document =
        testing_support::DocumentOf(testing_support::LargePropertyDocument(size, 4, size * 2));
    const standalone::CheckpointScope scope({});
    EXPECT_EQ(UpgradeDocument(*document.Get(), {kReplaceProperties}), S_OK);
    EXPECT_THAT(BrokenReferences(*document.Get()), IsEmpty());
    return standalone::Checkpoint::CallCount();
  };
  const std::int64_t small = callsFor(180);
  const std::int64_t large = callsFor(1440);
  EXPECT_LT(large, small * 9) << "eight times the document";
}

}  // namespace
