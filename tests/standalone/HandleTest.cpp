#include "modeler/VLMIAlias.h"
#include "modeler/VLMIKpeParm.h"
#include "modeler/VLMILinkableObject.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIJob.h"
#include "workbench/HVXIUpgrade.h"

namespace {

class HandleTest : public testing_support::UpgradeTest {
 protected:
  void SetUp() override {
    Given(R"({"id":1,"type":"HVXJobLT","alias":"Job"}
             {"id":2,"type":"HVXJobLT"})");
  }
};

TEST_F(HandleTest, ACastAsksTheObjectAndIsNullWithoutTheInterface) {
  const VLMISpecObject_var spSpec = As<VLMISpecObject>(1);
  const VLMIAlias_var spAlias(spSpec);
  VLMUnicodeString name;
  EXPECT_EQ(spAlias->GetExternalName(name), S_OK);
  EXPECT_EQ(name, "Job");
  EXPECT_TRUE(VLMIKpeParm_var(spSpec) == NULL_var);
  HVXIJob_var spJob = spAlias;
  EXPECT_FALSE(spJob == NULL_var);
  spJob = NULL_var;
  EXPECT_TRUE(HVXIJob_var(spJob) == NULL_var);
  EXPECT_TRUE(VLMISpecObject_var(spJob) == NULL_var);  // null gives null
}

TEST_F(HandleTest, HandlesAreEqualWhenTheyDenoteTheSameObject) {
  const HVXIUpgrade_var spUpgrade = As<HVXIUpgrade>(1);  // behind a tie of the library
  EXPECT_TRUE(spUpgrade == As<VLMISpecObject>(1));
  EXPECT_TRUE(VLMBaseUnknown_var(spUpgrade) == VLMIAlias_var(spUpgrade));
  EXPECT_TRUE(HVXIUpgrade_var(VLMIAlias_var(spUpgrade)) == spUpgrade);
  EXPECT_FALSE(As<VLMISpecObject>(1) == As<VLMISpecObject>(2));
  EXPECT_FALSE(As<VLMISpecObject>(1) == VLMIAlias_var());
  EXPECT_TRUE(VLMISpecObject_var() == VLMIAlias_var());
}

TEST_F(HandleTest, ACallThroughANullHandleRaisesTheHostsError) {
  const VLMIAlias_var spNone;
  EXPECT_THROW(static_cast<void>(spNone->SetExternalName("x")), VLMNullVarError);
  EXPECT_THROW(VLMBaseUnknown_var::ThrowErrorNullVar(), VLMNullVarError);
}

TEST_F(HandleTest, AHandleKeepsItsDocument) {
  const VLMILinkableObject_var spLinkable = As<VLMILinkableObject>(1);
  Given(R"({"id":1,"type":"HVXClamp"})");
  VLMDocument_var spDocument;
  EXPECT_EQ(spLinkable->GetDocument(spDocument), S_OK);
  EXPECT_FALSE(spDocument == VLMDocument_var(&Doc()));
  EXPECT_EQ(VLMISpecObject_var(spLinkable)->GetLateType(), "HVXJobLT");
}

TEST_F(HandleTest, ListsCountFromOneAndRefuseOtherPositions) {
  VLMListValVLMUnicodeString list{"a", "b"};
  list.Append("c");
  EXPECT_EQ(list[1], "a");
  EXPECT_EQ(list[3], "c");
  for (const int position : {0, -1, 4}) EXPECT_THROW(static_cast<void>(list[position]), std::out_of_range);
  list.RemoveAll();
  EXPECT_EQ(list.Size(), 0);
}

}  // namespace
