#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzzing {

/// Changes one thing of a document that most likely leaves it one that can be read: where a link leads, a
/// late type, a key, a value, which lines there are and in what order. The header tells the right number of
/// features again. A text that is no document comes back unchanged.
[[nodiscard]] std::string Mutated(std::string_view document, std::uint32_t seed);

/// For LLVMFuzzerCustomMutator: mostly as `Mutated`, now and then as bytes. Gives the new size.
std::size_t MutateDocument(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed);

}  // namespace fuzzing
