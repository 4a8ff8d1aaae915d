#pragma once

#include <deque>
#include <memory>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "model/AttributeIndex.h"
#include "model/ChangeLog.h"
#include "model/Feature.h"
#include "model/HeldNames.h"
#include "model/KeyedHash.h"
#include "model/LargePages.h"
#include "model/Listings.h"
#include "model/NumberedNames.h"
#include "model/OpenList.h"
#include "model/RecentTexts.h"
#include "model/SetIndex.h"
#include "model/UpgradeSources.h"
#include "modeler/VLMDocument.h"

namespace standalone {

class Document;
struct FeatureCatalog;
using DocumentPtr = VLMHandle<Document>;

/// What another part of the host keeps with an open document in a form of its own, such as the user numbers
/// of a mesh that are being changed one by one. Where the features lag behind it, `Feature::isBehind` is set.
class DocumentCompanion {
 public:
  virtual ~DocumentCompanion() = default;

  /// Brings the features up to what is kept here.
  virtual void WriteBack() = 0;
};

/// What `Document::Create` throws beyond the limit that was set.
class TooManyFeatures : public std::runtime_error {
 public:
  TooManyFeatures() : std::runtime_error("more features were created than the limit allows") {}
};

/// An analysis document in memory: the features, in order, and which upgrades the document has been through.
///
/// All of a document's memory is one arena that goes with it; features never move. Every change of a feature
/// goes through this class, which keeps the feature's state before its first change, so that what an upgrade
/// did can be told by comparing.
///
/// Several documents may be open at once. Each, with its features and the handles on them, belongs to one
/// thread at a time: it is counted and changed without a lock. Who passes it to another thread synchronises
/// with that thread, and lets go of all handles.
class Document final : public VLMDocument {
 public:
  [[nodiscard]] static DocumentPtr Create(std::string displayName);
  /// The document behind a handle that the host gave out.
  [[nodiscard]] static Document& Of(VLMDocument& document) { return static_cast<Document&>(document); }

  // VLMDocument
  void AddRef() noexcept override { ++references_; }
  void Release() noexcept override {
    if (--references_ == 0) delete this;
  }
  HRESULT QueryInterface(const VLMInterfaceId& id, void** out) override;
  [[nodiscard]] const void* Identity() const noexcept override { return this; }
  VLMUnicodeString GetDisplayName() override { return std::string_view(displayName_); }

  // The upgrades that the document has been through, in the order in which they were recorded.
  [[nodiscard]] const std::vector<std::string>& Upgrades() const { return upgrades_; }
  [[nodiscard]] bool HasRecorded(std::string_view identifier) const { return recorded_.contains(identifier); }
  void RecordUpgrade(std::string_view identifier) {
    upgrades_.emplace_back(identifier);
    recorded_.emplace(identifier);
  }
  /// The libraries that they came from.
  [[nodiscard]] UpgradeSources& Sources() { return sources_; }
  [[nodiscard]] const UpgradeSources& Sources() const { return sources_; }

  // The feature catalogs that were loaded into the document, for as long as it is open.
  [[nodiscard]] const std::vector<std::shared_ptr<const FeatureCatalog>>& LoadedCatalogs() const {
    return catalogs_;
  }
  void LoadCatalog(std::shared_ptr<const FeatureCatalog> catalog);
  void UnloadCatalogs() { catalogs_.clear(); }

  // Names that do not stand in a program: they are there as long as a document that asked for them, or got
  // one set, is open.
  [[nodiscard]] NameId NameFor(std::string_view text) { return names_.Name(text); }
  [[nodiscard]] const LateType& LateTypeFor(std::string_view name) { return names_.Type(name); }

