#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "file/Compression.h"
#include "file/FileIdentity.h"
#include "hvxupgrade/Document.h"
#include "hvxupgrade/Feature.h"
#include "hvxupgrade/Value.h"
#include "model/Document.h"

/// \file
/// What the handles of the interface stand for: for its sources only.

namespace hvxupgrade {

/// A file in the state in which a document was read from it or written to it.
struct KnownFile {
  standalone::FileIdentity identity;
  standalone::Compression stored = standalone::Compression::kNone;
};

/// What a document of the interface is made of.
class Document::State {
 public:
  explicit State(standalone::DocumentPtr held) : document(std::move(held)) {}

  /// The upgrade libraries that worked on the document stay in memory as long as it: what they made may.
  std::vector<std::shared_ptr<const void>> libraries;
  standalone::DocumentPtr document;
  std::map<std::filesystem::path, KnownFile> files;  ///< By their real paths.
  std::filesystem::path file;                        ///< See `Document::File`.
  bool isRead = false;                               ///< From that file, and not made here.
  std::size_t upgradesRead = 0;                      ///< How many were recorded when it was read.
  /// An upgrade was stopped and left the document between two releases.
  bool isStopped = false;
  bool isBusy = false;  ///< It is upgraded or written.
};

/// The way from the interface to what stands behind it, and back.
class Inside {
 public:
  using DocumentState = Document::State;

  Inside() = delete;

  [[nodiscard]] static Document Make(std::unique_ptr<DocumentState> state) {
    return Document(std::move(state));
  }
  [[nodiscard]] static DocumentState& StateOf(const Document& document) { return *document.state_; }
  [[nodiscard]] static standalone::Document& Of(const Document& document) {
    return *document.state_->document.Get();
  }

  [[nodiscard]] static Feature Make(standalone::Feature& feature) { return Feature(&feature); }
  /// The feature behind the handle, which may be removed.
  [[nodiscard]] static standalone::Feature& Of(Feature feature) { return *feature.feature_; }
  /// The same; throws `Error` (`kUsage`) when it was removed.
  [[nodiscard]] static standalone::Feature& AliveOf(Feature handle);
  /// The handle; none for null, and for a feature that was removed.
  [[nodiscard]] static std::optional<Feature> MakeIfAlive(standalone::Feature* feature);
};

/// A document that is worked on, for the life of this object: what is called meanwhile may look at it. Throws
/// `Error` (`kUsage`) when somebody works on it already, or an upgrade of it was stopped.
class Busy {
 public:
  explicit Busy(Inside::DocumentState& state);
  ~Busy();
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

  /// Throws `Error` (`kUsage`) when this thread works on the document, so that nobody may change it.
  static void RequireIdle(const standalone::Document& document);

 private:
  Inside::DocumentState& state_;
  const Busy* outer_;
};

[[nodiscard]] Value ValueOf(const standalone::Value& value);
/// Keeps the value in the arena of the document. Throws `Error` (`kUsage`) for what no document can hold.
[[nodiscard]] standalone::Value Keep(const Value& value, standalone::Document& document);
/// Throws `Error` (`kUsage`) when the text, which is the feature's `what`, is not UTF-8 or too long for a
/// line.
void RequireText(std::string_view text, std::string_view what);

}  // namespace hvxupgrade
