// Sections: shells with their material orientation, and gaskets.

#include "adapters/HostLibrary.h"
#include "analysis/ComponentValues.h"
#include "workbench/HVXIGasketSection.h"
#include "workbench/HVXIMatOrientation.h"
#include "workbench/HVXIShellSection.h"

namespace standalone {
namespace {

const Key kMaterialOrientation("MaterialOrientation");
const Key kAngle("Angle");

constexpr std::string_view kStabilizationStiffness = "StabilizationStiffness";

class ShellSectionAdapter final : public FeatureAdapter<HVXIShellSection> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetMatOrientation(VLMBaseUnknown_var& orientation) override {
    return ReadLink("HVXIShellSection::GetMatOrientation", kMaterialOrientation, orientation);
  }
};

class MatOrientationAdapter final : public FeatureAdapter<HVXIMatOrientation> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetAngle(double& angle) override { return Read("HVXIMatOrientation::GetAngle", kAngle, angle); }
  HRESULT SetAngle(double angle) override { return Write("HVXIMatOrientation::SetAngle", kAngle, angle); }
};

class GasketSectionAdapter final : public FeatureAdapter<HVXIGasketSection> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT SetStabilizationStiffness(double stiffness) override {
    if (const HRESULT entered = Enter("HVXIGasketSection::SetStabilizationStiffness"); Failed(entered)) {
      return entered;
    }
    return WriteComponent(Self(), kStabilizationStiffness, stiffness);
  }
  HRESULT GetStabilizationStiffness(double& stiffness) override {
    if (const HRESULT entered = Enter("HVXIGasketSection::GetStabilizationStiffness"); Failed(entered)) {
      return entered;
    }
    return ReadComponent(Self(), kStabilizationStiffness, stiffness);
  }
};

}  // namespace

void BindPropertyAdapters(VLMLibrary& host) {
  Bind<ShellSectionAdapter>(host, {"HVXShellSectionEnhLT"});
  Bind<MatOrientationAdapter>(host, {"HVXMatOrientationLT"});
  Bind<GasketSectionAdapter>(host, {"HVXGaskPropertyLT"});
}

}  // namespace standalone
