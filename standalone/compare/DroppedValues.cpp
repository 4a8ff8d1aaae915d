#include "compare/DroppedValues.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "model/AttributeIndex.h"
#include "model/KeyedHash.h"

namespace standalone {
namespace {

// A number or text as something to look up. Numbers by the bits of their single-precision form: values are
// moved through single precision on the way.
struct Leaf {
  std::uint64_t number = 0;
  std::string_view text;
  // For integers: what they were written near to, or what of which kind of feature they were written to.
  const void* place = nullptr;
  NameId key = kNoName;

  friend bool operator==(const Leaf&, const Leaf&) = default;
};

struct HashOfLeaf {
  std::size_t operator()(const Leaf& leaf) const {
    return KeyedHashOf(leaf.number) ^ KeyedHashOf(leaf.text) ^
           (std::hash<const void*>()(leaf.place) + leaf.key) * 0x9e3779b97f4a7c15U;
  }
};

using Leaves = std::unordered_map<Leaf, std::size_t, HashOfLeaf>;

Leaf LeafOf(double number) {
  const auto narrow = static_cast<float>(number);
  // What single precision cannot hold, or would make 0, is told by its own bits.
  if (!std::isfinite(narrow) || narrow == 0.0F) return {std::bit_cast<std::uint64_t>(number), {}};
  return {std::uint64_t{1} << 32U | std::bit_cast<std::uint32_t>(narrow), {}};
}

// Nothing for flags, links and defaults.
std::optional<Leaf> LeafOf(const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kString:
      return value.AsString().empty() ? std::nullopt : std::optional(Leaf{0, value.AsString()});
    case ValueKind::kInteger:
      return value.AsInteger() == 0 ? std::nullopt
                                    : std::optional(LeafOf(static_cast<double>(value.AsInteger())));
    case ValueKind::kReal:
      return value.AsReal() == 0.0 ? std::nullopt : std::optional(LeafOf(value.AsReal()));
    default:
      return std::nullopt;
  }
}

template <class Visit>
void VisitLeaves(const Value& value, const Visit& visit) {
  if (value.Kind() == ValueKind::kList) {
    for (const Value& entry : value.Entries()) VisitLeaves(entry, visit);
  } else if (const std::optional<Leaf> leaf = LeafOf(value)) {
    visit(*leaf, value);
  }
}

// The leaves of `to` that `from` does not have, each as often as it is missing there.
template <class Visit>
void VisitAdded(const Value* from, const Value& to, const Visit& visit) {
  Leaves known;
  if (from != nullptr) VisitLeaves(*from, [&known](const Leaf& leaf, const Value&) { ++known[leaf]; });
  VisitLeaves(to, [&](const Leaf& leaf, const Value& value) {
    const auto found = known.find(leaf);
    if (found != known.end() && found->second > 0) {
      --found->second;
    } else {
      visit(leaf, value);
    }
  });
}

bool Takes(Leaves& leaves, const Leaf& leaf) {
  const auto found = leaves.find(leaf);
  if (found == leaves.end() || found->second == 0) return false;
  --found->second;
  return true;
}

// Repetitions are told apart by a dot and a number.
std::string_view KindOfName(std::string_view name) {
  return name.substr(0, name.rfind('.'));
}

class Search {
 public:
  explicit Search(const Document& document) : document_(document) {
    for (const Feature* const feature : document.Touched()) {
      if (!feature->removed) NoteWritten(*feature);
    }
  }

  std::vector<DroppedValues> Run() {
    std::vector<DroppedValues> dropped;
    for (const Feature* const feature : document_.Touched()) {
      const FeatureState* const before = document_.Before(*feature);
      if (before == nullptr) continue;
      AttributeLookUp now(feature->removed ? std::span<const Attribute>() : feature->Attributes());
      for (const Attribute& attribute : before->Attributes()) {
        DroppedValues found = Of(*feature, *before, attribute, now.Find(attribute.key));
        if (!found.values.empty()) dropped.push_back(std::move(found));
      }
    }
    return dropped;
  }

 private:
  void NoteWritten(const Feature& feature) {
    const FeatureState* const before = document_.Before(feature);
    AttributeLookUp oldOnes(before == nullptr ? std::span<const Attribute>() : before->Attributes());
    for (const Attribute& attribute : feature.Attributes()) {
      const Attribute* const old = oldOnes.Find(attribute.key);
      VisitAdded(
          old == nullptr ? nullptr : &old->value, attribute.value,
          [&](const Leaf& leaf, const Value& value) { NoteWritten(feature, attribute.key, leaf, value); });
    }
  }

