// Loads, thermal conditions and initial conditions.

#include <algorithm>
#include <cmath>

#include "adapters/HostLibrary.h"
#include "analysis/ComponentValues.h"
#include "workbench/HVXIFilmCondition.h"
#include "workbench/HVXIGravity.h"
#include "workbench/HVXIHeatFlux.h"
#include "workbench/HVXIInitialTemperature.h"
#include "workbench/HVXIPressureLoad.h"
#include "workbench/HVXIRotationalBodyForce.h"
#include "workbench/HVXITemperature.h"
#include "workbench/HVXITemperatureHistory.h"

namespace standalone {
namespace {

const Key kOldMagnitude("magnitude_param");
const Key kRotationAxis("RotationAxis");
const Key kRotationAxisPart("RotationAxisPart");

/// The base of conditions whose values are in components of their feature.
template <class Interface>
class ConditionAdapter : public FeatureAdapter<Interface> {
 public:
  using FeatureAdapter<Interface>::FeatureAdapter;

 protected:
  ~ConditionAdapter() override = default;

  template <class T>
  HRESULT SetComponent(std::string_view operation, std::string_view name, const T& value) const {
    if (const HRESULT entered = this->Enter(operation, name); Failed(entered)) return entered;
    return WriteComponent(this->Self(), name, value);
  }

  template <class T>
  HRESULT GetComponent(std::string_view operation, std::string_view name, T& value) const {
    if (const HRESULT entered = this->Enter(operation, name); Failed(entered)) return entered;
    return ReadComponent(this->Self(), name, value);
  }
};

class PressureAdapter final : public ConditionAdapter<HVXIPressureLoad> {
 public:
  using ConditionAdapter::ConditionAdapter;

  HRESULT SetMagnitude(const double& magnitude) override {
    return SetComponent("HVXIPressureLoad::SetMagnitude", "Pressure", magnitude);
  }
  HRESULT GetMagnitude(double& magnitude) override {
    return GetComponent("HVXIPressureLoad::GetMagnitude", "Pressure", magnitude);
  }
};

class TemperatureAdapter final : public ConditionAdapter<HVXITemperature> {
 public:
  using ConditionAdapter::ConditionAdapter;

  HRESULT SetMagnitude(double magnitude) override {
    return SetComponent("HVXITemperature::SetMagnitude", "Temperature", magnitude);
  }
  HRESULT GetMagnitude(double& magnitude) override {
    return GetComponent("HVXITemperature::GetMagnitude", "Temperature", magnitude);
  }
};

class InitialTemperatureAdapter final : public ConditionAdapter<HVXIInitialTemperature> {
 public:
  using ConditionAdapter::ConditionAdapter;

  HRESULT SetMidside(unsigned char flag) override {
    return SetComponent("HVXIInitialTemperature::SetMidside", "MidsideNodes", flag != 0);
  }
};

class TemperatureHistoryAdapter final : public ConditionAdapter<HVXITemperatureHistory> {
 public:
  using ConditionAdapter::ConditionAdapter;

  HRESULT SetMidside(unsigned char flag) override {
    return SetComponent("HVXITemperatureHistory::SetMidside", "MidsideNodes", flag != 0);
  }

  HRESULT SetEndIncrement(std::int32_t& increment) override {
    const std::int32_t corrected = std::max(increment, std::int32_t{0});
    const HRESULT set = SetComponent("HVXITemperatureHistory::SetEndIncrement", "EndIncrement", corrected);
    if (Succeeded(set)) increment = corrected;
    return set;
  }
};

class HeatFluxAdapter final : public ConditionAdapter<HVXIHeatFlux> {
 public:
  using ConditionAdapter::ConditionAdapter;

  HRESULT SetMagnitude(double magnitude) override {
    return SetComponent("HVXIHeatFlux::SetMagnitude", "HeatFlux", magnitude);
  }
  HRESULT GetMagnitude(double& magnitude) override {
    return GetComponent("HVXIHeatFlux::GetMagnitude", "HeatFlux", magnitude);
  }
};

/// The one condition whose value has never moved: it is still in its parameter.
class BodyHeatFluxAdapter final : public FeatureAdapter<HVXIHeatFlux> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT SetMagnitude(double magnitude) override {
    if (const HRESULT entered = Enter("HVXIHeatFlux::SetMagnitude", kOldMagnitude.Text()); Failed(entered))
      return entered;
    Feature* const parameter = LinkedFeature(Self(), kOldMagnitude);
    return parameter == nullptr ? E_FAIL : ReplaceAttribute(*parameter, kParameterValue, magnitude);
  }
  HRESULT GetMagnitude(double& magnitude) override {
    if (const HRESULT entered = Enter("HVXIHeatFlux::GetMagnitude", kOldMagnitude.Text()); Failed(entered))
      return entered;
    Feature* const parameter = LinkedFeature(Self(), kOldMagnitude);
    return parameter == nullptr ? E_FAIL : ReadAttribute(*parameter, kParameterValue, magnitude);
  }
};

class FilmConditionAdapter final : public ConditionAdapter<HVXIFilmCondition> {
 public:
  using ConditionAdapter::ConditionAdapter;

