#include "compare/DroppedValues.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <optional>
#include <unordered_map>

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
    return std::hash<std::uint64_t>()(leaf.number) ^ std::hash<std::string_view>()(leaf.text) ^
           std::hash<const void*>()(leaf.place) ^ leaf.key;
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

const Attribute* FindIn(const FeatureState& state, NameId key) {
  const auto found = std::ranges::find(state.Attributes(), key, &Attribute::key);
  return found == state.Attributes().end() ? nullptr : &*found;
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

bool Holds(const FeatureState& state, NameId key, const Leaf& wanted) {
  const Attribute* const attribute = FindIn(state, key);
  bool holds = false;
  if (attribute != nullptr)
    VisitLeaves(attribute->value, [&](const Leaf& leaf, const Value&) { holds = holds || leaf == wanted; });
  return holds;
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
      for (const Attribute& attribute : before->Attributes()) {
        DroppedValues found = Of(*feature, *before, attribute);
        if (!found.values.empty()) dropped.push_back(std::move(found));
      }
    }
    return dropped;
  }

 private:
  void NoteWritten(const Feature& feature) {
    const FeatureState* const before = document_.Before(feature);
    for (const Attribute& attribute : feature.Attributes()) {
      const Attribute* const old = before == nullptr ? nullptr : FindIn(*before, attribute.key);
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

  DroppedValues Of(const Feature& feature, const FeatureState& before, const Attribute& attribute) {
    const Attribute* const now = feature.removed ? nullptr : FindIn(feature, attribute.key);
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
  static bool FamilyHolds(const Feature& feature, const FeatureState& before, NameId key, const Leaf& leaf) {
    if (!feature.removed || before.father == nullptr || before.father->removed) return false;
    if (Holds(*before.father, key, leaf)) return true;
    const Feature* brother = before.father->firstSon;
    const auto standsFor = [&](const Feature& other) {
      return other.type == before.type && KindOfName(other.name) == KindOfName(before.name) &&
             Holds(other, key, leaf);
    };
    while (brother != nullptr && !standsFor(*brother)) brother = brother->nextSibling;
    return brother != nullptr;
  }

  const Document& document_;
  Leaves written_;
};

}  // namespace

std::vector<DroppedValues> FindDroppedValues(const Document& document) {
  return Search(document).Run();
}

}  // namespace standalone
