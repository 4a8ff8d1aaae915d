#include "check/Losses.h"

#include <algorithm>
#include <unordered_set>

#include "adapters/Attributes.h"
#include "analysis/Supports.h"
#include "check/Rule.h"

namespace standalone {
namespace {

constexpr std::string_view kReplaced = "an upgrade took a default for a value that it could not read";
constexpr std::string_view kFewer = "an upgrade took away supports and had nothing to put in their place";
constexpr std::string_view kRemedy = "Correct it in the document as it was before, and upgrade that again";
constexpr DamageKind kShorter{"{} lists fewer than before", {}};

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

void Append(Feature& feature, std::string_view reason, const std::vector<Damage>& damage,
            std::vector<Finding>& findings) {
  if (damage.empty()) return;
  Finding& finding =
      findings.emplace_back(Finding{&feature, FindingKind::kBeyondUpgrades, {}, reason, {}, {}, {}, nullptr});
  Tell(damage, finding);
  finding.remedy = kRemedy;
}

}  // namespace

std::vector<Finding> FindLosses(Document& document) {
  std::vector<Finding> findings;
  for (Feature* const feature : document.Touched()) {
    const FeatureState* const before = document.Before(*feature);
    if (before == nullptr) continue;
    Append(*feature, kReplaced, Misread(*feature, *before), findings);
    Append(*feature, kFewer, LostSupports(*feature, *before), findings);
  }
  return findings;
}

}  // namespace standalone
