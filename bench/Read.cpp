// Reads a document as programs do, and prints how many processor seconds that took: what reading it into
// Python is compared with.
//   hvx_read FILE

#include <fmt/format.h>

#include <exception>

#include "ProcessorTime.h"
#include "hvxupgrade/Reader.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    fmt::print(stderr, "usage: hvx_read FILE\n");
    return 2;
  }
  try {
    const double begin = bench::ProcessorTime();
    const hvxupgrade::Document document = hvxupgrade::Read(argv[1]);
    const double seconds = bench::ProcessorTime() - begin;
    fmt::print("{} {}\n", seconds, document.FeatureCount());
    return 0;
  } catch (const std::exception& error) {
    fmt::print(stderr, "hvx_read: {}\n", error.what());
  }
  return 1;
}
