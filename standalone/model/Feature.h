#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "model/LateTypes.h"
#include "model/Value.h"

namespace standalone {

class Document;

using FeatureId = std::int64_t;  ///< From 1; unique in its document and never given twice.

/// One stored object of a document. Lives in the document's arena until the document goes, also when it is
/// removed; read it freely, change it through `Document` only.
struct Feature {
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
  std::uint32_t attributeCount = 0;
  std::uint32_t attributeCapacity = 0;
  Feature* referrer =
      nullptr;  ///< Who links here: null for nobody, the one feature, or `Document`'s mark for several.
  NameId physicalType = kNoName;
  std::uint32_t journalEntry =
      0;  ///< Where the journal holds the state before the first change; 0 when unchanged.
  bool upToDate = true;
  bool removed = false;
  bool created = false;       ///< Made after the document was read.
  bool hasDeadLinks = false;  ///< Something that it links to was removed since its links were last looked at.
  bool isBehind = false;      ///< The document's companion keeps values that the attributes do not show yet.

  [[nodiscard]] std::span<Attribute> Attributes() const { return {attributes, attributeCount}; }
  [[nodiscard]] std::string_view TypeName() const { return type->Name(); }
};

/// Walks over all that stands beneath `top`, depth first, sons in order: what follows `current`, which is
/// `top` itself to begin with; null at the end.
[[nodiscard]] const Feature* NextBeneath(const Feature& top, const Feature& current);
[[nodiscard]] inline Feature* NextBeneath(Feature& top, Feature& current) {
  return const_cast<Feature*>(NextBeneath(std::as_const(top), std::as_const(current)));
}

}  // namespace standalone
