#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace bench {

/// What is promised of the cost.
enum class HostileBound {
  kLinear,    ///< It grows with the size alone.
  kConstant,  ///< It is the same at any size, up to a limit that the program has.
  kProduct,  ///< As linear, but upgrading multiplies what the document holds: there the limits of a run help.
};

/// A kind of document that is written to cost more than its size.
struct HostileShape {
  std::string_view name;
  std::string_view what;  ///< What it is about, for the table.
  /// Makes such a document of about so many bytes.
  std::string (*make)(std::size_t bytes);
  HostileBound bound = HostileBound::kLinear;
};

[[nodiscard]] std::span<const HostileShape> HostileShapes();

}  // namespace bench
