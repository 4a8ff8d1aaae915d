#include "analysis/MeshParts.h"

#include <fmt/format.h>

namespace standalone {

const Key kMeshPart("MeshPart");

HRESULT CreateConnectionMeshPart(Feature& owner) {
  static const LateType& meshPartType = LateType::Of("MSHMeshPart");
  static const Key meshType("MeshType");
  if (HasValue(owner, kMeshPart)) return E_FAIL;
  Document& document = *owner.document;
  Feature* const meshPart = document.Create(
      meshPartType, fmt::format("{}.{}", meshPartType.Name(), document.NextId()), &owner, owner.container);
  if (meshPart == nullptr) return E_FAIL;
  static_cast<void>(WriteAttribute(*meshPart, meshType, VLMUnicodeString("Connection")));
  WriteLink(owner, kMeshPart, meshPart);
  return S_OK;
}

}  // namespace standalone
