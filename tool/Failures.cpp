#include "Failures.h"

#include <fmt/format.h>

#include <algorithm>

namespace tool {
namespace {

using Binding = standalone::KnownUpgrade::Binding;

// Those of `identifiers` that a class binds to the late type in a way that counts.
template <class Predicate>
std::vector<std::string> Bound(const standalone::VersionManager& manager,
                               const std::vector<std::string>& identifiers, std::string_view lateType,
                               const Predicate& counts) {
  std::vector<std::string> found;
  for (const std::string& identifier : identifiers) {
    const bool binds = std::ranges::any_of(manager.Find(identifier)->bindings, [&](const Binding& bound) {
      const auto& types = bound.upgradeClass->lateTypes;
      return counts(bound) && std::ranges::find(types, lateType) != types.end();
    });
    if (binds) found.push_back(identifier);
  }
  return found;
}

}  // namespace

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

std::vector<std::string> Suspects(const standalone::VersionManager& manager,
                                  const std::vector<std::string>& identifiers,
                                  const standalone::FeatureOutcome& failed) {
  const auto mayFail = [](const Binding& bound) {
    return bound.binding->onFailure != HVXOnFailure::kIgnore &&
           bound.binding->onFailure != HVXOnFailure::kSkip;
  };
  std::vector<std::string> suspects = Bound(manager, identifiers, failed.type->Name(), mayFail);
  // None where the feature did not even offer its upgrade.
  return suspects.empty() ? Concerning(manager, identifiers, failed.type->Name()) : suspects;
}

std::vector<std::string> Concerning(const standalone::VersionManager& manager,
                                    const std::vector<std::string>& identifiers, std::string_view lateType) {
  return Bound(manager, identifiers, lateType, [](const Binding&) { return true; });
}

}  // namespace tool
