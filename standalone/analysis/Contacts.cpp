#include "analysis/Contacts.h"

#include <fmt/format.h>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Frame.h"
#include "analysis/Propagation.h"

namespace standalone {

const Key kContactControl("ContactControl");
const Key kInterferenceFit("InterferenceFit");
const Key kInteractionProperty("InteractionProperty");
const Key kSurfacesSwapped("SurfacesSwapped");
const Key kFirstSurfaceReversed("FirstSurfaceReversed");
const Key kSecondSurfaceReversed("SecondSurfaceReversed");
const Key kAdjustmentTolerance("AdjustmentTolerance");
const Key kSlidingFormulation("SlidingFormulation");
const Key kAdjustment("Adjustment");
const Key kAdjustmentGroup("AdjustmentGroup");
const Key kSearchTolerance("SearchTolerance");
const Key kOverclosureTolerance("OverclosureTolerance");
const Key kAutomaticTolerances("AutomaticTolerances");
const Key kFitType("FitType");
const Key kFitDefinition("Definition");
const Key kFitValue("Value");

namespace {

constexpr std::string_view kPairName = "Contact Pair-";
constexpr double kDefaultSearchTolerance = 0.1;
constexpr double kDefaultOverclosureTolerance = -0.001;

// Null when the father was removed.
Feature* MakeSon(Feature& father, std::string_view lateType) {
  Document& document = *father.document;
  return document.Create(LateType::Of(lateType), fmt::format("{}.{}", lateType, document.NextId()), &father,
                         father.container);
}

// All attributes that a pair has in the end.
constexpr std::uint32_t kPairAttributes = 16;

void SetDefaults(Feature& pair) {
  Document& document = *pair.document;
  document.ReserveAttributes(pair, kPairAttributes);
  WriteLink(pair, kInteractionProperty, nullptr);
  document.SetAttribute(pair, kSurfacesSwapped.Id(), Value::Boolean(false));
  document.SetAttribute(pair, kFirstSurfaceReversed.Id(), Value::Boolean(false));
  document.SetAttribute(pair, kSecondSurfaceReversed.Id(), Value::Boolean(false));
  document.SetAttribute(pair, kAdjustmentTolerance.Id(), Value::Real(0.0));
  document.SetAttribute(pair, kSlidingFormulation.Id(), Value::Integer(0));
  document.SetAttribute(pair, kAdjustment.Id(), Value::Integer(0));
  WriteLink(pair, kAdjustmentGroup, nullptr);
  document.SetAttribute(pair, kSearchTolerance.Id(), Value::Real(kDefaultSearchTolerance));
  document.SetAttribute(pair, kOverclosureTolerance.Id(), Value::Real(kDefaultOverclosureTolerance));
  document.SetAttribute(pair, kAutomaticTolerances.Id(), Value::Boolean(false));
}

}  // namespace

bool IsContactPair(const Feature& feature) {
  return IsOfKind(feature, kStandardPair) || IsOfKind(feature, kExplicitPair);
}

Feature* ContactSettingsOf(const Feature& contact) {
  return FindComponent(contact, "ContactSettings");
}

Feature* MakeContactPair(Feature& set, bool standard) {
  Document& document = *set.document;
  const std::int64_t number = document.HighestNumberAfter(kPairName) + 1;
  Feature* const made = MakeSon(set, standard ? kStandardPair : kExplicitPair);
  if (made == nullptr) return nullptr;
  Feature& pair = *made;
  document.SetExternalName(pair, fmt::format("{}{}", kPairName, number));
  SetDefaults(pair);
  CompleteComponents(pair);
  static_cast<void>(MakeComponent(*ContactSettingsOf(pair), "SurfaceSmoothing", "SAMBoolean", {}));
  static_cast<void>(MakeContactControl(pair));
  if (standard) static_cast<void>(MakeInterferenceFit(pair));
  document.SetAttribute(pair, kPropagationState.Id(), Value::Integer(kCreatedHere));
  return made;
}

bool MakeContactControl(Feature& contact) {
  Feature* const control = MakeSon(contact, "HVXContactControlsLT");
  if (control == nullptr) return false;
  contact.document->SetExternalName(*control, "Contact Controls");
  CompleteComponents(*control);
  WriteLink(contact, kContactControl, control);
  return true;
}

bool MakeInterferenceFit(Feature& contact) {
  Document& document = *contact.document;
  Feature* const made = MakeSon(contact, "HVXInterferenceFitLT");
  if (made == nullptr) return false;
  Feature& fit = *made;
  document.ReserveAttributes(fit, 3);
  document.SetAttribute(fit, kFitType.Id(), Value::Integer(0));
  document.SetAttribute(fit, kFitDefinition.Id(), Value::Integer(0));
  document.SetAttribute(fit, kFitValue.Id(), Value::Real(0.0));
  WriteLink(contact, kInterferenceFit, &fit);
  return true;
}

bool ConvertToStandardPair(Feature& contact, Feature& set) {
  Document& document = *contact.document;
  if (!document.PlaceBeneath(contact, set)) return false;
  document.SetType(contact, LateType::Of(kStandardPair));
  CompleteComponents(contact);
  return true;
}

}  // namespace standalone
