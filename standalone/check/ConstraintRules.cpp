// Rigid body constraints, couplings, springs, and their mesh parts.

#include <fmt/format.h>

#include <algorithm>

#include "analysis/Frame.h"
#include "analysis/MeshParts.h"
#include "analysis/Supports.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;

const Key kConstraint("HVXRigidBodyConstraintLT");
const Key kExclusionRegions("ExclusionRegions");
const Key kSupportListMode("SupportListMode");
const Key kCenterOfMass("CenterOfMass");
const Key kMembers("Members");

constexpr DamageKind kNoContext{"its support, {}, has no \"SecondObject\"",
                                "Give {} the product it is used in as its \"SecondObject\""};
constexpr DamageKind kNoMembers{"the last member of the group that its support, {}, rests on holds nothing",
                                "Give the group behind {} its members"};
constexpr DamageKind kByMembers{"it lists groups by their members, so that its upgrade does not see them",
                                "Take \"SupportListMode\" and \"SupportListKinds\" away from the feature"};
constexpr DamageKind kOtherThanMeshPart{"{} leads to no mesh part", "Take {} away from the feature"};
constexpr DamageKind kNoProduct{"the \"SecondObject\" of its support, {}, is no product",
                                "Give {} the product it is used in as its \"SecondObject\""};
constexpr DamageKind kNoMeshPart{"{} is missing, and no support has two objects to make one from",
                                 "Give the feature a support, and mesh it"};

std::string IdOf(const Feature& feature) {
  return fmt::format("feature {}", feature.id);
}

// The first support with both objects, from which a mesh part is begun.
Feature* FirstToMesh(Feature& feature) {
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    if (LinkedFeature(*connector, kFirstObject) != nullptr &&
        LinkedFeature(*connector, kSecondObject) != nullptr)
      return connector;
  }
  return nullptr;
}

bool IsMeshPart(const Feature& feature) {
  return IsOfKind(feature, kind::kMeshPart);
}

// A feature without supports, or with some that connect nothing yet, is unfinished, not old.
Verdict WithoutContext(Feature& feature) {
  std::vector<Damage> damage;
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    if (LinkedFeature(*connector, kFirstObject) != nullptr) damage.push_back({&kNoContext, IdOf(*connector)});
  }
  return damage.empty() ? Conforms() : Damaged(std::move(damage));
}

Verdict MeshPart(Feature& feature, const Survey& /*survey*/) {
  Feature* const meshPart = LinkedFeature(feature, kMeshPart);
  if (meshPart != nullptr && check::FirstSupport(*meshPart) != nullptr) return Conforms();
  Feature* const support = FirstToMesh(feature);
  if (support == nullptr) return WithoutContext(feature);
  if (meshPart != nullptr && !IsMeshPart(*meshPart)) return Damaged(kOtherThanMeshPart, kMeshPart.Text());
  const bool hasProduct = IsOfKind(*LinkedFeature(*support, kSecondObject), kind::kProduct);
  return hasProduct ? Outdated() : Damaged(kNoProduct, IdOf(*support));
}

// The constraint's upgrade leaves a support without context alone; the coupling's does not see groups that
// the coupling lists by their members.
Verdict OnGroup(Feature& feature, const Survey& /*survey*/) {
  const bool isConstraint = check::IsA(feature, kConstraint);
  bool any = false;
  std::vector<Damage> damage;
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    Feature* const first = LinkedFeature(*connector, kFirstObject);
    if (first == nullptr || !check::IsGroupOfSupports(*first)) continue;
    any = true;
    if (isConstraint && LinkedFeature(*connector, kSecondObject) == nullptr)
      damage.push_back({&kNoContext, IdOf(*connector)});
    const std::vector<Feature*> members = LinkEntries(*first, kMembers);
    if (members.empty() || members.back() == nullptr) damage.push_back({&kNoMembers, IdOf(*connector)});
  }
  if (!any) return Conforms();
  if (!isConstraint && check::IntegerOf(feature, kSupportListMode, 1) == 0) return Beyond(kByMembers);
  return Damaged(std::move(damage));
}

Verdict ExcludesGroup(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(std::ranges::any_of(LinkedFeatures(feature, kExclusionRegions), [](Feature* connector) {
    Feature* const first = LinkedFeature(*connector, kFirstObject);
    return first != nullptr && check::IsGroupOfSupports(*first);
  }));
}

Verdict ExclusionNotInMesh(Feature& feature, const Survey& /*survey*/) {
  if (LinkedFeatures(feature, kExclusionRegions).empty()) return Conforms();
  Feature* const meshPart = LinkedFeature(feature, kMeshPart);
  if (meshPart == nullptr)
    return FirstToMesh(feature) != nullptr ? Outdated() : Damaged(kNoMeshPart, kMeshPart.Text());
  if (HasAttribute(*meshPart, kExclusionRegions)) return Conforms();
  return IsMeshPart(*meshPart) ? Outdated() : Damaged(kOtherThanMeshPart, kMeshPart.Text());
}

Verdict WithoutCenterOfMass(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(!HasAttribute(feature, kCenterOfMass));
}

Verdict SpringMode(Feature& feature, const Survey& /*survey*/) {
  const Attribute* const link = feature.document->FindAttribute(feature, kMeshPart.Id());
  return OutdatedIf(link != nullptr && link->mode != 1);
}

constexpr std::string_view kCouplings = "HVXRigidCouplingLT HVXSmoothCouplingLT";
constexpr std::string_view kConstraintAndCouplings =
    "HVXRigidBodyConstraintLT HVXRigidCouplingLT HVXSmoothCouplingLT";

constexpr ConformityRule kRules[] = {
    {kConstraintAndCouplings, "UpgradeToConnMeshPart",
     "the connection mesh part is missing or has no supports", MeshPart},
    {kConstraintAndCouplings, "UpgradeGroupToSupport", "a support rests on a group of supports", OnGroup},
    {kCouplings, "AddExclusionRegionToMeshPart", "the mesh part does not know the exclusion regions",
     ExclusionNotInMesh},
    {kCouplings, "UpdateGroupToExclusionRegion", "an exclusion region is a group of supports", ExcludesGroup},
    {"HVXRigidBodyConstraintLT", "AddCenterOfMassToRBC", "it does not say whether the centre of mass is used",
     WithoutCenterOfMass},
    {"HVXRigidBodyConstraintLT", "UpgradeBasicComponents", check::kLacks, check::LacksLayout},
    {"HVXSpringLT HVXDamperLT", "UpgradeSpringConnectionProperty",
     "the link to the mesh part has an old mode", SpringMode},
};

}  // namespace

std::span<const ConformityRule> ConstraintRules() {
  return kRules;
}

}  // namespace standalone
