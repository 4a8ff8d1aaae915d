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
    return KeyedHashOf(leaf.number) ^ (leaf.text.empty() ? 0 : KeyedHashOf(leaf.text)) ^
           (std::hash<const void*>()(leaf.place) + leaf.key) * 0x9e3779b97f4a7c15U;
  }
};

using Leaves = std::unordered_map<Leaf, std::size_t, HashOfLeaf>;

// Tells of most leaves at once that they are none of some, without a look at these: there are so many that
// each look waits for memory. What it lets through is to be looked up.
class Sieve {
 public:
  explicit Sieve(const Leaves& leaves) : bits_(std::bit_ceil(leaves.size() * kBitsPerLeaf)) {
    for (const auto& [leaf, count] : leaves) bits_[PlaceOf(leaf)] = true;
  }

  [[nodiscard]] bool LetsThrough(const Leaf& leaf) const { return bits_[PlaceOf(leaf)]; }

 private:
  static constexpr std::size_t kBitsPerLeaf = 16;

  [[nodiscard]] std::size_t PlaceOf(const Leaf& leaf) const {
    constexpr std::uint64_t kMix = 0x9e3779b97f4a7c15U;
    const auto place = reinterpret_cast<std::uintptr_t>(leaf.place);
    std::uint64_t mixed = (leaf.number * kMix) ^ place;
    mixed = (mixed ^ (mixed >> 29U) ^ leaf.key) * kMix;
    if (!leaf.text.empty()) mixed ^= std::hash<std::string_view>()(leaf.text);
    return static_cast<std::size_t>(mixed ^ (mixed >> 32U)) % bits_.size();
  }

  std::vector<bool> bits_;
};

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
  if (from != nullptr && *from == to) return;
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

// Upgrades mostly write many times more values than they take away. So those that are gone come first, with
// what could stand for them, and of those that were written only these are counted.
class Search {
 public:
  explicit Search(const Document& document) : document_(document) {
    const std::vector<Feature*>& touched = document.Touched();
    for (const Feature* const feature : touched) NoteGone(*feature);
    std::optional<Sieve> wanted;
    // A long list that was taken away leaves more to look for than was written: then that is counted whole.
    if (gone_.size() <= touched.size()) {
      for (const Gone& gone : gone_) Want(gone);
      if (written_.empty()) return;
      wanted.emplace(written_);
    }
    for (const Feature* const feature : touched) {
      if (!feature->removed) NoteWritten(*feature, wanted);
    }
  }

  std::vector<DroppedValues> Run() {
    std::vector<DroppedValues> dropped;
    for (const Gone& gone : gone_) {
      if (Stands(gone)) continue;
      const bool isOfLast = !dropped.empty() && dropped.back().feature == gone.feature &&
                            dropped.back().key == gone.attribute->key;
      if (!isOfLast) dropped.push_back({gone.feature, gone.attribute->key, {}, gone.instead});
      dropped.back().values.push_back(gone.value);
    }
    return dropped;
  }

 private:
  // A value that an attribute held and holds no longer.
  struct Gone {
    const Feature* feature;
    const Attribute* attribute;  // as it was
    const Value* instead;        // what it holds now; null when it is gone
    Value value;
  };

  static bool IsOverwrittenCode(const Gone& gone) {
    return gone.value.Kind() == ValueKind::kInteger && gone.instead != nullptr;
  }

  void NoteGone(const Feature& feature) {
    const FeatureState* const before = document_.Before(feature);
    if (before == nullptr) return;
    AttributeLookUp now(feature.removed ? std::span<const Attribute>() : feature.Attributes());
    for (const Attribute& attribute : before->Attributes()) {
      const Attribute* const current = now.Find(attribute.key);
      const Value* const instead = current == nullptr ? nullptr : &current->value;
      VisitAdded(instead, attribute.value, [&](const Leaf& /*leaf*/, const Value& value) {
        gone_.push_back({&feature, &attribute, instead, value});
      });
    }
  }

