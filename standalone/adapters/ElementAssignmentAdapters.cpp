// Element assignments with their defaults, and the local and global assignments that list them.

#include <algorithm>
#include <optional>

#include "adapters/HostLibrary.h"
#include "analysis/ElementDefaults.h"
#include "workbench/HVXIElementAssignment.h"
#include "workbench/HVXIGlobalElemAsgnEntry.h"
#include "workbench/HVXIGlobalElemAssignment.h"
#include "workbench/HVXILocalElemAssignment.h"

namespace standalone {
namespace {

const Key kElementShape("ElementShape");
const Key kElementOrder("ElementOrder");
const Key kFormulation("Formulation");
const Key kElementOptions("ElementOptions");
const Key kElementOptionValues("ElementOptionValues");
const Key kSectionControls("SectionControlsSpec");
const Key kElementAssignments("ElementAssignments");
const Key kOldElementAssignments("HVXListElementAsgnSpec");
const Key kEntries("Entries");
const Key kKind("Kind");

constexpr std::int32_t kNoShape = 13;
constexpr std::int32_t kStructural = 1;  // the one mode that the defaults are known for

class ElementAssignmentAdapter final : public FeatureAdapter<HVXIElementAssignment> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetElementShape(std::int32_t& shape) override {
    return ReadOr("HVXIElementAssignment::GetElementShape", kElementShape, shape, kNoShape);
  }
  HRESULT SetElementShape(std::int32_t shape) override {
    return Write("HVXIElementAssignment::SetElementShape", kElementShape, shape);
  }
  HRESULT GetElementOrder(std::int32_t& order) override {
    return ReadOr("HVXIElementAssignment::GetElementOrder", kElementOrder, order, 0);
  }
  HRESULT SetElementOrder(std::int32_t order) override {
    return Write("HVXIElementAssignment::SetElementOrder", kElementOrder, order);
  }
  HRESULT GetFormulation(std::int32_t& formulation) override {
    return ReadOr("HVXIElementAssignment::GetFormulation", kFormulation, formulation, 0);
  }
  HRESULT SetFormulation(std::int32_t formulation) override {
    return Write("HVXIElementAssignment::SetFormulation", kFormulation, formulation);
  }

  HRESULT GetFlagGroup(HVXElementFlagGroup& group) override {
    if (const HRESULT entered = Enter("HVXIElementAssignment::GetFlagGroup"); Failed(entered)) return entered;
    HVXElementFlagGroup read;
    if (!ReadFlags(read.flags)) return E_FAIL;
    if (Doc().FindAttribute(Self(), kElementOptionValues.Id()) != nullptr) {
      std::vector<double> values;
      if (Failed(ReadAttribute(Self(), kElementOptionValues, values)) || values.size() != 2) return E_FAIL;
      read.fifth = values[0];
      read.sixth = values[1];
    }
    group = read;
    return S_OK;
  }

  HRESULT SetFlagGroup(const HVXElementFlagGroup& group) override {
    if (const HRESULT entered = Enter("HVXIElementAssignment::SetFlagGroup"); Failed(entered)) return entered;
    std::array<unsigned char, 4> flagsBefore{};
    if (HasValue(Self(), kElementOptions) && !ReadFlags(flagsBefore)) return E_FAIL;
    std::vector<double> values;
    if (HasValue(Self(), kElementOptionValues) &&
        (Failed(ReadAttribute(Self(), kElementOptionValues, values)) || values.size() != 2)) {
      return E_FAIL;
    }
    values = {group.fifth, group.sixth};
    if (const HRESULT written = ReplaceAttribute(Self(), kElementOptionValues, values); Failed(written))
      return written;
    std::vector<Value> flags;
    for (const unsigned char flag : group.flags) flags.push_back(Value::Boolean(flag != 0));
    Doc().SetAttribute(Self(), kElementOptions.Id(), Value::List(Doc().Keep(std::span<const Value>(flags))));
    return S_OK;
  }

  HRESULT GetSectionControls(VLMBaseUnknown_var& controls) override {
    return ReadLink("HVXIElementAssignment::GetSectionControls", kSectionControls, controls);
  }

