#include "analysis/ElementDefaults.h"

#include <algorithm>
#include <iterator>

namespace standalone {
namespace {

constexpr ShapeDefaults kShapes[] = {
    {1, {{0, 0, 0, 0}, 0.0}, 0},   // point
    {2, {{0, 0, 0, 0}, 0.0}, 0},   // line
    {3, {{0, 0, 0, 0}, 0.0}, 0},   // triangle
    {4, {{1, 0, 0, 0}, 0.5}, 0},   // quadrilateral
    {5, {{0, 0, 0, 0}, 0.0}, 2},   // tetrahedron
    {6, {{0, 0, 0, 0}, 0.0}, 0},   // wedge
    {7, {{1, 0, 0, 0}, 0.5}, 0},   // hexahedron
    {8, {{1, 0, 0, 0}, 0.25}, 2},  // pyramid
    {13, {{0, 0, 0, 0}, 0.0}, 0},  // none chosen
};

constexpr ElementOptions kFormulations[] = {
    {{0, 0, 0, 0}, 0.0},  // displacement
    {{0, 1, 0, 0}, 0.0},  // hybrid
    {{0, 0, 0, 1}, 0.5},  // modified
};

}  // namespace

const ShapeDefaults* DefaultsOfShape(std::int32_t shape) {
  const auto* const found = std::ranges::find(kShapes, shape, &ShapeDefaults::shape);
  return found == std::end(kShapes) ? nullptr : found;
}

const ElementOptions* OptionsOfFormulation(std::int32_t formulation) {
  const bool isKnown = formulation >= 0 && formulation < static_cast<std::int32_t>(std::size(kFormulations));
  return isKnown ? &kFormulations[formulation] : nullptr;
}

}  // namespace standalone
