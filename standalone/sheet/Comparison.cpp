#include "sheet/Comparison.h"

#include <algorithm>
#include <map>
#include <string>

#include "sheet/Duties.h"
#include "sheet/FactOrder.h"
#include "sheet/Intentions.h"

namespace standalone::sheet {
namespace {

Fact TextFact(const Quantity& quantity, std::string_view text) {
  return {.quantity = &quantity,
          .standing = text.empty() ? Standing::kNotSet : Standing::kSet,
          .value = Value::String(text)};
}

// The step that a subject acts from; for a step, and one that stands in none, its case.
Fact PlaceFact(const Subject& subject) {
  const bool isInStep = subject.step != nullptr && subject.step != subject.feature;
  const Feature* const place = isInStep ? subject.step : subject.analysisCase;
  return {.quantity = &kPlaceQuantity,
          .standing = place != nullptr ? Standing::kSet : Standing::kNotSet,
          .value = Value::Link(const_cast<Feature*>(place))};
}

class Comparer {
 public:
  Comparer(const Sheet& before, const Sheet& after, std::span<const std::string> mayHaveRun,
           const std::function<void(Difference&)>& tell)
      : before_(before),
        after_(after),
        connections_(before, after),
        intentions_(IntentionsOf(mayHaveRun)),
        duties_(DutiesBetween(before, after)),
        tell_(tell) {}

  SheetTotals Run() {
    Match();
    for (std::size_t i = 0; i < was_.size(); ++i) {
      const Subject& is = after_.Subjects()[i];
      if (was_[i] == nullptr) {
        Explain({before_, after_, connections_, nullptr, &is, {}, {}}, nullptr);
      } else {
        CompareSubjects(*was_[i], is);
        LookForLeftOut(*was_[i], is);
      }
    }
    for (const Subject* const was : lost_)
      Explain({before_, after_, connections_, was, nullptr, {}, {}}, nullptr);
    return totals_;
  }

 private:
  // Subjects are the same when their features are. A request that was replaced by another one in the same
  // place goes on in that one, in their order.
  void Match() {
    std::vector<bool> stayed(before_.Subjects().size());
    std::size_t next = 0;  // most follow each other in both
    was_.reserve(after_.Subjects().size());
    for (const Subject& is : after_.Subjects()) {
      const auto& old = before_.Subjects();
      const Subject* const was =
          next < old.size() && old[next].id == is.id ? &old[next] : before_.Find(is.id);
      was_.push_back(was != nullptr && was->kind->name == is.kind->name ? was : nullptr);
      if (was != nullptr) next = static_cast<std::size_t>(was - old.data()) + 1;
      if (was_.back() != nullptr) {
        stayed[next - 1] = true;
      } else {
        fresh_[PlaceOf(is)].push_back(was_.size() - 1);
      }
    }
    std::map<Place, std::size_t> taken;
    for (const Subject& was : before_.Subjects()) {
      if (stayed[static_cast<std::size_t>(&was - before_.Subjects().data())]) continue;
      const auto found = fresh_.find(PlaceOf(was));
      std::size_t& place = taken[PlaceOf(was)];
      if (IsReplaced(was) && found != fresh_.end() && place < found->second.size()) {
        was_[found->second[place++]] = &was;
      } else {
        lost_.push_back(&was);
      }
    }
  }

  using Place = std::pair<FeatureId, std::string_view>;
  static Place PlaceOf(const Subject& subject) {
    return {subject.father == nullptr ? 0 : subject.father->id, subject.kind->name};
  }
  static bool IsReplaced(const Subject& subject) { return subject.lateType == "HVXFieldOutputLT"; }

