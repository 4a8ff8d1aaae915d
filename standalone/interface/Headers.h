#pragma once

#include "file/DocumentReader.h"
#include "hvxupgrade/Reader.h"

namespace hvxupgrade {

/// What the library reads by; refers to `options`, which must outlive it.
[[nodiscard]] standalone::ReadOptions ReadingBy(const ReadOptions& options);
/// What the interface tells of a first line.
[[nodiscard]] Header HeaderOf(const standalone::DocumentHeader& header);

}  // namespace hvxupgrade
