#include "model/LateTypes.h"

#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/OfThread.h"
#include "base/VLMRegistry.h"
#include "model/KeyedHash.h"
#include "model/RecentTexts.h"

namespace standalone {
namespace {

struct Derivation {
  std::string_view lateType;
  std::string_view base;
};

// Bases stand before what derives from them.
constexpr Derivation kDerivations[] = {
    {kind::kFeature, "VLMBaseUnknown"},
    {kind::kAnalysisModel, kind::kFeature},
    {kind::kAnalysisSet, kind::kFeature},
    {kind::kAnalysisCase, kind::kAnalysisSet},
    {kind::kStep, kind::kAnalysisSet},
    {kind::kAnalysisEntity, kind::kFeature},
    {kind::kConnector, kind::kFeature},
    {kind::kBasicComponent, kind::kFeature},
    {kind::kParameter, kind::kFeature},
    {kind::kMeshPart, kind::kAnalysisEntity},
    {kind::kGroup, kind::kAnalysisEntity},
    {kind::kContainer, kind::kFeature},
    {kind::kPart, kind::kFeature},
    {kind::kGeometry, kind::kFeature},
    {kind::kProduct, kind::kFeature},

    // The frame of an analysis document.
    {"AnalysisModel", kind::kAnalysisModel},
    {"AnalysisCase", kind::kAnalysisCase},
    {"PropertySet", kind::kAnalysisSet},
    {"MSHMeshSet", kind::kAnalysisSet},
    {"SAMGroupSet", kind::kAnalysisSet},
    {"SAMConnectionSet", kind::kAnalysisSet},
    {"HVXHalvexPropertySetLT", kind::kAnalysisSet},
    {"HVXSimulationHistoryLT", kind::kAnalysisSet},
    {"HVXJobContainerLT", kind::kAnalysisSet},
    {"HVXDisplayGroupsLT", kind::kAnalysisSet},
    {"HVXSolutionSensorsLT", kind::kAnalysisSet},
    {"HVXHacSolutionLT", kind::kAnalysisSet},
    {"HVXHacAnaStepSolLT", kind::kAnalysisSet},
    {"HVXJobLT", kind::kAnalysisEntity},

    // Steps and what stands beneath them.
    {"HVXInitialStepLT", kind::kStep},
    {"HVXGeneralStaticStepLT", kind::kStep},
    {"HVXHeatTransferStepLT", kind::kStep},
    {"HVXRiksStepLT", kind::kStep},
    {"HVXStaticLPStepLT", kind::kStep},
    {"HVXExplicitDynamicsStepLT", kind::kStep},
    {"HVXLoadContainerLT", kind::kAnalysisSet},
    {"HVXRestraintContainerLT", kind::kAnalysisSet},
    {"HVXInteractionContainerLT", kind::kAnalysisSet},
    {"HVXDatOutputRequestContainerLT", kind::kAnalysisSet},
    {"HVXHistoryOutputRequestContainerLT", kind::kAnalysisSet},
    {"HVXFieldOutputRequestContainerLT", kind::kAnalysisSet},
    {"HVXDatOutputLT", kind::kAnalysisEntity},
    {"HVXHistoryOutputLT", kind::kAnalysisEntity},
    {"HVXFieldOutputLT", kind::kAnalysisEntity},
    {"HVXNewFieldOutputLT", kind::kAnalysisEntity},

    // Prescribed conditions.
    {"HVXAccelerationBCLT", kind::kAnalysisEntity},
    {"HVXVelocityBCLT", kind::kAnalysisEntity},
    {"HVXDisplacementBC", kind::kAnalysisEntity},
    {"HVXClamp", kind::kAnalysisEntity},
    {"HVXConcentratedForce", kind::kAnalysisEntity},
    {"HVXPressure", kind::kAnalysisEntity},
    {"HVXGravity", kind::kAnalysisEntity},
    {"HVXRotationalBodyForce", kind::kAnalysisEntity},
    {"HVXTemperatureLT", kind::kAnalysisEntity},
    {"HVXInitialTemperatureLT", kind::kAnalysisEntity},
    {"HVXTemperatureHistoryLT", kind::kAnalysisEntity},
    {"HVXConcHeatFlux", kind::kAnalysisEntity},
    {"HVXSurfaceHeatFlux", kind::kAnalysisEntity},
    {"HVXBodyHeatFlux", kind::kAnalysisEntity},
    {"HVXFilmCondition", kind::kAnalysisEntity},
    {"HVXInitialVelocityLT", kind::kAnalysisEntity},
    {"HVXSubmodelBCLT", kind::kAnalysisEntity},

    // Interactions, constraints and connections.
    {"HVXSurfaceToSurfaceContactLT", kind::kAnalysisEntity},
    {"HVXContactConnectionEnhancementStdLT", kind::kAnalysisEntity},
    {"HVXContactConnectionEnhancementExplicitLT", kind::kAnalysisEntity},
    {"HVXContactControlsLT", kind::kAnalysisEntity},
    {"HVXInterferenceFitLT", kind::kAnalysisEntity},
    {"HVXTiedContactLT", kind::kAnalysisEntity},
    {"HVXRigidBodyConstraintLT", kind::kAnalysisEntity},
    {"HVXRigidCouplingLT", kind::kAnalysisEntity},
    {"HVXSmoothCouplingLT", kind::kAnalysisEntity},
    {"HVXSpringLT", kind::kAnalysisEntity},
    {"HVXDamperLT", kind::kAnalysisEntity},
    {"HVXARSurfLT", kind::kAnalysisEntity},
    {"HVXVirtualPartLT", kind::kAnalysisEntity},
    {"HVXRigidVirtualPartLT", kind::kAnalysisEntity},  // manages no mesh parts
    {"SAMFaceFaceContact", kind::kAnalysisEntity},
    {"SAMFaceFaceFastened", kind::kAnalysisEntity},
    {"ConstraintASM", kind::kAnalysisEntity},
    {"SAMGenericConnDesign", kind::kAnalysisEntity},

    // Properties and element assignments.
    {"HVXInteractionPropertyLT", kind::kAnalysisEntity},
    {"HVXTangentialBehaviorLT", kind::kAnalysisEntity},
    {"HVXShellSectionEnhLT", kind::kAnalysisEntity},
    {"HVXMatOrientationLT", kind::kAnalysisEntity},
    {"HVXGaskPropertyLT", kind::kAnalysisEntity},
    {"HVXPreTensionPropertyLT", kind::kAnalysisEntity},
    {"HVXGlobalElemAsgnLT", kind::kAnalysisSet},
    {"HVXGlobalElemAsgnEntryLT", kind::kAnalysisEntity},
    {"HVXLocalElemAsgnLT", kind::kAnalysisEntity},
    {"HVXElementAssignmentLT", kind::kAnalysisEntity},
    {"HVXSectionControlsLT", kind::kAnalysisEntity},

    // What the others rest on.
    {"GeometrySmartConnector", kind::kConnector},
    {"SAMBasicComponent", kind::kBasicComponent},
    {"Parameter", kind::kParameter},
    {"MSHMeshPart", kind::kMeshPart},
    {"MSHMeshingOperator", kind::kFeature},
    {"MSHConnectionMesher", kind::kFeature},
    {"SAMGroup", kind::kGroup},
    {"SAMProximityGroup", kind::kGroup},  // what it holds is not told
    {"PrtContainer", kind::kContainer},
    {"SAMContainer", kind::kContainer},
    {"Part", kind::kPart},
    {"MechanicalPart", kind::kGeometry},  // a body of a part
    {"Solid", kind::kGeometry},
    {"TopologicalBody", kind::kGeometry},
    {"ShapeBody", kind::kGeometry},  // a shape feature that is its own topological body
    {"GeometricalElement", kind::kGeometry},
    {"Surface", kind::kGeometry},
    {"Edge", kind::kGeometry},
    {"Point", kind::kGeometry},
    {"Axis", kind::kGeometry},
    {"Product", kind::kProduct},
};

}  // namespace

class LateTypeTable {
 public:
  static LateTypeTable& Instance() {
    // Never destroyed: documents may be closed when all statics are gone.
    static auto* const table = new LateTypeTable;
    return *table;
  }

