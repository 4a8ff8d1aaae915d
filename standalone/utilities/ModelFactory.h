#pragma once

#include "analysis/VLMISamAnalysisModelFactory.h"
#include "model/Document.h"

namespace standalone {

/// The factory of a document's analysis objects.
VLMISamAnalysisModelFactory_var MakeModelFactory(Document& document);

}  // namespace standalone
