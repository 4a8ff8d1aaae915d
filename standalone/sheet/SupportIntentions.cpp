// Supports, the meshes that are made from them, and exclusion regions.

#include <algorithm>
#include <optional>

#include "sheet/Explaining.h"
#include "sheet/FactOrder.h"
#include "sheet/Listed.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kConstraints = "rigid body, rigid coupling, smooth coupling";

const Feature* PartOf(const Feature& geometry) {
  const Feature* const container = geometry.Container();
  return container == nullptr ? nullptr : HeldFeature(*container, "Part");
}

bool IsBody(const Feature& feature) {
  return feature.TypeName() == "MechanicalPart";
}

const Feature* MainBodyFor(const Feature& geometry) {
  const Feature* const part = PartOf(geometry);
  const Feature* const body = part == nullptr ? nullptr : HeldFeature(*part, "MainBody");
  return body != nullptr && IsBody(*body) ? body : nullptr;
}

std::vector<const Feature*> HeldFeatures(const Feature& feature, std::string_view key) {
  std::vector<const Feature*> found;
  const Value* const list = Held(feature, key);
  if (list == nullptr || list->Kind() != ValueKind::kList) return found;
  for (const Value& entry : list->Entries()) {
    if (entry.Kind() == ValueKind::kLink && entry.Target() != nullptr) found.push_back(entry.Target());
  }
  return found;
}

// The body of the part whose result is that topological body.
const Feature* BodyMaking(const Feature& topological) {
  const Feature* const part = PartOf(topological);
  if (part == nullptr) return nullptr;
  for (const Feature* const body : HeldFeatures(*part, "Bodies")) {
    for (const Feature* const result : HeldFeatures(*body, "Results")) {
      if (IsBody(*body) && AreSame(HeldFeature(*result, "Body"), &topological)) return body;
    }
  }
  return nullptr;
}

Fact With(Fact fact, const Feature* target) {
  fact.value = Value::Link(const_cast<Feature*>(target));
  return fact;
}

bool SolidToBody(Change& change) {
  return change.Replace([](const Fact& fact) -> std::optional<std::vector<Fact>> {
    const Feature* const solid = TargetOf(fact);
    if (solid == nullptr || solid->TypeName() != "Solid") return std::nullopt;
    const Feature* const body = MainBodyFor(*solid);
    if (body == nullptr) return std::nullopt;
    return {{With(fact, body)}};
  });
}

bool OldBodyToBody(Change& change) {
  return change.Replace([](const Fact& fact) -> std::optional<std::vector<Fact>> {
    const Feature* const old = TargetOf(fact);
    if (old == nullptr) return std::nullopt;
    const bool isShape = old->TypeName() == "Solid" || old->TypeName() == "ShapeBody";
    const Feature* const body = isShape                                ? MainBodyFor(*old)
                                : old->TypeName() == "TopologicalBody" ? BodyMaking(*old)
                                                                       : nullptr;
    if (body == nullptr) return std::nullopt;
    return {{With(fact, body)}};
  });
}

// The group that is supported; null for any other feature.
const Subject* GroupOf(const Change& change, const Fact& fact) {
  const Feature* const target = TargetOf(fact);
  const Subject* const group = target == nullptr ? nullptr : change.before.Find(target->id);
  return group != nullptr && group->kind->chapter == Chapter::kGroup ? group : nullptr;
}

// The members of a group of supports that is not defined on a mesh; none of any other feature.
std::vector<Fact> MembersOf(const Change& change, const Fact& fact) {
  const Subject* const group = GroupOf(change, fact);
  if (group == nullptr || group->kind->name != "group") return {};
  const Fact* const holds = change.before.Find(*group, "group of");
  const Fact* const onMesh = change.before.Find(*group, "defined on a mesh");
  if (holds == nullptr || !IsText(*holds, "supports") || onMesh == nullptr || !IsFlag(*onMesh, false))
    return {};
  return AllOf(change.before, *group, "member");
}

