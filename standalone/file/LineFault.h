#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "file/LineValues.h"

/// \file
/// Finds the fault in text that the parser refused: for the reader's sources only.

namespace standalone {

using ReadRecord = std::function<void(ondemand::document_reference record)>;

/// The parser works on whole blocks, and what it fails at may stand far behind the line that it was at. So
/// the lines that `rest` holds, of which the first is `line`, are read one by one: of several faults the
/// first is told. Counts `line` on to the line of the fault, and throws `Unsound` (or `std::bad_alloc`). Of a
/// line that was begun, features are made already: it is not read again.
[[noreturn]] void LocateFault(std::string_view rest, bool isBegun, std::size_t& line,
                              const ReadRecord& readRecord);

}  // namespace standalone
