// Section controls of element assignments.

#include "adapters/HostLibrary.h"
#include "workbench/HVXISectionControls.h"

namespace standalone {
namespace {

const Key kDistortionControl("DistortionContol");  // spelt so in every document
const Key kSecondOrderAccuracy("SecondOrderAccuracy");
const Key kHourglassControl("HourglassControl");
const Key kLengthRatio("LengthRatio");
const Key kStiffnessViscousWtFactor("StiffnessViscousWtFactor");
const Key kDispHourglassScalingFactor("DispHourglassScalingFactor");
const Key kRotHourglassScalingFactor("RotHourglassScalingFactor");
const Key kOutOfPlaneHourglassScalingFactor("OutOfPlaneHourglassScalingFactor");

class SectionControlsAdapter final : public FeatureAdapter<HVXISectionControls> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetDistortionControl(std::int32_t& code) override {
    return Read("HVXISectionControls::GetDistortionControl", kDistortionControl, code);
  }
  HRESULT SetDistortionControl(std::int32_t code) override {
    return Write("HVXISectionControls::SetDistortionControl", kDistortionControl, code);
  }
  HRESULT GetSecondOrderAccuracy(unsigned char& flag) override {
    return Read("HVXISectionControls::GetSecondOrderAccuracy", kSecondOrderAccuracy, flag);
  }
  HRESULT SetSecondOrderAccuracy(unsigned char flag) override {
    return Write("HVXISectionControls::SetSecondOrderAccuracy", kSecondOrderAccuracy, flag);
  }
  HRESULT GetHourglassControl(std::int32_t& code) override {
    return Read("HVXISectionControls::GetHourglassControl", kHourglassControl, code);
  }
  HRESULT SetHourglassControl(std::int32_t code) override {
    return Write("HVXISectionControls::SetHourglassControl", kHourglassControl, code);
  }
  HRESULT GetLengthRatio(double& ratio) override {
    return Read("HVXISectionControls::GetLengthRatio", kLengthRatio, ratio);
  }
  HRESULT SetLengthRatio(double ratio) override {
    return Write("HVXISectionControls::SetLengthRatio", kLengthRatio, ratio);
  }
  HRESULT GetStiffnessViscousWtFactor(double& factor) override {
    return Read("HVXISectionControls::GetStiffnessViscousWtFactor", kStiffnessViscousWtFactor, factor);
  }
  HRESULT SetStiffnessViscousWtFactor(double factor) override {
    return Write("HVXISectionControls::SetStiffnessViscousWtFactor", kStiffnessViscousWtFactor, factor);
  }
  HRESULT GetDispHourglassScalingFactor(double& factor) override {
    return Read("HVXISectionControls::GetDispHourglassScalingFactor", kDispHourglassScalingFactor, factor);
  }
  HRESULT SetDispHourglassScalingFactor(double factor) override {
    return Write("HVXISectionControls::SetDispHourglassScalingFactor", kDispHourglassScalingFactor, factor);
  }
  HRESULT GetRotHourglassScalingFactor(double& factor) override {
    return Read("HVXISectionControls::GetRotHourglassScalingFactor", kRotHourglassScalingFactor, factor);
  }
  HRESULT SetRotHourglassScalingFactor(double factor) override {
    return Write("HVXISectionControls::SetRotHourglassScalingFactor", kRotHourglassScalingFactor, factor);
  }
  HRESULT GetOutOfPlaneHourglassScalingFactor(double& factor) override {
    return Read("HVXISectionControls::GetOutOfPlaneHourglassScalingFactor", kOutOfPlaneHourglassScalingFactor,
                factor);
  }
  HRESULT SetOutOfPlaneHourglassScalingFactor(double factor) override {
    return Write("HVXISectionControls::SetOutOfPlaneHourglassScalingFactor",
                 kOutOfPlaneHourglassScalingFactor, factor);
  }
};

}  // namespace

void BindSectionControlsAdapters(VLMLibrary& host) {
  Bind<SectionControlsAdapter>(host, {"HVXSectionControlsLT"});
}

}  // namespace standalone
