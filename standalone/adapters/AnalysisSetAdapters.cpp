// What holds analysis features: models, cases, steps and other sets, and the scan through what stands beneath
// them.

#include "adapters/HostLibrary.h"
#include "analysis/Frame.h"
#include "analysis/VLMISamAnalysisCase.h"
#include "analysis/VLMISamAnalysisModel.h"
#include "analysis/VLMISamAnalysisScan.h"
#include "analysis/VLMISamAnalysisSet.h"
#include "workbench/HVXITraverser.h"

namespace standalone {
namespace {

auto AppendTo(VLMListValVLMBaseUnknown_var& list) {
  return [&list](Feature& feature) { list.Append(HandleOn<VLMBaseUnknown>(&feature)); };
}

class ScanAdapter final : public FeatureAdapter<VLMISamAnalysisScan> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT ListChildren(VLMListValVLMBaseUnknown_var& children, VLMScanMode mode) override {
    children.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisScan::ListChildren"); Failed(entered)) return entered;
    Scan(
        mode, [](const Feature&) { return true; }, AppendTo(children));
    return S_OK;
  }

  HRESULT ListChildrenOfLateType(const VLMUnicodeString& lateType, VLMListValVLMBaseUnknown_var& children,
                                 VLMScanMode mode) override {
    children.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisScan::ListChildrenOfLateType", lateType.View());
        Failed(entered)) {
      return entered;
    }
    if (mode == VLMScanMode::kSons) {
      for (Feature* const each : SonsOfKind(Self(), lateType.View()))
        children.Append(HandleOn<VLMBaseUnknown>(each));
      return S_OK;
    }
    const auto scan = [this, mode](const auto& isOfType) {
      std::vector<Feature*> found;
      Scan(mode, isOfType, [&found](Feature& feature) { found.push_back(&feature); });
      return found;
    };
    for (Feature* const each : Doc().Listed().Of({Self(), lateType.View(), static_cast<int>(mode)}, scan))
      children.Append(HandleOn<VLMBaseUnknown>(each));
    return S_OK;
  }

  HRESULT ListSetsOfName(const VLMUnicodeString& name, VLMListValVLMBaseUnknown_var& sets,
                         VLMScanMode mode) override {
    sets.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisScan::ListSetsOfName", name.View()); Failed(entered)) {
      return entered;
    }
    const auto isWanted = [&name](const Feature& feature) {
      return IsSet(feature) && feature.externalName == name.View();
    };
    Scan(mode, isWanted, AppendTo(sets));
    return S_OK;
  }

  HRESULT AddSet(const VLMISamAnalysisSet_var& set) override {
    Feature* const added = FeatureOf(set);
    if (const HRESULT entered =
            Enter("VLMISamAnalysisScan::AddSet", added == nullptr ? "" : added->externalName);
        Failed(entered)) {
      return entered;
    }
    if (added == nullptr || added->document != &Doc() || added->removed) return E_FAIL;
    return Doc().PlaceBeneath(*added, Self()) ? S_OK : E_FAIL;
  }

  HRESULT OrderSet(const VLMISamAnalysisSet_var& set, const VLMISamAnalysisSet_var& reference, int option,
                   int after) override {
    Feature* const moved = FeatureOf(set);
    Feature* const anchor = FeatureOf(reference);
    if (const HRESULT entered =
            Enter("VLMISamAnalysisScan::OrderSet", moved == nullptr ? "" : moved->externalName, option);
        Failed(entered)) {
      return entered;
    }
    if (moved == nullptr || anchor == nullptr || moved->removed || anchor->removed) return E_FAIL;
    if (moved->father == nullptr || moved->father != anchor->father) return E_FAIL;
    Doc().PlaceBeside(*moved, *anchor, after != 0);
    return S_OK;
  }

 private:
  static bool IsSet(const Feature& feature) {
    return feature.type->MetaClass().IsAKindOf(kind::kAnalysisSet);
  }

  template <class Predicate, class Take>
  void Scan(VLMScanMode mode, const Predicate& isWanted, const Take& take) const {
    const auto look = [&](Feature& feature) {
      if (isWanted(feature)) take(feature);
    };
    if (mode == VLMScanMode::kAll) {
      for (Feature* each = NextBeneath(Self(), Self()); each != nullptr; each = NextBeneath(Self(), *each))
        look(*each);
      return;
    }
    for (Feature* son = Self().firstSon; son != nullptr; son = son->nextSibling) {
      look(*son);
      if (mode != VLMScanMode::kSonsOfSets || !IsSet(*son)) continue;
      for (Feature* grandson = son->firstSon; grandson != nullptr; grandson = grandson->nextSibling)
        look(*grandson);
    }
  }
};

