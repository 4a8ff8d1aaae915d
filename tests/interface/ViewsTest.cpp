// What is told about a document as a whole: findings, differences, columns.

#include <hvxupgrade/Columns.h>
#include <hvxupgrade/Difference.h>
#include <hvxupgrade/Findings.h>

#include <cmath>

#include "interface/InterfaceTest.h"

namespace {

using namespace hvxupgrade;
using namespace testing_support;
using testing::ElementsAre;
using Cell = Columns::Column::Cell;

constexpr std::string_view kParts =
    R"({"id":1,"type":"Folder","alias":"top"}
{"id":5,"type":"Part","father":{"ref":1},"attributes":{"x":1,"y":{"ref":1}}}
{"id":3,"type":"Part","father":{"ref":1},"attributes":{"x":2.5,"y":null}}
{"id":4,"type":"Folder","father":{"ref":3},"attributes":{"x":true,"y":"text"}}
{"id":6,"type":"Part","attributes":{"x":[1]}}
)";

using ViewsTest = InterfaceTest;

TEST_F(ViewsTest, ColumnsHaveARowForEachFeature) {
  Document document = Given(kParts);
  document.Remove(*document.Find(6));
  document.Create("Late").Set("x", -1);
  const std::vector<std::string> keys{"x", "never heard of", "y"};
  const Columns columns = Columns::Of(document, keys);
  EXPECT_THAT(columns.ids, ElementsAre(1, 5, 3, 4, 7));
  EXPECT_THAT(columns.fathers, ElementsAre(0, 1, 1, 3, 0));
  EXPECT_THAT(columns.lateTypeNames, ElementsAre("Folder", "Part", "Late"));
  EXPECT_THAT(columns.lateTypes, ElementsAre(0, 1, 1, 0, 2));
  ASSERT_EQ(columns.attributes.size(), 3U);
  const Columns::Column& x = columns.attributes[0];
  EXPECT_EQ(x.key, "x");
  EXPECT_THAT(x.cells, ElementsAre(Cell::kNone, Cell::kInteger, Cell::kReal, Cell::kBoolean, Cell::kInteger));
  EXPECT_THAT(x.numbers, ElementsAre(testing::IsNan(), 1.0, 2.5, 1.0, -1.0));
  EXPECT_THAT(columns.attributes[1].cells, testing::Each(Cell::kNone));
  const Columns::Column& y = columns.attributes[2];
  EXPECT_THAT(y.cells, ElementsAre(Cell::kNone, Cell::kLink, Cell::kLink, Cell::kString, Cell::kNone));
  EXPECT_THAT(y.numbers, ElementsAre(testing::IsNan(), 1.0, 0.0, testing::IsNan(), testing::IsNan()));
  EXPECT_TRUE(Columns::Of(Document()).ids.empty());
}

TEST_F(ViewsTest, DifferencesTellEachFieldInTheWordsOfTheFile) {
  Document before = Given(kParts);
  Document after = Given(kParts);
  EXPECT_TRUE(Compare(before, after).IsEmpty());
  EXPECT_TRUE(ChangesSinceRead(after).IsEmpty());
  after.Find(1)->SetAlias("bottom");
  after.Find(5)->Set("x", 2);
  after.Find(3)->Remove("y");
  after.Find(6)->Set("x", 9);
  after.Find(6)->Set("x", List{1});  // as it was
  after.Remove(*after.Find(4));
  const FeatureId made = after.Create("New", "fresh").Id();
  after.Remove(after.Create("Gone"));

  for (const Difference& told : {Compare(before, after), ChangesSinceRead(after)}) {
    EXPECT_FALSE(told.IsEmpty());
    ASSERT_EQ(told.changed.size(), 3U);
    EXPECT_EQ(told.changed[0].id, 1);
    ASSERT_EQ(told.changed[0].fields.size(), 1U);
    EXPECT_EQ(told.changed[0].fields[0].field, "alias");
    EXPECT_EQ(told.changed[0].fields[0].before, "\"top\"");
    EXPECT_EQ(told.changed[0].fields[0].after, "\"bottom\"");
    EXPECT_EQ(told.changed[1].fields[0].key, "x");
    EXPECT_EQ(told.changed[1].fields[0].after, "2");
    EXPECT_EQ(told.changed[2].fields[0].field, "attributes");
    EXPECT_EQ(told.changed[2].fields[0].before, "null");
    EXPECT_EQ(told.changed[2].fields[0].after, "");
    ASSERT_EQ(told.created.size(), 1U);
    EXPECT_EQ(told.created[0].id, made);
    EXPECT_EQ(told.created[0].lateType, "New");
    ASSERT_EQ(told.removed.size(), 1U);
    EXPECT_EQ(told.removed[0].id, 4);
    EXPECT_EQ(told.removed[0].lateType, "Folder");
  }
}

