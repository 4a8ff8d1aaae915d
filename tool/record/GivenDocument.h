#pragma once

#include <filesystem>
#include <string>

namespace tool {

/// A document that a command is to look at.
struct GivenDocument {
  std::string file;  ///< As it was given, or beneath a folder as that was given.
  /// Where it stands beneath the folder that was given; its name where the document itself was given.
  std::filesystem::path beneath;
};

}  // namespace tool
