#pragma once

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hvxupgrade/Feature.h"

namespace standalone {
class Document;  // inside
}

namespace hvxupgrade {

/// An analysis document in memory. It belongs to one thread at a time; several documents may be open, and
/// worked on by several threads. Handles on its features are valid as long as it. What is called to be told
/// of progress with it may only look: changing it meanwhile throws `Error` (`kUsage`). One that was moved
/// from can be destroyed and assigned to, and nothing else.
class HVXUPGRADE_API Document {
 public:
  /// An empty document of that name, which is shown to people.
  explicit Document(std::string_view displayName = "");
  ~Document();
  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  [[nodiscard]] std::string DisplayName() const;  ///< The file's name, for a document that was read.
  /// The file that it was read from, as the program named it; for a document that was made here, the one that
  /// it was written to last. Empty when there is none. Errors about the document name it.
  [[nodiscard]] std::filesystem::path File() const;
  [[nodiscard]] std::size_t FeatureCount() const;
  /// The identifiers of the upgrades that it has been through, in the order in which they were recorded.
  [[nodiscard]] std::vector<std::string> Upgrades() const;
  /// The feature of that id; none when there is none, or it was removed.
  [[nodiscard]] std::optional<Feature> Find(FeatureId id) const;

  class Features;
  /// All features, in document order: `for (Feature each : document.All())`. What is created meanwhile is
  /// met, too; what is removed is not, and the feature at hand may be removed.
  [[nodiscard]] Features All() const&;
  void All() const&& = delete;  ///< The document would be gone before the walk begins.
  /// The features of that late type, in document order. Looks at all features.
  [[nodiscard]] std::vector<Feature> OfType(std::string_view lateType) const;

  /// Makes a feature: the last of the document and of its father's sons, in its father's container, with its
  /// late type and id as internal name. Throws `Error` (`kUsage`) when the late type is empty or no text, or
  /// the father was removed or belongs to another document.
  Feature Create(std::string_view lateType, std::string_view alias = "",
                 std::optional<Feature> father = std::nullopt);
  /// Removes the feature with all that stands beneath it, and every link that held any of them. Throws
  /// `Error` (`kUsage`) when it was removed already or belongs to another document.
  void Remove(Feature feature);

 private:
  friend class Inside;
  class State;
  explicit Document(std::unique_ptr<State> state);

  std::unique_ptr<State> state_;  // null only when moved from
};

/// See `Document::All`.
class HVXUPGRADE_API Document::Features {
 public:
  class HVXUPGRADE_API Iterator {
   public:
    using iterator_concept = std::input_iterator_tag;
    using value_type = Feature;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    [[nodiscard]] Feature operator*() const;
    Iterator& operator++();
    void operator++(int) { ++*this; }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    friend class Features;
    explicit Iterator(standalone::Feature* at) : at_(at) {}

    standalone::Feature* at_ = nullptr;
  };

  [[nodiscard]] Iterator begin() const;
  [[nodiscard]] Iterator end() const { return {}; }

 private:
  friend class Document;
  explicit Features(const standalone::Document& document) : document_(&document) {}

  const standalone::Document* document_;
};

}  // namespace hvxupgrade
