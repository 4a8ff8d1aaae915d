#pragma once

#include <cstdint>
#include <map>
#include <memory>
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

/// The mesh objects of a document, and the explicit model that their user numbers stand in.
///
/// The attributes hold user numbers as runs of consecutive ones. Here those of one block of objects (the
/// elements or the nodes of one mesh part) at a time are kept one by one, so that changing them in turn takes
/// no more than one step each. They are written back as runs when another block is worked on, or when an
/// attribute of the mesh part or the document as a whole is looked at.
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
  [[nodiscard]] const Feature* PartAt(std::int64_t place) const;
  /// Whether the mesh object has an explicit counterpart; false for a place below 0.
  bool HasCounterpart(std::int64_t place);

  // For a place with a counterpart.
  [[nodiscard]] std::int32_t NumberAt(std::int64_t place);
  void SetNumberAt(std::int64_t place, std::int32_t number);

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
  [[nodiscard]] bool Holds(std::size_t block, const void* meshObject) const;
  std::int32_t& Expanded(std::int64_t place);

  std::vector<Block> blocks_;
  std::size_t objects_ = 0;  // of all blocks that stand for a mesh part as it is
  std::map<const void*, std::size_t, std::less<>> byAddress_;
  std::unordered_map<const Feature*, std::size_t> elementsOf_;
  std::unordered_map<const Feature*, std::size_t> nodesOf_;
  mutable std::size_t lastFound_ = kNoBlock;  // mesh objects are mostly asked about in order

  std::size_t expandedBlock_ = kNoBlock;
  std::vector<std::int32_t> numbers_;  // of the expanded block; -1 for no counterpart
  bool isChanged_ = false;
};

}  // namespace standalone
