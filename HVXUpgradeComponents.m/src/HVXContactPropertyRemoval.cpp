// How contact connection properties become contact pairs.

#include <iostream>
#include <optional>

#include "HVXConnectionPropertyLookup.h"
#include "HVXContactPairIndex.h"
#include "HVXGenericUpgrades.h"
#include "analysis/VLMISamAnalysisScan.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "base/VLMLibrary.h"
#include "modeler/VLMIAlias.h"
#include "workbench/HVXAnalPreProcEntityUtils.h"
#include "workbench/HVXAnalysisDocUtils.h"
#include "workbench/HVXIContactConnectionEnhancementStd.h"
#include "workbench/HVXIFactoryExtForPropagation.h"
#include "workbench/HVXIInterferenceFit.h"
#include "workbench/HVXIPropagatingFeature.h"
#include "workbench/HVXIStaticLPStep.h"
#include "workbench/HVXIStep.h"
#include "workbench/HVXISurfaceToSurfaceContactFact.h"
#include "workbench/HVXITraverser.h"
#include "workbench/HVXStepUtils.h"

namespace {

constexpr HRESULT kNothingDone = 1;

constexpr const char* kContactFactory = "HVXSurfaceToSurfaceContactFact";
constexpr const char* kPropagationFactory = "HVXEFactoryExtForPropagation";
const VLMUnicodeString kInteractionContainer("HVXInteractionContainerLT");
const VLMUnicodeString kConnectorType("GeometrySmartConnector");

constexpr std::int32_t kInteractionsInSteps = 1;  // the kind of case
constexpr std::int32_t kStandard = 1;             // the kind of property

// Created where it stands, so not a copy that propagation brought.
bool IsCreatedContactPair(const VLMISpecObject_var& spFeature) {
  const HVXIContactConnectionEnhancement_var spPair(spFeature);
  if (spPair == NULL_var) return false;
  const HVXIPropagatingFeature_var spPropagating(spFeature);
  return !(spPropagating == NULL_var) && spPropagating->GetPropagationState() == 0;
}

}  // namespace

/// An analysis case of this product and what is known about it during one run.
struct HVXGenericUpgrades::ProductCase {
  HVXIAnalysisCase_var spCase;
  std::optional<HVXContactPairIndex> pairs;  // once they were listed
  bool pairsAreWhole = false;                // when nothing failed in that
  VLMISamAnalysisSet_var spFirstStepSet;     // once it was found
};

HRESULT HVXGenericUpgrades::RemoveCCPs(const VLMListValVLMISpecObject_var& features) {
  if (features.Size() == 0) return S_OK;
  const VLMISpecObject_var& spFirst = features[1];
  if (spFirst == NULL_var) return E_FAIL;
  VLMDocument_var spDocument;
  if (Failed(HVXAnalysisDocUtils::GetDocument(spDocument, spFirst)) || spDocument == NULL_var) return E_FAIL;

  VLMListValVLMBaseUnknown_var allCases;
  if (const HRESULT listed = HVXAnalysisDocUtils::GetAllAnalysisCases(allCases, spDocument); Failed(listed))
    return listed;
  if (allCases.Size() == 0) return S_OK;
  std::vector<ProductCase> productCases = ProductCasesAmong(allCases);
  const bool allAreProductCases = static_cast<int>(productCases.size()) == allCases.Size();

  VLMListValVLMBaseUnknown_var properties;
  if (Failed(HVXAnalPreProcEntityUtils::GetListOfPropFromAnalDoc(spDocument, properties)))
    return kNothingDone;
  if (properties.Size() == 0) return kNothingDone;

  HVXOutputRequestIndex requests;
  for (int position = 1; position <= properties.Size(); ++position) {
    const HVXIContactConnectionProp_var spProperty(properties[position]);
    if (spProperty == NULL_var) continue;
    HRESULT failure = S_OK;
    for (ProductCase& productCase : productCases) {
      if (Failed(ReplaceInCase(productCase, spProperty, requests))) failure = E_FAIL;
    }
    // Cases of other products may still use the property, so it stays then.
    if (allAreProductCases && Succeeded(failure)) {
      static_cast<void>(HVXAnalysisDocUtils::RemoveAnalysisEntity(spProperty));
    }
  }
  return S_OK;
}

