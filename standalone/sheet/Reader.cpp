#include "sheet/Reader.h"

#include <algorithm>
#include <unordered_map>

namespace standalone::sheet {
namespace {

constexpr std::string_view kComponentType = "SAMBasicComponent";
constexpr std::string_view kConnectorType = "GeometrySmartConnector";

std::int64_t Rounded(double number) {
  return static_cast<std::int64_t>(number);
}

Value FallbackOf(const Item& item) {
  if (item.fallback.form == Fallback::Form::kText) return Value::String(item.fallback.text);
  switch (item.as) {
    case As::kReal:
      return Value::Real(item.fallback.number);
    case As::kFlag:
      return Value::Boolean(item.fallback.number != 0);
    default:
      return Value::Integer(Rounded(item.fallback.number));
  }
}

// A code that stands for nothing stays the number that it is.
Value WordFor(const Value& code, const Codes& codes) {
  if (code.Kind() != ValueKind::kInteger) return code;
  const std::int64_t place = code.AsInteger() - codes.first;
  if (place < 0 || place >= static_cast<std::int64_t>(codes.words.size())) return code;
  const std::string_view word = codes.words[static_cast<std::size_t>(place)];
  return word.empty() ? code : Value::String(word);
}

// Of geometry it matters in which product it is meant; what belongs to the analysis is there once.
bool IsInProduct(const Feature& feature) {
  return feature.type->MetaClass().IsAKindOf(kind::kGeometry) || !feature.type->IsOfHost();
}

void SetFallback(const Item& item, Fact& fact) {
  if (item.fallback.form == Fallback::Form::kNone) return;
  fact.standing = Standing::kDefault;
  fact.value = WordFor(FallbackOf(item), item.codes);
}

bool HoldsNothing(const Value& value) {
  return value.Kind() == ValueKind::kLink && value.Target() == nullptr;
}

}  // namespace

std::optional<Value> ReadAs(As as, const Value& value) {
  const ValueKind kind = value.Kind();
  switch (as) {
    case As::kReal:
      if (kind == ValueKind::kReal) return value;
      if (kind == ValueKind::kInteger) return Value::Real(static_cast<double>(value.AsInteger()));
      return std::nullopt;
    case As::kInteger:
      if (kind != ValueKind::kInteger || value.AsInteger() != static_cast<std::int32_t>(value.AsInteger()))
        return std::nullopt;
      return value;
    case As::kFlag:
      if (kind == ValueKind::kBoolean) return value;
      if (kind == ValueKind::kInteger && (value.AsInteger() == 0 || value.AsInteger() == 1))
        return Value::Boolean(value.AsInteger() == 1);
      return std::nullopt;
    case As::kText:
      return kind == ValueKind::kString ? std::optional(value) : std::nullopt;
    case As::kLink:
      return kind == ValueKind::kLink ? std::optional(value) : std::nullopt;
    case As::kList:
      return kind == ValueKind::kList ? std::optional(value) : std::nullopt;
  }
  return std::nullopt;
}

namespace {

bool IsImplied(const Item& item, const Fact& fact) {
  if (!item.IsSingle() || fact.standing == Standing::kSet || fact.standing == Standing::kUnreadable)
    return false;
  const bool hasFallback = item.fallback.form != Fallback::Form::kNone;
  if (fact.standing == Standing::kNotSet) return !hasFallback;
  return hasFallback && fact.value == ImpliedBy(item).value;
}

}  // namespace

const Fact& ImpliedBy(const Item& item) {
  static const std::unordered_map<const Item*, Fact> implied = [] {
    std::unordered_map<const Item*, Fact> all;
    for (const std::span<const Description> table : Descriptions()) {
      for (const Description& description : table) {
        for (const Item& each : description.items) {
          Fact fact{.quantity = &each.quantity, .dimension = each.dimension};
          SetFallback(each, fact);
          all.emplace(&each, fact);
        }
      }
    }
    return all;
  }();
  return implied.at(&item);
}

Reader::Reader(Document& document, Sheet& sheet)
    : document_(document), sheet_(sheet), registered_(document.NextId(), document.FeatureCount()) {
  Feature* const model = document.AnalysisModel();
  if (model == nullptr) return;
  for (const Value& entry : ListIn(*model, "FeatList")) {
    if (entry.Kind() == ValueKind::kLink && entry.Target() != nullptr)
      (void)registered_.Insert(entry.Target()->id);
  }
}

void Reader::Enter(const Item& item, Fact fact) {
  fact.quantity = &item.quantity;
  sheet_.Add(fact, IsImplied(item, fact));
}

void Reader::Set(const Item& item, const Value& value, std::uint32_t index) {
  Enter(item, {.index = index, .standing = Standing::kSet, .dimension = item.dimension, .value = value});
}

void Reader::Set(const Item& item, const Value& value, Dimension dimension) {
  Enter(item, {.standing = Standing::kSet, .dimension = dimension, .value = value});
}

void Reader::SetConnected(const Item& item, const Value& entry, std::uint32_t index) {
  Fact fact{.index = index, .standing = Standing::kUnreadable, .value = entry};
  Feature* const connector = entry.Kind() == ValueKind::kLink ? entry.Target() : nullptr;
  if (connector != nullptr && connector->TypeName() == kConnectorType) {
    Feature* const first = LinkedBy(*connector, "FirstObject");
    fact.value = Value::Link(first);
    fact.standing = first == nullptr ? Standing::kNotSet : Standing::kSet;
    if (first != nullptr && IsInProduct(*first)) fact.context = LinkedBy(*connector, "SecondObject");
  }
  Enter(item, fact);
}

NameId Reader::NumberOf(std::string_view key) const {
  const auto address = reinterpret_cast<std::uintptr_t>(key.data());
  KnownKey& known = known_[(address ^ (address >> 9U)) % known_.size()];
  if (known.text != key.data()) known = {key.data(), NameTable::Intern(key)};
  return known.number;
}

// Most steps are asked for one after the other.
std::int64_t Reader::PositionOf(const Feature& step) {
  std::int64_t position = 1;
  for (const Feature* before = step.previousSibling; before != nullptr; before = before->previousSibling) {
    if (before == lastStep_) {
      position += lastPosition_;
      break;
    }
    if (before->type->MetaClass().IsAKindOf(kind::kStep)) ++position;
  }
  lastStep_ = &step;
  lastPosition_ = position;
  return position;
}

const Value* Reader::AttributeOf(Feature& feature, std::string_view key) const {
  const standalone::Attribute* const attribute = document_.FindAttribute(feature, NumberOf(key));
  return attribute == nullptr ? nullptr : &attribute->value;
}

Feature* Reader::LinkedBy(Feature& feature, std::string_view key) const {
  const Value* const value = AttributeOf(feature, key);
  return value != nullptr && value->Kind() == ValueKind::kLink ? value->Target() : nullptr;
}

std::span<const Value> Reader::ListIn(Feature& feature, std::string_view key) const {
  const Value* const value = AttributeOf(feature, key);
  if (value == nullptr || value->Kind() != ValueKind::kList) return {};
  return value->Entries();
}

Feature* Reader::ComponentOf(const Feature& holder, std::string_view name) {
  for (Feature* son = holder.firstSon; son != nullptr; son = son->nextSibling) {
    if (son->name == name && son->TypeName() == kComponentType) return son;
  }
  return nullptr;
}

const Value* Reader::Find(Feature& feature, const Source& source, Dimension& dimension) const {
  Feature* holder = source.behind.empty() ? &feature : LinkedBy(feature, source.behind);
  if (holder == nullptr) return nullptr;
  const auto takeDimension = [&] {
    const Value* const magnitude = AttributeOf(*holder, "Magnitude");
    if (magnitude != nullptr && magnitude->Kind() == ValueKind::kString)
      dimension = DimensionOf(magnitude->AsString());
  };
  switch (source.how) {
    case Source::How::kNowhere:
      return nullptr;
    case Source::How::kAttribute:
      return AttributeOf(*holder, source.key);
    case Source::How::kParameter: {
      const Value* const link = AttributeOf(*holder, source.key);
      if (link == nullptr || link->Kind() != ValueKind::kLink || link->Target() == nullptr) return link;
      holder = link->Target();
      takeDimension();
      return AttributeOf(*holder, "Value");
    }
    case Source::How::kComponent: {
      const std::size_t slash = source.key.find('/');
      if (slash != std::string_view::npos) holder = ComponentOf(*holder, source.key.substr(0, slash));
      if (holder != nullptr)
        holder = ComponentOf(*holder, source.key.substr(slash == std::string_view::npos ? 0 : slash + 1));
      if (holder == nullptr) return nullptr;
      takeDimension();
      return AttributeOf(*holder, "Values");
    }
  }
  return nullptr;
}

Fact Reader::FactAt(Feature& feature, const Item& item, const Source& source, const Codes& codes) const {
  Fact fact{.dimension = item.dimension};
  const Value* const value = Find(feature, source, fact.dimension);
  if (value == nullptr || HoldsNothing(*value)) return fact;
  const std::optional<Value> read = ReadAs(item.as, *value);
  fact.standing = read ? Standing::kSet : Standing::kUnreadable;
  fact.value = read ? WordFor(*read, codes) : *value;
  return fact;
}

Fact Reader::Evaluate(Feature& feature, const Item& item) const {
  const Codes& oldCodes = item.oldCodes.words.empty() ? item.codes : item.oldCodes;
  const bool mayBeOld = item.old.how != Source::How::kNowhere &&
                        (item.choice == Choice::kOldWhileThere || !IsRegistered(feature));
  Fact fact;
  if (mayBeOld) fact = FactAt(feature, item, item.old, oldCodes);
  if (fact.standing == Standing::kNotSet) fact = FactAt(feature, item, item.current, item.codes);
  if (fact.standing == Standing::kNotSet) SetFallback(item, fact);
  return fact;
}

void Reader::Read(Feature& feature, const Item& item) {
  if (item.read != nullptr) {
    item.read(*this, feature, item);
  } else {
    Enter(item, Evaluate(feature, item));
  }
}

void ReadSupports(Reader& reader, Feature& feature, const Item& item) {
  std::uint32_t index = 0;
  const Value* const supports = reader.AttributeOf(feature, "Supports");
  if (supports == nullptr) return;
  if (supports->Kind() != ValueKind::kList) {
    reader.Enter(item, {.standing = Standing::kUnreadable, .value = *supports});
    return;
  }
  for (const Value& entry : supports->Entries()) reader.SetConnected(item, entry, ++index);
}

void ReadLinks(Reader& reader, Feature& feature, const Item& item) {
  const Value* const list = reader.AttributeOf(feature, item.current.key);
  if (list == nullptr) return;
  if (list->Kind() != ValueKind::kList) {
    reader.Enter(item, {.standing = Standing::kUnreadable, .value = *list});
    return;
  }
  std::uint32_t index = 0;
  for (const Value& entry : list->Entries()) {
    const bool isConnector = entry.Kind() == ValueKind::kLink && entry.Target() != nullptr &&
                             entry.Target()->TypeName() == kConnectorType;
    if (isConnector) {
      reader.SetConnected(item, entry, ++index);
    } else {
      reader.Enter(item,
                   {.index = ++index,
                    .standing = entry.Kind() == ValueKind::kLink ? Standing::kSet : Standing::kUnreadable,
                    .value = entry});
    }
  }
}

void ReadPropagation(Reader& reader, Feature& feature, const Item& item) {
  const Value* const value = reader.AttributeOf(feature, "PropagatedTo");
  Fact fact;
  if (value != nullptr && value->Kind() == ValueKind::kString) {
    fact = {.standing = Standing::kSet, .value = *value};
  } else if (value != nullptr && value->Kind() == ValueKind::kList) {
    if (!value->Entries().empty()) fact = {.standing = Standing::kSet, .value = *value};
  } else if (value != nullptr) {
    fact = {.standing = Standing::kUnreadable, .value = *value};
  }
  reader.Enter(item, fact);
}

}  // namespace standalone::sheet
