#include "HVXConnectionContainer.h"

#include "analysis/VLMISamAnalysisScan.h"
#include "base/VLMMsgCatalog.h"
#include "workbench/HVXAnalysisDocUtils.h"

namespace {

const VLMString kStepCatalog("HVXAnalysisStepCatalog.VLMfct");
const VLMString kMessageCatalog("HVXHacCatalogNLS");
const VLMString kNameKey("HVXInteractionContainerLT");
const VLMUnicodeString kContainerLateType("HVXInteractionContainerLT");
const VLMUnicodeString kConnections("Connections");
const VLMUnicodeString kLoads("Loads");

}  // namespace

HRESULT HVXAddConnectionContainer(const VLMBaseUnknown_var& step, const VLMDocument_var& spDocument) {
  VLMDocument_var spDocumentOfStep = spDocument;
  if (spDocumentOfStep == NULL_var) {
    const HRESULT current = HVXAnalysisDocUtils::GetCurrentDocument(spDocumentOfStep);
    if (Failed(current)) return current;
  }
  const HRESULT loaded = HVXAnalysisDocUtils::LoadCatalog(kStepCatalog, spDocumentOfStep);
  if (Failed(loaded)) return loaded;
  VLMISamAnalysisModel_var spModel;
  const HRESULT modelGiven = HVXAnalysisDocUtils::GetAnalysisModel(spModel, spDocumentOfStep);
  if (Failed(modelGiven)) return modelGiven;
  VLMISamAnalysisModelFactory_var spFactory;
  const HRESULT factoryGiven = HVXAnalysisDocUtils::GetFactory(spFactory, spDocumentOfStep);
  if (Failed(factoryGiven)) return factoryGiven;

  // The name is the catalog's, and empty without one, while a container that exists is known by the fixed
  // name "Connections": both on purpose, documents of every language were written so.
  const VLMUnicodeString name = VLMMsgCatalog::BuildMessage(kMessageCatalog, kNameKey, nullptr, 0, "");

  const VLMISamAnalysisScan_var spScan(step);
  if (spScan == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var connections;
  const HRESULT lookedUp = spScan->ListSetsOfName(kConnections, connections, VLMScanMode::kAll);
  if (Failed(lookedUp) || connections.Size() > 0) return lookedUp;

  if (spFactory == NULL_var) return E_FAIL;
  VLMBaseUnknown_var spCreated;
  static_cast<void>(spFactory->CreateSet(kContainerLateType, name, spModel, spCreated));
  const VLMISamAnalysisSet_var spContainer(spCreated);
  if (spContainer == NULL_var) return E_FAIL;
  if (const HRESULT added = spScan->AddSet(spContainer); Failed(added)) return added;

  VLMListValVLMBaseUnknown_var loads;
  const HRESULT loadsLookedUp = spScan->ListSetsOfName(kLoads, loads, VLMScanMode::kAll);
  if (Failed(loadsLookedUp) || loads.Size() == 0) return loadsLookedUp;
  return spScan->OrderSet(spContainer, loads[1], 0, 1);
}

HRESULT HVXAddConnectionContainerToStep(const VLMBaseUnknown_var& step) {
  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, step)) || spDocument == NULL_var) return E_FAIL;
  return HVXAddConnectionContainer(step, spDocument);
}
