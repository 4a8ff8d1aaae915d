#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>

#include "model/Feature.h"
#include "model/KeyedHash.h"

namespace standalone {

/// Where the attributes of features stand that have too many to be looked through each time. Most have a few.
class AttributeIndex {
 public:
  static constexpr std::uint32_t kFew = 48;

  /// The attribute of that key among `feature`'s, of which there are more than a few; null without one. The
  /// first question about a feature walks over them, later ones cost next to nothing.
  Attribute* Find(Feature& feature, NameId key);
  /// The feature got another last attribute.
  void NoteAdded(const Feature& feature);
  /// The feature lost attributes.
  void Forget(const Feature& feature) { byFeature_.erase(&feature); }

 private:
  using Places = std::unordered_map<NameId, std::uint32_t, KeyedHash>;

  std::unordered_map<const Feature*, Places> byFeature_;
};

/// The same for attributes that stay as they are while they are looked at.
class AttributeLookUp {
 public:
  explicit AttributeLookUp(std::span<const Attribute> attributes) : attributes_(attributes) {}

  /// The attribute of that key, which may stand at `likely`; null without one.
  [[nodiscard]] const Attribute* Find(NameId key, std::size_t likely = 0);

 private:
  std::span<const Attribute> attributes_;
  std::unordered_map<NameId, std::uint32_t, KeyedHash> places_;  // of many, as soon as one is asked for
};

}  // namespace standalone
