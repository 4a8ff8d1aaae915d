#include "HVXESolCaseUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamExplicit.h"
#include "analysis/VLMSamCatalogFactory.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXIAnalysisCaseSolution.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXHacSolutionLT"};

const VLMUnicodeString kPhysicalType("MECHANICAL_STATIC_LINEAR");

}  // namespace

const HVXUpgradeBinding HVXESolCaseUpgrade::kBindings[] = {
    {kUpgradeAnalysisCase, "Gives the solution's owner its physical type and the solution its analysis case.",
     Own<&HVXESolCaseUpgrade::LinkToAnalysisCase>, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXESolCaseUpgrade::kClass = {
    .name = "HVXESolCaseUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
    .resultWithoutRun = E_FAIL,
};

// Only a feature that is no solution fails: whatever else is missing is passed over, on purpose.
HRESULT HVXESolCaseUpgrade::LinkToAnalysisCase() {
  const HVXIAnalysisCaseSolution_var spSolution(Feature());
  if (spSolution == NULL_var) return E_FAIL;

  VLMDocument_var spDocument;
  static_cast<void>(HVXAnalysisDocUtils::GetDocument(spDocument, spSolution));
  VLMISamAnalysisCase_var spWorkingCase;
  static_cast<void>(HVXAnalysisDocUtils::GetWorkingCase(spWorkingCase, spDocument, spSolution));

  const VLMISpecObject_var spSpecOnSolution(spSolution);
  if (spSpecOnSolution == NULL_var) return S_OK;

  VLMISpecObject_var spFather;
  static_cast<void>(spSpecOnSolution->GetFather(spFather));
  if (!(spFather == NULL_var)) {
    static_cast<void>(VLMSamCatalogFactory::SetPhysicalType(spFather, kPhysicalType));
  }

  const VLMISpecObject_var spSpecOnCase(spWorkingCase);
  if (!(spSpecOnCase == NULL_var)) static_cast<void>(spSolution->SetAnalysisCase(spSpecOnCase));

  const VLMISamExplicit_var spExplicitOfCase(spWorkingCase);
  const VLMISamExplicit_var spExplicitOfSolution(spSpecOnSolution);
  if (!(spExplicitOfCase == NULL_var) && !(spExplicitOfSolution == NULL_var)) {
    static_cast<void>(spExplicitOfSolution->Attach(spExplicitOfCase));
  }

  static_cast<void>(spSpecOnSolution->SetUpToDate(0));
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXESolCaseUpgrade)
