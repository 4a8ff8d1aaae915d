#pragma once

#include <memory>
#include <vector>

#include "base/VLMBaseUnknown.h"

/// \file
/// The tangential behavior of an interaction property in the solver's interaction model, with the arrays that
/// it takes and the proxy that holds it.

/// An array of reals of the interaction model, such as one row of a table.
using HVXCftArraydouble = std::vector<double>;

/// A table of the interaction model: an array of rows.
using HVXCftArrayHVXCftArrayDouble = std::vector<HVXCftArraydouble>;

/// How two surfaces in contact resist sliding. What is set here is set in the property at once.
class HVXTangentialBehavior {
 public:
  enum frictionFormulationEnm : int {
    kFrictionless = 0,
    kPenalty = 1,
    kRough = 2,
    kUserDefined = 3,  ///< Friction is computed by a user subroutine.
  };

  HVXTangentialBehavior(const HVXTangentialBehavior&) = delete;
  HVXTangentialBehavior& operator=(const HVXTangentialBehavior&) = delete;
  virtual ~HVXTangentialBehavior() = default;

  /// True when the behavior is marked as defined by a user subroutine.
  [[nodiscard]] virtual bool IsUserSubroutine() const = 0;

  /// Sets the friction table. Each row has four entries: friction coefficient, slip rate, contact pressure,
  /// temperature. E_FAIL, and the table stays as it is, for a row of another length.
  virtual HRESULT SetFrictionTable(const HVXCftArrayHVXCftArrayDouble& table) = 0;

  virtual HRESULT SetFrictionFormulation(frictionFormulationEnm formulation) = 0;

 protected:
  HVXTangentialBehavior() = default;
};

/// Holds the tangential behavior of one interaction property from `Fill` to `Release` or its own end.
class HVXGenHeapObjectProxyHVXTangentialBehavior {
 public:
  /// Makes the behavior of `interactionProperty` and holds it, in place of the one held before. E_FAIL, and
  /// nothing is held, for a null feature or one without a tangential behavior.
  HRESULT Fill(const VLMBaseUnknown_var& interactionProperty);

  /// Lets go of the behavior. What was set through it stays.
  void Release() noexcept { behavior_.reset(); }

  /// The behavior, which stays the proxy's; null when none is held.
  [[nodiscard]] HVXTangentialBehavior* Get() const noexcept { return behavior_.get(); }

 private:
  std::unique_ptr<HVXTangentialBehavior> behavior_;
};
