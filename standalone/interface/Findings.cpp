#include "hvxupgrade/Findings.h"

#include "check/Conformity.h"
#include "interface/Inside.h"
#include "interface/Translation.h"

namespace hvxupgrade {
namespace {

using standalone::FindingKind;

// Both have the same kinds in the same order.
static_assert(static_cast<int>(Finding::Kind::kLeftBehind) == static_cast<int>(FindingKind::kLeftBehind));
static_assert(static_cast<int>(Finding::Kind::kBeyondUpgrades) ==
              static_cast<int>(FindingKind::kBeyondUpgrades));
static_assert(static_cast<int>(Finding::Kind::kUnknown) == static_cast<int>(FindingKind::kUnknown));

Finding Told(const standalone::Finding& finding) {
  Finding told;
  told.feature = finding.feature->id;
  told.lateType = finding.feature->TypeName();
  told.kind = static_cast<Finding::Kind>(finding.kind);
  told.identifier = finding.identifier;
  told.reason = finding.reason;
  told.damage = finding.damage;
  told.key = finding.key;
  told.remedy = WithoutOptions(finding.remedy);
  told.explanation = finding.Explanation();
  told.nextStep = WithoutOptions(finding.NextStep("upgrade the document", "upgrade it again with retry"));
  told.needsPerson = finding.NeedsPerson();
  told.count = finding.count;
  return told;
}

std::vector<Finding> Told(const std::vector<standalone::Finding>& findings) {
  std::vector<Finding> all;
  all.reserve(findings.size());
  for (const standalone::Finding& finding : findings) all.push_back(Told(finding));
  return all;
}

}  // namespace

std::string_view NameOf(Finding::Kind kind) {
  return standalone::NameOf(static_cast<FindingKind>(kind));
}

std::vector<Finding> Check(Document& document) {
  Inside::Of(document).DropAllDeadLinks();
  return Told(standalone::CheckConformity(Inside::Of(document)));
}

}  // namespace hvxupgrade
