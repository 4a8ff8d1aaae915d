#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "model/Document.h"

namespace bench {

/// Makes a document of at least `featureCount` features by repeating the given documents in turn, with every
/// real shifted a little by a generator that starts from `seed`: their mix of late types, links and texts at
/// any size. The analysis model and the containers of its features stand once. The same arguments give the
/// same document.
[[nodiscard]] standalone::DocumentPtr GenerateDocument(const std::vector<standalone::DocumentPtr>& patterns,
                                                       std::size_t featureCount, std::uint64_t seed);

/// The example documents of the project.
[[nodiscard]] std::vector<standalone::DocumentPtr> ExamplePatterns(const std::filesystem::path& sourceFolder);

}  // namespace bench
