#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "adapters/Attributes.h"
#include "analysis/VLMAnalysisExplicitModel.h"
#include "analysis/VLMIMSHMeshPart.h"

// Mesh objects are told apart by their addresses and hold nothing.
class VLMMSHElement {};
class VLMMSHNode {};

namespace standalone {

extern const Key kElementCount;
extern const Key kNodeCount;

/// The most elements and nodes that the mesh parts of a document may have in all, since each is worked on by
/// itself. A few bytes of a document can announce any number of them.
inline constexpr std::int32_t kMostMeshObjects = 1 << 27;

/// Stands, in the runs of a mesh part, where a mesh object has no explicit counterpart, and so no number.
inline constexpr std::int32_t kNoCounterpart = -1;

/// What a document with more of them throws.
class TooManyMeshObjects : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The mesh objects of a document, and the explicit model that their user numbers stand in.
///
/// The attributes hold user numbers as runs of consecutive ones. Here those of one block of objects (the
/// elements or the nodes of one mesh part) at a time are kept one by one, so that changing them in turn takes
/// no more than one step each. They are written back as runs when another block is worked on, when an
/// attribute of the mesh part or the document as a whole is looked at, or when the mesh part is removed.
class MeshNumbers final : public DocumentCompanion, public VLMAnalysisExplicitModel {
 public:
  /// The document's own; made by the first call.
  static MeshNumbers& Of(Document& document);

  /// The mesh part's elements or nodes, of which it has `count`: the first, which the others follow. Their
  /// addresses stay the same until the count changes. Throws `std::runtime_error` when all mesh parts
  /// together have more than `kMostMeshObjects`.
  VLMMSHElement* Elements(Feature& part, std::size_t count) {
    return static_cast<VLMMSHElement*>(Objects<VLMMSHElement>(part, kElements, count));
  }
  VLMMSHNode* Nodes(Feature& part, std::size_t count) {
    return static_cast<VLMMSHNode*>(Objects<VLMMSHNode>(part, kNodes, count));
  }

  /// The number by which the model knows a mesh object; below 0 for an object of no mesh part here.
  [[nodiscard]] std::int64_t PlaceOf(const void* meshObject) const;
  /// The mesh part that the place belongs to; null for a place below 0.
  [[nodiscard]] const Feature* PartAt(std::int64_t place) const {
    return place < 0 ? nullptr : blocks_[BlockAt(place)].part;
  }
  /// The user number of the mesh object's explicit counterpart; null when it has none, or for a place
  /// below 0. It stays there until the next call.
  [[nodiscard]] const std::int32_t* NumberAt(std::int64_t place) { return StoredNumber(place); }
  /// False, and nothing changes, where that gives null.
  [[nodiscard]] bool SetNumberAt(std::int64_t place, std::int32_t number);

  // The same for objects of the block that is worked on, which are most: there is nothing to be found out.
  /// Gives the place of the object's counterpart. False when it has none, or is another block's.
  [[nodiscard]] bool FindAtHand(const void* meshObject, std::int64_t& place) const {
    const std::uintptr_t index = reinterpret_cast<std::uintptr_t>(meshObject) - atHand_.firstObject;
    if (index >= atHand_.count || numbers_[index] == kNoCounterpart) return false;
    place = atHand_.firstPlace + static_cast<std::int64_t>(index);
    return true;
  }
  [[nodiscard]] bool IsAtHand(std::int64_t place) const {
    const std::size_t index = atHand_.IndexOf(place);
    return index < atHand_.count && numbers_[index] != kNoCounterpart;
  }
  /// For a place that is at hand.
  void SetNumberAtHand(std::int64_t place, std::int32_t number) {
    std::int32_t& stored = numbers_[atHand_.IndexOf(place)];
    if (stored != number) isChanged_ = true;
    stored = number;
  }

  // DocumentCompanion
  void WriteBack() override;

 private:
  enum Kind : std::uint8_t { kElements, kNodes };
  struct Block {
    Feature* part;
    Kind kind;
    std::size_t count;
    std::shared_ptr<void> objects;  // an array of mesh objects, never touched
  };
  static constexpr std::size_t kNoBlock = static_cast<std::size_t>(-1);

  // A place: the block's number and the object's within it.
  static constexpr int kIndexBits = 32;
  static std::int64_t FirstPlace(std::size_t block) { return static_cast<std::int64_t>(block) << kIndexBits; }
  static std::size_t BlockAt(std::int64_t place) { return static_cast<std::size_t>(place >> kIndexBits); }

  // The block whose numbers are kept one by one.
  struct AtHand {
    std::uintptr_t firstObject = 0;
    std::size_t count = 0;  // 0 for no block
    std::int64_t firstPlace = 0;
    // Not below `count` for a place of another block, or below 0.
    [[nodiscard]] std::size_t IndexOf(std::int64_t place) const {
      return static_cast<std::size_t>(place) - static_cast<std::size_t>(firstPlace);
    }
  };

  template <class MeshObject>
  void* Objects(Feature& part, Kind kind, std::size_t count) {
    std::size_t& known = kind == kElements ? elementsOf_.try_emplace(&part, kNoBlock).first->second
                                           : nodesOf_.try_emplace(&part, kNoBlock).first->second;
    if (known == kNoBlock || blocks_[known].count != count) {
      Count(part, known == kNoBlock ? 0 : blocks_[known].count, count);
      known = AddBlock(part, kind, count, std::shared_ptr<MeshObject[]>(new MeshObject[count + 1]));
    }
    return blocks_[known].objects.get();
  }
  void Count(const Feature& part, std::size_t before, std::size_t now);
  std::size_t AddBlock(Feature& part, Kind kind, std::size_t count, std::shared_ptr<void> objects);
  std::int32_t* StoredNumber(std::int64_t place);
  void TakeUp(std::size_t block);

  std::vector<Block> blocks_;
  std::size_t objects_ = 0;  // of all blocks that stand for a mesh part as it is
  std::map<const void*, std::size_t, std::less<>> byAddress_;
  std::unordered_map<const Feature*, std::size_t> elementsOf_;
  std::unordered_map<const Feature*, std::size_t> nodesOf_;

  AtHand atHand_;
  std::vector<std::int32_t> numbers_;  // of the block at hand, or `kNoCounterpart`
  bool isChanged_ = false;
};

}  // namespace standalone
