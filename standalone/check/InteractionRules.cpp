#include <algorithm>

#include "analysis/Components.h"
#include "analysis/Contacts.h"
#include "analysis/MeshParts.h"
#include "analysis/Supports.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;
using check::IsA;
using check::RestsOn;

const Key kConnectionProperty("connectionProperty");
const Key kExclusionRegions("ExclusionRegions");
const Key kSupportListMode("SupportListMode");
const Key kCenterOfMass("CenterOfMass");

constexpr std::string_view kNoProperty = "its connection property is missing";

Verdict OldContact(Feature& feature, const Survey& /*survey*/) {
  return HasAttribute(feature, kConnectionProperty) ? kOutdated : Damaged(kNoProperty);
}

Verdict OnContactProperty(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(RestsOn(feature, "SAMFaceFaceContact"));
}

// A pair that was given no connection property yet is unfinished; one without a place for it has lost what it
// rested on.
Verdict OnNothing(Feature& feature, const Survey& /*survey*/) {
  if (!LinkedFeatures(feature, kSupports).empty() || HasAttribute(feature, kConnectionProperty))
    return kConforms;
  return Damaged("its connection property was missing, or rested on nothing itself");
}

Verdict WithoutFit(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(LinkedFeature(feature, kInterferenceFit) == nullptr);
}

Verdict WithoutControl(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(LinkedFeature(feature, kContactControl) == nullptr);
}

Verdict WithoutSmoothing(Feature& feature, const Survey& /*survey*/) {
  const Feature* const settings = ContactSettingsOf(feature);
  return OutdatedIf(settings == nullptr || FindComponent(*settings, "SurfaceSmoothing") == nullptr);
}

Verdict OnFastenedProperty(Feature& feature, const Survey& /*survey*/) {
  if (!RestsOn(feature, "SAMFaceFaceFastened")) return kConforms;
  return HasAttribute(feature, kConnectionProperty) ? kOutdated : Damaged(kNoProperty);
}

Verdict OldTieName(Feature& feature, const Survey& /*survey*/) {
  if (feature.externalName.find("Fastened Connection Enhancement-") == std::string_view::npos)
    return kConforms;
  return HasAttribute(feature, kConnectionProperty) ? kOutdated : Damaged(kNoProperty);
}

// Properties are replaced where they are members of a set, and only in documents of this product alone.
Verdict ContactProperty(Feature& feature, const Survey& survey) {
  const bool isMember = feature.father != nullptr && (IsA(*feature.father, "PropertySet") ||
                                                      IsA(*feature.father, "HVXHalvexPropertySetLT"));
  return OutdatedIf(isMember && survey.HasCasesOfThisProductOnly());
}

// A feature without supports is unfinished, not old.
Verdict MeshPart(Feature& feature, const Survey& /*survey*/) {
  const bool isMeshable = std::ranges::any_of(LinkedFeatures(feature, kSupports), [](Feature* connector) {
    return LinkedFeature(*connector, kFirstObject) != nullptr &&
           LinkedFeature(*connector, kSecondObject) != nullptr;
  });
  Feature* const meshPart = LinkedFeature(feature, kMeshPart);
  return OutdatedIf(isMeshable && (meshPart == nullptr || LinkedFeatures(*meshPart, kSupports).empty()));
}

// The constraint's upgrade leaves a support without context alone; the coupling's does not see groups that
// the coupling lists by their members.
Verdict OnGroup(Feature& feature, const Survey& /*survey*/) {
  const bool isConstraint = IsA(feature, "HVXRigidBodyConstraintLT");
  if (!isConstraint && check::IntegerOf(feature, kSupportListMode, 1) == 0) return kConforms;
  Verdict verdict = kConforms;
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    Feature* const first = LinkedFeature(*connector, kFirstObject);
    if (first == nullptr || !check::IsGroupOfSupports(*first)) continue;
    if (!isConstraint || LinkedFeature(*connector, kSecondObject) != nullptr) return kOutdated;
    verdict = Damaged("the support has no context");
  }
  return verdict;
}

