#include "support/UpgradeFixture.h"

namespace {

using testing_support::Failing;
using testing_support::Recording;
using testing_support::Withholding;

// A mesh set (#2) in a document with an explicit model; its mesh parts begin at #10.
class HVXENodesAndElementsUpgradeTest : public testing_support::UpgradeTest {
 protected:
  void GivenMesh(const std::vector<std::string>& parts, const char* explicitModel = "true") {
    std::string lines = std::string(R"({"id":1,"type":"AnalysisModel","attributes":{"ExplicitModel":)") +
                        explicitModel + R"(}}
        {"id":2,"type":"MSHMeshSet","father":{"ref":1}}
        {"id":3,"type":"SAMGroup","father":{"ref":2}}
        )";
    for (std::size_t i = 0; i < parts.size(); ++i) lines += Part(10 + i, parts[i]) + "\n";
    Given(lines);
  }
  static std::string Part(std::size_t id, const std::string& attributes) {
    return R"({"id":)" + std::to_string(id) + R"(,"type":"MSHMeshPart","father":{"ref":2},"attributes":{)" +
           attributes + "}}";
  }
  HRESULT Reset(standalone::CheckpointPlan plan = {}) {
    return UpgradeUnder(std::move(plan), 2, {"RestNodeAndElementUserNumber"});
  }
};

TEST_F(HVXENodesAndElementsUpgradeTest, EveryCounterpartIsResetElementsBeforeNodes) {
  GivenMesh({R"("ElementCount":3,"ElementUserNumbers":[7,1,-1,1,9,1],"NodeCount":2,"NodeUserNumbers":[5,2])",
             R"("ElementCount":0,"NodeCount":1,"NodeUserNumbers":[0,1])"});
  EXPECT_EQ(Reset(Recording()), S_OK);
  EXPECT_EQ(
      Line(10),
      Part(10,
           R"("ElementCount":3,"ElementUserNumbers":[0,1,-1,1,0,1],"NodeCount":2,"NodeUserNumbers":[0,2])"));
  EXPECT_EQ(Line(11), Part(11, R"("ElementCount":0,"NodeCount":1,"NodeUserNumbers":[0,1])"));
  EXPECT_EQ(
      Calls("VLMAnalysisExplicit"),
      (CallList{
          "VLMAnalysisExplicitModel::GetDocumentModel #1",
          "VLMAnalysisExplicitElement::LinkWithMeshPointer #10",
          "VLMAnalysisExplicitParent::SetUserNumber #10",
          "VLMAnalysisExplicitElement::LinkWithMeshPointer #10",
          "VLMAnalysisExplicitElement::LinkWithMeshPointer #10",
          "VLMAnalysisExplicitParent::SetUserNumber #10", "VLMAnalysisExplicitNode::LinkWithMeshPointer #10",
          "VLMAnalysisExplicitParent::SetUserNumber #10", "VLMAnalysisExplicitNode::LinkWithMeshPointer #10",
          "VLMAnalysisExplicitParent::SetUserNumber #10", "VLMAnalysisExplicitModel::GetDocumentModel #1",
          "VLMAnalysisExplicitNode::LinkWithMeshPointer #11",
          "VLMAnalysisExplicitParent::SetUserNumber #11"}));
}

TEST_F(HVXENodesAndElementsUpgradeTest, PartsThatAreNotReadyOrNotMeshedAreLeftAlone) {
  const char* const notReady = R"("ElementCount":1,"ElementUserNumbers":[7,1],"NotReadyIn":["Meshing"])";
  const char* const noNodes = R"("ElementCount":1,"ElementUserNumbers":[7,1])";
  const char* const unreadable = R"("ElementCount":1,"ElementUserNumbers":[7,1],"NotReadyIn":"Meshing")";
  GivenMesh({notReady, noNodes, unreadable});
  EXPECT_EQ(Reset(), S_OK);
  EXPECT_EQ(Line(10), Part(10, notReady));
  EXPECT_EQ(Line(11), Part(11, R"("ElementCount":1,"ElementUserNumbers":[0,1])"));
  EXPECT_EQ(Line(12), Part(12, unreadable));
}

TEST_F(HVXENodesAndElementsUpgradeTest, OnlyTheLastResultIsGiven) {
  const char* const part =
      R"("ElementCount":2,"ElementUserNumbers":[7,2],"NodeCount":1,"NodeUserNumbers":[5,1])";
  GivenMesh({part});
  EXPECT_EQ(Reset(Failing("VLMAnalysisExplicitElement::LinkWithMeshPointer", "", -77)),
            S_OK);  // the node's call is last
  EXPECT_EQ(Line(10),
            Part(10, R"("ElementCount":2,"ElementUserNumbers":[7,2],"NodeCount":1,"NodeUserNumbers":[0,1])"));
  EXPECT_EQ(Reset(Failing("VLMAnalysisExplicitNode::LinkWithMeshPointer", "", -77)), -77);
  EXPECT_EQ(Line(10),
            Part(10, R"("ElementCount":2,"ElementUserNumbers":[0,2],"NodeCount":1,"NodeUserNumbers":[0,1])"));
  EXPECT_EQ(Reset(Failing("VLMAnalysisExplicitParent::SetUserNumber", "", -77)), -77);
}

TEST_F(HVXENodesAndElementsUpgradeTest, WithoutAnExplicitModelOnlyTheLinksFail) {
  const char* const part = R"("ElementCount":2,"ElementUserNumbers":[7,2])";
  GivenMesh({part}, "false");
  EXPECT_EQ(Reset(), E_FAIL);
  EXPECT_EQ(Line(10), Part(10, part));
  GivenMesh({}, "false");
  EXPECT_EQ(Reset(), S_OK);
}

TEST_F(HVXENodesAndElementsUpgradeTest, AFailureEndsTheUpgrade) {
  const char* const part = R"("ElementCount":1,"ElementUserNumbers":[7,1])";
  GivenMesh({part, part});
  EXPECT_EQ(Reset(Failing("VLMISamAnalysisSet::ListMembersOffering", "", -77)), E_FAIL);
  EXPECT_EQ(Reset(Withholding("VLMISamAnalysisSet", 2)), E_FAIL);
  EXPECT_EQ(Reset(Withholding("VLMILinkableObject", 11)), E_FAIL);
  EXPECT_EQ(Line(10), Part(10, R"("ElementCount":1,"ElementUserNumbers":[0,1])"));
  EXPECT_EQ(Line(11), Part(11, part));
  EXPECT_EQ(Reset(Withholding("VLMISpecObject", 11)),
            S_OK);  // what is no feature is not asked whether it is ready
  EXPECT_EQ(Line(11), Part(11, R"("ElementCount":1,"ElementUserNumbers":[0,1])"));
}

}  // namespace
