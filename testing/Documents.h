#pragma once

#include <string>
#include <string_view>

#include "model/Document.h"

namespace testing_support {

/// A document read from text: feature lines as the document file holds them (the header line is added). The
/// library is loaded before it, so that it outlives it.
standalone::DocumentPtr DocumentOf(std::string_view lines);

/// The document as its file would hold it, without the header line.
std::string LinesOf(standalone::Document& document);

}  // namespace testing_support
