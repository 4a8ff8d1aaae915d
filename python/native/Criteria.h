#pragma once

#include <pybind11/pybind11.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hvxupgrade/Feature.h"
#include "native/HeldDocument.h"

namespace python {

/// What a feature must be to be found: all that is set here.
class Criteria {
 public:
  std::optional<std::string> lateType;
  std::optional<std::string> name;
  std::optional<std::string> alias;
  std::optional<HeldFeature> father;

  /// The attribute must be there and hold that. Numbers are compared as numbers, whatever their kind.
  void AddAttribute(std::string key, hvxupgrade::Value value);

  [[nodiscard]] bool Fits(const hvxupgrade::Feature& feature) const;

 private:
  std::vector<std::pair<std::string, hvxupgrade::Value>> attributes_;
};

}  // namespace python
