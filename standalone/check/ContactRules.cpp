// Contacts, ties, and the connection properties that they used to rest on.

#include <fmt/format.h>

#include <algorithm>

#include "analysis/ComponentLayouts.h"
#include "analysis/Components.h"
#include "analysis/Contacts.h"
#include "analysis/Frame.h"
#include "analysis/Supports.h"
#include "check/Rules.h"

namespace standalone {
namespace {

using check::HasAttribute;
using check::IsA;

constexpr std::string_view kConversion = "UpgradeToContactConnectionEnhancementLT";
const Key kConnectionProperty("connectionProperty");
const Key kContactProperty("SAMFaceFaceContact");
const Key kFastenedProperty("SAMFaceFaceFastened");
const Key kClearanceFlag("ClearanceFlag");
const Key kClearance("Clearance");
const Key kPropertyFit("InterferenceFit");

constexpr DamageKind kNoProperty{"{} is missing",
                                 "Give the feature a {} that links to its connection property"};
constexpr DamageKind kEmptyProperty{"{} links to no connection property of the kind that its support has",
                                    "Let {} link to the connection property that its support rests on"};
constexpr DamageKind kPropertyOnNothing{"the connection property, {}, has no support",
                                        "Give the connection property, {}, its two supports"};
constexpr DamageKind kNotFirst{"only its first support is used, and this one, {}, comes after it",
                               "Let the first support rest on what the connection property connects"};
constexpr DamageKind kLostSides{"nothing shows what it rested on",
                                "Select its two sides again in the workbench"};
constexpr DamageKind kLostProperty{"it lost them when it was moved off its connection property, {}",
                                   "Select its two sides again in the workbench"};
constexpr DamageKind kNoCase{"it is beneath no analysis case", "Move the feature beneath an analysis case"};
constexpr DamageKind kNoContainer{"the analysis case has no {}", "Give the analysis case an {}"};
constexpr DamageKind kNoContact{"no contact pair links to it as its {}",
                                "Let its contact pair link to it as its {}, or delete it"};
constexpr DamageKind kFitMayBeLost{
    "the contact pair that was created for it may have no interference fit, which a second run would delete",
    "Give the pair the fit where it is missing, and delete the property"};
constexpr DamageKind kUnreadableFit{
    "a value of its interference fit could not be read",
    "Give the contact pair that was created for the property its fit, and delete the property"};
constexpr DamageKind kUnreadableFitYet{"{} of its interference fit cannot be read",
                                       "Give its interference fit a number as {}"};
constexpr DamageKind kWithoutSidesYet{
    "{} of its first support is missing: the contact pair created for it would have no sides",
    "Let its first support have a {}"};
constexpr DamageKind kWithoutSides{
    "its first support has only one of its two sides, and each run would create another contact pair without "
    "sides",
    "Give the property both sides of its first support, then upgrade the document again with --retry"};
constexpr DamageKind kNoList{"the analysis model has no {} to register it in",
                             "Give the analysis model an empty list {}"};
constexpr DamageKind kHadNoList{"the analysis model had no \"FeatList\" to register it in",
                                "Give the analysis model an empty list \"FeatList\" in the document as it "
                                "was before, and upgrade that again"};
constexpr DamageKind kNotInList{
    "it is not in the \"FeatList\" of the analysis model",
    "Enter the feature in the \"FeatList\" of the analysis model, and give it its "
    "\"PropagationState\" and \"PropagatedTo\" in the workbench"};
constexpr DamageKind kStandsNowhere{"it is in no container", "Put the feature in the analysis container"};

std::string IdOf(const Feature& feature) {
  return fmt::format("feature {}", feature.id);
}

Verdict OldContact(Feature& feature, const Survey& survey) {
  std::vector<Damage> damage;
  if (!HasAttribute(feature, kConnectionProperty)) damage.push_back({&kNoProperty, "connectionProperty"});
  if (!survey.CanRegister()) damage.push_back({&kNoList, "FeatList"});
  const Feature* const analysisCase = CaseAbove(feature);
  if (analysisCase == nullptr) {
    damage.push_back({&kNoCase, {}});
  } else if (!survey.HasInteractionSet(*analysisCase)) {
    damage.push_back({&kNoContainer, "HVXInteractionContainerLT"});
  }
  return Damaged(std::move(damage));
}

// Its conversion ends with the registration, and then propagates it. What an old contact held still tells
// that the pair was one.
Verdict HalfConverted(Feature& feature, const Survey& survey) {
  static const Key oldKeys[] = {
      Key("connectionProperty"),   Key("interactionProperty"),   Key("surfacesSwapped"),
      Key("firstSurfaceReversed"), Key("secondSurfaceReversed"), Key("slidingFormulation"),
      Key("adjustment"),           Key("adjustmentGroup"),       Key("adjustTolVal_param"),
      Key("thicknessOption"),      Key("constraintEnforcement")};
  if (survey.IsRegistered(feature) || !survey.Of().HasRecorded(kConversion)) return Conforms();
  if (std::ranges::none_of(oldKeys, [&](const Key& key) { return HasAttribute(feature, key); }))
    return Conforms();
  return {Verdict::State::kOnce, {}, survey.CanRegister() ? &kNotInList : &kHadNoList};
}

// What the upgrade puts in the place of a support on the property.
Verdict MovedOff(Feature& property) {
  return check::FirstSupported(property) != nullptr ? Outdated()
                                                    : Damaged(kPropertyOnNothing, IdOf(property));
}

Feature* FirstSupportOn(Feature& feature, const Key& lateType) {
  for (Feature* const connector : LinkedFeatures(feature, kSupports)) {
    Feature* const first = LinkedFeature(*connector, kFirstObject);
    if (first != nullptr && IsA(*first, lateType)) return connector;
  }
  return nullptr;
}

// A pair is moved off the property that its first support rests on.
Verdict PairOnProperty(Feature& feature, const Survey& /*survey*/) {
  Feature* const connector = FirstSupportOn(feature, kContactProperty);
  if (connector == nullptr) return Conforms();
  if (connector != check::FirstSupport(feature)) return Beyond(kNotFirst, IdOf(*connector));
  return MovedOff(*LinkedFeature(*connector, kFirstObject));
}

// A tie is moved off the property that it links to, whatever its supports rest on.
Verdict TieMoved(Feature& feature) {
  if (!HasAttribute(feature, kConnectionProperty)) return Damaged(kNoProperty, "connectionProperty");
  Feature* const property = LinkedFeature(feature, kConnectionProperty);
  if (property == nullptr || !IsA(*property, kFastenedProperty))
    return Damaged(kEmptyProperty, "connectionProperty");
  return MovedOff(*property);
}

Verdict TieOnProperty(Feature& feature, const Survey& /*survey*/) {
  return FirstSupportOn(feature, kFastenedProperty) == nullptr ? Conforms() : TieMoved(feature);
}

// Renamed when its support could be moved, or need not be.
Verdict OldTieName(Feature& feature, const Survey& /*survey*/) {
  if (feature.externalName.find("Fastened Connection Enhancement-") == std::string_view::npos)
    return Conforms();
  if (!HasAttribute(feature, kConnectionProperty)) return Damaged(kNoProperty, "connectionProperty");
  const Feature* const property = LinkedFeature(feature, kConnectionProperty);
  return property != nullptr && IsA(*property, kFastenedProperty) ? TieMoved(feature) : Outdated();
}

// One that was given no connection property yet, and has a place for it, is unfinished.
Verdict OnNothing(Feature& feature, const Survey& /*survey*/) {
  if (check::FirstSupport(feature) != nullptr || check::IsLeftEmpty(feature, kConnectionProperty))
    return Conforms();
  Feature* const property = LinkedFeature(feature, kConnectionProperty);
  const bool wasMoved =
      property != nullptr && (IsA(*property, kContactProperty) || IsA(*property, kFastenedProperty));
  return wasMoved ? Beyond(kLostProperty, IdOf(*property)) : Beyond(kLostSides);
}

// The property that a tie links to can give it its sides once more.
Verdict TieOnNothing(Feature& feature, const Survey& survey) {
  const Feature* const property = LinkedFeature(feature, kConnectionProperty);
  if (check::FirstSupport(feature) == nullptr && property != nullptr && IsA(*property, kFastenedProperty))
    return TieMoved(feature);
  return OnNothing(feature, survey);
}

Verdict WithoutFit(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(LinkedFeature(feature, kInterferenceFit) == nullptr);
}

// As long as the pair rests on the property. Later the clearance is where the fit is changed by hand.
Verdict UnmappedClearance(Feature& feature, const Survey& /*survey*/) {
  Feature* const property = check::FirstSupported(feature);
  if (property == nullptr || !IsA(*property, kContactProperty) || !check::FlagOf(*property, kClearanceFlag))
    return Conforms();
  Feature* const fit = LinkedFeature(feature, kInterferenceFit);
  if (fit == nullptr) return Outdated();
  float clearance = 0.0F;
  static_cast<void>(ReadAttribute(*property, kClearance, clearance));
  double value = 0.0;
  static_cast<void>(ReadAttribute(*fit, kFitValue, value));
  const bool isMapped = check::IntegerOf(*fit, kFitType, 0) == 1 &&
                        check::IntegerOf(*fit, kFitDefinition, 0) == 1 &&
                        value == static_cast<double>(clearance);
  return OutdatedIf(!isMapped);
}

// Whether what should be a link is something else, which is told as such.
bool IsUnreadableLink(Feature& feature, const Key& key) {
  const Attribute* const attribute = feature.document->FindAttribute(feature, key.Id());
  return attribute != nullptr && attribute->value.Kind() != ValueKind::kLink;
}

Verdict WithoutControl(Feature& feature, const Survey& /*survey*/) {
  return OutdatedIf(LinkedFeature(feature, kContactControl) == nullptr &&
                    !IsUnreadableLink(feature, kContactControl));
}

// The components are made along with the contact control.
Verdict PairLacksLayout(Feature& feature, const Survey& survey) {
  Verdict verdict = check::LacksLayout(feature, survey);
  if (verdict.state != Verdict::State::kConforms && feature.container == nullptr)
    return Damaged(kStandsNowhere);
  return verdict;
}

Verdict WithoutSmoothing(Feature& feature, const Survey& /*survey*/) {
  const Feature* const settings = ContactSettingsOf(feature);
  return OutdatedIf(settings == nullptr || FindComponent(*settings, "SurfaceSmoothing") == nullptr);
}

Feature* ContactOf(Feature& control) {
  Feature* const contact = control.father;
  const bool isItsOwn =
      contact != nullptr && IsContactPair(*contact) && LinkedFeature(*contact, kContactControl) == &control;
  return isItsOwn ? contact : nullptr;
}

Verdict OldControl(Feature& feature, const Survey& survey) {
  Verdict verdict = check::LacksLayout(feature, survey);
  if (verdict.state == Verdict::State::kConforms || ContactOf(feature) != nullptr) return verdict;
  if (feature.father != nullptr && IsContactPair(*feature.father) &&
      IsUnreadableLink(*feature.father, kContactControl))
    return Conforms();
  return Beyond(kNoContact, "ContactControl");
}

// What of the property's fit cannot be copied to the pair; empty for nothing.
std::string_view UnreadableOfFit(Feature& property) {
  constexpr std::int32_t kStandard = 1;
  static const Key contactKind("ContactKind");
  Feature* const fit = LinkedFeature(property, kPropertyFit);
  if (fit == nullptr || check::IntegerOf(property, contactKind, kStandard) != kStandard) return {};
  for (const Key& key : {kFitType, kFitDefinition}) {
    std::int32_t number = 0;
    if (HasAttribute(*fit, key) && Failed(ReadAttribute(*fit, key, number))) return key.Text();
  }
  double value = 0.0;
  const bool isReadable = !HasAttribute(*fit, kFitValue) || Succeeded(ReadAttribute(*fit, kFitValue, value));
  return isReadable ? std::string_view() : kFitValue.Text();
}

// A verdict on what must not run again as long as it is so.
Verdict Once(const DamageKind& yet, std::string_view key, const DamageKind& later) {
  Verdict verdict = Damaged(yet, key);
  verdict.state = Verdict::State::kOnce;
  verdict.onceItRan = &later;
  return verdict;
}

// The side of the property's first support that is missing; empty for none.
std::string_view MissingSide(Feature& property) {
  if (check::FirstSupported(property) == nullptr) return kFirstObject.Text();
  const bool hasSecond = LinkedFeature(*check::FirstSupport(property), kSecondObject) != nullptr;
  return hasSecond ? std::string_view() : kSecondObject.Text();
}

// Properties are replaced where they are members of a set, and only in documents of this product alone.
Verdict ContactProperty(Feature& feature, const Survey& survey) {
  static const Key propertySet("PropertySet");
  static const Key halvexPropertySet("HVXHalvexPropertySetLT");
  const bool isMember = feature.father != nullptr &&
                        (IsA(*feature.father, propertySet) || IsA(*feature.father, halvexPropertySet));
  if (!isMember || !survey.HasCasesOfThisProductOnly()) return Conforms();
  // No run knows the pair again that an earlier one made without sides.
  if (const std::string_view key = MissingSide(feature); !key.empty())
    return Once(kWithoutSidesYet, key, kWithoutSides);
  if (!survey.CasesTakeContacts(check::FlagOf(feature, kClearanceFlag)))
    return Damaged(kNoContainer, "HVXInteractionContainerLT");
  // A second run would find the pair that the first one made, and delete the property with its fit.
  if (const std::string_view key = UnreadableOfFit(feature); !key.empty())
    return Once(kUnreadableFitYet, key, kUnreadableFit);
  if (LinkedFeature(feature, kPropertyFit) != nullptr) return {Verdict::State::kOnce, {}, &kFitMayBeLost};
  return Outdated();
}

constexpr std::string_view kPairs =
    "HVXContactConnectionEnhancementStdLT HVXContactConnectionEnhancementExplicitLT";

constexpr ConformityRule kRules[] = {
    {"HVXSurfaceToSurfaceContactLT", kConversion, "contacts of this late type have become contact pairs",
     OldContact},
    {kStandardPair, kConversion, "the conversion of the old contact that it was did not end", HalfConverted},
    {kPairs, "UpgCCPToGACOrConstraintAsSupp", "a support rests on a contact connection property",
     PairOnProperty},
    {kPairs, {}, "it has no supports", OnNothing},
    {kStandardPair, "UpgContactStdWithInterference", "the interference fit is missing", WithoutFit},
    {kStandardPair, "UpgMapCCPClearanceToInterference",
     "the clearance of its connection property is not its interference fit", UnmappedClearance},
    {kPairs, "UpgContactWithContactControl", "the contact control is missing", WithoutControl},
    {kPairs, "UpgContactWithContactControl", check::kLacks, PairLacksLayout},
    {kPairs, "UpgradeContactWithSurfSmoothParam", "the surface smoothing parameter is missing",
     WithoutSmoothing},
    {"HVXContactControlsLT", "UpgradeAutomaticOverclosureTolerancesInContactPair", check::kLacks, OldControl,
     ContactOf},
    {"HVXTiedContactLT", "UpgCCPToGACOrConstraintAsSupp", "a support rests on a fastened connection property",
     TieOnProperty},
    {"HVXTiedContactLT", "UpgCCPToGACOrConstraintAsSupp", "it has no supports", TieOnNothing},
    {"HVXTiedContactLT", "UpgCCPToGACOrConstraintAsSupp", "it has an old name: ties are fastened pairs now",
     OldTieName},
    {"SAMFaceFaceContact", "UpgDocumentForCCPRemoval",
     "contact connection properties have become contact pairs", ContactProperty, check::VisitNobody},
};

}  // namespace

std::span<const ConformityRule> ContactRules() {
  return kRules;
}

}  // namespace standalone
