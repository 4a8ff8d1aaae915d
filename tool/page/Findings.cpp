#include "page/Findings.h"

#include "check/Conformity.h"
#include "page/ValueText.h"
#include "report/OthersUpgrade.h"

namespace tool::page {
namespace {

using simdjson::dom::element;

constexpr std::size_t kMostGroups = 200;
constexpr std::size_t kMostFeatures = 50;

// For people; a word that is no kind of finding stands for itself.
std::string WordsForKind(std::string_view word) {
  for (const standalone::FindingKind kind :
       {standalone::FindingKind::kPending, standalone::FindingKind::kLeftBehind,
        standalone::FindingKind::kBeyondUpgrades, standalone::FindingKind::kUnknown}) {
    if (NameOf(kind) == word) return std::string(WordsFor(kind));
  }
  return std::string(word == "unaccounted" ? "unaccounted for" : word);
}

Attention::One OneOf(element finding) {
  const bool isOfFeature = finding["id"].error() == simdjson::SUCCESS;
  const std::string_view alias = TextIn(finding, "alias");
  std::string code(TextIn(finding, "code"));
  if (const std::string_view name = TextIn(finding, "codeName"); !name.empty())
    code += fmt::format(" ({})", name);
  return {.id = isOfFeature ? IntegerIn(finding, "id") : -1,
          .name = std::string(alias.empty() ? TextIn(finding, "name") : alias),
          .owner = std::string(TextIn(finding, "owner")),
          .code = std::move(code)};
}

}  // namespace

void Findings::Add(element finding) {
  // A document without a result: its problem stands elsewhere.
  if (finding["reason"].error() != simdjson::SUCCESS) return;
  const std::string upgrade(TextIn(finding, "upgrade"));
  std::string reason(TextIn(finding, "reason"));
  if (const std::string_view damage = TextIn(finding, "damage"); !damage.empty())
    reason += fmt::format(": {}", damage);
  if (const std::size_t count = CountIn(finding, "count"); count > 1)
    reason += fmt::format(" ({} features)", count);
  Attention group{.kind = WordsForKind(TextIn(finding, "kind")),
                  .reason = std::move(reason),
                  .next = std::string(TextIn(finding, "nextStep")),
                  .key = std::string(TextIn(finding, "key")),
                  .type = std::string(TextIn(finding, "type")),
                  .others = OthersIn(finding),
                  .upgrade = upgrade.empty() ? -1 : upgrades_.PlaceOf(upgrade),
                  .features = {}};
  std::string place = fmt::format("{}\n{}\n{}\n{}\n{}\n{}\n{}", group.kind, group.reason, group.next,
                                  group.key, group.type, group.others, group.upgrade);
  const auto found = places_.find(place);
  ++count_;
  if (found == places_.end()) {
    if (groups_.size() == kMostGroups) return;
    places_.emplace(std::move(place), groups_.size());
    groups_.push_back(std::move(group));
  }
  Cut<Attention::One>& features =
      found == places_.end() ? groups_.back().features : groups_[found->second].features;
  if (features.count++ < kMostFeatures) features.first.push_back(OneOf(finding));
}

Cut<Attention> Findings::Take() {
  return {.count = count_, .first = std::move(groups_)};
}

}  // namespace tool::page
