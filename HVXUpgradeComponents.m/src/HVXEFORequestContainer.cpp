#include "HVXEFORequestContainer.h"

#include "HVXUpgradeIdentifiers.h"
#include "analysis/VLMISamAnalysisEntity.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "base/VLMMsgCatalog.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXIBaseOutput.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXIFieldOutputFact.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXFieldOutputRequestContainerLT"};

const VLMUnicodeString kOldRequest("HVXFieldOutputLT");
const VLMUnicodeString kContainer("HVXFieldOutputRequestContainerLT");
const VLMUnicodeString kConnectorType("GeometrySmartConnector");
const VLMString kCatalog("HVXAnalysisStep");
const VLMString kPreselectedKey("PreSelDefault.Title");

constexpr std::int32_t kPreselected = 1;

struct Settings {
  std::int32_t frequencyType = 0;
  std::int32_t frequency = 1;
};

Settings SettingsOf(const VLMBaseUnknown_var& request) {
  Settings settings;
  const HVXIBaseOutput_var spOutput(request);
  if (spOutput == NULL_var) return settings;
  static_cast<void>(spOutput->GetFrequencyType(settings.frequencyType));
  static_cast<void>(spOutput->GetFrequency(settings.frequency));
  return settings;
}

// The request's own container comes first in its parents; a request that something else holds is not
// propagated.
HRESULT Propagate(const VLMISpecObject_var& spRequest) {
  const VLMISamAnalysisEntity_var spEntity(spRequest);
  if (spEntity == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var parents;
  static_cast<void>(spEntity->ListParents(parents));
  VLMISpecObject_var spContainer;
  if (parents.Size() > 0) {
    const VLMISpecObject_var spFirst(parents[1]);
    if (!(spFirst == NULL_var) && spFirst->GetLateType() == kContainer) spContainer = spFirst;
  }
  const HVXIFactoryExtForPropagation_var spPropagation(spContainer);
  if (spPropagation == NULL_var) return E_FAIL;

  const HRESULT prepared = spPropagation->SetDefaultPropagationData(spRequest, 0, NULL_var);
  if (Failed(prepared)) return prepared;
  if (Failed(spPropagation->Propagate(spRequest, 0))) return E_FAIL;
  return prepared;
}

// A failure ends the upgrade of the container; 0 also where the old request could not be replaced.
HRESULT ReplaceRequest(const VLMISamAnalysisSet_var& spContainer, const VLMBaseUnknown_var& oldRequest) {
  const Settings settings = SettingsOf(oldRequest);
  if (Failed(spContainer->RemoveMember(oldRequest, 0))) return S_OK;
  // The old request stays removed when there is nothing to make the new one, on purpose.
  const HVXIFieldOutputFact_var spFactory(spContainer);
  if (spFactory == NULL_var) return S_OK;
  VLMISpecObject_var spRequest;
  if (Failed(spFactory->CreateFieldOutputRequest(spRequest)) || spRequest == NULL_var) return E_FAIL;

  const HVXIBaseOutput_var spOutput(spRequest);
  if (spOutput == NULL_var) return S_OK;
  static_cast<void>(spOutput->SetFrequencyType(settings.frequencyType));
  static_cast<void>(spOutput->SetFrequency(settings.frequency));
  static_cast<void>(spOutput->SetVariableSelection(kPreselected));
  static_cast<void>(spOutput->SetPreselectedVariableList(
      VLMMsgCatalog::BuildMessage(kCatalog, kPreselectedKey, nullptr, 0, "")));

  VLMDocument_var spDocument;
  static_cast<void>(HVXAnalysisDocUtils::GetDocument(spDocument, spRequest));
  if (spDocument == NULL_var) return E_FAIL;
  VLMISamAnalysisModel_var spModel;
  static_cast<void>(HVXAnalysisDocUtils::GetAnalysisModel(spModel, spDocument));
  if (spModel == NULL_var) return E_FAIL;

  const VLMISamAnalysisSupport_var spSupport(spRequest);
  const VLMILinkableObject_var spLinkableModel(spModel);
  const VLMISpecObject_var spSpecOnModel(spModel);
  if (!(spSupport == NULL_var) && !(spLinkableModel == NULL_var) && !(spSpecOnModel == NULL_var)) {
    static_cast<void>(spSupport->AddSupport(spLinkableModel, spSpecOnModel, kConnectorType));
  }
  static_cast<void>(Propagate(spRequest));
  return S_OK;
}

}  // namespace

const HVXUpgradeBinding HVXEFORequestContainer::kBindings[] = {
    {kUpgradeFieldOutputRequest,
     "Replaces each old field output request by a current one with the preselected variables.",
     Own<&HVXEFORequestContainer::ReplaceOldRequests>, HVXOnFailure::kStop},
};

constinit const HVXUpgradeClass HVXEFORequestContainer::kClass = {
    .name = "HVXEFORequestContainer",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEFORequestContainer::ReplaceOldRequests() {
  const VLMISamAnalysisSet_var spContainer(Feature());
  if (spContainer == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var oldRequests;
  if (Failed(spContainer->ListMembersOfLateType(kOldRequest, oldRequests))) return S_OK;
  for (const VLMBaseUnknown_var& spOldRequest : oldRequests) {
    if (const HRESULT replaced = ReplaceRequest(spContainer, spOldRequest); Failed(replaced)) return replaced;
  }
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXEFORequestContainer)
