#include "analysis/Propagation.h"

#include "analysis/Frame.h"

namespace standalone {
namespace {

const Key kPropagatedTo("PropagatedTo");
// Which steps these are follows from where the feature stands. Written out, the lists of all features would
// be as long as features times steps.
constexpr std::string_view kLaterSteps = "later steps";

}  // namespace

const Key kPropagationState("PropagationState");

void GiveDefaultPropagationData(Feature& feature) {
  Document& document = *feature.document;
  if (document.FindAttribute(feature, kPropagationState.Id()) == nullptr) {
    document.SetAttribute(feature, kPropagationState.Id(), Value::Integer(kCreatedHere));
  }
  if (document.FindAttribute(feature, kPropagatedTo.Id()) == nullptr) WriteLinks(feature, kPropagatedTo, {});
}

HRESULT PropagateToLaterSteps(Feature& feature) {
  const Attribute* const reach = feature.document->FindAttribute(feature, kPropagatedTo.Id());
  if (reach == nullptr) return E_FAIL;
  const bool isToLaterSteps = reach->value == Value::String(kLaterSteps);
  if (!isToLaterSteps && !CanHoldList(feature, kPropagatedTo)) return E_FAIL;
  if (CaseAbove(feature) == nullptr) {
    WriteLinks(feature, kPropagatedTo, {});
    return S_OK;
  }
  return WriteAttribute(feature, kPropagatedTo, VLMUnicodeString(kLaterSteps));
}

}  // namespace standalone
