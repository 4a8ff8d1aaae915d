// Containers, parts, bodies and products.

#include <algorithm>

#include "adapters/HostLibrary.h"
#include "modeler/VLMIContainer.h"
#include "modeler/VLMIPart.h"

namespace standalone {
namespace {

const Key kPart("Part");
const Key kMainBody("MainBody");
const Key kBodies("Bodies");
const Key kResults("Results");
const Key kBody("Body");
const Key kPartNumber("PartNumber");

constexpr std::string_view kViewContext = "MfDefault3DView";  // the one that there is

class ContainerAdapter final : public FeatureAdapter<VLMIContainer> {
 public:
  using FeatureAdapter::FeatureAdapter;

  int GetSize() override {
    if (Failed(Enter("VLMIContainer::GetSize"))) return 0;
    int size = 0;
    for (const Feature* feature = Doc().First(); feature != nullptr; feature = feature->next) {
      size += feature->container == &Self() ? 1 : 0;
    }
    return size;
  }
};

class ContainerOfDocumentAdapter final : public FeatureAdapter<VLMIContainerOfDocument> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetDocument(VLMDocument_var& document) override {
    document = NULL_var;
    if (const HRESULT entered = Enter("VLMIContainerOfDocument::GetDocument"); Failed(entered))
      return entered;
    document = VLMDocument_var(&Doc());
    return S_OK;
  }
};

// Gives what a link that must exist holds.
template <class Handle>
HRESULT Must(HRESULT read, const Handle& handle) {
  return Succeeded(read) && handle == NULL_var ? E_FAIL : read;
}

class PartContainerAdapter final : public FeatureAdapter<VLMIPrtContainer> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetPart(VLMISpecObject_var& part) override {
    const HRESULT read = ReadLink("VLMIPrtContainer::GetPart", kPart, part);
    return Must(read, part);
  }
};

class PartAdapter final : public FeatureAdapter<VLMIPartRequest> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetMainBody(const VLMUnicodeString& context, VLMBaseUnknown_var& mainBody) override {
    mainBody = NULL_var;
    const HRESULT read = ReadLink("VLMIPartRequest::GetMainBody", kMainBody, mainBody);
    if (context.View() == kViewContext) return Must(read, mainBody);
    mainBody = NULL_var;
    return E_FAIL;
  }

  HRESULT GetBodies(const VLMUnicodeString& context, VLMListValVLMBaseUnknown_var& bodies) override {
    bodies.RemoveAll();
    if (const HRESULT entered = Enter("VLMIPartRequest::GetBodies", context.View()); Failed(entered))
      return entered;
    if (context.View() != kViewContext) return E_FAIL;
    std::vector<Feature*> listed = LinkedFeatures(Self(), kBodies);
    const auto main = std::ranges::find(listed, LinkedFeature(Self(), kMainBody));
    if (main != listed.end()) std::rotate(listed.begin(), main, main + 1);
    for (Feature* const body : listed) bodies.Append(HandleOn<VLMBaseUnknown>(body));
    return S_OK;
  }
};

class BodyRequestAdapter final : public FeatureAdapter<VLMIBodyRequest> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetResults(const VLMUnicodeString& context, VLMListValVLMBaseUnknown_var& results) override {
    results.RemoveAll();
    if (const HRESULT entered = Enter("VLMIBodyRequest::GetResults", context.View()); Failed(entered))
      return entered;
    if (context.View() != kViewContext) return E_FAIL;
    for (Feature* const result : LinkedFeatures(Self(), kResults))
      results.Append(HandleOn<VLMBaseUnknown>(result));
    return S_OK;
  }
};

class GeometricalElementAdapter final : public FeatureAdapter<VLMIGeometricalElement> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetBody(VLMBody_var& body) override {
    const HRESULT read = ReadLink("VLMIGeometricalElement::GetBody", kBody, body);
    return Must(read, body);
  }
};

class BodyAdapter final : public FeatureAdapter<VLMBody> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetContainer(VLMIContainer_var& container) override {
    container = NULL_var;
    if (const HRESULT entered = Enter("VLMBody::GetContainer"); Failed(entered)) return entered;
    container = HandleOn<VLMIContainer>(Self().Container());
    return container == NULL_var ? E_FAIL : S_OK;
  }
};

class ShapeBodyAdapter final : public FeatureAdapter<VLMIShapeFeatureBody> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

class ProductAdapter final : public FeatureAdapter<VLMIProduct> {
 public:
  using FeatureAdapter::FeatureAdapter;

  VLMUnicodeString GetPartNumber() override {
    VLMUnicodeString number;
    static_cast<void>(Read("VLMIProduct::GetPartNumber", kPartNumber, number));
    return number;
  }
};

}  // namespace

void BindGeometryAdapters(VLMLibrary& host) {
  Bind<ContainerAdapter>(host, {kind::kContainer});
  Bind<ContainerOfDocumentAdapter>(host, {kind::kContainer});
  Bind<PartContainerAdapter>(host, {"PrtContainer"});
  Bind<PartAdapter>(host, {kind::kPart});
  Bind<BodyRequestAdapter>(host, {"MechanicalPart"});
  Bind<GeometricalElementAdapter>(host, {"GeometricalElement"});
  Bind<BodyAdapter>(host, {"TopologicalBody", "ShapeBody"});
  Bind<ShapeBodyAdapter>(host, {"Solid", "ShapeBody"});
  Bind<ProductAdapter>(host, {kind::kProduct});
}

}  // namespace standalone
