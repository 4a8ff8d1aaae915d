// How output requests come to rest on another object than before.

#include "HVXGenericUpgrades.h"
#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXStepUtils.h"

namespace {

const VLMUnicodeString kDatOutputRequests("HVXDatOutputRequestContainerLT");
const VLMUnicodeString kHistoryOutputRequests("HVXHistoryOutputRequestContainerLT");
const VLMUnicodeString kFieldOutputRequests("HVXFieldOutputRequestContainerLT");
const VLMUnicodeString kConnectorType("GeometrySmartConnector");
const VLMUnicodeString kAnyConnectorType("");

}  // namespace

// Concerns the case that the new support stands in. What fails in one step does not keep the others from
// being treated.
HRESULT HVXGenericUpgrades::FindAndReplaceAsSupport(const VLMISpecObject_var& spOld,
                                                    const VLMISpecObject_var& spNew,
                                                    HVXOutputRequestIndex& requests) {
  if (spOld == NULL_var || spNew == NULL_var) return E_FAIL;
  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, spNew)) || spDocument == NULL_var) return E_FAIL;
  VLMISpecObject_var spCaseOfNew;
  static_cast<void>(HVXAnalysisEntityUtils::GetParentCaseFromObject(spNew, spCaseOfNew));
  const VLMISamAnalysisCase_var spCase(spCaseOfNew);
  if (spCase == NULL_var) return E_FAIL;

  VLMListValVLMBaseUnknown_var steps;
  static_cast<void>(HVXStepUtils::GetAllSteps(steps, spCase));
  for (int position = 1; position <= steps.Size(); ++position) {
    const VLMBaseUnknown_var& spStep = steps[position];
    static_cast<void>(FindAndReplaceAsSupportFromDatOutPut(spStep, spOld, spNew, requests));
    static_cast<void>(FindAndReplaceAsSupportFromHistoryOutPut(spStep, spOld, spNew, requests));
    static_cast<void>(FindAndReplaceAsSupportFromFieldOutPut(spStep, spOld, spNew, requests));
  }
  return S_OK;
}

HRESULT HVXGenericUpgrades::FindAndReplaceAsSupportFromDatOutPut(const VLMBaseUnknown_var& spStep,
                                                                 const VLMISpecObject_var& spOld,
                                                                 const VLMISpecObject_var& spNew,
                                                                 HVXOutputRequestIndex& requests) {
  return FindAndReplaceAsSupportFromSet(kDatOutputRequests, spStep, spOld, spNew, requests);
}

HRESULT HVXGenericUpgrades::FindAndReplaceAsSupportFromHistoryOutPut(const VLMBaseUnknown_var& spStep,
                                                                     const VLMISpecObject_var& spOld,
                                                                     const VLMISpecObject_var& spNew,
                                                                     HVXOutputRequestIndex& requests) {
  return FindAndReplaceAsSupportFromSet(kHistoryOutputRequests, spStep, spOld, spNew, requests);
}

HRESULT HVXGenericUpgrades::FindAndReplaceAsSupportFromFieldOutPut(const VLMBaseUnknown_var& spStep,
                                                                   const VLMISpecObject_var& spOld,
                                                                   const VLMISpecObject_var& spNew,
                                                                   HVXOutputRequestIndex& requests) {
  return FindAndReplaceAsSupportFromSet(kFieldOutputRequests, spStep, spOld, spNew, requests);
}

// Requests that do not rest on the old support would be left as they are, so only those that do are treated.
HRESULT HVXGenericUpgrades::FindAndReplaceAsSupportFromSet(const VLMUnicodeString& setType,
                                                           const VLMBaseUnknown_var& spStep,
                                                           const VLMISpecObject_var& spOld,
                                                           const VLMISpecObject_var& spNew,
                                                           HVXOutputRequestIndex& requests) {
  for (const VLMISpecObject_var& spRequest : requests.RestingOn(spOld, setType, spStep)) {
    static_cast<void>(FindAndReplaceAsSupportFromFeat(spRequest, spOld, spNew));
  }
  return S_OK;
}

// Each support on the old object gives way to one on the new, at the end; the others stay as they are. A
// support that cannot be taken out ends the replacing: the request must not come to rest on both.
HRESULT HVXGenericUpgrades::FindAndReplaceAsSupportFromFeat(const VLMISpecObject_var& spRequest,
                                                            const VLMISpecObject_var& spOld,
                                                            const VLMISpecObject_var& spNew) {
  const VLMISamAnalysisSupport_var spSupport(spRequest);
  if (spSupport == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var supports;
  if (const HRESULT listed = spSupport->ListSupports(supports); Failed(listed)) return listed;
  for (int position = 1; position <= supports.Size(); ++position) {
    const VLMISamAnalysisConnector_var spConnector(supports[position]);
    if (spConnector == NULL_var || spConnector->IsConnectedTo(spOld) != 1) continue;
    if (const HRESULT removed = spSupport->RemoveSupport(spConnector, kAnyConnectorType); Failed(removed))
      return removed;
    const HRESULT added = spSupport->AddSupport(VLMILinkableObject_var(spNew), spNew, kConnectorType);
    if (Failed(added)) return added;
  }
  return S_OK;
}
