#pragma once

#include <fmt/format.h>

#include <functional>
#include <string>
#include <string_view>

#include "report/ReportForms.h"

namespace tool::page {

/// A page in the making: one HTML file that needs nothing else. What it shows stands in it as compressed data
/// blocks, which its scripts unpack when they are wanted. It holds no more details than browsers open at
/// once.
class PageFile {
 public:
  /// Adds the detail of a document, which is JSON, and gives the number of the block that will hold it. The
  /// page must not be full.
  [[nodiscard]] int AddDetail(std::size_t document, std::string_view json);
  /// Whether there is no room for the next detail.
  [[nodiscard]] bool IsFull() const;

  /// Writes the page, with `page`, the JSON of what it shows first.
  void Finish(std::string_view title, std::string_view page, const Writer& write);

 private:
  void EndBlock();

  std::string blocks_;  // that are whole, as they will stand in the page
  int count_ = 0;
  fmt::memory_buffer block_;
};

/// Throws `standalone::DocumentError` (`kUnwritable`) when it is plain beforehand that no page can be put
/// there: what stands there is replaced when `overwrite` allows it, or when it is a page of this program.
void CheckPlace(const std::string& file, bool overwrite);
/// Puts what `make` writes there, whole or not at all; throws as above.
void PutPage(const std::string& file, bool overwrite, const std::function<void(const Writer& write)>& make);

}  // namespace tool::page
