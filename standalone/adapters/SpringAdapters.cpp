// Springs and dampers, the designs of their connections, and virtual parts.

#include <algorithm>
#include <unordered_set>

#include "adapters/HostLibrary.h"
#include "analysis/MeshParts.h"
#include "analysis/Supports.h"
#include "analysis/VLMISamGenMeshPartMgt.h"
#include "workbench/HVXISamAnalysisConnectionDesign.h"
#include "workbench/HVXISpring.h"
#include "workbench/HVXIVirtualPartExt.h"

namespace standalone {
namespace {

const Key kConnectionDesigns("ConnectionDesigns");
const Key kPoints("Points");
const Key kProducts("Products");
const Key kMeshParts("MeshParts");

constexpr std::int32_t kUnfilled = 0;
constexpr std::int32_t kFilled = 1;

class SpringAdapter final : public FeatureAdapter<HVXISpring> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetMeshPart(VLMBaseUnknown_var& meshPart) override {
    return ReadLink("HVXISpring::GetMeshPart", kMeshPart, meshPart);
  }

  int GetConnectionDesignCount() override {
    if (Failed(Enter("HVXISpring::GetConnectionDesignCount"))) return 0;
    return static_cast<int>(CountEntries(Self(), kConnectionDesigns));
  }

  HRESULT GetConnectionDesign(int index, VLMBaseUnknown_var& design) override {
    design = NULL_var;
    if (const HRESULT entered = Enter("HVXISpring::GetConnectionDesign"); Failed(entered)) return entered;
    const Value* const entry =
        index < 1 ? nullptr : EntryAt(Self(), kConnectionDesigns, static_cast<std::size_t>(index));
    if (entry == nullptr || entry->Kind() != ValueKind::kLink) return E_FAIL;
    design = HandleOn<VLMBaseUnknown>(entry->Target());
    return design == NULL_var ? E_FAIL : S_OK;
  }
};

class ConnectionDesignAdapter final : public FeatureAdapter<HVXISamAnalysisConnectionDesign> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetPoints(VLMListValVLMBaseUnknown_var& points, std::int32_t& state) override {
    return GiveList("HVXISamAnalysisConnectionDesign::GetPoints", kPoints, points, state);
  }
  HRESULT GetProducts(VLMListValVLMBaseUnknown_var& products, std::int32_t& state) override {
    return GiveList("HVXISamAnalysisConnectionDesign::GetProducts", kProducts, products, state);
  }
  HRESULT FillFromPoints(VLMListValVLMBaseUnknown_var& points,
                         VLMListValVLMBaseUnknown_var& products) override {
    return Fill("HVXISamAnalysisConnectionDesign::FillFromPoints", kFirstObject, points, products);
  }
  HRESULT FillFromProducts(VLMListValVLMBaseUnknown_var& points,
                           VLMListValVLMBaseUnknown_var& products) override {
    return Fill("HVXISamAnalysisConnectionDesign::FillFromProducts", kSecondObject, points, products);
  }

 private:
  // Entries that hold nothing are given too: entry i of one list belongs to entry i of the other.
  static void AppendHandles(const std::vector<Feature*>& features, VLMListValVLMBaseUnknown_var& handles) {
    for (Feature* const feature : features) handles.Append(HandleOn<VLMBaseUnknown>(feature));
  }

  HRESULT GiveList(std::string_view operation, const Key& key, VLMListValVLMBaseUnknown_var& objects,
                   std::int32_t& state) const {
    objects.RemoveAll();
    if (const HRESULT entered = Enter(operation, key.Text()); Failed(entered)) return entered;
    state = Doc().FindAttribute(Self(), key.Id()) == nullptr ? kUnfilled : kFilled;
    AppendHandles(LinkEntries(Self(), key), objects);
    return S_OK;
  }

  // Both lists from the supports that have the object under `leading`.
  HRESULT Fill(std::string_view operation, const Key& leading, VLMListValVLMBaseUnknown_var& points,
               VLMListValVLMBaseUnknown_var& products) const {
    points.RemoveAll();
    products.RemoveAll();
    if (const HRESULT entered = Enter(operation); Failed(entered)) return entered;
    std::vector<Feature*> first;
    std::vector<Feature*> second;
    for (Feature* const connector : LinkedFeatures(Self(), kSupports)) {
      if (LinkedFeature(*connector, leading) == nullptr) continue;
      first.push_back(LinkedFeature(*connector, kFirstObject));
      second.push_back(LinkedFeature(*connector, kSecondObject));
    }
    if (MayFill(kPoints, kFirstObject, first.empty()) && MayFill(kProducts, kSecondObject, first.empty())) {
      WriteLinks(Self(), kPoints, first);
      WriteLinks(Self(), kProducts, second);
    }
    AppendHandles(LinkEntries(Self(), kPoints), points);
    AppendHandles(LinkEntries(Self(), kProducts), products);
    return S_OK;
  }

  // What is stored gives way to what was found, but not to nothing, nor when no support knows it: it would be
  // lost.
  [[nodiscard]] bool MayFill(const Key& key, const Key& object, bool nothingFound) const {
    if (!CanHoldList(Self(), key)) return false;
    const std::vector<Feature*> stored = LinkEntries(Self(), key);
    if (nothingFound) return stored.empty();
    std::unordered_set<const Feature*> known{nullptr};
    for (Feature* const connector : LinkedFeatures(Self(), kSupports))
      known.insert(LinkedFeature(*connector, object));
    return std::ranges::all_of(stored, [&known](const Feature* each) { return known.contains(each); });
  }
};

class VirtualPartAdapter final : public FeatureAdapter<HVXIVirtualPartExt> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

class MeshPartManagementAdapter final : public FeatureAdapter<VLMISamGenMeshPartMgt> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT ListMeshParts(int option, VLMListValVLMBaseUnknown_var& meshParts) override {
    return ReadLinkList("VLMISamGenMeshPartMgt::ListMeshParts", kMeshParts, meshParts, option);
  }
};

}  // namespace

void BindSpringAdapters(VLMLibrary& host) {
  Bind<SpringAdapter>(host, {"HVXSpringLT", "HVXDamperLT"});
  Bind<ConnectionDesignAdapter>(host, {"SAMGenericConnDesign"});
  Bind<VirtualPartAdapter>(host, {"HVXVirtualPartLT", "HVXRigidVirtualPartLT"});
  Bind<MeshPartManagementAdapter>(host, {"HVXVirtualPartLT"});
}

}  // namespace standalone