class SetAdapter final : public FeatureAdapter<VLMISamAnalysisSet> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT ListMembersOfLateType(const VLMUnicodeString& lateType,
                                VLMListValVLMBaseUnknown_var& members) override {
    members.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisSet::ListMembersOfLateType", lateType.View());
        Failed(entered)) {
      return entered;
    }
    for (Feature* const each : SonsOfKind(Self(), lateType.View()))
      members.Append(HandleOn<VLMBaseUnknown>(each));
    return S_OK;
  }

  HRESULT ListMembersOffering(const VLMInterfaceId& id, int option,
                              VLMListValVLMBaseUnknown_var& members) override {
    members.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisSet::ListMembersOffering", id.Name(), option);
        Failed(entered)) {
      return entered;
    }
    for (Feature* son = Self().firstSon; son != nullptr; son = son->nextSibling) {
      if (Offers(*son, id)) members.Append(HandleOn<VLMBaseUnknown>(son));
    }
    return S_OK;
  }

  HRESULT RemoveMember(const VLMBaseUnknown_var& member, int option) override {
    Feature* const removed = FeatureOf(member);
    if (const HRESULT entered =
            Enter("VLMISamAnalysisSet::RemoveMember", removed == nullptr ? "" : removed->name, option);
        Failed(entered)) {
      return entered;
    }
    if (removed == nullptr || removed->removed || removed->father != &Self()) return E_FAIL;
    Doc().Remove(*removed);
    return S_OK;
  }
};

class TraverserAdapter final : public FeatureAdapter<HVXITraverser> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT ListFeatures(VLMListValVLMISpecObject_var& features) override {
    features.RemoveAll();
    if (const HRESULT entered = Enter("HVXITraverser::ListFeatures"); Failed(entered)) return entered;
    for (Feature* son = Self().firstSon; son != nullptr; son = son->nextSibling) {
      features.Append(HandleOn<VLMISpecObject>(son));
    }
    return S_OK;
  }
};

class ModelAdapter final : public FeatureAdapter<VLMISamAnalysisModel> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT RemoveObject(const VLMBaseUnknown_var& object, int option) override {
    Feature* const removed = FeatureOf(object);
    if (const HRESULT entered =
            Enter("VLMISamAnalysisModel::RemoveObject", removed == nullptr ? "" : removed->name, option);
        Failed(entered)) {
      return entered;
    }
    if (removed == nullptr || removed->removed || removed->document != &Doc() || IsInUse(*removed))
      return E_FAIL;
    Doc().Remove(*removed);
    return S_OK;
  }

 private:
  // A model or container holds everything, and a parameter that its owner shares is still read by the others.
  [[nodiscard]] bool IsInUse(const Feature& object) const {
    const VLMMetaClass& type = object.type->MetaClass();
    if (type.IsAKindOf(kind::kAnalysisModel) || type.IsAKindOf(kind::kContainer)) return true;
    return object.father != nullptr && object.father != &Self() &&
           Doc().IsLinkedFromElsewhere(object, *object.father);
  }
};

class CaseMarkAdapter final : public FeatureAdapter<VLMISamAnalysisCase> {
 public:
  using FeatureAdapter::FeatureAdapter;
};

}  // namespace

void BindAnalysisSetAdapters(VLMLibrary& host) {
  Bind<ScanAdapter>(host, {kind::kAnalysisModel, kind::kAnalysisSet});
  Bind<SetAdapter>(host, {kind::kAnalysisSet});
  Bind<TraverserAdapter>(host, {kind::kAnalysisSet});
  Bind<ModelAdapter>(host, {kind::kAnalysisModel});
  Bind<CaseMarkAdapter>(host, {kind::kAnalysisCase});
}

}  // namespace standalone
