#pragma once

#include <array>

#include "check/IdSet.h"
#include "model/Document.h"
#include "sheet/Items.h"

/// \file
/// What readers read with; for the sources of the sheet only.

namespace standalone::sheet {

/// Reads features as they are stored, and enters what they say in a sheet.
class Reader {
 public:
  Reader(Document& document, Sheet& sheet);

  /// Enters what the feature says of the item. Items stay where they are: facts refer to them.
  void Read(Feature& feature, const Item& item);
  /// What the feature says of an item that has no reader of its own.
  [[nodiscard]] Fact Evaluate(Feature& feature, const Item& item) const;

  /// Enters a value of the item's quantity.
  void Set(const Item& item, const Value& value, std::uint32_t index = 0);
  void Set(const Item& item, const Value& value, Dimension dimension);
  /// Enters what a connector connects; an entry that is none cannot be read.
  void SetConnected(const Item& item, const Value& entry, std::uint32_t index = 0);
  void Enter(const Item& item, Fact fact);

  /// The fact of a place, without looking elsewhere. `kNotSet` where nothing is.
  [[nodiscard]] Fact FactAt(Feature& feature, const Item& item, const Source& source,
                            const Codes& codes) const;

  [[nodiscard]] Document& Of() const { return document_; }
  /// Which of its father's steps the step is, from 1.
  [[nodiscard]] std::int64_t PositionOf(const Feature& step);
  [[nodiscard]] bool IsRegistered(const Feature& feature) const { return registered_.Contains(feature.id); }
  /// Whether the document has been through the upgrade.
  [[nodiscard]] bool HasBeenThrough(std::string_view identifier) const {
    return document_.HasRecorded(identifier);
  }

  // What features hold, as it stands. Keys must be literals.
  [[nodiscard]] const Value* AttributeOf(Feature& feature, std::string_view key) const;
  /// The feature that the attribute links to; null without one.
  [[nodiscard]] Feature* LinkedBy(Feature& feature, std::string_view key) const;
  /// The entries of the attribute; empty when it is no list.
  [[nodiscard]] std::span<const Value> ListIn(Feature& feature, std::string_view key) const;
  /// The first basic component of that name; null without one.
  [[nodiscard]] static Feature* ComponentOf(const Feature& holder, std::string_view name);

 private:
  [[nodiscard]] const Value* Find(Feature& feature, const Source& source, Dimension& dimension) const;

  // The number of a name. Keys are literals, which stay where they are: it is looked up once for each.
  [[nodiscard]] NameId NumberOf(std::string_view key) const;

  struct KnownKey {
    const char* text = nullptr;
    NameId number = kNoName;
  };

  Document& document_;
  Sheet& sheet_;
  mutable std::array<KnownKey, 512> known_;
  IdSet registered_;
  const Feature* lastStep_ = nullptr;  // of which the position was asked for
  std::int64_t lastPosition_ = 0;
};

/// The value, read as the item says; nothing for one of another kind, or out of range.
[[nodiscard]] std::optional<Value> ReadAs(As as, const Value& value);

}  // namespace standalone::sheet
