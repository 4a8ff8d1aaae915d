// Boundary conditions on motion.

#include "adapters/HostLibrary.h"
#include "analysis/ComponentValues.h"
#include "workbench/HVXIMotionBC.h"

namespace standalone {
namespace {

constexpr int kDegreesOfFreedom = 6;
using ComponentNames = std::string_view[kDegreesOfFreedom];

constexpr ComponentNames kDisplacements = {"HVXDisplacement_1", "HVXDisplacement_2", "HVXDisplacement_3",
                                           "HVXDisplacement_4", "HVXDisplacement_5", "HVXDisplacement_6"};
constexpr ComponentNames kVelocities = {"HVXVelocity_1", "HVXVelocity_2", "HVXVelocity_3",
                                        "HVXVelocity_4", "HVXVelocity_5", "HVXVelocity_6"};
constexpr ComponentNames kAccelerations = {"HVXAcceleration_1", "HVXAcceleration_2", "HVXAcceleration_3",
                                           "HVXAcceleration_4", "HVXAcceleration_5", "HVXAcceleration_6"};
// Of older documents; velocities and accelerations alike.
constexpr ComponentNames kOldNames = {"HVXTranslationalVelocity_1", "HVXTranslationalVelocity_2",
                                      "HVXTranslationalVelocity_3", "HVXRotationalVelocity_1",
                                      "HVXRotationalVelocity_2",    "HVXRotationalVelocity_3"};

/// `Current` names the components of today. Getters read those of older documents where they lack, so that a
/// condition can be read before it is migrated; setters do not write them.
template <const ComponentNames& Current, bool HasOldNames>
class MotionAdapter final : public FeatureAdapter<HVXIMotionBC> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetValue(int degreeOfFreedom, double& value) override {
    const std::string_view name = NameOf(degreeOfFreedom);
    if (const HRESULT entered = Enter("HVXIMotionBC::GetValue", name); Failed(entered)) return entered;
    Feature* const component = ToRead(degreeOfFreedom);
    return component == nullptr ? E_FAIL : ReadAttribute(*component, kComponentValues, value);
  }

  HRESULT SetValue(int degreeOfFreedom, double value) override {
    const std::string_view name = NameOf(degreeOfFreedom);
    if (const HRESULT entered = Enter("HVXIMotionBC::SetValue", name); Failed(entered)) return entered;
    return WriteComponent(Self(), name, value);
  }

  HRESULT GetActivity(int degreeOfFreedom, unsigned char& active) override {
    const std::string_view name = NameOf(degreeOfFreedom);
    if (const HRESULT entered = Enter("HVXIMotionBC::GetActivity", name); Failed(entered)) return entered;
    Feature* const component = ToRead(degreeOfFreedom);
    if (component == nullptr) return E_FAIL;
    std::int32_t stored = 0;
    const HRESULT read = ReadAttribute(*component, kComponentIsActive, stored);
    if (Succeeded(read)) active = stored != 0 ? 1 : 0;
    return read;
  }

  HRESULT SetActivity(int degreeOfFreedom, unsigned char active) override {
    const std::string_view name = NameOf(degreeOfFreedom);
    if (const HRESULT entered = Enter("HVXIMotionBC::SetActivity", name); Failed(entered)) return entered;
    Feature* const component = FindComponent(Self(), name);
    if (component == nullptr) return E_FAIL;
    return ReplaceAttribute(*component, kComponentIsActive, std::int32_t{active != 0 ? 1 : 0});
  }

 private:
  // Empty, as no component is called, for a degree of freedom that there is none of.
  static std::string_view NameOf(int degreeOfFreedom) {
    const bool exists = degreeOfFreedom >= 1 && degreeOfFreedom <= kDegreesOfFreedom;
    return exists ? Current[degreeOfFreedom - 1] : std::string_view();
  }

  [[nodiscard]] Feature* ToRead(int degreeOfFreedom) const {
    const std::string_view name = NameOf(degreeOfFreedom);
    Feature* const component = FindComponent(Self(), name);
    if (component != nullptr || name.empty() || !HasOldNames) return component;
    return FindComponent(Self(), kOldNames[degreeOfFreedom - 1]);
  }
};

}  // namespace

void BindMotionAdapters(VLMLibrary& host) {
  Bind<MotionAdapter<kDisplacements, false>>(host, {"HVXDisplacementBC"});
  Bind<MotionAdapter<kVelocities, true>>(host, {"HVXVelocityBCLT"});
  Bind<MotionAdapter<kAccelerations, true>>(host, {"HVXAccelerationBCLT"});
}

}  // namespace standalone
