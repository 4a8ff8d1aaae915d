#include "workbench/HVXAnalysisDocUtils.h"

#include <fmt/format.h>

#include "adapters/FeatureAdapter.h"
#include "analysis/Frame.h"
#include "analysis/Supports.h"
#include "session/FeatureCatalogs.h"
#include "session/Session.h"
#include "utilities/ModelFactory.h"

using namespace standalone;

namespace {

const Key kWorkingCase("WorkingCase");
const Key kPart("Part");

Document* DocumentOf(const VLMDocument_var& document) {
  return document == NULL_var ? nullptr : &Document::Of(*document.Get());
}

// Every analysis set of a kind, in document order.
void AppendSetsOfKind(Document& document, std::string_view lateTypeOrKind,
                      VLMListValVLMBaseUnknown_var& list) {
  for (Feature* const set : document.AnalysisSets(lateTypeOrKind)) list.Append(HandleOn<VLMBaseUnknown>(set));
}

}  // namespace

HRESULT HVXAnalysisDocUtils::GetDocument(VLMDocument_var& document, const VLMBaseUnknown_var& feature) {
  document = NULL_var;
  const Feature* const own = FeatureOf(feature);
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetDocument", own); Failed(entered)) {
    return entered;
  }
  if (own == nullptr || own->removed) return E_FAIL;
  document = VLMDocument_var(own->document);
  return S_OK;
}

HRESULT HVXAnalysisDocUtils::GetCurrentDocument(VLMDocument_var& document) {
  document = NULL_var;
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetCurrentDocument", nullptr);
      Failed(entered)) {
    return entered;
  }
  document = Session::Current().CurrentDocument();
  return document == NULL_var ? E_FAIL : S_OK;
}

HRESULT HVXAnalysisDocUtils::GetAnalysisModel(VLMISamAnalysisModel_var& model,
                                              const VLMDocument_var& document) {
  model = NULL_var;
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetAnalysisModel", nullptr);
      Failed(entered)) {
    return entered;
  }
  if (document == NULL_var) return E_FAIL;
  model = HandleOn<VLMISamAnalysisModel>(DocumentOf(document)->AnalysisModel());
  return model == NULL_var ? E_FAIL : S_OK;
}

HRESULT HVXAnalysisDocUtils::GetFactory(VLMISamAnalysisModelFactory_var& factory,
                                        const VLMDocument_var& document) {
  factory = NULL_var;
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetFactory", nullptr); Failed(entered)) {
    return entered;
  }
  if (document == NULL_var) return E_FAIL;
  factory = MakeModelFactory(*DocumentOf(document));
  return S_OK;
}

HRESULT HVXAnalysisDocUtils::GetAllAnalysisCases(VLMListValVLMBaseUnknown_var& cases,
                                                 const VLMDocument_var& document) {
  cases.RemoveAll();
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetAllAnalysisCases", nullptr);
      Failed(entered)) {
    return entered;
  }
  if (document == NULL_var) return E_FAIL;
  AppendSetsOfKind(*DocumentOf(document), kind::kAnalysisCase, cases);
  return S_OK;
}

HRESULT HVXAnalysisDocUtils::GetWorkingCase(VLMISamAnalysisCase_var& analysisCase,
                                            const VLMDocument_var& document,
                                            const VLMBaseUnknown_var& feature) {
  analysisCase = NULL_var;
  Feature* const own = FeatureOf(feature);
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetWorkingCase", own); Failed(entered)) {
    return entered;
  }
  if (document == NULL_var || own == nullptr || own->removed || own->document != DocumentOf(document))
    return E_FAIL;
  Feature* const working = LinkedFeature(*own, kWorkingCase);
  analysisCase = HandleOn<VLMISamAnalysisCase>(working != nullptr ? working : CaseAbove(*own));
  return analysisCase == NULL_var ? E_FAIL : S_OK;
}

