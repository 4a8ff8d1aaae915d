// Supports, connectors and groups.

#include <algorithm>

#include "adapters/HostLibrary.h"
#include "analysis/Supports.h"
#include "analysis/VLMISamAnalysisConnector.h"
#include "analysis/VLMISamAnalysisSupport.h"
#include "analysis/VLMISamGroup.h"
#include "modeler/VLMIContainer.h"
#include "workbench/HVXISamGroupExt.h"

namespace standalone {
namespace {

const Key kListMode("SupportListMode");
const Key kListKinds("SupportListKinds");
const Key kMembers("Members");
const Key kGroupKind("GroupKind");
const Key kDefinedOnMeshPart("DefinedOnMeshPart");

constexpr std::int32_t kGroupsAsThemselves = 1;
constexpr std::uint32_t kAllKinds = 0xFFFFFFFF;
constexpr std::uint32_t kGroupKindBit = 2;

bool IsGroup(const Feature& feature) {
  return feature.type->MetaClass().IsAKindOf(kind::kGroup);
}

void AppendHandles(const std::vector<Feature*>& features, VLMListValVLMBaseUnknown_var& handles) {
  for (Feature* const feature : features) handles.Append(HandleOn<VLMBaseUnknown>(feature));
}

class ConnectorAdapter final : public FeatureAdapter<VLMISamAnalysisConnector> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetPointedObject(VLMBaseUnknown_var& object) override {
    return ReadLink("VLMISamAnalysisConnector::GetPointedObject", kFirstObject, object);
  }
  HRESULT GetSecondObject(VLMBaseUnknown_var& object) override {
    return ReadLink("VLMISamAnalysisConnector::GetSecondObject", kSecondObject, object);
  }
  unsigned char IsConnectedTo(const VLMBaseUnknown_var& feature) override {
    if (Failed(Enter("VLMISamAnalysisConnector::IsConnectedTo"))) return 0;
    const Feature* const other = FeatureOf(feature);
    return other != nullptr && LinkedFeature(Self(), kFirstObject) == other ? 1 : 0;
  }
  VLMUnicodeString GetConnectorType() override {
    return Failed(Enter("VLMISamAnalysisConnector::GetConnectorType")) ? VLMUnicodeString()
                                                                       : VLMUnicodeString(Self().TypeName());
  }
};

class SupportAdapter final : public FeatureAdapter<VLMISamAnalysisSupport> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT ListSupports(VLMListValVLMBaseUnknown_var& supports) override {
    supports.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::ListSupports"); Failed(entered))
      return entered;
    AppendHandles(Supports(), supports);
    return S_OK;
  }

