#include "HVXESubmodelBCUpgrade.h"

#include "HVXConditionUpgrades.h"
#include "HVXSonsList.h"
#include "HVXUpgradeIdentifiers.h"

namespace {

constexpr const char* kLateTypes[] = {"HVXSubmodelBCLT"};

// The parameters of which older documents hold repetitions, such as "Magnitude.2".
const VLMUnicodeString kParameters[] = {"GlobalStepNumber", "ScaleTimePeriod", "Magnitude",
                                        "AbsoluteExteriorTolerance", "RelativeExteriorTolerance"};
const VLMUnicodeString kNumberMark(".");

// The son's name without its number. Searched backward from position 1, on purpose: the number is behind the
// last dot, and a dot that ends the name begins none.
VLMUnicodeString NameWithoutNumber(const VLMISpecObject_var& spSon) {
  VLMUnicodeString name = spSon->GetName();
  const int mark = name.SearchSubString(kNumberMark, 1, VLMSearchMode::kBackward);
  if (mark >= 0) name.Resize(mark);
  return name;
}

}  // namespace

const HVXUpgradeBinding HVXESubmodelBCUpgrade::kBindings[] = {
    {kUpgradeSubModelBCBasicComponents, "Rebuilds the basic components and removes repeated parameters.",
     Own<&HVXESubmodelBCUpgrade::UpgradeAndRemoveRepetitions>, HVXOnFailure::kLast},
};

constinit const HVXUpgradeClass HVXESubmodelBCUpgrade::kClass = {
    .name = "HVXESubmodelBCUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT HVXESubmodelBCUpgrade::UpgradeAndRemoveRepetitions() {
  const VLMISpecObject_var spSpec(Feature());
  if (spSpec == NULL_var) return E_FAIL;
  return HVXUpgradeThenTransfer(Feature(), [this] { return RemoveRepetitions(); });
}

HRESULT HVXESubmodelBCUpgrade::RemoveRepetitions() {
  const VLMISpecObject_var spSpec(Feature());
  const VLMISpecAttrAccess_var spAttrAccess(Feature());
  if (spSpec == NULL_var || spAttrAccess == NULL_var) return E_FAIL;
  const HVXSonsList sons(spAttrAccess, spSpec);
  if (sons.IsMissing()) return E_FAIL;

  VLMListValVLMISpecObject_var sonsOfParameter[std::size(kParameters)];
  for (int position = 1; position <= sons.Size(); ++position) {
    const VLMISpecObject_var spSon = sons.Son(position);
    if (spSon == NULL_var) continue;
    const VLMUnicodeString name = NameWithoutNumber(spSon);
    for (std::size_t i = 0; i < std::size(kParameters); ++i)
      if (name == kParameters[i]) sonsOfParameter[i].Append(spSon);
  }

  for (const VLMListValVLMISpecObject_var& repeated : sonsOfParameter)  // the first of each stays
    for (int position = repeated.Size(); position >= 2; --position) sons.Remove(repeated[position]);
  return S_OK;
}

HVX_EXPORT_CREATE_TIE(HVXESubmodelBCUpgrade)
