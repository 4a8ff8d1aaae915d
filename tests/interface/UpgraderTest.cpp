// Upgrades, as programs run them.

#include <hvxupgrade/Findings.h>

#include "interface/InterfaceTest.h"

namespace {

using namespace hvxupgrade;
using namespace testing_support;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

using UpgraderTest = InterfaceTest;

// What a person corrects in it, and its upgrade could not change, is done by a retry.
constexpr std::string_view kFilm =
    R"({"id":1,"type":"AnalysisModel","name":"Model","attributes":{"FeatList":[]}}
{"id":2,"type":"AnalysisCase","alias":"Thermal Case","father":{"ref":1},"attributes":{"Solver":"Halvex","AnalysisType":2}}
{"id":3,"type":"HVXLoadContainerLT","alias":"Loads","father":{"ref":2}}
{"id":4,"type":"HVXFilmCondition","alias":"Film","father":{"ref":3},"attributes":{"refTemperature_param":null}}
)";

TEST_F(UpgraderTest, ADocumentGoesThroughAllThatIsPending) {
  const Upgrader upgrader;
  Document document = Read(Example("bolted_bracket"));
  const Names pending = upgrader.Pending(document);
  EXPECT_EQ(pending.size(), upgrader.Known().size());
  const UpgradeResult result = upgrader.Upgrade(document);
  EXPECT_EQ(result.identifiers, pending);
  EXPECT_EQ(document.Upgrades(), pending);
  EXPECT_THAT(result.failures, IsEmpty());
  EXPECT_GT(result.featuresChanged, 0U);
  EXPECT_GT(result.featuresCreated, result.featuresRemoved);
  EXPECT_THAT(upgrader.Pending(document), IsEmpty());
  EXPECT_THAT(upgrader.Upgrade(document).identifiers, IsEmpty());
}

TEST_F(UpgraderTest, KnownUpgradesTellWhereTheyComeFromAndWhatTheyDo) {
  const Upgrader upgrader({.libraries = {HVX_TEST_LIBRARY}});
  Names libraries;
  for (const KnownUpgrade& each : upgrader.Known()) {
    if (!std::ranges::count(libraries, each.library)) libraries.push_back(each.library);
    EXPECT_FALSE(each.libraryVersion.empty());
    EXPECT_TRUE(!each.isOfDocument || !each.purposes.empty()) << each.identifier;
    if (each.identifier == "ProbeC") {
      EXPECT_THAT(each.lateTypes, Contains("ProbeStopLT"));
      EXPECT_THAT(each.purposes, ElementsAre("Shows that it ran."));
    }
  }
  EXPECT_THAT(libraries, ElementsAre("HVXUpgradeComponents", "TestUpgradeLibrary"));
}

