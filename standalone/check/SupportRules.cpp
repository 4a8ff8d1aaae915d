// What features rest on: bodies of an old kind, and supports that connect nothing.

#include <fmt/format.h>

#include <algorithm>

#include "analysis/Supports.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::IsA;

const Key kMembers("Members");
const Key kConnectionProperty("connectionProperty");

constexpr DamageKind kNoContext{"its support, {}, has no \"SecondObject\"",
                                "Give {} the product it is used in as its \"SecondObject\""};
constexpr DamageKind kNoMainBody{"the part of {} has no \"MainBody\"",
                                 "Give the part of {} its \"MainBody\""};
constexpr DamageKind kNoContainer{"{} is in no part's container", "Put {} in the container of its part"};
constexpr DamageKind kNoPart{"the container of {} has no \"Part\"", "Give the container of {} its \"Part\""};
constexpr DamageKind kMeshOnOldBody{"{} does", "Mesh the feature again in the workbench"};
constexpr DamageKind kNotProduced{"no body of its part produces {}",
                                  "Let the support rest on a body of its part"};
constexpr DamageKind kConnectsNothing{"{} is missing",
                                      "Select what the support rests on, or delete the support"};
constexpr DamageKind kNoConnector{"{} is none", "Remove {} from the list, and add the support again"};

std::string IdOf(const Feature& feature) {
  return fmt::format("feature {}", feature.id);
}

Feature* PartOf(const Feature& body) {
  static const Key part("Part");
  return body.container == nullptr ? nullptr : LinkedFeature(*body.container, part);
}

// Why the part that the body stands in cannot be found.
Damage WithoutPart(const Feature& body) {
  static const Key partContainer("PrtContainer");
  const bool hasContainer = body.container != nullptr && IsA(*body.container, partContainer);
  return {hasContainer ? &kNoPart : &kNoContainer, IdOf(body)};
}

// A solid is taken out in the support's context, and replaced by the main body of the part that it stands in.
void AppendSolidDamage(Feature& connector, const Feature& solid, std::vector<Damage>& damage) {
  static const Key mainBody("MainBody");
  if (LinkedFeature(connector, kSecondObject) == nullptr) damage.push_back({&kNoContext, IdOf(connector)});
  Feature* const part = PartOf(solid);
  if (part == nullptr) {
    damage.push_back(WithoutPart(solid));
  } else if (LinkedFeature(*part, mainBody) == nullptr) {
    damage.push_back({&kNoMainBody, IdOf(solid)});
  }
}

// Whether a body of the part produces the old body; that body takes its place.
bool IsProduced(Feature& part, const Feature& body) {
  static const Key mainBody("MainBody");
  static const Key bodies("Bodies");
  static const Key results("Results");
  static const Key producedBody("Body");
  std::vector<Feature*> all = LinkedFeatures(part, bodies);
  if (Feature* const main = LinkedFeature(part, mainBody)) all.push_back(main);
  for (Feature* const each : all) {
    for (Feature* const result : LinkedFeatures(*each, results)) {
      if (LinkedFeature(*result, producedBody) == &body) return true;
    }
  }
  return false;
}

void AppendBodyDamage(Feature& connector, const Feature& body, std::vector<Damage>& damage) {
  if (LinkedFeature(connector, kSecondObject) == nullptr) damage.push_back({&kNoContext, IdOf(connector)});
  Feature* const part = PartOf(body);
  if (part == nullptr) {
    damage.push_back(WithoutPart(body));
  } else if (!IsProduced(*part, body)) {
    damage.push_back({&kNotProduced, IdOf(body)});
  }
}

// Such a body is both, and one way out is enough.
void AppendShapeBodyDamage(Feature& connector, const Feature& body, std::vector<Damage>& damage) {
  std::vector<Damage> asBody;
  AppendBodyDamage(connector, body, asBody);
  if (!asBody.empty()) AppendSolidDamage(connector, body, damage);
}

