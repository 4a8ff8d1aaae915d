#include "file/FeatureReader.h"

namespace standalone {

void FeatureReader::Read(ondemand::object object, std::size_t line) {
  line_ = line;
  Parse(object);
}

void FeatureReader::TakeId(FeatureId id) {
  if (document_.Find(id) != nullptr)
    Refuse(fmt::format("a second feature has id {}", id), "Give every feature an id of its own");
  id_ = id;
}

void FeatureReader::TakeType(std::string_view name) {
  const NameId id = names_.Intern(name);
  if (id >= types_.size()) types_.resize(id + 1);
  if (types_[id] == nullptr) types_[id] = &LateType::Of(name);
  feature_ = &document_.AppendRead(id_, *types_[id]);
}

void FeatureReader::TakeFather(FeatureId to) {
  if (Feature* const father = document_.Find(to); father != nullptr && father != feature_) {
    document_.SetFatherRead(*feature_, *father);
    return;
  }
  links_.Add({nullptr, &feature_->father, feature_, to, line_});
}

void FeatureReader::TakeContainer(FeatureId to) {
  feature_->container = document_.Find(to);
  if (feature_->container == nullptr) {
    links_.Add({nullptr, &feature_->container, feature_, to, line_});
  } else {
    document_.NoteLinkRead(*feature_, *feature_->container);
  }
}

void FeatureReader::BeginAttributes() {
  attributes_.clear();
  marks_.Clear();
  firstForward_ = links_.Count();
  forwardAttributes_.clear();
}

bool FeatureReader::AddAttribute(std::string_view key) {
  const NameId name = names_.Intern(key);
  attributes_.emplace_back().key = name;
  return marks_.Set(name);
}

void FeatureReader::TakeAttribute(Value value) {
  attributes_.back().value = value;
  if (forward_ == 0) return;
  links_.Add({nullptr, nullptr, feature_, std::exchange(forward_, 0), line_});
  forwardAttributes_.push_back(attributes_.size() - 1);
}

void FeatureReader::EndAttributes() {
  document_.SetAttributesRead(*feature_, attributes_);
  auto index = forwardAttributes_.begin();
  for (std::size_t i = firstForward_; i < links_.Count(); ++i) {
    ForwardLink& link = links_[i];
    if (link.value == nullptr) link.value = &feature_->attributes[*index++].value;
  }
}

Attribute* FeatureReader::FindAttribute(std::string_view key) {
  return document_.FindAttribute(*feature_, NameTable::Find(key));
}

// A link to a feature that is not read yet is made as an empty one.
Value FeatureReader::OfLink(FeatureId to) {
  Feature* const target = document_.Find(to);
  if (target == nullptr) {
    forward_ = to;
  } else {
    document_.NoteLinkRead(*feature_, *target);
  }
  return Value::Link(target);
}

void FeatureReader::AddEntry(const Begun& list, const Value& entry) {
  if (forward_ != 0) forwardEntries_.emplace_back(entries_.size() - list.first, std::exchange(forward_, 0));
  entries_.push_back(entry);
}

// What lies above the beginning belongs to this list, what lies below to the lists that it stands in.
Value FeatureReader::EndList(const Begun& list) {
  const std::span<Value> kept = document_.Keep(std::span<const Value>(entries_).subspan(list.first));
  for (std::size_t i = list.firstForward; i < forwardEntries_.size(); ++i) {
    const auto& [index, to] = forwardEntries_[i];
    links_.Add({&kept[index], nullptr, feature_, to, line_});
  }
  entries_.resize(list.first);
  forwardEntries_.resize(list.firstForward);
  return Value::List(kept);
}

}  // namespace standalone
