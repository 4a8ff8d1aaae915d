// Basic components and the features that hold them; knowledge parameters; the host's upgrade of components.

#include "adapters/HostLibrary.h"
#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/VLMEAnalysisUpgrade.h"
#include "analysis/VLMISamAnalysisEntity.h"
#include "analysis/VLMISamBasicComponent.h"
#include "analysis/VLMISamUpgrade.h"
#include "modeler/VLMIKpeParm.h"
#include "workbench/HVXISpecObjectExt.h"

namespace standalone {
namespace {

HRESULT GiveComponent(const Feature& holder, const VLMString& name, VLMISamBasicComponent_var& component) {
  component = HandleOn<VLMISamBasicComponent>(FindComponent(holder, name.View()));
  return component == NULL_var ? E_FAIL : S_OK;
}

class EntityAdapter final : public FeatureAdapter<VLMISamAnalysisEntity> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetBasicComponent(const VLMString& name, VLMISamBasicComponent_var& component) override {
    component = NULL_var;
    if (const HRESULT entered = Enter("VLMISamAnalysisEntity::GetBasicComponent", name.View());
        Failed(entered)) {
      return entered;
    }
    return GiveComponent(Self(), name, component);
  }

  HRESULT ListBasicComponents(const VLMString& name, VLMListValVLMBaseUnknown_var& components) override {
    components.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisEntity::ListBasicComponents", name.View());
        Failed(entered)) {
      return entered;
    }
    for (Feature* each = NextComponent(Self(), nullptr, name.View()); each != nullptr;
         each = NextComponent(Self(), each, name.View())) {
      components.Append(HandleOn<VLMBaseUnknown>(each));
    }
    return S_OK;
  }

  HRESULT RemoveBasicComponent(const VLMString& name) override {
    if (const HRESULT entered = Enter("VLMISamAnalysisEntity::RemoveBasicComponent", name.View());
        Failed(entered)) {
      return entered;
    }
    Feature* const component = FindComponent(Self(), name.View());
    if (component == nullptr) return E_FAIL;
    Doc().Remove(*component);
    return S_OK;
  }

  HRESULT ListParents(VLMListValVLMBaseUnknown_var& parents) override {
    parents.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisEntity::ListParents"); Failed(entered)) return entered;
    for (Feature* above = Self().father; above != nullptr; above = above->father) {
      parents.Append(HandleOn<VLMBaseUnknown>(above));
    }
    return S_OK;
  }
};

class SpecObjectExtAdapter final : public FeatureAdapter<HVXISpecObjectExt> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetBasicComponent(const VLMString& name, VLMISamBasicComponent_var& component) override {
    component = NULL_var;
    if (const HRESULT entered = Enter("HVXISpecObjectExt::GetBasicComponent", name.View()); Failed(entered)) {
      return entered;
    }
    return GiveComponent(Self(), name, component);
  }
};

class BasicComponentAdapter final : public FeatureAdapter<VLMISamBasicComponent> {
 public:
  using FeatureAdapter::FeatureAdapter;

  VLMUnicodeString GetName() override {
    return Failed(Enter("VLMISamBasicComponent::GetName")) ? VLMUnicodeString()
                                                           : VLMUnicodeString(Self().name);
  }

  HRESULT FindComponent(const VLMString& name, VLMISamBasicComponent_var& component) override {
    component = NULL_var;
    if (const HRESULT entered = Enter("VLMISamBasicComponent::FindComponent", name.View()); Failed(entered)) {
      return entered;
    }
    return GiveComponent(Self(), name, component);
  }

  HRESULT CreateComponent(const VLMString& name, const VLMString& type,
                          const VLMBaseUnknown_var& magnitude) override {
    if (const HRESULT entered = Enter("VLMISamBasicComponent::CreateComponent", name.View());
        Failed(entered)) {
      return entered;
    }
    if (name.IsNull() || standalone::FindComponent(Self(), name.View()) != nullptr) return E_FAIL;
    std::string_view unitKind;
    if (const Feature* const object = FeatureOf(magnitude)) {
      unitKind = object->externalName.empty() ? object->name : object->externalName;
    }
    return MakeComponent(Self(), name.View(), type.View(), unitKind) == nullptr ? E_FAIL : S_OK;
  }

  HRESULT GetReal(const VLMString& key, double& value) override {
    return Read("VLMISamBasicComponent::GetReal", Key(Doc().NameFor(key.View())), value);
  }

  HRESULT GetInteger(const VLMString& key, std::int32_t& value) override {
    const Key attribute(Doc().NameFor(key.View()));
    if (const HRESULT entered = Enter("VLMISamBasicComponent::GetInteger", key.View()); Failed(entered))
      return entered;
    if (Succeeded(ReadAttribute(Self(), attribute, value))) return S_OK;
    bool flag = false;
    if (Failed(ReadAttribute(Self(), attribute, flag))) return E_FAIL;
    value = flag ? 1 : 0;
    return S_OK;
  }