  HRESULT SetReferenceTemperature(double temperature) override {
    return SetComponent("HVXIFilmCondition::SetReferenceTemperature", "ReferenceTemperature", temperature);
  }
  HRESULT GetReferenceTemperature(double& temperature) override {
    return GetComponent("HVXIFilmCondition::GetReferenceTemperature", "ReferenceTemperature", temperature);
  }
};

class GravityAdapter final : public FeatureAdapter<HVXIGravity> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT SetComponents(const std::array<double, 3>& components) override {
    if (const HRESULT entered = Enter("HVXIGravity::SetComponents"); Failed(entered)) return entered;
    // All of them can be set, or none is.
    double current = 0.0;
    for (std::size_t i = 0; i < components.size(); ++i) {
      if (!std::isfinite(components[i]) || Failed(ReadComponent(Self(), kNames[i], current))) return E_FAIL;
    }
    for (std::size_t i = 0; i < components.size(); ++i) {
      static_cast<void>(WriteComponent(Self(), kNames[i], components[i]));
    }
    return S_OK;
  }

  HRESULT GetComponents(std::array<double, 3>& components) override {
    if (const HRESULT entered = Enter("HVXIGravity::GetComponents"); Failed(entered)) return entered;
    std::array<double, 3> read{};
    for (std::size_t i = 0; i < read.size(); ++i) {
      if (const HRESULT given = ReadComponent(Self(), kNames[i], read[i]); Failed(given)) return given;
    }
    components = read;
    return S_OK;
  }

 private:
  static constexpr std::string_view kNames[] = {"HVXGravity_1", "HVXGravity_2", "HVXGravity_3"};
};

class RotationalBodyForceAdapter final : public ConditionAdapter<HVXIRotationalBodyForce> {
 public:
  using ConditionAdapter::ConditionAdapter;

  HRESULT SetAngularVelocity(double velocity) override {
    return SetComponent("HVXIRotationalBodyForce::SetAngularVelocity", "AngularVelocity", velocity);
  }
  HRESULT SetAngularAcceleration(double acceleration) override {
    return SetComponent("HVXIRotationalBodyForce::SetAngularAcceleration", "AngularAcceleration",
                        acceleration);
  }
  HRESULT GetAxis(VLMILinkableObject_var& axis) override {
    return ReadLink("HVXIRotationalBodyForce::GetAxis", kRotationAxis, axis);
  }
  HRESULT SetAxisData(const VLMILinkableObject_var& axis, const VLMISpecObject_var& part) override {
    if (const HRESULT entered = Enter("HVXIRotationalBodyForce::SetAxisData"); Failed(entered))
      return entered;
    Feature* const line = FeatureOf(axis);
    Feature* const partOfLine = FeatureOf(part);
    if (line == nullptr || line->removed || line->document != &Doc()) return E_FAIL;
    if (partOfLine != nullptr && (partOfLine->removed || partOfLine->document != &Doc())) return E_FAIL;
    if (HasValue(Self(), kRotationAxis) && LinkedFeature(Self(), kRotationAxis) == nullptr) return E_FAIL;
    if (const HRESULT stored = ReplaceLink(Self(), kRotationAxisPart, partOfLine); Failed(stored))
      return stored;
    WriteLink(Self(), kRotationAxis, line);
    return S_OK;
  }
};

}  // namespace

void BindConditionAdapters(VLMLibrary& host) {
  Bind<PressureAdapter>(host, {"HVXPressure"});
  Bind<GravityAdapter>(host, {"HVXGravity"});
  Bind<RotationalBodyForceAdapter>(host, {"HVXRotationalBodyForce"});
  Bind<TemperatureAdapter>(host, {"HVXTemperatureLT", "HVXInitialTemperatureLT", "HVXTemperatureHistoryLT"});
  Bind<InitialTemperatureAdapter>(host, {"HVXInitialTemperatureLT"});
  Bind<TemperatureHistoryAdapter>(host, {"HVXTemperatureHistoryLT"});
  Bind<HeatFluxAdapter>(host, {"HVXConcHeatFlux", "HVXSurfaceHeatFlux"});
  Bind<BodyHeatFluxAdapter>(host, {"HVXBodyHeatFlux"});
  Bind<FilmConditionAdapter>(host, {"HVXFilmCondition"});
}

}  // namespace standalone
