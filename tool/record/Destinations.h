#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "record/Destination.h"
#include "record/GivenDocument.h"
#include "settings/Arguments.h"

namespace tool {

/// Where the results of a run go. Works each place out when it is asked for, since there may be very many.
class Destinations {
 public:
  /// Both must outlive it. Throws `UsageError` when the report or trace would take the place of a document, a
  /// result or a backup, and when several documents would go to one file that was named.
  Destinations(const UpgradeArguments& arguments, const std::vector<GivenDocument>& documents);

  /// The destination of the document in that place. Where two results would go to the same file, that of the
  /// later document bears the clash.
  [[nodiscard]] Destination Of(std::size_t document) const;
  /// What stands at the document's destination may be replaced.
  void AllowReplacing(std::size_t document) { replaceable_.insert(document); }

  /// The folders in which results are to stand, each once.
  [[nodiscard]] std::set<std::filesystem::path> Folders() const;

 private:
  class Files;

  [[nodiscard]] Destination PlaceOf(std::size_t document) const;
  [[nodiscard]] std::string ClashOf(std::size_t document, const Files& inputs, Files& targets) const;

  const UpgradeArguments& arguments_;
  const std::vector<GivenDocument>& documents_;
  std::map<std::size_t, std::string> clashes_;
  std::set<std::size_t> replaceable_;
};

/// Takes the folders away again that a run made, as far as nothing came to stand in them.
class EmptyFolders {
 public:
  /// The run may make these folders, with the folders above them.
  explicit EmptyFolders(const std::set<std::filesystem::path>& folders);
  ~EmptyFolders();
  EmptyFolders(const EmptyFolders&) = delete;
  EmptyFolders& operator=(const EmptyFolders&) = delete;

 private:
  std::set<std::filesystem::path, std::greater<>> missing_;  // before the run, the inner ones first
};

}  // namespace tool
