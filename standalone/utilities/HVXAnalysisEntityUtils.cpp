#include "workbench/HVXAnalysisEntityUtils.h"

#include "adapters/FeatureAdapter.h"
#include "analysis/Components.h"
#include "analysis/Frame.h"
#include "analysis/VLMSamCatalogFactory.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"

using namespace standalone;

namespace {

const Key kCreatesParameters("CreatesParameters");
const Key kSectionControls("SectionControlsSpec");

HRESULT SetPhysicalTypeOf(std::string_view operation, Feature* feature,
                          const VLMUnicodeString& physicalType) {
  if (const HRESULT entered = Checkpoint::Pass(operation, feature, physicalType.View()); Failed(entered)) {
    return entered;
  }
  if (feature == nullptr || feature->removed) return E_FAIL;
  feature->document->SetPhysicalType(*feature, physicalType.View());
  return S_OK;
}

}  // namespace

HRESULT HVXAnalysisEntityUtils::GetParentCaseFromObject(const VLMBaseUnknown_var& feature,
                                                        VLMISpecObject_var& analysisCase) {
  analysisCase = NULL_var;
  Feature* const own = FeatureOf(feature);
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisEntityUtils::GetParentCaseFromObject", own);
      Failed(entered)) {
    return entered;
  }
  if (own != nullptr && !own->removed) analysisCase = HandleOn<VLMISpecObject>(CaseAbove(*own));
  return analysisCase == NULL_var ? E_FAIL : S_OK;
}

// In current documents an element assignment is never without section controls, which bear the same name
// everywhere.
HRESULT HVXAnalysisEntityUtils::CreateElementAssignment(const VLMBaseUnknown_var& owner,
                                                        VLMISpecObject_var& assignment) {
  assignment = NULL_var;
  Feature* const own = FeatureOf(owner);
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisEntityUtils::CreateElementAssignment", own);
      Failed(entered)) {
    return entered;
  }
  if (own == nullptr || own->removed) return E_FAIL;
  static_cast<void>(FeatureCatalogs::Load("HVXElementPropertiesCatalog.VLMfct", *own->document));
  Feature* const made = FeatureCatalogs::Create("HVXElementAssignmentLT", "", *own);
  if (made == nullptr) return E_FAIL;
  const std::optional<std::string> name = Messages::Find("HVXHacCatalogNLS", "HVXSectionControls");
  WriteLink(*made, kSectionControls,
            FeatureCatalogs::Create("HVXSectionControlsLT", name.value_or(""), *made));
  assignment = HandleOn<VLMISpecObject>(made);
  return S_OK;
}

HRESULT HVXAnalysisEntityUtils::CreateKpeParam(const VLMUnicodeString& magnitude,
                                               const VLMUnicodeString& name, VLMIKpeParm_var& parameter,
                                               double value, const VLMDocument_var& document,
                                               unsigned char flag) {
  parameter = NULL_var;
  if (const HRESULT entered =
          Checkpoint::Pass("HVXAnalysisEntityUtils::CreateKpeParam", nullptr, name.View());
      Failed(entered)) {
    return entered;
  }
  Feature* const model = document == NULL_var ? nullptr : Document::Of(*document.Get()).AnalysisModel();
  if (model == nullptr || !IsMagnitude(magnitude.View())) return E_FAIL;
  bool creates = true;
  static_cast<void>(ReadAttribute(*model, kCreatesParameters, creates));
  if (!creates) return S_OK;
  parameter = HandleOn<VLMIKpeParm>(MakeParameter(*model, name.View(), magnitude.View(), value, flag == 1));
  return S_OK;
}

HRESULT HVXAnalysisEntityUtils::SetPhysicalTypeToSpecObject(const VLMISpecObject_var& feature,
                                                            const VLMUnicodeString& physicalType) {
  return SetPhysicalTypeOf("HVXAnalysisEntityUtils::SetPhysicalTypeToSpecObject", FeatureOf(feature),
                           physicalType);
}

HRESULT VLMSamCatalogFactory::SetPhysicalType(const VLMBaseUnknown_var& object,
                                              const VLMUnicodeString& physicalType) {
  return SetPhysicalTypeOf("VLMSamCatalogFactory::SetPhysicalType", FeatureOf(object), physicalType);
}
