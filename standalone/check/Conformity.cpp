#include "check/Conformity.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <unordered_map>

#include "adapters/Attributes.h"
#include "analysis/CaseMemo.h"
#include "analysis/Frame.h"
#include "check/PerLateType.h"
#include "check/Rule.h"
#include "check/Rules.h"
#include "check/UnknownTypes.h"

namespace standalone {
namespace {

const Key kFeatList("FeatList");
const Key kCreatesParameters("CreatesParameters");
const Key kCaseKind("CaseKind");

bool Concerns(std::string_view lateTypes, const LateType& type) {
  while (!lateTypes.empty()) {
    const std::size_t end = lateTypes.find(' ');
    const std::string_view word = lateTypes.substr(0, end);
    const bool concerns = word.ends_with('*') ? type.Name().starts_with(word.substr(0, word.size() - 1))
                                              : type.MetaClass().IsAKindOf(word);
    if (concerns) return true;
    lateTypes = end == std::string_view::npos ? std::string_view() : lateTypes.substr(end + 1);
  }
  return false;
}

// Which rules concern a late type is looked up once for each.
class RulesByType {
 public:
  RulesByType() {
    for (const std::span<const ConformityRule> subject :
         {ConditionRules(), SupportRules(), ContactRules(), ConstraintRules(), StepRules(), PropertyRules(),
          ElementRules(), JobRules(), ValueRules()}) {
      for (const ConformityRule& rule : subject) all_.push_back(&rule);
    }
  }

  const std::vector<const ConformityRule*>& Of(const LateType& type) {
    return byType_.Of(type, [this](const LateType& each) {
      std::vector<const ConformityRule*> rules;
      std::ranges::copy_if(all_, std::back_inserter(rules),
                           [&each](const ConformityRule* rule) { return Concerns(rule->lateTypes, each); });
      return rules;
    });
  }

 private:
  std::vector<const ConformityRule*> all_;
  PerLateType<std::vector<const ConformityRule*>> byType_;
};

FindingKind KindOf(const Verdict& verdict, bool hasIdentifier, bool isRecorded) {
  if (!hasIdentifier || verdict.state == Verdict::State::kBeyond) return FindingKind::kBeyondUpgrades;
  if (!isRecorded) return FindingKind::kPending;
  return verdict.state == Verdict::State::kOnce ? FindingKind::kBeyondUpgrades : FindingKind::kLeftBehind;
}

class Check {
 public:
  Check(Document& document, FindingScope scope) : survey_(document), document_(document), scope_(scope) {}

  std::vector<Finding> Run() {
    UnknownTypes unknown;
    for (Feature* feature = survey_.Of().First(); feature != nullptr; feature = feature->next) {
      unknown.Note(*feature);
      for (const ConformityRule* const rule : rules_.Of(*feature->type)) Judge(*feature, *rule);
      if (feature->externalName.empty()) continue;
      for (const ConformityRule& rule : NameRules()) Judge(*feature, rule);
    }
    for (Finding& finding : findings_) TellWhatIsInTheWay(finding);
    for (Finding& finding : findings_) TellWhatIsConvertedToo(finding);
    for (Finding& finding : findings_) TellWhereToCorrect(finding);
    unknown.AppendTo(findings_);
    return std::move(findings_);
  }

 private:
  void Judge(Feature& feature, const ConformityRule& rule) {
    Verdict verdict = rule.judge(feature, survey_);
    if (verdict.state != Verdict::State::kConforms) Add(feature, rule, std::move(verdict));
  }

  void Add(Feature& feature, const ConformityRule& rule, Verdict verdict) {
    const bool hasIdentifier = !rule.identifier.empty() && verdict.state != Verdict::State::kBeyond;
    const FindingKind kind = KindOf(verdict, hasIdentifier, document_.HasRecorded(rule.identifier));
    const std::span<const ConformityRule> values = ValueRules();
    const bool isOfValue = &rule >= values.data() && &rule < values.data() + values.size();
    if (kind == FindingKind::kPending && scope_ == FindingScope::kOfResult && !isOfValue) return;
    Finding& finding = findings_.emplace_back(Finding{&feature,
                                                      kind,
                                                      hasIdentifier ? rule.identifier : std::string_view(),
                                                      rule.reason,
                                                      {},
                                                      {},
                                                      {},
                                                      nullptr});
    if (kind == FindingKind::kBeyondUpgrades && verdict.onceItRan != nullptr)
      verdict.damage.assign({{verdict.onceItRan, {}}});
    if (kind != FindingKind::kBeyondUpgrades)
      finding.visited = rule.visited == nullptr ? &feature : rule.visited(feature);
    Tell(verdict.damage, finding);
    if (kind == FindingKind::kBeyondUpgrades && verdict.state == Verdict::State::kOnce)
      notAgain_.try_emplace(rule.identifier, &feature);
    if (kind == FindingKind::kLeftBehind && finding.remedy.empty()) finding.remedy = rule.remedy;
    if (isOfValue) NoteUnreadable(feature);
  }