TEST_F(UpgraderTest, ChosenUpgradesBringAlongWhatMustRunBefore) {
  const Upgrader upgrader({.useInstalledLibrary = false, .libraries = {HVX_TEST_LIBRARY}});
  Document document = Given("{\"id\":1,\"type\":\"ProbeStopLT\"}\n");
  const UpgradeResult result = upgrader.Upgrade(document, {.identifiers = Names{"ProbeB"}});
  EXPECT_THAT(document.Upgrades(), testing::UnorderedElementsAre("ProbeB", "ProbeC"));
  EXPECT_THAT(document.Find(1)->Keys(), ElementsAre("C", "B"));
  EXPECT_THAT(upgrader.Upgrade(document, {.identifiers = Names{}}).identifiers, IsEmpty());

  const auto isRefused = [&](const char* problem, const char* advice, const Names& identifiers) {
    const auto error = ErrorOf([&] { upgrader.Upgrade(document, {.identifiers = identifiers}); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->GetKind(), Kind::kUsage);
    EXPECT_EQ(error->Problem(), problem);
    EXPECT_EQ(error->Advice(), advice);
  };
  isRefused("there is no upgrade \"ProbA\"", "Did you mean \"ProbeA\"?", {"ProbeA", "ProbA"});
  isRefused("there is no upgrade \"X\"", "Ask the Upgrader which it knows", {"X"});
  isRefused("the document has been through \"ProbeC\"", "Ask the Upgrader what is pending", {"ProbeC"});
  EXPECT_EQ(document.Upgrades().size(), 2U);
}

TEST_F(UpgraderTest, ADocumentWithUnknownUpgradesIsLeftAlone) {
  const Upgrader upgrader;
  Document document = Read(folder_.Put("new.hvxdoc", WithHeader(kFilm, R"("FromTheFuture")")));
  EXPECT_THAT(upgrader.Unknown(document), ElementsAre("FromTheFuture"));
  const std::string before = TextOf(document);
  ExpectError(Kind::kNewer, "FromTheFuture", [&] { upgrader.Upgrade(document); });
  EXPECT_EQ(TextOf(document), before);
}

// What a library that is not loaded did is known from the header, and nothing runs behind its back.
TEST_F(UpgraderTest, ADocumentOfALibraryThatIsNotLoadedIsLeftAlone) {
  const Upgrader upgrader;
  const auto headerOf = [](const std::string& upgrades) {
    return R"({"format":"hvxdoc","version":2,"upgrades":[)" + upgrades +
           R"("AcmeBolts"],"features":0,"libraries":[{"name":"AcmeUpgrades","version":"3.1",)"
           R"("upgrades":["AcmeBolts"]}]})"
           "\n";
  };
  const std::filesystem::path file = folder_.Put("acme.hvxdoc", headerOf(R"("UpgradeToElemType",)"));
  const Header header = ReadHeader(file);
  EXPECT_EQ(header.version, 2);
  ASSERT_EQ(header.upgrades.size(), 2U);
  EXPECT_EQ(header.upgrades[0].library, "");
  EXPECT_EQ(header.upgrades[1].identifier, "AcmeBolts");
  EXPECT_EQ(header.upgrades[1].library, "AcmeUpgrades");
  EXPECT_EQ(header.upgrades[1].version, "3.1");
  Document document = Read(file);
  EXPECT_THAT(upgrader.Unknown(document), ElementsAre("AcmeBolts"));
  ExpectError(Kind::kNewer, "upgraded by AcmeUpgrades 3.1, which is not loaded",
              [&] { upgrader.Upgrade(document); });
  EXPECT_EQ(document.Upgrades().size(), 2U);

  std::string all;
  for (const KnownUpgrade& known : upgrader.Known()) all += '"' + known.identifier + "\",";
  Document current = Read(folder_.Put("current.hvxdoc", headerOf(all)));
  EXPECT_THAT(upgrader.Upgrade(current).identifiers, testing::IsEmpty());
}

// A cast would give the other library's extension, and what is recorded as done would not have run.
TEST_F(UpgraderTest, ALibraryIsRefusedWhileAnotherHasItsFeatures) {
  const std::filesystem::path rival = folder_ / "rival.so";
  std::filesystem::copy_file(HVX_TEST_LIBRARY, rival);
  const UpgraderOptions options{.useInstalledLibrary = false, .libraries = {rival}};
  {
    const Upgrader first({.useInstalledLibrary = false, .libraries = {HVX_TEST_LIBRARY}});
    const Upgrader again({.useInstalledLibrary = false, .libraries = {HVX_TEST_LIBRARY}});
    ExpectError(Kind::kInstallation, "another upgrade library of this process",
                [&] { const Upgrader second(options); });
  }
  Document document = Given("{\"id\":1,\"type\":\"ProbeStopLT\"}\n");
  Upgrader(options).Upgrade(document);
  EXPECT_TRUE(document.Find(1)->Has("C"));
}

TEST_F(UpgraderTest, ADocumentThatIsWorkedOnIsOnlyLookedAt) {
  const Upgrader upgrader;
  Document document = Read(Example("bolted_bracket"));
  int refused = 0;
  const auto result = upgrader.Upgrade(
      document, {.onProgress = [&](std::uint64_t, std::uint64_t) {
        ExpectError(Kind::kUsage, "is being upgraded", [&] { Write(document, folder_ / "half.hvxdoc"); });
        ExpectError(Kind::kUsage, "is being upgraded", [&] { upgrader.Upgrade(document); });
        ++refused;
        return document.FeatureCount() > 0;
      }});
  EXPECT_GT(refused, 0);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "half.hvxdoc"));
  EXPECT_EQ(document.Upgrades(), result.identifiers);
  Write(document, folder_ / "whole.hvxdoc");
}

