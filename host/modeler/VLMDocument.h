#pragma once

#include "base/VLMBaseUnknown.h"

/// A document: what is opened, upgraded and saved as a whole. Everything about it goes through
/// `HVXAnalysisDocUtils`.
class VLMDocument : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMDocument"};

  /// The name that the document goes by in messages, usually its file's.
  virtual VLMUnicodeString GetDisplayName() = 0;
};
using VLMDocument_var = VLMHandle<VLMDocument>;
