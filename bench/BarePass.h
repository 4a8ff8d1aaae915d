#pragma once

#include <filesystem>

namespace bench {

/// The floor for reading and writing: parses every value of `input` and writes the same text to `output`,
/// with the libraries that the document file uses and without a model in between; ends with the bytes on
/// disk.
void BarePass(const std::filesystem::path& input, const std::filesystem::path& output);

}  // namespace bench