  HRESULT GetValueAsReal(double& value, const VLMString& unit) override {
    if (const HRESULT entered = Enter("VLMISamBasicComponent::GetValueAsReal", unit.View());
        Failed(entered)) {
      return entered;
    }
    VLMUnicodeString magnitude;
    static_cast<void>(ReadAttribute(Self(), kMagnitude, magnitude));
    return UnitFits(unit.View(), magnitude.View()) ? ReadAttribute(Self(), kComponentValues, value) : E_FAIL;
  }

  HRESULT SetInteger(std::int32_t value, int index, const VLMString& unit, int row, int column,
                     int layer) override {
    return SetSingle("VLMISamBasicComponent::SetInteger", "SAMInteger", index | row | column | layer, unit,
                     value);
  }

  HRESULT SetBoolean(unsigned char value, int index, const VLMString& unit, int row, int column,
                     int layer) override {
    return SetSingle("VLMISamBasicComponent::SetBoolean", "SAMBoolean", index | row | column | layer, unit,
                     value);
  }

 private:
  // A component holds one value: no place within it but 0 exists, and no unit belongs to it.
  template <class T>
  HRESULT SetSingle(std::string_view operation, std::string_view type, int place, const VLMString& unit,
                    const T& value) const {
    if (const HRESULT entered = Enter(operation, Self().name, place); Failed(entered)) return entered;
    VLMUnicodeString own;
    if (place != 0 || !unit.IsNull() || Failed(ReadAttribute(Self(), kComponentType, own)) ||
        own.View() != type)
      return E_FAIL;
    return ReplaceAttribute(Self(), kComponentValues, value);
  }
};

class ParameterValueAdapter final : public FeatureAdapter<VLMIKpeValue> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT AsReal(double& value) override { return Read("VLMIKpeValue::AsReal", kParameterValue, value); }
};

class ParameterAdapter final : public FeatureAdapter<VLMIKpeParm> {
 public:
  using FeatureAdapter::FeatureAdapter;

  VLMUnicodeString GetName() override {
    return Failed(Enter("VLMIKpeParm::GetName")) ? VLMUnicodeString() : VLMUnicodeString(Self().name);
  }

  VLMUnicodeString GetMagnitude() override {
    VLMUnicodeString magnitude;
    static_cast<void>(Read("VLMIKpeParm::GetMagnitude", kMagnitude, magnitude));
    return magnitude;
  }

  VLMIKpeValue_var GetValue() override {
    if (Failed(Enter("VLMIKpeParm::GetValue"))) return {};
    double value = 0.0;  // a value that is no number is none
    if (Failed(ReadAttribute(Self(), kParameterValue, value))) return {};
    return VLMIKpeValue_var::Adopt(new ParameterValueAdapter(Self()));
  }
};

// The host's upgrade on the late types whose migration calls it and that no plug-in binds.
class HostUpgrade final : public VLMEAnalysisUpgrade {
 public:
  using VLMEAnalysisUpgrade::VLMEAnalysisUpgrade;
};

}  // namespace

void BindComponentAdapters(VLMLibrary& host) {
  Bind<EntityAdapter>(host, {kind::kAnalysisEntity});
  Bind<SpecObjectExtAdapter>(host, {"HVXGaskPropertyLT", "HVXPreTensionPropertyLT", "HVXShellSectionEnhLT",
                                    "HVXInteractionPropertyLT"});
  Bind<BasicComponentAdapter>(host, {kind::kBasicComponent});
  Bind<ParameterAdapter>(host, {kind::kParameter});
  for (const std::string_view lateType :
       {"HVXInitialTemperatureLT", "HVXTemperatureHistoryLT", "HVXDisplacementBC", "HVXConcentratedForce",
        "HVXContactConnectionEnhancementExplicitLT", "HVXNewFieldOutputLT"}) {
    static_cast<void>(host.DeclareTie(VLMMetaClass::LateType(lateType), VLMISamUpgrade::kId,
                                      &VLMMakeTie<TIEVLMISamUpgrade<HostUpgrade>>));
  }
}

}  // namespace standalone

unsigned char VLMEAnalysisUpgrade::NeedToUpgrade() {
  standalone::Feature* const feature = standalone::FeatureOf(Extended());
  if (Failed(standalone::Checkpoint::Pass("VLMISamUpgrade::NeedToUpgrade", feature))) return 0;
  return feature != nullptr && !feature->removed && standalone::DiffersFromLayout(*feature) ? 1 : 0;
}

HRESULT VLMEAnalysisUpgrade::Upgrade() {
  standalone::Feature* const feature = standalone::FeatureOf(Extended());
  if (const HRESULT entered = standalone::Checkpoint::Pass("VLMISamUpgrade::Upgrade", feature);
      Failed(entered)) {
    return entered;
  }
  if (feature == nullptr || feature->removed || standalone::LayoutOf(*feature->type).empty()) return E_FAIL;
  standalone::CompleteComponents(*feature);
  return S_OK;
}
