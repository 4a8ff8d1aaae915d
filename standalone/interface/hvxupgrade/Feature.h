#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hvxupgrade/Value.h"

namespace standalone {
class Feature;  // inside
}

namespace hvxupgrade {

/// One stored object of a document: a light handle, free to copy, which is valid as long as its document, and
/// belongs to the same thread. All operations but `Id`, `IsRemoved` and comparison throw `Error` (`kUsage`)
/// for a feature that was removed; those that change it do so while the document is upgraded or written.
/// Texts that are views live until the feature is changed or the document goes. Two handles are equal when
/// they are on one feature.
class HVXUPGRADE_API Feature {
 public:
  [[nodiscard]] FeatureId Id() const;
  [[nodiscard]] bool IsRemoved() const;
  [[nodiscard]] std::string_view LateType() const;  ///< What it is, such as "HVXPressure".
  [[nodiscard]] std::string_view Name() const;      ///< The internal name; may be empty.
  [[nodiscard]] std::string_view Alias() const;     ///< The name shown to the user; may be empty.
  /// Such as "THERMAL_STATIC_LINEAR"; mostly empty.
  [[nodiscard]] std::string_view PhysicalType() const;
  [[nodiscard]] bool IsUpToDate() const;                   ///< False when the workbench is to rebuild it.
  [[nodiscard]] std::optional<Feature> Father() const;     ///< That beneath which it stands; none for a root.
  [[nodiscard]] std::optional<Feature> Container() const;  ///< The feature that holds it; none without one.
  /// Those directly beneath it, in order.
  [[nodiscard]] std::vector<Feature> Sons() const;

  [[nodiscard]] std::vector<std::string_view> Keys() const;  ///< Of its attributes, in their order.
  [[nodiscard]] bool Has(std::string_view key) const;
  /// The attribute's value; none when the feature lacks it. A link to a feature that was removed is gone.
  [[nodiscard]] std::optional<Value> Get(std::string_view key) const;
  /// The mode that is kept beside the value; 0 without the attribute.
  [[nodiscard]] std::int32_t Mode(std::string_view key) const;

  /// Throws `Error` (`kUsage`) for text that is not UTF-8.
  void SetAlias(std::string_view alias);
  void SetUpToDate(bool upToDate);
  /// Sets the attribute, adding it at the end when the feature lacks it; its mode stays. Throws `Error`
  /// (`kUsage`) for what no document could hold: an empty key, a real that is not finite, text that is not
  /// UTF-8 or longer than a line may be (256 MiB), lists more than 8 deep, a link to a feature that is not in
  /// the document.
  void Set(std::string_view key, const Value& value);
  /// Takes the attribute away; false when there was none.
  bool Remove(std::string_view key);

  friend bool operator==(const Feature&, const Feature&) = default;

 private:
  friend class Inside;
  explicit Feature(standalone::Feature* feature) : feature_(feature) {}

  standalone::Feature* feature_;
};

}  // namespace hvxupgrade
