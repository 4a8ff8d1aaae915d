#pragma once

#include <cstdint>

/// The host's result code: 0 or positive is success, negative is failure.
using HRESULT = std::int32_t;

inline constexpr HRESULT S_OK = 0;
/// The library's own general failure.
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
/// The object does not offer an interface that the operation needs.
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);

[[nodiscard]] constexpr bool Succeeded(HRESULT code) noexcept {
  return code >= 0;
}
[[nodiscard]] constexpr bool Failed(HRESULT code) noexcept {
  return code < 0;
}
