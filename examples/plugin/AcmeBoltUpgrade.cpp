#include "AcmeBoltUpgrade.h"

#include <charconv>
#include <string_view>

#include "AcmeIdentifiers.h"
#include "modeler/VLMISpecAttrAccess.h"

namespace {

constexpr const char* kLateTypes[] = {"AcmeBoltLT"};

constexpr double kMetresPerMillimetre = 1e-3;
constexpr double kPascalPerClass = 100e6;  // the first number of a property class is a hundredth of N/mm2

// "8.8" is a tensile strength of 800 N/mm2, and a yield strength of 0.8 of that.
bool ReadPropertyClass(std::string_view text, double& tensile, double& yield) {
  int hundreds = 0;
  int tenths = 0;
  const char* const end = text.data() + text.size();
  const auto [dot, error] = std::from_chars(text.data(), end, hundreds);
  if (error != std::errc() || dot == end || *dot != '.') return false;
  const auto [last, errorOfTenths] = std::from_chars(dot + 1, end, tenths);
  if (errorOfTenths != std::errc() || last != end || hundreds < 1 || tenths < 1 || tenths > 9) return false;
  tensile = hundreds * kPascalPerClass;
  yield = tensile * tenths / 10;
  return true;
}

HRESULT WriteReal(const VLMISpecAttrAccess_var& spAttributes, const char* name, double value) {
  VLMSpecAttrKey key;
  if (const HRESULT added = spAttributes->AddAttribute(name, VLMAttributeType::kReal, key); Failed(added))
    return added;
  return spAttributes->SetReal(key, value);
}

}  // namespace

const HVXUpgradeBinding AcmeBoltUpgrade::kBindings[] = {
    {kAcmeBoltDiameterInMetres, "Stores a bolt's diameter in metres instead of millimetres.",
     Own<&AcmeBoltUpgrade::ConvertDiameter>, HVXOnFailure::kStop},
    {kAcmeBoltStrengths, "Replaces a bolt's property class by its tensile strength and yield strength.",
     Own<&AcmeBoltUpgrade::ReplacePropertyClass>, HVXOnFailure::kIgnore},
};

constinit const HVXUpgradeClass AcmeBoltUpgrade::kClass = {
    .name = "AcmeBoltUpgrade",
    .interface = HVXIUpgrade::kId,
    .lateTypes = kLateTypes,
    .bindings = kBindings,
    .createTIE = &CreateTIE,
};

HRESULT AcmeBoltUpgrade::ConvertDiameter() {
  const VLMISpecAttrAccess_var spAttributes(Feature());
  if (spAttributes == NULL_var) return E_NOINTERFACE;
  const VLMSpecAttrKey old = spAttributes->GetAttrKey("DiameterMm");
  if (old.IsNull()) return S_OK;  // migrated already

  double millimetres = 0.0;
  if (const HRESULT read = spAttributes->GetReal(old, millimetres); Failed(read)) return read;
  const HRESULT written = WriteReal(spAttributes, "Diameter", millimetres * kMetresPerMillimetre);
  if (Failed(written)) return written;
  return spAttributes->RemoveAttribute(old);  // last: a failure above loses nothing
}

HRESULT AcmeBoltUpgrade::ReplacePropertyClass() {
  const VLMISpecAttrAccess_var spAttributes(Feature());
  if (spAttributes == NULL_var) return E_NOINTERFACE;
  const VLMSpecAttrKey old = spAttributes->GetAttrKey("PropertyClass");
  if (old.IsNull()) return S_OK;  // migrated already

  VLMUnicodeString text;
  if (const HRESULT read = spAttributes->GetString(old, text); Failed(read)) return read;
  double tensile = 0.0;
  double yield = 0.0;
  if (!ReadPropertyClass(text.View(), tensile, yield)) return E_FAIL;
  if (const HRESULT written = WriteReal(spAttributes, "TensileStrength", tensile); Failed(written))
    return written;
  if (const HRESULT written = WriteReal(spAttributes, "YieldStrength", yield); Failed(written))
    return written;
  return spAttributes->RemoveAttribute(old);
}

HVX_EXPORT_CREATE_TIE(AcmeBoltUpgrade)
