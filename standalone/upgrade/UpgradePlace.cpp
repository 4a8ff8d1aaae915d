#include "upgrade/UpgradePlace.h"

#include <fmt/format.h>

#include <algorithm>

#include "upgrade/BuiltInLibrary.h"

namespace standalone {
namespace {

using Binding = KnownUpgrade::Binding;

std::string WordsOf(const HVXUpgradeLibrary& library) {
  const std::string_view version = VersionOf(library);
  return fmt::format("{}{}{}", library.name, version.empty() ? "" : " ", version);
}

}  // namespace

Answerable AnswerableFor(const KnownUpgrade& upgrade, std::string_view lateType,
                         const HVXUpgradeClass* upgradeClass, const HVXUpgradeBinding* row) {
  const auto found = std::ranges::find_if(upgrade.bindings, [&](const Binding& bound) {
    if (row != nullptr) return bound.binding == row;
    if (upgradeClass != nullptr) return bound.upgradeClass == upgradeClass;
    return std::ranges::find(bound.upgradeClass->lateTypes, lateType) != bound.upgradeClass->lateTypes.end();
  });
  if (found == upgrade.bindings.end()) return {nullptr, upgrade.library};
  return {found->upgradeClass, found->library};
}

Answerable AnswerableAt(const UpgradePlace& place) {
  switch (place.kind) {
    case UpgradeWork::Kind::kVisit:
      return AnswerableFor(*place.upgrade, place.lateType, place.upgradeClass);
    case UpgradeWork::Kind::kConversion:
      return {nullptr, place.upgrade->documentLibrary};
    case UpgradeWork::Kind::kPropagation:
    case UpgradeWork::Kind::kDeadLinks:
      break;
  }
  return {nullptr, place.upgrade->library};
}

std::string WordsOf(const Answerable& answerable) {
  std::string library = WordsOf(*answerable.library);
  if (answerable.upgradeClass == nullptr) return library;
  return fmt::format("{} of {}", answerable.upgradeClass->name, library);
}

std::string_view VersionOf(const HVXUpgradeLibrary& library) {
  return library.version == nullptr ? std::string_view() : library.version;
}

std::string WordsOf(const UpgradePlace& place) {
  std::string where = "the whole document";
  if (place.feature != 0) {
    const std::string name = place.name.empty() ? "" : fmt::format(" \"{}\"", place.name);
    where = fmt::format("{}{} (id {})", place.lateType, name, place.feature);
  }
  const std::string_view how =
      place.kind == UpgradeWork::Kind::kPropagation ? ", propagated to later steps" : "";
  return fmt::format("{}{}, {} ({})", where, how, place.upgrade->identifier, WordsOf(AnswerableAt(place)));
}

std::string AdviceAt(const UpgradePlace& place) {
  const Answerable answerable = AnswerableAt(place);
  const std::string_view what = place.feature == 0 ? "document" : "feature";
  if (IsBuiltIn(answerable.library->name))
    return fmt::format("Look at the {}; if it is sound, report that with the document", what);
  return fmt::format("Look at the {}; if it is sound, give the document to those who make {}", what,
                     WordsOf(*answerable.library));
}

}  // namespace standalone
