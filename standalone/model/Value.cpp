#include "model/Value.h"

#include <algorithm>
#include <bit>

namespace standalone {

std::string_view NameOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::kString:
      return "string";
    case ValueKind::kInteger:
      return "integer";
    case ValueKind::kReal:
      return "real";
    case ValueKind::kBoolean:
      return "boolean";
    case ValueKind::kLink:
      return "link";
    case ValueKind::kList:
      return "list";
  }
  return "";
}

bool operator==(const Value& left, const Value& right) {
  if (left.kind_ != right.kind_) return false;
  switch (left.kind_) {
    case ValueKind::kString:
      return left.AsString() == right.AsString();
    case ValueKind::kInteger:
      return left.integer_ == right.integer_;
    case ValueKind::kReal:
      return std::bit_cast<std::uint64_t>(left.real_) == std::bit_cast<std::uint64_t>(right.real_);
    case ValueKind::kBoolean:
      return left.boolean_ == right.boolean_;
    case ValueKind::kLink:
      return left.target_ == right.target_;
    case ValueKind::kList:
      return std::ranges::equal(left.Entries(), right.Entries());
  }
  return false;
}

}  // namespace standalone
