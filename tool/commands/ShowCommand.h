#pragma once

#include "settings/Arguments.h"

namespace tool {

/// Writes the document's feature tree to standard output. Throws `standalone::DocumentError` when it cannot
/// be read and `UsageError` when it has no feature of the wanted id.
ExitCode RunShow(const ShowArguments& arguments);

}  // namespace tool
