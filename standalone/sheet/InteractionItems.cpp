// Contacts and ties.

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kFiniteOrSmall[] = {"finite", "small"};
constexpr std::string_view kAdjustments[] = {"none", "tolerance", "group"};
// The two releases number these the other way round.
constexpr std::string_view kOldEnforcement[] = {"surface to surface", "node to surface"};
constexpr std::string_view kEnforcement[] = {"node to surface", "surface to surface"};

bool IsPropertyOfFaces(const Feature* feature) {
  return feature != nullptr &&
         (feature->TypeName() == "SAMFaceFaceContact" || feature->TypeName() == "SAMFaceFaceFastened");
}

bool IsOldContact(const Feature& feature) {
  return feature.TypeName() == "HVXSurfaceToSurfaceContactLT";
}

// The property of the connection that a contact rests on; null for one that rests on what is connected
// itself.
Feature* PropertyOf(const Reader& reader, Feature& feature) {
  Feature* property = nullptr;
  if (IsOldContact(feature)) {
    property = reader.LinkedBy(feature, "connectionProperty");
  } else if (const auto supports = reader.ListIn(feature, "Supports"); !supports.empty()) {
    const Value& first = supports.front();
    if (first.Kind() == ValueKind::kLink && first.Target() != nullptr)
      property = reader.LinkedBy(*first.Target(), "FirstObject");
  }
  return IsPropertyOfFaces(property) ? property : nullptr;
}

void EnterSidesOf(Reader& reader, const Item& item, Feature& property, std::uint32_t& index) {
  const auto sides = reader.ListIn(property, "Supports");
  if (!sides.empty()) reader.SetConnected(item, sides.front(), ++index);
}

// What is connected: the supports, or what the property of the connection rests on where that is a support.
// An old contact, and an old tie without supports, knows its property by a link.
void ReadSides(Reader& reader, Feature& feature, const Item& item) {
  std::uint32_t index = 0;
  const bool mayBeOldTie =
      feature.TypeName() == "HVXTiedContactLT" && !reader.HasBeenThrough("UpgCCPToGACOrConstraintAsSupp");
  const bool goesByLink =
      IsOldContact(feature) || (mayBeOldTie && reader.ListIn(feature, "Supports").empty());
  Feature* const linked = goesByLink ? reader.LinkedBy(feature, "connectionProperty") : nullptr;
  if (IsPropertyOfFaces(linked)) {
    EnterSidesOf(reader, item, *linked, index);
    return;
  }
  if (linked != nullptr) {
    reader.Enter(item, {.index = 1, .standing = Standing::kSet, .value = Value::Link(linked)});
    return;
  }
  for (const Value& entry : reader.ListIn(feature, "Supports")) {
    Feature* const connector = entry.Kind() == ValueKind::kLink ? entry.Target() : nullptr;
    Feature* const first = connector == nullptr ? nullptr : reader.LinkedBy(*connector, "FirstObject");
    if (IsPropertyOfFaces(first)) {
      EnterSidesOf(reader, item, *first, index);
    } else {
      reader.SetConnected(item, entry, ++index);
    }
  }
}

// A fit of the pair's own, or the clearance that the property of its connection prescribes.
struct Fit {
  Feature* fit;
  Feature* property;  // that prescribes a clearance
};

Fit FitOf(const Reader& reader, Feature& feature) {
  Fit found{reader.LinkedBy(feature, "InterferenceFit"), nullptr};
  Feature* const property = PropertyOf(reader, feature);
  if (property == nullptr) return found;
  const Value* const flag = reader.AttributeOf(*property, "ClearanceFlag");
  const std::optional<Value> isPrescribed = flag == nullptr ? std::nullopt : ReadAs(As::kFlag, *flag);
  if (isPrescribed && isPrescribed->AsBoolean()) found.property = property;
  return found;
}

// An interference fit that says nothing gives way to a prescribed clearance.
bool IsOfProperty(const Reader& reader, const Fit& fit) {
  if (fit.property == nullptr) return false;
  if (fit.fit == nullptr) return true;
  const Value* const type = reader.AttributeOf(*fit.fit, "FitType");
  return type == nullptr || (type->Kind() == ValueKind::kInteger && type->AsInteger() == 0);
}

void ReadFitCode(Reader& reader, Feature& feature, const Item& item) {
  const Fit fit = FitOf(reader, feature);
  Fact fact{.standing = Standing::kDefault, .value = Value::Integer(0)};
  if (IsOfProperty(reader, fit)) {
    fact = {.standing = Standing::kSet, .value = Value::Integer(1)};
  } else if (fit.fit != nullptr) {
    Item one = item;
    one.as = As::kInteger;
    const Fact own = reader.FactAt(*fit.fit, one, item.current, {});
    if (own.standing != Standing::kNotSet) fact = own;
  }
  reader.Enter(item, fact);
}

void ReadFitValue(Reader& reader, Feature& feature, const Item& item) {
  const Fit fit = FitOf(reader, feature);
  Fact fact{.standing = Standing::kDefault, .dimension = Dimension::kLength, .value = Value::Real(0)};
  Fact own;
  if (IsOfProperty(reader, fit)) {
    own = reader.FactAt(*fit.property, item, Attribute("Clearance"), {});
  } else if (fit.fit != nullptr) {
    own = reader.FactAt(*fit.fit, item, item.current, {});
  }
  if (own.standing != Standing::kNotSet) fact = own;
  reader.Enter(item, fact);
}

