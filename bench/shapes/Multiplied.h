#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "model/Document.h"

namespace bench {

/// Which features of a document are to stand there many times: those of one late type beneath a feature of
/// another.
struct FatherAndSon {
  std::string father;  ///< The late type; empty for features that have no father.
  std::string son;

  [[nodiscard]] std::string Name() const { return (father.empty() ? "document" : father) + "/" + son; }
  auto operator<=>(const FatherAndSon&) const = default;
};

/// All such pairs of the document, in document order.
[[nodiscard]] std::vector<FatherAndSon> PairsOf(const standalone::Document& document);

/// Has the first such son stand there `times` times, each with all that stands beneath it. Lists that link to
/// it, or to what stands beneath it, link to the copies too; links within it lead within each copy. The
/// document is to be written and read again before it is used.
void Multiply(standalone::Document& document, const FatherAndSon& pair, std::size_t times);

}  // namespace bench
