#include "file/DocumentError.h"

#include <fmt/format.h>

namespace standalone {

DocumentError::DocumentError(Kind kind, std::string_view file, std::size_t line, std::string_view problem,
                             std::string_view advice)
    : std::runtime_error(line == 0 ? fmt::format("{}: {}. {}", file, problem, advice)
                                   : fmt::format("{}:{}: {}. {}", file, line, problem, advice)),
      kind_(kind),
      file_(file),
      line_(line),
      problem_(problem),
      advice_(advice) {}

}  // namespace standalone
