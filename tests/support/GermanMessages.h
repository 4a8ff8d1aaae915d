#pragma once

#include "session/Messages.h"

namespace testing_support {

/// German messages for the life of this object, English ones after it.
class GermanMessages {
 public:
  GermanMessages() { standalone::Messages::Use(HVX_SOURCE_DIR "/standalone/messages", "de"); }
  ~GermanMessages() { standalone::Messages::Use(HVX_SOURCE_DIR "/standalone/messages", "en"); }
  GermanMessages(const GermanMessages&) = delete;
  GermanMessages& operator=(const GermanMessages&) = delete;
};

}  // namespace testing_support