TEST_F(ViewsTest, DifferencesTellUpgradesOfOtherLibraries) {
  const auto through = [this](const std::string& upgrades, const std::string& libraries) {
    return Read(folder_.Put("through.hvxdoc", R"({"format":"hvxdoc","version":2,"upgrades":)" + upgrades +
                                                  R"(,"libraries":)" + libraries + R"(,"features":0})" +
                                                  "\n"));
  };
  Document before = through(R"(["A","B"])", R"([{"name":"Acme","version":"1.0","upgrades":["A","B"]}])");
  Document same = through(R"(["A","B"])", R"([{"name":"Acme","version":"1.0","upgrades":["A","B"]}])");
  Document after = through(R"(["A","B","C"])", R"([{"name":"Acme","version":"1.0","upgrades":["A"]},)"
                                               R"({"name":"Acme","version":"2.0","upgrades":["C"]}])");
  EXPECT_TRUE(Compare(before, same).IsEmpty());
  const Difference told = Compare(before, after);
  EXPECT_THAT(told.upgradesAfter, ElementsAre("C"));
  ASSERT_EQ(told.otherSources.size(), 1U);
  const Difference::OtherSource& other = told.otherSources.front();
  EXPECT_EQ(other.identifier, "B");
  EXPECT_EQ(other.libraryBefore + other.versionBefore, "Acme1.0");
  EXPECT_EQ(other.libraryAfter + other.versionAfter, "");
  after = through(R"(["A","B"])", R"([{"name":"Acme","version":"1.1","upgrades":["A","B"]}])");
  EXPECT_FALSE(Compare(before, after).IsEmpty());
}

TEST_F(ViewsTest, WhatAnUpgradeDidIsToldAlikeByTheDocumentAndByComparing) {
  for (const char* const example : kExamples) {
    Document before = Read(Example(example));
    Document after = Read(Example(example));
    const UpgradeResult result = Upgrader().Upgrade(after);
    const Difference since = ChangesSinceRead(after);
    const Difference compared = Compare(before, after);
    const auto sizes = [](const Difference& told) {
      return std::vector{told.upgradesBefore.size(), told.upgradesAfter.size(), told.changed.size(),
                         told.created.size(), told.removed.size()};
    };
    EXPECT_EQ(sizes(since), sizes(compared));
    EXPECT_EQ(since.upgradesAfter, result.identifiers);
    EXPECT_EQ(since.changed.size(), result.featuresChanged);
    EXPECT_EQ(since.created.size(), result.featuresCreated);
    EXPECT_EQ(since.removed.size(), result.featuresRemoved);
  }
}

TEST_F(ViewsTest, FindingsTellWhatIsPendingAndWhatNobodyKnows) {
  Document document = Given(
      R"({"id":1,"type":"AnalysisModel","attributes":{"FeatList":[]}}
{"id":2,"type":"AnalysisCas"}
{"id":3,"type":"AnalysisCas"}
)");
  const std::vector<Finding> findings = Check(document);
  ASSERT_FALSE(findings.empty());
  const Finding& unknown = findings.back();
  EXPECT_EQ(unknown.kind, Finding::Kind::kUnknown);
  EXPECT_EQ(NameOf(unknown.kind), "unknown");
  EXPECT_EQ(unknown.feature, 2);
  EXPECT_EQ(unknown.lateType, "AnalysisCas");
  EXPECT_EQ(unknown.count, 2U);
  EXPECT_EQ(unknown.key, "AnalysisCase");
  EXPECT_TRUE(unknown.needsPerson);
  EXPECT_FALSE(unknown.explanation.empty());
  EXPECT_FALSE(unknown.nextStep.empty());

  document = Read(Example("bolted_bracket"));
  std::size_t pending = 0;
  for (const Finding& each : Check(document)) pending += each.kind == Finding::Kind::kPending ? 1 : 0;
  EXPECT_GT(pending, 0U);
  Upgrader().Upgrade(document);
  for (const Finding& each : Check(document)) EXPECT_EQ(each.kind, Finding::Kind::kUnknown);
}

}  // namespace
