// Writes a generated document, to be measured or profiled by other means.
//   hvx_generate FEATURES FILE

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include "DocumentGenerator.h"
#include "file/DocumentWriter.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    fmt::print(stderr, "usage: hvx_generate FEATURES FILE\n");
    return 2;
  }
  try {
    const standalone::DocumentPtr document =
        bench::GenerateDocument(bench::ExamplePatterns(HVX_SOURCE_DIR), std::stoull(argv[1]), bench::kSeed);
    standalone::WriteOptions options;
    options.overwrite = true;
    standalone::WriteDocument(*document.Get(), argv[2], options);
    return 0;
  } catch (const std::logic_error&) {
    fmt::print(stderr, "hvx_generate: {} is no number of features\n", argv[1]);
  } catch (const std::exception& error) {
    fmt::print(stderr, "hvx_generate: {}\n", error.what());
  }
  return 1;
}
