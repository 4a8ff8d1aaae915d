#include <fmt/format.h>

#include <algorithm>
#include <cctype>

#include "check/Rules.h"

namespace standalone {
namespace {

std::string Filled(std::string_view text, std::string_view keys) {
  const std::size_t place = text.find("{}");
  if (place == std::string_view::npos) return std::string(text);
  return fmt::format("{}{}{}", text.substr(0, place), keys, text.substr(place + 2));
}

// A key or name is quoted, the number of a feature is not.
std::string Quoted(std::string_view key) {
  constexpr std::string_view kNumber = "feature ";
  const std::size_t number = key.rfind(kNumber);
  if (number == 0) return std::string(key);
  if (number == std::string_view::npos || key[number - 1] != '(') return fmt::format("\"{}\"", key);
  return fmt::format("\"{}\" {}", key.substr(0, number - 2), key.substr(number - 1));
}

}  // namespace

std::string check::LowerFirst(std::string text) {
  if (!text.empty()) text.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(text.front())));
  return text;
}

// A text for each key; the remedy once for all keys of a kind.
void Tell(const std::vector<Damage>& damage, Finding& finding) {
  for (const Damage& each : damage) {
    if (!each.kind->text.empty()) {
      if (!finding.damage.empty()) finding.damage += "; ";
      finding.damage += Filled(each.kind->text, Quoted(each.key));
    }
    const std::string_view key = each.kind->place.empty() ? each.key : each.kind->place;
    if (key.empty()) continue;
    if (!finding.key.empty()) finding.key += ", ";
    finding.key += key;
  }
  for (std::size_t i = 0; i < damage.size(); ++i) {
    const DamageKind* const kind = damage[i].kind;
    const auto isOfKind = [kind](const Damage& each) { return each.kind == kind; };
    const auto begin = damage.begin() + static_cast<std::ptrdiff_t>(i);
    if (kind->remedy.empty() || std::any_of(damage.begin(), begin, isOfKind)) continue;
    std::string keys;
    for (const Damage& each : damage) {
      if (isOfKind(each)) keys += (keys.empty() ? "" : " and ") + Quoted(each.key);
    }
    const std::string remedy = Filled(kind->remedy, keys);
    finding.remedy += finding.remedy.empty() ? remedy : ", " + check::LowerFirst(remedy);
  }
}

std::string_view NameOf(FindingKind kind) {
  switch (kind) {
    case FindingKind::kPending:
      return "pending";
    case FindingKind::kLeftBehind:
      return "leftBehind";
    case FindingKind::kBeyondUpgrades:
      return "beyondUpgrades";
    case FindingKind::kUnknown:
      return "unknown";
  }
  return {};
}

std::string_view WordsFor(FindingKind kind) {
  switch (kind) {
    case FindingKind::kLeftBehind:
      return "left behind";
    case FindingKind::kBeyondUpgrades:
      return "beyond upgrades";
    default:
      return NameOf(kind);
  }
}

std::string Finding::Explanation() const {
  return damage.empty() ? std::string(reason) : fmt::format("{}: {}", reason, damage);
}

std::string Finding::NextStep() const {
  switch (kind) {
    case FindingKind::kPending:
      return remedy.empty() ? "Upgrade the document" : remedy + ", then upgrade the document";
    case FindingKind::kLeftBehind:
      return remedy.empty() ? "Upgrade the document again with --retry"
                            : remedy + ", then upgrade the document again with --retry";
    case FindingKind::kBeyondUpgrades:
      return remedy.empty() ? "Set these values of the feature again in the workbench" : remedy;
    case FindingKind::kUnknown:
      return remedy.empty() ? "Nothing needs to be done: they are kept as they are" : remedy;
  }
  return {};
}

bool Finding::NeedsPerson() const {
  return kind == FindingKind::kUnknown ? !key.empty() : kind != FindingKind::kPending;
}

}  // namespace standalone
