#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/Document.h"

namespace standalone {

/// What would keep the document, once it is written, from being read again: each fault a sentence, without
/// the full stop, that names the feature. Empty exactly when writing and reading back, with the default
/// options, gives the same document. Stops at `most` faults. One pass over the document, which costs a small
/// part of writing it.
[[nodiscard]] std::vector<std::string> FindFaults(Document& document, std::size_t most = 100);

}  // namespace standalone
