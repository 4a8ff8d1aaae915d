#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace bench {

/// A kind of document that is written to cost more than its size.
struct HostileShape {
  std::string_view name;
  std::string_view what;  ///< What it is about, for the table.
  /// Makes such a document of about so many bytes.
  std::string (*make)(std::size_t bytes);
  /// Whether it costs what it costs at any size, up to a limit that the program has.
  bool isConstant = false;
};

[[nodiscard]] std::span<const HostileShape> HostileShapes();

}  // namespace bench
