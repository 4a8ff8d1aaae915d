// Contacts, the older and the newer view; what belongs to them; connection properties; ties.

#include "adapters/HostLibrary.h"
#include "analysis/Components.h"
#include "analysis/Contacts.h"
#include "analysis/Propagation.h"
#include "workbench/HVXIContactConnectionEnhancementExplicit.h"
#include "workbench/HVXIContactConnectionEnhancementStd.h"
#include "workbench/HVXIContactConnectionProp.h"
#include "workbench/HVXIContactControl.h"
#include "workbench/HVXIInterferenceFit.h"
#include "workbench/HVXIPropagatingFeature.h"
#include "workbench/HVXISurfaceToSurfaceContact.h"
#include "workbench/HVXITiedContact.h"

namespace standalone {
namespace {

const Key kContactKind("ContactKind");
const Key kClearanceFlag("ClearanceFlag");
const Key kClearance("Clearance");

// The older view has keys of its own, so that a converted contact holds both.
const Key kOldInteractionProperty("interactionProperty");
const Key kOldSurfacesSwapped("surfacesSwapped");
const Key kOldFirstSurfaceReversed("firstSurfaceReversed");
const Key kOldSecondSurfaceReversed("secondSurfaceReversed");
const Key kOldAdjustmentTolerance("adjustTolVal_param");
const Key kOldSlidingFormulation("slidingFormulation");
const Key kOldAdjustment("adjustment");
const Key kOldAdjustmentGroup("adjustmentGroup");
const Key kOldThicknessOption("thicknessOption");
const Key kOldConstraintEnforcement("constraintEnforcement");

constexpr std::int32_t kStandardKind = 1;

class ConnectionPropertyAdapter final : public FeatureAdapter<HVXIContactConnectionProp> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetKind(std::int32_t& propertyKind) override {
    return ReadOr("HVXIContactConnectionProp::GetKind", kContactKind, propertyKind, kStandardKind);
  }
  HRESULT GetClearanceFlag(unsigned char& flag) override {
    return ReadOr<unsigned char>("HVXIContactConnectionProp::GetClearanceFlag", kClearanceFlag, flag, 0);
  }
  HRESULT GetClearance(float& clearance) override {
    return ReadOr("HVXIContactConnectionProp::GetClearance", kClearance, clearance, 0.0F);
  }
  HRESULT GetInterferenceFit(VLMBaseUnknown_var& fit) override {
    return ReadLink("HVXIContactConnectionProp::GetInterferenceFit", kInterferenceFit, fit);
  }
};

class OldContactAdapter final : public FeatureAdapter<HVXISurfaceToSurfaceContact> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetInteractionProperty(VLMBaseUnknown_var& property) override {
    return ReadLink("HVXISurfaceToSurfaceContact::GetInteractionProperty", kOldInteractionProperty, property);
  }
  unsigned char GetSurfacesSwapped() override {
    unsigned char swapped = 0;
    static_cast<void>(Read("HVXISurfaceToSurfaceContact::GetSurfacesSwapped", kOldSurfacesSwapped, swapped));
    return swapped;
  }
  HRESULT GetFirstSurfaceReversed(unsigned char& reversed) override {
    return ReadOr<unsigned char>("HVXISurfaceToSurfaceContact::GetFirstSurfaceReversed",
                                 kOldFirstSurfaceReversed, reversed, 0);
  }
  HRESULT GetSecondSurfaceReversed(unsigned char& reversed) override {
    return ReadOr<unsigned char>("HVXISurfaceToSurfaceContact::GetSecondSurfaceReversed",
                                 kOldSecondSurfaceReversed, reversed, 0);
  }
  HRESULT GetAdjustmentTolerance(double& tolerance) override {
    if (const HRESULT entered =
            Enter("HVXISurfaceToSurfaceContact::GetAdjustmentTolerance", kOldAdjustmentTolerance.Text());
        Failed(entered)) {
      return entered;
    }
    Feature* const parameter = LinkedFeature(Self(), kOldAdjustmentTolerance);
    return parameter == nullptr ? E_FAIL : ReadAttribute(*parameter, kParameterValue, tolerance);
  }
  HRESULT GetSlidingFormulation(std::int32_t& code) override {
    return ReadOr("HVXISurfaceToSurfaceContact::GetSlidingFormulation", kOldSlidingFormulation, code, 0);
  }
  HRESULT GetAdjustment(std::int32_t& code) override {
    return ReadOr("HVXISurfaceToSurfaceContact::GetAdjustment", kOldAdjustment, code, 0);
  }
  HRESULT GetAdjustmentGroup(VLMBaseUnknown_var& group) override {
    return ReadLink("HVXISurfaceToSurfaceContact::GetAdjustmentGroup", kOldAdjustmentGroup, group);
  }
  HRESULT GetThicknessOption(unsigned char& option) override {
    return ReadOr<unsigned char>("HVXISurfaceToSurfaceContact::GetThicknessOption", kOldThicknessOption,
                                 option, 0);
  }
  HRESULT GetConstraintEnforcement(std::int32_t& code) override {
    return ReadOr("HVXISurfaceToSurfaceContact::GetConstraintEnforcement", kOldConstraintEnforcement, code,
                  0);
  }
};

