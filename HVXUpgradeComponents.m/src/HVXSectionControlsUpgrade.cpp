#include "HVXSectionControlsUpgrade.h"

#include "analysis/VLMISamAnalysisScan.h"
#include "base/VLMMsgCatalog.h"
#include "modeler/VLMISpecAttrAccess.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXIAnalysisCase.h"
#include "workbench/HVXIElementAssignment.h"
#include "workbench/HVXIGlobalElemAsgnEntry.h"
#include "workbench/HVXIGlobalElemAssignment.h"
#include "workbench/HVXILocalElemAssignment.h"

namespace {

const VLMUnicodeString kGlobalAssignment("HVXGlobalElemAsgnLT");
const VLMUnicodeString kSectionControls("HVXSectionControlsLT");
const VLMString kFeatureCatalog("HVXElementPropertiesCatalog.VLMfct");
const VLMString kMessageCatalog("HVXHacCatalogNLS");
const VLMString kNameKey("HVXSectionControls");
const VLMUnicodeString kDefaultName("Section Controls(NLS Error)");
const VLMString kSectionControlsLink("SectionControlsSpec");

constexpr int kCountThatEndsTheWalk = 2;

// `documentHolder` stands in the document that the section controls are made in.
HRESULT AddSectionControls(const VLMBaseUnknown_var& assignment, const VLMBaseUnknown_var& documentHolder) {
  const HVXIElementAssignment_var spAssignment(assignment);
  if (spAssignment == NULL_var) return E_FAIL;
  VLMBaseUnknown_var spPresent;
  static_cast<void>(spAssignment->GetSectionControls(spPresent));
  if (!(spPresent == NULL_var)) return S_OK;

  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, documentHolder))) return E_FAIL;
  static_cast<void>(HVXAnalysisDocUtils::LoadCatalog(kFeatureCatalog, spDocument));
  VLMISamAnalysisModelFactory_var spFactory;
  const HRESULT factoryGiven = HVXAnalysisDocUtils::GetFactory(spFactory, spDocument);
  if (Failed(factoryGiven) || spFactory == NULL_var) return E_NOINTERFACE;

  const VLMUnicodeString name =
      VLMMsgCatalog::BuildMessage(kMessageCatalog, kNameKey, nullptr, 0, kDefaultName);
  VLMISpecObject_var spControls;
  static_cast<void>(spFactory->CreateFeature(kSectionControls, name, spAssignment, spControls));
  if (spControls == NULL_var) return E_FAIL;

  const VLMISpecAttrAccess_var spAttrAccess(spAssignment);
  if (spAttrAccess == NULL_var) return E_FAIL;
  const VLMSpecAttrKey key = spAttrAccess->GetAttrKey(kSectionControlsLink);
  if (key.IsNull()) return E_FAIL;
  static_cast<void>(spAttrAccess->StoreObject(key, spControls, 0));
  return S_OK;
}

HRESULT AddToGlobalAssignment(const VLMBaseUnknown_var& analysisCase, const VLMBaseUnknown_var& global) {
  const HVXIGlobalElemAssignment_var spGlobal(global);
  const HVXIAnalysisCase_var spCase(analysisCase);
  if (spGlobal == NULL_var || spCase == NULL_var) return E_FAIL;
  std::int32_t analysisType = 0;
  static_cast<void>(spCase->GetAnalysisType(analysisType));
  VLMBaseUnknown_var spEntryOfType;
  static_cast<void>(spGlobal->GetEntry(analysisType, spEntryOfType));
  const HVXIGlobalElemAsgnEntry_var spEntry(spEntryOfType);
  if (spEntry == NULL_var) return E_FAIL;

  VLMListValVLMBaseUnknown_var assignments;
  static_cast<void>(spEntry->GetElementAssignments(assignments));
  HRESULT result = E_FAIL;
  for (const VLMBaseUnknown_var& spAssignment : assignments) {
    result = AddSectionControls(spAssignment, global);
    if (Failed(result)) break;
  }
  return result;
}

// The settings that go from the first element assignment of a local one to its second; the shape is read
// with them and not written, on purpose.
struct Settings {
  std::int32_t shape = 0;
  std::int32_t order = 0;
  std::int32_t formulation = 0;
  HVXElementFlagGroup group;
};

bool Read(const VLMBaseUnknown_var& assignment, Settings& settings) {
  const HVXIElementAssignment_var spAssignment(assignment);
  return !(spAssignment == NULL_var) && Succeeded(spAssignment->GetElementShape(settings.shape)) &&
         Succeeded(spAssignment->GetElementOrder(settings.order)) &&
         Succeeded(spAssignment->GetFormulation(settings.formulation)) &&
         Succeeded(spAssignment->GetFlagGroup(settings.group));
}

bool Write(const VLMBaseUnknown_var& assignment, const Settings& settings) {
  const HVXIElementAssignment_var spAssignment(assignment);
  return !(spAssignment == NULL_var) && Succeeded(spAssignment->SetFormulation(settings.formulation)) &&
         Succeeded(spAssignment->SetElementOrder(settings.order)) &&
         Succeeded(spAssignment->SetFlagGroup(settings.group));
}

// The first gets its section controls before the second is written.
HRESULT CarryOverAndAdd(const VLMListValVLMBaseUnknown_var& assignments, const VLMBaseUnknown_var& global) {
  Settings settings;
  for (int position = 1; position <= assignments.Size(); ++position) {
    if (position == 1 && !Read(assignments[position], settings)) return E_FAIL;
    if (position == 2 && !Write(assignments[position], settings)) return E_FAIL;
    if (const HRESULT added = AddSectionControls(assignments[position], global); Failed(added)) return added;
  }
  return S_OK;
}

// Whatever ends the walk leaves the later local assignments as they are, on purpose.
HRESULT AddToLocalAssignments(const VLMBaseUnknown_var& global) {
  const VLMISamAnalysisSet_var spSet(global);
  if (spSet == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var locals;
  if (Failed(spSet->ListMembersOffering(HVXILocalElemAssignment::kId, 0, locals))) return E_FAIL;

  for (const VLMBaseUnknown_var& spMember : locals) {
    const HVXILocalElemAssignment_var spLocal(spMember);
    if (spLocal == NULL_var) return E_FAIL;
    VLMListValVLMBaseUnknown_var assignments;
    if (Failed(spLocal->GetElementAssignments(assignments)) || assignments.Size() < 1) return E_FAIL;
    // A local assignment with two ends the walk, on purpose, whether or not these have section controls.
    if (assignments.Size() == kCountThatEndsTheWalk) return E_FAIL;

    VLMISpecObject_var spAdded;
    const HRESULT created = HVXAnalysisEntityUtils::CreateElementAssignment(spLocal, spAdded);
    if (Failed(created) || spAdded == NULL_var) return created;
    assignments.Append(spAdded);
    if (const HRESULT set = spLocal->SetElementAssignments(assignments); Failed(set)) return set;
    if (const HRESULT carried = CarryOverAndAdd(assignments, global); Failed(carried)) return carried;
  }
  return S_OK;
}

}  // namespace

HRESULT HVXAddSectionControlsToCase(const VLMBaseUnknown_var& analysisCase) {
  const VLMISamAnalysisScan_var spScan(analysisCase);
  if (spScan == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var globals;
  static_cast<void>(spScan->ListChildrenOfLateType(kGlobalAssignment, globals, VLMScanMode::kAll));
  if (globals.Size() < 1) return E_FAIL;

  static_cast<void>(AddToGlobalAssignment(analysisCase, globals[1]));
  return AddToLocalAssignments(globals[1]);
}
