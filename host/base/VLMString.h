#pragma once

#include <string>
#include <string_view>

/// The host's narrow string: names of catalogs, components and attribute keys. A value; plain ASCII by
/// convention.
class VLMString {
 public:
  VLMString() = default;
  // A literal stands wherever the host takes a name, so the conversion is implicit.
  // NOLINTNEXTLINE(google-explicit-constructor)
  VLMString(const char* text) : text_(text) {}
  // NOLINTNEXTLINE(google-explicit-constructor)
  VLMString(std::string_view text) : text_(text) {}

  [[nodiscard]] bool IsNull() const noexcept { return text_.empty(); }
  /// Ended by a zero byte; lives until this string is changed or destroyed.
  [[nodiscard]] const char* ConvertToChar() const noexcept { return text_.c_str(); }
  [[nodiscard]] std::string_view View() const noexcept { return text_; }

  friend bool operator==(const VLMString& left, const VLMString& right) = default;

 private:
  std::string text_;
};