  // Has counted, from now on, whatever `WasWritten` asks for.
  void Want(const Gone& gone) {
    if (IsOverwrittenCode(gone)) return;
    const Leaf leaf = *LeafOf(gone.value);
    if (const std::optional<Leaf> radians = InRadians(gone.value)) written_[*radians];
    if (gone.value.Kind() != ValueKind::kInteger) {
      written_[leaf];
      return;
    }
    const FeatureState& before = *document_.Before(*gone.feature);
    written_[OfKind(leaf, before, gone.attribute->key)];
    written_[At(leaf, gone.feature)];
    if (before.father != nullptr) written_[At(leaf, before.father)];
  }

  // Without a sieve everything is wanted.
  void NoteWritten(const Feature& feature, const std::optional<Sieve>& wanted) {
    const FeatureState* const before = document_.Before(feature);
    AttributeLookUp oldOnes(before == nullptr ? std::span<const Attribute>() : before->Attributes());
    for (const Attribute& attribute : feature.Attributes()) {
      const Attribute* const old = oldOnes.Find(attribute.key);
      VisitAdded(old == nullptr ? nullptr : &old->value, attribute.value,
                 [&](const Leaf& leaf, const Value& value) {
                   NoteWritten(feature, attribute.key, leaf, value, wanted);
                 });
    }
  }

  void NoteWritten(const Feature& feature, NameId key, const Leaf& leaf, const Value& value,
                   const std::optional<Sieve>& wanted) {
    const auto count = [&](const Leaf& each) {
      if (!wanted) {
        ++written_[each];
      } else if (wanted->LetsThrough(each)) {
        if (const auto found = written_.find(each); found != written_.end()) ++found->second;
      }
    };
    if (value.Kind() != ValueKind::kInteger) count(leaf);
    if (value.Kind() == ValueKind::kString) return;
    // A number that an integer became may be a real.
    count(OfKind(leaf, feature, key));
    constexpr int kLevels = 3;  // the feature, what it stands beneath, and the brothers of that
    const Feature* near = &feature;
    for (int level = 0; near != nullptr && level < kLevels; ++level, near = near->father)
      count(At(leaf, near));
  }

  static Leaf At(Leaf leaf, const void* place) {
    leaf.place = place;
    return leaf;
  }

  static Leaf OfKind(const Leaf& leaf, const FeatureState& feature, NameId key) {
    // Components and parameters are told apart by their names; those of others are nothing but numbered.
    const bool isNamed = feature.type->MetaClass().IsAKindOf(kind::kBasicComponent) ||
                         feature.type->MetaClass().IsAKindOf(kind::kParameter);
    return {leaf.number, isNamed ? KindOfName(feature.name) : std::string_view(), feature.type, key};
  }

  bool Stands(const Gone& gone) {
    if (IsOverwrittenCode(gone)) return false;
    const FeatureState& before = *document_.Before(*gone.feature);
    const Leaf leaf = *LeafOf(gone.value);
    return WasWritten(gone, before, leaf) || FamilyHolds(*gone.feature, before, gone.attribute->key, leaf);
  }

  bool WasWritten(const Gone& gone, const FeatureState& before, const Leaf& leaf) {
    if (gone.value.Kind() != ValueKind::kInteger) return Takes(written_, leaf) || TakesInRadians(gone.value);
    return IsWritten(OfKind(leaf, before, gone.attribute->key)) || IsWritten(At(leaf, gone.feature)) ||
           (before.father != nullptr && IsWritten(At(leaf, before.father))) || TakesInRadians(gone.value);
  }

  [[nodiscard]] bool IsWritten(const Leaf& leaf) const {
    const auto found = written_.find(leaf);
    return found != written_.end() && found->second > 0;
  }

  static std::optional<Leaf> InRadians(const Value& value) {
    constexpr double kDegree = std::numbers::pi / 180.0;
    if (value.Kind() == ValueKind::kString) return std::nullopt;
    const double degrees =
        value.Kind() == ValueKind::kReal ? value.AsReal() : static_cast<double>(value.AsInteger());
    return LeafOf(degrees * kDegree);
  }

  bool TakesInRadians(const Value& value) {
    const std::optional<Leaf> radians = InRadians(value);
    return radians && Takes(written_, *radians);
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
  std::vector<Gone> gone_;
  Leaves written_;  // how often it was written, for what may stand for a value that is gone
  std::unordered_map<const Feature*, Family> families_;
};

}  // namespace

std::vector<DroppedValues> FindDroppedValues(const Document& document) {
  return Search(document).Run();
}

}  // namespace standalone
