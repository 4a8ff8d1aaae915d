#pragma once

#include <string>
#include <string_view>

namespace tool {

/// A document that a command is to look at. There may be very many.
struct GivenDocument {
  std::string file;               ///< As it was given, or beneath a folder as that was given.
  std::size_t beneathBegins = 0;  ///< Where in `file` that begins which `Beneath` gives.

  /// Where it stands beneath the folder that was given; its name where the document itself was given.
  [[nodiscard]] std::string_view Beneath() const { return std::string_view(file).substr(beneathBegins); }
};

}  // namespace tool