  HRESULT ListSupportsOffering(const VLMInterfaceId& id, VLMListValVLMBaseUnknown_var& supports) override {
    supports.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::ListSupportsOffering", id.Name());
        Failed(entered)) {
      return entered;
    }
    for (Feature* const connector : Supports()) {
      Feature* const object = connector == nullptr ? nullptr : LinkedFeature(*connector, kFirstObject);
      if (object != nullptr && Offers(*object, id)) supports.Append(HandleOn<VLMBaseUnknown>(connector));
    }
    return S_OK;
  }

  HRESULT PrepareSupports() override {
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::PrepareSupports"); Failed(entered))
      return entered;
    standalone::PrepareSupports(Self());
    return S_OK;
  }

  HRESULT AddSupport(const VLMILinkableObject_var& object, const VLMBaseUnknown_var& second,
                     const VLMUnicodeString& connectorType, int position) override {
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::AddSupport", connectorType.View());
        Failed(entered)) {
      return entered;
    }
    const auto count = static_cast<int>(CountEntries(Self(), kSupports));
    if (position != -1 && (position < 1 || position > count + 1)) return E_FAIL;
    return Connect(object, second, connectorType, position);
  }

  HRESULT AddSupports(const VLMListValVLMBaseUnknown_var& supports, int mode) override {
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::AddSupports", {}, mode); Failed(entered))
      return entered;
    std::vector<Feature*> connectors;
    for (const VLMBaseUnknown_var& support : supports) connectors.push_back(FeatureOf(support));
    const auto isSound = [this](const Feature* connector) {
      return connector != nullptr && !connector->removed && connector->document == &Doc() &&
             IsConnector(*connector);
    };
    if (!std::ranges::all_of(connectors, isSound)) return E_FAIL;
    return EnterSupports(Self(), connectors) ? S_OK : E_FAIL;
  }

  HRESULT RemoveSupport(const VLMBaseUnknown_var& support, const VLMUnicodeString& connectorType) override {
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::RemoveSupport", connectorType.View());
        Failed(entered)) {
      return entered;
    }
    Feature* const wanted = FeatureOf(support);
    if (wanted == nullptr || !HoldsLink(Self(), kSupports, *wanted)) return E_FAIL;
    return TakeOutIfOfType(*wanted, connectorType);
  }

  HRESULT TakeOut(const VLMBaseUnknown_var& object, const VLMBaseUnknown_var& second,
                  const VLMUnicodeString& connectorName) override {
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::TakeOut", connectorName.View());
        Failed(entered)) {
      return entered;
    }
    const Feature* const first = FeatureOf(object);
    const Feature* const context = FeatureOf(second);
    Feature* const wanted = FindLinked(Self(), kSupports, [&](Feature& connector) {
      return LinkedFeature(connector, kFirstObject) == first &&
             LinkedFeature(connector, kSecondObject) == context && IsOfType(connector, connectorName);
    });
    return wanted == nullptr ? E_FAIL : TakeOutIfOfType(*wanted, connectorName);
  }

  HRESULT PutIn(const VLMILinkableObject_var& object, const VLMBaseUnknown_var& second,
                const VLMUnicodeString& connectorName) override {
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::PutIn", connectorName.View());
        Failed(entered)) {
      return entered;
    }
    return Connect(object, second, connectorName, -1);
  }

  HRESULT GetContainerOf(const VLMBody_var& body, VLMIContainer_var& container) override {
    container = NULL_var;
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::GetContainerOf"); Failed(entered))
      return entered;
    Feature* const feature = FeatureOf(body);
    container = HandleOn<VLMIContainer>(feature == nullptr ? nullptr : feature->Container());
    return container == NULL_var ? E_FAIL : S_OK;
  }

  HRESULT SetMode(std::int32_t mode, std::uint32_t kinds) override {
    if (const HRESULT entered = Enter("VLMISamAnalysisSupport::SetMode"); Failed(entered)) return entered;
    if (mode != kGroupsAsThemselves && mode != 0) return E_FAIL;
    std::int32_t modeBefore = 0;
    std::int64_t kindsBefore = 0;
    if (HasValue(Self(), kListMode) && Failed(ReadAttribute(Self(), kListMode, modeBefore))) return E_FAIL;
    if (HasValue(Self(), kListKinds) && Failed(ReadAttribute(Self(), kListKinds, kindsBefore))) return E_FAIL;
    if (mode == kGroupsAsThemselves && kinds == kAllKinds) {  // the default is not written down
      Doc().RemoveAttribute(Self(), kListMode.Id());
      Doc().RemoveAttribute(Self(), kListKinds.Id());
      return S_OK;
    }
    static_cast<void>(WriteAttribute(Self(), kListMode, mode));
    return WriteAttribute(Self(), kListKinds, static_cast<std::int64_t>(kinds));
  }

 private:
  // As the list mode wants them: a group as the support that it is, or by its members. Null for an entry that
  // holds nothing.
  [[nodiscard]] std::vector<Feature*> Supports() const {
    std::vector<Feature*> listed = LinkEntries(Self(), kSupports);
    std::int32_t mode = kGroupsAsThemselves;
    std::int64_t kinds = kAllKinds;
    static_cast<void>(ReadAttribute(Self(), kListMode, mode));
    static_cast<void>(ReadAttribute(Self(), kListKinds, kinds));
    if (mode == kGroupsAsThemselves || (static_cast<std::uint32_t>(kinds) & kGroupKindBit) == 0)
      return listed;
    std::vector<Feature*> expanded;
    for (Feature* const connector : listed) {
      Feature* const object = connector == nullptr ? nullptr : LinkedFeature(*connector, kFirstObject);
      if (object == nullptr || !IsGroup(*object)) {
        expanded.push_back(connector);
        continue;
      }
      const std::vector<Feature*> members = LinkEntries(*object, kMembers);
      expanded.insert(expanded.end(), members.begin(), members.end());
    }
    return expanded;
  }

  HRESULT Connect(const VLMILinkableObject_var& object, const VLMBaseUnknown_var& second,
                  const VLMUnicodeString& type, int position) const {
    Feature* const first = FeatureOf(object);
    Feature* const context = FeatureOf(second);
    if (first == nullptr || first->removed || first->document != &Doc()) return E_FAIL;
    if (context != nullptr && (context->removed || context->document != &Doc())) return E_FAIL;
    Feature* const connector = &MakeConnector(Self(), type.View(), first, context);
    if (EnterSupports(Self(), {&connector, 1}, position)) return S_OK;
    Doc().Remove(*connector);
    return E_FAIL;
  }

  [[nodiscard]] static bool IsOfType(const Feature& support, const VLMUnicodeString& type) {
    return type.IsNull() || support.TypeName() == type.View();
  }
  [[nodiscard]] HRESULT TakeOutIfOfType(Feature& support, const VLMUnicodeString& type) const {
    if (!IsOfType(support, type)) return E_FAIL;
    TakeSupportOut(Self(), support);
    return S_OK;
  }
};

class GroupMarkAdapter final : public FeatureAdapter<VLMISamGroup> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

class GroupAdapter final : public FeatureAdapter<HVXISamGroupExt> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetKind(std::int32_t& groupKind) override {
    return ReadOr("HVXISamGroupExt::GetKind", kGroupKind, groupKind, 0);
  }
  unsigned char IsDefinedOnMeshPart() override {
    unsigned char defined = 0;
    static_cast<void>(Read("HVXISamGroupExt::IsDefinedOnMeshPart", kDefinedOnMeshPart, defined));
    return defined;
  }
  HRESULT ListMembers(VLMListValVLMBaseUnknown_var& members) override {
    members.RemoveAll();
    if (const HRESULT entered = Enter("HVXISamGroupExt::ListMembers"); Failed(entered)) return entered;
    AppendHandles(LinkEntries(Self(), kMembers), members);
    return S_OK;
  }
};

}  // namespace

void BindSupportAdapters(VLMLibrary& host) {
  Bind<ConnectorAdapter>(host, {kind::kConnector});
  Bind<SupportAdapter>(host, {kind::kAnalysisEntity});
  Bind<GroupMarkAdapter>(host, {kind::kGroup});
  Bind<GroupAdapter>(host, {"SAMGroup"});
}

}  // namespace standalone
