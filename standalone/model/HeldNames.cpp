#include "model/HeldNames.h"

namespace standalone {

HeldNames::~HeldNames() {
  for (const LateType* const type : types_) LateType::Release(*type);
  for (const auto& [text, name] : names_) NameTable::Release(name);
}

NameId HeldNames::Name(std::string_view text) {
  if (!names_.empty()) {
    if (const auto known = names_.find(text); known != names_.end()) return known->second;
  }
  return Note(NameTable::Hold(text));
}

const LateType& HeldNames::Type(std::string_view name) {
  const LateType::Held held = LateType::Hold(name);
  if (!held.isCounted) return held.type;
  try {
    if (types_.insert(&held.type).second) return held.type;
  } catch (...) {
    LateType::Release(held.type);
    throw;
  }
  LateType::Release(held.type);  // was counted before
  return held.type;
}

void HeldNames::HoldUnseen(NameId name) {
  static_cast<void>(Note(NameTable::Hold(name)));
}

void HeldNames::HoldUnseen(const LateType& type) {
  if (!types_.contains(&type)) static_cast<void>(Type(type.Name()));
}

NameId HeldNames::Note(NameTable::Held held) {
  try {
    if (held.id >= areSeen_.size()) areSeen_.resize(held.id + std::size_t{1});
    if (held.isCounted) names_.emplace(NameTable::Text(held.id), held.id);
  } catch (...) {
    if (held.isCounted) NameTable::Release(held.id);
    throw;
  }
  areSeen_[held.id] = true;
  return held.id;
}

}  // namespace standalone
