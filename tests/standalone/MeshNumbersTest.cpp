#include <gmock/gmock.h>

#include "analysis/MeshNumbers.h"
#include "analysis/VLMAnalysisExplicitElement.h"
#include "analysis/VLMAnalysisExplicitModel.h"
#include "analysis/VLMAnalysisExplicitNode.h"
#include "analysis/VLMIMSHMeshPart.h"
#include "modeler/VLMISpecAttrAccess.h"
#include "support/UpgradeFixture.h"
#include "upgrade/VersionManager.h"
#include "workbench/HVXAnalysisDocUtils.h"

namespace {

// An analysis model (#1) with an explicit model, and mesh parts from #2 on.
class MeshNumbersTest : public testing_support::UpgradeTest {
 protected:
  void GivenParts(const std::vector<std::string>& parts) {
    std::string lines = R"({"id":1,"type":"AnalysisModel","attributes":{"ExplicitModel":true}})";
    for (std::size_t i = 0; i < parts.size(); ++i) lines += "\n" + Part(2 + i, parts[i]);
    Given(lines);
  }
  static std::string Part(std::size_t id, const std::string& attributes) {
    return R"({"id":)" + std::to_string(id) + R"(,"type":"MSHMeshPart","attributes":{)" + attributes + "}}";
  }
  static std::string Elements(int count, const std::string& runs) {
    return R"("ElementCount":)" + std::to_string(count) + R"(,"ElementUserNumbers":)" + runs;
  }
  VLMAnalysisExplicitModel* Model() {
    return VLMAnalysisExplicitModel::GetDocumentModel(VLMDocument_var(&Doc()));
  }
  std::vector<VLMMSHElement*> ElementsOf(standalone::FeatureId part) {
    std::vector<VLMMSHElement*> elements;
    EXPECT_EQ(As<VLMIMSHMeshPart>(part)->GetElements(elements), S_OK);
    return elements;
  }
  HRESULT SetNumber(VLMMSHElement* element, std::int32_t number) {
    VLMAnalysisExplicitElement counterpart;
    EXPECT_EQ(counterpart.LinkWithMeshPointer(element, Model()), S_OK);
    return counterpart.SetUserNumber(number);
  }
  // The user numbers of all elements; -1 for one without a counterpart.
  std::vector<std::int32_t> Numbers(standalone::FeatureId part) {
    std::vector<std::int32_t> numbers;
    for (const VLMMSHElement* const element : ElementsOf(part)) {
      VLMAnalysisExplicitElement counterpart;
      EXPECT_EQ(counterpart.LinkWithMeshPointer(element, Model()), S_OK);
      std::int32_t number = -1;
      EXPECT_EQ(counterpart.GetUserNumber(number), counterpart == NULL_exp ? E_FAIL : S_OK);
      numbers.push_back(number);
    }
    return numbers;
  }
  using Integers = std::vector<std::int32_t>;
};

TEST_F(MeshNumbersTest, RunsAreReadOneByOneAndWrittenBackJoined) {
  GivenParts({Elements(8, "[5,2,-1,1,0,2,9,1]")});
  EXPECT_EQ(Numbers(2), (Integers{5, 6, -1, 0, 0, 9, -1, -1}));
  const std::vector<VLMMSHElement*> elements = ElementsOf(2);
  EXPECT_EQ(SetNumber(elements[3], 7), S_OK);
  EXPECT_EQ(SetNumber(elements[4], 8), S_OK);
  EXPECT_EQ(Line(2), Part(2, Elements(8, "[5,2,-1,1,7,3]")));
  EXPECT_EQ(SetNumber(elements[2], 4), E_FAIL);  // has no counterpart
  EXPECT_EQ(SetNumber(elements[0], -1), E_FAIL);
  EXPECT_EQ(SetNumber(elements[0], 1), S_OK);
  EXPECT_EQ(Lines(), "{\"id\":1,\"type\":\"AnalysisModel\",\"attributes\":{\"ExplicitModel\":true}}\n" +
                         Part(2, Elements(8, "[1,1,6,1,-1,1,7,3]")) + "\n");
}

TEST_F(MeshNumbersTest, LookingAndSettingTheSameNumberChangesNothing) {
  GivenParts({Elements(4, "[5,1,6,1,-1,2]")});
  EXPECT_EQ(SetNumber(ElementsOf(2)[0], 5), S_OK);
  Doc().DropAllDeadLinks();
  EXPECT_TRUE(Doc().Touched().empty());
  EXPECT_EQ(Line(2), Part(2, Elements(4, "[5,1,6,1,-1,2]")));
}

TEST_F(MeshNumbersTest, TurnsBetweenBlocksLoseNothing) {
  GivenParts({Elements(2, "[1,2]") + R"(,"NodeCount":2,"NodeUserNumbers":[3,2])", Elements(2, "[5,2]")});
  const std::vector<VLMMSHElement*> first = ElementsOf(2);
  const std::vector<VLMMSHElement*> second = ElementsOf(3);
  VLMIMSHNodeSource_var source;
  VLMIMSHNodeCollection_var collection;
  EXPECT_EQ(As<VLMIMSHMeshPart>(2)->GetNodeSource(source), S_OK);
  EXPECT_EQ(source->GetNodes(collection), S_OK);
  std::vector<VLMMSHNode*> nodes(5);
  EXPECT_EQ(collection->Fill(nodes), 2);
  VLMAnalysisExplicitNode node;
  EXPECT_EQ(SetNumber(first[0], 11), S_OK);
  EXPECT_EQ(node.LinkWithMeshPointer(nodes[1], Model()), S_OK);
  EXPECT_EQ(SetNumber(second[1], 12), S_OK);
  EXPECT_EQ(node.SetUserNumber(13), S_OK);
  EXPECT_EQ(SetNumber(first[1], 14), S_OK);
  EXPECT_EQ(Line(2), Part(2, Elements(2, "[11,1,14,1]") + R"(,"NodeCount":2,"NodeUserNumbers":[3,1,13,1])"));
  EXPECT_EQ(Line(3), Part(3, Elements(2, "[5,1,12,1]")));
}

TEST_F(MeshNumbersTest, WhatOthersWriteToTheAttributesIsNotOverwritten) {
  GivenParts({Elements(2, "[1,2]")});
  const std::vector<VLMMSHElement*> elements = ElementsOf(2);
  EXPECT_EQ(SetNumber(elements[0], 9), S_OK);
  const VLMISpecAttrAccess_var access = As<VLMISpecAttrAccess>(2);
  EXPECT_EQ(access->RemoveAttribute(access->GetAttrKey("ElementUserNumbers")), S_OK);
  EXPECT_EQ(Numbers(2), (Integers{-1, -1}));
  EXPECT_EQ(SetNumber(elements[0], 5), E_FAIL);
  EXPECT_EQ(Line(2), Part(2, R"("ElementCount":2)"));
}

TEST_F(MeshNumbersTest, RunsThatCannotBeReadStayAsTheyAre) {
  for (const char* const runs :
       {"[1]", "[1,-1]", R"(["1",2])", "[-2,2]", "[2147483647,2]", "[1.5,2]", "\"1,2\""}) {
    GivenParts({Elements(2, runs)});
    EXPECT_EQ(Numbers(2), (Integers{-1, -1})) << runs;
    EXPECT_EQ(Line(2), Part(2, Elements(2, runs)));
  }
  GivenParts({Elements(2, "[1,5]")});  // beyond the count
  EXPECT_EQ(Numbers(2), (Integers{1, 2}));
  for (const char* const count : {"-1", "134217729", "9000000000", "\"2\""}) {
    GivenParts({R"("NodeCount":1,"ElementCount":)" + std::string(count)});
    std::vector<VLMMSHElement*> elements(3);
    EXPECT_EQ(As<VLMIMSHMeshPart>(2)->GetElements(elements), E_FAIL) << count;
    EXPECT_TRUE(elements.empty());
  }
}

TEST_F(MeshNumbersTest, OnlyMeshObjectsOfPartsThatAreThereAreLinked) {
  GivenParts({Elements(1, "[1,1]"), Elements(1, "[2,1]")});
  VLMMSHElement* const element = ElementsOf(2)[0];
  VLMAnalysisExplicitElement counterpart;
  EXPECT_EQ(counterpart.LinkWithMeshPointer(nullptr, Model()), E_FAIL);
  EXPECT_EQ(counterpart.LinkWithMeshPointer(element, nullptr), E_FAIL);
  EXPECT_EQ(counterpart.LinkWithMeshPointer(element, Model()), S_OK);
  EXPECT_FALSE(counterpart == NULL_exp);
  EXPECT_EQ(counterpart.SetUserNumber(5), S_OK);
  Doc().Remove(At(2));
  EXPECT_EQ(counterpart.SetUserNumber(6), E_FAIL);
  EXPECT_EQ(counterpart.LinkWithMeshPointer(element, Model()), S_OK);
  EXPECT_TRUE(counterpart == NULL_exp);
  const int stray = 0;
  EXPECT_EQ(counterpart.LinkWithMeshPointer(reinterpret_cast<const VLMMSHElement*>(&stray), Model()), S_OK);
  EXPECT_TRUE(counterpart == NULL_exp);
  EXPECT_THAT(Lines(), testing::HasSubstr(Part(3, Elements(1, "[2,1]"))));
}

// A few bytes announce any number of them.
TEST_F(MeshNumbersTest, AllMeshPartsTogetherMayHaveSoManyObjects) {
  GivenParts({Elements(1, "[]"), Elements(1, "[]")});
  standalone::MeshNumbers& numbers = standalone::MeshNumbers::Of(Doc());
  constexpr std::size_t kHalf = standalone::kMostMeshObjects / 2;
  static_cast<void>(numbers.Elements(At(2), kHalf));
  static_cast<void>(numbers.Nodes(At(2), kHalf));
  static_cast<void>(numbers.Nodes(At(2), kHalf));  // the same ones
  EXPECT_THROW(static_cast<void>(numbers.Elements(At(3), 1)), std::runtime_error);
  static_cast<void>(numbers.Nodes(At(2), kHalf - 1));
  static_cast<void>(numbers.Elements(At(3), 1));
}

TEST_F(MeshNumbersTest, MillionsOfNodesAreResetInOnePass) {
  Given(R"({"id":1,"type":"AnalysisModel","attributes":{"ExplicitModel":true}}
           {"id":2,"type":"MSHMeshSet","father":{"ref":1}}
           {"id":3,"type":"MSHMeshPart","father":{"ref":2},"attributes":{"NodeCount":2000000,"NodeUserNumbers":[1,1999000,-1,500,20000000,500]}})");
  EXPECT_EQ(Upgrade(2, {"RestNodeAndElementUserNumber"}), S_OK);
  EXPECT_THAT(Line(3), testing::HasSubstr(R"("NodeUserNumbers":[0,1999000,-1,500,0,500])"));
}

// What is changed of a mesh shows only when all of it is: no reason to take the run for an endless one.
TEST_F(MeshNumbersTest, AMillionNodesAreNoEndlessRun) {
  Given(R"({"id":1,"type":"AnalysisModel","attributes":{"ExplicitModel":true}}
           {"id":2,"type":"MSHMeshSet","father":{"ref":1}}
           {"id":3,"type":"MSHMeshPart","father":{"ref":2},"attributes":{"NodeCount":1000000,"NodeUserNumbers":[1,1000000]}})");
  const standalone::VersionManager manager({&testing_support::Library()});
  EXPECT_THAT(manager.Run(standalone::DocumentPtr(&Doc()), {"RestNodeAndElementUserNumber"}).failures,
              testing::IsEmpty());
  EXPECT_THAT(Line(3), testing::HasSubstr(R"("NodeUserNumbers":[0,1000000])"));
}

TEST_F(MeshNumbersTest, ARunMayEndAtTheHighestNumber) {
  Given(R"({"id":1,"type":"AnalysisModel","attributes":{"ExplicitModel":true}}
           {"id":2,"type":"MSHMeshSet","father":{"ref":1}}
           {"id":3,"type":"MSHMeshPart","father":{"ref":2},"attributes":{"NodeCount":3,"NodeUserNumbers":[2147483645,3]}})");
  EXPECT_EQ(Upgrade(2, {"RestNodeAndElementUserNumber"}), S_OK);
  EXPECT_THAT(Line(3), testing::HasSubstr(R"("NodeUserNumbers":[0,3])"));
}

}  // namespace
