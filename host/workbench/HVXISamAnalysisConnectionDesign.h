#pragma once

#include "base/VLMBaseUnknown.h"

/// A connection design: the points that a connection runs between, each with the product that it is used in.
///
/// It keeps two lists, the points and their products, of which entry i of the one belongs to entry i of the
/// other; positions start at 1. A list can stand unfilled until it is asked to be filled from the geometry.
class HVXISamAnalysisConnectionDesign : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"HVXISamAnalysisConnectionDesign"};

  /// Gives the list of points. `state` is 1 when it is filled, 0 when it must be filled first
  /// (`FillFromPoints`), and stays as it is on failure.
  virtual HRESULT GetPoints(VLMListValVLMBaseUnknown_var& points, std::int32_t& state) = 0;

  /// The same for the list of the points' products (`FillFromProducts`).
  virtual HRESULT GetProducts(VLMListValVLMBaseUnknown_var& products, std::int32_t& state) = 0;

  /// Fills both lists, starting from the points: each point with the product that it stands in. Both stay as
  /// they are when nothing is found, or when one holds what the geometry does not know. Gives what they hold
  /// then.
  virtual HRESULT FillFromPoints(VLMListValVLMBaseUnknown_var& points,
                                 VLMListValVLMBaseUnknown_var& products) = 0;

  /// Fills both lists, starting from the products: each product with the point that is connected in it.
  virtual HRESULT FillFromProducts(VLMListValVLMBaseUnknown_var& points,
                                   VLMListValVLMBaseUnknown_var& products) = 0;
};
using HVXISamAnalysisConnectionDesign_var = VLMHandle<HVXISamAnalysisConnectionDesign>;
