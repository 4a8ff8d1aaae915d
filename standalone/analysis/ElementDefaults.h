#pragma once

#include <array>
#include <cstdint>

namespace standalone {

/// What the workbench proposes for an element: reduced integration, hybrid, incompatible modes, modified; and
/// the value that goes with them.
struct ElementOptions {
  std::array<unsigned char, 4> flags;
  double value;
};

/// What an element shape has by default.
struct ShapeDefaults {
  std::int32_t shape;
  ElementOptions options;
  std::int32_t formulation;
};

/// Null for a shape that the workbench does not know.
const ShapeDefaults* DefaultsOfShape(std::int32_t shape);
/// What a formulation brings, whatever the shape; null for an unknown one.
const ElementOptions* OptionsOfFormulation(std::int32_t formulation);

}  // namespace standalone
