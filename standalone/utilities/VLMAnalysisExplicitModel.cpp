#include "analysis/VLMAnalysisExplicitModel.h"

#include "adapters/FeatureAdapter.h"
#include "analysis/MeshNumbers.h"
#include "analysis/VLMAnalysisExplicitElement.h"
#include "analysis/VLMAnalysisExplicitNode.h"

using namespace standalone;

namespace {

const Key kExplicitModel("ExplicitModel");

MeshNumbers& NumbersOf(VLMAnalysisExplicitModel& model) {
  return static_cast<MeshNumbers&>(model);
}

// These two stand apart from the short way below, which keeps next to nothing while it runs.

// Makes `linkedModel` and `place` those of the mesh object's counterpart; null and below 0, with S_OK, for
// one without.
[[gnu::noinline]] HRESULT LinkWherever(std::string_view operation, const void* meshObject,
                                       VLMAnalysisExplicitModel* model,
                                       VLMAnalysisExplicitModel*& linkedModel, std::int64_t& place) {
  place = -1;
  linkedModel = nullptr;
  std::int64_t found = -1;
  if (meshObject != nullptr && model != nullptr) found = NumbersOf(*model).PlaceOf(meshObject);
  const Feature* const part = found < 0 ? nullptr : NumbersOf(*model).PartAt(found);
  if (const HRESULT entered = Checkpoint::Pass(operation, part); Failed(entered)) return entered;
  if (meshObject == nullptr || model == nullptr) return E_FAIL;
  if (NumbersOf(*model).NumberAt(found) == nullptr) return S_OK;
  place = found;
  linkedModel = model;
  return S_OK;
}

[[gnu::noinline]] HRESULT SetWherever(VLMAnalysisExplicitModel* model, std::int64_t place,
                                      std::int32_t number) {
  const Feature* const part = model == nullptr ? nullptr : NumbersOf(*model).PartAt(place);
  if (const HRESULT entered = Checkpoint::Pass("VLMAnalysisExplicitParent::SetUserNumber", part);
      Failed(entered)) {
    return entered;
  }
  if (part == nullptr || number < 0) return E_FAIL;
  return NumbersOf(*model).SetNumberAt(place, number) ? S_OK : E_FAIL;
}

HRESULT Link(std::string_view operation, const void* meshObject, VLMAnalysisExplicitModel* model,
             VLMAnalysisExplicitModel*& linkedModel, std::int64_t& place) {
  if (model == nullptr || !NumbersOf(*model).FindAtHand(meshObject, place) || !Checkpoint::PassUnseen())
    return LinkWherever(operation, meshObject, model, linkedModel, place);
  linkedModel = model;
  return S_OK;
}

}  // namespace

VLMAnalysisExplicitModel* VLMAnalysisExplicitModel::GetDocumentModel(const VLMDocument_var& document) {
  Document* const own = document == NULL_var ? nullptr : &Document::Of(*document.Get());
  Feature* const analysisModel = own == nullptr ? nullptr : own->AnalysisModel();
  if (Failed(Checkpoint::Pass("VLMAnalysisExplicitModel::GetDocumentModel", analysisModel))) return nullptr;
  bool exists = false;
  if (analysisModel != nullptr) static_cast<void>(ReadAttribute(*analysisModel, kExplicitModel, exists));
  return exists ? &MeshNumbers::Of(*own) : nullptr;
}

HRESULT VLMAnalysisExplicitElement::LinkWithMeshPointer(const VLMMSHElement* element,
                                                        VLMAnalysisExplicitModel* model) {
  return Link("VLMAnalysisExplicitElement::LinkWithMeshPointer", element, model, model_, index_);
}

HRESULT VLMAnalysisExplicitNode::LinkWithMeshPointer(const VLMMSHNode* node,
                                                     VLMAnalysisExplicitModel* model) {
  return Link("VLMAnalysisExplicitNode::LinkWithMeshPointer", node, model, model_, index_);
}

HRESULT VLMAnalysisExplicitParent::SetUserNumber(std::int32_t number) {
  if (model_ == nullptr || number < 0 || !NumbersOf(*model_).IsAtHand(index_) || !Checkpoint::PassUnseen())
    return SetWherever(model_, index_, number);
  NumbersOf(*model_).SetNumberAtHand(index_, number);
  return S_OK;
}

HRESULT VLMAnalysisExplicitParent::GetUserNumber(std::int32_t& number) const {
  const Feature* const part = model_ == nullptr ? nullptr : NumbersOf(*model_).PartAt(index_);
  if (const HRESULT entered = Checkpoint::Pass("VLMAnalysisExplicitParent::GetUserNumber", part);
      Failed(entered)) {
    return entered;
  }
  const std::int32_t* const stored = part == nullptr ? nullptr : NumbersOf(*model_).NumberAt(index_);
  if (stored == nullptr) return E_FAIL;
  number = *stored;
  return S_OK;
}
