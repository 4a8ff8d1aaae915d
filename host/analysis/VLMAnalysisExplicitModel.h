#pragma once

#include "modeler/VLMDocument.h"

/// The explicit analysis model of a document: the numbered nodes and elements that the solver sees. Belongs
/// to its document and lives as long as that does.
class VLMAnalysisExplicitModel {
 public:
  /// The explicit model of `document`; null when it has none or is null. Stays the document's.
  [[nodiscard]] static VLMAnalysisExplicitModel* GetDocumentModel(const VLMDocument_var& document);

  VLMAnalysisExplicitModel(const VLMAnalysisExplicitModel&) = delete;
  VLMAnalysisExplicitModel& operator=(const VLMAnalysisExplicitModel&) = delete;

 protected:
  VLMAnalysisExplicitModel() = default;
  ~VLMAnalysisExplicitModel() = default;
};
