#pragma once

#include <stdexcept>
#include <string>

/// A broken assumption of a plug-in: something mandatory is missing. Carries what was assumed and which
/// source did.
class VLMFatalAssertion : public std::runtime_error {
 public:
  VLMFatalAssertion(const char* message, const char* sourcePath)
      : std::runtime_error(message), sourcePath_(sourcePath) {}

  /// The source of the class that stopped, such as "HVXUpgradeComponents.m/src/HVXEGasketPropertyUpgrade".
  [[nodiscard]] const std::string& SourcePath() const noexcept { return sourcePath_; }

 private:
  std::string sourcePath_;
};

/// The fatal assertion. Does not return: throws `VLMFatalAssertion`, which ends the work on the current
/// document.
[[noreturn]] void VLMFatalError(const char* message, const char* sourcePath);
