#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>

#include "file/DocumentReader.h"
#include "file/LineValues.h"

namespace standalone {

/// The lines of a document's features, handed over one by one while the file is read, block by block: for who
/// keeps no document, and so needs no more memory for a large one. It refuses whatever `ReadDocument` refuses
/// in the header, in what is no JSON and in the number of features. What the objects hold is looked at by who
/// takes them.
class FeatureLines {
 public:
  /// Takes the object of a line, and its number, from 1; may throw `Unsound`. A line that turns out to be no
  /// JSON behind what was taken throws the parser's error out of this.
  using Take = std::function<void(ondemand::object object, std::size_t line)>;

  /// Opens the file; throws as `ReadDocument` does. The options must outlive it.
  FeatureLines(const std::filesystem::path& file, const ReadOptions& options, Take take);
  ~FeatureLines();
  FeatureLines(const FeatureLines&) = delete;
  FeatureLines& operator=(const FeatureLines&) = delete;

  /// Hands over the lines of the next block; false when there is none, and everything was read. Throws as
  /// `ReadDocument` does; the lines before the fault were handed over.
  bool ReadOn();
  /// Whether the first line was read, which happens with the first block that is not blank.
  [[nodiscard]] bool HasHeader() const;
  [[nodiscard]] DocumentHeader Header() const;

 private:
  struct Source;

  std::unique_ptr<Source> source_;
};

}  // namespace standalone