  // Reading.
  [[nodiscard]] Feature* First() const { return first_; }
  [[nodiscard]] std::size_t FeatureCount() const { return count_; }
  /// The id that the next feature made will get.
  [[nodiscard]] FeatureId NextId() const { return highestId_ + 1; }
  /// The feature of that id, also when it was removed; null when there never was one.
  [[nodiscard]] Feature* Find(FeatureId id) const;
  /// The feature's attribute of that name; null when it has none. A link whose target was removed is gone.
  [[nodiscard]] Attribute* FindAttribute(Feature& feature, NameId key);
  /// All attributes of the feature, in order, without the links whose targets were removed.
  [[nodiscard]] std::span<const Attribute> AttributesOf(Feature& feature);
  /// Whether an attribute of a feature other than `feature` links to `target`.
  [[nodiscard]] bool IsLinkedFromElsewhere(const Feature& target, const Feature& feature);
  /// How many features stand beneath `feature`, at any depth.
  [[nodiscard]] static std::size_t CountBeneath(const Feature& feature);
  /// The highest N among the external names "<prefix>N" that the document's features bear; 0 without one. The
  /// first question about a prefix walks over the document, later ones cost next to nothing.
  [[nodiscard]] std::int64_t HighestNumberAfter(std::string_view prefix);
  /// The document's analysis model (its first, should it hold several); null without one.
  [[nodiscard]] Feature* AnalysisModel() const;
  /// The document's analysis sets of a late type or kind, in document order. Cases and steps are sets, too.
  [[nodiscard]] std::vector<Feature*> AnalysisSets(std::string_view lateTypeOrKind) {
    return sets_.OfKind(lateTypeOrKind, first_);
  }
  /// What was listed lately beneath the document's features.
  [[nodiscard]] Listings& Listed() { return listings_; }
  /// A table of a part of the host about this document, empty at first: what it found out and may need again.
  /// It is the part's business to know whether that still holds.
  template <class Table>
  [[nodiscard]] Table& Remembered() {
    std::shared_ptr<void>& table = remembered_[typeid(Table)];
    if (table == nullptr) table = std::make_shared<Table>();
    return *static_cast<Table*>(table.get());
  }
  /// What goes along with the document; null until it is set.
  [[nodiscard]] DocumentCompanion* Companion() const { return companion_.get(); }
  void SetCompanion(std::unique_ptr<DocumentCompanion> companion) { companion_ = std::move(companion); }

  // Changing. Nothing is done, and nothing counts as a change, when the new state is the old one. A link to a
  // removed feature is gone as soon as it is set: nothing that is read or written holds one.
  /// Makes a feature: the last of the document and of its father's sons. Null, and nothing is made, when the
  /// father was removed; a container that was removed counts as none.
  Feature* Create(const LateType& type, std::string_view name, Feature* father, Feature* container);
  /// Removes the feature with all that stands beneath it, and every link that held any of them. Nothing
  /// happens to one that was removed already.
  void Remove(Feature& feature);
  void SetType(Feature& feature, const LateType& type);
  void SetExternalName(Feature& feature, std::string_view name);
  void SetPhysicalType(Feature& feature, std::string_view physicalType);
  void SetUpToDate(Feature& feature, bool upToDate);
  /// Sets the attribute, adding it at the end when the feature lacks it. A text or list must live in
  /// `Arena()` or come from `Keep`.
  void SetAttribute(Feature& feature, NameId key, const Value& value);
  /// Makes room for `count` attributes in all, so that adding up to so many moves none.
  void ReserveAttributes(Feature& feature, std::uint32_t count);
  void SetAttributeMode(Feature& feature, NameId key, int mode);
  void RemoveAttribute(Feature& feature, NameId key);
  /// Appends to the attribute, which must exist; one that is no list gives way to a list of the one entry. A
  /// list grows in steps, so that appending n entries costs n.
  void AppendToList(Feature& feature, NameId key, const Value& entry);
  /// Takes every link to `target` out of the list; whatever else it holds stays. Nothing happens without the
  /// attribute, or where it is no list.
  void DropFromList(Feature& feature, NameId key, const Feature& target);
  /// The list in the form in which it is changed entry by entry: for a long one that `DropFromList` or
  /// `AppendToList` changed last, or out of which links went with their targets. Null for any other, whose
  /// value is to be looked at. It is that until the attribute itself is looked at or set, or another list is
  /// changed.
  [[nodiscard]] OpenList* OpenListOf(Feature& feature, NameId key) {
    if (feature.hasDeadLinks) SettleEntries(feature, key);
    return IsOpen(feature, key) ? &*openList_ : nullptr;
  }
  /// Empties a list so that it can be filled anew: takes the links out of it and remembers it as it was,
  /// until it is replaced or given back. Nothing happens to a list without links, or to what is no list.
  void SetListAside(Feature& feature, NameId key);
  /// Forgets what was set aside of the list, now that it is filled; gives what that linked to.
  [[nodiscard]] std::vector<Feature*> ReplaceListSetAside(const Feature& feature, NameId key);
  /// Makes every list that was set aside what it was, unless links came to stand in it: the feature is as if
  /// nothing had happened. To be called whenever what could have filled the lists is over.
  void RestoreListsSetAside();
  /// Makes `feature` the last son of `father`. False, and nothing changes, when `father` is it or stands
  /// beneath it, or when one of the two was removed.
  bool PlaceBeneath(Feature& feature, Feature& father);
  /// Moves `feature` to stand directly after (or before) `other`, a son of the same father. Both are there.
  void PlaceBeside(Feature& feature, Feature& other, bool after);

