#pragma once

#include <initializer_list>
#include <string_view>

#include "adapters/FeatureAdapter.h"
#include "base/VLMLibrary.h"
#include "model/LateTypes.h"

namespace standalone {

/// Binds `Adapter` to late types or kinds.
template <class Adapter>
void Bind(VLMLibrary& host, std::initializer_list<std::string_view> lateTypes) {
  for (const std::string_view lateType : lateTypes) {
    // Every late type of the host stands in the table that this looks in, so none comes to be without its
    // kind.
    static_cast<void>(LateType::Of(lateType));
    static_cast<void>(host.DeclareTie(VLMMetaClass::LateType(lateType), Adapter::AdaptedInterface::kId,
                                      &MakeAdapter<Adapter>));
  }
}

// One per source file of adapters; called once, when the host is loaded.
void BindFeatureAdapters(VLMLibrary& host);
void BindComponentAdapters(VLMLibrary& host);
void BindSupportAdapters(VLMLibrary& host);
void BindGeometryAdapters(VLMLibrary& host);
void BindAnalysisSetAdapters(VLMLibrary& host);
void BindCaseAdapters(VLMLibrary& host);
void BindStepAdapters(VLMLibrary& host);
void BindMotionAdapters(VLMLibrary& host);
void BindConditionAdapters(VLMLibrary& host);
void BindJobAdapters(VLMLibrary& host);
void BindInteractionAdapters(VLMLibrary& host);
void BindSolutionAdapters(VLMLibrary& host);
void BindConstraintAdapters(VLMLibrary& host);
void BindSpringAdapters(VLMLibrary& host);
void BindPropertyAdapters(VLMLibrary& host);
void BindOutputAdapters(VLMLibrary& host);
void BindElementAssignmentAdapters(VLMLibrary& host);
void BindSectionControlsAdapters(VLMLibrary& host);
void BindMeshAdapters(VLMLibrary& host);
void BindContactAdapters(VLMLibrary& host);

}  // namespace standalone
