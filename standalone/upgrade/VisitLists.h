#pragma once

#include <cstddef>
#include <vector>

#include "model/Document.h"

namespace standalone {

/// The features of a document by late type, in document order, so that going through those which one
/// identifier concerns costs nothing for the others.
class VisitLists {
 public:
  /// `wanted`: by the number of a late type's name, whether its features are asked for.
  VisitLists(Document& document, std::vector<bool> wanted);

  /// The features of those late types, in document order, as they are now.
  [[nodiscard]] std::vector<Feature*> Of(const std::vector<NameId>& types);

 private:
  struct Entry {
    std::size_t place;
    Feature* feature;
  };

  [[nodiscard]] bool IsWanted(const Feature& feature) const;
  void Append(Feature& feature);
  void ListAnew();
  void CatchUp();

  Document& document_;
  std::vector<bool> wanted_;
  std::vector<std::vector<Entry>> byType_;
  std::size_t nextPlace_ = 0;
  std::size_t touchedSeen_ = 0;
};

}  // namespace standalone