  /// Drops, in every feature, the links whose targets were removed, gives back what was set aside, and has
  /// the companion write back what it keeps; to be called before the document is looked at as a whole (single
  /// features are settled when they are looked at).
  void DropAllDeadLinks();

  /// Keeps a text or entries in the arena, where they may become values.
  [[nodiscard]] std::string_view Keep(std::string_view text);
  [[nodiscard]] std::span<Value> Keep(std::span<const Value> entries);

  // What changed since the document was read.
  /// Features that were changed, created or removed, in the order of their first change.
  [[nodiscard]] const std::vector<Feature*>& Touched() const { return touched_; }
  /// The state of the feature when the document was read; the feature itself when it is unchanged; null when
  /// it was created since. Links of that state may lead to features that are removed by now.
  [[nodiscard]] const FeatureState* Before(const Feature& feature) const;

  /// Grows with every change, also of features that were made since: nothing was changed between two equal
  /// answers.
  [[nodiscard]] std::uint64_t ChangeCount() const { return changeCount_; }
  /// How many features were made since.
  [[nodiscard]] std::size_t CreatedCount() const { return createdCount_; }
  /// From now on `Create` throws `TooManyFeatures` when more than `most` would have been made since the
  /// document was read.
  void LimitCreation(std::size_t most) { mostCreated_ = most; }

  /// Who made which change; see there.
  [[nodiscard]] ChangeLog& Changes() { return changes_; }
  [[nodiscard]] const ChangeLog& Changes() const { return changes_; }
  /// Features that were moved among the others, or got another late type, since the last call of
  /// `ForgetRearranged`.
  [[nodiscard]] const std::vector<Feature*>& Rearranged() const { return rearranged_; }
  void ForgetRearranged() { rearranged_.clear(); }

  // For the reader, which fills an empty document.
  /// Makes room for about so many features.
  void ExpectRead(std::size_t featureCount) { byId_.reserve(featureCount); }
  /// Adds a feature at the end, without father or container; `id` must be new.
  Feature& AppendRead(FeatureId id, const LateType& type);
  void SetFatherRead(Feature& feature, Feature& father);
  /// Gives the feature its attributes as they are; to be called once per feature. Their keys are names of
  /// this document (`NameFor`).
  void SetAttributesRead(Feature& feature, std::span<const Attribute> attributes);
  /// Takes note that `referrer` links to `target`, in an attribute or as its container.
  void NoteLinkRead(Feature& referrer, Feature& target) { NoteLink(referrer, target); }
  /// Makes the sons of every feature anew, in document order, from the fathers that features have.
  void RelinkSonsRead();

 private:
  explicit Document(std::string displayName) : displayName_(std::move(displayName)) {}
  ~Document() override = default;

