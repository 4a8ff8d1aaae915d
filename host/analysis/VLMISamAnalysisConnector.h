#pragma once

#include "base/VLMBaseUnknown.h"

/// A support of an analysis feature: connects it with an object (geometry, group, mesh, another feature) in a
/// context, usually the product that the geometry is used in.
class VLMISamAnalysisConnector : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisConnector"};

  /// Gives the first connected object: what the feature rests on. Null, with S_OK, when there is none.
  virtual HRESULT GetPointedObject(VLMBaseUnknown_var& object) = 0;

  /// Gives the second connected object: the context. Null, with S_OK, when there is none.
  virtual HRESULT GetSecondObject(VLMBaseUnknown_var& object) = 0;

  /// 1 when the first connected object is `feature`, 0 when it is another, there is none, or the call fails.
  virtual unsigned char IsConnectedTo(const VLMBaseUnknown_var& feature) = 0;

  /// The kind of connection, such as "GeometrySmartConnector". Empty when the call fails.
  virtual VLMUnicodeString GetConnectorType() = 0;
};
using VLMISamAnalysisConnector_var = VLMHandle<VLMISamAnalysisConnector>;