Verdict ExcludesGroup(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(std::ranges::any_of(LinkedFeatures(feature, kExclusionRegions), [](Feature* connector) {
    Feature* const first = LinkedFeature(*connector, kFirstObject);
    return first != nullptr && check::IsGroupOfSupports(*first);
  }));
}

Verdict ExclusionNotInMesh(Feature& feature, const Survey& /*survey*/) {
  Feature* const meshPart = LinkedFeature(feature, kMeshPart);
  return OutdatedIf(meshPart != nullptr && !LinkedFeatures(feature, kExclusionRegions).empty() &&
                    !HasAttribute(*meshPart, kExclusionRegions));
}

Verdict WithoutCenterOfMass(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(!HasAttribute(feature, kCenterOfMass));
}

Verdict SpringMode(Feature& feature, const Survey& /*survey*/) {
  const Attribute* const link = feature.document->FindAttribute(feature, kMeshPart.Id());
  return OutdatedIf(link != nullptr && link->mode != 1);
}

constexpr std::string_view kPairs =
    "HVXContactConnectionEnhancementStdLT HVXContactConnectionEnhancementExplicitLT";
constexpr std::string_view kCouplings = "HVXRigidCouplingLT HVXSmoothCouplingLT";
constexpr std::string_view kConstraintAndCouplings =
    "HVXRigidBodyConstraintLT HVXRigidCouplingLT HVXSmoothCouplingLT";
constexpr std::string_view kLacks = "a basic component of the current layout is missing";

constexpr ConformityRule kRules[] = {
    {"HVXSurfaceToSurfaceContactLT", "UpgradeToContactConnectionEnhancementLT",
     "contacts of this late type have become contact pairs", OldContact},
    {kPairs, "UpgCCPToGACOrConstraintAsSupp", "a support rests on a contact connection property",
     OnContactProperty},
    {kPairs, "UpgCCPToGACOrConstraintAsSupp", "it has no supports", OnNothing},
    {kStandardPair, "UpgContactStdWithInterference", "the interference fit is missing", WithoutFit},
    {kPairs, "UpgContactWithContactControl", "the contact control is missing", WithoutControl},
    {kPairs, "UpgContactWithContactControl", kLacks, check::LacksLayout},
    {kPairs, "UpgradeContactWithSurfSmoothParam", "the surface smoothing parameter is missing",
     WithoutSmoothing},
    {"HVXContactControlsLT", "UpgradeAutomaticOverclosureTolerancesInContactPair", kLacks,
     check::LacksLayout},
    {"HVXTiedContactLT", "UpgCCPToGACOrConstraintAsSupp", "a support rests on a fastened connection property",
     OnFastenedProperty},
    {"HVXTiedContactLT", "UpgCCPToGACOrConstraintAsSupp", "it has an old name: ties are fastened pairs now",
     OldTieName},
    {"SAMFaceFaceContact", "UpgDocumentForCCPRemoval",
     "contact connection properties have become contact pairs", ContactProperty},
    {kConstraintAndCouplings, "UpgradeToConnMeshPart",
     "the connection mesh part is missing or has no supports", MeshPart},
    {kConstraintAndCouplings, "UpgradeGroupToSupport", "a support rests on a group of supports", OnGroup},
    {kCouplings, "AddExclusionRegionToMeshPart", "the mesh part does not know the exclusion regions",
     ExclusionNotInMesh},
    {kCouplings, "UpdateGroupToExclusionRegion", "an exclusion region is a group of supports", ExcludesGroup},
    {"HVXRigidBodyConstraintLT", "AddCenterOfMassToRBC", "the use of the centre of mass is not told",
     WithoutCenterOfMass},
    {"HVXRigidBodyConstraintLT", "UpgradeBasicComponents", kLacks, check::LacksLayout},
    {"HVXSpringLT HVXDamperLT", "UpgradeSpringConnectionProperty",
     "the link to the mesh part has an old mode", SpringMode},
};

}  // namespace

std::span<const ConformityRule> InteractionRules() {
  return kRules;
}

}  // namespace standalone