  HRESULT GetDefaultFlags(std::int32_t shape, std::int32_t mode, std::array<unsigned char, 4>& flags,
                          double& value) override {
    if (const HRESULT entered = Enter("HVXIElementAssignment::GetDefaultFlags"); Failed(entered))
      return entered;
    const ShapeDefaults* const defaults = DefaultsOfShape(shape);
    if (defaults == nullptr || mode != kStructural) return E_FAIL;
    flags = defaults->options.flags;
    value = defaults->options.value;
    return S_OK;
  }

  HRESULT GetDefaultFormulation(std::int32_t shape, std::int32_t mode, std::int32_t& formulation) override {
    if (const HRESULT entered = Enter("HVXIElementAssignment::GetDefaultFormulation"); Failed(entered)) {
      return entered;
    }
    const ShapeDefaults* const defaults = DefaultsOfShape(shape);
    if (defaults == nullptr || mode != kStructural) return E_FAIL;
    formulation = defaults->formulation;
    return S_OK;
  }

  HRESULT GetFormulationFlags(std::int32_t shape, std::int32_t formulation, std::int32_t mode,
                              std::array<unsigned char, 4>& flags, double& value) override {
    if (const HRESULT entered = Enter("HVXIElementAssignment::GetFormulationFlags"); Failed(entered)) {
      return entered;
    }
    const ElementOptions* const options = OptionsOfFormulation(formulation);
    if (DefaultsOfShape(shape) == nullptr || options == nullptr || mode != kStructural) return E_FAIL;
    flags = options->flags;
    value = options->value;
    return S_OK;
  }

 private:
  // All off without the attribute; false when it holds anything but four flags.
  bool ReadFlags(std::array<unsigned char, 4>& flags) const {
    const Attribute* const attribute = Doc().FindAttribute(Self(), kElementOptions.Id());
    if (attribute == nullptr) return true;
    if (attribute->value.Kind() != ValueKind::kList) return false;
    const std::span<const Value> entries = attribute->value.Entries();
    if (entries.size() != flags.size()) return false;
    for (std::size_t i = 0; i < flags.size(); ++i) {
      if (entries[i].Kind() != ValueKind::kBoolean) return false;
      flags[i] = entries[i].AsBoolean() ? 1 : 0;
    }
    return true;
  }
};

std::optional<double> NumberOf(const Value& value) {
  if (value.Kind() == ValueKind::kReal) return value.AsReal();
  if (value.Kind() == ValueKind::kInteger) return static_cast<double>(value.AsInteger());
  if (value.Kind() == ValueKind::kBoolean) return value.AsBoolean() ? 1.0 : 0.0;
  return std::nullopt;
}

// Copying reads integers as reals and as flags.
bool IsCopyOf(const Value& copy, const Value& old) {
  if (copy.Kind() == ValueKind::kList && old.Kind() == ValueKind::kList)
    return std::ranges::equal(copy.Entries(), old.Entries(), IsCopyOf);
  return copy == old || (NumberOf(old).has_value() && NumberOf(copy) == NumberOf(old));
}

bool HoldsValues(Feature& copy, Feature& old, NameId exceptFor) {
  if (copy.type != old.type || !(old.externalName.empty() || old.externalName == copy.externalName))
    return false;
  return std::ranges::all_of(copy.document->AttributesOf(old), [&](const Attribute& each) {
    if (each.key == exceptFor || each.value == Value()) return true;
    const Attribute* const own = copy.document->FindAttribute(copy, each.key);
    return own != nullptr && IsCopyOf(own->value, each.value);
  });
}

// Whether nothing is lost when `old` goes, because `copy` holds it all.
bool HoldsAllOf(Feature& copy, Feature& old) {
  if (!HoldsValues(copy, old, kSectionControls.Id())) return false;
  if (!HasValue(old, kSectionControls)) return old.firstSon == nullptr;
  Feature* const oldControls = LinkedFeature(old, kSectionControls);
  Feature* const controls = LinkedFeature(copy, kSectionControls);
  if (oldControls == nullptr || controls == nullptr) return false;
  // They alone may stand beneath it, and go with it.
  if (old.firstSon != oldControls || old.lastSon != oldControls || oldControls->firstSon != nullptr)
    return false;
  return !copy.document->IsLinkedFromElsewhere(*oldControls, old) &&
         HoldsValues(*controls, *oldControls, kNoName);
}

/// What holds a list of element assignments, as sons.
template <class Interface>
class AssignmentListAdapter : public FeatureAdapter<Interface> {
 public:
  using FeatureAdapter<Interface>::FeatureAdapter;

