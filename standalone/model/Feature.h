#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "model/FeatureId.h"
#include "model/LateTypes.h"
#include "model/Value.h"
#include "modeler/VLMISpecObject.h"

namespace standalone {

class Document;

/// What a feature is at one moment. A plain value, so that the state before a change can be kept.
struct FeatureState {
  FeatureId id = 0;
  Document* document = nullptr;
  const LateType* type = nullptr;
  std::string_view name;          ///< The internal name.
  std::string_view externalName;  ///< The alias: the name shown to the user.
  Feature* father = nullptr;
  Feature* container = nullptr;

  // The sons, in order, and the document's features, in order.
  Feature* firstSon = nullptr;
  Feature* lastSon = nullptr;
  Feature* previousSibling = nullptr;
  Feature* nextSibling = nullptr;
  Feature* previous = nullptr;
  Feature* next = nullptr;

  Attribute* attributes = nullptr;
  /// Who links here: null for nobody, the one feature, or `Document`'s mark for several.
  Feature* referrer = nullptr;
  /// Where the journal holds the state before the first change; 0 when unchanged.
  std::uint32_t journalEntry = 0;
  NameId physicalType = kNoName;
  std::uint32_t attributeCount = 0;
  std::uint32_t attributeCapacity : 27 = 0;  // the longest line has room for fewer
  bool upToDate : 1 = true;
  bool removed : 1 = false;
  /// Made after the document was read.
  bool created : 1 = false;
  /// Something that it links to was removed since its links were last looked at.
  bool hasDeadLinks : 1 = false;
  /// The document's companion keeps values that the attributes do not show yet.
  bool isBehind : 1 = false;
  /// Was handed over to be propagated, and was not taken yet.
  bool awaitsPropagation : 1 = false;

  void HoldAttributes(Attribute* room, std::uint32_t count, std::uint32_t capacity) {
    attributes = room;
    attributeCount = count;
    attributeCapacity = capacity & ((1U << 27U) - 1);
  }
  [[nodiscard]] std::span<Attribute> Attributes() const { return {attributes, attributeCount}; }
  [[nodiscard]] std::string_view TypeName() const { return type->Name(); }
};

/// One stored object of a document. Lives in the document's arena until the document goes, also when it is
/// removed; read it freely, change it through `Document` only.
///
/// A feature is its own `VLMISpecObject`, so that the handles which everything passes around cost nothing to
/// make; its other interfaces are adapters and ties, made when they are asked for. A handle on a feature
/// holds its document.
class Feature final : public VLMISpecObject, public FeatureState {
 public:
  void AddRef() noexcept override;
  void Release() noexcept override;
  HRESULT QueryInterface(const VLMInterfaceId& interface, void** out) override;
  [[nodiscard]] const void* Identity() const noexcept override { return this; }

  VLMUnicodeString GetLateType() override;
  VLMUnicodeString GetName() override;
  HRESULT SetUpToDate(int flag) override;
  HRESULT GetFather(VLMISpecObject_var& found) override;
  HRESULT GetContainer(VLMIContainer_var& found) override;
  HRESULT RemoveSon(const VLMISpecObject_var& son, int option) override;
  int IsReadyInDomain(const VLMUnicodeString& domain) override;

  /// The container that the feature stands in. One that was removed is gone, though `container` may still
  /// tell it.
  [[nodiscard]] Feature* Container() const {
    return container == nullptr || container->removed ? nullptr : container;
  }
};

/// Walks over all that stands beneath `top`, depth first, sons in order: what follows `current`, which is
/// `top` itself to begin with; null at the end.
[[nodiscard]] const Feature* NextBeneath(const Feature& top, const Feature& current);
[[nodiscard]] inline Feature* NextBeneath(Feature& top, Feature& current) {
  return const_cast<Feature*>(NextBeneath(std::as_const(top), std::as_const(current)));
}

}  // namespace standalone
