#pragma once

#include "base/VLMUnicodeString.h"

/// \file
/// The upgrade identifiers, oldest first. Documents record them, so a name once released stays as it is. Each
/// source file holds its own copies.

const VLMUnicodeString kAcmeBoltDiameterInMetres("AcmeBoltDiameterInMetres");
const VLMUnicodeString kAcmeBoltStrengths("AcmeBoltStrengths");
