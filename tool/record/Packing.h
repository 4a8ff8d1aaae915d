#pragma once

#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace tool {

/// `value` as bytes for the same program, and back. A type takes part by a static template
/// `VisitFields(self, raw, text)`, one for both directions: it calls `raw` for plain fields and `text` for
/// texts.
template <class Value>
[[nodiscard]] std::string PackFields(const Value& value) {
  std::string bytes;
  const auto raw = [&bytes](const auto& field) {
    static_assert(std::is_trivially_copyable_v<std::remove_cvref_t<decltype(field)>>);
    bytes.append(reinterpret_cast<const char*>(&field), sizeof field);
  };
  Value::VisitFields(value, raw, [&](const std::string& field) {
    raw(field.size());
    bytes += field;
  });
  return bytes;
}

template <class Value>
[[nodiscard]] Value UnpackFields(std::string_view bytes) {
  Value value;
  const auto raw = [&bytes](auto& field) {
    std::memcpy(&field, bytes.data(), sizeof field);
    bytes.remove_prefix(sizeof field);
  };
  Value::VisitFields(value, raw, [&](std::string& field) {
    std::size_t size = 0;
    raw(size);
    field = bytes.substr(0, size);
    bytes.remove_prefix(size);
  });
  return value;
}

}  // namespace tool
