#include "check/LinkTargets.h"

#include <algorithm>

#include "model/Document.h"

namespace standalone {
namespace {

const LinkTarget kTargets[] = {
    {kind::kPart, {kind::kGeometry}, {"MainBody"}},
    {kind::kAnalysisEntity,
     {"SAMFaceFaceContact", "SAMFaceFaceFastened", "ConstraintASM", "SAMGenericConnDesign"},
     {"connectionProperty"}},
    {"SAMFaceFaceContact", {"HVXInterferenceFitLT"}, {"InterferenceFit"}},
    {"HVXContactConnectionEnhancementStdLT", {"HVXInterferenceFitLT"}, {"InterferenceFit"}},
    {"HVXContactConnectionEnhancementStdLT", {"HVXContactControlsLT"}, {"ContactControl"}},
    {"HVXContactConnectionEnhancementExplicitLT", {"HVXContactControlsLT"}, {"ContactControl"}},
    {"HVXSpringLT", {kind::kMeshPart}, {"MeshPart"}},
    {"HVXDamperLT", {kind::kMeshPart}, {"MeshPart"}},
    {"HVXARSurfLT", {kind::kMeshPart}, {"MeshPart"}},
    {kind::kAnalysisEntity, {"SAMGenericConnDesign"}, {"ConnectionDesigns"}},
    {kind::kMeshPart, {"MSHMeshingOperator"}, {"MeshingOperator"}},
    {"MSHMeshingOperator", {"MSHConnectionMesher"}, {"ConnectionMesher"}},
    {"MSHConnectionMesher", {kind::kMeshPart}, {"MeshParts"}},
    {"HVXVirtualPartLT", {kind::kMeshPart}, {"MeshParts"}},
    {"HVXInteractionPropertyLT", {"HVXTangentialBehaviorLT"}, {"tangentialBehavior"}},
    {"HVXShellSectionEnhLT", {"HVXMatOrientationLT"}, {"MaterialOrientation"}},
    {"HVXGlobalElemAsgnLT", {"HVXGlobalElemAsgnEntryLT"}, {"Entries"}},
    {"HVXGlobalElemAsgnEntryLT", {"HVXElementAssignmentLT"}, {"ElementAssignments"}},
    {"HVXLocalElemAsgnLT", {"HVXElementAssignmentLT"}, {"ElementAssignments", "HVXListElementAsgnSpec"}},
    {"HVXElementAssignmentLT", {"HVXSectionControlsLT"}, {"SectionControlsSpec"}},
    {"HVXHacSolutionLT", {kind::kAnalysisCase}, {"AnalysisCase", "WorkingCase"}},
    {"HVXJobLT", {kind::kAnalysisCase}, {"AnalysisCase"}},
};

}  // namespace

std::span<const LinkTarget> LinkTargets() {
  return kTargets;
}

bool LeadsElsewhere(const Value& value, const LinkTarget& target) {
  if (value.Kind() == ValueKind::kList)
    return std::ranges::any_of(value.Entries(),
                               [&target](const Value& each) { return LeadsElsewhere(each, target); });
  if (value.Kind() != ValueKind::kLink || value.Target() == nullptr) return false;
  const VLMMetaClass& type = value.Target()->type->MetaClass();
  return std::ranges::none_of(target.targets,
                              [&type](std::string_view each) { return type.IsAKindOf(each); });
}

}  // namespace standalone
