#pragma once

#include "analysis/VLMIMSHMeshPart.h"

/// \file
/// The migration that gives constraints and couplings their connection mesh part.

/// Adds what the feature rests on to `spMeshPart`, each object with the product that it is used in; stops at
/// the first that the mesh part refuses and gives 0 all the same. 0, and nothing changes, for a mesh part
/// that has supports. E_FAIL when the feature offers no supports or has none.
HRESULT HVXFillFromSupports(const VLMIMSHMeshPart_var& spMeshPart, const VLMBaseUnknown_var& feature);

/// Gives the mesh part of an interaction; null unless it has one.
template <class Interaction>
VLMIMSHMeshPart_var HVXMeshPartOf(const VLMHandle<Interaction>& spInteraction) {
  VLMBaseUnknown_var spMeshPart;
  if (Failed(spInteraction->GetMeshPart(spMeshPart))) return NULL_var;
  return VLMIMSHMeshPart_var(spMeshPart);
}

/// Fills the connection mesh part of the feature, seen as `Interaction`, from its supports, creating it first
/// where it lacks. E_FAIL when the feature is no `Interaction`, when the mesh part cannot be had, and as
/// `HVXFillFromSupports` does.
template <class Interaction>
HRESULT HVXFillConnectionMeshPart(const VLMBaseUnknown_var& feature) {
  const VLMHandle<Interaction> spInteraction(feature);
  if (spInteraction == NULL_var) return E_FAIL;
  VLMIMSHMeshPart_var spMeshPart = HVXMeshPartOf(spInteraction);
  if (spMeshPart == NULL_var) {
    if (Failed(spInteraction->CreateMeshPart())) return E_FAIL;
    spMeshPart = HVXMeshPartOf(spInteraction);
    if (spMeshPart == NULL_var) return E_FAIL;
  }
  return HVXFillFromSupports(spMeshPart, feature);
}