HRESULT HVXAnalysisDocUtils::GetAnalysisSets(VLMListValVLMBaseUnknown_var& sets,
                                             const VLMDocument_var& document,
                                             const VLMUnicodeString& setType) {
  sets.RemoveAll();
  if (const HRESULT entered =
          Checkpoint::Pass("HVXAnalysisDocUtils::GetAnalysisSets", nullptr, setType.View());
      Failed(entered)) {
    return entered;
  }
  if (document == NULL_var) return E_FAIL;
  AppendSetsOfKind(*DocumentOf(document), setType.View(), sets);
  return S_OK;
}

HRESULT HVXAnalysisDocUtils::GetFeatureListFromSet(const VLMUnicodeString& setType,
                                                   const VLMBaseUnknown_var& holder,
                                                   VLMListValVLMISpecObject_var& features) {
  features.RemoveAll();
  Feature* const own = FeatureOf(holder);
  if (const HRESULT entered =
          Checkpoint::Pass("HVXAnalysisDocUtils::GetFeatureListFromSet", own, setType.View());
      Failed(entered)) {
    return entered;
  }
  if (own == nullptr || own->removed) return E_FAIL;
  const Feature* const set = FirstSonOfKind(*own, setType.View());
  if (set == nullptr) return S_OK;
  for (Feature* son = set->firstSon; son != nullptr; son = son->nextSibling) {
    features.Append(HandleOn<VLMISpecObject>(son));
  }
  return S_OK;
}

HRESULT HVXAnalysisDocUtils::GetInteractionSet(const VLMBaseUnknown_var& holder,
                                               VLMISamAnalysisSet_var& interactionSet) {
  interactionSet = NULL_var;
  Feature* const own = FeatureOf(holder);
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetInteractionSet", own);
      Failed(entered)) {
    return entered;
  }
  if (own == nullptr || own->removed) return E_FAIL;
  interactionSet = HandleOn<VLMISamAnalysisSet>(FirstSonOfKind(*own, "HVXInteractionContainerLT"));
  return interactionSet == NULL_var ? E_FAIL : S_OK;
}

HRESULT HVXAnalysisDocUtils::GetAllSiblingFeatures(const VLMBaseUnknown_var& feature,
                                                   VLMListValVLMISpecObject_var& siblings) {
  siblings.RemoveAll();
  Feature* const own = FeatureOf(feature);
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::GetAllSiblingFeatures", own);
      Failed(entered)) {
    return entered;
  }
  if (own == nullptr || own->removed) return E_FAIL;
  if (own->father == nullptr) return S_OK;
  for (Feature* son = own->father->firstSon; son != nullptr; son = son->nextSibling) {
    if (son != own) siblings.Append(HandleOn<VLMISpecObject>(son));
  }
  return S_OK;
}

VLMISpecObject_var HVXAnalysisDocUtils::GetPartAsSpecObject(const VLMILinkableObject_var& object) {
  const Feature* const own = FeatureOf(object);
  if (Failed(Checkpoint::Pass("HVXAnalysisDocUtils::GetPartAsSpecObject", own))) return {};
  if (own == nullptr || own->removed || own->Container() == nullptr) return {};
  return HandleOn<VLMISpecObject>(LinkedFeature(*own->Container(), kPart));
}

HRESULT HVXAnalysisDocUtils::LoadCatalog(const VLMString& catalog, const VLMDocument_var& document) {
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::LoadCatalog", nullptr, catalog.View());
      Failed(entered)) {
    return entered;
  }
  return document == NULL_var ? E_FAIL : FeatureCatalogs::Load(catalog.View(), *DocumentOf(document));
}

HRESULT HVXAnalysisDocUtils::RemoveAnalysisEntity(const VLMBaseUnknown_var& entity) {
  Feature* const own = FeatureOf(entity);
  if (const HRESULT entered = Checkpoint::Pass("HVXAnalysisDocUtils::RemoveAnalysisEntity", own);
      Failed(entered)) {
    return entered;
  }
  if (own == nullptr || own->removed) return E_FAIL;
  own->document->Remove(*own);
  return S_OK;
}
