#pragma once

#include "workbench/HVXIContactConnectionEnhancement.h"

/// A contact pair of the standard solver. Codes and units are those of `HVXISurfaceToSurfaceContact`.
class HVXIContactConnectionEnhancementStd : public HVXIContactConnectionEnhancement {
 public:
  static constexpr VLMInterfaceId kId{"HVXIContactConnectionEnhancementStd"};

  /// Gives the contact control; null, with S_OK, when the contact has none.
  virtual HRESULT GetContactControl(VLMBaseUnknown_var& control) = 0;

  /// Gives the interference fit, to be cast to `HVXIInterferenceFit`; null, with S_OK, when the contact has
  /// none.
  virtual HRESULT GetInterferenceFit(VLMBaseUnknown_var& fit) = 0;

  /// Sets the interaction property; null takes it away.
  virtual HRESULT SetInteractionProperty(const VLMBaseUnknown_var& property) = 0;
  /// Sets whether the two surfaces change places as the two sides of the contact: 1 yes, 0 no.
  virtual HRESULT SetSurfacesSwapped(unsigned char swapped) = 0;
  /// Sets whether the first surface is used from its back: 1 yes, 0 no.
  virtual HRESULT SetFirstSurfaceReversed(unsigned char reversed) = 0;
  /// Sets whether the second surface is used from its back: 1 yes, 0 no.
  virtual HRESULT SetSecondSurfaceReversed(unsigned char reversed) = 0;
  /// Sets the distance within which nodes are moved onto the other surface.
  virtual HRESULT SetAdjustmentTolerance(const double& tolerance) = 0;
  /// Sets the sliding formulation: 0 finite, 1 small. E_FAIL for any other code.
  virtual HRESULT SetSlidingFormulation(std::int32_t code) = 0;
  /// Sets which nodes are moved onto the other surface: 0 none, 1 those within the tolerance, 2 those of a
  /// group. E_FAIL for any other code.
  virtual HRESULT SetAdjustment(std::int32_t code) = 0;
  /// Sets the group of nodes to move; null takes it away.
  virtual HRESULT SetAdjustmentGroup(const VLMBaseUnknown_var& group) = 0;

  /// Sets the distance within which the surfaces are taken to face each other. The first of the tolerances.
  virtual HRESULT SetSearchTolerance(double tolerance) = 0;
  /// Sets the overclosure up to which the surfaces are taken to touch, negative for a penetration. The second
  /// of the tolerances.
  virtual HRESULT SetOverclosureTolerance(double tolerance) = 0;
  /// Sets whether the solver chooses the two tolerances itself: 1 yes, 0 no.
  virtual HRESULT SetAutomaticTolerances(unsigned char automatic) = 0;
};
using HVXIContactConnectionEnhancementStd_var = VLMHandle<HVXIContactConnectionEnhancementStd>;