constexpr Item FitCode(std::string_view name, std::string_view key) {
  Item item = Custom({name}, ReadFitCode);
  item.as = As::kInteger;
  item.fallback = Number(0);
  item.current = Attribute(key);
  return item;
}
constexpr Item FitValue() {
  Item item = Custom({"fit value"}, ReadFitValue, Dimension::kLength);
  item.fallback = Number(0);
  item.current = Attribute("Value");
  return item;
}

// A setting that a contact of old releases keeps under a key of its own. The old key stays when the contact
// becomes a pair, which reads the new one.
void ReadSetting(Reader& reader, Feature& feature, const Item& item) {
  const bool isOld = IsOldContact(feature);
  Item one = item;
  one.read = nullptr;
  one.current = isOld ? item.old : item.current;
  one.codes = isOld && !item.oldCodes.words.empty() ? item.oldCodes : item.codes;
  one.old = {};
  reader.Enter(item, reader.Evaluate(feature, one));
}

constexpr Item Setting(Item item, Source old, Codes oldCodes = {}) {
  item.old = old;
  item.oldCodes = oldCodes;
  item.read = ReadSetting;
  return item;
}

// Whether the pair has controls of its own, which hold some of its tolerances.
void ReadHasControls(Reader& reader, Feature& feature, const Item& item) {
  const Value* const link = reader.AttributeOf(feature, "ContactControl");
  Fact fact{.standing = Standing::kDefault, .value = Value::Boolean(false)};
  if (link != nullptr && link->Kind() != ValueKind::kLink) {
    fact = {.standing = Standing::kUnreadable, .value = *link};
  } else if (link != nullptr && link->Target() != nullptr) {
    fact = {.standing = Standing::kSet, .value = Value::Boolean(true)};
  }
  reader.Enter(item, fact);
}
constexpr Item HasControls() {
  Item item = Custom({"contact controls"}, ReadHasControls);
  item.as = As::kFlag;
  item.fallback = Number(0);
  return item;
}

constexpr Item kSides = Custom({"between", {}, true}, ReadSides);
constexpr Item kPropagatedTo = Custom({"also acts in"}, ReadPropagation);

constexpr Source Control(std::string_view component) {
  return Behind("ContactControl", Component(component));
}

constexpr Item kContactItems[] = {
    kSides,
    Setting(Link("interaction property", Attribute("InteractionProperty")), Attribute("interactionProperty")),
    Setting(Flag("surfaces swapped", Attribute("SurfacesSwapped")), Attribute("surfacesSwapped")),
    Setting(Flag("first surface reversed", Attribute("FirstSurfaceReversed")),
            Attribute("firstSurfaceReversed")),
    Setting(Flag("second surface reversed", Attribute("SecondSurfaceReversed")),
            Attribute("secondSurfaceReversed")),
    Setting(Integer("sliding", Attribute("SlidingFormulation"), Number(0), {kFiniteOrSmall}),
            Attribute("slidingFormulation")),
    Setting(Integer("constraint enforcement", Component("ContactSettings/CnstEnfMethod"), Number(0),
                    {kEnforcement}),
            Attribute("constraintEnforcement"), {kOldEnforcement}),
    Setting(Flag("thickness considered", Component("ContactSettings/ThicknessOptioin")),
            Attribute("thicknessOption")),
    Setting(Integer("adjustment", Attribute("Adjustment"), Number(0), {kAdjustments}),
            Attribute("adjustment")),
    Setting(Real("adjustment tolerance", Dimension::kLength, Attribute("AdjustmentTolerance"), {}, Number(0)),
            Parameter("adjustTolVal_param")),
    Setting(Link("adjustment group", Attribute("AdjustmentGroup")), Attribute("adjustmentGroup")),
    FitCode("fit type", "FitType"),
    FitCode("fit definition", "Definition"),
    FitValue(),
    Flag("surface smoothing", Component("ContactSettings/SurfaceSmoothing")),
    HasControls(),
    Real("search tolerance", Dimension::kLength, Attribute("SearchTolerance"), {}, Number(0)),
    Real("overclosure tolerance", Dimension::kLength, Attribute("OverclosureTolerance"), {}, Number(0)),
    Flag("automatic tolerances", Attribute("AutomaticTolerances")),
    Integer("overclosure tolerance mode", Control("OverclosureToleranceMode"), Number(0)),
    Real("stabilization coefficient", Dimension::kRatio, Control("StabilizationCoefficient"), {}, Number(0)),
    Real("maximum penetration", Dimension::kLength, Control("MaximumPenetration"), {}, Number(0)),
    kPropagatedTo,
};
constexpr Item kTieItems[] = {
    kSides,
    Real("position tolerance", Dimension::kLength, Attribute("PositionTolerance")),
    Flag("initial position adjusted", Attribute("AdjustInitialPosition"), kNoFallback),
};

constexpr Description kDescriptions[] = {
    {"HVXSurfaceToSurfaceContactLT HVXContactConnectionEnhancementStdLT",
     {"contact pair", Chapter::kInteraction},
     kContactItems},
    {"HVXContactConnectionEnhancementExplicitLT",
     {"explicit contact pair", Chapter::kInteraction},
     kContactItems},
    {"HVXTiedContactLT", {"tie", Chapter::kInteraction}, kTieItems},
};

}  // namespace

std::span<const Description> InteractionDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
