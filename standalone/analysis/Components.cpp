#include "analysis/Components.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

namespace standalone {
namespace {

struct Unit {
  std::string_view magnitude;
  std::string_view unit;
};

// Unit kinds and the units that their values are stored in.
constexpr Unit kUnits[] = {
    {"Time", "s"},
    {"DIMENSIONLESS", "1"},
    {"TEMPRTRE", "K"},
    {"LENGTH", "m"},
    {"FORCE", "N"},
    {"PRESSURE", "Pa"},
    {"ACCELERATION", "m/s2"},
    {"ANGLE", "rad"},
    {"ANGULAR_VELOCITY", "rad/s"},
    {"ANGULAR_ACCELERATION", "rad/s2"},
    {"HEAT_FLOW", "W"},
    {"SURFACE_HEAT_FLUX", "W/m2"},
    {"BODY_HEAT_FLUX", "W/m3"},
    {"FILM_COEFFICIENT", "W/(m2.K)"},
    {"STIFFNESS", "N/m"},
    {"DAMPING", "N.s/m"},
};

constexpr std::string_view kComposite = "SAMComposite";

std::optional<Value> EmptyValueOf(std::string_view type) {
  if (type == "SAMDouble") return Value::Real(0.0);
  if (type == "SAMInteger") return Value::Integer(0);
  if (type == "SAMBoolean") return Value::Boolean(false);
  if (type == "SAMString") return Value::String({});
  return std::nullopt;
}

}  // namespace

const Key kComponentType("Type");
const Key kComponentValues("Values");
const Key kComponentIsActive("IsActive");
const Key kMagnitude("Magnitude");
const Key kParameterValue("Value");

bool IsComponent(const Feature& feature) {
  return feature.type->MetaClass().IsAKindOf(kind::kBasicComponent);
}

Feature* NextComponent(const Feature& holder, const Feature* component, std::string_view name) {
  Feature* son = component == nullptr ? holder.firstSon : component->nextSibling;
  while (son != nullptr && !((name.empty() || son->name == name) && IsComponent(*son)))
    son = son->nextSibling;
  return son;
}

Feature* FindComponent(const Feature& holder, std::string_view name) {
  return name.empty() ? nullptr : NextComponent(holder, nullptr, name);
}

Feature* MakeComponent(Feature& holder, std::string_view name, std::string_view type,
                       std::string_view magnitude) {
  const std::optional<Value> value = EmptyValueOf(type);
  if (!value && type != kComposite) return nullptr;
  static const LateType& componentType = LateType::Of("SAMBasicComponent");
  Document& document = *holder.document;
  Feature* const made = document.Create(componentType, name, &holder, holder.container);
  if (made == nullptr) return nullptr;
  Feature& component = *made;
  document.ReserveAttributes(component, value ? 3 : 1);
  document.SetAttribute(component, kComponentType.Id(), Value::String(document.Keep(type)));
  if (!magnitude.empty()) {
    document.SetAttribute(component, kMagnitude.Id(), Value::String(document.Keep(magnitude)));
  }
  if (value) document.SetAttribute(component, kComponentValues.Id(), *value);
  return &component;
}

bool IsMagnitude(std::string_view magnitude) {
  return std::ranges::find(kUnits, magnitude, &Unit::magnitude) != std::end(kUnits);
}

bool UnitFits(std::string_view unit, std::string_view magnitude) {
  if (unit.empty()) return true;
  const auto* const found = std::ranges::find(kUnits, magnitude, &Unit::magnitude);
  return found != std::end(kUnits) && found->unit == unit;
}

Feature* MakeParameter(Feature& father, std::string_view name, std::string_view magnitude, double value,
                       bool visible) {
  static const LateType& parameterType = LateType::Of("Parameter");
  static const Key kVisible("Visible");
  Document& document = *father.document;
  Feature* const made = document.Create(parameterType, name, &father, father.container);
  if (made == nullptr) return nullptr;
  Feature& parameter = *made;
  document.ReserveAttributes(parameter, 3);
  document.SetAttribute(parameter, kMagnitude.Id(), Value::String(document.Keep(magnitude)));
  document.SetAttribute(parameter, kParameterValue.Id(), Value::Real(value));
  if (visible) document.SetAttribute(parameter, kVisible.Id(), Value::Boolean(true));
  return &parameter;
}

}  // namespace standalone
