#include "check/Conformity.h"

#include <unordered_map>

#include "adapters/Attributes.h"
#include "analysis/Frame.h"

namespace standalone {
namespace {

const Key kFeatList("FeatList");
const Key kSolver("Solver");

bool IsOfThisProduct(Feature& analysisCase) {
  VLMUnicodeString solver;
  return Succeeded(ReadAttribute(analysisCase, kSolver, solver)) && solver.View() == "Halvex";
}

bool Concerns(std::string_view lateTypes, std::string_view type) {
  while (!lateTypes.empty()) {
    const std::size_t end = lateTypes.find(' ');
    const std::string_view word = lateTypes.substr(0, end);
    if (word.ends_with('*') ? type.starts_with(word.substr(0, word.size() - 1)) : type == word) return true;
    lateTypes = end == std::string_view::npos ? std::string_view() : lateTypes.substr(end + 1);
  }
  return false;
}

std::vector<const ConformityRule*> RulesFor(std::string_view type) {
  std::vector<const ConformityRule*> rules;
  for (const std::span<const ConformityRule> subject : {ConditionRules(), InteractionRules(), ModelRules()}) {
    for (const ConformityRule& rule : subject) {
      if (Concerns(rule.lateTypes, type)) rules.push_back(&rule);
    }
  }
  return rules;
}

}  // namespace

Survey::Survey(Document& document) {
  if (Feature* const model = document.AnalysisModel()) {
    const Attribute* const list = document.FindAttribute(*model, kFeatList.Id());
    canRegister_ = list != nullptr && list->value.Kind() == ValueKind::kList;
    for (const Feature* const feature : LinkedFeatures(*model, kFeatList)) registered_.insert(feature);
  }
  bool anyCase = false;
  bool otherCase = false;
  for (Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    if (!IsOfKind(*feature, kind::kAnalysisCase)) continue;
    anyCase = true;
    otherCase = otherCase || !IsOfThisProduct(*feature);
  }
  casesOfThisProductOnly_ = anyCase && !otherCase;
}

std::vector<Finding> CheckConformity(Document& document) {
  document.DropAllDeadLinks();
  const Survey survey(document);
  std::unordered_map<const LateType*, std::vector<const ConformityRule*>> byType;
  std::vector<Finding> findings;
  for (Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    const auto [found, isNew] = byType.try_emplace(feature->type);
    if (isNew) found->second = RulesFor(feature->TypeName());
    for (const ConformityRule* const rule : found->second) {
      const Verdict verdict = rule->judge(*feature, survey);
      if (!verdict.conforms) findings.push_back({feature, rule, verdict.damage});
    }
  }
  return findings;
}

}  // namespace standalone
