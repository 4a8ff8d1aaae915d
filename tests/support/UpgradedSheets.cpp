#include "support/UpgradedSheets.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace testing_support {

using namespace standalone;
using sheet::Difference;
using sheet::Fact;
using sheet::Meaning;
using sheet::SheetComparison;

namespace {

std::string TextOf(const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kString:
      return std::string(value.AsString());
    case ValueKind::kInteger:
      return fmt::format("{}", value.AsInteger());
    case ValueKind::kReal:
      return fmt::format("{}", value.AsReal());
    case ValueKind::kBoolean:
      return value.AsBoolean() ? "yes" : "no";
    case ValueKind::kLink:
      return value.Target() == nullptr ? "nothing" : sheet::NameFor(*value.Target());
    case ValueKind::kList:
      break;
  }
  std::string text = "[";
  for (const Value& entry : value.Entries()) text += TextOf(entry) + ' ';
  return text + ']';
}

}  // namespace

std::string TextOf(const Difference& difference) {
  std::string text = fmt::format("{} {}:", difference.About().kind->name, difference.About().name);
  if (difference.quantity == nullptr) return text + (difference.after == nullptr ? " lost" : " new");
  const auto append = [&text](const std::vector<Fact>& facts) {
    for (const Fact& fact : facts) {
      text += fact.standing == sheet::Standing::kNotSet ? " not set" : ' ' + TextOf(fact.value);
      if (fact.index != 0 && !fact.quantity->isList) text += fmt::format("@{}", fact.index);
    }
    if (facts.empty()) text += " none";
  };
  text += fmt::format(" {}", difference.quantity->name);
  append(difference.lost);
  text += " ->";
  append(difference.gained);
  return text;
}

std::vector<std::string> Unaccounted(const SheetComparison& comparison) {
  std::vector<std::string> texts;
  for (const Difference& difference : comparison.differences) {
    if (difference.meaning == Meaning::kUnaccounted) texts.push_back(TextOf(difference));
  }
  return texts;
}

std::vector<std::string> Unaccounted(const Compared& compared) {
  return Unaccounted(compared.comparison);
}

Compared Upgraded::Compare() const {
  Compared compared{sheet::ReadSheet(*old.Get()), sheet::ReadSheet(*current.Get()), {}};
  compared.comparison = Compare(compared.before, compared.after);
  return compared;
}

std::string UpgradedSheetTest::Read(const std::string& file) {
  std::ifstream stream(std::string(HVX_SOURCE_DIR "/") + file);
  std::string header;
  std::getline(stream, header);
  std::ostringstream lines;
  lines << stream.rdbuf();
  return lines.str();
}

Upgraded UpgradedSheetTest::Upgrade(const std::string& lines, std::size_t identifiers) {
  Upgraded upgraded{DocumentOf(lines), DocumentOf(lines), {}};
  const std::vector<std::string> pending = manager_.Pending(*upgraded.current.Get());
  std::vector<std::string> chosen = pending;
  chosen.resize(std::min(pending.size(), identifiers));
  for (const VersionManager::Needed& needed : manager_.NeededBy(chosen, pending))
    chosen.push_back(needed.identifier);
  upgraded.run = manager_.Run(upgraded.current, chosen);
  upgraded.current->DropAllDeadLinks();
  return upgraded;
}

}  // namespace testing_support
