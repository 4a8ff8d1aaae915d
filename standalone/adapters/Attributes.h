#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "base/VLMResult.h"
#include "base/VLMUnicodeString.h"
#include "model/Document.h"

namespace standalone {

/// An attribute key, interned once; adapters hold theirs as constants of their source file.
class Key {
 public:
  explicit Key(std::string_view text) : Key(NameTable::Intern(text)) {}
  /// Holds as long as the name is there.
  explicit Key(NameId id) : id_(id), text_(NameTable::Text(id)) {}

  [[nodiscard]] NameId Id() const { return id_; }
  [[nodiscard]] std::string_view Text() const { return text_; }

 private:
  NameId id_;
  std::string_view text_;
};

// Reading: E_FAIL, and `value` stays, when the feature lacks the attribute or it holds another type of value
// or a number out of range. An integer can be read as a real, as a flag (0 or 1) or as a float.
HRESULT ReadAttribute(Feature& feature, const Key& key, VLMUnicodeString& value);
HRESULT ReadAttribute(Feature& feature, const Key& key, std::int32_t& value);
HRESULT ReadAttribute(Feature& feature, const Key& key, std::int64_t& value);
HRESULT ReadAttribute(Feature& feature, const Key& key, double& value);
HRESULT ReadAttribute(Feature& feature, const Key& key, float& value);
HRESULT ReadAttribute(Feature& feature, const Key& key, unsigned char& value);
HRESULT ReadAttribute(Feature& feature, const Key& key, bool& value);
HRESULT ReadAttribute(Feature& feature, const Key& key, std::vector<double>& values);

/// Whether the feature has the attribute, and not as a link that holds nothing.
bool HasValue(Feature& feature, const Key& key);

// Writing adds the attribute where the feature lacks it. E_FAIL for a real that is not finite, since no
// document could hold it. Flags are written as booleans.
HRESULT WriteAttribute(Feature& feature, const Key& key, const VLMUnicodeString& value);
HRESULT WriteAttribute(Feature& feature, const Key& key, std::int32_t value);
HRESULT WriteAttribute(Feature& feature, const Key& key, std::int64_t value);
HRESULT WriteAttribute(Feature& feature, const Key& key, double value);
HRESULT WriteAttribute(Feature& feature, const Key& key,
                       float value) = delete;  // would be stored less exactly
HRESULT WriteAttribute(Feature& feature, const Key& key, unsigned char value);
HRESULT WriteAttribute(Feature& feature, const Key& key, bool value);
HRESULT WriteAttribute(Feature& feature, const Key& key, const std::vector<double>& values);

/// Writes for a setter: E_FAIL, and the value stays, where the feature has a value that `ReadAttribute`
/// cannot read as a T, so that what is damaged can still be told. A link that holds nothing is no value.
template <class T>
HRESULT ReplaceAttribute(Feature& feature, const Key& key, const T& value) {
  T current{};
  if (HasValue(feature, key) && Failed(ReadAttribute(feature, key, current))) return E_FAIL;
  return WriteAttribute(feature, key, value);
}
/// The same for a link, which replaces nothing but a link.
HRESULT ReplaceLink(Feature& feature, const Key& key, Feature* target);

/// The feature that a link attribute holds; null without one.
Feature* LinkedFeature(Feature& feature, const Key& key);
/// The features that a list attribute holds links to, in order; empty without the attribute.
std::vector<Feature*> LinkedFeatures(Feature& feature, const Key& key);

/// The same, with null for an entry that holds nothing: for lists whose entries belong to those of others.
std::vector<Feature*> LinkEntries(Feature& feature, const Key& key);

/// The entry of such a list at `position`, from 1; null beyond its end and without a list. It stays until the
/// list is changed.
const Value* EntryAt(Feature& feature, const Key& key, std::size_t position);
/// How many entries such a list has.
std::size_t CountEntries(Feature& feature, const Key& key);
/// The first feature, in order, that the list holds a link to and that `isWanted`; null without one.
/// It must not change the list.
Feature* FindLinked(Feature& feature, const Key& key, const std::function<bool(Feature&)>& isWanted);
/// Whether the list holds a link to `target`.
bool HoldsLink(Feature& feature, const Key& key, const Feature& target);

/// Whether a list of links can be kept under the key: not where a value of another kind stands.
bool CanHoldList(Feature& feature, const Key& key);
/// Enters a link in the list, which is made where there is none: at `position` (from 1), or at the end for
/// any other. Whatever else the list holds stays. To be called only where it can be held.
void InsertLink(Feature& feature, const Key& key, Feature& target, int position = -1);
/// Takes every link to `target` out of the list. Whatever else it holds stays.
void DropLink(Feature& feature, const Key& key, const Feature& target);

void WriteLink(Feature& feature, const Key& key, Feature* target);
void WriteLinks(Feature& feature, const Key& key, const std::vector<Feature*>& targets);

}  // namespace standalone
