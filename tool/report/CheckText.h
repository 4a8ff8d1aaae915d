#pragma once

#include <fmt/format.h>

#include "record/CheckedDocument.h"

namespace tool {

/// One line: the verdict, and how much was found.
void AppendHeadline(fmt::memory_buffer& out, const CheckedDocument& checked);
/// The headline and all findings, those that say the same together. `all`: with every feature.
void AppendText(fmt::memory_buffer& out, const CheckedDocument& checked, bool all);
/// The same as an entry of a JSON list.
void AppendJson(fmt::memory_buffer& out, const CheckedDocument& checked);

}  // namespace tool
