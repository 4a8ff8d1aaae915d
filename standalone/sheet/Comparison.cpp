#include "sheet/Comparison.h"

#include <algorithm>
#include <map>
#include <string>
#include <unordered_set>

#include "sheet/Intentions.h"
#include "sheet/Listed.h"

namespace standalone::sheet {
namespace {

bool Concerns(const Intention& intention, const Kind& kind) {
  return intention.kinds.empty() || Lists(intention.kinds, ", ", kind.name);
}

// The intentions of the upgrades that can have run.
std::vector<const Intention*> IntentionsOf(std::span<const std::string> mayHaveRun) {
  const std::unordered_set<std::string_view> identifiers(mayHaveRun.begin(), mayHaveRun.end());
  std::vector<const Intention*> found;
  for (const auto& table : {NameIntentions(), ConditionIntentions(), SupportIntentions(),
                            InteractionIntentions(), SettingIntentions(), ElementIntentions()}) {
    for (const Intention& intention : table) {
      if (identifiers.contains(intention.identifier)) found.push_back(&intention);
    }
  }
  return found;
}

Fact TextFact(const Quantity& quantity, std::string_view text) {
  return {.quantity = &quantity,
          .standing = text.empty() ? Standing::kNotSet : Standing::kSet,
          .value = Value::String(text)};
}

// The step that a subject acts from; for one that stands in no step, its case.
Fact PlaceFact(const Subject& subject) {
  const Feature* const place = subject.step != nullptr ? subject.step : subject.analysisCase;
  return {.quantity = &kPlaceQuantity,
          .standing = place != nullptr ? Standing::kSet : Standing::kNotSet,
          .value = Value::Link(const_cast<Feature*>(place))};
}

class Comparer {
 public:
  Comparer(const Sheet& before, const Sheet& after, std::span<const std::string> mayHaveRun)
      : before_(before), after_(after), intentions_(IntentionsOf(mayHaveRun)) {}

  SheetComparison Run() {
    Match();
    for (const Subject& is : after_.Subjects()) {
      const Subject* const was = WasOf(is);
      if (was == nullptr) {
        Explain({before_, after_, nullptr, &is, {}, {}}, nullptr);
      } else {
        CompareSubjects(*was, is);
      }
    }
    for (const Subject* const was : lost_) Explain({before_, after_, was, nullptr, {}, {}}, nullptr);
    return std::move(result_);
  }

 private:
  // Subjects are the same when their features are. A request that was replaced by another one in the same
  // place goes on in that one, in their order.
  void Match() {
    for (const Subject& is : after_.Subjects()) {
      const Subject* const was = before_.Find(is.id);
      if (was != nullptr && was->kind->name == is.kind->name) {
        stayed_.insert(is.id);
      } else {
        fresh_[{is.father == nullptr ? 0 : is.father->id, is.kind->name}].push_back(&is);
      }
    }
    std::map<std::pair<FeatureId, std::string_view>, std::size_t> taken;
    for (const Subject& was : before_.Subjects()) {
      if (stayed_.contains(was.id)) continue;
      const std::pair<FeatureId, std::string_view> place{was.father == nullptr ? 0 : was.father->id,
                                                         was.kind->name};
      const auto found = fresh_.find(place);
      std::size_t& next = taken[place];
      if (IsReplaced(was) && found != fresh_.end() && next < found->second.size()) {
        successors_[found->second[next++]->id] = &was;
      } else {
        lost_.push_back(&was);
      }
    }
  }

  static bool IsReplaced(const Subject& subject) { return subject.lateType == "HVXFieldOutputLT"; }

  const Subject* WasOf(const Subject& is) const {
    if (stayed_.contains(is.id)) return before_.Find(is.id);
    const auto found = successors_.find(is.id);
    return found == successors_.end() ? nullptr : found->second;
  }

  void CompareSubjects(const Subject& was, const Subject& is) {
    CompareOne(was, is, TextFact(kNameQuantity, was.name), TextFact(kNameQuantity, is.name));
    CompareOne(was, is, PlaceFact(was), PlaceFact(is));
    std::span<const Fact> old = before_.FactsOf(was);
    std::span<const Fact> now = after_.FactsOf(is);
    // Both follow the order of one table, but a quantity may have no facts.
    const std::span<const Fact> whole = now;
    while (!old.empty() || !now.empty()) {
      const Quantity* const quantity = NextQuantity(old, now, whole);
      CompareRuns(was, is, *quantity, TakeRun(old, *quantity), TakeRun(now, *quantity));
    }
  }

  static const Quantity* NextQuantity(std::span<const Fact> old, std::span<const Fact> now,
                                      std::span<const Fact> whole) {
    if (now.empty()) return old.front().quantity;
    if (old.empty()) return now.front().quantity;
    const Quantity* const first = old.front().quantity;
    const bool comesLater = std::ranges::find(whole, first, &Fact::quantity) != whole.end();
    return comesLater ? now.front().quantity : first;
  }

  static std::span<const Fact> TakeRun(std::span<const Fact>& facts, const Quantity& quantity) {
    std::size_t count = 0;
    while (count < facts.size() && facts[count].quantity == &quantity) ++count;
    const std::span<const Fact> run = facts.first(count);
    facts = facts.subspan(count);
    return run;
  }

