#include "workbench/HVXAnalPreProcEntityUtils.h"

#include "adapters/FeatureAdapter.h"
#include "analysis/Frame.h"

using namespace standalone;

HRESULT HVXAnalPreProcEntityUtils::GetListOfPropFromAnalDoc(const VLMDocument_var& document,
                                                            VLMListValVLMBaseUnknown_var& properties) {
  properties.RemoveAll();
  if (const HRESULT entered =
          Checkpoint::Pass("HVXAnalPreProcEntityUtils::GetListOfPropFromAnalDoc", nullptr);
      Failed(entered)) {
    return entered;
  }
  if (document == NULL_var) return E_FAIL;
  const Document& features = Document::Of(*document.Get());
  for (const Feature* set = features.First(); set != nullptr; set = set->next) {
    if (!set->type->IsAnalysisSet()) continue;
    if (!IsOfKind(*set, "PropertySet") && !IsOfKind(*set, "HVXHalvexPropertySetLT")) continue;
    for (Feature* son = set->firstSon; son != nullptr; son = son->nextSibling) {
      if (IsOfKind(*son, kind::kAnalysisEntity)) properties.Append(HandleOn<VLMBaseUnknown>(son));
    }
  }
  return S_OK;
}
