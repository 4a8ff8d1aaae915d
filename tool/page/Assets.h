#pragma once

#include <string_view>

/// \file
/// The files beside this one in web/, as they are built into the program.

namespace tool::page {

extern const std::string_view kBody;
extern const std::string_view kStyle;
/// All scripts, in their order, in a scope of their own.
extern const std::string_view kScript;

}  // namespace tool::page