// What all views of a contact pair share.
template <class Interface>
class PairAdapter : public FeatureAdapter<Interface> {
 public:
  using FeatureAdapter<Interface>::FeatureAdapter;

  HRESULT GetBasicComponentHolder(VLMISamBasicComponent_var& holder) override {
    holder = NULL_var;
    if (const HRESULT entered = this->Enter("HVXIContactConnectionEnhancement::GetBasicComponentHolder");
        Failed(entered)) {
      return entered;
    }
    holder = HandleOn<VLMISamBasicComponent>(ContactSettingsOf(this->Self()));
    return S_OK;
  }

 protected:
  ~PairAdapter() override = default;
};

class AnyPairAdapter final : public PairAdapter<HVXIContactConnectionEnhancement> {
 public:
  using PairAdapter::PairAdapter;
};

class ExplicitPairAdapter final : public PairAdapter<HVXIContactConnectionEnhancementExplicit> {
 public:
  using PairAdapter::PairAdapter;

  HRESULT GetContactControl(VLMBaseUnknown_var& control) override {
    return ReadLink("HVXIContactConnectionEnhancementExplicit::GetContactControl", kContactControl, control);
  }
};

class StandardPairAdapter final : public PairAdapter<HVXIContactConnectionEnhancementStd> {
 public:
  using PairAdapter::PairAdapter;

  HRESULT GetContactControl(VLMBaseUnknown_var& control) override {
    return ReadLink("HVXIContactConnectionEnhancementStd::GetContactControl", kContactControl, control);
  }
  HRESULT GetInterferenceFit(VLMBaseUnknown_var& fit) override {
    return ReadLink("HVXIContactConnectionEnhancementStd::GetInterferenceFit", kInterferenceFit, fit);
  }
  HRESULT SetInteractionProperty(const VLMBaseUnknown_var& property) override {
    return SetLink("HVXIContactConnectionEnhancementStd::SetInteractionProperty", kInteractionProperty,
                   property);
  }
  HRESULT SetSurfacesSwapped(unsigned char swapped) override {
    return Write("HVXIContactConnectionEnhancementStd::SetSurfacesSwapped", kSurfacesSwapped, swapped);
  }
  HRESULT SetFirstSurfaceReversed(unsigned char reversed) override {
    return Write("HVXIContactConnectionEnhancementStd::SetFirstSurfaceReversed", kFirstSurfaceReversed,
                 reversed);
  }
  HRESULT SetSecondSurfaceReversed(unsigned char reversed) override {
    return Write("HVXIContactConnectionEnhancementStd::SetSecondSurfaceReversed", kSecondSurfaceReversed,
                 reversed);
  }
  HRESULT SetAdjustmentTolerance(const double& tolerance) override {
    return Write("HVXIContactConnectionEnhancementStd::SetAdjustmentTolerance", kAdjustmentTolerance,
                 tolerance);
  }
  HRESULT SetSlidingFormulation(std::int32_t code) override {
    return SetCode("HVXIContactConnectionEnhancementStd::SetSlidingFormulation", kSlidingFormulation, code,
                   1);
  }
  HRESULT SetAdjustment(std::int32_t code) override {
    return SetCode("HVXIContactConnectionEnhancementStd::SetAdjustment", kAdjustment, code, 2);
  }
  HRESULT SetAdjustmentGroup(const VLMBaseUnknown_var& group) override {
    return SetLink("HVXIContactConnectionEnhancementStd::SetAdjustmentGroup", kAdjustmentGroup, group);
  }
  HRESULT SetSearchTolerance(double tolerance) override {
    return Write("HVXIContactConnectionEnhancementStd::SetSearchTolerance", kSearchTolerance, tolerance);
  }
  HRESULT SetOverclosureTolerance(double tolerance) override {
    return Write("HVXIContactConnectionEnhancementStd::SetOverclosureTolerance", kOverclosureTolerance,
                 tolerance);
  }
  HRESULT SetAutomaticTolerances(unsigned char automatic) override {
    return Write("HVXIContactConnectionEnhancementStd::SetAutomaticTolerances", kAutomaticTolerances,
                 automatic);
  }

