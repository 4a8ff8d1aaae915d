#pragma once

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/Document.h"
#include "sheet/Unit.h"

/// \file
/// An analysis in the terms of an engineer: what acts where, with which value and unit, wherever releases
/// keep it. It is read from a document's features by readers of its own, which share nothing with the upgrade
/// library and with the interfaces that the library writes through: a second opinion on both.

namespace standalone::sheet {

/// How a quantity stands in the document.
enum class Standing : std::uint8_t {
  kSet,         ///< The document holds the value.
  kDefault,     ///< It holds none; the value is what the data model takes then.
  kNotSet,      ///< It holds none, and nothing stands in for it.
  kUnreadable,  ///< It holds something that is no value of this quantity.
};

/// The word for programs: "set", "default", "notSet", "unreadable".
[[nodiscard]] std::string_view NameOf(Standing standing);

/// Where things stand on a sheet.
enum class Chapter : std::uint8_t {
  kCase,
  kStep,
  kRestraint,    ///< Boundary conditions.
  kLoad,         ///< Loads, thermal loads, initial conditions.
  kInteraction,  ///< Contacts, ties, couplings, springs, rigid bodies.
  kOutput,
  kElements,
  kJob,
  kSolution,
  kMesh,
  kGroup,
  kProperty,  ///< Sections, interaction properties.
  kConnection,
};

/// One thing that an analysis says of itself, such as "pressure" or "time period".
struct Quantity {
  std::string_view name;  ///< The same for people and programs; small letters and blanks.
  /// What one value of several is called, such as "degree of freedom"; empty for a single value.
  std::string_view each = {};
  /// Its values have no order, such as supports: a number behind each would mean nothing.
  bool isList = false;
};

/// A kind of thing that an analysis consists of, such as "pressure" or "contact pair".
struct Kind {
  std::string_view name;  ///< The same for people and programs; small letters and blanks.
  Chapter chapter;
};

/// One value of a quantity.
struct Fact {
  const Quantity* quantity = nullptr;
  std::uint32_t index = 0;  ///< Which of several, from 1; 0 for a single one.
  Standing standing = Standing::kNotSet;
  Dimension dimension = Dimension::kNone;
  /// Of what was read: a number, a text (also the word for a code), a flag, a link or a list. Of an
  /// unreadable one what stands there instead.
  Value value = {};
  /// Of a link to geometry: the product in which it is meant; may be null.
  const Feature* context = nullptr;
};

/// What a number measures that a feature of that late type holds under that key; `kNone` where the sheet
/// knows nothing of it.
[[nodiscard]] Dimension DimensionOfAttribute(std::string_view lateType, std::string_view key);

/// Whether both say the same of an analysis: a default says what a stored value says. The facts may be of two
/// documents: links are compared by id.
[[nodiscard]] bool SayTheSame(const Fact& left, const Fact& right);

struct Description;

/// One thing that an analysis consists of. What it says stays as it was read, whatever becomes of the
/// feature.
struct Subject {
  const Kind* kind = nullptr;
  const Feature* feature = nullptr;
  FeatureId id = 0;
  std::string_view lateType;
  std::string_view name;  ///< As users see it; may be empty.
  const Feature* father = nullptr;
  const Feature* analysisCase = nullptr;  ///< That it belongs to; of a case, itself. Null for what all share.
  const Feature* step = nullptr;          ///< The same.

  // How the sheet keeps what it says: all but what is not set or a default.
  const Description* description = nullptr;
  const Fact* kept = nullptr;
  std::uint32_t keptCount = 0;
  std::uint32_t saidCount = 0;
};

/// What `ReadSheet` read. It refers to the document, and to the sheet that it shares facts with, which must
/// stay; it can be moved.
class Sheet {
 public:
  Sheet();

  /// In document order.
  [[nodiscard]] const std::vector<Subject>& Subjects() const { return subjects_; }
  /// By quantity, those of one quantity by index.
  [[nodiscard]] static std::vector<Fact> FactsOf(const Subject& subject);
  /// Null for a feature that is no subject.
  [[nodiscard]] const Subject* Find(FeatureId id) const;
  /// The subject's fact of that quantity, the first of several; null without one.
  [[nodiscard]] static const Fact* Find(const Subject& subject, std::string_view quantity);
  /// The upgrades that the document had been through.
  [[nodiscard]] const std::vector<std::string>& Upgrades() const { return upgrades_; }
  [[nodiscard]] std::size_t FactCount() const { return factCount_; }

  // For the reader: how many subjects to expect, a subject, its facts in their order, and the end of it all.
  // `isImplied`: the fact is what the description says of a subject without it. Facts that `like` has of the
  // subject, word for word, are shared with it.
  void Expect(std::size_t subjects) { subjects_.reserve(subjects); }
  void Begin(const Subject& subject) { subjects_.push_back(subject); }
  void Add(const Fact& fact, bool isImplied) {
    ++subjects_.back().saidCount;
    if (!isImplied) facts_.push_back(fact);
  }
  void End(const Sheet* like);
  void Finish(std::vector<std::string> upgrades);

 private:
  std::unique_ptr<std::pmr::monotonic_buffer_resource> arena_;
  std::vector<Subject> subjects_;
  std::vector<Fact> facts_;  // of the subject that is being read
  std::size_t factCount_ = 0;
  std::vector<std::pair<FeatureId, std::uint32_t>> byId_;  // ascending
  std::vector<std::string> upgrades_;
};

/// Reads what the document says, from old storage or from current storage, whichever holds it. The document
/// must have no dead links. `like`: a sheet read from the same document before, which must stay; the new one
/// takes less memory with it.
[[nodiscard]] Sheet ReadSheet(Document& document, const Sheet* like = nullptr);

/// The feature's name as users see it; of a feature without one, its late type and id.
[[nodiscard]] std::string NameFor(const Feature& feature);

}  // namespace standalone::sheet
