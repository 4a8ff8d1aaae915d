// Mesh parts and what is reached through them.

#include "adapters/HostLibrary.h"
#include "analysis/MeshAttachments.h"
#include "analysis/MeshNumbers.h"
#include "analysis/Supports.h"
#include "workbench/HVXIInteractionMeshPart.h"

namespace standalone {
namespace {

const Key kMeshType("MeshType");
const Key kMeshingOperator("MeshingOperator");
const Key kConnectionMesher("ConnectionMesher");
const Key kExclusionRegions("ExclusionRegions");

constexpr int kMeshAtNextUpdate = 2;
constexpr HRESULT kOfAnotherType = 1;

// E_FAIL, with 0, for a count that cannot be one. Without the attribute there are none.
HRESULT CountUnder(Feature& part, const Key& key, std::size_t& count) {
  count = 0;
  if (part.document->FindAttribute(part, key.Id()) == nullptr) return S_OK;
  std::int32_t stored = 0;
  if (Failed(ReadAttribute(part, key, stored)) || stored < 0 || stored > kMostMeshObjects) return E_FAIL;
  count = static_cast<std::size_t>(stored);
  return S_OK;
}

// A view of the mesh part, which is told apart from others by what it is given out as.
class NodeCollectionAdapter final : public FeatureAdapter<VLMIMSHNodeCollection> {
 public:
  using FeatureAdapter::FeatureAdapter;

  int GetCount() override {
    std::size_t count = 0;
    if (Failed(Enter("VLMIMSHNodeCollection::GetCount"))) return 0;
    static_cast<void>(CountUnder(Self(), kNodeCount, count));
    return static_cast<int>(count);
  }

  int Fill(std::span<VLMMSHNode*> nodes) override {
    std::size_t count = 0;
    if (Failed(Enter("VLMIMSHNodeCollection::Fill"))) return 0;
    static_cast<void>(CountUnder(Self(), kNodeCount, count));
    VLMMSHNode* node = MeshNumbers::Of(Doc()).Nodes(Self(), count);
    const std::span<VLMMSHNode*> filled = nodes.first(std::min(count, nodes.size()));
    for (VLMMSHNode*& entry : filled) entry = node++;
    return static_cast<int>(filled.size());
  }
};

class NodeSourceAdapter final : public FeatureAdapter<VLMIMSHNodeSource> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetNodes(VLMIMSHNodeCollection_var& nodes) override {
    nodes = NULL_var;
    if (const HRESULT entered = Enter("VLMIMSHNodeSource::GetNodes"); Failed(entered)) return entered;
    nodes = VLMIMSHNodeCollection_var::Adopt(new NodeCollectionAdapter(Self()));
    return S_OK;
  }
};

class MeshPartAdapter final : public FeatureAdapter<VLMIMSHMeshPart> {
 public:
  using FeatureAdapter::FeatureAdapter;

  int GetSupportCount() override {
    if (Failed(Enter("VLMIMSHMeshPart::GetSupportCount"))) return 0;
    return static_cast<int>(CountEntries(Self(), kSupports));
  }

  HRESULT AddSupport(const VLMIProduct_var& product, const VLMILinkableObject_var& object,
                     int mode) override {
    if (const HRESULT entered = Enter("VLMIMSHMeshPart::AddSupport"); Failed(entered)) return entered;
    Feature* const context = FeatureOf(product);
    Feature* const meshed = FeatureOf(object);
    if (!CanBeLinked(context) || !CanBeLinked(meshed)) return E_FAIL;
    Feature* const connector = &MakeConnector(Self(), {}, meshed, context);
    if (!EnterSupports(Self(), {&connector, 1})) {
      Doc().Remove(*connector);
      return E_FAIL;
    }
    if (mode == kMeshAtNextUpdate) Doc().SetUpToDate(Self(), false);
    return S_OK;
  }

