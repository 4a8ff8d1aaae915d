// Any bytes: refused with a message, or read; what was read is written in a form that reads and writes the
// same.

#include "DocumentMutator.h"
#include "Harness.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  return fuzzing::MutateDocument(data, size, maxSize, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const standalone::DocumentPtr document = fuzzing::DocumentOf(data, size);
  if (document.Get() == nullptr) return 0;
  const std::string text = fuzzing::TextOf(*document.Get());
  const standalone::DocumentPtr again = fuzzing::DocumentOf(text);
  fuzzing::Require(again.Get() != nullptr, "what was written can be read");
  fuzzing::Require(fuzzing::TextOf(*again.Get()) == text, "what was read is written the same");
  return 0;
}
