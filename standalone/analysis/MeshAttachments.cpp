#include "analysis/MeshAttachments.h"

#include <algorithm>

namespace standalone {
namespace {

const Key kPoints("Points");
const Key kProducts("Products");
const Key kMeshParts("MeshParts");

}  // namespace

std::vector<Feature*> MeshAttachments::At(Feature& mesher, const Feature* point, const Feature* product) {
  if (&mesher != mesher_ || mesher.document->ChangeCount() != changes_) Read(mesher);
  const auto found = rows_.find({point, product});
  return found == rows_.end() ? std::vector<Feature*>() : found->second;
}

void MeshAttachments::Read(Feature& mesher) {
  rows_.clear();
  const std::vector<Feature*> points = LinkEntries(mesher, kPoints);
  const std::vector<Feature*> products = LinkEntries(mesher, kProducts);
  const std::vector<Feature*> meshParts = LinkEntries(mesher, kMeshParts);
  const std::size_t count = std::min({points.size(), products.size(), meshParts.size()});
  for (std::size_t i = 0; i < count; ++i) {
    if (points[i] != nullptr && products[i] != nullptr && meshParts[i] != nullptr)
      rows_[{points[i], products[i]}].push_back(meshParts[i]);
  }
  mesher_ = &mesher;
  changes_ = mesher.document->ChangeCount();
}

}  // namespace standalone