// In document order. What is not of this product is left out.
std::vector<HVXGenericUpgrades::ProductCase> HVXGenericUpgrades::ProductCasesAmong(
    const VLMListValVLMBaseUnknown_var& cases) {
  std::vector<ProductCase> productCases;
  for (int position = 1; position <= cases.Size(); ++position) {
    const VLMISamAnalysisCase_var spSamCase(cases[position]);
    const HVXIAnalysisCase_var spCase(cases[position]);
    if (!(spSamCase == NULL_var || spCase == NULL_var)) productCases.push_back({spCase, {}, false, {}});
  }
  return productCases;
}

// Fails when the case had no pair for the property and none, or not a whole one, could be made.
HRESULT HVXGenericUpgrades::ReplaceInCase(ProductCase& productCase,
                                          const HVXIContactConnectionProp_var& spProperty,
                                          HVXOutputRequestIndex& requests) {
  if (!productCase.pairsAreWhole) IndexCreatedContactPairs(productCase);
  HRESULT result = S_OK;
  VLMISpecObject_var spPair;
  if (!IsCreatedForCCP(productCase, spProperty, spPair)) {
    result = CreateCPFromCCP(productCase, spProperty, spPair);
  }
  // Also to a pair that could not be completed, and whatever becomes of it, on purpose.
  static_cast<void>(FindAndReplaceAsSupport(spProperty, spPair, requests));
  return result;
}

