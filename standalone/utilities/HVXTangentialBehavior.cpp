#include "workbench/HVXTangentialBehavior.h"

#include <cmath>

#include "adapters/FeatureAdapter.h"
#include "analysis/Frame.h"

using namespace standalone;

namespace {

const Key kTangentialBehavior("tangentialBehavior");
const Key kUserSubroutine("UserSubroutine");
const Key kFrictionTable("FrictionTable");
const Key kFrictionFormulation("FrictionFormulation");

constexpr std::size_t kRowLength = 4;

class StoredTangentialBehavior final : public HVXTangentialBehavior {
 public:
  explicit StoredTangentialBehavior(Feature& feature) : document_(feature.document), feature_(feature) {}

  [[nodiscard]] bool IsUserSubroutine() const override {
    bool isUserSubroutine = false;
    if (Failed(EnterOn(feature_, "HVXTangentialBehavior::IsUserSubroutine"))) return false;
    static_cast<void>(ReadAttribute(feature_, kUserSubroutine, isUserSubroutine));
    return isUserSubroutine;
  }

  HRESULT SetFrictionTable(const HVXCftArrayHVXCftArrayDouble& table) override {
    if (const HRESULT entered = EnterOn(feature_, "HVXTangentialBehavior::SetFrictionTable"); Failed(entered))
      return entered;
    if (!CanHoldList(feature_, kFrictionTable)) return E_FAIL;
    std::vector<Value> rows;
    for (const HVXCftArraydouble& row : table) {
      std::vector<Value> numbers;
      for (const double number : row) {
        if (!std::isfinite(number)) return E_FAIL;  // no document could hold it
        numbers.push_back(Value::Real(number));
      }
      if (numbers.size() != kRowLength) return E_FAIL;
      rows.push_back(Value::List(document_->Keep(std::span<const Value>(numbers))));
    }
    document_->SetAttribute(feature_, kFrictionTable.Id(),
                            Value::List(document_->Keep(std::span<const Value>(rows))));
    return S_OK;
  }

  HRESULT SetFrictionFormulation(frictionFormulationEnm formulation) override {
    if (const HRESULT entered = EnterOn(feature_, "HVXTangentialBehavior::SetFrictionFormulation");
        Failed(entered)) {
      return entered;
    }
    return ReplaceAttribute(feature_, kFrictionFormulation, static_cast<std::int32_t>(formulation));
  }

 private:
  DocumentPtr document_;  // the feature's memory lives as long as its document
  Feature& feature_;
};

}  // namespace

HRESULT HVXGenHeapObjectProxyHVXTangentialBehavior::Fill(const VLMBaseUnknown_var& interactionProperty) {
  Release();
  Feature* const property = FeatureOf(interactionProperty);
  if (const HRESULT entered = Checkpoint::Pass("HVXGenHeapObjectProxyHVXTangentialBehavior::Fill", property);
      Failed(entered)) {
    return entered;
  }
  if (property == nullptr || property->removed) return E_FAIL;
  Feature* const behavior = LinkedFeature(*property, kTangentialBehavior);
  if (behavior == nullptr || !IsOfKind(*behavior, "HVXTangentialBehaviorLT")) return E_FAIL;
  behavior_ = std::make_unique<StoredTangentialBehavior>(*behavior);
  return S_OK;
}
