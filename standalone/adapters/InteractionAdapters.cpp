// Interactions, constraints and connections.

#include "adapters/HostLibrary.h"
#include "workbench/HVXIARSurf.h"

namespace standalone {
namespace {

const Key kMeshPart("MeshPart");

class RigidSurfaceAdapter final : public FeatureAdapter<HVXIARSurf> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) override {
    return ReadLink("HVXIARSurf::GetMeshPart", kMeshPart, meshPart);
  }
};

}  // namespace

void BindInteractionAdapters(VLMLibrary& host) {
  Bind<RigidSurfaceAdapter>(host, {"HVXARSurfLT"});
}

}  // namespace standalone
