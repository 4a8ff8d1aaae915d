#pragma once

#include <string>
#include <string_view>

#include "base/VLMResult.h"

namespace tool {

/// "0x80004005 (E_FAIL)", or the number alone for a code without a name of its own.
[[nodiscard]] std::string CodeWithName(HRESULT code);
/// "0x80004005".
[[nodiscard]] std::string CodeText(HRESULT code);
/// "E_FAIL"; empty for a code without a name of its own.
[[nodiscard]] std::string_view CodeName(HRESULT code);

}  // namespace tool
