#pragma once

#include <string_view>

namespace standalone {

/// A kind of file that is easily taken for a document: what it is helps more than what is wrong with its
/// first line.
struct ForeignFile {
  std::string_view problem;  ///< Such as "the file is compressed (xz)".
  std::string_view advice;   ///< What to do, as the first words of a sentence.

  /// The kind of a file that begins so; null for none that is known. Owned by nobody.
  [[nodiscard]] static const ForeignFile* Of(std::string_view start);
};

}  // namespace standalone