  void NoteWritten(const Feature& feature, NameId key, Leaf leaf, const Value& value) {
    if (value.Kind() != ValueKind::kInteger) ++written_[leaf];
    if (value.Kind() == ValueKind::kString) return;
    // A number that an integer became may be a real.
    ++written_[OfKind(leaf, feature, key)];
    constexpr int kLevels = 3;  // the feature, what it stands beneath, and the brothers of that
    const Feature* near = &feature;
    for (int level = 0; near != nullptr && level < kLevels; ++level, near = near->father) {
      leaf.place = near;
      ++written_[leaf];
    }
  }

  static Leaf OfKind(const Leaf& leaf, const FeatureState& feature, NameId key) {
    // Components and parameters are told apart by their names; those of others are nothing but numbered.
    const bool isNamed = feature.type->MetaClass().IsAKindOf(kind::kBasicComponent) ||
                         feature.type->MetaClass().IsAKindOf(kind::kParameter);
    return {leaf.number, isNamed ? KindOfName(feature.name) : std::string_view(), feature.type, key};
  }

  bool WasWritten(const Feature& feature, const FeatureState& before, NameId key, Leaf leaf,
                  const Value& value) {
    if (value.Kind() != ValueKind::kInteger) return Takes(written_, leaf) || TakesInRadians(value);
    if (written_.contains(OfKind(leaf, before, key))) return true;
    leaf.place = &feature;
    if (written_.contains(leaf)) return true;
    leaf.place = before.father;
    return (before.father != nullptr && written_.contains(leaf)) || TakesInRadians(value);
  }

  // `now` is the attribute as it is; null when it is gone.
  DroppedValues Of(const Feature& feature, const FeatureState& before, const Attribute& attribute,
                   const Attribute* now) {
    DroppedValues dropped{&feature, attribute.key, {}, now == nullptr ? nullptr : &now->value};
    VisitAdded(dropped.instead, attribute.value, [&](const Leaf& leaf, const Value& value) {
      const bool isOverwrittenCode = value.Kind() == ValueKind::kInteger && dropped.instead != nullptr;
      const bool stands = !isOverwrittenCode && (WasWritten(feature, before, attribute.key, leaf, value) ||
                                                 FamilyHolds(feature, before, attribute.key, leaf));
      if (!stands) dropped.values.push_back(value);
    });
    return dropped;
  }

  bool TakesInRadians(const Value& value) {
    constexpr double kDegree = std::numbers::pi / 180.0;
    if (value.Kind() == ValueKind::kString) return false;
    const double degrees =
        value.Kind() == ValueKind::kReal ? value.AsReal() : static_cast<double>(value.AsInteger());
    return Takes(written_, LeafOf(degrees * kDegree));
  }

  // Only what was removed: an overwritten value has no brother that stands for it.
  bool FamilyHolds(const Feature& feature, const FeatureState& before, NameId key, const Leaf& leaf) {
    if (!feature.removed || before.father == nullptr || before.father->removed) return false;
    const Family& family = FamilyOf(*before.father);
    return family.contains({before.father, {}, key, leaf}) ||
           family.contains({before.type, KindOfName(before.name), key, leaf});
  }

  // What a father and its sons hold. Told by the father itself, or by late type and kind of name.
  struct Held {
    const void* by = nullptr;
    std::string_view kindOfName;
    NameId key = kNoName;
    Leaf leaf;

    friend bool operator==(const Held&, const Held&) = default;
  };
  struct HashOfHeld {
    std::size_t operator()(const Held& held) const {
      return HashOfLeaf()(held.leaf) ^ (HashOfLeaf()({0, held.kindOfName, held.by, held.key}) << 1U);
    }
  };
  using Family = std::unordered_set<Held, HashOfHeld>;

  // Made once for each father: it may have lost as many sons as it has.
  const Family& FamilyOf(const Feature& father) {
    const auto [entry, isNew] = families_.try_emplace(&father);
    if (!isNew) return entry->second;
    const auto note = [&family = entry->second](const Feature& each, const void* by, std::string_view name) {
      for (const Attribute& attribute : each.Attributes()) {
        VisitLeaves(attribute.value, [&](const Leaf& leaf, const Value&) {
          family.insert({by, name, attribute.key, leaf});
        });
      }
    };
    note(father, &father, {});
    for (const Feature* son = father.firstSon; son != nullptr; son = son->nextSibling)
      note(*son, son->type, KindOfName(son->name));
    return entry->second;
  }

  const Document& document_;
  Leaves written_;
  std::unordered_map<const Feature*, Family> families_;
};

}  // namespace

std::vector<DroppedValues> FindDroppedValues(const Document& document) {
  return Search(document).Run();
}

}  // namespace standalone
