#include "file/FeatureReader.h"

namespace standalone {

void FeatureReader::Read(ondemand::object object, std::size_t line) {
  line_ = line;
  static constexpr KnownKey kKeys[] = {
      format::kId,        format::kType,     format::kName,         format::kAlias,      format::kFather,
      format::kContainer, format::kUpToDate, format::kPhysicalType, format::kAttributes, format::kModes};
  Keys keys(kKeys);
  Feature* feature = nullptr;
  FeatureId id = 0;
  for (auto field : object) {
    const std::size_t index = keys.Meet(field);
    const std::string_view key = kKeys[index].Text();
    if (index >= 2 && feature == nullptr) Refuse("a feature must begin with \"id\" and \"type\"");
    switch (index) {
      case 0:
        id = TakeNewId(field.value());
        break;
      case 1:
        if (id == 0) Refuse("a feature must begin with \"id\" and \"type\"");
        feature = &document_.AppendRead(id, TypeOf(TakeText(field.value(), key)));
        break;
      case 2:
        feature->name = document_.Keep(TakeText(field.value(), key));
        break;
      case 3:
        feature->externalName = document_.Keep(TakeText(field.value(), key));
        break;
      case 4:
        TakeFather(*feature, TakeRef(field.value(), key));
        break;
      case 5:
        TakeContainer(*feature, TakeRef(field.value(), key));
        break;
      case 6:
        Expect(field.value(), ondemand::json_type::boolean, key);
        feature->upToDate = field.value().get_bool();
        break;
      case 7:
        feature->physicalType = document_.NameFor(TakeText(field.value(), key));
        break;
      case 8:
        ReadAttributes(*feature, field.value());
        break;
      default:
        ReadModes(*feature, field.value());
    }
  }
  if (feature == nullptr) Refuse("a feature must begin with \"id\" and \"type\"");
}

FeatureId FeatureReader::TakeNewId(ondemand::value value) const {
  const FeatureId id = TakeInteger(value, format::kId);
  if (id < 1 || id > format::kMaxId) {
    Refuse(fmt::format("\"id\" is {}; ids go from 1 to {}", id, format::kMaxId));
  }
  if (document_.Find(id) != nullptr) {
    Refuse(fmt::format("a second feature has id {}", id), "Give every feature an id of its own");
  }
  return id;
}

const LateType& FeatureReader::TypeOf(std::string_view name) {
  if (name.empty()) Refuse("\"type\" is empty");
  const NameId id = names_.Find(name, document_);
  if (id >= types_.size()) types_.resize(id + 1);
  if (types_[id] == nullptr) types_[id] = &document_.LateTypeFor(name);
  return *types_[id];
}

void FeatureReader::TakeFather(Feature& feature, FeatureId to) {
  if (Feature* const father = document_.Find(to); father != nullptr && father != &feature) {
    document_.SetFatherRead(feature, *father);
    return;
  }
  links_.Add({nullptr, &feature.father, &feature, to, line_});
}

void FeatureReader::TakeContainer(Feature& feature, FeatureId to) {
  feature.container = document_.Find(to);
  if (feature.container == nullptr) {
    links_.Add({nullptr, &feature.container, &feature, to, line_});
  } else {
    document_.NoteLinkRead(feature, *feature.container);
  }
}

void FeatureReader::ReadAttributes(Feature& feature, ondemand::value value) {
  attributes_.clear();
  marks_.Clear();
  const std::size_t firstForward = links_.Count();
  forwardAttributes_.clear();
  for (auto field : TakeObject(value, format::kAttributes)) {
    const std::string_view key = TakeKey(field);
    const NameId name = names_.Find(key, document_);
    if (name == kNoName) Refuse("an attribute has an empty key");
    if (!marks_.Set(name)) Refuse(fmt::format("attribute \"{}\" occurs twice", key));
    Attribute& attribute = attributes_.emplace_back();
    attribute.key = name;
    FeatureId forward = 0;
    attribute.value = TakeValue(field.value(), key, feature, 0, forward);
    if (forward != 0) {
      links_.Add({nullptr, nullptr, &feature, forward, line_});
      forwardAttributes_.push_back(attributes_.size() - 1);
    }
  }
  document_.SetAttributesRead(feature, attributes_);
  auto index = forwardAttributes_.begin();
  for (std::size_t i = firstForward; i < links_.Count(); ++i) {
    ForwardLink& link = links_[i];
    if (link.value == nullptr) link.value = &feature.attributes[*index++].value;
  }
}

// A link to a feature that is not read yet comes back as an empty link, with the feature's id in `forward`.
Value FeatureReader::TakeValue(ondemand::value value, std::string_view key, Feature& owner, int depth,
                               FeatureId& forward) {
  switch (value.type()) {
    case ondemand::json_type::string:
      return Value::String(document_.Keep(TakeText(value, key)));
    case ondemand::json_type::number:
      return TakeNumber(value, key);
    case ondemand::json_type::boolean:
      return Value::Boolean(value.get_bool());
    case ondemand::json_type::null:
      if (!value.is_null()) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
      return Value::Link(nullptr);
    case ondemand::json_type::object: {
      const FeatureId to = TakeRef(value, key);
      Feature* const target = document_.Find(to);
      if (target == nullptr) {
        forward = to;
      } else {
        document_.NoteLinkRead(owner, *target);
      }
      return Value::Link(target);
    }
    case ondemand::json_type::array:
      return TakeList(value, key, owner, depth);
  }
  Refuse(fmt::format("attribute \"{}\" holds no value", key));
}

Value FeatureReader::TakeList(ondemand::value value, std::string_view key, Feature& owner, int depth) {
  if (depth == format::kMaxListDepth) {
    Refuse(fmt::format("attribute \"{}\" nests lists more than {} deep", key, format::kMaxListDepth));
  }
  // What lies above these belongs to this list, what lies below to the lists that it stands in.
  const std::size_t first = entries_.size();
  const std::size_t firstForward = forwardEntries_.size();
  for (auto entry : value.get_array()) {
    FeatureId forward = 0;
    const Value taken = TakeValue(entry.value(), key, owner, depth + 1, forward);
    if (forward != 0) forwardEntries_.emplace_back(entries_.size() - first, forward);
    entries_.push_back(taken);
  }
  const std::span<Value> kept = document_.Keep(std::span<const Value>(entries_).subspan(first));
  for (std::size_t i = firstForward; i < forwardEntries_.size(); ++i) {
    const auto& [index, to] = forwardEntries_[i];
    links_.Add({&kept[index], nullptr, &owner, to, line_});
  }
  entries_.resize(first);
  forwardEntries_.resize(firstForward);
  return Value::List(kept);
}

Value FeatureReader::TakeNumber(ondemand::value value, std::string_view key) {
  ondemand::number number;
  if (value.get_number().get(number) != simdjson::SUCCESS || number.is_uint64()) {
    Refuse(fmt::format("the number of attribute \"{}\" is out of range or malformed", key),
           "Give an integer within 64 bits, signed, or a finite real");
  }
  return number.is_int64() ? Value::Integer(number.get_int64()) : Value::Real(number.get_double());
}

void FeatureReader::ReadModes(Feature& feature, ondemand::value value) {
  marks_.Clear();
  for (auto field : TakeObject(value, format::kModes)) {
    const std::string_view key = TakeKey(field);
    Attribute* const found = document_.FindAttribute(feature, NameTable::Find(key));
    if (found == nullptr) Refuse(fmt::format("\"modes\" names \"{}\", which is no attribute", key));
    if (!marks_.Set(found->key))
      Refuse(fmt::format("\"modes\" names \"{}\" twice", key), "Leave one of the two");
    const std::int64_t mode = TakeInteger(field.value(), key);
    if (mode != static_cast<std::int32_t>(mode))
      Refuse(fmt::format("the mode of \"{}\" exceeds 32 bits", key));
    found->mode = static_cast<std::int32_t>(mode);
  }
}

}  // namespace standalone
