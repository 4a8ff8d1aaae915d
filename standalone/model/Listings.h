#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/Feature.h"

namespace standalone {

/// What was listed lately beneath features, by late type or kind: who asks for the containers of a case again
/// for each of its contacts should not walk over all contacts again. A listing holds until a feature that it
/// could be about is made, removed, moved or gets another late type.
class Listings {
 public:
  static constexpr int kSons = -1;
  /// Which features beneath `top` are listed: those of a late type or kind, as far down as `reach` tells: its
  /// sons alone (`kSons`), or what the asker means by another number.
  struct Wanted {
    const Feature& top;
    std::string_view lateTypeOrKind;
    int reach;
  };

  /// What `list` gives for the features wanted, in its order, from memory where that holds. `list` is called
  /// with a predicate that tells whether a feature is of the late type or kind. The result stays until the
  /// next call or change.
  template <class List>
  const std::vector<Feature*>& Of(const Wanted& wanted, const List& list) {
    Query& query = QueryOf(wanted.lateTypeOrKind);
    if (const std::vector<Feature*>* const known = query.Find(wanted)) return *known;
    return query.Keep(wanted,
                      list([&query](const Feature& feature) { return query.Includes(*feature.type); }));
  }

  /// A feature of that late type was made or removed.
  void NoteChanged(const LateType& type) {
    for (Query& query : queries_) query.NoteChanged(type);
  }
  /// A feature got another late type.
  void NoteRetyped(const LateType& before, const LateType& after);
  /// The feature was moved, and with it all that stands beneath it.
  void NoteMoved(const Feature& feature);

 private:
  class Query {
   public:
    explicit Query(std::string_view lateTypeOrKind) : lateTypeOrKind_(lateTypeOrKind) {}

    [[nodiscard]] std::string_view LateTypeOrKind() const { return lateTypeOrKind_; }
    [[nodiscard]] bool Includes(const LateType& type) {
      return type.Id() < includes_.size() && includes_[type.Id()] != kUnknown ? includes_[type.Id()] == kYes
                                                                              : LookUp(type);
    }
    void NoteChanged(const LateType& type) {
      if (Includes(type)) ++changes_;
    }
    [[nodiscard]] const std::vector<Feature*>* Find(const Wanted& wanted) const;
    const std::vector<Feature*>& Keep(const Wanted& wanted, std::vector<Feature*> features);

   private:
    using Place = std::pair<const Feature*, int>;
    struct Listing {
      std::vector<Feature*> features;
      std::uint64_t changes = 0;  // how many there had been
    };
    enum Answer : char { kUnknown, kYes, kNo };

    bool LookUp(const LateType& type);

    std::string lateTypeOrKind_;
    std::vector<Answer> includes_;  // by the late type's number
    std::uint64_t changes_ = 0;
    // Short ones are all kept; of the long ones, which could add up, the last.
    std::map<Place, Listing> short_;
    Place longPlace_{nullptr, 0};
    Listing long_;
  };

  Query& QueryOf(std::string_view lateTypeOrKind);

  std::vector<Query> queries_;  // as many as there are names in the code of those who ask
};

}  // namespace standalone