HRESULT HVXGenericUpgrades::GetAllCreatedContactPairs(const HVXIAnalysisCase_var& spCase,
                                                      VLMListValVLMISpecObject_var& pairs, bool& isWhole) {
  pairs.RemoveAll();
  if (spCase == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var sets;
  if (const HRESULT listed = spCase->ListSets(sets); Failed(listed)) return listed;
  for (int position = 1; position <= sets.Size(); ++position) {
    const HVXITraverser_var spTraverser(sets[position]);
    if (spTraverser == NULL_var) continue;
    VLMListValVLMISpecObject_var features;
    if (Failed(spTraverser->ListFeatures(features))) isWhole = false;
    for (int index = 1; index <= features.Size(); ++index) {
      if (IsCreatedContactPair(features[index])) pairs.Append(features[index]);
    }
  }
  return S_OK;
}

// Lists the case's pairs for the whole run. When the sets or what is in one cannot be listed nothing is kept,
// so that the next property lists them anew instead of getting a second pair.
void HVXGenericUpgrades::IndexCreatedContactPairs(ProductCase& productCase) {
  VLMListValVLMISpecObject_var pairs;
  bool isWhole = true;
  if (Failed(GetAllCreatedContactPairs(productCase.spCase, pairs, isWhole))) return;
  productCase.pairs.emplace();
  for (int position = 1; position <= pairs.Size(); ++position) AddToIndex(productCase, pairs[position]);
  productCase.pairsAreWhole = isWhole;
}

void HVXGenericUpgrades::AddToIndex(ProductCase& productCase, const VLMISpecObject_var& spPair) {
  VLMILinkableObject_var spFirst;
  VLMILinkableObject_var spSecond;
  static_cast<void>(GetSupport(spPair, spFirst, spSecond));
  if (!productCase.pairs.has_value() || spFirst == NULL_var || spSecond == NULL_var) return;
  productCase.pairs->Add(spFirst, spSecond, spPair);
}

// True, with the first such pair, when a pair of the case connects what the property connects.
bool HVXGenericUpgrades::IsCreatedForCCP(const ProductCase& productCase,
                                         const HVXIContactConnectionProp_var& spProperty,
                                         VLMISpecObject_var& spPair) {
  if (spProperty == NULL_var || !productCase.pairs.has_value()) return false;
  VLMILinkableObject_var spFirst;
  VLMILinkableObject_var spSecond;
  static_cast<void>(GetSupport(spProperty, spFirst, spSecond));
  if (spFirst == NULL_var || spSecond == NULL_var) return false;
  spPair = productCase.pairs->Find(spFirst, spSecond);
  return !(spPair == NULL_var);
}

HRESULT HVXGenericUpgrades::CreateCPFromCCP(ProductCase& productCase,
                                            const HVXIContactConnectionProp_var& spProperty,
                                            VLMISpecObject_var& spPair) {
  if (spProperty == NULL_var) return E_FAIL;
  const VLMISamAnalysisSet_var spSet = ChooseInteractionSet(productCase, spProperty);
  if (spSet == NULL_var) return E_FAIL;
  HVXISurfaceToSurfaceContactFact_var spFactory;
  static_cast<void>(VLMInstantiateComponent(kContactFactory, spFactory));
  if (spFactory == NULL_var) return E_FAIL;
  static_cast<void>(spFactory->CreateContactPair(spSet, productCase.spCase, spPair));
  if (spPair == NULL_var) return E_FAIL;

  HRESULT result = CopyDataFromCCP(spProperty, spPair);
  if (result == S_OK) result = Propagate(spPair);  // exactly 0: any other success code leaves it where it is
  if (IsCreatedContactPair(spPair)) AddToIndex(productCase, spPair);
  return result;
}

VLMISamAnalysisSet_var HVXGenericUpgrades::ChooseInteractionSet(
    ProductCase& productCase, const HVXIContactConnectionProp_var& spProperty) {
  std::int32_t caseKind = 0;
  static_cast<void>(productCase.spCase->GetCaseKind(caseKind));
  unsigned char clearance = 0;
  static_cast<void>(spProperty->GetClearanceFlag(clearance));
  if (caseKind == kInteractionsInSteps && clearance == 1) {
    VLMISamAnalysisSet_var& spFound = productCase.spFirstStepSet;
    if (spFound == NULL_var) {
      static_cast<void>(GetInteractionSetFromFirstStep(productCase.spCase, spFound));
    }
    if (!(spFound == NULL_var)) return spFound;
  }
  VLMISamAnalysisSet_var spSet;
  static_cast<void>(HVXAnalysisDocUtils::GetInteractionSet(productCase.spCase, spSet));
  return spSet;
}

// The set of the first step in which a contact can begin: not the initial step and no perturbation step.
HRESULT HVXGenericUpgrades::GetInteractionSetFromFirstStep(const HVXIAnalysisCase_var& spCase,
                                                           VLMISamAnalysisSet_var& spSet) {
  const VLMISamAnalysisCase_var spSamCase(spCase);
  if (spSamCase == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var steps;
  static_cast<void>(HVXStepUtils::GetAllSteps(steps, spSamCase));
  if (steps.Size() == 0) return E_FAIL;
  HVXIStep_var spStep;
  for (int position = 2; position <= steps.Size() && spStep == NULL_var; ++position) {
    const HVXIStaticLPStep_var spPerturbationStep(steps[position]);
    if (spPerturbationStep == NULL_var) spStep = HVXIStep_var(steps[position]);
  }
  const VLMISamAnalysisScan_var spScan(spStep);
  if (spScan == NULL_var) return E_FAIL;
  VLMListValVLMBaseUnknown_var containers;
  static_cast<void>(spScan->ListChildrenOfLateType(kInteractionContainer, containers, VLMScanMode::kAll));
  if (containers.Size() == 0) return E_FAIL;
  spSet = VLMISamAnalysisSet_var(containers[1]);
  return spSet == NULL_var ? E_FAIL : S_OK;
}

HRESULT HVXGenericUpgrades::CopyDataFromCCP(const HVXIContactConnectionProp_var& spProperty,
                                            const VLMISpecObject_var& spPair) {
  HRESULT result = S_OK;
  VLMILinkableObject_var spFirst;
  VLMILinkableObject_var spSecond;
  static_cast<void>(GetSupport(spProperty, spFirst, spSecond));
  if (!(spFirst == NULL_var || spSecond == NULL_var)) {
    const VLMISamAnalysisSupport_var spSupport(spPair);
    if (spSupport == NULL_var) return E_FAIL;
    if (const HRESULT prepared = spSupport->PrepareSupports(); Failed(prepared)) return prepared;
    result = spSupport->AddSupport(spFirst, spSecond, kConnectorType);
  }

  std::int32_t kind = 0;
  static_cast<void>(spProperty->GetKind(kind));
  if (kind == kStandard) {
    const HRESULT copied = CopyInterferenceFit(spProperty, spPair);
    if (Succeeded(result)) result = copied;
  }
  return Failed(result) ? result : S_OK;
}

// 0 when either side has no interference fit: there is nothing to copy then, or nowhere to.
HRESULT HVXGenericUpgrades::CopyInterferenceFit(const HVXIContactConnectionProp_var& spProperty,
                                                const VLMISpecObject_var& spPair) {
  const HVXIContactConnectionEnhancementStd_var spStandard(spPair);
  if (spStandard == NULL_var) return S_OK;
  VLMBaseUnknown_var spFitOfProperty;
  if (const HRESULT given = spProperty->GetInterferenceFit(spFitOfProperty); Failed(given)) return given;
  VLMBaseUnknown_var spFitOfPair;
  if (const HRESULT given = spStandard->GetInterferenceFit(spFitOfPair); Failed(given)) return given;
  const HVXIInterferenceFit_var spFrom(spFitOfProperty);
  const HVXIInterferenceFit_var spTo(spFitOfPair);
  if (spFrom == NULL_var || spTo == NULL_var) return S_OK;

  std::int32_t type = 0;
  if (const HRESULT read = spFrom->GetFitType(type); Failed(read)) return read;
  if (const HRESULT written = spTo->SetFitType(type); Failed(written)) return written;
  std::int32_t definition = 0;
  if (const HRESULT read = spFrom->GetDefinition(definition); Failed(read)) return read;
  if (const HRESULT written = spTo->SetDefinition(definition); Failed(written)) return written;
  double value = 0.0;
  if (const HRESULT read = spFrom->GetValue(value); Failed(read)) return read;
  return spTo->SetValue(value);
}

// What a pair or a property connects: the two objects of its first support. The first is given even when the
// second lacks.
HRESULT HVXGenericUpgrades::GetSupport(const VLMBaseUnknown_var& feature, VLMILinkableObject_var& spFirst,
                                       VLMILinkableObject_var& spSecond) {
  VLMBaseUnknown_var spFirstObject;
  VLMBaseUnknown_var spSecondObject;
  const HRESULT result = HVXLookUpConnectionProperty(feature, spFirstObject, spSecondObject);
  spFirst = VLMILinkableObject_var(spFirstObject);
  spSecond = VLMILinkableObject_var(spSecondObject);
  return result;
}

// Other than where an old contact is converted, data that cannot be set do not end the propagation, and the
// message bears the pair's name, on purpose.
HRESULT HVXGenericUpgrades::Propagate(const VLMISpecObject_var& spPair) {
  HVXIFactoryExtForPropagation_var spFactory;
  if (Failed(VLMInstantiateComponent(kPropagationFactory, spFactory)) || spFactory == NULL_var) return E_FAIL;
  if (Failed(spFactory->SetDefaultPropagationData(spPair, 0, NULL_var))) {
    std::cout << "Could not set default propagation data\n";
  }
  const HRESULT propagated = spFactory->Propagate(spPair, 0);
  if (Succeeded(propagated)) return propagated;

  VLMUnicodeString name;
  const VLMIAlias_var spAlias(spPair);
  if (!(spAlias == NULL_var)) static_cast<void>(spAlias->GetExternalName(name));
  if (name.IsNull()) {
    std::cout << "Propagation failed for feature.\n";
  } else {
    std::cout << "Propagation failed for feature: " << name.View() << '\n';
  }
  return E_FAIL;
}