  void Touch(Feature& feature, ChangedPart part, NameId key = kNoName);
  void LinkLast(Feature& feature);
  void LinkLastSon(Feature& feature, Feature& father);
  void Unlink(Feature& feature);
  void UnlinkSon(Feature& feature);
  void MoveBeside(Feature& feature, Feature& other, bool after);
  Attribute& AddAttribute(Feature& feature, NameId key);
  void NoteLinks(Feature& referrer, const Value& value);
  void NoteLink(Feature& referrer, Feature& target);
  void MarkReferrers(Feature& target);
  void TellReferrer(Feature& referrer, const Feature& removed);
  void MarkDeadLinks(Feature& referrer);
  void IndexSharedReferrers();
  /// Opens the list of that key, if it is long and links to what was removed.
  void DropDeadLinks(Feature& feature, NameId toOpen = kNoName);
  /// Makes the feature's attribute, or all of them, what they are to be read as.
  void Settle(Feature& feature, NameId key = kNoName);
  void SettleEntries(Feature& feature, NameId key);
  [[nodiscard]] bool IsOpen(const Feature& feature, NameId key) const {
    return openFeature_ == &feature && openKey_ == key;
  }
  void Open(Feature& feature, NameId key, std::span<const Value> entries);
  void CloseList();
  Value WithoutDeadLinks(const Value& value);
  std::vector<Value> AliveEntries(const Value& list);

  HeldNames names_;  // goes last
  std::uint32_t references_ = 1;
  std::string displayName_;
  std::vector<std::string> upgrades_;
  std::unordered_set<std::string, KeyedHash, std::equal_to<>> recorded_;  // the same
  UpgradeSources sources_;
  std::vector<std::shared_ptr<const FeatureCatalog>> catalogs_;
  std::pmr::monotonic_buffer_resource arena_{std::size_t{1} << 16, &LargePages::Instance()};
  // Features stand by themselves, close together: most passes look at nothing else.
  std::pmr::monotonic_buffer_resource featureArena_{std::size_t{1} << 16, &LargePages::Instance()};

  RecentTexts<std::string_view> recentTexts_;

  Feature* first_ = nullptr;
  Feature* last_ = nullptr;
  std::size_t count_ = 0;
  Feature* analysisModel_ = nullptr;
  FeatureId highestId_ = 0;
  SetIndex sets_;
  Listings listings_;
  NumberedNames numberedNames_;

  std::vector<Feature*> byId_;  // ascending ids, also those of removed features
  bool idsAscend_ = true;
  bool idsAreDense_ = true;  // 1, 2, 3, ..., as in most documents: then an id is a position
  std::unordered_map<FeatureId, Feature*, KeyedHash>
      byScatteredId_;  // used instead as soon as an id does not ascend

  AttributeIndex attributeIndex_;
  std::unique_ptr<DocumentCompanion> companion_;
  std::unordered_map<std::type_index, std::shared_ptr<void>> remembered_;

  std::vector<Feature*> touched_;
  std::uint64_t changeCount_ = 0;
  std::size_t createdCount_ = 0;
  std::size_t mostCreated_ = std::numeric_limits<std::size_t>::max();
  ChangeLog changes_;
  std::vector<Feature*> rearranged_;
  std::vector<Feature*> withDeadLinks_;
  struct ListSetAside {
    Feature* feature;
    NameId key;
    Value list;
  };
  std::vector<ListSetAside> listsSetAside_;
  // One at a time: routines work on one list after the other.
  std::optional<OpenList> openList_;
  Feature* openFeature_ = nullptr;
  NameId openKey_ = kNoName;
  std::deque<FeatureState> before_{FeatureState()};  // entry 0 is no feature's

  // Who links to the features that several others link to; made when the first of those is removed.
  std::unordered_map<const Feature*, std::vector<Feature*>> sharedReferrers_;
  bool sharedReferrersIndexed_ = false;
  // Of features that are asked about again and again, who was found to link to them.
  std::unordered_map<const Feature*, const Feature*> knownLinks_;
};

}  // namespace standalone
