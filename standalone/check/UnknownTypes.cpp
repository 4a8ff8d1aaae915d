#include "check/UnknownTypes.h"

#include <fmt/format.h>

#include "base/Resemblance.h"
#include "base/VLMRegistry.h"

namespace standalone {
namespace {

// Late types resemble each other in what they begin and end with, so little may be wrong.
constexpr std::size_t kLettersPerFault = 5;

// Who misspells late types misspells a few. Comparing each with all that are known costs more than all else
// that is done for a document of nothing but unknown ones.
constexpr std::size_t kMostCompared = 1000;

bool IsKnown(const LateType& type) {
  return type.IsOfHost() || VLMRegistry::Instance().HasTies(type.MetaClass());
}

}  // namespace

std::size_t UnknownTypes::PlaceOf(Feature& feature) {
  if (IsKnown(*feature.type)) return kKnown;
  Finding finding{
      &feature, FindingKind::kUnknown, {}, "no part of this program knows the late type", {}, {}, {}, nullptr,
      0};
  std::string_view meant;
  if (findings_.size() < kMostCompared)
    meant = Resembling(feature.TypeName(), LateType::NamesOfHost(), kLettersPerFault);
  if (!meant.empty()) {
    finding.key = meant;
    finding.damage = fmt::format("did you mean \"{}\"?", meant);
    finding.remedy = fmt::format("If \"{}\" is meant, correct \"type\" of these features in the file", meant);
  }
  findings_.push_back(std::move(finding));
  return findings_.size() - 1;
}

void UnknownTypes::AppendTo(std::vector<Finding>& findings) {
  for (Finding& finding : findings_) findings.push_back(std::move(finding));
  findings_.clear();
}

}  // namespace standalone