  // A value of another kind than is read is in the way of what works on the feature, or on what it is a part
  // of.
  void NoteUnreadable(const Feature& feature) {
    constexpr int kLevels = 3;  // such as a component of a contact's control
    const Feature* owner = &feature;
    for (int level = 0; owner != nullptr && level < kLevels; ++level, owner = owner->father)
      unreadable_.try_emplace(owner, findings_.size() - 1);
  }

  // No setter replaces what its getter cannot read: that is why an upgrade that nothing else hindered did not
  // change the feature.
  void TellWhatIsInTheWay(Finding& finding) {
    if (finding.kind != FindingKind::kLeftBehind || !finding.damage.empty()) return;
    auto found = unreadable_.find(finding.feature);
    if (found == unreadable_.end()) found = unreadable_.find(finding.visited);
    if (found == unreadable_.end()) return;
    const Finding& value = findings_[found->second];
    finding.damage = value.damage.empty() ? std::string(value.reason) : value.damage;
    if (value.feature != finding.feature)
      finding.damage += fmt::format(" (feature {}, {})", value.feature->id, value.feature->TypeName());
    finding.key = value.key;
    finding.remedy = value.remedy;
  }

  // A conversion of the whole document, run again, leaves out nothing that must not be converted again.
  void TellWhatIsConvertedToo(Finding& finding) const {
    const bool isConversion = finding.kind == FindingKind::kLeftBehind && finding.visited == nullptr;
    if (!isConversion || !finding.damage.empty()) return;
    const auto found = notAgain_.find(finding.identifier);
    if (found == notAgain_.end()) return;
    const Feature& other = *found->second;
    finding.damage = fmt::format("its upgrade would convert feature {} ({}) once more, which it must not",
                                 other.id, other.TypeName());
    finding.remedy = fmt::format("See to feature {} first", other.id);
  }

  // Upgrades that ran took the value for missing, and do not run again when it is corrected here.
  void TellWhereToCorrect(Finding& finding) const {
    if (finding.reason != kUnreadableReason || document_.Upgrades().empty()) return;
    finding.remedy = fmt::format(
        "Correct it in the document as it was before its upgrades, and upgrade that again; where there is "
        "none, {} "
        "here, and see to what follows from it",
        finding.remedy.empty() ? "correct it" : check::LowerFirst(finding.remedy));
  }

  Survey survey_;
  RulesByType rules_;
  const Document& document_;
  FindingScope scope_;
  std::vector<Finding> findings_;
  std::unordered_map<const Feature*, std::size_t> unreadable_;  // where the finding about the value stands
  std::map<std::string_view, const Feature*> notAgain_;  // by identifier, what it must not convert again
};

}  // namespace

bool Survey::HasInteractionSet(const Feature& caseOrStep) const {
  const auto [entry, isNew] = withInteractionSet_.try_emplace(&caseOrStep, false);
  if (isNew) entry->second = FirstSonOfKind(caseOrStep, "HVXInteractionContainerLT") != nullptr;
  return entry->second;
}

// Of the first step in which a contact can begin.
bool Survey::HasSetInFirstStep(const Feature& analysisCase) const {
  std::vector<Feature*> steps = StepsOf(analysisCase);
  if (!steps.empty()) steps.erase(steps.begin());  // the initial one
  const auto first =
      std::ranges::find_if_not(steps, [](Feature* step) { return IsOfKind(*step, "HVXStaticLPStepLT"); });
  return first != steps.end() && HasInteractionSet(**first);
}

bool Survey::CasesTakeContacts(bool withClearance) const {
  return withClearance ? casesTakeClearances_ : casesTakeContacts_;
}

Survey::Survey(Document& document)
    : document_(document), registered_(document.NextId(), document.FeatureCount()) {
  if (Feature* const model = document.AnalysisModel()) {
    const Attribute* const list = document.FindAttribute(*model, kFeatList.Id());
    canRegister_ = list != nullptr && list->value.Kind() == ValueKind::kList;
    for (const Feature* const feature : LinkedFeatures(*model, kFeatList)) {
      registered_.Insert(feature->id);
      hasRegistered_ = true;
    }
    static_cast<void>(ReadAttribute(*model, kCreatesParameters, createsParameters_));
  }
  cases_ = document.AnalysisSets(kind::kAnalysisCase);
  casesOfThisProductOnly_ = !cases_.empty() && std::ranges::all_of(cases_, [](Feature* each) {
    return check::IsOfThisProduct(*each);
  });
  for (Feature* const analysisCase : cases_) {
    if (HasInteractionSet(*analysisCase)) continue;
    casesTakeContacts_ = false;
    // A pair for a property with a clearance goes into the first step's set where the case wants that.
    if (check::IntegerOf(*analysisCase, kCaseKind, 0) != 1 || !HasSetInFirstStep(*analysisCase))
      casesTakeClearances_ = false;
  }
}

std::vector<Finding> CheckConformity(Document& document, FindingScope scope) {
  document.DropAllDeadLinks();
  const CaseMemo memo;
  return Check(document, scope).Run();
}

}  // namespace standalone
