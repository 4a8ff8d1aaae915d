// What setters leave alone, and what handles give once their feature is gone.

#include <gmock/gmock.h>

#include "modeler/VLMIAlias.h"
#include "modeler/VLMISpecAttrAccess.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXIAnalysisCaseSolution.h"
#include "workbench/HVXIElementAssignment.h"
#include "workbench/HVXIGasketSection.h"
#include "workbench/HVXIJob.h"
#include "workbench/HVXIMatOrientation.h"

namespace {

using testing::HasSubstr;

class StoredValuesTest : public testing_support::UpgradeTest {};

TEST_F(StoredValuesTest, AttributesAreReadAndWrittenAsWhatTheyAre) {
  Given(
      R"({"id":1,"type":"X","attributes":{"Text":"a","Integer":1,"Real":1.5,"Flag":true,"Reals":[1,2.0],"Link":null,"Links":[null]}})");
  const std::string before = Lines();
  const VLMISpecAttrAccess_var access = As<VLMISpecAttrAccess>(1);
  std::string readable;
  for (const char* const name : {"Text", "Integer", "Real", "Flag", "Reals", "Link", "Links"}) {
    const VLMSpecAttrKey key = access->GetAttrKey(name);
    VLMUnicodeString text;
    std::int64_t integer = 0;
    double real = 0.0;
    bool flag = false;
    std::vector<double> reals;
    readable += name;
    const auto note = [&](char letter, const auto& get, const auto& set) {
      if (Succeeded(get())) readable += std::string(" ") + letter;
      if (Succeeded(set())) readable += '!';
    };
    note(
        's', [&] { return access->GetString(key, text); }, [&] { return access->SetString(key, text); });
    note(
        'i', [&] { return access->GetInteger(key, integer); },
        [&] { return access->SetInteger(key, integer); });
    note(
        'r', [&] { return access->GetReal(key, real); }, [&] { return access->SetReal(key, real); });
    note(
        'b', [&] { return access->GetBoolean(key, flag); }, [&] { return access->SetBoolean(key, flag); });
    note(
        'l', [&] { return access->GetRealList(key, reals); }, [] { return E_FAIL; });
    readable += '\n';
  }
  EXPECT_EQ(readable, "Text s!\nInteger i! r\nReal r!\nFlag b!\nReals l\nLink\nLinks\n");
  EXPECT_EQ(Lines(), before);
}

TEST_F(StoredValuesTest, ASetterReplacesNoValueThatItsGetterCannotRead) {
  Given(R"({"id":1,"type":"HVXMatOrientationLT","attributes":{"Angle":"45 deg"}}
           {"id":2,"type":"HVXMatOrientationLT","attributes":{"Angle":45}}
           {"id":3,"type":"HVXJobLT","attributes":{"MemoryUnit":5000000000,"RunType":7,"RestartFlag":true}}
           {"id":4,"type":"HVXHacSolutionLT","attributes":{"AnalysisCase":"lost"}}
           {"id":5,"type":"HVXHacSolutionLT","attributes":{"AnalysisCase":null}}
           {"id":6,"type":"AnalysisCase"}
           {"id":7,"type":"HVXElementAssignmentLT","attributes":{"ElementOptions":[true]}}
           {"id":8,"type":"HVXGaskPropertyLT"}
           {"id":9,"type":"SAMBasicComponent","name":"StabilizationStiffness","father":{"ref":8},"attributes":{"Type":"SAMDouble","Values":"soft"}})");
  std::vector<std::string> before;
  for (standalone::FeatureId id = 1; id <= 9; ++id) before.push_back(Line(id));
  EXPECT_EQ(As<HVXIMatOrientation>(1)->SetAngle(0.0), E_FAIL);
  EXPECT_EQ(As<HVXIJob>(3)->SetMemoryUnit(1), E_FAIL);
  EXPECT_EQ(As<HVXIJob>(3)->SetRunType("Full Analysis"), E_FAIL);
  EXPECT_EQ(As<HVXIJob>(3)->SetRestartFlag(1), E_FAIL);
  const VLMISpecObject_var analysisCase = As<VLMISpecObject>(6);
  EXPECT_EQ(As<HVXIAnalysisCaseSolution>(4)->SetAnalysisCase(analysisCase), E_FAIL);
  EXPECT_EQ(As<HVXIElementAssignment>(7)->SetFlagGroup({}), E_FAIL);
  EXPECT_EQ(As<HVXIGasketSection>(8)->SetStabilizationStiffness(1.0), E_FAIL);
  for (standalone::FeatureId id = 1; id <= 9; ++id)
    EXPECT_EQ(Line(id), before[static_cast<std::size_t>(id) - 1]);

  EXPECT_EQ(As<HVXIMatOrientation>(2)->SetAngle(0.5), S_OK);
  EXPECT_THAT(Line(2), HasSubstr(R"("Angle":0.5)"));
  EXPECT_EQ(As<HVXIAnalysisCaseSolution>(5)->SetAnalysisCase(analysisCase), S_OK);
  EXPECT_THAT(Line(5), HasSubstr(R"("AnalysisCase":{"ref":6})"));
}

TEST_F(StoredValuesTest, AHandleOnARemovedFeatureGivesNothingMore) {
  Given(
      R"({"id":1,"type":"HVXJobLT","name":"Job","alias":"Job.1","attributes":{"RunType":"Full Analysis"}})");
  const HVXIJob_var job = As<HVXIJob>(1);
  const VLMIAlias_var alias = As<VLMIAlias>(1);
  const VLMISpecObject_var spec = As<VLMISpecObject>(1);
  const VLMISpecAttrAccess_var access = As<VLMISpecAttrAccess>(1);
  Doc().Remove(At(1));
  VLMUnicodeString text;
  EXPECT_EQ(job->GetRunType(text), E_FAIL);
  EXPECT_EQ(job->SetMemoryUnit(1), E_FAIL);
  EXPECT_EQ(alias->GetExternalName(text), E_FAIL);
  EXPECT_EQ(alias->SetExternalName("Job.2"), E_FAIL);
  EXPECT_TRUE(access->GetAttrKey("RunType").IsNull());
  EXPECT_EQ(spec->SetUpToDate(0), E_FAIL);
  EXPECT_EQ(spec->IsReadyInDomain(""), 0);
  EXPECT_TRUE(spec->GetLateType().IsNull() && spec->GetName().IsNull());
  EXPECT_TRUE(text.IsNull());
  EXPECT_EQ(At(1).externalName, "Job.1");
}

}  // namespace
