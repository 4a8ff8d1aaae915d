// Element assignments.

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "analysis/Frame.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;
using check::IntegerOf;
using check::IsA;

const Key kGlobal("HVXGlobalElemAsgnLT");
const Key kEntry("HVXGlobalElemAsgnEntryLT");
const Key kLocal("HVXLocalElemAsgnLT");
const Key kElementAssignments("ElementAssignments");
const Key kOldAssignments("HVXListElementAsgnSpec");
const Key kEntries("Entries");
const Key kEntryKind("Kind");
const Key kAnalysisType("AnalysisType");
const Key kControls("SectionControlsSpec");

constexpr DamageKind kNoPlace{"{} is missing", "Give the element assignment an empty link {}"};
constexpr DamageKind kNoLink{"{} is no link", "Make {} a link that holds nothing"};
constexpr DamageKind kStopsBefore{"its upgrade stops at {}, which has no link \"SectionControlsSpec\"",
                                  "Give {} an empty link \"SectionControlsSpec\""};
constexpr DamageKind kWouldAppend{
    "running its upgrade again would append another element assignment to each local assignment of the case",
    "Give the element assignment section controls in the workbench"};
constexpr DamageKind kNotReached{"its upgrade does not come to this local assignment a second time",
                                 "Give the element assignment section controls in the workbench"};

std::vector<Feature*> AssignmentsOf(Feature& local) {
  return LinkedFeatures(local,
                        HasAttribute(local, kElementAssignments) ? kElementAssignments : kOldAssignments);
}

Verdict OldAssignments(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(!HasAttribute(feature, kElementAssignments) &&
                    LinkedFeatures(feature, kOldAssignments).size() == 2);
}

// The entry that stands for a type of analysis; null without one.
Feature* EntryOf(Feature* global, std::int32_t analysisType) {
  if (global == nullptr || !IsA(*global, kGlobal)) return nullptr;
  return FindLinked(*global, kEntries,
                    [=](Feature& entry) { return IntegerOf(entry, kEntryKind, -1) == analysisType; });
}

Verdict NeverAgain(Verdict verdict, const DamageKind& why) {
  verdict.state = Verdict::State::kOnce;
  verdict.onceItRan = &why;
  return verdict;
}

bool HasPlace(Feature& assignment) {
  const Attribute* const place = assignment.document->FindAttribute(assignment, kControls.Id());
  return place != nullptr && place->value.Kind() == ValueKind::kLink;
}

// What the rule asks about the list that an assignment stands in, found out once for all of the list.
class ListOfAssignments {
 public:
  static const ListOfAssignments& Of(Feature& owner) {
    ListOfAssignments& last = owner.document->Remembered<ListOfAssignments>();
    if (last.owner_ != &owner || last.changes_ != owner.document->ChangeCount()) last.Read(owner);
    return last;
  }

  [[nodiscard]] bool Holds(const Feature& assignment) const { return positions_.contains(&assignment); }
  // The upgrade goes through the list and stops where it cannot add controls: there, if that is before the
  // assignment; else null.
  [[nodiscard]] const Feature* InTheWayOf(const Feature& assignment) const {
    return stop_ != nullptr && positions_.at(stop_) < positions_.at(&assignment) ? stop_ : nullptr;
  }
  // The upgrade appends to the local assignments beneath the same father as the owner, one after the other,
  // until it meets one with two or none.
  [[nodiscard]] bool WouldAppendAgain() const { return wouldAppendAgain_; }

 private:
  void Read(Feature& owner) {
    positions_.clear();
    stop_ = nullptr;
    for (Feature* const each : AssignmentsOf(owner)) {
      positions_.emplace(each, positions_.size());
      if (stop_ == nullptr && !HasPlace(*each)) stop_ = each;
    }
    wouldAppendAgain_ = false;
    if (owner.father != nullptr) {
      const std::vector<Feature*>& locals = SonsOfKind(*owner.father, kLocal.Text());
      const std::size_t size = locals.empty() ? 0 : AssignmentsOf(*locals.front()).size();
      wouldAppendAgain_ = size != 0 && size != 2;
    }
    owner_ = &owner;
    changes_ = owner.document->ChangeCount();
  }

  const Feature* owner_ = nullptr;
  std::uint64_t changes_ = 0;
  std::unordered_map<const Feature*, std::size_t> positions_;  // of the first occurrence
  const Feature* stop_ = nullptr;
  bool wouldAppendAgain_ = false;
};

// In the global assignment only what the entry of the case's own type lists is looked at.
Verdict WithoutControls(Feature& feature, const Survey& /*survey*/) {
  Feature* const owner = feature.father;
  if (owner == nullptr || LinkedFeature(feature, kControls) != nullptr) return Conforms();
  Feature* const analysisCase = CaseAbove(feature);
  if (analysisCase == nullptr || !check::IsOfThisProduct(*analysisCase)) return Conforms();
  const ListOfAssignments& list = ListOfAssignments::Of(*owner);
  if (!list.Holds(feature)) return Conforms();
  const Attribute* const place = feature.document->FindAttribute(feature, kControls.Id());
  Verdict verdict = place == nullptr                          ? Damaged(kNoPlace, kControls.Text())
                    : place->value.Kind() != ValueKind::kLink ? Damaged(kNoLink, kControls.Text())
                                                              : Outdated();
  if (!IsA(*owner, kEntry)) return NeverAgain(std::move(verdict), kNotReached);

  if (EntryOf(owner->father, IntegerOf(*analysisCase, kAnalysisType, 0)) != owner) return Conforms();
  if (const Feature* const other = list.InTheWayOf(feature))
    verdict.damage.push_back({&kStopsBefore, fmt::format("feature {}", other->id)});
  // Where controls have no place, each run makes some that nothing links to.
  if (!verdict.damage.empty()) verdict.state = Verdict::State::kOnce;
  return list.WouldAppendAgain() ? NeverAgain(std::move(verdict), kWouldAppend) : verdict;
}

// The release that added pyramids gave each global assignment one for them.
Verdict WithoutPyramids(Feature& feature, const Survey& /*survey*/) {
  static const Key shape("ElementShape");
  constexpr std::int32_t kExtendedKind = 1;
  constexpr std::int32_t kPyramid = 8;
  for (Feature* const entry : LinkedFeatures(feature, kEntries)) {
    if (IntegerOf(*entry, kEntryKind, 0) != kExtendedKind) continue;
    const std::vector<Feature*> assignments = LinkedFeatures(*entry, kElementAssignments);
    return OutdatedIf(!assignments.empty() && std::ranges::none_of(assignments, [](Feature* assignment) {
      return IntegerOf(*assignment, shape, 0) == kPyramid;
    }));
  }
  return Conforms();
}

constexpr ConformityRule kRules[] = {
    {"HVXGlobalElemAsgnLT", "UpdateGlobalElementAsgnList",
     "the entry of structural analyses has no element assignment for pyramids", WithoutPyramids},
    {"HVXLocalElemAsgnLT", "UpgradeLocalElementAssignment", "its element assignments are in an old list",
     OldAssignments},
    {"HVXElementAssignmentLT", "UpgradeGlobalAndLocalElemAssgnToContainSectionControls",
     "the section controls are missing", WithoutControls, check::VisitCase},
};

}  // namespace

std::span<const ConformityRule> ElementRules() {
  return kRules;
}

}  // namespace standalone
