#include "check/Losses.h"

#include <algorithm>
#include <unordered_set>

#include "adapters/Attributes.h"
#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Supports.h"
#include "check/PropertyLosses.h"
#include "check/Rules.h"

namespace standalone {
namespace {

constexpr std::string_view kReplaced = "an upgrade took a default for a value that it could not read";
constexpr std::string_view kFewer = "an upgrade took away supports and had nothing to put in their place";
constexpr std::string_view kTaken = "an upgrade took away more than it is there to take away";
constexpr std::string_view kOverwritten = "an upgrade wrote over a value of the current model";
constexpr std::string_view kReplacedProperty = "an upgrade replaced it by contact pairs";
constexpr std::string_view kRemedy = "Correct it in the document as it was before, and upgrade that again";
constexpr DamageKind kShorter{"{} lists fewer than before", {}};
constexpr DamageKind kHeldOthers{"{} held other values",
                                 "Compare {} with the document as it was before, and correct it"};
constexpr DamageKind kNotMadeAnew{"nothing has the value of {} now",
                                  "Read it in the document as it was before, and give it to the condition"};

std::size_t LinksIn(const FeatureState& state, const Key& list) {
  for (const Attribute& attribute : state.Attributes()) {
    if (attribute.key != list.Id() || attribute.value.Kind() != ValueKind::kList) continue;
    std::unordered_set<const Feature*> links;  // one that stands there twice is one
    for (const Value& entry : attribute.value.Entries()) {
      if (entry.Kind() == ValueKind::kLink && entry.Target() != nullptr) links.insert(entry.Target());
    }
    return links.size();
  }
  return 0;
}

std::vector<Damage> Misread(const Feature& feature, const FeatureState& before) {
  std::vector<Damage> damage = MisreadIn(before);
  // What is still there is found in the document as it is.
  if (!damage.empty() && !feature.removed && feature.type == before.type) {
    const std::vector<Damage> now = MisreadIn(feature);
    std::erase_if(damage, [&now](const Damage& each) {
      return std::ranges::find(now, each.key, &Damage::key) != now.end();
    });
  }
  return damage;
}

// Upgrades put other supports in the place of some, often several, and take none away.
std::vector<Damage> LostSupports(const Feature& feature, const FeatureState& before) {
  static const Key exclusionRegions("ExclusionRegions");
  std::vector<Damage> damage;
  if (feature.removed) return damage;
  for (const Key& list : {kSupports, exclusionRegions}) {
    if (LinksIn(feature, list) < LinksIn(before, list))
      damage.push_back({&kShorter, std::string(list.Text())});
  }
  return damage;
}

const Value* ValueIn(const FeatureState& state, const Key& key) {
  const auto found = std::ranges::find(state.Attributes(), key.Id(), &Attribute::key);
  return found == state.Attributes().end() ? nullptr : &found->value;
}

// A friction table is made from old friction values, which documents with a table hold no more.
std::vector<Damage> OverwrittenTable(const Feature& feature, const FeatureState& before) {
  static const Key table("FrictionTable");
  const Value* const old = ValueIn(before, table);
  if (feature.removed || old == nullptr) return {};
  const Value* const now = ValueIn(feature, table);
  if (now != nullptr && *now == *old) return {};
  return {{&kHeldOthers, std::string(table.Text())}};
}

bool Lists(std::string_view names, std::string_view name) {
  while (!names.empty()) {
    const std::size_t end = std::min(names.find(','), names.size());
    if (names.substr(0, end) == name) return true;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return false;
}

// The nodal temperature is to be taken out of the list, and is looked for within names as well.
std::vector<Damage> LostVariables(const Feature& feature, const FeatureState& before) {
  static const Key request("HVXNewFieldOutputLT");
  static const Key variables("PreselectedVariableList");
  if (feature.removed || !check::IsA(feature, request)) return {};
  const Value* const old = ValueIn(before, variables);
  const Value* const now = ValueIn(feature, variables);
  if (old == nullptr || now == nullptr || old->Kind() != ValueKind::kString || *now == *old) return {};
  std::string_view names = old->AsString();
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find(','));
    if (!name.empty() && name != "NT" && !Lists(now->AsString(), name))
      return {{&kHeldOthers, std::string(variables.Text())}};
    names.remove_prefix(std::min(name.size() + 1, names.size()));
  }
  return {};
}

// Upgrades take away components of old names. One of the current layout, of which none is left, held a value
// that is read; and where all components go, what another one held was never looked at.
std::vector<Damage> LostComponent(const Feature& component, const FeatureState& before) {
  static const Key velocity("HVXVelocityBCLT");
  if (!component.removed || !IsComponent(component)) return {};
  const Feature* const owner = before.father;
  if (owner == nullptr || owner->removed) return {};
  const auto layout = LayoutOf(*owner->type);
  const bool isRead = std::ranges::find(layout, before.name, &ComponentLayout::name) != layout.end();
  const bool isLost = isRead ? FindComponent(*owner, before.name) == nullptr
                             : check::IsA(*owner, velocity) && !check::IsOldMotion(before.name);
  if (!isLost) return {};
  return {{&kNotMadeAnew, std::string(before.name)}};
}

void Append(Feature& feature, std::string_view reason, const std::vector<Damage>& damage,
            std::vector<Finding>& findings) {
  if (damage.empty()) return;
  Finding& finding =
      findings.emplace_back(Finding{&feature, FindingKind::kBeyondUpgrades, {}, reason, {}, {}, {}, nullptr});
  Tell(damage, finding);
  if (reason == kReplaced || reason == kFewer) finding.remedy = kRemedy;
}

}  // namespace

std::vector<Finding> FindLosses(Document& document) {
  std::vector<Finding> findings;
  PropertyLosses properties(document);
  for (Feature* const feature : document.Touched()) {
    const FeatureState* const before = document.Before(*feature);
    if (before == nullptr) continue;
    Append(*feature, kReplaced, Misread(*feature, *before), findings);
    Append(*feature, kFewer, LostSupports(*feature, *before), findings);
    Append(*feature, kTaken, LostVariables(*feature, *before), findings);
    Append(*feature, kTaken, LostComponent(*feature, *before), findings);
    Append(*feature, kOverwritten, OverwrittenTable(*feature, *before), findings);
    Append(*feature, kReplacedProperty, properties.Of(*feature, *before), findings);
  }
  return findings;
}

}  // namespace standalone
