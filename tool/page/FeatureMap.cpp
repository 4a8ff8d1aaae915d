#include "page/FeatureMap.h"

#include <algorithm>
#include <unordered_set>

#include "page/ValueText.h"

namespace tool::page {

void FeatureMap::Add(simdjson::dom::element feature, char mark) {
  const std::string_view alias = TextIn(feature, "alias");
  features_[IntegerIn(feature, "id")] = {.type = std::string(TextIn(feature, "type")),
                                         .name = std::string(alias.empty() ? TextIn(feature, "name") : alias),
                                         .father = LinkIn(feature, "father"),
                                         .mark = mark};
}

std::string FeatureMap::LabelOf(std::int64_t id) const {
  const auto found = features_.find(id);
  if (found == features_.end()) return fmt::format("#{}", id);
  const Known& known = found->second;
  return known.name.empty() ? fmt::format("{} #{}", known.type, id)
                            : fmt::format("{} ({})", known.name, known.type);
}

std::string FeatureMap::NameOf(std::int64_t id) const {
  const auto found = features_.find(id);
  return found == features_.end() ? std::string() : found->second.name;
}

std::string FeatureMap::TypeOf(std::int64_t id) const {
  const auto found = features_.find(id);
  return found == features_.end() ? std::string() : found->second.type;
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
    tree.nodes.push_back({id, depth, known.mark, known.type, known.name});
    openSonsOf(id, depth + 1);
  }
  return tree;
}

}  // namespace tool::page
