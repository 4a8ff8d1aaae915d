#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

/// The host's message catalogs: one folder per language, one JSON file per catalog that maps keys to texts.
/// One language is in use in the process. Any thread may choose or ask at any time; a document that is
/// upgraded while another language is chosen gets names of both.
class Messages {
 public:
  Messages() = delete;

  /// Reads texts from `folder`, in `language` (a folder's name there, such as "en"), from now on. Throws
  /// `std::runtime_error` with the names that there are when there is no such language, or when a catalog is
  /// broken.
  static void Use(const std::filesystem::path& folder, std::string_view language);

  /// Throws `std::runtime_error`, which names the file and the remedy, when a catalog of `language` is
  /// missing in `folder`, or lacks a text that upgrades take: they would make names of two languages, or
  /// leave old ones as they are.
  static void RequireComplete(const std::filesystem::path& folder, std::string_view language);

  /// The text of a message, as it stands in its catalog; none when there is none. For the host's own use: the
  /// library asks `VLMMsgCatalog`.
  [[nodiscard]] static std::optional<std::string> Find(std::string_view catalog, std::string_view key);

  /// The languages that `folder` offers, sorted.
  [[nodiscard]] static std::vector<std::string> LanguagesOf(const std::filesystem::path& folder);
};

}  // namespace standalone
