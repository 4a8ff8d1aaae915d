#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "upgrade/VersionManager.h"

/// \file
/// What a person is told about a failed upgrade.

namespace tool {

/// "0x80004005".
[[nodiscard]] std::string CodeText(HRESULT code);
/// "E_FAIL"; empty for a code without a name of its own.
[[nodiscard]] std::string_view CodeName(HRESULT code);
/// What the code means for whoever has to help, and the next move.
[[nodiscard]] std::string_view AdviceFor(HRESULT code);

/// Those of `identifiers` that the code of a failed feature may come from: their failures are not ignored.
[[nodiscard]] std::vector<std::string> Suspects(const standalone::VersionManager& manager,
                                                const std::vector<std::string>& identifiers,
                                                const standalone::FeatureOutcome& failed);

/// Those of `identifiers` that concern features of that late type.
[[nodiscard]] std::vector<std::string> Concerning(const standalone::VersionManager& manager,
                                                  const std::vector<std::string>& identifiers,
                                                  std::string_view lateType);

}  // namespace tool
