#pragma once

#include <array>

#include "base/VLMBaseUnknown.h"

/// Element options that are read and written together.
struct HVXElementFlagGroup {
  std::array<unsigned char, 4> flags{};  ///< Options that are on (1) or off (0).
  double fifth = 0.0;                    ///< The first of the two values behind the flags.
  double sixth = 0.0;                    ///< The second.
};

/// An element assignment: which element formulation a meshed region uses. A getter that fails leaves the out
/// argument as it is (a handle is null).
class HVXIElementAssignment : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXIElementAssignment"};

  /// The code of the element's shape; 13 when none was chosen. The first setting.
  virtual HRESULT GetElementShape(std::int32_t& shape) = 0;
  virtual HRESULT SetElementShape(std::int32_t shape) = 0;

  /// Whether the elements are of second order: 1 yes, 0 no. The second setting.
  virtual HRESULT GetElementOrder(std::int32_t& order) = 0;
  virtual HRESULT SetElementOrder(std::int32_t order) = 0;

  /// The code of the element's formulation within its shape. The third setting.
  virtual HRESULT GetFormulation(std::int32_t& formulation) = 0;
  virtual HRESULT SetFormulation(std::int32_t formulation) = 0;

  /// The flag group, as a whole.
  virtual HRESULT GetFlagGroup(HVXElementFlagGroup& group) = 0;
  virtual HRESULT SetFlagGroup(const HVXElementFlagGroup& group) = 0;

  /// Gives the section controls, to be cast to `HVXISectionControls`; null, with S_OK, when there are none.
  virtual HRESULT GetSectionControls(VLMBaseUnknown_var& controls) = 0;

  /// Gives the flags, and the value of the group's last member, that an element of `shape` has by default.
  /// `mode` is 1 and asks for the elements of structural analyses. E_FAIL for a shape that the workbench does
  /// not know.
  virtual HRESULT GetDefaultFlags(std::int32_t shape, std::int32_t mode, std::array<unsigned char, 4>& flags,
                                  double& value) = 0;

  /// Gives the default formulation for the same.
  virtual HRESULT GetDefaultFormulation(std::int32_t shape, std::int32_t mode, std::int32_t& formulation) = 0;

  /// Gives the flags and the value that `formulation` brings for the same.
  virtual HRESULT GetFormulationFlags(std::int32_t shape, std::int32_t formulation, std::int32_t mode,
                                      std::array<unsigned char, 4>& flags, double& value) = 0;
};
using HVXIElementAssignment_var = VLMHandle<HVXIElementAssignment>;
