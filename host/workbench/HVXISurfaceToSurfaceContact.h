#pragma once

#include "base/VLMBaseUnknown.h"

/// The older view of a contact between two surfaces. After its conversion a contact still answers to this
/// view, with the values that it had. A getter that fails leaves the out number as it is (a handle is null).
class HVXISurfaceToSurfaceContact : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXISurfaceToSurfaceContact"};

  /// Gives the interaction property; null, with S_OK, when the contact has none.
  virtual HRESULT GetInteractionProperty(VLMBaseUnknown_var& property) = 0;
  /// 1 when the two surfaces change places as the two sides of the contact, 0 when not or when the call
  /// fails.
  virtual unsigned char GetSurfacesSwapped() = 0;
  /// Gives whether the first surface is used from its back: 1 yes, 0 no.
  virtual HRESULT GetFirstSurfaceReversed(unsigned char& reversed) = 0;
  /// Gives whether the second surface is used from its back: 1 yes, 0 no.
  virtual HRESULT GetSecondSurfaceReversed(unsigned char& reversed) = 0;
  /// Gives the distance within which nodes are moved onto the other surface.
  virtual HRESULT GetAdjustmentTolerance(double& tolerance) = 0;
  /// Gives the sliding formulation: 0 finite, 1 small.
  virtual HRESULT GetSlidingFormulation(std::int32_t& code) = 0;
  /// Gives which nodes are moved onto the other surface: 0 none, 1 those within the tolerance, 2 those of a
  /// group.
  virtual HRESULT GetAdjustment(std::int32_t& code) = 0;
  /// Gives the group of nodes to move; null, with S_OK, when there is none.
  virtual HRESULT GetAdjustmentGroup(VLMBaseUnknown_var& group) = 0;
  /// Gives whether the thickness of shells counts in the contact: 1 yes, 0 no.
  virtual HRESULT GetThicknessOption(unsigned char& option) = 0;
  /// Gives how the contact constraint is enforced: 0 surface to surface, 1 node to surface.
  virtual HRESULT GetConstraintEnforcement(std::int32_t& code) = 0;
};
using HVXISurfaceToSurfaceContact_var = VLMHandle<HVXISurfaceToSurfaceContact>;
