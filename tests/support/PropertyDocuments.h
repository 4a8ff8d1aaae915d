#pragma once

#include <cstdint>
#include <string>

#include "model/Document.h"

namespace testing_support {

/// The lines of a document with contact connection properties, cases, steps, pairs and output requests,
/// chosen at random: properties without supports or with the same ones, pairs that exist already or that
/// propagation brought, requests on several properties at once, cases of other products, sets that lack.
std::string RandomPropertyDocument(std::uint32_t seed);

/// The lines of a document of `properties` standard properties, `cases` cases of this product with three
/// steps each, and `requests` output requests, each on one of the properties.
std::string LargePropertyDocument(int properties, int cases, int requests);

/// Replaces contact connection properties by pairs in the plainest way: lists everything anew each time. What
/// it does to a document is what the library must do.
HRESULT ReplacePropertiesPlainly(standalone::Document& document);

}  // namespace testing_support
