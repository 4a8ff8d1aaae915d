#include "model/NameTable.h"

#include <deque>
#include <string>
#include <unordered_map>

#include "model/KeyedHash.h"
#include "model/RecentTexts.h"

namespace standalone {
namespace {

struct Name {
  std::string_view text;
  NameId id = kNoName;
};

struct Names {
  std::deque<std::string> texts{std::string()};  // a deque keeps its elements where they are
  std::unordered_map<std::string_view, NameId, KeyedHash> ids;
  RecentTexts<Name> recent;
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
  if (name.empty()) return kNoName;
  Names& names = All();
  Name& recent = names.recent.PlaceOf(name);
  if (recent.text == name) return recent.id;
  const auto found = names.ids.find(name);
  if (found == names.ids.end()) return kNoName;
  recent = {found->first, found->second};
  return found->second;
}

std::string_view NameTable::Text(NameId id) {
  return All().texts[id];
}

}  // namespace standalone
