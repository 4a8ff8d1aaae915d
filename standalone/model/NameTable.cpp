#include "model/NameTable.h"

#include <deque>
#include <string>
#include <unordered_map>

#include "model/KeyedHash.h"

namespace standalone {
namespace {

struct Names {
  std::deque<std::string> texts{std::string()};  // a deque keeps its elements where they are
  std::unordered_map<std::string_view, NameId, KeyedHash> ids;
};

Names& All() {
  static Names names;
  return names;
}

}  // namespace

NameId NameTable::Intern(std::string_view name) {
  if (const NameId known = Find(name); known != kNoName || name.empty()) return known;
  Names& names = All();
  const auto id = static_cast<NameId>(names.texts.size());
  names.texts.emplace_back(name);
  names.ids.emplace(names.texts.back(), id);
  return id;
}

NameId NameTable::Find(std::string_view name) {
  const auto& ids = All().ids;
  const auto found = ids.find(name);
  return found == ids.end() ? kNoName : found->second;
}

std::string_view NameTable::Text(NameId id) {
  return All().texts[id];
}

}  // namespace standalone
