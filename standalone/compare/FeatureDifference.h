#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/Feature.h"

namespace standalone {

/// One field in which two states of a feature differ.
struct FieldDifference {
  std::string_view field;  ///< The document file's word for it: "type", "alias", "attributes", "modes", ...
  std::string_view key;    ///< The attribute's name, for "attributes" and "modes"; else empty.
  std::string before;      ///< The JSON text of the value; empty when the state had none.
  std::string after;
};

/// Whether the two states differ in any field. Costs no more than the comparison. Here as below, the states
/// may belong to two documents: links, fathers and containers are compared by id.
[[nodiscard]] bool Differ(const FeatureState& before, const FeatureState& after);

/// The fields in which the states differ, in the order of the document file. Null stands for a feature that
/// did not exist: everything that the other state holds is then a difference. Links are told by id, so they
/// may lead to features that are removed by now. The place among the brothers is no field.
[[nodiscard]] std::vector<FieldDifference> Differences(const FeatureState* before, const FeatureState* after);

}  // namespace standalone