TEST_F(UpgraderTest, ARetryCompletesWhatWasCorrected) {
  const Upgrader upgrader;
  Document document = Given(kFilm);
  const UpgradeResult first = upgrader.Upgrade(document);
  ASSERT_EQ(first.failures.size(), 1U);
  EXPECT_EQ(first.failures[0].identifier, "UpgradeFilmConditionBasicComponents");
  EXPECT_EQ(first.failures[0].feature, 4);
  EXPECT_EQ(first.failures[0].lateType, "HVXFilmCondition");
  EXPECT_LT(first.failures[0].code, 0);
  const std::vector<Finding> left = Check(document);
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0].kind, Finding::Kind::kLeftBehind);
  EXPECT_EQ(left[0].feature, 4);
  EXPECT_TRUE(left[0].needsPerson);
  EXPECT_EQ(NameOf(left[0].kind), "leftBehind");
  EXPECT_THAT(upgrader.Upgrade(document).identifiers, IsEmpty());  // nothing is pending

  Feature parameter = document.Create("Parameter", "", document.Find(4));
  parameter.Set("Magnitude", "TEMPRTRE");
  parameter.Set("Value", 293.5);
  document.Find(4)->Set("refTemperature_param", Link{parameter.Id()});
  const UpgradeResult second = upgrader.Upgrade(document, {.retry = true});
  EXPECT_THAT(second.identifiers, ElementsAre("UpgradeFilmConditionBasicComponents"));
  EXPECT_THAT(second.failures, IsEmpty());
  EXPECT_THAT(Check(document), IsEmpty());
  EXPECT_EQ(document.Upgrades().size(), upgrader.Known().size());  // none recorded twice
}

TEST_F(UpgraderTest, ARoutineThatGivesUpSpoilsTheDocumentAndNothingElse) {
  const Upgrader upgrader({.useInstalledLibrary = false, .libraries = {HVX_TEST_LIBRARY}});
  constexpr std::string_view kLine = "{\"id\":1,\"type\":\"ProbeGivesUpLT\"}\n";
  Document document = Given(kLine);
  ExpectError(Kind::kStopped, "AssertionFailed", [&] { upgrader.Upgrade(document); });
  document = Given(kLine);
  ExpectError(Kind::kStopped, "ProbeGivesUpLT (id 1), ProbeNullHandle",
              [&] { upgrader.Upgrade(document, {.identifiers = Names{"ProbeNullHandle"}}); });
  document = Given(kLine);
  EXPECT_THAT(upgrader.Upgrade(document, {.identifiers = Names{"ProbeA"}}).identifiers,
              ElementsAre("ProbeA"));
}

TEST_F(UpgraderTest, ALimitOfCreatedFeaturesIsKeptForTheUpgradeAlone) {
  const Upgrader upgrader;
  Document document = Read(Example("bolted_bracket"));
  for (int i = 0; i < 100; ++i) static_cast<void>(document.Create("Own"));
  const auto stopped = ErrorOf([&] { upgrader.Upgrade(document, {.maxFeaturesCreated = 50}); });
  ASSERT_TRUE(stopped);
  EXPECT_EQ(stopped->GetKind(), Kind::kStopped);
  EXPECT_THAT(stopped->Problem(), testing::EndsWith("which is the limit"));
  EXPECT_EQ(stopped->Advice(), "Read it again, and allow more created features");
  document = Read(Example("bolted_bracket"));
  const std::size_t made = upgrader.Upgrade(document).featuresCreated;
  document = Read(Example("bolted_bracket"));
  for (int i = 0; i < 100; ++i) static_cast<void>(document.Create("Own"));
  upgrader.Upgrade(document, {.maxFeaturesCreated = 10 * made});  // the program's own do not count
  for (std::size_t i = 0; i < 20 * made; ++i) static_cast<void>(document.Create("Own"));
}

// The documents that it worked on keep the libraries; what these made lives on.
TEST_F(UpgraderTest, DocumentsOutliveTheirUpgrader) {
  std::optional<Upgrader> upgrader(std::in_place);
  Document document = Read(Example("heated_pipe"));
  upgrader->Upgrade(document);
  const std::string before = TextOf(document);
  upgrader.reset();
  EXPECT_EQ(TextOf(document), before);
  for (Feature each : document.All()) each.SetUpToDate(false);
  EXPECT_EQ(Upgrader().Upgrade(document).identifiers.size(), 0U);
}

}  // namespace
