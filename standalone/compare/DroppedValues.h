#pragma once

#include <string_view>
#include <vector>

#include "model/Document.h"

namespace standalone {

/// Numbers and texts of one attribute of the old document that stand in nothing which the upgrade left or
/// made.
struct DroppedValues {
  const Feature* feature;
  NameId key;
  std::vector<Value> values;  ///< Numbers and texts, in their order in the attribute.
  /// What the attribute holds instead; null when the attribute, or the feature, is gone.
  const Value* instead;
};

/// Looks for each number and text that a changed or removed feature does not hold any more, the defaults 0
/// and "" apart, among what the upgrade wrote. There each occurrence answers for one; an integer, which is
/// mostly a code that stands in many places, only when it was written to the same feature, to what stands
/// beneath it, or to a brother of it. A real counts as the same as its single-precision form, and as itself
/// in radians where it was in degrees. A repeated value also stands where a brother of the same name still
/// holds it. Flags and names are not looked at. In the order of the first changes; the document must have no
/// dead links.
[[nodiscard]] std::vector<DroppedValues> FindDroppedValues(const Document& document);

}  // namespace standalone
