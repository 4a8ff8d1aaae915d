#pragma once

#include <span>
#include <vector>

#include "modeler/VLMILinkableObject.h"
#include "modeler/VLMIPart.h"

/// \file
/// Mesh parts, and what is reached only through them: node source, node collection, meshing operator and
/// connection mesher.

/// A mesh element; known by its address only, which holds as long as its mesh part does.
class VLMMSHElement;

/// A mesh node; known by its address only, which holds as long as its mesh part does.
class VLMMSHNode;

/// The nodes of a mesh, as they stood when the collection was asked for.
class VLMIMSHNodeCollection : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIMSHNodeCollection"};

  /// The number of nodes.
  virtual int GetCount() = 0;

  /// Writes the nodes, in order, into `nodes` and returns how many it wrote: the smaller of the number of
  /// nodes and the room given. The nodes stay the mesh's.
  virtual int Fill(std::span<VLMMSHNode*> nodes) = 0;
};
using VLMIMSHNodeCollection_var = VLMHandle<VLMIMSHNodeCollection>;

/// Where the nodes of a mesh part come from.
class VLMIMSHNodeSource : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIMSHNodeSource"};

  /// Gives the nodes; an empty collection when there are none.
  virtual HRESULT GetNodes(VLMIMSHNodeCollection_var& nodes) = 0;
};
using VLMIMSHNodeSource_var = VLMHandle<VLMIMSHNodeSource>;

/// Meshes connections: knows which mesh parts meet at a connected point.
class VLMIMSHConnectionMesher : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIMSHConnectionMesher"};

  /// Gives the mesh parts that are attached to `point` as it is used in `product`. Empty, with S_OK, when
  /// there are none.
  virtual HRESULT ListMeshPartsAtPoint(const VLMBaseUnknown_var& point, const VLMIProduct_var& product,
                                       VLMListValVLMBaseUnknown_var& meshParts) = 0;
};
using VLMIMSHConnectionMesher_var = VLMHandle<VLMIMSHConnectionMesher>;

/// What generates the mesh of a mesh part.
class VLMIMSHMeshingOperator : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIMSHMeshingOperator"};

  /// Gives the operator's connection mesher; null, with S_OK, for an operator that meshes no connections.
  virtual HRESULT GetConnectionMesher(VLMIMSHConnectionMesher_var& mesher) = 0;
};
using VLMIMSHMeshingOperator_var = VLMHandle<VLMIMSHMeshingOperator>;

/// A mesh part: the mesh of one piece of geometry, or of one connection.
class VLMIMSHMeshPart : public VLMBaseUnknown {
 public:
  static constexpr VLMInterfaceId kId{"VLMIMSHMeshPart"};

  /// The number of objects that the mesh part is meshed on; 0 when the call fails.
  virtual int GetSupportCount() = 0;

  /// Adds `object`, as it is used in `product`, to what is meshed. With `mode` 2 the mesh part is not meshed
  /// again at once but at its next update. E_FAIL when either is null.
  virtual HRESULT AddSupport(const VLMIProduct_var& product, const VLMILinkableObject_var& object,
                             int mode) = 0;

  /// Gives the elements, in order. They stay the mesh's. Empty, with S_OK, when there are none.
  virtual HRESULT GetElements(std::vector<VLMMSHElement*>& elements) = 0;

  /// Gives the source of the nodes; null, with S_OK, for a mesh part that is not meshed.
  virtual HRESULT GetNodeSource(VLMIMSHNodeSource_var& source) = 0;

  /// Gives what generates the mesh; null, with S_OK, when there is none.
  virtual HRESULT GetMeshingOperator(VLMIMSHMeshingOperator_var& meshingOperator) = 0;

  /// S_OK (0) when the mesh part is of type `type`, such as "Connection"; 1 when it is of another; negative
  /// on failure.
  virtual HRESULT IsOfType(const VLMUnicodeString& type) = 0;
};
using VLMIMSHMeshPart_var = VLMHandle<VLMIMSHMeshPart>;
