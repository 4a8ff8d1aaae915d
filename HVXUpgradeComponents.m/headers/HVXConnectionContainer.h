#pragma once

#include "modeler/VLMDocument.h"

/// \file
/// The container that steps of the current model keep their connections in.

/// Gives the step the container that it lacks, beside its "Loads"; 0 or a positive code when it has one. A
/// null document stands for the one being opened. A new container stays, unordered, in a step without
/// "Loads".
HRESULT HVXAddConnectionContainer(const VLMBaseUnknown_var& step, const VLMDocument_var& spDocument);

/// The same for a step that must stand in a document: E_FAIL when it does not.
HRESULT HVXAddConnectionContainerToStep(const VLMBaseUnknown_var& step);
