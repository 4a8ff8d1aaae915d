#pragma once

#include <cstddef>
#include <deque>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>

#include "model/Document.h"
#include "model/LargePages.h"

namespace standalone {

/// A link to a feature that stands further down in the file.
struct ForwardLink {
  Value* value;     // where the link goes, or
  Feature** place;  // the father or container
  Feature* from;
  FeatureId to;
  std::size_t line;

  [[nodiscard]] bool IsFather() const { return place == &from->father; }
};

/// All such links of a document that is being read.
class ForwardLinks {
 public:
  /// The first of several faults, in the order of lines.
  struct Fault {
    std::size_t line = 0;
    std::string problem;
    std::string_view advice;
  };

  void Add(const ForwardLink& link) {
    links_.push_back(link);
    fatherFollowsSon_ = fatherFollowsSon_ || link.IsFather();
  }
  [[nodiscard]] std::size_t Count() const { return links_.size(); }
  [[nodiscard]] ForwardLink& operator[](std::size_t index) { return links_[index]; }

  /// Makes them lead to their features, now that all are read. Gives what is wrong: a link to nothing, or
  /// fathers in a circle.
  [[nodiscard]] std::optional<Fault> Resolve(Document& document) const;

 private:
  const ForwardLink* Connect(Document& document) const;
  const ForwardLink* RelinkSons(Document& document) const;

  bool fatherFollowsSon_ = false;
  std::pmr::monotonic_buffer_resource arena_{std::size_t{1} << 16, &LargePages::Instance()};
  std::pmr::deque<ForwardLink> links_{&arena_};  // there may be millions
};

}  // namespace standalone
