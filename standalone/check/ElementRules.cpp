// Element assignments.

#include <fmt/format.h>

#include <algorithm>

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
  for (Feature* const entry : LinkedFeatures(*global, kEntries)) {
    if (IntegerOf(*entry, kEntryKind, -1) == analysisType) return entry;
  }
  return nullptr;
}

// The upgrade appends to the local assignments, one after the other, until it meets one with two or none.
bool WouldAppendAgain(const Feature& global) {
  const Feature* son = global.firstSon;
  while (son != nullptr && !IsA(*son, kLocal)) son = son->nextSibling;
  if (son == nullptr) return false;
  const std::size_t size = AssignmentsOf(*const_cast<Feature*>(son)).size();
  return size != 0 && size != 2;
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

// The upgrade goes through the entry's list and stops where it cannot add controls.
const Feature* InTheWay(const std::vector<Feature*>& assignments, const Feature& last) {
  for (Feature* const each : assignments) {
    if (each == &last) return nullptr;
    if (!HasPlace(*each)) return each;
  }
  return nullptr;
}

// In the global assignment only what the entry of the case's own type lists is looked at.
Verdict WithoutControls(Feature& feature, const Survey& /*survey*/) {
  Feature* const owner = feature.father;
  if (owner == nullptr || LinkedFeature(feature, kControls) != nullptr) return Conforms();
  Feature* const analysisCase = CaseAbove(feature);
  if (analysisCase == nullptr || !check::IsOfThisProduct(*analysisCase)) return Conforms();
  const std::vector<Feature*> assignments = AssignmentsOf(*owner);
  if (std::ranges::find(assignments, &feature) == assignments.end()) return Conforms();
  const Attribute* const place = feature.document->FindAttribute(feature, kControls.Id());
  Verdict verdict = place == nullptr                          ? Damaged(kNoPlace, kControls.Text())
                    : place->value.Kind() != ValueKind::kLink ? Damaged(kNoLink, kControls.Text())
                                                              : Outdated();
  if (!IsA(*owner, kEntry)) return NeverAgain(std::move(verdict), kNotReached);

  if (EntryOf(owner->father, IntegerOf(*analysisCase, kAnalysisType, 0)) != owner) return Conforms();
  if (const Feature* const other = InTheWay(assignments, feature))
    verdict.damage.push_back({&kStopsBefore, fmt::format("feature {}", other->id)});
  // Where controls have no place, each run makes some that nothing links to.
  if (!verdict.damage.empty()) verdict.state = Verdict::State::kOnce;
  return WouldAppendAgain(*owner->father) ? NeverAgain(std::move(verdict), kWouldAppend) : verdict;
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
