#include "sheet/Intentions.h"

#include <unordered_set>

#include "sheet/FactOrder.h"
#include "sheet/Listed.h"

namespace standalone::sheet {

bool Intention::Concerns(const Kind& kind) const {
  return kinds.empty() || Lists(kinds, ", ", kind.name);
}

std::vector<const Intention*> IntentionsOf(std::span<const std::string> mayHaveRun) {
  const std::unordered_set<std::string_view> identifiers(mayHaveRun.begin(), mayHaveRun.end());
  std::vector<const Intention*> found;
  for (const auto& table :
       {NameIntentions(), ConditionIntentions(), SupportIntentions(), InteractionIntentions(),
        PropertyIntentions(), SettingIntentions(), ElementIntentions()}) {
    for (const Intention& intention : table) {
      if (identifiers.contains(intention.identifier)) found.push_back(&intention);
    }
  }
  return found;
}

bool Change::All() {
  explainedLost = std::move(lost);
  explainedGained = std::move(gained);
  lost.clear();
  gained.clear();
  return true;
}

bool Change::Replace(const std::function<std::optional<std::vector<Fact>>(const Fact&)>& become) {
  FactBag came(gained.begin(), gained.end());
  std::vector<Fact> left;
  for (const Fact& fact : lost) {
    const std::optional<std::vector<Fact>> others = become(fact);
    std::vector<FactBag::node_type> taken;
    bool isReplaced = others.has_value();
    for (std::size_t i = 0; isReplaced && i < others->size(); ++i) {
      const auto found = came.find((*others)[i]);
      isReplaced = found != came.end();
      if (isReplaced) taken.push_back(came.extract(found));
    }
    if (isReplaced) {
      explainedLost.push_back(fact);
      for (const FactBag::node_type& each : taken) explainedGained.push_back(each.value());
    } else {
      for (FactBag::node_type& each : taken) came.insert(std::move(each));
      left.push_back(fact);
    }
  }
  lost = std::move(left);
  if (!explainedGained.empty()) gained = WithoutThose(gained, explainedGained);
  return !explainedLost.empty();
}

}  // namespace standalone::sheet
