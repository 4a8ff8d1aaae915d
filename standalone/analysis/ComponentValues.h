#pragma once

#include <concepts>

#include "analysis/Components.h"

namespace standalone {

// The value of a feature's component `name`. E_FAIL, and nothing changes, while the feature lacks the
// component, or while the component or the value that it holds is of another type.

namespace detail {

template <class T>
concept ComponentValue = std::same_as<T, double> || std::same_as<T, std::int32_t> || std::same_as<T, bool>;

template <ComponentValue T>
Feature* FindComponentOfType(Feature& feature, std::string_view name) {
  constexpr std::string_view kType = std::same_as<T, double>         ? "SAMDouble"
                                     : std::same_as<T, std::int32_t> ? "SAMInteger"
                                                                     : "SAMBoolean";
  Feature* const component = FindComponent(feature, name);
  if (component == nullptr) return nullptr;
  VLMUnicodeString type;
  static_cast<void>(ReadAttribute(*component, kComponentType, type));
  return type.View() == kType ? component : nullptr;
}

}  // namespace detail

template <detail::ComponentValue T>
HRESULT ReadComponent(Feature& feature, std::string_view name, T& value) {
  Feature* const component = detail::FindComponentOfType<T>(feature, name);
  return component == nullptr ? E_FAIL : ReadAttribute(*component, kComponentValues, value);
}

template <detail::ComponentValue T>
HRESULT WriteComponent(Feature& feature, std::string_view name, T value) {
  Feature* const component = detail::FindComponentOfType<T>(feature, name);
  return component == nullptr ? E_FAIL : ReplaceAttribute(*component, kComponentValues, value);
}

}  // namespace standalone
