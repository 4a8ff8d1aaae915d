// What holds analysis features: models, cases, steps and other sets, and the scan through what stands beneath
// them.

#include "adapters/HostLibrary.h"
#include "analysis/VLMISamAnalysisCase.h"
#include "analysis/VLMISamAnalysisModel.h"
#include "analysis/VLMISamAnalysisScan.h"
#include "analysis/VLMISamAnalysisSet.h"
#include "workbench/HVXITraverser.h"

namespace standalone {
namespace {

class ScanAdapter final : public FeatureAdapter<VLMISamAnalysisScan> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT ListChildren(VLMListValVLMBaseUnknown_var& children, VLMScanMode mode) override {
    children.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisScan::ListChildren"); Failed(entered)) return entered;
    return Scan(children, mode, [](const Feature&) { return true; });
  }

  HRESULT ListChildrenOfLateType(const VLMUnicodeString& lateType, VLMListValVLMBaseUnknown_var& children,
                                 VLMScanMode mode) override {
    children.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisScan::ListChildrenOfLateType", lateType.View());
        Failed(entered)) {
      return entered;
    }
    return Scan(children, mode, [&lateType](const Feature& feature) {
      return feature.type->MetaClass().IsAKindOf(lateType.View());
    });
  }

  HRESULT ListSetsOfName(const VLMUnicodeString& name, VLMListValVLMBaseUnknown_var& sets,
                         VLMScanMode mode) override {
    sets.RemoveAll();
    if (const HRESULT entered = Enter("VLMISamAnalysisScan::ListSetsOfName", name.View()); Failed(entered)) {
      return entered;
    }
    return Scan(sets, mode, [&name](const Feature& feature) {
      return IsSet(feature) && feature.externalName == name.View();
    });
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

  // How deep the mode reaches is told by where the father of a feature stands.
  [[nodiscard]] bool Reaches(const Feature& feature, VLMScanMode mode) const {
    if (mode == VLMScanMode::kAll || feature.father == &Self()) return true;
    return mode == VLMScanMode::kSonsOfSets && feature.father->father == &Self() && IsSet(*feature.father);
  }

  template <class Predicate>
  HRESULT Scan(VLMListValVLMBaseUnknown_var& found, VLMScanMode mode, const Predicate& wanted) const {
    for (Feature* each = NextBeneath(Self(), Self()); each != nullptr; each = NextBeneath(Self(), *each)) {
      if (Reaches(*each, mode) && wanted(*each)) found.Append(HandleOn<VLMBaseUnknown>(each));
    }
    return S_OK;
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
    for (Feature* son = Self().firstSon; son != nullptr; son = son->nextSibling) {
      if (son->type->MetaClass().IsAKindOf(lateType.View())) members.Append(HandleOn<VLMBaseUnknown>(son));
    }
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
