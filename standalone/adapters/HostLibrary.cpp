#include "adapters/HostLibrary.h"

#include "components/Component.h"

namespace standalone {
namespace {

// Registers the interfaces that this host offers when it is loaded. Stays until the process ends, like the
// registry.
const bool installed = [] {
  static auto* const host = new VLMLibrary("VLMStandaloneHost");
  BindFeatureAdapters(*host);
  BindComponentAdapters(*host);
  BindSupportAdapters(*host);
  BindGeometryAdapters(*host);
  BindAnalysisSetAdapters(*host);
  BindCaseAdapters(*host);
  BindStepAdapters(*host);
  BindMotionAdapters(*host);
  BindConditionAdapters(*host);
  BindJobAdapters(*host);
  BindInteractionAdapters(*host);
  BindSolutionAdapters(*host);
  BindConstraintAdapters(*host);
  BindSpringAdapters(*host);
  BindPropertyAdapters(*host);
  BindOutputAdapters(*host);
  BindElementAssignmentAdapters(*host);
  BindSectionControlsAdapters(*host);
  BindMeshAdapters(*host);
  BindContactAdapters(*host);
  DeclareContactFactory(*host);
  DeclarePropagationFactory(*host);
  return true;
}();

}  // namespace
}  // namespace standalone
