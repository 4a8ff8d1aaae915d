#pragma once

#include <string>
#include <vector>

#include "model/Document.h"

namespace testing_support {

/// What is wrong with how the document's features refer to each other, one sentence a fault: a father,
/// container or link that was removed, a link into another document, a support that connects nothing. Empty
/// for a sound document.
std::vector<std::string> BrokenReferences(standalone::Document& document);

}  // namespace testing_support
