#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tool::page {

/// A page in the making: one HTML file that needs nothing else. What it shows stands in it as compressed data
/// blocks, which its scripts unpack when they are wanted. Operations throw `standalone::DocumentError`
/// (`kUnwritable`) when they fail.
class PageFile {
 public:
  /// `file`: where the page is to stand, or "-" for standard output. What stands there is replaced when
  /// `overwrite` allows it, or when it is a page of this program.
  PageFile(const std::string& file, bool overwrite);
  ~PageFile();  // what was not finished leaves nothing behind
  PageFile(const PageFile&) = delete;
  PageFile& operator=(const PageFile&) = delete;

  /// Adds the detail of a document, which is JSON, and gives the number of the block that will hold it; -1
  /// where the page has become as large as browsers open at once.
  [[nodiscard]] int AddDetail(std::size_t document, std::string_view json);

  /// Whether there is no room for the next detail.
  [[nodiscard]] bool IsFull() const;

  /// Puts the page together, with `page`, the JSON of what it shows first, and into its place.
  void Finish(std::string_view title, std::string_view page);

 private:
  class Blocks;

  std::string file_;
  bool overwrite_;
  std::unique_ptr<Blocks> blocks_;
};

/// Throws `standalone::DocumentError` (`kUnwritable`) when it is plain beforehand that no page can be put
/// there.
void CheckPlace(const std::string& file, bool overwrite);

}  // namespace tool::page
