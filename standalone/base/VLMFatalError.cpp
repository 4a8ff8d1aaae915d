#include "base/VLMFatalError.h"

#include "base/VLMBaseUnknown.h"

void VLMFatalError(const char* message, const char* sourcePath) {
  throw VLMFatalAssertion(message, sourcePath);
}

void VLMThrowErrorNullVar() {
  throw VLMNullVarError();
}
