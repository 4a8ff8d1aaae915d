#pragma once

#include "base/VLMBaseUnknown.h"
#include "modeler/VLMISpecObject.h"

/// A topological body: the exact geometry that a feature produced.
class VLMBody : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMBody"};

  /// Gives the container that holds the body's geometry; null, and E_FAIL, when there is none.
  virtual HRESULT GetContainer(VLMIContainer_var& container) = 0;
};
using VLMBody_var = VLMHandle<VLMBody>;

/// The body of a shape feature.
class VLMIShapeFeatureBody : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIShapeFeatureBody"};
};
using VLMIShapeFeatureBody_var = VLMHandle<VLMIShapeFeatureBody>;

/// A geometrical element: a feature's result that stands for a topological body.
class VLMIGeometricalElement : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIGeometricalElement"};

  /// Gives the topological body that the element produces; null, and E_FAIL, when there is none.
  virtual HRESULT GetBody(VLMBody_var& body) = 0;
};
using VLMIGeometricalElement_var = VLMHandle<VLMIGeometricalElement>;

/// A body of a part and what it results in.
class VLMIBodyRequest : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIBodyRequest"};

  /// Gives the body's results, in order, in view context `context`.
  virtual HRESULT GetResults(const VLMUnicodeString& context, VLMListValVLMBaseUnknown_var& results) = 0;
};
using VLMIBodyRequest_var = VLMHandle<VLMIBodyRequest>;

/// A part and its bodies.
class VLMIPartRequest : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIPartRequest"};

  /// Gives the part's main body in view context `context`, such as "MfDefault3DView"; null, and E_FAIL,
  /// without one.
  virtual HRESULT GetMainBody(const VLMUnicodeString& context, VLMBaseUnknown_var& mainBody) = 0;

  /// Gives all bodies of the part, the main body first.
  virtual HRESULT GetBodies(const VLMUnicodeString& context, VLMListValVLMBaseUnknown_var& bodies) = 0;
};
using VLMIPartRequest_var = VLMHandle<VLMIPartRequest>;

/// A product: the context (instance) in which geometry is used.
class VLMIProduct : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIProduct"};

  virtual VLMUnicodeString GetPartNumber() = 0;
};
using VLMIProduct_var = VLMHandle<VLMIProduct>;