  void CompareSubjects(const Subject& was, const Subject& is) {
    if (was.name == is.name) {
      ++totals_.equal;
    } else {
      CompareOne(was, is, TextFact(kNameQuantity, was.name), TextFact(kNameQuantity, is.name));
    }
    if (was.step == is.step && was.analysisCase == is.analysisCase) {
      ++totals_.equal;
    } else {
      CompareOne(was, is, PlaceFact(was), PlaceFact(is));
    }
    if (was.kept == is.kept && was.keptCount == is.keptCount && was.description == is.description) {
      totals_.equal += is.saidCount;
      return;
    }
    const std::vector<Fact> oldFacts = Sheet::FactsOf(was);
    const std::vector<Fact> newFacts = Sheet::FactsOf(is);
    std::span<const Fact> old = oldFacts;
    std::span<const Fact> now = newFacts;
    // Both follow the order of one table, but a quantity may have no facts.
    const std::span<const Fact> whole = now;
    while (!old.empty() || !now.empty()) {
      const Quantity* const quantity = NextQuantity(old, now, whole);
      CompareRuns(was, is, *quantity, TakeRun(old, *quantity), TakeRun(now, *quantity));
    }
  }

  // What stayed as it was is no difference, but one where an upgrade was to change it.
  void LookForLeftOut(const Subject& was, const Subject& is) {
    for (const DutyOfKind& duty : duties_) {
      if (duty.kind != is.kind) continue;
      const Change change{before_, after_, connections_, &was, &is, {}, {}};
      if (duty.duty->isLeftOut(change)) NoteLeftOut(change, *duty.duty);
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
      totals_.equal += now.size();
      return;
    }
    Change change{before_, after_, connections_, &was, &is, {}, {}};
    if (quantity.isList) {  // what stands in one of the lists only, wherever it stands
      change.lost = WithoutThose(old, now);
      change.gained = WithoutThose(now, old);
      totals_.equal += old.size() - change.lost.size();
    } else {
      PairByIndex(old, now, change);
    }
    if (!change.lost.empty() || !change.gained.empty()) Explain(std::move(change), &quantity);
  }

  void PairByIndex(std::span<const Fact> old, std::span<const Fact> now, Change& change) {
    const std::size_t common = std::min(old.size(), now.size());
    for (std::size_t i = 0; i < common; ++i) {
      if (SayTheSame(old[i], now[i])) {
        ++totals_.equal;
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
      if (!intention->Concerns(*about.kind)) continue;
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
    Tell(difference);
  }

  void NoteLeftOut(const Change& change, const Duty& duty) {
    Difference difference{.before = change.was,
                          .after = change.is,
                          .quantity = &duty.quantity,
                          .lost = {TextFact(duty.quantity, "due")},
                          .gained = {TextFact(duty.quantity, "left out")},
                          .identifier = duty.identifier};
    Tell(difference);
  }

  void Tell(Difference& difference) {
    ++(difference.meaning == Meaning::kSame        ? totals_.same
       : difference.meaning == Meaning::kOnPurpose ? totals_.onPurpose
                                                   : totals_.unaccounted);
    tell_(difference);
  }

  const Sheet& before_;
  const Sheet& after_;
  Connections connections_;
  std::vector<const Intention*> intentions_;
  std::vector<DutyOfKind> duties_;
  std::vector<const Subject*> was_;  // by the place of what it is now; null for what is new
  std::map<Place, std::vector<std::size_t>> fresh_;
  std::vector<const Subject*> lost_;
  const std::function<void(Difference&)>& tell_;
  SheetTotals totals_;
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

SheetTotals Compare(const Sheet& before, const Sheet& after, std::span<const std::string> mayHaveRun,
                    const std::function<void(Difference&)>& tell) {
  return Comparer(before, after, mayHaveRun, tell).Run();
}

SheetComparison Compare(const Sheet& before, const Sheet& after, std::span<const std::string> mayHaveRun) {
  SheetComparison comparison;
  const SheetTotals totals = Compare(before, after, mayHaveRun, [&](Difference& difference) {
    comparison.differences.push_back(std::move(difference));
  });
  comparison.equal = totals.equal;
  return comparison;
}

}  // namespace standalone::sheet
