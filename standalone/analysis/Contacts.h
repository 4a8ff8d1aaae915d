#pragma once

#include <string_view>

#include "adapters/Attributes.h"

namespace standalone {

// Contact pairs and what belongs to them, as current documents hold them.

inline constexpr std::string_view kStandardPair = "HVXContactConnectionEnhancementStdLT";
inline constexpr std::string_view kExplicitPair = "HVXContactConnectionEnhancementExplicitLT";

// Where pairs and interference fits keep what they hold.
extern const Key kContactControl;
extern const Key kInterferenceFit;
extern const Key kInteractionProperty;
extern const Key kSurfacesSwapped;
extern const Key kFirstSurfaceReversed;
extern const Key kSecondSurfaceReversed;
extern const Key kAdjustmentTolerance;
extern const Key kSlidingFormulation;
extern const Key kAdjustment;
extern const Key kAdjustmentGroup;
extern const Key kSearchTolerance;
extern const Key kOverclosureTolerance;
extern const Key kAutomaticTolerances;
extern const Key kFitType;
extern const Key kFitDefinition;
extern const Key kFitValue;

bool IsContactPair(const Feature& feature);
/// The component that holds a contact's named settings; null without one.
Feature* ContactSettingsOf(const Feature& contact);

/// Makes a whole contact pair as the last son of `set`: with settings, contact control and, a standard one,
/// interference fit, and without supports. Its name carries the first number that no pair has had yet. Null,
/// and nothing is made, when the set was removed.
Feature* MakeContactPair(Feature& set, bool standard);
/// Makes a contact control, with its layout, for a contact that has none. False when the contact was removed.
bool MakeContactControl(Feature& contact);
/// Makes an interference fit that fits nothing yet, for a contact that has none. False when the contact was
/// removed.
bool MakeInterferenceFit(Feature& contact);
/// Makes an old contact a standard contact pair, the last son of `set`. What its old attributes hold stays;
/// it gets the settings that a standard pair's layout has. False, and nothing changes, when it cannot stand
/// beneath the set.
bool ConvertToStandardPair(Feature& contact, Feature& set);

}  // namespace standalone
