#include "hvxupgrade/Document.h"

#include <fmt/format.h>

#include "file/DocumentFormat.h"
#include "interface/Inside.h"
#include "interface/Translation.h"

namespace hvxupgrade {

namespace {

// What this thread is at, the innermost first: a callback may work on another document.
thread_local const Busy* innermost = nullptr;

constexpr const char* kIsBusy = "the document is being upgraded or written";
constexpr const char* kOnlyLook = "Wait until that is done: a callback may only look";

}  // namespace

Busy::Busy(Inside::DocumentState& state) : state_(state), outer_(innermost) {
  const auto refuse = [this](const char* problem, const char* advice) {
    throw Error(Error::Kind::kUsage, state_.file.string(), 0, problem, advice);
  };
  if (state_.isStopped)
    refuse("an upgrade of the document was stopped, so it stands between two releases", "Read it again");
  if (state_.isBusy) refuse(kIsBusy, kOnlyLook);
  state_.isBusy = true;
  innermost = this;
}

Busy::~Busy() {
  state_.isBusy = false;
  innermost = outer_;
}

void Busy::RequireIdle(const standalone::Document& document) {
  for (const Busy* each = innermost; each != nullptr; each = each->outer_) {
    if (each->state_.document.Get() == &document)
      throw Error(Error::Kind::kUsage, each->state_.file.string(), 0, kIsBusy, kOnlyLook);
  }
}

Document::Document(std::string_view displayName)
    : state_(std::make_unique<State>(standalone::Document::Create(std::string(displayName)))) {}

Document::Document(std::unique_ptr<State> state) : state_(std::move(state)) {}

Document::~Document() = default;
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;

std::string Document::DisplayName() const {
  return std::string(state_->document->GetDisplayName().View());
}

std::filesystem::path Document::File() const {
  return state_->file;
}

std::size_t Document::FeatureCount() const {
  return state_->document->FeatureCount();
}

std::vector<std::string> Document::Upgrades() const {
  return state_->document->Upgrades();
}

std::optional<Feature> Document::Find(FeatureId id) const {
  return Inside::MakeIfAlive(state_->document->Find(id));
}

Document::Features Document::All() const& {
  return Features(*state_->document.Get());
}

std::vector<Feature> Document::OfType(std::string_view lateType) const {
  std::vector<Feature> found;
  const standalone::NameId wanted = standalone::NameTable::Find(lateType);
  if (wanted == standalone::kNoName) return found;
  for (standalone::Feature* each = state_->document->First(); each != nullptr; each = each->next) {
    if (each->type->Id() == wanted) found.push_back(Inside::Make(*each));
  }
  return found;
}

Feature Document::Create(std::string_view lateType, std::string_view alias, std::optional<Feature> father) {
  if (lateType.empty()) RefuseUse("the late type of a feature is empty");
  RequireText(lateType, "late type");
  RequireText(alias, "alias");
  standalone::Document& document = *state_->document.Get();
  Busy::RequireIdle(document);
  if (document.NextId() > standalone::format::kMaxId)
    RefuseUse(fmt::format("ids go to {}, and the document has that one", standalone::format::kMaxId));
  standalone::Feature* above = nullptr;
  if (father) {
    above = &Inside::AliveOf(*father);
    if (above->document != &document)
      RefuseUse(fmt::format("feature {} belongs to another document", above->id));
  }
  standalone::Feature& made =
      *document.Create(document.LateTypeFor(lateType), fmt::format("{}.{}", lateType, document.NextId()),
                       above, above == nullptr ? nullptr : above->container);
  document.SetExternalName(made, alias);
  return Inside::Make(made);
}

void Document::Remove(Feature feature) {
  standalone::Feature& removed = Inside::AliveOf(feature);
  if (removed.document != state_->document.Get())
    RefuseUse(fmt::format("feature {} belongs to another document", removed.id));
  Busy::RequireIdle(*removed.document);
  state_->document->Remove(removed);
}

Feature Document::Features::Iterator::operator*() const {
  return Inside::Make(*at_);
}

// What stood before a feature when it was removed still leads on to what is left behind it; what stood
// behind it may be gone since.
Document::Features::Iterator& Document::Features::Iterator::operator++() {
  const standalone::Document& document = *at_->document;
  while (at_ != nullptr && at_->removed) at_ = at_->previous;
  at_ = at_ == nullptr ? document.First() : at_->next;
  return *this;
}

Document::Features::Iterator Document::Features::begin() const {
  return Iterator(document_->First());
}

}  // namespace hvxupgrade
