#pragma once

#include "modeler/VLMILinkableObject.h"
#include "modeler/VLMIPart.h"

/// The supports of an analysis feature: the geometry, mesh or other features that it applies to, in order.
/// Each is an object to be seen as `VLMISamAnalysisConnector`.
class VLMISamAnalysisSupport : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMISamAnalysisSupport"};

  /// Gives all supports, in order. Empty, with S_OK, when there are none.
  virtual HRESULT ListSupports(VLMListValVLMBaseUnknown_var& supports) = 0;

  /// Gives, in order, the supports whose first connected object offers interface `id`.
  virtual HRESULT ListSupportsOffering(const VLMInterfaceId& id, VLMListValVLMBaseUnknown_var& supports) = 0;

  /// Makes the feature ready to be given new supports: takes out those that it has. S_OK when it has none.
  virtual HRESULT PrepareSupports() = 0;

  /// Adds a support that connects `object` and `second` (the context, which may be null) through a connector
  /// of type `connectorType`, such as "GeometrySmartConnector". It stands at `position` (from 1) and those
  /// behind it move up; -1 adds it at the end. E_FAIL for a null object, or for a position that is neither -1
  /// nor from 1 to one beyond the number of supports.
  // Overriders do not state a default of their own. NOLINTNEXTLINE(google-default-arguments)
  virtual HRESULT AddSupport(const VLMILinkableObject_var& object, const VLMBaseUnknown_var& second,
                             const VLMUnicodeString& connectorType, int position = -1) = 0;

  /// Adds support objects that a factory made, in order, at the end. `mode` is 2: each is added even when its
  /// object is a support already. E_FAIL, and none is added, when one of them is not a support object.
  virtual HRESULT AddSupports(const VLMListValVLMBaseUnknown_var& supports, int mode) = 0;

  /// Takes the support `support` out. A `connectorType` that is not empty must be the support's own. E_FAIL
  /// when it is none of this feature's supports, or of another type.
  virtual HRESULT RemoveSupport(const VLMBaseUnknown_var& support, const VLMUnicodeString& connectorType) = 0;

  /// Takes out the first support that connects `object` and `second`; an empty `connectorName` stands for any
  /// connector. E_FAIL when there is none.
  virtual HRESULT TakeOut(const VLMBaseUnknown_var& object, const VLMBaseUnknown_var& second,
                          const VLMUnicodeString& connectorName) = 0;

  /// Puts in, at the end, a support that connects `object` and `second`. An empty `connectorName` chooses the
  /// connector that suits the object. E_FAIL for a null object.
  virtual HRESULT PutIn(const VLMILinkableObject_var& object, const VLMBaseUnknown_var& second,
                        const VLMUnicodeString& connectorName) = 0;

  /// Gives the container that holds the geometry of `body`, a topological body that the feature rests on;
  /// null, and E_FAIL, when there is none.
  virtual HRESULT GetContainerOf(const VLMBody_var& body, VLMIContainer_var& container) = 0;

  /// Sets how supports are listed: with `mode` 1 a group is listed as the support that it is, with 0 by what
  /// it holds. `kinds` has one bit for each kind of support that the mode concerns; all bits set (0xFFFFFFFF)
  /// concerns every kind.
  virtual HRESULT SetMode(std::int32_t mode, std::uint32_t kinds) = 0;
};
using VLMISamAnalysisSupport_var = VLMHandle<VLMISamAnalysisSupport>;
