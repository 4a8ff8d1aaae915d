#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "model/NameTable.h"

namespace standalone {

class Feature;
class Value;

enum class ValueKind : std::uint8_t { kString, kInteger, kReal, kBoolean, kLink, kList };

/// The name of a kind as messages and the document format give it: "string", "integer", "real", ...
std::string_view NameOf(ValueKind kind);

/// What an attribute holds. A small value: texts and list entries live in the document's arena and are shared
/// by copies, so nothing may change them in place (see `Document::AppendToList` for the one exception).
class Value {
 public:
  static Value String(std::string_view text) {
    Value value(ValueKind::kString, static_cast<std::uint32_t>(text.size()));
    value.text_ = text.data();
    return value;
  }
  static Value Integer(std::int64_t number) {
    Value value(ValueKind::kInteger);
    value.integer_ = number;
    return value;
  }
  static Value Real(double number) {
    Value value(ValueKind::kReal);
    value.real_ = number;
    return value;
  }
  static Value Boolean(bool flag) {
    Value value(ValueKind::kBoolean);
    value.boolean_ = flag;
    return value;
  }
  /// A link; null is a link that holds nothing.
  static Value Link(Feature* target) {
    Value value(ValueKind::kLink);
    value.target_ = target;
    return value;
  }
  static Value List(std::span<Value> entries) {
    Value value(ValueKind::kList, static_cast<std::uint32_t>(entries.size()));
    value.entries_ = entries.data();
    return value;
  }
  Value() : Value(Link(nullptr)) {}

  [[nodiscard]] ValueKind Kind() const { return kind_; }
  // Each of these is for a value of its own kind only.
  [[nodiscard]] std::string_view AsString() const { return {text_, length_}; }
  [[nodiscard]] std::int64_t AsInteger() const { return integer_; }
  [[nodiscard]] double AsReal() const { return real_; }
  [[nodiscard]] bool AsBoolean() const { return boolean_; }
  [[nodiscard]] Feature* Target() const { return target_; }
  [[nodiscard]] std::span<Value> Entries() const { return {entries_, length_}; }

  /// Same kind and same content: reals bit by bit, links by target, lists entry by entry.
  friend bool operator==(const Value& left, const Value& right);

 private:
  explicit Value(ValueKind kind, std::uint32_t length = 0) : kind_(kind), length_(length), integer_(0) {}

  ValueKind kind_;
  std::uint32_t length_;
  union {
    std::int64_t integer_;
    double real_;
    bool boolean_;
    const char* text_;
    Feature* target_;
    Value* entries_;
  };
};

/// A named value of a feature.
struct Attribute {
  NameId key = kNoName;
  std::int32_t mode = 0;  ///< The integer that the host keeps beside the value.
  Value value;

  friend bool operator==(const Attribute&, const Attribute&) = default;
};

}  // namespace standalone
