#include "Failures.h"

#include <fmt/format.h>

#include <algorithm>

namespace tool {

std::string CodeText(HRESULT code) {
  return fmt::format("0x{:08X}", static_cast<std::uint32_t>(code));
}

std::string_view CodeName(HRESULT code) {
  if (code == E_FAIL) return "E_FAIL";
  return code == E_NOINTERFACE ? "E_NOINTERFACE" : "";
}

std::string_view AdviceFor(HRESULT code) {
  if (code == E_FAIL) {
    return "Something that the upgrade needs is missing or not as expected: look for empty links and missing "
           "attributes with 'show --id ID --attributes', and for the last host call with --trace. Correct it "
           "in the old document and upgrade that again.";
  }
  if (code == E_NOINTERFACE) {
    return "The feature does not offer an interface that the upgrade needs: check that its late type is the "
           "right one. Correct it in the old document and upgrade that again.";
  }
  return "The host refused an operation: --trace shows which. Correct what it worked on in the old document "
         "and upgrade that again.";
}

std::vector<std::string> Concerning(const standalone::VersionManager& manager,
                                    const std::vector<std::string>& identifiers, std::string_view lateType) {
  std::vector<std::string> concerning;
  for (const std::string& identifier : identifiers) {
    const auto& bindings = manager.Find(identifier)->bindings;
    if (std::ranges::any_of(bindings, [lateType](const standalone::KnownUpgrade::Binding& bound) {
          return std::ranges::find(bound.upgradeClass->lateTypes, lateType) !=
                 bound.upgradeClass->lateTypes.end();
        })) {
      concerning.push_back(identifier);
    }
  }
  return concerning;
}

}  // namespace tool