  const LateType& Of(std::string_view name) {
    if (const LateType* const known = FindForEver(name)) return *known;
    const std::unique_lock lock(mutex_);
    Entry& entry = FindOrMake(name);
    static_cast<void>(VLMMetaClass::LateType(name));  // stays as well
    entry.type.isForEver_.store(true, std::memory_order_relaxed);
    return entry.type;
  }

  LateType::Held Hold(std::string_view name) {
    if (const LateType* const known = FindForEver(name)) return {*known, false};
    const std::unique_lock lock(mutex_);
    Entry& entry = FindOrMake(name);
    if (entry.type.IsForEver()) return {entry.type, false};
    ++entry.holders;
    return {entry.type, true};
  }

  void Release(const LateType& type) noexcept {
    const std::unique_lock lock(mutex_);
    const auto found = types_.find(type.Name());
    if (--found->second->holders != 0 || type.IsForEver()) return;
    const std::unique_ptr<Entry> gone = std::move(found->second);
    types_.erase(found);
    VLMRegistry::Instance().ForgetLateType(type.Name());
    if (gone->isNameCounted) NameTable::Release(type.Id());
  }

 private:
  // What a thread met lately of those that stay for ever.
  struct RecentType {
    std::string_view text;
    const LateType* type = nullptr;
  };
  using RecentTypes = RecentTexts<RecentType>;