bool GroupToLastMember(Change& change) {
  return change.Replace([&change](const Fact& fact) -> std::optional<std::vector<Fact>> {
    std::vector<Fact> members = MembersOf(change, fact);
    if (members.empty()) return std::nullopt;
    members.assign(members.size(), members.back());
    return members;
  });
}

// Members that connect nothing exclude nothing.
bool GroupToMembers(Change& change) {
  return change.Replace([&change](const Fact& fact) -> std::optional<std::vector<Fact>> {
    std::vector<Fact> members = MembersOf(change, fact);
    if (members.empty()) return std::nullopt;
    std::erase_if(members, [](const Fact& member) { return member.standing == Standing::kNotSet; });
    return members;
  });
}

// The constraint: of its mesh, what that belongs to.
const Subject& OwnerOf(const Change& change) {
  const bool isMesh = change.is->kind->name == "mesh" && change.is->father != nullptr;
  const Subject* const owner = isMesh ? change.after.Find(change.is->father->id) : nullptr;
  return owner == nullptr ? *change.is : *owner;
}

bool IsOfConstraint(const Change& change) {
  return Lists(kConstraints, ", ", OwnerOf(change).kind->name);
}

// What the constraint says, before and after.
std::vector<Fact> SupportsAround(const Change& change, std::string_view quantity) {
  std::vector<Fact> all;
  for (const Sheet* const sheet : {&change.before, &change.after}) {
    const Subject* const owner = sheet->Find(OwnerOf(change).id);
    if (owner != nullptr) std::ranges::copy(AllOf(*sheet, *owner, quantity), std::back_inserter(all));
  }
  return all;
}

bool AreAmong(const std::vector<Fact>& facts, const FactBag& all) {
  return std::ranges::all_of(facts, [&](const Fact& fact) { return all.contains(fact); });
}

// The members of a group of any kind, as supports are listed in some documents.
std::vector<Fact> AllMembersOf(const Change& change, const Fact& fact) {
  const Subject* const group = GroupOf(change, fact);
  if (group == nullptr) return {};
  std::vector<Fact> members = AllOf(change.before, *group, "member");
  std::erase_if(members, [](const Fact& member) { return member.standing == Standing::kNotSet; });
  return members;
}

// Whether the facts hold the support itself or, of a group, all of its members.
bool Cover(const FactBag& facts, const Fact& support, const Change& change) {
  if (support.standing == Standing::kNotSet || facts.contains(support)) return true;
  return GroupOf(change, support) != nullptr && AreAmong(AllMembersOf(change, support), facts);
}

// The supports that the constraint had or has, and all of them; of a group, also its members.
bool MeshFromSupports(Change& change) {
  if (!change.lost.empty() || change.gained.empty() || !IsOfConstraint(change)) return false;
  std::vector<Fact> known = SupportsAround(change, "support");
  for (std::size_t i = 0, count = known.size(); i < count; ++i) {
    const std::vector<Fact> members = AllMembersOf(change, Fact(known[i]));
    known.insert(known.end(), members.begin(), members.end());
  }
  if (!AreAmong(change.gained, FactBag(known.begin(), known.end()))) return false;
  const FactBag gained(change.gained.begin(), change.gained.end());
  const Subject& owner = OwnerOf(change);
  for (const Sheet* const sheet : {&change.before, &change.after}) {
    const Subject* const state = sheet->Find(owner.id);
    if (state == nullptr) continue;
    const std::vector<Fact> supports = AllOf(*sheet, *state, "support");
    if (std::ranges::all_of(supports, [&](const Fact& each) { return Cover(gained, each, change); }))
      return change.All();
  }
  return false;
}

