#include "HVXEGlobalElementUpgrade.h"

#include "HVXUpgradeIdentifiers.h"
#include "workbench/HVXAnalysisEntityUtils.h"
#include "workbench/HVXIElementAssignment.h"
#include "workbench/HVXIGlobalElemAsgnEntry.h"
#include "workbench/HVXIGlobalElemAssignment.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXGlobalElemAsgnLT"};

constexpr std::int32_t kEntryKind = 1;
constexpr std::int32_t kShape = 8;
constexpr std::int32_t kMode = 1;

// The first entry of the kind; null without one. Entries that cannot be read are passed over.
HVXIGlobalElemAsgnEntry_var EntryToExtend(const VLMListValVLMBaseUnknown_var& entries) {
  for (const VLMBaseUnknown_var& spListed : entries) {
    HVXIGlobalElemAsgnEntry_var spEntry(spListed);
    if (spEntry == NULL_var) continue;
    std::int32_t entryKind = 0;
    if (Succeeded(spEntry->GetKind(entryKind)) && entryKind == kEntryKind) return spEntry;
  }
  return NULL_var;
}

unsigned char Or(unsigned char left, unsigned char right) {
  return left != 0 || right != 0 ? 1 : 0;
}

HRESULT FillWithDefaults(const HVXIElementAssignment_var& spAssignment) {
  HRESULT result = spAssignment->SetElementShape(kShape);
  if (Failed(result)) return result;

  HVXElementFlagGroup group;
  result = spAssignment->GetDefaultFlags(kShape, kMode, group.flags, group.sixth);
  if (Failed(result)) return result;
  result = spAssignment->SetFlagGroup(group);
  if (Failed(result)) return result;

  std::int32_t formulation = 0;
  result = spAssignment->GetDefaultFormulation(kShape, kMode, formulation);
  if (Failed(result)) return result;
  result = spAssignment->SetFormulation(formulation);
  if (Failed(result)) return result;

  // The shape's flags are kept beside the formulation's, but of the two values only the formulation's is, on
  // purpose.
  std::array<unsigned char, 4> flags{};
  result = spAssignment->GetFormulationFlags(kShape, formulation, kMode, flags, group.sixth);
  if (Failed(result)) return result;
  for (std::size_t i = 0; i < flags.size(); ++i) group.flags[i] = Or(group.flags[i], flags[i]);
  return spAssignment->SetFlagGroup(group);
}

}  // namespace

const HVXUpgradeBinding HVXEGlobalElementUpgrade::kBindings[] = {
    {kUpdateGlobalElementAsgnList,
     "Adds an element assignment with the workbench's defaults to the entry of kind 1.",
     Own<&HVXEGlobalElementUpgrade::AddDefaultAssignment>, HVXOnFailure::kIgnore,
     "Without an entry of kind 1 that lists assignments there is nothing to add to."},
};

constinit const HVXUpgradeClass HVXEGlobalElementUpgrade::kClass = {
    .name = "HVXEGlobalElementUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXEGlobalElementUpgrade::AddDefaultAssignment() {
  const HVXIGlobalElemAssignment_var spGlobal(Feature());
  if (spGlobal == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var entries;
  if (Failed(spGlobal->GetEntries(entries)) || entries.Size() < 1) return E_FAIL;
  const HVXIGlobalElemAsgnEntry_var spEntry = EntryToExtend(entries);
  if (spEntry == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var assignments;
  if (Failed(spEntry->GetElementAssignments(assignments)) || assignments.Size() < 1) return E_FAIL;

  VLMISpecObject_var spCreated;
  const HRESULT created = HVXAnalysisEntityUtils::CreateElementAssignment(spEntry, spCreated);
  if (Failed(created) || spCreated == NULL_var) return created;
  const HVXIElementAssignment_var spAssignment(spCreated);
  if (spAssignment == NULL_var) return E_FAIL;
  if (const HRESULT filled = FillWithDefaults(spAssignment); Failed(filled)) return filled;

  assignments.Append(spCreated);
  return spEntry->SetElementAssignments(assignments);
}

HVX_EXPORT_CREATE_TIE(HVXEGlobalElementUpgrade)
