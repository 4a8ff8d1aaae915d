#pragma once

#include <functional>
#include <string>

namespace tool {

/// Called by the work when all that is left is to put its output in place, with what it will have to report
/// once it is there: the process may end before it can. Comes back when that may be done, and must not be
/// cut off any more; throws `Interrupted` when it must not.
using RequestCommit = std::function<void(const std::string& result)>;

}  // namespace tool