// All that the constraint had or has, and nothing else.
bool MeshExclusions(Change& change) {
  if (!IsOfConstraint(change)) return false;
  const std::vector<Fact> all =
      AllOf(change.after, *change.is,
            change.is->kind->name == "mesh" ? "exclusion region" : "exclusion region of the mesh");
  for (const Sheet* const sheet : {&change.before, &change.after}) {
    const Subject* const owner = sheet->Find(OwnerOf(change).id);
    if (owner == nullptr) continue;
    const std::vector<Fact> regions = AllOf(*sheet, *owner, "exclusion region");
    if (WithoutThose(all, regions).empty() && WithoutThose(regions, all).empty()) return change.All();
  }
  return false;
}

// Its own, which it had not: meshes of constraints are made for one each.
bool OwnMesh(Change& change) {
  const Fact* const lost = change.OnlyLost();
  const Fact* const gained = change.OnlyGained();
  const Feature* const mesh = gained == nullptr ? nullptr : TargetOf(*gained);
  return lost != nullptr && lost->standing == Standing::kNotSet && mesh != nullptr &&
         AreSame(mesh->father, change.is->feature) && change.All();
}

bool NewConnectionMesh(Change& change) {
  const Feature* const father = change.is == nullptr ? nullptr : change.is->father;
  const Subject* const owner = father == nullptr ? nullptr : change.before.Find(father->id);
  const Fact* const type = change.is == nullptr ? nullptr : change.after.Find(*change.is, "mesh type");
  return owner != nullptr && owner->kind->chapter == Chapter::kInteraction && type != nullptr &&
         IsText(*type, "Connection") && change.All();
}

bool CentreOfMass(Change& change) {
  const Fact* const reference = change.after.Find(*change.is, "reference");
  const Fact* const gained = change.OnlyGained();
  return reference != nullptr && gained != nullptr &&
         IsFlag(*gained, reference->standing == Standing::kNotSet) && change.All();
}

constexpr std::string_view kBodySupport = "UpgradeBodySupport";
constexpr std::string_view kMeshPart = "UpgradeToConnMeshPart";
constexpr std::string_view kFromSupports = "the connection mesh is created from the supports";
constexpr std::string_view kTakesRegions = "the mesh takes over the exclusion regions";

constexpr Intention kIntentions[] = {
    {kBodySupport, "gravity, body heat flux, initial temperature, rotational body force, temperature history",
     "support", Meaning::kSame, "a support on a solid moves to the main body of its part", SolidToBody},
    {kBodySupport, "rigid body", "support", Meaning::kSame,
     "a support on an old body moves to the current body of its part", OldBodyToBody},
    {"UpgradeGroupToSupport", kConstraints, "support", Meaning::kOnPurpose,
     "a group is replaced by as many supports on its last member", GroupToLastMember},
    {"AddCenterOfMassToRBC", "rigid body", "centre of mass is the reference", Meaning::kOnPurpose,
     "without reference, a rigid body uses its centre of mass", CentreOfMass},
    {kMeshPart, kConstraints, "mesh", Meaning::kSame, kFromSupports, OwnMesh},
    {kMeshPart, kConstraints, "connection mesh on", Meaning::kSame, kFromSupports, MeshFromSupports},
    {kMeshPart, "mesh", "support", Meaning::kSame, kFromSupports, MeshFromSupports},
    {kMeshPart, "mesh", "*", Meaning::kSame, kFromSupports, NewConnectionMesh},
    {"AddExclusionRegionToMeshPart", kConstraints, "exclusion region of the mesh", Meaning::kSame,
     kTakesRegions, MeshExclusions},
    {"AddExclusionRegionToMeshPart", "mesh", "exclusion region", Meaning::kSame, kTakesRegions,
     MeshExclusions},
    {"UpdateGroupToExclusionRegion", "rigid coupling, smooth coupling", "exclusion region", Meaning::kSame,
     "exclusion regions are the members of groups", GroupToMembers},
};

}  // namespace

std::span<const Intention> SupportIntentions() {
  return kIntentions;
}

}  // namespace standalone::sheet
