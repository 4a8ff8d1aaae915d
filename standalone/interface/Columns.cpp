#include "hvxupgrade/Columns.h"

#include <limits>

#include "interface/Inside.h"

namespace hvxupgrade {
namespace {

using Cell = Columns::Column::Cell;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

struct CellValue {
  Cell cell = Cell::kNone;
  double number = kNotANumber;
};

CellValue CellOf(const standalone::Value& value) {
  switch (value.Kind()) {
    case standalone::ValueKind::kReal:
      return {Cell::kReal, value.AsReal()};
    case standalone::ValueKind::kInteger:
      return {Cell::kInteger, static_cast<double>(value.AsInteger())};
    case standalone::ValueKind::kBoolean:
      return {Cell::kBoolean, value.AsBoolean() ? 1.0 : 0.0};
    case standalone::ValueKind::kLink:
      return {Cell::kLink, value.Target() == nullptr ? 0.0 : static_cast<double>(value.Target()->id)};
    case standalone::ValueKind::kString:
      return {Cell::kString, kNotANumber};
    case standalone::ValueKind::kList:
      break;
  }
  return {Cell::kList, kNotANumber};
}

// Numbers the late types that occur, in the order in which they are met.
class LateTypeNumbers {
 public:
  explicit LateTypeNumbers(std::vector<std::string>& names) : names_(names) {}

  std::uint32_t Of(const standalone::LateType& type) {
    if (type.Id() >= numbers_.size()) numbers_.resize(type.Id() + std::size_t{1});
    std::uint32_t& number = numbers_[type.Id()];
    if (number == 0) {
      names_.emplace_back(type.Name());
      number = static_cast<std::uint32_t>(names_.size());
    }
    return number - 1;
  }

 private:
  std::vector<std::string>& names_;
  std::vector<std::uint32_t> numbers_;  // by the number of the late type's name, from 1; 0 for none yet
};

}  // namespace

Columns Columns::Of(const Document& document, std::span<const std::string> keys) {
  standalone::Document& from = Inside::Of(document);
  Columns columns;
  const std::size_t count = from.FeatureCount();
  columns.ids.reserve(count);
  columns.fathers.reserve(count);
  columns.lateTypes.reserve(count);
  std::vector<standalone::NameId> wanted;
  for (const std::string& key : keys) {
    wanted.push_back(standalone::NameTable::Find(key));
    columns.attributes.push_back({key, {}, {}});
    columns.attributes.back().cells.reserve(count);
    columns.attributes.back().numbers.reserve(count);
  }
  LateTypeNumbers numbers(columns.lateTypeNames);
  for (standalone::Feature* feature = from.First(); feature != nullptr; feature = feature->next) {
    columns.ids.push_back(feature->id);
    columns.fathers.push_back(feature->father == nullptr ? 0 : feature->father->id);
    columns.lateTypes.push_back(numbers.Of(*feature->type));
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const standalone::Attribute* const found = from.FindAttribute(*feature, wanted[i]);
      const CellValue value = found == nullptr ? CellValue() : CellOf(found->value);
      columns.attributes[i].cells.push_back(value.cell);
      columns.attributes[i].numbers.push_back(value.number);
    }
  }
  return columns;
}

}  // namespace hvxupgrade
