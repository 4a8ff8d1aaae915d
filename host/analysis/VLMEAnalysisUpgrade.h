#pragma once

#include "base/VLMTie.h"

/// The host's upgrade of the basic components of analysis features, as a base class for the extensions that
/// bind it to late types. What the two operations do is told at `VLMISamUpgrade`.
class VLMEAnalysisUpgrade : public VLMExtension {
 public:
  using VLMExtension::VLMExtension;

  unsigned char NeedToUpgrade();
  HRESULT Upgrade();

 protected:
  ~VLMEAnalysisUpgrade() = default;
};