 private:
  HRESULT SetCode(std::string_view operation, const Key& key, std::int32_t code, std::int32_t last) const {
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    return code < 0 || code > last ? E_FAIL : ReplaceAttribute(Self(), key, code);
  }

  HRESULT SetLink(std::string_view operation, const Key& key, const VLMBaseUnknown_var& object) const {
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    Feature* const target = FeatureOf(object);
    if (target != nullptr && (target->removed || target->document != &Doc())) return E_FAIL;
    return ReplaceLink(Self(), key, target);
  }
};

class ContactControlAdapter final : public FeatureAdapter<HVXIContactControl> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT SetOverclosureToleranceMode(std::int32_t mode) override {
    Feature* const component = ModeComponent();
    if (const HRESULT entered = Enter("HVXIContactControl::SetOverclosureToleranceMode"); Failed(entered))
      return entered;
    return component == nullptr ? E_FAIL : ReplaceAttribute(*component, kComponentValues, mode);
  }
  HRESULT GetOverclosureToleranceMode(std::int32_t& mode) override {
    Feature* const component = ModeComponent();
    if (const HRESULT entered = Enter("HVXIContactControl::GetOverclosureToleranceMode"); Failed(entered))
      return entered;
    return component == nullptr ? E_FAIL : ReadAttribute(*component, kComponentValues, mode);
  }

 private:
  [[nodiscard]] Feature* ModeComponent() const { return FindComponent(Self(), "OverclosureToleranceMode"); }
};

class InterferenceFitAdapter final : public FeatureAdapter<HVXIInterferenceFit> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT SetFitType(std::int32_t type) override {
    return Write("HVXIInterferenceFit::SetFitType", kFitType, type);
  }
  HRESULT SetDefinition(std::int32_t definition) override {
    return Write("HVXIInterferenceFit::SetDefinition", kFitDefinition, definition);
  }
  HRESULT SetValue(double value) override { return Write("HVXIInterferenceFit::SetValue", kFitValue, value); }
  HRESULT GetFitType(std::int32_t& type) override {
    return ReadOr("HVXIInterferenceFit::GetFitType", kFitType, type, 0);
  }
  HRESULT GetDefinition(std::int32_t& definition) override {
    return ReadOr("HVXIInterferenceFit::GetDefinition", kFitDefinition, definition, 0);
  }
  HRESULT GetValue(double& value) override {
    return ReadOr("HVXIInterferenceFit::GetValue", kFitValue, value, 0.0);
  }
};

class TieMarkAdapter final : public FeatureAdapter<HVXITiedContact> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

class PropagatingFeatureAdapter final : public FeatureAdapter<HVXIPropagatingFeature> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetPropagationState() override {
    std::int32_t state = kCreatedHere;
    const HRESULT read =
        ReadOr("HVXIPropagatingFeature::GetPropagationState", kPropagationState, state, kCreatedHere);
    return Failed(read) ? read : state;
  }
};

}  // namespace

void BindContactAdapters(VLMLibrary& host) {
  Bind<ConnectionPropertyAdapter>(host, {"SAMFaceFaceContact"});
  Bind<OldContactAdapter>(host, {"HVXSurfaceToSurfaceContactLT", kStandardPair});
  Bind<AnyPairAdapter>(host, {kStandardPair, kExplicitPair});
  Bind<StandardPairAdapter>(host, {kStandardPair});
  Bind<ExplicitPairAdapter>(host, {kExplicitPair});
  Bind<ContactControlAdapter>(host, {"HVXContactControlsLT"});
  Bind<InterferenceFitAdapter>(host, {"HVXInterferenceFitLT"});
  Bind<TieMarkAdapter>(host, {"HVXTiedContactLT"});
  Bind<PropagatingFeatureAdapter>(host, {kStandardPair, kExplicitPair, "HVXNewFieldOutputLT"});
}

}  // namespace standalone