  void CompareOne(const Subject& was, const Subject& is, const Fact& old, const Fact& now) {
    CompareRuns(was, is, *old.quantity, std::span(&old, 1), std::span(&now, 1));
  }

  void CompareRuns(const Subject& was, const Subject& is, const Quantity& quantity, std::span<const Fact> old,
                   std::span<const Fact> now) {
    if (old.size() == now.size() && std::ranges::equal(old, now, SayTheSame)) {
      result_.equal += now.size();
      return;
    }
    Change change{before_, after_, &was, &is, {}, {}};
    if (quantity.isList) {
      LeaveDifferent(old, now, change);
    } else {
      PairByIndex(old, now, change);
    }
    if (!change.lost.empty() || !change.gained.empty()) Explain(std::move(change), &quantity);
  }

  // What stands in one of the lists only, wherever it stands. An entry that holds nothing says nothing.
  void LeaveDifferent(std::span<const Fact> old, std::span<const Fact> now, Change& change) {
    const auto holdsNothing = [](const Fact& fact) { return fact.standing == Standing::kNotSet; };
    std::ranges::remove_copy_if(now, std::back_inserter(change.gained), holdsNothing);
    for (const Fact& fact : old) {
      if (holdsNothing(fact)) continue;
      const auto found =
          std::ranges::find_if(change.gained, [&](const Fact& other) { return SayTheSame(fact, other); });
      if (found == change.gained.end()) {
        change.lost.push_back(fact);
      } else {
        change.gained.erase(found);
        ++result_.equal;
      }
    }
  }

  void PairByIndex(std::span<const Fact> old, std::span<const Fact> now, Change& change) {
    const std::size_t common = std::min(old.size(), now.size());
    for (std::size_t i = 0; i < common; ++i) {
      if (SayTheSame(old[i], now[i])) {
        ++result_.equal;
      } else {
        change.lost.push_back(old[i]);
        change.gained.push_back(now[i]);
      }
    }
    for (const Fact& fact : old.subspan(common)) change.lost.push_back(fact);
    for (const Fact& fact : now.subspan(common)) change.gained.push_back(fact);
  }

  void Explain(Change change, const Quantity* quantity) {
    const Subject& about = change.is != nullptr ? *change.is : *change.was;
    const std::string_view name = quantity == nullptr ? "*" : quantity->name;
    bool isDone = false;
    for (const Intention* const intention : intentions_) {
      if (intention->quantity.empty() ? quantity == nullptr : intention->quantity != name) continue;
      if (!Concerns(*intention, *about.kind)) continue;
      while (!isDone && intention->explains(change)) {
        Note(change, quantity, std::move(change.explainedLost), std::move(change.explainedGained), intention);
        change.explainedLost.clear();
        change.explainedGained.clear();
        isDone = change.lost.empty() && change.gained.empty();
      }
      if (isDone) return;
    }
    Note(change, quantity, change.lost, change.gained, nullptr);
  }

  void Note(const Change& change, const Quantity* quantity, std::vector<Fact> lost, std::vector<Fact> gained,
            const Intention* intention) {
    Difference difference{.before = change.was,
                          .after = change.is,
                          .quantity = quantity,
                          .lost = std::move(lost),
                          .gained = std::move(gained)};
    if (intention != nullptr) {
      difference.meaning = intention->meaning;
      difference.identifier = intention->identifier;
      difference.sentence = intention->sentence;
    }
    result_.differences.push_back(std::move(difference));
  }

  const Sheet& before_;
  const Sheet& after_;
  std::vector<const Intention*> intentions_;
  std::unordered_set<FeatureId> stayed_;
  std::map<std::pair<FeatureId, std::string_view>, std::vector<const Subject*>> fresh_;
  std::unordered_map<FeatureId, const Subject*> successors_;
  std::vector<const Subject*> lost_;
  SheetComparison result_;
};

}  // namespace

std::string_view NameOf(Meaning meaning) {
  switch (meaning) {
    case Meaning::kSame:
      return "same";
    case Meaning::kOnPurpose:
      return "onPurpose";
    case Meaning::kUnaccounted:
      return "unaccounted";
  }
  return {};
}

std::size_t SheetComparison::Count(Meaning meaning) const {
  return static_cast<std::size_t>(std::ranges::count(differences, meaning, &Difference::meaning));
}

bool Change::All() {
  explainedLost = std::move(lost);
  explainedGained = std::move(gained);
  lost.clear();
  gained.clear();
  return true;
}

bool Change::Replaced(const Fact& one, const std::vector<Fact>& others) {
  std::vector<Fact> left = gained;
  for (const Fact& other : others) {
    const auto found = std::ranges::find_if(left, [&](const Fact& fact) { return SayTheSame(fact, other); });
    if (found == left.end()) return false;
    left.erase(found);
  }
  explainedGained = others;
  gained = std::move(left);
  const auto place = std::ranges::find_if(lost, [&](const Fact& fact) { return SayTheSame(fact, one); });
  explainedLost = {*place};
  lost.erase(place);
  return true;
}

SheetComparison Compare(const Sheet& before, const Sheet& after, std::span<const std::string> mayHaveRun) {
  return Comparer(before, after, mayHaveRun).Run();
}

}  // namespace standalone::sheet
