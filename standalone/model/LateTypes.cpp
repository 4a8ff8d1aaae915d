#include "model/LateTypes.h"

#include <deque>
#include <unordered_map>
#include <vector>

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

class Table {
 public:
  Table() {
    for (const auto& [lateType, base] : kDerivations) Add(lateType, VLMMetaClass::Find(base), true);
  }

  const LateType& Of(std::string_view name) {
    const auto found = types_.find(NameTable::Find(name));
    return found != types_.end() ? *found->second : Add(name, VLMMetaClass::Find(kind::kFeature), false);
  }

 private:
  const LateType& Add(std::string_view name, const VLMMetaClass* base, bool isOfHost) {
    const NameId id = NameTable::Intern(name);
    const VLMMetaClass& metaClass =
        VLMMetaClass::LateType(name, base != nullptr ? base : &VLMMetaClass::BaseUnknown());
    return *types_.emplace(id, &all_.emplace_back(id, metaClass, isOfHost)).first->second;
  }

  std::deque<LateType> all_;
  std::unordered_map<NameId, const LateType*> types_;
};

}  // namespace

LateType::LateType(NameId name, const VLMMetaClass& metaClass, bool isOfHost)
    : name_(name),
      isOfHost_(isOfHost),
      isAnalysisModel_(metaClass.IsAKindOf(kind::kAnalysisModel)),
      isAnalysisSet_(metaClass.IsAKindOf(kind::kAnalysisSet)),
      metaClass_(metaClass),
      text_(metaClass.Name()) {}

const LateType& LateType::Of(std::string_view name) {
  static Table table;
  return table.Of(name);
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
