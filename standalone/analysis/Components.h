#pragma once

#include <string_view>

#include "adapters/Attributes.h"

namespace standalone {

// Basic components: sons of late type "SAMBasicComponent", found by their names.

/// The first component of that name that `holder` has; null without one.
Feature* FindComponent(const Feature& holder, std::string_view name);
/// The component after `component` (null: the first) among the holder's; an empty name takes all of them.
Feature* NextComponent(const Feature& holder, const Feature* component, std::string_view name);
bool IsComponent(const Feature& feature);

/// Makes a component as the last son of `holder`, with the empty value of its type and, where `magnitude` is
/// not empty, that unit kind. Null for a type that is none of "SAMDouble", "SAMInteger", "SAMBoolean",
/// "SAMString" and "SAMComposite", and for a holder that was removed.
Feature* MakeComponent(Feature& holder, std::string_view name, std::string_view type,
                       std::string_view magnitude);

/// Whether `magnitude` is a unit kind that the host knows, such as "Time".
bool IsMagnitude(std::string_view magnitude);
/// Whether a value of `magnitude` can be given in `unit`; the empty unit stands for the base unit of any.
bool UnitFits(std::string_view unit, std::string_view magnitude);

/// Makes a knowledge parameter as the last son of `father`; null when that was removed.
Feature* MakeParameter(Feature& father, std::string_view name, std::string_view magnitude, double value,
                       bool visible);

extern const Key kComponentType;
extern const Key kComponentValues;
extern const Key kComponentIsActive;
extern const Key kMagnitude;
extern const Key kParameterValue;

}  // namespace standalone
