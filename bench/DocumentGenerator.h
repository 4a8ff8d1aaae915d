#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "model/Document.h"

namespace bench {

/// The seed of all measured documents.
inline constexpr std::uint64_t kSeed = 20240229;

/// Makes a document of at least `featureCount` features by repeating the given documents in turn, with every
/// real shifted a little by a generator that starts from `seed`: their mix of late types, links and texts at
/// any size. It grows by analysis cases, with geometry, meshes and properties for each. What stands once is
/// the model with its sets, and, since each of them makes a contact in every case, the connection properties;
/// so do the nodes and elements of the meshes. The same arguments give the same document.
[[nodiscard]] standalone::DocumentPtr GenerateDocument(const std::vector<standalone::DocumentPtr>& patterns,
                                                       std::size_t featureCount, std::uint64_t seed);

/// The example documents of the project.
[[nodiscard]] std::vector<standalone::DocumentPtr> ExamplePatterns(const std::filesystem::path& sourceFolder);

}  // namespace bench
