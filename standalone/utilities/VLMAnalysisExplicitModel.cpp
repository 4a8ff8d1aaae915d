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

// Gives the model's number of the mesh object; below 0, with S_OK, for one without a counterpart.
HRESULT Link(std::string_view operation, const void* meshObject, VLMAnalysisExplicitModel* model,
             std::int64_t& place) {
  place = -1;
  std::int64_t found = -1;
  if (meshObject != nullptr && model != nullptr) found = NumbersOf(*model).PlaceOf(meshObject);
  const Feature* const part = found < 0 ? nullptr : NumbersOf(*model).PartAt(found);
  if (const HRESULT entered = Checkpoint::Pass(operation, part); Failed(entered)) return entered;
  if (meshObject == nullptr || model == nullptr) return E_FAIL;
  if (NumbersOf(*model).HasCounterpart(found)) place = found;
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
  const HRESULT linked = Link("VLMAnalysisExplicitElement::LinkWithMeshPointer", element, model, index_);
  model_ = index_ < 0 ? nullptr : model;
  return linked;
}

HRESULT VLMAnalysisExplicitNode::LinkWithMeshPointer(const VLMMSHNode* node,
                                                     VLMAnalysisExplicitModel* model) {
  const HRESULT linked = Link("VLMAnalysisExplicitNode::LinkWithMeshPointer", node, model, index_);
  model_ = index_ < 0 ? nullptr : model;
  return linked;
}

HRESULT VLMAnalysisExplicitParent::SetUserNumber(std::int32_t number) {
  const Feature* const part = model_ == nullptr ? nullptr : NumbersOf(*model_).PartAt(index_);
  if (const HRESULT entered = Checkpoint::Pass("VLMAnalysisExplicitParent::SetUserNumber", part);
      Failed(entered)) {
    return entered;
  }
  if (part == nullptr || number < 0 || !NumbersOf(*model_).HasCounterpart(index_)) return E_FAIL;
  NumbersOf(*model_).SetNumberAt(index_, number);
  return S_OK;
}

HRESULT VLMAnalysisExplicitParent::GetUserNumber(std::int32_t& number) const {
  const Feature* const part = model_ == nullptr ? nullptr : NumbersOf(*model_).PartAt(index_);
  if (const HRESULT entered = Checkpoint::Pass("VLMAnalysisExplicitParent::GetUserNumber", part);
      Failed(entered)) {
    return entered;
  }
  if (part == nullptr || !NumbersOf(*model_).HasCounterpart(index_)) return E_FAIL;
  number = NumbersOf(*model_).NumberAt(index_);
  return S_OK;
}
