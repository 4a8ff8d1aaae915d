#pragma once

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "model/KeyedHash.h"
#include "model/LateTypes.h"
#include "model/NameTable.h"

namespace standalone {

/// The names and late types that a document came with, which are there as long as this is.
class HeldNames {
 public:
  HeldNames() = default;
  ~HeldNames();
  HeldNames(const HeldNames&) = delete;
  HeldNames& operator=(const HeldNames&) = delete;

  /// The number of the name; `kNoName` for the empty one.
  NameId Name(std::string_view text);
  const LateType& Type(std::string_view name);

  /// A name or late type that may be another document's comes to be this one's as well.
  void Hold(NameId name) {
    if (name >= areSeen_.size() || !areSeen_[name]) HoldUnseen(name);
  }
  void Hold(const LateType& type) {
    if (!type.IsForEver()) HoldUnseen(type);
  }

 private:
  void HoldUnseen(NameId name);
  void HoldUnseen(const LateType& type);
  NameId Note(NameTable::Held held);

  std::vector<bool> areSeen_;  // by the number of a name: it is held, or stays for ever
  std::unordered_map<std::string_view, NameId, KeyedHash> names_;
  std::unordered_set<const LateType*> types_;
};

}  // namespace standalone
