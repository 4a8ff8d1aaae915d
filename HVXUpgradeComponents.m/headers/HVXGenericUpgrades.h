#pragma once

#include <vector>

#include "HVXOutputRequestIndex.h"
#include "analysis/VLMISamAnalysisSet.h"
#include "modeler/VLMILinkableObject.h"
#include "workbench/HVXIAnalysisCase.h"
#include "workbench/HVXIContactConnectionProp.h"

/// The conversions of a whole document.
///
/// The removal of contact connection properties (CCP) makes a contact pair (CP) for each property in each
/// analysis case of this product, points the output requests at the pairs, and deletes the properties. Its
/// indexes live as long as one run and keep its cost in proportion to the number of pairs, of requests, and
/// of properties times steps.
class __attribute__((visibility("default"))) HVXGenericUpgrades {
 public:
  HVXGenericUpgrades() = delete;

  /// Runs the conversion that `identifiers` names on the document's features. Acts only on a list of exactly
  /// one identifier: E_FAIL for an empty list, 0 without doing anything for a longer one or an identifier
  /// that is none of its own; else the conversion's code when negative, and 0.
  static HRESULT Upgtade(const VLMListValVLMUnicodeString& identifiers,
                         const VLMListValVLMISpecObject_var& features);

 private:
  struct ProductCase;

  static HRESULT RemoveConsistencyCheckAttributes(const VLMListValVLMISpecObject_var& features);

  /// 1 when the document's properties cannot be listed or there are none: nothing was done.
  static HRESULT RemoveCCPs(const VLMListValVLMISpecObject_var& features);
  static std::vector<ProductCase> ProductCasesAmong(const VLMListValVLMBaseUnknown_var& cases);
  static HRESULT ReplaceInCase(ProductCase& productCase, const HVXIContactConnectionProp_var& spProperty,
                               HVXOutputRequestIndex& requests);
  static HRESULT GetAllCreatedContactPairs(const HVXIAnalysisCase_var& spCase,
                                           VLMListValVLMISpecObject_var& pairs, bool& isWhole);
  static void IndexCreatedContactPairs(ProductCase& productCase);
  static void AddToIndex(ProductCase& productCase, const VLMISpecObject_var& spPair);
  static bool IsCreatedForCCP(const ProductCase& productCase, const HVXIContactConnectionProp_var& spProperty,
                              VLMISpecObject_var& spPair);
  static HRESULT CreateCPFromCCP(ProductCase& productCase, const HVXIContactConnectionProp_var& spProperty,
                                 VLMISpecObject_var& spPair);
  static VLMISamAnalysisSet_var ChooseInteractionSet(ProductCase& productCase,
                                                     const HVXIContactConnectionProp_var& spProperty);
  static HRESULT GetInteractionSetFromFirstStep(const HVXIAnalysisCase_var& spCase,
                                                VLMISamAnalysisSet_var& spSet);
  static HRESULT CopyDataFromCCP(const HVXIContactConnectionProp_var& spProperty,
                                 const VLMISpecObject_var& spPair);
  static HRESULT CopyInterferenceFit(const HVXIContactConnectionProp_var& spProperty,
                                     const VLMISpecObject_var& spPair);
  static HRESULT GetSupport(const VLMBaseUnknown_var& feature, VLMILinkableObject_var& spFirst,
                            VLMILinkableObject_var& spSecond);
  static HRESULT Propagate(const VLMISpecObject_var& spPair);

  static HRESULT FindAndReplaceAsSupport(const VLMISpecObject_var& spOld, const VLMISpecObject_var& spNew,
                                         HVXOutputRequestIndex& requests);
  static HRESULT FindAndReplaceAsSupportFromDatOutPut(const VLMBaseUnknown_var& spStep,
                                                      const VLMISpecObject_var& spOld,
                                                      const VLMISpecObject_var& spNew,
                                                      HVXOutputRequestIndex& requests);
  static HRESULT FindAndReplaceAsSupportFromHistoryOutPut(const VLMBaseUnknown_var& spStep,
                                                          const VLMISpecObject_var& spOld,
                                                          const VLMISpecObject_var& spNew,
                                                          HVXOutputRequestIndex& requests);
  static HRESULT FindAndReplaceAsSupportFromFieldOutPut(const VLMBaseUnknown_var& spStep,
                                                        const VLMISpecObject_var& spOld,
                                                        const VLMISpecObject_var& spNew,
                                                        HVXOutputRequestIndex& requests);
  static HRESULT FindAndReplaceAsSupportFromSet(const VLMUnicodeString& setType,
                                                const VLMBaseUnknown_var& spStep,
                                                const VLMISpecObject_var& spOld,
                                                const VLMISpecObject_var& spNew,
                                                HVXOutputRequestIndex& requests);
  static HRESULT FindAndReplaceAsSupportFromFeat(const VLMISpecObject_var& spRequest,
                                                 const VLMISpecObject_var& spOld,
                                                 const VLMISpecObject_var& spNew);
};