Verdict OnOldBodies(Feature& feature, bool alsoTopological) {
  static const Key solid("Solid");
  static const Key topologicalBody("TopologicalBody");
  static const Key shapeBody("ShapeBody");
  bool any = false;
  std::vector<Damage> damage;
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    const Feature* const first = LinkedFeature(*connector, kFirstObject);
    if (first == nullptr) continue;
    if (IsA(*first, solid)) {
      any = true;
      AppendSolidDamage(*connector, *first, damage);
    } else if (alsoTopological && IsA(*first, topologicalBody)) {
      any = true;
      AppendBodyDamage(*connector, *first, damage);
    } else if (alsoTopological && IsA(*first, shapeBody)) {
      any = true;
      AppendShapeBodyDamage(*connector, *first, damage);
    }
  }
  return any ? Damaged(std::move(damage)) : Conforms();
}

Verdict OnSolid(Feature& feature, const Survey& /*survey*/) {
  return OnOldBodies(feature, false);
}

Verdict OnOldBody(Feature& feature, const Survey& /*survey*/) {
  return OnOldBodies(feature, true);
}

// A mesh part that was made while the support could not be moved keeps what the support rested on.
Verdict MeshPartOnOldBody(Feature& feature, const Survey& /*survey*/) {
  static const Key meshPartKey("MeshPart");
  Feature* const meshPart = LinkedFeature(feature, meshPartKey);
  if (meshPart == nullptr || OnOldBodies(feature, true).state != Verdict::State::kConforms) return Conforms();
  return OnOldBodies(*meshPart, true).state == Verdict::State::kConforms
             ? Conforms()
             : Beyond(kMeshOnOldBody, IdOf(*meshPart));
}

// A tie or pair whose place for a property was left empty has not been told yet what it rests on.
bool IsUnfinished(Feature& feature) {
  return check::IsLeftEmpty(feature, kConnectionProperty);
}

Verdict Listed(Feature& feature, const Key& list) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, list.Id());
  if (attribute == nullptr || attribute->value.Kind() != ValueKind::kList) return Conforms();
  for (const Value& entry : attribute->value.Entries()) {
    if (entry.Kind() != ValueKind::kLink || entry.Target() == nullptr) continue;
    Feature& connector = *entry.Target();
    if (!IsConnector(connector)) return Beyond(kNoConnector, IdOf(connector));
  }
  return Conforms();
}

Verdict ListsOthers(Feature& feature, const Survey& /*survey*/) {
  Verdict verdict = Listed(feature, kSupports);
  return verdict.state == Verdict::State::kConforms ? Listed(feature, kMembers) : verdict;
}

bool Lists(Feature& feature, const Key& list, const Feature& connector) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, list.Id());
  if (attribute == nullptr || attribute->value.Kind() != ValueKind::kList) return false;
  return std::ranges::find(attribute->value.Entries(), Value::Link(const_cast<Feature*>(&connector))) !=
         attribute->value.Entries().end();
}

// Looked for at the connector: it stands beneath the feature that lists it.
Verdict ConnectsNothing(Feature& connector, const Survey& /*survey*/) {
  if (LinkedFeature(connector, kFirstObject) != nullptr || connector.father == nullptr) return Conforms();
  Feature& feature = *connector.father;
  if (!Lists(feature, kSupports, connector) && !Lists(feature, kMembers, connector)) return Conforms();
  return IsUnfinished(feature) ? Conforms() : Beyond(kConnectsNothing, "FirstObject");
}

constexpr std::string_view kOnSolid = "a support rests on a solid";

constexpr ConformityRule kRules[] = {
    {"HVXBodyHeatFlux HVXGravity HVXInitialTemperatureLT HVXRotationalBodyForce HVXTemperatureHistoryLT",
     "UpgradeBodySupport", kOnSolid, OnSolid},
    {"HVXRigidBodyConstraintLT", "UpgradeBodySupport", "a support rests on a body of an old kind", OnOldBody},
    {"HVXRigidBodyConstraintLT", {}, "its mesh part still rests on a body of an old kind", MeshPartOnOldBody},
    {"VLMSamAnalysisEntity", {}, "a support that it lists is no connector", ListsOthers},
    {"VLMSamAnalysisConnector", {}, "this support connects nothing", ConnectsNothing},
};

}  // namespace

std::span<const ConformityRule> SupportRules() {
  return kRules;
}

}  // namespace standalone