  struct Entry {
    Entry(NameTable::Held name, const VLMMetaClass& metaClass, bool isOfHost)
        : type(name.id, metaClass, isOfHost), isNameCounted(name.isCounted) {}

    LateType type;
    bool isNameCounted;
    std::uint32_t holders = 0;
  };

  LateTypeTable() {
    for (const auto& [lateType, base] : kDerivations) {
      const VLMMetaClass& metaClass = VLMMetaClass::LateType(lateType, &Base(base));
      Add({NameTable::Intern(lateType), false}, metaClass, true).type.isForEver_ = true;
    }
  }

  static const VLMMetaClass& Base(std::string_view name) {
    const VLMMetaClass* const known = VLMMetaClass::Find(name);
    return known != nullptr ? *known : VLMMetaClass::BaseUnknown();
  }

  const LateType* FindForEver(std::string_view name) const {
    RecentTypes* const recentTypes = name.empty() ? nullptr : OfThread<RecentTypes>::Get();
    RecentType* const recent = recentTypes == nullptr ? nullptr : &recentTypes->PlaceOf(name);
    if (recent != nullptr && recent->text == name) return recent->type;
    const std::shared_lock lock(mutex_);
    const auto found = types_.find(name);
    if (found == types_.end() || !found->second->type.IsForEver()) return nullptr;
    if (recent != nullptr) *recent = {found->first, &found->second->type};
    return &found->second->type;
  }

  // Of these, the caller holds the mutex.
  Entry& FindOrMake(std::string_view name) {
    if (const auto found = types_.find(name); found != types_.end()) return *found->second;
    const VLMMetaClass& metaClass = VLMRegistry::Instance().LateTypeOfDocument(name, &Base(kind::kFeature));
    return Add(NameTable::Hold(name), metaClass, false);
  }
  Entry& Add(NameTable::Held name, const VLMMetaClass& metaClass, bool isOfHost) {
    auto entry = std::make_unique<Entry>(name, metaClass, isOfHost);
    return *types_.emplace(entry->type.Name(), std::move(entry)).first->second;
  }

  mutable std::shared_mutex mutex_;
  std::unordered_map<std::string_view, std::unique_ptr<Entry>, KeyedHash> types_;
};

LateType::LateType(NameId name, const VLMMetaClass& metaClass, bool isOfHost)
    : name_(name),
      isOfHost_(isOfHost),
      isAnalysisModel_(metaClass.IsAKindOf(kind::kAnalysisModel)),
      isAnalysisSet_(metaClass.IsAKindOf(kind::kAnalysisSet)),
      metaClass_(metaClass),
      text_(metaClass.Name()) {}

LateType::~LateType() {
  for (const std::atomic<const Note*>& note : notes_) delete note.load(std::memory_order_acquire);
}

const LateType& LateType::Of(std::string_view name) {
  return LateTypeTable::Instance().Of(name);
}

LateType::Held LateType::Hold(std::string_view name) {
  return LateTypeTable::Instance().Hold(name);
}

void LateType::Release(const LateType& type) noexcept {
  LateTypeTable::Instance().Release(type);
}

std::span<const std::string_view> LateType::NamesOfHost() {
  static const std::vector<std::string_view> names = [] {
    std::vector<std::string_view> all;
    for (const Derivation& derivation : kDerivations) {
      // Kinds, which no feature is of, stand first.
      if (!derivation.lateType.starts_with("VLM") && derivation.lateType != kind::kStep)
        all.push_back(derivation.lateType);
    }
    return all;
  }();
  return names;
}

}  // namespace standalone