 protected:
  ~AssignmentListAdapter() override = default;

  /// Assignments that were listed, also in the old list, and no longer are stay in the document, but for
  /// those that a listed one is a copy of.
  HRESULT SetList(std::string_view operation, const VLMListValVLMBaseUnknown_var& assignments) const {
    Feature& self = this->Self();
    std::vector<Feature*> before = LinkedFeatures(self, kElementAssignments);
    std::ranges::copy(LinkedFeatures(self, kOldElementAssignments), std::back_inserter(before));
    if (const HRESULT stored = this->StoreLinkList(operation, kElementAssignments, assignments);
        Failed(stored)) {
      return stored;
    }
    const std::vector<Feature*> listed = LinkedFeatures(self, kElementAssignments);
    for (Feature* const assignment : before) {
      if (std::ranges::find(listed, assignment) == listed.end() && IsRedundant(*assignment, listed))
        this->Doc().Remove(*assignment);
    }
    return S_OK;
  }

 private:
  [[nodiscard]] bool IsRedundant(Feature& assignment, const std::vector<Feature*>& listed) const {
    if (assignment.removed || assignment.father != &this->Self()) return false;
    return !this->Doc().IsLinkedFromElsewhere(assignment, this->Self()) &&
           std::ranges::any_of(listed, [&](Feature* copy) { return HoldsAllOf(*copy, assignment); });
  }
};

class LocalAssignmentAdapter final : public AssignmentListAdapter<HVXILocalElemAssignment> {
 public:
  using AssignmentListAdapter::AssignmentListAdapter;

  HRESULT GetElementAssignments(VLMListValVLMBaseUnknown_var& assignments) override {
    const bool isCurrent = Doc().FindAttribute(Self(), kElementAssignments.Id()) != nullptr;
    return ReadLinkList("HVXILocalElemAssignment::GetElementAssignments",
                        isCurrent ? kElementAssignments : kOldElementAssignments, assignments);
  }
  HRESULT SetElementAssignments(const VLMListValVLMBaseUnknown_var& assignments) override {
    return SetList("HVXILocalElemAssignment::SetElementAssignments", assignments);
  }
};

class GlobalEntryAdapter final : public AssignmentListAdapter<HVXIGlobalElemAsgnEntry> {
 public:
  using AssignmentListAdapter::AssignmentListAdapter;

  HRESULT GetKind(std::int32_t& entryKind) override {
    return Read("HVXIGlobalElemAsgnEntry::GetKind", kKind, entryKind);
  }
  HRESULT GetElementAssignments(VLMListValVLMBaseUnknown_var& assignments) override {
    return ReadLinkList("HVXIGlobalElemAsgnEntry::GetElementAssignments", kElementAssignments, assignments);
  }
  HRESULT SetElementAssignments(const VLMListValVLMBaseUnknown_var& assignments) override {
    return SetList("HVXIGlobalElemAsgnEntry::SetElementAssignments", assignments);
  }
};

class GlobalAssignmentAdapter final : public FeatureAdapter<HVXIGlobalElemAssignment> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetEntry(std::int32_t analysisType, VLMBaseUnknown_var& entry) override {
    entry = NULL_var;
    if (const HRESULT entered = Enter("HVXIGlobalElemAssignment::GetEntry"); Failed(entered)) return entered;
    for (Feature* const each : LinkedFeatures(Self(), kEntries)) {
      std::int32_t entryKind = 0;
      if (Failed(ReadAttribute(*each, kKind, entryKind)) || entryKind != analysisType) continue;
      entry = HandleOn<VLMBaseUnknown>(each);
      break;
    }
    return S_OK;
  }
  HRESULT GetEntries(VLMListValVLMBaseUnknown_var& entries) override {
    return ReadLinkList("HVXIGlobalElemAssignment::GetEntries", kEntries, entries);
  }
};

}  // namespace

void BindElementAssignmentAdapters(VLMLibrary& host) {
  Bind<ElementAssignmentAdapter>(host, {"HVXElementAssignmentLT"});
  Bind<LocalAssignmentAdapter>(host, {"HVXLocalElemAsgnLT"});
  Bind<GlobalEntryAdapter>(host, {"HVXGlobalElemAsgnEntryLT"});
  Bind<GlobalAssignmentAdapter>(host, {"HVXGlobalElemAsgnLT"});
}

}  // namespace standalone
