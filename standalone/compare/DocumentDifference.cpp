#include "compare/DocumentDifference.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

#include "compare/FeatureDifference.h"
#include "model/KeyedHash.h"

namespace standalone {
namespace {

const Feature* Counterpart(const Feature& feature, const Document& other) {
  const Feature* const found = other.Find(feature.id);
  return found == nullptr || found->removed ? nullptr : found;
}

// The upgrades that only `document` has been through.
std::vector<std::string> UpgradesWithout(const Document& document, const Document& other) {
  std::vector<std::string> rest;
  for (const std::string& each : document.Upgrades()) {
    if (!other.HasRecorded(each)) rest.push_back(each);
  }
  return rest;
}

bool AreSame(const UpgradeSource* one, const UpgradeSource* other) {
  if (one == nullptr || other == nullptr) return one == other;
  return one->library == other->library && one->version == other->version;
}

std::vector<DocumentDifference::Source> SourcesThatDiffer(const Document& before, const Document& after) {
  std::vector<DocumentDifference::Source> sources;
  const auto add = [&](const std::string& upgrade) {
    const UpgradeSource* const was = before.Sources().Of(upgrade);
    const UpgradeSource* const is = after.Sources().Of(upgrade);
    if (!AreSame(was, is)) sources.push_back({upgrade, was, is});
  };
  for (const std::string& upgrade : before.Upgrades()) add(upgrade);
  for (const std::string& upgrade : after.Upgrades()) {
    if (!before.HasRecorded(upgrade)) add(upgrade);
  }
  return sources;
}

FeatureId IdOf(const Feature* feature) {
  return feature == nullptr ? 0 : feature->id;
}

// The sons that `father` has in both documents, in the order of `document`. Null: the features without one.
std::vector<const Feature*> SonsInBoth(const Document& document, const Feature* father,
                                       const Document& other) {
  std::vector<const Feature*> sons;
  const Feature* each = father == nullptr ? document.First() : father->firstSon;
  for (; each != nullptr; each = father == nullptr ? each->next : each->nextSibling) {
    const Feature* const counterpart = each->father == father ? Counterpart(*each, other) : nullptr;
    if (counterpart != nullptr && IdOf(counterpart->father) == IdOf(father)) sons.push_back(each);
  }
  return sons;
}

// The places that are left out by a longest ascending subsequence of `ranks`, which differ from each other.
std::vector<std::size_t> OutOfOrder(const std::vector<std::size_t>& ranks) {
  constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<std::size_t> ends;  // of the best subsequence of each length so far, its last place
  std::vector<std::size_t> previous(ranks.size(), kNone);
  for (std::size_t place = 0; place < ranks.size(); ++place) {
    const auto end =
        std::ranges::lower_bound(ends, ranks[place], {}, [&](std::size_t at) { return ranks[at]; });
    if (end != ends.begin()) previous[place] = *std::prev(end);
    if (end == ends.end()) {
      ends.push_back(place);
    } else {
      *end = place;
    }
  }
  std::vector<bool> inOrder(ranks.size());
  for (std::size_t place = ends.empty() ? kNone : ends.back(); place != kNone; place = previous[place])
    inOrder[place] = true;
  std::vector<std::size_t> rest;
  for (std::size_t place = 0; place < ranks.size(); ++place) {
    if (!inOrder[place]) rest.push_back(place);
  }
  return rest;
}

void AddMovedSons(const Document& before, const Feature* fatherBefore, const Document& after,
                  const Feature* fatherAfter, std::vector<const Feature*>& moved) {
  const std::vector<const Feature*> was = SonsInBoth(before, fatherBefore, after);
  const std::vector<const Feature*> is = SonsInBoth(after, fatherAfter, before);
  if (std::ranges::equal(was, is, {}, IdOf, IdOf)) return;
  std::unordered_map<FeatureId, std::size_t, KeyedHash> rankOf;
  for (std::size_t rank = 0; rank < was.size(); ++rank) rankOf.emplace(was[rank]->id, rank);
  std::vector<std::size_t> ranks;
  ranks.reserve(is.size());
  for (const Feature* const son : is) ranks.push_back(rankOf.at(son->id));
  for (const std::size_t place : OutOfOrder(ranks)) moved.push_back(is[place]);
}

}  // namespace

DocumentDifference Compare(const Document& before, const Document& after) {
  DocumentDifference difference;
  difference.upgradesBefore = UpgradesWithout(before, after);
  difference.upgradesAfter = UpgradesWithout(after, before);
  difference.sources = SourcesThatDiffer(before, after);
  for (const Feature* was = before.First(); was != nullptr; was = was->next) {
    const Feature* const is = Counterpart(*was, after);
    if (is == nullptr) {
      difference.removed.push_back(was);
    } else if (Differ(*was, *is)) {
      difference.changed.push_back({was, is});
    }
  }
  AddMovedSons(before, nullptr, after, nullptr, difference.moved);
  for (const Feature* is = after.First(); is != nullptr; is = is->next) {
    const Feature* const was = Counterpart(*is, before);
    if (was == nullptr) {
      difference.created.push_back(is);
    } else if (is->firstSon != is->lastSon) {
      AddMovedSons(before, was, after, is, difference.moved);
    }
  }
  return difference;
}

}  // namespace standalone