  HRESULT GetElements(std::vector<VLMMSHElement*>& elements) override {
    elements.clear();
    if (const HRESULT entered = Enter("VLMIMSHMeshPart::GetElements"); Failed(entered)) return entered;
    std::size_t count = 0;
    if (const HRESULT counted = CountUnder(Self(), kElementCount, count); Failed(counted)) return counted;
    elements.resize(count);
    VLMMSHElement* element = MeshNumbers::Of(Doc()).Elements(Self(), count);
    for (VLMMSHElement*& entry : elements) entry = element++;
    return S_OK;
  }

  HRESULT GetNodeSource(VLMIMSHNodeSource_var& source) override {
    source = NULL_var;
    if (const HRESULT entered = Enter("VLMIMSHMeshPart::GetNodeSource"); Failed(entered)) return entered;
    if (Doc().FindAttribute(Self(), kNodeCount.Id()) == nullptr) return S_OK;
    std::size_t count = 0;
    if (const HRESULT counted = CountUnder(Self(), kNodeCount, count); Failed(counted)) return counted;
    source = VLMIMSHNodeSource_var::Adopt(new NodeSourceAdapter(Self()));
    return S_OK;
  }

  HRESULT GetMeshingOperator(VLMIMSHMeshingOperator_var& meshingOperator) override {
    return ReadLink("VLMIMSHMeshPart::GetMeshingOperator", kMeshingOperator, meshingOperator);
  }

  HRESULT IsOfType(const VLMUnicodeString& type) override {
    if (const HRESULT entered = Enter("VLMIMSHMeshPart::IsOfType", type.View()); Failed(entered))
      return entered;
    VLMUnicodeString own;
    static_cast<void>(ReadAttribute(Self(), kMeshType, own));
    return own == type ? S_OK : kOfAnotherType;
  }
};

class InteractionMeshPartAdapter final : public FeatureAdapter<HVXIInteractionMeshPart> {
 public:
  using FeatureAdapter::FeatureAdapter;

  // The regions of before stay in the document, because the interaction may share them.
  HRESULT SetExclusionRegions(const VLMListValVLMBaseUnknown_var& regions) override {
    return StoreLinkList("HVXIInteractionMeshPart::SetExclusionRegions", kExclusionRegions, regions);
  }
  HRESULT GetExclusionRegions(VLMListValVLMBaseUnknown_var& regions) override {
    return ReadLinkList("HVXIInteractionMeshPart::GetExclusionRegions", kExclusionRegions, regions);
  }
};

class MeshingOperatorAdapter final : public FeatureAdapter<VLMIMSHMeshingOperator> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetConnectionMesher(VLMIMSHConnectionMesher_var& mesher) override {
    return ReadLink("VLMIMSHMeshingOperator::GetConnectionMesher", kConnectionMesher, mesher);
  }
};

class ConnectionMesherAdapter final : public FeatureAdapter<VLMIMSHConnectionMesher> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT ListMeshPartsAtPoint(const VLMBaseUnknown_var& point, const VLMIProduct_var& product,
                               VLMListValVLMBaseUnknown_var& meshParts) override {
    meshParts.RemoveAll();
    if (const HRESULT entered = Enter("VLMIMSHConnectionMesher::ListMeshPartsAtPoint"); Failed(entered)) {
      return entered;
    }
    const std::vector<Feature*> found =
        Doc().Remembered<MeshAttachments>().At(Self(), FeatureOf(point), FeatureOf(product));
    for (Feature* const each : found) meshParts.Append(HandleOn<VLMBaseUnknown>(each));
    return S_OK;
  }
};

}  // namespace

void BindMeshAdapters(VLMLibrary& host) {
  Bind<MeshPartAdapter>(host, {kind::kMeshPart});
  Bind<InteractionMeshPartAdapter>(host, {kind::kMeshPart});
  Bind<MeshingOperatorAdapter>(host, {"MSHMeshingOperator"});
  Bind<ConnectionMesherAdapter>(host, {"MSHConnectionMesher"});
}

}  // namespace standalone
