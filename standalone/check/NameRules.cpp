// Names that mention the product, as the default texts have them: those of other languages cannot be told.

#include <algorithm>
#include <cstring>

#include "analysis/Frame.h"
#include "check/Rules.h"

namespace standalone {
namespace {

const Key kPropertySet("HVXHalvexPropertySetLT");

constexpr std::string_view kWord = "Halvex";
constexpr std::string_view kWordInCapitals = "HALVEX";

// All old names hold the word in one of its spellings. Few names do, so nothing else is looked for in most.
bool Holds(std::string_view name, std::string_view word) {
  while (name.size() >= word.size()) {
    const auto* const begin =
        static_cast<const char*>(std::memchr(name.data(), word.front(), name.size() - word.size() + 1));
    if (begin == nullptr) return false;
    name.remove_prefix(static_cast<std::size_t>(begin - name.data()));
    if (name.starts_with(word)) return true;
    name.remove_prefix(1);
  }
  return false;
}

bool HoldsOneOf(std::string_view name, std::span<const std::string_view> texts) {
  return std::ranges::any_of(texts, [name](std::string_view text) { return name.find(text) != name.npos; });
}

Verdict ProductInCapitals(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(Holds(feature.externalName, kWordInCapitals) && CaseAbove(feature) != nullptr);
}

Verdict ProductName(Feature& feature, const Survey& /*survey*/) {
  constexpr std::string_view kCases[] = {"Halvex-Structural-Case", "Halvex-Explicit-Dynamics-Case",
                                         "Halvex-Thermal-Case"};
  constexpr std::string_view kBeneathCases[] = {"Halvex Simulation History", "Halvex Jobs",
                                                "Halvex Display Groups", "Halvex-Analysis-Case Solution",
                                                "Halvex Solution Sensors"};
  static const Key analysisCase("AnalysisCase");
  const std::string_view name = feature.externalName;
  if (!Holds(name, kWord)) return Conforms();
  if (check::IsA(feature, analysisCase) && HoldsOneOf(name, kCases)) return Outdated();
  if (check::IsA(feature, kPropertySet)) return OutdatedIf(name.find("Halvex Properties") != name.npos);
  const bool isBeneath = feature.father != nullptr && CaseAbove(*feature.father) != nullptr;
  return OutdatedIf(isBeneath && HoldsOneOf(name, kBeneathCases));
}

// A property set is renamed by itself, all else along with the case that it stands beneath.
Feature* RenamedWith(Feature& feature) {
  return check::IsA(feature, kPropertySet) ? &feature : CaseAbove(feature);
}

constexpr ConformityRule kRules[] = {
    {{},
     "UpgradeAnalysisCaseExternalName",
     "its name holds the product word in capitals",
     ProductInCapitals,
     check::VisitCase},
    {{},
     "UpgradeFeaturesExternalName",
     "its name mentions the product",
     ProductName,
     RenamedWith,
     "Choose the language that the name is in (--language)"},
};

}  // namespace

std::span<const ConformityRule> NameRules() {
  return kRules;
}

}  // namespace standalone
