// Rigid body constraints, and rigid and smooth couplings.

#include "adapters/HostLibrary.h"
#include "analysis/MeshParts.h"
#include "workbench/HVXIRigidBodyConstraint.h"
#include "workbench/HVXIRigidCoupling.h"

namespace standalone {
namespace {

const Key kReferenceConnector("ReferenceConnector");
const Key kCenterOfMass("CenterOfMass");
const Key kExclusionRegions("ExclusionRegions");

class RigidBodyConstraintAdapter final : public FeatureAdapter<HVXIRigidBodyConstraint> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) override {
    return ReadLink("HVXIRigidBodyConstraint::GetMeshPart", kMeshPart, meshPart);
  }
  HRESULT CreateMeshPart() override {
    if (const HRESULT entered = Enter("HVXIRigidBodyConstraint::CreateMeshPart"); Failed(entered))
      return entered;
    return CreateConnectionMeshPart(Self());
  }
  HRESULT GetReferenceConnector(VLMBaseUnknown_var& connector) override {
    return ReadLink("HVXIRigidBodyConstraint::GetReferenceConnector", kReferenceConnector, connector);
  }
  HRESULT SetCenterOfMass(std::int32_t centerOfMass) override {
    return Write("HVXIRigidBodyConstraint::SetCenterOfMass", kCenterOfMass, centerOfMass);
  }
  HRESULT GetCenterOfMass(std::int32_t& centerOfMass) override {
    return ReadOr("HVXIRigidBodyConstraint::GetCenterOfMass", kCenterOfMass, centerOfMass, 0);
  }
};

class RigidCouplingAdapter final : public FeatureAdapter<HVXIRigidCoupling> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) override {
    return ReadLink("HVXIRigidCoupling::GetMeshPart", kMeshPart, meshPart);
  }
  HRESULT CreateMeshPart() override {
    if (const HRESULT entered = Enter("HVXIRigidCoupling::CreateMeshPart"); Failed(entered)) return entered;
    return CreateConnectionMeshPart(Self());
  }
  HRESULT GetExclusionRegions(VLMListValVLMBaseUnknown_var& regions) override {
    return ReadLinkList("HVXIRigidCoupling::GetExclusionRegions", kExclusionRegions, regions);
  }
  // The regions of before stay in the document, because the mesh part may share them.
  HRESULT SetExclusionRegions(const VLMListValVLMBaseUnknown_var& regions) override {
    return StoreLinkList("HVXIRigidCoupling::SetExclusionRegions", kExclusionRegions, regions);
  }
};

}  // namespace

void BindConstraintAdapters(VLMLibrary& host) {
  Bind<RigidBodyConstraintAdapter>(host, {"HVXRigidBodyConstraintLT"});
  Bind<RigidCouplingAdapter>(host, {"HVXRigidCouplingLT", "HVXSmoothCouplingLT"});
}

}  // namespace standalone
