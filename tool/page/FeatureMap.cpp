#include "page/FeatureMap.h"

#include <algorithm>
#include <unordered_set>

#include "page/JsonParts.h"
#include "page/ValueText.h"

namespace tool::page {

void FeatureMap::AddAll(std::string_view list, char mark) {
  ForEachEntry(list, [&](simdjson::dom::element feature, std::string_view entry) {
    const auto [type, isNew] = typePlaces_.try_emplace(std::string(TextIn(feature, "type")), types_.size());
    if (isNew) types_.push_back(type->first);
    features_[IntegerIn(feature, "id")] = {
        .entry = entry, .father = LinkIn(feature, "father"), .type = type->second, .mark = mark};
  });
}

std::string FeatureMap::NameIn(std::string_view entry) {
  simdjson::dom::parser parser;
  const simdjson::dom::element feature = parser.parse(entry.data(), entry.size()).value();
  const std::string_view alias = TextIn(feature, "alias");
  return std::string(alias.empty() ? TextIn(feature, "name") : alias);
}

std::string FeatureMap::LabelOf(std::int64_t id) const {
  const auto found = features_.find(id);
  if (found == features_.end()) return fmt::format("#{}", id);
  const std::string name = NameIn(found->second.entry);
  const std::string& type = types_[found->second.type];
  return name.empty() ? fmt::format("{} #{}", type, id) : fmt::format("{} ({})", name, type);
}

std::string FeatureMap::TypeOf(std::int64_t id) const {
  const auto found = features_.find(id);
  return found == features_.end() ? std::string() : types_[found->second.type];
}

Tree FeatureMap::MakeTree(std::size_t most) const {
  // Whom to show beneath whom; -1 stands above those at the top. A record that was changed by hand may let
  // features stand beneath each other in a circle: such are not reached from the top, and left out.
  std::unordered_map<std::int64_t, std::vector<std::int64_t>> sons;
  std::unordered_set<std::int64_t> shown;
  for (const auto& [marked, how] : features_) {
    if (how.mark == ' ') continue;
    for (std::int64_t id = marked; shown.insert(id).second;) {
      const std::int64_t father = features_.at(id).father;
      const bool isTop = !features_.contains(father);
      sons[isTop ? -1 : father].push_back(id);
      if (isTop) break;
      id = father;
    }
  }
  Tree tree{.count = shown.size(), .nodes = {}};
  std::vector<std::pair<std::int64_t, std::uint32_t>> open;  // the next one last
  const auto openSonsOf = [&](std::int64_t id, std::uint32_t depth) {
    const auto found = sons.find(id);
    if (found == sons.end()) return;
    std::ranges::sort(found->second, std::greater<>());
    for (const std::int64_t son : found->second) open.emplace_back(son, depth);
  };
  openSonsOf(-1, 0);
  while (!open.empty() && tree.nodes.size() < most) {
    const auto [id, depth] = open.back();
    open.pop_back();
    const Known& known = features_.at(id);
    tree.nodes.push_back({id, depth, known.mark, types_[known.type], NameIn(known.entry)});
    openSonsOf(id, depth + 1);
  }
  return tree;
}

}  // namespace tool::page
